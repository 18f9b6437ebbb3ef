// The thread's message queue, the clock of the event loop, and the cursor.
#pragma once

#include <cstdint>

#include "platform/os/Handles.h"

namespace os {

struct Message {
  WindowHandle window = nullptr;
  uint32_t message = 0;
  uint32_t firstParameter = 0;
  uint32_t secondParameter = 0;
  uint32_t time = 0;  // milliseconds
  int32_t x = 0;      // cursor, screen coordinates
  int32_t y = 0;

  friend bool operator==(const Message&, const Message&) = default;
};

// Takes the next message of any window and number out of the queue. False when there is none;
// `out` is then untouched.
bool TakeMessage(Message& out);

// As `TakeMessage`, but waits for a message. False for the quit message, which is stored in `out`
// too, and when no message can come any more.
bool WaitForMessage(Message& out);

// Translates key strokes and calls the window's procedure.
void TranslateAndDeliver(const Message& message);

void SleepMilliseconds(uint32_t milliseconds);

void ShowArrowCursor();

}  // namespace os
