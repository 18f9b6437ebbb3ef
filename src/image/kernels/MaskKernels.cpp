#include "image/kernels/MaskKernels.h"

namespace vm {
namespace {

uint8_t BlendChannel(int32_t dst, int32_t src, int32_t w) {
  return static_cast<uint8_t>((src * w + dst * (255 - w)) >> 8);
}

}  // namespace

void ScaleMask(uint8_t* mask, size_t count, float opacity) {
  if (!(opacity < kFullOpacity))
    return;
  for (size_t i = 0; i < count; ++i)
    mask[i] = ByteFromFloat(static_cast<float>(mask[i]) * opacity);
}

void BlendByMask(PxRgbBytes* dst, const PxRgbBytes* src, const uint8_t* weights, size_t count,
                 bool storeSolid) {
  for (size_t i = 0; i < count; ++i) {
    const int32_t w = weights[i];
    if (storeSolid && w == 255)
      dst[i] = src[i];
    else
      dst[i] = {BlendChannel(dst[i].blue, src[i].blue, w),
                BlendChannel(dst[i].green, src[i].green, w),
                BlendChannel(dst[i].red, src[i].red, w)};
  }
}

void ScaleAlphaByMask(PxRgba64* pixels, const uint8_t* mask, size_t count, float opacity) {
  for (size_t i = 0; i < count; ++i) {
    const float t = static_cast<float>(mask[i]) * (1.0F / 255) * opacity;
    pixels[i].alpha = WordFromFloat(static_cast<float>(pixels[i].alpha) * t);
  }
}

}  // namespace vm
