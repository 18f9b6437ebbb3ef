#include "platform/os/Regions.h"

#include <algorithm>
#include <map>

namespace os {
namespace {

struct Regions {
  std::map<RegionHandle, RegionBox> boxes;
  uintptr_t lastRegion = 0;
};

// Never destroyed: regions of static storage may go after any static of this file.
Regions& All() {
  static Regions* const regions = new Regions;
  return *regions;
}

RegionBox Normalized(const RegionBox& box) {
  const RegionBox normal{std::min(box.left, box.right), std::min(box.top, box.bottom),
                         std::max(box.left, box.right), std::max(box.top, box.bottom)};
  const bool empty = normal.left == normal.right || normal.top == normal.bottom;
  return empty ? RegionBox() : normal;
}

}  // namespace

RegionHandle CreateRectRegion(const RegionBox& box) {
  const auto handle = reinterpret_cast<RegionHandle>(++All().lastRegion);
  All().boxes[handle] = Normalized(box);
  return handle;
}

void SetRectRegion(RegionHandle region, const RegionBox& box) {
  const auto found = All().boxes.find(region);
  if (found != All().boxes.end())
    found->second = Normalized(box);
}

RegionBox GetRegionBox(RegionHandle region) {
  const auto found = All().boxes.find(region);
  return found == All().boxes.end() ? RegionBox() : found->second;
}

void DestroyRegion(RegionHandle region) {
  All().boxes.erase(region);
}

}  // namespace os
