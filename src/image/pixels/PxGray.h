#pragma once

// Records with one gray or coverage value: PxGrayByte, PxGrayABytes, PxAlphaByte, PxGrayBit.

#include "image/pixels/PxViews.h"

namespace vm {

// The gray byte of three words: their average's high byte.
constexpr uint8_t GrayOfWords(const PxRgba64& in) {
  return static_cast<uint8_t>((in.red + in.green + in.blue) / 0x300);
}

}  // namespace vm

struct PxGrayByte {
  uint8_t gray = 0;

  static constexpr PixelInfo kInfo{8, 1, 8, 1, FourCC("GraB"), FourCC("GraB"), false};
  static constexpr char kName[] = "PxGrayByte";
  constexpr bool operator==(const PxGrayByte&) const = default;

  constexpr PxRgbaBytes GetRgba() const { return {gray, gray, gray, 255}; }
  constexpr void PutRgba(const PxRgbaBytes& in) { gray = vm::GrayOf(in.red, in.green, in.blue); }
  constexpr PxRgbBytes GetRgb() const { return {gray, gray, gray}; }
  constexpr void PutRgb(const PxRgbBytes& in) { gray = vm::GrayOf(in.red, in.green, in.blue); }
  // REQUIRED: a gray pixel covers fully whatever it holds, and coverage written into it leaves
  // black. Masks that are gray by mistake rely on it: they mask nothing.
  constexpr uint8_t GetByte() const { return 255; }
  constexpr void PutByte(uint8_t) { gray = 0; }
  constexpr PxRgba64 GetRgba64() const {
    const uint16_t v = vm::WordFromByte(gray);
    return {v, v, v, 0xFFFF};
  }
  constexpr void PutRgba64(const PxRgba64& in) { gray = vm::GrayOfWords(in); }
  void GetChannel(void* out, int32_t) const { vm::StoreChannel(out, gray); }
  void PutChannel(const void* in, int32_t) { gray = vm::LoadChannel<uint8_t>(in); }

  constexpr void Mix255(const PxGrayByte& src, float t) {
    gray = vm::MixByte255(gray, src.gray, vm::Weight255(t));
  }
  constexpr void Mix256(const PxGrayByte& src, float t) {
    gray = vm::MixByte256(gray, src.gray, vm::Weight256(t), 0);
  }
  constexpr void Invert() { gray = static_cast<uint8_t>(255 - gray); }
};
static_assert(sizeof(PxGrayByte) == 1);

struct PxGrayABytes {
  uint8_t gray = 0;
  uint8_t alpha = 0;

  static constexpr PixelInfo kInfo{16, 2, 8, 2, FourCC("GraA"), FourCC("GraB"), true};
  static constexpr char kName[] = "PxGrayABytes";
  constexpr bool operator==(const PxGrayABytes&) const = default;

  constexpr PxRgbaBytes GetRgba() const { return {gray, gray, gray, alpha}; }
  constexpr void PutRgba(const PxRgbaBytes& in) {
    *this = {vm::GrayOf(in.red, in.green, in.blue), in.alpha};
  }
  constexpr PxRgbBytes GetRgb() const { return {gray, gray, gray}; }
  constexpr void PutRgb(const PxRgbBytes& in) {
    *this = {vm::GrayOf(in.red, in.green, in.blue), 255};
  }
  constexpr uint8_t GetByte() const { return alpha; }
  constexpr void PutByte(uint8_t in) { *this = {255, in}; }
  // REQUIRED: alpha widens by a shift here, so full opacity is 0xFF00; narrowing gives 0xFF again.
  constexpr PxRgba64 GetRgba64() const {
    const uint16_t v = vm::WordFromByte(gray);
    return {v, v, v, static_cast<uint16_t>(alpha << 8)};
  }
  constexpr void PutRgba64(const PxRgba64& in) {
    *this = {vm::GrayOfWords(in), vm::ByteFromWord(in.alpha)};
  }
  void GetChannel(void* out, int32_t n) const { vm::StoreChannel(out, n == 1 ? alpha : gray); }
  void PutChannel(const void* in, int32_t n) {
    (n == 1 ? alpha : gray) = vm::LoadChannel<uint8_t>(in);
  }

