#include "filter_host/HostSession.h"

#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <stdexcept>

#include "foundation/FourCharCode.h"

using namespace filter_host;

namespace {

// What the filter of the test at hand does for a selector.
std::function<int16_t(int16_t, FilterRecord&)> gFilter;
std::vector<int16_t> gSelectors;

void VM_HOST_CALL Filter(int16_t selector, FilterRecord* record, intptr_t*, int16_t* result) {
  gSelectors.push_back(selector);
  *result = gFilter(selector, *record);
}

void EmptyRects(FilterRecord& record) {
  record.inRect = record.outRect = record.maskRect = Rect{};
}

void AskForAll(FilterRecord& record) {
  record.inRect = record.outRect = Rect{0, 0, record.imageSize.v, record.imageSize.h};
  record.inLoPlane = record.outLoPlane = 0;
  record.inHiPlane = record.outHiPlane = static_cast<int16_t>(record.planes - 1);
}

// A gray image whose samples are 10 * y + x.
HostPlanes Numbered(int32_t width, int32_t height, const char* format = "gray") {
  HostPlanes planes;
  planes.width = width;
  planes.height = height;
  planes.format = *FindPlaneFormat(format);
  planes.samples.resize(planes.RowBytes() * static_cast<std::size_t>(height));
  for (int32_t y = 0; y < height; ++y) {
    for (int32_t x = 0; x < width; ++x) {
      for (int32_t plane = 0; plane < planes.format.planes; ++plane) {
        planes.SetSample(x, y, plane, 10 * y + x + 100 * plane);
      }
    }
  }
  return planes;
}

uint8_t At(void* data, int32_t rowBytes, int32_t x, int32_t y) {
  return static_cast<uint8_t*>(data)[static_cast<std::ptrdiff_t>(y) * rowBytes + x];
}

class Session : public testing::Test {
 protected:
  void SetUp() override {
    gSelectors.clear();
    gFilter = [](int16_t, FilterRecord& record) {
      EmptyRects(record);
      return noErr;
    };
  }
  // Runs the filter under Start, inside the callbacks' reach, and ends the loop.
  void InStart(HostSession& session, const std::function<void(FilterRecord&)>& work) {
    gFilter = [&work](int16_t selector, FilterRecord& record) {
      if (selector == filterSelectorStart) {
        work(record);
      }
      if (selector != filterSelectorStart) {
        EmptyRects(record);
      }
      return noErr;
    };
    const RunOutcome outcome = session.Run(&Filter, false);
    EXPECT_TRUE(outcome.Succeeded()) << outcome.fault;
  }
};

}  // namespace

TEST_F(Session, CallsTheSelectorsInOrder) {
  HostSession session(Numbered(3, 2), std::nullopt, {}, std::nullopt);
  int continues = 0;
  gFilter = [&](int16_t selector, FilterRecord& record) {
    if (selector == filterSelectorStart) {
      AskForAll(record);
    } else if (selector == filterSelectorContinue && ++continues == 2) {
      EmptyRects(record);
    }
    return noErr;
  };
  EXPECT_TRUE(session.Run(&Filter, true).Succeeded());
  EXPECT_EQ(gSelectors, (std::vector<int16_t>{1, 2, 3, 4, 4, 5}));
  gSelectors.clear();
  continues = 0;
  session.Run(&Filter, false);
  EXPECT_EQ(gSelectors.front(), filterSelectorPrepare);
}

TEST_F(Session, FinishIsLeftOutAfterAnErrorFromStartAndCalledAfterOneFromContinue) {
  HostSession session(Numbered(3, 2), std::nullopt, {}, std::nullopt);
  gFilter = [](int16_t selector, FilterRecord&) {
    return selector == filterSelectorStart ? userCanceledErr : noErr;
  };
  RunOutcome outcome = session.Run(&Filter, false);
  EXPECT_EQ(outcome.failedSelector, filterSelectorStart);
  EXPECT_EQ(outcome.result, userCanceledErr);
  EXPECT_EQ(gSelectors, (std::vector<int16_t>{2, 3}));

  gSelectors.clear();
  gFilter = [](int16_t selector, FilterRecord& record) {
    AskForAll(record);
    return selector == filterSelectorContinue ? filterBadParameters : noErr;
  };
  outcome = session.Run(&Filter, false);
  EXPECT_EQ(outcome.failedSelector, filterSelectorContinue);
  EXPECT_EQ(outcome.result, filterBadParameters);
  EXPECT_EQ(gSelectors, (std::vector<int16_t>{2, 3, 4, 5}));
}

