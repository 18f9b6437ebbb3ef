#include "platform/os/Modules.h"

#include <windows.h>

#include <algorithm>

namespace os {

uint32_t ModuleFileName(void* module, char* buffer, uint32_t size) {
  const DWORD length = GetModuleFileNameA(static_cast<HMODULE>(module), buffer, size);
  // Some versions of the system fill the buffer to the last byte when the name is too long.
  const uint32_t kept = std::min<uint32_t>(length, size - 1);
  buffer[kept] = '\0';
  return kept;
}

}  // namespace os
