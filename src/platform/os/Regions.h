// Platform regions, as far as rectangles.
#pragma once

#include <cstdint>

#include "platform/os/Handles.h"

namespace os {

// Right and bottom are exclusive.
struct RegionBox {
  int32_t left = 0;
  int32_t top = 0;
  int32_t right = 0;
  int32_t bottom = 0;

  friend bool operator==(const RegionBox&, const RegionBox&) = default;
};

RegionHandle CreateRectRegion(const RegionBox& box);
void SetRectRegion(RegionHandle region, const RegionBox& box);
// The smallest box around the region; all 0 for an empty or missing one.
RegionBox GetRegionBox(RegionHandle region);
void DestroyRegion(RegionHandle region);

}  // namespace os
