#include "host/ZVHostPhotoshop.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <memory>

#include "host/PlugInMain.h"
#include "host/TestPlugIn.h"
#include "image/ZvImage.h"

namespace vm {
namespace {

constexpr Rect kNoRect = {0, 0, 0, 0};

FakeHost RgbHost(int16_t width = 4, int16_t height = 3) {
  return FakeHost(plugInModeRGBColor, 3, width, height,
                  std::vector<uint8_t>(static_cast<size_t>(width * height * 3)));
}

std::vector<uint8_t> Bytes(const FilterRecord& record) {
  std::vector<uint8_t> bytes(sizeof(record));
  std::memcpy(bytes.data(), &record, sizeof(record));
  return bytes;
}

TEST(Selectors, AboutParametersAndPrepareLeaveTheRecordUntouchedAndGiveZero) {
  const FreshGlobals fresh;
  FakeHost host = RgbHost();
  const std::vector<uint8_t> before = Bytes(host.Record());
  for (const int16_t selector : std::initializer_list<int16_t>{0, 1, 2}) {
    host.result = FakeHost::kUntouched;
    PlugInMain(selector, &host.Record(), nullptr, &host.result);
    EXPECT_EQ(host.result, 0) << "selector " << selector;
    EXPECT_EQ(Bytes(host.Record()), before) << "selector " << selector;
  }
  EXPECT_TRUE(host.advances.empty());
}

TEST(Selectors, AboutLooksAtNoRecord) {
  const FreshGlobals fresh;
  int16_t result = FakeHost::kUntouched;
  // The host passes an about record here, which is smaller than a filter record.
  const auto aboutRecord = std::make_unique<uint8_t[]>(16);
  PlugInMain(0, reinterpret_cast<FilterRecord*>(aboutRecord.get()), nullptr, &result);
  EXPECT_EQ(result, 0);
}

TEST(Selectors, AnUnknownSelectorIsBadParametersAndOnlyRemembersTheRecord) {
  const FreshGlobals fresh;
  FakeHost host = RgbHost();
  const std::vector<uint8_t> before = Bytes(host.Record());
  for (const int16_t selector : std::initializer_list<int16_t>{6, -1, 0x7FFF, 256}) {
    gFilterRecord = nullptr;
    host.result = FakeHost::kUntouched;
    PlugInMain(selector, &host.Record(), nullptr, &host.result);
    EXPECT_EQ(host.result, -30100) << "selector " << selector;
    EXPECT_EQ(Bytes(host.Record()), before);
    EXPECT_EQ(gFilterRecord, &host.Record());
  }
}

TEST(Selectors, ContinueEmptiesAllThreeRectanglesAndGivesZero) {
  const FreshGlobals fresh;
  FakeHost host = RgbHost();
  host.Record().inRect = host.Record().outRect = host.Record().maskRect = {1, 2, 3, 4};
  PlugInMain(4, &host.Record(), nullptr, &host.result);
  EXPECT_EQ(host.Record().inRect, kNoRect);
  EXPECT_EQ(host.Record().outRect, kNoRect);
  EXPECT_EQ(host.Record().maskRect, kNoRect);
  EXPECT_EQ(host.result, 0);
}

TEST(Selectors, FinishWithoutAStartWritesNoDescriptorAndGivesZero) {
  const FreshGlobals fresh;
  FakeHost host = RgbHost();
  host.EnableScripting(plugInDialogDisplay);
  PlugInMain(5, &host.Record(), nullptr, &host.result);
  EXPECT_EQ(host.result, 0);
  EXPECT_EQ(host.Parameters().descriptor, nullptr);
  EXPECT_EQ(host.Parameters().recordInfo, plugInDialogRequired);
}

TEST(Selectors, EachCallHasAHostObjectOfItsOwnThatIsGoneBehindIt) {
  const FreshGlobals fresh;
  FakeHost host = RgbHost();
  ASSERT_EQ(gHost, nullptr);
  PlugInMain(2, &host.Record(), nullptr, &host.result);
  EXPECT_EQ(gHost, nullptr);
}

TEST(Selectors, TheGlobalsOfTheLastReplySurviveEverySelectorButStart) {
  const FreshGlobals fresh;
  FakeHost host = RgbHost();
  gEffectName = "Dusk";
  SetScriptState({1, 2, 3});
  for (const int16_t selector : std::initializer_list<int16_t>{0, 1, 2, 4, 5, 6})
    PlugInMain(selector, &host.Record(), nullptr, &host.result);
  EXPECT_EQ(gEffectName, "Dusk");
  EXPECT_EQ(ScriptStateBytes(), (std::vector<uint8_t>{1, 2, 3}));
}

TEST(ModuleNotification, KeepsTheModuleFromAttachToDetach) {
  void* const before = gModule;
  int module = 0;
  EXPECT_EQ(NoteModule(&module, 1), 1);
  EXPECT_EQ(gModule, &module);
  int other = 0;
  EXPECT_EQ(NoteModule(&other, 2), 1) << "a thread began";
  EXPECT_EQ(NoteModule(&other, 3), 1) << "a thread ended";
  EXPECT_EQ(gModule, &module);
  EXPECT_EQ(NoteModule(&module, 0), 0);
  EXPECT_EQ(gModule, nullptr);
  gModule = before;
}

TEST(ExchangeFileNames, AreTheFourThatTheEffectsApplicationKnows) {
  EXPECT_EQ(gFlagFileName, ".\\Flg.h");
  EXPECT_EQ(gDoneFileName, ".\\Flg2.h");
  EXPECT_EQ(gImageFileName, ".\\Img.h");
  EXPECT_EQ(gAppFileName, ".\\Vm.exe");
}

// The base alone: a host that offers nothing.
TEST(BareHost, AnswersForAHostThatOffersNothing) {
  ZVHost host(nullptr);
  EXPECT_EQ(gHost, &host);
  ZvSmartPtr<ZvImage> image;
  ZvSmartPtr<ZvImage> mask;
  uint8_t colorType = 9;
  EXPECT_FALSE(host.GetSourceImage(image, mask, colorType));
  EXPECT_EQ(colorType, 9);
  EXPECT_FALSE(host.PutResultImage(image, mask));
  EXPECT_FALSE(host.IsHosted());
  EXPECT_EQ(host.GetHostMode(), 0);
  host.HostIdle();
  host.ShutDownHost();
}

TEST(BareHost, KeepsAFlagForItsCallers) {
  ZVHost host(nullptr);
  EXPECT_EQ(host.GetHostFlag(), 0);
  host.SetHostFlag(7);
  EXPECT_EQ(host.GetHostFlag(), 7);
}

// A pointer to a virtual operation holds 1 plus the operation's place in the table, in bytes.
template <class Operation>
intptr_t SlotOf(Operation operation) {
  intptr_t place = 0;
  std::memcpy(&place, &operation, sizeof(place));
  return (place - 1) / static_cast<intptr_t>(sizeof(void*));
}

void ExpectConsecutive(const std::vector<intptr_t>& slots) {
  for (size_t i = 1; i < slots.size(); ++i)
    EXPECT_EQ(slots[i], slots[i - 1] + 1) << "operation " << i;
}

TEST(SlotOrder, TheOperationsOfTheBareHostFollowEachOther) {
  ExpectConsecutive(
      {SlotOf(&ZVHost::RunHost), SlotOf(&ZVHost::ShutDownHost), SlotOf(&ZVHost::GetSourceImage),
       SlotOf(&ZVHost::PutResultImage), SlotOf(&ZVHost::HostIdle), SlotOf(&ZVHost::IsHosted),
       SlotOf(&ZVHost::GetHostFlag), SlotOf(&ZVHost::SetHostFlag), SlotOf(&ZVHost::GetHostMode),
       SlotOf(&ZVHost::PickColor), SlotOf(&ZVHost::RunMessageLoop)});
}

TEST(SlotOrder, TheOperationsOfThePlugInFollowThoseOfTheBareHost) {
  using P = ZVHostPhotoshop;
  ExpectConsecutive({SlotOf(&ZVHost::RunMessageLoop),
                     SlotOf(&P::IsImageModeSupported),
                     SlotOf(&P::HasAbortProc),
                     SlotOf(&P::HasProgressProc),
                     SlotOf(&P::HasAdvanceState),
                     SlotOf(&P::HasDisplayPixels),
                     SlotOf(&P::DoAbout),
                     SlotOf(&P::DoParameters),
                     SlotOf(&P::DoPrepare),
                     SlotOf(&P::DoStart),
                     SlotOf(&P::DoContinue),
                     SlotOf(&P::DoFinish),
                     SlotOf(&P::DoBadSelector),
                     SlotOf(&P::SetRects),
                     SlotOf(&P::SetOutRect),
                     SlotOf(&P::SetInRect),
                     SlotOf(&P::GetWholeImageRect),
                     SlotOf(&P::SetOutData),
                     SlotOf(&P::SetInData),
                     SlotOf(&P::SetDataPointers),
                     SlotOf(&P::RequestRects),
                     SlotOf(&P::SetWholeImageRects),
                     SlotOf(&P::GetImageSize),
                     SlotOf(&P::GetImageWidth),
                     SlotOf(&P::GetImageHeight),
                     SlotOf(&P::AdvanceState),
                     SlotOf(&P::GetInRowBytes),
                     SlotOf(&P::IsSupported),
                     SlotOf(&P::HostDone),
                     SlotOf(&P::StopFiltering),
                     SlotOf(&P::WriteScriptParameters),
                     SlotOf(&P::ReadScriptParameters)});
}

TEST(PlugInHost, IsHosted) {
  FakeHost host = RgbHost();
  TestPlugIn plugIn(host);
  EXPECT_TRUE(plugIn.IsHosted());
  EXPECT_EQ(plugIn.ScriptStateSize(), 0);
  EXPECT_FALSE(plugIn.HasScriptState());
}

TEST(Capabilities, SixImageModesPassAndGray16IsOneOfThem) {
  FakeHost host = RgbHost();
  TestPlugIn plugIn(host);
  // bitmap, gray, indexed, RGB, CMYK, HSL, HSB, multichannel, duotone, Lab, gray 16, RGB 48, Lab
  // 48, CMYK 64
  const bool supported[] = {false, true,  false, true, true, false, false,
                            false, false, false, true, true, false, true};
  for (int16_t mode = 0; mode < 14; ++mode) {
    host.Record().imageMode = mode;
    EXPECT_EQ(plugIn.IsImageModeSupported(), supported[mode]) << "mode " << mode;
  }
  for (const int16_t mode : std::initializer_list<int16_t>{-1, 14, 15, 257}) {
    host.Record().imageMode = mode;
    EXPECT_FALSE(plugIn.IsImageModeSupported()) << "mode " << mode;
  }
}

TEST(Capabilities, ACallbackIsThereWhenItsPointerIsNotNull) {
  FakeHost host = RgbHost();
  TestPlugIn plugIn(host);
  EXPECT_TRUE(plugIn.HasAbortProc());
  EXPECT_TRUE(plugIn.HasProgressProc());
  EXPECT_TRUE(plugIn.HasAdvanceState());
  EXPECT_TRUE(plugIn.HasDisplayPixels());
  host.Record().abortProc = nullptr;
  EXPECT_FALSE(plugIn.HasAbortProc());
  host.Record().progressProc = nullptr;
  EXPECT_FALSE(plugIn.HasProgressProc());
  host.Record().advanceState = nullptr;
  EXPECT_FALSE(plugIn.HasAdvanceState());
  host.Record().displayPixels = nullptr;
  EXPECT_FALSE(plugIn.HasDisplayPixels());
  EXPECT_TRUE(plugIn.IsSupported()) << "this one doesn't look";
}

TEST(RecordAccess, RectanglesAreCopiedWhereTheyBelong) {
  FakeHost host = RgbHost();
  TestPlugIn plugIn(host);
  plugIn.SetOutRect({1, 2, 3, 4});
  EXPECT_EQ(host.Record().outRect, (Rect{1, 2, 3, 4}));
  EXPECT_EQ(host.Record().inRect, kNoRect);
  plugIn.SetInRect({5, 6, 7, 8});
  EXPECT_EQ(host.Record().inRect, (Rect{5, 6, 7, 8}));
  EXPECT_EQ(host.Record().outRect, (Rect{1, 2, 3, 4}));
  plugIn.SetRects({-9, -8, 7, 6});
  EXPECT_EQ(host.Record().inRect, (Rect{-9, -8, 7, 6}));
  EXPECT_EQ(host.Record().outRect, (Rect{-9, -8, 7, 6}));
}

TEST(RecordAccess, DataPointersAreWrittenOneByOneOrTogether) {
  // (The plus makes a value: a pointer of the packed record may lie where none can be referred to.)
  FakeHost host = RgbHost();
  TestPlugIn plugIn(host);
  int in = 0;
  int out = 0;
  plugIn.SetInData(&in);
  plugIn.SetOutData(&out);
  EXPECT_EQ(+host.Record().inData, &in);
  EXPECT_EQ(+host.Record().outData, &out);
  plugIn.SetDataPointers(&in);
  EXPECT_EQ(+host.Record().inData, &in);
  EXPECT_EQ(+host.Record().outData, &in);
}

TEST(RecordAccess, TheImageSizeHasTheWidthInItsFirstNumber) {
  FakeHost host = RgbHost(5, 2);
  TestPlugIn plugIn(host);
  EXPECT_EQ(plugIn.GetImageWidth(), 5);
  EXPECT_EQ(plugIn.GetImageHeight(), 2);
  Point size = {};
  plugIn.GetImageSize(size);
  EXPECT_EQ(size.v, 5);
  EXPECT_EQ(size.h, 2);
}

TEST(RecordAccess, TheWholeImageIsTheWholeImageAllTheSame) {
  FakeHost host = RgbHost(5, 2);
  TestPlugIn plugIn(host);
  Rect whole = {};
  plugIn.GetWholeImageRect(whole);
  EXPECT_EQ(whole, (Rect{0, 0, 2, 5}));
  plugIn.SetWholeImageRects();
  EXPECT_EQ(host.Record().inRect, whole);
  EXPECT_EQ(host.Record().outRect, whole);
}

TEST(RecordAccess, RowBytesAreCutTo16Bits) {
  FakeHost host = RgbHost();
  TestPlugIn plugIn(host);
  host.Record().inRowBytes = 0x12345;
  EXPECT_EQ(plugIn.GetInRowBytes(), 0x2345);
}

TEST(RecordAccess, AdvanceStateGivesWhatTheHostGives) {
  FakeHost host = RgbHost();
  TestPlugIn plugIn(host);
  host.advanceAnswers = {-108, 0};
  EXPECT_EQ(plugIn.AdvanceState(), -108);
  EXPECT_EQ(plugIn.AdvanceState(), 0);
}

TEST(RecordAccess, StopFilteringEmptiesTheRectanglesAndStoresTheCode) {
  FakeHost host = RgbHost();
  TestPlugIn plugIn(host);
  host.Record().inRect = host.Record().outRect = host.Record().maskRect = {1, 2, 3, 4};
  plugIn.StopFiltering(-128);
  EXPECT_EQ(host.Record().inRect, kNoRect);
  EXPECT_EQ(host.Record().outRect, kNoRect);
  EXPECT_EQ(host.Record().maskRect, kNoRect);
  EXPECT_EQ(host.result, -128);
}

TEST(RequestRects, AsksForAllPlanesAtFullRateWithoutPadding) {
  FakeHost host(plugInModeCMYKColor, 5, 2, 2, std::vector<uint8_t>(20));
  TestPlugIn plugIn(host);
  EXPECT_EQ(plugIn.RequestRects({1, 2, 3, 4}, 99, 1.0), 0);
  ASSERT_EQ(host.advances.size(), 1u);
  const FakeHost::Advance& asked = host.advances[0];
  EXPECT_EQ(asked.inRect, (Rect{1, 2, 3, 4}));
  EXPECT_EQ(asked.outRect, (Rect{1, 2, 3, 4}));
  EXPECT_EQ(asked.inLoPlane, 0);
  EXPECT_EQ(asked.outLoPlane, 0);
  EXPECT_EQ(asked.inHiPlane, 4);
  EXPECT_EQ(asked.outHiPlane, 4);
  EXPECT_EQ(asked.inputRate, 0x10000);
  EXPECT_EQ(asked.inputPadding, -1);
  EXPECT_EQ(asked.outputPadding, -1);
}

TEST(RequestRects, WithoutASelectionNothingOfTheMaskIsTouched) {
  FakeHost host = RgbHost();
  TestPlugIn plugIn(host);
  plugIn.RequestRects({0, 0, 3, 4}, 0, 1.0);
  EXPECT_EQ(host.Record().maskRect, (Rect{11, 12, 13, 14}));
  EXPECT_EQ(host.Record().maskRate, 15);
  EXPECT_EQ(host.Record().maskPadding, 16);
}

TEST(RequestRects, WithASelectionTheMaskOfTheFilterRectangleIsAskedFor) {
  FakeHost host = RgbHost();
  host.Select({1, 1, 3, 4}, std::vector<uint8_t>(6));
  TestPlugIn plugIn(host);
  plugIn.RequestRects({0, 0, 3, 4}, 0, 1.0);
  ASSERT_EQ(host.advances.size(), 1u);
  EXPECT_EQ(host.advances[0].maskRect, (Rect{1, 1, 3, 4}));
  EXPECT_EQ(host.advances[0].maskRate, 0x10000);
  EXPECT_EQ(host.advances[0].maskPadding, -1);
}

TEST(RequestRects, ScalesAllRectanglesTowardsZeroAndTheRatesNot) {
  FakeHost host = RgbHost();
  host.Select({3, -3, 5, 7}, std::vector<uint8_t>(20));
  TestPlugIn plugIn(host);
  plugIn.RequestRects({-3, 3, 5, 7}, 0, 0.5);
  ASSERT_EQ(host.advances.size(), 1u);
  EXPECT_EQ(host.advances[0].inRect, (Rect{-1, 1, 2, 3}));
  EXPECT_EQ(host.advances[0].outRect, (Rect{-1, 1, 2, 3}));
  EXPECT_EQ(host.advances[0].maskRect, (Rect{1, -1, 2, 3}));
  EXPECT_EQ(host.advances[0].inputRate, 0x10000);
  EXPECT_EQ(host.advances[0].maskRate, 0x10000);
}

TEST(RequestRects, ScalesBeyondTheNumbersOfARectangleAreDefined) {
  FakeHost host = RgbHost();
  TestPlugIn plugIn(host);
  // 20000 x 2 = 40000 = 0x9C40, cut to 16 bits.
  plugIn.RequestRects({0, 0, 20000, 1}, 0, 2.0);
  EXPECT_EQ(host.Record().inRect.bottom, static_cast<int16_t>(0x9C40));
  // Beyond 32 bits: 0x7FFFFFFF and 0x80000000, cut.
  plugIn.RequestRects({-1, 0, 1, 1}, 0, 1e12);
  EXPECT_EQ(host.Record().inRect.bottom, -1);
  EXPECT_EQ(host.Record().inRect.top, 0);
  plugIn.RequestRects({-1, 0, 1, 1}, 0, std::numeric_limits<double>::quiet_NaN());
  EXPECT_EQ(host.Record().inRect.top, 0);
}

TEST(RequestRects, GivesTheHostsError) {
  FakeHost host = RgbHost();
  TestPlugIn plugIn(host);
  host.advanceAnswers = {-30101};
  EXPECT_EQ(plugIn.RequestRects({0, 0, 1, 1}, 0, 1.0), -30101);
}

}  // namespace
}  // namespace vm
