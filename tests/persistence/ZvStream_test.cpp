#include "persistence/ZvStream.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "persistence/ByteStream.h"
#include "support/ReportRecorder.h"

namespace {

using testing::Contains;
using testing::IsEmpty;

// The number of references is the subject here, so it can be set.
class CountedParser : public ZvParser {
 public:
  CountedParser() : ZvParser(nullptr) {}
  ~CountedParser() override {
    if (mGone != nullptr) {
      *mGone = true;
    }
  }
  void AddVariable(const char* key, const char* value) { mVariables.push_back({key, value}); }
  void SetRefCount(uint32_t count) { fRefCount = count; }
  bool* mGone = nullptr;
};

TEST(Stream, HasABinaryParserOfItsOwnFromTheStart) {
  ByteStream stream;
  ASSERT_NE(stream.GetParser(), nullptr);
  EXPECT_EQ(stream.GetParser()->GetRefCount(), 1u);
  EXPECT_EQ(stream.GetParser()->GetStream(), &stream);
  stream.WriteSInt32(1, nullptr, true);
  EXPECT_EQ(stream.Hex(), "00 00 00 01");
}

TEST(Stream, StartsAtVersionOneWithNoCompressByte) {
  ByteStream stream;
  EXPECT_EQ(stream.GetVersion(), 1.0f);
  EXPECT_EQ(stream.GetCompress(), 0);
}

TEST(Stream, IsAtItsEndWhenTheLengthIsNotAboveThePosition) {
  ByteStream stream("01 02");
  EXPECT_FALSE(stream.AtEnd());
  stream.Seek(1);
  EXPECT_FALSE(stream.AtEnd());
  stream.Seek(2);
  EXPECT_TRUE(stream.AtEnd());
  stream.Seek(3);
  EXPECT_TRUE(stream.AtEnd());
}

TEST(Stream, HasAName) {
  ByteStream stream;
  stream.SetStreamName("name");
  ZvString name;
  stream.GetName(name);
  EXPECT_EQ(name, "name");
}

TEST(AttachParser, TakesAReferenceAndBindsTheParser) {
  ByteStream stream;
  ZvSmartPtr<CountedParser> parser = ZvSmartPtr<CountedParser>::Adopt(new CountedParser);
  stream.AttachParser(parser.Get());
  EXPECT_EQ(parser->GetRefCount(), 2u);
  EXPECT_EQ(parser->GetStream(), &stream);
  EXPECT_EQ(stream.GetParser(), parser.Get());
}

TEST(AttachParser, ReleasesTheOldParser) {
  ByteStream stream;
  bool gone = false;
  auto* parser = new CountedParser;
  parser->mGone = &gone;
  stream.AttachParser(parser);
  parser->Release();
  EXPECT_FALSE(gone);
  UseBinaryParser(stream);
  EXPECT_TRUE(gone);
}

TEST(AttachParser, HandsTheVariablesOn) {
  ByteStream stream;
  auto* parser = new CountedParser;
  stream.AttachParser(parser);
  parser->Release();
  parser->AddVariable("a", "1");
  UseBinaryParser(stream);
  ZvString text("#a");
  EXPECT_TRUE(stream.GetParser()->ResolveVariable(text));
  EXPECT_EQ(text, "1");
}

TEST(AttachParser, StartsTheByteOrderAfresh) {
  ByteStream stream;
  stream.SetStreamLittleEndian(true);
  UseBinaryParser(stream);
  stream.WriteUInt16(1, nullptr, true);
  EXPECT_EQ(stream.Hex(), "00 01");
}

TEST(AttachParser, ReportsAParserWithAnImplausibleCount) {
  vm::ReportRecorder reports;
  ByteStream stream;
  auto* parser = new CountedParser;
  parser->SetRefCount(10000);  // The stream's reference makes it one too many.
  stream.AttachParser(parser);
  EXPECT_THAT(reports.Lines(), Contains("ZvPtr(169) : 0"));
  parser->SetRefCount(1);
}

TEST(AttachParser, OfTheParserThatIsThereChangesNothing) {
  vm::ReportRecorder reports;
  ByteStream stream;
  ZvParser* parser = stream.GetParser();
  stream.AttachParser(parser);
  EXPECT_EQ(stream.GetParser(), parser);
  EXPECT_EQ(parser->GetRefCount(), 1u);
  EXPECT_THAT(reports.Lines(), IsEmpty());
}

TEST(AttachParser, IgnoresANullParser) {
  ByteStream stream;
  ZvParser* parser = stream.GetParser();
  stream.AttachParser(nullptr);
  EXPECT_EQ(stream.GetParser(), parser);
}

TEST(UseBinaryParserOn, LeavesTheStreamAsTheOnlyOwner) {
  ByteStream stream;
  UseBinaryParser(stream);
  EXPECT_EQ(stream.GetParser()->GetRefCount(), 1u);
}

TEST(Stream, ThatGoesLeavesASharedParserWithoutAStream) {
  ZvSmartPtr<ZvParser> parser;
  {
    ByteStream stream("01");
    parser = stream.GetParser();
  }
  EXPECT_EQ(parser->GetStream(), nullptr);
  EXPECT_EQ(parser->ReadUInt8(), 0);
}

}  // namespace
