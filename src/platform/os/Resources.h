// Resources that the program carries, by type and number.
#pragma once

#include <cstdint>
#include <span>

namespace os {

// The module whose resources are looked at from now on; null, as at the start, is the program's
// own.
void SetResourceModule(void* module);

// The bytes of a resource, which live as long as the module. Empty when there is no such resource.
std::span<const uint8_t> FindResourceBytes(const char* type, int16_t number);

}  // namespace os
