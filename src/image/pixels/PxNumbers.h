#pragma once

#include <cstdint>

// The number rules of the pixel formats. Every conversion between widths goes through these.
namespace vm {

// Byte to word: 0xFF becomes 0xFFFF.
constexpr uint16_t WordFromByte(uint8_t value) {
  return static_cast<uint16_t>(value * 0x101);
}

// Word to byte: the high byte.
constexpr uint8_t ByteFromWord(uint16_t value) {
  return static_cast<uint8_t>(value >> 8);
}

// Truncates toward zero. What an int32 can't hold goes to its nearest end, not-a-number to 0.
constexpr int32_t TruncToInt32(double value) {
  if (value >= 2147483647.0) {
    return INT32_MAX;
  }
  if (value > -2147483649.0) {
    return static_cast<int32_t>(value);
  }
  return value < 0 ? INT32_MIN : 0;
}
constexpr int32_t TruncToInt32(float value) {
  if (value >= 2147483648.0F) {
    return INT32_MAX;
  }
  if (value >= -2147483648.0F) {
    return static_cast<int32_t>(value);
  }
  return value < 0 ? INT32_MIN : 0;
}

// Truncated toward zero, then cut to the width's low bits.
constexpr uint8_t ByteFromFloat(float value) {
  return static_cast<uint8_t>(TruncToInt32(value));
}
constexpr uint16_t WordFromFloat(float value) {
  return static_cast<uint16_t>(TruncToInt32(value));
}
constexpr int8_t SignedByteFromFloat(float value) {
  return static_cast<int8_t>(static_cast<uint8_t>(TruncToInt32(value)));
}

// The average of three bytes, truncated.
constexpr uint8_t GrayOf(uint8_t red, uint8_t green, uint8_t blue) {
  return static_cast<uint8_t>((red + green + blue) / 3);
}

constexpr int32_t LimitTo(int32_t value, int32_t low, int32_t high) {
  return value < low ? low : value > high ? high : value;
}

}  // namespace vm
