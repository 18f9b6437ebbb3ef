#include "platform/os/Dialog.h"

#include <windows.h>

namespace os {

static_assert(kDialogMessagePaint == WM_PAINT && kDialogMessageSetFont == WM_SETFONT &&
              kDialogMessageInit == WM_INITDIALOG && kDialogMessageCommand == WM_COMMAND &&
              kDialogMessageTimer == WM_TIMER && kDialogCancelButton == IDCANCEL &&
              kDialogControlClicked == BN_CLICKED);
static_assert(sizeof(uint32_t) == sizeof(UINT) && sizeof(uintptr_t) == sizeof(WPARAM) &&
              sizeof(intptr_t) == sizeof(LPARAM) && sizeof(intptr_t) == sizeof(INT_PTR));

intptr_t RunModalDialog(void* module, const char* templateName, WindowHandle owner,
                        DialogProcedure procedure, intptr_t parameter) {
  return DialogBoxParamA(static_cast<HINSTANCE>(module), templateName,
                         reinterpret_cast<HWND>(owner), reinterpret_cast<DLGPROC>(procedure),
                         parameter);
}

void EndDialog(WindowHandle dialog, intptr_t result) {
  ::EndDialog(reinterpret_cast<HWND>(dialog), result);
}

void StartDialogTimer(WindowHandle dialog, uintptr_t id, uint32_t milliseconds) {
  ::SetTimer(reinterpret_cast<HWND>(dialog), id, milliseconds, nullptr);
}

}  // namespace os
