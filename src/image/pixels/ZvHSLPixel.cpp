#include "image/pixels/ZvHSLPixel.h"

#include <algorithm>

void ZvHSLPixel::FromRgba(const PxRgbaBytes& in) {
  const int32_t r = in.red;
  const int32_t g = in.green;
  const int32_t b = in.blue;
  const int32_t largest = std::max({r, g, b});
  const int32_t smallest = std::min({r, g, b});
  const int32_t sum = largest + smallest;
  const int32_t d = largest - smallest;

  alpha = in.alpha;
  lightness = static_cast<uint8_t>(sum * 100 / 510);
  if (d == 0) {
    hue = 0;
    saturation = 0;
    return;
  }
  saturation = static_cast<uint8_t>(lightness < 50 ? d * 100 / sum : d * 100 / (510 - sum));

  int32_t degrees;
  if (largest == r) {
    degrees = (g - b) * 60 / d;
  } else if (largest == g) {
    degrees = (b - r) * 60 / d + 120;
  } else {
    degrees = (r - g) * 60 / d + 240;
  }
  if (degrees < 0) {
    degrees += 360;
  } else if (degrees > 360) {
    degrees -= 360;
  }
  hue = static_cast<int16_t>(degrees);
}

void ZvHSLPixel::ToRgba(PxRgbaBytes& out) const {
  const int32_t S = saturation;
  const int32_t L = lightness;
  // A hue outside the circle counts as the angle it stands for; 360 keeps its own sector.
  const int32_t H = hue >= 0 && hue <= 360 ? hue : (hue % 360 + 360) % 360;

  const int32_t v = L < 51 ? (S + 100) * L / 100 : L + S - L * S / 100;
  const int32_t m = v * 255 / 100;
  if (m < 1) {
    out = PxRgbaBytes::Of(0, 0, 0, alpha);
    return;
  }
  const int32_t n = L * 510 / 100 - m;
  const int32_t f = (m - n) * (H % 60) / 60;
  const int32_t up = n + f;
  const int32_t down = m - f;

  const auto set = [&](int32_t r, int32_t g, int32_t b) {
    out = PxRgbaBytes::Of(static_cast<uint8_t>(r), static_cast<uint8_t>(g), static_cast<uint8_t>(b),
                          alpha);
  };
  switch (H / 60) {
    case 1:
      return set(down, m, n);
    case 2:
      return set(n, m, up);
    case 3:
      return set(n, down, m);
    case 4:
      return set(up, n, m);
    case 5:
      return set(m, n, down);
    default:  // 0 and 6
      return set(m, up, n);
  }
}

void ZvHSLPixel::ToRgba(PxRgba64& out) const {
  PxRgbaBytes bytes;
  ToRgba(bytes);
  out = bytes.GetRgba64();
}
