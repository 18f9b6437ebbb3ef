#include "image/ZvTiledImage.h"

#include "image/ImageTestSupport.h"
#include "persistence/ZvMemoryStream.h"
#include "support/ReportRecorder.h"

namespace vm {
namespace {

template <class Class>
class TiledImageOf : public ::testing::Test {};
TYPED_TEST_SUITE(TiledImageOf, AllTiled, ImageTestNames);

TYPED_TEST(TiledImageOf, ReadingAnAbsentTileYieldsTheDefaultPixelAndAllocatesNothing) {
  using P = typename TypeParam::Record;
  auto image = New<typename TypeParam::Image>(300, 300);
  P expected{};
  expected.PutRgba64(kRgba64Clear);
  for (const ZvPoint& at :
       {ZvPoint(0, 0), ZvPoint(299, 299), ZvPoint(-1, -1), ZvPoint(INT32_MAX, INT32_MIN)})
    EXPECT_EQ(Hex(PixelAt<P>(*image, at.x, at.y)), Hex(expected));
  EXPECT_EQ(image->Tiles().Size(), 0u);
  EXPECT_EQ(image->FindTile(0, 0), nullptr);
}

TYPED_TEST(TiledImageOf, ANewTileIsZeroWhereNothingWasWritten) {
  using P = typename TypeParam::Record;
  Random random(1);
  auto image = New<typename TypeParam::Image>(300, 300);
  const P pixel = RandomRecord<P>(random);
  image->PutPixel(pixel, 130, 5);
  EXPECT_EQ(Hex(PixelAt<P>(*image, 130, 5)), Hex(pixel));
  EXPECT_EQ(Hex(PixelAt<P>(*image, 131, 5)), Hex(P{}));
  EXPECT_EQ(image->Tiles().TileCount(), 1u);
}

TYPED_TEST(TiledImageOf, HoldsPixelsAtAnyCoordinates) {
  using P = typename TypeParam::Record;
  Random random(2);
  auto image = New<typename TypeParam::Image>(4, 4);
  std::vector<std::pair<ZvPoint, P>> written;
  for (const int32_t y : {-129, -128, -1, 0, 127, 128, 1000}) {
    for (const int32_t x : {-129, -128, -1, 0, 127, 128, 1000}) {
      written.emplace_back(ZvPoint(x, y), RandomRecord<P>(random));
      image->PutPixel(written.back().second, x, y);
    }
  }
  for (const auto& [at, pixel] : written)
    EXPECT_EQ(Hex(PixelAt<P>(*image, at.x, at.y)), Hex(pixel)) << at.x << ' ' << at.y;
}

TYPED_TEST(TiledImageOf, StoresItsRecordsRowByRowInATile) {
  using P = typename TypeParam::Record;
  Random random(3);
  auto image = New<typename TypeParam::Image>(300, 300);
  const P pixel = RandomRecord<P>(random);
  image->PutPixel(pixel, 128 + 3, 256 + 2);
  const uint8_t* const tile = image->FindTile(131, 258);
  ASSERT_NE(tile, nullptr);
  if constexpr (std::is_same_v<P, PxGrayBit>) {
    // Bit 2 * 128 + 3, the most significant one first.
    EXPECT_EQ(tile[32], pixel.IsSet() ? 0x10 : 0);
  } else {
    EXPECT_EQ(std::memcmp(tile + (2 * 128 + 3) * sizeof(P), &pixel, sizeof(P)), 0);
  }
}

TYPED_TEST(TiledImageOf, DropsAWriteBeyondTheReachOfItsTable) {
  using P = typename TypeParam::Record;
  ReportRecorder reports;
  auto image = New<typename TypeParam::Image>(4, 4);
  image->PutPixel(P{}, INT32_MAX, 0);
  ASSERT_EQ(reports.Lines().size(), 1u);
  EXPECT_EQ(reports.Lines()[0].substr(0, 13), "ZvTiledImage(");
  EXPECT_EQ(reports.Lines()[0].substr(reports.Lines()[0].find(" : ")), " : x >= 0");
  EXPECT_EQ(image->Tiles().TileCount(), 0u);
  image->ClearRect({0, 0, 0, 0});
  EXPECT_EQ(image->Tiles().TileCount(), 1u);
}

TYPED_TEST(TiledImageOf, ClearRectMakesTilesAndClearFreesThem) {
  auto image = New<typename TypeParam::Image>(300, 300);
  image->ClearRect({0, 0, 299, 299});
  EXPECT_EQ(image->Tiles().TileCount(), 9u);
  image->Clear();
  EXPECT_EQ(image->Tiles().TileCount(), 0u);
  EXPECT_EQ(image->Tiles().Size(), 0u);
}

TYPED_TEST(TiledImageOf, GrowsWithoutMovingAnything) {
  using P = typename TypeParam::Record;
  Random random(4);
  auto image = New<typename TypeParam::Image>(100, 100);
  Randomize<P>(*image, random);
  const auto before = Records<P>(*image, image->Bounds());
  const uint8_t* const tile = image->FindTile(0, 0);
  image->Resize(500, 100, true, kResampleNone, kRgba64White);
  EXPECT_EQ(image->Bounds(), ZvRect(0, 0, 499, 99));
  EXPECT_EQ(image->FindTile(0, 0), tile);
  EXPECT_EQ(image->Tiles().TileCount(), 1u);
  EXPECT_TRUE(Records<P>(*image, {0, 0, 99, 99}) == before);
  // Nothing but the size changes, the clip neither.
  ZvRect clip;
  image->GetClip(clip);
  EXPECT_EQ(clip, ZvRect(0, 0, 99, 99));
}

TYPED_TEST(TiledImageOf, FillsTheNewBandsWhenItGrowsWithAnotherColour) {
  using P = typename TypeParam::Record;
  Random random(5);
  auto image = New<typename TypeParam::Image>(100, 50);
  Randomize<P>(*image, random);
  const auto before = Own(image->NewLike(true, 0, 0));
  const auto& old = static_cast<const typename TypeParam::Image&>(*before.Get());
  const PxRgba64 fill{0x4000, 0x8000, 0xC000, 0xFFFF};
  P narrowed{};
  narrowed.PutRgba64(fill);
  image->Resize(130, 60, true, kResampleNone, fill);
  EXPECT_TRUE(Holds<P>(*image, image->Bounds(), [&](int32_t x, int32_t y) {
    return x < 100 && y < 50 ? PixelAt<P>(old, x, y) : narrowed;
  }));
  ZvRect clip;
  image->GetClip(clip);
  EXPECT_EQ(clip, image->Bounds());
}

TYPED_TEST(TiledImageOf, KeepsItsPixelsInPlaceWhenItShrinks) {
  using P = typename TypeParam::Record;
  Random random(6);
  auto image = New<typename TypeParam::Image>(200, 200);
  Randomize<P>(*image, random);
  const auto before = Records<P>(*image, image->Bounds());
  image->SetClip({10, 10, 190, 40});
  for (const bool keep : {true, false}) {
    image->Resize(keep ? 150 : 120, 60, keep, kResampleNone, kOpaqueWhite);
    EXPECT_TRUE(Records<P>(*image, {0, 0, 199, 199}) == before);  // outside of the image too
    EXPECT_EQ(image->Tiles().TileCount(), 4u);
  }
  ZvRect clip;
  image->GetClip(clip);
  EXPECT_EQ(clip, ZvRect(10, 10, 119, 40));
  image->Resize(0, -1, false, kResampleNone, kOpaqueWhite);
  EXPECT_EQ(image->Bounds(), ZvRect(0, 0, 0, 0));
}

TYPED_TEST(TiledImageOf, SharesItsTilesWithADuplicate) {
  using P = typename TypeParam::Record;
  Random random(7);
  const P first = RandomRecord<P>(random);
  const P second = RandomRecord<P>(random);
  auto image = New<typename TypeParam::Image>(300, 200);
  image->PutPixel(first, 150, 150);
  image->SetClip({1, 2, 3, 4});
  image->SetResolution(10, 20);
  const auto twin = Own(image->Duplicate());
  auto& other = static_cast<typename TypeParam::Image&>(*twin.Get());
  EXPECT_EQ(other.Bounds(), image->Bounds());
  EXPECT_EQ(other.FindTile(150, 150), image->FindTile(150, 150));
  ZvRect clip;
  other.GetClip(clip);
  EXPECT_EQ(clip, ZvRect(1, 2, 3, 4));
  EXPECT_EQ(other.YRes(), 20.0f);
  other.PutPixel(second, 151, 150);
  EXPECT_EQ(Hex(PixelAt<P>(*image, 151, 150)), Hex(second));
  image.Clear();  // the handle: the first image goes
  EXPECT_EQ(Hex(PixelAt<P>(other, 150, 150)), Hex(first));
}

TEST(TiledImage, WritingOnePixelLeftAboveMakesTheTileWithIndexTwo) {
  auto image = New<ZvTiledImage<PxRgbBytes>>(10, 10);
  image->PutPixel(PxRgbBytes::Of(1, 2, 3), -1, -1);
  EXPECT_EQ(image->Tiles().Size(), 3u);
  EXPECT_EQ(image->Tiles().TileCount(), 1u);
}

TEST(TiledImage, TellsUsedBoundsByAnOddDecoding) {
  auto image = New<ZvTiledImage<PxRgbBytes>>(10, 10);
  EXPECT_TRUE(image->UsedBounds().IsEmpty());
  image->MakeTile(0, 0);
  EXPECT_EQ(image->UsedBounds(), ZvRect(0, 0, 127, 127));
  // The tile at (1, 0) has index 4, which decodes to (1, 1).
  image->MakeTile(128, 0);
  EXPECT_EQ(image->UsedBounds(), ZvRect(0, 0, 255, 255));
  // The one at (-1, -1) has index 2, which decodes to (0, -1).
  image->MakeTile(-1, -1);
  EXPECT_EQ(image->UsedBounds(), ZvRect(0, -128, 255, 255));
}

TEST(TiledImage, ListsTheTilesOfARect) {
  auto image = New<ZvTiledImage<PxRgbBytes>>(300, 300);
  uint8_t* const tile = image->MakeTile(130, 10);
  std::vector<ZvImageBlock> blocks;
  image->AppendBlocks(blocks, {-1, 5, 130, 127});
  ASSERT_EQ(blocks.size(), 3u);
  EXPECT_EQ(blocks[0].pixels, nullptr);
  EXPECT_EQ(blocks[0].rect, ZvRect(-128, 0, -1, 127));
  EXPECT_EQ(blocks[1].rect, ZvRect(0, 0, 127, 127));
  EXPECT_EQ(blocks[2].pixels, tile);
  EXPECT_EQ(blocks[2].rect, ZvRect(128, 0, 255, 127));
  EXPECT_EQ(image->Tiles().TileCount(), 1u);
}

TEST(TiledImage, ScalesItsContentsOnResizeWhenAsked) {
  auto image = New<ZvTiledImage<PxRgbaBytes>>(2, 1);
  image->PutRgba(PxRgbaBytes::Of(10, 20, 30, 255), 0, 0);
  image->PutRgba(PxRgbaBytes::Of(40, 50, 60, 255), 1, 0);
  image->Resize(8, 4, true, kResampleBox, kRgba64Clear);
  EXPECT_EQ(image->Bounds(), ZvRect(0, 0, 7, 3));
  EXPECT_EQ(RgbaAt(*image, 0, 0), PxRgbaBytes::Of(10, 20, 30, 255));
  EXPECT_EQ(RgbaAt(*image, 6, 0), PxRgbaBytes::Of(10, 20, 30, 255));
}

TEST(TiledImage, ReportsARowEqualToTheHeightAndTransfersItAllTheSame) {
  ReportRecorder reports;
  auto image = New<ZvTiledImage<PxGrayByte>>(3, 3);
  const uint8_t row[] = {1, 2, 3};
  image->PutRow(row, 0, 3, 3);
  uint8_t back[3] = {};
  image->GetRow(back, 0, 3, 3);
  EXPECT_EQ(std::memcmp(row, back, 3), 0);
  ASSERT_EQ(reports.Lines().size(), 2u);
  for (const std::string& line : reports.Lines())
    EXPECT_EQ(line.substr(line.find(" : ")), " : y != mHeight");
  image->PutRow(row, 0, 4, 3);  // only equality is misuse
  EXPECT_EQ(reports.Lines().size(), 2u);
}

}  // namespace
}  // namespace vm
