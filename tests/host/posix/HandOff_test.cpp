#include <gtest/gtest.h>

#include <sys/inotify.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <new>
#include <set>
#include <stdexcept>

#include "foundation/CP_Exceptions.h"
#include "foundation/FourCharCode.h"
#include "host/BlockCounter.h"
#include "host/posix/ScriptedRun.h"
#include "image/ZvImage.h"
#include "support/ReportRecorder.h"

namespace vm {
namespace {

using ByteVector = std::vector<uint8_t>;
using FileNames = std::set<std::string>;

// A picture of two pixels; the host's bytes are red, green, blue.
class HandOff : public testing::Test {
 protected:
  // The request for that picture as an object: RGBA, plane by plane.
  static std::string RequestedImage() {
    return ImageObject("ZvImageRgbaBytes", 2, 1, {10, 255, 20, 0, 30, 1, 255, 255});
  }
  // A reply that can be told from the request: 1, 2, 3 and 4, 5, 6, opaque.
  static Exchange Answer() {
    Exchange reply;
    reply.image = ImageObject("ZvImageRgbaBytes", 2, 1, {1, 4, 2, 5, 3, 6, 255, 255});
    return reply;
  }
  static ByteVector AnswerInTheHost() { return {1, 2, 3, 4, 5, 6}; }

  FileNames Files() const {
    FileNames names;
    for (const auto& entry : std::filesystem::directory_iterator(mRun.directory.Native()))
      names.insert(entry.path().filename());
    return names;
  }

