#include "platform/os/Box.h"

#include <windows.h>

namespace os {

int32_t ShowBox(const char* text, const char* title, uint32_t style) {
  return MessageBoxA(nullptr, text, title, style);
}

}  // namespace os
