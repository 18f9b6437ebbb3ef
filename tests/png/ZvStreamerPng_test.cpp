#include "persistence/png/ZvStreamerPng.h"

#include <gtest/gtest.h>
#include <png.h>
#include <zlib.h>

#include <cstring>
#include <map>
#include <random>

#include "image/pixels/PxRecords.h"
#include "image/ZvImageFactory.h"
#include "image/ZvTiledImage.h"
#include "image/ZvTypedImage.h"
#include "layers/ZvImageLayer.h"
#include "persistence/ByteStream.h"
#include "persistence/ZvClassRegistry.h"
#include "persistence/ZvMemoryStream.h"
#include "png/RawPng.h"

namespace vm {
namespace {

ZvSmartPtr<ZvStreamable> ReadObject(const std::vector<uint8_t>& bytes, bool tiled) {
  ByteStream stream(bytes);
  const auto hint = ZvSmartPtr<ZvImageStreamInfo>::Adopt(new ZvImageStreamInfo);
  hint->mUseTiles = tiled;
  ZvSmartPtr<ZvStreamable> result;
  ZvStreamerPng().Read(stream, result, hint.Get());
  return result;
}

ZvSmartPtr<ZvImage> ReadImage(const std::vector<uint8_t>& bytes, bool tiled = false) {
  const ZvSmartPtr<ZvStreamable> object = ReadObject(bytes, tiled);
  auto* const layer = dynamic_cast<ZvImageLayer*>(object.Get());
  return layer == nullptr ? ZvSmartPtr<ZvImage>() : layer->GetImageRef();
}

std::vector<uint8_t> Written(ZvStreamable* object) {
  ByteStream stream;
  ZvStreamerPng().Write(stream, object);
  return stream.Bytes();
}

std::vector<uint8_t> RowOf(const ZvImage& image, int32_t y) {
  std::vector<uint8_t> row(
      static_cast<size_t>(DefaultRowBytes(image.BitsPerPixel(), image.Width())));
  image.GetRow(row.data(), 0, y, image.Width());
  row.resize(static_cast<size_t>((int64_t{image.BitsPerPixel()} * image.Width() + 7) / 8));
  return row;
}

const SampleFile& SampleNamed(const std::string& name) {
  static const std::vector<SampleFile> samples = LibpngSamples();
  for (const SampleFile& sample : samples)
    if (sample.name == name)
      return sample;
  throw std::runtime_error("no sample " + name);
}

TEST(StreamerPng, ItHasItsCodesAndNoExtension) {
  ZvStreamerPng codec;
  EXPECT_EQ(codec.GetCreatorCode(), 0x50694E47U);
  EXPECT_EQ(codec.GetFormatCode(), 0x504E4700U);
  EXPECT_TRUE(codec.GetExtension().empty());
}

TEST(StreamerPng, EachRunOfTheRegistrarsAddsOneToTheList) {
  const size_t before = GetStreamerList().size();
  RunRegistrars();
  ASSERT_EQ(GetStreamerList().size(), before + 1);
  EXPECT_NE(dynamic_cast<ZvStreamerPng*>(GetStreamerList().back().Get()), nullptr);
  EXPECT_EQ(GetStreamerList().back().Get()->GetRefCount(), 1U);
}

TEST(StreamerPng, TheDefaultHintIsNull) {
  EXPECT_EQ(gDefaultStreamingInfo, nullptr);
}

TEST(StreamerPng, ItKnowsAFileByTheFirstFourBytesOfTheSignature) {
  ZvStreamerPng codec;
  ZvString className = "before";
  std::vector<uint8_t> bytes = FromHex("89 50 4E 47 00 00 00 00");
  ZvMemoryStream stream(bytes.data(), static_cast<uint32_t>(bytes.size()), false);
  EXPECT_TRUE(codec.CanRead(stream, className));
  EXPECT_EQ(className, ZvString("ZvImage"));
  EXPECT_EQ(stream.Tell(), 0U);
}

TEST(StreamerPng, OtherAndShorterStreamsAreNotItsOwn) {
  ZvStreamerPng codec;
  for (const char* hex : {"", "89 50 4E", "89 50 4E 46 0D 0A 1A 0A", "00 00 00 00 00"}) {
    ZvString className = "before";
    std::vector<uint8_t> bytes = FromHex(hex);
    ZvMemoryStream stream(bytes.data(), static_cast<uint32_t>(bytes.size()), false);
    EXPECT_FALSE(codec.CanRead(stream, className)) << hex;
    EXPECT_EQ(className, ZvString("before"));
  }
}

TEST(StreamerPng, ItWritesImagesByTheBaseNameAlone) {
  ZvStreamerPng codec;
  EXPECT_TRUE(codec.CanWrite("ZvImage"));
  EXPECT_FALSE(codec.CanWrite("ZvImageRgbBytes"));
  EXPECT_FALSE(codec.CanWrite("ZvImag"));
  EXPECT_FALSE(codec.CanWrite(""));
}

TEST(StreamerPng, ReadingGivesALayerOfThatName) {
  const ZvSmartPtr<ZvStreamable> object =
      ReadObject(SampleNamed("testpngs/rgb-8.png").bytes, false);
  auto* const layer = dynamic_cast<ZvImageLayer*>(object.Get());
  ASSERT_NE(layer, nullptr);
  EXPECT_EQ(layer->GetNameRef(), ZvString("ImageLayer"));
  EXPECT_EQ(layer->GetRefCount(), 1U);
  EXPECT_EQ(layer->GetImageRef().Get()->GetRefCount(), 1U);
}

TEST(StreamerPng, OnlyAHintThatSaysSoGivesATiledImage) {
  const std::vector<uint8_t>& bytes = SampleNamed("testpngs/rgb-8.png").bytes;
  EXPECT_TRUE(ReadImage(bytes, true)->IsTiled());
  EXPECT_FALSE(ReadImage(bytes, false)->IsTiled());
  const auto foreign = ZvSmartPtr<ZvStreamingInfo>::Adopt(new ZvStreamingInfo);
  for (ZvStreamingInfo* hint : {static_cast<ZvStreamingInfo*>(nullptr), foreign.Get()}) {
    ByteStream stream(bytes);
    ZvSmartPtr<ZvStreamable> result;
    ZvStreamerPng().Read(stream, result, hint);
    auto* const layer = dynamic_cast<ZvImageLayer*>(result.Get());
    ASSERT_NE(layer, nullptr);
    EXPECT_FALSE(layer->GetImageRef()->IsTiled());
  }
}

// Eight-bit files that name no gamma: libpng's simplified interface converts them as promised here.
TEST(StreamerPng, OpaqueFilesReadAsThroughLibpngsSimplifiedInterface) {
  for (const char* name :
       {"rgb-8", "gray-1", "gray-2", "gray-4", "gray-8", "rgb-8-sRGB", "gray-8-sRGB"}) {
    const SampleFile& sample = SampleNamed(std::string("testpngs/") + name + ".png");
    png_image simple{};
    simple.version = PNG_IMAGE_VERSION;
    ASSERT_NE(png_image_begin_read_from_memory(&simple, sample.bytes.data(), sample.bytes.size()),
              0);
    simple.format = PNG_FORMAT_BGR;
    std::vector<uint8_t> expected(PNG_IMAGE_SIZE(simple));
    ASSERT_NE(png_image_finish_read(&simple, nullptr, expected.data(), 0, nullptr), 0) << name;

    const ZvSmartPtr<ZvImage> image = ReadImage(sample.bytes);
    ASSERT_TRUE(image) << name;
    for (int32_t y = 0; y < image->Height(); ++y)
      for (int32_t x = 0; x < image->Width(); ++x) {
        PxRgbBytes pixel;
        image->GetRgb(pixel, x, y);
        const uint8_t* const want = &expected[static_cast<size_t>((y * image->Width() + x) * 3)];
        ASSERT_EQ(pixel, (PxRgbBytes{want[0], want[1], want[2]}))
            << name << " at " << x << ", " << y;
      }
  }
}

// What a file's pixel becomes, worked out from its raw samples.
class ExpectedPixels {
 public:
  explicit ExpectedPixels(const RawPng& raw) : mRaw(raw) {}

