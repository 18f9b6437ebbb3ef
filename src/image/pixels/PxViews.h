#pragma once

// The three records that are views: the forms in which pixels of any type are read and written,
// beside a single byte of coverage. All records are plain values whose fields stand in storage
// order, without padding. Every record offers
//
//   GetRgba, PutRgba        PxRgbaBytes
//   GetRgb, PutRgb          PxRgbBytes
//   GetByte, PutByte        one byte that best stands for coverage; not a gray value
//   GetRgba64, PutRgba64    PxRgba64, the neutral colour of the image interface
//   GetChannel, PutChannel  one channel, raw, (bits per channel + 7) / 8 bytes wide
//   Mix255, Mix256          blends of a second record of the type into this one, by a float t from
//   0 to 1 Invert                  the complement of each colour channel; alpha and coordinates
//   stay
//
// and those with colour and alpha
//
//   Composite(src)          src over this by src's alpha
//   Composite(src, t)       the same with the alpha times t
//
// RGB records number their channels 0 red, 1 green, 2 blue, 3 alpha, whatever the storage order;
// all others in storage order. An index that the record doesn't have addresses channel 0.

#include "image/pixels/PixelInfo.h"
#include "image/pixels/PxNumbers.h"

struct PxRgbaBytes;
struct PxRgba64;

namespace vm {

// The channel-wise byte mixes.
constexpr uint8_t MixByte255(uint8_t dst, uint8_t src, int32_t w) {
  return static_cast<uint8_t>((src * w + dst * (255 - w) + 0x7F) / 255);
}
constexpr uint8_t MixByte256(uint8_t dst, uint8_t src, int32_t w, int32_t rounding) {
  return static_cast<uint8_t>((src * w + dst * (256 - w) + rounding) >> 8);
}
constexpr int32_t Weight255(float t) {
  return ByteFromFloat(255 * t);
}
// Kept to 16 bits; a negative fraction keeps the low byte of its result all the same.
constexpr int32_t Weight256(float t) {
  return WordFromFloat(256 * t);
}

// One colour channel of src over dst: A is the new alpha, s the source's share.
constexpr uint8_t OverByte(uint8_t dst, uint8_t src, int32_t s, int32_t A) {
  return static_cast<uint8_t>((s * src + (A - s) * dst + A / 2) / A);
}
constexpr uint16_t OverWord(uint16_t dst, uint16_t src, uint32_t s, uint32_t A) {
  return static_cast<uint16_t>((src * s + dst * (A - s)) / A);
}

}  // namespace vm

struct PxRgbBytes {
  uint8_t blue = 0;
  uint8_t green = 0;
  uint8_t red = 0;

  static constexpr PixelInfo kInfo{24, 3, 8, 3, FourCC("RG24"), FourCC("Rgba"), false};
  static constexpr char kName[] = "PxRgbBytes";

  static constexpr PxRgbBytes Of(uint8_t r, uint8_t g, uint8_t b) { return {b, g, r}; }
  constexpr bool operator==(const PxRgbBytes&) const = default;

  constexpr PxRgbaBytes GetRgba() const;
  constexpr void PutRgba(const PxRgbaBytes& in);
  constexpr PxRgbBytes GetRgb() const { return *this; }
  constexpr void PutRgb(const PxRgbBytes& in) { *this = in; }
  constexpr uint8_t GetByte() const { return vm::GrayOf(red, green, blue); }
  constexpr void PutByte(uint8_t in) { red = green = blue = in; }
  constexpr PxRgba64 GetRgba64() const;
  constexpr void PutRgba64(const PxRgba64& in);

  void GetChannel(void* out, int32_t n) const {
    vm::StoreChannel(out, n == 1 ? green : n == 2 ? blue : red);
  }
  void PutChannel(const void* in, int32_t n) {
    (n == 1 ? green : n == 2 ? blue : red) = vm::LoadChannel<uint8_t>(in);
  }

  constexpr void Mix255(const PxRgbBytes& src, float t) {
    const int32_t w = vm::Weight255(t);
    blue = vm::MixByte255(blue, src.blue, w);
    green = vm::MixByte255(green, src.green, w);
    red = vm::MixByte255(red, src.red, w);
  }
  constexpr void Mix256(const PxRgbBytes& src, float t) {
    const int32_t w = vm::Weight256(t);
    blue = vm::MixByte256(blue, src.blue, w, 0);
    green = vm::MixByte256(green, src.green, w, 0);
    red = vm::MixByte256(red, src.red, w, 0);
  }
  constexpr void Invert() {
    *this = {uint8_t(255 - blue), uint8_t(255 - green), uint8_t(255 - red)};
  }
};
static_assert(sizeof(PxRgbBytes) == 3 && alignof(PxRgbBytes) == 1);

