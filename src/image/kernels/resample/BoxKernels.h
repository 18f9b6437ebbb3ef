#pragma once

#include <cstddef>
#include <cstdint>

#include "image/pixels/PxViews.h"

// Means of rectangles of pixels. A mean is the float sum times the float 1 / count, truncated, per channel.
namespace vm {

// Largest count whose sums are exact in single precision however they are added: 255 * count < 2^24.
inline constexpr int64_t kExactBoxPixels = 65793;

struct alignas(16) ChannelSums {
    uint32_t channel[4];  // in storage order
};

// sums[i] += pixels[i].
void AddPixels(const PxRgbaBytes* pixels, ChannelSums* sums, size_t count);
// sums[i] += pixel * times.
void AddPixelTimes(const PxRgbaBytes& pixel, uint32_t times, ChannelSums* sums, size_t count);

// The mean of `count` neighbouring sums, each over `rows` pixels. count * rows is 1 to kExactBoxPixels.
PxRgbaBytes MeanOfSums(const ChannelSums* sums, size_t count, int64_t rows);

// Sums in single precision, one pixel after the other: for boxes so large that the order counts.
class FloatSums {
public:
    void Add(const PxRgbaBytes* pixels, size_t count);
    // The same pixel `times` times, in far fewer steps: between two powers of two every addition rounds
    // alike.
    void AddRepeated(const PxRgbaBytes& pixel, int64_t times);
    // `count` is at least 1.
    PxRgbaBytes Mean(int64_t count) const;

private:
    float mChannel[4] = {};
};

}  // namespace vm
