#pragma once

// The four CMYK records. 0 is no ink, all ones is full ink. Reports carry the source name
// `ZvCmykPixels`.

#include <algorithm>

#include "image/pixels/PxViews.h"

namespace vm {

// Where PxCmykBytes reports "0": one fixed line for each of its views that can't convert.
inline constexpr int16_t kCmykGetRgbLine = 210;
inline constexpr int16_t kCmykPutRgbaLine = 226;
inline constexpr int16_t kCmykPutRgbLine = 233;
void ReportCmykMisuse(int16_t line);

#include "image/pixels/InkTables.inl"

// Ink words index the 256 entries of a curve directly while they fit and by their high byte above.
// (So the curve falls back from 255 to 256: values up to 255 are those that byte colours make,
// larger ones come from hosts.)
constexpr uint8_t InkCurveAt(int32_t ink, uint16_t value) {
  return kInkCurve[ink][value <= 255 ? value : value >> 8];
}

// Gray component replacement: what the three complements have in common goes to black.
struct InkWords {
  uint16_t cyan, magenta, yellow, black;
};
constexpr InkWords ReplaceGray(uint16_t cyan, uint16_t magenta, uint16_t yellow) {
  const uint16_t black = std::min({cyan, magenta, yellow});
  return {uint16_t(cyan - black), uint16_t(magenta - black), uint16_t(yellow - black), black};
}

constexpr uint8_t LimitedComplement(int32_t ink, int32_t black) {
  return static_cast<uint8_t>(std::max(0, 255 - ink - black));
}
// One colour word from the group of curves that the larger records share.
constexpr uint16_t WordUnderInk(int32_t ink, uint16_t value, uint16_t black) {
  const int32_t word = 0xFFFF - InkCurveAt(ink, value) * 0x101 - InkCurveAt(3, black) * 0x101;
  return static_cast<uint16_t>(std::max(0, word));
}

// REQUIRED: the weight of these mixes is 0 for every t up to 1, so they darken instead of mixing.
// Bilinear reads of CMYK images go through them.
constexpr uint32_t DarkeningWeight(float t) {
  return static_cast<uint32_t>(TruncToInt32(0.00390625F * t));
}
constexpr uint8_t DarkenByte(uint8_t dst, uint8_t src, uint32_t w) {
  return static_cast<uint8_t>((dst * (255U - w) + src * w) >> 8);
}
constexpr uint16_t DarkenWord(uint16_t dst, uint16_t src, uint32_t w) {
  return static_cast<uint16_t>((dst * (0xFFFFU - w) + src * w) >> 8);
}
constexpr uint16_t MixInkWord(uint16_t dst, uint16_t src, uint32_t w) {
  return static_cast<uint16_t>((src * w + dst * (0xFFFFU - w) + 0x7F7F) / 0xFFFF);
}
constexpr uint32_t Weight65535(float t) {
  return WordFromFloat(65535 * t);
}

}  // namespace vm

// A one-way street: it can be read as colour, but colour can't be written into it.
struct PxCmykBytes {
  uint8_t cyan = 0;
  uint8_t magenta = 0;
  uint8_t yellow = 0;
  uint8_t black = 0;

  static constexpr PixelInfo kInfo{32, 4, 8, 4, FourCC("Cmyk"), FourCC("Rgba"), false};
  static constexpr char kName[] = "PxCmykBytes";
  constexpr bool operator==(const PxCmykBytes&) const = default;

