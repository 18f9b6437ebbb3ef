#include "platform/FrameworkTest.h"

#include <windows.h>

#include <map>

namespace vm {
namespace {

std::map<HWND, std::function<void(const os::Message&)>>& Procedures() {
  static std::map<HWND, std::function<void(const os::Message&)>> procedures;
  return procedures;
}

LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM first, LPARAM second) {
  const auto found = Procedures().find(window);
  if (message < kTestMessage || found == Procedures().end()) {
    return DefWindowProcA(window, message, first, second);
  }
  os::Message seen;
  seen.window = reinterpret_cast<os::WindowHandle>(window);
  seen.message = message;
  seen.firstParameter = static_cast<uint32_t>(first);
  seen.secondParameter = static_cast<uint32_t>(second);
  found->second(seen);
  return 0;
}

}  // namespace

TestWindow::TestWindow(std::function<void(const os::Message&)> procedure) {
  static const ATOM windowClass = [] {
    WNDCLASSA description{};
    description.lpfnWndProc = Procedure;
    description.hInstance = GetModuleHandleA(nullptr);
    description.lpszClassName = "vm_test_window";
    return RegisterClassA(&description);
  }();
  const HWND window = CreateWindowA(MAKEINTATOM(windowClass), "", 0, 0, 0, 0, 0, HWND_MESSAGE,
                                    nullptr, GetModuleHandleA(nullptr), nullptr);
  EXPECT_NE(window, nullptr);
  Procedures()[window] = std::move(procedure);
  mHandle = reinterpret_cast<os::WindowHandle>(window);
}

TestWindow::~TestWindow() {
  const HWND window = reinterpret_cast<HWND>(mHandle);
  Procedures().erase(window);
  DestroyWindow(window);
}

void TestWindow::Post(uint32_t message, uint32_t firstParameter, uint32_t secondParameter) const {
  ASSERT_TRUE(PostMessageA(reinterpret_cast<HWND>(mHandle), message, firstParameter,
                           static_cast<LPARAM>(secondParameter)));
}

void PostQuit(uint32_t exitCode) {
  PostQuitMessage(static_cast<int>(exitCode));
}

void DefineTestMenus() {}

}  // namespace vm
