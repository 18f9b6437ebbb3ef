#include "platform/CP_ValueTypes.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <type_traits>

namespace {

static_assert(sizeof(CP_Point) == 4 && offsetof(CP_Point, vertical) == 0 &&
              offsetof(CP_Point, horizontal) == 2);
static_assert(sizeof(CP_Rect) == 8 && offsetof(CP_Rect, top) == 0 && offsetof(CP_Rect, left) == 2 &&
              offsetof(CP_Rect, bottom) == 4 && offsetof(CP_Rect, right) == 6);
static_assert(sizeof(CP_Size) == 4 && offsetof(CP_Size, width) == 0 &&
              offsetof(CP_Size, height) == 2);
static_assert(std::is_trivially_copyable_v<CP_Point> && std::is_trivially_copyable_v<CP_Rect> &&
              std::is_trivially_copyable_v<CP_Size>);

TEST(PlatformPoint, TakesHorizontalFirstAndStoresVerticalFirst) {
  const CP_Point point(3, 7);
  EXPECT_EQ(point.horizontal, 3);
  EXPECT_EQ(point.vertical, 7);
  int16_t stored[2];
  std::memcpy(stored, &point, sizeof(stored));
  EXPECT_EQ(stored[0], 7);
  EXPECT_EQ(stored[1], 3);
}

TEST(PlatformPoint, ReadsAsTwoWideNumbersHorizontalFirst) {
  int32_t horizontal = 0;
  int32_t vertical = 0;
  CP_Point(-32768, 32767).Get(horizontal, vertical);
  EXPECT_EQ(horizontal, -32768);
  EXPECT_EQ(vertical, 32767);
}

TEST(PlatformRect, TakesLeftFirstAndStoresTopFirst) {
  const CP_Rect rect(1, 2, 3, 4);
  int16_t stored[4];
  std::memcpy(stored, &rect, sizeof(stored));
  EXPECT_EQ(stored[0], 2) << "top";
  EXPECT_EQ(stored[1], 1) << "left";
  EXPECT_EQ(stored[2], 4) << "bottom";
  EXPECT_EQ(stored[3], 3) << "right";
}

TEST(PlatformValues, AreAllZeroByDefault) {
  EXPECT_EQ(CP_Point(), CP_Point(0, 0));
  EXPECT_EQ(CP_Rect(), CP_Rect(0, 0, 0, 0));
  EXPECT_EQ(CP_Size(), CP_Size(0, 0));
}

}  // namespace
