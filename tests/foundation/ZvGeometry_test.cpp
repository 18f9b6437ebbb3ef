#include "foundation/ZvGeometry.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <limits>
#include <stdexcept>
#include <string>
#include <type_traits>

namespace {

constexpr int32_t kMax = std::numeric_limits<int32_t>::max();
constexpr int32_t kMin = std::numeric_limits<int32_t>::min();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

static_assert(std::is_trivially_copyable_v<ZvPoint> && offsetof(ZvPoint, y) == 4);
static_assert(std::is_trivially_copyable_v<ZvRect> && offsetof(ZvRect, fTop) == 4 &&
              offsetof(ZvRect, fRight) == 8 && offsetof(ZvRect, fBottom) == 12);
static_assert(!std::is_polymorphic_v<ZvSimpleTransform>);
static_assert(offsetof(ZvSimpleTransform, mScale) == 8 &&
              offsetof(ZvSimpleTransform, mExtra1) == 16);
static_assert(std::is_polymorphic_v<ZvDSegment>);

TEST(NearlyEqual, IncludesBothEndsOfTheTolerance) {
  EXPECT_TRUE(NearlyEqual(1.5, 1.0, 0.5));
  EXPECT_TRUE(NearlyEqual(0.5, 1.0, 0.5));
  EXPECT_FALSE(NearlyEqual(1.5 + 1e-9, 1.0, 0.5));
  EXPECT_FALSE(NearlyEqual(0.5 - 1e-9, 1.0, 0.5));
  EXPECT_TRUE(NearlyEqual(1.5F, 1.0F, 0.5F));
  EXPECT_FALSE(NearlyEqual(1.5001F, 1.0F, 0.5F));
  EXPECT_FALSE(NearlyEqual(0.4999F, 1.0F, 0.5F));
}

TEST(NearlyEqual, IsFalseForWhatIsNotANumber) {
  EXPECT_FALSE(NearlyEqual(kNaN, 1.0, 0.5));
  EXPECT_FALSE(NearlyEqual(1.0, kNaN, 0.5));
}

TEST(SafeDivisor, ReplacesZeroByOneAndNothingElse) {
  EXPECT_EQ(SafeDivisor(0), 1);
  EXPECT_EQ(SafeDivisor(1), 1);
  EXPECT_EQ(SafeDivisor(-5), -5);
}

TEST(Point, IndexZeroIsXAndAnyOtherIsY) {
  ZvPoint point(3, 4);
  EXPECT_EQ(point[0], 3);
  for (const int32_t index : {1, 2, 7, -1})
    EXPECT_EQ(point[index], 4);
  point[7] = 5;
  EXPECT_EQ(point, ZvPoint(3, 5));
}

TEST(Point, AddsSubtractsAndCompares) {
  ZvPoint point(3, 4);
  point += ZvPoint(10, 20);
  EXPECT_EQ(point, ZvPoint(13, 24));
  point -= ZvPoint(1, 2);
  EXPECT_EQ(point, ZvPoint(12, 22));
  EXPECT_EQ(point - ZvPoint(2, 2), ZvPoint(10, 20));
  EXPECT_TRUE(ZvPoint(1, 2) != ZvPoint(1, 3));
  EXPECT_TRUE(ZvPoint(1, 2) != ZvPoint(0, 2));
}

TEST(Point, CoordinatesWrapAround) {
  ZvPoint point(kMax, kMin);
  point += ZvPoint(1, -1);
  EXPECT_EQ(point, ZvPoint(kMin, kMax));
  EXPECT_EQ(point - ZvPoint(1, -1), ZvPoint(kMax, kMin));
}

TEST(Rect, ADefaultOneIsThePixelAtTheOrigin) {
  const ZvRect rect;
  EXPECT_EQ(rect, ZvRect(0, 0, 0, 0));
  EXPECT_FALSE(rect.IsEmpty());
}

TEST(Rect, TheCanonicalEmptyRectIsEmpty) {
  EXPECT_EQ(kEmptyRect, ZvRect(0, 0, -1, -1));
  EXPECT_TRUE(kEmptyRect.IsEmpty());
}

TEST(Rect, IsEmptyWhenOneDirectionIs) {
  EXPECT_TRUE(ZvRect(1, 0, 0, 9).IsEmpty());
  EXPECT_TRUE(ZvRect(0, 1, 9, 0).IsEmpty());
  EXPECT_FALSE(ZvRect(0, 0, 9, 9).IsEmpty());
}

TEST(Rect, IsMadeFromSidesAndFromCorners) {
  ZvRect rect(1, 2, 3, 4);
  EXPECT_EQ(rect.fLeft, 1);
  EXPECT_EQ(rect.fTop, 2);
  EXPECT_EQ(rect.fRight, 3);
  EXPECT_EQ(rect.fBottom, 4);
  EXPECT_EQ(ZvRect(ZvPoint(1, 2), ZvPoint(3, 4)), rect);
  rect.Set(5, 6, 7, 8);
  EXPECT_EQ(rect, ZvRect(5, 6, 7, 8));
}

TEST(Rect, IndexesRunLeftTopRightBottomAndAnyOtherIsBottom) {
  ZvRect rect(1, 2, 3, 4);
  EXPECT_EQ(rect[0], 1);
  EXPECT_EQ(rect[1], 2);
  EXPECT_EQ(rect[2], 3);
  for (const int32_t index : {3, 4, 7, -1})
    EXPECT_EQ(rect[index], 4);
  rect[1] = 20;
  rect[7] = 40;
  EXPECT_EQ(rect, ZvRect(1, 20, 3, 40));
}

TEST(Rect, ComparesAllFourSides) {
  const ZvRect rect(1, 2, 3, 4);
  for (int32_t side = 0; side < 4; ++side) {
    ZvRect other = rect;
    other[side] += 1;
    EXPECT_FALSE(rect == other) << side;
  }
}

TEST(Rect, MovesByAPoint) {
  ZvRect rect(1, 2, 3, 4);
  EXPECT_EQ(rect + ZvPoint(10, 20), ZvRect(11, 22, 13, 24));
  rect += ZvPoint(10, 20);
  EXPECT_EQ(rect, ZvRect(11, 22, 13, 24));
  rect -= ZvPoint(1, 2);
  EXPECT_EQ(rect, ZvRect(10, 20, 12, 22));
}

TEST(RectAddPoint, OnTheEmptyRectGivesThatOnePixel) {
  ZvRect rect = kEmptyRect;
  rect.AddPoint(ZvPoint(-5, 7));
  EXPECT_EQ(rect, ZvRect(-5, 7, -5, 7));
}

TEST(RectAddPoint, MovesTheSideThatThePointLiesBeyond) {
  const ZvRect rect(0, 0, 9, 9);
  const auto with = [&](int32_t x, int32_t y) {
    ZvRect grown = rect;
    grown.AddPoint(ZvPoint(x, y));
    return grown;
  };
  EXPECT_EQ(with(5, 5), rect);
  EXPECT_EQ(with(9, 0), rect);
  EXPECT_EQ(with(-1, 5), ZvRect(-1, 0, 9, 9));
  EXPECT_EQ(with(10, 5), ZvRect(0, 0, 10, 9));
  EXPECT_EQ(with(5, -1), ZvRect(0, -1, 9, 9));
  EXPECT_EQ(with(5, 10), ZvRect(0, 0, 9, 10));
  EXPECT_EQ(with(-3, 12), ZvRect(-3, 0, 9, 12));
}

TEST(RectUnion, OfAnEmptyArgumentKeepsTheReceiver) {
  ZvRect rect(1, 2, 3, 4);
  rect.Union(kEmptyRect);
  EXPECT_EQ(rect, ZvRect(1, 2, 3, 4));
  rect.Union(ZvRect(100, 100, 99, 200));
  EXPECT_EQ(rect, ZvRect(1, 2, 3, 4));
  ZvRect empty(7, 7, 6, 6);
  empty.Union(kEmptyRect);
  EXPECT_EQ(empty, ZvRect(7, 7, 6, 6));
}

TEST(RectUnion, OnAnEmptyReceiverCopiesTheArgument) {
  ZvRect rect = kEmptyRect;
  rect.Union(ZvRect(1, 2, 3, 4));
  EXPECT_EQ(rect, ZvRect(1, 2, 3, 4));
}

TEST(RectUnion, WidensEachSide) {
  ZvRect rect(0, 0, 9, 9);
  rect.Union(ZvRect(-1, 3, 4, 12));
  EXPECT_EQ(rect, ZvRect(-1, 0, 9, 12));
  rect.Union(ZvRect(5, -4, 15, 0));
  EXPECT_EQ(rect, ZvRect(-1, -4, 15, 12));
}

TEST(RectIsOutside, IsTrueWhenAnySideSticksOut) {
  const ZvRect bounds(0, 0, 9, 9);
  EXPECT_FALSE(bounds.IsOutside(bounds));
  EXPECT_FALSE(ZvRect(3, 3, 5, 5).IsOutside(bounds));
  EXPECT_TRUE(ZvRect(-1, 0, 9, 9).IsOutside(bounds));
  EXPECT_TRUE(ZvRect(0, -1, 9, 9).IsOutside(bounds));
  EXPECT_TRUE(ZvRect(0, 0, 10, 9).IsOutside(bounds));
  EXPECT_TRUE(ZvRect(0, 0, 9, 10).IsOutside(bounds));
  EXPECT_TRUE(ZvRect(20, 20, 30, 30).IsOutside(bounds));
}

TEST(RectIntersect, CutsEachSide) {
  ZvRect rect(-5, -5, 20, 20);
  rect.Intersect(ZvRect(0, 1, 9, 8));
  EXPECT_EQ(rect, ZvRect(0, 1, 9, 8));
  rect.Intersect(ZvRect(-10, 4, 5, 100));
  EXPECT_EQ(rect, ZvRect(0, 4, 5, 8));
}

TEST(RectIntersect, AnEmptyResultKeepsItsSides) {
  ZvRect rect(0, 0, 4, 4);
  rect.Intersect(ZvRect(10, 10, 20, 20));
  EXPECT_EQ(rect, ZvRect(10, 10, 4, 4));
  EXPECT_TRUE(rect.IsEmpty());
}

TEST(ClipCoords, CutsFourLooseIntegers) {
  int32_t left = -5;
  int32_t top = 2;
  int32_t right = 20;
  int32_t bottom = 5;
  ClipCoords(left, top, right, bottom, ZvRect(0, 0, 9, 9));
  EXPECT_EQ(ZvRect(left, top, right, bottom), ZvRect(0, 2, 9, 5));
}

TEST(ClipCoords, LeavesAnEmptyResultAsItIs) {
  int32_t left = 0;
  int32_t top = 0;
  int32_t right = 4;
  int32_t bottom = 4;
  ClipCoords(left, top, right, bottom, ZvRect(10, 10, 20, 20));
  EXPECT_EQ(ZvRect(left, top, right, bottom), ZvRect(10, 10, 4, 4));
}

TEST(DPoint2d, EqualityAllowsForATenMillionthOnEachCoordinate) {
  const ZvDPoint2d point(1.0, 2.0);
  EXPECT_TRUE(point == ZvDPoint2d(1.0 + 0.9e-7, 2.0 - 0.9e-7));
  EXPECT_FALSE(point == ZvDPoint2d(1.0 + 1.1e-7, 2.0));
  EXPECT_FALSE(point == ZvDPoint2d(1.0, 2.0 - 1.1e-7));
  EXPECT_TRUE(point != ZvDPoint2d(1.0, 3.0));
}

TEST(DPoint2d, TheInvalidOneHasBothCoordinatesAtMinus99999) {
  EXPECT_EQ(kInvalidDPoint2d.x, -99999.0);
  EXPECT_EQ(kInvalidDPoint2d.y, -99999.0);
}

TEST(DSegment, WorksOutItsFieldsFromTheEnds) {
  const ZvDSegment segment({1, 2}, {4, 6});
  EXPECT_EQ(segment.mStart.x, 1.0);
  EXPECT_EQ(segment.mStart.y, 2.0);
  EXPECT_EQ(segment.mEnd.x, 4.0);
  EXPECT_EQ(segment.mEnd.y, 6.0);
  EXPECT_EQ(segment.mDeltaX, 3.0);
  EXPECT_EQ(segment.mDeltaY, 4.0);
  EXPECT_EQ(segment.mLength, 5.0);
  EXPECT_EQ(segment.mUnitX, 3.0 / 5.0);
  EXPECT_EQ(segment.mUnitY, 4.0 / 5.0);
  EXPECT_EQ(segment.mInverseLength, 1.0 / 5.0);
}

TEST(DSegment, EqualEndsArePartedByTheSinglePrecisionHundredthInBothDirections) {
  const ZvDSegment segment({0, 0}, {0, 0});
  EXPECT_EQ(segment.mEnd.x, 0.009999999776482582);
  EXPECT_EQ(segment.mEnd.y, 0.009999999776482582);
  EXPECT_NEAR(segment.mLength, 0.0141, 0.0001);
  EXPECT_NEAR(segment.mUnitX, std::sqrt(0.5), 1e-15);
  EXPECT_NEAR(segment.mUnitY, std::sqrt(0.5), 1e-15);
}

TEST(DSegment, AnAxisParallelOneIsTiltedByTheSameHundredth) {
  const ZvDSegment horizontal({0, 5}, {10, 5});
  EXPECT_EQ(horizontal.mEnd.x, 10.0);
  EXPECT_EQ(horizontal.mEnd.y, 5.0 + 0.009999999776482582);
  const ZvDSegment vertical({5, 0}, {5, 10});
  EXPECT_EQ(vertical.mEnd.x, 5.0 + 0.009999999776482582);
  EXPECT_EQ(vertical.mEnd.y, 10.0);
}

TEST(DSegment, EndsThatDifferByLessThanTheToleranceAreNotParted) {
  const ZvDSegment segment({0, 0}, {1e-9, 1});
  EXPECT_EQ(segment.mEnd.x, 1e-9);
}

TEST(DSegment, NormalStandsAcrossAndDirectionPointsAlong) {
  const ZvDSegment segment({1, 2}, {4, 6});
  EXPECT_EQ(segment.Normal().x, -4.0 / 5.0);
  EXPECT_EQ(segment.Normal().y, 3.0 / 5.0);
  EXPECT_EQ(segment.Direction().x, 3.0 / 5.0);
  EXPECT_EQ(segment.Direction().y, 4.0 / 5.0);
}

TEST(DSegment, NormalIsRecomputedFromTheEnds) {
  ZvDSegment segment({1, 2}, {4, 6});
  segment.mEnd = ZvDPoint2d(1 - 3, 2 + 4);
  EXPECT_EQ(segment.Normal().x, -4.0 / 5.0);
  EXPECT_EQ(segment.Normal().y, -3.0 / 5.0);
}

TEST(DSegmentDistance, BesideTheSegmentIsTheDistanceToTheLine) {
  const ZvDSegment segment({0, 0}, {6, 8});
  // The foot of both points is the middle (3, 4); they lie 10 away along (-4/5, 3/5).
  EXPECT_NEAR(segment.Distance({3 - 8, 4 + 6}), 10.0, 1e-12);
  EXPECT_NEAR(segment.Distance({3 + 8, 4 - 6}), 10.0, 1e-12);
  EXPECT_NEAR(segment.Distance({3, 4}), 0.0, 1e-12);
}

TEST(DSegmentDistance, BeforeTheStartIsTheDistanceToTheStart) {
  const ZvDSegment segment({0, 0}, {6, 8});
  EXPECT_EQ(segment.Distance({-3, -4}), 5.0);
  EXPECT_EQ(segment.Distance({0, -7}), 7.0);
}

TEST(DSegmentDistance, BeyondTheEndIsTheDistanceToTheEndNotToTheLine) {
  const ZvDSegment segment({0, 0}, {6, 8});
  EXPECT_EQ(segment.Distance({6 + 3, 8 + 4}), 5.0);
  EXPECT_EQ(segment.Distance({6, 8 + 7}), 7.0);
}

TEST(DSegmentDistance, WhereTheHundredthIsLostIsNotANumber) {
  const ZvDSegment segment({1e17, 1e17}, {1e17, 1e17});
  EXPECT_EQ(segment.mLength, 0.0);
  EXPECT_TRUE(std::isinf(segment.mInverseLength));
  EXPECT_TRUE(std::isnan(segment.Distance({0, 0})));
}

TEST(SimpleTransform, ANewOneStandsAtTheOriginUnscaled) {
  const ZvSimpleTransform transform;
  EXPECT_EQ(transform.mPosition, ZvPoint(0, 0));
  EXPECT_EQ(transform.mScale, ZvFloatPoint(1.0F, 1.0F));
  EXPECT_EQ(transform.mExtra1, 0.0F);
  EXPECT_EQ(transform.mExtra2, 0.0F);
}

TEST(ValueList, CapacityStartsAtOneAndDoublesUntilItSuffices) {
  ZvPointList list;
  std::string capacities;
  uint32_t last = 0;
  for (int32_t i = 0; i < 20; ++i) {
    list.push_back(ZvPoint(i, -i));
    if (list.capacity() != last)
      capacities += std::to_string(list.capacity()) + " ";
    last = list.capacity();
  }
  EXPECT_EQ(capacities, "1 2 4 8 16 32 ");
  EXPECT_EQ(list.size(), 20U);
  EXPECT_EQ(list[19], ZvPoint(19, -19));

  ZvDPoint2dList atOnce;
  atOnce.insert(0, 5, ZvDPoint2d(1, 2));
  EXPECT_EQ(atOnce.capacity(), 8U);
}

TEST(ValueList, InsertsCopiesBeforeAPositionAlsoOfItsOwnEntries) {
  ZvPointList list;
  list.push_back(ZvPoint(1, 1));
  list.push_back(ZvPoint(2, 2));
  list.insert(1, 2, list[0]);
  ASSERT_EQ(list.size(), 4U);
  EXPECT_EQ(list[0], ZvPoint(1, 1));
  EXPECT_EQ(list[1], ZvPoint(1, 1));
  EXPECT_EQ(list[2], ZvPoint(1, 1));
  EXPECT_EQ(list[3], ZvPoint(2, 2));
  list.erase(0);
  EXPECT_EQ(list.size(), 3U);
  EXPECT_EQ(list.back(), ZvPoint(2, 2));
  list.clear();
  EXPECT_TRUE(list.empty());
  EXPECT_EQ(list.capacity(), 4U);
}

// The limits are where the entries' bytes no longer have a 32-bit count.
template <class List>
void ExpectLimit(uint32_t limit) {
  List list;
  list.push_back({});
  EXPECT_EQ(List::kMaxSize, limit);
  try {
    list.insert(0, limit, {});
    FAIL() << "nothing thrown";
  } catch (const std::length_error& error) {
    EXPECT_STREQ(error.what(), "vector::insert length error");
  }
  EXPECT_EQ(list.size(), 1U);
}

TEST(ValueList, AnEntryBeyondTheLimitThrowsAndChangesNothing) {
  ExpectLimit<ZvPointList>(0x1FFFFFFF);
  ExpectLimit<ZvDPoint2dList>(0x0FFFFFFF);
}

}  // namespace
