#include "image/pixels/PxViews.h"

#include <gtest/gtest.h>

#include "RecordTesting.h"
#include "support/RandomData.h"

namespace {

using vm::ChannelOf;
using vm::Composited;
using vm::Mixed255;
using vm::Mixed256;
using vm::WithChannel;

constexpr PxRgba64 Rgba64(int32_t r, int32_t g, int32_t b, int32_t a) {
  return {static_cast<uint16_t>(r), static_cast<uint16_t>(g), static_cast<uint16_t>(b),
          static_cast<uint16_t>(a)};
}
constexpr auto Rgba = PxRgbaBytes::Of;
constexpr auto Rgb = PxRgbBytes::Of;

TEST(PxConstants, HoldTheirWords) {
  EXPECT_EQ(kRgba64Gray50, Rgba64(0x7FFF, 0x7FFF, 0x7FFF, 0xFFFF));
  EXPECT_EQ(kRgba64Gray75, Rgba64(0xBFFF, 0xBFFF, 0xBFFF, 0xFFFF));
  EXPECT_EQ(kRgba64Gray25, Rgba64(0x3FFF, 0x3FFF, 0x3FFF, 0xFFFF));
  EXPECT_EQ(kRgba64White, Rgba64(0xFFFF, 0xFFFF, 0xFFFF, 0));
  EXPECT_EQ(kRgba64Clear, Rgba64(0, 0, 0, 0));
  EXPECT_EQ(kRgba64Black, Rgba64(0, 0, 0, 0xFFFF));
  EXPECT_EQ(kRgba64MidGray, Rgba64(0x8080, 0x8080, 0x8080, 0));
}

// --- PxRgbBytes

TEST(PxRgbBytes, ReadsThroughEachView) {
  const PxRgbBytes pixel = Rgb(0x10, 0x80, 0xFF);
  EXPECT_EQ(pixel.GetRgba(), Rgba(0x10, 0x80, 0xFF, 255));
  EXPECT_EQ(pixel.GetRgb(), pixel);
  EXPECT_EQ(pixel.GetByte(), 133);  // (16 + 128 + 255) / 3
  EXPECT_EQ(pixel.GetRgba64(), Rgba64(0x1010, 0x8080, 0xFFFF, 0xFFFF));
}

TEST(PxRgbBytes, IsWrittenThroughEachView) {
  PxRgbBytes pixel = Rgb(9, 9, 9);
  pixel.PutRgba(Rgba(1, 2, 3, 4));
  EXPECT_EQ(pixel, Rgb(1, 2, 3));
  pixel.PutRgb(Rgb(5, 6, 7));
  EXPECT_EQ(pixel, Rgb(5, 6, 7));
  pixel.PutByte(77);
  EXPECT_EQ(pixel, Rgb(77, 77, 77));
  pixel.PutRgba64(Rgba64(0x01FF, 0x00FF, 0xFFFF, 0x1234));
  EXPECT_EQ(pixel, Rgb(0x01, 0x00, 0xFF));
}

TEST(PxRgbBytes, NumbersItsChannelsRedFirstAndTakesAnyOtherIndexForRed) {
  const PxRgbBytes pixel = Rgb(1, 2, 3);
  EXPECT_EQ(ChannelOf<uint8_t>(pixel, 0), 1);
  EXPECT_EQ(ChannelOf<uint8_t>(pixel, 1), 2);
  EXPECT_EQ(ChannelOf<uint8_t>(pixel, 2), 3);
  EXPECT_EQ(ChannelOf<uint8_t>(pixel, 3), 1);
  EXPECT_EQ(ChannelOf<uint8_t>(pixel, -1), 1);
  EXPECT_EQ(WithChannel<uint8_t>(pixel, 0, 9), Rgb(9, 2, 3));
  EXPECT_EQ(WithChannel<uint8_t>(pixel, 1, 9), Rgb(1, 9, 3));
  EXPECT_EQ(WithChannel<uint8_t>(pixel, 2, 9), Rgb(1, 2, 9));
  EXPECT_EQ(WithChannel<uint8_t>(pixel, 3, 9), Rgb(9, 2, 3));
  EXPECT_EQ(WithChannel<uint8_t>(pixel, -7, 9), Rgb(9, 2, 3));
}

TEST(PxRgbBytes, Mix255RoundsToNearest) {
  // w = 127: (0*128 + 255*127 + 127) / 255 = 32512 / 255 = 127; the other way round 32767 / 255 =
  // 128.
  EXPECT_EQ(Mixed255(Rgb(0, 255, 10), Rgb(255, 0, 10), 0.5F), Rgb(127, 128, 10));
  // w = 63: (100*192 + 200*63 + 127) / 255 = 31927 / 255 = 125
  EXPECT_EQ(Mixed255(Rgb(100, 0, 0), Rgb(200, 0, 0), 0.25F).red, 125);
}

TEST(PxRgbBytes, Mix256DoesNotRound) {
  // w = 128: 255*128 >> 8 = 127; 101*128 + 100*128 = 25728 >> 8 = 100
  EXPECT_EQ(Mixed256(Rgb(0, 255, 100), Rgb(255, 0, 101), 0.5F), Rgb(127, 127, 100));
}

TEST(PxRgbBytes, MixesReachBothEndsExactly) {
  const PxRgbBytes dst = Rgb(1, 128, 255);
  const PxRgbBytes src = Rgb(254, 3, 77);
  EXPECT_EQ(Mixed255(dst, src, 0), dst);
  EXPECT_EQ(Mixed255(dst, src, 1), src);
  EXPECT_EQ(Mixed256(dst, src, 0), dst);
  EXPECT_EQ(Mixed256(dst, src, 1), src);
}

TEST(PxRgbBytes, ANegativeFractionExtrapolatesWithinTheByte) {
  // Bilinear reads left of the first pixel come with these. w = -64: 100*320 - 200*64 = 19200 >> 8
  // = 75.
  EXPECT_EQ(Mixed256(Rgb(100, 100, 100), Rgb(200, 0, 100), -0.25F), Rgb(75, 125, 100));
}

TEST(PxRgbBytes, BothMixesFollowTheirFormulaForEveryPairOfBytesAtEveryWeight) {
  for (int32_t w = 0; w <= 256; ++w) {
    const float t255 = (static_cast<float>(w) + 0.5F) / 255.0F;  // 255 * t lies between w and w + 1
    const float t256 = static_cast<float>(w) / 256.0F;           // exact
    for (int32_t dst = 0; dst < 256; ++dst) {
      for (int32_t src = 0; src < 256; ++src) {
        const auto d = static_cast<uint8_t>(dst);
        const auto s = static_cast<uint8_t>(src);
        // Three channels with a pair each; the third is constant.
        if (w < 256) {
          const PxRgbBytes mix = Mixed255(Rgb(d, s, 7), Rgb(s, d, 200), t255);
          if (mix.red != (src * w + dst * (255 - w) + 0x7F) / 255 ||
              mix.green != (dst * w + src * (255 - w) + 0x7F) / 255 ||
              mix.blue != (200 * w + 7 * (255 - w) + 0x7F) / 255) {
            FAIL() << "Mix255, w " << w << " dst " << dst << " src " << src;
          }
        }
        const PxRgbBytes mix = Mixed256(Rgb(d, s, 7), Rgb(s, d, 200), t256);
        if (mix.red != (src * w + dst * (256 - w)) / 256 ||
            mix.green != (dst * w + src * (256 - w)) / 256 ||
            mix.blue != (200 * w + 7 * (256 - w)) / 256) {
          FAIL() << "Mix256, w " << w << " dst " << dst << " src " << src;
        }
      }
    }
  }
}

TEST(PxRgbBytes, InvertsEachChannel) {
  PxRgbBytes pixel = Rgb(0, 100, 255);
  pixel.Invert();
  EXPECT_EQ(pixel, Rgb(255, 155, 0));
}

// --- PxRgbaBytes

TEST(PxRgbaBytes, ReadsThroughEachView) {
  const PxRgbaBytes pixel = Rgba(0x10, 0x80, 0xFF, 0x40);
  EXPECT_EQ(pixel.GetRgba(), pixel);
  EXPECT_EQ(pixel.GetRgb(), Rgb(0x10, 0x80, 0xFF));
  EXPECT_EQ(pixel.GetByte(), 0x40);
  EXPECT_EQ(pixel.GetRgba64(), Rgba64(0x1010, 0x8080, 0xFFFF, 0x4040));
}

TEST(PxRgbaBytes, IsWrittenThroughEachView) {
  PxRgbaBytes pixel = Rgba(9, 9, 9, 9);
  pixel.PutRgba(Rgba(1, 2, 3, 4));
  EXPECT_EQ(pixel, Rgba(1, 2, 3, 4));
  pixel.PutRgb(Rgb(5, 6, 7));
  EXPECT_EQ(pixel, Rgba(5, 6, 7, 255));
  pixel.PutByte(77);
  EXPECT_EQ(pixel, Rgba(255, 255, 255, 77));
  pixel.PutRgba64(Rgba64(0x01FF, 0x00FF, 0xFFFF, 0x1234));
  EXPECT_EQ(pixel, Rgba(0x01, 0x00, 0xFF, 0x12));
}

TEST(PxRgbaBytes, EveryByteComesBackFromWords) {
  for (int32_t v = 0; v < 256; ++v) {
    const auto byte = static_cast<uint8_t>(v);
    const PxRgbaBytes pixel = Rgba(byte, static_cast<uint8_t>(255 - v), 255, byte);
    PxRgbaBytes back;
    back.PutRgba64(pixel.GetRgba64());
    EXPECT_EQ(back, pixel);
  }
}

TEST(PxRgbaBytes, NumbersItsChannelsRedFirstAndTakesAnyOtherIndexForRed) {
  const PxRgbaBytes pixel = Rgba(1, 2, 3, 4);
  EXPECT_EQ(ChannelOf<uint8_t>(pixel, 0), 1);
  EXPECT_EQ(ChannelOf<uint8_t>(pixel, 1), 2);
  EXPECT_EQ(ChannelOf<uint8_t>(pixel, 2), 3);
  EXPECT_EQ(ChannelOf<uint8_t>(pixel, 3), 4);
  EXPECT_EQ(ChannelOf<uint8_t>(pixel, 4), 1);
  EXPECT_EQ(ChannelOf<uint8_t>(pixel, -1), 1);
  EXPECT_EQ(WithChannel<uint8_t>(pixel, 2, 9), Rgba(1, 2, 9, 4));
  EXPECT_EQ(WithChannel<uint8_t>(pixel, 3, 9), Rgba(1, 2, 3, 9));
  EXPECT_EQ(WithChannel<uint8_t>(pixel, 1, 9), Rgba(1, 9, 3, 4));
  EXPECT_EQ(WithChannel<uint8_t>(pixel, 0, 9), Rgba(9, 2, 3, 4));
  EXPECT_EQ(WithChannel<uint8_t>(pixel, 4, 9), Rgba(9, 2, 3, 4));
}

TEST(PxRgbaBytes, CompositeOfATransparentSourceChangesNothing) {
  const PxRgbaBytes dst = Rgba(1, 2, 3, 100);
  EXPECT_EQ(Composited(dst, Rgba(200, 200, 200, 0)), dst);
  EXPECT_EQ(Composited(dst, Rgba(200, 200, 200, 0), 1), dst);
  EXPECT_EQ(Composited(dst, Rgba(200, 200, 200, 255), 0), dst);
  EXPECT_EQ(Composited(dst, Rgba(200, 200, 200, 255), 0.0039F), dst);  // 255 * t is just below 1
}

TEST(PxRgbaBytes, CompositeOfAnOpaqueSourceReplacesAllFourBytes) {
  const PxRgbaBytes src = Rgba(10, 20, 30, 255);
  EXPECT_EQ(Composited(Rgba(1, 2, 3, 100), src), src);
  EXPECT_EQ(Composited(Rgba(1, 2, 3, 100), src, 1), src);
}

TEST(PxRgbaBytes, CompositeAddsTheAlphasUpToFull) {
  // A = 192: (64*200 + 128*100 + 96) / 192 = 133, (64*0 + 128*255 + 96) / 192 = 170, (64*3 + 128*3
  // + 96)/192 = 3
  EXPECT_EQ(Composited(Rgba(100, 255, 3, 128), Rgba(200, 0, 3, 64)), Rgba(133, 170, 3, 192));
  // A = 255, limited: (100*250 + 155*10 + 127) / 255 = 104
  EXPECT_EQ(Composited(Rgba(10, 10, 10, 200), Rgba(250, 250, 250, 100)), Rgba(104, 104, 104, 255));
}

TEST(PxRgbaBytes, CompositeByAFractionPutsTheSourceOverTheDestination) {
  // s = 100, A = 100*155/255 + 100 = 160: (100*250 + 60*10 + 80) / 160 = 160
  EXPECT_EQ(Composited(Rgba(10, 10, 10, 100), Rgba(250, 250, 250, 200), 0.5F),
            Rgba(160, 160, 160, 160));
  // With t = 1 it still differs from the form without t: A = 64*127/255 + 128 = 159, not 192.
  // (64*200 + 95*100 + 79) / 159 = 140
  EXPECT_EQ(Composited(Rgba(100, 100, 100, 128), Rgba(200, 200, 200, 64), 1),
            Rgba(140, 140, 140, 159));
}

TEST(PxRgbaBytes, CompositeFollowsItsFormulaForEveryPairOfAlphas) {
  constexpr std::array<uint8_t, 6> kColours{0, 1, 100, 128, 254, 255};
  for (int32_t da = 0; da < 256; ++da) {
    for (int32_t sa = 0; sa < 256; ++sa) {
      for (const uint8_t d : kColours) {
        for (const uint8_t s : kColours) {
          const PxRgbaBytes dst = Rgba(d, s, 50, static_cast<uint8_t>(da));
          const PxRgbaBytes src = Rgba(s, d, 200, static_cast<uint8_t>(sa));
          const PxRgbaBytes over = Composited(dst, src);
          PxRgbaBytes expected = sa == 255 ? src : dst;
          if (sa > 0 && sa < 255) {
            const int64_t A = vm::SummedAlpha(da, sa, 255);
            expected = Rgba(static_cast<uint8_t>((sa * s + (A - sa) * d + A / 2) / A),
                            static_cast<uint8_t>((sa * d + (A - sa) * s + A / 2) / A),
                            static_cast<uint8_t>((sa * 200 + (A - sa) * 50 + A / 2) / A),
                            static_cast<uint8_t>(A));
          }
          if (over != expected) {
            FAIL() << "alphas " << da << ", " << sa << " colours " << int(d) << ", " << int(s);
          }
        }
      }
    }
  }
}

TEST(PxRgbaBytes, CompositeByAFractionFollowsItsFormulaForEveryPairOfAlphas) {
  for (int32_t da = 0; da < 256; ++da) {
    for (int32_t sa = 0; sa < 256; ++sa) {
      for (const float t : vm::kFractions) {
        const PxRgbaBytes dst = Rgba(3, 255, 50, static_cast<uint8_t>(da));
        const PxRgbaBytes src = Rgba(252, 0, 200, static_cast<uint8_t>(sa));
        const auto s = static_cast<int64_t>(static_cast<float>(sa) * t);
        PxRgbaBytes expected = s == 255 ? src : dst;
        if (s > 0 && s < 255) {
          const int64_t A = vm::OverAlpha(da, s, 255);
          expected = Rgba(static_cast<uint8_t>((s * 252 + (A - s) * 3 + A / 2) / A),
                          static_cast<uint8_t>(((A - s) * 255 + A / 2) / A),
                          static_cast<uint8_t>((s * 200 + (A - s) * 50 + A / 2) / A),
                          static_cast<uint8_t>(A));
        }
        if (Composited(dst, src, t) != expected) {
          FAIL() << "alphas " << da << ", " << sa << " t " << t;
        }
      }
    }
  }
}

TEST(PxRgbaBytes, MixesCoverAlphaAndMix256Rounds) {
  // w = 128: (255*128 + 127) >> 8 = 127; (101*128 + 100*128 + 127) >> 8 = 25855 >> 8 = 100;
  // (1*128 + 127) >> 8 = 0; (3*128 + 127) >> 8 = 1
  EXPECT_EQ(Mixed256(Rgba(0, 100, 0, 0), Rgba(255, 101, 1, 3), 0.5F), Rgba(127, 100, 0, 1));
  // w = 127
  EXPECT_EQ(Mixed255(Rgba(0, 255, 10, 0), Rgba(255, 0, 10, 255), 0.5F), Rgba(127, 128, 10, 127));
}

TEST(PxRgbaBytes, BothMixesFollowTheirFormulaForEveryPairOfBytes) {
  for (const float t : vm::kFractions) {
    const auto w255 = static_cast<int64_t>(255.0F * t);
    const auto w256 = static_cast<int64_t>(256.0F * t);
    for (int32_t dst = 0; dst < 256; ++dst) {
      for (int32_t src = 0; src < 256; ++src) {
        const auto d = static_cast<uint8_t>(dst);
        const auto s = static_cast<uint8_t>(src);
        const auto a255 = static_cast<uint8_t>(vm::WeightedMean(dst, src, w255, 255, 0x7F));
        const auto b255 = static_cast<uint8_t>(vm::WeightedMean(src, dst, w255, 255, 0x7F));
        ASSERT_EQ(Mixed255(Rgba(d, s, d, s), Rgba(s, d, s, d), t), Rgba(a255, b255, a255, b255));
        const auto a256 = static_cast<uint8_t>(vm::WeightedMean(dst, src, w256, 256, 0x7F));
        const auto b256 = static_cast<uint8_t>(vm::WeightedMean(src, dst, w256, 256, 0x7F));
        ASSERT_EQ(Mixed256(Rgba(d, s, d, s), Rgba(s, d, s, d), t), Rgba(a256, b256, a256, b256));
      }
    }
  }
}

TEST(PxRgbaBytes, MixesReachBothEndsExactly) {
  const PxRgbaBytes dst = Rgba(1, 128, 255, 0);
  const PxRgbaBytes src = Rgba(254, 3, 77, 255);
  EXPECT_EQ(Mixed255(dst, src, 0), dst);
  EXPECT_EQ(Mixed255(dst, src, 1), src);
  EXPECT_EQ(Mixed256(dst, src, 0), dst);
  EXPECT_EQ(Mixed256(dst, src, 1), src);
}

TEST(PxRgbaBytes, InvertsColourAndKeepsAlpha) {
  PxRgbaBytes pixel = Rgba(0, 100, 255, 7);
  pixel.Invert();
  EXPECT_EQ(pixel, Rgba(255, 155, 0, 7));
}

// --- PxRgba64

TEST(PxRgba64, ReadsThroughEachView) {
  const PxRgba64 pixel = Rgba64(0x10FF, 0x8000, 0x00FF, 0x40FE);
  EXPECT_EQ(pixel.GetRgba(), Rgba(0x10, 0x80, 0x00, 0x40));
  EXPECT_EQ(pixel.GetRgb(), Rgb(0x10, 0x80, 0x00));
  EXPECT_EQ(pixel.GetByte(), 0x40);
  EXPECT_EQ(pixel.GetRgba64(), pixel);
}

TEST(PxRgba64, IsWrittenThroughEachView) {
  PxRgba64 pixel = Rgba64(9, 9, 9, 9);
  pixel.PutRgba(Rgba(1, 2, 3, 4));
  EXPECT_EQ(pixel, Rgba64(0x0101, 0x0202, 0x0303, 0x0404));
  pixel.PutRgb(Rgb(5, 6, 7));
  EXPECT_EQ(pixel, Rgba64(0x0505, 0x0606, 0x0707, 0xFFFF));
  pixel.PutByte(0x77);
  EXPECT_EQ(pixel, Rgba64(0xFFFF, 0xFFFF, 0xFFFF, 0x7777));
  pixel.PutRgba64(Rgba64(1, 2, 3, 4));
  EXPECT_EQ(pixel, Rgba64(1, 2, 3, 4));
}

TEST(PxRgba64, NumbersItsChannelsRedFirstAndTakesAnyOtherIndexForRed) {
  const PxRgba64 pixel = Rgba64(0x1111, 0x2222, 0x3333, 0x4444);
  EXPECT_EQ(ChannelOf<uint16_t>(pixel, 0), 0x1111);
  EXPECT_EQ(ChannelOf<uint16_t>(pixel, 1), 0x2222);
  EXPECT_EQ(ChannelOf<uint16_t>(pixel, 2), 0x3333);
  EXPECT_EQ(ChannelOf<uint16_t>(pixel, 3), 0x4444);
  EXPECT_EQ(ChannelOf<uint16_t>(pixel, 4), 0x1111);
  EXPECT_EQ(ChannelOf<uint16_t>(pixel, -1), 0x1111);
  EXPECT_EQ(WithChannel<uint16_t>(pixel, 2, 9), Rgba64(0x1111, 0x2222, 9, 0x4444));
  EXPECT_EQ(WithChannel<uint16_t>(pixel, 3, 9), Rgba64(0x1111, 0x2222, 0x3333, 9));
  EXPECT_EQ(WithChannel<uint16_t>(pixel, 9, 9), Rgba64(9, 0x2222, 0x3333, 0x4444));
}

TEST(PxRgba64, CompositeOfATransparentSourceChangesNothing) {
  const PxRgba64 dst = Rgba64(1, 2, 3, 0x8000);
  EXPECT_EQ(Composited(dst, Rgba64(9, 9, 9, 0)), dst);
  EXPECT_EQ(Composited(dst, Rgba64(9, 9, 9, 0), 1), dst);
  EXPECT_EQ(Composited(dst, Rgba64(9, 9, 9, 0xFFFF), 0), dst);
}

TEST(PxRgba64, CompositeIsOverWithoutRounding) {
  // A = 0x7FFF*0x8000/0xFFFF + 0x8000 = 16383 + 32768, not the sum of the alphas.
  EXPECT_EQ(Composited(Rgba64(0, 0, 0, 0x8000), Rgba64(0, 0, 0, 0x8000)).alpha, 0xBFFF);
  // 1 * 0x8000 / 0xFFFF is 0; with half of A added it would be 1.
  EXPECT_EQ(Composited(Rgba64(0, 0, 0, 0xFFFF), Rgba64(1, 1, 1, 0x8000)), Rgba64(0, 0, 0, 0xFFFF));
}

TEST(PxRgba64, CompositeOfAnOpaqueSourceYieldsTheSource) {
  const PxRgba64 src = Rgba64(1, 0x8000, 0xFFFF, 0xFFFF);
  EXPECT_EQ(Composited(Rgba64(9, 9, 9, 0), src), src);
  EXPECT_EQ(Composited(Rgba64(0xFFFF, 9, 9, 0x1234), src), src);
  EXPECT_EQ(Composited(Rgba64(0xFFFF, 9, 9, 0xFFFF), src, 1), src);
}

TEST(PxRgba64, BothCompositesFollowTheirFormula) {
  vm::RandomData random;
  SCOPED_TRACE(random.Trace());
  constexpr std::array<uint16_t, 5> kEdges{0, 1, 0x7FFF, 0xFFFE, 0xFFFF};
  const auto alpha = [&](int32_t i) { return i % 3 == 0 ? kEdges[i / 3 % 5] : random.Word(); };
  for (int32_t i = 0; i < 200000; ++i) {
    const PxRgba64 dst = Rgba64(random.Word(), random.Word(), 0xFFFF, alpha(i));
    const PxRgba64 src = Rgba64(random.Word(), random.Word(), 0xFFFF, alpha(i / 15));
    for (const float t : {1.0F, 0.5F, random.Fraction()}) {
      const auto s = static_cast<int64_t>(static_cast<float>(src.alpha) * t);
      PxRgba64 expected = dst;
      if (s > 0) {
        const int64_t A = vm::OverAlpha(dst.alpha, s, 0xFFFF);
        const auto colour = [&](int64_t d, int64_t from) {
          return static_cast<int32_t>((from * s + d * (A - s)) / A);
        };
        expected = Rgba64(colour(dst.red, src.red), colour(dst.green, src.green),
                          colour(dst.blue, src.blue), static_cast<int32_t>(A));
      }
      ASSERT_EQ(Composited(dst, src, t), expected) << "t " << t;
      if (t == 1.0F) {
        ASSERT_EQ(Composited(dst, src), expected);
      }
    }
  }
}

TEST(PxRgba64, BothMixesAreTheIntegerMixAndReachTheSourceExactly) {
  const PxRgba64 dst = Rgba64(1000, 0xFFFF, 0, 5);
  const PxRgba64 src = Rgba64(2001, 0, 0xFFFF, 0xFFFF);
  // w = trunc(32767.5 + 1) = 32768
  const PxRgba64 half = Rgba64(1500, 0x7FFF, 0x7FFF, (5 + 0xFFFF) / 2);
  EXPECT_EQ(Mixed255(dst, src, 0.5F), half);
  EXPECT_EQ(Mixed256(dst, src, 0.5F), half);
  EXPECT_EQ(Mixed255(dst, src, 1), src);  // w = 65536 fits its 32 bits
  EXPECT_EQ(Mixed256(dst, src, 1), src);
  // At t = 0 the weight is 1: 0xFFFF * 0xFFFF >> 16 loses one.
  EXPECT_EQ(Mixed255(dst, src, 0), Rgba64(1000, 0xFFFE, 0, 5));
}

TEST(PxRgba64, MixesFollowTheirFormulaOnAllFourChannels) {
  vm::RandomData random;
  SCOPED_TRACE(random.Trace());
  for (int32_t i = 0; i < 100000; ++i) {
    const PxRgba64 dst = Rgba64(random.Word(), random.Word(), random.Word(), random.Word());
    const PxRgba64 src = Rgba64(random.Word(), random.Word(), random.Word(), random.Word());
    const float t = random.Fraction();
    const auto w = static_cast<int64_t>(65535.0F * t + 1.0F);
    const auto mix = [w](int64_t d, int64_t s) {
      return static_cast<int32_t>((s * w + d * (0x10000 - w)) >> 16);
    };
    const PxRgba64 expected = Rgba64(mix(dst.red, src.red), mix(dst.green, src.green),
                                     mix(dst.blue, src.blue), mix(dst.alpha, src.alpha));
    ASSERT_EQ(Mixed255(dst, src, t), expected) << "t " << t;
    ASSERT_EQ(Mixed256(dst, src, t), expected) << "t " << t;
  }
}

TEST(PxRgba64, InvertsColourAndKeepsAlpha) {
  PxRgba64 pixel = Rgba64(0, 0x1234, 0xFFFF, 7);
  pixel.Invert();
  EXPECT_EQ(pixel, Rgba64(0xFFFF, 0xEDCB, 0, 7));
}

}  // namespace