  ScriptedRun mRun;
  FakeHost mHost{plugInModeRGBColor, 3, 2, 1, {10, 20, 30, 255, 0, 1}};
};

// --- Checks ------------------------------------------------------------------------------------

void ExpectRefused(ScriptedRun& run, FakeHost& host, const char* what) {
  host.Record().inRect = host.Record().outRect = host.Record().maskRect = {1, 2, 3, 4};
  host.result = FakeHost::kUntouched;
  run.Start(host);
  EXPECT_EQ(host.result, -128) << what;
  EXPECT_EQ(host.Record().inRect, (Rect{0, 0, 0, 0})) << what;
  EXPECT_EQ(host.Record().outRect, (Rect{0, 0, 0, 0})) << what;
  EXPECT_EQ(host.Record().maskRect, (Rect{0, 0, 0, 0})) << what;
  EXPECT_TRUE(std::filesystem::is_empty(run.directory.Native())) << what;
  EXPECT_TRUE(run.starts.empty()) << what;
}

TEST_F(HandOff, AHostThatLacksSomethingIsRefusedBeforeAnyFileIsTouched) {
  const FilterRecord complete = mHost.Record();
  mHost.Record().imageMode = plugInModeLabColor;
  ExpectRefused(mRun, mHost, "image mode");
  mHost.Record() = complete;
  mHost.Record().abortProc = nullptr;
  ExpectRefused(mRun, mHost, "abort");
  mHost.Record() = complete;
  mHost.Record().progressProc = nullptr;
  ExpectRefused(mRun, mHost, "progress");
  mHost.Record() = complete;
  mHost.Record().advanceState = nullptr;
  ExpectRefused(mRun, mHost, "advance");
  mHost.Record() = complete;
  mHost.Record().displayPixels = nullptr;
  ExpectRefused(mRun, mHost, "display");
}

TEST_F(HandOff, NoFilterCaseIsRefused) {
  mRun.AnswerWith(Answer());
  for (int16_t filterCase = 0; filterCase <= 8; ++filterCase) {
    mHost.Record().filterCase = filterCase;
    mHost.result = FakeHost::kUntouched;
    mRun.Start(mHost);
    EXPECT_EQ(mHost.result, 0) << filterCase;
  }
  EXPECT_EQ(mRun.starts.size(), 9u);
}

// --- The request -------------------------------------------------------------------------------

TEST_F(HandOff, TheRequestIsByteForByteWhatTheApplicationExpects) {
  std::string request;
  std::string flag;
  mRun.application = [&] {
    request = mRun.directory.Read("Img.h");
    flag = mRun.directory.Read("Flg.h");
    return true;
  };
  mRun.Start(mHost);
  const unsigned char expected[] = {
      0, 0, 0, 0,  // no effect name
      0, 0, 0, 0,  // no parameter block
      0, 0, 0, 2,  // colour type
      0,           // no mask
      0, 16,       // class name
      'Z', 'v', 'I', 'm', 'a', 'g', 'e', 'R', 'g', 'b', 'a', 'B', 'y', 't', 'e', 's', 0, 0, 0,
      2,                                               // width
      0, 0, 0, 1,                                      // height
      0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0,  // clip: left, top,
                                                       // right, bottom
      0, 0, 0, 0, 0, 0, 0, 0,                          // resolutions
      0,                                               // compression byte
      10, 255, 20, 0, 30, 1, 255, 255,                 // red, green, blue, alpha
  };
  EXPECT_EQ(request, std::string(expected, expected + sizeof(expected)));
  EXPECT_EQ(flag, std::string("\0\0\0\x0C", 4));
}

TEST_F(HandOff, TheMaskComesBeforeThePicture) {
  mHost.Select({0, 0, 1, 2}, {7, 9});
  std::string request;
  mRun.application = [&] {
    request = mRun.directory.Read("Img.h");
    return true;
  };
  mRun.Start(mHost);
  Exchange expected;
  expected.mask = ImageObject("ZvRowImageAlphaByte", 2, 1, {7, 9});
  expected.image = RequestedImage();
  EXPECT_EQ(request, expected.Bytes());
}

TEST(HandOffFormats, SixteenBitSamplesStandLowByteFirst) {
  ScriptedRun run;
  FakeHost host(plugInModeRGB48, 4, 1, 1, HostWords({32768, 16384, 100, 0}));
  std::string request;
  run.application = [&] {
    request = run.directory.Read("Img.h");
    return true;
  };
  run.Start(host);
  Exchange expected;
  expected.colorType = 1;
  // 65503 = 0xFFDF, 32751 = 0x7FEF, 199 = 0xC7.
  expected.image =
      ImageObject("ZvImageRgba64", 1, 1, {0xDF, 0xFF, 0xEF, 0x7F, 0xC7, 0x00, 0x00, 0x00});
  EXPECT_EQ(request, expected.Bytes());
}

TEST_F(HandOff, TheEffectNameOfTheLastReplyGoesOutAgain) {
  gEffectName = "Dusk";
  std::string request;
  mRun.application = [&] {
    request = mRun.directory.Read("Img.h");
    return true;
  };
  mRun.Start(mHost);
  Exchange expected;
  expected.effectName = "Dusk";
  expected.image = RequestedImage();
  EXPECT_EQ(request, expected.Bytes());
}

TEST_F(HandOff, TheApplicationIsStartedBesideThePlugInWithoutArguments) {
  mRun.Start(mHost);
  ASSERT_EQ(mRun.starts.size(), 1u);
  EXPECT_EQ(mRun.starts[0].program, mRun.directory.Path("Vm.exe"));
  EXPECT_EQ(mRun.starts[0].directory, mRun.directory.Path() + "\\");
}

TEST_F(HandOff, TheCurrentDirectoryPlaysNoPart) {
  const TempDirectory elsewhere;
  const CurrentDirectory there(elsewhere.Native());
  mRun.AnswerWith(Answer());
  mRun.Start(mHost);
  EXPECT_EQ(mHost.result, 0);
  EXPECT_EQ(mHost.Output(), AnswerInTheHost());
  EXPECT_TRUE(std::filesystem::is_empty(elsewhere.Native()));
}

// What happens to the files of a directory, in order, as the system tells it.
class DirectoryWatch {
 public:
  explicit DirectoryWatch(const std::filesystem::path& directory)
      : mFile(inotify_init1(IN_NONBLOCK)) {
    inotify_add_watch(mFile, directory.c_str(),
                      IN_CREATE | IN_DELETE | IN_OPEN | IN_MODIFY | IN_CLOSE_WRITE);
  }
  DirectoryWatch(const DirectoryWatch&) = delete;
  DirectoryWatch& operator=(const DirectoryWatch&) = delete;
  ~DirectoryWatch() { close(mFile); }

  std::vector<std::string> Events() const {
    std::vector<std::string> events;
    alignas(inotify_event) std::array<char, 16384> buffer;
    const ssize_t size = read(mFile, buffer.data(), buffer.size());
    for (ssize_t at = 0; at < size;) {
      const auto* const event = reinterpret_cast<const inotify_event*>(buffer.data() + at);
      const char* const what = event->mask & IN_CREATE   ? "create "
                               : event->mask & IN_DELETE ? "delete "
                               : event->mask & IN_OPEN   ? "open "
                               : event->mask & IN_MODIFY ? "write "
                                                         : "close ";
      events.push_back(std::string(what) + event->name);
      at += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
    }
    return events;
  }

