#include "platform/CP_HandleBlock.h"

#include <algorithm>

#include "foundation/CP_DebugAssert.h"
#include "platform/os/Memory.h"

namespace {

bool CheckBlock(os::MemoryHandle inBlock, int16_t inLine) {
  return CP_Check(inBlock != nullptr, "CP_HandleBlock", inLine, "fBlock != NULL");
}

}  // namespace

CP_HandleBlock::CP_HandleBlock(int32_t inSize) : fRequestedSize(inSize) {
  Allocate(inSize);
}

CP_HandleBlock::~CP_HandleBlock() {
  if (fOwnsBlock)
    Free();
}

void CP_HandleBlock::Allocate(int32_t inSize) {
  if (!CP_Check(inSize >= 0, "CP_HandleBlock", 106, "inSize >= 0"))
    return;
  fBlock = os::AllocateMemory(os::MemoryUse::kPrivate, static_cast<uint32_t>(inSize));
}

void CP_HandleBlock::Free() {
  if (!CheckBlock(fBlock, 133))
    return;
  if (fLocked)
    os::UnlockMemory(fBlock);
  fLocked = false;
  os::FreeMemory(fBlock);
  fBlock = nullptr;
  fPointer = nullptr;
}

void CP_HandleBlock::Lock() {
  if (!CheckBlock(fBlock, 367) || fLocked)
    return;
  fPointer = os::LockMemory(fBlock);
  fLocked = true;
}

void CP_HandleBlock::Unlock() {
  if (!CheckBlock(fBlock, 391) || !fLocked)
    return;
  os::UnlockMemory(fBlock);
  fLocked = false;
}

void* CP_HandleBlock::GetPointer() {
  CheckBlock(fBlock, 181);
  if (!fLocked)
    Lock();
  return fPointer;
}

int32_t CP_HandleBlock::GetSize() const {
  const int64_t size = os::SizeOfMemory(fBlock);
  return static_cast<int32_t>(std::min<int64_t>(size, fRequestedSize));
}