TEST_F(Session, WhatTheFilterThrowsEndsTheRunAndIsTold) {
  HostSession session(Numbered(3, 2), std::nullopt, {}, std::nullopt);
  gFilter = [](int16_t, FilterRecord&) -> int16_t { throw std::runtime_error("oh"); };
  const RunOutcome outcome = session.Run(&Filter, false);
  EXPECT_EQ(outcome.failedSelector, filterSelectorPrepare);
  EXPECT_NE(outcome.fault.find("oh"), std::string::npos);
  EXPECT_EQ(gSelectors.size(), 1u);
}

TEST_F(Session, FillsTheRecord) {
  HostPlanes image = Numbered(30, 20, "rgba64");
  image.dotsPerInch = 300.0;
  SessionSettings settings;
  settings.foreground = {0x1212, 0, 0xFFFF};
  HostSession session(std::move(image), std::nullopt, settings, std::nullopt);
  const FilterRecord& record = session.Record();
  EXPECT_EQ(record.imageSize.h, 30);
  EXPECT_EQ(record.imageSize.v, 20);
  EXPECT_EQ(record.planes, 4);
  EXPECT_EQ(record.imageMode, plugInModeRGB48);
  EXPECT_EQ(record.depth, 16);
  EXPECT_EQ(record.filterCase, filterCaseEditableTransparencyNoSelection);
  EXPECT_EQ(record.filterRect.right, 30);
  EXPECT_EQ(record.filterRect.bottom, 20);
  EXPECT_EQ(record.haveMask, 0);
  EXPECT_TRUE(record.parameters == nullptr);
  EXPECT_EQ(record.imageHRes, 300 << 16);
  EXPECT_EQ(record.inputRate, 1 << 16);
  EXPECT_EQ(record.inLayerPlanes, 3);
  EXPECT_EQ(record.inTransparencyMask, 1);
  EXPECT_EQ(record.foreColor[0], 0x12);
  EXPECT_EQ(record.foreColor[2], 0xFF);
  EXPECT_TRUE(record.inData == nullptr);
  EXPECT_TRUE(record.advanceState != nullptr);
  EXPECT_TRUE(record.abortProc != nullptr);
  EXPECT_TRUE(record.progressProc != nullptr);
  EXPECT_TRUE(record.displayPixels != nullptr);
  EXPECT_EQ(record.descriptorParameters->playInfo, plugInDialogDisplay);
  EXPECT_TRUE(record.descriptorParameters->descriptor == nullptr);
}

TEST_F(Session, LeavesOutWhatItIsToldTo) {
  SessionSettings settings;
  settings.withoutAbort = settings.withoutProgress = settings.withoutAdvance = true;
  settings.withoutDisplay = settings.withoutHandles = settings.withoutDescriptors = true;
  settings.imageMode = 9;
  settings.filterCase = 6;
  HostSession session(Numbered(1, 1), std::nullopt, settings, std::nullopt);
  const FilterRecord& record = session.Record();
  EXPECT_TRUE(record.abortProc == nullptr);
  EXPECT_TRUE(record.progressProc == nullptr);
  EXPECT_TRUE(record.advanceState == nullptr);
  EXPECT_TRUE(record.displayPixels == nullptr);
  EXPECT_TRUE(record.handleProcs == nullptr);
  EXPECT_TRUE(record.descriptorParameters == nullptr);
  EXPECT_EQ(record.imageMode, 9);
  EXPECT_EQ(record.filterCase, 6);
}

