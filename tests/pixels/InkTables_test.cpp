#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>

#include "image/pixels/PxCmyk.h"

namespace {

TEST(InkTables, AbsorptionPassesThroughItsSamples) {
  struct Samples {
    int32_t channel;  // red, green, blue
    int32_t ink;      // cyan, magenta, yellow, black
    uint8_t at16, at64, at128, at192, at255;
  };
  constexpr Samples kSamples[] = {
      {0, 0, 19, 70, 147, 255, 255}, {0, 1, 1, 6, 11, 16, 19},      {0, 2, 0, 0, 0, 0, 0},
      {0, 3, 17, 57, 108, 157, 220}, {1, 0, 7, 25, 48, 66, 82},     {1, 1, 14, 52, 102, 153, 255},
      {1, 2, 1, 4, 8, 11, 13},       {1, 3, 16, 55, 106, 156, 224}, {2, 0, 1, 4, 9, 12, 16},
      {2, 1, 9, 32, 62, 89, 115},    {2, 2, 15, 51, 102, 160, 255}, {2, 3, 16, 53, 104, 154, 223},
  };
  for (const Samples& s : kSamples) {
    SCOPED_TRACE(testing::Message() << "channel " << s.channel << " ink " << s.ink);
    const uint8_t* const table = vm::kInkAbsorption[s.channel][s.ink];
    EXPECT_EQ(table[0], 0);
    EXPECT_EQ(table[16], s.at16);
    EXPECT_EQ(table[64], s.at64);
    EXPECT_EQ(table[128], s.at128);
    EXPECT_EQ(table[192], s.at192);
    EXPECT_EQ(table[255], s.at255);
  }
}

TEST(InkTables, AbsorptionNeverFallsAndHasNoJumps) {
  for (const auto& channel : vm::kInkAbsorption) {
    for (const auto& table : channel) {
      for (int32_t ink = 1; ink < 256; ++ink) {
        EXPECT_GE(table[ink], table[ink - 1]);
        EXPECT_LE(table[ink] - table[ink - 1], 4);
      }
    }
  }
}

TEST(InkTables, YellowTakesNothingFromRed) {
  for (const uint8_t value : vm::kInkAbsorption[0][2]) {
    EXPECT_EQ(value, 0);
  }
}

TEST(InkTables, TheCurvesOfColouredInksRiseNearlyInALineToTheirEnds) {
  EXPECT_EQ(vm::kInkCurve[0][255], 163);
  EXPECT_EQ(vm::kInkCurve[1][255], 135);
  EXPECT_EQ(vm::kInkCurve[2][255], 135);
  for (int32_t ink = 0; ink < 3; ++ink) {
    const auto& curve = vm::kInkCurve[ink];
    EXPECT_EQ(curve[0], 0);
    for (int32_t i = 1; i < 256; ++i) {
      EXPECT_GE(curve[i], curve[i - 1]);
      EXPECT_LE(std::abs(curve[i] * 255 - curve[255] * i), 2 * 255) << "ink " << ink << " at " << i;
    }
  }
}

TEST(InkTables, TheCurveOfBlackStaysNearZeroAndThenClimbsToFull) {
  const auto& curve = vm::kInkCurve[3];
  for (int32_t i = 0; i <= 90; ++i) {
    EXPECT_LE(curve[i], 2) << "at " << i;
  }
  for (int32_t i = 1; i < 256; ++i) {
    EXPECT_GE(curve[i], curve[i - 1]);
    EXPECT_LE(curve[i] - curve[i - 1], 4);
  }
  EXPECT_GT(curve[120], 10);
  EXPECT_EQ(curve[255], 255);
}

TEST(InkTables, AWordIndexesACurveDirectlyUpTo255AndByItsHighByteAbove) {
  for (int32_t ink = 0; ink < 4; ++ink) {
    for (int32_t word = 0; word < 0x10000; ++word) {
      const int32_t index = word <= 255 ? word : word / 256;
      ASSERT_EQ(vm::InkCurveAt(ink, static_cast<uint16_t>(word)), vm::kInkCurve[ink][index]);
    }
  }
}

}  // namespace
