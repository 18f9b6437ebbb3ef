#include "persistence/members/ZvStreamingObjectList.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "persistence/ByteStream.h"
#include "persistence/members/ZvMemberTemplates.h"
#include "persistence/members/ZvSleekStreaming.h"
#include "persistence/RecordingParser.h"
#include "persistence/ZvClassRegistry.h"
#include "support/ReportRecorder.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// One byte.
class Bead : public ZvStreamable {
 public:
  static constexpr char kClassName[] = "Bead";
  explicit Bead(uint8_t color = 0) : mColor(color) { ++sAlive; }
  ~Bead() override { --sAlive; }
  void ClassName(ZvString& outName) const override { outName = kClassName; }
  void WriteTo(ZvStream& stream) override { stream.WriteUInt8(mColor, "Color", true); }
  void ReadFrom(ZvStream& stream) override { mColor = stream.ReadUInt8(); }
  uint8_t mColor;
  static inline int sAlive = 0;
};

// Streamable too, but no Bead.
class Stone : public ZvStreamable {
 public:
  Stone() { ++sAlive; }
  ~Stone() override { --sAlive; }
  void ReadFrom(ZvStream& stream) override { stream.ReadUInt8(); }
  static inline int sAlive = 0;
};

using BeadVector = std::vector<ZvSmartPtr<Bead>>;
using BeadList = ZvStreamingObjectList<BeadVector, Bead>;
using BeadPointer = ZvStreamingSmartPtr<Bead>;

class ObjectBlocks : public testing::Test {
 protected:
  ObjectBlocks() {
    AppendClass("Bead", []() -> ZvStreamable* { return new Bead; });
    AppendClass("Stone", []() -> ZvStreamable* { return new Stone; });
  }
  ~ObjectBlocks() override {
    GetClassRegistry().resize(mClasses);
    EXPECT_EQ(Bead::sAlive, 0);
    EXPECT_EQ(Stone::sAlive, 0);
  }
  static ZvSmartPtr<Bead> NewBead(uint8_t color) {
    return ZvSmartPtr<Bead>::Adopt(new Bead(color));
  }
  static std::vector<int> Colors(const BeadList& list) {
    std::vector<int> colors;
    for (const auto& bead : list.mValue) {
      colors.push_back(bead->mColor);
    }
    return colors;
  }

  const std::size_t mClasses = GetClassRegistry().size();
};

std::vector<std::string> Written(ZvStreamingMemberVtable& member) {
  RecordingStream stream;
  member.WriteValue(stream);
  return stream.Lines();
}

TEST_F(ObjectBlocks, AnEmptyListWritesNothingWhateverItIsTold) {
  BeadList list(nullptr, "Beads");
  EXPECT_EQ(list.TypeTag(), 0x4F624C69u);  // 'ObLi'
  EXPECT_TRUE(list.IsDefault());
  EXPECT_THAT(Written(list), IsEmpty());
  list.mAlwaysWrite = true;
  EXPECT_FALSE(list.IsDefault());
  EXPECT_THAT(Written(list), IsEmpty());
}

TEST_F(ObjectBlocks, AListIsANamedBlockWithALineForEachObject) {
  BeadList list(nullptr, "Beads");
  list.mValue = {NewBead(1), NewBead(2)};
  EXPECT_FALSE(list.IsDefault());
  EXPECT_THAT(Written(list),
              ElementsAre("break", "String \"Beads\"", "break", "open {", "indent 1", "break",
                          "String \"Bead\"", "UInt8 1 Color", "break", "String \"Bead\"",
                          "UInt8 2 Color", "indent -1", "break", "close }", "break"));
}

TEST_F(ObjectBlocks, ANullEntryOfAListIsSkipped) {
  BeadList list(nullptr, "Beads");
  list.mValue = {nullptr, NewBead(2), nullptr};
  EXPECT_THAT(Written(list), ElementsAre("break", "String \"Beads\"", "break", "open {", "indent 1",
                                         "break", "String \"Bead\"", "UInt8 2 Color", "indent -1",
                                         "break", "close }", "break"));
}

