#include "image/ZvImage.h"

#include "foundation/FourCharCode.h"
#include "image/ImageTestSupport.h"
#include "support/ReportRecorder.h"
#include "support/VirtualSlot.h"

namespace vm {
namespace {

TEST(ZvImage, HasItsVirtualOperationsInTheirOrder) {
  // The destructor takes the places 0 and 1.
  EXPECT_EQ(VirtualSlot(&ZvImage::CreateSameClass), 2u);
  EXPECT_EQ(VirtualSlot(&ZvImage::ClassName), 3u);
  EXPECT_EQ(VirtualSlot(&ZvImage::WriteTo), 4u);
  EXPECT_EQ(VirtualSlot(&ZvImage::ReadFrom), 5u);
  EXPECT_EQ(VirtualSlot(&ZvImage::BitsPerPixel), 6u);
  EXPECT_EQ(VirtualSlot(&ZvImage::BytesPerPixel), 7u);
  EXPECT_EQ(VirtualSlot(&ZvImage::BitsPerChannel), 8u);
  EXPECT_EQ(VirtualSlot(&ZvImage::ChannelCount), 9u);
  EXPECT_EQ(VirtualSlot(&ZvImage::PixelKind), 10u);
  EXPECT_EQ(VirtualSlot(&ZvImage::ColorModel), 11u);
  EXPECT_EQ(VirtualSlot(&ZvImage::HasAlpha), 12u);
  EXPECT_EQ(VirtualSlot(&ZvImage::GetSize), 13u);
  EXPECT_EQ(VirtualSlot(&ZvImage::UsedBounds), 14u);
  EXPECT_EQ(VirtualSlot(&ZvImage::IsTiled), 15u);
  EXPECT_EQ(VirtualSlot(&ZvImage::GetRgba), 16u);
  EXPECT_EQ(VirtualSlot(&ZvImage::PutRgba), 17u);
  EXPECT_EQ(VirtualSlot(&ZvImage::GetRgb), 18u);
  EXPECT_EQ(VirtualSlot(&ZvImage::PutRgb), 19u);
  EXPECT_EQ(VirtualSlot(&ZvImage::GetByte), 20u);
  EXPECT_EQ(VirtualSlot(&ZvImage::PutByte), 21u);
  EXPECT_EQ(VirtualSlot(&ZvImage::GetRgba64), 22u);
  EXPECT_EQ(VirtualSlot(&ZvImage::PutRgba64), 23u);
  EXPECT_EQ(VirtualSlot(&ZvImage::GetChannel), 24u);
  EXPECT_EQ(VirtualSlot(&ZvImage::PutChannel), 25u);
  EXPECT_EQ(VirtualSlot(&ZvImage::SampleRgba), 26u);
  EXPECT_EQ(VirtualSlot(&ZvImage::SampleRgb), 27u);
  EXPECT_EQ(VirtualSlot(&ZvImage::SampleByte), 28u);
  EXPECT_EQ(VirtualSlot(&ZvImage::SampleDepth), 29u);
  EXPECT_EQ(VirtualSlot(&ZvImage::SampleRgba64), 30u);
  EXPECT_EQ(VirtualSlot(&ZvImage::SampleArea), 31u);
  EXPECT_EQ(VirtualSlot(&ZvImage::SplatRgba64), 32u);
  EXPECT_EQ(VirtualSlot(&ZvImage::Clear), 33u);
  EXPECT_EQ(VirtualSlot(&ZvImage::ClearRect), 34u);
  EXPECT_EQ(VirtualSlot(&ZvImage::CopyFrom), 35u);
  EXPECT_EQ(VirtualSlot(&ZvImage::CopyScaled), 36u);
  EXPECT_EQ(VirtualSlot(&ZvImage::CopyAdjusted), 37u);
  EXPECT_EQ(VirtualSlot(&ZvImage::CopyVisible), 38u);
  EXPECT_EQ(VirtualSlot(&ZvImage::SwapPixels), 39u);
  EXPECT_EQ(VirtualSlot(&ZvImage::BlendImage), 40u);
  EXPECT_EQ(VirtualSlot(&ZvImage::BlendMasked), 41u);
  EXPECT_EQ(VirtualSlot(&ZvImage::BlendRect), 42u);
  EXPECT_EQ(VirtualSlot(&ZvImage::BlendScaled), 43u);
  EXPECT_EQ(VirtualSlot(&ZvImage::BlendAdjusted), 44u);
  EXPECT_EQ(VirtualSlot(&ZvImage::PaintMasked), 45u);
  EXPECT_EQ(VirtualSlot(&ZvImage::CopyAlpha), 46u);
  EXPECT_EQ(VirtualSlot(&ZvImage::CopyImage), 47u);
  EXPECT_EQ(VirtualSlot(&ZvImage::MixImage), 48u);
  EXPECT_EQ(VirtualSlot(&ZvImage::Invert), 49u);
  EXPECT_EQ(VirtualSlot(&ZvImage::Offset), 50u);
  EXPECT_EQ(VirtualSlot(&ZvImage::NewLike), 51u);
  EXPECT_EQ(VirtualSlot(&ZvImage::Resize), 52u);
  EXPECT_EQ(VirtualSlot(&ZvImage::AddImage), 53u);
  EXPECT_EQ(VirtualSlot(&ZvImage::SubtractImage), 54u);
  EXPECT_EQ(VirtualSlot(&ZvImage::VisibleBounds), 55u);
  EXPECT_EQ(VirtualSlot(&ZvImage::SetClip), 56u);
  EXPECT_EQ(VirtualSlot(&ZvImage::GetClip), 57u);
  EXPECT_EQ(VirtualSlot(&ZvImage::ResetClip), 58u);
  EXPECT_EQ(VirtualSlot(&ZvImage::FillClip), 59u);
  EXPECT_EQ(VirtualSlot(&ZvImage::DrawRect), 60u);
  EXPECT_EQ(VirtualSlot(&ZvImage::DrawLine), 61u);
  EXPECT_EQ(VirtualSlot(&ZvImage::DrawOval), 62u);
  EXPECT_EQ(VirtualSlot(&ZvImage::DrawPolygon), 63u);
  EXPECT_EQ(VirtualSlot(&ZvImage::NewRow), 64u);
  EXPECT_EQ(VirtualSlot(&ZvImage::PutRow), 65u);
  EXPECT_EQ(VirtualSlot(&ZvImage::GetRow), 66u);
  EXPECT_EQ(VirtualSlot(&ZvImage::NewInterleavedCopy), 67u);
  EXPECT_EQ(VirtualSlot(&ZvImage::ImportBuffer), 68u);
  EXPECT_EQ(VirtualSlot(&ZvImage::ExportBuffer), 69u);
  EXPECT_EQ(VirtualSlot(&ZvImage::AppendBlocks), 70u);
  EXPECT_EQ(VirtualSlot(&ZvImage::Duplicate), 71u);
  EXPECT_EQ(VirtualSlot(&ZvTiledImage<PxRgbBytes>::SplatPixel), 72u);
  EXPECT_EQ(VirtualSlot(&ZvTypedImage<PxRgbBytes>::SplatPixel), 72u);
}

template <class Class>
class EveryImage : public ::testing::Test {};
TYPED_TEST_SUITE(EveryImage, AllImages, ImageTestNames);

TYPED_TEST(EveryImage, ReportsTheFiguresOfItsRecord) {
  using P = typename TypeParam::Record;
  const auto image = New<typename TypeParam::Image>(3, 2);
  EXPECT_EQ(image->BitsPerPixel(), P::kInfo.bitsPerPixel);
  EXPECT_EQ(image->BytesPerPixel(), P::kInfo.bytesPerPixel);
  EXPECT_EQ(image->BitsPerChannel(), P::kInfo.bitsPerChannel);
  EXPECT_EQ(image->ChannelCount(), P::kInfo.channels);
  EXPECT_EQ(image->PixelKind(), P::kInfo.kind);
  EXPECT_EQ(image->ColorModel(), P::kInfo.model);
  EXPECT_EQ(image->HasAlpha(), P::kInfo.hasAlpha);
  EXPECT_EQ(image->IsTiled(), (std::is_same_v<typename TypeParam::Image, ZvTiledImage<P>>));
  int32_t width = 0;
  int32_t height = 0;
  image->GetSize(width, height);
  EXPECT_EQ(width, 3);
  EXPECT_EQ(height, 2);
  EXPECT_EQ(image->GetRefCount(), 1u);
}

TYPED_TEST(EveryImage, IsAtLeastOnePixelLarge) {
  const auto image = New<typename TypeParam::Image>(0, -5);
  EXPECT_EQ(image->Width(), 1);
  EXPECT_EQ(image->Height(), 1);
  ZvRect clip;
  image->GetClip(clip);
  EXPECT_EQ(clip, ZvRect(0, 0, 0, 0));
}

TYPED_TEST(EveryImage, WritesEachViewAsItsRecordDoesAndReadsItBack) {
  using P = typename TypeParam::Record;
  ReportRecorder reports;  // PxCmykBytes reports what it can't convert
  Random random(7);
  auto image = New<typename TypeParam::Image>(4, 3);
  for (int round = 0; round < 50; ++round) {
    const int32_t x = static_cast<int32_t>(random() % 4);
    const int32_t y = static_cast<int32_t>(random() % 3);
    const P before = RandomRecord<P>(random);
    const auto check = [&](auto&& put, auto&& rule) {
      image->PutPixel(before, x, y);
      P expected = before;
      put();
      rule(expected);
      EXPECT_EQ(Hex(PixelAt<P>(*image, x, y)), Hex(expected));
    };
    const PxRgbaBytes rgba = RandomRecord<PxRgbaBytes>(random);
    const PxRgba64 words = RandomRecord<PxRgba64>(random);
    const auto byte = static_cast<uint8_t>(random());
    check([&] { image->PutRgba(rgba, x, y); }, [&](P& p) { p.PutRgba(rgba); });
    check([&] { image->PutRgb(rgba.GetRgb(), x, y); }, [&](P& p) { p.PutRgb(rgba.GetRgb()); });
    check([&] { image->PutRgba64(words, x, y); }, [&](P& p) { p.PutRgba64(words); });
    check([&] { image->PutByte(byte, x, y); }, [&](P& p) { p.PutByte(byte); });

    image->PutPixel(before, x, y);
    EXPECT_EQ(RgbaAt(*image, x, y), before.GetRgba());
    EXPECT_EQ(Rgba64At(*image, x, y), before.GetRgba64());
    EXPECT_EQ(ByteAt(*image, x, y), before.GetByte());
    PxRgbBytes rgb = PxRgbBytes::Of(1, 2, 3);
    image->GetRgb(rgb, x, y);
    if constexpr (std::is_same_v<P, PxCmykBytes>)
      EXPECT_EQ(rgb, PxRgbBytes::Of(1, 2, 3));  // nothing converted: what the caller had stays
    else
      EXPECT_EQ(rgb, before.GetRgb());
  }
}

TYPED_TEST(EveryImage, ReadsAndWritesSingleChannels) {
  using P = typename TypeParam::Record;
  Random random(8);
  auto image = New<typename TypeParam::Image>(130, 2);
  for (int32_t channel = -1; channel <= 5; ++channel) {
    const P before = RandomRecord<P>(random);
    image->PutPixel(before, 129, 1);
    uint8_t sample[4] = {};
    uint8_t expectedSample[4] = {};
    image->GetChannel(sample, 129, 1, channel);
    before.GetChannel(expectedSample, channel);
    EXPECT_EQ(std::memcmp(sample, expectedSample, 4), 0);

    P expected = before;
    const P donor = RandomRecord<P>(random);
    donor.GetChannel(sample, channel);
    expected.PutChannel(sample, channel);
    image->PutChannel(sample, 129, 1, channel);
    EXPECT_EQ(Hex(PixelAt<P>(*image, 129, 1)), Hex(expected));
  }
}

TYPED_TEST(EveryImage, MakesImagesOfTheSameClass) {
  using P = typename TypeParam::Record;
  Random random(9);
  auto image = New<typename TypeParam::Image>(20, 10);
  Randomize<P>(*image, random);
  image->SetResolution(72, 36);
  image->SetClip({1, 1, 5, 5});

  const auto same = Own(image->NewLike(true, 0, 0));
  auto* const twin = dynamic_cast<typename TypeParam::Image*>(same.Get());
  ASSERT_NE(twin, nullptr);
  EXPECT_EQ(twin->Bounds(), image->Bounds());
  EXPECT_TRUE(Holds<P>(*twin, twin->Bounds(),
                       [&](int32_t x, int32_t y) { return PixelAt<P>(*image, x, y); }));
  ZvRect clip;
  twin->GetClip(clip);
  EXPECT_EQ(clip, twin->Bounds());
  EXPECT_EQ(twin->XRes(), 0.0f);

  const auto other = Own(image->NewLike(true, 30, 5));
  auto* const part = dynamic_cast<typename TypeParam::Image*>(other.Get());
  ASSERT_NE(part, nullptr);
  EXPECT_EQ(part->Width(), 30);
  EXPECT_EQ(part->Height(), 5);
  EXPECT_TRUE(Holds<P>(*part, {0, 0, 19, 4},
                       [&](int32_t x, int32_t y) { return PixelAt<P>(*image, x, y); }));
}

TEST(ZvImage, LimitsTheClipToTheImage) {
  auto image = New<ZvTiledImage<PxRgbBytes>>(10, 8);
  ZvRect clip;
  image->SetClip({-3, 2, 20, 4});
  image->GetClip(clip);
  EXPECT_EQ(clip, ZvRect(0, 2, 9, 4));
  image->SetClip({12, 2, 20, 4});
  image->GetClip(clip);
  EXPECT_EQ(clip, ZvRect(12, 2, 9, 4));  // empty, and nothing more is done about it
  image->ResetClip();
  image->GetClip(clip);
  EXPECT_EQ(clip, ZvRect(0, 0, 9, 7));
}

TEST(ZvImage, HasNoResolutionUntilOneIsSet) {
  const auto image = New<ZvTypedImage<PxGrayByte>>(1, 1);
  EXPECT_EQ(image->XRes(), 0.0f);
  EXPECT_EQ(image->YRes(), 0.0f);
}

TEST(VisibleBounds, IsTheWholeImageOnceThreeCornersShow) {
  auto image = New<ZvTiledImage<PxRgbaBytes>>(200, 150);
  const PxRgbaBytes visible = PxRgbaBytes::Of(0, 0, 0, 10);
  image->PutRgba(visible, 0, 0);
  image->PutRgba(visible, 199, 0);
  EXPECT_EQ(image->VisibleBounds(), ZvRect(0, 0, 199, 0));
  image->PutRgba(visible, 0, 149);
  EXPECT_EQ(image->VisibleBounds(), ZvRect(0, 0, 199, 149));
}

TEST(VisibleBounds, CoversThePixelsWithAnAlphaAboveNine) {
  auto image = New<ZvTiledImage<PxRgbaBytes>>(300, 300);
  EXPECT_EQ(image->VisibleBounds(), kEmptyRect);
  image->PutRgba(PxRgbaBytes::Of(255, 255, 255, 9), 10, 10);
  EXPECT_EQ(image->VisibleBounds(), kEmptyRect);
  image->PutRgba(PxRgbaBytes::Of(0, 0, 0, 10), 100, 200);
  EXPECT_EQ(image->VisibleBounds(), ZvRect(100, 200, 100, 200));
  image->PutRgba(PxRgbaBytes::Of(0, 0, 0, 255), 250, 129);
  EXPECT_EQ(image->VisibleBounds(), ZvRect(100, 129, 250, 200));
  EXPECT_EQ(New<ZvTypedImage<PxGrayByte>>(5, 4)->VisibleBounds(), ZvRect(0, 0, 4, 3));
}

TEST(VisibleBounds, LeavesAnEmptyImageWithoutTiles) {
  auto image = New<ZvTiledImage<PxRgbaBytes>>(500, 500);
  image->VisibleBounds();
  EXPECT_EQ(image->Tiles().TileCount(), 0u);
}

TEST(AddImage, LimitsAtFullScaleAndCountsAlphaIn) {
  auto a = New<ZvTiledImage<PxRgba64>>(200, 3);
  auto b = New<ZvTypedImage<PxRgba64>>(150, 5);
  for (int32_t y = 0; y < 3; ++y) {
    for (int32_t x = 0; x < 200; ++x)
      a->PutPixel({1000, 0xFFF0, 0, 40000}, x, y);
  }
  for (int32_t y = 0; y < 5; ++y) {
    for (int32_t x = 0; x < 150; ++x)
      b->PutPixel({2000, 0x20, 7, 30000}, x, y);
  }
  a->AddImage(b.Get());
  EXPECT_TRUE(Holds<PxRgba64>(*a, {0, 0, 149, 2}, [](int32_t, int32_t) {
    return PxRgba64{3000, 0xFFFF, 7, 0xFFFF};
  }));
  EXPECT_TRUE(Holds<PxRgba64>(*a, {150, 0, 199, 2}, [](int32_t, int32_t) {
    return PxRgba64{1000, 0xFFF0, 0, 40000};
  }));
  a->SubtractImage(b.Get());
  EXPECT_EQ(Rgba64At(*a, 0, 0), (PxRgba64{1000, 0xFFDF, 0, 35535}));
  a->SubtractImage(b.Get());
  EXPECT_EQ(Rgba64At(*a, 149, 2), (PxRgba64{0, 0xFFBF, 0, 5535}));
}

TEST(AddImage, AddsCoverageBytesBetweenAlphaImages) {
  auto a = New<ZvTiledImage<PxAlphaByte>>(3, 1);
  auto b = New<ZvTypedImage<PxAlphaByte>>(3, 1);
  a->PutPixel({200}, 0, 0);
  a->PutPixel({10}, 1, 0);
  b->PutPixel({100}, 0, 0);
  b->PutPixel({20}, 1, 0);
  b->PutPixel({0}, 2, 0);
  a->AddImage(b.Get());
  EXPECT_EQ(ByteAt(*a, 0, 0), 255);
  EXPECT_EQ(ByteAt(*a, 1, 0), 30);
  a->SubtractImage(b.Get());
  EXPECT_EQ(ByteAt(*a, 0, 0), 155);
  EXPECT_EQ(ByteAt(*a, 1, 0), 10);
  a->SubtractImage(b.Get());
  EXPECT_EQ(ByteAt(*a, 1, 0), 0);
}

TEST(AddImage, LeavesATargetAloneWhereTheCoverageToAddIsZero) {
  auto a = New<ZvTiledImage<PxAlphaByte>>(400, 400);
  auto b = New<ZvTiledImage<PxAlphaByte>>(400, 400);
  b->PutPixel({1}, 300, 300);
  a->AddImage(b.Get());
  EXPECT_EQ(ByteAt(*a, 300, 300), 1);
  EXPECT_EQ(a->Tiles().TileCount(), 1u);
}

TEST(AddImage, AddsDepthsWithoutALimitBetweenTiledDepthImages) {
  auto a = New<ZvTiledImage<PxDepthFloat>>(130, 1);
  auto b = New<ZvTiledImage<PxDepthFloat>>(130, 1);
  a->PutPixel({0.75f}, 129, 0);
  b->PutPixel({0.5f}, 129, 0);
  a->AddImage(b.Get());
  EXPECT_EQ(PixelAt<PxDepthFloat>(*a, 129, 0).depth, 1.25f);
  // Subtracting has no such path: words, 65535 * 1.25 = 81918.75 cut to 16 bits is 16382, less
  // 32767 is 0.
  a->SubtractImage(b.Get());
  EXPECT_EQ(PixelAt<PxDepthFloat>(*a, 129, 0).depth, 0.0f);
}

TEST(AddImage, ReportsAMissingSource) {
  ReportRecorder reports;
  auto image = New<ZvTiledImage<PxRgbBytes>>(2, 2);
  image->AddImage(nullptr);
  image->SubtractImage(nullptr);
  ASSERT_EQ(reports.Lines().size(), 2u);
  for (const std::string& line : reports.Lines()) {
    EXPECT_EQ(line.substr(0, 8), "ZVImage(");
    EXPECT_EQ(line.substr(line.find(" : ")), " : fromImage != nil");
  }
}

TEST(CopyAlpha, WritesTheCoverageOfTheSourceIntoTheAlpha) {
  auto image = New<ZvTiledImage<PxRgbaBytes>>(200, 2);
  auto mask = New<ZvTypedImage<PxAlphaByte>>(200, 2);
  for (int32_t x = 0; x < 200; ++x) {
    image->PutRgba(PxRgbaBytes::Of(1, 2, 3, 4), x, 1);
    mask->PutByte(static_cast<uint8_t>(x), x, 0);
  }
  const ZvRect clip(0, 0, 149, 1);
  image->CopyAlpha(mask.Get(), {0, 0, 199, 0}, {0, 1, 199, 1}, kResampleNone, &clip);
  for (int32_t x = 0; x < 200; ++x)
    ASSERT_EQ(RgbaAt(*image, x, 1),
              PxRgbaBytes::Of(1, 2, 3, x < 150 ? static_cast<uint8_t>(x) : 4));
}

TEST(CopyAlpha, LosesTheFractionOfItsRatio) {
  auto image = New<ZvTiledImage<PxRgbaBytes>>(10, 1);
  auto mask = New<ZvTiledImage<PxAlphaByte>>(20, 1);
  for (int32_t x = 0; x < 20; ++x)
    mask->PutByte(static_cast<uint8_t>(100 + x), x, 0);
  for (const int32_t mode : {kResampleNearest, kResampleBilinear}) {
    image->Clear();
    // Extents 7 over 4: the ratio is 1.
    image->CopyAlpha(mask.Get(), {2, 0, 9, 0}, {1, 0, 5, 0}, mode, nullptr);
    for (int32_t i = 0; i <= 4; ++i)
      EXPECT_EQ(RgbaAt(*image, 1 + i, 0).alpha, 102 + i) << mode;
    // Extents 9 over 4: the ratio is 2.
    image->CopyAlpha(mask.Get(), {0, 0, 9, 0}, {0, 0, 4, 0}, mode, nullptr);
    for (int32_t i = 0; i <= 4; ++i)
      EXPECT_EQ(RgbaAt(*image, i, 0).alpha, 100 + 2 * i) << mode;
    EXPECT_EQ(RgbaAt(*image, 5, 0).alpha, 106) << mode;
  }
}

TEST(CopyAlpha, ReportsAMissingSource) {
  ReportRecorder reports;
  auto image = New<ZvTiledImage<PxRgbaBytes>>(2, 2);
  image->CopyAlpha(nullptr, {0, 0, 1, 1}, {0, 0, 1, 1}, kResampleNone, nullptr);
  EXPECT_EQ(reports.Lines().size(), 1u);
  EXPECT_EQ(image->Tiles().TileCount(), 0u);
}

// --- Bilinear reads ---

TEST(Sample, FadesToTheDefaultPixelAtTheEdgeOfATiledImage) {
  auto image = New<ZvTiledImage<PxGrayByte>>(2, 1);
  image->PutPixel({200}, 0, 0);
  image->PutPixel({100}, 1, 0);
  PxGrayByte out;
  image->Sample(out, 0.5f, 0);
  EXPECT_EQ(out.gray, (100 * 128 + 200 * 128) >> 8);
  image->Sample(out, 1.5f, 0);  // to the right of the last pixel: half of it
  EXPECT_EQ(out.gray, 50);
  image->Sample(out, 0, 0.25f);
  EXPECT_EQ(out.gray, (0 * 64 + 200 * 192) >> 8);
}

TEST(Sample, RepeatsTheLastPixelAtTheEdgeOfARowImage) {
  auto image = New<ZvTypedImage<PxGrayByte>>(2, 2);
  image->PutPixel({200}, 0, 0);
  image->PutPixel({100}, 1, 0);
  image->PutPixel({40}, 0, 1);
  image->PutPixel({80}, 1, 1);
  PxGrayByte out;
  image->Sample(out, 1.5f, 0);
  EXPECT_EQ(out.gray, 100);
  image->Sample(out, 0, 1.5f);
  EXPECT_EQ(out.gray, 40);
  image->Sample(out, 0, 700);
  EXPECT_EQ(out.gray, 40);
  image->Sample(out, 0, -700);
  EXPECT_EQ(out.gray, 200);
  image->Sample(out, 0.5f, 0.5f);
  // Rows first: (100*128+200*128)>>8 = 150, (80*128+40*128)>>8 = 60; then (60*128+150*128)>>8.
  EXPECT_EQ(out.gray, 105);
}

TEST(Sample, ComparesBitsWithAHalfOnEachAxis) {
  auto image = New<ZvTiledImage<PxGrayBit>>(2, 2);
  image->PutPixel({1}, 0, 0);
  PxGrayBit out;
  image->Sample(out, 0.4f, 0.4f);
  EXPECT_EQ(out.value,
            1);  // 0.6 in x is 1; 0.6 of that in y is 1 again, though the area's share is 0.36
  image->Sample(out, 0.5f, 0);
  EXPECT_EQ(out.value, 0);
  image->Sample(out, 0.4f, 0.6f);
  EXPECT_EQ(out.value, 0);
}

TEST(Sample, SurvivesPositionsOfAnySize) {
  auto tiled = New<ZvTiledImage<PxRgbaBytes>>(2, 2);
  auto row = New<ZvTypedImage<PxRgbaBytes>>(2, 2);
  PxRgbaBytes out;
  for (const float at : {1e30f, -1e30f, NAN, INFINITY, 2147483648.0f}) {
    tiled->SampleRgba(out, at, at);
    EXPECT_EQ(out, PxRgbaBytes{});
    row->SampleRgba(out, at, at);
  }
  EXPECT_EQ(tiled->Tiles().TileCount(), 0u);
}

TEST(SampleDepth, IsOneAtWhite) {
  auto image = New<ZvTypedImage<PxRgbBytes>>(1, 1);
  image->PutRgb(PxRgbBytes::Of(255, 255, 255), 0, 0);
  float depth = 0;
  image->SampleDepth(depth, 0, 0);
  EXPECT_EQ(depth, 1.0f);
  image->PutRgb(PxRgbBytes::Of(153, 0, 0), 0, 0);
  image->SampleDepth(depth, 0, 0);
  EXPECT_EQ(depth, 0.2f);
}

TEST(SampleArea, IsTheMeanOfFourReadsAndOpaque) {
  auto image = New<ZvTypedImage<PxRgbaBytes>>(4, 4);
  image->PutRgba(PxRgbaBytes::Of(100, 0, 0, 0), 1, 1);
  image->PutRgba(PxRgbaBytes::Of(0, 100, 0, 0), 3, 1);
  image->PutRgba(PxRgbaBytes::Of(0, 0, 100, 0), 1, 3);
  image->PutRgba(PxRgbaBytes::Of(200, 200, 200, 0), 3, 3);
  PxRgbaBytes out;
  image->SampleArea(out, 2, 2, 4);  // s is 1: the four pixels themselves
  // Each half mix is (a*128 + b*128 + 127) >> 8, so a half is rounded down.
  EXPECT_EQ(out, PxRgbaBytes::Of(75, 75, 75, 255));
}

TEST(SplatPixel, SharesAPixelAmongFourNeighbours) {
  auto image = New<ZvTiledImage<PxGrayByte>>(4, 4);
  image->SplatPixel({255}, 1.5f, 1.25f);
  // w = 256 * t: (0.5*0.75, 0.5*0.75, 0.5*0.25, 0.5*0.25) = 96, 96, 32, 32; 255*96>>8 = 95,
  // 255*32>>8 = 31.
  EXPECT_EQ(PixelAt<PxGrayByte>(*image, 1, 1).gray, 95);
  EXPECT_EQ(PixelAt<PxGrayByte>(*image, 2, 1).gray, 95);
  EXPECT_EQ(PixelAt<PxGrayByte>(*image, 1, 2).gray, 31);
  EXPECT_EQ(PixelAt<PxGrayByte>(*image, 2, 2).gray, 31);
}

TEST(SplatPixel, LetsTheLastOfCoincidingNeighboursWin) {
  auto image = New<ZvTypedImage<PxGrayByte>>(2, 2);
  image->SplatPixel({255}, 1.5f, 1.25f);
  // All four are the pixel (1, 1), mixed from 0 each; the last one written has the weight 0.5 *
  // 0.25.
  EXPECT_EQ(PixelAt<PxGrayByte>(*image, 1, 1).gray, 31);
  EXPECT_EQ(PixelAt<PxGrayByte>(*image, 0, 0).gray, 0);
  image->SplatRgba64(kOpaqueWhite, 0, 0);
  EXPECT_EQ(PixelAt<PxGrayByte>(*image, 0, 0).gray, 255);
}

}  // namespace
}  // namespace vm
