#include "persistence/ZvMemoryStream.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

#include "persistence/ByteStream.h"
#include "persistence/ZvClassRegistry.h"
#include "support/ReportRecorder.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// The report of a stream that would have to grow memory which isn't its own.
constexpr char kForeignReport[] = "ZvMemoryStream(118) : mDoWeOwnMemory";

std::string HexOf(ZvMemoryStream& stream) {
  return ToHex(stream.GetBuffer(), stream.GetLength());
}

// An owning stream over exactly these bytes.
std::unique_ptr<ZvMemoryStream> Owning(std::string_view hex) {
  const std::vector<uint8_t> bytes = FromHex(hex);
  auto* block = static_cast<uint8_t*>(std::malloc(bytes.size() + 1));
  std::copy(bytes.begin(), bytes.end(), block);
  return std::make_unique<ZvMemoryStream>(block, static_cast<uint32_t>(bytes.size()), true);
}

TEST(MemoryStream, StartsEmptyClosedAndAtItsBegin) {
  ZvMemoryStream stream;
  EXPECT_EQ(stream.GetLength(), 0u);
  EXPECT_EQ(stream.GetCapacity(), 0u);
  EXPECT_EQ(stream.Tell(), 0u);
  EXPECT_EQ(stream.GetBuffer(), nullptr);
  EXPECT_FALSE(stream.IsOpen());
  EXPECT_TRUE(stream.CanRead());
  EXPECT_TRUE(stream.CanWrite());
  EXPECT_TRUE(stream.CanSeek());
  EXPECT_TRUE(stream.AtEnd());
}

TEST(MemoryStream, OverABlockHasItsSizeAsCapacityAndLength) {
  uint8_t block[] = {1, 2, 3};
  ZvMemoryStream stream(block, 3, false);
  EXPECT_EQ(stream.GetCapacity(), 3u);
  EXPECT_EQ(stream.GetLength(), 3u);
  EXPECT_EQ(stream.Tell(), 0u);
  EXPECT_FALSE(stream.IsOpen());
  EXPECT_EQ(stream.GetBuffer(), block);
}

TEST(MemoryStream, IsNamedByItsBlob) {
  ZvMemoryStream stream;
  stream.SetBlobName("blob");
  stream.SetBlobClass("kind");
  ZvString name("before");
  stream.GetName(name);
  EXPECT_EQ(name, "blob");
  stream.GetFullName(name);
  EXPECT_EQ(name, "");
  EXPECT_EQ(stream.GetBlobClass(), "kind");
}

TEST(MemoryStreamRead, CopiesAndAdvancesWithoutBeingOpen) {
  auto stream = Owning("01 02 03 04 05");
  uint8_t bytes[2] = {};
  stream->RawRead(bytes, 2);
  EXPECT_EQ(ToHex(bytes, 2), "01 02");
  EXPECT_EQ(stream->Tell(), 2u);
}

// REQUIRED: codecs that look at the result see how much is left, up to what they asked for.
TEST(MemoryStreamRead, GivesWhatIsLeftBehindTheReadAndNotWhatItCopied) {
  auto stream = Owning("01 02 03 04 05 06 07 08 09 0A");
  uint8_t bytes[10] = {};
  EXPECT_EQ(stream->RawRead(bytes, 4), 4u);  // 6 are left, 4 were asked for.
  EXPECT_EQ(stream->RawRead(bytes, 4), 2u);  // 2 are left.
  EXPECT_EQ(stream->RawRead(bytes, 2), 0u);  // Reached the end.
  EXPECT_EQ(ToHex(bytes, 2), "09 0A");
}

TEST(MemoryStreamRead, AtAndBehindTheEndCopiesNothingAndGivesZero) {
  auto stream = Owning("01 02");
  uint8_t bytes[2] = {0xAA, 0xAA};
  stream->Seek(2);
  EXPECT_EQ(stream->RawRead(bytes, 2), 0u);
  EXPECT_EQ(ToHex(bytes, 2), "AA AA");
  EXPECT_EQ(stream->Tell(), 2u);
}

