#include "persistence/ZvFileStream.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <string>

#include "foundation/CP_Exceptions.h"
#include "persistence/ByteStream.h"
#include "support/ReportRecorder.h"
#include "support/TempDirectory.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr uint32_t kBlock = ZvFileStream::kReadAheadSize;

class FileStream : public testing::Test {
 protected:
  FileStream() : mSpec(mDirectory.Path("data.bin").c_str()), mStream(mSpec) {}

  void Put(std::string_view hex) {
    const std::vector<uint8_t> bytes = FromHex(hex);
    mDirectory.Write("data.bin", std::string(bytes.begin(), bytes.end()));
  }
  void PutText(std::string_view bytes) { mDirectory.Write("data.bin", bytes); }
  // Others can't write into an open file, and the block that was read ahead outlives a closing.
  static void WhileClosed(ZvFileStream& stream, const std::function<void()>& action) {
    stream.Close();
    action();
    stream.Open(ZvFileStream::kModeRead);
  }
  std::string OnDisk() {
    const std::string bytes = mDirectory.Read("data.bin");
    return ToHex({bytes.begin(), bytes.end()});
  }
  // A file whose byte n is n modulo 251, so that no two neighbouring blocks are alike.
  void PutPattern(std::size_t count) {
    std::string bytes(count, '\0');
    for (std::size_t i = 0; i < count; ++i) {
      bytes[i] = static_cast<char>(i % 251);
    }
    PutText(bytes);
  }

  vm::TempDirectory mDirectory;
  CP_FileSpec mSpec;
  ZvFileStream mStream;
};

int32_t ErrorOf(const std::function<void()>& action) {
  try {
    action();
  } catch (const CP_PlfrmErrorException& exception) {
    return exception.GetPlatformError();
  }
  return 0;
}

TEST_F(FileStream, IsBornClosedForReadingAndTouchesNoFile) {
  EXPECT_FALSE(mStream.IsOpen());
  EXPECT_TRUE(mStream.CanRead());
  EXPECT_FALSE(mStream.CanWrite());
  EXPECT_TRUE(mStream.CanSeek());
  EXPECT_FALSE(mDirectory.Has("data.bin"));
}

TEST_F(FileStream, IsNamedByItsSpec) {
  ZvString name;
  mStream.GetName(name);
  EXPECT_EQ(name, "data.bin");
  mStream.GetFullName(name);
  EXPECT_EQ(name.view(), mDirectory.Path("data.bin"));
  mStream.ClassName(name);
  EXPECT_EQ(name, "ZvFileStream");
}

TEST_F(FileStream, CreatedOnDiskIsEmptyAndClosed) {
  Put("01 02 03");
  mStream.CreateOnDisk();
  EXPECT_EQ(OnDisk(), "");
  EXPECT_FALSE(mStream.IsOpen());
  EXPECT_FALSE(mStream.CanWrite());
}

TEST_F(FileStream, CreatedInAFolderThatIsMissingThrowsTheFileError) {
  ZvFileStream stream{CP_FileSpec(mDirectory.Path("none\\data.bin").c_str())};
  EXPECT_EQ(ErrorOf([&] { stream.CreateOnDisk(); }), -36);
}

TEST_F(FileStream, DeletedOnDiskIsGoneAndASecondTimeIsNoError) {
  Put("01");
  mStream.DeleteOnDisk();
  EXPECT_FALSE(mDirectory.Has("data.bin"));
  mStream.DeleteOnDisk();
}

TEST_F(FileStream, WritesABigEndianNumberAfterTheUsualOpening) {
  mStream.DeleteOnDisk();
  mStream.CreateOnDisk();
  mStream.Open(ZvFileStream::kModeReadWrite);
  UseBinaryParser(mStream);
  mStream.WriteSInt32(12, nullptr, true);
  mStream.Close();
  EXPECT_EQ(OnDisk(), "00 00 00 0C");
}

