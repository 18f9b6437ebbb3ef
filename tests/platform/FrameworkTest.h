#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "platform/CP_Application.h"
#include "platform/CP_Globals.h"
#include "platform/CP_Menu.h"
#include "platform/CP_MenuBar.h"
#include "platform/os/Clipboard.h"
#include "platform/os/Events.h"

namespace vm {

// Restores the framework's globals, so that a failing test doesn't bring down the next one.
class FrameworkTest : public testing::Test {
 protected:
  void TearDown() override {
    gApplication = nullptr;
    gEventDispatcher = nullptr;
    gTarget = nullptr;
    gMenuBar = nullptr;
    gClipboard = nullptr;
    gMenuBarHandle = nullptr;
    gLoadsMenuBars = false;
    gIdlers = nullptr;
    gDesktop = nullptr;
    gDialogOwner = nullptr;
  }
};

// A window that nobody sees; its procedure gets the messages above kTestMessage.
inline constexpr uint32_t kTestMessage = 0x0400;

class TestWindow {
 public:
  explicit TestWindow(std::function<void(const os::Message&)> procedure);
  TestWindow(const TestWindow&) = delete;
  TestWindow& operator=(const TestWindow&) = delete;
  ~TestWindow();

  os::WindowHandle Handle() const { return mHandle; }
  void Post(uint32_t message, uint32_t firstParameter = 0, uint32_t secondParameter = 0) const;

 private:
  os::WindowHandle mHandle;
};

void PostQuit(uint32_t exitCode);

// Takes out whatever the system itself has put into the queue.
void EmptyQueue();

// The menu resources that TestMenus.rc lists; on Windows the test program carries them.
void DefineTestMenus();

// Puts bytes onto the clipboard as another program would.
void PutForeignData(uint32_t format, const std::vector<uint8_t>& bytes);

// Takes a menu bar down and with it, against the framework's habit of leaving them behind, its
// menus.
void DestroyMenuBar();

// Its class has no virtual destructor, and so isn't deleted as such.
void DestroyClipboard();

// A menu bar from resource `number`.
class LoadedMenuBar {
 public:
  explicit LoadedMenuBar(int16_t number) {
    DefineTestMenus();
    gLoadsMenuBars = true;
    new CP_MenuBar;
    gMenuBar->LoadFromResource(number);
  }
  LoadedMenuBar(const LoadedMenuBar&) = delete;
  LoadedMenuBar& operator=(const LoadedMenuBar&) = delete;
  ~LoadedMenuBar() { DestroyMenuBar(); }

  CP_MenuBar* operator->() const { return gMenuBar; }
};

// The text of an entry at a position that counts from 0.
std::string EntryText(os::MenuHandle menu, int32_t position);

// One letter for each entry: E enabled, d disabled, - a separator.
std::string EntryStates(const CP_Menu& menu);

}  // namespace vm
