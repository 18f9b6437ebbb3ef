#include "image/pixels/ZvHSLPixel.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>

namespace {

constexpr auto Rgba = PxRgbaBytes::Of;

ZvHSLPixel HslOf(const PxRgbaBytes& in) {
  ZvHSLPixel pixel;
  pixel.FromRgba(in);
  return pixel;
}
PxRgbaBytes RgbaOf(const ZvHSLPixel& pixel) {
  PxRgbaBytes out = Rgba(9, 9, 9, 9);
  pixel.ToRgba(out);
  return out;
}

TEST(ZvHSLPixel, GrayHasNoHueAndNoSaturation) {
  EXPECT_EQ(HslOf(Rgba(0, 0, 0, 7)), (ZvHSLPixel{0, 0, 0, 7}));
  EXPECT_EQ(HslOf(Rgba(128, 128, 128, 7)), (ZvHSLPixel{0, 0, 50, 7}));  // 25600 / 510
  EXPECT_EQ(HslOf(Rgba(255, 255, 255, 7)), (ZvHSLPixel{0, 0, 100, 7}));
}

TEST(ZvHSLPixel, PureColoursStandOnTheCircle) {
  EXPECT_EQ(HslOf(Rgba(255, 0, 0, 1)), (ZvHSLPixel{0, 100, 50, 1}));
  EXPECT_EQ(HslOf(Rgba(255, 255, 0, 1)), (ZvHSLPixel{60, 100, 50, 1}));
  EXPECT_EQ(HslOf(Rgba(0, 255, 0, 1)), (ZvHSLPixel{120, 100, 50, 1}));
  EXPECT_EQ(HslOf(Rgba(0, 255, 255, 1)), (ZvHSLPixel{180, 100, 50, 1}));
  EXPECT_EQ(HslOf(Rgba(0, 0, 255, 1)), (ZvHSLPixel{240, 100, 50, 1}));
  EXPECT_EQ(HslOf(Rgba(255, 0, 255, 1)), (ZvHSLPixel{300, 100, 50, 1}));
}

TEST(ZvHSLPixel, HueIsTruncatedTowardZeroBeforeItsSectorIsAdded) {
  EXPECT_EQ(HslOf(Rgba(100, 99, 0, 0)).hue, 59);    // 59.4
  EXPECT_EQ(HslOf(Rgba(0, 100, 200, 0)).hue, 210);  // 240 - 30
  EXPECT_EQ(HslOf(Rgba(200, 0, 100, 0)).hue, 330);  // -30 + 360
  EXPECT_EQ(HslOf(Rgba(255, 0, 1, 0)).hue, 0);      // -60 / 255 is 0
  EXPECT_EQ(HslOf(Rgba(99, 100, 0, 0)).hue, 61);    // 120 - 59
}

TEST(ZvHSLPixel, SaturationIsMeasuredAgainstWhiteFromLightness50On) {
  // Sum 258: lightness 50; 242 * 100 / (510 - 258) = 96, where 242 * 100 / 258 would be 93.
  EXPECT_EQ(HslOf(Rgba(250, 8, 8, 0)), (ZvHSLPixel{0, 96, 50, 0}));
  // Sum 254: lightness 49; 246 * 100 / 254 = 96, against black. Sum 200: 200 * 100 / 200.
  EXPECT_EQ(HslOf(Rgba(250, 4, 4, 0)), (ZvHSLPixel{0, 96, 49, 0}));
  EXPECT_EQ(HslOf(Rgba(200, 0, 0, 0)), (ZvHSLPixel{0, 100, 39, 0}));
  EXPECT_EQ(HslOf(Rgba(100, 50, 50, 0)), (ZvHSLPixel{0, 33, 29, 0}));  // 5000 / 150
}

TEST(ZvHSLPixel, FromRgbaFollowsItsStepsAcrossTheCube) {
  for (int32_t r = 0; r < 256; r += 5) {
    for (int32_t g = 0; g < 256; g += 3) {
      for (int32_t b = 0; b < 256; b += 5) {
        const int32_t mx = std::max(r, std::max(g, b));
        const int32_t mn = std::min(r, std::min(g, b));
        const int32_t d = mx - mn;
        const int32_t L = (mx + mn) * 100 / 510;
        int32_t S = 0;
        int32_t H = 0;
        if (d != 0) {
          S = L < 50 ? d * 100 / (mx + mn) : d * 100 / (510 - mx - mn);
          H = mx == r   ? (g - b) * 60 / d
              : mx == g ? (b - r) * 60 / d + 120
                        : (r - g) * 60 / d + 240;
          H = H < 0 ? H + 360 : H;
        }
        const ZvHSLPixel hsl = HslOf(
            Rgba(static_cast<uint8_t>(r), static_cast<uint8_t>(g), static_cast<uint8_t>(b), 5));
        if (hsl.hue != H || hsl.saturation != S || hsl.lightness != L || hsl.alpha != 5) {
          FAIL() << r << ", " << g << ", " << b;
        }
        ASSERT_LE(S, 100);
        ASSERT_LE(H, 360);
      }
    }
  }
}

TEST(ZvHSLPixel, PureColoursComeBack) {
  for (const PxRgbaBytes& colour :
       {Rgba(255, 0, 0, 1), Rgba(255, 255, 0, 2), Rgba(0, 255, 0, 3), Rgba(0, 255, 255, 4),
        Rgba(0, 0, 255, 5), Rgba(255, 0, 255, 6), Rgba(255, 255, 255, 7), Rgba(0, 0, 0, 8)}) {
    EXPECT_EQ(RgbaOf(HslOf(colour)), colour);
  }
}

TEST(ZvHSLPixel, NotEveryGrayComesBack) {
  // Lightness 50: m = 50 * 255 / 100 = 127, n = 255 - 127 = 128, f = -1 * 0 / 60 = 0; (m, up, n) =
  // (127, 128, 128)
  EXPECT_EQ(RgbaOf(HslOf(Rgba(128, 128, 128, 7))), Rgba(127, 128, 128, 7));
}

TEST(ZvHSLPixel, TheThresholdOnTheWayBackIs51) {
  // Below: v = 151 * 50 / 100 = 75, m = 191, n = 255 - 191. Above it would be v = 50 + 51 - 25 =
  // 76, m = 193.
  EXPECT_EQ(RgbaOf({0, 51, 50, 0}), Rgba(191, 64, 64, 0));
  // At 51: v = 51 + 51 - 26 = 76, m = 193, n = 260 - 193 = 67. Below it would be 151 * 51 / 100
  // = 77.
  EXPECT_EQ(RgbaOf({0, 51, 51, 0}), Rgba(193, 67, 67, 0));
}

TEST(ZvHSLPixel, EachSectorHasItsOrderOfChannels) {
  // Saturation 60, lightness 40: v = 64, m = 163, n = 204 - 163 = 41; f = 122 * (H mod 60) / 60 =
  // 61 at 30. up = 102, down = 102 at 30; at 15 f = 30, up = 71, down = 133.
  EXPECT_EQ(RgbaOf({15, 60, 40, 1}), Rgba(163, 71, 41, 1));
  EXPECT_EQ(RgbaOf({75, 60, 40, 1}), Rgba(133, 163, 41, 1));
  EXPECT_EQ(RgbaOf({135, 60, 40, 1}), Rgba(41, 163, 71, 1));
  EXPECT_EQ(RgbaOf({195, 60, 40, 1}), Rgba(41, 133, 163, 1));
  EXPECT_EQ(RgbaOf({255, 60, 40, 1}), Rgba(71, 41, 163, 1));
  EXPECT_EQ(RgbaOf({315, 60, 40, 1}), Rgba(163, 41, 133, 1));
}

TEST(ZvHSLPixel, Hue360IsHue0) {
  EXPECT_EQ(RgbaOf({360, 60, 40, 1}), RgbaOf({0, 60, 40, 1}));
  EXPECT_EQ(RgbaOf({360, 60, 40, 1}), Rgba(163, 41, 41, 1));
}

TEST(ZvHSLPixel, AHueOutsideTheCircleCountsAsItsAngle) {
  EXPECT_EQ(RgbaOf({-45, 60, 40, 1}), RgbaOf({315, 60, 40, 1}));
  EXPECT_EQ(RgbaOf({375, 60, 40, 1}), RgbaOf({15, 60, 40, 1}));
  EXPECT_EQ(RgbaOf({435, 60, 40, 1}), RgbaOf({75, 60, 40, 1}));
  EXPECT_EQ(RgbaOf({-500, 60, 40, 1}), RgbaOf({220, 60, 40, 1}));
  EXPECT_EQ(RgbaOf({-360, 60, 40, 1}), RgbaOf({0, 60, 40, 1}));
  EXPECT_EQ(RgbaOf({32767, 60, 40, 1}), RgbaOf({32767 % 360, 60, 40, 1}));
  EXPECT_EQ(RgbaOf({-32768, 60, 40, 1}), RgbaOf({-32768 % 360 + 360, 60, 40, 1}));
}

TEST(ZvHSLPixel, ResultsAreKeptToAByteWithoutLimiting) {
  // v = 355 * 50 / 100 = 177, m = 451, n = 255 - 451 = -196: low bytes 195 and 60.
  EXPECT_EQ(RgbaOf({0, 255, 50, 3}), Rgba(195, 60, 60, 3));
}

TEST(ZvHSLPixel, DarknessIsBlackWithItsAlpha) {
  EXPECT_EQ(RgbaOf({200, 100, 0, 42}), Rgba(0, 0, 0, 42));
}

TEST(ZvHSLPixel, ToRgbaFollowsItsStepsForEveryHueSaturationAndLightness) {
  for (int32_t H = 0; H <= 360; ++H) {
    for (int32_t S = 0; S <= 100; S += 4) {
      for (int32_t L = 0; L <= 100; ++L) {
        const int32_t v = L < 51 ? (S + 100) * L / 100 : L + S - L * S / 100;
        const int32_t m = v * 255 / 100;
        std::array<int32_t, 3> rgb{0, 0, 0};
        if (m >= 1) {
          const int32_t n = L * 510 / 100 - m;
          const int32_t f = (m - n) * (H % 60) / 60;
          const std::array<std::array<int32_t, 3>, 7> sectors{{{m, n + f, n},
                                                               {m - f, m, n},
                                                               {n, m, n + f},
                                                               {n, m - f, m},
                                                               {n + f, n, m},
                                                               {m, n, m - f},
                                                               {m, n + f, n}}};
          rgb = sectors[static_cast<size_t>(H / 60)];
        }
        const PxRgbaBytes out = RgbaOf({static_cast<int16_t>(H), static_cast<uint8_t>(S),
                                        static_cast<uint8_t>(L), static_cast<uint8_t>(H & 0xFF)});
        if (out.red != (rgb[0] & 0xFF) || out.green != (rgb[1] & 0xFF) ||
            out.blue != (rgb[2] & 0xFF) || out.alpha != (H & 0xFF)) {
          FAIL() << "hue " << H << " saturation " << S << " lightness " << L;
        }
      }
    }
  }
}

TEST(ZvHSLPixel, WordsAreNarrowedAndWidenedAroundTheByteForms) {
  ZvHSLPixel pixel;
  pixel.FromRgba(PxRgba64{0xFFFF, 0x00FF, 0x0000, 0x80FF});
  EXPECT_EQ(pixel, (ZvHSLPixel{0, 100, 50, 0x80}));
  PxRgba64 out;
  pixel.ToRgba(out);
  EXPECT_EQ(out, (PxRgba64{0xFFFF, 0, 0, 0x8080}));
}

}  // namespace