  constexpr PxRgbaBytes GetRgba() const {
    return PxRgbaBytes::Of(static_cast<uint8_t>(Under(0, 255)), static_cast<uint8_t>(Under(1, 255)),
                           static_cast<uint8_t>(Under(2, 255)), 255);
  }
  constexpr PxRgba64 GetRgba64() const {
    return {static_cast<uint16_t>(Under(0, 0xFFFF)), static_cast<uint16_t>(Under(1, 0xFFFF)),
            static_cast<uint16_t>(Under(2, 0xFFFF)), 0xFFFF};
  }
  // REQUIRED: these three don't convert. They report "0"; the record, and what the caller would
  // read into, keep what they held (GetRgb yields black for callers who read none the less).
  PxRgbBytes GetRgb() const {
    vm::ReportCmykMisuse(vm::kCmykGetRgbLine);
    return {};
  }
  void PutRgba(const PxRgbaBytes&) { vm::ReportCmykMisuse(vm::kCmykPutRgbaLine); }
  void PutRgb(const PxRgbBytes&) { vm::ReportCmykMisuse(vm::kCmykPutRgbLine); }
  // REQUIRED: stores nothing and reports nothing: the record keeps what it held.
  constexpr void PutRgba64(const PxRgba64&) {}
  constexpr uint8_t GetByte() const { return 255; }
  constexpr void PutByte(uint8_t) { *this = {}; }

  void GetChannel(void* out, int32_t n) const {
    vm::StoreChannel(out, n == 1 ? magenta : n == 2 ? yellow : n == 3 ? black : cyan);
  }
  void PutChannel(const void* in, int32_t n) {
    (n == 1 ? magenta : n == 2 ? yellow : n == 3 ? black : cyan) = vm::LoadChannel<uint8_t>(in);
  }

  constexpr uint8_t GrayOf() const { return static_cast<uint8_t>(255 - Darkness()); }
  constexpr float GrayOfFloat() const {
    return 1.0F - static_cast<float>(Darkness()) * 0.003921569F;
  }
  constexpr void SetGray(uint8_t gray) { *this = {0, 0, 0, uint8_t(255 - gray)}; }
  // REQUIRED: the scale runs the wrong way, so black is 0 or 1 for every gray from 0 to 1.
  constexpr void SetGray(float gray) {
    *this = {0, 0, 0, vm::ByteFromFloat(1.0F - 0.003921569F * gray)};
  }

  constexpr void Mix255(const PxCmykBytes& src, float t) {
    const int32_t w = vm::Weight255(t);
    *this = {vm::MixByte255(cyan, src.cyan, w), vm::MixByte255(magenta, src.magenta, w),
             vm::MixByte255(yellow, src.yellow, w), vm::MixByte255(black, src.black, w)};
  }
  constexpr void Mix256(const PxCmykBytes& src, float t) {
    const uint32_t w = vm::DarkeningWeight(t);
    *this = {vm::DarkenByte(cyan, src.cyan, w), vm::DarkenByte(magenta, src.magenta, w),
             vm::DarkenByte(yellow, src.yellow, w), vm::DarkenByte(black, src.black, w)};
  }
  constexpr void Invert() {
    *this = {uint8_t(255 - cyan), uint8_t(255 - magenta), uint8_t(255 - yellow),
             uint8_t(255 - black)};
  }

 private:
  // What the inks leave of full light in one channel.
  constexpr uint32_t Under(int32_t channel, uint32_t light) const {
    light = (255U - vm::kInkAbsorption[channel][0][cyan]) * light / 255;
    light = (255U - vm::kInkAbsorption[channel][1][magenta]) * light / 255;
    light = (255U - vm::kInkAbsorption[channel][2][yellow]) * light / 255;
    return (255U - vm::kInkAbsorption[channel][3][black]) * light / 255;
  }
  constexpr int32_t Darkness() const {
    return std::min(255, black + std::min({cyan, magenta, yellow}));
  }
};
static_assert(sizeof(PxCmykBytes) == 4);

struct PxCmykaBytes {
  uint8_t cyan = 0;
  uint8_t magenta = 0;
  uint8_t yellow = 0;
  uint8_t black = 0;
  uint8_t alpha = 0;

  static constexpr PixelInfo kInfo{40, 5, 8, 5, FourCC("Cmya"), FourCC("Rgba"), true};
  static constexpr char kName[] = "PxCmykaBytes";
  constexpr bool operator==(const PxCmykaBytes&) const = default;