TEST_F(FileStream, WritesReachTheFileAtOnce) {
  mStream.CreateOnDisk();
  mStream.Open(ZvFileStream::kModeReadWrite);
  mStream.WriteUInt8(1, nullptr, true);
  EXPECT_EQ(std::filesystem::file_size(mDirectory.Native("data.bin")), 1u);
  mStream.WriteUInt8(2, nullptr, true);
  EXPECT_EQ(std::filesystem::file_size(mDirectory.Native("data.bin")), 2u);
}

TEST_F(FileStream, TheModeSaysWhatItCanDo) {
  Put("01");
  mStream.Open(ZvFileStream::kModeReadWrite);
  EXPECT_TRUE(mStream.CanRead());
  EXPECT_TRUE(mStream.CanWrite());
  mStream.Open(ZvFileStream::kModeWrite);
  EXPECT_FALSE(mStream.CanRead());
  EXPECT_TRUE(mStream.CanWrite());
  mStream.Open(ZvFileStream::kModeRead);
  EXPECT_TRUE(mStream.CanRead());
  EXPECT_FALSE(mStream.CanWrite());
  EXPECT_TRUE(mStream.IsOpen());
}

TEST_F(FileStream, OpenOfAMissingFileThrowsAndLeavesTheStreamClosedInItsMode) {
  EXPECT_EQ(ErrorOf([&] { mStream.Open(ZvFileStream::kModeReadWrite); }), -36);
  EXPECT_FALSE(mStream.IsOpen());
  EXPECT_FALSE(mStream.CanWrite());
}

TEST_F(FileStream, AFailedReopeningLeavesItClosed) {
  Put("01");
  mStream.Open(ZvFileStream::kModeRead);
  std::filesystem::path moved = mDirectory.Native("moved.bin");
  mStream.Close();
  std::filesystem::rename(mDirectory.Native("data.bin"), moved);
  EXPECT_EQ(ErrorOf([&] { mStream.Open(ZvFileStream::kModeReadWrite); }), -36);
  EXPECT_FALSE(mStream.IsOpen());
  EXPECT_FALSE(mStream.CanWrite());
}

TEST_F(FileStream, CloseOfAClosedStreamReportsAsTheFileDoes) {
  vm::ReportRecorder reports;
  mStream.Close();
  EXPECT_THAT(reports.Lines(),
              ElementsAre("CP_File(256) : IsOpen()", "CP_File(268) : result == true"));
}

TEST_F(FileStream, WriteOnAClosedStreamReportsAndThrows) {
  Put("01");
  vm::ReportRecorder reports;
  EXPECT_EQ(ErrorOf([&] { mStream.WriteUInt8(1, nullptr, true); }), -36);
  EXPECT_THAT(reports.Lines(), ElementsAre("CP_File(388) : IsOpen()"));
  EXPECT_EQ(OnDisk(), "01");
  EXPECT_FALSE(mStream.IsOpen());
}

TEST_F(FileStream, ReadOnAClosedStreamOpensItSilentlyAndLeavesItOpen) {
  Put("01 02");
  EXPECT_EQ(mStream.ReadUInt8(), 1);
  EXPECT_TRUE(mStream.IsOpen());
  EXPECT_FALSE(mStream.CanWrite());
  EXPECT_EQ(mStream.ReadUInt8(), 2);
}

TEST_F(FileStream, ReadOnAClosedStreamOpensItInItsLastMode) {
  Put("01 02");
  mStream.Open(ZvFileStream::kModeReadWrite);
  mStream.Close();
  EXPECT_EQ(mStream.ReadUInt8(), 1);
  EXPECT_TRUE(mStream.CanWrite());
}

