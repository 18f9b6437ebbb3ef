#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numeric>
#include <string>

#include "foundation/FourCharCode.h"
#include "host/PlugInMain.h"
#include "host/TestPlugIn.h"

namespace vm {
namespace {

using Entry = FakeDescriptor::Entry;

constexpr uint32_t kName = FourCC("aeAU");
constexpr uint32_t kSize = FourCC("aeCT");
constexpr uint32_t kFiller = FourCC("aeSA");
constexpr uint32_t kPiece = FourCC("aeSK");

// 254 blanks and a zero byte.
std::string FillerText() {
  return std::string(254, ' ') + '\0';
}

// Bytes that differ from place to place and hold zeros too.
std::vector<uint8_t> Block(size_t size) {
  std::vector<uint8_t> block(size);
  for (size_t i = 0; i < size; ++i)
    block[i] = static_cast<uint8_t>(i * 7 + i / 256);
  return block;
}

std::string Text(const std::vector<uint8_t>& bytes, size_t begin, size_t count) {
  return {bytes.begin() + static_cast<ptrdiff_t>(begin),
          bytes.begin() + static_cast<ptrdiff_t>(begin + count)};
}

class Scripting : public testing::Test {
 protected:
  Scripting() { mHost.EnableScripting(plugInDialogDontDisplay); }

  // What Finish records.
  std::vector<Entry> Recorded() {
    mHost.result = FakeHost::kUntouched;
    PlugInMain(filterSelectorFinish, &mHost.Record(), nullptr, &mHost.result);
    EXPECT_EQ(mHost.result, 0);
    return mHost.Descriptor() != nullptr ? mHost.Descriptor()->entries : std::vector<Entry>();
  }

