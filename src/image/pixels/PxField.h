#pragma once

// Records that hold a quantity instead of a colour: PxDepthFloat, PxXyFixed, PxXyFloats.

#include "image/pixels/PxViews.h"

struct PxDepthFloat {
  float depth = 0;

  static constexpr PixelInfo kInfo{32, 4, 32, 1, FourCC("DepF"), FourCC("DepF"), false};
  static constexpr char kName[] = "PxDepthFloat";
  constexpr bool operator==(const PxDepthFloat&) const = default;

  constexpr PxRgbaBytes GetRgba() const {
    const uint8_t d = GetByte();
    return {d, d, d, d};
  }
  constexpr void PutRgba(const PxRgbaBytes& in) {
    depth = static_cast<float>(in.red + in.green + in.blue) * 0.0013071896F;  // 1/765
  }
  constexpr PxRgbBytes GetRgb() const { return GetRgba().GetRgb(); }
  constexpr void PutRgb(const PxRgbBytes& in) { PutRgba(in.GetRgba()); }
  constexpr uint8_t GetByte() const { return vm::ByteFromFloat(255 * depth); }
  constexpr void PutByte(uint8_t in) { depth = static_cast<float>(in) * 0.003921569F; }  // 1/255
  constexpr PxRgba64 GetRgba64() const {
    const uint16_t d = vm::WordFromFloat(65535 * depth);
    return {d, d, d, d};
  }
  constexpr void PutRgba64(const PxRgba64& in) {
    depth = static_cast<float>(in.red + in.green + in.blue) * 0.0000050863405F;  // 1/196605
  }
  void GetChannel(void* out, int32_t) const { vm::StoreChannel(out, depth); }
  void PutChannel(const void* in, int32_t) { depth = vm::LoadChannel<float>(in); }

  constexpr void Mix255(const PxDepthFloat& src, float t) {
    depth = depth * (1 - t) + src.depth * t;
  }
  constexpr void Mix256(const PxDepthFloat& src, float t) { Mix255(src, t); }
  constexpr void Invert() { depth = 1.0F - depth; }
};
static_assert(sizeof(PxDepthFloat) == 4);

struct PxXyFloats {
  float x = 0;
  float y = 0;

  // REQUIRED: shares its kind and model with PxXyFixed.
  static constexpr PixelInfo kInfo{64, 8, 32, 2, FourCC("XYfi"), FourCC("XYfi"), false};
  static constexpr char kName[] = "PxXyFloats";
  constexpr bool operator==(const PxXyFloats&) const = default;

  constexpr PxRgbaBytes GetRgba() const {
    const uint8_t bx = vm::ByteFromFloat(x);
    const uint8_t by = vm::ByteFromFloat(y);
    return PxRgbaBytes::Of(bx, by, bx, by);
  }
  constexpr void PutRgba(const PxRgbaBytes& in) {
    *this = {static_cast<float>(in.red), static_cast<float>(in.green)};
  }
  constexpr PxRgbBytes GetRgb() const { return GetRgba().GetRgb(); }
  constexpr void PutRgb(const PxRgbBytes& in) { PutRgba(in.GetRgba()); }
  constexpr uint8_t GetByte() const { return vm::ByteFromFloat(x); }
  constexpr void PutByte(uint8_t in) { x = y = static_cast<float>(in); }
  constexpr PxRgba64 GetRgba64() const { return GetRgba().GetRgba64(); }
  // REQUIRED: y comes from blue here and from green in PutRgba.
  constexpr void PutRgba64(const PxRgba64& in) {
    *this = {static_cast<float>(vm::ByteFromWord(in.red)),
             static_cast<float>(vm::ByteFromWord(in.blue))};
  }
  void GetChannel(void* out, int32_t n) const { vm::StoreChannel(out, n == 1 ? y : x); }
  void PutChannel(const void* in, int32_t n) { (n == 1 ? y : x) = vm::LoadChannel<float>(in); }

  constexpr void Add(const PxXyFloats& src) { *this = {x + src.x, y + src.y}; }
  constexpr void AddScaled(const PxXyFloats& src, float scale) {
    *this = {x + src.x * scale, y + src.y * scale};
  }
  constexpr void Mix255(const PxXyFloats& src, float t) {
    *this = {x * (1 - t) + src.x * t, y * (1 - t) + src.y * t};
  }
  constexpr void Mix256(const PxXyFloats& src, float t) { Mix255(src, t); }
  constexpr void Invert() {}  // coordinates have no complement
};
static_assert(sizeof(PxXyFloats) == 8);

