#include "image/ZvTypedImage.h"

#include "image/ImageTestSupport.h"
#include "support/ReportRecorder.h"

namespace vm {
namespace {

constexpr char kAbove[] = "y >= 0";
constexpr char kBelow[] = "y < mHeight";

void ExpectReports(ReportRecorder& reports, size_t count, const std::string& condition) {
  EXPECT_EQ(reports.Lines().size(), count);
  for (const std::string& line : reports.Lines()) {
    EXPECT_EQ(line.substr(0, 8), "ZvImage(");
    EXPECT_EQ(line.substr(line.find(" : ")), " : " + condition);
  }
  reports.Clear();
}

template <class Class>
class TypedImageOf : public ::testing::Test {};
TYPED_TEST_SUITE(TypedImageOf, AllTyped, ImageTestNames);

TYPED_TEST(TypedImageOf, OwnsAZeroedBlockWithAStrideOfFourBytes) {
  using P = typename TypeParam::Record;
  for (const int32_t width : {1, 2, 3, 127, 128, 129, 257}) {
    const auto image = New<typename TypeParam::Image>(width, 5);
    const auto stride =
        static_cast<int32_t>((sizeof(P) * 8 * static_cast<size_t>(width) + 31) / 32 * 4);
    EXPECT_EQ(image->RowBytes(), stride);
    EXPECT_EQ(image->BufferSize(), static_cast<uint32_t>(stride * 5));
    EXPECT_TRUE(image->OwnsPixels());
    EXPECT_TRUE(Holds<P>(*image, image->Bounds(), [](int32_t, int32_t) { return P{}; }));
  }
}

TYPED_TEST(TypedImageOf, WrapsABlockOfTheCallers) {
  using P = typename TypeParam::Record;
  // The rows stand at odd addresses, which host buffers are free to do.
  constexpr int32_t kRowBytes = 10 * sizeof(P) + 3;
  std::vector<uint8_t> block(1 + 4 * kRowBytes);
  Random random(1);
  for (uint8_t& byte : block)
    byte = static_cast<uint8_t>(random());
  const std::vector<uint8_t> before = block;
  const auto image = New<typename TypeParam::Image>(10, 4, kRowBytes, block.data() + 1);
  EXPECT_FALSE(image->OwnsPixels());
  EXPECT_EQ(image->Pixels(), block.data() + 1);
  for (int32_t y = 0; y < 4; ++y) {
    for (int32_t x = 0; x < 10; ++x) {
      const P pixel = PixelAt<P>(*image, x, y);
      ASSERT_EQ(std::memcmp(&pixel,
                            block.data() + 1 + y * kRowBytes + x * static_cast<int32_t>(sizeof(P)),
                            sizeof(P)),
                0);
    }
  }
  // Runs work in place there too, and leave the bytes between the rows alone.
  image->Invert();
  for (int32_t y = 0; y < 4; ++y) {
    for (int32_t x = 0; x < 10; ++x) {
      P expected;
      std::memcpy(static_cast<void*>(&expected),
                  before.data() + 1 + y * kRowBytes + x * static_cast<int32_t>(sizeof(P)),
                  sizeof(P));
      expected.Invert();
      ASSERT_EQ(Hex(PixelAt<P>(*image, x, y)), Hex(expected));
    }
    for (int32_t i = 1; i <= 3; ++i)
      ASSERT_EQ(block[static_cast<size_t>((y + 1) * kRowBytes + 1 - i)],
                before[static_cast<size_t>((y + 1) * kRowBytes + 1 - i)]);
  }
  EXPECT_EQ(block[0], before[0]);
}

TYPED_TEST(TypedImageOf, WrapsAnXOutsideTheRowIntoTheNeighbouringRows) {
  using P = typename TypeParam::Record;
  Random random(2);
  std::vector<uint8_t> block(8 * sizeof(P) * 3);
  const auto image =
      New<typename TypeParam::Image>(8, 3, static_cast<int32_t>(8 * sizeof(P)), block.data());
  const P pixel = RandomRecord<P>(random);
  image->PutPixel(pixel, 10, 0);
  EXPECT_EQ(Hex(PixelAt<P>(*image, 2, 1)), Hex(pixel));
  image->PutPixel(pixel, -1, 2);
  EXPECT_EQ(Hex(PixelAt<P>(*image, 7, 1)), Hex(pixel));
}

TYPED_TEST(TypedImageOf, DropsWhatLiesOutsideItsBlock) {
  using P = typename TypeParam::Record;
  ReportRecorder reports;
  Random random(3);
  // A guarded window in the middle of a larger block.
  const size_t row = 8 * sizeof(P);
  std::vector<uint8_t> block(row * 5, 0xAA);
  const auto image =
      New<typename TypeParam::Image>(8, 3, static_cast<int32_t>(row), block.data() + row);
  P pixel = RandomRecord<P>(random);
  for (const ZvPoint& at : {ZvPoint(0, -1), ZvPoint(0, 3), ZvPoint(INT32_MAX, INT32_MAX),
                            ZvPoint(INT32_MIN, 0), ZvPoint(-1, 0), ZvPoint(8, 2)}) {
    image->PutPixel(pixel, at.x, at.y);
    image->PutRgba64(kOpaqueWhite, at.x, at.y);
    EXPECT_EQ(Hex(PixelAt<P>(*image, at.x, at.y)), Hex(P{}));
  }
  for (size_t i = 0; i < row; ++i) {
    ASSERT_EQ(block[i], 0xAA);
    ASSERT_EQ(block[4 * row + i], 0xAA);
  }
}

TYPED_TEST(TypedImageOf, ReportsARowOutsideTheImage) {
  using P = typename TypeParam::Record;
  auto image = New<typename TypeParam::Image>(4, 3);
  ReportRecorder reports;
  P pixel{};
  uint8_t sample[4] = {};
  image->GetPixel(pixel, 0, 3);
  image->PutPixel(pixel, 0, 3);
  image->GetChannel(sample, 0, 3, 0);
  image->PutChannel(sample, 0, 3, 0);
  image->RowPointer(3);
  ExpectReports(reports, 5, kBelow);
  image->GetPixel(pixel, 0, -1);
  image->PutPixel(pixel, 0, -1);
  image->GetChannel(sample, 0, -1, 0);
  image->PutChannel(sample, 0, -1, 0);
  image->RowPointer(-1);
  ExpectReports(reports, 5, kAbove);
  // Rows are put and got pixel by pixel.
  std::vector<uint8_t> row(4 * sizeof(P));
  image->PutRow(row.data(), 0, 3, 4);
  ExpectReports(reports, 4, kBelow);
  image->GetRow(row.data(), 0, -1, 4);
  ExpectReports(reports, 4, kAbove);
  // The plain views don't check, nor does a sample, whose rows are limited.
  PxRgba64 words;
  image->GetRgba64(words, 0, 3);
  image->PutRgba64(words, 0, -1);
  image->GetByte(sample[0], 0, 7);
  image->Sample(pixel, 0, 70);
  EXPECT_TRUE(reports.Empty());
}

TYPED_TEST(TypedImageOf, IsWhollyUsedAndClearedToZero) {
  using P = typename TypeParam::Record;
  Random random(4);
  auto image = New<typename TypeParam::Image>(7, 5);
  Randomize<P>(*image, random);
  EXPECT_EQ(image->UsedBounds(), ZvRect(0, 0, 6, 4));
  image->Clear();
  EXPECT_TRUE(Holds<P>(*image, image->Bounds(), [](int32_t, int32_t) { return P{}; }));
  std::vector<ZvImageBlock> blocks;
  image->AppendBlocks(blocks, {1, 1, 2, 2});
  ASSERT_EQ(blocks.size(), 1u);
  EXPECT_EQ(blocks[0].pixels, image->Pixels());
  EXPECT_EQ(blocks[0].rect, image->Bounds());
}

TYPED_TEST(TypedImageOf, RefersToTheSameBlockAsItsDuplicate) {
  using P = typename TypeParam::Record;
  Random random(5);
  const P pixel = RandomRecord<P>(random);
  auto image = New<typename TypeParam::Image>(7, 5);
  const auto twin = Own(image->Duplicate());
  auto& other = static_cast<typename TypeParam::Image&>(*twin.Get());
  EXPECT_EQ(other.Pixels(), image->Pixels());
  EXPECT_EQ(other.RowBytes(), image->RowBytes());
  EXPECT_TRUE(other.OwnsPixels());
  image->PutPixel(pixel, 6, 4);
  image.Clear();  // the handle: the first image goes
  EXPECT_EQ(Hex(PixelAt<P>(other, 6, 4)), Hex(pixel));
}

TYPED_TEST(TypedImageOf, KeepsItsPixelsAndFillsTheNewBands) {
  using P = typename TypeParam::Record;
  Random random(6);
  const PxRgba64 fill{0x4000, 0x8000, 0xC000, 0xFFFF};
  P narrowed{};
  narrowed.PutRgba64(fill);
  for (const auto& [width, height] : {std::pair{20, 10}, {20, 3}, {5, 10}, {9, 6}, {5, 3}}) {
    auto image = New<typename TypeParam::Image>(9, 5);
    Randomize<P>(*image, random);
    const auto before = Own(image->NewLike(true, 0, 0));
    const auto& old = static_cast<const typename TypeParam::Image&>(*before.Get());
    image->Resize(width, height, true, kResampleNone, fill);
    ASSERT_EQ(image->Bounds(), ZvRect(0, 0, width - 1, height - 1));
    EXPECT_TRUE(Holds<P>(
        *image, image->Bounds(),
        [&](int32_t x, int32_t y) { return x < 9 && y < 5 ? PixelAt<P>(old, x, y) : narrowed; }))
        << width << ' ' << height;
  }
}

TEST(TypedImage, HasAStrideOfFourForOneRgbPixel) {
  EXPECT_EQ((New<ZvTypedImage<PxRgbBytes>>(1, 1)->RowBytes()), 4);
}

TEST(TypedImage, KeepsTheStrideOfAWrappedBlockWhenItShrinks) {
  std::vector<uint8_t> block(1000 * 20, 7);
  auto image = New<ZvTypedImage<PxRgbBytes>>(300, 20, 1000, block.data());
  image->Resize(100, 10, false, kResampleNone, kRgba64White);
  EXPECT_EQ(image->RowBytes(), 1000);
  EXPECT_EQ(image->Pixels(), block.data());
  EXPECT_FALSE(image->OwnsPixels());
  EXPECT_EQ(image->Bounds(), ZvRect(0, 0, 99, 9));
  EXPECT_EQ(image->BufferSize(), 20000u);
}

TEST(TypedImage, AdoptsTheNewStrideWhenAnOwnedBlockIsReusedWithoutItsContents) {
  auto image = New<ZvTypedImage<PxGrayByte>>(100, 10);
  const uint8_t* const block = image->Pixels();
  image->Resize(50, 10, false, kResampleNone, kRgba64White);
  EXPECT_EQ(image->Pixels(), block);
  EXPECT_EQ(image->RowBytes(), 52);
  EXPECT_EQ(image->BufferSize(), 1000u);
  // A wider image still fits the block: 996 bytes.
  image->Resize(249, 3, false, kResampleNone, kRgba64White);
  EXPECT_EQ(image->Pixels(), block);
  EXPECT_EQ(image->RowBytes(), 252);
  // With its contents a narrower image keeps the stride.
  image->Resize(200, 3, true, kResampleNone, kRgba64White);
  EXPECT_EQ(image->RowBytes(), 252);
  EXPECT_EQ(image->Pixels(), block);
}

TEST(TypedImage, TakesATenthMoreThanItNeeds) {
  auto image = New<ZvTypedImage<PxGrayByte>>(10, 10);
  image->Resize(100, 33, false, kResampleNone, kRgba64White);
  EXPECT_EQ(image->RowBytes(), 100);
  EXPECT_EQ(image->BufferSize(), 3630u);
  const uint8_t* const block = image->Pixels();
  image->Resize(100, 36, true, kResampleNone, kRgba64White);  // within the tenth
  EXPECT_EQ(image->Pixels(), block);
  EXPECT_EQ(image->BufferSize(), 3630u);
  image->Resize(100, 37, true, kResampleNone, kRgba64White);
  EXPECT_EQ(image->BufferSize(), 4070u);
}

TEST(TypedImage, StaysAsItIsWhenABlockCanNotBeHad) {
  auto image = New<ZvTypedImage<PxCmyka80>>(10, 10);
  const uint8_t* const block = image->Pixels();
  image->Resize(INT32_MAX, INT32_MAX, false, kResampleNone, kRgba64White);
  image->Resize(100000, 100000, true, kResampleNone, kRgba64White);
  EXPECT_EQ(image->Bounds(), ZvRect(0, 0, 9, 9));
  EXPECT_EQ(image->Pixels(), block);
}

TEST(TypedImage, WithoutABlockReadsAsZeroAndDropsWrites) {
  auto image = New<ZvTypedImage<PxRgba64>>(INT32_MAX, INT32_MAX);
  EXPECT_EQ(image->Pixels(), nullptr);
  image->PutPixel({1, 2, 3, 4}, 0, 0);
  EXPECT_EQ(Rgba64At(*image, 0, 0), (PxRgba64{0, 0, 0, 0}));
  image->Clear();
}

TEST(TypedImage, OverANullBlockAllocatesOne) {
  auto image = New<ZvTypedImage<PxRgbBytes>>(10, 10, 100, nullptr);
  EXPECT_TRUE(image->OwnsPixels());
  EXPECT_EQ(image->RowBytes(), 100);
  EXPECT_EQ(image->BufferSize(), 1000u);
  EXPECT_EQ(PixelAt<PxRgbBytes>(*image, 9, 9), PxRgbBytes{});
}

TEST(TypedImage, ReadsRowsUpwardsThroughANegativeStride) {
  uint8_t block[8] = {1, 2, 3, 4, 5, 6, 7, 8};
  auto image = New<ZvTypedImage<PxGrayByte>>(4, 2);
  image->ImportBuffer(block + 4, -4);
  EXPECT_EQ(PixelAt<PxGrayByte>(*image, 0, 0).gray, 5);
  EXPECT_EQ(PixelAt<PxGrayByte>(*image, 3, 1).gray, 4);
}

}  // namespace
}  // namespace vm
