#include "image/pixels/PixelInfo.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstring>
#include <string>
#include <type_traits>
#include <vector>

#include "image/pixels/PxRecords.h"

namespace {

template <class P>
std::vector<uint8_t> BytesOf(const P& pixel) {
  std::vector<uint8_t> bytes(sizeof pixel);
  std::memcpy(bytes.data(), &pixel, sizeof pixel);
  return bytes;
}
using Bytes = std::vector<uint8_t>;

static_assert(offsetof(PxGrayByte, gray) == 0);
static_assert(offsetof(PxGrayABytes, gray) == 0 && offsetof(PxGrayABytes, alpha) == 1);
static_assert(offsetof(PxAlphaByte, alpha) == 0);
static_assert(offsetof(PxRgbBytes, blue) == 0 && offsetof(PxRgbBytes, green) == 1 &&
              offsetof(PxRgbBytes, red) == 2);
static_assert(offsetof(PxRgbaBytes, blue) == 0 && offsetof(PxRgbaBytes, green) == 1 &&
              offsetof(PxRgbaBytes, red) == 2 && offsetof(PxRgbaBytes, alpha) == 3);
static_assert(offsetof(PxRgb48, blue) == 0 && offsetof(PxRgb48, green) == 2 &&
              offsetof(PxRgb48, red) == 4);
static_assert(offsetof(PxRgba64, red) == 0 && offsetof(PxRgba64, green) == 2 &&
              offsetof(PxRgba64, blue) == 4 && offsetof(PxRgba64, alpha) == 6);
static_assert(offsetof(PxDepthFloat, depth) == 0);
static_assert(offsetof(PxXyFixed, xWhole) == 0 && offsetof(PxXyFixed, xFraction) == 1 &&
              offsetof(PxXyFixed, yWhole) == 2 && offsetof(PxXyFixed, yFraction) == 3);
static_assert(offsetof(PxXyFloats, x) == 0 && offsetof(PxXyFloats, y) == 4);
static_assert(offsetof(PxCmykBytes, cyan) == 0 && offsetof(PxCmykBytes, magenta) == 1 &&
              offsetof(PxCmykBytes, yellow) == 2 && offsetof(PxCmykBytes, black) == 3);
static_assert(offsetof(PxCmykaBytes, cyan) == 0 && offsetof(PxCmykaBytes, magenta) == 1 &&
              offsetof(PxCmykaBytes, yellow) == 2 && offsetof(PxCmykaBytes, black) == 3 &&
              offsetof(PxCmykaBytes, alpha) == 4);
static_assert(offsetof(PxCmyk64, cyan) == 0 && offsetof(PxCmyk64, magenta) == 2 &&
              offsetof(PxCmyk64, yellow) == 4 && offsetof(PxCmyk64, black) == 6);
static_assert(offsetof(PxCmyka80, cyan) == 0 && offsetof(PxCmyka80, magenta) == 2 &&
              offsetof(PxCmyka80, yellow) == 4 && offsetof(PxCmyka80, black) == 6 &&
              offsetof(PxCmyka80, alpha) == 8);

// What the images report, column by column. Codes are spelled as numbers here to fix the order of
// their characters.
struct Row {
  const char* name;
  int32_t bitsPerPixel;
  int32_t bytesPerPixel;
  int32_t bitsPerChannel;
  int32_t channels;
  uint32_t kind;
  uint32_t model;
  bool hasAlpha;
};
constexpr std::array<Row, 15> kRows{{
    {"PxGrayByte", 8, 1, 8, 1, 0x47726142 /*GraB*/, 0x47726142 /*GraB*/, false},
    {"PxGrayABytes", 16, 2, 8, 2, 0x47726141 /*GraA*/, 0x47726142 /*GraB*/, true},
    {"PxAlphaByte", 8, 1, 8, 1, 0x416C7042 /*AlpB*/, 0x416C7042 /*AlpB*/, true},
    {"PxGrayBit", 1, 1, 1, 1, 0x47724274 /*GrBt*/, 0x47726142 /*GraB*/, false},
    {"PxRgbBytes", 24, 3, 8, 3, 0x52473234 /*RG24*/, 0x52676261 /*Rgba*/, false},
    {"PxRgbaBytes", 32, 4, 8, 4, 0x52676261 /*Rgba*/, 0x52676261 /*Rgba*/, true},
    {"PxRgb48", 48, 6, 16, 3, 0x52473438 /*RG48*/, 0x52676261 /*Rgba*/, false},
    {"PxRgba64", 64, 8, 16, 4, 0x52673634 /*Rg64*/, 0x52676261 /*Rgba*/, true},
    {"PxDepthFloat", 32, 4, 32, 1, 0x44657046 /*DepF*/, 0x44657046 /*DepF*/, false},
    {"PxXyFixed", 32, 4, 16, 4, 0x58596669 /*XYfi*/, 0x58596669 /*XYfi*/, false},
    {"PxXyFloats", 64, 8, 32, 2, 0x58596669 /*XYfi*/, 0x58596669 /*XYfi*/, false},
    {"PxCmykBytes", 32, 4, 8, 4, 0x436D796B /*Cmyk*/, 0x52676261 /*Rgba*/, false},
    {"PxCmykaBytes", 40, 5, 8, 5, 0x436D7961 /*Cmya*/, 0x52676261 /*Rgba*/, true},
    {"PxCmyk64", 64, 8, 16, 4, 0x436D3634 /*Cm64*/, 0x52676261 /*Rgba*/, false},
    {"PxCmyka80", 80, 10, 16, 5, 0x436D3830 /*Cm80*/, 0x52676261 /*Rgba*/, true},
}};

TEST(PixelInfo, EachRecordReportsItsRowOfTheTableAsItStands) {
  size_t index = 0;
  vm::ForEachRecord([&]<class P>() {
    ASSERT_LT(index, kRows.size());
    const Row& row = kRows[index++];
    SCOPED_TRACE(row.name);
    EXPECT_STREQ(P::kName, row.name);
    EXPECT_EQ(P::kInfo.bitsPerPixel, row.bitsPerPixel);
    EXPECT_EQ(P::kInfo.bytesPerPixel, row.bytesPerPixel);
    EXPECT_EQ(P::kInfo.bitsPerChannel, row.bitsPerChannel);
    EXPECT_EQ(P::kInfo.channels, row.channels);
    EXPECT_EQ(P::kInfo.kind, row.kind);
    EXPECT_EQ(P::kInfo.model, row.model);
    EXPECT_EQ(P::kInfo.hasAlpha, row.hasAlpha);
  });
  EXPECT_EQ(index, 15U);
}

TEST(PixelInfo, RecordsArePlainValuesWithoutPaddingThatStartAsZero) {
  vm::ForEachRecord([]<class P>() {
    SCOPED_TRACE(P::kName);
    EXPECT_EQ(sizeof(P), static_cast<size_t>(P::kInfo.bytesPerPixel));
    EXPECT_TRUE(std::is_trivially_copyable_v<P>);
    EXPECT_TRUE(std::is_standard_layout_v<P>);
    EXPECT_FALSE(std::is_polymorphic_v<P>);
    EXPECT_EQ(BytesOf(P{}), Bytes(sizeof(P), 0));
  });
}

TEST(PixelInfo, FixedAndFloatCoordinatesShareTheirKind) {
  EXPECT_EQ(PxXyFixed::kInfo.kind, PxXyFloats::kInfo.kind);
}

TEST(PixelInfo, FieldsStandInStorageOrder) {
  EXPECT_EQ(BytesOf(PxGrayABytes{1, 2}), Bytes({1, 2}));
  EXPECT_EQ(BytesOf(PxRgbBytes::Of(1, 2, 3)), Bytes({3, 2, 1}));
  EXPECT_EQ(BytesOf(PxRgbaBytes::Of(1, 2, 3, 4)), Bytes({3, 2, 1, 4}));
  EXPECT_EQ(BytesOf(PxXyFixed{1, -2, 3, -4}), Bytes({1, 0xFE, 3, 0xFC}));
  EXPECT_EQ(BytesOf(PxCmykBytes{1, 2, 3, 4}), Bytes({1, 2, 3, 4}));
  EXPECT_EQ(BytesOf(PxCmykaBytes{1, 2, 3, 4, 5}), Bytes({1, 2, 3, 4, 5}));
  // Words and floats lie in the byte order of the processor, which is the low byte first on all
  // targets.
  PxRgb48 rgb48;
  rgb48.red = 0x0102;
  rgb48.green = 0x0304;
  rgb48.blue = 0x0506;
  EXPECT_EQ(BytesOf(rgb48), Bytes({6, 5, 4, 3, 2, 1}));
  PxRgba64 rgba64;
  rgba64.red = 0x0102;
  rgba64.green = 0x0304;
  rgba64.blue = 0x0506;
  rgba64.alpha = 0x0708;
  EXPECT_EQ(BytesOf(rgba64), Bytes({2, 1, 4, 3, 6, 5, 8, 7}));
  EXPECT_EQ(BytesOf(PxCmyk64{0x0102, 0x0304, 0x0506, 0x0708}), Bytes({2, 1, 4, 3, 6, 5, 8, 7}));
  EXPECT_EQ(BytesOf(PxCmyka80{0x0102, 0x0304, 0x0506, 0x0708, 0x090A}),
            Bytes({2, 1, 4, 3, 6, 5, 8, 7, 0x0A, 9}));
  EXPECT_EQ(BytesOf(PxDepthFloat{1.0F}), Bytes({0, 0, 0x80, 0x3F}));
  EXPECT_EQ(BytesOf(PxXyFloats{1.0F, -2.0F}), Bytes({0, 0, 0x80, 0x3F, 0, 0, 0, 0xC0}));
}

TEST(PixelInfo, OnlyRecordsWithColourAndAlphaComposite) {
  std::vector<std::string> compositing;
  vm::ForEachRecord([&]<class P>() {
    if (vm::Compositing<P>) {
      compositing.emplace_back(P::kName);
    }
  });
  EXPECT_EQ(compositing, std::vector<std::string>({"PxGrayABytes", "PxRgbaBytes", "PxRgba64",
                                                   "PxCmykaBytes", "PxCmyka80"}));
}

}  // namespace