  uint32_t Kind() const {
    switch (mRaw.depth * mRaw.Channels()) {
      case 8:
        return FourCC("GraB");
      case 16:
        return FourCC("GraA");
      case 24:
        return FourCC("RG24");
      case 48:
        return FourCC("RG48");
      case 64:
        return FourCC("Rg64");
      default:
        return FourCC("Rgba");
    }
  }

  // The record's bytes.
  std::vector<uint8_t> At(int32_t x, int32_t y) const {
    RawPng::Color color = Composited(x, y);
    if (mRaw.depth < 8 || mRaw.colorType == 3)
      return InBytes(color);
    if (mRaw.depth == 8)
      return InBytes(color);
    const auto words = [](std::initializer_list<uint16_t> list) {
      std::vector<uint8_t> bytes;
      for (uint16_t word : list) {
        bytes.push_back(static_cast<uint8_t>(word >> 8));
        bytes.push_back(static_cast<uint8_t>(word));
      }
      return bytes;
    };
    if (Kind() == FourCC("RG48"))
      return words({color.blue, color.green, color.red});
    if (Kind() == FourCC("Rg64"))
      return words({color.red, color.green, color.blue, 0xFFFF});
    for (uint16_t* channel : {&color.red, &color.green, &color.blue})
      *channel = *channel >> 8;
    return InBytes(color);
  }

