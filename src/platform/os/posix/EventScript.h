#pragma once

#include <cstdint>
#include <functional>

#include "platform/os/Events.h"

// The windows and the message queue of a system without a window system: a program, or a test,
// makes windows and posts messages itself.
namespace os::posix {

using WindowProcedure = std::function<void(const Message&)>;

WindowHandle MakeWindow(WindowProcedure procedure);
// Messages to the window are dropped from now on.
void DestroyWindow(WindowHandle window);

void PostEvent(const Message& message);
// Ends `WaitForMessage`, once the messages before are gone; the code is its first parameter.
inline constexpr uint32_t kQuitMessage = 0x12;
void PostQuit(uint32_t exitCode);

// What the event loop asked for since the program started.
uint32_t SleepCount();
uint32_t SleptMilliseconds();
uint32_t ArrowCursorCount();

}  // namespace os::posix
