// The dialog procedure against the real file system of Windows, where open files exclude each
// other. The dialog itself is not shown: the procedure is called as the system would call it.

#include <windows.h>

#include <gtest/gtest.h>

#include <string>

#include "host/HostGlobals.h"
#include "host/WaitDialog.h"
#include "persistence/ZvModulePath.h"

namespace vm {
namespace {

class WaitDialogOnWindows : public testing::Test {
 protected:
  WaitDialogOnWindows() {
    ZvString directory;
    GetModuleDirectory(directory, gModule);
    mDoneFile = std::string(directory.c_str()) + "Flg2.h";
    DeleteFileA(mDoneFile.c_str());
  }
  ~WaitDialogOnWindows() override { DeleteFileA(mDoneFile.c_str()); }

  // Makes the file and holds it, letting others share it so.
  HANDLE Create(DWORD share) const {
    return CreateFileA(mDoneFile.c_str(), GENERIC_READ | GENERIC_WRITE, share, nullptr,
                       CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  }
  bool DoneFileIsThere() const {
    return GetFileAttributesA(mDoneFile.c_str()) != INVALID_FILE_ATTRIBUTES;
  }

  // One message that means nothing to the dialog: 1 if the reply was seen.
  static intptr_t Poll() { return DissolveProc(nullptr, 0xC123, 0, 0); }

  std::string mDoneFile;
};

TEST_F(WaitDialogOnWindows, AClosedDoneFileIsSeenAndDeleted) {
  EXPECT_EQ(Poll(), 0);
  CloseHandle(Create(0));
  EXPECT_EQ(Poll(), 1);
  EXPECT_FALSE(DoneFileIsThere());
  EXPECT_EQ(Poll(), 0);
}

TEST_F(WaitDialogOnWindows, ADoneFileThatTheApplicationStillHoldsIsNotSeenUntilItIsClosed) {
  for (const DWORD share : {DWORD{0}, DWORD{FILE_SHARE_READ}}) {
    const HANDLE held = Create(share);
    ASSERT_NE(held, INVALID_HANDLE_VALUE);
    EXPECT_EQ(Poll(), 0) << "sharing " << share;
    EXPECT_TRUE(DoneFileIsThere());
    CloseHandle(held);
    EXPECT_EQ(Poll(), 1) << "sharing " << share;
  }
}

TEST_F(WaitDialogOnWindows, AReadOnlyDoneFileIsNotSeen) {
  CloseHandle(Create(0));
  SetFileAttributesA(mDoneFile.c_str(), FILE_ATTRIBUTE_READONLY);
  const HANDLE writable =
      CreateFileA(mDoneFile.c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ, nullptr,
                  OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (writable != INVALID_HANDLE_VALUE) {
    CloseHandle(writable);
    SetFileAttributesA(mDoneFile.c_str(), FILE_ATTRIBUTE_NORMAL);
    GTEST_SKIP() << "this user may write read-only files";
  }
  EXPECT_EQ(Poll(), 0);
  EXPECT_TRUE(DoneFileIsThere());
  SetFileAttributesA(mDoneFile.c_str(), FILE_ATTRIBUTE_NORMAL);
}

TEST_F(WaitDialogOnWindows, CancelWhileTheDoneFileIsThereCountsAsDone) {
  CloseHandle(Create(0));
  EXPECT_EQ(DissolveProc(nullptr, WM_COMMAND, IDCANCEL, 0), 1);
  EXPECT_FALSE(DoneFileIsThere()) << "the poll comes first";
}

}  // namespace
}  // namespace vm
