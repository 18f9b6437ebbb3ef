// The framework's 16-bit value types: a point, a rectangle and a size in platform coordinates
// (origin at the top left, y down). They are plain values with a fixed storage order; what order a
// constructor takes its arguments in is a matter of its own, see each type.
#pragma once

#include <cstdint>

// A position. Stored vertical first, written horizontal first.
struct CP_Point {
  int16_t vertical = 0;
  int16_t horizontal = 0;

  constexpr CP_Point() = default;
  constexpr CP_Point(int16_t inHorizontal, int16_t inVertical)
      : vertical(inVertical), horizontal(inHorizontal) {}

  // Widens both numbers, the horizontal one first.
  constexpr void Get(int32_t& outHorizontal, int32_t& outVertical) const {
    outHorizontal = horizontal;
    outVertical = vertical;
  }

  friend constexpr bool operator==(const CP_Point&, const CP_Point&) = default;
};

// A rectangle. Stored top, left, bottom, right; written left, top, right, bottom.
struct CP_Rect {
  int16_t top = 0;
  int16_t left = 0;
  int16_t bottom = 0;
  int16_t right = 0;

  constexpr CP_Rect() = default;
  constexpr CP_Rect(int16_t inLeft, int16_t inTop, int16_t inRight, int16_t inBottom)
      : top(inTop), left(inLeft), bottom(inBottom), right(inRight) {}

  friend constexpr bool operator==(const CP_Rect&, const CP_Rect&) = default;
};

struct CP_Size {
  int16_t width = 0;
  int16_t height = 0;

  constexpr CP_Size() = default;
  constexpr CP_Size(int16_t inWidth, int16_t inHeight) : width(inWidth), height(inHeight) {}

  friend constexpr bool operator==(const CP_Size&, const CP_Size&) = default;
};
