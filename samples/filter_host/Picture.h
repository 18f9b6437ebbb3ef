// A picture as an image file holds it: interleaved samples, no colour management.
#pragma once

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

namespace filter_host {

// What went wrong with a file, an option or a picture, as one line for the user.
class Error : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// `channels` is 1 gray, 2 gray and alpha, 3 RGB, 4 RGBA; alpha is straight, not premultiplied.
// `bytesPerSample` is 1 or 2; two-byte samples are in this machine's order and span 0 to 65535.
// Rows follow each other without padding, the top row first.
struct Picture {
  int32_t width = 0;
  int32_t height = 0;
  int32_t channels = 0;
  int32_t bytesPerSample = 1;
  double dotsPerInch = 72.0;
  std::vector<uint8_t> samples;

  std::size_t RowBytes() const {
    return static_cast<std::size_t>(width) * static_cast<std::size_t>(channels) *
           static_cast<std::size_t>(bytesPerSample);
  }
  const uint8_t* Row(int32_t y) const {
    return samples.data() + RowBytes() * static_cast<std::size_t>(y);
  }
  uint8_t* Row(int32_t y) { return samples.data() + RowBytes() * static_cast<std::size_t>(y); }
  bool HasAlpha() const { return channels == 2 || channels == 4; }
};

// Reads a PNG of any colour type and depth; palettes and depths below 8 are expanded. Throws Error
// when the file can't be opened, isn't a PNG, or is damaged or cut.
Picture ReadPng(const std::string& path);

// Writes beside `path` under a temporary name and renames it when it is complete, so `path` is
// either the whole picture or what it was before. Throws Error; the temporary file is then gone.
void WritePng(const std::string& path, const Picture& picture);

}  // namespace filter_host
