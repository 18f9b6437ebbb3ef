#include "platform/os/Files.h"

#include <windows.h>
#include <gtest/gtest.h>

#include <string>

#include "foundation/CP_Exceptions.h"
#include "platform/CP_File.h"
#include "support/TempDirectory.h"

namespace {

constexpr uint32_t kReadWrite = 0xC0000000;

// Another program's hold on a file: open with some access, letting everybody do everything.
class OtherHolder {
 public:
  OtherHolder(const std::string& path, DWORD access)
      : mFile(CreateFileA(path.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                          OPEN_EXISTING, 0, nullptr)) {}
  OtherHolder(const OtherHolder&) = delete;
  OtherHolder& operator=(const OtherHolder&) = delete;
  ~OtherHolder() {
    if (Got())
      CloseHandle(mFile);
  }

  bool Got() const { return mFile != INVALID_HANDLE_VALUE; }

 private:
  HANDLE mFile;
};

class Sharing : public testing::Test {
 protected:
  Sharing() { directory.Write("f", "hello"); }

  CP_File File() const { return CP_File(CP_FileSpec(path.c_str())); }

  vm::TempDirectory directory;
  const std::string path = directory.Path("f");
};

TEST_F(Sharing, WhileAFileIsOpenOthersMayReadItButNotWriteIt) {
  CP_File file = File();
  file.Open(kReadWrite);
  EXPECT_TRUE(OtherHolder(path, GENERIC_READ).Got());
  EXPECT_FALSE(OtherHolder(path, GENERIC_WRITE).Got());
  EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_SHARING_VIOLATION));
  file.Close();
  EXPECT_TRUE(OtherHolder(path, GENERIC_WRITE).Got());
}

TEST_F(Sharing, AFileThatAnotherIsWritingCanNotBeOpened) {
  const OtherHolder writer(path, GENERIC_WRITE);
  ASSERT_TRUE(writer.Got());
  EXPECT_THROW(File().Open(kReadWrite), CP_PlfrmErrorException);
  EXPECT_THROW(File().Open(os::kAccessRead), CP_PlfrmErrorException);
}

TEST_F(Sharing, AFileThatAnotherIsReadingCanBeOpened) {
  const OtherHolder reader(path, GENERIC_READ);
  ASSERT_TRUE(reader.Got());
  CP_File file = File();
  EXPECT_NO_THROW(file.Open(kReadWrite));
  file.Close();
}

TEST_F(Sharing, CreatingLetsOthersWriteMeanwhileButNotRead) {
  {
    const OtherHolder writer(path, GENERIC_WRITE);
    ASSERT_TRUE(writer.Got());
    EXPECT_NO_THROW(File().Create(kReadWrite, 0, 0, true));
  }
  const OtherHolder reader(path, GENERIC_READ);
  ASSERT_TRUE(reader.Got());
  EXPECT_THROW(File().Create(kReadWrite, 0, 0, true), CP_PlfrmErrorException);
}

TEST_F(Sharing, AnOpenFileIsNotDeleted) {
  CP_File file = File();
  file.Open(kReadWrite);
  File().Delete();
  EXPECT_TRUE(directory.Has("f"));
  file.Close();
  File().Delete();
  EXPECT_FALSE(directory.Has("f"));
}

TEST(CloseFile, ClosesTheHandleForGood) {
  const vm::TempDirectory directory;
  const os::FileHandle file = os::OpenFile(directory.Path("f").c_str(), os::kAccessWrite,
                                           os::kShareRead, os::Creation::kAlways);
  ASSERT_NE(file, os::kNoFile);
  EXPECT_TRUE(os::CloseFile(file));
  DWORD flags;
  EXPECT_FALSE(GetHandleInformation(reinterpret_cast<HANDLE>(file), &flags));
}

TEST(IsDiskFile, IsFalseForAPipe) {
  HANDLE readEnd = nullptr;
  HANDLE writeEnd = nullptr;
  ASSERT_TRUE(CreatePipe(&readEnd, &writeEnd, nullptr, 0));
  EXPECT_FALSE(os::IsDiskFile(reinterpret_cast<os::FileHandle>(readEnd)));
  CloseHandle(readEnd);
  CloseHandle(writeEnd);
}

TEST(OpenFile, GivesAHandleThatProcessesDoNotInherit) {
  const vm::TempDirectory directory;
  const os::FileHandle file = os::OpenFile(directory.Path("f").c_str(), os::kAccessWrite,
                                           os::kShareRead, os::Creation::kAlways);
  ASSERT_NE(file, os::kNoFile);
  DWORD flags = HANDLE_FLAG_INHERIT;
  EXPECT_TRUE(GetHandleInformation(reinterpret_cast<HANDLE>(file), &flags));
  EXPECT_EQ(flags & HANDLE_FLAG_INHERIT, 0U);
  EXPECT_TRUE(os::CloseFile(file));
}

}  // namespace
