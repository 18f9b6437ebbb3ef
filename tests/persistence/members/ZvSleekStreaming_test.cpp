#include "persistence/members/ZvSleekStreaming.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "foundation/FourCharCode.h"
#include "persistence/ByteStream.h"
#include "persistence/members/ZvMemberTemplates.h"
#include "persistence/RecordingParser.h"
#include "support/ReportRecorder.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> Written(ZvSleekStreaming& object) {
  RecordingStream stream;
  object.WriteTo(stream);
  return stream.Lines();
}

class Three : public ZvSleekStreaming {
 public:
  ZvMemberTemplate<bool> mA{this, "A", false};
  ZvMemberTemplate<float> mB{this, "B", 0.0f};
  ZvMemberTemplate<ZvString> mC{this, "C", ""};
};

class Four : public Three {
 public:
  ZvMemberTemplate<double> mD{this, "D", 0.0};
};

class WithList : public ZvSleekStreaming {
 public:
  ZvMemberTemplate<bool> mA{this, "A", false};
  ZvStreamingObjectList<std::vector<ZvSmartPtr<Three>>, Three> mList{this, "List"};
};

// Any number of bools, all told to be written.
class Bools : public ZvSleekStreaming {
 public:
  explicit Bools(int count) {
    for (int i = 0; i < count; ++i) {
      const std::string name = "F" + std::to_string(i + 1);
      mFields.push_back(std::make_unique<ZvMemberTemplate<bool>>(this, name.c_str(), false));
      mFields.back()->mValue = true;
    }
  }
  std::vector<std::unique_ptr<ZvMemberTemplate<bool>>> mFields;
};

class Numbers : public ZvSleekStreaming {
 public:
  ZvMemberTemplate<int32_t> mSigned{this, "Signed", -1};
  ZvMemberTemplate<uint32_t> mUnsigned{this, "Unsigned", 1u};
  ZvStreamingID mID{this, "ID", kInvalidID};
};

TEST(AddMember, ReportsANullMemberAndLeavesItOut) {
  vm::ReportRecorder reports;
  Three object;
  object.AddMember(nullptr);
  EXPECT_THAT(reports.Lines(), ElementsAre("ZvSleekStreaming(164) : tMember != nil"));
  EXPECT_TRUE(object.IsOneLiner());  // Still three members.
}

TEST(AddMember, ReportsANameWithABlankWhicheverWayTheMemberWasBuilt) {
  vm::ReportRecorder reports;
  Three object;
  ZvMemberTemplate<bool> owned(&object, "two words", false);
  EXPECT_THAT(reports.Lines(),
              ElementsAre("ZvSleekStreaming(165) : !tMember->FieldName().Contains(' ')"));
  reports.Clear();
  ZvMemberTemplate<bool> loose(nullptr, "two words", false);
  EXPECT_THAT(reports.Lines(), IsEmpty());
  object.AddMember(&loose);
  EXPECT_THAT(reports.Lines(),
              ElementsAre("ZvSleekStreaming(165) : !tMember->FieldName().Contains(' ')"));
  EXPECT_FALSE(object.IsOneLiner());  // Five members: both were appended.
}

TEST(OneLiner, HasFewerThanFourMembersAndNoLists) {
  EXPECT_TRUE(Three().IsOneLiner());
  EXPECT_FALSE(Four().IsOneLiner());
  EXPECT_FALSE(WithList().IsOneLiner());
  EXPECT_TRUE(Numbers().IsOneLiner());
}

// A member that only has a tag.
class Tagged : public ZvStreamingMemberVtable {
 public:
  Tagged(ZvSleekStreaming* owner, uint32_t tag) : ZvStreamingMemberVtable(owner, "T", tag) {}
  void WriteValue(ZvStream& /*stream*/) override {}
  void ParseValue(ZvParser& /*parser*/, const ZvString& text) override {
    mParsed.push_back(std::string(text.view()));
  }
  void ReadValue(ZvStream& /*stream*/) override { ++mReads; }
  bool IsDefault() const override { return true; }
  std::vector<std::string> mParsed;
  int mReads = 0;
};

