#include "image/kernels/resample/BoxKernels.h"

#include <vector>

#include "gtest/gtest.h"

namespace vm {
namespace {

// Adding a pixel many times at once gives what adding it one by one gives, roundings included.
TEST(FloatSums, RepeatedAdditionIsAdditionOneByOne) {
  const PxRgbaBytes pixel{255, 1, 77, 254};
  for (const int64_t before : {0, 3, 65793, 300000}) {
    for (const int64_t times : {0, 1, 2, 5, 1000, 70000, 40000000}) {
      FloatSums atOnce;
      FloatSums oneByOne;
      for (int64_t i = 0; i < before; ++i) {
        atOnce.Add(&pixel, 1);
        oneByOne.Add(&pixel, 1);
      }
      atOnce.AddRepeated(pixel, times);
      for (int64_t i = 0; i < times; ++i)
        oneByOne.Add(&pixel, 1);
      // Means over several counts tell the sums apart.
      for (const int64_t count : {before + times, before + times + 12345, (before + times) * 3})
        EXPECT_EQ(atOnce.Mean(count + 1), oneByOne.Mean(count + 1)) << before << " + " << times;
    }
  }
}

TEST(FloatSums, EndlessAdditionComesToAnEnd) {
  FloatSums sums;
  sums.AddRepeated({255, 1, 0, 128}, int64_t{1} << 62);
  EXPECT_EQ(sums.Mean(int64_t{1} << 62), PxRgbaBytes{});
}

TEST(BoxMeans, NarrowAndWideSumsAgree) {
  std::vector<std::vector<PxRgbaBytes>> rows(257);
  std::vector<const PxRgbaBytes*> pointers;
  uint32_t noise = 5;
  for (auto& row : rows) {
    for (int32_t i = 0; i < 11; ++i) {
      noise = noise * 1664525 + 1013904223;
      // The brightest sums: no channel may wrap.
      const auto dark = static_cast<uint8_t>(noise >> 31);
      row.push_back({uint8_t(255 - dark), 255, uint8_t(noise >> 24), 255});
    }
    pointers.push_back(row.data());
  }
  const std::vector<ColumnRange> ranges = {{0, 1}, {0, 3}, {2, 3}, {5, 6}, {10, 1}};
  for (const size_t count : {size_t{1}, size_t{2}, size_t{257}}) {
    std::vector<NarrowSums> narrow(11);
    std::vector<ChannelSums> wide(11);
    SumPixels(pointers.data(), count, narrow.data(), 11);
    for (size_t row = 0; row < count; ++row)
      AddPixels(pointers[row], wide.data(), 11);
    std::vector<PxRgbaBytes> fromNarrow(ranges.size());
    std::vector<PxRgbaBytes> fromWide(ranges.size());
    MeansOfSums(narrow.data(), ranges.data(), ranges.size(), static_cast<int64_t>(count),
                fromNarrow.data());
    MeansOfSums(wide.data(), ranges.data(), ranges.size(), static_cast<int64_t>(count),
                fromWide.data());
    EXPECT_EQ(fromNarrow, fromWide);
    EXPECT_EQ(fromNarrow[0].alpha, static_cast<uint8_t>(255.0F * static_cast<float>(count) *
                                                        (1.0F / static_cast<float>(count))));
  }
}

TEST(BoxMeans, APixelCountedManyTimesIsAddedAsOften) {
  std::vector<ChannelSums> sums(3);
  AddPixelTimes({1, 2, 3, 255}, 65793, sums.data(), 2);
  EXPECT_EQ(sums[1].channel[3], 255U * 65793U);
  EXPECT_EQ(sums[1].channel[0], 65793U);
  EXPECT_EQ(sums[2].channel[0], 0U);
}

}  // namespace
}  // namespace vm
