#include "platform/CP_Region.h"

CP_Region::CP_Region() : fRegion(os::CreateRectRegion({0, 0, 0, 0})) {}

CP_Region::CP_Region(int16_t inLeft, int16_t inTop, int16_t inRight, int16_t inBottom)
    : CP_Region() {
  SetRect(inLeft, inTop, inRight, inBottom);
}

CP_Region::~CP_Region() {
  os::DestroyRegion(fRegion);
}

void CP_Region::SetRect(int16_t inLeft, int16_t inTop, int16_t inRight, int16_t inBottom) {
  os::SetRectRegion(fRegion, {inLeft, inTop, inRight, inBottom});
}
