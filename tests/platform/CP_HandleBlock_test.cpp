#include "platform/CP_HandleBlock.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "support/ReportRecorder.h"

namespace {

TEST(HandleBlock, StartsZeroFilledUnlockedAndWithOneOwner) {
  CP_HandleBlock block(1000);
  EXPECT_EQ(block.GetRefCount(), 1u);
  EXPECT_FALSE(block.IsLocked());
  EXPECT_EQ(block.GetSize(), 1000);
  const auto* bytes = static_cast<const uint8_t*>(block.GetPointer());
  ASSERT_NE(bytes, nullptr);
  EXPECT_TRUE(std::all_of(bytes, bytes + 1000, [](uint8_t byte) { return byte == 0; }));
}

TEST(HandleBlock, AskingForThePointerLeavesItLocked) {
  CP_HandleBlock block(4);
  void* const pointer = block.GetPointer();
  EXPECT_TRUE(block.IsLocked());
  EXPECT_EQ(block.GetPointer(), pointer);
  block.Unlock();
  EXPECT_FALSE(block.IsLocked());
}

TEST(HandleBlock, KeepsItsContentsThroughLocksAndUnlocks) {
  CP_HandleBlock block(5);
  std::memcpy(block.GetPointer(), "12345", 5);
  block.Unlock();
  block.Lock();
  block.Lock();
  EXPECT_EQ(std::memcmp(block.GetPointer(), "12345", 5), 0);
  block.Unlock();
  EXPECT_FALSE(block.IsLocked()) << "locks don't count";
}

TEST(HandleBlock, UnlockingOneThatIsNotLockedDoesNothing) {
  CP_HandleBlock block(4);
  block.Unlock();
  EXPECT_FALSE(block.IsLocked());
  std::memcpy(block.GetPointer(), "abcd", 4);
  block.Unlock();
  block.Unlock();
  EXPECT_EQ(std::memcmp(block.GetPointer(), "abcd", 4), 0);
}

TEST(HandleBlock, OfNoBytesHasNoAddressAndReportsNothing) {
  CP_HandleBlock block(0);
  EXPECT_EQ(block.GetSize(), 0);
  EXPECT_EQ(block.GetPointer(), nullptr);
  block.Unlock();
}

TEST(HandleBlock, OfNegativeSizeIsReportedAndEveryOperationReportsThatItHasNoMemory) {
  vm::ReportRecorder reports;
  {
    CP_HandleBlock block(-1);
    EXPECT_EQ(reports.Lines(), vm::Reports({"CP_HandleBlock(106) : inSize >= 0"}));
    reports.Clear();
    EXPECT_EQ(block.GetPointer(), nullptr);
    EXPECT_EQ(reports.Lines(), vm::Reports({"CP_HandleBlock(181) : fBlock != NULL",
                                            "CP_HandleBlock(367) : fBlock != NULL"}));
    reports.Clear();
    block.Lock();
    block.Unlock();
    block.Free();
    EXPECT_EQ(reports.Lines(), vm::Reports({"CP_HandleBlock(367) : fBlock != NULL",
                                            "CP_HandleBlock(391) : fBlock != NULL",
                                            "CP_HandleBlock(133) : fBlock != NULL"}));
    EXPECT_FALSE(block.IsLocked());
    EXPECT_EQ(block.GetSize(), -1) << "the smaller of no memory and what was asked for";
    reports.Clear();
  }
  EXPECT_EQ(reports.Lines(), vm::Reports({"CP_HandleBlock(133) : fBlock != NULL"})) << "at the end";
}

TEST(HandleBlock, OnceFreedHasNoMemoryAndNoAddress) {
  vm::ReportRecorder reports;
  {
    CP_HandleBlock block(4);
    EXPECT_NE(block.GetPointer(), nullptr);
    block.Free();
    EXPECT_TRUE(reports.Empty());
    EXPECT_FALSE(block.IsLocked());
    EXPECT_EQ(block.GetSize(), 0);
    EXPECT_EQ(block.GetPointer(), nullptr) << "not the address of memory that is gone";
    reports.Clear();
  }
  EXPECT_EQ(reports.Lines(), vm::Reports({"CP_HandleBlock(133) : fBlock != NULL"}));
}

TEST(HandleBlock, MayEndWhileItIsLocked) {
  CP_HandleBlock* const block = new CP_HandleBlock(4);
  block->Lock();
  block->Release();
}

}  // namespace
