// The bytes of an image in a stream, worked out by hand, and what damaged streams do.

#include <string>

#include "image/ImageTestSupport.h"
#include "persistence/ZvClassRegistry.h"
#include "persistence/ZvFileStream.h"
#include "persistence/ZvMemoryStream.h"
#include "support/ReportRecorder.h"
#include "support/TempDirectory.h"

namespace vm {
namespace {

using Bytes = std::vector<uint8_t>;

// A stream over bytes that were given, and the bytes that were written to it.
class ByteStream {
 public:
  ByteStream() = default;
  explicit ByteStream(const Bytes& bytes) {
    // Room for all first: a growing memory stream counts its reserve as data.
    mStream->Reserve(static_cast<uint32_t>(bytes.size()));
    mBytes = bytes;
    mWindow = ZvSmartPtr<ZvMemoryStream>::Adopt(
        new ZvMemoryStream(mBytes.data(), static_cast<uint32_t>(mBytes.size()), false));
  }
  ZvStream& operator*() { return mWindow ? *mWindow.Get() : *mStream.Get(); }
  uint32_t Position() { return (**this).Tell(); }

 private:
  ZvSmartPtr<ZvMemoryStream> mStream = New<ZvMemoryStream>();
  ZvSmartPtr<ZvMemoryStream> mWindow;
  Bytes mBytes;
};

Bytes Written(ZvImage& image) {
  const auto stream = New<ZvMemoryStream>();
  image.WriteTo(*stream.Get());
  const uint32_t size = stream->Tell();
  Bytes bytes(size);
  stream->Seek(0);
  stream->RawRead(bytes.data(), size);
  return bytes;
}

std::string HexOf(const Bytes& bytes) {
  static constexpr char kDigits[] = "0123456789abcdef";
  std::string text;
  for (const uint8_t byte : bytes) {
    if (!text.empty())
      text += ' ';
    text += kDigits[byte >> 4];
    text += kDigits[byte & 15];
  }
  return text;
}

Bytes HeaderBytes(int32_t width, int32_t height, const ZvRect& clip, uint8_t compress = 0) {
  Bytes bytes;
  for (const int32_t number : {width, height, clip.fLeft, clip.fTop, clip.fRight, clip.fBottom}) {
    for (int shift = 24; shift >= 0; shift -= 8)
      bytes.push_back(static_cast<uint8_t>(static_cast<uint32_t>(number) >> shift));
  }
  bytes.insert(bytes.end(), 8, 0);
  bytes.push_back(compress);
  return bytes;
}
constexpr size_t kHeaderSize = 33;

TEST(ImageStream, HoldsAHeaderAndPlanesInChannelOrder) {
  auto image = New<ZvTiledImage<PxRgbBytes>>(2, 1);
  image->SetResolution(72, 72);
  image->PutRgb(PxRgbBytes::Of(0x10, 0x20, 0x30), 0, 0);
  image->PutRgb(PxRgbBytes::Of(0x40, 0x50, 0x60), 1, 0);
  EXPECT_EQ(HexOf(Written(*image)),
            "00 00 00 02 00 00 00 01 "  // W, H
            "00 00 00 00 00 00 00 00 "  // L, T
            "00 00 00 01 00 00 00 00 "  // R, B
            "00 00 90 42 00 00 90 42 "  // 72.0 twice, low byte first
            "00 "                       // Compress
            "10 40 20 50 30 60");       // red, green, blue
}

TEST(ImageStream, WritesTheClipAndTheStreamsOwnCompressByte) {
  auto image = New<ZvTypedImage<PxGrayByte>>(3, 3);
  image->SetClip({1, 0, 2, 1});
  const auto stream = New<ZvMemoryStream>();
  stream->SetCompress(-1);
  image->WriteTo(*stream.Get());
  stream->Seek(0);
  Bytes bytes(33);
  stream->RawRead(bytes.data(), 33);
  EXPECT_EQ(HexOf(bytes),
            "00 00 00 03 00 00 00 03 00 00 00 01 00 00 00 00 00 00 00 02 00 00 00 01 "
            "00 00 00 00 00 00 00 00 ff");
}

// The samples behind the header.
template <class Image>
std::string Samples(Image& image) {
  const Bytes bytes = Written(image);
  return HexOf(Bytes(bytes.begin() + kHeaderSize, bytes.end()));
}

TEST(ImageStream, WritesWordsLowByteFirstAndRedFirst) {
  auto rgb48 = New<ZvTiledImage<PxRgb48>>(2, 1);
  rgb48->PutPixel({0x0102, 0x0304, 0x0506}, 0, 0);  // blue, green, red
  rgb48->PutPixel({0x1112, 0x1314, 0x1516}, 1, 0);
  EXPECT_EQ(Samples(*rgb48), "06 05 16 15 04 03 14 13 02 01 12 11");
  auto rgba64 = New<ZvTypedImage<PxRgba64>>(1, 1);
  rgba64->PutPixel({0x0102, 0x0304, 0x0506, 0x0708}, 0, 0);
  EXPECT_EQ(Samples(*rgba64), "02 01 04 03 06 05 08 07");
}

TEST(ImageStream, WritesInksInStorageOrder) {
  auto inks = New<ZvTiledImage<PxCmykaBytes>>(2, 1);
  inks->PutPixel({1, 2, 3, 4, 5}, 0, 0);
  inks->PutPixel({6, 7, 8, 9, 10}, 1, 0);
  EXPECT_EQ(Samples(*inks), "01 06 02 07 03 08 04 09 05 0a");
}

TEST(ImageStream, WritesRowAfterRowOfEachPlane) {
  auto image = New<ZvTypedImage<PxGrayABytes>>(2, 2);
  image->PutPixel({1, 11}, 0, 0);
  image->PutPixel({2, 12}, 1, 0);
  image->PutPixel({3, 13}, 0, 1);
  image->PutPixel({4, 14}, 1, 1);
  EXPECT_EQ(Samples(*image), "01 02 03 04 0b 0c 0d 0e");
}

TEST(ImageStream, TakesAWholeByteForABit) {
  auto bits = New<ZvTiledImage<PxGrayBit>>(3, 1);
  bits->PutPixel({1}, 1, 0);
  EXPECT_EQ(Samples(*bits), "00 01 00");
  ByteStream stream([] {
    Bytes bytes = HeaderBytes(3, 1, {0, 0, 2, 0});
    bytes.insert(bytes.end(), {0xFE, 0xFF, 0x01});  // only the low bits count
    return bytes;
  }());
  bits->ReadFrom(*stream);
  EXPECT_EQ(ByteAt(*bits, 0, 0), 0);
  EXPECT_EQ(ByteAt(*bits, 1, 0), 255);
  EXPECT_EQ(ByteAt(*bits, 2, 0), 255);
}

TEST(ImageStream, TakesTwiceTheBytesOfFixedCoordinates) {
  auto fixed = New<ZvTiledImage<PxXyFixed>>(2, 1);
  fixed->PutPixel({-1, 2, 3, -4}, 0, 0);
  fixed->PutPixel({5, 6, 7, 8}, 1, 0);
  EXPECT_EQ(Samples(*fixed), "ff 00 05 00 02 00 06 00 03 00 07 00 fc 00 08 00");
}

TEST(ImageStream, WritesFloatsAsTheyAreStored) {
  auto depth = New<ZvTiledImage<PxDepthFloat>>(1, 1);
  depth->PutPixel({1.0f}, 0, 0);
  EXPECT_EQ(Samples(*depth), "00 00 80 3f");
  auto floats = New<ZvTiledImage<PxXyFloats>>(1, 1);
  floats->PutPixel({1.0f, -2.0f}, 0, 0);
  EXPECT_EQ(Samples(*floats), "00 00 80 3f 00 00 00 c0");
}

template <class Class>
class StreamOf : public ::testing::Test {};
TYPED_TEST_SUITE(StreamOf, AllImages, ImageTestNames);

TYPED_TEST(StreamOf, ReadsBackWhatWasWritten) {
  using P = typename TypeParam::Record;
  for (const auto& [width, height] :
       {std::pair{1, 1}, {127, 2}, {128, 130}, {129, 129}, {257, 3}}) {
    auto image = New<typename TypeParam::Image>(width, height);
    Random random(static_cast<uint32_t>(width));
    Randomize<P>(*image, random);
    image->SetResolution(300, 150);
    const Bytes bytes = Written(*image);
    const auto samples = static_cast<size_t>(width * height * P::kInfo.channels);
    ASSERT_EQ(bytes.size(),
              kHeaderSize + samples * static_cast<size_t>((P::kInfo.bitsPerChannel + 7) / 8));

    auto fresh = New<typename TypeParam::Image>();
    ByteStream stream(bytes);
    fresh->ReadFrom(*stream);
    EXPECT_EQ(stream.Position(), bytes.size());
    ASSERT_EQ(fresh->Bounds(), image->Bounds());
    EXPECT_EQ(fresh->XRes(), 300.0f);
    EXPECT_EQ(fresh->YRes(), 150.0f);
    ASSERT_TRUE(Holds<P>(*fresh, fresh->Bounds(),
                         [&](int32_t x, int32_t y) { return PixelAt<P>(*image, x, y); }));
    EXPECT_EQ(HexOf(Written(*fresh)).substr(0, 200), HexOf(bytes).substr(0, 200));
  }
}

TYPED_TEST(StreamOf, WritesTheSamplesThatGetChannelGives) {
  using P = typename TypeParam::Record;
  auto image = New<typename TypeParam::Image>(200, 3);
  Random random(17);
  Randomize<P>(*image, random);
  Bytes expected;
  constexpr size_t kSample = static_cast<size_t>(P::kInfo.bitsPerChannel + 7) / 8;
  for (int32_t channel = 0; channel < P::kInfo.channels; ++channel) {
    for (int32_t y = 0; y < 3; ++y) {
      for (int32_t x = 0; x < 200; ++x) {
        uint8_t sample[4] = {};
        image->GetChannel(sample, x, y, channel);
        expected.insert(expected.end(), sample, sample + kSample);
      }
    }
  }
  const Bytes bytes = Written(*image);
  EXPECT_EQ(Bytes(bytes.begin() + kHeaderSize, bytes.end()), expected);
}

// Wherever a stream is cut, the rows that are missing repeat the row read last.
TYPED_TEST(StreamOf, CutAtAnyByteRepeatsTheLastRow) {
  using P = typename TypeParam::Record;
  constexpr int32_t kWidth = 3;
  constexpr int32_t kHeight = 2;
  constexpr size_t kSample = static_cast<size_t>(P::kInfo.bitsPerChannel + 7) / 8;
  constexpr size_t kRow = kWidth * kSample;
  auto image = New<typename TypeParam::Image>(kWidth, kHeight);
  Random random(23);
  Randomize<P>(*image, random);
  const Bytes whole = Written(*image);
  for (size_t length = kHeaderSize; length <= whole.size(); ++length) {
    ByteStream stream(Bytes(whole.begin(), whole.begin() + static_cast<ptrdiff_t>(length)));
    auto cut = New<typename TypeParam::Image>();
    cut->ReadFrom(*stream);
    ASSERT_EQ(cut->Bounds(), image->Bounds());

    auto expected = New<typename TypeParam::Image>(kWidth, kHeight);
    Bytes row(kRow);
    size_t at = kHeaderSize;
    for (int32_t channel = 0; channel < P::kInfo.channels; ++channel) {
      for (int32_t y = 0; y < kHeight; ++y) {
        const size_t there = std::min(kRow, length - at);
        std::copy_n(whole.begin() + static_cast<ptrdiff_t>(at), there, row.begin());
        at += there;
        for (int32_t x = 0; x < kWidth; ++x)
          expected->PutChannel(row.data() + static_cast<size_t>(x) * kSample, x, y, channel);
      }
    }
    ASSERT_TRUE(Holds<P>(*cut, cut->Bounds(), [&](int32_t x, int32_t y) {
      return PixelAt<P>(*expected, x, y);
    })) << length;
  }
}

TYPED_TEST(StreamOf, CutInTheHeaderLeavesTheImageSmall) {
  auto image = New<typename TypeParam::Image>(40, 40);
  const Bytes whole = Written(*image);
  for (size_t length = 0; length < kHeaderSize; ++length) {
    ByteStream stream(Bytes(whole.begin(), whole.begin() + static_cast<ptrdiff_t>(length)));
    auto cut = New<typename TypeParam::Image>();
    cut->ReadFrom(*stream);
    // With W and H there, all of the image is made, else what a zero in their place gives.
    EXPECT_LE(cut->Width(), 40);
    EXPECT_LE(cut->Height(), 40);
  }
}

TYPED_TEST(StreamOf, AnAbsurdSizeTakesNoMemory) {
  const int32_t sizes[] = {INT32_MIN, -1, 0, 1, 0x10000, 0x1000000, INT32_MAX};
  for (const int32_t width : sizes) {
    for (const int32_t height : sizes) {
      Bytes bytes = HeaderBytes(width, height, {0, 0, 0, 0});
      bytes.insert(bytes.end(), 1000, 0xFF);
      ByteStream stream(bytes);
      auto image = New<typename TypeParam::Image>();
      image->ReadFrom(*stream);
      if constexpr (requires { image->Tiles(); }) {
        // A tile for every 128 samples, or all of a small image.
        EXPECT_LE(image->Tiles().TileCount() * image->Tiles().TileBytes(),
                  std::max<size_t>(1 << 20, (1000 / 128 + 2) * image->Tiles().TileBytes()))
            << width << " by " << height;
      } else {
        EXPECT_LE(image->BufferSize(), 2u << 20) << width << " by " << height;
      }
      EXPECT_GE(image->Width(), 1);
      EXPECT_GE(image->Height(), 1);
      EXPECT_LE(int64_t{image->Width()} * image->Height(), int64_t{1} << 28);
    }
  }
}

TEST(ImageStream, DoesNotResizeAnImageOfOnePixel) {
  Bytes bytes = HeaderBytes(1, 1, {5, 6, 7, 8});
  bytes.push_back(0x42);
  ByteStream stream(bytes);
  auto image = New<ZvTiledImage<PxGrayByte>>();
  image->ReadFrom(*stream);
  ZvRect clip;
  image->GetClip(clip);
  EXPECT_EQ(clip, ZvRect(5, 6, 7, 8));
  EXPECT_EQ(PixelAt<PxGrayByte>(*image, 0, 0).gray, 0x42);
}

TEST(ImageStream, GrowsAClipThatCoveredTheFreshImageAndCutsAnyOther) {
  const auto clipAfter = [](const ZvRect& clip) {
    Bytes bytes = HeaderBytes(4, 3, clip);
    bytes.insert(bytes.end(), 12, 0);
    ByteStream stream(bytes);
    auto image = New<ZvTiledImage<PxGrayByte>>();
    image->ReadFrom(*stream);
    ZvRect result;
    image->GetClip(result);
    return result;
  };
  EXPECT_EQ(clipAfter({0, 0, 0, 0}), ZvRect(0, 0, 3, 2));
  EXPECT_EQ(clipAfter({1, 0, 9, 1}), ZvRect(1, 0, 3, 1));
  EXPECT_EQ(clipAfter({-7, 0, 2, 9}), ZvRect(-7, 0, 2, 2));
}

TEST(ImageStream, AcceptsAnyCompressByteAndKeepsItInTheStream) {
  Bytes bytes = HeaderBytes(1, 1, {0, 0, 0, 0}, 0x81);
  bytes.push_back(9);
  ByteStream stream(bytes);
  auto image = New<ZvTiledImage<PxGrayByte>>();
  image->ReadFrom(*stream);
  EXPECT_EQ((*stream).GetCompress(), static_cast<int8_t>(0x81));
  EXPECT_EQ(PixelAt<PxGrayByte>(*image, 0, 0).gray, 9);
}

TEST(ImageStream, DropsWhatAnImageHeldBefore) {
  auto image = New<ZvTiledImage<PxGrayByte>>(200, 200);
  image->PutPixel({77}, 150, 150);
  Bytes bytes = HeaderBytes(2, 2, {0, 0, 1, 1});
  bytes.insert(bytes.end(), {1, 2, 3, 4});
  ByteStream stream(bytes);
  image->ReadFrom(*stream);
  EXPECT_EQ(image->Bounds(), ZvRect(0, 0, 1, 1));
  EXPECT_EQ(PixelAt<PxGrayByte>(*image, 1, 1).gray, 4);
  // Tiles outside the new size stay, and so does what they hold.
  EXPECT_EQ(PixelAt<PxGrayByte>(*image, 150, 150).gray, 77);
}

TEST(ImageStream, WritesOneCallPerRowAndChannel) {
  class CountingStream : public ZvMemoryStream {
   public:
    uint32_t RawWrite(const void* buffer, uint32_t count) override {
      sizes.push_back(count);
      return ZvMemoryStream::RawWrite(buffer, count);
    }
    std::vector<uint32_t> sizes;
  };
  const auto stream = New<CountingStream>();
  auto image = New<ZvTiledImage<PxRgb48>>(300, 4);
  image->WriteTo(*stream.Get());
  ASSERT_EQ(stream->sizes.size(), 9u + 3 * 4);
  for (size_t i = 9; i < stream->sizes.size(); ++i)
    EXPECT_EQ(stream->sizes[i], 600u);
}

TEST(ImageStream, SurvivesTheWayThroughAFileAsAnObject) {
  RunRegistrars();
  const TempDirectory directory;
  auto image = New<ZvTiledImage<PxRgbaBytes>>(300, 140);
  Random random(31);
  Randomize<PxRgbaBytes>(*image, random);
  ZvFileStream file(CP_FileSpec(directory.Path("image.bin").c_str()));
  file.CreateOnDisk();
  file.Open(0xC0000000);
  file.WriteObject(image.Get());
  file.Close();
  EXPECT_EQ(directory.Read("image.bin").substr(0, 18), std::string("\0\x10ZvImageRgbaBytes", 18));
  EXPECT_EQ(directory.Read("image.bin").size(), 2 + 16 + kHeaderSize + 300 * 140 * 4);
  for (const uint32_t mode : {0xC0000000u, 0x80000000u}) {
    file.Open(mode);
    const auto object = ZvSmartPtr<ZvStreamable>::Adopt(file.ReadObject());
    file.Close();
    const auto* const back = dynamic_cast<const ZvTiledImage<PxRgbaBytes>*>(object.Get());
    ASSERT_NE(back, nullptr);
    EXPECT_TRUE(Holds<PxRgbaBytes>(*back, image->Bounds(), [&](int32_t x, int32_t y) {
      return PixelAt<PxRgbaBytes>(*image, x, y);
    }));
  }
}

// A column of a million pixels would touch as many tiles as a picture of 128 million.
TEST(ImageStreaming, ThinImagesWhoseTilesDwarfTheirSamplesAreNotMade) {
  const int32_t height = 1 << 20;
  std::vector<uint8_t> bytes(33 + size_t{height} * 8);
  bytes[3] = 1;
  bytes[5] = static_cast<uint8_t>(height >> 16);
  ZvMemoryStream stream(bytes.data(), static_cast<uint32_t>(bytes.size()), false);
  const auto image = ZvSmartPtr<ZvTiledImage<PxRgba64>>::Adopt(new ZvTiledImage<PxRgba64>(1, 1));
  image->ReadFrom(stream);
  EXPECT_EQ(image->Height(), 1);
}

// Rows beyond the reach of the tile table would be reported one by one.
TEST(ImageStreaming, ImagesBeyondTheReachOfTheTileTableAreNotMade) {
  const int32_t height = (1 << 20) + 256;
  std::vector<uint8_t> bytes(33 + static_cast<size_t>(height));
  bytes[3] = 1;
  bytes[5] = static_cast<uint8_t>(height >> 16);
  bytes[6] = static_cast<uint8_t>(height >> 8);
  ZvMemoryStream stream(bytes.data(), static_cast<uint32_t>(bytes.size()), false);
  const auto image = ZvSmartPtr<ZvTiledImage<PxGrayBit>>::Adopt(new ZvTiledImage<PxGrayBit>(1, 1));
  image->ReadFrom(stream);
  EXPECT_EQ(image->Height(), 1);
}

}  // namespace
}  // namespace vm