  // REQUIRED: this view takes the three inks as they stand, GetRgb takes them through their curves:
  // the two give different colours for the same pixel.
  constexpr PxRgbaBytes GetRgba() const {
    const int32_t k = vm::kInkCurve[3][black];
    return PxRgbaBytes::Of(vm::LimitedComplement(cyan, k), vm::LimitedComplement(magenta, k),
                           vm::LimitedComplement(yellow, k), alpha);
  }
  constexpr void PutRgba(const PxRgbaBytes& in) { Put(in.red, in.green, in.blue, in.alpha); }
  constexpr PxRgbBytes GetRgb() const {
    const int32_t k = vm::kInkCurve[3][black];
    return PxRgbBytes::Of(vm::LimitedComplement(vm::kInkCurve[0][cyan], k),
                          vm::LimitedComplement(vm::kInkCurve[1][magenta], k),
                          vm::LimitedComplement(vm::kInkCurve[2][yellow], k));
  }
  constexpr void PutRgb(const PxRgbBytes& in) { Put(in.red, in.green, in.blue, 255); }
  constexpr uint8_t GetByte() const { return alpha; }
  constexpr void PutByte(uint8_t in) { *this = {0, 0, 0, 0, in}; }
  constexpr PxRgba64 GetRgba64() const {
    const PxRgbBytes rgb = GetRgb();
    return {vm::WordFromByte(rgb.red), vm::WordFromByte(rgb.green), vm::WordFromByte(rgb.blue),
            vm::WordFromByte(alpha)};
  }
  constexpr void PutRgba64(const PxRgba64& in) { PutRgba(in.GetRgba()); }

  void GetChannel(void* out, int32_t n) const {
    vm::StoreChannel(out, n == 1   ? magenta
                          : n == 2 ? yellow
                          : n == 3 ? black
                          : n == 4 ? alpha
                                   : cyan);
  }
  void PutChannel(const void* in, int32_t n) {
    (n == 1   ? magenta
     : n == 2 ? yellow
     : n == 3 ? black
     : n == 4 ? alpha
              : cyan) = vm::LoadChannel<uint8_t>(in);
  }

  constexpr uint8_t GrayOf() const { return static_cast<uint8_t>(255 - Darkness()); }
  constexpr float GrayOfFloat() const {
    return 1.0F - static_cast<float>(Darkness()) * 0.003921569F;
  }
  constexpr void SetGray(uint8_t gray) { *this = {0, 0, 0, uint8_t(255 - gray), 255}; }
  constexpr void SetGray(float gray) {
    *this = {0, 0, 0, vm::ByteFromFloat(1.0F - 0.003921569F * gray), 255};
  }