TEST(MemoryStreamWrite, OfElevenBytesIntoTenGrowsToSixteen) {
  vm::ReportRecorder reports;
  auto stream = Owning("00 00 00 00 00 00 00 00 00 00");
  EXPECT_EQ(stream->RawWrite("elevenbytes", 11), 11u);
  EXPECT_EQ(stream->GetCapacity(), 16u);  // 11 * 1.5 = 16.5, cut
  EXPECT_EQ(stream->GetLength(), 16u);
  EXPECT_EQ(stream->Tell(), 11u);
  EXPECT_THAT(reports.Lines(), IsEmpty());
}

// REQUIRED: what WriteTo stores depends on this length.
TEST(MemoryStreamWrite, ThatGrowsMakesTheLengthTheWholeCapacityWithZerosBehindTheData) {
  ZvMemoryStream stream;
  stream.RawWrite("\x01\x02\x03", 3);
  EXPECT_EQ(HexOf(stream), "01 02 03 00");  // 3 * 1.5 = 4.5, cut
}

TEST(MemoryStreamWrite, KeepsTheOldBytesWhenItGrows) {
  auto stream = Owning("01 02 03");
  stream->Seek(3);
  stream->RawWrite("\x04", 1);
  EXPECT_EQ(HexOf(*stream), "01 02 03 04 00 00");  // 4 * 1.5
}

TEST(MemoryStreamWrite, InsideTheLengthLeavesTheLength) {
  auto stream = Owning("01 02 03");
  stream->RawWrite("\x09", 1);
  EXPECT_EQ(HexOf(*stream), "09 02 03");
}

TEST(MemoryStreamWrite, MayComeFromTheStreamsOwnBlockEvenWhenItGrows) {
  auto stream = Owning("01 02 03");
  stream->Seek(3);
  stream->RawWrite(stream->GetBuffer(), 3);
  EXPECT_EQ(HexOf(*stream), "01 02 03 01 02 03 00 00 00");
}

TEST(MemoryStreamWrite, ThatCannotGrowAbove32BitsWritesNothingAndGivesZero) {
  ZvMemoryStream stream;
  stream.RawWrite("\x01", 1);
  EXPECT_FALSE(stream.Reserve(0xF0000000u));
  EXPECT_EQ(stream.GetCapacity(), 1u);
  EXPECT_EQ(stream.GetLength(), 1u);
  stream.Seek(0xF0000000u);
  EXPECT_EQ(stream.Tell(), 0xF0000000u);
  EXPECT_EQ(stream.GetCapacity(), 1u);
  EXPECT_EQ(stream.RawWrite("\x02", 1), 0u);
  EXPECT_EQ(stream.Tell(), 0xF0000000u);
  EXPECT_EQ(HexOf(stream), "01");
}

TEST(MemoryStreamWrite, WhoseEndPasses32BitsWritesNothing) {
  ZvMemoryStream stream;
  stream.Seek(0xFFFFFFFFu);
  EXPECT_EQ(stream.RawWrite("\x01\x02", 2), 0u);
  EXPECT_EQ(stream.Tell(), 0xFFFFFFFFu);
}

// REQUIRED: a writer that hands memory over answers for its room.
TEST(MemoryStreamOverForeignMemory, ReportsAndThenWritesBehindItsBlock) {
  vm::ReportRecorder reports;
  uint8_t room[8] = {};
  ZvMemoryStream stream(room, 2, false);
  EXPECT_EQ(stream.RawWrite("\x01\x02\x03\x04", 4), 4u);
  EXPECT_THAT(reports.Lines(), ElementsAre(kForeignReport));
  EXPECT_EQ(ToHex(room, 8), "01 02 03 04 00 00 00 00");
  EXPECT_EQ(stream.GetCapacity(), 2u);
  EXPECT_EQ(stream.GetLength(), 4u);
  EXPECT_EQ(stream.Tell(), 4u);
}

TEST(MemoryStreamOverForeignMemory, WritesInsideItsBlockWithoutAReport) {
  vm::ReportRecorder reports;
  uint8_t room[4] = {};
  ZvMemoryStream stream(room, 4, false);
  stream.RawWrite("\x01\x02\x03\x04", 4);
  EXPECT_EQ(ToHex(room, 4), "01 02 03 04");
  EXPECT_THAT(reports.Lines(), IsEmpty());
}

TEST(MemoryStreamOverForeignMemory, WithoutAnyMemoryDropsWhatIsWritten) {
  vm::ReportRecorder reports;
  ZvMemoryStream stream(nullptr, 0, false);
  EXPECT_EQ(stream.RawWrite("\x01", 1), 0u);
  EXPECT_EQ(stream.Tell(), 0u);
  EXPECT_THAT(reports.Lines(), ElementsAre(kForeignReport));
}

