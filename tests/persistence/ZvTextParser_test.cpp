#include "persistence/ZvTextParser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <memory>
#include <random>
#include <string>

#include "foundation/FourCharCode.h"
#include "persistence/ByteStream.h"
#include "persistence/members/ZvMemberTemplates.h"
#include "persistence/members/ZvSleekStreaming.h"
#include "persistence/ZvClassRegistry.h"
#include "persistence/ZvGeometryStreaming.h"
#include "persistence/ZvMemoryStream.h"
#include "support/ReportRecorder.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// A stream of text.
class TextStream : public ByteStream {
 public:
  explicit TextStream(std::string_view text = {})
      : ByteStream(std::vector<uint8_t>(text.begin(), text.end())) {
    UseTextParser(*this);
  }
  std::string Text() const { return {Bytes().begin(), Bytes().end()}; }
};

enum class Mood : int8_t { kCalm = 10, kWild = -7 };

struct Stop {
  static constexpr char kName[] = "Stop";
  void WriteTo(ZvStream& stream) const {
    stream.WriteOpen(nullptr, '{');
    ZvStreamingArrayTemplate<ZvDPoint2d> anchor(nullptr, "Anchor", mAnchor, kInvalidDPoint2d);
    anchor.WriteValue(stream);
    stream.WriteLineBreak();
    stream.WriteClose('}');
  }
  void ReadFrom(ZvStream& stream) {
    stream.ReadOpen();
    while (!stream.ReadClose()) {
      ZvString value;
      ZvString name;
      stream.ReadField(value, name);
      if (name == "Anchor") {
        vm::ParseTuple(*stream.GetParser(), mAnchor, value);
      }
    }
  }
  ZvDPoint2d mAnchor = kInvalidDPoint2d;
};

// Every kind of member there is.
class Doll : public ZvSleekStreaming {
 public:
  static constexpr char kClassName[] = "Test.Doll";
  void ClassName(ZvString& outName) const override { outName = kClassName; }

  ZvMemberTemplate<bool> mFlag{this, "Flag", false};
  ZvMemberTemplate<float> mNumber{this, "Number", 1.0f};
  ZvMemberTemplate<double> mReal{this, "Real", 0.0};
  ZvMemberTemplate<ZvString> mName{this, "Name", ""};
  ZvMemberTemplate<int32_t> mSigned{this, "Signed", -1};
  ZvMemberTemplate<uint32_t> mUnsigned{this, "Unsigned", 0u};
  ZvStreamingID mID{this, "ID", kInvalidID};
  ZvStreamingEnumTemplate<Mood> mMood{this, "Mood", Mood::kCalm};
  ZvStreamingArrayTemplate<ZvPoint> mPoint{this, "Point", ZvPoint()};
  ZvStreamingArrayTemplate<ZvRect> mRect{this, "Rect", ZvRect()};
  ZvStreamingArrayTemplate<ZvDPoint2d> mPlace{this, "Place", ZvDPoint2d()};
  ZvStreamingArrayTemplate<PxRgba64> mWords{this, "Words", PxRgba64{}};
  ZvStreamingRgba64 mColor{this, "Color", PxRgba64{}};
  ZvStreamingObjectList<std::vector<ZvSmartPtr<Doll>>, Doll> mDolls{this, "Dolls"};
  ZvStreamingSmartPtr<Doll> mTwin{this, "Twin"};
  ZvStreamingStructList<std::vector<Stop>, Stop> mStops{this, "Stops"};
  ZvStreamingStructList<std::vector<ZvDPoint2d>, ZvDPoint2d> mPoints{this, "Points"};
  ZvStreamingFieldList<std::vector<int32_t>, int32_t> mNumbers{this, "Numbers"};
};

// Three members, so it stands on one line.
class Pin : public ZvSleekStreaming {
 public:
  static constexpr char kClassName[] = "Test.Pin";
  void ClassName(ZvString& outName) const override { outName = kClassName; }
  ZvStreamingArrayTemplate<PxRgba64> mColor{this, "Color", PxRgba64{}};
  ZvMemberTemplate<float> mPos{this, "Pos", 0.0f};
};

class TextParser : public testing::Test {
 protected:
  TextParser() {
    AppendClass(Doll::kClassName, []() -> ZvStreamable* { return new Doll; });
    AppendClass(Pin::kClassName, []() -> ZvStreamable* { return new Pin; });
    AppendClass("ZvMemoryStream", []() -> ZvStreamable* { return new ZvMemoryStream; });
  }
  ~TextParser() override { GetClassRegistry().resize(mClasses); }
  const std::size_t mClasses = GetClassRegistry().size();
};