  constexpr void Composite(const PxGrayABytes& src) {
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
  constexpr void Composite(const PxGrayABytes& src, float t) {
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
  constexpr void Mix255(const PxGrayABytes& src, float t) {
    const int32_t w = vm::Weight255(t);
    *this = {vm::MixByte255(gray, src.gray, w), vm::MixByte255(alpha, src.alpha, w)};
  }
  constexpr void Mix256(const PxGrayABytes& src, float t) {
    const int32_t w = vm::Weight256(t);
    *this = {vm::MixByte256(gray, src.gray, w, 0x7F), vm::MixByte256(alpha, src.alpha, w, 0x7F)};
  }
  constexpr void Invert() { gray = static_cast<uint8_t>(255 - gray); }

 private:
  constexpr void Over(const PxGrayABytes& src, int32_t s, int32_t A) {
    *this = {vm::OverByte(gray, src.gray, s, A), static_cast<uint8_t>(A)};
  }
};
static_assert(sizeof(PxGrayABytes) == 2);

struct PxAlphaByte {
  uint8_t alpha = 0;

  static constexpr PixelInfo kInfo{8, 1, 8, 1, FourCC("AlpB"), FourCC("AlpB"), true};
  static constexpr char kName[] = "PxAlphaByte";
  constexpr bool operator==(const PxAlphaByte&) const = default;

  constexpr PxRgbaBytes GetRgba() const { return {255, 255, 255, alpha}; }
  constexpr void PutRgba(const PxRgbaBytes& in) { alpha = in.alpha; }
  // REQUIRED: without an alpha of its own this view shows the coverage as gray, where GetRgba shows
  // white.
  constexpr PxRgbBytes GetRgb() const { return {alpha, alpha, alpha}; }
  constexpr void PutRgb(const PxRgbBytes& in) { alpha = vm::GrayOf(in.red, in.green, in.blue); }
  constexpr uint8_t GetByte() const { return alpha; }
  constexpr void PutByte(uint8_t in) { alpha = in; }
  constexpr PxRgba64 GetRgba64() const { return {0xFFFF, 0xFFFF, 0xFFFF, vm::WordFromByte(alpha)}; }
  constexpr void PutRgba64(const PxRgba64& in) { alpha = vm::ByteFromWord(in.alpha); }
  void GetChannel(void* out, int32_t) const { vm::StoreChannel(out, alpha); }
  void PutChannel(const void* in, int32_t) { alpha = vm::LoadChannel<uint8_t>(in); }

  constexpr void Mix255(const PxAlphaByte& src, float t) {
    alpha = vm::MixByte255(alpha, src.alpha, vm::Weight255(t));
  }
  constexpr void Mix256(const PxAlphaByte& src, float t) {
    alpha = vm::MixByte256(alpha, src.alpha, vm::Weight256(t), 0);
  }
  // There is no colour to invert: white's complement is not kept and coverage stays.
  constexpr void Invert() {}
};
static_assert(sizeof(PxAlphaByte) == 1);

// One bit. In tile storage eight of them share a byte; as a value it is the low bit of a byte whose
// other seven bits stay as they are.
struct PxGrayBit {
  uint8_t value = 0;

  static constexpr PixelInfo kInfo{1, 1, 1, 1, FourCC("GrBt"), FourCC("GraB"), false};
  static constexpr char kName[] = "PxGrayBit";
  constexpr bool operator==(const PxGrayBit&) const = default;

  constexpr bool IsSet() const { return (value & 1) != 0; }
  constexpr void Set(bool set) { value = static_cast<uint8_t>((value & 0xFE) | (set ? 1 : 0)); }

  constexpr PxRgbaBytes GetRgba() const {
    const uint8_t s = GetByte();
    return {s, s, s, s};
  }
  constexpr void PutRgba(const PxRgbaBytes& in) { Set(in.red + in.green + in.blue > 382); }
  constexpr PxRgbBytes GetRgb() const {
    const uint8_t s = GetByte();
    return {s, s, s};
  }
  constexpr void PutRgb(const PxRgbBytes& in) { Set(in.red + in.green + in.blue > 382); }
  constexpr uint8_t GetByte() const { return IsSet() ? 255 : 0; }
  constexpr void PutByte(uint8_t in) { Set(in > 127); }
  constexpr PxRgba64 GetRgba64() const {
    const uint16_t s = IsSet() ? 0xFFFF : 0;
    return {s, s, s, s};
  }
  constexpr void PutRgba64(const PxRgba64& in) { Set(in.red + in.green + in.blue > 0x17FFE); }
  // Moves the low bit of a byte and leaves the byte's other bits alone.
  void GetChannel(void* out, int32_t) const {
    const auto kept = static_cast<uint8_t>(vm::LoadChannel<uint8_t>(out) & 0xFE);
    vm::StoreChannel(out, static_cast<uint8_t>(kept | (value & 1)));
  }
  void PutChannel(const void* in, int32_t) { Set((vm::LoadChannel<uint8_t>(in) & 1) != 0); }

  // From half way on the bit is the source's.
  constexpr void Mix255(const PxGrayBit& src, float t) {
    if (vm::Weight255(t) > 127) {
      Set(src.IsSet());
    }
  }
  constexpr void Mix256(const PxGrayBit& src, float t) {
    const float dst = IsSet() ? 1.0F : 0.0F;
    const float from = src.IsSet() ? 1.0F : 0.0F;
    Set(dst * (1 - t) + from * t > 0.5F);
  }
  constexpr void Invert() { Set(!IsSet()); }
};
static_assert(sizeof(PxGrayBit) == 1);