TEST_F(FileStream, ReadThatCannotOpenTheFileMeetsAClosedOne) {
  vm::ReportRecorder reports;
  EXPECT_THROW(mStream.ReadUInt8(), CP_PlfrmErrorException);
  EXPECT_THAT(reports.Lines(), ElementsAre("CP_File(316) : fFileRef != kCP_BAD_FILE_REF_NUM",
                                           "CP_File(317) : IsOpen()"));
  EXPECT_FALSE(mStream.IsOpen());
}

TEST_F(FileStream, ReadCloseOnAClosedStreamOpensItToo) {
  Put("61 62");
  EXPECT_TRUE(mStream.ReadClose());
  EXPECT_TRUE(mStream.IsOpen());
  EXPECT_EQ(mStream.Tell(), 1u);
}

TEST_F(FileStream, AnEmptyFileIsAtItsEnd) {
  Put("");
  mStream.Open(ZvFileStream::kModeRead);
  EXPECT_TRUE(mStream.AtEnd());
  EXPECT_EQ(mStream.GetLength(), 0u);
}

TEST_F(FileStream, IsAtItsEndBehindTheLastByteInBothWaysOfReading) {
  Put("01 02");
  for (const uint32_t mode : {ZvFileStream::kModeRead, ZvFileStream::kModeReadWrite}) {
    ZvFileStream stream(mSpec);
    stream.Open(mode);
    EXPECT_FALSE(stream.AtEnd());
    stream.ReadUInt8();
    EXPECT_FALSE(stream.AtEnd());
    EXPECT_EQ(stream.Tell(), 1u);
    stream.ReadUInt8();
    EXPECT_TRUE(stream.AtEnd());
    EXPECT_EQ(stream.Tell(), 2u);
  }
}

TEST_F(FileStream, LengthOfAClosedStreamReportsAndThrows) {
  Put("01");
  vm::ReportRecorder reports;
  EXPECT_EQ(ErrorOf([&] { mStream.GetLength(); }), -36);
  EXPECT_EQ(ErrorOf([&] { mStream.AtEnd(); }), -36);
  EXPECT_THAT(reports.Lines(),
              ElementsAre("CP_File(463) : IsOpen()",
                          "CP_File(473) : ::GetFileType(fFileRef) == FILE_TYPE_DISK",
                          "CP_File(463) : IsOpen()",
                          "CP_File(473) : ::GetFileType(fFileRef) == FILE_TYPE_DISK"));
}

TEST_F(FileStream, AReadDeliversWhatThereIsAndSaysHowMuch) {
  Put("01 02 03");
  for (const uint32_t mode : {ZvFileStream::kModeRead, ZvFileStream::kModeReadWrite}) {
    ZvFileStream stream(mSpec);
    stream.Open(mode);
    uint8_t bytes[5] = {};
    EXPECT_EQ(stream.RawRead(bytes, 5), 3u);
    EXPECT_EQ(ToHex(bytes, 5), "01 02 03 00 00");
    EXPECT_EQ(stream.RawRead(bytes, 5), 0u);
  }
}

TEST_F(FileStream, AFileLongerThanTheBlockComesBackWhole) {
  // One byte less, exactly one block, one more, and several blocks with a rest.
  for (const std::size_t count : {kBlock - 1, kBlock, kBlock + 1, 3 * kBlock + 7}) {
    PutPattern(count);
    ZvFileStream stream(mSpec);
    stream.Open(ZvFileStream::kModeRead);
    std::vector<uint8_t> bytes(count + 10);
    ASSERT_EQ(stream.RawRead(bytes.data(), static_cast<uint32_t>(bytes.size())), count);
    for (std::size_t i = 0; i < count; ++i) {
      ASSERT_EQ(bytes[i], i % 251) << i;
    }
    EXPECT_EQ(stream.Tell(), count);
    EXPECT_TRUE(stream.AtEnd());
  }
}

