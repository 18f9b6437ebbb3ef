#pragma once

#include <cstdint>

namespace os::posix {

// While one exists, block sizes are rounded up as some systems do, or every allocation fails. The
// youngest script is the one in force.
class MemoryScript {
 public:
  MemoryScript();
  MemoryScript(const MemoryScript&) = delete;
  MemoryScript& operator=(const MemoryScript&) = delete;
  ~MemoryScript();

  static const MemoryScript* Current();

  uint32_t granularity = 1;  // sizes are multiples of this
  bool allocationsFail = false;

 private:
  const MemoryScript* mPrevious;
};

// The blocks that were allocated and not freed yet.
uint32_t LivingMemoryBlocks();

}  // namespace os::posix