TEST_F(Session, AdvanceDeliversTheRectangleAndPlanesWithAPitchOfItsOwn) {
  SessionSettings settings;
  settings.rowPadding = 5;
  HostSession session(Numbered(4, 3, "rgb"), std::nullopt, settings, std::nullopt);
  InStart(session, [](FilterRecord& record) {
    record.inRect = Rect{1, 1, 3, 3};
    record.inLoPlane = 1;
    record.inHiPlane = 2;
    ASSERT_EQ(record.advanceState(), noErr);
    EXPECT_EQ(record.inRowBytes, 2 * 2 + 5);
    const auto* bytes = static_cast<uint8_t*>(record.inData);
    // Pixel (1, 1): plane 1 is 111, plane 2 is 211.
    EXPECT_EQ(std::vector<uint8_t>(bytes, bytes + 4), (std::vector<uint8_t>{111, 211, 112, 212}));
    EXPECT_EQ(At(record.inData, record.inRowBytes, 0, 1), 121);
    EXPECT_TRUE(record.outData == nullptr);
    EXPECT_TRUE(record.maskData == nullptr);
    EmptyRects(record);
  });
  EXPECT_EQ(session.AdvanceCalls(), 1);
}

TEST_F(Session, OutsideTheImageTheInputIsPaddedOrRepeatsTheEdge) {
  HostSession session(Numbered(2, 2), std::nullopt, {}, std::nullopt);
  InStart(session, [](FilterRecord& record) {
    record.inRect = Rect{-1, -1, 3, 3};
    record.inHiPlane = 0;
    record.inputPadding = 7;
    ASSERT_EQ(record.advanceState(), noErr);
    EXPECT_EQ(At(record.inData, record.inRowBytes, 0, 0), 7);
    EXPECT_EQ(At(record.inData, record.inRowBytes, 1, 1), 0);
    EXPECT_EQ(At(record.inData, record.inRowBytes, 3, 3), 7);
    record.inputPadding = plugInDoesNotWantPadding;
    ASSERT_EQ(record.advanceState(), noErr);
    EXPECT_EQ(At(record.inData, record.inRowBytes, 3, 3), 11);
    EXPECT_EQ(At(record.inData, record.inRowBytes, 3, 0), 1);
    EmptyRects(record);
  });
}

TEST_F(Session, TakesBackWhatWasWrittenThroughTheFormerOutput) {
  HostSession session(Numbered(3, 2), std::nullopt, {}, std::nullopt);
  InStart(session, [](FilterRecord& record) {
    record.outRect = Rect{0, 1, 2, 5};  // two columns behind the image, which the host drops
    record.outHiPlane = 0;
    ASSERT_EQ(record.advanceState(), noErr);
    EXPECT_EQ(At(record.outData, record.outRowBytes, 0, 1), 11);  // what the image holds now
    for (int32_t y = 0; y < 2; ++y) {
      std::memset(static_cast<uint8_t*>(record.outData) + y * record.outRowBytes, 200 + y, 4);
    }
    // Even a filter that clears the pointer has handed its work over.
    record.outData = nullptr;
    ASSERT_EQ(record.advanceState(), noErr);
    EXPECT_EQ(At(record.outData, record.outRowBytes, 0, 1), 201);
    EmptyRects(record);
  });
  EXPECT_EQ(session.Result().samples, (std::vector<uint8_t>{0, 200, 200, 10, 201, 201}));
  EXPECT_EQ(session.Source().samples, (std::vector<uint8_t>{0, 1, 2, 10, 11, 12}));
  EXPECT_TRUE(session.CollectWarnings().empty());
}

TEST_F(Session, TheInputStaysTheSourceWhateverTheFilterDoesToItsCopy) {
  HostSession session(Numbered(3, 1), std::nullopt, {}, std::nullopt);
  InStart(session, [](FilterRecord& record) {
    AskForAll(record);
    ASSERT_EQ(record.advanceState(), noErr);
    std::memset(record.inData, 99, 3);
    std::memset(record.outData, 50, 3);
    ASSERT_EQ(record.advanceState(), noErr);
    EXPECT_EQ(At(record.inData, record.inRowBytes, 2, 0), 2);
    EmptyRects(record);
  });
  EXPECT_EQ(session.Result().samples, (std::vector<uint8_t>{50, 50, 50}));
}