TEST_F(FileStream, AValueMayLieAcrossTheBordersOfTheBlock) {
  PutPattern(3 * kBlock);
  mStream.Open(ZvFileStream::kModeRead);
  for (uint32_t i = 0; i + 4 <= 3 * kBlock; i += 4) {
    const uint32_t expected =
        (i % 251) << 24 | ((i + 1) % 251) << 16 | ((i + 2) % 251) << 8 | (i + 3) % 251;
    ASSERT_EQ(mStream.ReadUInt32(), expected) << i;
  }
}

TEST_F(FileStream, ReadOnlyServesReadsFromTheBlockAndReadWriteFromTheFile) {
  Put("01 02 03");
  ZvFileStream ahead(mSpec);
  ahead.Open(ZvFileStream::kModeRead);
  EXPECT_EQ(ahead.ReadUInt8(), 1);
  WhileClosed(ahead, [&] { Put("0A 0B 0C"); });
  EXPECT_EQ(ahead.ReadUInt8(), 2);
  ahead.Close();

  Put("01 02 03");
  mStream.Open(ZvFileStream::kModeReadWrite);
  EXPECT_EQ(mStream.ReadUInt8(), 1);
  mStream.WriteUInt8(0x0B, nullptr, true);
  mStream.Seek(1);
  EXPECT_EQ(mStream.ReadUInt8(), 0x0B);
}

#ifndef _WIN32  // There nobody else can write into an open file.
TEST_F(FileStream, AReadAtTheEndSeesWhatWasAppendedSince) {
  Put("01");
  mStream.Open(ZvFileStream::kModeRead);
  EXPECT_EQ(mStream.ReadUInt8(), 1);
  EXPECT_TRUE(mStream.AtEnd());
  Put("01 02");
  EXPECT_FALSE(mStream.AtEnd());
  EXPECT_EQ(mStream.ReadUInt8(), 2);
}
#endif

TEST_F(FileStream, SeekInsideTheBlockStaysInIt) {
  Put("01 02 03");
  mStream.Open(ZvFileStream::kModeRead);
  mStream.ReadUInt8();
  WhileClosed(mStream, [&] { Put("0A 0B 0C"); });
  EXPECT_TRUE(mStream.Seek(0));
  EXPECT_EQ(mStream.Tell(), 0u);
  EXPECT_EQ(mStream.ReadUInt8(), 1);
}

TEST_F(FileStream, SeekToTheExactEndOfTheBlockRefillsIt) {
  PutText(std::string(kBlock, 'a') + "b");
  mStream.Open(ZvFileStream::kModeRead);
  mStream.ReadUInt8();
  WhileClosed(mStream, [&] { PutText(std::string(kBlock, 'x') + "y"); });
  EXPECT_TRUE(mStream.Seek(kBlock - 1));
  EXPECT_EQ(mStream.ReadUInt8(), 'a');
  EXPECT_TRUE(mStream.Seek(kBlock));
  EXPECT_EQ(mStream.Tell(), kBlock);
  EXPECT_EQ(mStream.ReadUInt8(), 'y');
  EXPECT_TRUE(mStream.Seek(0));  // No longer in the block.
  EXPECT_EQ(mStream.ReadUInt8(), 'x');
}

TEST_F(FileStream, SeekBehindTheEndSucceedsAndReadsNothing) {
  Put("01 02");
  for (const uint32_t mode : {ZvFileStream::kModeRead, ZvFileStream::kModeReadWrite}) {
    ZvFileStream stream(mSpec);
    stream.Open(mode);
    EXPECT_TRUE(stream.Seek(10));
    EXPECT_EQ(stream.Tell(), 10u);
    EXPECT_TRUE(stream.AtEnd());
    EXPECT_EQ(stream.ReadUInt8(), 0);
  }
}

// REQUIRED: the block outlives a closing, and with it the position.
TEST_F(FileStream, AReopenedStreamGoesOnInTheBlockThatItHad) {
  Put("01 02 03");
  mStream.Open(ZvFileStream::kModeRead);
  EXPECT_EQ(mStream.ReadUInt8(), 1);
  mStream.Close();
  Put("0A 0B 0C");
  mStream.Open(ZvFileStream::kModeRead);
  EXPECT_EQ(mStream.Tell(), 1u);
  EXPECT_EQ(mStream.ReadUInt8(), 2);
}

