#include "platform/os/Files.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/TempDirectory.h"

namespace {

std::string FullPath(const char* path) {
  char buffer[os::kMaxPath];
  char* filePart = buffer;
  if (!os::FullPath(path, buffer, filePart))
    return filePart == nullptr ? "failed" : "failed with a part";
  return std::string(buffer) + " | " + (filePart != nullptr ? filePart : "no part");
}

TEST(FullPath, SaysWhereTheLastPartBegins) {
  EXPECT_EQ(FullPath("C:\\a\\b.txt"), "C:\\a\\b.txt | b.txt");
}

TEST(FullPath, HasNoPartBehindATrailingSeparator) {
  EXPECT_EQ(FullPath("C:\\a\\"), "C:\\a\\ | no part");
  EXPECT_EQ(FullPath("C:\\"), "C:\\ | no part");
}

TEST(FullPath, ResolvesDotsAndNeverLeavesTheRoot) {
  EXPECT_EQ(FullPath("C:\\a\\..\\b\\.\\c"), "C:\\b\\c | c");
  EXPECT_EQ(FullPath("C:\\..\\..\\a"), "C:\\a | a");
  EXPECT_EQ(FullPath("C:\\a\\.."), "C:\\ | no part");
}

TEST(FullPath, TakesASlashForASeparatorAndManyForOne) {
  EXPECT_EQ(FullPath("C:/a//\\b"), "C:\\a\\b | b");
}

TEST(FullPath, AnEmptyPathFails) {
  EXPECT_EQ(FullPath(""), "failed");
}

TEST(FullPath, ARelativePathIsResolvedAgainstTheCurrentDirectory) {
  const vm::TempDirectory directory;
  const vm::CurrentDirectory current(directory.Native());
  EXPECT_EQ(FullPath("x\\y"), directory.Path("x") + "\\y | y");
  EXPECT_EQ(FullPath(".\\y"), directory.Path("y") + " | y");
  EXPECT_EQ(FullPath("d\\..\\y"), directory.Path("y") + " | y");
}

TEST(CloseFile, RefusesAFileThatIsNotOpen) {
  EXPECT_FALSE(os::CloseFile(os::kNoFile));
}

TEST(OpenFile, LeavesTheReasonOfAFailure) {
  const vm::TempDirectory directory;
  EXPECT_EQ(os::OpenFile(directory.Path("f").c_str(), os::kAccessRead, os::kShareRead,
                         os::Creation::kExistingOnly),
            os::kNoFile);
  EXPECT_EQ(os::LastError(), 2);  // file not found
  directory.Write("f", "");
  EXPECT_EQ(os::OpenFile(directory.Path("f").c_str(), os::kAccessRead | os::kAccessWrite,
                         os::kShareRead, os::Creation::kNewOnly),
            os::kNoFile);
  EXPECT_EQ(os::LastError(), 80);  // file exists
}

TEST(OpenFile, ReachesTheSameFileThroughASlash) {
  const vm::TempDirectory directory;
  directory.Write("f", "");
  std::string path = directory.Path("f");
  for (char& c : path)
    c = c == '\\' ? '/' : c;
  const os::FileHandle file =
      os::OpenFile(path.c_str(), os::kAccessRead, os::kShareRead, os::Creation::kExistingOnly);
  ASSERT_NE(file, os::kNoFile);
  EXPECT_TRUE(os::IsDiskFile(file));
  EXPECT_TRUE(os::CloseFile(file));
}

TEST(RemoveFile, SaysWhetherItDid) {
  const vm::TempDirectory directory;
  directory.Write("f", "");
  EXPECT_TRUE(os::RemoveFile(directory.Path("f").c_str()));
  EXPECT_FALSE(os::RemoveFile(directory.Path("f").c_str()));
  EXPECT_EQ(os::LastError(), 2);
  EXPECT_FALSE(os::RemoveFile(directory.Path().c_str()));  // a directory is no file
  EXPECT_TRUE(directory.Has(""));
}

TEST(ReadFile, AndWriteFileMoveMoreThanOneBuffersWorth) {
  const vm::TempDirectory directory;
  std::vector<char> bytes(3 << 20);
  for (size_t i = 0; i < bytes.size(); ++i)
    bytes[i] = static_cast<char>(i * 7 + i / 251);
  const auto size = static_cast<uint32_t>(bytes.size());
  const os::FileHandle file =
      os::OpenFile(directory.Path("f").c_str(), os::kAccessRead | os::kAccessWrite, os::kShareWrite,
                   os::Creation::kAlways);
  ASSERT_NE(file, os::kNoFile);
  EXPECT_TRUE(os::WriteFile(file, bytes.data(), size));
  EXPECT_EQ(os::FileSize(file), size);
  EXPECT_EQ(os::SeekFile(file, 0, os::kSeekFromBegin), 0U);
  std::vector<char> back(bytes.size() + 1);
  uint32_t read = 0;
  EXPECT_TRUE(os::ReadFile(file, back.data(), size + 1, read));
  EXPECT_EQ(read, size);
  back.resize(read);
  EXPECT_TRUE(back == bytes);
  EXPECT_TRUE(os::CloseFile(file));
}

}  // namespace