TEST_F(ObjectBlocks, InBinaryAListIsItsNameAndItsObjectsBetweenBrackets) {
  BeadList list(nullptr, "Bs");
  list.mValue = {NewBead(1)};
  ByteStream stream;
  list.WriteValue(stream);
  EXPECT_EQ(stream.Hex(), "00 02 42 73 7B 00 04 42 65 61 64 01 7D");
}

// In binary a byte stands in front of each string, for the question whether the block ends.
constexpr char kTwoBeads[] = "7B 2E 00 04 42 65 61 64 01 2E 00 04 42 65 61 64 02 7D 55";

TEST_F(ObjectBlocks, AListReadsItsObjectsAndKeepsWhatItHad) {
  BeadList list(nullptr, "Beads");
  list.mValue = {NewBead(9)};
  ByteStream stream(kTwoBeads);
  list.ReadValue(stream);
  EXPECT_THAT(Colors(list), ElementsAre(9, 1, 2));
  EXPECT_EQ(list.mValue[1]->GetRefCount(), 1u);
  EXPECT_EQ(stream.Tell(), 18u);
}

TEST_F(ObjectBlocks, AListDropsObjectsOfAnotherClassInSilence) {
  BeadList list(nullptr, "Beads");
  ByteStream stream("7B 2E 00 05 53 74 6F 6E 65 07 2E 00 04 42 65 61 64 01 7D");
  list.ReadValue(stream);
  EXPECT_THAT(Colors(list), ElementsAre(1));
}

TEST_F(ObjectBlocks, AListSkipsEmptyNames) {
  BeadList list(nullptr, "Beads");
  ByteStream stream("7B 2E 00 00 2E 00 04 42 65 61 64 01 7D");
  list.ReadValue(stream);
  EXPECT_THAT(Colors(list), ElementsAre(1));
}

TEST_F(ObjectBlocks, AListReportsAnUnknownClassAndGoesOn) {
  vm::ReportRecorder reports;
  BeadList list(nullptr, "Beads");
  ByteStream stream("7B 2E 00 01 58 2E 00 04 42 65 61 64 01 7D");
  list.ReadValue(stream);
  EXPECT_THAT(reports.Lines(), ElementsAre("ZvStreamingObjectList(53) : object != NULL"));
  EXPECT_THAT(Colors(list), ElementsAre(1));
}

TEST_F(ObjectBlocks, AListEndsAtTheEndOfACutStream) {
  const std::vector<uint8_t> whole = FromHex(kTwoBeads);
  for (std::size_t count = 0; count < whole.size(); ++count) {
    vm::ReportRecorder reports;
    BeadList list(nullptr, "Beads");
    ByteStream stream(
        std::vector<uint8_t>(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(count)));
    list.ReadValue(stream);
    EXPECT_LE(list.mValue.size(), 2u) << count;
  }
}

TEST_F(ObjectBlocks, AListHasNoTextForm) {
  vm::ReportRecorder reports;
  BeadList list(nullptr, "Beads");
  ZvParser parser(nullptr);
  list.ParseValue(parser, "x");
  EXPECT_THAT(reports.Lines(), ElementsAre("ZvStreamingObjectList(89) : 0"));
}

TEST_F(ObjectBlocks, AnEmptyPointerWritesNothing) {
  BeadPointer pointer(nullptr, "One");
  EXPECT_EQ(pointer.TypeTag(), 0x4F625072u);  // 'ObPr'
  EXPECT_TRUE(pointer.IsDefault());
  EXPECT_THAT(Written(pointer), IsEmpty());
  pointer.mAlwaysWrite = true;
  EXPECT_FALSE(pointer.IsDefault());
  EXPECT_THAT(Written(pointer), IsEmpty());
}

TEST_F(ObjectBlocks, APointerIsANamedBlockWithItsObject) {
  BeadPointer pointer(nullptr, "One");
  pointer = NewBead(3);
  EXPECT_FALSE(pointer.IsDefault());
  EXPECT_THAT(Written(pointer), ElementsAre("break", "String \"One\"", "break", "open {",
                                            "indent 1", "break", "String \"Bead\"", "UInt8 3 Color",
                                            "indent -1", "break", "close }", "break"));
}

