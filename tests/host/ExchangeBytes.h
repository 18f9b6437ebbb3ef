#pragma once

#include <cstdint>
#include <string>
#include <vector>

// The bytes of the exchange file, spelled out field by field and without the code under test.
namespace vm {

// Most significant byte first.
inline std::string Sint32(int64_t value) {
  std::string bytes;
  for (int shift = 24; shift >= 0; shift -= 8)
    bytes.push_back(static_cast<char>(value >> shift));
  return bytes;
}

// A 16-bit length and the characters.
inline std::string Text(const std::string& text) {
  std::string bytes;
  bytes.push_back(static_cast<char>(text.size() >> 8));
  bytes.push_back(static_cast<char>(text.size()));
  return bytes + text;
}

inline std::string Raw(const std::vector<uint8_t>& bytes) {
  return {bytes.begin(), bytes.end()};
}

// An image as an object: class name, size, the whole image as the clip, no resolution, "Compress"
// 0, and the planes one after the other.
inline std::string ImageObject(const std::string& className, int32_t width, int32_t height,
                               const std::vector<uint8_t>& planes) {
  return Text(className) + Sint32(width) + Sint32(height) + Sint32(0) + Sint32(0) +
         Sint32(int64_t{width} - 1) + Sint32(int64_t{height} - 1) + std::string(8, '\0') +
         std::string(1, '\0') + Raw(planes);
}

// The fields in their order; the same shape serves request and reply.
struct Exchange {
  std::string effectName;
  std::string block;
  int32_t colorType = 2;
  std::string mask;   // an object; empty for none
  std::string image;  // an object

  std::string Bytes() const {
    std::string bytes = Sint32(static_cast<int64_t>(effectName.size()));
    if (!effectName.empty())
      bytes += Text(effectName);
    bytes += Sint32(static_cast<int64_t>(block.size())) + block;
    bytes += Sint32(colorType);
    bytes += mask.empty() ? '\0' : '\1';
    return bytes + mask + image;
  }
};

}  // namespace vm