TEST_F(Session, TellsAFilterThatWritesBehindItsRows) {
  HostSession session(Numbered(3, 2), std::nullopt, {}, std::nullopt);
  InStart(session, [](FilterRecord& record) {
    AskForAll(record);
    ASSERT_EQ(record.advanceState(), noErr);
    std::memset(record.outData, 50, 4);
    std::memset(static_cast<uint8_t*>(record.outData) + 2 * record.outRowBytes, 50, 1);
    EmptyRects(record);
  });
  ASSERT_EQ(session.CollectWarnings().size(), 2u);
  EXPECT_NE(session.CollectWarnings()[0].find("behind the end of 1 rows"), std::string::npos);
  EXPECT_NE(session.CollectWarnings()[1].find("output buffer"), std::string::npos);
}

TEST_F(Session, RefusesPlanesThatTheImageHasNotAndAreasThatAreTooLarge) {
  HostSession session(Numbered(3, 2, "rgb"), std::nullopt, {}, std::nullopt);
  InStart(session, [](FilterRecord& record) {
    AskForAll(record);
    record.inHiPlane = 3;
    EXPECT_EQ(record.advanceState(), filterBadParameters);
    EXPECT_TRUE(record.inData == nullptr);
    record.inHiPlane = -1;
    EXPECT_EQ(record.advanceState(), filterBadParameters);
    record.inHiPlane = 2;
    record.outRect = Rect{-32768, -32768, 32767, 32767};
    EXPECT_EQ(record.advanceState(), memFullErr);
    EXPECT_TRUE(record.outData == nullptr);
    EmptyRects(record);
  });
}

TEST_F(Session, FailsTheAdvanceCallsThatItIsToldToFail) {
  SessionSettings settings;
  settings.failAdvanceFirst = 2;
  settings.failAdvanceLast = 3;
  settings.failAdvanceWith = -1234;
  HostSession session(Numbered(3, 2), std::nullopt, settings, std::nullopt);
  InStart(session, [](FilterRecord& record) {
    EXPECT_EQ(record.advanceState(), noErr);
    EXPECT_EQ(record.advanceState(), -1234);
    EXPECT_EQ(record.advanceState(), -1234);
    EXPECT_EQ(record.advanceState(), noErr);
  });
}

TEST_F(Session, DeliversTheMaskForTheMaskRectAndKeepsItInPlace) {
  Selection selection{{0, 9, 8, 0, 0, 7}, {}};
  selection.bounds = BoundsOfCoverage(selection.coverage, 3, 2);
  EXPECT_EQ(selection.bounds.left, 1);
  EXPECT_EQ(selection.bounds.right, 3);
  EXPECT_EQ(selection.bounds.bottom, 2);
  HostSession session(Numbered(3, 2), selection, {}, std::nullopt);
  EXPECT_EQ(session.Record().filterCase, filterCaseFlatImageWithSelection);
  InStart(session, [](FilterRecord& record) {
    EXPECT_EQ(record.haveMask, 1);
    record.maskRect = record.filterRect;
    ASSERT_EQ(record.advanceState(), noErr);
    EXPECT_EQ(At(record.maskData, record.maskRowBytes, 0, 0), 9);
    EXPECT_EQ(At(record.maskData, record.maskRowBytes, 1, 1), 7);
    const void* mask = record.maskData;
    record.maskData = nullptr;
    ASSERT_EQ(record.advanceState(), noErr);
    EXPECT_TRUE(record.maskData == mask);
    EmptyRects(record);
  });
}

TEST_F(Session, ASelectionRestrictsTheResultUnlessTheFilterMindsItItself) {
  const auto paint = [](FilterRecord& record) {
    AskForAll(record);
    ASSERT_EQ(record.advanceState(), noErr);
    std::memset(record.outData, 100, 3);
    EmptyRects(record);
  };
  const Selection selection{{0, 255, 0}, Rect{0, 0, 1, 3}};
  HostSession masked(Numbered(3, 1), selection, {}, FilterCaseInfo{1, 1, 0, 0});
  EXPECT_NE(masked.Record().autoMask, 0);
  InStart(masked, paint);
  EXPECT_EQ(masked.Result().samples, (std::vector<uint8_t>{0, 100, 2}));
  HostSession free(Numbered(3, 1), selection, {}, FilterCaseInfo{1, 1, kWritesOutsideSelection, 0});
  EXPECT_EQ(free.Record().autoMask, 0);
  InStart(free, paint);
  EXPECT_EQ(free.Result().samples, (std::vector<uint8_t>{100, 100, 100}));
}