TEST(OneLiner, IsBrokenBySixTags) {
  for (const char* tag : {"ObLi", "NSLi", "NObj", "ObPr", "vtLi", "StLi", "NStr", "Othe"}) {
    const std::string name(tag);
    ZvSleekStreaming object;
    const Tagged member(&object, FourCC({tag[0], tag[1], tag[2], tag[3], '\0'}));
    EXPECT_EQ(object.IsOneLiner(), name == "NStr" || name == "Othe") << name;
  }
}

TEST(SleekWrite, AOneLinerAtItsDefaultsIsJustItsMarks) {
  Three object;
  EXPECT_THAT(Written(object),
              ElementsAre("open {", "indent 1", "indent -1", "soft break", "close }"));
}

TEST(SleekWrite, AOneLinerHasNoLineBreaksAroundIt) {
  Three object;
  object.mB.mValue = 0.5f;
  object.mC.mValue = "x";
  EXPECT_THAT(Written(object), ElementsAre("open {", "indent 1", "Float 0.5 B", "String \"x\" C",
                                           "indent -1", "soft break", "close }"));
}

TEST(SleekWrite, AnObjectOfFourMembersStandsOnLinesOfItsOwn) {
  Four object;
  object.mD.mValue = 1.5;
  object.mA.mValue = true;
  EXPECT_THAT(Written(object), ElementsAre("break", "open {", "indent 1", "break", "Bool true A",
                                           "Double 1.5 D", "indent -1", "break", "close }"));
}

TEST(SleekWrite, SevenFieldsHaveOneBreakAmongThemInFrontOfTheSeventh) {
  Bools object(7);
  EXPECT_THAT(Written(object),
              ElementsAre("break", "open {", "indent 1", "break", "Bool true F1", "Bool true F2",
                          "Bool true F3", "Bool true F4", "Bool true F5", "Bool true F6", "break",
                          "Bool true F7", "indent -1", "break", "close }"));
}

TEST(SleekWrite, TheNextBreakComesSevenFieldsLater) {
  Bools object(21);
  std::string line;
  for (const std::string& operation : Written(object)) {
    line += operation == "break" ? "|" : operation.starts_with("Bool") ? "b" : "";
  }
  // The counter starts at 0 again with the field behind the break.
  EXPECT_EQ(line, "||bbbbbb|bbbbbbb|bbbbbbb|b|");
}

TEST(SleekWrite, FieldsAtTheirDefaultDontCount) {
  Bools object(10);
  for (const int i : {0, 3, 9}) {
    object.mFields[static_cast<std::size_t>(i)]->mValue = false;
  }
  const std::vector<std::string> lines = Written(object);
  // F1, F4 and F10 stay out, so F9 is the seventh written: 2, 3, 5, 6, 7, 8, 9.
  const auto seventh = std::find(lines.begin(), lines.end(), "Bool true F9");
  ASSERT_NE(seventh, lines.end());
  EXPECT_EQ(*(seventh - 1), "break");
  EXPECT_EQ(std::count(lines.begin(), lines.end(), "break"), 4);
}

// REQUIRED: the array is counted and yet writes nothing.
TEST(SleekWrite, AnArrayAtItsDefaultThatMustBeWrittenCountsForTheBreaks) {
  class Object : public Bools {
   public:
    Object() : Bools(6) { mPoint.mAlwaysWrite = true; }
    ZvStreamingArrayTemplate<ZvPoint> mPoint{this, "Point", ZvPoint()};
  };
  Object object;
  EXPECT_THAT(Written(object),
              ElementsAre("break", "open {", "indent 1", "break", "Bool true F1", "Bool true F2",
                          "Bool true F3", "Bool true F4", "Bool true F5", "Bool true F6", "break",
                          "indent -1", "break", "close }"));
}

TEST(SleekWrite, ThirtyTwoBitsGoByTheirTag) {
  Numbers object;
  EXPECT_THAT(Written(object),
              ElementsAre("open {", "indent 1", "indent -1", "soft break", "close }"));
  object.mSigned.mValue = -5;
  object.mUnsigned.mValue = 4000000000u;
  object.mID.mValue = 7;
  EXPECT_THAT(Written(object),
              ElementsAre("open {", "indent 1", "SInt32 -5 Signed", "UInt32 4000000000 Unsigned",
                          "FourCC 7 ID", "indent -1", "soft break", "close }"));
}