TEST(MemoryStreamOverForeignMemory, ReserveReportsAndDoesNothing) {
  vm::ReportRecorder reports;
  uint8_t room[4] = {};
  ZvMemoryStream stream(room, 2, false);
  EXPECT_FALSE(stream.Reserve(1));  // Even where there is room.
  EXPECT_THAT(reports.Lines(), ElementsAre(kForeignReport));
  EXPECT_EQ(stream.GetCapacity(), 2u);
  EXPECT_EQ(stream.GetLength(), 2u);
}

TEST(MemoryStreamOverForeignMemory, SeekBeyondItReportsMovesAndKeepsTheCapacity) {
  vm::ReportRecorder reports;
  uint8_t room[2] = {};
  ZvMemoryStream stream(room, 2, false);
  EXPECT_TRUE(stream.Seek(5));
  EXPECT_THAT(reports.Lines(), ElementsAre(kForeignReport));
  EXPECT_EQ(stream.Tell(), 5u);
  EXPECT_EQ(stream.GetCapacity(), 2u);
  EXPECT_EQ(stream.GetLength(), 2u);
}

TEST(MemoryStreamReserve, InsideTheCapacityRaisesTheLengthOnly) {
  ZvMemoryStream stream;
  stream.Reserve(10);
  EXPECT_EQ(stream.GetCapacity(), 15u);
  EXPECT_EQ(stream.GetLength(), 15u);
  EXPECT_TRUE(stream.Reserve(4));
  EXPECT_EQ(stream.GetCapacity(), 15u);
  EXPECT_EQ(stream.GetLength(), 15u);
}

TEST(MemoryStreamSeek, BeyondTheCapacitySetsItToThePositionWhateverWasAllocated) {
  ZvMemoryStream stream;
  EXPECT_TRUE(stream.Seek(10));
  EXPECT_EQ(stream.Tell(), 10u);
  EXPECT_EQ(stream.GetCapacity(), 10u);
  EXPECT_EQ(stream.GetLength(), 15u);  // The length has the growth, 10 * 1.5.
  EXPECT_FALSE(stream.AtEnd());
}

TEST(MemoryStreamSeek, ThenWriteGrowsAgainAndKeepsWhatLayBelowTheCapacity) {
  ZvMemoryStream stream;
  stream.RawWrite("\x01\x02", 2);  // Capacity and length 3.
  stream.Seek(4);                  // Capacity 4, length 6.
  stream.RawWrite("\x09", 1);      // Needs 5: capacity and length 7.
  EXPECT_EQ(HexOf(stream), "01 02 00 00 09 00 00");
}

TEST(MemoryStreamOpen, RewindsAndSoDoesClose) {
  auto stream = Owning("01 02 03");
  stream->Seek(2);
  stream->Open();
  EXPECT_TRUE(stream->IsOpen());
  EXPECT_EQ(stream->Tell(), 0u);
  stream->Seek(2);
  stream->Open();
  EXPECT_TRUE(stream->IsOpen());
  EXPECT_EQ(stream->Tell(), 0u);
  stream->Seek(2);
  stream->Close();
  EXPECT_FALSE(stream->IsOpen());
  EXPECT_EQ(stream->Tell(), 0u);
}

TEST(MemoryStreamPeekHead, GivesAtLeast40BytesWithZerosBehindTheData) {
  auto stream = Owning("01 02 03");
  const uint8_t* head = stream->PeekHead(4);
  ASSERT_NE(head, nullptr);
  EXPECT_EQ(ToHex(head, 5), "01 02 03 00 00");
  for (int i = 3; i < 40; ++i) {
    EXPECT_EQ(head[i], 0) << i;
  }
}

TEST(MemoryStreamPeekHead, OfAnOpenStreamKeepsThePosition) {
  auto stream = Owning("01 02 03");
  stream->Open();
  stream->Seek(2);
  EXPECT_EQ(stream->PeekHead(4)[0], 1);
  EXPECT_EQ(stream->Tell(), 2u);
  EXPECT_TRUE(stream->IsOpen());
}

