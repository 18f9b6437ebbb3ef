#include "platform/os/Events.h"

#include <chrono>
#include <deque>
#include <map>
#include <thread>
#include <utility>

#include "platform/os/posix/EventScript.h"

namespace os {
namespace {

struct Desk {
  std::deque<Message> queue;
  // Handles are numbers, so that one that has gone is recognised and never stands for another.
  std::map<WindowHandle, posix::WindowProcedure> windows;
  uintptr_t lastWindow = 0;
  uint32_t sleepCount = 0;
  uint32_t sleptMilliseconds = 0;
  uint32_t arrowCursorCount = 0;
};

Desk& TheDesk() {
  static Desk desk;
  return desk;
}

}  // namespace

namespace posix {

WindowHandle MakeWindow(WindowProcedure procedure) {
  Desk& desk = TheDesk();
  const auto window = reinterpret_cast<WindowHandle>(++desk.lastWindow);
  desk.windows[window] = std::move(procedure);
  return window;
}

void DestroyWindow(WindowHandle window) {
  TheDesk().windows.erase(window);
}

void PostEvent(const Message& message) {
  TheDesk().queue.push_back(message);
}

void PostQuit(uint32_t exitCode) {
  Message quit;
  quit.message = kQuitMessage;
  quit.firstParameter = exitCode;
  PostEvent(quit);
}

uint32_t SleepCount() {
  return TheDesk().sleepCount;
}

uint32_t SleptMilliseconds() {
  return TheDesk().sleptMilliseconds;
}

uint32_t ArrowCursorCount() {
  return TheDesk().arrowCursorCount;
}

}  // namespace posix

bool TakeMessage(Message& out) {
  std::deque<Message>& queue = TheDesk().queue;
  if (queue.empty())
    return false;
  out = queue.front();
  queue.pop_front();
  return true;
}

bool WaitForMessage(Message& out) {
  // There is one thread, so nobody could post while it waits.
  return TakeMessage(out) && out.message != posix::kQuitMessage;
}

void TranslateAndDeliver(const Message& message) {
  const auto found = TheDesk().windows.find(message.window);
  if (found == TheDesk().windows.end())
    return;
  const posix::WindowProcedure procedure = found->second;  // the window may go in the call
  procedure(message);
}

void SleepMilliseconds(uint32_t milliseconds) {
  ++TheDesk().sleepCount;
  TheDesk().sleptMilliseconds += milliseconds;
  std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

void ShowArrowCursor() {
  ++TheDesk().arrowCursorCount;
}

}  // namespace os
