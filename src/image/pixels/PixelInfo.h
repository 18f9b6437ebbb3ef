#pragma once

#include <cstddef>
#include <cstdint>

#include "foundation/FourCharCode.h"

// The figures that the images of one pixel type report. They are what readers of the files and
// callers of the image interface rely on, also where a record holds something else.
struct PixelInfo {
  int32_t bitsPerPixel;
  int32_t bytesPerPixel;
  int32_t bitsPerChannel;
  int32_t channels;
  uint32_t kind;   // pixel kind, four-character code
  uint32_t model;  // colour model, four-character code
  bool hasAlpha;
};

namespace vm {

// One channel of a record as raw storage, addressed through void* by the callers of GetChannel and
// PutChannel: `T` is the width that they expect.
template <class T>
void StoreChannel(void* out, T value) {
  __builtin_memcpy(out, &value, sizeof value);
}
template <class T>
T LoadChannel(const void* in) {
  T value;
  __builtin_memcpy(&value, in, sizeof value);
  return value;
}

}  // namespace vm
