#pragma once

#include <cstddef>
#include <cstdint>

#include "image/pixels/PxViews.h"

// Blends by one byte of coverage per pixel.
namespace vm {

// From here on an opacity counts as full.
inline constexpr float kFullOpacity = 0.99F;

// mask * opacity, truncated and kept to a byte; at full opacity the mask as it is.
void ScaleMask(uint8_t* mask, size_t count, float opacity);

// (src * w + dst * (255 - w)) >> 8 in each channel.
// REQUIRED: divides by 256 what is weighted by 255, so a weight of 0 darkens all but black by one.
// With `storeSolid` a weight of 255 stores the source instead.
void BlendByMask(PxRgbBytes* dst, const PxRgbBytes* src, const uint8_t* weights, size_t count,
                 bool storeSolid);

// Multiplies the alphas by mask * (1/255) * opacity, truncated.
void ScaleAlphaByMask(PxRgba64* pixels, const uint8_t* mask, size_t count, float opacity);

}  // namespace vm
