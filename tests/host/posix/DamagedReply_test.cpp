// Replies that are cut, lie about their sizes, or name what nobody knows. Nothing of that may hurt
// the host's process; what the host sees in the end is fixed: the reply is taken as far as it goes.

#include <gtest/gtest.h>

#include "foundation/CP_Exceptions.h"
#include "host/BlockCounter.h"
#include "host/posix/ScriptedRun.h"
#include "image/ZvImage.h"
#include "support/ReportRecorder.h"

namespace vm {
namespace {

using ByteVector = std::vector<uint8_t>;

class DamagedReply : public testing::Test {
 protected:
  // Runs Start over these bytes as the reply.
  void Run(const std::string& bytes) {
    mRun.application = [&] {
      mRun.Reply(bytes);
      return true;
    };
    mHost.result = FakeHost::kUntouched;
    mHost.advances.clear();
    mReports.Clear();
    mRun.Start(mHost);
  }

  // The picture's part of the run didn't happen: the host was asked only for its own pixels.
  bool NothingWasPut() const { return mHost.advances.size() == 2; }

  static Exchange Whole() {
    Exchange reply;
    reply.effectName = "Dawn";
    reply.block = "xyz";
    reply.mask = ImageObject("ZvRowImageAlphaByte", 2, 1, {7, 9});
    reply.image = ImageObject("ZvImageRgbaBytes", 2, 1, {1, 4, 2, 5, 3, 6, 255, 255});
    return reply;
  }