template <class T>
std::unique_ptr<T> ReadBack(TextStream& stream) {
  stream.Rewind();
  std::unique_ptr<ZvStreamable> object(stream.ReadObject());
  T* wanted = dynamic_cast<T*>(object.get());
  if (wanted != nullptr) {
    object.release();
  }
  return std::unique_ptr<T>(wanted);
}

TEST_F(TextParser, WritesAOneLinerOnOneLine) {
  Pin pin;
  pin.mPos.mValue = 0.5f;
  pin.mColor.mValue = PxRgba64{1, 2, 3, 4};
  TextStream stream;
  stream.WriteObject(&pin);
  EXPECT_EQ(stream.Text(), "Test.Pin\n{Color=(1, 2, 3, 4) Pos=0.5}\n");
}

TEST_F(TextParser, WritesBlocksOnLinesWithTheirDepth) {
  Doll doll;
  doll.mName.mValue = "a \"b\"\n";
  doll.mPoint.mValue = ZvPoint(12, -3);
  doll.mDolls.mValue.push_back(ZvSmartPtr<Doll>::Adopt(new Doll));
  doll.mPoints.mValue = {{0, 0.5}, {1, 2}};
  TextStream stream;
  stream.WriteObject(&doll);
  EXPECT_EQ(stream.Text(),
            "Test.Doll\n"
            "{\n"
            "  Name=\"a \\\"b\\\"\\n\" Point=(12, -3)\n"
            "  Dolls\n"
            "  {\n"
            "    Test.Doll\n"
            "    {\n"
            "    }\n"
            "  }\n"
            "  Points\n"
            "  {\n"
            "    (0, 0.5), (1, 2)\n"
            "  }\n"
            "}\n");
}

TEST_F(TextParser, EveryKindOfMemberSurvivesAWriteAndARead) {
  Doll doll;
  doll.mFlag.mValue = true;
  doll.mNumber.mValue = 0.1f;
  doll.mReal.mValue = 1.0 / 3.0;
  doll.mName.mValue = ZvString("x=(\"}{\\,\t\0\xFF", 11);
  doll.mSigned.mValue = INT32_MIN;
  doll.mUnsigned.mValue = UINT32_MAX;
  doll.mID.mValue = FourCC("abcd");
  doll.mMood.mValue = Mood::kWild;
  doll.mPoint.mValue = ZvPoint(-1, 2);
  doll.mRect.mValue = ZvRect(1, 2, 3, 4);
  doll.mPlace.mValue = ZvDPoint2d(1e-300, -2.5e17);
  doll.mWords.mValue = PxRgba64{1, 2, 3, 65535};
  doll.mColor.mValue = PxRgba64{0, 1, 40000, 65535};
  doll.mTwin = ZvSmartPtr<Doll>::Adopt(new Doll);
  doll.mTwin->mSigned.mValue = 77;
  for (int i = 0; i < 3; ++i) {
    doll.mDolls.mValue.push_back(ZvSmartPtr<Doll>::Adopt(new Doll));
    doll.mDolls.mValue.back()->mNumber.mValue = static_cast<float>(i) + 0.5f;
  }
  doll.mDolls.mValue[1]->mDolls.mValue.push_back(ZvSmartPtr<Doll>::Adopt(new Doll));
  doll.mStops.mValue = {{ZvDPoint2d(1, 2)}, {}};
  for (int i = 0; i < 9; ++i) {
    doll.mPoints.mValue.emplace_back(i, i * 0.1);
    doll.mNumbers.mValue.push_back(-i);
  }
  TextStream stream;
  stream.WriteObject(&doll);
  const std::unique_ptr<Doll> read = ReadBack<Doll>(stream);
  ASSERT_NE(read, nullptr);
  EXPECT_TRUE(read->mFlag.mValue);
  EXPECT_EQ(read->mNumber.mValue, 0.1f);
  EXPECT_EQ(read->mReal.mValue, 1.0 / 3.0);
  EXPECT_EQ(read->mName.mValue, doll.mName.mValue);
  EXPECT_EQ(read->mSigned.mValue, INT32_MIN);
  EXPECT_EQ(read->mUnsigned.mValue, UINT32_MAX);
  EXPECT_EQ(read->mID.mValue, FourCC("abcd"));
  EXPECT_EQ(read->mMood.mValue, Mood::kWild);
  EXPECT_EQ(read->mPoint.mValue, ZvPoint(-1, 2));
  EXPECT_EQ(read->mRect.mValue, ZvRect(1, 2, 3, 4));
  EXPECT_EQ(read->mPlace.mValue.x, 1e-300);
  EXPECT_EQ(read->mPlace.mValue.y, -2.5e17);
  EXPECT_EQ(read->mWords.mValue, (PxRgba64{1, 2, 3, 65535}));
  EXPECT_EQ(read->mColor.mValue, (PxRgba64{0, 1, 40000, 65535}));
  ASSERT_TRUE(read->mTwin);
  EXPECT_EQ(read->mTwin->mSigned.mValue, 77);
  ASSERT_EQ(read->mDolls.mValue.size(), 3u);
  EXPECT_EQ(read->mDolls.mValue[2]->mNumber.mValue, 2.5f);
  EXPECT_EQ(read->mDolls.mValue[1]->mDolls.mValue.size(), 1u);
  ASSERT_EQ(read->mStops.mValue.size(), 2u);
  EXPECT_EQ(read->mStops.mValue[0].mAnchor, ZvDPoint2d(1, 2));
  EXPECT_EQ(read->mStops.mValue[1].mAnchor, kInvalidDPoint2d);
  ASSERT_EQ(read->mPoints.mValue.size(), 9u);
  EXPECT_EQ(read->mPoints.mValue[7].y, 7 * 0.1);
  EXPECT_THAT(read->mNumbers.mValue, ElementsAre(0, -1, -2, -3, -4, -5, -6, -7, -8));
  EXPECT_TRUE(stream.AtEnd() || stream.ReadClose());
}

