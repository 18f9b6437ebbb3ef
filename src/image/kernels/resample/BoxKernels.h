#pragma once

#include <cstddef>
#include <cstdint>

#include "image/pixels/PxViews.h"

// Means of rectangles of pixels. A mean is the float sum times the float 1 / count, truncated, per
// channel.
namespace vm {

// Largest count whose sums are exact in single precision however they are added: 255 * count <
// 2^24.
inline constexpr int64_t kExactBoxPixels = 65793;

// Sums over the rows of a box, one per source column; channels in storage order. The narrow form
// holds up to kNarrowRows rows.
struct ChannelSums {
  uint32_t channel[4];
};
struct alignas(8) NarrowSums {
  uint16_t channel[4];
};
inline constexpr int64_t kNarrowRows = 257;

// sums[i] += pixels[i].
void AddPixels(const PxRgbaBytes* pixels, ChannelSums* sums, size_t count);
// sums[i] += pixel * times.
void AddPixelTimes(const PxRgbaBytes& pixel, uint32_t times, ChannelSums* sums, size_t count);

// sums[i] = the sum of rows[0][i] to rows[rowCount - 1][i], for 1 to kNarrowRows rows.
void SumPixels(const PxRgbaBytes* const* rows, size_t rowCount, NarrowSums* sums, size_t count);

// The columns of one target pixel.
struct ColumnRange {
  int32_t first;
  int32_t count;
};

// Means of neighbouring sums, each over `rows` pixels, for ranges of 1 column or more that hold at
// most kExactBoxPixels pixels.
void MeansOfSums(const ChannelSums* sums, const ColumnRange* ranges, size_t count, int64_t rows,
                 PxRgbaBytes* out);
void MeansOfSums(const NarrowSums* sums, const ColumnRange* ranges, size_t count, int64_t rows,
                 PxRgbaBytes* out);

// Sums in single precision, one pixel after the other: for boxes so large that the order counts.
class FloatSums {
 public:
  void Add(const PxRgbaBytes* pixels, size_t count);
  // The same pixel `times` times, in far fewer steps: between two powers of two every addition
  // rounds alike.
  void AddRepeated(const PxRgbaBytes& pixel, int64_t times);
  // `count` is at least 1.
  PxRgbaBytes Mean(int64_t count) const;

 private:
  float mChannel[4] = {};
};

}  // namespace vm
