#include "platform/os/Memory.h"

#include <map>
#include <vector>

#include "platform/os/posix/MemoryScript.h"

namespace os {
namespace {

constexpr uint32_t kLargestBlock = 0x7FFFFFFF;

struct Blocks {
  // Handles are numbers, so that one that has gone is recognised and never stands for another.
  std::map<MemoryHandle, std::vector<uint8_t>> blocks;
  uintptr_t lastBlock = 0;
};

Blocks& All() {
  static Blocks blocks;
  return blocks;
}

std::vector<uint8_t>* Find(MemoryHandle block) {
  const auto found = All().blocks.find(block);
  return found == All().blocks.end() ? nullptr : &found->second;
}

}  // namespace

namespace posix {

namespace {

constinit const MemoryScript* gCurrent = nullptr;

}  // namespace

MemoryScript::MemoryScript() : mPrevious(gCurrent) {
  gCurrent = this;
}

MemoryScript::~MemoryScript() {
  gCurrent = mPrevious;
}

const MemoryScript* MemoryScript::Current() {
  return gCurrent;
}

uint32_t LivingMemoryBlocks() {
  return static_cast<uint32_t>(All().blocks.size());
}

}  // namespace posix

MemoryHandle AllocateMemory(MemoryUse, uint32_t size) {
  const posix::MemoryScript* const script = posix::MemoryScript::Current();
  if (size > kLargestBlock || (script != nullptr && script->allocationsFail))
    return nullptr;
  const uint32_t granularity = script == nullptr ? 1 : script->granularity;
  const uint32_t rounded = (size + granularity - 1) / granularity * granularity;
  const auto handle = reinterpret_cast<MemoryHandle>(++All().lastBlock);
  All().blocks[handle].resize(rounded);
  return handle;
}

void FreeMemory(MemoryHandle block) {
  All().blocks.erase(block);
}

void* LockMemory(MemoryHandle block) {
  std::vector<uint8_t>* const bytes = Find(block);
  return bytes == nullptr || bytes->empty() ? nullptr : bytes->data();
}

void UnlockMemory(MemoryHandle) {}

uint32_t SizeOfMemory(MemoryHandle block) {
  const std::vector<uint8_t>* const bytes = Find(block);
  return bytes == nullptr ? 0 : static_cast<uint32_t>(bytes->size());
}

}  // namespace os
