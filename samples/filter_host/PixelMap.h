// Pixels that a filter asks the host to show, and the colours of the host's colour services.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "host/FilterRecord.h"

// The published layout of the two structures that go through displayPixels.
struct VRect {
  int32_t top;
  int32_t left;
  int32_t bottom;
  int32_t right;
};

struct PSPixelMap {
  int32_t version;  // 1
  VRect bounds;
  int32_t imageMode;
  int32_t rowBytes;
  int32_t colBytes;
  int32_t planeBytes;
  void* baseAddr;
  // Masks, from version 1 on; not looked at here.
  void* mat;
  void* masks;
  int32_t maskPhaseRow;
  int32_t maskPhaseCol;
};

namespace filter_host {

struct PaintedArea {
  int32_t row = 0;  // where the top left pixel goes
  int32_t column = 0;
  int32_t width = 0;
  int32_t height = 0;
  std::vector<uint8_t> bgrx;  // 4 bytes for each pixel, rows from the top
};

// The pixels of `area` in a form that can be painted. False for a map that can't be shown: null, no
// pixels, an area outside its bounds, or a mode other than 8-bit gray, RGB and CMYK.
bool PaintableArea(const PSPixelMap* map, const VRect* area, PaintedArea* out);

// Colour spaces of the colour services.
inline constexpr int16_t kSpaceRgb = 0;   // red, green, blue: 0 to 255
inline constexpr int16_t kSpaceHsb = 1;   // hue 0 to 359, saturation and brightness 0 to 100
inline constexpr int16_t kSpaceCmyk = 2;  // light, not ink: 0 full ink to 255 none
inline constexpr int16_t kSpaceGray = 4;  // 0 to 255
inline constexpr int16_t kSpaceHsl = 5;   // hue 0 to 359, saturation and lightness 0 to 100

// Converts by way of RGB. False, and nothing changed, for a space that isn't known.
bool ConvertColour(std::array<int16_t, 4>& components, int16_t from, int16_t to);

}  // namespace filter_host
