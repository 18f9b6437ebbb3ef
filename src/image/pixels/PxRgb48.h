#pragma once

#include "image/pixels/PxViews.h"

// REQUIRED: blue first, like the byte records of a device-independent bitmap and unlike PxRgba64.
struct PxRgb48 {
  uint16_t blue = 0;
  uint16_t green = 0;
  uint16_t red = 0;

  static constexpr PixelInfo kInfo{48, 6, 16, 3, FourCC("RG48"), FourCC("Rgba"), false};
  static constexpr char kName[] = "PxRgb48";
  constexpr bool operator==(const PxRgb48&) const = default;

  constexpr PxRgbBytes GetRgb() const {
    return {vm::ByteFromWord(blue), vm::ByteFromWord(green), vm::ByteFromWord(red)};
  }
  constexpr void PutRgb(const PxRgbBytes& in) {
    *this = {vm::WordFromByte(in.blue), vm::WordFromByte(in.green), vm::WordFromByte(in.red)};
  }
  constexpr PxRgbaBytes GetRgba() const { return GetRgb().GetRgba(); }
  constexpr void PutRgba(const PxRgbaBytes& in) { PutRgb(in.GetRgb()); }
  constexpr uint8_t GetByte() const { return GetRgb().GetByte(); }
  constexpr void PutByte(uint8_t in) { red = green = blue = vm::WordFromByte(in); }
  constexpr PxRgba64 GetRgba64() const { return {red, green, blue, 0xFFFF}; }
  constexpr void PutRgba64(const PxRgba64& in) { *this = {in.blue, in.green, in.red}; }
  void GetChannel(void* out, int32_t n) const {
    vm::StoreChannel(out, n == 1 ? green : n == 2 ? blue : red);
  }
  void PutChannel(const void* in, int32_t n) {
    (n == 1 ? green : n == 2 ? blue : red) = vm::LoadChannel<uint16_t>(in);
  }

  constexpr void HalfMix(const PxRgb48& src) {
    *this = {HalfOf(blue, src.blue), HalfOf(green, src.green), HalfOf(red, src.red)};
  }
  constexpr void FloatMix(const PxRgb48& src, float t) {
    *this = {FloatOf(blue, src.blue, t), FloatOf(green, src.green, t), FloatOf(red, src.red, t)};
  }
  // REQUIRED: the weight is kept to 16 bits, so t = 1 weighs 0 and leaves this pixel as it is.
  constexpr void IntegerMix(const PxRgb48& src, float t) {
    const uint32_t w = vm::WordFromFloat(65535 * t + 1);
    *this = {PxRgba64::MixWord(blue, src.blue, w), PxRgba64::MixWord(green, src.green, w),
             PxRgba64::MixWord(red, src.red, w)};
  }
  // Blends of whole images must reach the source at t = 1: the float form does.
  constexpr void Mix255(const PxRgb48& src, float t) { FloatMix(src, t); }
  constexpr void Mix256(const PxRgb48& src, float t) { IntegerMix(src, t); }
  constexpr void Invert() {
    *this = {uint16_t(0xFFFF - blue), uint16_t(0xFFFF - green), uint16_t(0xFFFF - red)};
  }

 private:
  static constexpr uint16_t HalfOf(uint16_t dst, uint16_t src) {
    return vm::WordFromFloat(static_cast<float>(dst) * 0.5F + static_cast<float>(src) * 0.5F);
  }
  static constexpr uint16_t FloatOf(uint16_t dst, uint16_t src, float t) {
    return vm::WordFromFloat(static_cast<float>(dst) * (1 - t) + static_cast<float>(src) * t);
  }
};
static_assert(sizeof(PxRgb48) == 6 && alignof(PxRgb48) == 2);
