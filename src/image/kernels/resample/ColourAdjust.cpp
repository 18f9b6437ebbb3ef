#include "image/kernels/resample/ColourAdjust.h"

#include "image/pixels/ZvHSLPixel.h"

namespace vm {

ColourShift ColourShift::Of(float hue, float saturation, float lightness) {
  return {TruncToInt32(hue), saturation, TruncToInt32(lightness)};
}

void ShiftColours(PxRgbaBytes* pixels, size_t count, const ColourShift& shift) {
  // Whole turns don't count; what is left is positive, so that no hue lies below the first sector.
  const int32_t turn = (shift.hue % 360 + 360) % 360;
  const int32_t lightness = LimitTo(shift.lightness, -100, 100);
  PxRgbaBytes before;
  PxRgbaBytes after;
  bool known = false;
  for (size_t i = 0; i < count; ++i) {
    // Neighbours are often alike.
    if (!known || !(pixels[i] == before)) {
      before = pixels[i];
      ZvHSLPixel hsl;
      hsl.FromRgba(before);
      hsl.hue = static_cast<int16_t>((hsl.hue + 360 + turn) % 360);
      hsl.saturation = static_cast<uint8_t>(
          LimitTo(TruncToInt32(static_cast<float>(hsl.saturation) * shift.saturation), 0, 100));
      hsl.lightness = static_cast<uint8_t>(LimitTo(hsl.lightness + lightness, 0, 100));
      hsl.ToRgba(after);
      known = true;
    }
    pixels[i] = after;
  }
}

void ScaleAlpha(PxRgbaBytes* pixels, size_t count, float opacity) {
  if (opacity == 1)
    return;
  for (size_t i = 0; i < count; ++i)
    pixels[i].alpha = ByteFromFloat(static_cast<float>(pixels[i].alpha) * opacity);
}

void ScaleAlpha(PxRgba64* pixels, size_t count, float opacity) {
  if (opacity == 1)
    return;
  for (size_t i = 0; i < count; ++i)
    pixels[i].alpha = WordFromFloat(static_cast<float>(pixels[i].alpha) * opacity);
}

}  // namespace vm
