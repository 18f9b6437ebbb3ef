// Unscaled copies, exchanges and blends, compared with the rules spelt out pixel by pixel.

#include "foundation/FourCharCode.h"
#include "image/ImageTestSupport.h"
#include "support/ReportRecorder.h"

namespace vm {
namespace {

// The record that a copy of `from` at (x, y) leaves on top of `before`.
template <class P>
P CopiedPixel(const ZvImage& to, const ZvImage& from, P before, int32_t x, int32_t y) {
  const std::optional<P> raw = RecordAt<P>(from, x, y);
  if (raw && (to.IsTiled() == from.IsTiled() || from.IsTiled()))
    return *raw;
  if (ClassNameOf(to) == "ZvImageGrayBit" && ClassNameOf(from) == "ZvImageRgbaBytes") {
    const uint8_t set = RgbaAt(from, x, y).red > 127 ? 255 : 0;
    before.PutByte(set);
    return before;
  }
  if (P::kInfo.kind == FourCC("AlpB"))
    before.PutByte(ByteAt(from, x, y));
  else if (P::kInfo.bitsPerChannel <= 8)
    before.PutRgba(RgbaAt(from, x, y));
  else
    before.PutRgba64(Rgba64At(from, x, y));
  return before;
}

// Sizes around the edges of tiles.
struct Case {
  int32_t toWidth, toHeight, fromWidth, fromHeight;
  ZvRect fromRect;
  ZvPoint toPoint;
  bool clipped;
  ZvRect clip;
};

const Case kCases[] = {
    {1, 1, 1, 1, {0, 0, 0, 0}, {0, 0}, false, {}},
    {127, 3, 129, 4, {0, 0, 128, 3}, {0, 0}, false, {}},
    {3, 130, 5, 131, {1, 0, 4, 130}, {0, 0}, false, {}},
    {257, 5, 128, 5, {0, 0, 127, 4}, {127, 2}, false, {}},
    {257, 5, 257, 5, {-5, -3, 300, 300}, {-9, -1}, false, {}},
    {200, 5, 257, 5, {100, 1, 256, 4}, {3, 1}, true, {50, 0, 190, 2}},
    {200, 5, 257, 5, {100, 1, 256, 4}, {200, 1}, false, {}},
    {200, 5, 257, 5, {100, 1, 256, 4}, {3, 1}, true, {250, 0, 300, 2}},
};

// The part of the target that a case touches, worked out pixel by pixel.
bool Lands(const Case& c, int32_t x, int32_t y) {
  const int32_t fromX = x - (c.toPoint.x - c.fromRect.fLeft);
  const int32_t fromY = y - (c.toPoint.y - c.fromRect.fTop);
  const bool inRect = x >= c.toPoint.x && y >= c.toPoint.y && fromX <= c.fromRect.fRight &&
                      fromY <= c.fromRect.fBottom;
  const bool inSource = fromX >= 0 && fromY >= 0 && fromX < c.fromWidth && fromY < c.fromHeight;
  const bool inClip = !c.clipped || (x >= c.clip.fLeft && x <= c.clip.fRight && y >= c.clip.fTop &&
                                     y <= c.clip.fBottom);
  return inRect && inSource && inClip;
}

template <class Class>
class CopyInto : public ::testing::Test {};
TYPED_TEST_SUITE(CopyInto, AllImages, ImageTestNames);

TYPED_TEST(CopyInto, FromEveryClassGivesWhatTheRuleGivesPixelByPixel) {
  using P = typename TypeParam::Record;
  ReportRecorder reports;  // PxCmykBytes reports that it can't be written from colour bytes
  uint32_t seed = 1;
  for (const AnyClass& source : EveryClass()) {
    for (const Case& c : kCases) {
      SCOPED_TRACE(source.name);
      const auto from = source.make(c.fromWidth, c.fromHeight, ++seed);
      auto to = New<typename TypeParam::Image>(c.toWidth, c.toHeight);
      Random random(seed);
      Randomize<P>(*to, random);
      const auto before = Own(to->NewLike(true, 0, 0));
      const auto& old = static_cast<const typename TypeParam::Image&>(*before.Get());
      to->CopyFrom(from.Get(), c.fromRect, c.toPoint, c.clipped ? &c.clip : nullptr);
      ASSERT_TRUE(Holds<P>(*to, to->Bounds(), [&](int32_t x, int32_t y) {
        const P pixel = PixelAt<P>(old, x, y);
        return Lands(c, x, y)
                   ? CopiedPixel<P>(*to, *from.Get(), pixel, x - (c.toPoint.x - c.fromRect.fLeft),
                                    y - (c.toPoint.y - c.fromRect.fTop))
                   : pixel;
      }));
    }
  }
}

TYPED_TEST(CopyInto, OnlyVisiblePixelsOfEveryClass) {
  using P = typename TypeParam::Record;
  ReportRecorder reports;
  uint32_t seed = 100;
  for (const AnyClass& source : EveryClass()) {
    for (const Case& c : kCases) {
      SCOPED_TRACE(source.name);
      const auto from = source.make(c.fromWidth, c.fromHeight, ++seed);
      auto to = New<typename TypeParam::Image>(c.toWidth, c.toHeight);
      Random random(seed);
      Randomize<P>(*to, random);
      const auto before = Own(to->NewLike(true, 0, 0));
      const auto& old = static_cast<const typename TypeParam::Image&>(*before.Get());
      to->CopyVisible(from.Get(), c.fromRect, c.toPoint, c.clipped ? &c.clip : nullptr);
      ASSERT_TRUE(Holds<P>(*to, to->Bounds(), [&](int32_t x, int32_t y) {
        const P pixel = PixelAt<P>(old, x, y);
        const int32_t fromX = x - (c.toPoint.x - c.fromRect.fLeft);
        const int32_t fromY = y - (c.toPoint.y - c.fromRect.fTop);
        return Lands(c, x, y) && RgbaAt(*from.Get(), fromX, fromY).alpha != 0
                   ? CopiedPixel<P>(*to, *from.Get(), pixel, fromX, fromY)
                   : pixel;
      }));
    }
  }
}

TYPED_TEST(CopyInto, ExchangesPixelsWithEveryClass) {
  using P = typename TypeParam::Record;
  uint32_t seed = 200;
  ReportRecorder reports;
  for (const AnyClass& source : EveryClass()) {
    SCOPED_TRACE(source.name);
    const auto other = source.make(150, 4, ++seed);
    auto own = New<typename TypeParam::Image>(140, 5);
    Random random(seed);
    Randomize<P>(*own, random);
    const auto ownBefore = Own(own->NewLike(true, 0, 0));
    const auto otherBefore = Own(other->NewLike(true, 0, 0));
    const auto& oldOwn = static_cast<const typename TypeParam::Image&>(*ownBefore.Get());
    // The rect sticks out at the top of this image and at the right of the other.
    own->SwapPixels(other.Get(), {20, -1}, {3, -1, 139, 2});
    const auto inside = [](int32_t x, int32_t y) {
      return x >= 3 && x + 17 < 150 && y >= 0 && y <= 2;
    };
    const bool sameClass =
        RecordAt<P>(*other.Get(), 0, 0).has_value() && own->IsTiled() == other->IsTiled();
    ASSERT_TRUE(Holds<P>(*own, own->Bounds(), [&](int32_t x, int32_t y) {
      P pixel = PixelAt<P>(oldOwn, x, y);
      if (!inside(x, y))
        return pixel;
      if (sameClass)
        return PixelAt<P>(static_cast<const typename TypeParam::Image&>(*otherBefore.Get()), x + 17,
                          y);
      pixel.PutRgba64(Rgba64At(*otherBefore.Get(), x + 17, y));
      return pixel;
    }));
    // And what the other one got. (Its record is known only here for the same class.)
    if (sameClass) {
      ASSERT_TRUE(Holds<P>(static_cast<const typename TypeParam::Image&>(*other.Get()),
                           other->Bounds(), [&](int32_t x, int32_t y) {
                             return inside(x - 17, y)
                                        ? PixelAt<P>(oldOwn, x - 17, y)
                                        : PixelAt<P>(static_cast<const typename TypeParam::Image&>(
                                                         *otherBefore.Get()),
                                                     x, y);
                           }));
    } else {
      auto expected = Own(otherBefore->NewLike(true, 0, 0));
      for (int32_t y = 0; y <= 2; ++y) {
        for (int32_t x = 3; x < 133; ++x)
          expected->PutRgba64(Rgba64At(*ownBefore.Get(), x, y), x + 17, y);
      }
      for (int32_t y = 0; y < 4; ++y) {
        for (int32_t x = 0; x < 150; ++x)
          ASSERT_EQ(Rgba64At(*other.Get(), x, y), Rgba64At(*expected.Get(), x, y)) << x << ' ' << y;
      }
    }
  }
}

// What BlendRect leaves at one pixel.
template <class P>
P BlendedPixel(const ZvImage& to, const ZvImage& from, P pixel, int32_t x, int32_t y,
               float opacity) {
  const std::optional<P> sameRecord = RecordAt<P>(from, x, y);
  const P raw = sameRecord.value_or(P{});
  const bool partial = opacity < 0.99f;
  if (sameRecord && to.IsTiled() == from.IsTiled()) {
    if constexpr (Compositing<P>) {
      if (partial)
        pixel.Composite(raw, opacity);
      else
        pixel.Composite(raw);
    } else if (partial) {
      pixel.Mix255(raw, opacity);
    } else {
      pixel = raw;
    }
    return pixel;
  }
  if (P::kInfo.kind == FourCC("RG24") && from.PixelKind() == FourCC("Rgba")) {
    PxRgbaBytes target = pixel.GetRgba();
    PxRgbaBytes source = RgbaAt(from, x, y);
    if (partial) {
      target.Composite(source, opacity);
    } else {
      source.alpha = static_cast<uint8_t>(static_cast<float>(source.alpha) * opacity);
      target.Composite(source);
    }
    pixel.PutRgba(target);
    return pixel;
  }
  P narrowed = raw;
  narrowed.PutRgba64(Rgba64At(from, x, y));
  pixel.Mix255(narrowed, opacity);
  return pixel;
}

TYPED_TEST(CopyInto, BlendsEveryClassAsTheRuleDoesPixelByPixel) {
  using P = typename TypeParam::Record;
  uint32_t seed = 300;
  for (const AnyClass& source : EveryClass()) {
    for (const float opacity : {1.0f, 0.995f, 0.99f, 0.98f, 0.5f, 0.0f}) {
      const Case& c = kCases[5];
      SCOPED_TRACE(source.name + " opacity " + std::to_string(opacity));
      const auto from = source.make(c.fromWidth, c.fromHeight, ++seed);
      auto to = New<typename TypeParam::Image>(c.toWidth, c.toHeight);
      Random random(seed);
      Randomize<P>(*to, random);
      const auto before = Own(to->NewLike(true, 0, 0));
      const auto& old = static_cast<const typename TypeParam::Image&>(*before.Get());
      to->BlendRect(from.Get(), c.fromRect, c.toPoint, opacity, &c.clip);
      ASSERT_TRUE(Holds<P>(*to, to->Bounds(), [&](int32_t x, int32_t y) {
        const P pixel = PixelAt<P>(old, x, y);
        return Lands(c, x, y)
                   ? BlendedPixel<P>(*to, *from.Get(), pixel, x - (c.toPoint.x - c.fromRect.fLeft),
                                     y - (c.toPoint.y - c.fromRect.fTop), opacity)
                   : pixel;
      }));
    }
  }
}

TYPED_TEST(CopyInto, MixesEveryClassAsTheRuleDoesPixelByPixel) {
  using P = typename TypeParam::Record;
  ReportRecorder reports;
  uint32_t seed = 400;
  for (const AnyClass& source : EveryClass()) {
    for (const float t : {0.0f, 0.3f, 1.0f}) {
      SCOPED_TRACE(source.name);
      const auto from = source.make(140, 3, ++seed);
      auto to = New<typename TypeParam::Image>(130, 4);
      Random random(seed);
      Randomize<P>(*to, random);
      const auto before = Own(to->NewLike(true, 0, 0));
      const auto& old = static_cast<const typename TypeParam::Image&>(*before.Get());
      to->MixImage(from.Get(), t);
      ASSERT_TRUE(Holds<P>(*to, to->Bounds(), [&](int32_t x, int32_t y) {
        P pixel = PixelAt<P>(old, x, y);
        if (y > 2)
          return pixel;
        P other{};
        const std::optional<P> raw = RecordAt<P>(*from.Get(), x, y);
        if (raw && to->IsTiled() == from->IsTiled()) {
          other = *raw;
        } else {
          PxRgbaBytes rgba = RgbaAt(*from.Get(), x, y);
          rgba.alpha = 255;
          other.PutRgba(rgba);
        }
        pixel.Mix256(other, t);
        return pixel;
      }));
    }
  }
}

TYPED_TEST(CopyInto, AnImageOfAnotherClassIsTheCommonArea) {
  using P = typename TypeParam::Record;
  auto to = New<typename TypeParam::Image>(130, 3);
  auto from = New<typename TypeParam::Image>(129, 5);
  Random random(5);
  Randomize<P>(*from, random);
  to->CopyImage(from.Get());
  EXPECT_TRUE(
      Holds<P>(*to, {0, 0, 128, 2}, [&](int32_t x, int32_t y) { return PixelAt<P>(*from, x, y); }));
}

TYPED_TEST(CopyInto, SmearsWithinOneRowLikeACopyPixelByPixel) {
  using P = typename TypeParam::Record;
  for (const ZvPoint& to :
       {ZvPoint(3, 0), ZvPoint(140, 0), ZvPoint(0, 0), ZvPoint(3, 1), ZvPoint(0, 1)}) {
    auto image = New<typename TypeParam::Image>(300, 3);
    auto twin = New<typename TypeParam::Image>(300, 3);
    Random random(6);
    Randomize<P>(*image, random);
    twin->CopyImage(image.Get());
    image->CopyFrom(image.Get(), {1, 0, 260, 1}, to, nullptr);
    for (int32_t y = 0; y <= 1; ++y) {
      for (int32_t x = 1; x <= 260; ++x) {
        const int32_t toX = x - 1 + to.x;
        const int32_t toY = y + to.y;
        if (toX < 300 && toY < 3)
          twin->PutPixel(PixelAt<P>(*twin, x, y), toX, toY);
      }
    }
    ASSERT_TRUE(Holds<P>(*image, image->Bounds(),
                         [&](int32_t x, int32_t y) { return PixelAt<P>(*twin, x, y); }));
  }
}

TYPED_TEST(CopyInto, ExchangesOverlappingAreasOfOneImagePixelByPixel) {
  using P = typename TypeParam::Record;
  auto image = New<typename TypeParam::Image>(200, 2);
  auto twin = New<typename TypeParam::Image>(200, 2);
  Random random(6);
  Randomize<P>(*image, random);
  twin->CopyImage(image.Get());
  image->SwapPixels(image.Get(), {7, 0}, {0, 0, 180, 1});
  for (int32_t y = 0; y < 2; ++y) {
    for (int32_t x = 0; x <= 180; ++x) {
      const P a = PixelAt<P>(*twin, x, y);
      twin->PutPixel(PixelAt<P>(*twin, x + 7, y), x, y);
      twin->PutPixel(a, x + 7, y);
    }
  }
  EXPECT_TRUE(Holds<P>(*image, image->Bounds(),
                       [&](int32_t x, int32_t y) { return PixelAt<P>(*twin, x, y); }));
}

TEST(CopyFrom, SetsABitByTheRedByteAloneBetweenTheTwoTiledClasses) {
  auto rgba = New<ZvTiledImage<PxRgbaBytes>>(2, 1);
  rgba->PutRgba(PxRgbaBytes::Of(128, 0, 0, 0), 0, 0);
  rgba->PutRgba(PxRgbaBytes::Of(127, 255, 255, 255), 1, 0);
  auto bits = New<ZvTiledImage<PxGrayBit>>(2, 1);
  bits->CopyImage(rgba.Get());
  EXPECT_EQ(ByteAt(*bits, 0, 0), 255);
  EXPECT_EQ(ByteAt(*bits, 1, 0), 0);
  // From a row image the sum of the three decides.
  auto row = New<ZvTypedImage<PxRgbaBytes>>(2, 1);
  row->CopyImage(rgba.Get());
  bits->CopyImage(row.Get());
  EXPECT_EQ(ByteAt(*bits, 0, 0), 0);
  EXPECT_EQ(ByteAt(*bits, 1, 0), 255);
}

TEST(CopyFrom, GivesRgbFullAlpha) {
  auto rgb = New<ZvTiledImage<PxRgbBytes>>(200, 1);
  auto rgba = New<ZvTiledImage<PxRgbaBytes>>(200, 1);
  rgb->PutRgb(PxRgbBytes::Of(1, 2, 3), 150, 0);
  rgba->CopyImage(rgb.Get());
  EXPECT_EQ(RgbaAt(*rgba, 150, 0), PxRgbaBytes::Of(1, 2, 3, 255));
  EXPECT_EQ(RgbaAt(*rgba, 0, 0), PxRgbaBytes::Of(0, 0, 0, 255));
}

TEST(CopyFrom, OutsideTheImageCopiesNothing) {
  auto to = New<ZvTiledImage<PxRgbBytes>>(10, 10);
  auto from = New<ZvTiledImage<PxRgbBytes>>(10, 10);
  from->PutRgb(PxRgbBytes::Of(1, 2, 3), 0, 0);
  for (const ZvPoint& point : {ZvPoint(10, 0), ZvPoint(0, 10), ZvPoint(-10, 0), ZvPoint(0, -10),
                               ZvPoint(INT32_MAX, INT32_MAX), ZvPoint(INT32_MIN, INT32_MIN)}) {
    to->CopyFrom(from.Get(), {0, 0, 9, 9}, point, nullptr);
    EXPECT_EQ(to->Tiles().TileCount(), 0u) << point.x << ' ' << point.y;
  }
  to->CopyFrom(from.Get(), {INT32_MAX, INT32_MAX, INT32_MAX, INT32_MAX}, {INT32_MIN, INT32_MIN},
               nullptr);
  EXPECT_EQ(to->Tiles().TileCount(), 0u);
}

TEST(CopyFrom, AnAbsentTileGivesTheDefaultPixelAndMakesTheTargetsTile) {
  auto to = New<ZvTiledImage<PxCmykaBytes>>(200, 1);
  auto from = New<ZvTiledImage<PxCmykaBytes>>(200, 1);
  to->PutPixel({1, 2, 3, 4, 5}, 10, 0);
  to->CopyImage(from.Get());
  // Transparent black in inks.
  EXPECT_EQ(PixelAt<PxCmykaBytes>(*to, 10, 0), (PxCmykaBytes{0, 0, 0, 255, 0}));
  EXPECT_EQ(to->Tiles().TileCount(), 2u);
  EXPECT_EQ(from->Tiles().TileCount(), 0u);
}

TEST(CopyVisible, MakesNoTilesForWhatIsInvisible) {
  auto to = New<ZvTiledImage<PxRgbaBytes>>(400, 400);
  auto from = New<ZvTiledImage<PxRgbaBytes>>(400, 400);
  from->PutRgba(PxRgbaBytes::Of(9, 9, 9, 1), 300, 300);
  from->PutRgba(PxRgbaBytes::Of(9, 9, 9, 0), 1, 1);
  to->CopyVisible(from.Get(), from->Bounds(), {0, 0}, nullptr);
  EXPECT_EQ(to->Tiles().TileCount(), 1u);
  EXPECT_EQ(RgbaAt(*to, 300, 300), PxRgbaBytes::Of(9, 9, 9, 1));
}

TEST(Transfers, ReportAMissingSourceAndTransferNothing) {
  ReportRecorder reports;
  auto tiled = New<ZvTiledImage<PxRgbBytes>>(2, 2);
  auto row = New<ZvTypedImage<PxRgbBytes>>(2, 2);
  for (ZvImage* const image :
       {static_cast<ZvImage*>(tiled.Get()), static_cast<ZvImage*>(row.Get())}) {
    reports.Clear();
    image->CopyFrom(nullptr, {0, 0, 1, 1}, {0, 0}, nullptr);
    image->CopyVisible(nullptr, {0, 0, 1, 1}, {0, 0}, nullptr);
    image->SwapPixels(nullptr, {0, 0}, {0, 0, 1, 1});
    image->MixImage(nullptr, 0.5f);
    image->CopyImage(nullptr);
    ASSERT_EQ(reports.Lines().size(), 5u);
    for (const std::string& line : reports.Lines()) {
      EXPECT_EQ(line.substr(0, line.find('(')), image->IsTiled() ? "ZvTiledImage" : "ZvImage");
      EXPECT_EQ(line.substr(line.find(" : ")), " : from != nil");
    }
  }
  EXPECT_EQ(tiled->Tiles().TileCount(), 0u);
}

TEST(BlendRect, ReturnsSilentlyWithoutASource) {
  auto image = New<ZvTiledImage<PxRgbBytes>>(2, 2);
  image->BlendRect(nullptr, {0, 0, 1, 0}, {0, 0}, 1.0f, nullptr);
  image->BlendImage(nullptr);
  EXPECT_EQ(image->Tiles().TileCount(), 0u);
}

TEST(BlendRect, ReportsABottomEqualToTheHeightAndBlendsAllTheSame) {
  ReportRecorder reports;
  auto to = New<ZvTypedImage<PxRgbBytes>>(2, 2);
  auto from = New<ZvTypedImage<PxRgbBytes>>(2, 2);
  from->PutRgb(PxRgbBytes::Of(7, 8, 9), 1, 1);
  to->BlendRect(from.Get(), {0, 0, 1, 1}, {0, 0}, 1.0f, nullptr);
  EXPECT_TRUE(reports.Empty());
  to->BlendRect(from.Get(), {0, 0, 1, 2}, {0, 0}, 1.0f, nullptr);
  ASSERT_EQ(reports.Lines().size(), 1u);
  EXPECT_EQ(reports.Lines()[0].substr(reports.Lines()[0].find(" : ")),
            " : fromRect.fBottom != from->Height()");
  EXPECT_EQ(PixelAt<PxRgbBytes>(*to, 1, 1), PxRgbBytes::Of(7, 8, 9));
  to->BlendRect(from.Get(), {0, 0, 1, 3}, {0, 0}, 1.0f, nullptr);  // only equality is misuse
  EXPECT_EQ(reports.Lines().size(), 1u);
}

TEST(BlendImage, BringsCmykBytesAcrossTheFamiliesExactly) {
  auto from = New<ZvTiledImage<PxCmykBytes>>(200, 3);
  Random random(12);
  Randomize<PxCmykBytes>(*from, random);
  auto to = New<ZvTypedImage<PxCmykBytes>>(200, 3);
  to->FillClip(kOpaqueWhite);
  to->BlendImage(from.Get());
  EXPECT_TRUE(Holds<PxCmykBytes>(
      *to, to->Bounds(), [&](int32_t x, int32_t y) { return PixelAt<PxCmykBytes>(*from, x, y); }));
}

TEST(BlendImage, LaysRgbaOverWhiteInBytes) {
  auto from = New<ZvTiledImage<PxRgbaBytes>>(3, 1);
  from->PutRgba(PxRgbaBytes::Of(100, 0, 255, 128), 0, 0);
  from->PutRgba(PxRgbaBytes::Of(100, 0, 255, 255), 1, 0);
  auto to = New<ZvTypedImage<PxRgbBytes>>(3, 1);
  to->FillClip(kOpaqueWhite);
  to->BlendImage(from.Get());
  // (128*100 + 127*255 + 127) / 255 = 177, (0 + 127*255 + 127) / 255 = 127, (128*255 + 127*255 +
  // 127) / 255 = 255.
  EXPECT_EQ(PixelAt<PxRgbBytes>(*to, 0, 0), PxRgbBytes::Of(177, 127, 255));
  EXPECT_EQ(PixelAt<PxRgbBytes>(*to, 1, 0), PxRgbBytes::Of(100, 0, 255));
  EXPECT_EQ(PixelAt<PxRgbBytes>(*to, 2, 0), PxRgbBytes::Of(255, 255, 255));
}

}  // namespace
}  // namespace vm
