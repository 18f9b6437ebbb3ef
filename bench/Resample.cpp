// Scaling and blending 24-megapixel images, beside a memcpy of the bytes that the target takes and
// beside the way that asks for one pixel per view call. Counters: nanoseconds per target pixel,
// bytes written per second.

#include <benchmark/benchmark.h>

#include <cstring>
#include <memory>
#include <vector>

#include "foundation/ZvSmartPtr.h"
#include "image/ZvTiledImage.h"
#include "image/ZvTypedImage.h"

namespace {

constexpr int32_t kWidth = 6000;
constexpr int32_t kHeight = 4000;

using Rgba = ZvTiledImage<PxRgbaBytes>;

// Smooth gradients with a fine texture, opaque for the most part.
template <class Image>
ZvSmartPtr<Image> Photo(int32_t width, int32_t height) {
  auto image = ZvSmartPtr<Image>::Adopt(new Image(width, height));
  uint32_t noise = 1;
  for (int32_t y = 0; y < height; ++y) {
    for (int32_t x = 0; x < width; ++x) {
      noise = noise * 1664525 + 1013904223;
      const auto grain = static_cast<int32_t>(noise >> 28);
      image->PutRgba(PxRgbaBytes::Of(static_cast<uint8_t>(x * 200 / width + grain),
                                     static_cast<uint8_t>(y * 200 / height + grain),
                                     static_cast<uint8_t>((x + y) * 100 / (width + height) + grain),
                                     static_cast<uint8_t>(grain == 0 ? 128 : 255)),
                     x, y);
    }
  }
  return image;
}

const Rgba& LargePhoto() {
  static const auto photo = Photo<Rgba>(kWidth, kHeight);
  return *photo;
}
const ZvTypedImage<PxRgbaBytes>& LargeRowPhoto() {
  static const auto photo = Photo<ZvTypedImage<PxRgbaBytes>>(kWidth, kHeight);
  return *photo;
}

void CountPixels(benchmark::State& state, int64_t pixels, int64_t bytesPerPixel) {
  const double total = static_cast<double>(pixels) * static_cast<double>(state.iterations());
  state.counters["ns_per_pixel"] =
      benchmark::Counter(total * 1e-9, benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
  state.SetBytesProcessed(static_cast<int64_t>(total) * bytesPerPixel);
}

// A short run, as the tests make it, takes a corner only.
ZvRect Clip(const benchmark::State& state, int32_t width, int32_t height) {
  return state.max_iterations <= 1
             ? ZvRect(0, 0, std::min(width, 256) - 1, std::min(height, 256) - 1)
             : ZvRect(0, 0, width - 1, height - 1);
}

int64_t Area(const ZvRect& rect) {
  return int64_t{rect.fRight - rect.fLeft + 1} * (rect.fBottom - rect.fTop + 1);
}

void Memcpy(benchmark::State& state) {
  const int64_t pixels = state.range(0);
  std::vector<uint32_t> from(static_cast<size_t>(pixels), 1);
  std::vector<uint32_t> to(from.size());
  for (auto _ : state) {
    std::memcpy(to.data(), from.data(), from.size() * 4);
    benchmark::ClobberMemory();
  }
  CountPixels(state, pixels, 4);
}

template <class Source>
void Scale(benchmark::State& state, const Source& from, int32_t width, int32_t height) {
  const auto to = ZvSmartPtr<Source>::Adopt(new Source(width, height));
  const auto mode = static_cast<int32_t>(state.range(0));
  const ZvRect clip = Clip(state, width, height);
  to->CopyScaled(&from, from.Bounds(), to->Bounds(), mode, &clip);  // makes the tiles
  for (auto _ : state)
    to->CopyScaled(&from, from.Bounds(), to->Bounds(), mode, &clip);
  CountPixels(state, Area(clip), 4);
}

void ScaleToAThird(benchmark::State& state) {
  Scale(state, LargePhoto(), kWidth / 3, kHeight / 3);
}
void ScaleTwiceUp(benchmark::State& state) {
  Scale(state, LargePhoto(), kWidth * 2, kHeight * 2);
}
void ScaleRowsToAThird(benchmark::State& state) {
  Scale(state, LargeRowPhoto(), kWidth / 3, kHeight / 3);
}
void ScaleRowsTwiceUp(benchmark::State& state) {
  Scale(state, LargeRowPhoto(), kWidth * 2, kHeight * 2);
}

// The same pixels by one view call for each sample: what a caller without the operation would
// write.
void PerViewCall(benchmark::State& state, int32_t width, int32_t height) {
  const ZvImage& from = LargePhoto();
  const auto target = ZvSmartPtr<ZvImage>::Adopt(new Rgba(width, height));
  ZvImage& to = *target;
  const auto mode = static_cast<int32_t>(state.range(0));
  // An eighth of the picture is enough to tell the time of a pixel.
  ZvRect clip = Clip(state, width, height);
  clip.fBottom = std::max(clip.fBottom / 8, 1);
  const float stepX = static_cast<float>(from.Width() - 1) / static_cast<float>(width - 1);
  const float stepY = static_cast<float>(from.Height() - 1) / static_cast<float>(height - 1);
  for (auto _ : state) {
    for (int32_t y = 0; y <= clip.fBottom; ++y) {
      for (int32_t x = 0; x <= clip.fRight; ++x) {
        const float sx = static_cast<float>(x) * stepX;
        const float sy = static_cast<float>(y) * stepY;
        PxRgbaBytes pixel;
        if (mode == kResampleBox) {
          int32_t sums[4] = {};
          int32_t count = 0;
          for (auto j = static_cast<int32_t>(sy); static_cast<float>(j) < sy + stepY; ++j) {
            for (auto i = static_cast<int32_t>(sx); static_cast<float>(i) < sx + stepX; ++i) {
              from.GetRgba(pixel, i, j);
              sums[0] += pixel.red;
              sums[1] += pixel.green;
              sums[2] += pixel.blue;
              sums[3] += pixel.alpha;
              ++count;
            }
          }
          pixel = PxRgbaBytes::Of(
              static_cast<uint8_t>(sums[0] / count), static_cast<uint8_t>(sums[1] / count),
              static_cast<uint8_t>(sums[2] / count), static_cast<uint8_t>(sums[3] / count));
        } else if (mode == kResampleNearest) {
          from.GetRgba(pixel, static_cast<int32_t>(sx), static_cast<int32_t>(sy));
        } else if (mode == kResampleBilinear) {
          from.SampleRgba(pixel, static_cast<float>(static_cast<int32_t>(sx)),
                          static_cast<float>(static_cast<int32_t>(sy)));
        } else {
          from.SampleKernel(pixel, sx, sy, mode);
        }
        to.PutRgba(pixel, x, y);
      }
    }
  }
  CountPixels(state, Area(clip), 4);
}

void PerViewCallToAThird(benchmark::State& state) {
  PerViewCall(state, kWidth / 3, kHeight / 3);
}
void PerViewCallTwiceUp(benchmark::State& state) {
  PerViewCall(state, kWidth * 2, kHeight * 2);
}

template <class P>
void BlendThroughMask(benchmark::State& state) {
  const auto from = Photo<ZvTiledImage<P>>(kWidth, kHeight);
  const auto to = Photo<ZvTiledImage<P>>(kWidth, kHeight);
  const auto mask =
      ZvSmartPtr<ZvTiledImage<PxAlphaByte>>::Adopt(new ZvTiledImage<PxAlphaByte>(kWidth, kHeight));
  for (int32_t y = 0; y < kHeight; ++y) {
    for (int32_t x = 0; x < kWidth; ++x)
      mask->PutByte(static_cast<uint8_t>(x + y), x, y);
  }
  const ZvRect clip = Clip(state, kWidth, kHeight);
  for (auto _ : state)
    to->BlendMasked(from.Get(), mask.Get(), from->Bounds(), {0, 0}, 0.5F, &clip);
  CountPixels(state, Area(clip), to->BytesPerPixel());
}

void BlendWithoutMask(benchmark::State& state) {
  const auto to = Photo<Rgba>(kWidth, kHeight);
  const ZvRect clip = Clip(state, kWidth, kHeight);
  for (auto _ : state)
    to->BlendMasked(&LargePhoto(), nullptr, to->Bounds(), {0, 0}, 0.5F, &clip);
  CountPixels(state, Area(clip), 4);
}

void BlendToAThird(benchmark::State& state) {
  const auto to = Photo<Rgba>(kWidth / 3, kHeight / 3);
  const ZvRect clip = Clip(state, to->Width(), to->Height());
  for (auto _ : state)
    to->BlendScaled(&LargePhoto(), LargePhoto().Bounds(), to->Bounds(), 0.5F,
                    static_cast<int32_t>(state.range(0)), &clip);
  CountPixels(state, Area(clip), 4);
}

void AdjustToAThird(benchmark::State& state) {
  const auto to = Photo<Rgba>(kWidth / 3, kHeight / 3);
  const ZvRect clip = Clip(state, to->Width(), to->Height());
  for (auto _ : state)
    to->CopyAdjusted(&LargePhoto(), LargePhoto().Bounds(), to->Bounds(), 20, 1.2F, 5,
                     static_cast<int32_t>(state.range(0)), &clip);
  CountPixels(state, Area(clip), 4);
}

void PaintThroughMask(benchmark::State& state) {
  const auto to = Photo<Rgba>(kWidth, kHeight);
  const auto mask =
      ZvSmartPtr<ZvTiledImage<PxAlphaByte>>::Adopt(new ZvTiledImage<PxAlphaByte>(kWidth, kHeight));
  for (int32_t y = 0; y < kHeight; ++y) {
    for (int32_t x = 0; x < kWidth; ++x)
      mask->PutByte(static_cast<uint8_t>(x + y), x, y);
  }
  const ZvRect clip = Clip(state, kWidth, kHeight);
  for (auto _ : state)
    to->PaintMasked({0x8000, 0x4000, 0x2000, 0xFFFF}, mask.Get(), to->Bounds(), {0, 0}, 1.0F,
                    &clip);
  CountPixels(state, Area(clip), 4);
}

#define ALL_MODES DenseRange(1, 5)->Arg(7)->ArgName("mode")->Unit(benchmark::kMillisecond)

BENCHMARK(Memcpy)
    ->Arg(2000 * 1333)
    ->Arg(6000 * 4000)
    ->ArgName("pixels")
    ->Unit(benchmark::kMillisecond);
BENCHMARK(ScaleToAThird)->ALL_MODES;
BENCHMARK(ScaleTwiceUp)->ALL_MODES;
BENCHMARK(ScaleRowsToAThird)->ALL_MODES;
BENCHMARK(ScaleRowsTwiceUp)->ALL_MODES;
BENCHMARK(PerViewCallToAThird)->ALL_MODES;
BENCHMARK(PerViewCallTwiceUp)->ALL_MODES;
BENCHMARK(BlendToAThird)->ALL_MODES;
BENCHMARK(AdjustToAThird)->Arg(1)->Arg(4)->ArgName("mode")->Unit(benchmark::kMillisecond);
BENCHMARK(BlendThroughMask<PxRgbBytes>)->Unit(benchmark::kMillisecond);
BENCHMARK(BlendThroughMask<PxRgbaBytes>)->Unit(benchmark::kMillisecond);
BENCHMARK(BlendWithoutMask)->Unit(benchmark::kMillisecond);
BENCHMARK(PaintThroughMask)->Unit(benchmark::kMillisecond);

}  // namespace
