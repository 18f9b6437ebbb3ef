#pragma once

#include <cstdint>

#include "platform/CP_EventCodes.h"

// A piece of event handling that is hung onto an object at run time, in front of the object's own
// handling. The object owns it.
class CP_EventHandlerAttachment {
 public:
  // Listens to one code, or to all with kCP_EventAny.
  explicit CP_EventHandlerAttachment(uint32_t inEventCode) : fEventCode(inEventCode) {}
  CP_EventHandlerAttachment(const CP_EventHandlerAttachment&) = delete;
  CP_EventHandlerAttachment& operator=(const CP_EventHandlerAttachment&) = delete;

  virtual ~CP_EventHandlerAttachment() = default;
  // False when the default handling shall not happen. The type behind `ioEventData` follows from
  // the code, see CP_EventCodes.h.
  virtual bool HandleEvent(uint32_t inEventCode, void* ioEventData) = 0;

  uint32_t GetEventCode() const { return fEventCode; }

 private:
  uint32_t fEventCode;
};
