#include "platform/CP_Clipboard.h"

#include <algorithm>
#include <cstring>
#include <string>

#include "foundation/CP_Exceptions.h"
#include "platform/CP_HandleBlock.h"
#include "platform/FrameworkTest.h"
#include "platform/os/Memory.h"
#include "support/ReportRecorder.h"
#include "support/VirtualSlot.h"

namespace {

constexpr uint32_t kText = 1;          // CF_TEXT
constexpr uint32_t kPrivate = 0x0200;  // CF_PRIVATEFIRST
constexpr uint32_t kNotThere = 0x0201;

class Clipboard : public vm::FrameworkTest {
 protected:
  void SetUp() override {
    ASSERT_TRUE(os::OpenSystemClipboard());
    ASSERT_TRUE(os::EmptySystemClipboard());
    os::CloseSystemClipboard();
  }
  void TearDown() override {
    os::CloseSystemClipboard();
    FrameworkTest::TearDown();
  }
};

std::vector<uint8_t> Bytes(CP_HandleBlock& block) {
  std::vector<uint8_t> bytes(static_cast<size_t>(std::max(0, block.GetSize())));
  if (!bytes.empty())
    std::memcpy(bytes.data(), block.GetPointer(), bytes.size());
  block.Unlock();
  return bytes;
}

std::vector<uint8_t> Pattern(size_t size) {
  std::vector<uint8_t> bytes(size);
  for (size_t i = 0; i < size; ++i)
    bytes[i] = static_cast<uint8_t>(i * 7 + i / 251 + 1);
  return bytes;
}

TEST_F(Clipboard, IsTheGlobalOneWhileItLivesAndHasNoPrivateData) {
  {
    CP_Clipboard clipboard;
    EXPECT_EQ(gClipboard, &clipboard);
    EXPECT_FALSE(clipboard.HasPrivateData());
  }
  EXPECT_EQ(gClipboard, nullptr);
}

TEST_F(Clipboard, HasItsOperationsInTheirOrderAndNoVirtualDestructor) {
  EXPECT_EQ(vm::VirtualSlot(&CP_Clipboard::PutData), 0u);
  EXPECT_EQ(vm::VirtualSlot(&CP_Clipboard::GetData), 1u);
  EXPECT_EQ(vm::VirtualSlot(&CP_Clipboard::HasPrivateData), 2u);
  EXPECT_EQ(sizeof(CP_Clipboard), sizeof(void*)) << "no fields";
}

TEST_F(Clipboard, GivesBackWhatWasPutInACopyOfTheCallers) {
  CP_Clipboard clipboard;
  CP_HandleBlock block(300);
  const std::vector<uint8_t> bytes = Pattern(300);
  std::memcpy(block.GetPointer(), bytes.data(), bytes.size());
  clipboard.PutData(kPrivate, block);
  EXPECT_FALSE(block.IsLocked());
  EXPECT_EQ(Bytes(block), bytes) << "the block stays the caller's";

  CP_HandleBlock* const first = clipboard.GetData(kPrivate);
  ASSERT_NE(first, nullptr);
  EXPECT_EQ(first->GetRefCount(), 1u);
  EXPECT_FALSE(first->IsLocked());
  EXPECT_EQ(first->GetSize(), 300);
  EXPECT_EQ(Bytes(*first), bytes);
  CP_HandleBlock* const second = clipboard.GetData(kPrivate);
  ASSERT_NE(second, nullptr);
  EXPECT_NE(second, first);
  EXPECT_EQ(Bytes(*second), bytes);
  first->Release();
  second->Release();
}

TEST_F(Clipboard, PuttingDataDropsWhatWasThereInEveryFormat) {
  vm::PutForeignData(kText, {'o', 'l', 'd', 0});
  CP_Clipboard clipboard;
  CP_HandleBlock block(1);
  clipboard.PutData(kPrivate, block);
  EXPECT_FALSE(os::IsClipboardFormatThere(kText));
  EXPECT_TRUE(os::IsClipboardFormatThere(kPrivate));
}

TEST_F(Clipboard, PuttingDataLeavesTheClipboardClosed) {
  CP_Clipboard clipboard;
  CP_HandleBlock block(1);
  clipboard.PutData(kPrivate, block);
  EXPECT_EQ(os::GetClipboardBlock(kPrivate), nullptr) << "nobody has it open";
}

TEST_F(Clipboard, AFormatThatIsNotThereGivesNullWithTheClipboardUntouched) {
  vm::PutForeignData(kPrivate, {1, 2, 3});
  CP_Clipboard clipboard;
  EXPECT_EQ(clipboard.GetData(kNotThere), nullptr);
  EXPECT_EQ(os::GetClipboardBlock(kPrivate), nullptr) << "it wasn't opened";
  EXPECT_TRUE(os::IsClipboardFormatThere(kPrivate));
}

TEST_F(Clipboard, GettingDataLeavesTheClipboardOpen) {
  vm::PutForeignData(kPrivate, {1, 2, 3});
  CP_Clipboard clipboard;
  CP_HandleBlock* const block = clipboard.GetData(kPrivate);
  ASSERT_NE(block, nullptr);
  EXPECT_EQ(Bytes(*block), (std::vector<uint8_t>{1, 2, 3}));
  EXPECT_NE(os::GetClipboardBlock(kPrivate), nullptr) << "still open";
  block->Release();
}

TEST_F(Clipboard, PuttingDataWorksAfterGettingSome) {
  vm::PutForeignData(kPrivate, {1, 2, 3});
  CP_Clipboard clipboard;
  clipboard.GetData(kPrivate)->Release();
  CP_HandleBlock block(2);
  std::memcpy(block.GetPointer(), "ab", 2);
  clipboard.PutData(kPrivate, block);
  CP_HandleBlock* const back = clipboard.GetData(kPrivate);
  ASSERT_NE(back, nullptr);
  EXPECT_EQ(Bytes(*back), (std::vector<uint8_t>{'a', 'b'}));
  back->Release();
}

TEST_F(Clipboard, DataOf32767BytesArrivesWhole) {
  const std::vector<uint8_t> bytes = Pattern(32767);
  vm::PutForeignData(kPrivate, bytes);
  CP_Clipboard clipboard;
  CP_HandleBlock* const block = clipboard.GetData(kPrivate);
  ASSERT_NE(block, nullptr);
  EXPECT_EQ(block->GetSize(), 32767);
  EXPECT_EQ(Bytes(*block), bytes);
  block->Release();
}

TEST_F(Clipboard, DataOf32768BytesComesAsABlockWithoutMemoryAndIsReported) {
  vm::PutForeignData(kPrivate, Pattern(32768));
  CP_Clipboard clipboard;
  vm::ReportRecorder reports;
  CP_HandleBlock* const block = clipboard.GetData(kPrivate);
  ASSERT_NE(block, nullptr);
  EXPECT_EQ(reports.Lines(),
            vm::Reports(
                {"CP_HandleBlock(106) : inSize >= 0", "CP_HandleBlock(181) : fBlock != NULL",
                 "CP_HandleBlock(367) : fBlock != NULL", "CP_HandleBlock(391) : fBlock != NULL"}));
  EXPECT_EQ(block->GetSize(), -32768);
  block->Release();
}

TEST_F(Clipboard, DataOf65536BytesAndMoreArrivesAsTheRestOfTheSize) {
  const std::vector<uint8_t> bytes = Pattern(65536 + 10);
  vm::PutForeignData(kPrivate, bytes);
  CP_Clipboard clipboard;
  CP_HandleBlock* const block = clipboard.GetData(kPrivate);
  ASSERT_NE(block, nullptr);
  EXPECT_EQ(Bytes(*block), std::vector<uint8_t>(bytes.begin(), bytes.begin() + 10));
  block->Release();
}

TEST_F(Clipboard, LongDataGoesOutWhole) {
  const std::vector<uint8_t> bytes = Pattern(100000);
  CP_Clipboard clipboard;
  CP_HandleBlock block(100000);
  std::memcpy(block.GetPointer(), bytes.data(), bytes.size());
  clipboard.PutData(kPrivate, block);
  ASSERT_TRUE(os::OpenSystemClipboard());
  const os::MemoryHandle data = os::GetClipboardBlock(kPrivate);
  ASSERT_EQ(os::SizeOfMemory(data), 100000u);
  EXPECT_EQ(std::memcmp(os::LockMemory(data), bytes.data(), bytes.size()), 0);
  os::UnlockMemory(data);
}

TEST_F(Clipboard, ABlockOfNoBytesCannotBePutAndLeavesTheClipboardAsItWas) {
  vm::PutForeignData(kPrivate, {1});
  CP_Clipboard clipboard;
  CP_HandleBlock block(0);
  try {
    clipboard.PutData(kPrivate, block);
    ADD_FAILURE() << "nothing thrown";
  } catch (const CP_MemoryException& exception) {
    EXPECT_STREQ(exception.GetText(), "NULL Pointer");
    vm::ReportRecorder reports;
    exception.Report();
    EXPECT_EQ(reports.Lines(), vm::Reports({"CP_Clipboard(134) : NULL Pointer"}));
  }
  EXPECT_TRUE(os::IsClipboardFormatThere(kPrivate));
}

TEST_F(Clipboard, ABlockWithoutMemoryCannotBePutEither) {
  vm::ReportRecorder reports;
  CP_Clipboard clipboard;
  CP_HandleBlock block(-5);
  reports.Clear();
  try {
    clipboard.PutData(kPrivate, block);
    ADD_FAILURE() << "nothing thrown";
  } catch (const CP_MemoryException& exception) {
    exception.Report();
    EXPECT_EQ(reports.Lines(), vm::Reports({"CP_Clipboard(131) : NULL Pointer"}));
  }
}

}  // namespace