TEST(MemoryStreamPeekHead, OfAClosedStreamRewindsIt) {
  auto stream = Owning("01 02 03");
  stream->Seek(2);
  EXPECT_EQ(stream->PeekHead(4)[0], 1);
  EXPECT_EQ(stream->Tell(), 0u);
  EXPECT_FALSE(stream->IsOpen());
}

// REQUIRED: codecs ask one after another and get the same head.
TEST(MemoryStreamPeekHead, KeepsItsFirstAnswerUntilMoreIsAskedFor) {
  auto stream = Owning("01 02 03");
  const uint8_t* first = stream->PeekHead(4);
  stream->RawWrite("\x09", 1);
  EXPECT_EQ(stream->PeekHead(40), first);
  EXPECT_EQ(first[0], 1);
  EXPECT_EQ(stream->PeekHead(41)[0], 9);
}

TEST(MemoryStreamPeekHead, ReadsNoMoreThanTheCapacityAfterASeek) {
  ZvMemoryStream stream;
  stream.RawWrite("\x01\x02\x03\x04", 4);
  stream.Open();
  const uint8_t* head = stream.PeekHead(1);
  EXPECT_EQ(ToHex(head, 7), "01 02 03 04 00 00 00");
}

TEST(MemoryStreamAsObject, IsItsTwoNamesItsLengthAndItsBytes) {
  auto blob = Owning("AA BB CC");
  blob->SetBlobName("n");
  blob->SetBlobClass("cl");
  ByteStream stream;
  stream.WriteObject(blob.get());
  EXPECT_EQ(stream.Hex(),
            "00 0E 5A 76 4D 65 6D 6F 72 79 53 74 72 65 61 6D "  // "ZvMemoryStream"
            "00 01 6E 00 02 63 6C 00 00 00 03 AA BB CC");
}

TEST(MemoryStreamAsObject, WithoutDataEndsBehindTheLength) {
  ZvMemoryStream blob;
  ByteStream stream;
  blob.WriteTo(stream);
  EXPECT_EQ(stream.Hex(), "00 00 00 00 00 00 00 00");
}

// REQUIRED: the reading stream grows by half as much again and takes the bytes behind the blob for
// it.
TEST(MemoryStreamAsObject, ReadIntoAnEmptyStreamAsksForOneAndAHalfTimesTheLength) {
  ByteStream stream("00 01 6E 00 02 63 6C 00 00 00 04 01 02 03 04 05 06 07 08");
  ZvMemoryStream blob;
  blob.ReadFrom(stream);
  ZvString name;
  blob.GetName(name);
  EXPECT_EQ(name, "n");
  EXPECT_EQ(blob.GetBlobClass(), "cl");
  EXPECT_EQ(HexOf(blob), "01 02 03 04 05 06");
  EXPECT_EQ(stream.Tell(), 17u);
}

TEST(MemoryStreamAsObject, AtTheEndOfTheInputTheTailIsZero) {
  ByteStream stream("00 00 00 00 00 00 00 04 01 02 03 04");
  ZvMemoryStream blob;
  blob.ReadFrom(stream);
  EXPECT_EQ(HexOf(blob), "01 02 03 04 00 00");
}

TEST(MemoryStreamAsObject, ReadIntoAStreamWithRoomTakesExactlyTheLength) {
  ByteStream stream("00 00 00 00 00 00 00 02 01 02 03 04");
  auto blob = Owning("AA BB CC");
  blob->ReadFrom(stream);
  EXPECT_EQ(HexOf(*blob), "01 02");
  EXPECT_EQ(blob->GetCapacity(), 3u);
}

TEST(MemoryStreamAsObject, ALengthOfZeroReadsNoBytes) {
  ByteStream stream("00 00 00 00 00 00 00 00 01 02");
  auto blob = Owning("AA BB CC");
  blob->ReadFrom(stream);
  EXPECT_EQ(blob->GetLength(), 0u);
  EXPECT_EQ(stream.Tell(), 8u);
}

TEST(MemoryStreamAsObject, ALengthThatTheInputDoesNotHoldIsCutToWhatIsThere) {
  ByteStream stream("00 00 00 00 FF FF FF FF 01 02");
  ZvMemoryStream blob;
  blob.ReadFrom(stream);
  EXPECT_EQ(blob.GetCapacity(), 3u);
  EXPECT_EQ(HexOf(blob), "01 02 00");
}