TEST(SleekWrite, ThirtyTwoBitsAtTheirDefaultAreWrittenWhenTold) {
  Numbers object;
  object.mSigned.mAlwaysWrite = true;
  object.mUnsigned.mAlwaysWrite = true;
  object.mID.mAlwaysWrite = true;
  EXPECT_THAT(Written(object),
              ElementsAre("open {", "indent 1", "SInt32 -1 Signed", "UInt32 1 Unsigned",
                          "FourCC 0 ID", "indent -1", "soft break", "close }"));
}

TEST(SleekWrite, ThirtyTwoBitsCountForTheBreaks) {
  class Object : public Bools {
   public:
    Object() : Bools(6) { mNumber.mValue = 5; }
    ZvMemberTemplate<int32_t> mNumber{this, "Number", 0};
  };
  Object object;
  const std::vector<std::string> lines = Written(object);
  const auto number = std::find(lines.begin(), lines.end(), "SInt32 5 Number");
  ASSERT_NE(number, lines.end());
  EXPECT_EQ(*(number - 1), "break");
}

TEST(SleekWrite, InBinaryIsBareValuesBetweenBrackets) {
  Three object;
  object.mB.mValue = 1.0f;
  object.mC.mValue = "x";
  ByteStream stream;
  object.WriteTo(stream);
  EXPECT_EQ(stream.Hex(), "7B 00 00 80 3F 00 01 78 7D");
}

TEST(SleekWrite, DefaultsTakeNoRoom) {
  Bools object(30);
  for (auto& field : object.mFields) {
    field->mValue = false;
  }
  ByteStream stream;
  object.WriteTo(stream);
  EXPECT_EQ(stream.Hex(), "7B 7D");
}

// --- Reading
// -----------------------------------------------------------------------------------------------------

// A parser that delivers fields from a list instead of the stream; an empty list is the end of the
// block.
class FieldParser : public ZvParser {
 public:
  explicit FieldParser(std::vector<std::pair<const char*, const char*>> fields)
      : ZvParser(nullptr), mFields(std::move(fields)) {}
  void ReadOpen() override { ++mOpens; }
  bool ReadClose() override { return mNext == mFields.size(); }
  char ReadField(ZvString& outValue, ZvString& outName) override {
    outName = mFields[mNext].first;
    outValue = mFields[mNext].second;
    ++mNext;
    return '\0';
  }
  int mOpens = 0;

 private:
  std::vector<std::pair<const char*, const char*>> mFields;
  std::size_t mNext = 0;
};

void ReadFields(ZvSleekStreaming& object, std::vector<std::pair<const char*, const char*>> fields) {
  ByteStream stream;
  const auto parser = ZvSmartPtr<FieldParser>::Adopt(new FieldParser(std::move(fields)));
  stream.AttachParser(parser.Get());
  object.ReadFrom(stream);
  EXPECT_EQ(parser->mOpens, 1);
}

TEST(SleekRead, SetsFieldsByNameInAnyOrder) {
  Four object;
  ReadFields(object, {{"D", "2.5"}, {"C", "text"}, {"A", "true"}});
  EXPECT_TRUE(object.mA.mValue);
  EXPECT_EQ(object.mB.mValue, 0.0f);
  EXPECT_EQ(object.mC.mValue, "text");
  EXPECT_EQ(object.mD.mValue, 2.5);
}

TEST(SleekRead, AFieldThatDidNotComeKeepsItsValue) {
  Three object;
  object.mB.mValue = 7.0f;
  ReadFields(object, {{"A", "1"}});
  EXPECT_EQ(object.mB.mValue, 7.0f);
}

TEST(SleekRead, TheLastOfTwoFieldsOfOneNameWins) {
  Three object;
  ReadFields(object, {{"B", "1"}, {"B", "2"}});
  EXPECT_EQ(object.mB.mValue, 2.0f);
}

