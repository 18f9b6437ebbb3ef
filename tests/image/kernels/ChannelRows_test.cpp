#include "image/kernels/rows/ChannelRows.h"

#include "image/kernels/RowTestSupport.h"

namespace {

using namespace vm::test;

template <class P>
class ChannelRows : public ::testing::Test {};
TYPED_TEST_SUITE(ChannelRows, AllRecords, RecordNames);

TYPED_TEST(ChannelRows, SwappingRedAndBlueIsTheExchangeThroughThe64BitView) {
  for (const auto& original : Rows<TypeParam>()) {
    auto row = original;
    auto expected = original;
    vm::SwapRedAndBlueRow(std::span<TypeParam>(row));
    vm::scalar::SwapRedAndBlue(std::span<TypeParam>(expected));
    ASSERT_TRUE(SameRows(row, expected));
  }
}

TYPED_TEST(ChannelRows, ScalingIsTheProductThroughThe64BitView) {
  for (int32_t channels = 0; channels <= 4; ++channels) {
    for (const auto& original : Rows<TypeParam>()) {
      auto row = original;
      auto expected = original;
      vm::ScaleRow(std::span<TypeParam>(row), channels);
      vm::scalar::Scale(std::span<TypeParam>(expected), channels);
      ASSERT_TRUE(SameRows(row, expected)) << channels << " channels";
    }
  }
}

TYPED_TEST(ChannelRows, HalvingIsTheShiftThroughThe64BitView) {
  for (const auto& original : Rows<TypeParam>()) {
    auto row = original;
    auto expected = original;
    vm::HalveRow(std::span<TypeParam>(row));
    vm::scalar::Halve(std::span<TypeParam>(expected));
    ASSERT_TRUE(SameRows(row, expected));
  }
}

TYPED_TEST(ChannelRows, InvertingIsTheComplementThatEachRecordTakes) {
  for (const auto& original : Rows<TypeParam>()) {
    auto row = original;
    auto expected = original;
    vm::InvertRow(std::span<TypeParam>(row));
    vm::scalar::Invert(std::span<TypeParam>(expected));
    ASSERT_TRUE(SameRows(row, expected));
  }
}

TEST(ChannelRows, EveryWordScalesToTheTruncatedProductKeptTo16Bits) {
  std::vector<PxRgba64> row;
  for (uint32_t c = 0; c < 0x10000; ++c) {
    const auto word = static_cast<uint16_t>(c);
    row.push_back({word, word, word, word});
  }
  vm::ScaleRow(std::span<PxRgba64>(row), 4);
  for (uint32_t c = 0; c < 0x10000; ++c) {
    const double product = static_cast<double>(c) * 1.999;
    const auto expected = static_cast<uint16_t>(static_cast<uint32_t>(product) & 0xFFFF);
    ASSERT_EQ(row[c], (PxRgba64{expected, expected, expected, expected})) << c;
  }
}

// REQUIRED: no clamp. The host's full 32768 stays just inside the words, anything much above wraps.
TEST(ChannelRows, ScalingWrapsInsteadOfClamping) {
  std::vector<PxRgba64> row{{32768, 32784, 32785, 65535}};
  vm::ScaleRow(std::span<PxRgba64>(row), 3);
  // 32768 * 1.999 = 65503.2; 32784 * 1.999 = 65535.2; 32785 * 1.999 = 65537.2, which is 1 in 16
  // bits.
  EXPECT_EQ(row[0], (PxRgba64{65503, 65535, 1, 65535}));
}

TEST(ChannelRows, ScalingNoChannelChangesNothing) {
  std::vector<PxRgba64> row{{1000, 2000, 3000, 4000}};
  vm::ScaleRow(std::span<PxRgba64>(row), 0);
  EXPECT_EQ(row[0], (PxRgba64{1000, 2000, 3000, 4000}));
}

TEST(ChannelRows, InvertingLeavesTheFifthChannel) {
  std::vector<PxCmykaBytes> bytes{{0, 1, 2, 255, 9}};
  vm::InvertRow(std::span<PxCmykaBytes>(bytes));
  EXPECT_EQ(bytes[0], (PxCmykaBytes{255, 254, 253, 0, 9}));
  std::vector<PxCmyka80> words{{0, 1, 2, 0xFFFF, 9}};
  vm::InvertRow(std::span<PxCmyka80>(words));
  EXPECT_EQ(words[0], (PxCmyka80{0xFFFF, 0xFFFE, 0xFFFD, 0, 9}));
}

}  // namespace
