// The framework's calls to Windows, with their arguments: seen at the program's own import table.

#include <windows.h>

#include <commdlg.h>

#include <cstring>

#include "foundation/CP_Exceptions.h"
#include "platform/CP_Clipboard.h"
#include "platform/CP_ColorDialog.h"
#include "platform/CP_Event.h"
#include "platform/CP_HandleBlock.h"
#include "platform/CP_Region.h"
#include "platform/CP_RGBColor.h"
#include "platform/FrameworkTest.h"
#include "platform/os/Menus.h"
#include "platform/win32/ImportSpy.h"
#include "support/ReportRecorder.h"

namespace {

VM_SPY(PeekMessageA);
VM_SPY(TranslateMessage);
VM_SPY(DispatchMessageA);
VM_SPY(Sleep);
VM_SPY(LoadCursorA);
VM_SPY(SetCursor);
VM_SPY(GetMessageA);
VM_SPY(GlobalAlloc);
VM_SPY(GlobalLock);
VM_SPY(GlobalUnlock);
VM_SPY(GlobalFree);
VM_SPY(GlobalSize);
VM_SPY(OpenClipboard);
VM_SPY(EmptyClipboard);
VM_SPY(SetClipboardData);
VM_SPY(CloseClipboard);
VM_SPY(IsClipboardFormatAvailable);
VM_SPY(GetClipboardData);
VM_SPY(CreateRectRgn);
VM_SPY(SetRectRgn);
VM_SPY(DeleteObject);
VM_SPY(LoadMenuA);
VM_SPY(LoadAcceleratorsA);
VM_SPY(FindResourceA);
VM_SPY(LoadResource);
VM_SPY(LockResource);
VM_SPY(ModifyMenuA);
VM_SPY(AppendMenuA);
VM_SPY(CreatePopupMenu);
VM_SPY(DestroyMenu);
VM_SPY(EnableMenuItem);
VM_SPY(GetMenuStringA);
VM_SPY(DrawMenuBar);
VM_SPY(ChooseColorA);
VM_SPY(SetWindowPos);

using Calls = std::vector<std::string>;

class WindowsCalls : public vm::FrameworkTest {
 protected:
  void SetUp() override { vm::SpiedCalls().clear(); }
};

TEST_F(WindowsCalls, AnEventIsPeekedOfAnyWindowAndNumberAndRemoved) {
  PeekMessageASpy peek;
  peek.replacement = [](MSG*, HWND, UINT, UINT, UINT) { return FALSE; };
  CP_Application application;
  CP_Event event;
  EXPECT_FALSE(application.GetEvent(event));
  ASSERT_EQ(peek.calls.size(), 1u);
  const auto& [message, window, first, last, flags] = peek.calls[0];
  EXPECT_EQ(window, nullptr);
  EXPECT_EQ(first, 0u);
  EXPECT_EQ(last, 0u);
  EXPECT_EQ(flags, 1u);
}

TEST_F(WindowsCalls, EveryFieldOfAMessageReachesTheEventAndTheDispatch) {
  PeekMessageASpy peek;
  const MSG original{
      reinterpret_cast<HWND>(0x1234), 0x0ABC, 0xFFFFFFFE, -3, 0x80000000, {-7, 70000}};
  peek.replacement = [&](MSG* out, HWND, UINT, UINT, UINT) {
    *out = original;
    return TRUE;
  };
  CP_Application application;
  CP_Event event;
  EXPECT_TRUE(application.GetEvent(event));
  EXPECT_EQ(event.fMessage, 0x0ABCu);
  EXPECT_EQ(event.fMessageCopy, 0x0ABCu);
  EXPECT_EQ(event.fWindow, reinterpret_cast<os::WindowHandle>(0x1234));
  EXPECT_EQ(event.fFirstParameter, 0xFFFFFFFEu);
  EXPECT_EQ(event.fSecondParameter, 0xFFFFFFFDu);
  EXPECT_EQ(event.fTime, 0x80000000u);
  EXPECT_EQ(event.fPosition, CP_Point(-7, 70000 - 65536));

  TranslateMessageSpy translate;
  DispatchMessageASpy dispatch;
  const auto check = [&](const MSG* message) {
    EXPECT_EQ(message->hwnd, original.hwnd);
    EXPECT_EQ(message->message, original.message);
    EXPECT_EQ(message->wParam, original.wParam);
    EXPECT_EQ(message->lParam, original.lParam);
    EXPECT_EQ(message->time, original.time);
    EXPECT_EQ(message->pt.x, -7);
    EXPECT_EQ(message->pt.y, 70000 - 65536);
  };
  translate.replacement = [&](const MSG* message) {
    check(message);
    return FALSE;
  };
  dispatch.replacement = [&](const MSG* message) {
    check(message);
    return LRESULT{0};
  };
  vm::SpiedCalls().clear();
  application.DispatchEvent(event);
  EXPECT_EQ(vm::SpiedCalls(), (Calls{"TranslateMessage", "DispatchMessageA"}));
}

TEST_F(WindowsCalls, TheLoopShowsTheArrowOnceAndSleepsAMillisecondInEveryPass) {
  struct Short : CP_Application {
    void Initialize() override {}
    bool GetEvent(CP_Event& event) override {
      if (++passes == 3)
        fDone = true;
      return CP_Application::GetEvent(event);
    }
    int passes = 0;
  } application;
  vm::EmptyQueue();
  PeekMessageASpy peek;
  peek.replacement = [&](MSG* out, HWND, UINT, UINT, UINT) {
    *out = MSG{};
    return application.passes == 2;  // a message in one of the passes
  };
  LoadCursorASpy load;
  SetCursorSpy set;
  SleepSpy sleep;
  DispatchMessageASpy dispatch;
  vm::SpiedCalls().clear();
  application.Run();
  EXPECT_EQ(vm::SpiedCalls(),
            (Calls{"LoadCursorA", "SetCursor", "PeekMessageA", "Sleep", "PeekMessageA",
                   "DispatchMessageA", "Sleep", "PeekMessageA", "Sleep"}));
  EXPECT_EQ(load.calls[0], std::make_tuple(HINSTANCE(nullptr), MAKEINTRESOURCEA(32512)));
  for (const auto& [milliseconds] : sleep.calls)
    EXPECT_EQ(milliseconds, 1u);
}

TEST_F(WindowsCalls, WaitingTakesMessagesOfAnyWindowAndEndsAtQuitAndOnFailure) {
  GetMessageASpy get;
  BOOL answer = TRUE;
  get.replacement = [&](MSG* out, HWND, UINT, UINT) {
    *out = MSG{nullptr, 5, 6, 7, 8, {9, 10}};
    return answer;
  };
  os::Message message;
  EXPECT_TRUE(os::WaitForMessage(message));
  EXPECT_EQ(message.firstParameter, 6u);
  const auto& [out, window, first, last] = get.calls[0];
  EXPECT_EQ(window, nullptr);
  EXPECT_EQ(first, 0u);
  EXPECT_EQ(last, 0u);
  answer = FALSE;
  EXPECT_FALSE(os::WaitForMessage(message));
  answer = -1;
  EXPECT_FALSE(os::WaitForMessage(message));
}

TEST_F(WindowsCalls, ABlockIsMovableAndZeroFilled) {
  GlobalAllocSpy alloc;
  GlobalLockSpy lock;
  GlobalUnlockSpy unlock;
  GlobalFreeSpy free;
  {
    CP_HandleBlock block(77);
    ASSERT_EQ(alloc.calls.size(), 1u);
    EXPECT_EQ(alloc.calls[0], std::make_tuple(UINT{66}, SIZE_T{77}));
    block.GetPointer();
    block.GetPointer();
    block.Unlock();
    block.Unlock();
    block.Lock();
  }
  EXPECT_EQ(vm::SpiedCalls(), (Calls{"GlobalAlloc", "GlobalLock", "GlobalUnlock", "GlobalLock",
                                     "GlobalUnlock", "GlobalFree"}));
}

TEST_F(WindowsCalls, ABlockOfNegativeSizeIsNotAskedFor) {
  GlobalAllocSpy alloc;
  vm::ReportRecorder reports;
  { CP_HandleBlock block(-1); }
  EXPECT_TRUE(alloc.calls.empty());
}

TEST_F(WindowsCalls, ABlockThatCouldNotBeHadReportsAtTheNextOperation) {
  GlobalAllocSpy alloc;
  alloc.replacement = [](UINT, SIZE_T) -> HGLOBAL { return nullptr; };
  vm::ReportRecorder reports;
  {
    CP_HandleBlock block(5);
    EXPECT_TRUE(reports.Empty());
    block.Lock();
    EXPECT_EQ(reports.Lines(), vm::Reports({"CP_HandleBlock(367) : fBlock != NULL"}));
  }
  CP_Clipboard clipboard;
  CP_HandleBlock* const block = new CP_HandleBlock(5);
  EXPECT_THROW(clipboard.PutData(0x200, *block), CP_MemoryException);
  block->Release();
}

TEST_F(WindowsCalls, ABlockThatCannotBeLockedHasNoAddress) {
  CP_HandleBlock block(5);
  GlobalLockSpy lock;
  lock.replacement = [](HGLOBAL) -> void* { return nullptr; };
  EXPECT_EQ(block.GetPointer(), nullptr);
}

TEST_F(WindowsCalls, ABlockWhoseSizeWasRoundedUpSaysWhatWasAskedFor) {
  CP_HandleBlock block(17);
  GlobalSizeSpy size;
  size.replacement = [](HGLOBAL) { return SIZE_T{32}; };
  EXPECT_EQ(block.GetSize(), 17);
  size.replacement = [](HGLOBAL) { return SIZE_T{16}; };
  EXPECT_EQ(block.GetSize(), 16);
}

TEST_F(WindowsCalls, PuttingDataSharesACopyAndClosesTheClipboard) {
  CP_HandleBlock block(3);
  std::memcpy(block.GetPointer(), "abc", 3);
  GlobalAllocSpy alloc;
  OpenClipboardSpy open;
  EmptyClipboardSpy empty;
  SetClipboardDataSpy set;
  CloseClipboardSpy close;
  CP_Clipboard clipboard;
  vm::SpiedCalls().clear();
  clipboard.PutData(0x200, block);
  EXPECT_EQ(vm::SpiedCalls(), (Calls{"GlobalAlloc", "OpenClipboard", "EmptyClipboard",
                                     "SetClipboardData", "CloseClipboard"}));
  EXPECT_EQ(alloc.calls[0], std::make_tuple(UINT{8258}, SIZE_T{3}));
  EXPECT_EQ(open.calls[0], std::make_tuple(HWND(nullptr)));
  EXPECT_EQ(std::get<0>(set.calls[0]), 0x200u);
}

TEST_F(WindowsCalls, GettingDataNeitherClosesTheClipboardNorUnlocksItsData) {
  vm::PutForeignData(0x200, {1, 2, 3});
  IsClipboardFormatAvailableSpy available;
  OpenClipboardSpy open;
  GetClipboardDataSpy get;
  CloseClipboardSpy close;
  GlobalLockSpy lock;
  GlobalUnlockSpy unlock;
  CP_Clipboard clipboard;
  vm::SpiedCalls().clear();
  CP_HandleBlock* const block = clipboard.GetData(0x200);
  ASSERT_NE(block, nullptr);
  EXPECT_EQ(vm::SpiedCalls(),
            (Calls{"IsClipboardFormatAvailable", "OpenClipboard", "GetClipboardData", "GlobalLock",
                   "GlobalLock", "GlobalUnlock"}))
      << "two locks, and one unlock: the block's";
  EXPECT_EQ(open.calls[0], std::make_tuple(HWND(nullptr)));
  EXPECT_EQ(std::get<0>(unlock.calls[0]), std::get<0>(lock.calls[0]));
  EXPECT_EQ(block->GetSize(), 3);
  block->Release();
  close.PassOn();
}

TEST_F(WindowsCalls, AClipboardThatAnotherProgramHoldsIsNoError) {
  vm::PutForeignData(0x200, {1, 2, 3});
  CP_HandleBlock block(3);
  CP_Clipboard clipboard;
  OpenClipboardSpy open;
  open.replacement = [](HWND) { return FALSE; };
  GlobalAllocSpy alloc;
  GlobalFreeSpy free;
  EXPECT_NO_THROW(clipboard.PutData(0x201, block));
  EXPECT_EQ(free.calls.size(), 1u) << "the copy that the clipboard didn't take";
  EXPECT_EQ(clipboard.GetData(0x200), nullptr);
  EXPECT_TRUE(os::IsClipboardFormatThere(0x200));
  EXPECT_FALSE(os::IsClipboardFormatThere(0x201));
}

TEST_F(WindowsCalls, APlatformErrorWhilePuttingIsReportedWithTheBlockUnlocked) {
  CP_HandleBlock block(3);
  CP_Clipboard clipboard;
  OpenClipboardSpy open;
  open.replacement = [&](HWND) -> BOOL {
    block.Lock();
    throw CP_PlfrmErrorException(5, "Platform", 9);
  };
  vm::ReportRecorder reports;
  EXPECT_NO_THROW(clipboard.PutData(0x200, block));
  EXPECT_EQ(reports.Lines(), vm::Reports({"Platform(9) : "}));
  EXPECT_FALSE(block.IsLocked());
}

TEST_F(WindowsCalls, ARegionIsMadeEmptyAndSetAndDeleted) {
  CreateRectRgnSpy create;
  SetRectRgnSpy set;
  DeleteObjectSpy destroy;
  HGDIOBJ handle;
  {
    CP_Region region(1, 2, 3, 4);
    handle = reinterpret_cast<HGDIOBJ>(region.GetHandle());
  }
  EXPECT_EQ(vm::SpiedCalls(), (Calls{"CreateRectRgn", "SetRectRgn", "DeleteObject"}));
  EXPECT_EQ(create.calls[0], std::make_tuple(0, 0, 0, 0));
  EXPECT_EQ(set.calls[0], std::make_tuple(static_cast<HRGN>(handle), 1, 2, 3, 4));
  EXPECT_EQ(destroy.calls[0], std::make_tuple(handle));
}

TEST_F(WindowsCalls, EntriesAreSwitchedByPositionWithTheirTwoValues) {
  CP_Menu menu(201, "", false, false);
  EnableMenuItemSpy enable;
  menu.EnableItem(1);
  menu.DisableItem(2);
  const HMENU handle = reinterpret_cast<HMENU>(menu.GetHandle());
  ASSERT_EQ(enable.calls.size(), 2u);
  EXPECT_EQ(enable.calls[0], std::make_tuple(handle, UINT{0}, UINT{1024}));
  EXPECT_EQ(enable.calls[1], std::make_tuple(handle, UINT{1}, UINT{1027}));
  DestroyMenu(handle);
}

TEST_F(WindowsCalls, AMenuBarIsLoadedFromItsResourcesByNumber) {
  FindResourceASpy find;
  LoadResourceSpy load;
  LockResourceSpy lock;
  LoadMenuASpy menu;
  LoadAcceleratorsASpy accelerators;
  const vm::LoadedMenuBar bar(129);
  EXPECT_EQ(vm::SpiedCalls(), (Calls{"FindResourceA", "LoadMenuA", "LoadAcceleratorsA"}))
      << "it has no companion resource";
  EXPECT_EQ(std::get<1>(find.calls[0]), MAKEINTRESOURCEA(129));
  EXPECT_STREQ(std::get<2>(find.calls[0]), "CPMB");
  EXPECT_EQ(std::get<1>(menu.calls[0]), MAKEINTRESOURCEA(129));
  EXPECT_EQ(std::get<1>(accelerators.calls[0]), MAKEINTRESOURCEA(129));
}

TEST_F(WindowsCalls, TheCompanionResourceIsLookedAtEvenWhenMenuBarsAreNotWanted) {
  FindResourceASpy find;
  LoadResourceSpy load;
  LockResourceSpy lock;
  LoadMenuASpy menu;
  LoadAcceleratorsASpy accelerators;
  CP_MenuBar bar;
  bar.LoadFromResource(128);
  EXPECT_EQ(vm::SpiedCalls(), (Calls{"FindResourceA", "LoadResource", "LockResource"}));
}

TEST_F(WindowsCalls, AMarkedEntryGetsItsTextFirstAndThenItsSubMenu) {
  ModifyMenuASpy modify;
  std::vector<std::string> texts;
  modify.replacement = [&](HMENU menu, UINT position, UINT flags, UINT_PTR id, const char* text) {
    texts.emplace_back(text);
    return modify.PassOn(menu, position, flags, id, text);
  };
  CP_Menu menu(202, "Title", false, false);
  const HMENU handle = reinterpret_cast<HMENU>(menu.GetHandle());
  ASSERT_EQ(modify.calls.size(), 2u);
  const auto& [menu1, position1, flags1, id1, text1] = modify.calls[0];
  EXPECT_EQ(std::make_tuple(menu1, position1, flags1, id1),
            std::make_tuple(handle, UINT{0}, UINT{1024}, UINT_PTR{310}));
  const auto& [menu2, position2, flags2, id2, text2] = modify.calls[1];
  EXPECT_EQ(std::make_tuple(menu2, position2, flags2),
            std::make_tuple(handle, UINT{0}, UINT{1040}));
  EXPECT_EQ(reinterpret_cast<HMENU>(id2), GetSubMenu(handle, 0));
  EXPECT_EQ(texts, (std::vector<std::string>{"Deep", "Deep"}));
  DestroyMenu(handle);
}

TEST_F(WindowsCalls, ThePositionsAskedForGoOnePastTheLastAndStartAtTheSecondInTheBarsMenus) {
  GetMenuStringASpy text;
  const vm::LoadedMenuBar bar(129);
  std::vector<UINT> positions;
  for (const auto& [menu, position, buffer, size, flags] : text.calls) {
    positions.push_back(position);
    EXPECT_EQ(size, 256);
    EXPECT_EQ(flags, 1024u);
  }
  EXPECT_EQ(positions, (std::vector<UINT>{0, 1}))
      << "the bar's entry; then behind the menu's only one";
  text.calls.clear();
  CP_Menu menu(201, "", false, false);
  positions.clear();
  for (const auto& call : text.calls)
    positions.push_back(std::get<1>(call));
  EXPECT_EQ(positions, (std::vector<UINT>{0, 1, 2}));
}

TEST_F(WindowsCalls, ACopiedMenuIsAppendedEntryByEntryAndTheLoadedOneDestroyed) {
  LoadMenuASpy load;
  HMENU loaded = nullptr;
  load.replacement = [&](HINSTANCE module, const char* name) {
    loaded = load.PassOn(module, name);
    return loaded;
  };
  CreatePopupMenuSpy create;
  AppendMenuASpy append;
  DestroyMenuSpy destroy;
  CP_Menu menu(201, "Title", true, true);
  EXPECT_EQ(vm::SpiedCalls(),
            (Calls{"LoadMenuA", "CreatePopupMenu", "AppendMenuA", "AppendMenuA", "DestroyMenu"}));
  EXPECT_EQ(std::get<2>(append.calls[0]), 301u);
  EXPECT_EQ(std::get<2>(append.calls[1]), 302u);
  EXPECT_EQ(std::get<0>(destroy.calls[0]), loaded);
  EXPECT_FALSE(IsMenu(loaded));
  DestroyMenu(reinterpret_cast<HMENU>(menu.GetHandle()));
}

TEST_F(WindowsCalls, ATopLevelMenuIsAppendedAsAPopup) {
  const vm::LoadedMenuBar bar(129);
  AppendMenuASpy append;
  const os::MenuHandle handle = os::CreatePopup();
  bar->AddTopLevel(new CP_Menu(7, "Tools", handle, true));
  ASSERT_EQ(append.calls.size(), 1u);
  const auto& [menu, flags, id, text] = append.calls[0];
  EXPECT_EQ(menu, reinterpret_cast<HMENU>(gMenuBarHandle));
  EXPECT_EQ(flags, 16u);
  EXPECT_EQ(id, reinterpret_cast<UINT_PTR>(handle));
}

TEST_F(WindowsCalls, TheBarIsDrawnInItsWindow) {
  DrawMenuBarSpy draw;
  draw.replacement = [](HWND) { return TRUE; };
  const vm::TestWindow window([](const os::Message&) {});
  const vm::LoadedMenuBar bar(129);
  CP_M_Commander::UpdateMenus();
  EXPECT_TRUE(draw.calls.empty());
  bar->AttachToWindow(window.Handle());
  CP_M_Commander::UpdateMenus();
  ASSERT_EQ(draw.calls.size(), 1u);
  EXPECT_EQ(std::get<0>(draw.calls[0]), reinterpret_cast<HWND>(window.Handle()));
}

TEST_F(WindowsCalls, TheColourDialogIsAskedWithItsRecord) {
  ChooseColorASpy choose;
  int calls = 0;
  choose.replacement = [&](CHOOSECOLORA* record) -> BOOL {
    EXPECT_EQ(record->lStructSize, 36u);
    EXPECT_EQ(record->hwndOwner, nullptr);
    EXPECT_EQ(record->hInstance, nullptr);
    EXPECT_EQ(record->rgbResult, 0u) << "always opens on black";
    EXPECT_EQ(record->Flags, 0x11u);
    EXPECT_EQ(record->lCustData, 0);
    EXPECT_NE(record->lpfnHook, nullptr);
    EXPECT_EQ(record->lpTemplateName, nullptr);
    if (++calls == 1) {
      EXPECT_EQ(record->lpCustColors[3], 0u);
      record->lpCustColors[3] = 0x123456;
    } else {
      EXPECT_EQ(record->lpCustColors[3], 0x123456u) << "the custom colours are kept";
    }
    record->rgbResult = 64u | 128u << 8 | 255u << 16;
    return calls == 1;
  };
  CP_RGBColor result(1, 2, 3);
  EXPECT_TRUE(ChooseColorDialog("Select Color", CP_RGBColor(9, 9, 9), result));
  EXPECT_EQ(result, CP_RGBColor(16384, 32768, 65280));
  EXPECT_FALSE(ChooseColorDialog("Select Color", CP_RGBColor(9, 9, 9), result));
  EXPECT_EQ(result, CP_RGBColor(16384, 32768, 65280)) << "cancelled";
}

TEST_F(WindowsCalls, TheColourDialogsHookCentresTheDialogAndLeavesTheRestToIt) {
  ChooseColorASpy choose;
  SetWindowPosSpy move;
  move.replacement = [](HWND, HWND, int, int, int, int, UINT) { return TRUE; };
  choose.replacement = [&](CHOOSECOLORA* record) -> BOOL {
    const vm::TestWindow dialog([](const os::Message&) {});
    const HWND window = reinterpret_cast<HWND>(dialog.Handle());
    EXPECT_EQ(record->lpfnHook(window, WM_COMMAND, 1, 0), 0u);
    EXPECT_EQ(record->lpfnHook(window, WM_DESTROY, 0, 0), 0u);
    EXPECT_TRUE(move.calls.empty());
    record->lpfnHook(window, WM_INITDIALOG, 0, 0);
    RECT own;
    RECT desktop;
    GetWindowRect(window, &own);
    GetWindowRect(GetDesktopWindow(), &desktop);
    EXPECT_EQ(move.calls.size(), 1u);
    const auto& [moved, behind, x, y, width, height, flags] = move.calls.at(0);
    EXPECT_EQ(moved, window);
    EXPECT_EQ(x, (desktop.left + desktop.right) / 2 - (own.right - own.left) / 2);
    EXPECT_EQ(y, (desktop.top + desktop.bottom) / 3 - (own.bottom - own.top) / 3);
    EXPECT_TRUE((flags & SWP_NOSIZE) != 0);
    return FALSE;
  };
  CP_RGBColor result;
  ChooseColorDialog("", CP_RGBColor(), result);
}

}  // namespace
