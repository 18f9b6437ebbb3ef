#include "platform/CP_File.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "foundation/CP_Exceptions.h"
#include "foundation/FourCharCode.h"
#include "support/ReportRecorder.h"
#include "support/TempDirectory.h"

namespace {

using vm::ReportRecorder;
using vm::Reports;

constexpr uint32_t kReadWrite = 0xC0000000;
constexpr uint32_t kRead = 0x80000000;
constexpr uint32_t kWrite = 0x40000000;

// Runs `operation`, which must throw; yields the code, and the line of the throw as it reports
// itself.
template <class Operation>
std::pair<int32_t, std::string> Thrown(Operation operation) {
  try {
    operation();
  } catch (const CP_PlfrmErrorException& exception) {
    ReportRecorder reports;
    exception.Report();
    return {exception.GetPlatformError(), reports.Lines().at(0)};
  }
  return {0, "nothing thrown"};
}

const auto kFailedAt = [](int32_t line) {
  return std::pair<int32_t, std::string>{-36, "CP_File(" + std::to_string(line) + ") : "};
};

class File : public testing::Test {
 protected:
  CP_FileSpec Spec(const char* name) const { return CP_FileSpec(directory.Path(name).c_str()); }

  CP_File OpenWith(std::string_view bytes) const {
    directory.Write("f", bytes);
    CP_File file(Spec("f"));
    file.Open(kReadWrite);
    return file;
  }

  std::string ReadAll(CP_File& file, uint32_t count) const {
    std::string bytes(count, '?');
    file.Read(bytes.data(), &count);
    bytes.resize(count);
    return bytes;
  }

