#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>

#include "image/pixels/PxRecords.h"
#include "image/RunImage.h"

namespace vm {

// Reads stretches of a row through the views, run by run for the images of this library and pixel
// by pixel through the virtual operations for any other. `count` may be any number of pixels.
class ViewReader {
 public:
  explicit ViewReader(const ZvImage& image);

  void Rgba(int32_t x, int32_t y, int32_t count, PxRgbaBytes* out);
  void Rgb(int32_t x, int32_t y, int32_t count, PxRgbBytes* out);
  void Bytes(int32_t x, int32_t y, int32_t count, uint8_t* out);
  void Rgba64(int32_t x, int32_t y, int32_t count, PxRgba64* out);

 private:
  const ZvImage& mImage;
  const RunImage* mRuns;
  std::optional<RunReader> mReader;
};

// Writes stretches of a row through the views.
class ViewWriter {
 public:
  explicit ViewWriter(ZvImage& image);

  void Rgba(int32_t x, int32_t y, int32_t count, const PxRgbaBytes* in);
  void Bytes(int32_t x, int32_t y, int32_t count, const uint8_t* in);
  void Rgba64(int32_t x, int32_t y, int32_t count, const PxRgba64* in);

 private:
  ZvImage& mImage;
  RunImage* mRuns;
  std::optional<RunWriter> mWriter;
};

// Pixels that pass-through buffers on the stack hold.
inline constexpr int32_t kViewPixels = kTileSize;

// Calls `work(x, y, count)` for pieces of each row of `rect`, from the top left. A piece lies
// within one tile.
template <class Work>
void ForEachPiece(const ZvRect& rect, Work&& work) {
  for (int64_t y = rect.fTop; y <= rect.fBottom; ++y) {
    for (int64_t x = rect.fLeft; x <= rect.fRight;) {
      const auto left = static_cast<int32_t>(x);
      const int64_t count =
          std::min<int64_t>(rect.fRight - x + 1, kViewPixels - (left & kTileMask));
      work(left, static_cast<int32_t>(y), static_cast<int32_t>(count));
      x += count;
    }
  }
}

// As ForEachPiece, for work that reads and then rewrites each pixel of `image` through its views.
// The pixel by which an absent tile comes into being reads as the default pixel, those behind it as
// the zeros of a new tile, so that first pixel is a piece of its own.
template <class Work>
void ForEachRewrite(const ZvImage& image, const ZvRect& rect, Work&& work) {
  const auto* const tiled = dynamic_cast<const TiledImage*>(&image);
  ForEachPiece(rect, [&](int32_t x, int32_t y, int32_t count) {
    if (tiled == nullptr || tiled->Tiles().Find(x, y) != nullptr) {
      work(x, y, count);
      return;
    }
    work(x, y, 1);
    if (count > 1)
      work(x + 1, y, count - 1);
  });
}

}  // namespace vm