TEST(MemoryStreamAsObject, ReadOverForeignMemoryReportsAndStaysInsideIt) {
  vm::ReportRecorder reports;
  ByteStream stream("00 00 00 00 00 00 00 04 01 02 03 04");
  uint8_t room[4] = {0, 0, 0xEE, 0xEE};
  ZvMemoryStream blob(room, 2, false);
  blob.ReadFrom(stream);
  EXPECT_EQ(ToHex(room, 4), "01 02 EE EE");
  EXPECT_EQ(blob.GetLength(), 2u);
  EXPECT_THAT(reports.Lines(), ElementsAre(kForeignReport));
}

TEST(MemoryStreamAsObject, IsRegisteredUnderItsName) {
  RunRegistrars();
  const ZvStreamableFactory factory = FindFactory("ZvMemoryStream");
  ASSERT_NE(factory, nullptr);
  const std::unique_ptr<ZvStreamable> object(factory());
  EXPECT_NE(dynamic_cast<ZvMemoryStream*>(object.get()), nullptr);
}

TEST(MemoryStreamDuplicate, HasTheSameStateOverTheSameBlock) {
  auto stream = Owning("01 02 03");
  stream->SetBlobName("n");
  stream->SetBlobClass("c");
  stream->SetVersion(0.5f);
  stream->SetCompress(7);
  stream->Open();
  stream->Seek(2);
  const std::unique_ptr<ZvMemoryStream> copy(stream->Duplicate());
  EXPECT_EQ(copy->GetRefCount(), 1u);
  EXPECT_EQ(copy->GetBuffer(), stream->GetBuffer());
  EXPECT_EQ(copy->GetCapacity(), 3u);
  EXPECT_EQ(copy->GetLength(), 3u);
  EXPECT_EQ(copy->Tell(), 2u);
  EXPECT_TRUE(copy->IsOpen());
  ZvString name;
  copy->GetName(name);
  EXPECT_EQ(name, "n");
  EXPECT_EQ(copy->GetBlobClass(), "c");
  EXPECT_EQ(copy->GetVersion(), 0.5f);
  EXPECT_EQ(copy->GetCompress(), 7);
}

TEST(MemoryStreamDuplicate, OutlivesItsSourceWithTheBlockIntact) {
  auto stream = Owning("01 02 03");
  const std::unique_ptr<ZvMemoryStream> copy(stream->Duplicate());
  stream.reset();
  EXPECT_EQ(HexOf(*copy), "01 02 03");
}

TEST(MemoryStreamDuplicate, ThatGrowsGetsABlockOfItsOwn) {
  auto stream = Owning("01 02 03");
  const std::unique_ptr<ZvMemoryStream> copy(stream->Duplicate());
  copy->Reserve(4);
  EXPECT_EQ(HexOf(*stream), "01 02 03");
  EXPECT_EQ(HexOf(*copy), "01 02 03 00 00 00");
}

TEST(MemoryStreamDuplicate, SharesTheParserWhichStaysBoundToTheSource) {
  auto stream = Owning("01 02 03");
  const std::unique_ptr<ZvMemoryStream> copy(stream->Duplicate());
  EXPECT_EQ(copy->GetParser(), stream->GetParser());
  EXPECT_EQ(copy->ReadUInt8(), 1);
  EXPECT_EQ(stream->Tell(), 1u);
  EXPECT_EQ(copy->Tell(), 0u);
}

TEST(MemoryStreamDuplicate, WhoseSourceIsGoneReadsZerosUntilItGetsAParser) {
  auto stream = Owning("01 02 03");
  const std::unique_ptr<ZvMemoryStream> copy(stream->Duplicate());
  stream.reset();
  EXPECT_EQ(copy->ReadUInt8(), 0);
  UseBinaryParser(*copy);
  EXPECT_EQ(copy->ReadUInt8(), 1);
}

TEST(MemoryStreamDuplicate, HasTheHeadThatWasPeeked) {
  auto stream = Owning("01 02 03");
  stream->PeekHead(40);
  const std::unique_ptr<ZvMemoryStream> copy(stream->Duplicate());
  stream->RawWrite("\x09", 1);
  EXPECT_EQ(copy->PeekHead(40)[0], 1);
  EXPECT_NE(copy->PeekHead(40), stream->PeekHead(40));
}

}  // namespace