TEST_F(Session, ProtectedTransparencyKeepsTheAlphaPlane) {
  SessionSettings settings;
  settings.filterCase = filterCaseProtectedTransparencyNoSelection;
  HostSession session(Numbered(1, 1, "graya"), std::nullopt, settings, std::nullopt);
  InStart(session, [](FilterRecord& record) {
    AskForAll(record);
    ASSERT_EQ(record.advanceState(), noErr);
    std::memset(record.outData, 77, 2);
    EmptyRects(record);
  });
  EXPECT_EQ(session.Result().samples, (std::vector<uint8_t>{77, 100}));
}

TEST_F(Session, TransparentInputGetsTheMatteThatTheFilterAsksFor) {
  HostPlanes image = Numbered(1, 1, "graya");
  image.samples = {100, 51};
  const auto seen = [&](uint8_t matte, int16_t filterCase) {
    SessionSettings settings;
    settings.filterCase = filterCase;
    HostSession session(image, std::nullopt, settings, FilterCaseInfo{matte, 1, 0, 0});
    int gray = -1;
    InStart(session, [&](FilterRecord& record) {
      AskForAll(record);
      record.outRect = Rect{};
      ASSERT_EQ(record.advanceState(), noErr);
      gray = At(record.inData, record.inRowBytes, 0, 0);
      EmptyRects(record);
    });
    return gray;
  };
  EXPECT_EQ(seen(kMatteNone, 4), 100);
  EXPECT_EQ(seen(kMatteBlack, 4), 20);
  EXPECT_EQ(seen(kMatteGray, 4), 122);  // 20 and 204 of 255 of the 128 that is middle gray
  EXPECT_EQ(seen(kMatteWhite, 4), 224);
  EXPECT_EQ(seen(kMatteWhite, 1), 100);  // a flat image has none
}

TEST_F(Session, AbortProcSaysYesWhenItsTimeHasCome) {
  SessionSettings settings;
  settings.abortAfter = std::chrono::milliseconds(0);
  HostSession session(Numbered(1, 1), std::nullopt, settings, std::nullopt);
  InStart(session, [](FilterRecord& record) { EXPECT_NE(record.abortProc(), 0); });
  HostSession patient(Numbered(1, 1), std::nullopt, {}, std::nullopt);
  InStart(patient, [](FilterRecord& record) {
    EXPECT_EQ(record.abortProc(), 0);
    record.progressProc(1, 2);
  });
  EXPECT_EQ(patient.ProgressCalls(), 1);
}

