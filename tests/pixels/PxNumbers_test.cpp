#include "image/pixels/PxNumbers.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr int32_t kMax = std::numeric_limits<int32_t>::max();
constexpr int32_t kMin = std::numeric_limits<int32_t>::min();

TEST(PxNumbers, WideningAByteRepeatsIt) {
  EXPECT_EQ(vm::WordFromByte(0x00), 0x0000);
  EXPECT_EQ(vm::WordFromByte(0x01), 0x0101);
  EXPECT_EQ(vm::WordFromByte(0x80), 0x8080);
  EXPECT_EQ(vm::WordFromByte(0xFF), 0xFFFF);
  for (int32_t byte = 0; byte < 256; ++byte) {
    EXPECT_EQ(vm::WordFromByte(static_cast<uint8_t>(byte)), byte * 256 + byte);
  }
}

TEST(PxNumbers, NarrowingAWordKeepsItsHighByteWithoutRounding) {
  EXPECT_EQ(vm::ByteFromWord(0x00FF), 0x00);
  EXPECT_EQ(vm::ByteFromWord(0x0100), 0x01);
  EXPECT_EQ(vm::ByteFromWord(0xFEFF), 0xFE);
  EXPECT_EQ(vm::ByteFromWord(0xFFFF), 0xFF);
  for (int32_t word = 0; word < 0x10000; ++word) {
    ASSERT_EQ(vm::ByteFromWord(static_cast<uint16_t>(word)), word / 256);
  }
}

TEST(PxNumbers, NarrowingGivesAWidenedByteBack) {
  for (int32_t byte = 0; byte < 256; ++byte) {
    EXPECT_EQ(vm::ByteFromWord(vm::WordFromByte(static_cast<uint8_t>(byte))), byte);
  }
}

TEST(PxNumbers, FloatsAreTruncatedTowardZero) {
  EXPECT_EQ(vm::TruncToInt32(2.99F), 2);
  EXPECT_EQ(vm::TruncToInt32(-2.99F), -2);
  EXPECT_EQ(vm::TruncToInt32(-0.5F), 0);
  EXPECT_EQ(vm::TruncToInt32(2.99), 2);
  EXPECT_EQ(vm::TruncToInt32(-2.99), -2);
}

TEST(PxNumbers, WhatAnInt32CannotHoldGoesToItsNearestEnd) {
  EXPECT_EQ(vm::TruncToInt32(2147483520.0F), 2147483520);  // the largest float that fits
  EXPECT_EQ(vm::TruncToInt32(2147483648.0F), kMax);
  EXPECT_EQ(vm::TruncToInt32(1e30F), kMax);
  EXPECT_EQ(vm::TruncToInt32(kInfinity), kMax);
  EXPECT_EQ(vm::TruncToInt32(-2147483648.0F), kMin);
  EXPECT_EQ(vm::TruncToInt32(-2147483904.0F), kMin);
  EXPECT_EQ(vm::TruncToInt32(-kInfinity), kMin);

  EXPECT_EQ(vm::TruncToInt32(2147483646.9), 2147483646);
  EXPECT_EQ(vm::TruncToInt32(2147483647.9), kMax);
  EXPECT_EQ(vm::TruncToInt32(2147483648.0), kMax);
  EXPECT_EQ(vm::TruncToInt32(1e300), kMax);
  EXPECT_EQ(vm::TruncToInt32(-2147483648.9), kMin);
  EXPECT_EQ(vm::TruncToInt32(-2147483649.0), kMin);
  EXPECT_EQ(vm::TruncToInt32(-1e300), kMin);
}

TEST(PxNumbers, WhatIsNotANumberIsZero) {
  EXPECT_EQ(vm::TruncToInt32(kNaN), 0);
  EXPECT_EQ(vm::TruncToInt32(-kNaN), 0);
  EXPECT_EQ(vm::TruncToInt32(std::numeric_limits<double>::quiet_NaN()), 0);
  EXPECT_EQ(vm::ByteFromFloat(kNaN), 0);
  EXPECT_EQ(vm::WordFromFloat(kNaN), 0);
  EXPECT_EQ(vm::SignedByteFromFloat(kNaN), 0);
}

TEST(PxNumbers, ANarrowNumberKeepsTheLowBitsOfTheTruncatedFloat) {
  EXPECT_EQ(vm::ByteFromFloat(255.99F), 255);
  EXPECT_EQ(vm::ByteFromFloat(256.0F), 0);
  EXPECT_EQ(vm::ByteFromFloat(300.5F), 300 - 256);
  EXPECT_EQ(vm::ByteFromFloat(-1.5F), 255);
  EXPECT_EQ(vm::ByteFromFloat(kInfinity), 0xFF);
  EXPECT_EQ(vm::ByteFromFloat(-kInfinity), 0x00);

  EXPECT_EQ(vm::WordFromFloat(65535.9F), 65535);
  EXPECT_EQ(vm::WordFromFloat(65536.0F), 0);
  EXPECT_EQ(vm::WordFromFloat(-1.5F), 0xFFFF);
  EXPECT_EQ(vm::WordFromFloat(kInfinity), 0xFFFF);
  EXPECT_EQ(vm::WordFromFloat(-kInfinity), 0x0000);

  EXPECT_EQ(vm::SignedByteFromFloat(127.9F), 127);
  EXPECT_EQ(vm::SignedByteFromFloat(128.0F), -128);
  EXPECT_EQ(vm::SignedByteFromFloat(-128.9F), -128);
  EXPECT_EQ(vm::SignedByteFromFloat(-129.0F), 127);
  EXPECT_EQ(vm::SignedByteFromFloat(kInfinity), -1);
  EXPECT_EQ(vm::SignedByteFromFloat(-kInfinity), 0);
}

TEST(PxNumbers, TheGrayOfThreeBytesIsTheirAverageTruncated) {
  EXPECT_EQ(vm::GrayOf(0, 0, 2), 0);
  EXPECT_EQ(vm::GrayOf(1, 1, 1), 1);
  EXPECT_EQ(vm::GrayOf(255, 255, 254), 254);
  EXPECT_EQ(vm::GrayOf(255, 255, 255), 255);
  EXPECT_EQ(vm::GrayOf(10, 20, 40), 23);  // 70 / 3
}

}  // namespace
