// Scaled, recoloured and masked transfers with values worked out from their rules.

#include <climits>
#include <cmath>
#include <limits>
#include <vector>

#include "image/support/RandomImages.h"
#include "image/ZvTiledImage.h"
#include "image/ZvTypedImage.h"
#include "support/ReportRecorder.h"

namespace vm {
namespace {

template <class Image>
ZvSmartPtr<Image> New(int32_t width, int32_t height) {
  return ZvSmartPtr<Image>::Adopt(new Image(width, height));
}

using Rgba = ZvTiledImage<PxRgbaBytes>;
using Rgb = ZvTiledImage<PxRgbBytes>;
using Alpha = ZvTiledImage<PxAlphaByte>;

// One row of opaque grays.
ZvSmartPtr<Rgba> GrayRow(const std::vector<int32_t>& values, int32_t height = 1) {
  const auto image = New<Rgba>(static_cast<int32_t>(values.size()), height);
  for (int32_t y = 0; y < height; ++y) {
    for (size_t x = 0; x < values.size(); ++x) {
      const auto v = static_cast<uint8_t>(values[x]);
      image->PutRgba(PxRgbaBytes::Of(v, v, v, 255), static_cast<int32_t>(x), y);
    }
  }
  return image;
}

std::vector<int32_t> RedRow(const ZvImage& image, int32_t y = 0) {
  std::vector<int32_t> values;
  for (int32_t x = 0; x < image.Width(); ++x) {
    PxRgbaBytes pixel;
    image.GetRgba(pixel, x, y);
    values.push_back(pixel.red);
  }
  return values;
}

PxRgbaBytes RgbaAt(const ZvImage& image, int32_t x, int32_t y) {
  PxRgbaBytes pixel;
  image.GetRgba(pixel, x, y);
  return pixel;
}

// --- frames

TEST(CopyScaled, EqualExtentsAreAnUnscaledCopyInEveryMode) {
  const auto from = GrayRow({10, 20, 30, 40, 50});
  for (int32_t mode = 0; mode <= 8; ++mode) {
    const auto to = New<Rgba>(5, 1);
    to->CopyScaled(from.Get(), {1, 0, 3, 0}, {2, 0, 4, 0}, mode, nullptr);
    // One pixel high: extent 0, which counts as 1 on the target only. So the extents differ here
    // ...
    const auto tall = GrayRow({10, 20, 30, 40, 50}, 2);
    const auto tallTo = New<Rgba>(5, 2);
    tallTo->CopyScaled(tall.Get(), {1, 0, 3, 1}, {2, 0, 4, 1}, mode, nullptr);
    // ... and are equal here.
    EXPECT_EQ(RedRow(*tallTo), (std::vector<int32_t>{0, 0, 20, 30, 40})) << "mode " << mode;
  }
}

TEST(CopyScaled, ModeNoneCopiesTheSmallerExtents) {
  const auto from = GrayRow({10, 20, 30, 40, 50}, 2);
  const auto to = New<Rgba>(9, 2);
  to->CopyScaled(from.Get(), {0, 0, 4, 1}, {1, 0, 3, 1}, kResampleNone, nullptr);
  EXPECT_EQ(RedRow(*to), (std::vector<int32_t>{0, 10, 20, 30, 0, 0, 0, 0, 0}));
  to->CopyScaled(from.Get(), {3, 0, 4, 1}, {5, 0, 8, 1}, kResampleNone, nullptr);
  EXPECT_EQ(RedRow(*to), (std::vector<int32_t>{0, 10, 20, 30, 0, 40, 50, 0, 0}));
}

TEST(CopyScaled, ModeSixLeavesTheTargetAndReportsNothing) {
  const auto from = GrayRow({10, 20, 30, 40, 50});
  const auto to = GrayRow({1, 2, 3});
  to->CopyScaled(from.Get(), from->Bounds(), to->Bounds(), 6, nullptr);
  to->BlendScaled(from.Get(), from->Bounds(), to->Bounds(), 1, 6, nullptr);
  to->CopyAdjusted(from.Get(), from->Bounds(), to->Bounds(), 1, 1, 1, 6, nullptr);
  to->BlendAdjusted(from.Get(), from->Bounds(), to->Bounds(), 1, 1, 1, 1, 6, nullptr);
  EXPECT_EQ(RedRow(*to), (std::vector<int32_t>{1, 2, 3}));
}

TEST(CopyScaled, ABottomEqualToTheHeightIsReported) {
  const auto from = GrayRow({10, 20, 30});
  const auto to = New<Rgba>(9, 1);
  const auto row = New<ZvTypedImage<PxRgbaBytes>>(9, 1);
  const ZvRect tooTall(0, 0, 2, 1);
  ReportRecorder reports;
  to->CopyScaled(from.Get(), tooTall, {0, 0, 8, 0}, 1, nullptr);
  row->CopyAdjusted(from.Get(), tooTall, {0, 0, 8, 0}, 1, 1, 1, 1, nullptr);
  to->BlendScaled(from.Get(), tooTall, {0, 0, 8, 0}, 1, 1, nullptr);
  to->BlendAdjusted(from.Get(), tooTall, {0, 0, 8, 0}, 1, 1, 1, 1, 1, nullptr);
  to->BlendMasked(from.Get(), New<Alpha>(1, 1).Get(), tooTall, {0, 0}, 1, nullptr);
  EXPECT_EQ(reports.Lines(), (Reports{"ZvTiledImage(741) : fromRect.fBottom != from->Height()",
                                      "ZvImage(812) : fromRect.fBottom != from->Height()",
                                      "ZvTiledImage(1061) : fromRect.fBottom != from->Height()",
                                      "ZvTiledImage(1134) : fromRect.fBottom != from->Height()",
                                      "ZvTiledImage(988) : fromRect.fBottom != from->Height()"}));
}

TEST(CopyScaled, ANullSourceIsReportedAndTransfersNothing) {
  const auto to = GrayRow({1, 2, 3});
  const auto mask = New<Alpha>(3, 1);
  ReportRecorder reports;
  to->CopyScaled(nullptr, {0, 0, 2, 0}, {0, 0, 1, 0}, 1, nullptr);
  to->CopyAdjusted(nullptr, {0, 0, 2, 0}, {0, 0, 1, 0}, 0, 0, 0, 1, nullptr);
  to->BlendScaled(nullptr, {0, 0, 2, 0}, {0, 0, 1, 0}, 1, 1, nullptr);
  to->BlendAdjusted(nullptr, {0, 0, 2, 0}, {0, 0, 1, 0}, 0, 0, 0, 1, 1, nullptr);
  to->BlendMasked(nullptr, mask.Get(), {0, 0, 2, 0}, {0, 0}, 1, nullptr);
  EXPECT_EQ(reports.Lines(),
            (Reports{"ZvTiledImage(741) : from != nil", "ZvTiledImage(812) : from != nil",
                     "ZvTiledImage(1061) : from != nil", "ZvTiledImage(1134) : from != nil",
                     "ZvTiledImage(988) : from != nil"}));
  EXPECT_EQ(RedRow(*to), (std::vector<int32_t>{1, 2, 3}));
}

// --- mode 1

TEST(CopyScaledNearest, DividesTheExtentsInIntegers) {
  const auto from = GrayRow({0, 10, 20, 30, 40, 50, 60, 70});
  const auto to = New<Rgba>(5, 1);
  // Extents 7 over 4: 0, 7/4, 14/4, 21/4, 28/4.
  to->CopyScaled(from.Get(), {0, 0, 7, 0}, {0, 0, 4, 0}, kResampleNearest, nullptr);
  EXPECT_EQ(RedRow(*to), (std::vector<int32_t>{0, 10, 30, 50, 70}));
}

// REQUIRED: the source rectangle's corner is not added.
TEST(CopyScaledNearest, ReadsFromTheSourcesCornerWhateverTheRectangleSays) {
  const auto from = GrayRow({0, 10, 20, 30, 40, 50, 60, 70});
  const auto to = New<Rgba>(5, 1);
  to->CopyScaled(from.Get(), {5, 0, 7, 0}, {0, 0, 4, 0}, kResampleNearest, nullptr);
  EXPECT_EQ(RedRow(*to), (std::vector<int32_t>{0, 0, 10, 10, 20}));
}

TEST(CopyScaledNearest, CountsFromTheTargetRectanglesSideEvenIfThatIsCutOff) {
  const auto from = GrayRow({0, 10, 20, 30, 40, 50, 60, 70});
  const auto to = New<Rgba>(3, 1);
  to->CopyScaled(from.Get(), {0, 0, 7, 0}, {-2, 0, 2, 0}, kResampleNearest, nullptr);
  EXPECT_EQ(RedRow(*to), (std::vector<int32_t>{30, 50, 70}));
}

// Ink records can't be written from colour, but between two images of one class the records go over
// raw.
TEST(CopyScaledNearest, CopiesRecordsOfOneClassAsTheyAre) {
  const auto from = New<ZvTiledImage<PxCmykBytes>>(4, 1);
  for (int32_t x = 0; x < 4; ++x)
    from->PutPixel({uint8_t(x), 2, 3, 4}, x, 0);
  const auto to = New<ZvTiledImage<PxCmykBytes>>(2, 1);
  to->CopyScaled(from.Get(), {0, 0, 3, 0}, {0, 0, 1, 0}, kResampleNearest, nullptr);
  PxCmykBytes pixel;
  to->GetPixel(pixel, 1, 0);
  EXPECT_EQ(pixel, (PxCmykBytes{3, 2, 3, 4}));
}

// 200 widens to 0xC8C8 through the neutral view; gray with alpha shifts its alpha by 8 only.
TEST(CopyScaledNearest, GoesThroughTheWordViewBetweenClasses) {
  const auto from = New<ZvTiledImage<PxGrayABytes>>(3, 1);
  for (int32_t x = 0; x < 3; ++x)
    from->PutPixel({200, 255}, x, 0);
  const auto to = New<ZvTiledImage<PxRgba64>>(2, 1);
  to->CopyScaled(from.Get(), {0, 0, 2, 0}, {0, 0, 1, 0}, kResampleNearest, nullptr);
  PxRgba64 pixel;
  to->GetRgba64(pixel, 1, 0);
  EXPECT_EQ(pixel, (PxRgba64{0xC8C8, 0xC8C8, 0xC8C8, 0xFF00}));
}

// A row image asks for each row of a raw loop; a target of 3 rows over an extent of 6 takes source
// rows 0, 3 and 6.
TEST(CopyScaledNearest, ReportsTheRowsThatARowImageHasnt) {
  const auto from = New<ZvTypedImage<PxGrayByte>>(700, 4);
  const auto to = New<ZvTypedImage<PxGrayByte>>(700, 3);
  ReportRecorder reports;
  to->CopyScaled(from.Get(), {0, 0, 699, 6}, {0, 0, 699, 2}, kResampleNearest, nullptr);
  EXPECT_EQ(reports.Lines(), Reports{"ZvImage(89) : y < mHeight"});
}

// --- mode 2

// REQUIRED: the position is cut to a whole pixel before the bilinear read, so nothing is
// interpolated.
TEST(CopyScaledBilinear, TruncatesThePosition) {
  const auto from = GrayRow({0, 100, 200, 40});
  const auto to = New<Rgba>(7, 1);
  // 3 over 6 in halves: 0, 0.5, 1, 1.5, 2, 2.5, 3.
  to->CopyScaled(from.Get(), {0, 0, 3, 0}, {0, 0, 6, 0}, kResampleBilinear, nullptr);
  EXPECT_EQ(RedRow(*to), (std::vector<int32_t>{0, 0, 100, 100, 200, 200, 40}));
}

// REQUIRED: the position is offset * extent times a float reciprocal. 41 * 7 * (1/41) is 6.9999995,
// not 7.
TEST(CopyScaledBilinear, MultipliesByTheReciprocalInSinglePrecision) {
  const auto from = GrayRow({0, 10, 20, 30, 40, 50, 60, 70});
  const auto to = New<Rgba>(42, 1);
  to->CopyScaled(from.Get(), {0, 0, 7, 0}, {0, 0, 41, 0}, kResampleBilinear, nullptr);
  EXPECT_EQ(RgbaAt(*to, 41, 0).red, 60);
  to->CopyScaled(from.Get(), {0, 0, 7, 0}, {0, 0, 41, 0}, kResampleNearest, nullptr);
  EXPECT_EQ(RgbaAt(*to, 41, 0).red, 70);
}

// REQUIRED: the mix of ink records darkens by one each time even at fraction 0: along x, then along
// y.
TEST(CopyScaledBilinear, DarkensInkTwice) {
  const auto from = New<ZvTiledImage<PxCmykaBytes>>(4, 1);
  for (int32_t x = 0; x < 4; ++x)
    from->PutPixel({0, 0, 0, 0, 200}, x, 0);
  const auto to = New<Alpha>(3, 1);
  to->CopyScaled(from.Get(), {0, 0, 3, 0}, {0, 0, 2, 0}, kResampleBilinear, nullptr);
  uint8_t byte;
  to->GetByte(byte, 0, 0);
  EXPECT_EQ(byte, 198);
}

// REQUIRED: the mix of words has weight 1 at fraction 0. A lone 1000 among zeros loses one in each
// direction.
TEST(CopyScaledBilinear, MixesATraceOfTheNeighboursIntoWords) {
  const auto from = New<ZvTiledImage<PxRgb48>>(4, 2);
  from->PutPixel({1000, 1000, 1000}, 0, 0);
  const auto to = New<ZvTiledImage<PxRgba64>>(3, 1);
  to->CopyScaled(from.Get(), {0, 0, 3, 0}, {0, 0, 2, 0}, kResampleBilinear, nullptr);
  PxRgba64 pixel;
  to->GetRgba64(pixel, 0, 0);
  EXPECT_EQ(pixel, (PxRgba64{998, 998, 998, 0xFFFF}));
}

// At most 8 bits go through the coverage byte: of a gray image that is 255 always, and gray stores
// 0 for it.
TEST(CopyScaledBilinear, TakesTheViewByTheTargetsBits) {
  const auto from = New<ZvTiledImage<PxGrayByte>>(4, 1);
  for (int32_t x = 0; x < 4; ++x)
    from->PutPixel({77}, x, 0);
  const auto alpha = New<Alpha>(3, 1);
  alpha->CopyScaled(from.Get(), {0, 0, 3, 0}, {0, 0, 2, 0}, kResampleBilinear, nullptr);
  uint8_t byte;
  alpha->GetByte(byte, 1, 0);
  EXPECT_EQ(byte, 255);
  const auto gray = New<ZvTiledImage<PxGrayByte>>(3, 1);
  gray->CopyScaled(from.Get(), {0, 0, 3, 0}, {0, 0, 2, 0}, kResampleBilinear, nullptr);
  EXPECT_EQ(RgbaAt(*gray, 1, 0), PxRgbaBytes::Of(0, 0, 0, 255));
  // 16 bits go through PxRgbBytes, which makes the pixel opaque.
  const auto grayAlpha = New<ZvTiledImage<PxGrayABytes>>(3, 1);
  grayAlpha->CopyScaled(from.Get(), {0, 0, 3, 0}, {0, 0, 2, 0}, kResampleBilinear, nullptr);
  EXPECT_EQ(RgbaAt(*grayAlpha, 1, 0), PxRgbaBytes::Of(77, 77, 77, 255));
}

// --- modes 3 to 5: halfway between 100 and 200 in the row 0, 100, 200, 40, with all rows alike

class Kernels : public ::testing::Test {
 protected:
  // 3 over 6: target 3 stands at 1.5.
  int32_t Halfway(int32_t mode) {
    const auto from = GrayRow({0, 100, 200, 40}, 4);
    const auto to = New<Rgba>(7, 4);
    to->CopyScaled(from.Get(), {0, 0, 3, 3}, {0, 0, 6, 6}, mode, nullptr);
    PxRgbaBytes sampled;
    from->SampleKernel(sampled, 1.5F, 1.5F, mode);
    EXPECT_EQ(RgbaAt(*to, 3, 3), sampled);
    EXPECT_EQ(sampled.alpha, 255);
    return sampled.red;
  }
};

// -0.0625, 0.5625, 0.5625, -0.0625: 166.25, and + 0.5 truncates to 166.
TEST_F(Kernels, CubicWeighsFourPixelsInFloat) {
  EXPECT_EQ(Halfway(kResampleCubic), 166);
}

// (100 + 200) * 40960 - (0 + 40) * 8192 = 183 * 65536.
TEST_F(Kernels, FixedCubicWeighsThemByTheTable) {
  EXPECT_EQ(Halfway(kResampleCubicFixed), 183);
}

// near 150, far 198.75, both at half: 174.375.
TEST_F(Kernels, CubicBlendFadesFromOnePieceToTheOther) {
  EXPECT_EQ(Halfway(kResampleCubicBlend), 174);
}

TEST_F(Kernels, ResultsAreLimitedToAByte) {
  // 1.125 * 255 = 286.875 with the cubic weights, and below 0 beside a bright pair.
  const auto from = GrayRow({255, 0, 0, 255, 255, 0}, 2);
  for (const int32_t mode : {kResampleCubic, kResampleCubicFixed, kResampleCubicBlend}) {
    PxRgbaBytes pixel;
    from->SampleKernel(pixel, 1.5F, 0, mode);
    EXPECT_EQ(pixel.red, 0) << mode;
    from->SampleKernel(pixel, 3.5F, 0, mode);
    EXPECT_EQ(pixel.red, 255) << mode;
  }
}

TEST_F(Kernels, TheBlockIsLimitedToTheImage) {
  const auto from = GrayRow({40, 90}, 1);
  for (const int32_t mode : {kResampleCubic, kResampleCubicFixed, kResampleCubicBlend}) {
    PxRgbaBytes pixel;
    from->SampleKernel(pixel, -50.0F, 7.0F, mode);
    EXPECT_EQ(pixel, PxRgbaBytes::Of(40, 40, 40, 255)) << mode;
    from->SampleKernel(pixel, 1000.0F, -3.0F, mode);
    EXPECT_EQ(pixel.red, 90) << mode;
  }
}

TEST_F(Kernels, SampleKernelNearestRoundsAndBilinearInterpolates) {
  const auto from = GrayRow({0, 101, 200, 40}, 2);
  PxRgbaBytes pixel;
  from->SampleKernel(pixel, 1.5F, 0, kResampleNearest);
  EXPECT_EQ(pixel.red, 200);
  from->SampleKernel(pixel, 1.49F, 0, kResampleNearest);
  EXPECT_EQ(pixel.red, 101);
  from->SampleKernel(pixel, 1.5F, 0.25F, kResampleBilinear);  // 150.5 + 0.5
  EXPECT_EQ(pixel.red, 151);
  pixel = PxRgbaBytes::Of(1, 2, 3, 4);
  for (const int32_t mode : {0, 6, 7, 8, -1})
    from->SampleKernel(pixel, 1, 0, mode);
  EXPECT_EQ(pixel, PxRgbaBytes::Of(1, 2, 3, 4));
}

TEST_F(Kernels, PositionsThatAreNoNumbersAreSafe) {
  const auto from = GrayRow({5, 5, 5}, 3);
  constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
  constexpr float kInf = std::numeric_limits<float>::infinity();
  for (int32_t mode = 1; mode <= 5; ++mode) {
    for (const float x : {kNan, kInf, -kInf, 1e30F, -1e30F, 2147483648.0F, -2147483648.0F}) {
      PxRgbaBytes pixel;
      from->SampleKernel(pixel, x, 1, mode);
      from->SampleKernel(pixel, 1, x, mode);
    }
  }
}

// --- mode 7

// Extents 5 over 2: 0 to 2.5, 2.5 to 5, 5 to 7.5 cut to 6. Means 10, 91/3 and 50.
TEST(CopyScaledBox, TakesTheMeanOfAllPixelsThatASpanTouches) {
  const auto from = GrayRow({0, 10, 20, 30, 41, 50});
  const auto to = New<Rgba>(3, 1);
  to->CopyScaled(from.Get(), {0, 0, 5, 0}, {0, 0, 2, 0}, kResampleBox, nullptr);
  EXPECT_EQ(RedRow(*to), (std::vector<int32_t>{10, 30, 50}));
}

TEST(CopyScaledBox, AddsTheSourceRectanglesCorner) {
  const auto from = GrayRow({0, 10, 20, 30, 41, 50});
  const auto to = New<Rgba>(2, 1);
  // Extent 2 over 1 from 3: 3 to 5, 5 to 7.
  to->CopyScaled(from.Get(), {3, 0, 5, 0}, {0, 0, 1, 0}, kResampleBox, nullptr);
  EXPECT_EQ(RedRow(*to), (std::vector<int32_t>{35, 50}));
}

// REQUIRED: the mean is the sum times the float 1/count. 41 times 255 gives 254.99998.
TEST(CopyScaledBox, MultipliesTheSumByTheReciprocalOfTheCount) {
  const auto from = GrayRow(std::vector<int32_t>(83, 255));
  const auto to = New<Rgba>(3, 1);
  // Extent 82 over 2: spans of 41.
  to->CopyScaled(from.Get(), {0, 0, 82, 0}, {0, 0, 2, 0}, kResampleBox, nullptr);
  EXPECT_EQ(RedRow(*to), (std::vector<int32_t>{254, 254, 255}));
}

TEST(CopyScaledBox, LeavesTheTargetWhereThereIsNothingToRead) {
  const auto from = GrayRow({10, 20});
  const auto to = GrayRow({1, 2, 3});
  // Extent 4 over 2 from 1: 1 to 3 cut to 2, then 3 and 5, which are outside.
  to->CopyScaled(from.Get(), {1, 0, 5, 0}, {0, 0, 2, 0}, kResampleBox, nullptr);
  EXPECT_EQ(RedRow(*to), (std::vector<int32_t>{20, 2, 3}));
  to->CopyScaled(from.Get(), {0, 5, 4, 5}, {0, 0, 2, 0}, kResampleBox, nullptr);
  EXPECT_EQ(RedRow(*to), (std::vector<int32_t>{20, 2, 3}));
}

// Enlarged, each target pixel has at least one source pixel under it: extent 1 over 4 is steps of a
// quarter.
TEST(CopyScaledBox, EnlargesToo) {
  const auto from = GrayRow({40, 80});
  const auto to = New<Rgba>(5, 1);
  to->CopyScaled(from.Get(), {0, 0, 1, 0}, {0, 0, 4, 0}, kResampleBox, nullptr);
  EXPECT_EQ(RedRow(*to), (std::vector<int32_t>{40, 40, 40, 40, 80}));
}

// Outside the image a tiled source reads its default pixel: transparent black, which counts.
TEST(CopyScaledBox, CountsDefaultPixelsLeftOfTheSource) {
  const auto from = GrayRow({100, 200});
  const auto to = New<Rgba>(2, 1);
  // Extent 4 over 1 from -2: -2 to 2 holds two default pixels, 100 and 200.
  to->CopyScaled(from.Get(), {-2, 0, 2, 0}, {0, 0, 1, 0}, kResampleBox, nullptr);
  EXPECT_EQ(RgbaAt(*to, 0, 0), PxRgbaBytes::Of(75, 75, 75, 127));
}

// Sums above 2^24 are rounded with each addition, in the order of the pixels: 300 by 300 pixels of
// 255, added one by one in single precision.
TEST(CopyScaledBox, AddsLargeBoxesInSinglePrecision) {
  const auto from = New<Rgba>(301, 301);
  const auto light = PxRgbaBytes::Of(255, 254, 253, 251);
  for (int32_t y = 0; y < 301; ++y) {
    for (int32_t x = 0; x < 301; ++x)
      from->PutRgba(light, x, y);
  }
  const auto to = New<Rgba>(2, 2);
  to->CopyScaled(from.Get(), {0, 0, 300, 300}, {0, 0, 1, 1}, kResampleBox, nullptr);
  float sums[4] = {};
  for (int32_t i = 0; i < 300 * 300; ++i) {
    const float values[4] = {255, 254, 253, 251};
    for (int32_t c = 0; c < 4; ++c)
      sums[c] += values[c];
  }
  const float share = 1.0F / 90000;
  EXPECT_EQ(RgbaAt(*to, 0, 0), PxRgbaBytes::Of(static_cast<uint8_t>(sums[0] * share),
                                               static_cast<uint8_t>(sums[1] * share),
                                               static_cast<uint8_t>(sums[2] * share),
                                               static_cast<uint8_t>(sums[3] * share)));
}

// --- adjusted

TEST(CopyAdjusted, ThreeZeroesAndEqualExtentsAreAPlainCopy) {
  const auto from = New<Rgba>(3, 2);
  for (int32_t y = 0; y < 2; ++y) {
    for (int32_t x = 0; x < 3; ++x)
      from->PutRgba(PxRgbaBytes::Of(200, 100, 50, 9), x, y);
  }
  const auto to = New<Rgba>(3, 2);
  to->CopyAdjusted(from.Get(), from->Bounds(), to->Bounds(), 0, 0, 0, kResampleBox, nullptr);
  EXPECT_EQ(RgbaAt(*to, 2, 1), PxRgbaBytes::Of(200, 100, 50, 9));
}

// REQUIRED: with other extents a saturation of 0 removes all colour. (200, 100, 50): lightness 250
// * 100 / 510 = 49, and without saturation all channels become 49 * 255 / 100 = 124.
TEST(CopyAdjusted, SaturationZeroRemovesAllColourWhenItScales) {
  const auto from = New<Rgba>(3, 2);
  for (int32_t y = 0; y < 2; ++y) {
    for (int32_t x = 0; x < 3; ++x)
      from->PutRgba(PxRgbaBytes::Of(200, 100, 50, 9), x, y);
  }
  const auto to = New<Rgba>(5, 4);
  to->CopyAdjusted(from.Get(), from->Bounds(), to->Bounds(), 0, 0, 0, kResampleNearest, nullptr);
  EXPECT_EQ(RgbaAt(*to, 4, 3), PxRgbaBytes::Of(124, 125, 125, 9));
}

// REQUIRED: the blend's shortcut asks for saturation 1, the copy's for 0.
TEST(BlendAdjusted, SaturationOneAndEqualExtentsAreAPlainBlend) {
  const auto from = New<Rgba>(3, 2);
  for (int32_t y = 0; y < 2; ++y) {
    for (int32_t x = 0; x < 3; ++x)
      from->PutRgba(PxRgbaBytes::Of(200, 100, 50, 255), x, y);
  }
  const auto to = New<Rgba>(3, 2);
  to->BlendAdjusted(from.Get(), from->Bounds(), to->Bounds(), 0, 1, 0, 1, kResampleBox, nullptr);
  EXPECT_EQ(RgbaAt(*to, 2, 1), PxRgbaBytes::Of(200, 100, 50, 255));
  to->BlendAdjusted(from.Get(), from->Bounds(), to->Bounds(), 0, 0, 0, 1, kResampleNone, nullptr);
  EXPECT_EQ(RgbaAt(*to, 2, 1), PxRgbaBytes::Of(124, 125, 125, 255));
}

// Without scaling the corner of the source rectangle counts, as in a plain copy. (255, 0, 0) is hue
// 0, saturation 100, lightness 50; 120 degrees on it is green.
TEST(CopyAdjusted, WithoutScalingShiftsEachPixelInItsPlace) {
  const auto from = New<Rgba>(4, 1);
  for (int32_t x = 0; x < 4; ++x)
    from->PutRgba(PxRgbaBytes::Of(x == 3 ? 255 : 0, 0, 0, 70), x, 0);
  const auto to = New<Rgba>(4, 1);
  to->CopyAdjusted(from.Get(), {3, 0, 3, 0}, {1, 0, 1, 0}, 120.9F, 1, 0.9F, kResampleNone, nullptr);
  EXPECT_EQ(RgbaAt(*to, 1, 0), PxRgbaBytes::Of(0, 255, 0, 70));
}

TEST(CopyAdjusted, ValuesThatAreNoNumbersAreSafe) {
  const auto from = GrayRow({10, 20, 30});
  const auto to = New<Rgba>(2, 1);
  constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
  for (const float value : {kNan, 1e30F, -1e30F})
    to->CopyAdjusted(from.Get(), from->Bounds(), to->Bounds(), value, value, value,
                     kResampleNearest, nullptr);
  // Lightness at most -100 makes everything black.
  EXPECT_EQ(RedRow(*to), (std::vector<int32_t>{0, 0}));
}

// --- blends

// Alpha 255 * 0.5 = 127.5 truncated: 127 over an opaque 100: (127 * 200 + 128 * 100 + 127) / 255 =
// 150.
TEST(BlendScaled, CompositesWithTheAlphaTimesTheOpacity) {
  const auto from = GrayRow({200, 200, 200}, 3);
  for (const int32_t mode : {kResampleBilinear, kResampleCubic, kResampleCubicFixed,
                             kResampleCubicBlend, kResampleBox}) {
    const auto to = GrayRow({100, 100}, 2);
    to->BlendScaled(from.Get(), from->Bounds(), to->Bounds(), 0.5F, mode, nullptr);
    EXPECT_EQ(RgbaAt(*to, 0, 0), PxRgbaBytes::Of(150, 150, 150, 255)) << "mode " << mode;
  }
}

// In words: alpha 65535 * 0.5 = 32767; (51400 * 32767 + 25700 * 32768) / 65535 = 38549, high byte
// 150.
TEST(BlendScaled, CompositesInWordsInModeOne) {
  const auto from = GrayRow({200, 200, 200}, 3);
  const auto to = New<ZvTiledImage<PxRgba64>>(2, 2);
  for (int32_t i = 0; i < 4; ++i)
    to->PutRgba64({25700, 25700, 25700, 0xFFFF}, i % 2, i / 2);
  to->BlendScaled(from.Get(), from->Bounds(), to->Bounds(), 0.5F, kResampleNearest, nullptr);
  PxRgba64 pixel;
  to->GetRgba64(pixel, 1, 1);
  EXPECT_EQ(pixel, (PxRgba64{38549, 38549, 38549, 0xFFFF}));
}

// REQUIRED: at full opacity mode 1 stores a source pixel of the same class, alpha and all.
TEST(BlendScaled, StoresInModeOneAtFullOpacity) {
  const auto from = New<Rgba>(3, 1);
  for (int32_t x = 0; x < 3; ++x)
    from->PutRgba(PxRgbaBytes::Of(1, 2, 3, 4), x, 0);
  const auto to = GrayRow({100, 100});
  to->BlendScaled(from.Get(), from->Bounds(), to->Bounds(), 0.99F, kResampleNearest, nullptr);
  EXPECT_EQ(RgbaAt(*to, 0, 0), PxRgbaBytes::Of(1, 2, 3, 4));
}

// Coverage: 100 + 127 * (255 - 100) / 255 = 177, with 127 from 255 * 0.5.
TEST(BlendScaled, ScreensCoverage) {
  const auto from = New<Alpha>(3, 1);
  const auto to = New<Alpha>(2, 1);
  for (int32_t x = 0; x < 3; ++x)
    from->PutByte(255, x, 0);
  to->PutByte(100, 0, 0);
  to->BlendScaled(from.Get(), from->Bounds(), to->Bounds(), 0.5F, kResampleBilinear, nullptr);
  uint8_t byte;
  to->GetByte(byte, 0, 0);
  EXPECT_EQ(byte, 177);
}

// REQUIRED: the box of a blend ends before the last column and row and starts at the source's
// corner.
TEST(BlendScaled, ItsBoxLeavesTheLastColumnAndTheCornerOut) {
  const auto from = GrayRow({0, 10, 20, 30, 40, 250}, 2);
  const auto to = GrayRow({1, 1, 1}, 1);
  // 0 to 2.5, 2.5 to 5, and 5 on, which is the limit: nothing.
  to->BlendScaled(from.Get(), {0, 0, 5, 0}, {0, 0, 2, 0}, 1, kResampleBox, nullptr);
  EXPECT_EQ(RedRow(*to), (std::vector<int32_t>{10, 30, 1}));
  const auto again = GrayRow({1, 1, 1}, 1);
  again->BlendScaled(from.Get(), {3, 0, 5, 0}, {0, 0, 2, 0}, 1, kResampleBox, nullptr);
  // Extent 2 over 2 would be an unscaled blend but for the height: 0 over 1. 0 to 1, 1 to 2, 2
  // to 3.
  EXPECT_EQ(RedRow(*again), (std::vector<int32_t>{0, 10, 20}));
}

TEST(BlendScaled, ASourceOfOneColumnHasNoBox) {
  const auto from = GrayRow({77}, 4);
  const auto to = GrayRow({1, 2, 3});
  to->BlendScaled(from.Get(), from->Bounds(), to->Bounds(), 1, kResampleBox, nullptr);
  EXPECT_EQ(RedRow(*to), (std::vector<int32_t>{1, 2, 3}));
}

TEST(BlendScaled, OpacitiesOutsideTheirRangeAreSafe) {
  const auto from = GrayRow({200, 200, 200}, 3);
  constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
  constexpr float kInf = std::numeric_limits<float>::infinity();
  for (int32_t mode = 0; mode <= 8; ++mode) {
    for (const float opacity : {kNan, kInf, -kInf, -1.0F, 2.0F, 1e30F}) {
      const auto to = GrayRow({100, 100}, 2);
      to->BlendScaled(from.Get(), from->Bounds(), to->Bounds(), opacity, mode, nullptr);
      const auto words = New<ZvTypedImage<PxRgba64>>(2, 2);
      words->BlendScaled(from.Get(), from->Bounds(), words->Bounds(), opacity, mode, nullptr);
      const auto alpha = New<Alpha>(2, 2);
      alpha->BlendScaled(from.Get(), from->Bounds(), alpha->Bounds(), opacity, mode, nullptr);
      alpha->PaintMasked({1, 2, 3, 4}, alpha.Get(), alpha->Bounds(), {0, 0}, opacity, nullptr);
      to->BlendMasked(from.Get(), alpha.Get(), from->Bounds(), {0, 0}, opacity, nullptr);
    }
  }
}

// --- masks

class MaskedRgb : public ::testing::Test {
 protected:
  MaskedRgb() : from(New<Rgb>(1, 1)), to(New<Rgb>(1, 1)), mask(New<Alpha>(1, 1)) {}

