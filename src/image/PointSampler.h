#pragma once

#include <optional>
#include <vector>

#include "image/RgbaSampler.h"
#include "image/ViewRows.h"

namespace vm {

// Modes 1 and 2: one source position for each target pixel. Mode 2 hands a whole position to the
// bilinear read, so that the fraction is always 0; for some pixel types even that isn't the pixel
// itself.
class PointSampler final : public RgbaSampler {
 public:
  PointSampler(const ZvImage& from, const Scaling& scaling);

  Stretch SetColumns(const Stretch& columns) override;
  bool Row(int32_t y, PxRgbaBytes* out) override;

  // The same row in the other views, and as the source's own records (not for images of other
  // implementations).
  void Row(int32_t y, PxRgbBytes* out);
  void Row(int32_t y, uint8_t* out);
  void Row(int32_t y, PxRgba64* out);
  const uint8_t* Records(int32_t y);

  // Whether Records gives the stored pixels themselves.
  bool IsExact() const { return mExact; }
  // The source row of a target row.
  int32_t SourceRow(int32_t y) const;

 private:
  void MixNeighbours(int32_t y);
  template <class PerPixel>
  void EachPixel(int32_t y, PerPixel&& perPixel) const;

  const ZvImage& mImage;
  const RunImage* mRuns;
  const Scaling mScaling;
  const bool mBilinear;
  const bool mExact;
  std::optional<RunReader> mReader;
  std::vector<int32_t> mColumns;  // source column of each target column
  std::vector<int32_t> mNextColumns;
  alignas(16) uint8_t mRecords[kMaxColumns * kMaxRecordBytes];
  std::vector<uint64_t> mScratch;
};

// Writes the records at `columns` of row y side by side.
void GatherRecords(RunReader& reader, const int32_t* columns, int32_t count, int32_t y, size_t size,
                   uint8_t* out);

}  // namespace vm
