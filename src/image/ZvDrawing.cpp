// Lines, ovals and polygons.

#include <algorithm>
#include <cstring>

#include "image/ImageReports.h"
#include "image/kernels/drawing/Shapes.h"
#include "image/pixels/PxRecords.h"
#include "image/ViewRows.h"

namespace vm {
namespace {

// The mask of a drawing operation: which pixels are still free, asked and taken in one step.
// Coordinates are those of the target.
class DrawingMask {
 public:
  explicit DrawingMask(ZvImage& mask) : mMask(mask) {}

  // Takes those of `count` (at most kViewPixels) pixels that are free; outFree[i] tells which.
  void Take(int32_t x, int32_t y, int32_t count, bool* outFree) {
    uint8_t bytes[kViewPixels];
    ViewReader(mMask).Bytes(x, y, count, bytes);
    ViewWriter writer(mMask);
    constexpr uint8_t kTaken = 255;
    for (int32_t i = 0; i < count; ++i) {
      outFree[i] = bytes[i] == 0;
      if (outFree[i])
        writer.Bytes(x + i, y, 1, &kTaken);
    }
  }

  bool Take(int32_t x, int32_t y) {
    bool isFree;
    Take(x, y, 1, &isFree);
    return isFree;
  }

 private:
  ZvImage& mMask;
};

// Draws runs of pixels in one colour.
class RecordPainter final : public SpanPainter {
 public:
  RecordPainter(RunImage& image, const PxRgba64& colour, bool xorMode, ZvImage* mask)
      : mImage(image), mSize(image.Record().size), mXor(xorMode), mMask(mask), mWriter(image) {
    image.Narrow(colour, mColour);
  }

  void Paint(const Span* spans, size_t count) override {
    for (size_t i = 0; i < count; ++i) {
      mImage.CheckRow(spans[i].y);
      if (mMask == nullptr)
        Draw(spans[i]);
      else
        DrawFree(spans[i]);
    }
  }

 private:
  void Draw(const Span& span) {
    for (int32_t done = 0; done < span.count;) {
      const Run run = mWriter.At(span.x + done, span.y, span.count - done);
      const auto count = static_cast<size_t>(run.count);
      if (mXor)
        XorRecords(run.pixels, mColour, count, mSize);
      else if (count == 1)
        std::memcpy(run.pixels, mColour, mSize);
      else
        FillRecords(run.pixels, mColour, count, mSize);
      done += run.count;
    }
  }

  void DrawFree(const Span& span) {
    DrawingMask mask(*mMask);
    for (int32_t done = 0; done < span.count;) {
      const int32_t count = std::min(span.count - done, kViewPixels);
      bool isFree[kViewPixels];
      mask.Take(span.x + done, span.y, count, isFree);
      for (int32_t i = 0; i < count;) {
        int32_t n = 0;
        while (i + n < count && isFree[i + n])
          ++n;
        if (n > 0)
          Draw({span.x + done + i, span.y, n});
        i += n + 1;
      }
      mWriter.Store();
      done += count;
    }
  }

  RunImage& mImage;
  const size_t mSize;
  const bool mXor;
  ZvImage* const mMask;
  RunWriter mWriter;
  alignas(8) uint8_t mColour[16];
};

// Mixes one colour into pixels, each at its own share. The stored bits of XOR have no shares, so
// soft edges are mixed in XOR mode too.
class SoftPainter {
 public:
  SoftPainter(RunImage& image, const PxRgba64& colour, ZvImage* mask)
      : mImage(image), mRecord(image.Record()), mMask(mask), mWriter(image) {
    alignas(8) uint8_t record[16];
    image.Narrow(colour, record);
    FillRecords(mColours, record, kViewPixels, mRecord.size);
  }

  // At most kViewPixels.
  void Paint(const Span& span, const float* coverage) {
    mImage.CheckRow(span.y);
    bool isFree[kViewPixels];
    std::fill(isFree, isFree + span.count, true);
    if (mMask != nullptr)
      DrawingMask(*mMask).Take(span.x, span.y, span.count, isFree);
    for (int32_t i = 0; i < span.count;) {
      int32_t n = 1;
      while (i + n < span.count && coverage[i + n] == coverage[i] && isFree[i + n] == isFree[i])
        ++n;
      if (isFree[i])
        Mix(span.x + i, span.y, n, coverage[i]);
      i += n;
    }
    if (mMask != nullptr)
      mWriter.Store();
  }

 private:
  void Mix(int32_t x, int32_t y, int32_t count, float share) {
    for (int32_t done = 0; done < count;) {
      const Run run = mWriter.At(x + done, y, count - done);
      mRecord.mix255(run.pixels, mColours, static_cast<size_t>(run.count), share);
      done += run.count;
    }
  }

  RunImage& mImage;
  const RecordOps& mRecord;
  ZvImage* const mMask;
  RunWriter mWriter;
  alignas(16) uint8_t mColours[kViewPixels * kMaxRecordBytes];
};

void CheckClip(const RunImage& image, const ZvRect& clip, int16_t line) {
  CP_Check(clip.fBottom != image.Height(), image.ReportName(), line,
           "mClippingRect.fBottom != this->Height()");
}

}  // namespace

void RunImage::DrawLine(const ZvPoint& from, const ZvPoint& to, const PxRgba64& colour,
                        bool xorMode, ZvImage* mask, int32_t dash) {
  CheckClip(*this, mClippingRect, kLineDrawLine);
  RecordPainter painter(*this, colour, xorMode, mask);
  SpanBatch spans(painter);
  LineSpans(from, to, mClippingRect, dash, spans);
  spans.Flush();
}

void RunImage::DrawOval(const ZvRect& rect, const PxRgba64& colour, bool filled, bool xorMode,
                        ZvImage* mask) {
  CheckClip(*this, mClippingRect, kLineDrawOval);
  RecordPainter painter(*this, colour, xorMode, mask);
  SpanBatch spans(painter);
  OvalSpans(rect, mClippingRect, filled, spans);
  spans.Flush();
}

void RunImage::DrawPolygon(int32_t count, const ZvPoint* points, const PxRgba64& colour,
                           bool filled, bool xorMode, bool skipFirst, bool clampToImage,
                           bool closed, int32_t dash, float feather, ZvImage* mask,
                           const ZvRect* clip) {
  CheckClip(*this, mClippingRect, kLineDrawPolygon);
  if (count <= 0 || points == nullptr)
    return;
  ZvRect area = mClippingRect;
  if (clip != nullptr)
    area.Intersect(*clip);
  if (filled && !NearlyEqual(feather, 0.0F, 0.01F)) {
    SoftPainter painter(*this, colour, mask);
    FeatheredSpans(count, points, area, feather,
                   [&](const Span& span, const float* coverage) { painter.Paint(span, coverage); });
    return;
  }
  // REQUIRED: filling asks the mask only where an edge crosses a row, and takes that one pixel; a
  // crossing that isn't admitted doesn't turn the inside on or off. What is drawn doesn't ask it.
  RecordPainter painter(*this, colour, xorMode, filled ? nullptr : mask);
  SpanBatch spans(painter);
  if (filled) {
    AdmitCrossing admit;
    if (mask != nullptr)
      admit = [mask](int32_t x, int32_t y) { return DrawingMask(*mask).Take(x, y); };
    FilledSpans(count, points, area, admit, spans);
  } else {
    OutlineSpans(count, points, {skipFirst, clampToImage, closed, dash, mWidth, mHeight}, area,
                 spans);
  }
  spans.Flush();
}

}  // namespace vm