TEST_F(Session, ParametersGoThroughTheDescriptorSuite) {
  HostSession session(Numbered(1, 1), std::nullopt, {}, std::nullopt);
  InStart(session, [](FilterRecord& record) {
    PIDescriptorParameters& parameters = *record.descriptorParameters;
    WriteDescriptorProcs& write = *parameters.writeDescriptorProcs;
    const PIWriteDescriptor token = write.openWriteDescriptorProc();
    const double size = 61.0;
    const uint8_t name[] = {2, 'o', 'k'};
    EXPECT_EQ(write.putStringProc(token, FourCC("aeAU"), name), noErr);
    EXPECT_EQ(write.putFloatProc(token, FourCC("aeCT"), &size), noErr);
    EXPECT_EQ(write.putIntegerProc(token, FourCC("inte"), -5), noErr);
    EXPECT_EQ(write.putBooleanProc(token, FourCC("bool"), 7), noErr);
    EXPECT_EQ(write.putEnumeratedProc(token, FourCC("enum"), FourCC("Ordn"), FourCC("Trgt")),
              noErr);
    EXPECT_EQ(write.closeWriteDescriptorProc(token, &parameters.descriptor), noErr);
  });
  EXPECT_EQ(session.RecordedDescriptor(),
            "filter-descriptor 1\n'aeAU' string \"ok\"\n'aeCT' float 61\n'inte' integer -5\n"
            "'bool' boolean 1\n'enum' enumerated 'Ordn' 'Trgt'\n");

  SessionSettings settings;
  settings.replay = session.RecordedDescriptor();
  settings.playInfo = plugInDialogSilent;
  HostSession replay(Numbered(1, 1), std::nullopt, settings, std::nullopt);
  InStart(replay, [](FilterRecord& record) {
    PIDescriptorParameters& parameters = *record.descriptorParameters;
    EXPECT_EQ(parameters.playInfo, plugInDialogSilent);
    ReadDescriptorProcs& read = *parameters.readDescriptorProcs;
    DescriptorKeyID keys[] = {FourCC("aeCT"), 0};
    const PIReadDescriptor token = read.openReadDescriptorProc(parameters.descriptor, keys);
    DescriptorKeyID key = 0;
    DescriptorTypeID type = 0;
    int32_t flags = 0;
    Str255 text{};
    double number = 0;
    int32_t integer = 0;
    ASSERT_TRUE(read.getKeyProc(token, &key, &type, &flags));
    EXPECT_EQ(read.getStringProc(token, text), noErr);
    EXPECT_EQ(std::string(reinterpret_cast<char*>(text), 3), "\x02ok");
    ASSERT_TRUE(read.getKeyProc(token, &key, &type, &flags));
    EXPECT_EQ(read.getFloatProc(token, &number), noErr);
    EXPECT_EQ(number, 61.0);
    ASSERT_TRUE(read.getKeyProc(token, &key, &type, &flags));
    EXPECT_EQ(read.getPinnedIntegerProc(token, 0, 9, &integer), kCoercedParamErr);
    EXPECT_EQ(integer, 0);
    EXPECT_EQ(read.closeReadDescriptorProc(token), noErr);
    record.handleProcs->disposeProc(parameters.descriptor);
    parameters.descriptor = nullptr;
  });
  EXPECT_EQ(replay.RecordedDescriptor(), "");
  EXPECT_TRUE(replay.CollectWarnings().empty());
}

TEST_F(Session, TellsHandlesAndDescriptorsThatTheFilterLeavesBehind) {
  HostSession session(Numbered(1, 1), std::nullopt, {}, std::nullopt);
  InStart(session, [](FilterRecord& record) {
    record.handleProcs->newProc(10);
    record.handleProcs->disposeProc(reinterpret_cast<Handle>(&record));
    record.descriptorParameters->writeDescriptorProcs->openWriteDescriptorProc();
  });
  const Warnings warnings = session.CollectWarnings();
  ASSERT_EQ(warnings.size(), 3u);
  EXPECT_NE(warnings[0].find("left 1 handles"), std::string::npos);
  EXPECT_NE(warnings[1].find("no handle 1 times"), std::string::npos);
  EXPECT_NE(warnings[2].find("left 1 descriptors open"), std::string::npos);
}

TEST_F(Session, ColourServicesPickConvertSampleAndTellTheSpecialColours) {
  SessionSettings settings;
  settings.foreground = {0xFFFF, 0, 0};
  HostSession session(Numbered(3, 2, "rgb"), std::nullopt, settings, std::nullopt);
  InStart(session, [](FilterRecord& record) {
    ColorServicesInfo info{};
    info.infoSize = sizeof(info);
    info.selector = plugIncolorServicesChooseColor;
    EXPECT_EQ(record.colorServices(&info), userCanceledErr);
    info.selector = plugIncolorServicesGetSpecialColor;
    info.selectorParameter.specialColorID = 0;
    EXPECT_EQ(record.colorServices(&info), noErr);
    EXPECT_EQ(info.colorComponents[0], 255);
    EXPECT_EQ(info.colorComponents[1], 0);
    Point point{1, 2};
    info.selector = plugIncolorServicesSamplePoint;
    info.selectorParameter.globalSamplePoint = &point;
    EXPECT_EQ(record.colorServices(&info), noErr);
    EXPECT_EQ(info.colorComponents[1], 112);
    point.h = 3;
    EXPECT_EQ(record.colorServices(&info), kParamErr);
    info.selector = plugIncolorServicesConvertColor;
    info.sourceSpace = kSpaceHsb;
    info.resultSpace = kSpaceRgb;
    info.colorComponents[0] = 120;
    info.colorComponents[1] = 100;
    info.colorComponents[2] = 100;
    EXPECT_EQ(record.colorServices(&info), noErr);
    EXPECT_EQ(info.colorComponents[0], 0);
    EXPECT_EQ(info.colorComponents[1], 255);
    info.sourceSpace = 3;
    EXPECT_EQ(record.colorServices(&info), kParamErr);
    EXPECT_EQ(record.colorServices(nullptr), kParamErr);
  });
}

