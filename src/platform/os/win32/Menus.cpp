#include "platform/os/Menus.h"

#include <windows.h>

#include <algorithm>

#include "platform/os/win32/ResourceModule.h"

namespace os {
namespace {

HMENU ToPlatform(MenuHandle menu) {
  return reinterpret_cast<HMENU>(menu);
}
MenuHandle FromPlatform(HMENU menu) {
  return reinterpret_cast<MenuHandle>(menu);
}

const char* ResourceName(int16_t number) {
  return MAKEINTRESOURCEA(static_cast<uint16_t>(number));
}

UINT_PTR SubMenuId(MenuHandle submenu) {
  return reinterpret_cast<UINT_PTR>(submenu);
}

}  // namespace

MenuHandle LoadMenuResource(int16_t number) {
  return FromPlatform(LoadMenuA(win32::ResourceModule(), ResourceName(number)));
}

AcceleratorHandle LoadAcceleratorResource(int16_t number) {
  return reinterpret_cast<AcceleratorHandle>(
      LoadAcceleratorsA(win32::ResourceModule(), ResourceName(number)));
}

int32_t CountMenuEntries(MenuHandle menu) {
  return GetMenuItemCount(ToPlatform(menu));
}

int32_t GetMenuEntryText(MenuHandle menu, int32_t position, char* buffer, int32_t size) {
  if (size < 1)
    return 0;
  buffer[0] = '\0';
  const int length =
      GetMenuStringA(ToPlatform(menu), static_cast<UINT>(position), buffer, size, MF_BYPOSITION);
  // A text that was cut doesn't end in a NUL on every version of the system.
  const int kept = std::clamp(length, 0, size - 1);
  buffer[kept] = '\0';
  return kept;
}

int32_t GetMenuEntryCommand(MenuHandle menu, int32_t position) {
  return static_cast<int32_t>(GetMenuItemID(ToPlatform(menu), position));
}

MenuHandle GetSubMenuAt(MenuHandle menu, int32_t position) {
  return FromPlatform(GetSubMenu(ToPlatform(menu), position));
}

void SetMenuEntryText(MenuHandle menu, int32_t position, int32_t command, const char* text) {
  ModifyMenuA(ToPlatform(menu), static_cast<UINT>(position), MF_BYPOSITION,
              static_cast<UINT_PTR>(command), text);
}

void SetMenuEntrySubMenu(MenuHandle menu, int32_t position, MenuHandle submenu, const char* text) {
  ModifyMenuA(ToPlatform(menu), static_cast<UINT>(position), MF_BYPOSITION | MF_POPUP,
              SubMenuId(submenu), text);
}

MenuHandle CreatePopup() {
  return FromPlatform(CreatePopupMenu());
}

void AppendMenuText(MenuHandle menu, int32_t command, const char* text) {
  AppendMenuA(ToPlatform(menu), MF_STRING, static_cast<UINT_PTR>(command), text);
}

void AppendMenuSubMenu(MenuHandle menu, MenuHandle submenu, const char* text) {
  AppendMenuA(ToPlatform(menu), MF_POPUP, SubMenuId(submenu), text);
}

void DestroyMenuTree(MenuHandle menu) {
  DestroyMenu(ToPlatform(menu));
}

void EnableMenuEntry(MenuHandle menu, int32_t position) {
  EnableMenuItem(ToPlatform(menu), static_cast<UINT>(position), MF_BYPOSITION | MF_ENABLED);
}

void DisableMenuEntry(MenuHandle menu, int32_t position) {
  EnableMenuItem(ToPlatform(menu), static_cast<UINT>(position),
                 MF_BYPOSITION | MF_DISABLED | MF_GRAYED);
}

bool IsMenuEntryEnabled(MenuHandle menu, int32_t position) {
  const UINT state = GetMenuState(ToPlatform(menu), static_cast<UINT>(position), MF_BYPOSITION);
  return state != UINT(-1) && (state & (MF_DISABLED | MF_GRAYED)) == 0;
}

void SetWindowMenu(WindowHandle window, MenuHandle menu) {
  SetMenu(reinterpret_cast<HWND>(window), ToPlatform(menu));
}

void RedrawMenuBar(WindowHandle window) {
  DrawMenuBar(reinterpret_cast<HWND>(window));
}

}  // namespace os
