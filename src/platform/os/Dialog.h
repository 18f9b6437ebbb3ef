#pragma once

#include <cstdint>

#include "platform/os/Handles.h"

// Modal dialogs made from a template resource: a loop that hands messages to a procedure until the
// procedure ends it. The numbers of the messages are those of Windows.
namespace os {

// How the system calls a dialog's procedure.
#if defined(_WIN32)
#define OS_DIALOG_CALL __stdcall
#else
#define OS_DIALOG_CALL
#endif

inline constexpr uint32_t kDialogMessagePaint = 0x000F;
inline constexpr uint32_t kDialogMessageSetFont = 0x0030;
inline constexpr uint32_t kDialogMessageInit = 0x0110;
inline constexpr uint32_t kDialogMessageCommand = 0x0111;
inline constexpr uint32_t kDialogMessageTimer = 0x0113;

// Id of the Cancel button: the low word of a command message's first parameter. The high word says
// what happened to the control, 0 for a click.
inline constexpr uint16_t kDialogCancelButton = 2;
inline constexpr uint16_t kDialogControlClicked = 0;

// Gives 1 for a message that it handled, else 0. An exception must not leave it.
using DialogProcedure = intptr_t(OS_DIALOG_CALL*)(WindowHandle dialog, uint32_t message,
                                                  uintptr_t first, intptr_t second);

// Runs the dialog that `templateName` names in the module's resources, over the window `owner`
// (which may be null), and gives what EndDialog was given; -1 when the dialog can't be made.
// `parameter` comes with kDialogMessageInit as the second parameter.
intptr_t RunModalDialog(void* module, const char* templateName, WindowHandle owner,
                        DialogProcedure procedure, intptr_t parameter);

// Ends the loop once the running call of the procedure returns.
void EndDialog(WindowHandle dialog, intptr_t result);

// From now on the dialog gets a kDialogMessageTimer with this id about every so many milliseconds,
// until it ends.
void StartDialogTimer(WindowHandle dialog, uintptr_t id, uint32_t milliseconds);

}  // namespace os
