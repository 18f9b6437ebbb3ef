#pragma once

#include <array>
#include <vector>

#include "image/kernels/resample/CubicKernels.h"
#include "image/RgbaSampler.h"
#include "image/ViewRows.h"

namespace vm {

// Modes 3, 4 and 5: a kernel over 4 by 4 source pixels, whose coordinates are limited to the
// source. Source rows that the next target row needs again are kept: reduced along x already for
// the float kernels, whose rows go first, as bytes for the fixed one, whose columns do.
class KernelSampler final : public RgbaSampler {
 public:
  KernelSampler(const ZvImage& from, const Scaling& scaling);

  Stretch SetColumns(const Stretch& columns) override;
  bool Row(int32_t y, PxRgbaBytes* out) override;

 private:
  // A piece of the gathered row: source columns `first` to `last`, which may lie outside the
  // source.
  struct Piece {
    int32_t first;
    int32_t last;
    int32_t place;  // of the first one in the gathered row
  };
  struct KeptRow {
    int32_t sourceY = -1;
    std::vector<PxRgbaBytes> bytes;   // fixed kernel: gathered
    std::vector<FloatPixel> reduced;  // float kernels: one per target column
  };

  void PlanTaps(const Stretch& columns);
  void Gather(int32_t sourceY, PxRgbaBytes* out);
  void Fill(KeptRow& row, int32_t sourceY);
  std::array<const KeptRow*, 4> RowsAround(int32_t wholeY);

  ViewReader mReader;
  const int32_t mWidth;
  const int32_t mHeight;
  const Scaling mScaling;

  // Per target column.
  std::vector<int32_t> mTaps;
  std::vector<CubicWeights> mCubic;
  std::vector<BlendCoefficients> mBlend;
  std::vector<SplitWeights> mFixed;

  std::vector<Piece> mPieces;
  size_t mGathered = 0;  // pixels in a gathered row
  std::array<KeptRow, 4> mKept;
  std::vector<PxRgbaBytes> mBytes;
};

}  // namespace vm
