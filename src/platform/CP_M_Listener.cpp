#include "platform/CP_M_Listener.h"

#include <cstdint>

CP_M_Listener::CP_M_Listener() : fBroadcasters(new std::list<CP_M_Broadcaster*>) {}

CP_M_Listener::~CP_M_Listener() {
  if (fBroadcasters == nullptr)
    return;
  if ((reinterpret_cast<uintptr_t>(fBroadcasters) & 1) != 0)
    return;
  delete fBroadcasters;
}
