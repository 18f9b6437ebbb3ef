#pragma once

#include <cstdint>

#include "image/pixels/PxViews.h"

// A colour as hue, saturation and lightness: the double hexcone model in integers, in which the
// images shift colours.
struct ZvHSLPixel {
  int16_t hue = 0;         // degrees, 0 to 360
  uint8_t saturation = 0;  // percent
  uint8_t lightness = 0;   // percent
  uint8_t alpha = 0;

  constexpr bool operator==(const ZvHSLPixel&) const = default;

  // Gray has hue and saturation 0.
  void FromRgba(const PxRgbaBytes& in);
  // REQUIRED: not the inverse of FromRgba. The threshold between the two forms of saturation is 51
  // percent of lightness here and 50 there, results are kept to a byte without limiting, and not
  // every gray comes back.
  void ToRgba(PxRgbaBytes& out) const;

  void FromRgba(const PxRgba64& in) { FromRgba(in.GetRgba()); }
  void ToRgba(PxRgba64& out) const;
};
