#include "image/RgbaSampler.h"

#include <algorithm>

#include "image/BoxSampler.h"
#include "image/kernels/resample/CubicKernels.h"
#include "image/KernelSampler.h"
#include "image/PointSampler.h"

namespace vm {
namespace {

uint8_t RoundToByte(float value) {
  return static_cast<uint8_t>(LimitTo(TruncToInt32(value + 0.5F), 0, 255));
}

PxRgbaBytes BilinearPixel(const ZvImage& from, float x, float y) {
  const SplitPosition column = Split(x);
  const SplitPosition row = Split(y);
  PxRgbaBytes p[2][2];
  for (int32_t j = 0; j < 2; ++j) {
    for (int32_t i = 0; i < 2; ++i)
      from.GetRgba(p[j][i], WrappingSum(column.whole, i), WrappingSum(row.whole, j));
  }
  const auto mix = [&](uint8_t p00, uint8_t p10, uint8_t p01, uint8_t p11) {
    const float fx = column.fraction;
    const float fy = row.fraction;
    const float top = static_cast<float>(p00) * (1 - fx) + static_cast<float>(p10) * fx;
    const float bottom = static_cast<float>(p01) * (1 - fx) + static_cast<float>(p11) * fx;
    return RoundToByte(top * (1 - fy) + bottom * fy);
  };
  return {mix(p[0][0].blue, p[0][1].blue, p[1][0].blue, p[1][1].blue),
          mix(p[0][0].green, p[0][1].green, p[1][0].green, p[1][1].green),
          mix(p[0][0].red, p[0][1].red, p[1][0].red, p[1][1].red),
          mix(p[0][0].alpha, p[0][1].alpha, p[1][0].alpha, p[1][1].alpha)};
}

}  // namespace

std::unique_ptr<RgbaSampler> MakeRgbaSampler(const ZvImage& from, const Scaling& scaling,
                                             bool copying) {
  switch (scaling.mode) {
    case kResampleNearest:
    case kResampleBilinear:
      return std::make_unique<PointSampler>(from, scaling);
    case kResampleCubic:
    case kResampleCubicFixed:
    case kResampleCubicBlend:
      return std::make_unique<KernelSampler>(from, scaling);
    case kResampleBox:
      return std::make_unique<BoxSampler>(from, scaling, copying);
    default:
      return nullptr;
  }
}

}  // namespace vm

void ZvImage::SampleKernel(PxRgbaBytes& out, float x, float y, int32_t mode) const {
  using namespace vm;
  if (mode == kResampleNearest) {
    GetRgba(out, TruncToInt32(x + 0.5F), TruncToInt32(y + 0.5F));
    return;
  }
  if (mode == kResampleBilinear) {
    out = BilinearPixel(*this, x, y);
    return;
  }
  if (mode < kResampleCubic || mode > kResampleCubicBlend)
    return;
  const SplitPosition column = Split(x);
  const SplitPosition row = Split(y);
  KernelBlock block;
  for (int64_t j = 0; j < 4; ++j) {
    for (int64_t i = 0; i < 4; ++i) {
      const int64_t sourceX = std::clamp<int64_t>(int64_t{column.whole} - 1 + i, 0, mWidth - 1);
      const int64_t sourceY = std::clamp<int64_t>(int64_t{row.whole} - 1 + j, 0, mHeight - 1);
      GetRgba(block[j][i], static_cast<int32_t>(sourceX), static_cast<int32_t>(sourceY));
    }
  }
  if (mode == kResampleCubic)
    out = CubicPixel(block, column.fraction, row.fraction);
  else if (mode == kResampleCubicFixed)
    out = FixedCubicPixel(block, column.fraction, row.fraction);
  else
    out = CubicBlendPixel(block, column.fraction, row.fraction);
}