TEST_F(TextParser, WhatWasReadWritesTheSameText) {
  Doll doll;
  doll.mReal.mValue = 0.3;
  doll.mName.mValue = "n";
  doll.mDolls.mValue.push_back(ZvSmartPtr<Doll>::Adopt(new Doll));
  doll.mStops.mValue = {{ZvDPoint2d(1, 2)}};
  TextStream first;
  first.WriteObject(&doll);
  const std::unique_ptr<Doll> read = ReadBack<Doll>(first);
  ASSERT_NE(read, nullptr);
  TextStream second;
  second.WriteObject(read.get());
  EXPECT_EQ(second.Text(), first.Text());
}

TEST_F(TextParser, ReadsTextAsPeopleWriteIt) {
  TextStream stream(
      " Test.Doll{ Number = .25   Unknown={ Number=9 { } \"}\" } Name='it' Rect=( 1,2,\n  ,4 ) "
      "Dolls { "
      "Nobody { Number=7 } "
      "Test.Doll { Signed=0x10 } } Flag=yes Trailing=}");
  vm::ReportRecorder reports;
  const std::unique_ptr<Doll> read = ReadBack<Doll>(stream);
  ASSERT_NE(read, nullptr);
  EXPECT_EQ(read->mNumber.mValue, 0.25f);
  EXPECT_EQ(read->mName.mValue, "'it'");
  EXPECT_EQ(read->mRect.mValue, ZvRect(1, 2, 0, 4));
  ASSERT_EQ(read->mDolls.mValue.size(), 1u);
  EXPECT_EQ(read->mDolls.mValue[0]->mSigned.mValue, 16);
  EXPECT_TRUE(read->mFlag.mValue);
  EXPECT_THAT(reports.Lines(), ElementsAre("ZvStreamingObjectList(53) : object != NULL"));
}

TEST_F(TextParser, AFieldHasANameAndAValueAndAWordOnlyAValue) {
  TextStream stream("A=1 B = \"two\" word Block { } \"q n\"=(3, 4) 5");
  ZvString value;
  ZvString name;
  const auto expect = [&](const char* expectedName, const char* expectedValue, char result) {
    EXPECT_EQ(stream.ReadField(value, name), result) << expectedValue;
    EXPECT_EQ(name, expectedName);
    EXPECT_EQ(value, expectedValue);
  };
  expect("A", "1", '\0');
  expect("B", "two", '\0');
  expect("", "word", '\0');
  expect("", "Block", '{');
  expect("q n", "3,4", '\0');  // The block that nobody asked for is skipped.
  expect("", "5", '\0');
  expect("", "", '\0');
}

