// Rows and whole images in packed buffers, over all image classes.

#include <cstdlib>
#include <memory>

#include "image/ImageTestSupport.h"
#include "support/ReportRecorder.h"

namespace vm {
namespace {

struct Free {
  void operator()(void* block) const { std::free(block); }
};
using Block = std::unique_ptr<uint8_t, Free>;

Block Take(void* block) {
  return Block(static_cast<uint8_t*>(block));
}

// Pixel `index` of a packed row.
template <class P>
P Packed(const uint8_t* row, int32_t index) {
  P pixel;
  if constexpr (std::is_same_v<P, PxGrayBit>)
    pixel.value = row[index / 8] >> (7 - index % 8) & 1;
  else
    std::memcpy(static_cast<void*>(&pixel), row + static_cast<size_t>(index) * sizeof(P),
                sizeof(P));
  return pixel;
}

template <class Class>
class RowsOf : public ::testing::Test {};
TYPED_TEST_SUITE(RowsOf, AllImages, ImageTestNames);

TYPED_TEST(RowsOf, GetAndPutPackedPixels) {
  using P = typename TypeParam::Record;
  Random random(1);
  auto image = New<typename TypeParam::Image>(300, 3);
  Randomize<P>(*image, random);
  const Block row = Take(image->NewRow(300));
  image->GetRow(row.get(), 5, 1, 280);
  for (int32_t i = 0; i < 280; ++i)
    ASSERT_EQ(Hex(Packed<P>(row.get(), i)), Hex(PixelAt<P>(*image, 5 + i, 1)));
  image->PutRow(row.get(), 9, 2, 280);
  EXPECT_TRUE(Holds<P>(*image, {9, 2, 288, 2},
                       [&](int32_t x, int32_t) { return Packed<P>(row.get(), x - 9); }));
  image->PutRow(row.get(), 9, 2, 0);
  image->PutRow(nullptr, 9, 2, 5);
  image->GetRow(nullptr, 9, 2, 5);
}

TYPED_TEST(RowsOf, ImportAndExportWholeBuffers) {
  using P = typename TypeParam::Record;
  Random random(2);
  for (const int32_t width : {1, 3, 127, 128, 129, 257}) {
    auto image = New<typename TypeParam::Image>(width, 4);
    const int32_t stride = static_cast<int32_t>(DefaultRowBytes(P::kInfo.bitsPerPixel, width));
    for (const int32_t rowBytes : {0, stride, stride + 5}) {
      const size_t step = static_cast<size_t>(rowBytes != 0 ? rowBytes : stride);
      std::vector<uint8_t> buffer(1 + step * 4);
      uint8_t* const bytes = buffer.data() + 1;  // at an odd address
      // Returning a float by value makes a signalling NaN a quiet one on 32 bits, so there is none.
      const bool floats = P::kInfo.bitsPerChannel == 32;
      for (uint8_t& byte : buffer)
        byte = static_cast<uint8_t>(random() & (floats ? 0x7E : 0xFF));
      image->ImportBuffer(bytes, rowBytes);
      ASSERT_TRUE(Holds<P>(*image, image->Bounds(), [&](int32_t x, int32_t y) {
        return Packed<P>(bytes + static_cast<size_t>(y) * step, x);
      })) << width;
      std::vector<uint8_t> back(buffer);
      for (size_t i = 1; i < back.size(); ++i)
        back[i] = static_cast<uint8_t>(~back[i]);
      image->ExportBuffer(back.data() + 1, rowBytes);
      for (int32_t y = 0; y < 4; ++y) {
        for (int32_t x = 0; x < width; ++x)
          ASSERT_EQ(Hex(Packed<P>(back.data() + 1 + static_cast<size_t>(y) * step, x)),
                    Hex(PixelAt<P>(*image, x, y)));
      }
    }
  }
}

TYPED_TEST(RowsOf, CopyTheImageToABlockOfTheDefaultStride) {
  using P = typename TypeParam::Record;
  Random random(3);
  auto image = New<typename TypeParam::Image>(131, 5);
  Randomize<P>(*image, random);
  const Block copy = Take(image->NewInterleavedCopy());
  const auto stride = static_cast<size_t>(DefaultRowBytes(P::kInfo.bitsPerPixel, 131));
  for (int32_t y = 0; y < 5; ++y) {
    for (int32_t x = 0; x < 131; ++x)
      ASSERT_EQ(Hex(Packed<P>(copy.get() + static_cast<size_t>(y) * stride, x)),
                Hex(PixelAt<P>(*image, x, y)));
  }
}

TYPED_TEST(RowsOf, IgnoreAMissingBuffer) {
  auto image = New<typename TypeParam::Image>(10, 10);
  image->ImportBuffer(nullptr, 40);
  image->ExportBuffer(nullptr, 0);
  EXPECT_EQ(image->Bounds(), ZvRect(0, 0, 9, 9));
}

TYPED_TEST(RowsOf, ReportARowThatCanNotBeHad) {
  ReportRecorder reports;
  auto image = New<typename TypeParam::Image>(10, 10);
  EXPECT_EQ(image->NewRow(-1), nullptr);
  ASSERT_EQ(reports.Lines().size(), 1u);
  EXPECT_EQ(reports.Lines()[0].substr(0, reports.Lines()[0].find('(')),
            image->IsTiled() ? "ZvTiledImage" : "ZvImage");
  EXPECT_EQ(reports.Lines()[0].substr(reports.Lines()[0].find(" : ")), " : newRow != nil");
  Take(image->NewRow(0));
  EXPECT_EQ(reports.Lines().size(), 1u);
}

TEST(ImportBuffer, TakesAStrideOfTwelveForThreeRgbPixels) {
  auto image = New<ZvTiledImage<PxRgbBytes>>(3, 2);
  uint8_t buffer[24];
  for (uint8_t i = 0; i < 24; ++i)
    buffer[i] = i;
  image->ImportBuffer(buffer, 0);
  EXPECT_EQ(PixelAt<PxRgbBytes>(*image, 0, 1), PxRgbBytes::Of(14, 13, 12));
  EXPECT_EQ(PixelAt<PxRgbBytes>(*image, 2, 1), PxRgbBytes::Of(20, 19, 18));
}

TEST(ImportBuffer, PacksBitsMostSignificantFirst) {
  auto image = New<ZvTiledImage<PxGrayBit>>(10, 1);
  const uint8_t buffer[4] = {0x81, 0x40, 0, 0};
  image->ImportBuffer(buffer, 0);
  for (int32_t x = 0; x < 10; ++x)
    EXPECT_EQ(ByteAt(*image, x, 0), x == 0 || x == 7 || x == 9 ? 255 : 0) << x;
}

}  // namespace
}  // namespace vm
