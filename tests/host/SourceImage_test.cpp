#include <gtest/gtest.h>

#include <string>

#include "host/TestPlugIn.h"
#include "image/ZvTiledImage.h"
#include "image/ZvTypedImage.h"

namespace vm {
namespace {

using ByteVector = std::vector<uint8_t>;

// What GetSourceImage gave.
struct Source {
  ZvSmartPtr<ZvImage> image;
  ZvSmartPtr<ZvImage> mask;
  uint8_t colorType = 99;
  bool made = false;

  explicit Source(FakeHost& host) {
    TestPlugIn plugIn(host);
    made = plugIn.GetSourceImage(image, mask, colorType);
  }
};

// The image's pixels in storage form, row by row, without padding.
ByteVector Pixels(const ZvImage& image) {
  const int32_t rowBytes = image.BytesPerPixel() * image.Width();
  ByteVector bytes(static_cast<size_t>(rowBytes) * static_cast<size_t>(image.Height()));
  image.ExportBuffer(bytes.data(), rowBytes);
  return bytes;
}

std::string NameOf(const ZvImage& image) {
  ZvString name;
  image.ClassName(name);
  return name.c_str();
}

constexpr Rect kWhole2x1 = {0, 0, 1, 2};

// --- The ten rows ------------------------------------------------------------------------------

TEST(SourceImage, GrayArrivesAsGray) {
  FakeHost host(1, 1, 2, 2, {0, 1, 128, 255});
  const Source source(host);
  ASSERT_TRUE(source.made);
  EXPECT_EQ(source.colorType, 6);
  EXPECT_EQ(NameOf(*source.image), "ZvImageGrayByte");
  EXPECT_EQ(Pixels(*source.image), (ByteVector{0, 1, 128, 255}));
}

TEST(SourceImage, GrayWithTransparencyArrivesAsRgbaAndIsCalledGray) {
  FakeHost host(1, 2, 2, 1, {200, 255, 7, 30});
  const Source source(host);
  ASSERT_TRUE(source.made);
  EXPECT_EQ(source.colorType, 6);
  EXPECT_EQ(NameOf(*source.image), "ZvImageRgbaBytes");
  EXPECT_EQ(Pixels(*source.image), (ByteVector{200, 200, 200, 255, 7, 7, 7, 30}));
}

TEST(SourceImage, RgbArrivesBlueFirstAndOpaque) {
  FakeHost host(3, 3, 2, 1, {10, 20, 30, 255, 0, 1});
  const Source source(host);
  ASSERT_TRUE(source.made);
  EXPECT_EQ(source.colorType, 2);
  EXPECT_EQ(NameOf(*source.image), "ZvImageRgbaBytes");
  EXPECT_EQ(Pixels(*source.image), (ByteVector{30, 20, 10, 255, 1, 0, 255, 255}));
  EXPECT_EQ(host.Input(), (ByteVector{10, 20, 30, 255, 0, 1}))
      << "the host's pixels stay as they were";
}

TEST(SourceImage, RgbaArrivesBlueFirstWithItsAlpha) {
  FakeHost host(3, 4, 2, 1, {10, 20, 30, 40, 255, 0, 1, 0});
  const Source source(host);
  ASSERT_TRUE(source.made);
  EXPECT_EQ(source.colorType, 1);
  EXPECT_EQ(NameOf(*source.image), "ZvImageRgbaBytes");
  EXPECT_EQ(Pixels(*source.image), (ByteVector{30, 20, 10, 40, 1, 0, 255, 0}));
}

// The scale of 1.999 in numbers: 32768 x 1.999 = 65503.232, 16384 x 1.999 = 32751.616, 100 x 1.999
// = 199.9, 3 x 1.999 = 5.997, 2 x 1.999 = 3.998, 1 x 1.999 = 1.999, all cut.
TEST(SourceImage, SixteenBitRgbArrivesScaledAndWithRedAndBlueExchanged) {
  FakeHost host(11, 3, 2, 1, HostWords({32768, 16384, 100, 0, 1, 3}));
  const Source source(host);
  ASSERT_TRUE(source.made);
  EXPECT_EQ(source.colorType, 2);
  EXPECT_EQ(NameOf(*source.image), "ZvImageRgba64");
  // Stored red, green, blue, alpha: red is the host's third plane. Alpha is full and not scaled.
  EXPECT_EQ(Pixels(*source.image), HostWords({199, 32751, 65503, 65535, 5, 1, 0, 65535}));
}

TEST(SourceImage, SixteenBitRgbaArrivesScaledInAllFourChannels) {
  FakeHost host(11, 4, 2, 1, HostWords({32768, 16384, 100, 32768, 0, 1, 3, 2}));
  const Source source(host);
  ASSERT_TRUE(source.made);
  EXPECT_EQ(source.colorType, 1);
  EXPECT_EQ(NameOf(*source.image), "ZvImageRgba64");
  EXPECT_EQ(Pixels(*source.image), HostWords({65503, 32751, 199, 65503, 0, 1, 5, 3}));
}

TEST(SourceImage, ScaledWordsKeepTheirLow16Bits) {
  // 32784 x 1.999 = 65535.216 is the last that fits; 32785 x 1.999 = 65537.215 is 1; 65535 x 1.999
  // = 131004.465 is 131004 - 65536 = 65468.
  FakeHost host(11, 4, 1, 1, HostWords({32784, 32785, 65535, 0}));
  const Source source(host);
  EXPECT_EQ(Pixels(*source.image), HostWords({65535, 1, 65468, 0}));
}

TEST(SourceImage, CmykArrivesInvertedRecordForRecordAndInvertsTheHostsBuffer) {
  FakeHost host(4, 4, 2, 1, {255, 200, 100, 0, 1, 2, 3, 4});
  const Source source(host);
  ASSERT_TRUE(source.made);
  EXPECT_EQ(source.colorType, 4);
  EXPECT_EQ(NameOf(*source.image), "ZvImageCmykBytes");
  const ByteVector inverted = {0, 55, 155, 255, 254, 253, 252, 251};
  EXPECT_EQ(Pixels(*source.image), inverted);
  EXPECT_EQ(host.Input(), inverted);
}

// The copy goes through the RGBA view. Inks 10, 20, 30 without black are the colour 245, 235, 225,
// which is ink 10 in black and 0, 10, 20 in the others. Full black is black, whatever the others
// were.
TEST(SourceImage, CmykWithTransparencyArrivesThroughItsRgbaView) {
  FakeHost host(4, 5, 2, 1, {245, 235, 225, 255, 77, 3, 2, 1, 0, 255});
  const Source source(host);
  ASSERT_TRUE(source.made);
  EXPECT_EQ(source.colorType, 3);
  EXPECT_EQ(NameOf(*source.image), "ZvImageCmykaBytes");
  EXPECT_EQ(Pixels(*source.image), (ByteVector{0, 10, 20, 10, 77, 0, 0, 0, 255, 255}));
  EXPECT_EQ(host.Input(), (ByteVector{10, 20, 30, 0, 77, 252, 253, 254, 255, 255}));
}

// No ink is white, 65535 in each channel of the 64-bit view; scaled that wraps to 65468, whose
// complement 67 is all black ink. Full ink is 0 in each channel and stays 0: full black.
TEST(SourceImage, SixteenBitCmykWrapsWhereItIsScaled) {
  FakeHost host(13, 4, 2, 1, HostWords({65535, 65535, 65535, 65535, 0, 0, 0, 0}));
  const Source source(host);
  ASSERT_TRUE(source.made);
  EXPECT_EQ(source.colorType, 4);
  EXPECT_EQ(NameOf(*source.image), "ZvImageCmyka64") << "written under a name that nobody reads";
  EXPECT_EQ(Pixels(*source.image), HostWords({0, 0, 0, 67, 0, 0, 0, 65535}));
  EXPECT_EQ(host.Input(), HostWords({0, 0, 0, 0, 65535, 65535, 65535, 65535}));
}

TEST(SourceImage, SixteenBitCmykWithTransparencyIsInvertedInTheCopyOnlyAndNotScaled) {
  const ByteVector delivered = HostWords({65535, 32768, 100, 0, 12345, 1, 2, 3, 4, 0});
  FakeHost host(13, 5, 2, 1, delivered);
  const Source source(host);
  ASSERT_TRUE(source.made);
  EXPECT_EQ(source.colorType, 3);
  EXPECT_EQ(NameOf(*source.image), "ZvImageCmyka80");
  EXPECT_EQ(Pixels(*source.image),
            HostWords({0, 32767, 65435, 65535, 12345, 65534, 65533, 65532, 65531, 0}));
  EXPECT_EQ(host.Input(), delivered);
}

TEST(SourceImage, NoOtherPairOfModeAndPlanesMakesAnImage) {
  for (int16_t mode = 0; mode <= 14; ++mode) {
    for (int16_t planes = 1; planes <= 6; ++planes) {
      const bool row = (mode == 1 && planes <= 2) ||
                       ((mode == 3 || mode == 11) && (planes == 3 || planes == 4)) ||
                       ((mode == 4 || mode == 13) && (planes == 4 || planes == 5));
      const size_t size = static_cast<size_t>(planes) * (mode >= 10 && mode <= 13 ? 2 : 1);
      FakeHost host(mode, planes, 1, 1, ByteVector(size));
      const Source source(host);
      EXPECT_EQ(source.made, row) << mode << ", " << planes;
      EXPECT_EQ(static_cast<bool>(source.image), row) << mode << ", " << planes;
      if (!row) {
        EXPECT_EQ(source.colorType, 99) << mode << ", " << planes;
        EXPECT_EQ(host.result, FakeHost::kUntouched);
        EXPECT_EQ(host.advances.size(), 2u) << "the closing request is made all the same";
      }
    }
  }
}

TEST(SourceImage, TheImageOwnsItsPixels) {
  ZvSmartPtr<ZvImage> image;
  {
    FakeHost host(3, 3, 2, 1, {10, 20, 30, 255, 0, 1});
    image = Source(host).image;
  }
  EXPECT_TRUE(image->IsTiled());
  EXPECT_EQ(image->GetRefCount(), 1u);
  EXPECT_EQ(Pixels(*image), (ByteVector{30, 20, 10, 255, 1, 0, 255, 255}));
}

TEST(SourceImage, PicturesAcrossTileEdgesArriveWhole) {
  const int16_t width = 257;
  const int16_t height = 129;
  ByteVector pixels(size_t{257} * 129 * 3);
  for (size_t i = 0; i < pixels.size(); ++i)
    pixels[i] = static_cast<uint8_t>(i * 31 + i / 771);
  ByteVector expected;
  for (size_t i = 0; i < pixels.size(); i += 3)
    expected.insert(expected.end(), {pixels[i + 2], pixels[i + 1], pixels[i], 255});
  FakeHost host(3, 3, width, height, pixels);
  const Source source(host);
  EXPECT_EQ(Pixels(*source.image), expected);
}

// --- The requests ------------------------------------------------------------------------------

TEST(SourceRequests, TheWholeImageIsAskedForTwiceWithoutData) {
  FakeHost host(3, 3, 2, 1, ByteVector(6));
  host.Record().inData = host.Record().outData = &host;
  const Source source(host);
  ASSERT_EQ(host.advances.size(), 2u);
  for (const FakeHost::Advance& asked : host.advances) {
    EXPECT_EQ(asked.inRect, kWhole2x1);
    EXPECT_EQ(asked.outRect, kWhole2x1);
    EXPECT_EQ(asked.inHiPlane, 2);
    EXPECT_EQ(asked.outHiPlane, 2);
    EXPECT_EQ(asked.inputRate, 0x10000);
    EXPECT_EQ(asked.inData, nullptr);
    EXPECT_EQ(asked.outData, nullptr);
  }
  EXPECT_EQ(host.result, FakeHost::kUntouched);
}

TEST(SourceRequests, ARefusalIsRetriedWithThreePlanesWhichStay) {
  // Five planes are there; three are asked for and make an RGB picture.
  FakeHost host(3, 5, 1, 1, {10, 20, 30, 40, 50});
  host.advanceAnswers = {-30100};
  const Source source(host);
  ASSERT_TRUE(source.made);
  ASSERT_EQ(host.advances.size(), 3u);
  EXPECT_EQ(host.advances[0].inHiPlane, 4);
  EXPECT_EQ(host.advances[1].inHiPlane, 2);
  EXPECT_EQ(host.advances[1].outHiPlane, 2);
  EXPECT_EQ(host.advances[1].planes, 3);
  EXPECT_EQ(host.advances[2].inHiPlane, 2);
  EXPECT_EQ(host.Record().planes, 3);
  EXPECT_EQ(host.result, FakeHost::kUntouched);
  EXPECT_EQ(Pixels(*source.image), (ByteVector{30, 20, 10, 255}));
}

TEST(SourceRequests, ASecondRefusalEndsItWithTheHostsSecondCode) {
  FakeHost host(3, 4, 1, 1, ByteVector(4));
  host.advanceAnswers = {-1, -108};
  const Source source(host);
  EXPECT_FALSE(source.made);
  EXPECT_FALSE(source.image);
  EXPECT_EQ(source.colorType, 99);
  EXPECT_EQ(host.result, -108);
  EXPECT_EQ(host.advances.size(), 2u) << "no closing request";
  EXPECT_EQ(host.Record().planes, 3);
}

TEST(SourceRequests, ARefusalOfTheClosingRequestChangesNothing) {
  FakeHost host(3, 3, 1, 1, {1, 2, 3});
  host.advanceAnswers = {0, -108};
  const Source source(host);
  EXPECT_TRUE(source.made);
  EXPECT_EQ(host.result, FakeHost::kUntouched);
}

TEST(SourceRequests, AHostThatDeliversNoDataGivesABlackPicture) {
  FakeHost host(3, 3, 2, 1, ByteVector(6, 7));
  host.deliversNothing = true;
  const Source source(host);
  ASSERT_TRUE(source.made);
  EXPECT_EQ(Pixels(*source.image), (ByteVector{0, 0, 0, 255, 0, 0, 0, 255}));
}

TEST(SourceRequests, ABufferToImportThatIsNotThereLeavesTheImageEmpty) {
  FakeHost host(11, 4, 1, 1, ByteVector(8, 7));
  host.deliversNothing = true;
  const Source source(host);
  ASSERT_TRUE(source.made);
  EXPECT_EQ(Pixels(*source.image), ByteVector(8, 0));
}

TEST(SourceRequests, AnEmptyOrReversedRectangleMakesTheSmallestImage) {
  FakeHost host(3, 3, 1, 1, {10, 20, 30});
  host.onAdvance = [&host] { host.Record().inRect = {5, 5, 3, 2}; };
  const Source source(host);
  ASSERT_TRUE(source.made);
  EXPECT_EQ(source.image->Width(), 1);
  EXPECT_EQ(source.image->Height(), 1);
}

TEST(SourceRequests, NoPlanesMakeNoImage) {
  FakeHost host(3, 3, 1, 1, {10, 20, 30});
  host.Record().planes = 0;
  const Source source(host);
  EXPECT_FALSE(source.made);
  EXPECT_EQ(host.advances[0].inHiPlane, -1);
}

// --- The mask ----------------------------------------------------------------------------------

TEST(SourceMask, IsAViewOfTheHostsMaskWithTheFilterRectanglesSize) {
  FakeHost host(3, 3, 4, 3, ByteVector(36));
  host.Select({1, 1, 3, 4}, {1, 2, 3, 4, 5, 6});
  const Source source(host);
  ASSERT_TRUE(source.mask);
  EXPECT_EQ(NameOf(*source.mask), "ZvRowImageAlphaByte");
  EXPECT_EQ(source.mask->Width(), 3);
  EXPECT_EQ(source.mask->Height(), 2);
  EXPECT_EQ(Pixels(*source.mask), (ByteVector{1, 2, 3, 4, 5, 6}));
  EXPECT_EQ(source.image->Width(), 4) << "the picture is whole, whatever is selected";
  static_cast<uint8_t*>(host.Record().maskData)[0] = 99;
  EXPECT_EQ(Pixels(*source.mask)[0], 99) << "a view, not a copy";
}

TEST(SourceMask, WithoutASelectionThereIsNone) {
  FakeHost host(3, 3, 1, 1, {1, 2, 3});
  uint8_t byte = 0;
  host.Record().maskData = &byte;
  const Source source(host);
  EXPECT_FALSE(source.mask);
}

TEST(SourceMask, ASelectionWithoutDataGivesNone) {
  FakeHost host(3, 3, 1, 1, {1, 2, 3});
  host.Record().haveMask = 1;
  const Source source(host);
  EXPECT_TRUE(source.made);
  EXPECT_FALSE(source.mask);
}

TEST(SourceMask, IsMadeAlsoWhereNoImageIs) {
  FakeHost host(plugInModeGray16, 1, 1, 1, ByteVector(2));
  host.Select({0, 0, 1, 1}, {200});
  const Source source(host);
  EXPECT_FALSE(source.made);
  EXPECT_TRUE(source.mask);
}

}  // namespace
}  // namespace vm