TEST_F(TextParser, TypedValuesComeBackOneByOne) {
  TextStream stream;
  stream.WriteBool(true, "Bool", true);
  stream.WriteSInt8(-5, "S8", true);
  stream.WriteUInt8(65, "U8", true);
  stream.WriteLineBreak();
  stream.WriteSInt16(-300, nullptr, true);
  stream.WriteUInt16(65535, "U16", true);
  stream.WriteSInt32(-70000, "S32", true);
  stream.WriteUInt32(4000000000u, "U32", true);
  stream.WriteFloat(1.5f, "F", true);
  stream.WriteDouble(-1e100, "D", true);
  stream.WriteString("two words", "S", true);
  stream.WriteString("two words", nullptr, true);
  stream.WriteString("word", nullptr, true);
  stream.WriteFourCC(FourCC("ab d"), "Code", true);
  stream.WriteFourCC(7, "Code", true);
  EXPECT_EQ(
      stream.Text(),
      "Bool=true S8=-5 U8=65\n-300 U16=65535 S32=-70000 U32=4000000000 F=1.5 D=-1e+100 S=\"two "
      "words\" \"two "
      "words\" word Code='ab d' Code=7");
  stream.Rewind();
  EXPECT_TRUE(stream.ReadBool());
  EXPECT_EQ(stream.ReadSInt8(), -5);
  EXPECT_EQ(stream.ReadUInt8(), 65);
  EXPECT_EQ(stream.ReadSInt16(), -300);
  EXPECT_EQ(stream.ReadUInt16(), 65535);
  EXPECT_EQ(stream.ReadSInt32(), -70000);
  EXPECT_EQ(stream.ReadUInt32(), 4000000000u);
  EXPECT_EQ(stream.ReadFloat(), 1.5f);
  EXPECT_EQ(stream.ReadDouble(), -1e100);
  ZvString text;
  stream.ReadString(text);
  EXPECT_EQ(text, "two words");
  stream.ReadString(text);
  EXPECT_EQ(text, "two words");
  stream.ReadString(text);
  EXPECT_EQ(text, "word");
  uint32_t code = 0;
  stream.ReadFourCC(&code);
  EXPECT_EQ(code, FourCC("ab d"));
  stream.ReadFourCC(&code);
  EXPECT_EQ(code, 7u);
  EXPECT_TRUE(stream.AtEnd());
}

TEST_F(TextParser, EveryByteOfATextSurvives) {
  std::string bytes;
  for (int c = 0; c < 256; ++c) {
    bytes += static_cast<char>(c);
  }
  TextStream stream;
  stream.WriteString(ZvString(bytes.data(), 256), "All", true);
  EXPECT_EQ(stream.Text().find('\n'), std::string::npos);
  stream.Rewind();
  ZvString text;
  stream.ReadString(text);
  EXPECT_EQ(text.view(), bytes);
}

TEST_F(TextParser, EveryCodeSurvives) {
  for (const uint32_t code : {0u, 1u, 0x20202020u, 0x27616263u, 0x61622763u, 0x00616263u,
                              0x61626300u, 0xFFFFFFFFu, FourCC("#,=("), FourCC("1234")}) {
    TextStream stream;
    stream.WriteFourCC(code, "C", true);
    stream.Rewind();
    uint32_t read = 99;
    stream.ReadFourCC(&read);
    EXPECT_EQ(read, code) << stream.Text();
  }
}

TEST_F(TextParser, EveryNumberSurvivesExactly) {
  std::mt19937_64 random(20260101);
  TextStream stream;
  std::vector<double> written = {0.0, -0.0, std::numeric_limits<double>::denorm_min(),
                                 std::numeric_limits<double>::max(),
                                 std::numeric_limits<double>::infinity()};
  for (int i = 0; i < 2000; ++i) {
    const uint64_t bits = random();
    double value;
    std::memcpy(&value, &bits, sizeof(value));
    if (!std::isnan(value)) {
      written.push_back(value);
    }
  }
  for (const double value : written) {
    stream.WriteDouble(value, nullptr, true);
    stream.WriteFloat(static_cast<float>(std::remainder(value, 1e30)), nullptr, true);
  }
  stream.Rewind();
  for (const double value : written) {
    const double read = stream.ReadDouble();
    EXPECT_EQ(std::memcmp(&read, &value, sizeof(value)), 0) << value;
    const float narrow = static_cast<float>(std::remainder(value, 1e30));
    const float readNarrow = stream.ReadFloat();
    EXPECT_TRUE(std::memcmp(&readNarrow, &narrow, sizeof(narrow)) == 0 || std::isnan(narrow))
        << narrow;
  }
}

TEST_F(TextParser, GeometrySurvives) {
  TextStream stream;
  ZvSimpleTransform transform;
  transform.mPosition = ZvPoint(3, -4);
  transform.mScale = ZvFloatPoint(0.5f, 0.1f);
  transform.mExtra2 = 9.0f;
  WriteTo(transform, stream);
  EXPECT_EQ(stream.Text(), "(3, -4) (0.5, 0.1) 0 9");
  stream.Rewind();
  ZvSimpleTransform read;
  ReadFrom(read, stream);
  EXPECT_EQ(read, transform);
}

