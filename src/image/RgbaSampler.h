#pragma once

#include <cstdint>
#include <memory>

#include "image/kernels/resample/ScaleAxis.h"
#include "image/ZvImage.h"

namespace vm {

// How far a scaling transfer's target lies from its source, and what is read.
struct Scaling {
  ScaleAxis x;
  ScaleAxis y;
  int32_t mode;  // a resampling mode
};

// Positions on the target, from one to the next without a gap. Empty when count is 0.
struct Stretch {
  int32_t first;
  int32_t count;
};

// Computes the source pixels for rows of a target, in PxRgbaBytes. What depends on the column alone
// (offsets, fractions, weights) is worked out once per stretch of columns; the caller then asks for
// any rows of that stretch.
class RgbaSampler {
 public:
  virtual ~RgbaSampler() = default;

  // Columns that this sampler takes at once, at most kMaxColumns.
  virtual int32_t PreferredColumns() const { return kMaxColumns; }
  // Takes the first unbroken part of the columns that has anything to read, and returns it; count 0
  // if none has.
  virtual Stretch SetColumns(const Stretch& columns) = 0;
  // The pixels of that part in target row y; false if the row has nothing to read.
  virtual bool Row(int32_t y, PxRgbaBytes* out) = 0;

  static constexpr int32_t kMaxColumns = 512;
};

// Null for a mode that transfers nothing. `copying` tells the box of a copy from that of a blend:
// only the copy adds the source rectangle's origin, and the blend stops before the last column and
// row.
std::unique_ptr<RgbaSampler> MakeRgbaSampler(const ZvImage& from, const Scaling& scaling,
                                             bool copying);

}  // namespace vm