  constexpr void Composite(const PxCmykaBytes& src) {
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
  constexpr void Composite(const PxCmykaBytes& src, float t) {
    const int32_t s = vm::ByteFromFloat(static_cast<float>(src.alpha) * t);
    if (s == 0) {
      return;
    }
    if (s == 255) {
      // REQUIRED: four bytes, so this pixel's alpha stays.
      *this = {src.cyan, src.magenta, src.yellow, src.black, alpha};
      return;
    }
    Over(src, s, s * (255 - alpha) / 255 + alpha);
  }
  constexpr void Mix255(const PxCmykaBytes& src, float t) {
    const int32_t w = vm::Weight255(t);
    *this = {vm::MixByte255(cyan, src.cyan, w), vm::MixByte255(magenta, src.magenta, w),
             vm::MixByte255(yellow, src.yellow, w), vm::MixByte255(black, src.black, w),
             vm::MixByte255(alpha, src.alpha, w)};
  }
  constexpr void Mix256(const PxCmykaBytes& src, float t) {
    const uint32_t w = vm::DarkeningWeight(t);
    *this = {vm::DarkenByte(cyan, src.cyan, w), vm::DarkenByte(magenta, src.magenta, w),
             vm::DarkenByte(yellow, src.yellow, w), vm::DarkenByte(black, src.black, w),
             vm::DarkenByte(alpha, src.alpha, w)};
  }
  constexpr void Invert() {
    *this = {uint8_t(255 - cyan), uint8_t(255 - magenta), uint8_t(255 - yellow),
             uint8_t(255 - black), alpha};
  }

 private:
  constexpr void Put(uint8_t r, uint8_t g, uint8_t b, uint8_t a) {
    const vm::InkWords inks =
        vm::ReplaceGray(uint16_t(255 - r), uint16_t(255 - g), uint16_t(255 - b));
    *this = {uint8_t(inks.cyan), uint8_t(inks.magenta), uint8_t(inks.yellow), uint8_t(inks.black),
             a};
  }
  constexpr int32_t Darkness() const {
    return std::min(255, black + std::min({cyan, magenta, yellow}));
  }
  constexpr void Over(const PxCmykaBytes& src, int32_t s, int32_t A) {
    *this = {vm::OverByte(cyan, src.cyan, s, A), vm::OverByte(magenta, src.magenta, s, A),
             vm::OverByte(yellow, src.yellow, s, A), vm::OverByte(black, src.black, s, A),
             static_cast<uint8_t>(A)};
  }
};
static_assert(sizeof(PxCmykaBytes) == 5);

struct PxCmyk64 {
  uint16_t cyan = 0;
  uint16_t magenta = 0;
  uint16_t yellow = 0;
  uint16_t black = 0;

  static constexpr PixelInfo kInfo{64, 8, 16, 4, FourCC("Cm64"), FourCC("Rgba"), false};
  static constexpr char kName[] = "PxCmyk64";
  constexpr bool operator==(const PxCmyk64&) const = default;

  // REQUIRED: the byte views keep the low byte of each word, and bytes are complemented within 16
  // bits.
  constexpr PxRgbaBytes GetRgba() const { return GetRgb().GetRgba(); }
  constexpr void PutRgba(const PxRgbaBytes& in) { PutRgb(in.GetRgb()); }
  constexpr PxRgbBytes GetRgb() const {
    return PxRgbBytes::Of(uint8_t(Red()), uint8_t(Green()), uint8_t(Blue()));
  }
  constexpr void PutRgb(const PxRgbBytes& in) { Put(in.red, in.green, in.blue); }
  constexpr uint8_t GetByte() const { return 255; }
  constexpr void PutByte(uint8_t) { *this = {}; }
  constexpr PxRgba64 GetRgba64() const { return {Red(), Green(), Blue(), 0xFFFF}; }
  constexpr void PutRgba64(const PxRgba64& in) { Put(in.red, in.green, in.blue); }

  void GetChannel(void* out, int32_t n) const {
    vm::StoreChannel(out, n == 1 ? magenta : n == 2 ? yellow : n == 3 ? black : cyan);
  }
  void PutChannel(const void* in, int32_t n) {
    (n == 1 ? magenta : n == 2 ? yellow : n == 3 ? black : cyan) = vm::LoadChannel<uint16_t>(in);
  }

  constexpr uint8_t GrayOf() const { return static_cast<uint8_t>((0xFFFF - Darkness()) >> 8); }
  constexpr float GrayOfFloat() const {
    return 1.0F - static_cast<float>(Darkness()) * 0.000015259022F;
  }
  constexpr void SetGray(uint8_t gray) { *this = {0, 0, 0, uint16_t(0xFFFF - gray * 0x101)}; }
  constexpr void SetGray(float gray) {
    *this = {0, 0, 0, vm::WordFromFloat(1.0F - 0.000015259022F * gray)};
  }