struct PxRgbaBytes {
  uint8_t blue = 0;
  uint8_t green = 0;
  uint8_t red = 0;
  uint8_t alpha = 0;

  static constexpr PixelInfo kInfo{32, 4, 8, 4, FourCC("Rgba"), FourCC("Rgba"), true};
  static constexpr char kName[] = "PxRgbaBytes";

  static constexpr PxRgbaBytes Of(uint8_t r, uint8_t g, uint8_t b, uint8_t a) {
    return {b, g, r, a};
  }
  constexpr bool operator==(const PxRgbaBytes&) const = default;

  constexpr PxRgbaBytes GetRgba() const { return *this; }
  constexpr void PutRgba(const PxRgbaBytes& in) { *this = in; }
  constexpr PxRgbBytes GetRgb() const { return {blue, green, red}; }
  constexpr void PutRgb(const PxRgbBytes& in) { *this = {in.blue, in.green, in.red, 255}; }
  constexpr uint8_t GetByte() const { return alpha; }
  constexpr void PutByte(uint8_t in) { *this = {255, 255, 255, in}; }
  constexpr PxRgba64 GetRgba64() const;
  constexpr void PutRgba64(const PxRgba64& in);

  void GetChannel(void* out, int32_t n) const {
    vm::StoreChannel(out, n == 1 ? green : n == 2 ? blue : n == 3 ? alpha : red);
  }
  void PutChannel(const void* in, int32_t n) {
    (n == 1 ? green : n == 2 ? blue : n == 3 ? alpha : red) = vm::LoadChannel<uint8_t>(in);
  }

  constexpr void Composite(const PxRgbaBytes& src) {
    const int32_t s = src.alpha;
    if (s == 0) {
      return;
    }
    if (s == 255) {
      *this = src;
      return;
    }
    Over(src, s, vm::LimitTo(alpha + s, 0, 255));
  }
  constexpr void Composite(const PxRgbaBytes& src, float t) {
    const int32_t s = vm::ByteFromFloat(static_cast<float>(src.alpha) * t);
    if (s == 0) {
      return;
    }
    if (s == 255) {
      *this = src;
      return;
    }
    Over(src, s, s * (255 - alpha) / 255 + alpha);
  }
  constexpr void Mix255(const PxRgbaBytes& src, float t) {
    const int32_t w = vm::Weight255(t);
    *this = {vm::MixByte255(blue, src.blue, w), vm::MixByte255(green, src.green, w),
             vm::MixByte255(red, src.red, w), vm::MixByte255(alpha, src.alpha, w)};
  }
  constexpr void Mix256(const PxRgbaBytes& src, float t) {
    const int32_t w = vm::Weight256(t);
    *this = {vm::MixByte256(blue, src.blue, w, 0x7F), vm::MixByte256(green, src.green, w, 0x7F),
             vm::MixByte256(red, src.red, w, 0x7F), vm::MixByte256(alpha, src.alpha, w, 0x7F)};
  }
  constexpr void Invert() {
    *this = {uint8_t(255 - blue), uint8_t(255 - green), uint8_t(255 - red), alpha};
  }

 private:
  constexpr void Over(const PxRgbaBytes& src, int32_t s, int32_t A) {
    *this = {vm::OverByte(blue, src.blue, s, A), vm::OverByte(green, src.green, s, A),
             vm::OverByte(red, src.red, s, A), static_cast<uint8_t>(A)};
  }
};
static_assert(sizeof(PxRgbaBytes) == 4 && alignof(PxRgbaBytes) == 1);

struct PxRgba64 {
  uint16_t red = 0;
  uint16_t green = 0;
  uint16_t blue = 0;
  uint16_t alpha = 0;

  static constexpr PixelInfo kInfo{64, 8, 16, 4, FourCC("Rg64"), FourCC("Rgba"), true};
  static constexpr char kName[] = "PxRgba64";

  constexpr bool operator==(const PxRgba64&) const = default;

