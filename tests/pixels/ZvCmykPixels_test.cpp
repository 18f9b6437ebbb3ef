#include <gtest/gtest.h>

#include <algorithm>
#include <array>

#include "image/pixels/PxCmyk.h"
#include "RecordTesting.h"
#include "support/RandomData.h"
#include "support/ReportRecorder.h"

namespace {

using vm::ChannelOf;
using vm::Composited;
using vm::Mixed255;
using vm::Mixed256;
using vm::WithChannel;

constexpr auto Rgba = PxRgbaBytes::Of;
constexpr auto Rgb = PxRgbBytes::Of;
constexpr auto& kCyan = vm::kInkCurve[0];
constexpr auto& kMagenta = vm::kInkCurve[1];
constexpr auto& kYellow = vm::kInkCurve[2];
constexpr auto& kBlack = vm::kInkCurve[3];

PxCmykBytes RandomBytes(vm::RandomData& random) {
  return {random.Byte(), random.Byte(), random.Byte(), random.Byte()};
}
PxCmykaBytes RandomBytesWithAlpha(vm::RandomData& random) {
  return {random.Byte(), random.Byte(), random.Byte(), random.Byte(), random.Byte()};
}
PxCmyk64 RandomWords(vm::RandomData& random) {
  return {random.Word(), random.Word(), random.Word(), random.Word()};
}
PxCmyka80 RandomWordsWithAlpha(vm::RandomData& random) {
  return {random.Word(), random.Word(), random.Word(), random.Word(), random.Word()};
}

// --- PxCmykBytes

TEST(PxCmykBytes, WithoutInkReadsAsOpaqueWhite) {
  EXPECT_EQ(PxCmykBytes{}.GetRgba(), Rgba(255, 255, 255, 255));
  EXPECT_EQ(PxCmykBytes{}.GetRgba64(), (PxRgba64{0xFFFF, 0xFFFF, 0xFFFF, 0xFFFF}));
}

TEST(PxCmykBytes, EachFullInkLeavesWhatItsTablesLeave) {
  EXPECT_EQ((PxCmykBytes{255, 0, 0, 0}.GetRgba()), Rgba(0, 255 - 82, 255 - 16, 255));
  EXPECT_EQ((PxCmykBytes{0, 255, 0, 0}.GetRgba()), Rgba(255 - 19, 0, 255 - 115, 255));
  EXPECT_EQ((PxCmykBytes{0, 0, 255, 0}.GetRgba()), Rgba(255, 255 - 13, 0, 255));
  EXPECT_EQ((PxCmykBytes{0, 0, 0, 255}.GetRgba()), Rgba(255 - 220, 255 - 224, 255 - 223, 255));
}

TEST(PxCmykBytes, InksTakeTheirSharesOneAfterTheOtherInIntegers) {
  // Cyan 64, magenta 128, black 16.
  // red:   255 - 70 = 185, 244 * 185 / 255 = 177, 238 * 177 / 255 = 165
  // green: 255 - 25 = 230, 153 * 230 / 255 = 138, 239 * 138 / 255 = 129
  // blue:  255 -  4 = 251, 193 * 251 / 255 = 189, 239 * 189 / 255 = 177
  EXPECT_EQ((PxCmykBytes{64, 128, 0, 16}.GetRgba()), Rgba(165, 129, 177, 255));
  // red:   185 * 257 = 47545, 244 * 47545 / 255 = 45494, 238 * 45494 / 255 = 42461
  // green: 230 * 257 = 59110, 153 * 59110 / 255 = 35466, 239 * 35466 / 255 = 33240
  // blue:  251 * 257 = 64507, 193 * 64507 / 255 = 48822, 239 * 48822 / 255 = 45758
  EXPECT_EQ((PxCmykBytes{64, 128, 0, 16}.GetRgba64()), (PxRgba64{42461, 33240, 45758, 0xFFFF}));
}

TEST(PxCmykBytes, ReadsEveryInkByTheTables) {
  vm::RandomData random;
  SCOPED_TRACE(random.Trace());
  for (int32_t i = 0; i < 100000; ++i) {
    const PxCmykBytes pixel = RandomBytes(random);
    const std::array<uint8_t, 4> inks{pixel.cyan, pixel.magenta, pixel.yellow, pixel.black};
    std::array<int64_t, 3> byte{255, 255, 255};
    std::array<int64_t, 3> word{0xFFFF, 0xFFFF, 0xFFFF};
    for (size_t channel = 0; channel < 3; ++channel) {
      for (size_t ink = 0; ink < 4; ++ink) {
        const int64_t left = 255 - vm::kInkAbsorption[channel][ink][inks[ink]];
        byte[channel] = left * byte[channel] / 255;
        word[channel] = left * word[channel] / 255;
      }
    }
    const PxRgbaBytes rgba = pixel.GetRgba();
    ASSERT_EQ((std::array<int64_t, 3>{rgba.red, rgba.green, rgba.blue}), byte);
    ASSERT_EQ(rgba.alpha, 255);
    const PxRgba64 rgba64 = pixel.GetRgba64();
    ASSERT_EQ((std::array<int64_t, 3>{rgba64.red, rgba64.green, rgba64.blue}), word);
    ASSERT_EQ(rgba64.alpha, 0xFFFF);
  }
}

TEST(PxCmykBytes, ReportsEachViewThatCannotConvertAndKeepsItsInks) {
  PxCmykBytes pixel{1, 2, 3, 4};
  vm::ReportRecorder reports;
  pixel.PutRgba(Rgba(9, 9, 9, 9));
  EXPECT_EQ(reports.Lines(), vm::Reports({"ZvCmykPixels(226) : 0"}));
  reports.Clear();
  pixel.PutRgb(Rgb(9, 9, 9));
  EXPECT_EQ(reports.Lines(), vm::Reports({"ZvCmykPixels(233) : 0"}));
  reports.Clear();
  pixel.GetRgb();
  EXPECT_EQ(reports.Lines(), vm::Reports({"ZvCmykPixels(210) : 0"}));
  EXPECT_EQ(pixel, (PxCmykBytes{1, 2, 3, 4}));
}

TEST(PxCmykBytes, WritingWordsStoresNothingAndReportsNothing) {
  PxCmykBytes pixel{1, 2, 3, 4};
  vm::ReportRecorder reports;
  pixel.PutRgba64(kRgba64Black);
  EXPECT_EQ(pixel, (PxCmykBytes{1, 2, 3, 4}));
  EXPECT_TRUE(reports.Empty());
}

TEST(PxCmykBytes, AsAByteReads255AndWritesNoInk) {
  PxCmykBytes pixel{1, 2, 3, 4};
  EXPECT_EQ(pixel.GetByte(), 255);
  pixel.PutByte(77);
  EXPECT_EQ(pixel, PxCmykBytes{});
}

TEST(PxCmykBytes, NumbersItsChannelsInStorageOrderAndTakesAnyOtherIndexForCyan) {
  const PxCmykBytes pixel{1, 2, 3, 4};
  EXPECT_EQ(ChannelOf<uint8_t>(pixel, 0), 1);
  EXPECT_EQ(ChannelOf<uint8_t>(pixel, 1), 2);
  EXPECT_EQ(ChannelOf<uint8_t>(pixel, 2), 3);
  EXPECT_EQ(ChannelOf<uint8_t>(pixel, 3), 4);
  EXPECT_EQ(ChannelOf<uint8_t>(pixel, 4), 1);
  EXPECT_EQ(ChannelOf<uint8_t>(pixel, -1), 1);
  EXPECT_EQ(WithChannel<uint8_t>(pixel, 0, 9), (PxCmykBytes{9, 2, 3, 4}));
  EXPECT_EQ(WithChannel<uint8_t>(pixel, 1, 9), (PxCmykBytes{1, 9, 3, 4}));
  EXPECT_EQ(WithChannel<uint8_t>(pixel, 2, 9), (PxCmykBytes{1, 2, 9, 4}));
  EXPECT_EQ(WithChannel<uint8_t>(pixel, 3, 9), (PxCmykBytes{1, 2, 3, 9}));
  EXPECT_EQ(WithChannel<uint8_t>(pixel, 4, 9), (PxCmykBytes{9, 2, 3, 4}));
}

TEST(PxCmykBytes, ItsGrayIsWhatBlackAndTheCommonInkLeave) {
  EXPECT_EQ((PxCmykBytes{10, 20, 30, 40}.GrayOf()), 205);
  EXPECT_EQ((PxCmykBytes{10, 20, 30, 40}.GrayOfFloat()), 1.0F - 50.0F * 0.003921569F);
  EXPECT_EQ((PxCmykBytes{30, 10, 20, 40}.GrayOf()), 205);
  EXPECT_EQ((PxCmykBytes{20, 30, 10, 40}.GrayOf()), 205);
  EXPECT_EQ((PxCmykBytes{10, 20, 30, 250}.GrayOf()), 0);  // 260, limited
  EXPECT_EQ((PxCmykBytes{10, 20, 30, 250}.GrayOfFloat()), 1.0F - 255.0F * 0.003921569F);
  EXPECT_EQ(PxCmykBytes{}.GrayOf(), 255);
  EXPECT_EQ(PxCmykBytes{}.GrayOfFloat(), 1.0F);
}

TEST(PxCmykBytes, SettingAGrayByteLeavesItsComplementInBlack) {
  PxCmykBytes pixel{1, 2, 3, 4};
  pixel.SetGray(uint8_t{200});
  EXPECT_EQ(pixel, (PxCmykBytes{0, 0, 0, 55}));
}

TEST(PxCmykBytes, SettingAFloatGrayFromZeroToOneLeavesBlackAtOneOrZero) {
  PxCmykBytes pixel{1, 2, 3, 4};
  pixel.SetGray(0.0F);
  EXPECT_EQ(pixel, (PxCmykBytes{0, 0, 0, 1}));
  pixel.SetGray(0.5F);
  EXPECT_EQ(pixel, PxCmykBytes{});
  pixel.SetGray(1.0F);
  EXPECT_EQ(pixel, PxCmykBytes{});
}

TEST(PxCmykBytes, Mix255CoversAllFourInks) {
  // w = 127
  EXPECT_EQ(Mixed255(PxCmykBytes{0, 255, 10, 0}, PxCmykBytes{255, 0, 10, 255}, 0.5F),
            (PxCmykBytes{127, 128, 10, 127}));
  for (const float t : vm::kFractions) {
    const auto w = static_cast<int64_t>(255.0F * t);
    for (int32_t d = 0; d < 256; ++d) {
      for (int32_t s = 0; s < 256; ++s) {
        const auto dst = static_cast<uint8_t>(d);
        const auto src = static_cast<uint8_t>(s);
        const auto there = static_cast<uint8_t>(vm::WeightedMean(d, s, w, 255, 0x7F));
        const auto back = static_cast<uint8_t>(vm::WeightedMean(s, d, w, 255, 0x7F));
        ASSERT_EQ(Mixed255(PxCmykBytes{dst, src, dst, src}, PxCmykBytes{src, dst, src, dst}, t),
                  (PxCmykBytes{there, back, there, back}));
      }
    }
  }
}

TEST(PxCmykBytes, Mix256DarkensByOneWhateverTheSourceAndTheFraction) {
  for (int32_t v = 0; v < 256; ++v) {
    const auto dst = static_cast<uint8_t>(v);
    const auto expected = static_cast<uint8_t>(v == 0 ? 0 : v - 1);  // v * 255 / 256
    for (const float t : {0.0F, 0.5F, 1.0F}) {
      ASSERT_EQ(Mixed256(PxCmykBytes{dst, dst, dst, dst}, PxCmykBytes{200, 0, 255, 1}, t),
                (PxCmykBytes{expected, expected, expected, expected}));
    }
  }
}

TEST(PxCmykBytes, InvertsAllFourInks) {
  PxCmykBytes pixel{0, 100, 200, 255};
  pixel.Invert();
  EXPECT_EQ(pixel, (PxCmykBytes{255, 155, 55, 0}));
}

// --- PxCmykaBytes

TEST(PxCmykaBytes, WritingColourReplacesItsCommonGrayByBlack) {
  const auto put = [](const PxRgbaBytes& in) {
    PxCmykaBytes pixel{9, 9, 9, 9, 9};
    pixel.PutRgba(in);
    return pixel;
  };
  EXPECT_EQ(put(Rgba(255, 255, 255, 7)), (PxCmykaBytes{0, 0, 0, 0, 7}));
  EXPECT_EQ(put(Rgba(0, 0, 0, 7)), (PxCmykaBytes{0, 0, 0, 255, 7}));
  EXPECT_EQ(put(Rgba(10, 20, 30, 40)), (PxCmykaBytes{20, 10, 0, 225, 40}));
  EXPECT_EQ(put(Rgba(30, 10, 20, 40)), (PxCmykaBytes{0, 20, 10, 225, 40}));
  EXPECT_EQ(put(Rgba(20, 30, 10, 40)), (PxCmykaBytes{10, 0, 20, 225, 40}));
}

TEST(PxCmykaBytes, PutRgbIsOpaqueAndPutRgba64TakesHighBytes) {
  PxCmykaBytes pixel{9, 9, 9, 9, 9};
  pixel.PutRgb(Rgb(10, 20, 30));
  EXPECT_EQ(pixel, (PxCmykaBytes{20, 10, 0, 225, 255}));
  pixel.PutRgba64({0x0AFF, 0x14FF, 0x1EFF, 0x28FF});
  EXPECT_EQ(pixel, (PxCmykaBytes{20, 10, 0, 225, 40}));
}

TEST(PxCmykaBytes, GetRgbaTakesInksStraightWhereGetRgbTakesThemThroughTheirCurves) {
  const PxCmykaBytes inks{255, 255, 255, 0, 7};
  EXPECT_EQ(inks.GetRgba(), Rgba(0, 0, 0, 7));
  EXPECT_EQ(inks.GetRgb(), Rgb(255 - 163, 255 - 135, 255 - 135));
  EXPECT_EQ(inks.GetRgba64(), (PxRgba64{92 * 257, 120 * 257, 120 * 257, 7 * 257}));
  // Black below 90 hardly counts, full black leaves nothing.
  EXPECT_EQ((PxCmykaBytes{1, 2, 3, 50, 0}.GetRgba()), Rgba(254, 253, 252, 0));
  EXPECT_EQ((PxCmykaBytes{1, 2, 3, 255, 0}.GetRgba()), Rgba(0, 0, 0, 0));
  EXPECT_EQ((PxCmykaBytes{1, 2, 3, 255, 0}.GetRgb()), Rgb(0, 0, 0));
}

TEST(PxCmykaBytes, ReadsEveryInkByTheCurvesWithALimitBelow) {
  vm::RandomData random;
  SCOPED_TRACE(random.Trace());
  const auto limited = [](int32_t value) { return static_cast<uint8_t>(value < 0 ? 0 : value); };
  for (int32_t i = 0; i < 100000; ++i) {
    const PxCmykaBytes p = RandomBytesWithAlpha(random);
    const int32_t k = kBlack[p.black];
    ASSERT_EQ(p.GetRgba(), Rgba(limited(255 - p.cyan - k), limited(255 - p.magenta - k),
                                limited(255 - p.yellow - k), p.alpha));
    const PxRgbBytes rgb =
        Rgb(limited(255 - kCyan[p.cyan] - k), limited(255 - kMagenta[p.magenta] - k),
            limited(255 - kYellow[p.yellow] - k));
    ASSERT_EQ(p.GetRgb(), rgb);
    ASSERT_EQ(
        p.GetRgba64(),
        (PxRgba64{static_cast<uint16_t>(rgb.red * 257), static_cast<uint16_t>(rgb.green * 257),
                  static_cast<uint16_t>(rgb.blue * 257), static_cast<uint16_t>(p.alpha * 257)}));
  }
}

TEST(PxCmykaBytes, AsAByteIsItsAlphaAndWritesNoInk) {
  PxCmykaBytes pixel{1, 2, 3, 4, 5};
  EXPECT_EQ(pixel.GetByte(), 5);
  pixel.PutByte(77);
  EXPECT_EQ(pixel, (PxCmykaBytes{0, 0, 0, 0, 77}));
}

TEST(PxCmykaBytes, NumbersItsChannelsInStorageOrderAndTakesAnyOtherIndexForCyan) {
  const PxCmykaBytes pixel{1, 2, 3, 4, 5};
  for (int32_t n = 0; n < 5; ++n) {
    EXPECT_EQ(ChannelOf<uint8_t>(pixel, n), n + 1);
    EXPECT_EQ(ChannelOf<uint8_t>(WithChannel<uint8_t>(pixel, n, 99), n), 99);
  }
  EXPECT_EQ(ChannelOf<uint8_t>(pixel, 5), 1);
  EXPECT_EQ(ChannelOf<uint8_t>(pixel, -1), 1);
  EXPECT_EQ(WithChannel<uint8_t>(pixel, 4, 9), (PxCmykaBytes{1, 2, 3, 4, 9}));
  EXPECT_EQ(WithChannel<uint8_t>(pixel, 5, 9), (PxCmykaBytes{9, 2, 3, 4, 5}));
}

TEST(PxCmykaBytes, GrayIsReadAndSetAsWithoutAlphaAndBecomesOpaque) {
  EXPECT_EQ((PxCmykaBytes{10, 20, 30, 40, 0}.GrayOf()), 205);
  EXPECT_EQ((PxCmykaBytes{10, 20, 30, 40, 0}.GrayOfFloat()), 1.0F - 50.0F * 0.003921569F);
  EXPECT_EQ((PxCmykaBytes{10, 20, 30, 250, 0}.GrayOf()), 0);
  PxCmykaBytes pixel{1, 2, 3, 4, 5};
  pixel.SetGray(uint8_t{200});
  EXPECT_EQ(pixel, (PxCmykaBytes{0, 0, 0, 55, 255}));
  pixel.SetGray(0.0F);
  EXPECT_EQ(pixel, (PxCmykaBytes{0, 0, 0, 1, 255}));
  pixel.SetGray(1.0F);
  EXPECT_EQ(pixel, (PxCmykaBytes{0, 0, 0, 0, 255}));
}

TEST(PxCmykaBytes, CompositeOfAnOpaqueSourceReplacesAllFiveBytesAndItsFormWithAFractionFour) {
  const PxCmykaBytes dst{1, 2, 3, 4, 100};
  const PxCmykaBytes src{10, 20, 30, 40, 255};
  EXPECT_EQ(Composited(dst, src), src);
  EXPECT_EQ(Composited(dst, src, 1), (PxCmykaBytes{10, 20, 30, 40, 100}));  // alpha stays
  EXPECT_EQ(Composited(dst, PxCmykaBytes{10, 20, 30, 40, 0}), dst);
  EXPECT_EQ(Composited(dst, PxCmykaBytes{10, 20, 30, 40, 0}, 1), dst);
}

TEST(PxCmykaBytes, BothCompositesFollowTheirFormulaForEveryPairOfAlphas) {
  for (int32_t da = 0; da < 256; ++da) {
    for (int32_t sa = 0; sa < 256; ++sa) {
      const PxCmykaBytes dst{0, 10, 200, 255, static_cast<uint8_t>(da)};
      const PxCmykaBytes src{255, 250, 3, 0, static_cast<uint8_t>(sa)};
      const auto expected = [&](int64_t s, int64_t A) {
        const auto ink = [&](int64_t d, int64_t from) {
          return static_cast<uint8_t>((s * from + (A - s) * d + A / 2) / A);
        };
        return PxCmykaBytes{ink(0, 255), ink(10, 250), ink(200, 3), ink(255, 0),
                            static_cast<uint8_t>(A)};
      };
      if (sa > 0 && sa < 255) {
        ASSERT_EQ(Composited(dst, src), expected(sa, vm::SummedAlpha(da, sa, 255)));
      }
      for (const float t : {0.25F, 0.999F, 1.0F}) {
        const auto s = static_cast<int64_t>(static_cast<float>(sa) * t);
        if (s > 0 && s < 255) {
          ASSERT_EQ(Composited(dst, src, t), expected(s, vm::OverAlpha(da, s, 255)));
        }
      }
    }
  }
}

TEST(PxCmykaBytes, MixesCoverAlphaAndMix256Darkens) {
  EXPECT_EQ(Mixed255(PxCmykaBytes{0, 255, 10, 0, 0}, PxCmykaBytes{255, 0, 10, 255, 255}, 0.5F),
            (PxCmykaBytes{127, 128, 10, 127, 127}));
  EXPECT_EQ(Mixed255(PxCmykaBytes{1, 2, 3, 4, 5}, PxCmykaBytes{9, 8, 7, 6, 5}, 1),
            (PxCmykaBytes{9, 8, 7, 6, 5}));
  for (const float t : {0.0F, 0.5F, 1.0F}) {
    EXPECT_EQ(Mixed256(PxCmykaBytes{0, 1, 128, 254, 255}, PxCmykaBytes{255, 255, 255, 255, 255}, t),
              (PxCmykaBytes{0, 0, 127, 253, 254}));
  }
}

TEST(PxCmykaBytes, InvertsInksAndKeepsAlpha) {
  PxCmykaBytes pixel{0, 100, 200, 255, 7};
  pixel.Invert();
  EXPECT_EQ(pixel, (PxCmykaBytes{255, 155, 55, 0, 7}));
}

// --- PxCmyk64 and PxCmyka80

TEST(PxCmyk64, TakesTheComplementOfABytesWithin16Bits) {
  PxCmyk64 pixel{9, 9, 9, 9};
  pixel.PutRgb(Rgb(10, 20, 30));
  // Complements 0xFFF5, 0xFFEB, 0xFFE1, of which the smallest is black.
  EXPECT_EQ(pixel, (PxCmyk64{20, 10, 0, 0xFFE1}));
  pixel = {9, 9, 9, 9};
  pixel.PutRgba(Rgba(10, 20, 30, 0));
  EXPECT_EQ(pixel, (PxCmyk64{20, 10, 0, 0xFFE1}));
  pixel.PutRgb(Rgb(255, 255, 255));
  EXPECT_EQ(pixel, (PxCmyk64{0, 0, 0, 0xFF00}));  // white bytes leave nearly full black
}

TEST(PxCmyk64, TakesTheComplementOfWords) {
  PxCmyk64 pixel{9, 9, 9, 9};
  pixel.PutRgba64({0x1000, 0x2000, 0x3000, 0});
  EXPECT_EQ(pixel, (PxCmyk64{0x2000, 0x1000, 0, 0xCFFF}));
  pixel.PutRgba64(kRgba64White);
  EXPECT_EQ(pixel, PxCmyk64{});
  pixel.PutRgba64(kRgba64Black);
  EXPECT_EQ(pixel, (PxCmyk64{0, 0, 0, 0xFFFF}));
}

TEST(PxCmyk64, ReadsInksThroughTheirCurves) {
  EXPECT_EQ(PxCmyk64{}.GetRgba64(), (PxRgba64{0xFFFF, 0xFFFF, 0xFFFF, 0xFFFF}));
  EXPECT_EQ((PxCmyk64{255, 255, 255, 0}.GetRgba64()),
            (PxRgba64{0xFFFF - 163 * 257, 0xFFFF - 135 * 257, 0xFFFF - 135 * 257, 0xFFFF}));
  EXPECT_EQ((PxCmyk64{1, 1, 1, 255}.GetRgba64()), (PxRgba64{0, 0, 0, 0xFFFF}));  // limited at 0
  EXPECT_EQ((PxCmyk64{255, 255, 255, 0}.GetRgba()), Rgba(92, 120, 120, 255));
  EXPECT_EQ((PxCmyk64{255, 255, 255, 0}.GetRgb()), Rgb(92, 120, 120));
}

TEST(PxCmyk64, InkWordsAbove255CountByTheirHighByte) {
  EXPECT_EQ((PxCmyk64{0xFFFF, 0x8000, 0x0100, 0}.GetRgba64()),
            (PxRgba64{static_cast<uint16_t>(0xFFFF - 163 * 257),
                      static_cast<uint16_t>(0xFFFF - kMagenta[0x80] * 257),
                      static_cast<uint16_t>(0xFFFF - kYellow[1] * 257), 0xFFFF}));
}

TEST(PxCmyk64, AsAByteReads255AndWritesNoInk) {
  PxCmyk64 pixel{1, 2, 3, 4};
  EXPECT_EQ(pixel.GetByte(), 255);
  pixel.PutByte(77);
  EXPECT_EQ(pixel, PxCmyk64{});
}

TEST(PxCmyk64, NumbersItsChannelsInStorageOrderAndTakesAnyOtherIndexForCyan) {
  const PxCmyk64 pixel{0x0101, 0x0202, 0x0303, 0x0404};
  for (int32_t n = 0; n < 4; ++n) {
    EXPECT_EQ(ChannelOf<uint16_t>(pixel, n), (n + 1) * 0x0101);
    EXPECT_EQ(ChannelOf<uint16_t>(WithChannel<uint16_t>(pixel, n, 0x9876), n), 0x9876);
  }
  EXPECT_EQ(ChannelOf<uint16_t>(pixel, 4), 0x0101);
  EXPECT_EQ(ChannelOf<uint16_t>(pixel, -1), 0x0101);
  EXPECT_EQ(WithChannel<uint16_t>(pixel, 3, 9), (PxCmyk64{0x0101, 0x0202, 0x0303, 9}));
  EXPECT_EQ(WithChannel<uint16_t>(pixel, 4, 9), (PxCmyk64{9, 0x0202, 0x0303, 0x0404}));
}

TEST(PxCmyk64, ItsGrayIsWhatBlackAndTheCommonInkLeaveOfAWord) {
  EXPECT_EQ((PxCmyk64{0x1000, 0x2000, 0x3000, 0x4000}.GrayOf()), 0xAF);  // 0xFFFF - 0x5000 = 0xAFFF
  EXPECT_EQ((PxCmyk64{0x3000, 0x1000, 0x2000, 0xF800}.GrayOf()), 0);     // 0x10800, limited
  EXPECT_EQ((PxCmyk64{0x1000, 0x2000, 0x3000, 0x4000}.GrayOfFloat()),
            1.0F - 20480.0F * 0.000015259022F);
  EXPECT_EQ(PxCmyk64{}.GrayOfFloat(), 1.0F);
  PxCmyk64 pixel{1, 2, 3, 4};
  pixel.SetGray(uint8_t{200});
  EXPECT_EQ(pixel, (PxCmyk64{0, 0, 0, 0x3737}));  // 55 * 257
  pixel.SetGray(0.0F);
  EXPECT_EQ(pixel, (PxCmyk64{0, 0, 0, 1}));
  pixel.SetGray(1.0F);
  EXPECT_EQ(pixel, PxCmyk64{});
}

TEST(PxCmyk64, InvertsAllFourInks) {
  PxCmyk64 pixel{0, 0x1234, 0x8000, 0xFFFF};
  pixel.Invert();
  EXPECT_EQ(pixel, (PxCmyk64{0xFFFF, 0xEDCB, 0x7FFF, 0}));
}

TEST(PxCmyka80, StoresAByteAlphaUnscaledAndNoAlphaAsOpaque) {
  PxCmyka80 pixel{9, 9, 9, 9, 9};
  pixel.PutRgba(Rgba(10, 20, 30, 200));
  EXPECT_EQ(pixel, (PxCmyka80{20, 10, 0, 0xFFE1, 200}));
  pixel.PutRgb(Rgb(10, 20, 30));
  EXPECT_EQ(pixel, (PxCmyka80{20, 10, 0, 0xFFE1, 0xFFFF}));
  pixel.PutRgba64({0x1000, 0x2000, 0x3000, 0x1234});
  EXPECT_EQ(pixel, (PxCmyka80{0x2000, 0x1000, 0, 0xCFFF, 0x1234}));
}

TEST(PxCmyka80, ReadsTheLowByteOfAlphaAsBytesAndTheWordAsWords) {
  const PxCmyka80 pixel{255, 255, 255, 0, 0x1234};
  EXPECT_EQ(pixel.GetRgba(), Rgba(92, 120, 120, 0x34));
  EXPECT_EQ(pixel.GetRgb(), Rgb(92, 120, 120));
  EXPECT_EQ(pixel.GetRgba64(), (PxRgba64{92 * 257, 120 * 257, 120 * 257, 0x1234}));
  EXPECT_EQ((PxCmyka80{0xFFFF, 1, 1, 255, 0}.GetRgba64()), PxRgba64{});
}

TEST(PxCmyka80, AsAByteIsTheHighByteOfAlphaAndWritesItRepeated) {
  PxCmyka80 pixel{1, 2, 3, 4, 0x12FF};
  EXPECT_EQ(pixel.GetByte(), 0x12);
  pixel.PutByte(0x77);
  EXPECT_EQ(pixel, (PxCmyka80{0, 0, 0, 0, 0x7777}));
}

TEST(PxCmyka80, NumbersItsChannelsInStorageOrderAndTakesAnyOtherIndexForCyan) {
  const PxCmyka80 pixel{0x0101, 0x0202, 0x0303, 0x0404, 0x0505};
  for (int32_t n = 0; n < 5; ++n) {
    EXPECT_EQ(ChannelOf<uint16_t>(pixel, n), (n + 1) * 0x0101);
    EXPECT_EQ(ChannelOf<uint16_t>(WithChannel<uint16_t>(pixel, n, 0x9876), n), 0x9876);
  }
  EXPECT_EQ(ChannelOf<uint16_t>(pixel, 5), 0x0101);
  EXPECT_EQ(ChannelOf<uint16_t>(pixel, -1), 0x0101);
  EXPECT_EQ(WithChannel<uint16_t>(pixel, 5, 9), (PxCmyka80{9, 0x0202, 0x0303, 0x0404, 0x0505}));
}

TEST(PxCmyka80, ItsFloatGrayLimitsTheDarknessAtAByte) {
  EXPECT_EQ((PxCmyka80{0x1000, 0x2000, 0x3000, 0x4000, 0}.GrayOf()), 0xAF);
  EXPECT_EQ((PxCmyka80{0x3000, 0x1000, 0x2000, 0xF800, 0}.GrayOf()), 0);
  EXPECT_EQ((PxCmyka80{10, 20, 30, 40, 0}.GrayOfFloat()), 1.0F - 50.0F * 0.003921569F);
  EXPECT_EQ((PxCmyka80{0x1000, 0x2000, 0x3000, 0x4000, 0}.GrayOfFloat()),
            1.0F - 255.0F * 0.003921569F);
}

TEST(PxCmyka80, SettingAGrayMakesItOpaque) {
  PxCmyka80 pixel{1, 2, 3, 4, 5};
  pixel.SetGray(uint8_t{200});
  EXPECT_EQ(pixel, (PxCmyka80{0, 0, 0, 0x3737, 0xFFFF}));
  pixel.SetGray(0.0F);
  EXPECT_EQ(pixel, (PxCmyka80{0, 0, 0, 1, 0xFFFF}));
}

TEST(PxCmyka80, CompositeHasTheShapeOfTheByteFormInWords) {
  const PxCmyka80 dst{1, 2, 3, 4, 0x8000};
  EXPECT_EQ(Composited(dst, PxCmyka80{9, 9, 9, 9, 0}), dst);
  EXPECT_EQ(Composited(dst, PxCmyka80{9, 9, 9, 9, 0xFFFF}), (PxCmyka80{9, 9, 9, 9, 0xFFFF}));
  EXPECT_EQ(Composited(dst, PxCmyka80{9, 9, 9, 9, 0xFFFF}, 1), (PxCmyka80{9, 9, 9, 9, 0xFFFF}));
  // The alphas add up to the limit; (0x8000 * 1 + 0x7FFF * 0 + 0x7FFF) / 0xFFFF rounds to 1.
  EXPECT_EQ(Composited(PxCmyka80{0, 0, 0, 0, 0x8000}, PxCmyka80{1, 0, 0, 0, 0x8000}),
            (PxCmyka80{1, 0, 0, 0, 0xFFFF}));
  // Over: A = 0x8000*0x7FFF/0xFFFF + 0x8000 = 49151
  EXPECT_EQ(Composited(PxCmyka80{0, 0, 0, 0, 0x8000}, PxCmyka80{0, 0, 0, 0, 0x8000}, 1).alpha,
            49151);
}

TEST(PxCmyka80, BothCompositesFollowTheirFormula) {
  vm::RandomData random;
  SCOPED_TRACE(random.Trace());
  for (int32_t i = 0; i < 100000; ++i) {
    const PxCmyka80 dst = RandomWordsWithAlpha(random);
    const PxCmyka80 src = RandomWordsWithAlpha(random);
    const float t = i % 2 == 0 ? 1.0F : random.Fraction();
    const auto expected = [&](int64_t s, int64_t A) {
      if (s == 0) {
        return dst;
      }
      if (s == 0xFFFF) {
        return src;
      }
      const auto ink = [&](int64_t d, int64_t from) {
        return static_cast<uint16_t>((s * from + (A - s) * d + A / 2) / A);
      };
      return PxCmyka80{ink(dst.cyan, src.cyan), ink(dst.magenta, src.magenta),
                       ink(dst.yellow, src.yellow), ink(dst.black, src.black),
                       static_cast<uint16_t>(A)};
    };
    ASSERT_EQ(Composited(dst, src),
              expected(src.alpha, vm::SummedAlpha(dst.alpha, src.alpha, 0xFFFF)));
    const auto s = static_cast<int64_t>(static_cast<float>(src.alpha) * t);
    ASSERT_EQ(Composited(dst, src, t), expected(s, vm::OverAlpha(dst.alpha, s, 0xFFFF)));
  }
}

TEST(PxCmyka80, InvertsInksAndKeepsAlpha) {
  PxCmyka80 pixel{0, 0x1234, 0x8000, 0xFFFF, 7};
  pixel.Invert();
  EXPECT_EQ(pixel, (PxCmyka80{0xFFFF, 0xEDCB, 0x7FFF, 0, 7}));
}

TEST(CmykWords, Mix255FollowsItsFormulaAndReachesTheSource) {
  vm::RandomData random;
  SCOPED_TRACE(random.Trace());
  for (int32_t i = 0; i < 100000; ++i) {
    const PxCmyka80 dst = RandomWordsWithAlpha(random);
    const PxCmyka80 src = RandomWordsWithAlpha(random);
    const float t = i % 4 == 0 ? 1.0F : random.Fraction();
    const auto w = static_cast<int64_t>(65535.0F * t);
    const auto mix = [w](int64_t d, int64_t s) {
      return static_cast<uint16_t>((s * w + d * (0xFFFF - w) + 0x7F7F) / 0xFFFF);
    };
    const PxCmyka80 expected{mix(dst.cyan, src.cyan), mix(dst.magenta, src.magenta),
                             mix(dst.yellow, src.yellow), mix(dst.black, src.black),
                             mix(dst.alpha, src.alpha)};
    ASSERT_EQ(Mixed255(dst, src, t), expected);
    ASSERT_EQ(Mixed255(PxCmyk64{dst.cyan, dst.magenta, dst.yellow, dst.black},
                       PxCmyk64{src.cyan, src.magenta, src.yellow, src.black}, t),
              (PxCmyk64{expected.cyan, expected.magenta, expected.yellow, expected.black}));
    if (t == 1.0F) {
      ASSERT_EQ(expected, src);
    }
  }
}

TEST(CmykWords, Mix256MultipliesByFullScaleAndShiftsByAByteWhateverTheSource) {
  // 0x1234 * 0xFFFF >> 8 = 0x1233EDCC >> 8 = 0x1233ED, of which a word keeps 0x33ED.
  EXPECT_EQ(Mixed256(PxCmyk64{0x1234, 0, 1, 0xFFFF}, PxCmyk64{9, 9, 9, 9}, 0.5F),
            (PxCmyk64{0x33ED, 0, 0x00FF, 0xFE00}));
  EXPECT_EQ(Mixed256(PxCmyka80{0x1234, 0, 1, 0xFFFF, 0x0100}, PxCmyka80{9, 9, 9, 9, 9}, 1.0F),
            (PxCmyka80{0x33ED, 0, 0x00FF, 0xFE00, 0xFFFF}));
  vm::RandomData random;
  SCOPED_TRACE(random.Trace());
  for (int32_t i = 0; i < 10000; ++i) {
    const PxCmyk64 dst = RandomWords(random);
    const auto darkened = [](int64_t d) {
      return static_cast<uint16_t>(d * 0xFFFF / 256 % 0x10000);
    };
    ASSERT_EQ(Mixed256(dst, RandomWords(random), random.Fraction()),
              (PxCmyk64{darkened(dst.cyan), darkened(dst.magenta), darkened(dst.yellow),
                        darkened(dst.black)}));
  }
}

TEST(CmykWords, ReadEveryInkByTheCurvesWithALimitBelow) {
  vm::RandomData random;
  SCOPED_TRACE(random.Trace());
  const auto at = [](const uint8_t(&curve)[256], int32_t ink) {
    return curve[ink <= 255 ? ink : ink / 256];
  };
  for (int32_t i = 0; i < 100000; ++i) {
    PxCmyka80 p = RandomWordsWithAlpha(random);
    if (i % 2 == 0) {
      p = {static_cast<uint16_t>(p.cyan & 0xFF), static_cast<uint16_t>(p.magenta & 0xFF),
           static_cast<uint16_t>(p.yellow & 0xFF), static_cast<uint16_t>(p.black & 0xFF), p.alpha};
    }
    const auto word = [&](int32_t ink) {
      const int32_t value = 0xFFFF - ink * 257 - at(kBlack, p.black) * 257;
      return static_cast<uint16_t>(value < 0 ? 0 : value);
    };
    const uint16_t red = word(at(kCyan, p.cyan));
    const uint16_t green = word(at(kMagenta, p.magenta));
    const uint16_t blue = word(at(kYellow, p.yellow));
    const PxRgbBytes low = Rgb(static_cast<uint8_t>(red & 0xFF), static_cast<uint8_t>(green & 0xFF),
                               static_cast<uint8_t>(blue & 0xFF));
    const PxCmyk64 opaque{p.cyan, p.magenta, p.yellow, p.black};
    ASSERT_EQ(p.GetRgba64(), (PxRgba64{red, green, blue, p.alpha}));
    ASSERT_EQ(opaque.GetRgba64(), (PxRgba64{red, green, blue, 0xFFFF}));
    ASSERT_EQ(p.GetRgb(), low);
    ASSERT_EQ(opaque.GetRgb(), low);
    ASSERT_EQ(p.GetRgba(),
              Rgba(low.red, low.green, low.blue, static_cast<uint8_t>(p.alpha & 0xFF)));
    ASSERT_EQ(opaque.GetRgba(), Rgba(low.red, low.green, low.blue, 255));
  }
}

TEST(CmykWords, WritingFollowsTheReplacementOfGrayForAllWords) {
  vm::RandomData random;
  SCOPED_TRACE(random.Trace());
  for (int32_t i = 0; i < 50000; ++i) {
    const PxRgba64 in{random.Word(), random.Word(), random.Word(), random.Word()};
    const int32_t c = 0xFFFF - in.red;
    const int32_t m = 0xFFFF - in.green;
    const int32_t y = 0xFFFF - in.blue;
    const int32_t k = c < m ? (c < y ? c : y) : (m < y ? m : y);
    PxCmyka80 pixel;
    pixel.PutRgba64(in);
    ASSERT_EQ(pixel, (PxCmyka80{static_cast<uint16_t>(c - k), static_cast<uint16_t>(m - k),
                                static_cast<uint16_t>(y - k), static_cast<uint16_t>(k), in.alpha}));
    PxCmyk64 opaque;
    opaque.PutRgba64(in);
    ASSERT_EQ(opaque, (PxCmyk64{pixel.cyan, pixel.magenta, pixel.yellow, pixel.black}));
  }
}

}  // namespace
