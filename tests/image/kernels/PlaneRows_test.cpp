#include "image/kernels/rows/PlaneRows.h"

#include "image/kernels/RowTestSupport.h"

namespace {

using namespace vm::test;

template <class P>
class PlaneRows : public ::testing::Test {};
TYPED_TEST_SUITE(PlaneRows, AllRecords, RecordNames);

TYPED_TEST(PlaneRows, GatheringCollectsTheSamplesThatEachRecordGives) {
  for (int32_t channel = -1; channel <= 6; ++channel) {
    for (const auto& row : Rows<TypeParam>()) {
      const size_t bytes = row.size() * vm::scalar::kSampleBytes<TypeParam>;
      // One byte off any alignment, and a guard behind the last sample.
      std::vector<uint8_t> samples(bytes + 2, 0xA5);
      std::vector<uint8_t> expected(bytes + 2, 0xA5);
      vm::GatherRow(std::span<const TypeParam>(row), samples.data() + 1, channel);
      vm::scalar::Gather(std::span<const TypeParam>(row), expected.data() + 1, channel);
      ASSERT_EQ(samples, expected) << "channel " << channel;
    }
  }
}

TYPED_TEST(PlaneRows, ScatteringChangesOneChannelAsEachRecordDoes) {
  for (int32_t channel = -1; channel <= 6; ++channel) {
    for (const auto& original : Rows<TypeParam>()) {
      auto row = original;
      auto expected = original;
      std::vector<uint8_t> samples(original.size() * 4 + 1);
      std::mt19937 random(5);
      for (uint8_t& sample : samples)
        sample = static_cast<uint8_t>(random());
      vm::ScatterRow(samples.data() + 1, std::span<TypeParam>(row), channel);
      vm::scalar::Scatter(samples.data() + 1, std::span<TypeParam>(expected), channel);
      ASSERT_TRUE(SameRows(row, expected)) << "channel " << channel;
    }
  }
}

TYPED_TEST(PlaneRows, GatheringAndScatteringAllChannelsGivesTheRowBack) {
  if constexpr (!std::is_same_v<TypeParam, PxGrayBit>) {  // of which only one bit travels
    const std::vector<TypeParam> original = RandomRow<TypeParam>(301, 9);
    std::vector<TypeParam> row(original.size());
    std::vector<uint8_t> samples(original.size() * 4);
    for (int32_t channel = 0; channel < TypeParam::kInfo.channels; ++channel) {
      vm::GatherRow(std::span<const TypeParam>(original), samples.data(), channel);
      vm::ScatterRow(samples.data(), std::span<TypeParam>(row), channel);
    }
    EXPECT_TRUE(SameRows(row, original));
  }
}

TEST(PlaneRows, TheFirstPlaneOfAnRgbRowIsRed) {
  const std::vector<PxRgbBytes> row{PxRgbBytes::Of(0x10, 0x20, 0x30),
                                    PxRgbBytes::Of(0x40, 0x50, 0x60)};
  std::vector<uint8_t> samples(2);
  vm::GatherRow(std::span<const PxRgbBytes>(row), samples.data(), 0);
  EXPECT_EQ(samples, (std::vector<uint8_t>{0x10, 0x40}));
}

TEST(PlaneRows, WordSamplesAreLittleEndian) {
  const std::vector<PxRgba64> row{{0x1234, 0, 0, 0}};
  std::vector<uint8_t> samples(2);
  vm::GatherRow(std::span<const PxRgba64>(row), samples.data(), 0);
  EXPECT_EQ(samples, (std::vector<uint8_t>{0x34, 0x12}));
}

}  // namespace
