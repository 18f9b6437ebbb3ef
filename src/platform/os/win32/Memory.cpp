#include "platform/os/Memory.h"

#include <windows.h>

namespace os {
namespace {

HGLOBAL ToPlatform(MemoryHandle block) {
  return reinterpret_cast<HGLOBAL>(block);
}

}  // namespace

MemoryHandle AllocateMemory(MemoryUse use, uint32_t size) {
  const UINT sharing = use == MemoryUse::kClipboard ? GMEM_DDESHARE : 0;
  return reinterpret_cast<MemoryHandle>(GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT | sharing, size));
}

void FreeMemory(MemoryHandle block) {
  GlobalFree(ToPlatform(block));
}

void* LockMemory(MemoryHandle block) {
  return GlobalLock(ToPlatform(block));
}

void UnlockMemory(MemoryHandle block) {
  GlobalUnlock(ToPlatform(block));
}

uint32_t SizeOfMemory(MemoryHandle block) {
  return static_cast<uint32_t>(GlobalSize(ToPlatform(block)));
}

}  // namespace os
