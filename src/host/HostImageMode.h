#pragma once

#include <cstdint>

namespace vm {

// An image mode of the host and a number of planes as one number to switch over. Numbers of planes
// that no document has don't collide with those that some have.
constexpr int64_t ModeAndPlanes(int32_t mode, int32_t planes) {
  return int64_t{mode} * 0x100000000 + planes;
}

}  // namespace vm