  FreshGlobals mFresh;
  FakeHost mHost{plugInModeGrayScale, 1, 1, 1, {0}};
};

// --- Recording ---------------------------------------------------------------------------------

TEST_F(Scripting, KeysAreCountedOnFromTheFirstPiecesNumber) {
  EXPECT_EQ(kPiece, 0x6165534Bu);
}

TEST_F(Scripting, FinishRecordsNameSizeFillerAndThePieces) {
  gEffectName = "Dusk";
  SetScriptState({10, 20, 30, 40});
  EXPECT_EQ(Recorded(), (std::vector<Entry>{TextEntry(kName, "Dusk"), NumberEntry(kSize, 4.0),
                                            TextEntry(kFiller, FillerText()),
                                            TextEntry(kPiece, "\x0A\x14\x1E")}));
  EXPECT_EQ(mHost.Parameters().recordInfo, 2);
}

TEST_F(Scripting, TheFillerHas255CharactersOfWhich254AreBlank) {
  SetScriptState({1});
  Recorded();
  ASSERT_EQ(mHost.rawStrings.size(), 2u);
  std::vector<uint8_t> expected(256, ' ');
  expected[0] = 255;
  expected[255] = 0;
  EXPECT_EQ(mHost.rawStrings[1], expected);
}

TEST_F(Scripting, TheLastByteOfTheBlockIsNeverRecorded) {
  SetScriptState({7, 8});
  const std::vector<Entry> recorded = Recorded();
  ASSERT_EQ(recorded.size(), 4u);
  EXPECT_EQ(recorded[1], NumberEntry(kSize, 2.0));
  EXPECT_EQ(recorded[3], TextEntry(kPiece, "\x07"));
}

TEST_F(Scripting, ABlockOfNoneOrOneByteHasNoPieces) {
  for (const size_t size : {size_t{0}, size_t{1}}) {
    SetScriptState(Block(size));
    const std::vector<Entry> recorded = Recorded();
    ASSERT_EQ(recorded.size(), 3u) << size;
    EXPECT_EQ(recorded[1], NumberEntry(kSize, static_cast<double>(size)));
  }
}

TEST_F(Scripting, ABlockOf256BytesIsOnePieceOf255) {
  const std::vector<uint8_t> block = Block(256);
  SetScriptState(block);
  const std::vector<Entry> recorded = Recorded();
  ASSERT_EQ(recorded.size(), 4u);
  EXPECT_EQ(recorded[3], TextEntry(0x6165534B, Text(block, 0, 255)));
}

TEST_F(Scripting, ABlockOf257BytesIsPiecesOf255And1) {
  const std::vector<uint8_t> block = Block(257);
  SetScriptState(block);
  const std::vector<Entry> recorded = Recorded();
  ASSERT_EQ(recorded.size(), 5u);
  EXPECT_EQ(recorded[3], TextEntry(0x6165534B, Text(block, 0, 255)));
  EXPECT_EQ(recorded[4], TextEntry(0x6165534C, Text(block, 255, 1)));
}

TEST_F(Scripting, KeysRunPastTheLastLetter) {
  // 20 pieces: the 16th has the number of 'aeSZ', then come '[', '\', ']' and '^'.
  SetScriptState(Block(255 * 20 + 1));
  const std::vector<Entry> recorded = Recorded();
  ASSERT_EQ(recorded.size(), 23u);
  EXPECT_EQ(recorded[3 + 15].key, FourCC("aeSZ"));
  EXPECT_EQ(recorded[3 + 16].key, FourCC("aeS["));
  EXPECT_EQ(recorded[3 + 19].key, FourCC("aeS^"));
}

TEST_F(Scripting, ALongNameIsRecordedWithItsLengthModulo256) {
  gEffectName = ZvString(std::string(260, 'x').c_str());
  SetScriptState({1});
  EXPECT_EQ(Recorded()[0], TextEntry(kName, "xxxx"));
}

TEST_F(Scripting, WithoutABlockTheDescriptorStaysAsTheHostGaveIt) {
  mHost.SetDescriptor({{TextEntry(kName, "old")}});
  EXPECT_EQ(Recorded(), (std::vector<Entry>{TextEntry(kName, "old")}));
  EXPECT_EQ(mHost.Parameters().recordInfo, plugInDialogRequired);
  TestPlugIn plugIn(mHost);
  EXPECT_EQ(plugIn.WriteScriptParameters(), -1);
}

TEST_F(Scripting, AHostWithoutParametersOrWriteProcsIsLeftAlone) {
  SetScriptState({1, 2});
  TestPlugIn plugIn(mHost);
  mHost.Parameters().writeDescriptorProcs = nullptr;
  EXPECT_EQ(plugIn.WriteScriptParameters(), 0);
  EXPECT_EQ(mHost.Parameters().descriptor, nullptr);
  mHost.Record().descriptorParameters = nullptr;
  EXPECT_EQ(plugIn.WriteScriptParameters(), 0);
  EXPECT_TRUE(mHost.rawStrings.empty());
}

TEST_F(Scripting, TheOldDescriptorIsDisposedOfOnce) {
  mHost.SetDescriptor({{TextEntry(kName, "old")}});
  SetScriptState({1, 2});
  Recorded();
  EXPECT_EQ(mHost.LiveHandles(), 1);
  EXPECT_EQ(mHost.BadDisposals(), 0);
  EXPECT_EQ(mHost.Descriptor()->entries.size(), 4u);
}

TEST_F(Scripting, AHostWithoutHandleSuiteStillGetsItsDescriptor) {
  mHost.SetDescriptor({{TextEntry(kName, "old")}});
  mHost.Record().handleProcs = nullptr;
  SetScriptState({1, 2});
  EXPECT_EQ(Recorded().size(), 4u);
  EXPECT_EQ(mHost.LiveHandles(), 2) << "nobody could dispose of the old one";
}

// --- Reading -----------------------------------------------------------------------------------

TEST_F(Scripting, WithoutADescriptorTheUserIsAsked) {
  TestPlugIn plugIn(mHost);
  EXPECT_TRUE(plugIn.ReadScriptParameters());
  mHost.SetDescriptor({});
  mHost.Parameters().readDescriptorProcs = nullptr;
  EXPECT_TRUE(plugIn.ReadScriptParameters());
  mHost.Record().descriptorParameters = nullptr;
  EXPECT_TRUE(plugIn.ReadScriptParameters());
  EXPECT_FALSE(plugIn.HasScriptState());
}

TEST_F(Scripting, WithoutATokenTheUserIsAskedAndTheDescriptorStays) {
  mHost.SetDescriptor({{NumberEntry(kSize, 2.0), TextEntry(kPiece, "a")}});
  mHost.refuseReading = true;
  TestPlugIn plugIn(mHost);
  EXPECT_TRUE(plugIn.ReadScriptParameters());
  EXPECT_NE(mHost.Parameters().descriptor, nullptr);
}

TEST_F(Scripting, TheHostIsAskedForThreeKeysInMemoryThatItMayMark) {
  mHost.SetDescriptor({});
  TestPlugIn plugIn(mHost);
  plugIn.ReadScriptParameters();
  EXPECT_EQ(mHost.keysAsked, (std::vector<uint32_t>{kSize, kFiller, kName}));
}

TEST_F(Scripting, OnlyTheDisplayingHostAsksTheUser) {
  const struct {
    int16_t playInfo;
    bool asks;
  } rows[] = {{0, false}, {1, true}, {2, false}, {3, false}};
  for (const auto& row : rows) {
    mHost.Parameters().playInfo = row.playInfo;
    mHost.SetDescriptor({{NumberEntry(kSize, 2.0), TextEntry(kPiece, "a")}});
    TestPlugIn plugIn(mHost);
    EXPECT_EQ(plugIn.ReadScriptParameters(), row.asks) << row.playInfo;
    EXPECT_EQ(plugIn.ScriptState(), (std::vector<uint8_t>{'a', 0, 0})) << "rebuilt in every case";
  }
}

TEST_F(Scripting, ReadingUsesUpTheDescriptor) {
  mHost.SetDescriptor({{NumberEntry(kSize, 2.0), TextEntry(kPiece, "a")}});
  TestPlugIn plugIn(mHost);
  plugIn.ReadScriptParameters();
  EXPECT_EQ(mHost.Parameters().descriptor, nullptr);
  EXPECT_EQ(mHost.LiveHandles(), 0);
  EXPECT_EQ(mHost.BadDisposals(), 0);
}

TEST_F(Scripting, TheReplayedBlockIsOneByteLongerAndEndsInTwoZeros) {
  const std::vector<uint8_t> block = {9, 8, 7, 6};
  SetScriptState(block);
  Recorded();
  TestPlugIn plugIn(mHost);
  EXPECT_FALSE(plugIn.ReadScriptParameters());
  EXPECT_EQ(plugIn.ScriptStateSize(), 5);
  EXPECT_EQ(plugIn.ScriptState(), (std::vector<uint8_t>{9, 8, 7, 0, 0}));
}

TEST_F(Scripting, ABlockOfManyPiecesComesBackWhole) {
  const std::vector<uint8_t> block = Block(1000);
  SetScriptState(block);
  Recorded();
  TestPlugIn plugIn(mHost);
  plugIn.ReadScriptParameters();
  std::vector<uint8_t> expected(block.begin(), block.end() - 1);
  expected.insert(expected.end(), {0, 0});
  EXPECT_EQ(plugIn.ScriptState(), expected);
}

TEST_F(Scripting, TheRecordedNameIsNotRestored) {
  mHost.SetDescriptor(
      {{TextEntry(kName, "Recorded"), NumberEntry(kSize, 2.0), TextEntry(kPiece, "a")}});
  gEffectName = "Last";
  TestPlugIn plugIn(mHost);
  plugIn.ReadScriptParameters();
  EXPECT_EQ(gEffectName, "Last");
}

TEST_F(Scripting, ASizeOfZeroRebuildsNothing) {
  mHost.SetDescriptor({{NumberEntry(kSize, 0.0), TextEntry(kPiece, "a")}});
  TestPlugIn plugIn(mHost);
  EXPECT_FALSE(plugIn.ReadScriptParameters());
  EXPECT_FALSE(plugIn.HasScriptState());
  EXPECT_EQ(plugIn.ScriptStateSize(), 0);
}

TEST_F(Scripting, ASizeThatNoBlockCanHaveRebuildsNothing) {
  for (const double size :
       {-1.0, -1e300, 2147483647.0, 1e300, std::numeric_limits<double>::infinity(),
        std::numeric_limits<double>::quiet_NaN()}) {
    mHost.SetDescriptor({{NumberEntry(kSize, size), TextEntry(kPiece, "abc")}});
    TestPlugIn plugIn(mHost);
    EXPECT_FALSE(plugIn.ReadScriptParameters()) << size;
    EXPECT_FALSE(plugIn.HasScriptState()) << size;
  }
}

TEST_F(Scripting, AFractionOfASizeIsCut) {
  mHost.SetDescriptor({{NumberEntry(kSize, 2.75), TextEntry(kPiece, "ab")}});
  TestPlugIn plugIn(mHost);
  plugIn.ReadScriptParameters();
  EXPECT_EQ(plugIn.ScriptState(), (std::vector<uint8_t>{'a', 'b', 0}));
}

TEST_F(Scripting, ASizeThatRoundsUpWhenOneIsAddedReadsNoForeignByte) {
  // One below 1.0 in the last place: cut it is 0, plus 1.0 it is 2.0.
  const double size = std::nextafter(1.0, 0.0);
  mHost.SetDescriptor({{NumberEntry(kSize, size), TextEntry(kPiece, "ab")}});
  TestPlugIn plugIn(mHost);
  plugIn.ReadScriptParameters();
  EXPECT_EQ(plugIn.ScriptState(), std::vector<uint8_t>(static_cast<size_t>(size + 1.0), 0));
}

TEST_F(Scripting, PiecesBeyondTheSizeAreCutBeforeTheZeroByte) {
  mHost.SetDescriptor({{NumberEntry(kSize, 3.0), TextEntry(kPiece, "ab"),
                        TextEntry(kPiece + 1, "cde"), TextEntry(kPiece + 2, "f")}});
  TestPlugIn plugIn(mHost);
  plugIn.ReadScriptParameters();
  EXPECT_EQ(plugIn.ScriptState(), (std::vector<uint8_t>{'a', 'b', 'c', 0}));
}

TEST_F(Scripting, PiecesBeforeTheSizeAreIgnored) {
  mHost.SetDescriptor(
      {{TextEntry(kPiece, "zz"), NumberEntry(kSize, 2.0), TextEntry(kPiece + 1, "a")}});
  TestPlugIn plugIn(mHost);
  plugIn.ReadScriptParameters();
  EXPECT_EQ(plugIn.ScriptState(), (std::vector<uint8_t>{'a', 0, 0}));
}

TEST_F(Scripting, ASecondSizeStartsOver) {
  mHost.SetDescriptor({{NumberEntry(kSize, 9.0), TextEntry(kPiece, "zzzz"), NumberEntry(kSize, 2.0),
                        TextEntry(kPiece + 1, "a")}});
  TestPlugIn plugIn(mHost);
  plugIn.ReadScriptParameters();
  EXPECT_EQ(plugIn.ScriptState(), (std::vector<uint8_t>{'a', 0, 0}));
}

TEST_F(Scripting, AnErrorStopsReadingAndWhatCameIsUsed) {
  mHost.SetDescriptor({{NumberEntry(kSize, 4.0), TextEntry(kPiece, "a"), TextEntry(kPiece + 1, "b"),
                        TextEntry(kPiece + 2, "c")}});
  mHost.failGetStringAfter = 1;
  TestPlugIn plugIn(mHost);
  EXPECT_FALSE(plugIn.ReadScriptParameters());
  EXPECT_EQ(plugIn.ScriptState(), (std::vector<uint8_t>{'a', 0, 0, 0, 0}));
  EXPECT_EQ(mHost.Parameters().descriptor, nullptr);
}

TEST_F(Scripting, AnUnreadableSizeRebuildsNothing) {
  mHost.SetDescriptor({{NumberEntry(kSize, 4.0), TextEntry(kPiece, "a")}});
  mHost.failGetFloat = -1;
  TestPlugIn plugIn(mHost);
  EXPECT_FALSE(plugIn.ReadScriptParameters());
  EXPECT_FALSE(plugIn.HasScriptState());
}

TEST_F(Scripting, TheLaterOfTwoReadingsCounts) {
  TestPlugIn plugIn(mHost);
  mHost.SetDescriptor({{NumberEntry(kSize, 3.0), TextEntry(kPiece, "ab")}});
  plugIn.ReadScriptParameters();
  mHost.SetDescriptor({{NumberEntry(kSize, 2.0), TextEntry(kPiece, "c")}});
  plugIn.ReadScriptParameters();
  EXPECT_EQ(plugIn.ScriptState(), (std::vector<uint8_t>{'c', 0, 0}));
}

}  // namespace
}  // namespace vm
