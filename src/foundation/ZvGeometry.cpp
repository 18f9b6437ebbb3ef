#include "foundation/ZvGeometry.h"

#include <cmath>

namespace {

// The single-precision 0.01, widened.
constexpr double kSeparation = 0.01F;

ZvDPoint2d Scaled(double x, double y) {
  const double length = std::sqrt(x * x + y * y);
  return {x / length, y / length};
}

double Separated(double start, double end) {
  return start == end ? end + kSeparation : end;
}

double DistanceBetween(const ZvDPoint2d& a, const ZvDPoint2d& b) {
  const double dx = a.x - b.x;
  const double dy = a.y - b.y;
  return std::sqrt(dx * dx + dy * dy);
}

}  // namespace

ZvDSegment::ZvDSegment(const ZvDPoint2d& start, const ZvDPoint2d& end)
    : mStart(start),
      mEnd(Separated(start.x, end.x), Separated(start.y, end.y)),
      mDeltaX(mEnd.x - mStart.x),
      mDeltaY(mEnd.y - mStart.y),
      mLength(std::sqrt(mDeltaX * mDeltaX + mDeltaY * mDeltaY)),
      mUnitX(mDeltaX / mLength),
      mUnitY(mDeltaY / mLength),
      mInverseLength(1.0 / mLength) {}

ZvDPoint2d ZvDSegment::Normal() const {
  return Scaled(-(mEnd.y - mStart.y), mEnd.x - mStart.x);
}

ZvDPoint2d ZvDSegment::Direction() const {
  return Scaled(mEnd.x - mStart.x, mEnd.y - mStart.y);
}

double ZvDSegment::Distance(const ZvDPoint2d& point) const {
  const double vx = point.x - mStart.x;
  const double vy = point.y - mStart.y;
  const double along = vx * mUnitX + vy * mUnitY;
  if (along < 0)
    return DistanceBetween(point, mStart);
  if (along > mLength)
    return DistanceBetween(point, mEnd);
  return std::fabs(vy * mUnitX - vx * mUnitY);
}
