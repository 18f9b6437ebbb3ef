#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

// Memory as the kernels take it: records as whole little-endian numbers, at any address, and rows
// of them.
namespace vm {

template <class T>
T Load(const void* from) {
  T value;
  std::memcpy(&value, from, sizeof value);
  return value;
}
template <class T>
void Store(void* to, T value) {
  std::memcpy(to, &value, sizeof value);
}

// memcpy and memmove for rows that may be empty, whose addresses may then be null.
inline void CopyBytesOf(void* to, const void* from, size_t bytes) {
  if (bytes != 0)
    std::memcpy(to, from, bytes);
}
inline void MoveBytesOf(void* to, const void* from, size_t bytes) {
  if (bytes != 0)
    std::memmove(to, from, bytes);
}

}  // namespace vm
