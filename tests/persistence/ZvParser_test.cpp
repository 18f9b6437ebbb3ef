#include "persistence/ZvParser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <string>

#include "foundation/FourCharCode.h"
#include "persistence/ByteStream.h"
#include "persistence/ZvClassRegistry.h"
#include "persistence/ZvStreamable.h"
#include "support/ReportRecorder.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

ZvString Text(std::string_view characters) {
  return ZvString(characters.data(), static_cast<uint32_t>(characters.size()));
}

// The state that the operations of a parser have but don't show.
class OpenParser : public ZvParser {
 public:
  OpenParser() : ZvParser(nullptr) {}
  void AddVariable(const char* key, const char* value) { mVariables.push_back({key, value}); }
  void SetMarker(char marker) { mVariableMarker = marker; }
  char Marker() const { return mVariableMarker; }
  std::size_t OpenBrackets() const { return mOpenBrackets.size(); }
  const OpenBracket& Bracket(std::size_t index) const { return mOpenBrackets[index]; }
};

// --- Values to bytes -------------------------------------------------------------------------

TEST(ParserWrite, ANumberGoesOutMostSignificantByteFirst) {
  ByteStream stream;
  stream.WriteSInt32(0x01020304, nullptr, true);
  EXPECT_EQ(stream.Hex(), "01 02 03 04");
}

TEST(ParserWrite, AFloatGoesOutLeastSignificantByteFirst) {
  ByteStream stream;
  stream.WriteFloat(1.0f, nullptr, true);
  EXPECT_EQ(stream.Hex(), "00 00 80 3F");
}

TEST(ParserWrite, ADoubleGoesOutLeastSignificantByteFirst) {
  ByteStream stream;
  stream.WriteDouble(1.0, nullptr, true);
  EXPECT_EQ(stream.Hex(), "00 00 00 00 00 00 F0 3F");
}

TEST(ParserWrite, EveryScalarTakesItsOwnWidthAndNothingElse) {
  ByteStream stream;
  stream.WriteBool(true, "Name", true);
  stream.WriteBool(false, "Name", false);
  stream.WriteSInt8(-2, "Name", true);
  stream.WriteUInt8(0xFD, "Name", false);
  stream.WriteSInt16(-3, "Name", true);
  stream.WriteUInt16(0x1234, "Name", false);
  stream.WriteSInt32(-4, "Name", true);
  stream.WriteUInt32(0xA1B2C3D4, "Name", false);
  stream.WriteFourCC(FourCC("ObLi"), "Name", true);
  EXPECT_EQ(stream.Hex(), "01 00 FE FD FF FD 12 34 FF FF FF FC A1 B2 C3 D4 4F 62 4C 69");
}

TEST(ParserWrite, EveryScalarCostsOneRawWrite) {
  ByteStream stream;
  stream.WriteBool(true, nullptr, true);
  stream.WriteSInt16(1, nullptr, true);
  stream.WriteUInt32(1, nullptr, true);
  stream.WriteDouble(1.0, nullptr, true);
  EXPECT_EQ(stream.Writes(), 4);
}

TEST(ParserWrite, InALittleEndianStreamIntegersTurnAroundAndFloatsDoNot) {
  ByteStream stream;
  stream.SetStreamLittleEndian(true);
  stream.WriteSInt16(0x0102, nullptr, true);
  stream.WriteUInt16(0x0304, nullptr, true);
  stream.WriteSInt32(0x01020304, nullptr, true);
  stream.WriteUInt32(0x05060708, nullptr, true);
  stream.WriteFourCC(FourCC("abcd"), nullptr, true);
  stream.WriteFloat(1.0f, nullptr, true);
  stream.WriteDouble(1.0, nullptr, true);
  EXPECT_EQ(stream.Hex(),
            "02 01 04 03 04 03 02 01 08 07 06 05 64 63 62 61 "
            "00 00 80 3F 00 00 00 00 00 00 F0 3F");
}

TEST(ParserWrite, TheByteOrderCanBeSetBack) {
  ByteStream stream;
  stream.SetStreamLittleEndian(true);
  stream.SetStreamLittleEndian(false);
  stream.WriteUInt16(0x0102, nullptr, true);
  EXPECT_EQ(stream.Hex(), "01 02");
}

