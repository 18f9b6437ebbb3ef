#include "image/pixels/PxField.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "RecordTesting.h"
#include "support/RandomData.h"

namespace {

using vm::ChannelOf;
using vm::Mixed255;
using vm::Mixed256;
using vm::WithChannel;

constexpr auto Rgba = PxRgbaBytes::Of;
constexpr auto Rgb = PxRgbBytes::Of;
constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

// --- PxDepthFloat

TEST(PxDepthFloat, ReadsAllChannelsOfAViewAsItsScaledDepthTruncated) {
  const PxDepthFloat half{0.5F};  // 127.5 and 32767.5
  EXPECT_EQ(half.GetRgba(), Rgba(127, 127, 127, 127));
  EXPECT_EQ(half.GetRgb(), Rgb(127, 127, 127));
  EXPECT_EQ(half.GetByte(), 127);
  EXPECT_EQ(half.GetRgba64(), (PxRgba64{32767, 32767, 32767, 32767}));
  const PxDepthFloat full{1.0F};
  EXPECT_EQ(full.GetRgba(), Rgba(255, 255, 255, 255));
  EXPECT_EQ(full.GetByte(), 255);
  EXPECT_EQ(full.GetRgba64(), (PxRgba64{0xFFFF, 0xFFFF, 0xFFFF, 0xFFFF}));
  EXPECT_EQ(PxDepthFloat{0.25F}.GetByte(), 63);              // 63.75
  EXPECT_EQ(PxDepthFloat{0.25F}.GetRgba64().green, 0x3FFF);  // 16383.75
}

TEST(PxDepthFloat, IsWrittenThroughEachView) {
  PxDepthFloat pixel{9};
  pixel.PutRgba(Rgba(255, 255, 255, 0));
  EXPECT_EQ(pixel.depth, 1.0F);  // 765 times the float nearest 1/765
  pixel.PutRgba(Rgba(10, 20, 30, 255));
  EXPECT_EQ(pixel.depth, 60.0F * 0.0013071896F);
  pixel.PutRgb(Rgb(255, 0, 0));
  EXPECT_EQ(pixel.depth, 255.0F * 0.0013071896F);
  pixel.PutByte(255);
  EXPECT_EQ(pixel.depth, 1.0F);
  pixel.PutByte(51);
  EXPECT_EQ(pixel.depth, 51.0F * 0.003921569F);
  pixel.PutRgba64({0x1000, 0x2000, 0x3000, 0xFFFF});
  EXPECT_EQ(pixel.depth, 24576.0F * 0.0000050863405F);
}

TEST(PxDepthFloat, WhiteWordsLeaveADepthJustBelowOne) {
  // The float nearest 1/196605 lies below it: 196605 times it is 1 - 2^-24, which reads one step
  // down.
  PxDepthFloat pixel;
  pixel.PutRgba64({0xFFFF, 0xFFFF, 0xFFFF, 0});
  EXPECT_EQ(pixel.depth, 0.99999994F);
  EXPECT_EQ(pixel.GetByte(), 254);
  EXPECT_EQ(pixel.GetRgba64().red, 0xFFFE);
}

TEST(PxDepthFloat, EveryByteComesBack) {
  for (int32_t v = 0; v < 256; ++v) {
    const auto byte = static_cast<uint8_t>(v);
    PxDepthFloat pixel;
    pixel.PutByte(byte);
    EXPECT_EQ(pixel.GetByte(), byte);
    pixel.PutRgb(Rgb(byte, byte, byte));
    EXPECT_EQ(pixel.GetByte(), byte);
  }
}

TEST(PxDepthFloat, ADepthOutOfRangeIsTruncatedAndCut) {
  EXPECT_EQ(PxDepthFloat{2.0F}.GetByte(), 510 - 256);
  EXPECT_EQ(PxDepthFloat{2.0F}.GetRgba64().red, 131070 - 65536);
  EXPECT_EQ(PxDepthFloat{-1.0F}.GetByte(), 256 - 255);
  EXPECT_EQ(PxDepthFloat{-0.001F}.GetByte(), 0);
  EXPECT_EQ(PxDepthFloat{kNaN}.GetRgba(), Rgba(0, 0, 0, 0));
  EXPECT_EQ(PxDepthFloat{kNaN}.GetRgba64(), PxRgba64{});
  EXPECT_EQ(PxDepthFloat{kInfinity}.GetByte(), 255);  // the low byte of the largest int32
  EXPECT_EQ(PxDepthFloat{-kInfinity}.GetByte(), 0);   // and of the smallest
  EXPECT_EQ(PxDepthFloat{1e30F}.GetRgba64().red, 0xFFFF);
}

TEST(PxDepthFloat, HasOneRawFloatAsItsChannelUnderEveryIndex) {
  for (const int32_t n : {-1, 0, 1, 7}) {
    EXPECT_EQ(ChannelOf<float>(PxDepthFloat{0.125F}, n), 0.125F);
    EXPECT_EQ(WithChannel<float>(PxDepthFloat{0}, n, -3.5F).depth, -3.5F);
  }
  EXPECT_TRUE(std::isnan(ChannelOf<float>(PxDepthFloat{kNaN}, 0)));
}

TEST(PxDepthFloat, MixesInFloat) {
  EXPECT_EQ(Mixed255(PxDepthFloat{1}, PxDepthFloat{5}, 0.25F).depth, 2.0F);
  EXPECT_EQ(Mixed256(PxDepthFloat{1}, PxDepthFloat{5}, 0.25F).depth, 2.0F);
  EXPECT_EQ(Mixed255(PxDepthFloat{0.1F}, PxDepthFloat{0.7F}, 0).depth, 0.1F);
  EXPECT_EQ(Mixed255(PxDepthFloat{0.1F}, PxDepthFloat{0.7F}, 1).depth, 0.7F);
}

TEST(PxDepthFloat, InvertsWithinOne) {
  PxDepthFloat pixel{0.25F};
  pixel.Invert();
  EXPECT_EQ(pixel.depth, 0.75F);
}

// --- PxXyFloats

TEST(PxXyFloats, ReadsXAndYTwiceTruncatedToBytes) {
  const PxXyFloats pixel{10.9F, 255.9F};
  EXPECT_EQ(pixel.GetRgba(), Rgba(10, 255, 10, 255));
  EXPECT_EQ(pixel.GetRgb(), Rgb(10, 255, 10));
  EXPECT_EQ(pixel.GetByte(), 10);
  EXPECT_EQ(pixel.GetRgba64(), (PxRgba64{0x0A0A, 0xFFFF, 0x0A0A, 0xFFFF}));
}

TEST(PxXyFloats, TakesYFromGreenOfBytesAndFromBlueOfWords) {
  PxXyFloats pixel{9, 9};
  pixel.PutRgba(Rgba(1, 2, 3, 4));
  EXPECT_EQ(pixel, (PxXyFloats{1, 2}));
  pixel.PutRgba64({0x10FF, 0x20FF, 0x30FF, 0x40FF});
  EXPECT_EQ(pixel, (PxXyFloats{0x10, 0x30}));
  pixel.PutRgb(Rgb(5, 6, 7));
  EXPECT_EQ(pixel, (PxXyFloats{5, 6}));
  pixel.PutByte(200);
  EXPECT_EQ(pixel, (PxXyFloats{200, 200}));
}

TEST(PxXyFloats, ACoordinateOutOfAByteIsTruncatedAndCut) {
  EXPECT_EQ((PxXyFloats{-1.5F, 300.5F}.GetRgba()), Rgba(255, 44, 255, 44));
  EXPECT_EQ((PxXyFloats{kNaN, kInfinity}.GetRgba()), Rgba(0, 255, 0, 255));
  EXPECT_EQ((PxXyFloats{-1.5F, kNaN}.GetByte()), 255);
}

TEST(PxXyFloats, HasTwoRawFloatsAsChannelsAndTakesAnyOtherIndexForX) {
  const PxXyFloats pixel{1.5F, -2.5F};
  EXPECT_EQ(ChannelOf<float>(pixel, 0), 1.5F);
  EXPECT_EQ(ChannelOf<float>(pixel, 1), -2.5F);
  EXPECT_EQ(ChannelOf<float>(pixel, 2), 1.5F);
  EXPECT_EQ(ChannelOf<float>(pixel, -1), 1.5F);
  EXPECT_EQ(WithChannel<float>(pixel, 0, 7), (PxXyFloats{7, -2.5F}));
  EXPECT_EQ(WithChannel<float>(pixel, 1, 7), (PxXyFloats{1.5F, 7}));
  EXPECT_EQ(WithChannel<float>(pixel, 2, 7), (PxXyFloats{7, -2.5F}));
}

TEST(PxXyFloats, AddsScalesAndMixesBothCoordinates) {
  PxXyFloats pixel{1, 2};
  pixel.Add({10, 20});
  EXPECT_EQ(pixel, (PxXyFloats{11, 22}));
  pixel.AddScaled({10, 20}, 0.5F);
  EXPECT_EQ(pixel, (PxXyFloats{16, 32}));
  EXPECT_EQ(Mixed255(PxXyFloats{1, 2}, PxXyFloats{5, -2}, 0.25F), (PxXyFloats{2, 1}));
  EXPECT_EQ(Mixed256(PxXyFloats{1, 2}, PxXyFloats{5, -2}, 0.25F), (PxXyFloats{2, 1}));
  EXPECT_EQ(Mixed255(PxXyFloats{1, 2}, PxXyFloats{5, -2}, 1), (PxXyFloats{5, -2}));
}

TEST(PxXyFloats, HasNoComplement) {
  PxXyFloats pixel{1, 2};
  pixel.Invert();
  EXPECT_EQ(pixel, (PxXyFloats{1, 2}));
}

// --- PxXyFixed

TEST(PxXyFixed, ReadsItsFieldsAsTheChannels) {
  const PxXyFixed pixel{1, -2, 127, -128};
  EXPECT_EQ(pixel.GetRgba(), Rgba(1, 0xFE, 127, 0x80));
  EXPECT_EQ(pixel.GetRgb(), Rgb(1, 0xFE, 127));
  EXPECT_EQ(pixel.GetByte(), 1);
  EXPECT_EQ((PxXyFixed{-1, 0, 0, 0}.GetByte()), 0xFF);
}

TEST(PxXyFixed, WidensItsFieldsAsSignedNumbers) {
  EXPECT_EQ((PxXyFixed{-1, -1, -1, -1}.GetRgba64()), (PxRgba64{0xFEFF, 0xFEFF, 0xFEFF, 0xFEFF}));
  for (int32_t field = -128; field < 128; ++field) {
    const PxXyFixed pixel{static_cast<int8_t>(field), 0, static_cast<int8_t>(field), 1};
    const auto word = static_cast<uint16_t>((field * 257 + 65536 * 2) % 65536);
    EXPECT_EQ(pixel.GetRgba64(), (PxRgba64{word, 0, word, 0x0101}));
  }
}

TEST(PxXyFixed, IsWrittenThroughEachView) {
  PxXyFixed pixel{9, 9, 9, 9};
  pixel.PutRgba(Rgba(1, 0xFE, 127, 0x80));
  EXPECT_EQ(pixel, (PxXyFixed{1, -2, 127, -128}));
  pixel.PutRgb(Rgb(1, 2, 3));
  EXPECT_EQ(pixel, (PxXyFixed{1, 2, 3, -1}));  // alpha 255
  pixel.PutByte(0xFE);
  EXPECT_EQ(pixel, (PxXyFixed{-2, 0, -2, 0}));
  pixel.PutRgba64({0x01FF, 0xFEFF, 0x7FFF, 0x80FF});
  EXPECT_EQ(pixel, (PxXyFixed{1, -2, 127, -128}));
}

TEST(PxXyFixed, HasFourTwoByteChannelsOfWhichTheLowByteCounts) {
  const PxXyFixed pixel{1, -2, 3, -4};
  EXPECT_EQ(ChannelOf<uint16_t>(pixel, 0), 0x0001);
  EXPECT_EQ(ChannelOf<uint16_t>(pixel, 1), 0x00FE);
  EXPECT_EQ(ChannelOf<uint16_t>(pixel, 2), 0x0003);
  EXPECT_EQ(ChannelOf<uint16_t>(pixel, 3), 0x00FC);
  EXPECT_EQ(ChannelOf<uint16_t>(pixel, 4), 0x0001);
  EXPECT_EQ(ChannelOf<uint16_t>(pixel, -1), 0x0001);
  EXPECT_EQ(WithChannel<uint16_t>(pixel, 0, 0x1280), (PxXyFixed{-128, -2, 3, -4}));
  EXPECT_EQ(WithChannel<uint16_t>(pixel, 1, 0x00FF), (PxXyFixed{1, -1, 3, -4}));
  EXPECT_EQ(WithChannel<uint16_t>(pixel, 2, 0xFF05), (PxXyFixed{1, -2, 5, -4}));
  EXPECT_EQ(WithChannel<uint16_t>(pixel, 3, 7), (PxXyFixed{1, -2, 3, 7}));
  EXPECT_EQ(WithChannel<uint16_t>(pixel, 9, 7), (PxXyFixed{7, -2, 3, -4}));
}

TEST(PxXyFixed, IsAWholePartAndAFractionInSteps) {
  const PxXyFloats value = PxXyFixed{3, 64, -5, -127}.ToFloats();
  EXPECT_EQ(value.x, 3.0F + 64.0F * 0.007874016F);
  EXPECT_EQ(value.y, -5.0F + -127.0F * 0.007874016F);
  // Signs of the parts are their own.
  EXPECT_EQ((PxXyFixed{3, -64, 0, 0}.ToFloats().x), 3.0F - 64.0F * 0.007874016F);
}

TEST(PxXyFixed, FromFloatTruncatesBothPartsTowardZero) {
  EXPECT_EQ(PxXyFixed::FromFloats({3.5F, -2.5F}), (PxXyFixed{3, 63, -2, -63}));  // 63.5
  EXPECT_EQ(PxXyFixed::FromFloats({0.999F, -0.999F}), (PxXyFixed{0, 126, 0, -126}));
  EXPECT_EQ(PxXyFixed::FromFloats({127, -128}), (PxXyFixed{127, 0, -128, 0}));
}

TEST(PxXyFixed, ACoordinateOutOfRangeIsCut) {
  // 300 is 44 and 256; 130 is -126 in a signed byte.
  EXPECT_EQ(PxXyFixed::FromFloats({300.5F, 130.25F}), (PxXyFixed{44, 63, -126, 31}));
  EXPECT_EQ(PxXyFixed::FromFloats({kNaN, kNaN}), PxXyFixed{});
  EXPECT_EQ(PxXyFixed::FromFloats({kInfinity, -kInfinity}), (PxXyFixed{-1, -1, 0, 0}));
}

TEST(PxXyFixed, AddsScalesAndMixesThroughItsFloatPair) {
  PxXyFixed pixel{2, 0, -2, 0};
  pixel.Add({3, 0, 1, 0});
  EXPECT_EQ(pixel, (PxXyFixed{5, 0, -1, 0}));
  pixel.AddScaled({3, 0, -3, 0}, 0.25F);  // 5.75 and -1.75: 95.25 steps
  EXPECT_EQ(pixel, (PxXyFixed{5, 95, -1, -95}));
  EXPECT_EQ(Mixed255(PxXyFixed{2, 0, 0, 0}, PxXyFixed{5, 0, -3, 0}, 0.5F),
            (PxXyFixed{3, 63, -1, -63}));
  EXPECT_EQ(Mixed256(PxXyFixed{2, 0, 0, 0}, PxXyFixed{5, 0, -3, 0}, 0.5F),
            (PxXyFixed{3, 63, -1, -63}));
}

TEST(PxXyFixed, ArithmeticFollowsTheFloatRuleForRandomFields) {
  vm::RandomData random;
  SCOPED_TRACE(random.Trace());
  const auto value = [](int8_t whole, int8_t fraction) {
    const float steps = static_cast<float>(fraction) * 0.007874016F;
    return static_cast<float>(whole) + steps;
  };
  const auto field = [](float number) { return static_cast<int8_t>(static_cast<int32_t>(number)); };
  const auto fraction = [](float v) {
    return static_cast<int8_t>((v - static_cast<float>(static_cast<int32_t>(v))) * 127.0F);
  };
  for (int32_t i = 0; i < 50000; ++i) {
    PxXyFixed dst;
    PxXyFixed src;
    random.Fill(&dst, sizeof dst);
    random.Fill(&src, sizeof src);
    const float t = random.Fraction();
    const float x = value(dst.xWhole, dst.xFraction);
    const float y = value(dst.yWhole, dst.yFraction);
    const float sx = value(src.xWhole, src.xFraction);
    const float sy = value(src.yWhole, src.yFraction);
    const auto fixed = [&](float a, float b) {
      return PxXyFixed{field(a), fraction(a), field(b), fraction(b)};
    };
    PxXyFixed sum = dst;
    sum.Add(src);
    ASSERT_EQ(sum, fixed(x + sx, y + sy));
    PxXyFixed scaled = dst;
    scaled.AddScaled(src, t);
    ASSERT_EQ(scaled, fixed(x + sx * t, y + sy * t));
    ASSERT_EQ(Mixed255(dst, src, t), fixed(x * (1.0F - t) + sx * t, y * (1.0F - t) + sy * t));
  }
}

TEST(PxXyFixed, HasNoComplement) {
  PxXyFixed pixel{1, 2, 3, 4};
  pixel.Invert();
  EXPECT_EQ(pixel, (PxXyFixed{1, 2, 3, 4}));
}

}  // namespace
