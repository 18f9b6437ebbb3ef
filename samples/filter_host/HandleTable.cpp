#include "filter_host/HandleTable.h"

#include <algorithm>
#include <new>

namespace filter_host {

namespace {
constexpr OSErr kNilHandleErr = -109;
}

Handle HandleTable::New(int32_t size) {
  if (size < 0) {
    return nullptr;
  }
  try {
    auto block = std::make_unique<Block>();
    // At least one byte, so that the block of an empty handle is not null.
    block->bytes.resize(static_cast<std::size_t>(std::max(size, 1)));
    block->size = size;
    block->master = block->bytes.data();
    const Handle handle = &block->master;
    mBlocks.emplace(handle, std::move(block));
    return handle;
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

Handle HandleTable::New(const std::string& bytes) {
  const Handle handle = New(static_cast<int32_t>(bytes.size()));
  if (handle != nullptr) {
    std::copy(bytes.begin(), bytes.end(), *handle);
  }
  return handle;
}

void HandleTable::Dispose(Handle handle) {
  if (Find(handle) != nullptr) {
    mBlocks.erase(handle);
  }
}

int32_t HandleTable::Size(Handle handle) {
  const Block* block = Find(handle);
  return block == nullptr ? -1 : block->size;
}

OSErr HandleTable::SetSize(Handle handle, int32_t size) {
  Block* block = Find(handle);
  if (block == nullptr) {
    return kNilHandleErr;
  }
  if (size < 0 || (block->locks > 0 && size != block->size)) {
    return memFullErr;
  }
  try {
    std::vector<char> bytes(static_cast<std::size_t>(std::max(size, 1)));
    std::copy_n(block->master, std::min(size, block->size), bytes.begin());
    block->bytes = std::move(bytes);
  } catch (const std::bad_alloc&) {
    return memFullErr;
  }
  block->size = size;
  block->master = block->bytes.data();
  return noErr;
}

char* HandleTable::Lock(Handle handle) {
  Block* block = Find(handle);
  if (block == nullptr) {
    return nullptr;
  }
  ++block->locks;
  return block->master;
}

void HandleTable::Unlock(Handle handle) {
  Block* block = Find(handle);
  if (block != nullptr && block->locks > 0) {
    --block->locks;
  }
}

bool HandleTable::Contents(Handle handle, std::string* outBytes) const {
  const auto found = mBlocks.find(handle);
  if (found == mBlocks.end()) {
    return false;
  }
  outBytes->assign(found->second->bytes.data(), static_cast<std::size_t>(found->second->size));
  return true;
}

HandleTable::Block* HandleTable::Find(Handle handle) {
  const auto found = mBlocks.find(handle);
  if (found == mBlocks.end()) {
    ++mMisuseCount;
    return nullptr;
  }
  return found->second.get();
}

}  // namespace filter_host