TEST(ParserWrite, AStringIsItsLengthAndItsCharacters) {
  ByteStream stream;
  stream.WriteString(Text("abc"), "Name", true);
  stream.WriteString(Text(""), "Name", true);
  EXPECT_EQ(stream.Hex(), "00 03 61 62 63 00 00");
}

TEST(ParserWrite, TheLengthOfAStringFollowsTheByteOrder) {
  ByteStream stream;
  stream.SetStreamLittleEndian(true);
  stream.WriteString(Text("abc"), nullptr, true);
  EXPECT_EQ(stream.Hex(), "03 00 61 62 63");
}

TEST(ParserWrite, AStringOf65536CharactersHasLengthZeroAndNoCharacters) {
  ByteStream stream;
  stream.WriteString(Text(std::string(65536, 'x')), nullptr, true);
  EXPECT_EQ(stream.Hex(), "00 00");
}

TEST(ParserWrite, AStringOf70000CharactersIsCutModulo65536) {
  ByteStream stream;
  stream.WriteString(Text(std::string(70000, 'x')), nullptr, true);
  ASSERT_EQ(stream.Bytes().size(), 2u + 4464u);  // 70000 - 65536
  EXPECT_EQ(ToHex(stream.Bytes().data(), 3), "11 70 78");
}

TEST(ParserWrite, BytesPassUnchangedInOneRawWrite) {
  ByteStream stream;
  stream.SetStreamLittleEndian(true);
  const uint8_t bytes[] = {1, 2, 3, 4, 5};
  stream.WriteBytes(bytes, 5, true);
  EXPECT_EQ(stream.Hex(), "01 02 03 04 05");
  EXPECT_EQ(stream.Writes(), 1);
}

TEST(ParserWrite, LayoutLeavesNoTrace) {
  ByteStream stream;
  stream.WriteLineBreak();
  stream.WriteSoftBreak();
  stream.Indent(1);
  stream.Indent(-1);
  EXPECT_EQ(stream.Hex(), "");
}

TEST(ParserWrite, BracketsAndSeparatorsAreOneByteEachAndNamesAreDropped) {
  ByteStream stream;
  stream.WriteOpen("Points", '{');
  stream.WriteSeparator();
  stream.WriteClose('}');
  EXPECT_EQ(stream.Hex(), "7B 2C 7D");
}

// --- Bytes to values -------------------------------------------------------------------------

TEST(ParserRead, EveryScalarReadsWhatItsWriteProduced) {
  ByteStream stream(
      "01 00 FE FD FF FD 12 34 FF FF FF FC A1 B2 C3 D4 4F 62 4C 69 00 00 80 3F "
      "00 00 00 00 00 00 F0 BF");
  EXPECT_TRUE(stream.ReadBool());
  EXPECT_FALSE(stream.ReadBool());
  EXPECT_EQ(stream.ReadSInt8(), -2);
  EXPECT_EQ(stream.ReadUInt8(), 0xFD);
  EXPECT_EQ(stream.ReadSInt16(), -3);
  EXPECT_EQ(stream.ReadUInt16(), 0x1234);
  EXPECT_EQ(stream.ReadSInt32(), -4);
  EXPECT_EQ(stream.ReadUInt32(), 0xA1B2C3D4);
  uint32_t code = 0;
  stream.ReadFourCC(&code);
  EXPECT_EQ(code, FourCC("ObLi"));
  EXPECT_EQ(stream.ReadFloat(), 1.0f);
  EXPECT_EQ(stream.ReadDouble(), -1.0);
  EXPECT_TRUE(stream.AtEnd());
}

TEST(ParserRead, InALittleEndianStreamIntegersTurnAroundAndFloatsDoNot) {
  ByteStream stream("02 01 04 03 02 01 64 63 62 61 00 00 80 3F");
  stream.SetStreamLittleEndian(true);
  EXPECT_EQ(stream.ReadUInt16(), 0x0102);
  EXPECT_EQ(stream.ReadSInt32(), 0x01020304);
  uint32_t code = 0;
  stream.ReadFourCC(&code);
  EXPECT_EQ(code, FourCC("abcd"));
  EXPECT_EQ(stream.ReadFloat(), 1.0f);
}

TEST(ParserRead, AnyByteButZeroIsTrue) {
  for (int value = 0; value < 256; ++value) {
    ByteStream stream(std::vector<uint8_t>{static_cast<uint8_t>(value)});
    EXPECT_EQ(stream.ReadBool(), value != 0) << value;
  }
}

