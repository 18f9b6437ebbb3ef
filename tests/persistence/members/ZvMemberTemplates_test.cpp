#include "persistence/members/ZvMemberTemplates.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "persistence/ByteStream.h"
#include "persistence/RecordingParser.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

enum class Flavour : int8_t { kSweet = 10, kSour = -3 };

// What a member writes, as operations.
std::vector<std::string> Written(ZvStreamingMemberVtable& member) {
  RecordingStream stream;
  member.WriteValue(stream);
  return stream.Lines();
}

void Parse(ZvStreamingMemberVtable& member, const char* text) {
  ZvParser parser(nullptr);
  member.ParseValue(parser, text);
}

// Reads a member from a binary stream that holds one string.
void ReadToken(ZvStreamingMemberVtable& member, const char* token) {
  ByteStream stream;
  stream.WriteString(token, nullptr, true);
  stream.Rewind();
  member.ReadValue(stream);
  EXPECT_TRUE(stream.AtEnd());
}

TEST(MemberTemplate, HasItsDefaultAsItsFirstValue) {
  const ZvMemberTemplate<float> member(nullptr, "Pos", 0.25f);
  EXPECT_EQ(member.FieldName, "Pos");
  EXPECT_EQ(member.TypeTag(), 0u);
  EXPECT_FALSE(member.mAlwaysWrite);
  EXPECT_EQ(member.mValue, 0.25f);
  EXPECT_EQ(member.mDefault, 0.25f);
  EXPECT_TRUE(member.IsDefault());
}

TEST(MemberTemplate, WritesNothingAtItsDefault) {
  ZvMemberTemplate<bool> flag(nullptr, "Flag", true);
  ZvMemberTemplate<float> number(nullptr, "Number", 1.0f);
  ZvMemberTemplate<double> real(nullptr, "Real", 1.0);
  ZvMemberTemplate<ZvString> text(nullptr, "Text", "abc");
  EXPECT_THAT(Written(flag), IsEmpty());
  EXPECT_THAT(Written(number), IsEmpty());
  EXPECT_THAT(Written(real), IsEmpty());
  EXPECT_THAT(Written(text), IsEmpty());
}

TEST(MemberTemplate, WritesAChangedValueUnderItsName) {
  ZvMemberTemplate<bool> flag(nullptr, "Flag", true);
  ZvMemberTemplate<float> number(nullptr, "Number", 1.0f);
  ZvMemberTemplate<double> real(nullptr, "Real", 1.0);
  ZvMemberTemplate<ZvString> text(nullptr, "Text", "abc");
  flag.mValue = false;
  number.mValue = 0.5f;
  real.mValue = -2.0;
  text.mValue = "";
  EXPECT_THAT(Written(flag), ElementsAre("Bool false Flag"));
  EXPECT_THAT(Written(number), ElementsAre("Float 0.5 Number"));
  EXPECT_THAT(Written(real), ElementsAre("Double -2 Real"));
  EXPECT_THAT(Written(text), ElementsAre("String \"\" Text"));
  EXPECT_FALSE(flag.IsDefault());
}

TEST(MemberTemplate, MayBeToldToWriteItsDefault) {
  ZvMemberTemplate<float> number(nullptr, "Number", 1.0f);
  number.mAlwaysWrite = true;
  EXPECT_FALSE(number.IsDefault());
  EXPECT_THAT(Written(number), ElementsAre("Float 1 Number"));
}

TEST(MemberTemplate, TakesItsValueFromText) {
  ZvMemberTemplate<bool> flag(nullptr, "Flag", true);
  ZvMemberTemplate<float> number(nullptr, "Number", 1.0f);
  ZvMemberTemplate<double> real(nullptr, "Real", 1.0);
  ZvMemberTemplate<ZvString> text(nullptr, "Text", "abc");
  Parse(flag, "no");
  Parse(number, "0.25");
  Parse(real, "-1e2");
  Parse(text, "x y");
  EXPECT_FALSE(flag.mValue);
  EXPECT_EQ(number.mValue, 0.25f);
  EXPECT_EQ(real.mValue, -100.0);
  EXPECT_EQ(text.mValue, "x y");
  EXPECT_EQ(number.mDefault, 1.0f);
}

