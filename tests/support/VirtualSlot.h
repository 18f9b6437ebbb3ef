#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace vm {

// The place of a virtual operation in the table of the class that names it, which is where a caller
// built against the class finds it. Counts from 0; a virtual destructor takes two places. Holds for
// the C++ ABI that all our targets share on x86.
template <class Operation>
size_t VirtualSlot(Operation operation) {
  uintptr_t words[2];
  static_assert(sizeof(operation) == sizeof(words));
  std::memcpy(words, &operation, sizeof(words));
  return (words[0] - 1) / sizeof(void*);
}

}  // namespace vm
