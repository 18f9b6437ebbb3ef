#include <windows.h>
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "foundation/CP_DebugAssert.h"
#include "foundation/CP_Exceptions.h"
#include "foundation/ReportHooks.h"
#include "platform/CP_File.h"
#include "platform/os/Process.h"
#include "platform/win32/ImportSpy.h"
#include "support/ReportRecorder.h"
#include "support/TempDirectory.h"
#include "support/UnexpectedReports.h"

namespace {

VM_SPY(CreateFileA);
VM_SPY(CloseHandle);
VM_SPY(DeleteFileA);
VM_SPY(SetFilePointer);
VM_SPY(ReadFile);
VM_SPY(WriteFile);
VM_SPY(SetEndOfFile);
VM_SPY(GetFileType);
VM_SPY(GetFileSize);
VM_SPY(GetFullPathNameA);
VM_SPY(CreateProcessA);
VM_SPY(MessageBoxA);
VM_SPY(OutputDebugStringA);
VM_SPY(DebugBreak);

class FileCalls : public testing::Test {
 protected:
  FileCalls() {
    directory.Write("f", "hello");
    vm::SpiedCalls().clear();
  }

  void ExpectOpened(const CreateFileASpy& spy, DWORD access, DWORD share, DWORD creation) const {
    ASSERT_EQ(spy.calls.size(), 1U);
    const auto& [name, gotAccess, gotShare, security, gotCreation, attributes, pattern] =
        spy.calls[0];
    EXPECT_EQ(gotAccess, access);
    EXPECT_EQ(gotShare, share);
    EXPECT_EQ(security, nullptr);
    EXPECT_EQ(gotCreation, creation);
    EXPECT_EQ(attributes, 128U);
    EXPECT_EQ(pattern, nullptr);
  }

