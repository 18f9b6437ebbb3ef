#pragma once

#include <cstdint>

#include "foundation/ZvGeometry.h"

namespace vm {

// One axis of a scaling transfer, and the ways from a target coordinate to its source. Extents are
// the far side minus the near side, one less than a count of pixels.
struct ScaleAxis {
  int64_t targetStart;   // near side of the target rectangle
  int64_t sourceStart;   // near side of the source rectangle
  int64_t sourceExtent;  // may be 0 or negative
  int64_t targetExtent;  // at least 1 wherever a target pixel exists
};

// A target extent of 0 reads as 1.
ScaleAxis MakeScaleAxis(int32_t fromNear, int32_t fromFar, int32_t toNear, int32_t toFar);

// (extent * offset) / target extent in integers.
// REQUIRED: the source rectangle's origin isn't added; callers get the source's own corner.
int32_t NearestSource(const ScaleAxis& axis, int32_t target);

// offset * extent * (1 / target extent) in single precision, in this order. Without the origin,
// like NearestSource.
float FloatSource(const ScaleAxis& axis, int32_t target);

// A float position cut to a whole pixel and what is left. Positions below 0 have a negative
// fraction.
struct SplitPosition {
  int32_t whole;
  float fraction;
};
SplitPosition Split(float position);

// Source pixels under one target pixel: `first` to `end - 1`. None when end <= first.
struct SourceSpan {
  int64_t first;
  int64_t end;

  int64_t Count() const { return end > first ? end - first : 0; }
};

// From start + offset * extent / target extent, in single precision, to the same for the next
// target pixel. An end that isn't above its start becomes start + 1; then no end is above `limit`.
// All pixels from the truncated start while below the end belong to the span.
SourceSpan BoxSource(const ScaleAxis& axis, bool addOrigin, int32_t limit, int32_t target);

}  // namespace vm
