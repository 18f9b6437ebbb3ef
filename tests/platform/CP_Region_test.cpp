#include "platform/CP_Region.h"

#include <gtest/gtest.h>

namespace {

TEST(Region, StartsEmpty) {
  const CP_Region region;
  EXPECT_NE(region.GetHandle(), nullptr);
  EXPECT_EQ(region.GetBox(), os::RegionBox());
}

TEST(Region, TakesARectangleWithExclusiveRightAndBottom) {
  CP_Region region(-10, -20, 30, 40);
  EXPECT_EQ(region.GetBox(), (os::RegionBox{-10, -20, 30, 40}));
  region.SetRect(1, 2, 3, 4);
  EXPECT_EQ(region.GetBox(), (os::RegionBox{1, 2, 3, 4}));
}

TEST(Region, OfARectangleWithoutAnAreaIsEmpty) {
  CP_Region region(1, 2, 3, 4);
  region.SetRect(5, 6, 5, 60);
  EXPECT_EQ(region.GetBox(), os::RegionBox());
}

TEST(Region, PutsTheSidesOfARectangleInOrder) {
  const CP_Region region(30, 40, 10, 20);
  EXPECT_EQ(region.GetBox(), (os::RegionBox{10, 20, 30, 40}));
}

}  // namespace