  int32_t Blend(uint8_t source, uint8_t target, uint8_t coverage, float opacity) {
    from->PutRgb(PxRgbBytes::Of(source, source, source), 0, 0);
    to->PutRgb(PxRgbBytes::Of(target, target, target), 0, 0);
    mask->PutByte(coverage, 0, 0);
    to->BlendMasked(from.Get(), mask.Get(), {0, 0, 0, 0}, {0, 0}, opacity, nullptr);
    return RgbaAt(*to, 0, 0).red;
  }

  ZvSmartPtr<Rgb> from;
  ZvSmartPtr<Rgb> to;
  ZvSmartPtr<Alpha> mask;
};

// REQUIRED: what is weighted by 255 is divided by 256.
TEST_F(MaskedRgb, AMaskOfZeroStillDarkensByOne) {
  EXPECT_EQ(Blend(0, 255, 0, 1.0F), 254);
  EXPECT_EQ(Blend(0, 1, 0, 1.0F), 0);
  EXPECT_EQ(Blend(0, 0, 0, 1.0F), 0);
}

TEST_F(MaskedRgb, AFullMaskAtFullOpacityStoresTheSource) {
  EXPECT_EQ(Blend(255, 7, 255, 1.0F), 255);
  EXPECT_EQ(Blend(255, 7, 255, 0.99F), 255);
}

TEST_F(MaskedRgb, OthersMixByTheMaskTimesTheOpacity) {
  EXPECT_EQ(Blend(100, 200, 128, 1.0F), 149);  // (12800 + 25400) >> 8
  EXPECT_EQ(Blend(100, 200, 255, 0.5F), 149);  // w 127: (12700 + 25600) >> 8
  EXPECT_EQ(Blend(255, 7, 255, 0.98F), 248);   // w 249: (63495 + 42) >> 8
}

// REQUIRED: for any other pair the target becomes the source, its alpha times the mask; it isn't
// composited.
TEST(BlendMasked, StoresTheSourceWithLessAlpha) {
  const auto from = GrayRow({200});
  const auto to = GrayRow({100});
  const auto mask = New<Alpha>(1, 1);
  mask->PutByte(128, 0, 0);
  to->BlendMasked(from.Get(), mask.Get(), {0, 0, 0, 0}, {0, 0}, 0.5F, nullptr);
  // 65535 * 128/255 * 0.5 = 16447.99 or 16448.0: both have the high byte 64.
  EXPECT_EQ(RgbaAt(*to, 0, 0), PxRgbaBytes::Of(200, 200, 200, 64));
  mask->PutByte(0, 0, 0);
  to->BlendMasked(from.Get(), mask.Get(), {0, 0, 0, 0}, {0, 0}, 1.0F, nullptr);
  EXPECT_EQ(RgbaAt(*to, 0, 0), PxRgbaBytes::Of(200, 200, 200, 0));
}

TEST(BlendMasked, WithoutAMaskIsABlend) {
  const auto from = GrayRow({200, 200});
  const auto blended = GrayRow({100, 100});
  const auto masked = GrayRow({100, 100});
  blended->BlendRect(from.Get(), {0, 0, 0, 0}, {1, 0}, 0.4F, nullptr);
  masked->BlendMasked(from.Get(), nullptr, {0, 0, 0, 0}, {1, 0}, 0.4F, nullptr);
  EXPECT_TRUE(SamePixels(*blended, *masked));
  EXPECT_EQ(RedRow(*masked)[0], 100);
  EXPECT_EQ(RedRow(*masked)[1], 140);  // 102 over 255: (102 * 200 + 153 * 100 + 127) / 255
}

TEST(BlendMasked, ReadsTheMaskAtTheSourcesPlaceAndStopsWithIt) {
  const auto from = GrayRow({10, 20, 30, 40, 50});
  const auto to = GrayRow({1, 1, 1, 1, 1});
  const auto mask = New<Alpha>(4, 1);
  mask->PutByte(255, 2, 0);
  mask->PutByte(255, 3, 0);
  // Source 2 to 4 lands on 0 to 2; the mask has columns up to 3.
  to->BlendMasked(from.Get(), mask.Get(), {2, 0, 4, 0}, {0, 0}, 1, nullptr);
  EXPECT_EQ(RedRow(*to), (std::vector<int32_t>{30, 40, 1, 1, 1}));
}

// 128 over an opaque 100 in bytes: (128 * 200 + 127 * 100 + 127) / 255 = 150.
TEST(PaintMasked, LaysTheColourThroughTheMask) {
  const auto to = GrayRow({100, 100, 100});
  const auto mask = New<Alpha>(3, 1);
  mask->PutByte(128, 1, 0);
  mask->PutByte(255, 2, 0);
  to->PaintMasked({0xC800, 0xC800, 0xC800, 0}, mask.Get(), {0, 0, 2, 0}, {0, 0}, 1, nullptr);
  EXPECT_EQ(RedRow(*to), (std::vector<int32_t>{100, 150, 200}));
  // 128 * 0.5 = 64: (64 * 200 + 191 * 100 + 127) / 255 = 125, and 127: (127 * 200 + 128 * 100 +
  // 127) / 255 = 150.
  const auto half = GrayRow({100, 100, 100});
  half->PaintMasked({0xC800, 0xC800, 0xC800, 0}, mask.Get(), {0, 0, 2, 0}, {0, 0}, 0.5F, nullptr);
  EXPECT_EQ(RedRow(*half), (std::vector<int32_t>{100, 125, 150}));
}

// In words: 128 widens to 0x8080 = 32896; (51200 * 32896 + 25700 * 32639) / 65535 = 38500.
TEST(PaintMasked, CompositesWordsByTheirOwnRule) {
  const auto to = New<ZvTiledImage<PxRgba64>>(1, 1);
  to->PutRgba64({25700, 25700, 25700, 0xFFFF}, 0, 0);
  const auto mask = New<Alpha>(1, 1);
  mask->PutByte(128, 0, 0);
  to->PaintMasked({51200, 51200, 51200, 0}, mask.Get(), {0, 0, 0, 0}, {0, 0}, 1, nullptr);
  PxRgba64 pixel;
  to->GetRgba64(pixel, 0, 0);
  EXPECT_EQ(pixel, (PxRgba64{38500, 38500, 38500, 0xFFFF}));
}

TEST(PaintMasked, MakesNoTileWhereTheMaskIsEmpty) {
  const auto to = New<Rgba>(300, 1);
  const auto mask = New<Alpha>(300, 1);
  mask->PutByte(9, 200, 0);
  to->PaintMasked({1, 2, 3, 4}, mask.Get(), to->Bounds(), {0, 0}, 1, nullptr);
  EXPECT_EQ(to->FindTile(0, 0), nullptr);
  EXPECT_NE(to->FindTile(200, 0), nullptr);
}

TEST(PaintMasked, WithoutAMaskPaintsNothing) {
  const auto to = GrayRow({100});
  to->PaintMasked(kRgba64Black, nullptr, {0, 0, 0, 0}, {0, 0}, 1, nullptr);
  EXPECT_EQ(RedRow(*to), std::vector<int32_t>{100});
}

// --- bad input

TEST(ResampleBadInput, RectanglesOfAnyKindAreCutOrIgnored) {
  const std::vector<ZvRect> rects = {{0, 0, -1, -1},
                                     {5, 5, 2, 2},
                                     {0, 0, 0, 0},
                                     {INT32_MIN, INT32_MIN, INT32_MAX, INT32_MAX},
                                     {INT32_MAX, INT32_MAX, INT32_MIN, INT32_MIN},
                                     {INT32_MIN, INT32_MIN, INT32_MIN, INT32_MIN},
                                     {INT32_MAX, INT32_MAX, INT32_MAX, INT32_MAX},
                                     {INT32_MAX - 5, 0, INT32_MAX, 6},
                                     {INT32_MIN, 0, 7, 7},
                                     {0, INT32_MIN, 7, 7},
                                     {-2000000, -1, 3, 3},
                                     {0, 0, INT32_MAX, INT32_MAX},
                                     {1, 1, 6, 6}};
  const std::vector<std::string> classes = {"tiled PxRgbaBytes", "row PxRgbaBytes",
                                            "tiled PxAlphaByte", "tiled PxGrayBit", "row PxRgb48"};
  ReportRecorder reports;
  RandomSource random(1);
  for (const std::string& name : classes) {
    const auto from = RandomImage(ImageClassNamed(name), 8, 8, random);
    const auto to = RandomImage(ImageClassNamed(name), 8, 8, random);
    const auto mask = RandomImage(ImageClassNamed("tiled PxAlphaByte"), 8, 8, random);
    for (const ZvRect& fromRect : rects) {
      for (const ZvRect& toRect : rects) {
        for (int32_t mode = 0; mode <= 8; ++mode) {
          to->CopyScaled(from.Get(), fromRect, toRect, mode, nullptr);
          to->BlendScaled(from.Get(), fromRect, toRect, 0.5F, mode, &fromRect);
        }
        to->CopyAdjusted(from.Get(), fromRect, toRect, 10, 1, 1, kResampleNone, &toRect);
        const ZvPoint corner(toRect.fLeft, toRect.fTop);
        to->BlendMasked(from.Get(), mask.Get(), fromRect, corner, 0.5F, nullptr);
        to->PaintMasked(kRgba64Gray50, mask.Get(), fromRect, corner, 0.5F, &toRect);
      }
    }
  }
}

// An image may be as large as its numbers go, as long as nothing is stored: the work is that of the
// clip.
TEST(ResampleBadInput, AnImageOfTwoBillionColumnsCostsOnlyItsClip) {
  const auto from = New<Rgba>(INT32_MAX, INT32_MAX);
  const auto to = New<Rgba>(INT32_MAX, INT32_MAX);
  const ZvRect clip(100, 100, 110, 110);
  for (int32_t mode = 0; mode <= 8; ++mode) {
    to->CopyScaled(from.Get(), from->Bounds(), {-50, -50, INT32_MAX - 1, INT32_MAX - 1}, mode,
                   &clip);
    to->CopyScaled(from.Get(), from->Bounds(), {-50, -50, 400, 400}, mode, &clip);
    to->CopyScaled(from.Get(), {-1000000000, -1000000000, 1000000000, 1000000000}, {0, 0, 400, 400},
                   mode, &clip);
  }
}

}  // namespace
}  // namespace vm
