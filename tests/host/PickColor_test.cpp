// The colour picker service through the host's own picker.

#include <gtest/gtest.h>

#include "host/FilterRecord.h"
#include "host/ZVHostPhotoshop.h"
#include "image/pixels/PxViews.h"

namespace {

// What the host was asked, and its answer.
ColorServicesInfo gAsked;
int gTimesAsked = 0;
int16_t gAnswer[4];
int16_t gError = noErr;

int16_t VM_HOST_CALL AnswerColor(ColorServicesInfo* info) {
  gAsked = *info;
  ++gTimesAsked;
  for (int i = 0; i < 4; ++i)
    info->colorComponents[i] = gAnswer[i];
  return gError;
}

class PickColorFromTheHost : public testing::Test {
 protected:
  void SetUp() override {
    mRecord.colorServices = AnswerColor;
    gTimesAsked = 0;
    gError = noErr;
    Answer(0, 0, 0);
  }
  static void Answer(int16_t red, int16_t green, int16_t blue) {
    gAnswer[0] = red;
    gAnswer[1] = green;
    gAnswer[2] = blue;
    gAnswer[3] = 77;
  }
  // False is the answer on every path.
  void Pick(PxRgba64& color) {
    ZVHostPhotoshop host(nullptr, &mRecord, &mResult);
    EXPECT_FALSE(host.PickColor(&color));
  }

  FilterRecord mRecord{};
  int16_t mResult = 123;
};

TEST_F(PickColorFromTheHost, AsksForAnRgbColourWithTheHighBytesAndNoPrompt) {
  PxRgba64 color{0x12FF, 0xABCD, 0x00FF, 0x8000};
  Pick(color);
  ASSERT_EQ(gTimesAsked, 1);
  EXPECT_EQ(gAsked.infoSize, static_cast<int32_t>(sizeof(ColorServicesInfo)));
#ifdef _WIN32
  EXPECT_EQ(gAsked.infoSize, 36);
#endif
  EXPECT_EQ(gAsked.selector, 0);
  EXPECT_EQ(gAsked.sourceSpace, 0);
  EXPECT_EQ(gAsked.resultSpace, 0);
  EXPECT_EQ(gAsked.resultGamutInfoValid, 0);
  EXPECT_EQ(gAsked.resultInGamut, 0);
  EXPECT_EQ(gAsked.reservedSourceSpaceInfo, nullptr);
  EXPECT_EQ(gAsked.reservedResultSpaceInfo, nullptr);
  EXPECT_EQ(gAsked.colorComponents[0], 0x12);
  EXPECT_EQ(gAsked.colorComponents[1], 0xAB) << "a 16-bit number, not a signed byte";
  EXPECT_EQ(gAsked.colorComponents[2], 0x00);
  EXPECT_EQ(gAsked.colorComponents[3], 255);
  EXPECT_EQ(gAsked.reserved, nullptr);
  EXPECT_EQ(gAsked.selectorParameter.pickerPrompt, nullptr);
}

TEST_F(PickColorFromTheHost, TakesEachComponentTimes0x101AndMakesTheColourOpaque) {
  Answer(0x80, 0xFF, 0);
  PxRgba64 color{1, 2, 3, 4};
  Pick(color);
  EXPECT_EQ(color, (PxRgba64{0x8080, 0xFFFF, 0, 0xFFFF}));
  for (int16_t value = 0; value < 256; ++value) {
    Answer(value, value, value);
    Pick(color);
    const auto word = static_cast<uint16_t>(value * 257);
    EXPECT_EQ(color, (PxRgba64{word, word, word, 0xFFFF}));
  }
}

TEST_F(PickColorFromTheHost, TakesTheLowByteOfAComponentOnly) {
  Answer(0x1280, -1, -32768);
  PxRgba64 color{1, 2, 3, 4};
  Pick(color);
  EXPECT_EQ(color, (PxRgba64{0x8080, 0xFFFF, 0, 0xFFFF}));
}

TEST_F(PickColorFromTheHost, AnErrorLeavesTheColourAsItWas) {
  for (const int16_t error : {int16_t{-128}, int16_t{1}, int16_t{-30100}}) {
    gError = error;
    Answer(1, 2, 3);
    PxRgba64 color{10, 20, 30, 40};
    Pick(color);
    EXPECT_EQ(color, (PxRgba64{10, 20, 30, 40}));
  }
  EXPECT_EQ(mResult, 123) << "the selector's result isn't touched";
}

TEST_F(PickColorFromTheHost, WithoutAColourToFillNothingIsAsked) {
  ZVHostPhotoshop host(nullptr, &mRecord, &mResult);
  EXPECT_FALSE(host.PickColor(nullptr));
  EXPECT_EQ(gTimesAsked, 0);
}

}  // namespace