TEST_F(TextParser, BytesAreHexadecimalDigits) {
  TextStream stream;
  const uint8_t bytes[] = {0x00, 0x7F, 0xA0, 0xFF};
  stream.WriteBytes(bytes, 4, true);
  EXPECT_EQ(stream.Text(), "<007FA0FF>");
  stream.Rewind();
  uint8_t read[3] = {};
  stream.ReadBytes(read, 3);
  EXPECT_EQ(ToHex(read, 3), "00 7F A0");
  EXPECT_TRUE(stream.AtEnd());
}

TEST_F(TextParser, BytesThatAreNotThereTakeWhatStandsInTheirPlace) {
  TextStream stream("word 5 } <41>");
  uint8_t byte = 0;
  for (int i = 0; i < 3; ++i) {
    stream.ReadBytes(&byte, 1);
    EXPECT_EQ(byte, 0);
  }
  stream.ReadBytes(&byte, 1);
  EXPECT_EQ(byte, 0x41);
  EXPECT_TRUE(stream.AtEnd());
}

TEST_F(TextParser, AMemoryStreamSurvivesInsideAMemoryStream) {
  ZvMemoryStream outer;
  UseTextParser(outer);
  ZvMemoryStream blob;
  blob.SetBlobName("two words");
  blob.RawWrite("\x01\x02", 2);
  outer.WriteObject(&blob);
  outer.Seek(0);
  const std::unique_ptr<ZvStreamable> object(outer.ReadObject());
  auto* read = dynamic_cast<ZvMemoryStream*>(object.get());
  ASSERT_NE(read, nullptr);
  ZvString name;
  read->GetName(name);
  EXPECT_EQ(name, "two words");
  // Half as much again was asked for; the text ends, so the rest is zero.
  EXPECT_EQ(ToHex(read->GetBuffer(), read->GetLength()), "01 02 00 00");
}

// --- Damaged text
// ------------------------------------------------------------------------------------------------

TEST_F(TextParser, TextCutAnywhereStillEnds) {
  Doll doll;
  doll.mName.mValue = "a\\\"b\x01";
  doll.mID.mValue = FourCC("abcd");
  doll.mRect.mValue = ZvRect(1, 2, 3, 4);
  doll.mDolls.mValue.push_back(ZvSmartPtr<Doll>::Adopt(new Doll));
  doll.mStops.mValue = {{ZvDPoint2d(1, 2)}};
  doll.mPoints.mValue = {{0, 0.5}, {1, 2}};
  TextStream whole;
  whole.WriteObject(&doll);
  const std::string text = whole.Text();
  for (std::size_t length = 0; length < text.size(); ++length) {
    vm::ReportRecorder reports;
    TextStream stream(text.substr(0, length));
    const std::unique_ptr<ZvStreamable> object(stream.ReadObject());
    EXPECT_TRUE(stream.AtEnd()) << text.substr(0, length);
  }
}

TEST_F(TextParser, StrayMarksDontHoldUpTheReader) {
  for (const char* text :
       {"Test.Doll { ) ] Number=3 }", "Test.Doll { = Number=3 }", "Test.Doll { , ,, Number=3 }",
        "Test.Doll ( Number=3 )", "Test.Doll { {{{} } } Number=3 }", "Test.Doll { [ Number=3 }",
        "Test.Doll { ''' Number=3 ' Number=3 }"}) {
    TextStream stream(text);
    const std::unique_ptr<Doll> read = ReadBack<Doll>(stream);
    ASSERT_NE(read, nullptr) << text;
    EXPECT_EQ(read->mNumber.mValue, 3.0f) << text;
  }
}

TEST_F(TextParser, DeepNestingEndsAtTheLimit) {
  std::string text;
  for (int i = 0; i < 20000; ++i) {
    text += "Test.Doll{Dolls{";
  }
  vm::ReportRecorder reports;
  TextStream stream(text);
  const std::unique_ptr<Doll> read = ReadBack<Doll>(stream);
  int depth = 0;
  for (const Doll* doll = read.get(); doll != nullptr; ++depth) {
    doll = doll->mDolls.mValue.empty() ? nullptr : doll->mDolls.mValue[0].Get();
  }
  EXPECT_EQ(depth, ZvParser::kMaxObjectDepth);
  EXPECT_TRUE(stream.AtEnd());
}

}  // namespace
