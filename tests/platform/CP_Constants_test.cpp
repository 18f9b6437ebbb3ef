#include "platform/CP_Constants.h"

#include <gtest/gtest.h>

namespace {

// Made in front of the statics of this file, which may therefore use them.
const os::RegionBox gBoxSeenByAStatic = kCP_WholePlaneRegion.GetBox();
const CP_RGBColor gColorSeenByAStatic = kCP_LightGrey;

TEST(Constants, HaveTheirValues) {
  EXPECT_EQ(kCP_EmptyRegion.GetBox(), os::RegionBox());
  EXPECT_EQ(kCP_WholePlaneRegion.GetBox(), (os::RegionBox{-32768, -32768, 32767, 32767}));
  EXPECT_EQ(kCP_White, CP_RGBColor(65535, 65535, 65535));
  EXPECT_EQ(kCP_Black, CP_RGBColor(0, 0, 0));
  EXPECT_EQ(kCP_LightGrey, CP_RGBColor(49152, 49152, 49152));
  EXPECT_EQ(kCP_ZeroPoint, CP_Point(0, 0));
  EXPECT_EQ(kCP_ZeroRect, CP_Rect(0, 0, 0, 0));
  EXPECT_EQ(kCP_ZeroSize, CP_Size(0, 0));
}

TEST(Constants, StandBeforeTheStaticsOfTheirUsers) {
  EXPECT_EQ(gBoxSeenByAStatic, (os::RegionBox{-32768, -32768, 32767, 32767}));
  EXPECT_EQ(gColorSeenByAStatic, CP_RGBColor(49152, 49152, 49152));
}

}  // namespace
