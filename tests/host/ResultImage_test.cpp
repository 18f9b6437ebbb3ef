#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "host/TestPlugIn.h"
#include "image/ZvTiledImage.h"
#include "image/ZvTypedImage.h"
#include "support/ReportRecorder.h"

namespace vm {
namespace {

using ByteVector = std::vector<uint8_t>;

// A picture as the effects application returns it, from pixels in storage form.
template <class P>
ZvSmartPtr<ZvImage> Picture(int32_t width, int32_t height, const ByteVector& pixels) {
  auto image = ZvSmartPtr<ZvImage>::Adopt(new ZvTiledImage<P>(width, height));
  EXPECT_EQ(pixels.size(), static_cast<size_t>(width * height * image->BytesPerPixel()));
  image->ImportBuffer(pixels.data(), width * image->BytesPerPixel());
  return image;
}

// A host that has delivered its input, as it stands when the reply comes in.
struct WaitingHost {
  FakeHost host;

  WaitingHost(int16_t mode, int16_t planes, int16_t width, int16_t height)
      : host(mode, planes, width, height,
             ByteVector(static_cast<size_t>(width) * static_cast<size_t>(height) *
                        static_cast<size_t>(planes) * (mode >= 10 ? 2 : 1))) {
    TestPlugIn plugIn(host);
    Rect whole;
    plugIn.GetWholeImageRect(whole);
    plugIn.RequestRects(whole, 0, 1.0);
    host.advances.clear();
  }

