#include "platform/CP_RGBColor.h"

namespace {

// REQUIRED: the low byte of a channel stays empty: 255 becomes 65280, not 65535. Colours that came
// from the platform are compared and stored in this form.
uint16_t WidenChannel(uint32_t inEightBits) {
  return static_cast<uint16_t>((inEightBits & 0xFFu) << 8);
}

}  // namespace

CP_RGBColor::CP_RGBColor(uint16_t inRed, uint16_t inGreen, uint16_t inBlue)
    : fRed(inRed), fGreen(inGreen), fBlue(inBlue) {}

CP_RGBColor::~CP_RGBColor() = default;

void CP_RGBColor::Set(uint16_t inRed, uint16_t inGreen, uint16_t inBlue) {
  fRed = inRed;
  fGreen = inGreen;
  fBlue = inBlue;
}

void CP_RGBColor::SetFromPlatform(uint32_t inColor) {
  fRed = WidenChannel(inColor);
  fGreen = WidenChannel(inColor >> 8);
  fBlue = WidenChannel(inColor >> 16);
}
