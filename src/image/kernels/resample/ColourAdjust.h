#pragma once

#include <cstddef>
#include <cstdint>

#include "image/pixels/PxViews.h"

namespace vm {

// A shift of colours in hue, saturation and lightness.
struct ColourShift {
  int32_t hue;        // degrees, added
  float saturation;   // a factor
  int32_t lightness;  // percent, added

  // Hue and lightness are truncated.
  static ColourShift Of(float hue, float saturation, float lightness);
};

// Each pixel goes through ZvHSLPixel. The hue is taken around the circle, saturation and lightness
// are limited to 0 .. 100. Alpha is kept.
void ShiftColours(PxRgbaBytes* pixels, size_t count, const ColourShift& shift);

// Alpha times opacity, truncated and cut to the field's width.
void ScaleAlpha(PxRgbaBytes* pixels, size_t count, float opacity);
void ScaleAlpha(PxRgba64* pixels, size_t count, float opacity);

}  // namespace vm
