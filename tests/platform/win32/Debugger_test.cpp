#include "platform/os/Debugger.h"

#include <windows.h>
#include <gtest/gtest.h>

#include <string>

namespace {

// Sees what an attached debugger would see: both calls reach one as an exception.
class Debugger {
 public:
  Debugger() : mHandler(AddVectoredExceptionHandler(1, Handle)) {
    sLine.clear();
    sBreaks = 0;
  }
  Debugger(const Debugger&) = delete;
  Debugger& operator=(const Debugger&) = delete;
  ~Debugger() { RemoveVectoredExceptionHandler(mHandler); }

  static std::string sLine;
  static int sBreaks;

 private:
  static LONG CALLBACK Handle(EXCEPTION_POINTERS* exception) {
    constexpr DWORD kDebugLine = 0x40010006;
    const EXCEPTION_RECORD& record = *exception->ExceptionRecord;
    if (record.ExceptionCode == kDebugLine) {
      // Length with the NUL, then the text.
      sLine.assign(reinterpret_cast<const char*>(record.ExceptionInformation[1]),
                   record.ExceptionInformation[0] - 1);
      return EXCEPTION_CONTINUE_EXECUTION;
    }
    if (record.ExceptionCode == EXCEPTION_BREAKPOINT) {
      ++sBreaks;
      // The debugger lets the program go on behind the one-byte instruction.
      exception->ContextRecord->Eip = reinterpret_cast<DWORD>(record.ExceptionAddress) + 1;
      return EXCEPTION_CONTINUE_EXECUTION;
    }
    return EXCEPTION_CONTINUE_SEARCH;
  }

  void* mHandler;
};

std::string Debugger::sLine;
int Debugger::sBreaks = 0;

TEST(WriteDebuggerLine, ReachesADebuggerAsItStands) {
  const Debugger debugger;
  os::WriteDebuggerLine("CP_File(256) : IsOpen()");
  EXPECT_EQ(Debugger::sLine, "CP_File(256) : IsOpen()");
}

TEST(BreakIntoDebugger, StopsThereAndComesBackIfTheDebuggerGoesOn) {
  const Debugger debugger;
  os::BreakIntoDebugger();
  EXPECT_EQ(Debugger::sBreaks, 1);
}

}  // namespace
