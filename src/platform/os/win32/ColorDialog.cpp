#include "platform/os/ColorDialog.h"

#include <windows.h>

#include <commdlg.h>

namespace os {
namespace {

#ifndef _WIN64
static_assert(sizeof(CHOOSECOLORA) == 0x24);
#endif

// Moves the dialog to the middle of the desktop, at a third of its height.
UINT_PTR CALLBACK ColorDialogHook(HWND dialog, UINT message, WPARAM, LPARAM) {
  if (message != WM_INITDIALOG)
    return 0;
  RECT own{};
  RECT desktop{};
  GetWindowRect(dialog, &own);
  GetWindowRect(GetDesktopWindow(), &desktop);
  const int x = (desktop.left + desktop.right) / 2 - (own.right - own.left) / 2;
  const int y = (desktop.top + desktop.bottom) / 3 - (own.bottom - own.top) / 3;
  SetWindowPos(dialog, nullptr, x, y, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
  return 1;  // the dialog chooses the control with the focus
}

}  // namespace

bool RunColorDialog(WindowHandle owner, uint32_t start, std::array<uint32_t, 16>& customColors,
                    uint32_t& out) {
  COLORREF custom[16];
  for (size_t i = 0; i < customColors.size(); ++i)
    custom[i] = customColors[i];
  CHOOSECOLORA dialog{};
  dialog.lStructSize = sizeof(dialog);
  dialog.hwndOwner = reinterpret_cast<HWND>(owner);
  dialog.lpCustColors = custom;
  dialog.rgbResult = start;
  dialog.Flags = CC_RGBINIT | CC_ENABLEHOOK;
  dialog.lpfnHook = ColorDialogHook;
  const bool chosen = ChooseColorA(&dialog) != 0;
  for (size_t i = 0; i < customColors.size(); ++i)
    customColors[i] = custom[i];
  if (chosen)
    out = dialog.rgbResult;
  return chosen;
}

}  // namespace os