TEST(ParserRead, EveryScalarCostsOneRawRead) {
  ByteStream stream("00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
  stream.ReadBool();
  stream.ReadUInt16();
  stream.ReadSInt32();
  stream.ReadDouble();
  EXPECT_EQ(stream.Reads(), 4);
}

TEST(ParserRead, AStringTakesExactlyTheBytesOfItsLength) {
  ByteStream stream("00 03 61 62 63 64");
  ZvString text;
  stream.ReadString(text);
  EXPECT_EQ(text, "abc");
  EXPECT_EQ(stream.Tell(), 5u);
}

TEST(ParserRead, AStringOfLengthZeroIsEmptyAndReplacesWhatWasThere) {
  ByteStream stream("00 00");
  ZvString text("before");
  stream.ReadString(text);
  EXPECT_EQ(text.length(), 0u);
}

TEST(ParserRead, LongStringsComeBackWhole) {
  for (const std::size_t length : {1u, 253u, 254u, 255u, 256u, 40000u, 65535u}) {
    ByteStream stream;
    const std::string written(length, 'q');
    stream.WriteString(Text(written), nullptr, true);
    stream.Rewind();
    ZvString text;
    stream.ReadString(text);
    EXPECT_EQ(text.view(), written) << length;
    EXPECT_TRUE(stream.AtEnd()) << length;
  }
}

TEST(ParserRead, AStringEndsAtItsFirstZeroByteAndStillTakesItsWholeLength) {
  ByteStream stream("00 04 61 62 00 63 07");
  ZvString text;
  stream.ReadString(text);
  EXPECT_EQ(text.view(), "ab");
  EXPECT_EQ(stream.ReadUInt8(), 7);
}

TEST(ParserRead, WhatACutStreamDoesNotDeliverIsZero) {
  ByteStream stream("01 02");
  EXPECT_EQ(stream.ReadUInt32(), 0x01020000u);
  EXPECT_EQ(stream.ReadSInt16(), 0);
  EXPECT_FALSE(stream.ReadBool());
  EXPECT_EQ(stream.ReadFloat(), 0.0f);
  EXPECT_EQ(stream.ReadDouble(), 0.0);
  uint32_t code = 5;
  stream.ReadFourCC(&code);
  EXPECT_EQ(code, 0u);
  ZvString text("before");
  stream.ReadString(text);
  EXPECT_EQ(text.length(), 0u);
}

TEST(ParserRead, ACutStringHasTheCharactersThatCame) {
  for (const char* length : {"00 05", "FF FF"}) {
    ByteStream stream(std::string(length) + " 61 62");
    ZvString text;
    stream.ReadString(text);
    EXPECT_EQ(text.view(), "ab") << length;
  }
}

TEST(ParserRead, BytesPassUnchangedInOneRawRead) {
  ByteStream stream("01 02 03 04 05");
  uint8_t bytes[4] = {};
  stream.ReadBytes(bytes, 4);
  EXPECT_EQ(ToHex(bytes, 4), "01 02 03 04");
  EXPECT_EQ(stream.Reads(), 1);
}

TEST(ParserRead, AFieldIsOneStringAndTheNameIsLeftAlone) {
  ByteStream stream("00 03 61 62 63");
  ZvString value;
  ZvString name("before");
  EXPECT_EQ(stream.ReadField(value, name), '\0');
  EXPECT_EQ(value, "abc");
  EXPECT_EQ(name, "before");
}

TEST(ParserRead, AFieldThatEndsInABlockMarkSaysSoAndKeepsTheMark) {
  ByteStream stream("00 02 61 7B");
  ZvString value;
  ZvString name;
  EXPECT_EQ(stream.ReadField(value, name), '{');
  EXPECT_EQ(value, "a{");
}

TEST(ParserRead, AnEmptyFieldIsNoBlock) {
  ByteStream stream("00 00 00 02 7B 61");
  ZvString value;
  ZvString name;
  EXPECT_EQ(stream.ReadField(value, name), '\0');
  EXPECT_EQ(stream.ReadField(value, name), '\0');  // The mark is first, not last.
}

TEST(ParserWithoutStream, ReadsZerosAndDropsWhatItWrites) {
  ZvParser parser(nullptr);
  EXPECT_EQ(parser.ReadUInt32(), 0u);
  ZvString text("before");
  parser.ReadString(text);
  EXPECT_EQ(text.length(), 0u);
  EXPECT_EQ(parser.ReadObject(), nullptr);
  EXPECT_TRUE(parser.ReadClose());
  parser.WriteUInt32(1, nullptr, true);
  parser.WriteString(Text("abc"), nullptr, true);
}

// --- Text to values --------------------------------------------------------------------------

bool ParsedBool(std::string_view text) {
  ZvParser parser(nullptr);
  bool value = false;
  parser.ParseBool(&value, Text(text));
  return value;
}

TEST(ParseBool, OnlySixFirstCharactersAreFalse) {
  for (int c = 1; c < 256; ++c) {
    const std::string text = {static_cast<char>(c), '1'};
    const bool isFalse = c == 'N' || c == 'n' || c == '0' || c == 'F' || c == 'f';
    EXPECT_EQ(ParsedBool(text), !isFalse) << c;
  }
}

TEST(ParseBool, TheEmptyTextIsTrue) {
  EXPECT_TRUE(ParsedBool(""));
}

int8_t ParsedSInt8(std::string_view text) {
  ZvParser parser(nullptr);
  int8_t value = 99;
  parser.ParseSInt8(&value, Text(text));
  return value;
}

uint8_t ParsedUInt8(std::string_view text) {
  ZvParser parser(nullptr);
  uint8_t value = 99;
  parser.ParseUInt8(&value, Text(text));
  return value;
}

TEST(ParseByte, ALetterInFrontGivesItsCode) {
  EXPECT_EQ(ParsedSInt8("A12"), 65);
  EXPECT_EQ(ParsedUInt8("z"), 122);
}

TEST(ParseByte, ANumberIsCutTo8Bits) {
  EXPECT_EQ(ParsedSInt8("200"), -56);
  EXPECT_EQ(ParsedSInt8("-3"), -3);
  EXPECT_EQ(ParsedUInt8("-3"), 253);
  EXPECT_EQ(ParsedUInt8("259"), 3);
  EXPECT_EQ(ParsedUInt8("0x1FF"), 255);
  EXPECT_EQ(ParsedSInt8(""), 0);
}

int32_t ParsedSInt32(std::string_view text) {
  ZvParser parser(nullptr);
  int32_t value = 99;
  parser.ParseSInt32(&value, Text(text));
  return value;
}

uint32_t ParsedUInt32(std::string_view text) {
  ZvParser parser(nullptr);
  uint32_t value = 99;
  parser.ParseUInt32(&value, Text(text));
  return value;
}

TEST(ParseInteger, AMinusAnywhereMakesItNegative) {
  EXPECT_EQ(ParsedSInt32("12-3"), -123);
  EXPECT_EQ(ParsedSInt32("-7"), -7);
  EXPECT_EQ(ParsedSInt32("7-"), -7);
  EXPECT_EQ(ParsedSInt32("--7"), -7);
}

TEST(ParseInteger, OnlyALowerCaseXMarksHexadecimal) {
  EXPECT_EQ(ParsedSInt32("0X10"), 10);
  EXPECT_EQ(ParsedSInt32("0x10"), 16);
  EXPECT_EQ(ParsedUInt32("0xDeadBeef"), 0xDEADBEEFu);
  EXPECT_EQ(ParsedSInt32("0x"), 0);
  EXPECT_EQ(ParsedSInt32(" 0x10"), 10);  // The mark must stand in front; the zero joins the digits.
}

TEST(ParseInteger, InHexadecimalOtherCharactersAreSkippedAndThereIsNoSign) {
  EXPECT_EQ(ParsedSInt32("0x1-0g"), 16);
  EXPECT_EQ(ParsedSInt32("0x-1"), 1);
}

TEST(ParseInteger, InDecimalOtherCharactersAreSkipped) {
  EXPECT_EQ(ParsedSInt32("a1b2.c3"), 123);
  EXPECT_EQ(ParsedSInt32("nothing"), 0);
  EXPECT_EQ(ParsedSInt32(""), 0);
}

TEST(ParseInteger, TheUnsignedFormsIgnoreASign) {
  EXPECT_EQ(ParsedUInt32("-12"), 12u);
}

TEST(ParseInteger, OverflowWrapsIn32Bits) {
  EXPECT_EQ(ParsedUInt32("4294967297"), 1u);            // 2^32 + 1
  EXPECT_EQ(ParsedSInt32("4294967295"), -1);            // 2^32 - 1
  EXPECT_EQ(ParsedSInt32("-2147483648"), INT32_MIN);    // -2^31
  EXPECT_EQ(ParsedUInt32("0x123456789"), 0x23456789u);  // The ninth digit pushes the first out.
}

TEST(ParseInteger, The16BitFormsCut) {
  ZvParser parser(nullptr);
  int16_t s = 0;
  uint16_t u = 0;
  parser.ParseSInt16(&s, Text("65535"));
  EXPECT_EQ(s, -1);
  parser.ParseSInt16(&s, Text("-5"));
  EXPECT_EQ(s, -5);
  parser.ParseUInt16(&u, Text("65537"));
  EXPECT_EQ(u, 1);
  parser.ParseUInt16(&u, Text("-5"));
  EXPECT_EQ(u, 5);
  parser.ParseUInt16(&u, Text("0x1ABCD"));
  EXPECT_EQ(u, 0xABCD);
}

double ParsedDouble(std::string_view text) {
  ZvParser parser(nullptr);
  double value = 99;
  parser.ParseDouble(&value, Text(text));
  return value;
}

TEST(ParseDouble, ReadsPointSignAndExponent) {
  EXPECT_DOUBLE_EQ(ParsedDouble("1.5e-1"), 0.15);
  EXPECT_EQ(ParsedDouble("-.5"), -0.5);
  EXPECT_EQ(ParsedDouble("+2"), 2.0);
  EXPECT_EQ(ParsedDouble("1e3"), 1000.0);
  EXPECT_EQ(ParsedDouble("2E2"), 200.0);
  EXPECT_EQ(ParsedDouble("12"), 12.0);
  EXPECT_EQ(ParsedDouble(""), 0.0);
}

TEST(ParseDouble, AMinusCountsWhereverItStandsInItsHalf) {
  EXPECT_EQ(ParsedDouble("5-"), -5.0);
  EXPECT_EQ(ParsedDouble("5e2-"), 5.0 * std::pow(10.0, -2));
  EXPECT_EQ(ParsedDouble("-5e2"), -500.0);
}

TEST(ParseDouble, OtherCharactersAreSkipped) {
  EXPECT_EQ(ParsedDouble(" 1x2,5 "), 125.0);
}

TEST(ParseDouble, ASecondPointStartsTheFractionAnew) {
  // 1, then .2 = 0.2, and behind the second point the 3 counts as tenths again.
  EXPECT_DOUBLE_EQ(ParsedDouble("1.2.3"), 1.0 + 0.2 + 0.3);
}

TEST(ParseDouble, AHugeExponentEndsInInfinityOrZeroAndNeverOverflows) {
  EXPECT_EQ(ParsedDouble("1e99999999999999999999"), HUGE_VAL);
  EXPECT_EQ(ParsedDouble("1e-99999999999999999999"), 0.0);
}

TEST(ParseFloat, IsTheDoubleNarrowed) {
  ZvParser parser(nullptr);
  float value = 0;
  parser.ParseFloat(&value, Text("0.1"));
  EXPECT_EQ(value, 0.1f);
}

TEST(ParseString, CopiesTheTextUnchanged) {
  ZvParser parser(nullptr);
  ZvString value;
  parser.ParseString(&value, Text(" 'a' #b, "));
  EXPECT_EQ(value, " 'a' #b, ");
}

uint32_t ParsedFourCC(std::string_view text) {
  ZvParser parser(nullptr);
  uint32_t value = 99;
  parser.ParseFourCC(&value, Text(text));
  return value;
}

TEST(ParseFourCC, TakesTheCharactersBetweenQuotes) {
  EXPECT_EQ(ParsedFourCC("'ab'"), 24930u);  // 'a' is 97, 'b' is 98: 97 * 256 + 98
  EXPECT_EQ(ParsedFourCC("'abcd'"), FourCC("abcd"));
  EXPECT_EQ(ParsedFourCC("'1 ,-'"), FourCC("1 ,-"));
}

TEST(ParseFourCC, SkipsQuotesAndTakesFourCharactersAtMost) {
  EXPECT_EQ(ParsedFourCC("'a'b'cdef"), FourCC("abcd"));
  EXPECT_EQ(ParsedFourCC("'abcdef'"), FourCC("abcd"));
}

TEST(ParseFourCC, TwoQuotesAreZeroAndOneIsItself) {
  EXPECT_EQ(ParsedFourCC("''"), 0u);
  EXPECT_EQ(ParsedFourCC("''abcd"), 0u);
  EXPECT_EQ(ParsedFourCC("'"), 39u);
}

TEST(ParseFourCC, ALetterInFrontTakesUpToFourCharactersOfAnyKind) {
  EXPECT_EQ(ParsedFourCC("abcdef"), FourCC("abcd"));
  EXPECT_EQ(ParsedFourCC("a'"), 97u * 256 + 39);
}

TEST(ParseFourCC, AnythingElseIsADecimalNumber) {
  EXPECT_EQ(ParsedFourCC("12x3"), 123u);
  EXPECT_EQ(ParsedFourCC("0x10"), 10u);
  EXPECT_EQ(ParsedFourCC("-5"), 5u);
  EXPECT_EQ(ParsedFourCC(""), 0u);
}

TEST(ParseFourCC, CharactersAbove127DontSpillIntoTheOthers) {
  EXPECT_EQ(ParsedFourCC("a\xFF\xFF\xFF"), 0x61FFFFFFu);
}

std::string Field(std::string_view list, int16_t index) {
  ZvParser parser(nullptr);
  ZvString field("before");
  parser.GetField(field, Text(list), index);
  return std::string(field.view());
}

int16_t Fields(std::string_view list) {
  ZvParser parser(nullptr);
  return parser.CountFields(Text(list));
}

TEST(ParserFields, AreWhatStandsBetweenCommas) {
  EXPECT_EQ(Field("1,2,,4", 0), "1");
  EXPECT_EQ(Field("1,2,,4", 1), "2");
  EXPECT_EQ(Field("1,2,,4", 2), "");
  EXPECT_EQ(Field("1,2,,4", 3), "4");
  EXPECT_EQ(Field("1,2,,4", 4), "");
  EXPECT_EQ(Field("1,2,,4", -1), "");
  EXPECT_EQ(Field(" a b ", 0), " a b ");
}

TEST(ParserFields, AreCountedByTheirCommas) {
  EXPECT_EQ(Fields("1,2,,4"), 4);
  EXPECT_EQ(Fields(""), 0);
  EXPECT_EQ(Fields("x"), 1);
  EXPECT_EQ(Fields(","), 2);
}

TEST(ParserFields, AreCountedIn16Bits) {
  EXPECT_EQ(Fields(std::string(32767, ',')), -32768);
  EXPECT_EQ(Fields(std::string(65535, ',')), 0);
  EXPECT_EQ(Field("a" + std::string(65536, ',') + "b", 0), "ab");
  EXPECT_EQ(Field(std::string(32768, ',') + "c", -32768), "c");
}

TEST(ParserVariables, AKeyIsReplacedByItsValueWithAndWithoutTheMarker) {
  OpenParser parser;
  parser.AddVariable("red", "1,0,0");
  parser.AddVariable("red", "second");
  ZvString marked("#red");
  EXPECT_TRUE(parser.ResolveVariable(marked));
  EXPECT_EQ(marked, "1,0,0");
  ZvString bare("red");
  EXPECT_TRUE(parser.ResolveVariable(bare));
  EXPECT_EQ(bare, "1,0,0");
}

TEST(ParserVariables, AnUnknownTextStaysAsItIsWithItsMarker) {
  OpenParser parser;
  parser.AddVariable("red", "1,0,0");
  for (const char* text : {"#re", "#redd", "##red", "#", ""}) {
    ZvString unknown(text);
    EXPECT_FALSE(parser.ResolveVariable(unknown)) << text;
    EXPECT_EQ(unknown, text);
  }
}

TEST(ParserVariables, AndTheMarkerAreAllThatACopyOfTheStateTakes) {
  OpenParser from;
  from.AddVariable("red", "1,0,0");
  from.SetMarker('$');
  from.SetStreamLittleEndian(true);
  from.PushOpen('{');
  OpenParser to;
  to.CopyStateFrom(from);
  EXPECT_EQ(to.Marker(), '$');
  EXPECT_EQ(to.OpenBrackets(), 0u);
  ZvString text("$red");
  EXPECT_TRUE(to.ResolveVariable(text));
  ByteStream stream;
  to.SetStream(&stream);
  to.WriteUInt16(0x0102, nullptr, true);
  EXPECT_EQ(stream.Hex(), "01 02");
}

// --- Brackets --------------------------------------------------------------------------------

TEST(ParserBrackets, EachHasItsClosingOne) {
  EXPECT_EQ(ZvParser::ClosingBracket('('), ')');
  EXPECT_EQ(ZvParser::ClosingBracket('['), ']');
  EXPECT_EQ(ZvParser::ClosingBracket('{'), '}');
  EXPECT_EQ(ZvParser::ClosingBracket('<'), '<');
  EXPECT_EQ(ZvParser::ClosingBracket(' '), ' ');
}

TEST(ParserBrackets, ReadOpenRemembersTheByteAndTheDepth) {
  ByteStream stream("7B 28");
  OpenParser parser;
  parser.SetStream(&stream);
  parser.ReadOpen();
  parser.ReadOpen();
  parser.PushOpen('[');
  ASSERT_EQ(parser.OpenBrackets(), 3u);
  EXPECT_EQ(parser.Bracket(0).mBracket, '{');
  EXPECT_EQ(parser.Bracket(0).mDepth, 0);
  EXPECT_FALSE(parser.Bracket(0).mFlag);
  EXPECT_EQ(parser.Bracket(1).mBracket, '(');
  EXPECT_EQ(parser.Bracket(1).mDepth, 1);
  EXPECT_EQ(parser.Bracket(2).mBracket, '[');
  EXPECT_EQ(parser.Bracket(2).mDepth, 2);
  EXPECT_EQ(stream.Tell(), 2u);
}

TEST(ParserBrackets, CloseTakesTheMatchingByteAndTheBracketGoes) {
  ByteStream stream("7D 00");
  OpenParser parser;
  parser.SetStream(&stream);
  parser.PushOpen('{');
  EXPECT_TRUE(parser.ReadClose());
  EXPECT_EQ(parser.OpenBrackets(), 0u);
  EXPECT_EQ(stream.Tell(), 1u);
}

TEST(ParserBrackets, CloseConsumesAByteInEveryCase) {
  ByteStream stream("61 29 7D 00");
  OpenParser parser;
  parser.SetStream(&stream);
  parser.PushOpen('{');
  EXPECT_FALSE(parser.ReadClose());
  EXPECT_FALSE(parser.ReadClose());
  EXPECT_EQ(parser.OpenBrackets(), 1u);
  EXPECT_EQ(stream.Tell(), 2u);
}

TEST(ParserBrackets, PushedThroughTheStreamCloseLikeReadOnes) {
  ByteStream stream("61 5D");
  stream.PushOpen('[');
  EXPECT_FALSE(stream.ReadClose());
  EXPECT_TRUE(stream.ReadClose());
}

TEST(ParserBrackets, WithNothingOpenCloseConsumesOneByteAndIsTrue) {
  ByteStream stream("61 62");
  EXPECT_TRUE(stream.ReadClose());
  EXPECT_EQ(stream.Tell(), 1u);
}

TEST(ParserBrackets, AtTheEndOfTheInputCloseReadsNothingAndIsTrue) {
  ByteStream stream;
  OpenParser parser;
  parser.SetStream(&stream);
  parser.PushOpen('{');
  parser.PushOpen('(');
  EXPECT_TRUE(parser.ReadClose());
  EXPECT_EQ(parser.OpenBrackets(), 1u);
  EXPECT_TRUE(parser.ReadClose());
  EXPECT_TRUE(parser.ReadClose());
  EXPECT_EQ(parser.OpenBrackets(), 0u);
  EXPECT_EQ(stream.Reads(), 0);
}

// --- Objects ---------------------------------------------------------------------------------

// One 16-bit number.
class Number : public ZvStreamable {
 public:
  static constexpr char kClassName[] = "Test.Number";
  void ClassName(ZvString& outName) const override { outName = kClassName; }
  void WriteTo(ZvStream& stream) override { stream.WriteSInt16(mValue, nullptr, true); }
  void ReadFrom(ZvStream& stream) override { mValue = stream.ReadSInt16(); }
  int16_t mValue = 0;
};

// An object inside an object inside an object.
class Nest : public ZvStreamable {
 public:
  static constexpr char kClassName[] = "Test.Nest";
  void ReadFrom(ZvStream& stream) override { mInner.TakeOver(stream.ReadObject()); }
  ZvSmartPtr<ZvStreamable> mInner;
};

class ParserObjects : public testing::Test {
 protected:
  ParserObjects() {
    AppendClass(Number::kClassName, []() -> ZvStreamable* { return new Number; });
    AppendClass(Nest::kClassName, []() -> ZvStreamable* { return new Nest; });
  }
  ~ParserObjects() override { GetClassRegistry().resize(mClasses); }

  const std::size_t mClasses = GetClassRegistry().size();
  vm::ReportRecorder mReports;
};

TEST_F(ParserObjects, AreTheirClassNameAndTheirOwnBytes) {
  ByteStream stream;
  Number number;
  number.mValue = 0x0102;
  stream.WriteObject(&number);
  EXPECT_EQ(stream.Hex(), "00 0B 54 65 73 74 2E 4E 75 6D 62 65 72 01 02");
}

TEST_F(ParserObjects, ComeBackByTheirNameWithOneReferenceForTheCaller) {
  ByteStream stream("00 0B 54 65 73 74 2E 4E 75 6D 62 65 72 01 02 77");
  std::unique_ptr<ZvStreamable> object(stream.ReadObject());
  auto* number = dynamic_cast<Number*>(object.get());
  ASSERT_NE(number, nullptr);
  EXPECT_EQ(number->mValue, 0x0102);
  EXPECT_EQ(number->GetRefCount(), 1u);
  EXPECT_EQ(stream.Tell(), 15u);
  EXPECT_THAT(mReports.Lines(), IsEmpty());
}

TEST_F(ParserObjects, AnEmptyNameIsNoObjectAndNoReport) {
  ByteStream stream("00 00 77");
  EXPECT_EQ(stream.ReadObject(), nullptr);
  EXPECT_EQ(stream.Tell(), 2u);
  EXPECT_THAT(mReports.Lines(), IsEmpty());
}

TEST_F(ParserObjects, NullIsWrittenAsAnEmptyName) {
  ByteStream stream;
  stream.WriteObject(nullptr);
  EXPECT_EQ(stream.Hex(), "00 00");
}

TEST_F(ParserObjects, AnUnregisteredNameIsReportedAndGivesNull) {
  ByteStream stream("00 03 4E 6F 70 01 02");
  EXPECT_EQ(stream.ReadObject(), nullptr);
  EXPECT_THAT(mReports.Lines(), ElementsAre("ZvParser(250) : object != NULL"));
  EXPECT_EQ(stream.Tell(), 5u);
}

TEST_F(ParserObjects, AFactoryThatMakesNothingIsReportedAndGivesNull) {
  AppendClass("Nil", []() -> ZvStreamable* { return nullptr; });
  ByteStream stream("00 03 4E 69 6C 01 02");
  EXPECT_EQ(stream.ReadObject(), nullptr);
  EXPECT_THAT(mReports.Lines(), ElementsAre("ZvParser(250) : object != NULL"));
}

int DepthOf(const ZvStreamable* object) {
  int depth = 0;
  while (const auto* nest = dynamic_cast<const Nest*>(object)) {
    ++depth;
    object = nest->mInner.Get();
  }
  return depth;
}

TEST_F(ParserObjects, InsideOneAnotherAreReadDownTo256) {
  ByteStream stream;
  for (int i = 0; i < 256; ++i) {
    stream.WriteString(Nest::kClassName, nullptr, true);
  }
  stream.WriteString("", nullptr, true);
  stream.Rewind();
  const std::unique_ptr<ZvStreamable> object(stream.ReadObject());
  EXPECT_EQ(DepthOf(object.get()), 256);
  EXPECT_THAT(mReports.Lines(), IsEmpty());
  EXPECT_TRUE(stream.AtEnd());
}

TEST_F(ParserObjects, DeeperThan256AreNullWithOneReport) {
  ByteStream stream;
  for (int i = 0; i < 100000; ++i) {
    stream.WriteString(Nest::kClassName, nullptr, true);
  }
  stream.Rewind();
  const std::unique_ptr<ZvStreamable> object(stream.ReadObject());
  EXPECT_EQ(DepthOf(object.get()), 256);
  EXPECT_THAT(mReports.Lines(), ElementsAre("ZvParser(250) : object != NULL"));
}

TEST_F(ParserObjects, TheDepthIsThatOfTheNestingAndNotOfTheNumberRead) {
  ByteStream stream;
  Number number;
  for (int i = 0; i < 1000; ++i) {
    stream.WriteObject(&number);
  }
  stream.Rewind();
  for (int i = 0; i < 1000; ++i) {
    const std::unique_ptr<ZvStreamable> object(stream.ReadObject());
    ASSERT_NE(object, nullptr) << i;
  }
}

}  // namespace
