// The image as the host keeps it for a filter: planes of 8 or 16 bits in one of the host's image
// modes, and the way between such planes and the pictures of image files.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "filter_host/Picture.h"

namespace filter_host {

enum class ColourFamily { kGray, kRgb, kCmyk, kOther };

// Full intensity of a 16-bit host channel; 8-bit channels have 255.
inline constexpr int32_t kHostWhite16 = 32768;

// One row of image mode and plane count. The last plane of an odd one out is alpha: gray 2, RGB 4,
// CMYK 5. Host planes hold light, not ink: in CMYK 0 is full ink and the full value no ink.
struct PlaneFormat {
  const char* name;  // as the command line spells it
  int16_t imageMode;
  int16_t planes;
  int16_t bytesPerSample;
  ColourFamily family;

  bool HasAlpha() const {
    return (family == ColourFamily::kGray && planes == 2) ||
           (family == ColourFamily::kRgb && planes == 4) ||
           (family == ColourFamily::kCmyk && planes == 5);
  }
  int32_t White() const { return bytesPerSample == 1 ? 255 : kHostWhite16; }
};

// Every format a picture can be converted to: gray, graya, gray16, graya32, rgb, rgba, rgb48,
// rgba64, cmyk, cmyka, cmyk64, cmyka80.
std::span<const PlaneFormat> PlaneFormats();
// Null when no format has the name.
const PlaneFormat* FindPlaneFormat(const std::string& name);

// Pixels interleaved, plane 0 first, rows without padding. Two-byte samples are in this machine's
// order.
struct HostPlanes {
  int32_t width = 0;
  int32_t height = 0;
  PlaneFormat format{};
  double dotsPerInch = 72.0;
  std::vector<uint8_t> samples;

  std::size_t PixelBytes() const {
    return static_cast<std::size_t>(format.planes) *
           static_cast<std::size_t>(format.bytesPerSample);
  }
  std::size_t RowBytes() const { return PixelBytes() * static_cast<std::size_t>(width); }
  uint8_t* Row(int32_t y) { return samples.data() + RowBytes() * static_cast<std::size_t>(y); }
  const uint8_t* Row(int32_t y) const {
    return samples.data() + RowBytes() * static_cast<std::size_t>(y);
  }
  // One sample, 0 to 255 or 0 to 65535.
  int32_t Sample(int32_t x, int32_t y, int32_t plane) const;
  void SetSample(int32_t x, int32_t y, int32_t plane, int32_t value);
};

// Gray to colour repeats the gray, colour to gray takes the luma 0.299, 0.587, 0.114. CMYK is
// complement with full grey-component replacement. A picture without alpha is opaque; a format
// without alpha gets the picture laid over white. Rounds to nearest.
HostPlanes PlanesFromPicture(const Picture& picture, const PlaneFormat& format);

// The way back: gray or RGB, with alpha where the format has one, 8 bits from 8 and 16 from 16.
// 16-bit values above 32768 are white; `outClamped`, if not null, gets how many there were.
// Throws Error for a format of no known family.
Picture PictureFromPlanes(const HostPlanes& planes, std::size_t* outClamped = nullptr);

// The coverage that a mask picture stands for: its gray times its alpha, one byte per pixel, 255
// selected.
std::vector<uint8_t> CoverageFromPicture(const Picture& picture);

// A `.planes` file holds host planes as they stand: one line of text
//   planes 1 WIDTH HEIGHT PLANES BYTES-PER-SAMPLE IMAGE-MODE
// ended by a line feed, then the samples, two-byte ones least significant byte first. Any image
// mode and plane count can stand there. ReadPlanes throws Error for anything else.
HostPlanes ReadPlanes(const std::string& path);
void WritePlanes(const std::string& path, const HostPlanes& planes);

// Blends `planes` towards `matte` (0 black to 1 white) by their alpha, as a host does before it
// hands transparent pixels to a filter that asks for a matte. Without alpha nothing changes.
void ApplyMatte(HostPlanes& planes, double matte);

// result = source + (result - source) * coverage / 255 in every sample, rounded.
void RestrictToSelection(HostPlanes& result, const HostPlanes& source,
                         std::span<const uint8_t> coverage);

}  // namespace filter_host
