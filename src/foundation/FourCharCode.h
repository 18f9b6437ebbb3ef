#pragma once

#include <cstdint>

// A four-character code as a number, first character in the most significant byte:
// FourCC("RG24") == 0x52473234.
constexpr uint32_t FourCC(const char (&text)[5]) {
  uint32_t code = 0;
  for (int i = 0; i < 4; ++i)
    code = code << 8 | static_cast<uint8_t>(text[i]);
  return code;
}
