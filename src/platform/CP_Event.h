#pragma once

#include <cstdint>

#include "platform/CP_ValueTypes.h"
#include "platform/os/Events.h"

// One message of the platform's queue. All zero until it is filled.
class CP_Event {
 public:
  CP_Event() = default;
  virtual ~CP_Event() = default;

  // The cursor position is cut to 16 bits.
  void CopyFromPlatform(const os::Message& inMessage);

  // Writes all fields back; of the two copies of the message code the second one counts.
  void CopyToPlatform(os::Message& outMessage) const;

  uint32_t fMessage = 0;
  uint32_t fMessageCopy = 0;
  uint32_t fTime = 0;
  os::WindowHandle fWindow = nullptr;
  CP_Point fPosition;
  uint32_t fFirstParameter = 0;
  uint32_t fSecondParameter = 0;
};
