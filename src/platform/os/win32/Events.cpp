#include "platform/os/Events.h"

#include <windows.h>

namespace os {
namespace {

Message FromPlatform(const MSG& msg) {
  Message message;
  message.window = reinterpret_cast<WindowHandle>(msg.hwnd);
  message.message = msg.message;
  message.firstParameter = static_cast<uint32_t>(msg.wParam);
  message.secondParameter = static_cast<uint32_t>(msg.lParam);
  message.time = msg.time;
  message.x = msg.pt.x;
  message.y = msg.pt.y;
  return message;
}

MSG ToPlatform(const Message& message) {
  MSG msg{};
  msg.hwnd = reinterpret_cast<HWND>(message.window);
  msg.message = message.message;
  msg.wParam = static_cast<WPARAM>(message.firstParameter);
  msg.lParam = static_cast<LPARAM>(message.secondParameter);
  msg.time = message.time;
  msg.pt.x = message.x;
  msg.pt.y = message.y;
  return msg;
}

}  // namespace

bool TakeMessage(Message& out) {
  MSG msg;
  if (PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE) == 0)
    return false;
  out = FromPlatform(msg);
  return true;
}

bool WaitForMessage(Message& out) {
  MSG msg;
  // Below 0 is an error, after which waiting again would not end.
  const BOOL answer = GetMessageA(&msg, nullptr, 0, 0);
  if (answer < 0)
    return false;
  out = FromPlatform(msg);
  return answer > 0;
}

void TranslateAndDeliver(const Message& message) {
  const MSG msg = ToPlatform(message);
  TranslateMessage(&msg);
  DispatchMessageA(&msg);
}

void SleepMilliseconds(uint32_t milliseconds) {
  Sleep(milliseconds);
}

void ShowArrowCursor() {
  // The A form of the name, whichever form the resource macros have.
  SetCursor(LoadCursorA(nullptr, reinterpret_cast<const char*>(IDC_ARROW)));
}

}  // namespace os
