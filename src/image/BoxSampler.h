#pragma once

#include <vector>

#include "image/kernels/resample/BoxKernels.h"
#include "image/RgbaSampler.h"
#include "image/ViewRows.h"

namespace vm {

// Mode 7: the mean of the source pixels under each target pixel. The rows of a box are summed
// column by column first, and the columns then shared out to the target pixels. Boxes whose sums
// single precision can't hold exactly are summed pixel by pixel instead.
//
// A source rectangle may begin far outside the source. What lies where the image can't hold
// anything is counted, not read.
class BoxSampler final : public RgbaSampler {
 public:
  BoxSampler(const ZvImage& from, const Scaling& scaling, bool copying);

  int32_t PreferredColumns() const override { return mPreferredColumns; }
  Stretch SetColumns(const Stretch& columns) override;
  bool Row(int32_t y, PxRgbaBytes* out) override;

 private:
  SourceSpan SpanX(int32_t target) const;
  SourceSpan SpanY(int32_t target) const;
  void SumColumns(const SourceSpan& rows);
  void SumFewRows(const SourceSpan& rows);
  bool AllInside(const SourceSpan& rows) const;
  PxRgbaBytes LargeMean(const SourceSpan& columns, const SourceSpan& rows);

  const ZvImage& mImage;
  ViewReader mReader;
  const Scaling mScaling;
  const bool mCopying;
  // What the image can hold. Outside lies mOutside.
  int64_t mStoredLeft, mStoredTop, mStoredRight, mStoredBottom;
  PxRgbaBytes mOutside;

  int32_t mPreferredColumns;
  std::vector<SourceSpan> mSpans;    // of the columns that have any
  std::vector<ColumnRange> mRanges;  // the same from mSumsStart on
  int64_t mLongest = 0;              // pixels in the longest of them
  int64_t mSumsStart = 0;            // source column of the first sum
  size_t mSummed = 0;                // columns that are summed side by side; 0: each box by itself
  std::vector<ChannelSums> mSums;
  std::vector<NarrowSums> mNarrowSums;
  std::vector<PxRgbaBytes> mRow;  // as many rows of mSummed pixels as were needed
};

}  // namespace vm
