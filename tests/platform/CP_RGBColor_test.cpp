#include "platform/CP_RGBColor.h"

#include <gtest/gtest.h>

namespace {

TEST(RGBColor, StartsBlackAndHoldsWhatItWasGiven) {
  CP_RGBColor color;
  EXPECT_EQ(color, CP_RGBColor(0, 0, 0));
  color.Set(1, 2, 65535);
  EXPECT_EQ(color.GetRed(), 1);
  EXPECT_EQ(color.GetGreen(), 2);
  EXPECT_EQ(color.GetBlue(), 65535);
}

TEST(RGBColor, TakesAPlatformColourTimes256WithRedInTheLowestByte) {
  CP_RGBColor color;
  color.SetFromPlatform(64u | 128u << 8 | 255u << 16);
  EXPECT_EQ(color.GetRed(), 16384);
  EXPECT_EQ(color.GetGreen(), 32768);
  EXPECT_EQ(color.GetBlue(), 65280);
}

TEST(RGBColor, FillsNoLowByteForAnyPlatformValue) {
  for (uint32_t value = 0; value < 256; ++value) {
    CP_RGBColor color;
    color.SetFromPlatform(value | value << 8 | value << 16);
    EXPECT_EQ(color,
              CP_RGBColor(static_cast<uint16_t>(value * 256), static_cast<uint16_t>(value * 256),
                          static_cast<uint16_t>(value * 256)));
  }
}

TEST(RGBColor, IgnoresTheTopByteOfAPlatformColour) {
  CP_RGBColor color(9, 9, 9);
  color.SetFromPlatform(0xFF000000u);
  EXPECT_EQ(color, CP_RGBColor(0, 0, 0));
}

}  // namespace
