#pragma once

#include <cstdint>

#include "platform/os/Regions.h"

// Owns a rectangular platform region. Right and bottom are exclusive.
class CP_Region {
 public:
  // Empty.
  CP_Region();
  CP_Region(int16_t inLeft, int16_t inTop, int16_t inRight, int16_t inBottom);
  CP_Region(const CP_Region&) = delete;
  CP_Region& operator=(const CP_Region&) = delete;
  virtual ~CP_Region();

  void SetRect(int16_t inLeft, int16_t inTop, int16_t inRight, int16_t inBottom);

  os::RegionHandle GetHandle() const { return fRegion; }
  // The smallest box around the region, all 0 when it is empty.
  os::RegionBox GetBox() const { return os::GetRegionBox(fRegion); }

 private:
  os::RegionHandle fRegion;
};