  constexpr void Mix255(const PxCmyk64& src, float t) {
    const uint32_t w = vm::Weight65535(t);
    *this = {vm::MixInkWord(cyan, src.cyan, w), vm::MixInkWord(magenta, src.magenta, w),
             vm::MixInkWord(yellow, src.yellow, w), vm::MixInkWord(black, src.black, w)};
  }
  constexpr void Mix256(const PxCmyk64& src, float t) {
    const uint32_t w = vm::DarkeningWeight(t);
    *this = {vm::DarkenWord(cyan, src.cyan, w), vm::DarkenWord(magenta, src.magenta, w),
             vm::DarkenWord(yellow, src.yellow, w), vm::DarkenWord(black, src.black, w)};
  }
  constexpr void Invert() {
    *this = {uint16_t(0xFFFF - cyan), uint16_t(0xFFFF - magenta), uint16_t(0xFFFF - yellow),
             uint16_t(0xFFFF - black)};
  }

 private:
  constexpr uint16_t Red() const { return vm::WordUnderInk(0, cyan, black); }
  constexpr uint16_t Green() const { return vm::WordUnderInk(1, magenta, black); }
  constexpr uint16_t Blue() const { return vm::WordUnderInk(2, yellow, black); }
  constexpr void Put(uint16_t r, uint16_t g, uint16_t b) {
    const vm::InkWords inks =
        vm::ReplaceGray(uint16_t(0xFFFF - r), uint16_t(0xFFFF - g), uint16_t(0xFFFF - b));
    *this = {inks.cyan, inks.magenta, inks.yellow, inks.black};
  }
  constexpr int32_t Darkness() const {
    return std::min(0xFFFF, black + std::min({cyan, magenta, yellow}));
  }
};
static_assert(sizeof(PxCmyk64) == 8 && alignof(PxCmyk64) == 2);

struct PxCmyka80 {
  uint16_t cyan = 0;
  uint16_t magenta = 0;
  uint16_t yellow = 0;
  uint16_t black = 0;
  uint16_t alpha = 0;

  static constexpr PixelInfo kInfo{80, 10, 16, 5, FourCC("Cm80"), FourCC("Rgba"), true};
  static constexpr char kName[] = "PxCmyka80";
  constexpr bool operator==(const PxCmyka80&) const = default;

  // REQUIRED: as in PxCmyk64 the byte views keep low bytes, alpha's too, and PutRgba stores alpha
  // unscaled.
  constexpr PxRgbaBytes GetRgba() const {
    return PxRgbaBytes::Of(uint8_t(Red()), uint8_t(Green()), uint8_t(Blue()), uint8_t(alpha));
  }
  constexpr void PutRgba(const PxRgbaBytes& in) { Put(in.red, in.green, in.blue, in.alpha); }
  constexpr PxRgbBytes GetRgb() const {
    return PxRgbBytes::Of(uint8_t(Red()), uint8_t(Green()), uint8_t(Blue()));
  }
  constexpr void PutRgb(const PxRgbBytes& in) { Put(in.red, in.green, in.blue, 0xFFFF); }
  constexpr uint8_t GetByte() const { return vm::ByteFromWord(alpha); }
  constexpr void PutByte(uint8_t in) { *this = {0, 0, 0, 0, vm::WordFromByte(in)}; }
  constexpr PxRgba64 GetRgba64() const { return {Red(), Green(), Blue(), alpha}; }
  constexpr void PutRgba64(const PxRgba64& in) { Put(in.red, in.green, in.blue, in.alpha); }

  void GetChannel(void* out, int32_t n) const {
    vm::StoreChannel(out, n == 1   ? magenta
                          : n == 2 ? yellow
                          : n == 3 ? black
                          : n == 4 ? alpha
                                   : cyan);
  }
  void PutChannel(const void* in, int32_t n) {
    (n == 1   ? magenta
     : n == 2 ? yellow
     : n == 3 ? black
     : n == 4 ? alpha
              : cyan) = vm::LoadChannel<uint16_t>(in);
  }