TEST_F(ObjectBlocks, APointerKeepsTheLastObjectOfItsBlock) {
  BeadPointer pointer(nullptr, "One");
  pointer = NewBead(9);
  ByteStream stream(kTwoBeads);
  pointer.ReadValue(stream);
  ASSERT_TRUE(pointer);
  EXPECT_EQ(pointer->mColor, 2);
  EXPECT_EQ(pointer->GetRefCount(), 1u);
  EXPECT_EQ(Bead::sAlive, 1);
}

TEST_F(ObjectBlocks, APointerKeepsWhatItHadWhenTheBlockHoldsAnotherClass) {
  BeadPointer pointer(nullptr, "One");
  pointer = NewBead(9);
  ByteStream stream("7B 2E 00 05 53 74 6F 6E 65 07 7D");
  pointer.ReadValue(stream);
  EXPECT_EQ(pointer->mColor, 9);
}

TEST_F(ObjectBlocks, APointerReportsAnUnknownClass) {
  vm::ReportRecorder reports;
  BeadPointer pointer(nullptr, "One");
  ByteStream stream("7B 2E 00 01 58 7D");
  pointer.ReadValue(stream);
  EXPECT_THAT(reports.Lines(), ElementsAre("ZvStreamingObjectList(122) : object != NULL"));
  EXPECT_FALSE(pointer);
}

TEST_F(ObjectBlocks, APointerHasNoTextForm) {
  vm::ReportRecorder reports;
  BeadPointer pointer(nullptr, "One");
  ZvParser parser(nullptr);
  pointer.ParseValue(parser, "x");
  EXPECT_THAT(reports.Lines(), ElementsAre("ZvStreamingObjectList(144) : 0"));
}

TEST_F(ObjectBlocks, APointerAssignedFromAnotherMemberSharesTheObject) {
  BeadPointer from(nullptr, "One");
  from = NewBead(3);
  BeadPointer to(nullptr, "Two");
  to = from;
  EXPECT_EQ(to.Get(), from.Get());
  EXPECT_EQ(to->GetRefCount(), 2u);
  EXPECT_EQ(to.FieldName, "One");
}

// --- Records
// -----------------------------------------------------------------------------------------------------

struct Knot {
  static constexpr char kName[] = "Knot";
  void WriteTo(ZvStream& stream) const { stream.WriteUInt8(mSize, nullptr, true); }
  void ReadFrom(ZvStream& stream) { mSize = stream.ReadUInt8(); }
  bool operator==(const Knot&) const = default;
  uint8_t mSize = 0;
};
using KnotList = ZvStreamingStructList<std::vector<Knot>, Knot>;

TEST(StructList, WritesNothingWhenEmptyUnlessTold) {
  KnotList list(nullptr, "Knots");
  EXPECT_EQ(list.TypeTag(), 0x53744C69u);  // 'StLi'
  EXPECT_TRUE(list.IsDefault());
  EXPECT_THAT(Written(list), IsEmpty());
  list.mAlwaysWrite = true;
  EXPECT_FALSE(list.IsDefault());
  EXPECT_THAT(Written(list), ElementsAre("break", "String \"Knots\"", "break", "open {", "indent 1",
                                         "indent -1", "break", "close }", "break"));
}

TEST(StructList, PutsTheTypesNameInFrontOfEachRecord) {
  KnotList list(nullptr, "Knots");
  list.mValue = {{1}, {2}};
  EXPECT_THAT(Written(list),
              ElementsAre("break", "String \"Knots\"", "break", "open {", "indent 1", "break",
                          "String \"Knot\"", "UInt8 1", "break", "String \"Knot\"", "UInt8 2",
                          "indent -1", "break", "close }", "break"));
}

TEST(StructList, ReadTwiceHoldsTheSecondReadingOnly) {
  KnotList list(nullptr, "Knots");
  list.mValue = {{9}};
  ByteStream stream("7B 2E 00 04 4B 6E 6F 74 01 2E 00 04 4B 6E 6F 74 02 7D");
  list.ReadValue(stream);
  EXPECT_THAT(list.mValue, ElementsAre(Knot{1}, Knot{2}));
  EXPECT_TRUE(stream.AtEnd());
}

