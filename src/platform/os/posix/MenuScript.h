#pragma once

#include <cstdint>

#include "platform/os/Handles.h"

// What became of menus on a system that doesn't draw them.
namespace os::posix {

MenuHandle WindowMenu(WindowHandle window);
uint32_t MenuBarRedraws(WindowHandle window);
bool IsMenuAlive(MenuHandle menu);

}  // namespace os::posix