  constexpr PxRgbaBytes GetRgba() const {
    return PxRgbaBytes::Of(vm::ByteFromWord(red), vm::ByteFromWord(green), vm::ByteFromWord(blue),
                           vm::ByteFromWord(alpha));
  }
  constexpr void PutRgba(const PxRgbaBytes& in) { *this = in.GetRgba64(); }
  constexpr PxRgbBytes GetRgb() const { return GetRgba().GetRgb(); }
  constexpr void PutRgb(const PxRgbBytes& in) { *this = in.GetRgba64(); }
  constexpr uint8_t GetByte() const { return vm::ByteFromWord(alpha); }
  constexpr void PutByte(uint8_t in) { *this = {0xFFFF, 0xFFFF, 0xFFFF, vm::WordFromByte(in)}; }
  constexpr PxRgba64 GetRgba64() const { return *this; }
  constexpr void PutRgba64(const PxRgba64& in) { *this = in; }

  void GetChannel(void* out, int32_t n) const {
    vm::StoreChannel(out, n == 1 ? green : n == 2 ? blue : n == 3 ? alpha : red);
  }
  void PutChannel(const void* in, int32_t n) {
    (n == 1 ? green : n == 2 ? blue : n == 3 ? alpha : red) = vm::LoadChannel<uint16_t>(in);
  }

  // REQUIRED: words composite by the exact "over" rule of alpha, without the byte form's rounding
  // and without its shortcut at full opacity.
  constexpr void Composite(const PxRgba64& src) { Over(src, src.alpha); }
  constexpr void Composite(const PxRgba64& src, float t) {
    Over(src, vm::WordFromFloat(static_cast<float>(src.alpha) * t));
  }
  // Both mixes are the 16-bit integer one, its weight held in 32 bits: t = 1 gives src exactly.
  constexpr void Mix255(const PxRgba64& src, float t) { Mix256(src, t); }
  constexpr void Mix256(const PxRgba64& src, float t) {
    const auto w = static_cast<uint32_t>(vm::TruncToInt32(65535 * t + 1));
    *this = {MixWord(red, src.red, w), MixWord(green, src.green, w), MixWord(blue, src.blue, w),
             MixWord(alpha, src.alpha, w)};
  }
  constexpr void Invert() {
    *this = {uint16_t(0xFFFF - red), uint16_t(0xFFFF - green), uint16_t(0xFFFF - blue), alpha};
  }

  static constexpr uint16_t MixWord(uint16_t dst, uint16_t src, uint32_t w) {
    return static_cast<uint16_t>((src * w + dst * (0x10000U - w)) >> 16);
  }

 private:
  constexpr void Over(const PxRgba64& src, uint32_t s) {
    if (s == 0) {
      return;
    }
    const uint32_t A = (0xFFFFU - alpha) * s / 0xFFFF + alpha;
    *this = {vm::OverWord(red, src.red, s, A), vm::OverWord(green, src.green, s, A),
             vm::OverWord(blue, src.blue, s, A), static_cast<uint16_t>(A)};
  }
};
static_assert(sizeof(PxRgba64) == 8 && alignof(PxRgba64) == 2);

constexpr PxRgbaBytes PxRgbBytes::GetRgba() const {
  return {blue, green, red, 255};
}
constexpr void PxRgbBytes::PutRgba(const PxRgbaBytes& in) {
  *this = {in.blue, in.green, in.red};
}
constexpr PxRgba64 PxRgbBytes::GetRgba64() const {
  return {vm::WordFromByte(red), vm::WordFromByte(green), vm::WordFromByte(blue), 0xFFFF};
}
constexpr void PxRgbBytes::PutRgba64(const PxRgba64& in) {
  *this = in.GetRgb();
}

constexpr PxRgba64 PxRgbaBytes::GetRgba64() const {
  return {vm::WordFromByte(red), vm::WordFromByte(green), vm::WordFromByte(blue),
          vm::WordFromByte(alpha)};
}
constexpr void PxRgbaBytes::PutRgba64(const PxRgba64& in) {
  *this = in.GetRgba();
}

inline constexpr PxRgba64 kRgba64Gray50{0x7FFF, 0x7FFF, 0x7FFF, 0xFFFF};
inline constexpr PxRgba64 kRgba64Gray75{0xBFFF, 0xBFFF, 0xBFFF, 0xFFFF};
inline constexpr PxRgba64 kRgba64Gray25{0x3FFF, 0x3FFF, 0x3FFF, 0xFFFF};
// White without coverage: the fill with which an image read from a stream is sized.
inline constexpr PxRgba64 kRgba64White{0xFFFF, 0xFFFF, 0xFFFF, 0};
// The default fill of tiled images.
inline constexpr PxRgba64 kRgba64Clear{0, 0, 0, 0};
inline constexpr PxRgba64 kRgba64Black{0, 0, 0, 0xFFFF};
inline constexpr PxRgba64 kRgba64MidGray{0x8080, 0x8080, 0x8080, 0};
