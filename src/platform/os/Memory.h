// Movable blocks of platform memory. A block has an address only while it is locked.
#pragma once

#include <cstdint>

#include "platform/os/Handles.h"

namespace os {

enum class MemoryUse : uint8_t {
  kPrivate,
  kClipboard,  // can be handed to other programs
};

// A zero-filled block. Null when the platform has no such block to give.
MemoryHandle AllocateMemory(MemoryUse use, uint32_t size);
void FreeMemory(MemoryHandle block);

// Null when the block can't be locked, a block of no bytes among others. Locks count.
void* LockMemory(MemoryHandle block);
void UnlockMemory(MemoryHandle block);

// At least the size that was asked for; 0 for no block.
uint32_t SizeOfMemory(MemoryHandle block);

}  // namespace os
