// Filling, outlining, inverting and moving.

#include <cstdlib>
#include <cstring>

#include "image/ImageReports.h"
#include "image/pixels/PxRecords.h"
#include "image/RunImage.h"

namespace vm {
namespace {

void FillRect(RunImage& image, const ZvRect& rect, const uint8_t* record) {
  const size_t size = image.Record().size;
  ForEachRun(image, rect, [&](Run run, int32_t, int32_t) {
    FillRecords(run.pixels, record, static_cast<size_t>(run.count), size);
  });
}

// One area of a DrawRect: each pixel is stored or XORed; with a mask only where the mask's byte is
// 0, which it isn't any more afterwards.
void DrawArea(RunImage& image, const ZvRect& rect, const uint8_t* colour, bool xorMode,
              ZvImage* mask) {
  const size_t size = image.Record().size;
  const auto draw = [&](uint8_t* records, int32_t count) {
    if (xorMode)
      XorRecords(records, colour, static_cast<size_t>(count), size);
    else
      FillRecords(records, colour, static_cast<size_t>(count), size);
  };
  if (mask == nullptr) {
    ForEachRun(image, rect, [&](Run run, int32_t, int32_t) { draw(run.pixels, run.count); });
    return;
  }
  RunWriter writer(image);
  for (int64_t y64 = rect.fTop; y64 <= rect.fBottom; ++y64) {
    const auto y = static_cast<int32_t>(y64);
    image.CheckRow(y);
    for (int64_t x64 = rect.fLeft; x64 <= rect.fRight; ++x64) {
      const auto x = static_cast<int32_t>(x64);
      uint8_t touched;
      mask->GetByte(touched, x, y);
      if (touched != 0)
        continue;
      mask->PutByte(255, x, y);
      draw(writer.At(x, y, 1).pixels, 1);
    }
  }
}

}  // namespace

void RunImage::ClearRect(const ZvRect& rect) {
  ZvRect area = rect;
  area.Intersect(Bounds());
  constexpr uint8_t kZero[kMaxRecordBytes] = {};
  FillRect(*this, area, IsTiled() ? static_cast<TiledImage*>(this)->DefaultPixel() : kZero);
}

void RunImage::Invert() {
  ForEachRun(*this, Bounds(), [&](Run run, int32_t, int32_t) {
    mRecord->invert(run.pixels, static_cast<size_t>(run.count));
  });
}

void RunImage::Offset(const ZvPoint& delta) {
  if (delta == ZvPoint(0, 0))
    return;
  const size_t size = mRecord->size;
  const auto width = static_cast<size_t>(mWidth);
  // One row at a time, so that columns can't overwrite each other; rows from the side that is free.
  const std::unique_ptr<uint8_t, decltype(&std::free)> row(
      static_cast<uint8_t*>(std::calloc(width, size)), std::free);
  if (row == nullptr)
    return;
  const int64_t firstX = std::clamp<int64_t>(delta.x, 0, mWidth);
  const int64_t endX = std::clamp<int64_t>(int64_t{mWidth} + delta.x, 0, mWidth);
  RunReader reader(*this);
  RunWriter writer(*this);
  for (int32_t i = 0; i < mHeight; ++i) {
    const int32_t y = delta.y > 0 ? mHeight - 1 - i : i;
    const int64_t fromY = int64_t{y} - delta.y;
    std::memset(row.get(), 0, width * size);
    if (fromY >= 0 && fromY < mHeight) {
      for (int64_t x = firstX; x < endX;) {
        const ConstRun run = reader.At(static_cast<int32_t>(x - delta.x),
                                       static_cast<int32_t>(fromY), static_cast<int32_t>(endX - x));
        std::memcpy(row.get() + static_cast<size_t>(x) * size, run.pixels,
                    static_cast<size_t>(run.count) * size);
        x += run.count;
      }
    }
    for (int32_t x = 0; x < mWidth;) {
      const Run run = writer.At(x, y, mWidth - x);
      std::memcpy(run.pixels, row.get() + static_cast<size_t>(x) * size,
                  static_cast<size_t>(run.count) * size);
      x += run.count;
    }
    writer.Store();
  }
}

void RunImage::FillClip(const PxRgba64& colour) {
  CP_Check(mClippingRect.fBottom != mHeight, ReportName(), kLineFillClip,
           "mClippingRect.fBottom != this->Height()");
  ZvRect area = mClippingRect;
  area.Intersect(Bounds());
  // REQUIRED: all of the image filled with the all-zero colour is Clear, also for pixel types whose
  // narrowed form of that colour isn't zero. A cleared tiled image holds no tiles.
  if (colour == kRgba64Clear && area == Bounds()) {
    Clear();
    return;
  }
  alignas(8) uint8_t record[kMaxRecordBytes + 6];
  Narrow(colour, record);
  FillRect(*this, area, record);
}

void RunImage::DrawRect(const ZvRect& rect, const PxRgba64& colour, bool filled, bool xorMode,
                        ZvImage* mask) {
  CP_Check(mClippingRect.fBottom != mHeight, ReportName(), kLineDrawRect,
           "mClippingRect.fBottom != this->Height()");
  ZvRect area = rect;
  area.Intersect(mClippingRect);
  if (area.IsEmpty())
    return;
  alignas(8) uint8_t record[kMaxRecordBytes + 6];
  Narrow(colour, record);
  if (filled) {
    DrawArea(*this, area, record, xorMode, mask);
    return;
  }
  // Each edge in its full length: in XOR mode without a mask the corners are drawn twice.
  if (area.fTop == rect.fTop)
    DrawArea(*this, {area.fLeft, area.fTop, area.fRight, area.fTop}, record, xorMode, mask);
  if (area.fBottom == rect.fBottom)
    DrawArea(*this, {area.fLeft, area.fBottom, area.fRight, area.fBottom}, record, xorMode, mask);
  if (area.fLeft == rect.fLeft)
    DrawArea(*this, {area.fLeft, area.fTop, area.fLeft, area.fBottom}, record, xorMode, mask);
  if (area.fRight == rect.fRight)
    DrawArea(*this, {area.fRight, area.fTop, area.fRight, area.fBottom}, record, xorMode, mask);
}

}  // namespace vm
