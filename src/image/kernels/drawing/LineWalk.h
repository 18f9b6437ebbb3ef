#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdlib>

#include "foundation/ZvGeometry.h"

namespace vm {

// step * rise / run, cut to a whole number, for one step after the other: each value is that of the
// full product, so nothing adds up. All three are below 2^33 and step * rise fits 64 bits.
class Proportion {
 public:
  Proportion(uint64_t step, uint64_t rise, uint64_t run)
      : mRun(run),
        mWhole(rise / run),
        mPart(rise % run),
        mValue(step * rise / run),
        mRemainder(step * rise % run) {}

  uint64_t Value() const { return mValue; }

  void Up() {
    mValue += mWhole;
    mRemainder += mPart;
    if (mRemainder >= mRun) {
      mRemainder -= mRun;
      ++mValue;
    }
  }
  void Down() {
    mValue -= mWhole;
    if (mRemainder < mPart) {
      mRemainder += mRun;
      --mValue;
    }
    mRemainder -= mPart;
  }

 private:
  uint64_t mRun;
  uint64_t mWhole;
  uint64_t mPart;
  uint64_t mValue;
  uint64_t mRemainder;
};

// The box of two points.
inline ZvRect BoxOf(const ZvPoint& a, const ZvPoint& b) {
  return {std::min(a.x, b.x), std::min(a.y, b.y), std::max(a.x, b.x), std::max(a.y, b.y)};
}

enum class WalkOrder {
  kAscending,  // towards larger coordinates, wherever the line starts
  kAlong,      // from the first point to the second
};

// Walks the longer axis of a line, x when neither is longer, with the other coordinate interpolated
// in integers from the first point. Calls `pixel(x, y)` for what lies in `box`, and steps over
// nothing but the box.
template <class Pixel>
void WalkLine(const ZvPoint& from, const ZvPoint& to, ZvRect box, WalkOrder order, Pixel&& pixel) {
  box.Intersect(BoxOf(from, to));
  if (box.IsEmpty())
    return;
  const int64_t dx = int64_t{to.x} - from.x;
  const int64_t dy = int64_t{to.y} - from.y;
  const bool steep = std::abs(dx) < std::abs(dy);
  const int64_t run = steep ? dy : dx;
  const int64_t rise = steep ? dx : dy;
  const int64_t origin = steep ? from.y : from.x;
  const int64_t base = steep ? from.x : from.y;
  const int64_t low = steep ? box.fTop : box.fLeft;
  const int64_t high = steep ? box.fBottom : box.fRight;

  const bool backwards = order == WalkOrder::kAlong && run < 0;
  const int64_t start = backwards ? high : low;
  const int64_t direction = backwards ? -1 : 1;
  const bool leaves = order == WalkOrder::kAlong || run >= 0;  // steps away from the first point
  Proportion offset(static_cast<uint64_t>(std::abs(start - origin)),
                    static_cast<uint64_t>(std::abs(rise)),
                    static_cast<uint64_t>(run != 0 ? std::abs(run) : 1));
  int64_t walked = start;
  for (int64_t i = low; i <= high; ++i, walked += direction) {
    const auto distance = static_cast<int64_t>(offset.Value());
    const int64_t other = base + (rise < 0 ? -distance : distance);
    const int64_t x = steep ? other : walked;
    const int64_t y = steep ? walked : other;
    if (x >= box.fLeft && x <= box.fRight && y >= box.fTop && y <= box.fBottom)
      pixel(static_cast<int32_t>(x), static_cast<int32_t>(y));
    if (leaves)
      offset.Up();
    else if (i != high)
      offset.Down();
  }
}

// Gaps and dashes of `length` pixels, a gap first; length 0 is solid. A negative length counts like
// a positive one.
class DashCounter {
 public:
  explicit DashCounter(int32_t length) : mLength(std::abs(int64_t{length})) {}

  // Counts a pixel; true if it is to be plotted.
  bool Next() {
    if (mLength == 0)
      return true;
    const bool odd = (mCount / mLength) % 2 != 0;
    ++mCount;
    return odd;
  }

 private:
  int64_t mLength;
  int64_t mCount = 0;
};

}  // namespace vm
