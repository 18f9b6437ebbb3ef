#include "image/kernels/rows/BlendRows.h"

#include <limits>

#include "image/kernels/RowTestSupport.h"

namespace {

using namespace vm::test;

// Fractions from end to end, their neighbours, and what lies outside.
constexpr float kWeights[] = {0.0F,  0.001F, 0.00390625F, 0.25F, 0.4F,   0.5F,     0.75F, 0.98F,
                              0.99F, 0.999F, 0.99999994F, 1.0F,  -0.25F, 1.00001F, 2.5F,  300.0F};

template <class P>
class BlendRows : public ::testing::Test {};
TYPED_TEST_SUITE(BlendRows, AllRecords, RecordNames);

TYPED_TEST(BlendRows, MixingTowardsTheSourceIsTheMixOfEachRecord) {
  for (const float t : kWeights) {
    for (const auto& original : Rows<TypeParam>()) {
      const auto source = RandomRow<TypeParam>(original.size(), 123);
      auto row = original;
      auto expected = original;
      vm::Mix255Row(std::span<TypeParam>(row), source.data(), t);
      vm::scalar::Mix255(std::span<TypeParam>(expected), source.data(), t);
      ASSERT_TRUE(SameRows(row, expected)) << "t = " << t;
    }
  }
}

TYPED_TEST(BlendRows, SamplingMixesAreTheMixOfEachRecord) {
  for (const float t : kWeights) {
    for (const auto& original : Rows<TypeParam>()) {
      const auto source = RandomRow<TypeParam>(original.size(), 124);
      auto row = original;
      auto expected = original;
      vm::Mix256Row(std::span<TypeParam>(row), source.data(), t);
      vm::scalar::Mix256(std::span<TypeParam>(expected), source.data(), t);
      ASSERT_TRUE(SameRows(row, expected)) << "t = " << t;
    }
  }
}

// All pairs of bytes, at every weight that a byte mix can have.
TEST(BlendRows, ByteMixesAgreeOnEveryPairOfBytesAtEveryWeight) {
  std::vector<PxGrayByte> all;
  std::vector<PxGrayByte> source;
  for (unsigned i = 0; i < 0x10000; ++i) {
    all.push_back({static_cast<uint8_t>(i)});
    source.push_back({static_cast<uint8_t>(i >> 8)});
  }
  for (int weight = 0; weight <= 256; ++weight) {
    const float t = static_cast<float>(weight) / 256.0F;
    auto row = all;
    auto expected = all;
    vm::Mix256Row(std::span<PxGrayByte>(row), source.data(), t);
    vm::scalar::Mix256(std::span<PxGrayByte>(expected), source.data(), t);
    ASSERT_TRUE(SameRows(row, expected)) << "w = " << weight;

    row = expected = all;
    vm::Mix255Row(std::span<PxGrayByte>(row), source.data(), t);
    vm::scalar::Mix255(std::span<PxGrayByte>(expected), source.data(), t);
    ASSERT_TRUE(SameRows(row, expected)) << "w = " << weight;
  }
}

TEST(BlendRows, RoundedByteMixesAgreeOnEveryPairOfBytesAtEveryWeight) {
  std::vector<PxGrayABytes> all;
  std::vector<PxGrayABytes> source;
  for (unsigned i = 0; i < 0x10000; ++i) {
    all.push_back({static_cast<uint8_t>(i), static_cast<uint8_t>(i >> 8)});
    source.push_back({static_cast<uint8_t>(i >> 8), static_cast<uint8_t>(i)});
  }
  for (int weight = 0; weight <= 256; ++weight) {
    auto row = all;
    auto expected = all;
    vm::Mix256Row(std::span<PxGrayABytes>(row), source.data(), static_cast<float>(weight) / 256.0F);
    vm::scalar::Mix256(std::span<PxGrayABytes>(expected), source.data(),
                       static_cast<float>(weight) / 256.0F);
    ASSERT_TRUE(SameRows(row, expected)) << "w = " << weight;
  }
}

template <class P>
class CompositeRows : public ::testing::Test {};
TYPED_TEST_SUITE(CompositeRows, CompositingRecords, RecordNames);

TYPED_TEST(CompositeRows, CompositingIsThatOfEachRecord) {
  for (const auto& original : Rows<TypeParam>()) {
    const auto source = RandomRow<TypeParam>(original.size(), 125);
    auto row = original;
    auto expected = original;
    vm::CompositeRow(std::span<TypeParam>(row), source.data());
    vm::scalar::Composite(std::span<TypeParam>(expected), source.data());
    ASSERT_TRUE(SameRows(row, expected));
  }
}

TYPED_TEST(CompositeRows, CompositingByAFractionIsThatOfEachRecord) {
  for (const float t : kWeights) {
    for (const auto& original : Rows<TypeParam>()) {
      const auto source = RandomRow<TypeParam>(original.size(), 126);
      auto row = original;
      auto expected = original;
      vm::CompositeRow(std::span<TypeParam>(row), source.data(), t);
      vm::scalar::Composite(std::span<TypeParam>(expected), source.data(), t);
      ASSERT_TRUE(SameRows(row, expected)) << "t = " << t;
    }
  }
}

// Both alphas and the source's colour take every value, over three values of the target's colour:
// the division in single precision is the integer division.
TEST(CompositeRows, ByteCompositesAgreeOnEveryPairOfAlphas) {
  for (unsigned dstAlpha = 0; dstAlpha < 256; ++dstAlpha) {
    std::vector<PxRgbaBytes> source;
    for (unsigned srcAlpha = 0; srcAlpha < 256; ++srcAlpha) {
      for (unsigned colour = 0; colour < 256; ++colour) {
        const auto c = static_cast<uint8_t>(colour);
        source.push_back({c, static_cast<uint8_t>(c * 7), static_cast<uint8_t>(255 - c),
                          static_cast<uint8_t>(srcAlpha)});
      }
    }
    std::vector<PxRgbaBytes> row(source.size(), {0, 255, 101, static_cast<uint8_t>(dstAlpha)});
    auto expected = row;
    auto byFraction = row;
    auto expectedByFraction = row;
    vm::CompositeRow(std::span<PxRgbaBytes>(row), source.data());
    vm::scalar::Composite(std::span<PxRgbaBytes>(expected), source.data());
    ASSERT_TRUE(SameRows(row, expected)) << "alpha " << dstAlpha;
    vm::CompositeRow(std::span<PxRgbaBytes>(byFraction), source.data(), 0.7F);
    vm::scalar::Composite(std::span<PxRgbaBytes>(expectedByFraction), source.data(), 0.7F);
    ASSERT_TRUE(SameRows(byFraction, expectedByFraction)) << "alpha " << dstAlpha;
  }
}

// Over opaque pixels all divisions are by 255: every source alpha, source colour and target colour
// there is.
TEST(CompositeRows, ByteCompositesOverOpaquePixelsAgreeOnEveryAlphaAndPairOfColours) {
  std::vector<PxRgbaBytes> source;
  for (unsigned i = 0; i < 0x10000; ++i) {
    const auto colour = static_cast<uint8_t>(i);
    source.push_back({colour, colour, colour, static_cast<uint8_t>(i >> 8)});
  }
  for (unsigned target = 0; target < 256; ++target) {
    const auto colour = static_cast<uint8_t>(target);
    std::vector<PxRgbaBytes> row(source.size(), {colour, colour, colour, 255});
    auto expected = row;
    vm::CompositeRow(std::span<PxRgbaBytes>(row), source.data());
    vm::scalar::Composite(std::span<PxRgbaBytes>(expected), source.data());
    ASSERT_TRUE(SameRows(row, expected)) << "over " << target;
  }
}

TEST(CompositeRows, OpaqueAndClearBlocksCopyAndKeep) {
  std::vector<PxRgbaBytes> row(48, {10, 20, 30, 40});
  std::vector<PxRgbaBytes> source(48, {1, 2, 3, 255});
  for (size_t i = 16; i < 32; ++i)
    source[i].alpha = 0;
  auto expected = row;
  for (size_t i = 0; i < 48; ++i)
    expected[i] = i >= 16 && i < 32 ? PxRgbaBytes{10, 20, 30, 40} : PxRgbaBytes{1, 2, 3, 255};
  vm::CompositeRow(std::span<PxRgbaBytes>(row), source.data());
  EXPECT_TRUE(SameRows(row, expected));
}

// A blend within one image towards its start: each pixel takes a source that has not been written
// yet.
TYPED_TEST(CompositeRows, ASourceThatOverlapsFromBehindIsReadBeforeItIsWrittenOver) {
  const auto original = RandomRow<TypeParam>(500, 127);
  for (const size_t distance : {1U, 3U, 16U}) {
    auto row = original;
    auto expected = original;
    const size_t count = original.size() - distance;
    vm::CompositeRow(std::span<TypeParam>(row).first(count), row.data() + distance);
    for (size_t i = 0; i < count; ++i)
      expected[i].Composite(original[i + distance]);
    ASSERT_TRUE(SameRows(row, expected)) << "distance " << distance;
  }
}

TYPED_TEST(BlendRows, AMixWithASourceThatOverlapsFromBehindReadsItBeforeItIsWrittenOver) {
  const auto original = RandomRow<TypeParam>(500, 128);
  for (const float t : {0.4F, 1.0F}) {
    for (const size_t distance : {1U, 3U, 16U}) {
      auto row = original;
      auto expected = original;
      const size_t count = original.size() - distance;
      vm::Mix255Row(std::span<TypeParam>(row).first(count), row.data() + distance, t);
      for (size_t i = 0; i < count; ++i)
        expected[i].Mix255(original[i + distance], t);
      ASSERT_TRUE(SameRows(row, expected)) << "distance " << distance << ", t = " << t;
    }
  }
}

}  // namespace
