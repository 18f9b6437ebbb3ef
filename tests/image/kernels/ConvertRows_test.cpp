#include "image/kernels/rows/ConvertRows.h"

#include "image/kernels/RowTestSupport.h"

namespace {

using namespace vm::test;

template <class P>
class ConvertRows : public ::testing::Test {};
TYPED_TEST_SUITE(ConvertRows, AllRecords, RecordNames);

TYPED_TEST(ConvertRows, ReadingAsRgbaGivesWhatEachRecordGives) {
  for (const auto& row : Rows<TypeParam>()) {
    std::vector<PxRgbaBytes> views(row.size());
    std::vector<PxRgbaBytes> expected(row.size());
    vm::GetRgbaRow(std::span<const TypeParam>(row), views.data());
    vm::scalar::GetRgba(std::span<const TypeParam>(row), expected.data());
    ASSERT_TRUE(SameRows(views, expected));
  }
}

TYPED_TEST(ConvertRows, ReadingAsRgba64GivesWhatEachRecordGives) {
  for (const auto& row : Rows<TypeParam>()) {
    std::vector<PxRgba64> views(row.size());
    std::vector<PxRgba64> expected(row.size());
    vm::GetRgba64Row(std::span<const TypeParam>(row), views.data());
    vm::scalar::GetRgba64(std::span<const TypeParam>(row), expected.data());
    ASSERT_TRUE(SameRows(views, expected));
  }
}

TYPED_TEST(ConvertRows, WritingFromRgbaStoresWhatEachRecordStores) {
  if constexpr (!std::is_same_v<TypeParam, PxCmykBytes>) {  // which reports each attempt
    for (const auto& views : Rows<PxRgbaBytes>()) {
      std::vector<TypeParam> row = RandomRow<TypeParam>(views.size(), 77);
      std::vector<TypeParam> expected = row;
      vm::PutRgbaRow(views.data(), std::span<TypeParam>(row));
      vm::scalar::PutRgba(views.data(), std::span<TypeParam>(expected));
      ASSERT_TRUE(SameRows(row, expected));
    }
  }
}

TYPED_TEST(ConvertRows, WritingFromRgba64StoresWhatEachRecordStores) {
  for (const auto& views : Rows<PxRgba64>()) {
    std::vector<TypeParam> row = RandomRow<TypeParam>(views.size(), 78);
    std::vector<TypeParam> expected = row;
    vm::PutRgba64Row(views.data(), std::span<TypeParam>(row));
    vm::scalar::PutRgba64(views.data(), std::span<TypeParam>(expected));
    ASSERT_TRUE(SameRows(row, expected));
  }
}

// Four pixels at once cross the 32-bit numbers in which they lie: one worked out by hand.
TEST(ConvertRows, FourPackedRgbPixelsSpreadWithFullAlpha) {
  const std::vector<PxRgbBytes> row{{1, 2, 3}, {4, 5, 6}, {7, 8, 9}, {10, 11, 12}};
  std::vector<PxRgbaBytes> views(4);
  vm::GetRgbaRow(std::span<const PxRgbBytes>(row), views.data());
  EXPECT_TRUE(SameRows(views, {{1, 2, 3, 255}, {4, 5, 6, 255}, {7, 8, 9, 255}, {10, 11, 12, 255}}));
}

TEST(ConvertRows, FourRgbaPixelsPackWithoutTheirAlpha) {
  const std::vector<PxRgbaBytes> views{
      {1, 2, 3, 90}, {4, 5, 6, 91}, {7, 8, 9, 92}, {10, 11, 12, 93}};
  std::vector<PxRgbBytes> row(4);
  vm::PutRgbaRow(views.data(), std::span<PxRgbBytes>(row));
  EXPECT_TRUE(SameRows(row, {{1, 2, 3}, {4, 5, 6}, {7, 8, 9}, {10, 11, 12}}));
}

TEST(ConvertRows, BytesBecomeWordsWithRedFirst) {
  const std::vector<PxRgbaBytes> row(5, PxRgbaBytes::Of(0x12, 0x34, 0x56, 0xFF));
  std::vector<PxRgba64> views(5);
  vm::GetRgba64Row(std::span<const PxRgbaBytes>(row), views.data());
  EXPECT_TRUE(SameRows(views, std::vector<PxRgba64>(5, {0x1212, 0x3434, 0x5656, 0xFFFF})));
}

}  // namespace
