// The framework's 48-bit colour: red, green and blue at 16 bits each, full scale 65535.
#pragma once

#include <cstdint>

class CP_RGBColor {
 public:
  // Black.
  CP_RGBColor() = default;
  CP_RGBColor(uint16_t inRed, uint16_t inGreen, uint16_t inBlue);
  CP_RGBColor(const CP_RGBColor&) = default;
  CP_RGBColor& operator=(const CP_RGBColor&) = default;
  virtual ~CP_RGBColor();

  uint16_t GetRed() const { return fRed; }
  uint16_t GetGreen() const { return fGreen; }
  uint16_t GetBlue() const { return fBlue; }

  void Set(uint16_t inRed, uint16_t inGreen, uint16_t inBlue);

  // Takes a platform colour number: 8 bits a channel in the low three bytes, red lowest. The top
  // byte is ignored. Each 8-bit value becomes 256 times itself, so full intensity gives 65280.
  void SetFromPlatform(uint32_t inColor);

  friend bool operator==(const CP_RGBColor& a, const CP_RGBColor& b) {
    return a.fRed == b.fRed && a.fGreen == b.fGreen && a.fBlue == b.fBlue;
  }

 private:
  uint16_t fRed = 0;
  uint16_t fGreen = 0;
  uint16_t fBlue = 0;
};
