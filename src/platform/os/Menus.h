// Platform menus. Positions count from 0 here; a position or a handle that doesn't exist makes a
// call fail, and never anything worse.
#pragma once

#include <cstdint>

#include "platform/os/Handles.h"

namespace os {

// Null when the program has no such menu resource.
MenuHandle LoadMenuResource(int16_t number);
AcceleratorHandle LoadAcceleratorResource(int16_t number);

// -1 for no menu.
int32_t CountMenuEntries(MenuHandle menu);

// Copies up to `size` - 1 characters of the entry's text and a NUL. Yields the number of
// characters, 0 with an empty text for an entry that doesn't exist.
int32_t GetMenuEntryText(MenuHandle menu, int32_t position, char* buffer, int32_t size);

// The entry's command number: 0 for a separator, -1 for a submenu or an entry that doesn't exist.
int32_t GetMenuEntryCommand(MenuHandle menu, int32_t position);

MenuHandle GetSubMenuAt(MenuHandle menu, int32_t position);

// Turns the entry into a plain one. A submenu that hung there is destroyed.
void SetMenuEntryText(MenuHandle menu, int32_t position, int32_t command, const char* text);

// Turns the entry into one that opens `submenu`.
void SetMenuEntrySubMenu(MenuHandle menu, int32_t position, MenuHandle submenu, const char* text);

MenuHandle CreatePopup();
void AppendMenuText(MenuHandle menu, int32_t command, const char* text);
void AppendMenuSubMenu(MenuHandle menu, MenuHandle submenu, const char* text);

// Destroys the menu and the submenus that hang in it.
void DestroyMenuTree(MenuHandle menu);

void EnableMenuEntry(MenuHandle menu, int32_t position);
// The entry is shown grey and can't be chosen.
void DisableMenuEntry(MenuHandle menu, int32_t position);
bool IsMenuEntryEnabled(MenuHandle menu, int32_t position);

// Makes `menu` the menu bar of a window.
void SetWindowMenu(WindowHandle window, MenuHandle menu);
void RedrawMenuBar(WindowHandle window);

}  // namespace os
