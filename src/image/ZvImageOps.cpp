#include "image/ZvImageOps.h"

#include <algorithm>

#include "image/ImageReports.h"
#include "image/ViewRows.h"

namespace {

// Halved towards zero.
int32_t Middle(int32_t first, int32_t last) {
  return static_cast<int32_t>((int64_t{first} + last) / 2);
}

}  // namespace

bool IsSolidMask(const ZvImage* mask, const ZvRect* rect) {
  if (!CP_Check(mask != nullptr, vm::kReportImageOps, vm::kLineSolidMask, "mask != nil"))
    return false;
  ZvRect area = mask->Bounds();
  if (rect != nullptr)
    area.Intersect(*rect);
  if (area.IsEmpty())
    return true;

  // Most masks that aren't solid fail at a corner or in the middle.
  const ZvPoint probes[] = {{area.fLeft, area.fTop},
                            {area.fRight, area.fTop},
                            {area.fLeft, area.fBottom},
                            {area.fRight, area.fBottom},
                            {Middle(area.fLeft, area.fRight), Middle(area.fTop, area.fBottom)}};
  for (const ZvPoint& probe : probes) {
    uint8_t byte = 0;
    mask->GetByte(byte, probe.x, probe.y);
    if (byte != 255)
      return false;
  }

  vm::ViewReader reader(*mask);
  for (int32_t y = area.fTop; y <= area.fBottom; ++y) {
    for (int32_t x = area.fLeft; x <= area.fRight;) {
      uint8_t bytes[vm::kViewPixels];
      const int32_t count = std::min(area.fRight - x + 1, vm::kViewPixels);
      reader.Bytes(x, y, count, bytes);
      if (!std::all_of(bytes, bytes + count, [](uint8_t byte) { return byte == 255; }))
        return false;
      x += count;
    }
  }
  return true;
}

void MatchMaskSize(ZvImage* mask, const ZvImage* reference) {
  if (mask == nullptr || reference == nullptr)
    return;
  if (reference->Width() <= mask->Width() && reference->Height() <= mask->Height())
    return;
  constexpr PxRgba64 kSolid{0xFFFF, 0xFFFF, 0xFFFF, 0xFFFF};
  const PxRgba64 margin = IsSolidMask(mask, nullptr) ? kSolid : kRgba64Clear;
  mask->Resize(std::max(mask->Width(), reference->Width()),
               std::max(mask->Height(), reference->Height()), true, kResampleNone, margin);
}
