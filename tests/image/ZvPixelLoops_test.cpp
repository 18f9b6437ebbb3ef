#include "image/ZvPixelLoops.h"

#include <cstring>
#include <string>
#include <type_traits>
#include <utility>

#include "image/ImageTestSupport.h"
#include "support/RandomData.h"

namespace {

using vm::New;
using vm::PixelAt;

// Crosses a tile in both directions and ends inside one.
constexpr int32_t kWidth = 131;
constexpr int32_t kHeight = 130;

// The rule itself: each pixel, from the top left, through the image's own view.
template <class Change>
void EachThrough64(ZvImage& image, int32_t width, int32_t height, Change change) {
  for (int32_t y = 0; y < height; ++y) {
    for (int32_t x = 0; x < width; ++x) {
      PxRgba64 pixel;
      image.GetRgba64(pixel, x, y);
      change(pixel);
      image.PutRgba64(pixel, x, y);
    }
  }
}

template <class T>
class ZvPixelLoops : public ::testing::Test {
 protected:
  using P = typename T::Record;
  using Image = typename T::Image;

  static ZvSmartPtr<Image> RandomImage() {
    auto image = New<Image>(kWidth, kHeight);
    vm::Random random(vm::SeedOfRun());
    vm::Randomize<P>(*image, random);
    return image;
  }
  // Of a tiled image only the tile at (1, 0) exists.
  static ZvSmartPtr<Image> MostlyAbsentImage() {
    auto image = New<Image>(kWidth, kHeight);
    vm::Random random(vm::SeedOfRun());
    image->PutPixel(vm::RandomRecord<P>(random), 129, 5);
    return image;
  }

