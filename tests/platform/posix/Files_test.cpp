#include "platform/os/Files.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <string>

#include "platform/os/posix/NativePath.h"
#include "support/TempDirectory.h"

namespace {

TEST(NativePath, HasSlashesAndNoDrive) {
  EXPECT_EQ(os::posix::NativePath("\\tmp\\a\\Img.h"), "/tmp/a/Img.h");
  EXPECT_EQ(os::posix::NativePath(".\\Img.h"), "./Img.h");
  EXPECT_EQ(os::posix::NativePath("C:\\tmp\\a"), "/tmp/a");
  EXPECT_EQ(os::posix::NativePath("1:\\a"), "1:/a");
}

TEST(NativePath, ComesFromTheFrameworksForm) {
  EXPECT_EQ(os::posix::FrameworkPath("/tmp/a"), "\\tmp\\a");
}

TEST(FullPath, OfAnAbsoluteNativePathHasALeadingSeparatorAndNoDrive) {
  char buffer[os::kMaxPath];
  char* filePart = nullptr;
  ASSERT_TRUE(os::FullPath("/tmp/a", buffer, filePart));
  EXPECT_STREQ(buffer, "\\tmp\\a");
  EXPECT_STREQ(filePart, "a");
  ASSERT_TRUE(os::FullPath("/", buffer, filePart));
  EXPECT_STREQ(buffer, "\\");
  EXPECT_EQ(filePart, nullptr);
}

TEST(SeekFile, RefusesAPositionThatDoesNotFit32Bits) {
  const vm::TempDirectory directory;
  const os::FileHandle file = os::OpenFile(directory.Path("f").c_str(), os::kAccessWrite,
                                           os::kShareRead, os::Creation::kAlways);
  ASSERT_NE(file, os::kNoFile);
  EXPECT_EQ(os::SeekFile(file, 0x7FFFFFFF, os::kSeekFromBegin), 0x7FFFFFFFU);
  EXPECT_EQ(os::SeekFile(file, 0x7FFFFFFF, os::kSeekFromCurrent), 0xFFFFFFFEU);
  EXPECT_EQ(os::SeekFile(file, 2, os::kSeekFromCurrent), os::kBadPosition);
  EXPECT_EQ(os::LastError(), 87);  // invalid parameter
  EXPECT_EQ(os::SeekFile(file, 0, os::kSeekFromCurrent), 0xFFFFFFFEU);
  EXPECT_TRUE(os::CloseFile(file));
}

TEST(IsDiskFile, IsFalseForAPipe) {
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  EXPECT_FALSE(os::IsDiskFile(ends[0]));
  close(ends[0]);
  close(ends[1]);
}

TEST(OpenFile, IsNotInheritedByProcessesThatStart) {
  const vm::TempDirectory directory;
  const os::FileHandle file = os::OpenFile(directory.Path("f").c_str(), os::kAccessWrite,
                                           os::kShareRead, os::Creation::kAlways);
  ASSERT_NE(file, os::kNoFile);
  const std::string test = "test ! -e /proc/self/fd/" + std::to_string(file);
  EXPECT_EQ(std::system(test.c_str()), 0);
  EXPECT_TRUE(os::CloseFile(file));
}

}  // namespace