TEST(SleekRead, NamesMustMatchWhole) {
  Three object;
  ReadFields(object, {{"b", "1"}, {"BB", "2"}, {"Unknown", "3"}, {"", ""}});
  EXPECT_EQ(object.mB.mValue, 0.0f);
}

TEST(SleekRead, TheFirstOfTwoMembersOfOneNameGetsTheField) {
  class Twins : public ZvSleekStreaming {
   public:
    ZvMemberTemplate<float> mFirst{this, "X", 0.0f};
    ZvMemberTemplate<float> mSecond{this, "X", 0.0f};
  };
  Twins object;
  ReadFields(object, {{"X", "1"}});
  EXPECT_EQ(object.mFirst.mValue, 1.0f);
  EXPECT_EQ(object.mSecond.mValue, 0.0f);
}

TEST(SleekRead, ASingleTokenIsTheNameAndTheValueIsEmpty) {
  Three object;
  object.mC.mValue = "before";
  ReadFields(object, {{"", "C"}});
  EXPECT_EQ(object.mC.mValue, "");
}

TEST(SleekRead, ThirtyTwoBitsGoByTheirTag) {
  Numbers object;
  ReadFields(object, {{"Signed", "-5"}, {"Unsigned", "4000000000"}, {"ID", "'abcd'"}});
  EXPECT_EQ(object.mSigned.mValue, -5);
  EXPECT_EQ(object.mUnsigned.mValue, 4000000000u);
  EXPECT_EQ(object.mID.mValue, FourCC("abcd"));
}

TEST(SleekRead, SixTagsReadThemselvesAndOthersAreParsed) {
  for (const char* tag : {"ObLi", "NSLi", "ObPr", "NStr", "NObj", "StLi", "vtLi", "Othe"}) {
    const std::string name(tag);
    ZvSleekStreaming object;
    Tagged member(&object, FourCC({tag[0], tag[1], tag[2], tag[3], '\0'}));
    ReadFields(object, {{"T", "text"}});
    if (name == "vtLi" || name == "Othe") {
      EXPECT_EQ(member.mReads, 0) << name;
      EXPECT_THAT(member.mParsed, ElementsAre("text")) << name;
    } else {
      EXPECT_EQ(member.mReads, 1) << name;
      EXPECT_THAT(member.mParsed, IsEmpty()) << name;
    }
  }
}

TEST(SleekRead, BelowVersionOneReadsNothing) {
  ByteStream stream("7B 61 00 01 41 7D");
  stream.SetVersion(0.5f);
  Three object;
  object.ReadFrom(stream);
  EXPECT_EQ(stream.Tell(), 0u);
  EXPECT_EQ(stream.Reads(), 0);
}

// Through the binary parser each pass costs one byte for the question whether the block ends.
TEST(SleekRead, InBinaryTakesTokensWithAByteInFrontOfEach) {
  ByteStream stream(
      "7B "              // {
      "61 00 01 43 "     // a byte, the token "C"
      "61 00 02 5A 5A "  // a byte, the unknown token "ZZ"
      "7D 55");          // }
  Three object;
  object.mC.mValue = "before";
  object.ReadFrom(stream);
  EXPECT_EQ(object.mC.mValue, "");
  EXPECT_EQ(stream.Tell(), 11u);
}

TEST(SleekRead, EndsAtTheEndOfACutStream) {
  for (const char* hex :
       {"", "7B", "7B 61", "7B 61 00", "7B 61 00 01", "7B 61 00 01 43", "7B 61 FF FF 43"}) {
    ByteStream stream(hex);
    Three object;
    object.ReadFrom(stream);
    EXPECT_TRUE(stream.AtEnd()) << hex;
  }
}

// REQUIRED: the number of fields of a block has no limit.
TEST(SleekRead, GoesOnBeyondAHundredThousandFields) {
  std::vector<std::pair<const char*, const char*>> fields(100001, {"Unknown", "1"});
  fields.emplace_back("B", "2");
  Three object;
  ReadFields(object, fields);
  EXPECT_EQ(object.mB.mValue, 2.0f);
}

}  // namespace