TEST(MemberTemplate, ReadsAToken) {
  ZvMemberTemplate<float> number(nullptr, "Number", 1.0f);
  ZvMemberTemplate<ZvString> text(nullptr, "Text", "abc");
  ReadToken(number, "0.25");
  ReadToken(text, "x");
  EXPECT_EQ(number.mValue, 0.25f);
  EXPECT_EQ(text.mValue, "x");
}

TEST(MemberTemplate, AssignedFromAnotherTakesAllThatItHolds) {
  ZvMemberTemplate<float> from(nullptr, "From", 1.0f);
  from.mValue = 0.5f;
  from.mAlwaysWrite = true;
  ZvMemberTemplate<float> to(nullptr, "To", 2.0f);
  to = from;
  EXPECT_EQ(to.FieldName, "From");
  EXPECT_TRUE(to.mAlwaysWrite);
  EXPECT_EQ(to.mValue, 0.5f);
  EXPECT_EQ(to.mDefault, 1.0f);
}

TEST(MemberTemplate, OfThirtyTwoBitsHasATagOfItsOwn) {
  EXPECT_EQ(ZvMemberTemplate<int32_t>(nullptr, "N", -1).TypeTag(), 0x496E3332u);   // 'In32'
  EXPECT_EQ(ZvMemberTemplate<uint32_t>(nullptr, "N", 1u).TypeTag(), 0x55493332u);  // 'UI32'
  EXPECT_EQ(ZvStreamingID(nullptr, "ID", kInvalidID).TypeTag(), 0x5A764944u);      // 'ZvID'
}

TEST(EnumMember, IsEightBitsUnderItsName) {
  ZvStreamingEnumTemplate<Flavour> member(nullptr, "Flavour", Flavour::kSweet);
  EXPECT_THAT(Written(member), IsEmpty());
  member.mAlwaysWrite = true;
  EXPECT_THAT(Written(member), ElementsAre("SInt8 10 Flavour"));
  member.mAlwaysWrite = false;
  member.mValue = Flavour::kSour;
  EXPECT_THAT(Written(member), ElementsAre("SInt8 -3 Flavour"));
  EXPECT_FALSE(member.IsDefault());
}

TEST(EnumMember, IsSetFromANumber) {
  ZvStreamingEnumTemplate<Flavour> member(nullptr, "Flavour", Flavour::kSweet);
  Parse(member, "-3");
  EXPECT_EQ(member.mValue, Flavour::kSour);
}

// REQUIRED: only ParseValue sets an enumeration.
TEST(EnumMember, ReadsNothing) {
  ZvStreamingEnumTemplate<Flavour> member(nullptr, "Flavour", Flavour::kSweet);
  ByteStream stream("00 02 2D 33");
  member.ReadValue(stream);
  EXPECT_EQ(member.mValue, Flavour::kSweet);
  EXPECT_EQ(stream.Tell(), 0u);
}

TEST(ArrayMember, IsABracketedListUnderItsName) {
  ZvStreamingArrayTemplate<ZvPoint> point(nullptr, "Offset", ZvPoint(0, 0));
  point.mValue = ZvPoint(3, -4);
  EXPECT_THAT(Written(point), ElementsAre("open ( Offset", "SInt32 3 element", "separator",
                                          "SInt32 -4 element", "close )"));
}