  // Whether `loop` does to a whole image what `rule` does to its twin, pixel for pixel.
  template <class Loop, class Rule>
  static void LoopIsRule(Loop loop, Rule rule) {
    SCOPED_TRACE(vm::SeedHint());
    for (const auto make : {RandomImage, MostlyAbsentImage}) {
      auto image = make();
      auto twin = make();
      loop(*image, kWidth, kHeight);
      rule(*twin, kWidth, kHeight);
      const ZvRect all{0, 0, kWidth - 1, kHeight - 1};
      ASSERT_TRUE(
          vm::Holds<P>(*image, all, [&](int32_t x, int32_t y) { return PixelAt<P>(*twin, x, y); }));
    }
  }
};
TYPED_TEST_SUITE(ZvPixelLoops, vm::AllImages, vm::ImageTestNames);

TYPED_TEST(ZvPixelLoops, SwappingExchangesTheFirstAndThirdChannelOfTheView) {
  this->LoopIsRule(vm::SwapChannels02, [](ZvImage& image, int32_t width, int32_t height) {
    EachThrough64(image, width, height, [](PxRgba64& p) { std::swap(p.red, p.blue); });
  });
}

TYPED_TEST(ZvPixelLoops, ScalingTakesTheLowBitsOfTheTruncatedProductInTheFirstChannels) {
  const auto scaled = [](uint16_t c) {
    return static_cast<uint16_t>(static_cast<uint32_t>(static_cast<double>(c) * 1.999) % 0x10000);
  };
  for (int32_t channels = 0; channels <= 4; ++channels) {
    SCOPED_TRACE(channels);
    this->LoopIsRule(
        [channels](ZvImage& image, int32_t width, int32_t height) {
          vm::ScaleChannels(image, width, height, channels);
        },
        [&](ZvImage& image, int32_t width, int32_t height) {
          EachThrough64(image, width, height, [&](PxRgba64& p) {
            p.red = channels > 0 ? scaled(p.red) : p.red;
            p.green = channels > 1 ? scaled(p.green) : p.green;
            p.blue = channels > 2 ? scaled(p.blue) : p.blue;
            p.alpha = channels > 3 ? scaled(p.alpha) : p.alpha;
          });
        });
  }
}

TYPED_TEST(ZvPixelLoops, HalvingShiftsAllFourChannelsOfTheView) {
  this->LoopIsRule(vm::HalveChannels, [](ZvImage& image, int32_t width, int32_t height) {
    EachThrough64(image, width, height, [](PxRgba64& p) {
      p = {static_cast<uint16_t>(p.red / 2), static_cast<uint16_t>(p.green / 2),
           static_cast<uint16_t>(p.blue / 2), static_cast<uint16_t>(p.alpha / 2)};
    });
  });
}

// Bytes and words only: the rule is about channels of these.
TYPED_TEST(ZvPixelLoops, InvertingTakesTheComplementOfEachStoredColourAndLeavesAlpha) {
  using P = typename TypeParam::Record;
  constexpr int32_t kBits = P::kInfo.bitsPerChannel;
  if constexpr ((kBits == 8 || kBits == 16) && P::kInfo.kind != FourCC("XYfi")) {
    SCOPED_TRACE(vm::SeedHint());
    auto image = this->RandomImage();
    const auto original = this->RandomImage();
    vm::InvertChannels(*image, kWidth, kHeight);
    constexpr int32_t kColours = P::kInfo.channels - (P::kInfo.hasAlpha ? 1 : 0);
    for (int32_t y = 0; y < kHeight; ++y) {
      for (int32_t x = 0; x < kWidth; ++x) {
        const P after = PixelAt<P>(*image, x, y);
        const P before = PixelAt<P>(*original, x, y);
        for (int32_t n = 0; n < P::kInfo.channels; ++n) {
          uint16_t a = 0;
          uint16_t b = 0;
          after.GetChannel(&a, n);
          before.GetChannel(&b, n);
          ASSERT_EQ(a, n < kColours ? ((1 << kBits) - 1) - b : b)
              << "channel " << n << " at (" << x << ", " << y << ")";
        }
      }
    }
  }
}

TYPED_TEST(ZvPixelLoops, ChangeOnlyTheAreaTheyAreGiven) {
  using P = typename TypeParam::Record;
  SCOPED_TRACE(vm::SeedHint());
  const auto original = this->RandomImage();
  for (const auto loop : {vm::SwapChannels02, vm::HalveChannels, vm::InvertChannels}) {
    auto image = this->RandomImage();
    loop(*image, 129, 3);
    const auto same = [&](int32_t x, int32_t y) { return PixelAt<P>(*original, x, y); };
    EXPECT_TRUE(vm::Holds<P>(*image, {129, 0, kWidth - 1, kHeight - 1}, same));
    EXPECT_TRUE(vm::Holds<P>(*image, {0, 3, kWidth - 1, kHeight - 1}, same));
    loop(*image, 0, 3);
    loop(*image, 3, -1);
  }
}

// By hand, for the two rows of the transfer that are easily taken for mistakes.

TEST(ZvPixelLoopsByHand, ScalingCmykWordsWritesTheScaledViewBack) {
  // Inks 255, 0, 0, 0 read as red 0xFFFF - 163 * 257 = 23644, green and blue 0xFFFF. Scaled: 47264
  // (47264.4), and 131004 (131004.5) kept to 16 bits as 65468. Complements: 18271, 67, 67, of which
  // 67 goes to black.
  auto image = New<ZvTiledImage<PxCmyk64>>(1, 1);
  image->PutPixel(PxCmyk64{255, 0, 0, 0}, 0, 0);
  vm::ScaleChannels(*image, 1, 1, 3);
  EXPECT_EQ(PixelAt<PxCmyk64>(*image, 0, 0), (PxCmyk64{18204, 0, 0, 67}));
}

TEST(ZvPixelLoopsByHand, SwappingAPixelOfInksStoresNothing) {
  auto image = New<ZvTypedImage<PxCmykBytes>>(1, 1);
  image->PutPixel(PxCmykBytes{1, 2, 3, 4}, 0, 0);
  vm::SwapChannels02(*image, 1, 1);
  EXPECT_EQ(PixelAt<PxCmykBytes>(*image, 0, 0), (PxCmykBytes{1, 2, 3, 4}));
}

TEST(ZvPixelLoopsByHand, InvertingAHostsRowsLeavesAlphaAndThePaddingAlone) {
  uint8_t host[2 * 12] = {};
  for (uint8_t i = 0; i < 24; ++i)
    host[i] = i;
  auto inks = New<ZvTypedImage<PxCmykaBytes>>(2, 2, 12, host);
  vm::InvertChannels(*inks, 2, 2);
  const uint8_t expected[24] = {255, 254, 253, 252, 4,  250, 249, 248, 247, 9,  10, 11,
                                243, 242, 241, 240, 16, 238, 237, 236, 235, 21, 22, 23};
  EXPECT_EQ(std::memcmp(host, expected, 24), 0);
}

TEST(ZvPixelLoopsByHand, ALoopOverNothingMakesNoTiles) {
  auto image = New<ZvTiledImage<PxRgba64>>(500, 500);
  vm::SwapChannels02(*image, 0, 10);
  vm::ScaleChannels(*image, 10, -1, 4);
  vm::HalveChannels(*image, -5, 10);
  vm::InvertChannels(*image, 0, 0);
  EXPECT_EQ(image->Tiles().TileCount(), 0u);
}

}  // namespace
