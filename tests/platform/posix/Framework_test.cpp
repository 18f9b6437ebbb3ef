// What only the scriptable backend can show.

#include <cstring>
#include <string>
#include <vector>

#include "foundation/CP_Exceptions.h"
#include "platform/CP_Clipboard.h"
#include "platform/CP_HandleBlock.h"
#include "platform/FrameworkTest.h"
#include "platform/os/Memory.h"
#include "platform/os/Menus.h"
#include "platform/os/posix/ClipboardScript.h"
#include "platform/os/posix/EventScript.h"
#include "platform/os/posix/MemoryScript.h"
#include "platform/os/posix/MenuScript.h"
#include "platform/os/posix/ResourceScript.h"
#include "support/ReportRecorder.h"

namespace {

constexpr uint32_t kFormat = 0x0200;

class PosixFramework : public vm::FrameworkTest {};

using Calls = std::vector<std::string>;

TEST_F(PosixFramework, TheLoopSleepsAMillisecondInEveryPassAlsoWhenAMessageWasThere) {
  struct Counting : CP_Application {
    void Initialize() override {}
    bool GetEvent(CP_Event& event) override {
      if (++passes == 5)
        fDone = true;
      return CP_Application::GetEvent(event);
    }
    int passes = 0;
  } application;
  const vm::TestWindow window([](const os::Message&) {});
  window.Post(vm::kTestMessage);
  window.Post(vm::kTestMessage);
  const uint32_t sleeps = os::posix::SleepCount();
  const uint32_t slept = os::posix::SleptMilliseconds();
  const uint32_t cursors = os::posix::ArrowCursorCount();
  application.Run();
  EXPECT_EQ(os::posix::SleepCount() - sleeps, 5u);
  EXPECT_EQ(os::posix::SleptMilliseconds() - slept, 5u);
  EXPECT_EQ(os::posix::ArrowCursorCount() - cursors, 1u);
}

TEST_F(PosixFramework, WaitingForAMessageEndsAtTheQuitMessageAndAtTheEndOfTheQueue) {
  const vm::TestWindow window([](const os::Message&) {});
  window.Post(vm::kTestMessage);
  os::posix::PostQuit(42);
  os::Message message;
  EXPECT_TRUE(os::WaitForMessage(message));
  EXPECT_EQ(message.message, vm::kTestMessage);
  EXPECT_FALSE(os::WaitForMessage(message));
  EXPECT_EQ(message.firstParameter, 42u);
  EXPECT_FALSE(os::WaitForMessage(message));
}

TEST_F(PosixFramework, AWindowMayGoInItsOwnProcedure) {
  os::WindowHandle window = nullptr;
  int calls = 0;
  window = os::posix::MakeWindow([&](const os::Message&) {
    ++calls;
    os::posix::DestroyWindow(window);
  });
  os::Message message;
  message.window = window;
  os::TranslateAndDeliver(message);
  os::TranslateAndDeliver(message);
  EXPECT_EQ(calls, 1);
}

TEST_F(PosixFramework, PuttingDataOpensEmptiesPutsAndCloses) {
  os::posix::ClipboardScript script;
  CP_Clipboard clipboard;
  CP_HandleBlock block(3);
  clipboard.PutData(kFormat, block);
  EXPECT_EQ(script.calls, (Calls{"open", "empty", "put", "close"}));
  EXPECT_FALSE(os::posix::IsClipboardOpen());
}

TEST_F(PosixFramework, GettingDataAsksOpensAndGetsAndNeverCloses) {
  vm::PutForeignData(kFormat, {1, 2});
  os::posix::ClipboardScript script;
  CP_Clipboard clipboard;
  CP_HandleBlock* const block = clipboard.GetData(kFormat);
  EXPECT_EQ(script.calls, (Calls{"available", "open", "get"}));
  EXPECT_TRUE(os::posix::IsClipboardOpen());
  block->Release();
  script.calls.clear();
  EXPECT_EQ(clipboard.GetData(kFormat + 1), nullptr);
  EXPECT_EQ(script.calls, (Calls{"available"}));
  os::CloseSystemClipboard();
}

TEST_F(PosixFramework, AClipboardThatAnotherProgramHoldsGivesAndTakesNothingAndLosesNoMemory) {
  vm::PutForeignData(kFormat, {1, 2});
  os::posix::ClipboardScript script;
  script.heldByAnotherProgram = true;
  CP_Clipboard clipboard;
  EXPECT_EQ(clipboard.GetData(kFormat), nullptr);
  {
    CP_HandleBlock block(3);
    const uint32_t blocks = os::posix::LivingMemoryBlocks();
    clipboard.PutData(kFormat + 1, block);
    EXPECT_EQ(os::posix::LivingMemoryBlocks(), blocks) << "what wasn't taken over is given back";
  }
  script.heldByAnotherProgram = false;
  EXPECT_FALSE(os::IsClipboardFormatThere(kFormat + 1));
  EXPECT_TRUE(os::IsClipboardFormatThere(kFormat));
}

TEST_F(PosixFramework, APlatformErrorWhilePuttingIsReportedWithTheBlockUnlocked) {
  os::posix::ClipboardScript script;
  CP_Clipboard clipboard;
  CP_HandleBlock block(3);
  script.onCall = [&](const std::string& call) {
    if (call != "open")
      return;
    block.Lock();
    CP_ThrowIfError(5, "Platform", 9);
  };
  const uint32_t blocks = os::posix::LivingMemoryBlocks();
  vm::ReportRecorder reports;
  EXPECT_NO_THROW(clipboard.PutData(kFormat, block));
  EXPECT_EQ(reports.Lines(), vm::Reports({"Platform(9) : "}));
  EXPECT_FALSE(block.IsLocked());
  EXPECT_EQ(os::posix::LivingMemoryBlocks(), blocks);
  script.onCall = nullptr;
  os::CloseSystemClipboard();
}

TEST_F(PosixFramework, APlatformErrorWhileGettingIsReportedAndGivesNull) {
  vm::PutForeignData(kFormat, {1, 2});
  os::posix::ClipboardScript script;
  script.onCall = [](const std::string& call) {
    if (call == "get")
      CP_ThrowIfError(5, "Platform", 9);
  };
  CP_Clipboard clipboard;
  vm::ReportRecorder reports;
  EXPECT_EQ(clipboard.GetData(kFormat), nullptr);
  EXPECT_EQ(reports.Lines(), vm::Reports({"Platform(9) : "}));
  script.onCall = nullptr;
  os::CloseSystemClipboard();
}

TEST_F(PosixFramework, WithoutMemoryForTheClipboardPuttingThrows) {
  CP_Clipboard clipboard;
  CP_HandleBlock block(3);
  os::posix::MemoryScript script;
  script.allocationsFail = true;
  vm::ReportRecorder reports;
  try {
    clipboard.PutData(kFormat, block);
    ADD_FAILURE() << "nothing thrown";
  } catch (const CP_MemoryException& exception) {
    exception.Report();
  }
  EXPECT_EQ(reports.Lines(), vm::Reports({"CP_Clipboard(131) : NULL Pointer"}));
}

TEST_F(PosixFramework, ABlockThatCannotBeAllocatedReportsAtItsNextOperation) {
  vm::ReportRecorder reports;
  os::posix::MemoryScript script;
  script.allocationsFail = true;
  CP_HandleBlock* const block = new CP_HandleBlock(3);
  EXPECT_TRUE(reports.Empty());
  EXPECT_EQ(block->GetSize(), 0);
  block->Lock();
  EXPECT_EQ(reports.Lines(), vm::Reports({"CP_HandleBlock(367) : fBlock != NULL"}));
  block->Release();
}

TEST_F(PosixFramework, ABlockWhoseSizeThePlatformRoundedUpStillSaysWhatWasAskedFor) {
  os::posix::MemoryScript script;
  script.granularity = 16;
  CP_HandleBlock block(17);
  EXPECT_EQ(block.GetSize(), 17);
}

TEST_F(PosixFramework, ABlockGivesItsMemoryBack) {
  const uint32_t blocks = os::posix::LivingMemoryBlocks();
  {
    CP_HandleBlock block(17);
    block.Lock();
    EXPECT_EQ(os::posix::LivingMemoryBlocks(), blocks + 1);
  }
  EXPECT_EQ(os::posix::LivingMemoryBlocks(), blocks);
}

TEST_F(PosixFramework, HandlesOfMemoryThatIsGoneAreHarmless) {
  const os::MemoryHandle block = os::AllocateMemory(os::MemoryUse::kPrivate, 8);
  os::FreeMemory(block);
  os::FreeMemory(block);
  EXPECT_EQ(os::LockMemory(block), nullptr);
  EXPECT_EQ(os::SizeOfMemory(block), 0u);
  os::UnlockMemory(block);
  EXPECT_EQ(os::AllocateMemory(os::MemoryUse::kPrivate, 0x80000000u), nullptr);
}

TEST_F(PosixFramework, TheMenuBarIsDrawnInItsWindowAtTheEndOfAnUpdate) {
  const vm::TestWindow window([](const os::Message&) {});
  const vm::LoadedMenuBar bar(129);
  CP_M_Commander::UpdateMenus();
  EXPECT_EQ(os::posix::MenuBarRedraws(window.Handle()), 0u);
  bar->AttachToWindow(window.Handle());
  EXPECT_EQ(os::posix::WindowMenu(window.Handle()), gMenuBarHandle);
  CP_M_Commander::UpdateMenus();
  EXPECT_EQ(os::posix::MenuBarRedraws(window.Handle()), 1u);
  bar->AddTopLevel(new CP_Menu(1, "More", os::CreatePopup(), true));
  EXPECT_EQ(os::posix::MenuBarRedraws(window.Handle()), 2u);
}

TEST_F(PosixFramework, ACopiedMenuLeavesTheLoadedOneDestroyed) {
  vm::DefineTestMenus();
  const os::MenuHandle probe = os::CreatePopup();
  const auto next = reinterpret_cast<os::MenuHandle>(reinterpret_cast<uintptr_t>(probe) + 1);
  CP_Menu menu(201, "", true, true);  // its resource becomes the next menu
  EXPECT_NE(menu.GetHandle(), next);
  EXPECT_FALSE(os::posix::IsMenuAlive(next));
  os::DestroyMenuTree(menu.GetHandle());
  os::DestroyMenuTree(probe);
}

TEST_F(PosixFramework, DestroyingAMenuTakesItsSubMenusAlong) {
  vm::DefineTestMenus();
  const os::MenuHandle menu = os::LoadMenuResource(129);
  const os::MenuHandle submenu = os::GetSubMenuAt(menu, 0);
  os::DestroyMenuTree(menu);
  EXPECT_FALSE(os::posix::IsMenuAlive(menu));
  EXPECT_FALSE(os::posix::IsMenuAlive(submenu));
}

}  // namespace
