// What an event handler can be asked about.
#pragma once

#include <cstdint>

#include "foundation/FourCharCode.h"

// An attachment with this code takes every event.
inline constexpr uint32_t kCP_EventAny = FourCC("EVan");
// A raw event of the loop. Data: CP_Event*.
inline constexpr uint32_t kCP_EventRaw = FourCC("EVev");
// A command by number is to be handled. Data: the number, see CP_CommandOfEventData.
inline constexpr uint32_t kCP_EventCommandNumber = FourCC("EVmc");
// The enabled state of a command is asked for. Data: the number.
inline constexpr uint32_t kCP_EventCommandState = FourCC("EVen");
// A command object is to be executed. Data: CP_Command*.
inline constexpr uint32_t kCP_EventCommandObject = FourCC("EVpc");

// A command number travels in the place of the data pointer.
inline void* CP_EventDataOfCommand(int32_t inCommandNumber) {
  return reinterpret_cast<void*>(static_cast<intptr_t>(inCommandNumber));
}
inline int32_t CP_CommandOfEventData(const void* inEventData) {
  return static_cast<int32_t>(reinterpret_cast<intptr_t>(inEventData));
}
