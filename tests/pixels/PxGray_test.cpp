#include "image/pixels/PxGray.h"

#include <gtest/gtest.h>

#include "RecordTesting.h"
#include "support/RandomData.h"

namespace {

using vm::ChannelOf;
using vm::Composited;
using vm::Mixed255;
using vm::Mixed256;
using vm::WithChannel;

constexpr auto Rgba = PxRgbaBytes::Of;
constexpr auto Rgb = PxRgbBytes::Of;
constexpr PxRgba64 Rgba64(int32_t r, int32_t g, int32_t b, int32_t a) {
  return {static_cast<uint16_t>(r), static_cast<uint16_t>(g), static_cast<uint16_t>(b),
          static_cast<uint16_t>(a)};
}

// Calls `work(r, g, b)` for a grid of bytes that holds both ends of each channel, and sums of every
// remainder by 3.
template <class Work>
void ForEachColour(Work&& work) {
  for (int32_t r = 0; r < 256; r += 5) {
    for (int32_t g = 0; g < 256; g += 3) {
      for (int32_t b = 0; b < 256; b += 17) {
        work(static_cast<uint8_t>(r), static_cast<uint8_t>(g), static_cast<uint8_t>(b));
      }
    }
  }
}

// --- PxGrayByte

TEST(PxGrayByte, ReadsEveryValueThroughEachView) {
  for (int32_t v = 0; v < 256; ++v) {
    const auto gray = static_cast<uint8_t>(v);
    const PxGrayByte pixel{gray};
    EXPECT_EQ(pixel.GetRgba(), Rgba(gray, gray, gray, 255));
    EXPECT_EQ(pixel.GetRgb(), Rgb(gray, gray, gray));
    EXPECT_EQ(pixel.GetRgba64(), Rgba64(v * 0x101, v * 0x101, v * 0x101, 0xFFFF));
  }
}

TEST(PxGrayByte, AsAByteReads255WhateverIsStored) {
  for (int32_t v = 0; v < 256; ++v) {
    EXPECT_EQ(PxGrayByte{static_cast<uint8_t>(v)}.GetByte(), 255);
  }
}

TEST(PxGrayByte, AsAByteStores0WhateverIsPassed) {
  for (int32_t v = 0; v < 256; ++v) {
    PxGrayByte pixel{200};
    pixel.PutByte(static_cast<uint8_t>(v));
    EXPECT_EQ(pixel.gray, 0);
  }
}

TEST(PxGrayByte, StoresTheTruncatedAverageOfBytesAndDropsAlpha) {
  ForEachColour([](uint8_t r, uint8_t g, uint8_t b) {
    PxGrayByte fromRgba{1};
    fromRgba.PutRgba(Rgba(r, g, b, 0));
    PxGrayByte fromRgb{1};
    fromRgb.PutRgb(Rgb(r, g, b));
    ASSERT_EQ(fromRgba.gray, (r + g + b) / 3);
    ASSERT_EQ(fromRgb.gray, (r + g + b) / 3);
  });
}

TEST(PxGrayByte, StoresTheSumOfWordsDividedBy0x300) {
  const auto stored = [](int32_t r, int32_t g, int32_t b, int32_t a) {
    PxGrayByte pixel{1};
    pixel.PutRgba64(Rgba64(r, g, b, a));
    return pixel.gray;
  };
  EXPECT_EQ(stored(0xFFFF, 0xFFFF, 0xFFFF, 0), 255);
  EXPECT_EQ(stored(0x2FF, 0, 0, 0xFFFF), 0);
  EXPECT_EQ(stored(0, 0x300, 0, 0xFFFF), 1);
  EXPECT_EQ(stored(0x100, 0x100, 0x0FF, 0xFFFF), 0);
  // The sum counts, not the high bytes: 3 * 0x80FF / 0x300 = 128, (0x80FF + 0x81FF + 0x80FF) /
  // 0x300 = 129
  EXPECT_EQ(stored(0x80FF, 0x80FF, 0x80FF, 0), 128);
  EXPECT_EQ(stored(0x80FF, 0x81FF, 0x80FF, 0), 129);
  vm::RandomData random;
  SCOPED_TRACE(random.Trace());
  for (int32_t i = 0; i < 10000; ++i) {
    const int32_t r = random.Word();
    const int32_t g = random.Word();
    const int32_t b = random.Word();
    ASSERT_EQ(stored(r, g, b, 0xFFFF), (r + g + b) / 768);
  }
}

TEST(PxGrayByte, HasOneChannelUnderEveryIndex) {
  for (const int32_t n : {-1, 0, 1, 3, 100}) {
    EXPECT_EQ(ChannelOf<uint8_t>(PxGrayByte{42}, n), 42);
    EXPECT_EQ(WithChannel<uint8_t>(PxGrayByte{42}, n, 9), PxGrayByte{9});
  }
}

TEST(PxGrayByte, Mix255RoundsAndMix256DoesNot) {
  // 255*127 + 127 = 32512 / 255 = 127; 255*128 + 127 = 32767 / 255 = 128; 255*128 >> 8 = 127
  EXPECT_EQ(Mixed255(PxGrayByte{0}, PxGrayByte{255}, 0.5F).gray, 127);
  EXPECT_EQ(Mixed255(PxGrayByte{255}, PxGrayByte{0}, 0.5F).gray, 128);
  EXPECT_EQ(Mixed256(PxGrayByte{0}, PxGrayByte{255}, 0.5F).gray, 127);
  EXPECT_EQ(Mixed256(PxGrayByte{0}, PxGrayByte{1}, 0.996F).gray, 0);  // w = 254
  // w = 256 * -0.25: 200 * -64 + 100 * 320 = 19200 >> 8
  EXPECT_EQ(Mixed256(PxGrayByte{100}, PxGrayByte{200}, -0.25F).gray, 75);
}

TEST(PxGrayByte, BothMixesFollowTheirFormulaForEveryPairOfBytes) {
  for (const float t : vm::kFractions) {
    for (int32_t d = 0; d < 256; ++d) {
      for (int32_t s = 0; s < 256; ++s) {
        const PxGrayByte dst{static_cast<uint8_t>(d)};
        const PxGrayByte src{static_cast<uint8_t>(s)};
        ASSERT_EQ(Mixed255(dst, src, t).gray,
                  vm::WeightedMean(d, s, static_cast<int64_t>(255.0F * t), 255, 0x7F));
        ASSERT_EQ(Mixed256(dst, src, t).gray,
                  vm::WeightedMean(d, s, static_cast<int64_t>(256.0F * t), 256, 0));
      }
    }
  }
}

TEST(PxGrayByte, Inverts) {
  PxGrayByte pixel{10};
  pixel.Invert();
  EXPECT_EQ(pixel.gray, 245);
}

// --- PxGrayABytes

TEST(PxGrayABytes, ReadsEveryValueThroughEachView) {
  for (int32_t v = 0; v < 256; ++v) {
    for (int32_t a = 0; a < 256; ++a) {
      const auto gray = static_cast<uint8_t>(v);
      const auto alpha = static_cast<uint8_t>(a);
      const PxGrayABytes pixel{gray, alpha};
      ASSERT_EQ(pixel.GetRgba(), Rgba(gray, gray, gray, alpha));
      ASSERT_EQ(pixel.GetRgb(), Rgb(gray, gray, gray));
      ASSERT_EQ(pixel.GetByte(), alpha);
      ASSERT_EQ(pixel.GetRgba64(), Rgba64(v * 0x101, v * 0x101, v * 0x101, a * 0x100));
    }
  }
}

TEST(PxGrayABytes, FullAlphaWidensTo0xFF00AndNarrowsTo0xFFAgain) {
  const PxGrayABytes pixel{0x12, 0xFF};
  EXPECT_EQ(pixel.GetRgba64().alpha, 0xFF00);
  PxGrayABytes back;
  back.PutRgba64(pixel.GetRgba64());
  EXPECT_EQ(back, pixel);
}

TEST(PxGrayABytes, IsWrittenThroughEachView) {
  PxGrayABytes pixel{9, 9};
  pixel.PutRgba(Rgba(10, 20, 41, 77));
  EXPECT_EQ(pixel, (PxGrayABytes{23, 77}));
  pixel.PutRgb(Rgb(255, 255, 254));
  EXPECT_EQ(pixel, (PxGrayABytes{254, 255}));
  pixel.PutByte(5);
  EXPECT_EQ(pixel, (PxGrayABytes{255, 5}));
  pixel.PutRgba64(Rgba64(0x80FF, 0x81FF, 0x80FF, 0x40FF));
  EXPECT_EQ(pixel, (PxGrayABytes{129, 0x40}));
  pixel.PutRgba64(Rgba64(0xFFFF, 0xFFFF, 0xFFFF, 0x00FF));
  EXPECT_EQ(pixel, (PxGrayABytes{255, 0}));
}

TEST(PxGrayABytes, NumbersItsChannelsInStorageOrder) {
  const PxGrayABytes pixel{1, 2};
  EXPECT_EQ(ChannelOf<uint8_t>(pixel, 0), 1);
  EXPECT_EQ(ChannelOf<uint8_t>(pixel, 1), 2);
  EXPECT_EQ(ChannelOf<uint8_t>(pixel, 2), 1);
  EXPECT_EQ(ChannelOf<uint8_t>(pixel, -1), 1);
  EXPECT_EQ(WithChannel<uint8_t>(pixel, 0, 9), (PxGrayABytes{9, 2}));
  EXPECT_EQ(WithChannel<uint8_t>(pixel, 1, 9), (PxGrayABytes{1, 9}));
  EXPECT_EQ(WithChannel<uint8_t>(pixel, 2, 9), (PxGrayABytes{9, 2}));
}

TEST(PxGrayABytes, CompositeOfATransparentSourceChangesNothingAndOfAnOpaqueOneReplacesBothBytes) {
  const PxGrayABytes dst{10, 100};
  EXPECT_EQ(Composited(dst, PxGrayABytes{200, 0}), dst);
  EXPECT_EQ(Composited(dst, PxGrayABytes{200, 0}, 1), dst);
  EXPECT_EQ(Composited(dst, PxGrayABytes{200, 255}), (PxGrayABytes{200, 255}));
  EXPECT_EQ(Composited(dst, PxGrayABytes{200, 255}, 1), (PxGrayABytes{200, 255}));
}

TEST(PxGrayABytes, CompositeAddsTheAlphasAndItsFormWithAFractionPutsOver) {
  // A = 192: (64*200 + 128*100 + 96) / 192 = 133
  EXPECT_EQ(Composited(PxGrayABytes{100, 128}, PxGrayABytes{200, 64}), (PxGrayABytes{133, 192}));
  // s = 100, A = 100*155/255 + 100 = 160: (100*250 + 60*10 + 80) / 160 = 160
  EXPECT_EQ(Composited(PxGrayABytes{10, 100}, PxGrayABytes{250, 200}, 0.5F),
            (PxGrayABytes{160, 160}));
}

TEST(PxGrayABytes, BothCompositesFollowTheirFormulaForEveryPairOfAlphas) {
  for (int32_t da = 0; da < 256; ++da) {
    for (int32_t sa = 0; sa < 256; ++sa) {
      for (int32_t d = 0; d < 256; d += 51) {
        const PxGrayABytes dst{static_cast<uint8_t>(d), static_cast<uint8_t>(da)};
        const PxGrayABytes src{static_cast<uint8_t>(255 - d / 2), static_cast<uint8_t>(sa)};
        const auto expected = [&](int64_t s, int64_t A) {
          if (s == 0) {
            return dst;
          }
          if (s == 255) {
            return src;
          }
          return PxGrayABytes{static_cast<uint8_t>((s * src.gray + (A - s) * dst.gray + A / 2) / A),
                              static_cast<uint8_t>(A)};
        };
        ASSERT_EQ(Composited(dst, src), expected(sa, vm::SummedAlpha(da, sa, 255)));
        for (const float t : {0.25F, 0.999F, 1.0F}) {
          const auto s = static_cast<int64_t>(static_cast<float>(sa) * t);
          ASSERT_EQ(Composited(dst, src, t), expected(s, vm::OverAlpha(da, s, 255)));
        }
      }
    }
  }
}

TEST(PxGrayABytes, BothMixesFollowTheirFormulaOnGrayAndAlpha) {
  for (const float t : vm::kFractions) {
    const auto w255 = static_cast<int64_t>(255.0F * t);
    const auto w256 = static_cast<int64_t>(256.0F * t);
    for (int32_t d = 0; d < 256; ++d) {
      for (int32_t s = 0; s < 256; ++s) {
        const PxGrayABytes dst{static_cast<uint8_t>(d), static_cast<uint8_t>(s)};
        const PxGrayABytes src{static_cast<uint8_t>(s), static_cast<uint8_t>(d)};
        const PxGrayABytes a = Mixed255(dst, src, t);
        ASSERT_EQ(a.gray, vm::WeightedMean(d, s, w255, 255, 0x7F));
        ASSERT_EQ(a.alpha, vm::WeightedMean(s, d, w255, 255, 0x7F));
        const PxGrayABytes b = Mixed256(dst, src, t);
        ASSERT_EQ(b.gray, vm::WeightedMean(d, s, w256, 256, 0x7F));
        ASSERT_EQ(b.alpha, vm::WeightedMean(s, d, w256, 256, 0x7F));
      }
    }
  }
  EXPECT_EQ(Mixed255(PxGrayABytes{1, 2}, PxGrayABytes{250, 3}, 1), (PxGrayABytes{250, 3}));
  EXPECT_EQ(Mixed256(PxGrayABytes{1, 2}, PxGrayABytes{250, 3}, 1), (PxGrayABytes{250, 3}));
}

TEST(PxGrayABytes, InvertsGrayAndKeepsAlpha) {
  PxGrayABytes pixel{10, 20};
  pixel.Invert();
  EXPECT_EQ(pixel, (PxGrayABytes{245, 20}));
}

// --- PxAlphaByte

TEST(PxAlphaByte, ReadsEveryValueThroughEachView) {
  for (int32_t v = 0; v < 256; ++v) {
    const auto alpha = static_cast<uint8_t>(v);
    const PxAlphaByte pixel{alpha};
    EXPECT_EQ(pixel.GetRgba(), Rgba(255, 255, 255, alpha));
    EXPECT_EQ(pixel.GetRgb(), Rgb(alpha, alpha, alpha));  // not white, unlike GetRgba
    EXPECT_EQ(pixel.GetByte(), alpha);
    EXPECT_EQ(pixel.GetRgba64(), Rgba64(0xFFFF, 0xFFFF, 0xFFFF, v * 0x101));
  }
}

TEST(PxAlphaByte, IsWrittenThroughEachView) {
  PxAlphaByte pixel{9};
  pixel.PutRgba(Rgba(10, 20, 30, 77));
  EXPECT_EQ(pixel.alpha, 77);
  pixel.PutRgb(Rgb(10, 20, 41));  // the gray of the three, not full coverage
  EXPECT_EQ(pixel.alpha, 23);
  pixel.PutByte(5);
  EXPECT_EQ(pixel.alpha, 5);
  pixel.PutRgba64(Rgba64(0, 0, 0, 0x40FF));
  EXPECT_EQ(pixel.alpha, 0x40);
}

TEST(PxAlphaByte, StoresTheGrayOfRgbForAllColours) {
  ForEachColour([](uint8_t r, uint8_t g, uint8_t b) {
    PxAlphaByte pixel{1};
    pixel.PutRgb(Rgb(r, g, b));
    ASSERT_EQ(pixel.alpha, (r + g + b) / 3);
  });
}

TEST(PxAlphaByte, HasOneChannelUnderEveryIndex) {
  for (const int32_t n : {-1, 0, 3, 100}) {
    EXPECT_EQ(ChannelOf<uint8_t>(PxAlphaByte{42}, n), 42);
    EXPECT_EQ(WithChannel<uint8_t>(PxAlphaByte{42}, n, 9), PxAlphaByte{9});
  }
}

TEST(PxAlphaByte, BothMixesFollowTheirFormulaForEveryPairOfBytes) {
  for (const float t : vm::kFractions) {
    for (int32_t d = 0; d < 256; ++d) {
      for (int32_t s = 0; s < 256; ++s) {
        const PxAlphaByte dst{static_cast<uint8_t>(d)};
        const PxAlphaByte src{static_cast<uint8_t>(s)};
        ASSERT_EQ(Mixed255(dst, src, t).alpha,
                  vm::WeightedMean(d, s, static_cast<int64_t>(255.0F * t), 255, 0x7F));
        ASSERT_EQ(Mixed256(dst, src, t).alpha,
                  vm::WeightedMean(d, s, static_cast<int64_t>(256.0F * t), 256, 0));
      }
    }
  }
}

TEST(PxAlphaByte, HasNoColourToInvert) {
  PxAlphaByte pixel{10};
  pixel.Invert();
  EXPECT_EQ(pixel.alpha, 10);
}

// --- PxGrayBit

constexpr PxGrayBit kClearBit{0xAA};  // the other seven bits are not part of the value
constexpr PxGrayBit kSetBit{0xAB};

TEST(PxGrayBit, ASetBitReadsAsOpaqueWhiteAndAClearOneAsTransparentBlack) {
  EXPECT_EQ(kSetBit.GetRgba(), Rgba(255, 255, 255, 255));
  EXPECT_EQ(kSetBit.GetRgb(), Rgb(255, 255, 255));
  EXPECT_EQ(kSetBit.GetByte(), 255);
  EXPECT_EQ(kSetBit.GetRgba64(), Rgba64(0xFFFF, 0xFFFF, 0xFFFF, 0xFFFF));
  EXPECT_EQ(kClearBit.GetRgba(), Rgba(0, 0, 0, 0));
  EXPECT_EQ(kClearBit.GetRgb(), Rgb(0, 0, 0));
  EXPECT_EQ(kClearBit.GetByte(), 0);
  EXPECT_EQ(kClearBit.GetRgba64(), Rgba64(0, 0, 0, 0));
}

TEST(PxGrayBit, IsSetByASumAbove382) {
  const auto written = [](uint8_t r, uint8_t g, uint8_t b) {
    PxGrayBit viaRgba{0xAA};
    viaRgba.PutRgba(Rgba(r, g, b, 0));
    PxGrayBit viaRgb{0x55};
    viaRgb.PutRgb(Rgb(r, g, b));
    EXPECT_EQ(viaRgba.IsSet(), viaRgb.IsSet());
    EXPECT_EQ(viaRgba.value & 0xFE, 0xAA);
    EXPECT_EQ(viaRgb.value & 0xFE, 0x54);
    return viaRgba.IsSet();
  };
  EXPECT_FALSE(written(128, 127, 127));  // 382
  EXPECT_TRUE(written(128, 128, 127));   // 383
  EXPECT_TRUE(written(255, 128, 0));
  EXPECT_FALSE(written(255, 127, 0));
  EXPECT_TRUE(written(255, 255, 255));
  EXPECT_FALSE(written(0, 0, 0));
}

TEST(PxGrayBit, IsSetByAByteAbove127) {
  for (int32_t v = 0; v < 256; ++v) {
    PxGrayBit pixel{0xAB};
    pixel.PutByte(static_cast<uint8_t>(v));
    EXPECT_EQ(pixel.value, v > 127 ? 0xAB : 0xAA);
  }
}

TEST(PxGrayBit, IsSetByWordsThatSumAbove0x17FFE) {
  const auto written = [](int32_t r, int32_t g, int32_t b) {
    PxGrayBit pixel{0xAB};
    pixel.PutRgba64(Rgba64(r, g, b, 0));
    EXPECT_EQ(pixel.value & 0xFE, 0xAA);
    return pixel.IsSet();
  };
  EXPECT_FALSE(written(0xFFFF, 0x7FFF, 0));  // 0x17FFE
  EXPECT_TRUE(written(0xFFFF, 0x8000, 0));   // 0x17FFF
  EXPECT_FALSE(written(0x7FFF, 0x7FFF, 0x7FFF));
  EXPECT_TRUE(written(0x8000, 0x8000, 0x8000));
}

TEST(PxGrayBit, AsAChannelIsTheLowBitOfAByteWhoseOtherBitsStay) {
  uint8_t out = 0xF0;
  kSetBit.GetChannel(&out, 0);
  EXPECT_EQ(out, 0xF1);
  kClearBit.GetChannel(&out, 5);
  EXPECT_EQ(out, 0xF0);
  EXPECT_EQ(WithChannel<uint8_t>(kClearBit, 0, 1), kSetBit);
  EXPECT_EQ(WithChannel<uint8_t>(kSetBit, 3, 0xFE), kClearBit);
}

TEST(PxGrayBit, Mix255TakesTheSourceFromHalfWayOn) {
  for (const PxGrayBit dst : {kClearBit, kSetBit}) {
    for (const PxGrayBit src : {PxGrayBit{0}, PxGrayBit{1}}) {
      EXPECT_EQ(Mixed255(dst, src, 0.0F), dst);
      EXPECT_EQ(Mixed255(dst, src, 0.5F), dst);  // 127.5 is 127
      EXPECT_EQ(Mixed255(dst, src, 0.502F).IsSet(), src.IsSet());
      EXPECT_EQ(Mixed255(dst, src, 1.0F).IsSet(), src.IsSet());
      EXPECT_EQ(Mixed255(dst, src, 1.0F).value & 0xFE, 0xAA);
    }
  }
}

TEST(PxGrayBit, Mix256ComparesTheInterpolatedBitWithAHalf) {
  const PxGrayBit set{1};
  const PxGrayBit clear{0};
  EXPECT_FALSE(Mixed256(kClearBit, set, 0.5F).IsSet());  // a half is not above a half
  EXPECT_FALSE(Mixed256(kSetBit, clear, 0.5F).IsSet());
  EXPECT_TRUE(Mixed256(kClearBit, set, 0.51F).IsSet());
  EXPECT_FALSE(Mixed256(kSetBit, clear, 0.51F).IsSet());
  EXPECT_FALSE(Mixed256(kClearBit, set, 0.49F).IsSet());
  EXPECT_TRUE(Mixed256(kSetBit, clear, 0.49F).IsSet());
  EXPECT_TRUE(Mixed256(kSetBit, set, 0.3F).IsSet());
  EXPECT_EQ(Mixed256(kClearBit, set, 1.0F), kSetBit);
}

TEST(PxGrayBit, InvertsTheBitAlone) {
  PxGrayBit pixel = kClearBit;
  pixel.Invert();
  EXPECT_EQ(pixel, kSetBit);
  pixel.Invert();
  EXPECT_EQ(pixel, kClearBit);
}

}  // namespace
