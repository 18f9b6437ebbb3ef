// The colour picker service through the system's dialog, seen at the program's import table, and
// the host's message loop over the real queue.

#include <windows.h>

#include <commdlg.h>

#include <gtest/gtest.h>

#include "host/FilterRecord.h"
#include "host/ZVHostPhotoshop.h"
#include "image/pixels/PxViews.h"
#include "platform/win32/ImportSpy.h"

namespace {

VM_SPY(ChooseColorA);
VM_SPY(GetMessageA);
VM_SPY(TranslateMessage);
VM_SPY(DispatchMessageA);

TEST(PickColorFromTheDialog, AHostWithoutAPickerShowsTheDialogWhichLeavesTheAlpha) {
  ChooseColorASpy choose;
  choose.replacement = [](CHOOSECOLORA* record) -> BOOL {
    EXPECT_EQ(record->rgbResult, 0u) << "opens on black every time";
    EXPECT_EQ(record->hwndOwner, nullptr);
    record->rgbResult = RGB(0x12, 0x80, 0xFF);
    return TRUE;
  };
  FilterRecord record{};
  int16_t result = 0;
  ZVHostPhotoshop host(nullptr, &record, &result);
  for (int i = 0; i < 2; ++i) {
    PxRgba64 color{0xFFFF, 2, 3, 0x1234};
    EXPECT_FALSE(host.PickColor(&color)) << "also when a colour was chosen";
    EXPECT_EQ(color, (PxRgba64{0x1200, 0x8000, 0xFF00, 0x1234}));
  }
  EXPECT_EQ(choose.calls.size(), 2u);
}

TEST(PickColorFromTheDialog, CancelLeavesTheColourAsItWas) {
  ChooseColorASpy choose;
  choose.replacement = [](CHOOSECOLORA* record) -> BOOL {
    record->rgbResult = RGB(1, 2, 3);
    return FALSE;
  };
  ZVHost host(nullptr);
  PxRgba64 color{10, 20, 30, 40};
  EXPECT_FALSE(host.PickColor(&color));
  EXPECT_EQ(color, (PxRgba64{10, 20, 30, 40}));
}

TEST(HostMessageLoop, DeliversUntilTheQuitMessageAndYieldsItsCode) {
  MSG message;
  while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE) != 0) {
  }
  ZVHost host(nullptr);
  GetMessageASpy get;
  TranslateMessageSpy translate;
  DispatchMessageASpy dispatch;
  PostThreadMessageA(GetCurrentThreadId(), WM_APP, 1, 2);
  PostThreadMessageA(GetCurrentThreadId(), WM_APP + 1, 3, 4);
  PostQuitMessage(42);
  EXPECT_EQ(host.RunMessageLoop(), 42);
  EXPECT_EQ(get.calls.size(), 3u);
  EXPECT_EQ(translate.calls.size(), 2u);
  EXPECT_EQ(dispatch.calls.size(), 2u);
  const auto& [out, window, first, last] = get.calls[0];
  EXPECT_EQ(window, nullptr);
  EXPECT_EQ(first, 0u);
  EXPECT_EQ(last, 0u);
}

}  // namespace
