#pragma once

#include <exception>

#include "platform/CP_M_EventHandlerAttachable.h"

class CP_Event;

// Hands events to the windows they are meant for. There is one dispatcher, `gEventDispatcher`.
class CP_M_EventDispatcher : public virtual CP_M_EventHandlerAttachable {
 public:
  // Becomes `gEventDispatcher`.
  CP_M_EventDispatcher();

  // Clears `gEventDispatcher`.
  virtual ~CP_M_EventDispatcher();
  // Does nothing and isn't called; it keeps the slot in front of DispatchEvent.
  virtual void DispatcherHook();
  // Translates the event and gives it to its window. Throws what a guarded callback
  // (CP_GuardCallback) of the window left behind.
  virtual void DispatchEvent(CP_Event& ioEvent);
};

// Keeps the exception that is being handled, unless one is waiting already, for the dispatcher to
// throw on once control is back from the platform. To be called from a catch block.
void CP_CarryException() noexcept;

// The body of a platform callback, such as a window procedure, goes in here. An exception can't
// travel through the platform's own frames; it is carried around them and leaves DispatchEvent, and
// so reaches the event loop like any other. Yields false when `body` threw.
template <class Body>
bool CP_GuardCallback(Body&& body) noexcept {
  try {
    body();
    return true;
  } catch (...) {
    CP_CarryException();
    return false;
  }
}
