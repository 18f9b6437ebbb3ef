#include "effects_app/Effect.h"

#include <gtest/gtest.h>

#include "foundation/ZvSmartPtr.h"
#include "image/ZvTiledImage.h"
#include "image/ZvTypedImage.h"

using namespace effects_app;

namespace {

const EffectSettings kNothing{"", 0, 0, 0, 0, 0, 0};

template <class P>
P PixelAfter(P pixel, const EffectSettings& settings, bool exchanged = false) {
  ZvTiledImage<P> image(1, 1);
  image.PutRow(&pixel, 0, 0, 1);
  ApplyEffect(image, nullptr, settings, exchanged);
  P result{};
  image.GetRow(&result, 0, 0, 1);
  return result;
}

// A gray row image from its bytes.
ZvSmartPtr<ZvImage> GrayImage(int32_t width, const std::vector<uint8_t>& bytes) {
  auto image = ZvSmartPtr<ZvImage>::Adopt(
      new ZvTypedImage<PxGrayByte>(width, static_cast<int32_t>(bytes.size()) / width, 0, nullptr));
  for (int32_t y = 0; y < image->Height(); ++y) {
    image->PutRow(bytes.data() + y * width, 0, y, width);
  }
  return image;
}

std::vector<uint8_t> BytesOf(const ZvImage& image) {
  std::vector<uint8_t> bytes(static_cast<std::size_t>(image.Width() * image.Height()));
  for (int32_t y = 0; y < image.Height(); ++y) {
    image.GetRow(bytes.data() + y * image.Width(), 0, y, image.Width());
  }
  return bytes;
}

}  // namespace

TEST(Effect, WithoutPercentagesChangesNothing) {
  const PxRgbaBytes pixel = PixelAfter(PxRgbaBytes{10, 20, 30, 40}, kNothing);
  EXPECT_EQ(pixel.blue, 10);
  EXPECT_EQ(pixel.green, 20);
  EXPECT_EQ(pixel.red, 30);
  EXPECT_EQ(pixel.alpha, 40);
}

TEST(Effect, BrightensLightAndLeavesAlpha) {
  EffectSettings settings = kNothing;
  settings.brightness = 50;
  const PxRgbaBytes pixel = PixelAfter(PxRgbaBytes{10, 20, 200, 40}, settings);
  EXPECT_EQ(pixel.blue, 15);
  EXPECT_EQ(pixel.green, 30);
  EXPECT_EQ(pixel.red, 255);
  EXPECT_EQ(pixel.alpha, 40);
  EXPECT_EQ(PixelAfter(PxGrayByte{100}, settings).gray, 150);
  EXPECT_EQ(PixelAfter(PxRgba64{1000, 2000, 60000, 7}, settings).red, 1500);
  EXPECT_EQ(PixelAfter(PxRgba64{1000, 2000, 60000, 7}, settings).blue, 65535);
  EXPECT_EQ(PixelAfter(PxRgba64{1000, 2000, 60000, 7}, settings).alpha, 7);
}

TEST(Effect, TakesInkForMissingLight) {
  EffectSettings settings = kNothing;
  settings.brightness = 50;
  // 255 - ink - black is 100, 155, 55 of light; half as much again 150, 232, 82. The brightest
  // leaves room for 23 of the 100 of black, and the inks take away the rest.
  const PxCmykBytes pixel = PixelAfter(PxCmykBytes{55, 0, 100, 100}, settings);
  EXPECT_EQ(pixel.cyan, 82);
  EXPECT_EQ(pixel.magenta, 0);
  EXPECT_EQ(pixel.yellow, 150);
  EXPECT_EQ(pixel.black, 23);
}

TEST(Effect, KeepsTheShareOfBlackInkWhereNothingNeedsMoreLight) {
  const PxCmykBytes pixel = PixelAfter(PxCmykBytes{60, 70, 80, 90}, kNothing);
  EXPECT_EQ(pixel.cyan, 60);
  EXPECT_EQ(pixel.magenta, 70);
  EXPECT_EQ(pixel.yellow, 80);
  EXPECT_EQ(pixel.black, 90);
}