TEST_F(FileStream, PeekHeadOfAClosedStreamReportsOpensReadsAndClosesAgain) {
  Put("89 50 4E 47");
  vm::ReportRecorder reports;
  const uint8_t* head = mStream.PeekHead(4);
  ASSERT_NE(head, nullptr);
  EXPECT_EQ(ToHex(head, 6), "89 50 4E 47 00 00");
  EXPECT_FALSE(mStream.IsOpen());
  EXPECT_THAT(reports.Lines(),
              ElementsAre("CP_File(463) : IsOpen()",
                          "CP_File(473) : ::GetFileType(fFileRef) == FILE_TYPE_DISK"));
}

TEST_F(FileStream, PeekHeadGivesAtLeast40Bytes) {
  PutPattern(100);
  mStream.Open(ZvFileStream::kModeRead);
  const uint8_t* head = mStream.PeekHead(1);
  for (int i = 0; i < 40; ++i) {
    EXPECT_EQ(head[i], i) << i;
  }
}

TEST_F(FileStream, PeekHeadOfAnOpenStreamKeepsThePosition) {
  PutPattern(100);
  for (const uint32_t mode : {ZvFileStream::kModeRead, ZvFileStream::kModeReadWrite}) {
    ZvFileStream stream(mSpec);
    stream.Open(mode);
    stream.Seek(7);
    EXPECT_EQ(ToHex(stream.PeekHead(40), 3), "00 01 02");
    EXPECT_EQ(stream.Tell(), 7u);
    EXPECT_EQ(stream.ReadUInt8(), 7);
    EXPECT_TRUE(stream.IsOpen());
  }
}

// REQUIRED: codecs ask one after another and get the same head.
TEST_F(FileStream, PeekHeadKeepsItsFirstAnswerUntilMoreIsAskedFor) {
  Put("01 02");
  mStream.Open(ZvFileStream::kModeReadWrite);
  const uint8_t* head = mStream.PeekHead(40);
  mStream.WriteUInt8(9, nullptr, true);
  EXPECT_EQ(mStream.PeekHead(12), head);
  EXPECT_EQ(head[0], 1);
  EXPECT_EQ(mStream.PeekHead(41)[0], 9);
}

TEST_F(FileStream, PeekHeadOfAMissingFileThrowsAfterItsReports) {
  vm::ReportRecorder reports;
  EXPECT_THROW(mStream.PeekHead(40), CP_PlfrmErrorException);
  EXPECT_FALSE(mStream.IsOpen());
  EXPECT_THAT(
      reports.Lines(),
      ElementsAre("CP_File(463) : IsOpen()",
                  "CP_File(473) : ::GetFileType(fFileRef) == FILE_TYPE_DISK",
                  "CP_File(316) : fFileRef != kCP_BAD_FILE_REF_NUM", "CP_File(317) : IsOpen()"));
}

#ifdef __linux__
std::ptrdiff_t OpenHandles() {
  const std::filesystem::directory_iterator handles("/proc/self/fd");
  return std::distance(begin(handles), end(handles));
}
#endif

TEST_F(FileStream, ThatGoesClosesItsFile) {
  Put("01");
#ifdef __linux__
  const std::ptrdiff_t before = OpenHandles();
#endif
  {
    ZvFileStream stream(mSpec);
    stream.Open(ZvFileStream::kModeReadWrite);
    stream.Open(ZvFileStream::kModeRead);
  }
#ifdef __linux__
  EXPECT_EQ(OpenHandles(), before);
#endif
  // Windows deletes no file that is open.
  mStream.DeleteOnDisk();
  EXPECT_FALSE(mDirectory.Has("data.bin"));
}

}  // namespace
