#pragma once

#include "image/ZvImage.h"

// Whole-image loops over pixels, row by row from the top, with the result of fetching each pixel
// with GetRgba64 (invert: in its own channels), changing it and storing it with PutRgba64, but run
// by run. `width` by `height` pixels from (0, 0).
namespace vm {

// Exchanges the first and the third channel of the 64-bit view.
void SwapChannels02(ZvImage& image, int32_t width, int32_t height);

// Each of the first `channels` (0 to 4) channels of the 64-bit view becomes the low 16 bits of
// trunc(c
// * 1.999), in double precision: no clamp.
void ScaleChannels(ZvImage& image, int32_t width, int32_t height, int32_t channels);

// Each colour channel, or ink, becomes its complement within the channel's width: 255 - c for
// bytes, 65535 - c for words. Alpha is left alone. Images of other implementations are inverted in
// their 64-bit view.
void InvertChannels(ZvImage& image, int32_t width, int32_t height);

// Each of the four channels of the 64-bit view becomes c >> 1.
void HalveChannels(ZvImage& image, int32_t width, int32_t height);

}  // namespace vm
