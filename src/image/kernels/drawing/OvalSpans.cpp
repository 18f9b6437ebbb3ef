#include <algorithm>
#include <cmath>

#include "image/kernels/drawing/Shapes.h"

namespace vm {
namespace {

class Oval {
 public:
  explicit Oval(const ZvRect& rect)
      : mRect(rect),
        mCentreX((static_cast<double>(rect.fLeft) + rect.fRight) * 0.5),
        mCentreY((static_cast<double>(rect.fTop) + rect.fBottom) * 0.5),
        mRadiusX(std::max((static_cast<double>(rect.fRight) - rect.fLeft) * 0.5, 1.0)),
        mRadiusY(std::max((static_cast<double>(rect.fBottom) - rect.fTop) * 0.5, 1.0)) {}

  // Where the right arc stands at the end of row y. The row above the first and the last row end in
  // the centre.
  int64_t EndOf(int64_t y) const {
    if (y < mRect.fTop || y == mRect.fBottom)
      return static_cast<int64_t>(mCentreX);
    const double height = (static_cast<double>(y) + 0.5 - mCentreY) / mRadiusY;
    const double halfWidth = std::sqrt(std::max(1 - height * height, 0.0));
    // Half a pixel is added and the sum truncated, also left of the origin.
    // NOLINTNEXTLINE(bugprone-incorrect-roundings)
    return static_cast<int64_t>(mCentreX + mRadiusX * halfWidth + 0.5);
  }

  // The place of column x in the left half; always left of x.
  int64_t Mirrored(int64_t x) const {
    return std::min(int64_t{mRect.fLeft} + mRect.fRight - x, x - 1);
  }

 private:
  ZvRect mRect;
  double mCentreX;
  double mCentreY;
  double mRadiusX;
  double mRadiusY;
};

}  // namespace

void OvalSpans(const ZvRect& rect, const ZvRect& clip, bool filled, SpanBatch& out) {
  ZvRect rows = rect;
  rows.fLeft = clip.fLeft;
  rows.fRight = clip.fRight;
  rows.Intersect(clip);
  if (rect.IsEmpty() || rows.IsEmpty())
    return;
  const Oval oval(rect);
  const auto add = [&](int64_t left, int64_t right, int32_t y) {
    out.AddRun(static_cast<int32_t>(std::max<int64_t>(left, clip.fLeft)),
               static_cast<int32_t>(std::min<int64_t>(right, clip.fRight)), y);
  };
  const auto inClip = [&](int64_t left, int64_t right) {
    return left <= clip.fRight && right >= clip.fLeft;
  };
  int64_t previous = oval.EndOf(int64_t{rows.fTop} - 1);
  for (int64_t y = rows.fTop; y <= rows.fBottom; ++y) {
    const int64_t end = oval.EndOf(y);
    const int64_t arcLeft = std::min(previous, end);
    const int64_t arcRight = std::max(previous, end);
    previous = end;
    // The mirrored columns of the arc have no gap between them: they go down by one with each
    // column of the arc, except where the limit turns them around, next to the centre.
    const int64_t mirrorLeft = std::min(oval.Mirrored(arcRight), oval.Mirrored(arcLeft));
    int64_t mirrorRight = mirrorLeft;
    for (const int64_t x : {arcLeft, arcLeft + 1, arcLeft + 2})
      mirrorRight = std::max(mirrorRight, x <= arcRight ? oval.Mirrored(x) : mirrorRight);
    const auto row = static_cast<int32_t>(y);
    // One run where the halves meet: no pixel comes twice in a row.
    const bool joined = filled || mirrorRight + 1 >= arcLeft;
    if (joined) {
      if (inClip(mirrorLeft, arcRight))
        add(mirrorLeft, arcRight, row);
      continue;
    }
    if (inClip(mirrorLeft, mirrorRight))
      add(mirrorLeft, mirrorRight, row);
    if (inClip(arcLeft, arcRight))
      add(arcLeft, arcRight, row);
  }
}

}  // namespace vm
