#include "host/WaitDialog.h"

#include "host/ExchangeFiles.h"
#include "host/HostGlobals.h"
#include "persistence/ZvModulePath.h"

namespace {

// True, with the file deleted, once the application has created and closed its done file. Opening
// it is the test: that fails for a missing file, and on Windows while the application still holds
// it. Nothing is kept between calls, so the file system is the only memory.
bool TakeDoneFile() {
  // Nothing may be thrown into the system's dialog manager, which calls this.
  try {
    ZvString directory;
    GetModuleDirectory(directory, gModule);
    const auto stream = vm::NewExchangeStream(gDoneFileName, directory);
    stream->Open(ZvFileStream::kModeReadWrite);
    stream->Close();
    stream->DeleteOnDisk();
    return true;
  } catch (...) {
    return false;
  }
}

constexpr uint16_t LowWord(uintptr_t value) {
  return static_cast<uint16_t>(value);
}

constexpr uint16_t HighWord(uintptr_t value) {
  return static_cast<uint16_t>(value >> 16);
}

}  // namespace

intptr_t OS_DIALOG_CALL DissolveProc(os::WindowHandle hDlg, uint32_t uMsg, uintptr_t wParam,
                                     intptr_t /*lParam*/) {
  if (TakeDoneFile()) {
    os::EndDialog(hDlg, vm::kReplyArrived);
    return 1;
  }
  switch (uMsg) {
    case os::kDialogMessageInit:
      os::StartDialogTimer(hDlg, vm::kWaitTimerId, vm::kWaitTimerMilliseconds);
      return 1;
    case os::kDialogMessageCommand:
      if (LowWord(wParam) == os::kDialogCancelButton &&
          HighWord(wParam) == os::kDialogControlClicked) {
        os::EndDialog(hDlg, vm::kWaitCancelled);
        return 1;
      }
      return 0;
    default:
      return 0;
  }
}
