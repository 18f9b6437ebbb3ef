#pragma once

// PNG through libpng's own high-level interface, without any conversion: what the codec's results
// are held against.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace vm {

struct RawPng {
  int32_t width = 0;
  int32_t height = 0;
  int32_t depth = 0;      // bits per sample
  int32_t colorType = 0;  // 0 gray, 2 RGB, 3 palette, 4 gray with alpha, 6 RGB with alpha
  bool interlaced = false;
  std::vector<std::vector<uint8_t>> rows;  // as they lie in the file, unfiltered

  struct Color {
    uint16_t red, green, blue;
  };
  struct Entry {
    Color color;
    uint16_t alpha;
  };
  std::vector<Entry> palette;
  bool hasTransparency = false;  // tRNS
  Color transparent{};  // the colour that is transparent, at the file's depth; gray in all three
  bool hasBackground = false;  // bKGD
  Color background{};  // at the file's depth; a palette's colour as bytes; gray in all three
  double gamma = 0;    // gAMA; 0 for none

  struct Text {
    std::string key;
    std::string text;
    int32_t compression;  // -1 none, 0 zTXt
  };
  std::vector<Text> texts;
  std::vector<int32_t> significantBits;  // sBIT: red, green, blue, gray, alpha

  int32_t Channels() const {
    return colorType == 2 ? 3 : colorType == 4 ? 2 : colorType == 6 ? 4 : 1;
  }
  // One sample, 1 to 16 bits.
  uint16_t Sample(int32_t x, int32_t y, int32_t channel) const;
};

// Nothing if libpng refuses the file.
std::optional<RawPng> ReadRawPng(const std::vector<uint8_t>& bytes);

struct SampleFile {
  std::string name;
  std::vector<uint8_t> bytes;
};
// The images that come with libpng's source.
std::vector<SampleFile> LibpngSamples();

}  // namespace vm
