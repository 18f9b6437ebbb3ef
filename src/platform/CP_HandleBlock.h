#pragma once

#include <cstdint>

#include "foundation/CP_M_ReferenceCounted.h"
#include "platform/os/Handles.h"

// A counted block of movable platform memory, used for what goes to and from the clipboard. Every
// operation but the size reports "fBlock != NULL" when there is no memory, and then does nothing.
class CP_HandleBlock : public CP_M_ReferenceCounted {
 public:
  // Allocates `inSize` zero bytes. Reports "inSize >= 0" at 106 for a negative size; the block then
  // has no memory, as it has when the platform has none to give, which isn't reported here.
  explicit CP_HandleBlock(int32_t inSize);
  CP_HandleBlock(const CP_HandleBlock&) = delete;
  CP_HandleBlock& operator=(const CP_HandleBlock&) = delete;
  ~CP_HandleBlock() override;

  // Gives the memory back for good. Reports at 133.
  void Free();

  // Both do nothing when the block is in that state already. They report at 367 and 391.
  void Lock();
  void Unlock();

  // Locks the block and leaves it locked. The address, which is null for a block without memory or
  // of no bytes, is good until the next Unlock or Free. Reports at 181.
  void* GetPointer();

  // The size that was asked for, or less when the platform has less.
  int32_t GetSize() const;

  bool IsLocked() const { return fLocked; }

 private:
  void Allocate(int32_t inSize);

  os::MemoryHandle fBlock = nullptr;
  bool fOwnsBlock = true;
  bool fLocked = false;
  int32_t fRequestedSize;
  void* fPointer = nullptr;
};
