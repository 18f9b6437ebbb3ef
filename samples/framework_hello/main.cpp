// The smallest useful program on the application framework: a window, a menu bar, three commands.

#include <windows.h>

#include "platform/CP_Application.h"
#include "platform/CP_Globals.h"
#include "platform/CP_MenuBar.h"

namespace {

constexpr int32_t kGreet = 100;

class Hello : public CP_Application {
 public:
  // The menu bar stands and this object is the target.
  void StartUp() override {
    WNDCLASSA window{};
    window.lpfnWndProc = Procedure;
    window.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1);
    window.lpszClassName = "Hello";
    RegisterClassA(&window);
    mWindow = CreateWindowA("Hello", "Hello", WS_OVERLAPPEDWINDOW, 50, 50, 300, 150, nullptr,
                            nullptr, nullptr, nullptr);
    gMenuBar->AttachToWindow(reinterpret_cast<os::WindowHandle>(mWindow));
    ShowWindow(mWindow, SW_SHOW);
  }

  // Commands that aren't ours go to the base: it knows 9 (quit) and 18 (information).
  int32_t HandleCommand(int32_t command) override {
    if (command != kGreet)
      return CP_Application::HandleCommand(command);
    SetWindowTextA(mWindow, "Hello, world");
    return 0;
  }

  // Commands start disabled; whoever handles one enables it while it can be given.
  void UpdateCommandState(int32_t command) override {
    if (command != kGreet)
      return CP_Application::UpdateCommandState(command);
    gMenuBar->EnableCommand(command);
  }

  void ShowInformation() override { MessageBoxA(mWindow, "A greeting.", "About Hello", MB_OK); }

 private:
  // Nothing thrown may leave a callback of the system: the guard carries it to the event loop.
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM first, LPARAM second) {
    switch (message) {
      case WM_INITMENU:
        CP_GuardCallback([] { UpdateMenus(); });
        return 0;
      case WM_COMMAND:
        CP_GuardCallback([&] { gTarget->HandleCommand(LOWORD(first)); });
        return 0;
      case WM_CLOSE:
        CP_GuardCallback([] { gTarget->HandleCommand(kCP_CommandQuit); });
        return 0;
      default:
        return DefWindowProcA(window, message, first, second);
    }
  }

  HWND mWindow = nullptr;
};

}  // namespace

int main() {
  gLoadsMenuBars = true;
  Hello().Run();
  return 0;
}