TEST(ArrayMember, WritesEachKindInItsOwnNumbers) {
  ZvStreamingArrayTemplate<ZvRect> rect(nullptr, "R", ZvRect());
  rect.mValue = ZvRect(1, 2, 3, 4);
  EXPECT_THAT(Written(rect), ElementsAre("open ( R", "SInt32 1 element", "separator",
                                         "SInt32 2 element", "separator", "SInt32 3 element",
                                         "separator", "SInt32 4 element", "close )"));
  ZvStreamingArrayTemplate<ZvDPoint2d> real(nullptr, "D", ZvDPoint2d());
  real.mValue = ZvDPoint2d(0.5, -1);
  EXPECT_THAT(Written(real), ElementsAre("open ( D", "Double 0.5 element", "separator",
                                         "Double -1 element", "close )"));
  ZvStreamingArrayTemplate<PxRgba64> color(nullptr, "C", PxRgba64{});
  color.mValue = PxRgba64{1, 2, 3, 65535};
  EXPECT_THAT(Written(color), ElementsAre("open ( C", "UInt16 1 element", "separator",
                                          "UInt16 2 element", "separator", "UInt16 3 element",
                                          "separator", "UInt16 65535 element", "close )"));
}

TEST(ArrayMember, InBinaryIsValuesBetweenMarks) {
  ZvStreamingArrayTemplate<ZvPoint> point(nullptr, "Offset", ZvPoint(0, 0));
  point.mValue = ZvPoint(3, -4);
  ByteStream stream;
  point.WriteValue(stream);
  EXPECT_EQ(stream.Hex(), "28 00 00 00 03 2C FF FF FF FC 29");
}

// REQUIRED: mAlwaysWrite makes an array count as present, and yet it writes nothing at its default.
TEST(ArrayMember, AtItsDefaultWritesNothingWhateverItIsTold) {
  ZvStreamingArrayTemplate<ZvPoint> point(nullptr, "Offset", ZvPoint(1, 2));
  EXPECT_TRUE(point.IsDefault());
  point.mAlwaysWrite = true;
  EXPECT_FALSE(point.IsDefault());
  EXPECT_THAT(Written(point), IsEmpty());
}

TEST(ArrayMember, TakesItsElementsFromText) {
  ZvStreamingArrayTemplate<ZvRect> rect(nullptr, "R", ZvRect(9, 9, 9, 9));
  Parse(rect, "1,-2,0x10,4");
  EXPECT_EQ(rect.mValue, ZvRect(1, -2, 16, 4));
  ZvStreamingArrayTemplate<ZvDPoint2d> real(nullptr, "D", ZvDPoint2d());
  Parse(real, "0.5,-1");
  EXPECT_EQ(real.mValue.x, 0.5);
  EXPECT_EQ(real.mValue.y, -1.0);
  ZvStreamingArrayTemplate<PxRgba64> color(nullptr, "C", PxRgba64{});
  Parse(color, "1,2,3,65535");
  EXPECT_EQ(color.mValue, (PxRgba64{1, 2, 3, 65535}));
}

TEST(ArrayMember, AnEmptyFieldLeavesItsElementAsItWas) {
  ZvStreamingArrayTemplate<ZvRect> rect(nullptr, "R", ZvRect(9, 8, 7, 6));
  Parse(rect, ",2,");
  EXPECT_EQ(rect.mValue, ZvRect(9, 2, 7, 6));
  Parse(rect, "");
  EXPECT_EQ(rect.mValue, ZvRect(9, 2, 7, 6));
}

TEST(ArrayMember, APointTakesEveryFieldBehindTheFirstAsItsSecondElement) {
  ZvStreamingArrayTemplate<ZvPoint> point(nullptr, "P", ZvPoint());
  Parse(point, "1,2,3,,");
  EXPECT_EQ(point.mValue, ZvPoint(1, 3));
  ZvStreamingArrayTemplate<ZvDPoint2d> real(nullptr, "D", ZvDPoint2d());
  Parse(real, "1,2,3");
  EXPECT_EQ(real.mValue.x, 1.0);
  EXPECT_EQ(real.mValue.y, 3.0);
}