TEST(Effect, SaturationMovesColoursFromTheirMean) {
  EffectSettings settings = kNothing;
  settings.saturation = 50;
  // Mean of 90, 120, 150 is 120.
  PxRgbBytes pixel = PixelAfter(PxRgbBytes{150, 120, 90}, settings);
  EXPECT_EQ(pixel.red, 75);
  EXPECT_EQ(pixel.green, 120);
  EXPECT_EQ(pixel.blue, 165);
  settings.saturation = -100;
  pixel = PixelAfter(PxRgbBytes{150, 120, 90}, settings);
  EXPECT_EQ(pixel.red, 120);
  EXPECT_EQ(pixel.blue, 120);
}

TEST(Effect, BalancesEachColourAndKnowsWhenRedAndBlueAreExchanged) {
  EffectSettings settings = kNothing;
  settings.red = 10;
  settings.blue = -10;
  PxRgba64 pixel = PixelAfter(PxRgba64{1000, 1000, 1000, 0}, settings);
  EXPECT_EQ(pixel.red, 1100);
  EXPECT_EQ(pixel.green, 1000);
  EXPECT_EQ(pixel.blue, 900);
  pixel = PixelAfter(PxRgba64{1000, 1000, 1000, 0}, settings, true);
  EXPECT_EQ(pixel.red, 900);
  EXPECT_EQ(pixel.blue, 1100);
  EXPECT_EQ(PixelAfter(PxGrayByte{100}, settings).gray, 100);
}

TEST(Effect, SharpensAgainstTheNeighbourhoodWithTheEdgeRepeated) {
  EffectSettings settings = kNothing;
  settings.sharpen = 100;
  const ZvSmartPtr<ZvImage> image = GrayImage(3, {90, 90, 90,  //
                                                  90, 99, 90,  //
                                                  90, 90, 90});
  ApplyEffect(*image, nullptr, settings, false);
  // Middle: 9 * 99 - (8 * 90 + 99) = 72, a ninth is 8. A neighbour: 9 * 90 - (8 * 90 + 99) = -9, a
  // ninth is -1; the same for corners and edges, which see the middle once.
  EXPECT_EQ(BytesOf(*image), (std::vector<uint8_t>{89, 89, 89, 89, 107, 89, 89, 89, 89}));

  const ZvSmartPtr<ZvImage> edge = GrayImage(2, {0, 90});
  ApplyEffect(*edge, nullptr, settings, false);
  // Left: 0 - (6 * 0 + 3 * 90) = -270, a ninth is -30, cut to 0. Right: 810 - (6 * 90 + 0) = 270.
  EXPECT_EQ(BytesOf(*edge), (std::vector<uint8_t>{0, 120}));
}

TEST(Effect, AMaskOfTheImagesSizeWeightsIt) {
  EffectSettings settings = kNothing;
  settings.brightness = 100;
  const ZvSmartPtr<ZvImage> image = GrayImage(3, {100, 100, 100});
  ZvTypedImage<PxAlphaByte> mask(3, 1, 0, nullptr);
  const uint8_t coverage[] = {0, 51, 255};
  mask.PutRow(coverage, 0, 0, 3);
  ApplyEffect(*image, &mask, settings, false);
  EXPECT_EQ(BytesOf(*image), (std::vector<uint8_t>{100, 120, 200}));
}

TEST(Effect, AMaskOfAnotherSizeIsIgnored) {
  EffectSettings settings = kNothing;
  settings.brightness = 100;
  const ZvSmartPtr<ZvImage> image = GrayImage(3, {100, 100, 100});
  ZvTypedImage<PxAlphaByte> mask(2, 1, 0, nullptr);
  mask.Clear();
  ApplyEffect(*image, &mask, settings, false);
  EXPECT_EQ(BytesOf(*image), (std::vector<uint8_t>{200, 200, 200}));
}

TEST(Effect, ImagesWithoutColourStayAsTheyAre) {
  EffectSettings settings;
  EXPECT_EQ(PixelAfter(PxAlphaByte{100}, settings).alpha, 100);
}
