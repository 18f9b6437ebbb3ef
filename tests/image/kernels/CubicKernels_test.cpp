#include "image/kernels/resample/CubicKernels.h"

#include <cmath>
#include <random>
#include <vector>

#include "gtest/gtest.h"

namespace vm {
namespace {

TEST(FixedCubicTable, HoldsTheKernelInFixedPoint) {
  EXPECT_EQ(kFixedCubicTable[0], (FixedWeights{0, 65536, 0, 0}));
  // t = 1/4: -W(1.25) = 0.140625, W(0.25) = 0.890625, W(0.75) = 0.296875, -W(1.75) = 0.046875.
  EXPECT_EQ(kFixedCubicTable[64], (FixedWeights{9216, 58368, 19456, 3072}));
  // t = 1/2: 1/8, 5/8, 5/8, 1/8.
  EXPECT_EQ(kFixedCubicTable[128], (FixedWeights{8192, 40960, 40960, 8192}));
}

TEST(FixedCubicTable, IsRoundedToTheNearest) {
  for (int32_t r = 0; r < 256; ++r) {
    const double t = r / 256.0;
    const auto inner = [](double d) { return d * d * d - 2 * d * d + 1; };
    const auto outer = [](double d) { return -d * d * d + 5 * d * d - 8 * d + 4; };
    const double exact[4] = {-outer(1 + t), inner(t), inner(1 - t), -outer(2 - t)};
    for (size_t i = 0; i < 4; ++i)
      EXPECT_LE(std::fabs(kFixedCubicTable[static_cast<size_t>(r)][i] - 65536 * exact[i]), 0.5)
          << "row " << r << " entry " << i;
  }
}

TEST(FixedWeights, MirrorTheRowsBeyondTheMiddle) {
  EXPECT_EQ(FixedWeightsAt(0.5F), kFixedCubicTable[128]);
  EXPECT_EQ(FixedWeightsAt(0.75F), (FixedWeights{3072, 19456, 58368, 9216}));
  // 256 * 0.999 + 0.5 = 256.2: row 0, turned around, is the third pixel alone.
  EXPECT_EQ(FixedWeightsAt(0.999F), (FixedWeights{0, 0, 65536, 0}));
  // Just above the middle the index is still 128.
  EXPECT_EQ(FixedWeightsAt(0.5009F), (FixedWeights{8192, 40960, 40960, 8192}));
}

TEST(FixedWeights, FractionsBelowZeroTakeTheFirstRow) {
  EXPECT_EQ(FixedWeightsAt(-0.7F), kFixedCubicTable[0]);
}

TEST(CubicWeights, AreThoseOfTheFourDistances) {
  const CubicWeights w = CubicWeightsAt(0.5F);
  EXPECT_EQ(w.weight[0], -0.0625F);
  EXPECT_EQ(w.weight[1], 0.5625F);
  EXPECT_EQ(w.weight[2], 0.5625F);
  EXPECT_EQ(w.weight[3], -0.0625F);
  const CubicWeights whole = CubicWeightsAt(0);
  EXPECT_EQ(whole.weight[1], 1.0F);
  EXPECT_EQ(whole.weight[0] + whole.weight[2] + whole.weight[3], 0.0F);
}

// The row forms give the bytes of the forms for one pixel.
class RowForms : public ::testing::TestWithParam<int> {};
INSTANTIATE_TEST_SUITE_P(Lengths, RowForms, ::testing::Values(1, 2, 3, 4, 5, 7, 16, 61));

TEST_P(RowForms, AreTheOnePixelFormsInARow) {
  const auto count = static_cast<size_t>(GetParam());
  std::mt19937 random(static_cast<uint32_t>(count));
  const auto byte = [&] {
    const uint32_t kind = random() % 4;
    return static_cast<uint8_t>(kind == 0 ? 0 : kind == 1 ? 255 : random());
  };
  for (int32_t round = 0; round < 200; ++round) {
    const size_t columns = count + 3;
    std::vector<PxRgbaBytes> pixels[4];
    for (auto& row : pixels) {
      for (size_t i = 0; i < columns; ++i)
        row.push_back({byte(), byte(), byte(), byte()});
    }
    std::vector<float> fractions;
    std::vector<int32_t> taps;
    std::vector<CubicWeights> cubic;
    std::vector<BlendCoefficients> blend;
    std::vector<SplitWeights> fixed;
    for (size_t i = 0; i < count; ++i) {
      // Odd ones too: positions can lie so far out that nothing is left of the fraction's meaning.
      const float f = round % 10 == 9 ? 1e9F : static_cast<float>(random() % 1000) / 1000;
      fractions.push_back(f);
      taps.push_back(static_cast<int32_t>(random() % (columns - 3)));
      cubic.push_back(CubicWeightsAt(f));
      blend.push_back(BlendCoefficientsAt(f));
      fixed.push_back(SplitFixedWeights(FixedWeightsAt(f)));
    }
    const float down = static_cast<float>(random() % 1000) / 1000;

    std::vector<FloatPixel> reduced[4];
    const FloatPixel* rows[4];
    std::vector<PxRgbaBytes> out(count);
    const auto block = [&](size_t i, KernelBlock& result) {
      for (size_t row = 0; row < 4; ++row) {
        for (size_t column = 0; column < 4; ++column)
          result[row][column] = pixels[row][static_cast<size_t>(taps[i]) + column];
      }
    };
    KernelBlock square;

    for (size_t row = 0; row < 4; ++row) {
      reduced[row].resize(count);
      CubicAcross(pixels[row].data(), taps.data(), cubic.data(), reduced[row].data(), count);
      rows[row] = reduced[row].data();
    }
    CubicDown(rows, CubicWeightsAt(down), out.data(), count);
    for (size_t i = 0; i < count; ++i) {
      block(i, square);
      ASSERT_EQ(out[i], CubicPixel(square, fractions[i], down)) << "cubic " << i;
    }

    for (size_t row = 0; row < 4; ++row)
      BlendAcross(pixels[row].data(), taps.data(), blend.data(), reduced[row].data(), count);
    BlendDown(rows, BlendCoefficientsAt(down), out.data(), count);
    for (size_t i = 0; i < count; ++i) {
      block(i, square);
      ASSERT_EQ(out[i], CubicBlendPixel(square, fractions[i], down)) << "blend " << i;
    }

    const PxRgbaBytes* const bytes[4] = {pixels[0].data(), pixels[1].data(), pixels[2].data(),
                                         pixels[3].data()};
    std::vector<PxRgbaBytes> column(columns);
    FixedCubicDown(bytes, FixedWeightsAt(down), column.data(), columns);
    FixedCubicAcross(column.data(), taps.data(), fixed.data(), out.data(), count);
    for (size_t i = 0; i < count; ++i) {
      block(i, square);
      ASSERT_EQ(out[i], FixedCubicPixel(square, fractions[i], down)) << "fixed " << i;
    }
  }
}

}  // namespace
}  // namespace vm
