// Filling, outlining, inverting and moving, over all image classes.

#include "image/ImageTestSupport.h"
#include "persistence/ZvMemoryStream.h"
#include "support/ReportRecorder.h"

namespace vm {
namespace {

constexpr PxRgba64 kColour{0x1234, 0xFEDC, 0x8888, 0xC0C0};

template <class P>
P Narrowed(const PxRgba64& colour) {
  P pixel{};
  pixel.PutRgba64(colour);
  return pixel;
}

template <class P>
P Xored(P pixel, const P& colour) {
  uint8_t a[sizeof(P)];
  uint8_t b[sizeof(P)];
  std::memcpy(a, &pixel, sizeof(P));
  std::memcpy(b, &colour, sizeof(P));
  for (size_t i = 0; i < sizeof(P); ++i)
    a[i] ^= b[i];
  std::memcpy(static_cast<void*>(&pixel), a, sizeof(P));
  return pixel;
}

bool Inside(const ZvRect& rect, int32_t x, int32_t y) {
  return x >= rect.fLeft && x <= rect.fRight && y >= rect.fTop && y <= rect.fBottom;
}

template <class Class>
class Draw : public ::testing::Test {
 protected:
  using P = typename Class::Record;
  using Image = typename Class::Image;

  Draw() : image(New<Image>(260, 131)) {
    Random random(3);
    Randomize<P>(*image, random);
    const auto copy = Own(image->NewLike(true, 0, 0));
    before = ZvSmartPtr<Image>(static_cast<Image*>(copy.Get()));
  }
  P Before(int32_t x, int32_t y) const { return PixelAt<P>(*before, x, y); }