  vm::TempDirectory directory;
  CP_File file{CP_FileSpec(directory.Path("f").c_str())};
};

TEST_F(FileCalls, CreateReplacesWithWriteSharingAndClosesWhatItGot) {
  CreateFileASpy create;
  CloseHandleSpy close;
  file.Create(0xC0000000, 0x2A2A2A2A, 0x54455854, true);
  ExpectOpened(create, 0xC0000000, 2, 2);
  EXPECT_EQ(close.calls.size(), 1U);
}

TEST_F(FileCalls, CreateWithoutReplaceAsksForANewFile) {
  file.Delete();
  CreateFileASpy create;
  file.Create(0x40000000, 0, 0, false);
  ExpectOpened(create, 0x40000000, 2, 1);
}

TEST_F(FileCalls, OpenAsksForAnExistingFileWithReadSharing) {
  CreateFileASpy create;
  file.Open(0x80000000);
  ExpectOpened(create, 0x80000000, 1, 3);
  file.Close();
}

TEST_F(FileCalls, OpenGivesTheFullPath) {
  CreateFileASpy create;
  std::string name;
  create.replacement = [&](LPCSTR path, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES security,
                           DWORD creation, DWORD attributes, HANDLE pattern) {
    name = path;
    return create.PassOn(path, access, share, security, creation, attributes, pattern);
  };
  file.Open(0x80000000);
  EXPECT_EQ(name, directory.Path("f"));
  file.Close();
}

TEST_F(FileCalls, DeleteIgnoresItsResult) {
  DeleteFileASpy remove;
  remove.replacement = [](LPCSTR) { return FALSE; };
  file.Delete();
  EXPECT_EQ(remove.calls.size(), 1U);
}

TEST_F(FileCalls, ClosingAClosedFileStillClosesHandleMinusOne) {
  vm::ReportRecorder reports;
  CloseHandleSpy close;
  file.Close();
  ASSERT_EQ(close.calls.size(), 1U);
  EXPECT_EQ(std::get<0>(close.calls[0]), INVALID_HANDLE_VALUE);
  EXPECT_EQ(reports.Lines().size(), 2U);
}

TEST_F(FileCalls, AFailingCloseIsReportedAndTheFileCountsAsClosed) {
  file.Open(0x80000000);
  vm::ReportRecorder reports;
  HANDLE handle = nullptr;
  {
    CloseHandleSpy close;
    close.replacement = [&](HANDLE closing) {
      handle = closing;
      return FALSE;
    };
    file.Close();
  }
  EXPECT_EQ(reports.Lines(), vm::Reports({"CP_File(268) : result == true"}));
  EXPECT_FALSE(file.IsOpen());
  CloseHandle(handle);
}

TEST_F(FileCalls, PositionsAreMovedWithANullHighPart) {
  file.Open(0x80000000);
  SetFilePointerSpy move;
  file.SetPosition(CP_FILE_SEEK__FROM_END, -2);
  file.GetPosition();
  ASSERT_EQ(move.calls.size(), 2U);
  EXPECT_EQ(std::get<1>(move.calls[0]), -2);
  EXPECT_EQ(std::get<2>(move.calls[0]), nullptr);
  EXPECT_EQ(std::get<3>(move.calls[0]), static_cast<DWORD>(FILE_END));
  EXPECT_EQ(std::get<1>(move.calls[1]), 0);
  EXPECT_EQ(std::get<2>(move.calls[1]), nullptr);
  EXPECT_EQ(std::get<3>(move.calls[1]), static_cast<DWORD>(FILE_CURRENT));
  file.Close();
}

TEST_F(FileCalls, ATransferIsOneCall) {
  file.Open(0xC0000000);
  ReadFileSpy read;
  WriteFileSpy write;
  SetEndOfFileSpy end;
  char buffer[4];
  uint32_t count = 4;
  file.Read(buffer, &count);
  file.Write(buffer, &count);
  EXPECT_EQ(end.calls.size(), 0U);
  file.WriteTruncate(buffer, &count);
  EXPECT_EQ(end.calls.size(), 1U);
  ASSERT_EQ(read.calls.size(), 1U);
  EXPECT_EQ(std::get<2>(read.calls[0]), 4U);
  EXPECT_EQ(std::get<4>(read.calls[0]), nullptr);
  ASSERT_EQ(write.calls.size(), 2U);
  EXPECT_EQ(std::get<2>(write.calls[0]), 4U);
  EXPECT_EQ(std::get<4>(write.calls[0]), nullptr);
  EXPECT_EQ(vm::SpiedCalls(),
            std::vector<std::string>({"ReadFile", "WriteFile", "WriteFile", "SetEndOfFile"}));
  file.Close();
}

TEST_F(FileCalls, AnEndThatCanNotBeSetThrowsAfterTheWrite) {
  file.Open(0xC0000000);
  SetEndOfFileSpy end;
  end.replacement = [](HANDLE) { return FALSE; };
  const uint32_t count = 1;
  try {
    file.WriteTruncate("x", &count);
    FAIL() << "nothing thrown";
  } catch (const CP_PlfrmErrorException& exception) {
    vm::ReportRecorder reports;
    exception.Report();
    EXPECT_EQ(exception.GetPlatformError(), -36);
    EXPECT_EQ(reports.Lines(), vm::Reports({"CP_File(446) : "}));
  }
  file.Close();
}

TEST_F(FileCalls, TheLengthAsksForTheTypeFirstAndForTheLowHalfOnly) {
  file.Open(0x80000000);
  vm::SpiedCalls().clear();
  GetFileTypeSpy type;
  GetFileSizeSpy size;
  EXPECT_EQ(file.GetLength(), 5U);
  EXPECT_EQ(vm::SpiedCalls(), std::vector<std::string>({"GetFileType", "GetFileSize"}));
  EXPECT_EQ(std::get<1>(size.calls.at(0)), nullptr);
  file.Close();
}

TEST_F(FileCalls, ATypeOtherThanADiskIsReportedAndTheLengthStillComes) {
  file.Open(0x80000000);
  GetFileTypeSpy type;
  type.replacement = [](HANDLE) -> DWORD { return FILE_TYPE_CHAR; };
  vm::ReportRecorder reports;
  EXPECT_EQ(file.GetLength(), 5U);
  EXPECT_EQ(reports.Lines(),
            vm::Reports({"CP_File(473) : ::GetFileType(fFileRef) == FILE_TYPE_DISK"}));
  file.Close();
}

TEST(FileSpecCalls, APathIsMadeAbsoluteInABufferOf260Bytes) {
  GetFullPathNameASpy full;
  CP_FileSpec("C:\\a\\b");
  ASSERT_EQ(full.calls.size(), 1U);
  EXPECT_EQ(std::get<1>(full.calls[0]), 260U);
}

TEST(ProcessCalls, AProgramIsStartedWithEverythingLeftOutButItsPathAndDirectory) {
  CreateProcessASpy create;
  CloseHandleSpy close;
  std::string program;
  std::string directory;
  bool startupIsZero = false;
  bool processIsZero = false;
  create.replacement = [&](LPCSTR application, LPSTR, LPSECURITY_ATTRIBUTES, LPSECURITY_ATTRIBUTES,
                           BOOL, DWORD, LPVOID, LPCSTR current, LPSTARTUPINFOA startup,
                           LPPROCESS_INFORMATION process) {
    program = application;
    directory = current;
    const STARTUPINFOA noStartup{};
    const PROCESS_INFORMATION noProcess{};
    static_assert(sizeof noStartup == 68 && sizeof noProcess == 16);
    startupIsZero = std::memcmp(startup, &noStartup, sizeof noStartup) == 0;
    processIsZero = std::memcmp(process, &noProcess, sizeof noProcess) == 0;
    return TRUE;
  };
  EXPECT_TRUE(os::StartProcess("C:\\plugins\\Vm.exe", "C:\\plugins\\"));
  ASSERT_EQ(create.calls.size(), 1U);
  EXPECT_EQ(program, "C:\\plugins\\Vm.exe");
  EXPECT_EQ(directory, "C:\\plugins\\");
  EXPECT_EQ(std::get<1>(create.calls[0]), nullptr);  // command line
  EXPECT_EQ(std::get<2>(create.calls[0]), nullptr);  // security of the process
  EXPECT_EQ(std::get<3>(create.calls[0]), nullptr);  // security of the thread
  EXPECT_EQ(std::get<4>(create.calls[0]), FALSE);    // inherited handles
  EXPECT_EQ(std::get<5>(create.calls[0]), 0U);       // flags
  EXPECT_EQ(std::get<6>(create.calls[0]), nullptr);  // environment
  // REQUIRED: the size field of the start-up information is zero as well, and the handles stay
  // open.
  EXPECT_TRUE(startupIsZero);
  EXPECT_TRUE(processIsZero);
  EXPECT_TRUE(close.calls.empty());
}

TEST(ReportCalls, AnAssertionWritesTheDebuggerLineShowsTheBoxAndBreaksOnCancel) {
  vm::SpiedCalls().clear();
  OutputDebugStringASpy line;
  MessageBoxASpy box;
  DebugBreakSpy debugBreak;
  std::string text;
  box.replacement = [&](HWND owner, LPCSTR shown, LPCSTR title, UINT style) {
    EXPECT_EQ(owner, nullptr);
    EXPECT_STREQ(title, "CP_Debug");
    EXPECT_EQ(style, 17U);
    text = shown;
    return IDCANCEL;
  };
  debugBreak.replacement = [] {};
  const vm::ReportHooks saved = vm::CurrentReportHooks();
  vm::CurrentReportHooks() = vm::HooksAtStart();
  CP_DebugAssert("CP_File", 256, "IsOpen()");
  vm::CurrentReportHooks() = saved;
  EXPECT_EQ(text, "Assertion thrown\rError: IsOpen()\rFile: CP_File\rLine:256");
  EXPECT_EQ(vm::SpiedCalls(),
            std::vector<std::string>({"OutputDebugStringA", "MessageBoxA", "DebugBreak"}));
}

}  // namespace
