#include "platform/os/Regions.h"

#include <windows.h>

namespace os {
namespace {

HRGN ToPlatform(RegionHandle region) {
  return reinterpret_cast<HRGN>(region);
}

}  // namespace

RegionHandle CreateRectRegion(const RegionBox& box) {
  return reinterpret_cast<RegionHandle>(CreateRectRgn(box.left, box.top, box.right, box.bottom));
}

void SetRectRegion(RegionHandle region, const RegionBox& box) {
  SetRectRgn(ToPlatform(region), box.left, box.top, box.right, box.bottom);
}

RegionBox GetRegionBox(RegionHandle region) {
  RECT rect{};
  if (GetRgnBox(ToPlatform(region), &rect) == 0)
    return {};
  return {rect.left, rect.top, rect.right, rect.bottom};
}

void DestroyRegion(RegionHandle region) {
  DeleteObject(ToPlatform(region));
}

}  // namespace os