  // What the host's output buffer holds once the picture is put.
  ByteVector Put(ZvSmartPtr<ZvImage> image) {
    ZvSmartPtr<ZvImage> mask;
    return Put(image, mask);
  }
  ByteVector Put(ZvSmartPtr<ZvImage>& image, ZvSmartPtr<ZvImage>& mask) {
    TestPlugIn plugIn(host);
    EXPECT_TRUE(plugIn.PutResultImage(image, mask));
    return host.Output();
  }
};

ByteVector Words(const std::vector<uint16_t>& words) {
  return HostWords(words);
}

// --- The ten rows ------------------------------------------------------------------------------

TEST(ResultImage, GrayTakesTheGrayAndNotTheAlpha) {
  WaitingHost waiting(1, 1, 2, 1);
  // (30 + 60 + 90) x 0x101 / 0x300 = 60.2, cut; blue first.
  EXPECT_EQ(waiting.Put(Picture<PxRgbaBytes>(2, 1, {90, 60, 30, 0, 255, 255, 255, 255})),
            (ByteVector{60, 255}));
  EXPECT_EQ(waiting.Put(Picture<PxGrayByte>(2, 1, {0, 128})), (ByteVector{0, 128}));
}

TEST(ResultImage, GrayWithTransparencyIsCopied) {
  WaitingHost waiting(1, 2, 2, 1);
  EXPECT_EQ(waiting.Put(Picture<PxRgbaBytes>(2, 1, {90, 61, 30, 40, 7, 7, 7, 0})),
            (ByteVector{60, 40, 7, 0}));
}

// Over white with alpha 128: (128 x c + 127 x 255 + 127) / 255: 200 gives 227, 100 gives 177, 50
// gives 152.
TEST(ResultImage, RgbIsCompositedOverWhiteInBytes) {
  WaitingHost waiting(3, 3, 3, 1);
  EXPECT_EQ(waiting.Put(Picture<PxRgbaBytes>(3, 1, {50, 100, 200, 128, 3, 2, 1, 255, 9, 9, 9, 0})),
            (ByteVector{227, 177, 152, 1, 2, 3, 255, 255, 255}));
}

TEST(ResultImage, RgbaIsCopiedAndTheReturnedPictureItselfSwapped) {
  WaitingHost waiting(3, 4, 2, 1);
  ZvSmartPtr<ZvImage> image = Picture<PxRgbaBytes>(2, 1, {50, 100, 200, 128, 3, 2, 1, 0});
  ZvSmartPtr<ZvImage> mask;
  EXPECT_EQ(waiting.Put(image, mask), (ByteVector{200, 100, 50, 128, 1, 2, 3, 0}));
  PxRgbaBytes pixel;
  image->GetRgba(pixel, 0, 0);
  EXPECT_EQ(pixel.red, 50);
  EXPECT_EQ(pixel.blue, 200);
}

TEST(ResultImage, SixteenBitRgbIsHalvedAndHasBlueInTheFirstPlane) {
  WaitingHost waiting(11, 3, 2, 1);
  // Red, green, blue, alpha in the picture; alpha counts for nothing.
  EXPECT_EQ(waiting.Put(Picture<PxRgba64>(2, 1, Words({65503, 32751, 199, 0, 65535, 1, 0, 65535}))),
            Words({99, 16375, 32751, 0, 0, 32767}));
}

TEST(ResultImage, SixteenBitRgbaIsHalvedInAllFourChannels) {
  WaitingHost waiting(11, 4, 2, 1);
  EXPECT_EQ(waiting.Put(Picture<PxRgba64>(2, 1, Words({65503, 32751, 199, 65535, 2, 1, 0, 3}))),
            Words({32751, 16375, 99, 32767, 1, 0, 0, 1}));
}

TEST(ResultImage, WhatWasScaledAndHalvedIsNotQuiteWhatItWas) {
  // 32768 x 1.999 = 65503, half of it 32751; 1 becomes 1, half of it 0.
  FakeHost host(11, 4, 1, 1, HostWords({32768, 1, 2, 3}));
  TestPlugIn plugIn(host);
  ZvSmartPtr<ZvImage> image;
  ZvSmartPtr<ZvImage> mask;
  uint8_t colorType = 0;
  ASSERT_TRUE(plugIn.GetSourceImage(image, mask, colorType));
  EXPECT_TRUE(plugIn.PutResultImage(image, mask));
  EXPECT_EQ(host.Output(), HostWords({32751, 0, 1, 2}));
}

TEST(ResultImage, CmykArrivesExactlyAndInverted) {
  const ReportRecorder reports;  // a small picture: the ramps report
  WaitingHost waiting(4, 4, 2, 1);
  EXPECT_EQ(waiting.Put(Picture<PxCmykBytes>(2, 1, {1, 2, 3, 4, 255, 0, 100, 200})),
            (ByteVector{254, 253, 252, 251, 0, 255, 155, 55}));
}

TEST(ResultImage, CmykWithTransparencyIsCopiedRawAndInvertedButForAlpha) {
  WaitingHost waiting(4, 5, 2, 1);
  EXPECT_EQ(waiting.Put(Picture<PxCmykaBytes>(2, 1, {1, 2, 3, 4, 5, 255, 0, 100, 200, 77})),
            (ByteVector{254, 253, 252, 251, 5, 0, 255, 155, 55, 77}));
}

TEST(ResultImage, SixteenBitCmykIsInvertedAndNotHalved) {
  WaitingHost waiting(13, 4, 3, 1);
  // No ink stays no ink and full black full black; a colour of 1000, 2000, 3000 has the complements
  // 64535, 63535, 62535: black takes the smallest and leaves 2000, 1000, 0.
  EXPECT_EQ(
      waiting.Put(Picture<PxCmyk64>(3, 1, Words({0, 0, 0, 0, 0, 0, 0, 65535, 0, 0, 0, 0}))),
      Words({65535, 65535, 65535, 65535, 65535, 65535, 65535, 0, 65535, 65535, 65535, 65535}));
  EXPECT_EQ(waiting.Put(Picture<PxRgba64>(1, 1, Words({1000, 2000, 3000, 0}))),
            Words({63535, 64535, 65535, 3000}));
}

TEST(ResultImage, SixteenBitCmykWithTransparencyIsCopiedInvertedAndNotHalved) {
  WaitingHost waiting(13, 5, 1, 1);
  EXPECT_EQ(waiting.Put(Picture<PxCmyka80>(1, 1, Words({1, 2, 300, 65535, 40000}))),
            Words({65534, 65533, 65235, 0, 40000}));
}

// Sizes around the edges of tiles and of what is worked on at a time.
TEST(ResultImage, PicturesOfAnyHeightArriveWhole) {
  for (const int16_t height :
       std::initializer_list<int16_t>{1, 31, 32, 33, 63, 64, 65, 127, 128, 129, 200}) {
    const int16_t width = 130;
    const size_t pixels = size_t{130} * static_cast<size_t>(height);
    ByteVector rgba;
    ByteVector rgb;
    std::vector<uint16_t> words;
    std::vector<uint16_t> halves;
    for (size_t i = 0; i < pixels; ++i) {
      const auto red = static_cast<uint8_t>(i);
      const auto green = static_cast<uint8_t>(i / 130);
      const auto blue = static_cast<uint8_t>(i / 7);
      rgba.insert(rgba.end(), {blue, green, red, 255});
      rgb.insert(rgb.end(), {red, green, blue});
      for (const size_t factor : {1, 3, 5, 7}) {
        words.push_back(static_cast<uint16_t>(i * factor));
        halves.push_back(static_cast<uint16_t>(i * factor) / 2);
      }
    }
    {
      WaitingHost waiting(3, 3, width, height);
      EXPECT_EQ(waiting.Put(Picture<PxRgbaBytes>(width, height, rgba)), rgb) << height;
    }
    {
      WaitingHost waiting(11, 4, width, height);
      EXPECT_EQ(waiting.Put(Picture<PxRgba64>(width, height, Words(words))), Words(halves))
          << height;
    }
  }
}

TEST(ResultImage, AnyOtherPairIsLeftAloneAndCountsAsSuccess) {
  WaitingHost waiting(10, 1, 1, 1);
  EXPECT_EQ(waiting.Put(Picture<PxRgba64>(1, 1, Words({1, 2, 3, 4}))), (ByteVector{0xCD, 0xCD}));
  EXPECT_EQ(waiting.host.result, FakeHost::kUntouched);
}

TEST(ResultImage, TheRowFollowsTheRecordAndNotTheReturnedPicture) {
  WaitingHost waiting(3, 4, 1, 1);
  // A gray picture in an RGBA document.
  EXPECT_EQ(waiting.Put(Picture<PxGrayByte>(1, 1, {80})), (ByteVector{80, 80, 80, 255}));
}

// --- The request -------------------------------------------------------------------------------

TEST(ResultRequest, OnlyTheOutputRectangleIsSetToTheReturnedPicturesSize) {
  WaitingHost waiting(3, 3, 4, 2);
  waiting.host.Record().inHiPlane = 2;
  waiting.Put(Picture<PxRgbaBytes>(3, 5, ByteVector(60)));
  ASSERT_EQ(waiting.host.advances.size(), 1u);
  const FakeHost::Advance& asked = waiting.host.advances[0];
  EXPECT_EQ(asked.outRect, (Rect{0, 0, 5, 3}));
  EXPECT_EQ(asked.inRect, (Rect{0, 0, 2, 4}));
  EXPECT_EQ(asked.inHiPlane, 2);
  EXPECT_EQ(asked.outHiPlane, 2);
  EXPECT_EQ(asked.inData, nullptr);
  EXPECT_EQ(asked.outData, nullptr);
}

TEST(ResultRequest, ARefusalIsNotLookedAt) {
  WaitingHost waiting(3, 3, 1, 1);
  waiting.host.advanceAnswers = {-108};
  TestPlugIn plugIn(waiting.host);
  ZvSmartPtr<ZvImage> image = Picture<PxRgbaBytes>(1, 1, {1, 2, 3, 4});
  ZvSmartPtr<ZvImage> mask;
  EXPECT_TRUE(plugIn.PutResultImage(image, mask));
  EXPECT_EQ(waiting.host.result, FakeHost::kUntouched);
}

FilterRecord* gRecordWithoutPitch = nullptr;
std::vector<uint8_t> gRowsWithoutPitch(4 * 40);
OSErr VM_HOST_CALL DeliverWithoutPitch() {
  gRecordWithoutPitch->outData = gRowsWithoutPitch.data();
  gRecordWithoutPitch->outRowBytes = 0;
  return noErr;
}

TEST(ResultRequest, AHostThatNamesNoPitchHasRowsOfTheDefaultPitch) {
  WaitingHost waiting(1, 1, 3, 40);
  gRecordWithoutPitch = &waiting.host.Record();
  waiting.host.Record().advanceState = &DeliverWithoutPitch;
  TestPlugIn plugIn(waiting.host);
  ByteVector pixels(120);
  ByteVector expected(160);
  for (size_t i = 0; i < 120; ++i)
    expected[i / 3 * 4 + i % 3] = pixels[i] = static_cast<uint8_t>(i + 1);
  ZvSmartPtr<ZvImage> image = Picture<PxGrayByte>(3, 40, pixels);
  ZvSmartPtr<ZvImage> mask;
  EXPECT_TRUE(plugIn.PutResultImage(image, mask));
  EXPECT_EQ(gRowsWithoutPitch, expected);
}

TEST(ResultRequest, WithoutABufferTheTransferIsMadeAllTheSameAndLost) {
  // The ramps' reports tell that it is made.
  ReportRecorder reports;
  WaitingHost waiting(4, 4, 2, 2);
  waiting.host.deliversNothing = true;
  TestPlugIn plugIn(waiting.host);
  ZvSmartPtr<ZvImage> image = Picture<PxCmykBytes>(2, 2, ByteVector(16));
  ZvSmartPtr<ZvImage> mask;
  EXPECT_TRUE(plugIn.PutResultImage(image, mask));
  EXPECT_EQ(reports.Lines().size(), 10240u) << "256 rows of 40 pixels";
}

TEST(ResultRequest, ANullImageIsRefusedBeforeTheHostIsAsked) {
  WaitingHost waiting(3, 3, 2, 1);
  const Rect before = waiting.host.Record().outRect;
  TestPlugIn plugIn(waiting.host);
  ZvSmartPtr<ZvImage> image;
  ZvSmartPtr<ZvImage> mask;
  EXPECT_FALSE(plugIn.PutResultImage(image, mask));
  EXPECT_EQ(waiting.host.result, -128);
  EXPECT_TRUE(waiting.host.advances.empty());
  EXPECT_EQ(waiting.host.Record().outRect, before);
}

TEST(ResultRequest, APictureBeyondTheHostsNumbersIsCutToThem) {
  WaitingHost waiting(1, 1, 1, 1);
  auto image = ZvSmartPtr<ZvImage>::Adopt(new ZvTiledImage<PxGrayByte>(40000, 2));
  waiting.Put(image);
  EXPECT_EQ(waiting.host.advances[0].outRect, (Rect{0, 0, 2, 32767}));
}

// --- The mask ----------------------------------------------------------------------------------

TEST(ResultMask, IsReleasedOnlyForCmykAndUsedNowhere) {
  const struct {
    int16_t mode, planes;
    bool released;
  } rows[] = {{1, 1, false},  {1, 2, false}, {3, 3, false}, {3, 4, false},  {11, 3, false},
              {11, 4, false}, {4, 4, true},  {4, 5, false}, {13, 4, false}, {13, 5, false}};
  for (const auto& row : rows) {
    const ReportRecorder reports;
    WaitingHost waiting(row.mode, row.planes, 1, 1);
    const ZvSmartPtr<ZvImage> original = Picture<PxRgbaBytes>(1, 1, {1, 2, 3, 255});
    ZvSmartPtr<ZvImage> image = original;
    ZvSmartPtr<ZvImage> mask = Picture<PxAlphaByte>(1, 1, {0});
    const ByteVector withMask = waiting.Put(image, mask);
    EXPECT_EQ(!mask, row.released) << row.mode << ", " << row.planes;
    image = Picture<PxRgbaBytes>(1, 1, {1, 2, 3, 255});
    mask.Clear();
    EXPECT_EQ(waiting.Put(image, mask), withMask);
  }
}

// --- The test ramps ----------------------------------------------------------------------------

// The four strips as the rule says, in host bytes (inverted), over a picture without ink.
ByteVector ExpectedRamps(int32_t width, int32_t height) {
  ByteVector pixels(static_cast<size_t>(width) * static_cast<size_t>(height) * 4, 255);
  for (int32_t y = 10; y <= 265; ++y) {
    for (int32_t ink = 0; ink < 4; ++ink) {
      for (int32_t x = 10 + 20 * ink; x <= 19 + 20 * ink; ++x) {
        const size_t at =
            (static_cast<size_t>(y) * static_cast<size_t>(width) + static_cast<size_t>(x)) * 4;
        if (at + 4 > pixels.size())
          continue;
        for (size_t i = 0; i < 4; ++i)
          pixels[at + i] = 255;
        pixels[at + static_cast<size_t>(ink)] = static_cast<uint8_t>(255 - (y - 10));
      }
    }
  }
  return pixels;
}

TEST(TestRamps, EveryCmykResultCarriesTheFourStrips) {
  WaitingHost waiting(4, 4, 81, 267);
  EXPECT_EQ(waiting.Put(Picture<PxCmykBytes>(81, 267, ByteVector(size_t{81} * 267 * 4))),
            ExpectedRamps(81, 267));
}

TEST(TestRamps, ReplaceWhatThePictureHeldThere) {
  WaitingHost waiting(4, 4, 80, 266);
  const ByteVector out =
      waiting.Put(Picture<PxCmykBytes>(80, 266, ByteVector(size_t{80} * 266 * 4, 77)));
  const auto pixel = [&out](size_t x, size_t y) {
    const auto at = out.begin() + static_cast<ptrdiff_t>((y * 80 + x) * 4);
    return ByteVector(at, at + 4);
  };
  const ByteVector picture = {178, 178, 178, 178};
  EXPECT_EQ(pixel(10, 9), picture);
  EXPECT_EQ(pixel(9, 10), picture);
  EXPECT_EQ(pixel(10, 10), (ByteVector{255, 255, 255, 255}));
  EXPECT_EQ(pixel(19, 265), (ByteVector{0, 255, 255, 255}));
  EXPECT_EQ(pixel(20, 265), picture);
  EXPECT_EQ(pixel(30, 138), (ByteVector{255, 127, 255, 255}));
  EXPECT_EQ(pixel(59, 11), (ByteVector{255, 255, 254, 255}));
  EXPECT_EQ(pixel(79, 265), (ByteVector{255, 255, 255, 0}));
}

TEST(TestRamps, RowsThatThePictureHasNotAreReportedPixelByPixelAndDropped) {
  ReportRecorder reports;
  WaitingHost waiting(4, 4, 80, 100);
  EXPECT_EQ(waiting.Put(Picture<PxCmykBytes>(80, 100, ByteVector(size_t{80} * 100 * 4))),
            ExpectedRamps(80, 100));
  // Rows 100 to 265, forty pixels each.
  ASSERT_EQ(reports.Lines().size(), 6640u);
  for (const std::string& line : reports.Lines())
    ASSERT_NE(line.find(" : y < mHeight"), std::string::npos) << line;
}

TEST(TestRamps, InANarrowPictureTheStripsWrapIntoTheNextRow) {
  // Twenty columns: the first strip lies inside, the others wrap into the rows below it. Later
  // strips overwrite earlier ones. The host's rows have three bytes of padding, so a wrapped pixel
  // lies across it.
  ReportRecorder reports;
  FakeHost host(4, 4, 20, 300, ByteVector(size_t{20} * 300 * 4));
  TestPlugIn plugIn(host);
  Rect whole;
  plugIn.GetWholeImageRect(whole);
  plugIn.RequestRects(whole, 0, 1.0);
  ZvSmartPtr<ZvImage> image = Picture<PxCmykBytes>(20, 300, ByteVector(size_t{20} * 300 * 4));
  ZvSmartPtr<ZvImage> mask;
  ASSERT_TRUE(plugIn.PutResultImage(image, mask));

  // The block byte by byte: 20 pixels and 3 bytes of padding a row.
  const size_t pitch = 83;
  ByteVector block(pitch * 300);
  for (size_t y = 0; y < 300; ++y)
    std::fill_n(block.begin() + static_cast<ptrdiff_t>(y * pitch + 80), 3, uint8_t{0xEE});
  for (size_t y = 10; y <= 265; ++y) {
    for (size_t ink = 0; ink < 4; ++ink) {
      for (size_t x = 10 + 20 * ink; x <= 19 + 20 * ink; ++x) {
        const size_t at = y * pitch + x * 4;
        std::fill_n(block.begin() + static_cast<ptrdiff_t>(at), 4, uint8_t{0});
        block[at + ink] = static_cast<uint8_t>(y - 10);
      }
    }
  }
  const auto* const out = static_cast<const uint8_t*>(host.Record().outData);
  for (size_t y = 0; y < 300; ++y) {
    for (size_t x = 0; x < 80; ++x)
      ASSERT_EQ(out[y * pitch + x], 255 - block[y * pitch + x]) << "row " << y << ", byte " << x;
    for (size_t x = 80; x < pitch; ++x)
      ASSERT_EQ(out[y * pitch + x], block[y * pitch + x]) << "row " << y << ", padding " << x;
  }
  EXPECT_TRUE(reports.Empty());
}

TEST(TestRamps, OnlyThePlainCmykRowDrawsThem) {
  WaitingHost waiting(4, 5, 80, 266);
  EXPECT_EQ(waiting.Put(Picture<PxCmykaBytes>(80, 266, ByteVector(size_t{80} * 266 * 5, 255))), [] {
    ByteVector expected(size_t{80} * 266 * 5, 0);
    for (size_t i = 4; i < expected.size(); i += 5)
      expected[i] = 255;
    return expected;
  }());
}

}  // namespace
}  // namespace vm
