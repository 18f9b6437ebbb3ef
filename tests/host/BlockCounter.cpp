#include "host/BlockCounter.h"

#include <cstdlib>
#include <new>

namespace {

constexpr size_t kMaxBlocks = 4096;

// Fixed memory: these run inside the allocator.
size_t gCountedSize = 0;
void* gCounted[kMaxBlocks];
int32_t gCountedBlocks = 0;
size_t gFailingSize = 0;
int32_t gBlocksBeforeFailure = 0;

void* Allocate(size_t size) {
  if (gFailingSize != 0 && size == gFailingSize && gBlocksBeforeFailure-- <= 0)
    throw std::bad_alloc();
  void* const block = std::malloc(size != 0 ? size : 1);
  if (block == nullptr)
    throw std::bad_alloc();
  if (gCountedSize != 0 && size == gCountedSize &&
      gCountedBlocks < static_cast<int32_t>(kMaxBlocks))
    gCounted[gCountedBlocks++] = block;
  return block;
}

void Free(void* block) {
  for (int32_t i = 0; block != nullptr && i < gCountedBlocks; ++i) {
    if (gCounted[i] == block) {
      gCounted[i] = gCounted[--gCountedBlocks];
      break;
    }
  }
  std::free(block);
}

}  // namespace

void* operator new(size_t size) {
  return Allocate(size);
}
void* operator new[](size_t size) {
  return Allocate(size);
}
void operator delete(void* block) noexcept {
  Free(block);
}
void operator delete[](void* block) noexcept {
  Free(block);
}
void operator delete(void* block, size_t) noexcept {
  Free(block);
}
void operator delete[](void* block, size_t) noexcept {
  Free(block);
}

namespace vm {

BlockCounter::BlockCounter(size_t size) {
  gCountedBlocks = 0;
  gCountedSize = size;
}

BlockCounter::~BlockCounter() {
  gCountedSize = 0;
  gCountedBlocks = 0;
}

int32_t BlockCounter::Live() const {
  return gCountedBlocks;
}

void BlockCounter::FailAfter(size_t size, int32_t count) {
  gBlocksBeforeFailure = count;
  gFailingSize = size;
}

void BlockCounter::FailNone() {
  gFailingSize = 0;
}

}  // namespace vm
