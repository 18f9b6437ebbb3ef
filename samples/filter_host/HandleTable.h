// The host's handles: blocks of memory that a filter asks for by size and reaches through a pointer
// to a pointer, so that the host could move them.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "host/FilterRecord.h"

namespace filter_host {

// Owns every handle until it is disposed of. A pointer that is no live handle is refused by each
// operation and counted, never followed.
class HandleTable {
 public:
  HandleTable() = default;
  HandleTable(const HandleTable&) = delete;
  HandleTable& operator=(const HandleTable&) = delete;

  // Zeroed memory. Null for a negative size or when there is no memory.
  Handle New(int32_t size);
  Handle New(const std::string& bytes);
  void Dispose(Handle handle);
  // -1 for what is no handle.
  int32_t Size(Handle handle);
  // noErr, memFullErr, or -109 for what is no handle. Growing keeps the contents and zeroes the
  // rest; a locked handle keeps its size and answers memFullErr.
  OSErr SetSize(Handle handle, int32_t size);
  // The block, which stays where it is until the matching Unlock. Null for what is no handle.
  char* Lock(Handle handle);
  void Unlock(Handle handle);

  // A copy of the contents; false for what is no handle.
  bool Contents(Handle handle, std::string* outBytes) const;
  std::size_t LiveCount() const { return mBlocks.size(); }
  // Calls so far that named no live handle.
  int MisuseCount() const { return mMisuseCount; }

 private:
  struct Block {
    char* master = nullptr;  // the handle is the address of this
    std::vector<char> bytes;
    int32_t size = 0;
    int locks = 0;
  };
  Block* Find(Handle handle);

  std::map<Handle, std::unique_ptr<Block>> mBlocks;
  int mMisuseCount = 0;
};

}  // namespace filter_host
