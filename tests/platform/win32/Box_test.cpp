#include "platform/os/Box.h"

#include <windows.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "foundation/CP_DebugAssert.h"
#include "foundation/ReportHooks.h"
#include "support/UnexpectedReports.h"

namespace {

// Plays the user at the next message box of this thread: looks at it as it comes up, then presses a
// button.
class User {
 public:
  explicit User(int button)
      : mHook(SetWindowsHookExA(WH_CBT, Watch, nullptr, GetCurrentThreadId())) {
    sButton = button;
    sSeen = {};
  }
  User(const User&) = delete;
  User& operator=(const User&) = delete;
  ~User() { UnhookWindowsHookEx(mHook); }

  struct Seen {
    int boxes = 0;
    std::string title;
    std::string text;
    std::vector<int> buttons;
    bool icon = false;
    bool hasOwner = true;
  };
  static Seen sSeen;

 private:
  static BOOL CALLBACK Look(HWND child, LPARAM) {
    char kind[32] = "";
    GetClassNameA(child, kind, sizeof kind);
    const LONG style = GetWindowLongA(child, GWL_STYLE);
    if (std::string(kind) == "Button" && (style & WS_VISIBLE) != 0) {
      sSeen.buttons.push_back(GetDlgCtrlID(child));
    } else if (std::string(kind) == "Static" && (style & SS_TYPEMASK) == SS_ICON) {
      const auto icon = reinterpret_cast<HICON>(SendMessageA(child, STM_GETICON, 0, 0));
      sSeen.icon = icon != nullptr && icon == LoadIconA(nullptr, IDI_ERROR);
    } else if (std::string(kind) == "Static" || std::string(kind) == "Edit") {
      char text[512] = "";
      SendMessageA(child, WM_GETTEXT, sizeof text, reinterpret_cast<LPARAM>(text));
      sSeen.text += text;
    }
    return TRUE;
  }

  static LRESULT CALLBACK Watch(int code, WPARAM window, LPARAM data) {
    const HWND box = reinterpret_cast<HWND>(window);
    char kind[32] = "";
    if (code == HCBT_ACTIVATE && GetClassNameA(box, kind, sizeof kind) != 0 &&
        std::string(kind) == "#32770") {
      ++sSeen.boxes;
      char title[128] = "";
      GetWindowTextA(box, title, sizeof title);
      sSeen.title = title;
      sSeen.hasOwner = GetWindow(box, GW_OWNER) != nullptr;
      EnumChildWindows(box, Look, 0);
      PostMessageA(box, WM_COMMAND, static_cast<WPARAM>(sButton), 0);
    }
    return CallNextHookEx(nullptr, code, window, data);
  }

  static int sButton;
  HHOOK mHook;
};

User::Seen User::sSeen;
int User::sButton = 0;

class Box : public testing::Test {
 protected:
  void SetUp() override {
    const bool isWine =
        GetProcAddress(GetModuleHandleA("ntdll.dll"), "wine_get_version") != nullptr;
    if (isWine && std::getenv("DISPLAY") == nullptr) {
      GTEST_SKIP() << "Wine has no display to show a box on; run this under xvfb-run";
    }
  }
};

TEST_F(Box, ShowsTextAndTitleWithOkAndCancelAndTheErrorIconAndNoOwner) {
  const User user(IDOK);
  EXPECT_EQ(os::ShowBox("Some text", "Some title", 17), 1);
  EXPECT_EQ(User::sSeen.boxes, 1);
  EXPECT_EQ(User::sSeen.title, "Some title");
  EXPECT_EQ(User::sSeen.text, "Some text");
  EXPECT_EQ(User::sSeen.buttons, std::vector<int>({IDOK, IDCANCEL}));
  EXPECT_TRUE(User::sSeen.icon);
  EXPECT_FALSE(User::sSeen.hasOwner);
}

TEST_F(Box, CancelIsTheAnswer2) {
  const User user(IDCANCEL);
  EXPECT_EQ(os::ShowBox("Some text", "Some title", 17), 2);
}

TEST_F(Box, AnAssertionReallyAppears) {
  const vm::ReportHooks saved = vm::CurrentReportHooks();
  vm::CurrentReportHooks() = vm::HooksAtStart();
  const User user(IDOK);
  CP_DebugAssert("CP_File", 256, "IsOpen()");
  vm::CurrentReportHooks() = saved;
  EXPECT_EQ(User::sSeen.boxes, 1);
  EXPECT_EQ(User::sSeen.title, "CP_Debug");
  EXPECT_EQ(User::sSeen.text, "Assertion thrown\rError: IsOpen()\rFile: CP_File\rLine:256");
}

}  // namespace
