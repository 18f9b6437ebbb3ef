#pragma once

#include <cstdint>

#include "platform/os/Dialog.h"

// The dialog that holds the host while the effects application works.
namespace vm {

// What ends the dialog. Anything but `kReplyArrived` (the system's -1 among it) means: no reply.
inline constexpr intptr_t kReplyArrived = 1;
inline constexpr intptr_t kWaitCancelled = 2;

inline constexpr char kWaitDialogTemplate[] = "VMCANCELDIALOG";

// The timer only makes sure that messages keep coming.
inline constexpr uintptr_t kWaitTimerId = 1000;
inline constexpr uint32_t kWaitTimerMilliseconds = 90;

}  // namespace vm

// The dialog's procedure, exported as `_DissolveProc@16`. On every message, whichever it is, it
// first looks for the application's done file; once that can be opened it is deleted and the dialog
// ends with `kReplyArrived`. Cancel ends it with `kWaitCancelled` and touches nothing.
extern "C" intptr_t OS_DIALOG_CALL DissolveProc(os::WindowHandle hDlg, uint32_t uMsg,
                                                uintptr_t wParam, intptr_t lParam);
