#include "platform/os/Clipboard.h"

#include <windows.h>

namespace os {

bool IsClipboardFormatThere(uint32_t format) {
  return IsClipboardFormatAvailable(format) != 0;
}

bool OpenSystemClipboard() {
  return OpenClipboard(nullptr) != 0;
}

bool EmptySystemClipboard() {
  return EmptyClipboard() != 0;
}

void CloseSystemClipboard() {
  CloseClipboard();
}

bool PutClipboardBlock(uint32_t format, MemoryHandle block) {
  return SetClipboardData(format, reinterpret_cast<HANDLE>(block)) != nullptr;
}

MemoryHandle GetClipboardBlock(uint32_t format) {
  return reinterpret_cast<MemoryHandle>(GetClipboardData(format));
}

}  // namespace os