  constexpr uint8_t GrayOf() const {
    return static_cast<uint8_t>((0xFFFF - std::min(0xFFFF, Darkness())) >> 8);
  }
  // REQUIRED: limits the darkness at a byte's full scale, so this form is only good for ink words
  // up to 255.
  constexpr float GrayOfFloat() const {
    return 1.0F - static_cast<float>(std::min(0xFF, Darkness())) * 0.003921569F;
  }
  constexpr void SetGray(uint8_t gray) {
    *this = {0, 0, 0, uint16_t(0xFFFF - gray * 0x101), 0xFFFF};
  }
  constexpr void SetGray(float gray) {
    *this = {0, 0, 0, vm::WordFromFloat(1.0F - 0.000015259022F * gray), 0xFFFF};
  }

  constexpr void Composite(const PxCmyka80& src) {
    const uint32_t s = src.alpha;
    if (s == 0) {
      return;
    }
    if (s == 0xFFFF) {
      *this = src;
      return;
    }
    Over(src, s, std::min(0xFFFFU, alpha + s));
  }
  constexpr void Composite(const PxCmyka80& src, float t) {
    const uint32_t s = vm::WordFromFloat(static_cast<float>(src.alpha) * t);
    if (s == 0) {
      return;
    }
    if (s == 0xFFFF) {
      *this = src;
      return;
    }
    Over(src, s, s * (0xFFFFU - alpha) / 0xFFFF + alpha);
  }
  constexpr void Mix255(const PxCmyka80& src, float t) {
    const uint32_t w = vm::Weight65535(t);
    *this = {vm::MixInkWord(cyan, src.cyan, w), vm::MixInkWord(magenta, src.magenta, w),
             vm::MixInkWord(yellow, src.yellow, w), vm::MixInkWord(black, src.black, w),
             vm::MixInkWord(alpha, src.alpha, w)};
  }
  constexpr void Mix256(const PxCmyka80& src, float t) {
    const uint32_t w = vm::DarkeningWeight(t);
    *this = {vm::DarkenWord(cyan, src.cyan, w), vm::DarkenWord(magenta, src.magenta, w),
             vm::DarkenWord(yellow, src.yellow, w), vm::DarkenWord(black, src.black, w),
             vm::DarkenWord(alpha, src.alpha, w)};
  }
  constexpr void Invert() {
    *this = {uint16_t(0xFFFF - cyan), uint16_t(0xFFFF - magenta), uint16_t(0xFFFF - yellow),
             uint16_t(0xFFFF - black), alpha};
  }

 private:
  constexpr uint16_t Red() const { return vm::WordUnderInk(0, cyan, black); }
  constexpr uint16_t Green() const { return vm::WordUnderInk(1, magenta, black); }
  constexpr uint16_t Blue() const { return vm::WordUnderInk(2, yellow, black); }
  constexpr void Put(uint16_t r, uint16_t g, uint16_t b, uint16_t a) {
    const vm::InkWords inks =
        vm::ReplaceGray(uint16_t(0xFFFF - r), uint16_t(0xFFFF - g), uint16_t(0xFFFF - b));
    *this = {inks.cyan, inks.magenta, inks.yellow, inks.black, a};
  }
  constexpr int32_t Darkness() const { return black + std::min({cyan, magenta, yellow}); }
  static constexpr uint16_t OverRounded(uint16_t dst, uint16_t src, uint32_t s, uint32_t A) {
    return static_cast<uint16_t>((s * src + (A - s) * dst + A / 2) / A);
  }
  constexpr void Over(const PxCmyka80& src, uint32_t s, uint32_t A) {
    *this = {OverRounded(cyan, src.cyan, s, A), OverRounded(magenta, src.magenta, s, A),
             OverRounded(yellow, src.yellow, s, A), OverRounded(black, src.black, s, A),
             static_cast<uint16_t>(A)};
  }
};
static_assert(sizeof(PxCmyka80) == 10 && alignof(PxCmyka80) == 2);
