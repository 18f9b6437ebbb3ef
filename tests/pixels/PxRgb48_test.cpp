#include "image/pixels/PxRgb48.h"

#include <gtest/gtest.h>

#include "RecordTesting.h"
#include "support/RandomData.h"

namespace {

using vm::ChannelOf;
using vm::Mixed255;
using vm::Mixed256;
using vm::WithChannel;

constexpr auto Rgba = PxRgbaBytes::Of;
constexpr auto Rgb = PxRgbBytes::Of;
constexpr PxRgb48 Rgb48(int32_t r, int32_t g, int32_t b) {
  PxRgb48 pixel;
  pixel.red = static_cast<uint16_t>(r);
  pixel.green = static_cast<uint16_t>(g);
  pixel.blue = static_cast<uint16_t>(b);
  return pixel;
}

PxRgb48 HalfMixed(PxRgb48 dst, const PxRgb48& src) {
  dst.HalfMix(src);
  return dst;
}
PxRgb48 FloatMixed(PxRgb48 dst, const PxRgb48& src, float t) {
  dst.FloatMix(src, t);
  return dst;
}
PxRgb48 IntegerMixed(PxRgb48 dst, const PxRgb48& src, float t) {
  dst.IntegerMix(src, t);
  return dst;
}

TEST(PxRgb48, ReadsThroughEachView) {
  const PxRgb48 pixel = Rgb48(0x10FF, 0x8000, 0x00FF);
  EXPECT_EQ(pixel.GetRgba(), Rgba(0x10, 0x80, 0x00, 255));
  EXPECT_EQ(pixel.GetRgb(), Rgb(0x10, 0x80, 0x00));
  EXPECT_EQ(pixel.GetByte(), 48);  // (16 + 128 + 0) / 3: of the high bytes
  EXPECT_EQ(pixel.GetRgba64(), (PxRgba64{0x10FF, 0x8000, 0x00FF, 0xFFFF}));
}

TEST(PxRgb48, IsWrittenThroughEachView) {
  PxRgb48 pixel = Rgb48(9, 9, 9);
  pixel.PutRgba(Rgba(1, 2, 3, 4));
  EXPECT_EQ(pixel, Rgb48(0x0101, 0x0202, 0x0303));
  pixel.PutRgb(Rgb(5, 6, 0xFF));
  EXPECT_EQ(pixel, Rgb48(0x0505, 0x0606, 0xFFFF));
  pixel.PutByte(0x77);
  EXPECT_EQ(pixel, Rgb48(0x7777, 0x7777, 0x7777));
  pixel.PutRgba64({1, 2, 3, 4});
  EXPECT_EQ(pixel, Rgb48(1, 2, 3));
}

TEST(PxRgb48, NumbersItsChannelsRedFirstAndTakesAnyOtherIndexForRed) {
  const PxRgb48 pixel = Rgb48(0x1111, 0x2222, 0x3333);
  EXPECT_EQ(ChannelOf<uint16_t>(pixel, 0), 0x1111);
  EXPECT_EQ(ChannelOf<uint16_t>(pixel, 1), 0x2222);
  EXPECT_EQ(ChannelOf<uint16_t>(pixel, 2), 0x3333);
  EXPECT_EQ(ChannelOf<uint16_t>(pixel, 3), 0x1111);
  EXPECT_EQ(ChannelOf<uint16_t>(pixel, -1), 0x1111);
  EXPECT_EQ(WithChannel<uint16_t>(pixel, 0, 9), Rgb48(9, 0x2222, 0x3333));
  EXPECT_EQ(WithChannel<uint16_t>(pixel, 1, 9), Rgb48(0x1111, 9, 0x3333));
  EXPECT_EQ(WithChannel<uint16_t>(pixel, 2, 9), Rgb48(0x1111, 0x2222, 9));
  EXPECT_EQ(WithChannel<uint16_t>(pixel, 3, 9), Rgb48(9, 0x2222, 0x3333));
}

TEST(PxRgb48, HalfAndHalfTruncates) {
  EXPECT_EQ(HalfMixed(Rgb48(1, 0xFFFF, 0), Rgb48(2, 0xFFFF, 0xFFFF)), Rgb48(1, 0xFFFF, 0x7FFF));
}

TEST(PxRgb48, TheFloatMixTruncates) {
  // 1000*0.75 + 2001*0.25 = 1250.25; 0xFFFF*0.75 = 49151.25; 3*0.25 = 0.75
  EXPECT_EQ(FloatMixed(Rgb48(1000, 0xFFFF, 0), Rgb48(2001, 0, 3), 0.25F), Rgb48(1250, 49151, 0));
  EXPECT_EQ(FloatMixed(Rgb48(1000, 0xFFFF, 0), Rgb48(2001, 0, 3), 0), Rgb48(1000, 0xFFFF, 0));
  EXPECT_EQ(FloatMixed(Rgb48(1000, 0xFFFF, 0), Rgb48(2001, 0, 3), 1), Rgb48(2001, 0, 3));
}

TEST(PxRgb48, TheIntegerMixDropsTheLowBits) {
  // w = 32768: (2001 + 1000) / 2
  EXPECT_EQ(IntegerMixed(Rgb48(1000, 0xFFFF, 0), Rgb48(2001, 0xFFFF, 0xFFFF), 0.5F),
            Rgb48(1500, 0xFFFF, 0x7FFF));
  // At t = 0 the weight is 1: 0xFFFF * 0xFFFF >> 16 = 0xFFFE
  EXPECT_EQ(IntegerMixed(Rgb48(0xFFFF, 1, 0), Rgb48(0, 1, 0), 0), Rgb48(0xFFFE, 1, 0));
}

TEST(PxRgb48, TheIntegerMixWeighsNothingAtOneBecauseItsWeightIsCutTo16Bits) {
  const PxRgb48 dst = Rgb48(1000, 0xFFFF, 0);
  EXPECT_EQ(IntegerMixed(dst, Rgb48(2001, 0, 0xFFFF), 1), dst);
  // Just below, it is nearly the source: w = trunc(65535 * 0.9999 + 1) = 65529
  EXPECT_EQ(IntegerMixed(Rgb48(0, 0, 0), Rgb48(0xFFFF, 0, 0), 0.9999F).red, 65528);
}

TEST(PxRgb48, TheByteMixOfImagesIsTheFloatMixSoThatFullOpacityArrives) {
  const PxRgb48 dst = Rgb48(0xFFFF, 0xFFFF, 0xFFFF);
  const PxRgb48 src = Rgb48(0, 0x1234, 0xFFFF);
  EXPECT_EQ(Mixed255(dst, src, 1), src);
  EXPECT_EQ(Mixed255(dst, src, 0), dst);
  EXPECT_EQ(Mixed255(Rgb48(1000, 0, 0), Rgb48(2001, 3, 0), 0.25F), Rgb48(1250, 0, 0));
}

TEST(PxRgb48, TheMixOfReadsIsTheIntegerMix) {
  const PxRgb48 dst = Rgb48(0xFFFF, 0xFFFF, 0xFFFF);
  EXPECT_EQ(Mixed256(dst, Rgb48(0, 0, 0), 1), dst);
  EXPECT_EQ(Mixed256(dst, Rgb48(0, 0, 0), 0), Rgb48(0xFFFE, 0xFFFE, 0xFFFE));
}

TEST(PxRgb48, TheMixesFollowTheirFormulas) {
  vm::RandomData random;
  SCOPED_TRACE(random.Trace());
  for (int32_t i = 0; i < 100000; ++i) {
    const PxRgb48 dst = Rgb48(random.Word(), random.Word(), random.Word());
    const PxRgb48 src = Rgb48(random.Word(), random.Word(), random.Word());
    const float t = i % 4 == 0 ? vm::kFractions[i / 4 % vm::kFractions.size()] : random.Fraction();
    const auto each = [&](auto&& mix) {
      return Rgb48(mix(dst.red, src.red), mix(dst.green, src.green), mix(dst.blue, src.blue));
    };
    // Halves of words are exact in a float.
    ASSERT_EQ(HalfMixed(dst, src), each([](int32_t d, int32_t s) { return (d + s) / 2; }));
    ASSERT_EQ(FloatMixed(dst, src, t), each([t](int32_t d, int32_t s) {
                const float kept = static_cast<float>(d) * (1.0F - t);
                const float taken = static_cast<float>(s) * t;
                return static_cast<int32_t>(kept + taken);
              }));
    const int64_t w = static_cast<int64_t>(65535.0F * t + 1.0F) % 0x10000;
    ASSERT_EQ(IntegerMixed(dst, src, t), each([w](int64_t d, int64_t s) {
                return static_cast<int32_t>((s * w + d * (0x10000 - w)) / 0x10000);
              }))
        << "t " << t;
  }
}

TEST(PxRgb48, InvertsEachChannel) {
  PxRgb48 pixel = Rgb48(0, 0x1234, 0xFFFF);
  pixel.Invert();
  EXPECT_EQ(pixel, Rgb48(0xFFFF, 0xEDCB, 0));
}

}  // namespace