  // Compositing follows the gamma that a file names; these tests stop at the pixels where that
  // can't be seen.
  bool DependsOnGamma(int32_t x, int32_t y) const {
    const uint32_t full = mRaw.depth == 16 ? 0xFFFF : 255;
    const uint32_t alpha = AlphaAt(x, y);
    const bool plain = mRaw.gamma == 0 || (mRaw.gamma > 0.95 && mRaw.gamma < 1.05);
    return !plain && alpha != 0 && alpha != full;
  }

 private:
  std::vector<uint8_t> InBytes(const RawPng::Color& color) const {
    const auto r = static_cast<uint8_t>(color.red);
    const auto g = static_cast<uint8_t>(color.green);
    const auto b = static_cast<uint8_t>(color.blue);
    const auto gray = static_cast<uint8_t>((r + g + b) / 3);
    switch (Kind()) {
      case FourCC("GraB"):
        return {gray};
      case FourCC("GraA"):
        return {gray, 255};
      case FourCC("RG24"):
        return {b, g, r};
      default:
        return {b, g, r, 255};
    }
  }

  bool PaletteIsLookedUp() const { return mRaw.colorType == 3 && mRaw.hasTransparency; }
  uint16_t Scaled(uint16_t sample) const {
    return mRaw.depth < 8 ? static_cast<uint16_t>(sample * (255 / ((1 << mRaw.depth) - 1)))
                          : sample;
  }

  RawPng::Color Own(int32_t x, int32_t y) const {
    const uint16_t first = mRaw.Sample(x, y, 0);
    if (mRaw.colorType == 3) {
      if (PaletteIsLookedUp())
        return first < mRaw.palette.size() ? mRaw.palette[first].color : RawPng::Color{0, 0, 0};
      return {first, first, first};
    }
    if (mRaw.colorType == 0 || mRaw.colorType == 4) {
      const uint16_t gray = Scaled(first);
      return {gray, gray, gray};
    }
    return {first, mRaw.Sample(x, y, 1), mRaw.Sample(x, y, 2)};
  }

