#pragma once

#include <windows.h>

namespace os::win32 {

// Where resources are looked up; null is the program itself.
HMODULE ResourceModule();

}  // namespace os::win32