TEST(ColourConversion, GoesByWayOfRgb) {
  std::array<int16_t, 4> colour{200, 100, 50, 0};
  EXPECT_TRUE(ConvertColour(colour, kSpaceRgb, kSpaceHsb));
  EXPECT_EQ(colour, (std::array<int16_t, 4>{20, 75, 78, 0}));  // sector 1/3, 150/200, 200/255
  colour = {200, 100, 50, 0};
  EXPECT_TRUE(ConvertColour(colour, kSpaceRgb, kSpaceHsl));
  EXPECT_EQ(colour, (std::array<int16_t, 4>{20, 60, 49, 0}));  // 150/250, 250/510
  colour = {200, 100, 50, 0};
  EXPECT_TRUE(ConvertColour(colour, kSpaceRgb, kSpaceCmyk));
  EXPECT_EQ(colour, (std::array<int16_t, 4>{255, 128, 64, 200}));
  colour = {200, 100, 50, 0};
  EXPECT_TRUE(ConvertColour(colour, kSpaceRgb, kSpaceGray));
  EXPECT_EQ(colour[0], 124);
  colour = {0, 0, 0, 0};
  EXPECT_TRUE(ConvertColour(colour, kSpaceRgb, kSpaceHsb));
  EXPECT_EQ(colour, (std::array<int16_t, 4>{0, 0, 0, 0}));
  EXPECT_FALSE(ConvertColour(colour, kSpaceRgb, 3));
}

TEST(PixelMap, PaintsGrayRgbAndCmyk) {
  const uint8_t pixels[] = {10, 20, 30, 200, 255, 155, 105, 200};
  PSPixelMap map{};
  map.bounds = {5, 5, 6, 7};
  map.imageMode = plugInModeRGBColor;
  map.rowBytes = 8;
  map.colBytes = 4;
  map.planeBytes = 1;
  map.baseAddr = const_cast<uint8_t*>(pixels);
  const VRect all{5, 5, 6, 7};
  PaintedArea painted;
  ASSERT_TRUE(PaintableArea(&map, &all, &painted));
  EXPECT_EQ(painted.width, 2);
  EXPECT_EQ(painted.bgrx, (std::vector<uint8_t>{30, 20, 10, 0, 105, 155, 255, 0}));
  map.imageMode = plugInModeGrayScale;
  const VRect second{5, 6, 6, 7};
  ASSERT_TRUE(PaintableArea(&map, &second, &painted));
  EXPECT_EQ(painted.bgrx, (std::vector<uint8_t>{255, 255, 255, 0}));
  map.imageMode = plugInModeCMYKColor;
  ASSERT_TRUE(PaintableArea(&map, &second, &painted));
  EXPECT_EQ(painted.bgrx, (std::vector<uint8_t>{50, 100, 200, 0}));
  map.imageMode = plugInModeLabColor;
  EXPECT_FALSE(PaintableArea(&map, &all, &painted));
  const VRect outside{5, 5, 7, 7};
  map.imageMode = plugInModeRGBColor;
  EXPECT_FALSE(PaintableArea(&map, &outside, &painted));
  EXPECT_FALSE(PaintableArea(nullptr, &all, &painted));
}