  uint32_t AlphaAt(int32_t x, int32_t y) const {
    const uint32_t full = mRaw.depth == 16 ? 0xFFFF : 255;
    if (mRaw.colorType == 4 || mRaw.colorType == 6)
      return mRaw.Sample(x, y, mRaw.Channels() - 1);
    if (!mRaw.hasTransparency)
      return full;
    const uint16_t first = mRaw.Sample(x, y, 0);
    if (mRaw.colorType == 3)
      return first < mRaw.palette.size() ? mRaw.palette[first].alpha : 255;
    const bool match = first == mRaw.transparent.red &&
                       (mRaw.colorType == 0 || (mRaw.Sample(x, y, 1) == mRaw.transparent.green &&
                                                mRaw.Sample(x, y, 2) == mRaw.transparent.blue));
    return match ? 0 : full;
  }

  RawPng::Color Composited(int32_t x, int32_t y) const {
    const RawPng::Color own = Own(x, y);
    const uint32_t alpha = AlphaAt(x, y);
    const uint16_t white = mRaw.depth == 16 ? 0xFFFF : 255;
    RawPng::Color below{white, white, white};
    if (mRaw.hasBackground) {
      below = mRaw.background;
      if (mRaw.colorType == 0)
        below = {Scaled(below.red), Scaled(below.green), Scaled(below.blue)};
    }
    if (mRaw.colorType == 3 && !PaletteIsLookedUp())
      return own;
    return {Over(own.red, alpha, below.red), Over(own.green, alpha, below.green),
            Over(own.blue, alpha, below.blue)};
  }

  // libpng's documented rounding of fg x alpha + bg x (1 - alpha).
  uint16_t Over(uint32_t fg, uint32_t alpha, uint32_t bg) const {
    if (mRaw.depth == 16) {
      const uint64_t sum = uint64_t{fg} * alpha + uint64_t{bg} * (65535 - alpha) + 32768;
      return static_cast<uint16_t>((sum + (sum >> 16)) >> 16);
    }
    const uint32_t sum = fg * alpha + bg * (255 - alpha) + 128;
    return static_cast<uint16_t>((sum + (sum >> 8)) >> 8);
  }

