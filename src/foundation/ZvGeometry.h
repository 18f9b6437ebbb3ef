#pragma once

#include <algorithm>
#include <cstdint>

#include "foundation/ZvValueList.h"

// Plain geometry values. The origin is at the top left and y points down. Integer coordinates wrap
// around at the ends of their range.

namespace vm {

constexpr int32_t WrappingSum(int32_t a, int32_t b) {
  return static_cast<int32_t>(static_cast<uint32_t>(a) + static_cast<uint32_t>(b));
}

constexpr int32_t WrappingDifference(int32_t a, int32_t b) {
  return static_cast<int32_t>(static_cast<uint32_t>(a) - static_cast<uint32_t>(b));
}

}  // namespace vm

// b - tolerance <= a <= b + tolerance; false when anything is not a number.
constexpr bool NearlyEqual(float a, float b, float tolerance) {
  return b - tolerance <= a && a <= b + tolerance;
}
constexpr bool NearlyEqual(double a, double b, double tolerance) {
  return b - tolerance <= a && a <= b + tolerance;
}

// n, or 1 in the place of 0.
constexpr int32_t SafeDivisor(int32_t n) {
  return n != 0 ? n : 1;
}

struct ZvPoint {
  int32_t x = 0;
  int32_t y = 0;

  constexpr ZvPoint() = default;
  constexpr ZvPoint(int32_t inX, int32_t inY) : x(inX), y(inY) {}

  // x for 0, y for any other index.
  constexpr int32_t& operator[](int32_t index) { return index == 0 ? x : y; }
  constexpr int32_t operator[](int32_t index) const { return index == 0 ? x : y; }

  constexpr bool operator==(const ZvPoint&) const = default;

  constexpr ZvPoint& operator+=(const ZvPoint& other) {
    x = vm::WrappingSum(x, other.x);
    y = vm::WrappingSum(y, other.y);
    return *this;
  }
  constexpr ZvPoint& operator-=(const ZvPoint& other) {
    x = vm::WrappingDifference(x, other.x);
    y = vm::WrappingDifference(y, other.y);
    return *this;
  }
  friend constexpr ZvPoint operator-(ZvPoint a, const ZvPoint& b) { return a -= b; }
};
static_assert(sizeof(ZvPoint) == 8);

// A rectangle of pixels that contains its four sides: (0, 0, 9, 9) is 10 by 10 pixels. Empty when
// left lies behind right or top behind bottom.
struct ZvRect {
  int32_t fLeft = 0;
  int32_t fTop = 0;
  int32_t fRight = 0;
  int32_t fBottom = 0;

  // The one pixel (0, 0).
  constexpr ZvRect() = default;
  constexpr ZvRect(int32_t left, int32_t top, int32_t right, int32_t bottom)
      : fLeft(left), fTop(top), fRight(right), fBottom(bottom) {}
  constexpr ZvRect(const ZvPoint& topLeft, const ZvPoint& bottomRight)
      : fLeft(topLeft.x), fTop(topLeft.y), fRight(bottomRight.x), fBottom(bottomRight.y) {}

  constexpr void Set(int32_t left, int32_t top, int32_t right, int32_t bottom) {
    *this = ZvRect(left, top, right, bottom);
  }

  // Left, top, right, bottom for 0 to 3; bottom for any other index.
  constexpr int32_t& operator[](int32_t index) {
    return index == 0 ? fLeft : index == 1 ? fTop : index == 2 ? fRight : fBottom;
  }
  constexpr int32_t operator[](int32_t index) const {
    return index == 0 ? fLeft : index == 1 ? fTop : index == 2 ? fRight : fBottom;
  }

  constexpr bool operator==(const ZvRect&) const = default;

  // Moves the rect.
  constexpr ZvRect& operator+=(const ZvPoint& offset) {
    fLeft = vm::WrappingSum(fLeft, offset.x);
    fTop = vm::WrappingSum(fTop, offset.y);
    fRight = vm::WrappingSum(fRight, offset.x);
    fBottom = vm::WrappingSum(fBottom, offset.y);
    return *this;
  }
  constexpr ZvRect& operator-=(const ZvPoint& offset) {
    fLeft = vm::WrappingDifference(fLeft, offset.x);
    fTop = vm::WrappingDifference(fTop, offset.y);
    fRight = vm::WrappingDifference(fRight, offset.x);
    fBottom = vm::WrappingDifference(fBottom, offset.y);
    return *this;
  }
  friend constexpr ZvRect operator+(ZvRect rect, const ZvPoint& offset) { return rect += offset; }

  constexpr bool IsEmpty() const { return fLeft > fRight || fTop > fBottom; }