// A pair of coordinates in fixed point: a whole part and a fraction in steps of 1/127, both signed.
struct PxXyFixed {
  int8_t xWhole = 0;
  int8_t xFraction = 0;
  int8_t yWhole = 0;
  int8_t yFraction = 0;

  // REQUIRED: reports four channels of 16 bits, so its samples take two bytes in a stream.
  static constexpr PixelInfo kInfo{32, 4, 16, 4, FourCC("XYfi"), FourCC("XYfi"), false};
  static constexpr char kName[] = "PxXyFixed";
  constexpr bool operator==(const PxXyFixed&) const = default;

  constexpr PxXyFloats ToFloats() const {
    return {Value(xWhole, xFraction), Value(yWhole, yFraction)};
  }
  static constexpr PxXyFixed FromFloats(const PxXyFloats& in) {
    return {WholeOf(in.x), FractionOf(in.x), WholeOf(in.y), FractionOf(in.y)};
  }

  constexpr PxRgbaBytes GetRgba() const {
    return PxRgbaBytes::Of(uint8_t(xWhole), uint8_t(xFraction), uint8_t(yWhole),
                           uint8_t(yFraction));
  }
  constexpr void PutRgba(const PxRgbaBytes& in) {
    *this = {int8_t(in.red), int8_t(in.green), int8_t(in.blue), int8_t(in.alpha)};
  }
  constexpr PxRgbBytes GetRgb() const { return GetRgba().GetRgb(); }
  constexpr void PutRgb(const PxRgbBytes& in) { PutRgba(in.GetRgba()); }
  constexpr uint8_t GetByte() const { return static_cast<uint8_t>(xWhole); }
  constexpr void PutByte(uint8_t in) { *this = {int8_t(in), 0, int8_t(in), 0}; }
  // Signed fields widen as signed numbers: -1 gives 0xFEFF.
  constexpr PxRgba64 GetRgba64() const {
    return {Widen(xWhole), Widen(xFraction), Widen(yWhole), Widen(yFraction)};
  }
  constexpr void PutRgba64(const PxRgba64& in) { PutRgba(in.GetRgba()); }
  // Two bytes, the field in the low one and 0 in the high one. Of what is put back only the low
  // byte counts.
  void GetChannel(void* out, int32_t n) const {
    const int8_t field = n == 1 ? xFraction : n == 2 ? yWhole : n == 3 ? yFraction : xWhole;
    vm::StoreChannel(out, static_cast<uint16_t>(static_cast<uint8_t>(field)));
  }
  void PutChannel(const void* in, int32_t n) {
    (n == 1   ? xFraction
     : n == 2 ? yWhole
     : n == 3 ? yFraction
              : xWhole) = static_cast<int8_t>(vm::LoadChannel<uint16_t>(in) & 0xFF);
  }

  constexpr void Add(const PxXyFixed& src) {
    PxXyFloats sum = ToFloats();
    sum.Add(src.ToFloats());
    *this = FromFloats(sum);
  }
  constexpr void AddScaled(const PxXyFixed& src, float scale) {
    PxXyFloats sum = ToFloats();
    sum.AddScaled(src.ToFloats(), scale);
    *this = FromFloats(sum);
  }
  constexpr void Mix255(const PxXyFixed& src, float t) {
    PxXyFloats mix = ToFloats();
    mix.Mix255(src.ToFloats(), t);
    *this = FromFloats(mix);
  }
  constexpr void Mix256(const PxXyFixed& src, float t) { Mix255(src, t); }
  constexpr void Invert() {}

 private:
  static constexpr float Value(int8_t whole, int8_t fraction) {
    return static_cast<float>(whole) + static_cast<float>(fraction) * 0.007874016F;  // 1/127
  }
  static constexpr int8_t WholeOf(float value) { return vm::SignedByteFromFloat(value); }
  static constexpr int8_t FractionOf(float value) {
    return vm::SignedByteFromFloat((value - static_cast<float>(vm::TruncToInt32(value))) * 127);
  }
  static constexpr uint16_t Widen(int8_t field) { return static_cast<uint16_t>(field * 0x101); }
};
static_assert(sizeof(PxXyFixed) == 4);