  ZvSmartPtr<Image> image;
  ZvSmartPtr<Image> before;
};
TYPED_TEST_SUITE(Draw, AllImages, ImageTestNames);

TYPED_TEST(Draw, FillsTheClipAndNothingElse) {
  using P = typename TypeParam::Record;
  const ZvRect clip(3, 126, 257, 129);
  this->image->SetClip(clip);
  this->image->FillClip(kColour);
  EXPECT_TRUE(Holds<P>(*this->image, this->image->Bounds(), [&](int32_t x, int32_t y) {
    return Inside(clip, x, y) ? Narrowed<P>(kColour) : this->Before(x, y);
  }));
}

TYPED_TEST(Draw, ClearsInsteadOfFillingTheWholeImageWithZeroes) {
  using P = typename TypeParam::Record;
  this->image->FillClip(kRgba64Clear);
  // A cleared tiled image reads as its default pixel, a cleared row image as zero.
  const P expected = this->image->IsTiled() ? Narrowed<P>(kRgba64Clear) : P{};
  EXPECT_TRUE(
      Holds<P>(*this->image, this->image->Bounds(), [&](int32_t, int32_t) { return expected; }));
  if constexpr (requires { this->image->Tiles(); }) {
    EXPECT_EQ(this->image->Tiles().Size(), 0u);
  }
}

TYPED_TEST(Draw, FillsARectLimitedToTheClip) {
  using P = typename TypeParam::Record;
  this->image->SetClip({10, 0, 259, 129});
  this->image->DrawRect({-5, 120, 200, 400}, kColour, true, false, nullptr);
  EXPECT_TRUE(Holds<P>(*this->image, this->image->Bounds(), [&](int32_t x, int32_t y) {
    return Inside({10, 120, 200, 129}, x, y) ? Narrowed<P>(kColour) : this->Before(x, y);
  }));
}

TYPED_TEST(Draw, XorsTheStoredBits) {
  using P = typename TypeParam::Record;
  const ZvRect rect(100, 100, 150, 129);
  this->image->DrawRect(rect, kColour, true, true, nullptr);
  EXPECT_TRUE(Holds<P>(*this->image, this->image->Bounds(), [&](int32_t x, int32_t y) {
    const P pixel = this->Before(x, y);
    return Inside(rect, x, y) ? Xored(pixel, Narrowed<P>(kColour)) : pixel;
  }));
  this->image->DrawRect(rect, kColour, true, true, nullptr);
  EXPECT_TRUE(Holds<P>(*this->image, this->image->Bounds(),
                       [&](int32_t x, int32_t y) { return this->Before(x, y); }));
}

TYPED_TEST(Draw, OutlinesWithCornersDrawnTwiceInXorMode) {
  using P = typename TypeParam::Record;
  const ZvRect rect(100, 100, 150, 129);
  this->image->DrawRect(rect, kColour, false, true, nullptr);
  EXPECT_TRUE(Holds<P>(*this->image, this->image->Bounds(), [&](int32_t x, int32_t y) {
    const P pixel = this->Before(x, y);
    const bool side = x == rect.fLeft || x == rect.fRight;
    const bool level = y == rect.fTop || y == rect.fBottom;
    return Inside(rect, x, y) && side != level ? Xored(pixel, Narrowed<P>(kColour)) : pixel;
  }));
}

TYPED_TEST(Draw, OutlinesOnlyTheEdgesThatLieInTheClip) {
  using P = typename TypeParam::Record;
  this->image->SetClip({50, 50, 140, 140});
  this->image->DrawRect({40, 60, 150, 120}, kColour, false, false, nullptr);
  EXPECT_TRUE(Holds<P>(*this->image, this->image->Bounds(), [&](int32_t x, int32_t y) {
    const bool drawn = x >= 50 && x <= 140 && (y == 60 || y == 120);
    return drawn ? Narrowed<P>(kColour) : this->Before(x, y);
  }));
}

TYPED_TEST(Draw, DrawsWithAMaskOnceWhereTheMaskIsZero) {
  using P = typename TypeParam::Record;
  auto mask = New<ZvTiledImage<PxAlphaByte>>(260, 131);
  mask->PutByte(1, 120, 100);
  const ZvRect rect(100, 100, 150, 110);
  this->image->DrawRect(rect, kColour, false, true, mask.Get());
  EXPECT_TRUE(Holds<P>(*this->image, this->image->Bounds(), [&](int32_t x, int32_t y) {
    const P pixel = this->Before(x, y);
    const bool edge = Inside(rect, x, y) && !Inside({101, 101, 149, 109}, x, y);
    return edge && !(x == 120 && y == 100) ? Xored(pixel, Narrowed<P>(kColour)) : pixel;
  }));
  EXPECT_EQ(ByteAt(*mask, 100, 100), 255);
  EXPECT_EQ(ByteAt(*mask, 120, 100), 1);
  EXPECT_EQ(ByteAt(*mask, 120, 105), 0);
}

TYPED_TEST(Draw, DrawsNothingThroughAGrayMask) {
  using P = typename TypeParam::Record;
  auto mask = New<ZvTiledImage<PxGrayByte>>(260, 131);
  this->image->DrawRect({0, 0, 259, 130}, kColour, true, false, mask.Get());
  EXPECT_TRUE(Holds<P>(*this->image, this->image->Bounds(),
                       [&](int32_t x, int32_t y) { return this->Before(x, y); }));
}

TYPED_TEST(Draw, ClearsARectToTheDefaultPixel) {
  using P = typename TypeParam::Record;
  this->image->ClearRect({250, 5, 700, 7});
  const P expected = this->image->IsTiled() ? Narrowed<P>(kRgba64Clear) : P{};
  EXPECT_TRUE(Holds<P>(*this->image, this->image->Bounds(), [&](int32_t x, int32_t y) {
    return Inside({250, 5, 259, 7}, x, y) ? expected : this->Before(x, y);
  }));
}

TYPED_TEST(Draw, InvertsEveryPixel) {
  using P = typename TypeParam::Record;
  this->image->Invert();
  EXPECT_TRUE(Holds<P>(*this->image, this->image->Bounds(), [&](int32_t x, int32_t y) {
    P pixel = this->Before(x, y);
    pixel.Invert();
    return pixel;
  }));
}

TYPED_TEST(Draw, MovesAllPixelsAndLeavesZeroBehind) {
  using P = typename TypeParam::Record;
  for (const ZvPoint& delta :
       {ZvPoint(1, 0), ZvPoint(-1, 0), ZvPoint(0, 1), ZvPoint(0, -1), ZvPoint(130, -7),
        ZvPoint(-129, 64), ZvPoint(0, 0), ZvPoint(260, 0), ZvPoint(0, -131),
        ZvPoint(INT32_MAX, INT32_MIN), ZvPoint(INT32_MIN, INT32_MAX)}) {
    const auto copy = Own(this->before->NewLike(true, 0, 0));
    auto& image = static_cast<typename TypeParam::Image&>(*copy.Get());
    image.Offset(delta);
    ASSERT_TRUE(Holds<P>(
        image, image.Bounds(),
        [&](int32_t x, int32_t y) {
          const int64_t fromX = int64_t{x} - delta.x;
          const int64_t fromY = int64_t{y} - delta.y;
          const bool inside = fromX >= 0 && fromX < 260 && fromY >= 0 && fromY < 131;
          return inside ? this->Before(static_cast<int32_t>(fromX), static_cast<int32_t>(fromY))
                        : P{};
        }))
        << delta.x << ' ' << delta.y;
  }
}

TEST(Invert, ComplementsColourAndLeavesAlpha) {
  auto rgba = New<ZvTiledImage<PxRgbaBytes>>(1, 1);
  rgba->PutRgba(PxRgbaBytes::Of(1, 2, 3, 4), 0, 0);
  rgba->Invert();
  EXPECT_EQ(RgbaAt(*rgba, 0, 0), PxRgbaBytes::Of(254, 253, 252, 4));
  auto inks = New<ZvTypedImage<PxCmyka80>>(1, 1);
  inks->PutPixel({0, 1, 0xFFFF, 0x8000, 77}, 0, 0);
  inks->Invert();
  EXPECT_EQ(PixelAt<PxCmyka80>(*inks, 0, 0), (PxCmyka80{0xFFFF, 0xFFFE, 0, 0x7FFF, 77}));
  auto alpha = New<ZvTiledImage<PxAlphaByte>>(1, 1);
  alpha->PutByte(9, 0, 0);
  alpha->Invert();
  EXPECT_EQ(ByteAt(*alpha, 0, 0), 9);
}

TEST(DrawRect, VanishesInXorModeWhereAnOutlineMeetsItself) {
  auto image = New<ZvTiledImage<PxGrayByte>>(10, 10);
  image->DrawRect({2, 5, 7, 5}, kColour, false, true, nullptr);
  for (int32_t x = 3; x <= 6; ++x)
    EXPECT_EQ(PixelAt<PxGrayByte>(*image, x, 5).gray, 0) << x;
  // One pixel is drawn four times.
  image->DrawRect({1, 1, 1, 1}, kColour, false, true, nullptr);
  EXPECT_EQ(PixelAt<PxGrayByte>(*image, 1, 1).gray, 0);
}

TEST(DrawRect, OfATiledImageReachesOutsideTheImageIfTheClipDoes) {
  auto image = New<ZvTiledImage<PxGrayByte>>(10, 10);
  image->Resize(5, 5, true, kResampleNone, kColour);
  image->Resize(10, 10, true, kResampleNone, kRgba64White);  // grows in place: the clip stays
  image->DrawRect({-200, 0, 4, 4}, kOpaqueWhite, true, false, nullptr);
  EXPECT_EQ(PixelAt<PxGrayByte>(*image, 0, 0).gray, 255);
  EXPECT_EQ(PixelAt<PxGrayByte>(*image, -1, 0).gray, 0);
}

TEST(Drawing, ReportsAClipWhoseBottomIsTheHeight) {
  // Only a stream can bring such a clip: an image of 1 by 1 isn't resized when it is read.
  const auto stream = New<ZvMemoryStream>();
  for (const int32_t number : {1, 1, 0, 0, 0, 1})
    stream->WriteSInt32(number, nullptr, true);
  stream->WriteFloat(0, nullptr, true);
  stream->WriteFloat(0, nullptr, true);
  stream->WriteSInt8(0, nullptr, true);
  stream->Seek(0);
  auto image = New<ZvTiledImage<PxGrayByte>>(1, 1);
  image->ReadFrom(*stream);

  ReportRecorder reports;
  image->FillClip(kOpaqueWhite);
  image->DrawRect({0, 0, 0, 0}, kOpaqueWhite, true, false, nullptr);
  ASSERT_EQ(reports.Lines().size(), 2u);
  for (const std::string& line : reports.Lines()) {
    EXPECT_EQ(line.substr(0, 13), "ZvTiledImage(");
    EXPECT_EQ(line.substr(line.find(" : ")), " : mClippingRect.fBottom != this->Height()");
  }
  EXPECT_EQ(PixelAt<PxGrayByte>(*image, 0, 0).gray, 255);
}

}  // namespace
}  // namespace vm