  // Grows the rect to take the point in. An empty rect becomes that one point.
  constexpr void AddPoint(const ZvPoint& point) {
    if (IsEmpty()) {
      Set(point.x, point.y, point.x, point.y);
      return;
    }
    if (point.x < fLeft) {
      fLeft = point.x;
    } else if (point.x > fRight) {
      fRight = point.x;
    }
    if (point.y < fTop) {
      fTop = point.y;
    } else if (point.y > fBottom) {
      fBottom = point.y;
    }
  }

  // Grows the rect to take the other one in. An empty argument changes nothing, an empty receiver
  // becomes a copy of the argument.
  constexpr void Union(const ZvRect& rect) {
    if (rect.IsEmpty())
      return;
    if (IsEmpty()) {
      *this = rect;
      return;
    }
    fLeft = std::min(fLeft, rect.fLeft);
    fTop = std::min(fTop, rect.fTop);
    fRight = std::max(fRight, rect.fRight);
    fBottom = std::max(fBottom, rect.fBottom);
  }

  // True unless this rect lies wholly inside the other one.
  constexpr bool IsOutside(const ZvRect& rect) const {
    return fLeft < rect.fLeft || fTop < rect.fTop || fRight > rect.fRight || fBottom > rect.fBottom;
  }

  // Cuts the rect down to the other one. The result may be empty.
  constexpr void Intersect(const ZvRect& rect) {
    fLeft = std::max(fLeft, rect.fLeft);
    fTop = std::max(fTop, rect.fTop);
    fRight = std::min(fRight, rect.fRight);
    fBottom = std::min(fBottom, rect.fBottom);
  }
};
static_assert(sizeof(ZvRect) == 16);

inline constexpr ZvRect kEmptyRect{0, 0, -1, -1};

// `ZvRect::Intersect` on four loose integers. Leaves an empty result as it is.
constexpr void ClipCoords(int32_t& left, int32_t& top, int32_t& right, int32_t& bottom,
                          const ZvRect& rect) {
  left = std::max(left, rect.fLeft);
  top = std::max(top, rect.fTop);
  right = std::min(right, rect.fRight);
  bottom = std::min(bottom, rect.fBottom);
}

struct ZvFloatPoint {
  float x = 0;
  float y = 0;

  constexpr ZvFloatPoint() = default;
  constexpr ZvFloatPoint(float inX, float inY) : x(inX), y(inY) {}

  constexpr bool operator==(const ZvFloatPoint&) const = default;
};
static_assert(sizeof(ZvFloatPoint) == 8);

struct ZvDPoint2d {
  double x = 0;
  double y = 0;

  constexpr ZvDPoint2d() = default;
  constexpr ZvDPoint2d(double inX, double inY) : x(inX), y(inY) {}

  // Equal within 1e-07 on each coordinate.
  friend constexpr bool operator==(const ZvDPoint2d& a, const ZvDPoint2d& b) {
    return NearlyEqual(a.x, b.x, 1e-07) && NearlyEqual(a.y, b.y, 1e-07);
  }
};
static_assert(sizeof(ZvDPoint2d) == 16);

// Stands for no point at all.
inline constexpr ZvDPoint2d kInvalidDPoint2d{-99999.0, -99999.0};

// A straight piece between two points, with what distance questions need worked out beforehand. The
// cached fields belong to the ends given at construction.
class ZvDSegment final {
 public:
  // Ends with equal x are told apart by adding 0.01 to the second x, and likewise for y, so that no
  // segment has zero length. (At magnitudes where 0.01 is lost, the length of a segment with equal
  // ends is 0 and its unit vector is not a number.)
  ZvDSegment(const ZvDPoint2d& start, const ZvDPoint2d& end);

  // The unit vector across the segment, (-dy, dx) scaled, worked out from the ends.
  virtual ZvDPoint2d Normal() const;
  // The unit vector along the segment.
  virtual ZvDPoint2d Direction() const;

  // From the point to the nearest point of the segment, its ends included.
  double Distance(const ZvDPoint2d& point) const;

  ZvDPoint2d mStart;
  ZvDPoint2d mEnd;
  double mDeltaX;
  double mDeltaY;
  double mLength;
  double mUnitX;
  double mUnitY;
  double mInverseLength;
};

// Where a layer stands and how it is scaled.
struct ZvSimpleTransform {
  ZvPoint mPosition;
  ZvFloatPoint mScale{1.0F, 1.0F};
  // Two values that are streamed and copied along and mean nothing here.
  float mExtra1 = 0;
  float mExtra2 = 0;

  constexpr bool operator==(const ZvSimpleTransform&) const = default;
};
static_assert(sizeof(ZvSimpleTransform) == 24);

using ZvPointList = ZvValueList<ZvPoint>;
using ZvDPoint2dList = ZvValueList<ZvDPoint2d>;
