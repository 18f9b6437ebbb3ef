#include "image/kernels/drawing/LineWalk.h"
#include "image/kernels/drawing/Shapes.h"

namespace vm {

void LineSpans(const ZvPoint& from, const ZvPoint& to, const ZvRect& clip, int32_t dash,
               SpanBatch& out) {
  DashCounter counter(dash);
  WalkLine(from, to, clip, WalkOrder::kAscending, [&](int32_t x, int32_t y) {
    if (counter.Next())
      out.Add(x, y);
  });
}

namespace {

class Outliner {
 public:
  Outliner(const ZvPoint* points, const OutlineStyle& style, const ZvRect& clip, SpanBatch& out)
      : mStyle(style),
        mClip(clip),
        mOut(out),
        mCounter(style.dash),
        mFirst(LimitStart(points[0])),
        mLast(mFirst) {
    mHasLast = style.skipFirst;
  }

  void Edge(const ZvPoint& from, const ZvPoint& to) {
    const ZvPoint start = LimitStart(from);
    const ZvPoint end = LimitEnd(to);
    WalkLine(start, end, mClip, WalkOrder::kAlong, [&](int32_t x, int32_t y) { Pixel({x, y}); });
    mOnFirstEdge = false;
  }

 private:
  // REQUIRED: the y of an edge's first end is limited by the image's width, that of its second by
  // the height.
  ZvPoint LimitStart(const ZvPoint& point) const { return Limit(point, mStyle.imageWidth - 1); }
  ZvPoint LimitEnd(const ZvPoint& point) const { return Limit(point, mStyle.imageHeight - 1); }

  ZvPoint Limit(const ZvPoint& point, int32_t lastY) const {
    if (!mStyle.clampToImage)
      return point;
    return {std::clamp(point.x, 0, mStyle.imageWidth - 1), std::clamp(point.y, 0, lastY)};
  }

  void Pixel(const ZvPoint& pixel) {
    // Where edges meet: drawn once, so that XOR leaves a mark, and counted once.
    if ((mHasLast && pixel == mLast) || (!mOnFirstEdge && pixel == mFirst))
      return;
    if (!mCounter.Next())
      return;
    mOut.Add(pixel.x, pixel.y);
    mLast = pixel;
    mHasLast = true;
  }

  const OutlineStyle& mStyle;
  const ZvRect& mClip;
  SpanBatch& mOut;
  DashCounter mCounter;
  const ZvPoint mFirst;
  ZvPoint mLast;
  bool mHasLast;
  bool mOnFirstEdge = true;
};

}  // namespace

void OutlineSpans(int32_t count, const ZvPoint* points, const OutlineStyle& style,
                  const ZvRect& clip, SpanBatch& out) {
  if (count <= 0)
    return;
  Outliner outliner(points, style, clip, out);
  for (int32_t i = 1; i < count; ++i)
    outliner.Edge(points[i - 1], points[i]);
  if (style.closed)
    outliner.Edge(points[count - 1], points[0]);
}

}  // namespace vm