 private:
  int mFile;
};

TEST_F(HandOff, TheFlagIsWrittenOnlyOnceTheRequestIsClosedAndTheStaleDoneFileGoesLast) {
  for (const char* const name : {"Img.h", "Flg.h", "Flg2.h"})
    mRun.directory.Write(name, "stale");
  const DirectoryWatch watch(mRun.directory.Native());
  std::vector<std::string> events;
  mRun.application = [&] {
    events = watch.Events();
    return true;
  };
  mRun.Start(mHost);
  // Each file is replaced by an empty one, which is then opened and written.
  EXPECT_EQ(events,
            (std::vector<std::string>{"delete Img.h", "create Img.h", "open Img.h", "close Img.h",
                                      "open Img.h", "write Img.h", "close Img.h", "delete Flg.h",
                                      "create Flg.h", "open Flg.h", "close Flg.h", "open Flg.h",
                                      "write Flg.h", "close Flg.h", "delete Flg2.h"}));
}

TEST_F(HandOff, NoFileIsHeldOpenWhileTheApplicationWorks) {
  const auto openFiles = [] {
    const std::filesystem::directory_iterator files("/proc/self/fd");
    return std::distance(begin(files), end(files));
  };
  const auto before = openFiles();
  std::ptrdiff_t during = -1;
  mRun.application = [&] {
    during = openFiles();
    return true;
  };
  mRun.Start(mHost);
  EXPECT_EQ(during, before);
  EXPECT_EQ(openFiles(), before);
}

// --- The wait ----------------------------------------------------------------------------------

TEST_F(HandOff, TheDialogOpensOverTheHostsWindowFromThisModule) {
  int window = 0;
  void* platformData[] = {&window};
  mHost.Record().platformData = platformData;
  void* const before = gModule;
  int module = 0;
  gModule = &module;
  mRun.Start(mHost);
  gModule = before;
  ASSERT_EQ(mRun.dialogs.dialogs.size(), 1u);
  const auto& dialog = mRun.dialogs.dialogs[0];
  EXPECT_EQ(dialog.module, &module);
  EXPECT_EQ(dialog.templateName, "VMCANCELDIALOG");
  EXPECT_EQ(static_cast<void*>(dialog.owner), &window);
  EXPECT_EQ(dialog.parameter, 0);
}

TEST_F(HandOff, AHostWithoutPlatformDataGetsADialogWithoutOwner) {
  mHost.Record().platformData = nullptr;
  mRun.Start(mHost);
  EXPECT_EQ(mRun.dialogs.dialogs.at(0).owner, nullptr);
}

TEST_F(HandOff, ACancelledRunLeavesFilesAndGlobalsAsTheyAre) {
  gEffectName = "Last";
  SetScriptState({1, 2, 3});
  const auto reply = [this] {
    Exchange unread = Answer();
    unread.effectName = "Never";
    mRun.directory.Write("Img.h", unread.Bytes());
    return true;
  };
  mRun.application = reply;
  mRun.Start(mHost);
  EXPECT_EQ(mHost.result, -128);
  EXPECT_EQ(mRun.dialogs.dialogs.at(0).result, 2);
  EXPECT_EQ(Files(), (FileNames{"Img.h", "Flg.h"}));
  EXPECT_EQ(gEffectName, "Last");
  EXPECT_EQ(ScriptStateBytes(), (ByteVector{1, 2, 3}));
  EXPECT_EQ(mHost.advances.size(), 2u) << "nothing was written into the host";
}

TEST_F(HandOff, AMissingApplicationGivesCancelledAndNeverOutOfMemory) {
  mRun.application = [] { return false; };
  mRun.Start(mHost);
  EXPECT_EQ(mHost.result, -128);
  EXPECT_TRUE(mRun.dialogs.dialogs.empty()) << "nothing is waited for";
  EXPECT_EQ(Files(), (FileNames{"Img.h", "Flg.h"}));
}

TEST_F(HandOff, ADialogThatCannotBeMadeGivesCancelled) {
  mRun.dialogs.canMakeDialogs = false;
  mRun.Start(mHost);
  EXPECT_EQ(mHost.result, -128);
}

TEST_F(HandOff, AStaleDoneFileDoesNotEndTheRun) {
  mRun.directory.Write("Flg2.h", "from a cancelled run");
  bool stale = true;
  mRun.application = [&] {
    stale = mRun.directory.Has("Flg2.h");
    return true;
  };
  mRun.Start(mHost);
  EXPECT_FALSE(stale);
  EXPECT_EQ(mHost.result, -128);
}

TEST_F(HandOff, ASecondStartAfterACancelledOneStartsAfresh) {
  mRun.Start(mHost);
  ASSERT_EQ(mHost.result, -128);
  mRun.directory.Write("Flg2.h", "too late");
  mRun.AnswerWith(Answer());
  mRun.Start(mHost);
  EXPECT_EQ(mHost.result, 0);
  EXPECT_EQ(mRun.starts.size(), 2u);
  EXPECT_EQ(mHost.Output(), AnswerInTheHost());
  EXPECT_EQ(Files(), (FileNames{"Img.h", "Flg.h"}));
}

TEST_F(HandOff, AnApplicationThatAnswersAtOnceIsSeenOnTheFirstMessage) {
  mRun.AnswerWith(Answer());
  mRun.Start(mHost);
  EXPECT_EQ(mHost.result, 0);
  EXPECT_EQ(mRun.dialogs.dialogs.at(0).delivered.size(), 1u);
}

TEST_F(HandOff, AnApplicationThatTakesItsTimeIsWaitedFor) {
  mRun.dialogs.beforeMessage = [this, count = 0](const auto&) mutable {
    if (++count == 15)
      mRun.Reply(Answer().Bytes());
  };
  mRun.Start(mHost);
  EXPECT_EQ(mHost.result, 0);
  EXPECT_EQ(mHost.Output(), AnswerInTheHost());
}

// --- The reply ---------------------------------------------------------------------------------

TEST_F(HandOff, TheReplysPictureNameAndBlockAreTakenOver) {
  Exchange reply = Answer();
  reply.effectName = "Dawn";
  reply.block = std::string("\x05\0\x07", 3);
  mRun.AnswerWith(reply);
  mRun.Start(mHost);
  EXPECT_EQ(mHost.result, 0);
  EXPECT_EQ(mHost.Output(), AnswerInTheHost());
  EXPECT_EQ(gEffectName, "Dawn");
  ASSERT_TRUE(gScriptState);
  EXPECT_EQ(ScriptStateBytes(), (ByteVector{5, 0, 7}));
  EXPECT_EQ(gScriptState->GetRefCount(), 1u);
  EXPECT_EQ(Files(), (FileNames{"Img.h", "Flg.h"})) << "only the done file is taken away";
}

TEST_F(HandOff, AReplyWithoutNameOrBlockKeepsTheFormerOnes) {
  gEffectName = "Last";
  SetScriptState({1, 2, 3});
  mRun.AnswerWith(Answer());
  mRun.Start(mHost);
  EXPECT_EQ(mHost.result, 0);
  EXPECT_EQ(gEffectName, "Last");
  EXPECT_EQ(ScriptStateBytes(), (ByteVector{1, 2, 3}));
}

TEST_F(HandOff, TheReplysColourTypeIsIgnored) {
  for (const int32_t colorType : {0, 1, 6, 255, 256 + 2, -1}) {
    Exchange reply = Answer();
    reply.colorType = colorType;
    mRun.AnswerWith(reply);
    mHost.result = FakeHost::kUntouched;
    mRun.Start(mHost);
    EXPECT_EQ(mHost.result, 0);
    EXPECT_EQ(mHost.Output(), AnswerInTheHost()) << colorType;
  }
}

TEST_F(HandOff, AReturnedMaskIsReadAndIgnored) {
  Exchange reply = Answer();
  reply.mask = ImageObject("ZvRowImageAlphaByte", 2, 1, {0, 0});
  mRun.AnswerWith(reply);
  mRun.Start(mHost);
  EXPECT_EQ(mHost.result, 0);
  EXPECT_EQ(mHost.Output(), AnswerInTheHost());
}

TEST_F(HandOff, APictureOfAnotherSizeChangesTheOutputRectangle) {
  Exchange reply;
  reply.image = ImageObject("ZvImageRgbaBytes", 1, 2, {1, 4, 2, 5, 3, 6, 255, 255});
  mRun.AnswerWith(reply);
  mRun.Start(mHost);
  EXPECT_EQ(mHost.Record().outRect, (Rect{0, 0, 2, 1}));
  EXPECT_EQ(mHost.Output(), AnswerInTheHost());
}

TEST_F(HandOff, ThePictureGoesRoundUnchangedWhenTheApplicationLeavesTheFile) {
  mRun.application = [this] {
    mRun.directory.Write("Flg2.h", "");
    return true;
  };
  mRun.Start(mHost);
  EXPECT_EQ(mHost.result, 0);
  EXPECT_EQ(mHost.Output(), (ByteVector{10, 20, 30, 255, 0, 1}));
}

TEST_F(HandOff, AFinishedRunLeavesItsReplyStreamBehind) {
  mRun.AnswerWith(Answer());
  const BlockCounter readAheadBlocks(0xFFFF);
  for (int32_t run = 1; run <= 3; ++run) {
    mRun.Start(mHost);
    ASSERT_EQ(mHost.result, 0);
    EXPECT_EQ(readAheadBlocks.Live(), run);
  }
  // A run that isn't finished leaves none.
  mRun.application = nullptr;
  mRun.Start(mHost);
  EXPECT_EQ(readAheadBlocks.Live(), 3);
}

// --- Failures ----------------------------------------------------------------------------------

TEST_F(HandOff, AModeWithoutAnImageLeavesTheBeginOfARequestAndTheResultAlone) {
  gEffectName = "Dusk";
  mHost.Record().imageMode = plugInModeGray16;
  mRun.Start(mHost);
  EXPECT_EQ(mHost.result, FakeHost::kUntouched);
  EXPECT_EQ(Files(), (FileNames{"Img.h"}));
  EXPECT_EQ(mRun.directory.Read("Img.h"), Sint32(4) + Text("Dusk") + Sint32(0));
  EXPECT_TRUE(mRun.starts.empty());
}

TEST_F(HandOff, AHostThatRefusesItsPixelsEndsTheRunWithItsCode) {
  mHost.advanceAnswers = {-1, -30101};
  mRun.Start(mHost);
  EXPECT_EQ(mHost.result, -30101);
  EXPECT_EQ(Files(), (FileNames{"Img.h"}));
  EXPECT_TRUE(mRun.starts.empty());
}

class ThrowingPlugIn : public TestPlugIn {
 public:
  using TestPlugIn::TestPlugIn;
  bool GetSourceImage(ZvSmartPtr<ZvImage>&, ZvSmartPtr<ZvImage>&, uint8_t&) override {
    throw std::bad_alloc();
  }
};

TEST_F(HandOff, AnExceptionFromTheAcquisitionIsDiscarded) {
  ThrowingPlugIn plugIn(mHost);
  EXPECT_NO_THROW(plugIn.DoStart());
  EXPECT_EQ(mHost.result, FakeHost::kUntouched);
  EXPECT_EQ(Files(), (FileNames{"Img.h"}));
  EXPECT_TRUE(mRun.starts.empty());
}

TEST_F(HandOff, ARequestThatCannotBeCreatedLeavesTheResultAlone) {
  std::filesystem::create_directory(mRun.directory.Native("Img.h"));
  mRun.Start(mHost);
  EXPECT_EQ(mHost.result, FakeHost::kUntouched);
  EXPECT_EQ(Files(), (FileNames{"Img.h"}));
  EXPECT_TRUE(mHost.advances.empty());
  EXPECT_TRUE(mRun.starts.empty());
}

TEST_F(HandOff, AFlagThatCannotBeWrittenDoesNotStopTheRun) {
  std::filesystem::create_directory(mRun.directory.Native("Flg.h"));
  mRun.AnswerWith(Answer());
  mRun.Start(mHost);
  EXPECT_EQ(mHost.result, 0);
  EXPECT_EQ(mHost.Output(), AnswerInTheHost());
}

TEST_F(HandOff, AMissingReplyLeavesTheEntryPointAsAnExceptionAndNothingElseBehind) {
  mRun.application = [this] {
    std::filesystem::remove(mRun.directory.Native("Img.h"));
    mRun.directory.Write("Flg2.h", "");
    return true;
  };
  const BlockCounter readAheadBlocks(0xFFFF);
  try {
    mRun.Start(mHost);
    FAIL() << "no exception";
  } catch (const CP_PlfrmErrorException& exception) {
    EXPECT_EQ(exception.GetPlatformError(), -36);
  }
  EXPECT_EQ(gHost, nullptr);
  EXPECT_EQ(readAheadBlocks.Live(), 0);
  EXPECT_EQ(mHost.result, FakeHost::kUntouched);
  // The next run is none the worse for it.
  mRun.AnswerWith(Answer());
  mRun.Start(mHost);
  EXPECT_EQ(mHost.result, 0);
}

TEST_F(HandOff, AReplyStreamThatMemoryDoesNotSufficeForGivesCancelled) {
  mRun.application = [this] {
    mRun.Reply(Answer().Bytes());
    return true;
  };
  // The dialog's stream is the last one before it.
  mRun.dialogs.beforeMessage = [](const auto&) { BlockCounter::FailAfter(0xFFFF, 1); };
  mRun.Start(mHost);
  BlockCounter::FailNone();
  EXPECT_EQ(mHost.result, -128);
}

// --- Replay ------------------------------------------------------------------------------------

// What goes out for each way in which a host can play an action back.
TEST_F(HandOff, ABlockGoesOutOnlyWhenTheUserIsNotAsked) {
  const struct {
    bool recorded;
    int16_t playInfo;
    std::string block;
  } rows[] = {{false, plugInDialogDontDisplay, {}},
              {false, plugInDialogDisplay, {}},
              {false, plugInDialogSilent, {}},
              {true, plugInDialogDontDisplay, std::string("ab\0\0", 4)},
              {true, plugInDialogDisplay, {}},
              {true, plugInDialogSilent, std::string("ab\0\0", 4)}};
  for (const auto& row : rows) {
    mHost.EnableScripting(row.playInfo);
    if (row.recorded) {
      mHost.SetDescriptor({{NumberEntry(FourCC("aeCT"), 3.0), TextEntry(FourCC("aeSK"), "ab")}});
    }
    std::string request;
    mRun.application = [&] {
      request = mRun.directory.Read("Img.h");
      return true;
    };
    mRun.Start(mHost);
    Exchange expected;
    expected.block = row.block;
    expected.image = RequestedImage();
    EXPECT_EQ(request, expected.Bytes())
        << "recorded " << row.recorded << ", play info " << row.playInfo;
    EXPECT_EQ(mRun.dialogs.dialogs.size(), 1u) << "a replay waits like any other run";
    mRun.dialogs.dialogs.clear();
  }
}

TEST_F(HandOff, AReplayOfASizeOfZeroSendsAnEmptyBlockAndReportsThatThereIsNone) {
  mHost.EnableScripting(plugInDialogSilent);
  mHost.SetDescriptor({{NumberEntry(FourCC("aeCT"), 0.0)}});
  std::string request;
  mRun.application = [&] {
    request = mRun.directory.Read("Img.h");
    return true;
  };
  ReportRecorder reports;
  mRun.Start(mHost);
  Exchange expected;
  expected.image = RequestedImage();
  EXPECT_EQ(request, expected.Bytes());
  // No byte of no block is written all the same.
  EXPECT_EQ(reports.Lines(), Reports({"CP_File(386) : inBuffer != NULL"}));
}

TEST_F(HandOff, WhatStartTookOverFinishRecords) {
  mHost.EnableScripting(plugInDialogDisplay);
  Exchange reply = Answer();
  reply.effectName = "Dawn";
  reply.block = "xyz";
  mRun.AnswerWith(reply);
  for (const int16_t selector : std::initializer_list<int16_t>{1, 2, 3, 4, 5}) {
    mRun.Call(mHost, selector);
    ASSERT_EQ(mHost.result, 0) << selector;
  }
  ASSERT_NE(mHost.Descriptor(), nullptr);
  EXPECT_EQ(mHost.Descriptor()->entries,
            (std::vector<FakeDescriptor::Entry>{
                TextEntry(FourCC("aeAU"), "Dawn"), NumberEntry(FourCC("aeCT"), 3.0),
                TextEntry(FourCC("aeSA"), std::string(254, ' ') + '\0'),
                TextEntry(FourCC("aeSK"), "xy")}));
}

TEST_F(HandOff, AFinishBehindAFailedStartRecordsTheFormerBlock) {
  mHost.EnableScripting(plugInDialogDisplay);
  gEffectName = "Last";
  SetScriptState({'a', 'b', 'c'});
  mRun.Start(mHost);
  ASSERT_EQ(mHost.result, -128);
  mRun.Call(mHost, filterSelectorFinish);
  EXPECT_EQ(mHost.result, 0);
  EXPECT_EQ(mHost.Descriptor()->entries.at(3), TextEntry(FourCC("aeSK"), "ab"));
}

}  // namespace
}  // namespace vm