  const RawPng& mRaw;
};

class StreamerPngSamples : public testing::TestWithParam<bool> {};

TEST_P(StreamerPngSamples, EverySampleOfLibpngReadsAsItsSamplesSay) {
  const std::vector<SampleFile> samples = LibpngSamples();
  ASSERT_GE(samples.size(), 150U);
  int32_t read = 0;
  int32_t interlaced = 0;
  for (const SampleFile& sample : samples) {
    const std::optional<RawPng> raw = ReadRawPng(sample.bytes);
    const ZvSmartPtr<ZvImage> image = ReadImage(sample.bytes, GetParam());
    if (!raw)
      continue;  // the next test's
    ASSERT_TRUE(image) << sample.name;
    ++read;
    interlaced += raw->interlaced ? 1 : 0;
    const ExpectedPixels expected(*raw);
    ASSERT_EQ(image->PixelKind(), expected.Kind()) << sample.name;
    ASSERT_EQ(image->Width(), raw->width) << sample.name;
    ASSERT_EQ(image->Height(), raw->height) << sample.name;
    for (int32_t y = 0; y < raw->height; ++y) {
      const std::vector<uint8_t> row = RowOf(*image, y);
      const size_t bytes = row.size() / static_cast<size_t>(raw->width);
      for (int32_t x = 0; x < raw->width; ++x) {
        if (expected.DependsOnGamma(x, y))
          continue;
        const uint8_t* const got = &row[static_cast<size_t>(x) * bytes];
        const std::vector<uint8_t> want = expected.At(x, y);
        ASSERT_TRUE(want.size() == bytes && std::equal(want.begin(), want.end(), got))
            << sample.name << " at " << x << ", " << y << ": " << ToHex(got, bytes) << " and not "
            << ToHex(want);
      }
    }
  }
  EXPECT_GE(read, 120);
  EXPECT_GE(interlaced, 10);
}

TEST_P(StreamerPngSamples, WhatLibpngRefusesIsRefusedInSilence) {
  int32_t refused = 0;
  for (const SampleFile& sample : LibpngSamples()) {
    if (ReadRawPng(sample.bytes))
      continue;
    ++refused;
    EXPECT_FALSE(ReadImage(sample.bytes, GetParam())) << sample.name;
  }
  EXPECT_GE(refused, 1);
}

INSTANTIATE_TEST_SUITE_P(RowAndTiled, StreamerPngSamples, testing::Bool());

TEST(StreamerPng, AFileCutAtAnyByteLeavesTheResultAsItWas) {
  for (const char* name :
       {"pngsuite/basn2c08.png", "pngsuite/interlaced/ibasn3p04.png", "pngsuite/basn6a16.png"}) {
    std::vector<uint8_t> bytes;
    for (const SampleFile& sample : LibpngSamples())
      if (sample.name.find(std::string(name).substr(std::string(name).rfind('/'))) !=
          std::string::npos)
        bytes = sample.bytes;
    ASSERT_FALSE(bytes.empty()) << name;
    const auto former = ZvSmartPtr<ZvStreamable>::Adopt(new ZvImageLayer);
    for (size_t length = 0; length < bytes.size(); ++length) {
      ByteStream stream(
          std::vector<uint8_t>(bytes.begin(), bytes.begin() + static_cast<ptrdiff_t>(length)));
      ZvSmartPtr<ZvStreamable> result = former;
      ZvStreamerPng().Read(stream, result, nullptr);
      ASSERT_EQ(result, former) << name << " cut to " << length;
    }
  }
}

// A file of 70 bytes that claims 60,000 by 60,000 pixels gets no memory for them.
TEST(StreamerPng, AHugeClaimOfAShortFileIsRefused) {
  std::vector<uint8_t> bytes = FromHex(
      "89 50 4E 47 0D 0A 1A 0A 00 00 00 0D 49 48 44 52 00 00 EA 60 00 00 EA 60 08 06 00 00 00");
  const uLong crc = crc32(0, bytes.data() + 12, 17);
  for (int shift = 24; shift >= 0; shift -= 8)
    bytes.push_back(static_cast<uint8_t>(crc >> shift));
  for (uint8_t byte : FromHex("00 00 00 00 49 44 41 54 35 AF 06 1E"))
    bytes.push_back(byte);
  EXPECT_FALSE(ReadImage(bytes));
}

TEST(StreamerPng, DamagedBytesNeverDoHarm) {
  std::mt19937 random(20);
  const std::vector<uint8_t> good = SampleNamed("pngsuite/basn3p04.png").bytes;
  for (int round = 0; round < 300; ++round) {
    std::vector<uint8_t> bytes = good;
    for (int i = 0; i < 4; ++i)
      bytes[8 + random() % (std::min<size_t>(bytes.size(), 400) - 8)] =
          static_cast<uint8_t>(random());
    if (const ZvSmartPtr<ZvImage> image = ReadImage(bytes)) {
      EXPECT_GE(image->Width(), 1);
    }
  }
}

// An image of each kind with known bytes in its records: byte i of row y is 16 y + i, in the words'
// own order.
template <class Image>
ZvSmartPtr<ZvImage> Patterned(int32_t width = 3, int32_t height = 2) {
  auto image = ZvSmartPtr<ZvImage>::Adopt(new Image(width, height));
  std::vector<uint8_t> row(static_cast<size_t>(DefaultRowBytes(image->BitsPerPixel(), width)));
  for (int32_t y = 0; y < height; ++y) {
    for (size_t i = 0; i < row.size(); ++i)
      row[i] = static_cast<uint8_t>(16 * y + static_cast<int32_t>(i));
    image->PutRow(row.data(), 0, y, width);
  }
  return image;
}

struct WrittenFile {
  int32_t colorType;
  int32_t depth;
  std::string firstRow;  // hex
};

template <class Image>
void ExpectWritten(const WrittenFile& expected) {
  const ZvSmartPtr<ZvImage> image = Patterned<Image>();
  const std::optional<RawPng> raw = ReadRawPng(Written(image.Get()));
  ASSERT_TRUE(raw);
  EXPECT_EQ(raw->colorType, expected.colorType);
  EXPECT_EQ(raw->depth, expected.depth);
  EXPECT_EQ(raw->width, 3);
  EXPECT_EQ(raw->height, 2);
  EXPECT_FALSE(raw->interlaced);
  EXPECT_EQ(ToHex(raw->rows[0]), expected.firstRow);
}

TEST(StreamerPngWrite, GrayAndCoverageAreGray) {
  ExpectWritten<ZvTiledImage<PxGrayByte>>({0, 8, "00 01 02"});
  ExpectWritten<ZvTypedImage<PxAlphaByte>>({0, 8, "00 01 02"});
}

// Three packed bits of the byte 00 in the first row, of 10 (hex) in the second: 000 and 000; so set
// them here.
TEST(StreamerPngWrite, BitsAreGrayOfDepthOne) {
  const auto image = ZvSmartPtr<ZvImage>::Adopt(new ZvTiledImage<PxGrayBit>(10, 1));
  for (int32_t x : {0, 2, 9})
    image->PutByte(255, x, 0);
  const std::optional<RawPng> raw = ReadRawPng(Written(image.Get()));
  ASSERT_TRUE(raw);
  EXPECT_EQ(raw->colorType, 0);
  EXPECT_EQ(raw->depth, 1);
  EXPECT_EQ(raw->Sample(0, 0, 0), 1);
  EXPECT_EQ(raw->Sample(1, 0, 0), 0);
  EXPECT_EQ(raw->Sample(2, 0, 0), 1);
  EXPECT_EQ(raw->Sample(9, 0, 0), 1);
}

TEST(StreamerPngWrite, ColoursComeOutOfTheirBlueFirstOrder) {
  ExpectWritten<ZvTiledImage<PxRgbBytes>>({2, 8, "02 01 00 05 04 03 08 07 06"});
  ExpectWritten<ZvTypedImage<PxRgbaBytes>>({6, 8, "02 01 00 03 06 05 04 07 0A 09 08 0B"});
}

// Words are stored least significant byte first; the file has the most significant one first.
TEST(StreamerPngWrite, WordsAreSwapped) {
  ExpectWritten<ZvTiledImage<PxRgb48>>(
      {2, 16, "05 04 03 02 01 00 0B 0A 09 08 07 06 11 10 0F 0E 0D 0C"});
}

// The record's red stands first and is taken for blue.
TEST(StreamerPngWrite, OfRgba64RedAndBlueArriveExchanged) {
  const auto image = ZvSmartPtr<ZvImage>::Adopt(new ZvTiledImage<PxRgba64>(1, 1));
  image->PutRgba64({0x1112, 0x2122, 0x3132, 0x4142}, 0, 0);
  const std::optional<RawPng> raw = ReadRawPng(Written(image.Get()));
  ASSERT_TRUE(raw);
  EXPECT_EQ(ToHex(raw->rows[0]), "31 32 21 22 11 12 41 42");
}

TEST(StreamerPngWrite, InksTakeTheFourChannelsAsTheyLie) {
  ExpectWritten<ZvTiledImage<PxCmykBytes>>({6, 8, "02 01 00 03 06 05 04 07 0A 09 08 0B"});
  ExpectWritten<ZvTypedImage<PxCmyk64>>(
      {6, 16, "05 04 03 02 01 00 07 06 0D 0C 0B 0A 09 08 0F 0E 15 14 13 12 11 10 17 16"});
}

// Longer records run over, shorter ones leave zeros behind.
TEST(StreamerPngWrite, RecordsOfAnotherLengthGoOutAsTheyLie) {
  ExpectWritten<ZvTiledImage<PxCmykaBytes>>({6, 8, "02 01 00 03 06 05 04 07 0A 09 08 0B"});
  ExpectWritten<ZvTypedImage<PxGrayABytes>>({6, 8, "02 01 00 03 00 05 04 00 00 00 00 00"});
  ExpectWritten<ZvTiledImage<PxXyFixed>>(
      {6, 16, "05 04 03 02 01 00 07 06 00 00 0B 0A 09 08 00 00 00 00 00 00 00 00 00 00"});
  ExpectWritten<ZvTiledImage<PxCmyka80>>(
      {6, 16, "05 04 03 02 01 00 07 06 0D 0C 0B 0A 09 08 0F 0E 15 14 13 12 11 10 17 16"});
}

// 900 pixels are more than the slack of a row of two-byte records holds for four-byte ones.
TEST(StreamerPngWrite, WideRowsOfShortRecordsStayInTheirBuffer) {
  const ZvSmartPtr<ZvImage> image = Patterned<ZvTypedImage<PxGrayABytes>>(900, 1);
  const std::optional<RawPng> raw = ReadRawPng(Written(image.Get()));
  ASSERT_TRUE(raw);
  EXPECT_EQ(raw->rows[0].size(), 3600U);
  EXPECT_EQ(raw->rows[0][3599], 0);
}

TEST(StreamerPngWrite, DepthsThatPngHasNotLeaveNothing) {
  EXPECT_TRUE(Written(Patterned<ZvTiledImage<PxDepthFloat>>().Get()).empty() ||
              !ReadRawPng(Written(Patterned<ZvTiledImage<PxDepthFloat>>().Get())));
  EXPECT_FALSE(ReadRawPng(Written(Patterned<ZvTiledImage<PxXyFloats>>().Get())));
}

TEST(StreamerPngWrite, EveryFileSaysTheSameAboutItself) {
  const std::optional<RawPng> raw = ReadRawPng(Written(Patterned<ZvTiledImage<PxRgb48>>().Get()));
  ASSERT_TRUE(raw);
  ASSERT_EQ(raw->texts.size(), 3U);
  EXPECT_EQ(raw->texts[0].key, "Title");
  EXPECT_EQ(raw->texts[0].text, "Mona Lisa");
  EXPECT_EQ(raw->texts[0].compression, -1);
  EXPECT_EQ(raw->texts[1].key, "Author");
  EXPECT_EQ(raw->texts[1].text, "Anselmo Corvinus");
  EXPECT_EQ(raw->texts[1].compression, -1);
  EXPECT_EQ(raw->texts[2].key, "Description");
  EXPECT_EQ(raw->texts[2].text, "<long text>");
  EXPECT_EQ(raw->texts[2].compression, 0);
  ASSERT_EQ(raw->significantBits.size(), 5U);
  for (int32_t channel : {0, 1, 2})
    EXPECT_EQ(raw->significantBits[static_cast<size_t>(channel)], 16);
}

TEST(StreamerPngWrite, WhatIsNoImageIsNotWritten) {
  const auto layer = ZvSmartPtr<ZvImageLayer>::Adopt(new ZvImageLayer);
  EXPECT_TRUE(Written(layer.Get()).empty());
  EXPECT_TRUE(Written(nullptr).empty());
}

TEST(StreamerPngWrite, ItLeavesANewBigEndianParserOnTheStream) {
  ByteStream stream;
  stream.SetStreamLittleEndian(true);
  const ZvParser* const before = stream.GetParser();
  const auto kept = ZvSmartPtr<ZvParser>(stream.GetParser());
  ZvStreamerPng().Write(stream, Patterned<ZvTiledImage<PxGrayByte>>().Get());
  EXPECT_NE(stream.GetParser(), before);
  stream.Seek(0);
  stream.WriteUInt16(0x0102, nullptr, true);
  EXPECT_EQ(stream.Hex().substr(0, 5), "01 02");
}

TEST(StreamerPngWrite, OpaqueColoursComeBackAsTheyWere) {
  const ZvSmartPtr<ZvImage> image = Patterned<ZvTiledImage<PxRgbBytes>>(300, 140);
  const ZvSmartPtr<ZvImage> back = ReadImage(Written(image.Get()), true);
  ASSERT_TRUE(back);
  for (int32_t y = 0; y < 140; ++y)
    ASSERT_EQ(RowOf(*back, y), RowOf(*image, y)) << y;
}

}  // namespace
}  // namespace vm