  ReportRecorder mReports;
  ScriptedRun mRun;
  FakeHost mHost{plugInModeRGBColor, 3, 2, 1, {10, 20, 30, 255, 0, 1}};
};

TEST_F(DamagedReply, AReplyCutAtAnyByteEndsTheRunInOrder) {
  const Exchange reply = Whole();
  const std::string bytes = reply.Bytes();
  const size_t nameEnd = 4 + 2 + 4;
  const size_t blockEnd = nameEnd + 4 + 3;
  const size_t imageBegin = bytes.size() - reply.image.size();
  // Once the image's class name is whole there is an image, whatever is missing of it.
  const size_t imageNamed = imageBegin + 2 + 16;
  for (size_t size = 0; size < bytes.size(); ++size) {
    gEffectName = "Last";
    SetScriptState({1});
    Run(bytes.substr(0, size));
    EXPECT_EQ(mHost.result, 0) << "cut at " << size;
    EXPECT_EQ(NothingWasPut(), size < imageNamed) << "cut at " << size;
    if (size >= nameEnd) {
      EXPECT_EQ(gEffectName, "Dawn") << "cut at " << size;
    }
    if (size >= blockEnd) {
      EXPECT_EQ(ScriptStateBytes(), (ByteVector{'x', 'y', 'z'})) << "cut at " << size;
    }
  }
}

TEST_F(DamagedReply, ABlockThatIsCutHasItsWholeSizeAndEndsInZeros) {
  Run(Sint32(0) + Sint32(5) + "ab");
  EXPECT_EQ(ScriptStateBytes(), (ByteVector{'a', 'b', 0, 0, 0}));
  EXPECT_EQ(mHost.result, 0);
}

TEST_F(DamagedReply, ABlockSizeBelowZeroCountsAsMemoryThatCannotBeHad) {
  SetScriptState({1, 2});
  Run(Sint32(0) + Sint32(-1) + std::string(100, 'x'));
  EXPECT_EQ(mHost.result, -128);
  EXPECT_EQ(ScriptStateBytes(), (ByteVector{1, 2}));
  EXPECT_TRUE(NothingWasPut());
}

TEST_F(DamagedReply, ABlockSizeFarBeyondTheFileCountsAsMemoryThatCannotBeHad) {
  SetScriptState({1, 2});
  for (const int64_t size : {int64_t{0x7FFFFFFF}, int64_t{0x40000000}, int64_t{100 + 0xFFFF + 1}}) {
    Run(Sint32(0) + Sint32(size) + std::string(100, 'x'));
    EXPECT_EQ(mHost.result, -128) << size;
    EXPECT_EQ(ScriptStateBytes(), (ByteVector{1, 2})) << size;
  }
}

TEST_F(DamagedReply, AnEmptyReplyPutsNothingAndCountsAsARun) {
  Run("");
  EXPECT_EQ(mHost.result, 0);
  EXPECT_TRUE(NothingWasPut());
  EXPECT_TRUE(mReports.Empty());
}

TEST_F(DamagedReply, AClassThatIsNotRegisteredIsReportedAndPutsNothing) {
  Exchange reply = Whole();
  for (const char* const name :
       {"ZvImageCmyka64", "ZvImageCmyka80", "NoSuchClass", "ZvTiledImage<PxGrayABytes>"}) {
    reply.image = ImageObject(name, 2, 1, ByteVector(8));
    Run(reply.Bytes());
    EXPECT_EQ(mHost.result, 0) << name;
    EXPECT_TRUE(NothingWasPut()) << name;
    EXPECT_EQ(mReports.Lines(), Reports({"ZvParser(250) : object != NULL"})) << name;
  }
}

TEST_F(DamagedReply, AnObjectThatIsNoImageIsDeletedAndPutsNothing) {
  Exchange reply = Whole();
  reply.mask.clear();
  // A memory stream: its two names, its size, its bytes.
  reply.image = Text("ZvMemoryStream") + Text("") + Text("") + Sint32(2) + "ab";
  Run(reply.Bytes());
  EXPECT_EQ(mHost.result, 0);
  EXPECT_TRUE(NothingWasPut());
}

TEST_F(DamagedReply, AMaskThatIsNoImageIsNoMask) {
  Exchange reply = Whole();
  reply.mask = Text("ZvMemoryStream") + Text("") + Text("") + Sint32(0);
  Run(reply.Bytes());
  EXPECT_EQ(mHost.result, 0);
  EXPECT_FALSE(NothingWasPut());
  EXPECT_EQ(mHost.Output(), (ByteVector{1, 2, 3, 4, 5, 6}));
}

TEST_F(DamagedReply, AbsurdSizesOfThePictureAreSurvived) {
  for (const char* const name :
       {"ZvImageRgbaBytes", "ZvRowImageRgbBytes", "ZvImageGrayBit", "ZvImageRgba64"}) {
    for (const int32_t width : {0, -1, 1, 2, 0x7FFFFFFF, INT32_MIN}) {
      for (const int32_t height : {0, -1, 1, 2, 0x7FFFFFFF, INT32_MIN}) {
        Exchange reply = Whole();
        reply.image = ImageObject(name, width, height, ByteVector(64, 200));
        Run(reply.Bytes());
        EXPECT_EQ(mHost.result, 0) << name << " " << width << " by " << height;
      }
    }
  }
}

TEST_F(DamagedReply, AnEffectNameLengthThatLiesIsHarmless) {
  // Only whether it is 0 counts; the name has a length of its own.
  for (const int64_t length : {int64_t{1}, int64_t{-1}, int64_t{0x7FFFFFFF}, int64_t{70000}}) {
    Exchange reply = Whole();
    std::string bytes = reply.Bytes();
    bytes.replace(0, 4, Sint32(length));
    Run(bytes);
    EXPECT_EQ(mHost.result, 0);
    EXPECT_EQ(gEffectName, "Dawn");
    EXPECT_EQ(mHost.Output(), (ByteVector{1, 2, 3, 4, 5, 6}));
  }
}

TEST_F(DamagedReply, AReplyThatIsRewrittenMeanwhileIsReadAsItStands) {
  // Behind the picture's header the file changes: a host call in the middle of the run does it.
  Exchange reply = Whole();
  mRun.application = [&] {
    mRun.Reply(reply.Bytes());
    return true;
  };
  mHost.onAdvance = [&] {
    if (mHost.advances.size() == 3)
      mRun.directory.Write("Img.h", "");
  };
  mRun.Start(mHost);
  EXPECT_EQ(mHost.result, 0);
  EXPECT_EQ(mHost.Output(), (ByteVector{1, 2, 3, 4, 5, 6}))
      << "all was read before the host was asked";
}

TEST_F(DamagedReply, EveryByteMayBeWrong) {
  const std::string bytes = Whole().Bytes();
  for (size_t at = 0; at < bytes.size(); ++at) {
    for (const int mask : {0x01, 0x80, 0xFF}) {
      std::string damaged = bytes;
      damaged[at] = static_cast<char>(damaged[at] ^ mask);
      Run(damaged);
      EXPECT_TRUE(mHost.result == 0 || mHost.result == -128) << "byte " << at << ", mask " << mask;
    }
  }
}

}  // namespace
}  // namespace vm
