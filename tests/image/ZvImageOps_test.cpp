#include "image/ZvImageOps.h"

#include "image/ImageTestSupport.h"
#include "support/ReportRecorder.h"

namespace vm {
namespace {

template <class Image>
ZvSmartPtr<Image> Mask(int32_t width, int32_t height, uint8_t value) {
  auto mask = New<Image>(width, height);
  for (int32_t y = 0; y < height; ++y) {
    for (int32_t x = 0; x < width; ++x)
      mask->PutByte(value, x, y);
  }
  return mask;
}

TEST(IsSolidMask, NeedsEveryByteToBe255) {
  EXPECT_TRUE(IsSolidMask(Mask<ZvTiledImage<PxAlphaByte>>(1, 1, 255).Get(), nullptr));
  EXPECT_FALSE(IsSolidMask(Mask<ZvTiledImage<PxAlphaByte>>(1, 1, 254).Get(), nullptr));
  const auto mask = Mask<ZvTypedImage<PxAlphaByte>>(300, 5, 255);
  EXPECT_TRUE(IsSolidMask(mask.Get(), nullptr));
  for (const ZvPoint& hole : {ZvPoint(0, 0), ZvPoint(299, 0), ZvPoint(0, 4), ZvPoint(299, 4),
                              ZvPoint(149, 2), ZvPoint(129, 3), ZvPoint(1, 0), ZvPoint(298, 4)}) {
    mask->PutByte(254, hole.x, hole.y);
    EXPECT_FALSE(IsSolidMask(mask.Get(), nullptr)) << hole.x << ' ' << hole.y;
    mask->PutByte(255, hole.x, hole.y);
  }
}

TEST(IsSolidMask, LooksAtTheAreaOnly) {
  const auto mask = Mask<ZvTiledImage<PxAlphaByte>>(200, 10, 255);
  mask->PutByte(0, 150, 5);
  const ZvRect left(-10, 0, 149, 9);
  const ZvRect right(150, 5, 400, 400);
  const ZvRect outside(500, 500, 600, 600);
  EXPECT_TRUE(IsSolidMask(mask.Get(), &left));
  EXPECT_FALSE(IsSolidMask(mask.Get(), &right));
  EXPECT_TRUE(IsSolidMask(mask.Get(), &outside));  // nothing there that isn't solid
}

TEST(IsSolidMask, ReportsAMissingMask) {
  ReportRecorder reports;
  EXPECT_FALSE(IsSolidMask(nullptr, nullptr));
  ASSERT_EQ(reports.Lines().size(), 1u);
  EXPECT_EQ(reports.Lines()[0].substr(0, 11), "ZvImageOps(");
  EXPECT_EQ(reports.Lines()[0].substr(reports.Lines()[0].find(" : ")), " : mask != nil");
}

TEST(MatchMaskSize, KeepsASolidMaskSolid) {
  const auto reference = New<ZvTiledImage<PxRgbaBytes>>(300, 150);
  for (const bool tiled : {true, false}) {
    const ZvSmartPtr<ZvImage> mask =
        tiled ? ZvSmartPtr<ZvImage>(Mask<ZvTiledImage<PxAlphaByte>>(100, 140, 255))
              : ZvSmartPtr<ZvImage>(Mask<ZvTypedImage<PxAlphaByte>>(100, 140, 255));
    MatchMaskSize(mask.Get(), reference.Get());
    EXPECT_EQ(mask->Bounds(), ZvRect(0, 0, 299, 149));
    EXPECT_TRUE(IsSolidMask(mask.Get(), nullptr));
  }
}

TEST(MatchMaskSize, GivesAnyOtherMaskATransparentMargin) {
  const auto reference = New<ZvTiledImage<PxRgbaBytes>>(20, 30);
  const auto mask = Mask<ZvTypedImage<PxAlphaByte>>(10, 10, 255);
  mask->PutByte(7, 3, 3);
  MatchMaskSize(mask.Get(), reference.Get());
  EXPECT_EQ(mask->Bounds(), ZvRect(0, 0, 19, 29));
  for (int32_t y = 0; y < 30; ++y) {
    for (int32_t x = 0; x < 20; ++x)
      ASSERT_EQ(ByteAt(*mask, x, y), x == 3 && y == 3   ? 7
                                     : x < 10 && y < 10 ? 255
                                                        : 0)
          << x << ' ' << y;
  }
}

TEST(MatchMaskSize, NeverMakesAMaskSmaller) {
  const auto mask = Mask<ZvTiledImage<PxAlphaByte>>(100, 10, 255);
  MatchMaskSize(mask.Get(), New<ZvTiledImage<PxRgbaBytes>>(50, 10).Get());
  EXPECT_EQ(mask->Bounds(), ZvRect(0, 0, 99, 9));
  MatchMaskSize(mask.Get(), New<ZvTiledImage<PxRgbaBytes>>(50, 30).Get());
  EXPECT_EQ(mask->Bounds(), ZvRect(0, 0, 99, 29));
}

TEST(MatchMaskSize, DoesNothingWithoutBoth) {
  const auto mask = Mask<ZvTiledImage<PxAlphaByte>>(3, 3, 255);
  MatchMaskSize(mask.Get(), nullptr);
  MatchMaskSize(nullptr, mask.Get());
  EXPECT_EQ(mask->Bounds(), ZvRect(0, 0, 2, 2));
}

}  // namespace
}  // namespace vm