TEST(StructList, ReportsAnotherNameAndReadsTheRecordAllTheSame) {
  vm::ReportRecorder reports;
  KnotList list(nullptr, "Knots");
  ByteStream stream("7B 2E 00 01 58 01 7D");
  list.ReadValue(stream);
  EXPECT_THAT(reports.Lines(),
              ElementsAre("ZvStreamingObjectList(196) : typeid(item).name() == classID"));
  EXPECT_THAT(list.mValue, ElementsAre(Knot{1}));
}

TEST(StructList, HasNoTextForm) {
  vm::ReportRecorder reports;
  KnotList list(nullptr, "Knots");
  ZvParser parser(nullptr);
  list.ParseValue(parser, "x");
  EXPECT_THAT(reports.Lines(), ElementsAre("ZvStreamingObjectList(209) : 0"));
}

// --- Plain values
// ------------------------------------------------------------------------------------------------

using PointList = ZvStreamingStructList<std::vector<ZvDPoint2d>, ZvDPoint2d>;
using NumberList = ZvStreamingFieldList<std::vector<int32_t>, int32_t>;

TEST(FieldList, WritesNothingWhenEmptyWhateverItIsTold) {
  PointList list(nullptr, "Points");
  EXPECT_EQ(list.TypeTag(), 0x53744C69u);  // 'StLi'
  EXPECT_TRUE(list.IsDefault());
  list.mAlwaysWrite = true;
  EXPECT_FALSE(list.IsDefault());
  EXPECT_THAT(Written(list), IsEmpty());
}

TEST(FieldList, OfPointsWritesEachByItsOwnStreaming) {
  PointList list(nullptr, "Points");
  list.mValue = {{1, 2}, {3, 4}};
  EXPECT_THAT(Written(list),
              ElementsAre("break", "String \"Points\"", "break", "open {", "indent 1", "break",
                          "open (", "Double 1 element", "separator", "Double 2 element", "close )",
                          "separator", "open (", "Double 3 element", "separator",
                          "Double 4 element", "close )", "indent -1", "break", "close }", "break"));
}

TEST(FieldList, BreaksTheLineBeforeEveryEighthValue) {
  NumberList list(nullptr, "Numbers");
  for (int i = 0; i < 17; ++i) {
    list.mValue.push_back(i);
  }
  std::string line;
  for (const std::string& operation : Written(list)) {
    line += operation == "break"              ? "|"
            : operation == "separator"        ? ","
            : operation.starts_with("SInt32") ? "n"
                                              : "";
  }
  EXPECT_EQ(line, "|||n,n,n,n,n,n,n,n,|n,n,n,n,n,n,n,n,|n||");
}

TEST(FieldList, ReplacesWhatItHadByTheValuesRead) {
  PointList list(nullptr, "Points");
  list.mValue = {{9, 9}};
  ByteStream stream("7B 2E 00 03 31 2C 32 2E 00 00 2E 00 04 33 2C 2D 34 7D");
  list.ReadValue(stream);
  ASSERT_EQ(list.mValue.size(), 2u);
  EXPECT_EQ(list.mValue[0], ZvDPoint2d(1, 2));
  EXPECT_EQ(list.mValue[1], ZvDPoint2d(3, -4));
}

TEST(FieldList, ResolvesAVariableForAWholeValue) {
  class Parser : public ZvParser {
   public:
    Parser() : ZvParser(nullptr) { mVariables.push_back({"home", "5,6"}); }
  };
  ByteStream stream("7B 2E 00 05 23 68 6F 6D 65 7D");
  stream.GetParser()->CopyStateFrom(Parser());
  PointList list(nullptr, "Points");
  list.ReadValue(stream);
  ASSERT_EQ(list.mValue.size(), 1u);
  EXPECT_EQ(list.mValue[0], ZvDPoint2d(5, 6));
}

TEST(FieldList, HasNoTextForm) {
  vm::ReportRecorder reports;
  PointList list(nullptr, "Points");
  ZvParser parser(nullptr);
  list.ParseValue(parser, "x");
  EXPECT_THAT(reports.Lines(), ElementsAre("ZvStreamingObjectList(283) : 0"));
}

}  // namespace