  vm::TempDirectory directory;
};

TEST_F(File, ANewOneIsClosed) {
  EXPECT_FALSE(CP_File().IsOpen());
  EXPECT_FALSE(CP_File(Spec("f")).IsOpen());
  EXPECT_EQ(kCP_BAD_FILE_REF_NUM, -1);
}

TEST_F(File, CreateMakesAnEmptyFileAndLeavesItClosed) {
  CP_File file(Spec("f"));
  file.Create(kReadWrite, FourCC("****"), FourCC("TEXT"), false);
  EXPECT_FALSE(file.IsOpen());
  EXPECT_EQ(directory.Read("f"), "");
}

TEST_F(File, CreateWithoutReplaceOverAnExistingFileThrows) {
  directory.Write("f", "old");
  CP_File file(Spec("f"));
  EXPECT_EQ(Thrown([&] { file.Create(kReadWrite, 0, 0, false); }), kFailedAt(145));
  EXPECT_FALSE(file.IsOpen());
  EXPECT_EQ(directory.Read("f"), "old");
}

TEST_F(File, CreateWithReplaceTruncatesAnExistingFile) {
  directory.Write("f", "old");
  CP_File file(Spec("f"));
  file.Create(kReadWrite, 0, 0, true);
  EXPECT_EQ(directory.Read("f"), "");
}

TEST_F(File, CreateInADirectoryThatIsNotThereThrows) {
  CP_File file(Spec("missing\\f"));
  EXPECT_EQ(Thrown([&] { file.Create(kReadWrite, 0, 0, true); }), kFailedAt(145));
}

TEST_F(File, CreateAsTakesTheSpecOver) {
  CP_File file(Spec("other"));
  file.CreateAs(Spec("f"), kReadWrite, 0, 0, false);
  EXPECT_TRUE(directory.Has("f"));
  EXPECT_FALSE(directory.Has("other"));
  file.Open(kReadWrite);
  EXPECT_TRUE(file.IsOpen());
  file.Close();
}

TEST_F(File, DeleteRemovesTheFile) {
  directory.Write("f", "x");
  CP_File(Spec("f")).Delete();
  EXPECT_FALSE(directory.Has("f"));
}

TEST_F(File, DeleteOfAFileThatIsNotThereDoesNothingAndReportsNothing) {
  ReportRecorder reports;
  CP_File(Spec("f")).Delete();
  CP_File().Delete();
  EXPECT_TRUE(reports.Empty());
}

TEST_F(File, OpenOfAFileThatIsNotThereThrowsAndMakesNone) {
  CP_File file(Spec("f"));
  EXPECT_EQ(Thrown([&] { file.Open(kReadWrite); }), kFailedAt(238));
  EXPECT_FALSE(file.IsOpen());
  EXPECT_FALSE(directory.Has("f"));
}

TEST_F(File, OpenOfADirectoryThrows) {
  std::filesystem::create_directory(directory.Native("d"));
  CP_File file(Spec("d"));
  EXPECT_EQ(Thrown([&] { file.Open(kReadWrite); }), kFailedAt(238));
  EXPECT_EQ(Thrown([&] { file.Open(kRead); }), kFailedAt(238));
}

TEST_F(File, OpenOfASpecWithoutAPathThrows) {
  CP_FileSpec spec;
  spec.SetName("f");
  CP_File file(spec);
  EXPECT_EQ(Thrown([&] { file.Open(kReadWrite); }), kFailedAt(238));
}

TEST_F(File, OpenStartsAtTheBeginAndKeepsTheContents) {
  CP_File file = OpenWith("hello");
  EXPECT_TRUE(file.IsOpen());
  EXPECT_EQ(file.GetPosition(), 0U);
  EXPECT_EQ(ReadAll(file, 5), "hello");
  file.Close();
}

TEST_F(File, OpenOnAnOpenFileForgetsTheOldHandle) {
  directory.Write("f", "hello");
  CP_File file(Spec("f"));
  file.Open(kRead);
  CP_File old = file;
  file.Open(kRead);
  EXPECT_EQ(ReadAll(file, 2), "he");
  EXPECT_EQ(ReadAll(old, 3), "hel");
  file.Close();
  old.Close();
}

TEST_F(File, TheDestructorLeavesTheHandleOpen) {
  CP_File survivor;
  {
    const CP_File destroyed = OpenWith("hello");
    survivor = destroyed;
  }
  EXPECT_EQ(ReadAll(survivor, 5), "hello");
  survivor.Close();
}

TEST_F(File, CloseClosesForGood) {
  CP_File file = OpenWith("hello");
  ReportRecorder reports;
  file.Close();
  EXPECT_FALSE(file.IsOpen());
  EXPECT_TRUE(reports.Empty());
}

TEST_F(File, CloseOnAClosedFileReportsTwice) {
  CP_File file(Spec("f"));
  ReportRecorder reports;
  file.Close();
  EXPECT_EQ(reports.Lines(), Reports({"CP_File(256) : IsOpen()", "CP_File(268) : result == true"}));
  EXPECT_FALSE(file.IsOpen());
}

TEST_F(File, PositionsCountFromBeginCurrentAndEnd) {
  CP_File file = OpenWith("0123456789");
  EXPECT_EQ(file.SetPosition(CP_FILE_SEEK__FROM_BEGIN, 4), 4U);
  EXPECT_EQ(file.SetPosition(CP_FILE_SEEK__FROM_CURRENT, 3), 7U);
  EXPECT_EQ(file.SetPosition(CP_FILE_SEEK__FROM_CURRENT, -2), 5U);
  EXPECT_EQ(file.GetPosition(), 5U);
  EXPECT_EQ(ReadAll(file, 2), "56");
  EXPECT_EQ(file.SetPosition(CP_FILE_SEEK__FROM_END, -1), 9U);
  EXPECT_EQ(ReadAll(file, 1), "9");
  file.Close();
}

TEST_F(File, TheSeekModesAreThePlatformsMoveMethods) {
  EXPECT_EQ(CP_FILE_SEEK__FROM_BEGIN, 0);
  EXPECT_EQ(CP_FILE_SEEK__FROM_CURRENT, 1);
  EXPECT_EQ(CP_FILE_SEEK__FROM_END, 2);
}

TEST_F(File, ThePositionAtTheEndIsTheLength) {
  CP_File file = OpenWith("0123456789");
  file.SetPosition(CP_FILE_SEEK__FROM_END, 0);
  EXPECT_EQ(file.GetPosition(), file.GetLength());
  EXPECT_EQ(file.GetLength(), 10U);
  file.Close();
}

TEST_F(File, APositionBeyondTheEndIsFineAndAWriteThereFillsWithZeros) {
  CP_File file = OpenWith("ab");
  EXPECT_EQ(file.SetPosition(CP_FILE_SEEK__FROM_BEGIN, 4), 4U);
  EXPECT_EQ(file.GetLength(), 2U);
  const uint32_t count = 1;
  file.Write("c", &count);
  file.Close();
  EXPECT_EQ(directory.Read("f"), std::string("ab\0\0c", 5));
}

TEST_F(File, APositionBeforeTheBeginThrowsThePlatformsCode) {
  CP_File file = OpenWith("ab");
  constexpr int32_t kErrorNegativeSeek = 131;
  EXPECT_EQ(Thrown([&] { file.SetPosition(CP_FILE_SEEK__FROM_CURRENT, -1); }),
            std::make_pair(kErrorNegativeSeek, std::string("CP_File(301) : ")));
  file.Close();
}

TEST_F(File, AnUnknownSeekModeIsReportedAndThenRefusedByThePlatform) {
  CP_File file = OpenWith("ab");
  ReportRecorder reports;
  const auto [code, place] = Thrown([&] { file.SetPosition(3, 0); });
  EXPECT_NE(code, 0);
  EXPECT_NE(code, -36);
  EXPECT_EQ(place, "CP_File(301) : ");
  EXPECT_EQ(
      reports.Lines(),
      Reports({"CP_File(290) : (inMode == CP_FILE_SEEK__FROM_BEGIN) || "
               "(inMode == CP_FILE_SEEK__FROM_END) || (inMode == CP_FILE_SEEK__FROM_CURRENT)"}));
  file.Close();
}

TEST_F(File, ThePositionOfAClosedFileIsReportedTwiceAndThrowsThePlatformsCode) {
  constexpr int32_t kErrorInvalidHandle = 6;
  CP_File file(Spec("f"));
  ReportRecorder reports;
  EXPECT_EQ(Thrown([&] { file.GetPosition(); }),
            std::make_pair(kErrorInvalidHandle, std::string("CP_File(327) : ")));
  EXPECT_EQ(reports.Lines(), Reports({"CP_File(316) : fFileRef != kCP_BAD_FILE_REF_NUM",
                                      "CP_File(317) : IsOpen()"}));
  reports.Clear();
  EXPECT_EQ(Thrown([&] { file.SetPosition(CP_FILE_SEEK__FROM_BEGIN, 0); }),
            std::make_pair(kErrorInvalidHandle, std::string("CP_File(301) : ")));
  EXPECT_EQ(reports.Lines(), Reports({"CP_File(288) : fFileRef != kCP_BAD_FILE_REF_NUM",
                                      "CP_File(289) : IsOpen()"}));
}

TEST_F(File, TheLastPositionOf32BitsIsNoFailure) {
  CP_File file = OpenWith("");
  file.SetPosition(CP_FILE_SEEK__FROM_BEGIN, 0x7FFFFFFF);
  file.SetPosition(CP_FILE_SEEK__FROM_CURRENT, 0x7FFFFFFF);
  EXPECT_EQ(file.SetPosition(CP_FILE_SEEK__FROM_CURRENT, 1), 0xFFFFFFFFU);
  EXPECT_EQ(file.GetPosition(), 0xFFFFFFFFU);
  file.Close();
}

TEST_F(File, ReadStoresHowManyBytesCameAndAShortReadIsNoError) {
  CP_File file = OpenWith("hello");
  char buffer[8] = {'.', '.', '.', '.', '.', '.', '.', '.'};
  uint32_t count = 8;
  file.Read(buffer, &count);
  EXPECT_EQ(count, 5U);
  EXPECT_EQ(std::string(buffer, 8), "hello...");
  count = 8;
  file.Read(buffer, &count);
  EXPECT_EQ(count, 0U);
  file.Close();
}

TEST_F(File, ReadAdvancesThePosition) {
  CP_File file = OpenWith("hello");
  EXPECT_EQ(ReadAll(file, 2), "he");
  EXPECT_EQ(file.GetPosition(), 2U);
  EXPECT_EQ(ReadAll(file, 2), "ll");
  file.Close();
}

TEST_F(File, ReadOnAClosedFileReportsThenFailsAtThePlatform) {
  CP_File file(Spec("f"));
  char buffer[4];
  uint32_t count = 4;
  ReportRecorder reports;
  EXPECT_EQ(Thrown([&] { file.Read(buffer, &count); }), kFailedAt(373));
  EXPECT_EQ(reports.Lines(), Reports({"CP_File(348) : IsOpen()"}));
}

TEST_F(File, ReadReportsNullArgumentsAndFails) {
  CP_File file = OpenWith("hello");
  uint32_t count = 4;
  ReportRecorder reports;
  EXPECT_EQ(Thrown([&] { file.Read(nullptr, &count); }), kFailedAt(373));
  EXPECT_EQ(reports.Lines(), Reports({"CP_File(346) : inBuffer != NULL"}));
  reports.Clear();
  char buffer[4];
  EXPECT_EQ(Thrown([&] { file.Read(buffer, nullptr); }), kFailedAt(373));
  EXPECT_EQ(reports.Lines(), Reports({"CP_File(347) : inBytes != NULL"}));
  file.Close();
}

TEST_F(File, ReadOnAFileOpenForWritingOnlyThrows) {
  directory.Write("f", "hello");
  CP_File file(Spec("f"));
  file.Open(kWrite);
  EXPECT_EQ(Thrown([&] { ReadAll(file, 1); }), kFailedAt(373));
  file.Close();
}

TEST_F(File, WriteReplacesBytesAtThePositionAndLeavesTheCountAlone) {
  CP_File file = OpenWith("0123456789");
  file.SetPosition(CP_FILE_SEEK__FROM_BEGIN, 3);
  uint32_t count = 2;
  file.Write("ab", &count);
  EXPECT_EQ(count, 2U);
  EXPECT_EQ(file.GetPosition(), 5U);
  file.Close();
  EXPECT_EQ(directory.Read("f"), "012ab56789");
}

TEST_F(File, WriteOfNothingIsFine) {
  CP_File file = OpenWith("abc");
  const uint32_t count = 0;
  file.Write("x", &count);
  EXPECT_EQ(file.GetLength(), 3U);
  file.Close();
}

TEST_F(File, WriteOnAClosedFileReportsThenFailsAtThePlatform) {
  CP_File file(Spec("f"));
  const uint32_t count = 1;
  ReportRecorder reports;
  EXPECT_EQ(Thrown([&] { file.Write("x", &count); }), kFailedAt(405));
  EXPECT_EQ(reports.Lines(), Reports({"CP_File(388) : IsOpen()"}));
}

TEST_F(File, WriteReportsNullArgumentsAndFails) {
  CP_File file = OpenWith("hello");
  const uint32_t count = 4;
  ReportRecorder reports;
  EXPECT_EQ(Thrown([&] { file.Write(nullptr, &count); }), kFailedAt(405));
  EXPECT_EQ(reports.Lines(), Reports({"CP_File(386) : inBuffer != NULL"}));
  reports.Clear();
  EXPECT_EQ(Thrown([&] { file.Write("x", nullptr); }), kFailedAt(405));
  EXPECT_EQ(reports.Lines(), Reports({"CP_File(387) : inBytes != NULL"}));
  file.Close();
  EXPECT_EQ(directory.Read("f"), "hello");
}

TEST_F(File, WriteOnAFileOpenForReadingOnlyThrows) {
  directory.Write("f", "hello");
  CP_File file(Spec("f"));
  file.Open(kRead);
  const uint32_t count = 1;
  EXPECT_EQ(Thrown([&] { file.Write("x", &count); }), kFailedAt(405));
  EXPECT_EQ(Thrown([&] { file.WriteTruncate("x", &count); }), kFailedAt(441));
  const uint32_t nothing = 0;
  EXPECT_EQ(Thrown([&] { file.WriteTruncate("x", &nothing); }).first, -36);
  file.Close();
  EXPECT_EQ(directory.Read("f"), "hello");
}

TEST_F(File, WriteTruncateEndsTheFileBehindWhatItWrote) {
  CP_File file = OpenWith("0123456789");
  file.SetPosition(CP_FILE_SEEK__FROM_BEGIN, 3);
  uint32_t count = 2;
  file.WriteTruncate("ab", &count);
  EXPECT_EQ(count, 2U);
  file.Close();
  EXPECT_EQ(directory.Read("f"), "012ab");
}

TEST_F(File, WriteTruncateOfNothingAtPosition5LeavesAFileOf5Bytes) {
  CP_File file = OpenWith("0123456789");
  file.SetPosition(CP_FILE_SEEK__FROM_BEGIN, 5);
  const uint32_t count = 0;
  file.WriteTruncate("x", &count);
  EXPECT_EQ(file.GetLength(), 5U);
  file.Close();
  EXPECT_EQ(directory.Read("f"), "01234");
}

TEST_F(File, WriteTruncateReportsMisuseAtLinesOfItsOwn) {
  CP_File file(Spec("f"));
  const uint32_t count = 1;
  ReportRecorder reports;
  EXPECT_EQ(Thrown([&] { file.WriteTruncate("x", &count); }), kFailedAt(441));
  EXPECT_EQ(reports.Lines(), Reports({"CP_File(421) : IsOpen()"}));
  reports.Clear();
  EXPECT_EQ(Thrown([&] { file.WriteTruncate(nullptr, nullptr); }), kFailedAt(441));
  EXPECT_EQ(reports.Lines(),
            Reports({"CP_File(419) : inBuffer != NULL", "CP_File(420) : inBytes != NULL",
                     "CP_File(421) : IsOpen()"}));
}

TEST_F(File, TheLengthOfAClosedFileIsReportedTwiceAndThrows) {
  CP_File file(Spec("f"));
  ReportRecorder reports;
  EXPECT_EQ(Thrown([&] { file.GetLength(); }), kFailedAt(478));
  EXPECT_EQ(reports.Lines(), Reports({"CP_File(463) : IsOpen()",
                                      "CP_File(473) : ::GetFileType(fFileRef) == FILE_TYPE_DISK"}));
}

}  // namespace
