#include "image/ZvPixelLoops.h"

#include "image/kernels/rows/ChannelRows.h"
#include "image/ViewRows.h"

namespace vm {
namespace {

ZvRect AreaOf(int32_t width, int32_t height) {
  return {0, 0, width - 1, height - 1};
}

// The rule itself, stretch by stretch: fetch with GetRgba64, change, store with PutRgba64.
template <class Change>
void ForEachRgba64(ZvImage& image, int32_t width, int32_t height, Change&& change) {
  ViewReader reader(image);
  ViewWriter writer(image);
  ForEachRewrite(image, AreaOf(width, height), [&](int32_t x, int32_t y, int32_t count) {
    PxRgba64 pixels[kViewPixels];
    reader.Rgba64(x, y, count, pixels);
    change(std::span<PxRgba64>(pixels, static_cast<size_t>(count)));
    writer.Rgba64(x, y, count, pixels);
  });
}

// `image` as runs if its records are P, which the change can then be made in.
template <class P>
RunImage* RunsOf(ZvImage& image) {
  RunImage* const runs = AsRunImage(&image);
  return runs != nullptr && &runs->Record() == &RecordOpsOf<P>() ? runs : nullptr;
}

// `change` gets each run of records. False, and nothing done, if the image holds others.
template <class P, class Change>
bool ForEachRowOf(ZvImage& image, int32_t width, int32_t height, Change&& change) {
  RunImage* const runs = RunsOf<P>(image);
  if (runs == nullptr)
    return false;
  RunWriter writer(*runs);
  for (int32_t y = 0; y < height; ++y) {
    for (int32_t x = 0; x < width;) {
      const Run run = writer.At(x, y, width - x);
      change(std::span<P>(reinterpret_cast<P*>(run.pixels), static_cast<size_t>(run.count)));
      x += run.count;
    }
  }
  return true;
}

}  // namespace

void SwapChannels02(ZvImage& image, int32_t width, int32_t height) {
  const auto swap = [](auto row) { SwapRedAndBlueRow(row); };
  // Widening and narrowing a byte gives it back, so these records swap in place.
  if (ForEachRowOf<PxRgbaBytes>(image, width, height, swap) ||
      ForEachRowOf<PxRgbBytes>(image, width, height, swap) ||
      ForEachRowOf<PxRgba64>(image, width, height, swap) ||
      ForEachRowOf<PxRgb48>(image, width, height, swap))
    return;
  ForEachRgba64(image, width, height, swap);
}

void ScaleChannels(ZvImage& image, int32_t width, int32_t height, int32_t channels) {
  const auto scale = [channels](std::span<PxRgba64> row) { ScaleRow(row, channels); };
  if (!ForEachRowOf<PxRgba64>(image, width, height, scale))
    ForEachRgba64(image, width, height, scale);
}

void InvertChannels(ZvImage& image, int32_t width, int32_t height) {
  RunImage* const runs = AsRunImage(&image);
  if (runs == nullptr) {
    ForEachRgba64(image, width, height, [](std::span<PxRgba64> row) { InvertRow(row); });
    return;
  }
  ForEachRun(*runs, AreaOf(width, height), [runs](Run run, int32_t, int32_t) {
    runs->Record().invert(run.pixels, static_cast<size_t>(run.count));
  });
}

void HalveChannels(ZvImage& image, int32_t width, int32_t height) {
  const auto halve = [](auto row) { HalveRow(row); };
  if (ForEachRowOf<PxRgba64>(image, width, height, halve) ||
      ForEachRowOf<PxRgb48>(image, width, height, halve))
    return;
  ForEachRgba64(image, width, height, halve);
}

}  // namespace vm