TEST(ArrayMember, AColorHasNoPlaceForAFifthField) {
  ZvStreamingArrayTemplate<PxRgba64> color(nullptr, "C", PxRgba64{});
  Parse(color, "1,2,3,4,5");
  EXPECT_EQ(color.mValue, (PxRgba64{1, 2, 3, 4}));
}

TEST(ArrayMember, AFieldMayBeAVariable) {
  class Parser : public ZvParser {
   public:
    Parser() : ZvParser(nullptr) { mVariables.push_back({"left", "7"}); }
  };
  Parser parser;
  ZvStreamingArrayTemplate<ZvPoint> point(nullptr, "P", ZvPoint());
  point.ParseValue(parser, "#left,2");
  EXPECT_EQ(point.mValue, ZvPoint(7, 2));
}

TEST(ArrayMember, ReadsAToken) {
  ZvStreamingArrayTemplate<ZvPoint> point(nullptr, "P", ZvPoint());
  ReadToken(point, "5,6");
  EXPECT_EQ(point.mValue, ZvPoint(5, 6));
}

TEST(ArrayMember, OfAHugeListOfFieldsIsReadInOnePass) {
  ZvStreamingArrayTemplate<ZvPoint> point(nullptr, "P", ZvPoint());
  Parse(point, (std::string(32765, ',') + "5").c_str());
  EXPECT_EQ(point.mValue, ZvPoint(0, 5));
}

TEST(SplitFields, GivesWhatGetFieldGives) {
  ZvParser parser(nullptr);
  for (const std::string& text :
       {std::string(""), std::string("a"), std::string("a,,b,"), std::string(",,,"),
        "x" + std::string(65536, ',') + "y,z", std::string(40000, ',')}) {
    const ZvString list(text.c_str());
    std::vector<ZvString> fields;
    parser.SplitFields(fields, list);
    const int16_t count = parser.CountFields(list);
    ASSERT_EQ(fields.size(), static_cast<std::size_t>(std::max<int16_t>(count, 0)));
    for (std::size_t i = 0; i < fields.size(); ++i) {
      ZvString field;
      parser.GetField(field, list, static_cast<int16_t>(i));
      ASSERT_EQ(fields[i], field) << text.substr(0, 10) << i;
    }
  }
}

TEST(ColorMember, IsWrittenAsFractions) {
  ZvStreamingRgba64 color(nullptr, "Color", PxRgba64{});
  color.mValue = PxRgba64{65535, 0, 13107, 65535};  // 13107 is a fifth
  EXPECT_THAT(
      Written(color),
      ElementsAre("open ( Color", "Float 1 element", "separator", "Float 0 element", "separator",
                  "Float 0.200000003 element", "separator", "Float 1 element", "close )"));
  color.mValue = color.mDefault;
  EXPECT_THAT(Written(color), IsEmpty());
}

TEST(ColorMember, ParsesFractions) {
  ZvStreamingRgba64 color(nullptr, "Color", PxRgba64{});
  Parse(color, "1,0,0.2,.5");
  EXPECT_EQ(color.mValue, (PxRgba64{65535, 0, 13107, 32768}));  // 65535 * 0.5 + 0.5
}

TEST(ColorMember, ParsesBackEveryChannelThatItWrites) {
  ZvStreamingRgba64 color(nullptr, "Color", PxRgba64{});
  ZvParser parser(nullptr);
  for (uint32_t channel = 0; channel <= 65535; ++channel) {
    char text[64];
    std::snprintf(text, sizeof(text), "%.9g",
                  static_cast<double>(static_cast<float>(channel) * (1.0f / 65535.0f)));
    color.ParseValue(parser, text);
    ASSERT_EQ(color.mValue.red, channel);
  }
}

// REQUIRED: the two ways in differ.
TEST(ColorMember, ReadsWords) {
  ZvStreamingRgba64 color(nullptr, "Color", PxRgba64{});
  ReadToken(color, "1,0,13107,65535");
  EXPECT_EQ(color.mValue, (PxRgba64{1, 0, 13107, 65535}));
}

}  // namespace
