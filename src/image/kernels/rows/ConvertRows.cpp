#include "image/kernels/rows/ConvertRows.h"

#include "image/kernels/rows/Vectors.h"
#include "image/kernels/rows/Words.h"

namespace vm {
namespace {

constexpr uint32_t kOpaque = 0xFF000000U;

// Four pixels at a time: a byte beside itself is the word byte * 0x101.
void Widen(const PxRgbaBytes* in, PxRgba64* out, size_t count) {
  size_t i = 0;
  for (; i + 4 <= count; i += 4) {
    const __m128i bytes = Load16(in + i);
    Store16(out + i, SwapOuterWords(_mm_unpacklo_epi8(bytes, bytes)));
    Store16(out + i + 2, SwapOuterWords(_mm_unpackhi_epi8(bytes, bytes)));
  }
  for (; i < count; ++i)
    out[i] = in[i].GetRgba64();
}

void Narrow(const PxRgba64* in, PxRgbaBytes* out, size_t count) {
  size_t i = 0;
  for (; i + 4 <= count; i += 4) {
    const __m128i low = _mm_srli_epi16(Load16(in + i), 8);
    const __m128i high = _mm_srli_epi16(Load16(in + i + 2), 8);
    Store16(out + i, _mm_packus_epi16(SwapOuterWords(low), SwapOuterWords(high)));
  }
  for (; i < count; ++i)
    out[i] = in[i].GetRgba();
}

}  // namespace

void GetRgbaRow(std::span<const PxGrayByte> in, PxRgbaBytes* out) {
  for (size_t i = 0; i < in.size(); ++i) {
    const uint32_t gray = in[i].gray;
    Store(out + i, gray | gray << 8 | gray << 16 | kOpaque);
  }
}

void GetRgbaRow(std::span<const PxGrayABytes> in, PxRgbaBytes* out) {
  for (size_t i = 0; i < in.size(); ++i) {
    const uint32_t grayAndAlpha = Load<uint16_t>(&in[i]);
    Store(out + i, (grayAndAlpha & 0xFF) | (grayAndAlpha & 0xFF) << 8 | grayAndAlpha << 16);
  }
}

// Four pixels are three 32-bit numbers, in which the records follow each other from the low end.
void GetRgbaRow(std::span<const PxRgbBytes> in, PxRgbaBytes* out) {
  size_t i = 0;
  for (; i + 4 <= in.size(); i += 4) {
    const auto* const bytes = reinterpret_cast<const uint8_t*>(&in[i]);
    const auto a = Load<uint32_t>(bytes);
    const auto b = Load<uint32_t>(bytes + 4);
    const auto c = Load<uint32_t>(bytes + 8);
    Store(out + i, a | kOpaque);
    Store(out + i + 1, a >> 24 | b << 8 | kOpaque);
    Store(out + i + 2, b >> 16 | c << 16 | kOpaque);
    Store(out + i + 3, c >> 8 | kOpaque);
  }
  for (; i < in.size(); ++i)
    out[i] = in[i].GetRgba();
}

void PutRgbaRow(const PxRgbaBytes* in, std::span<PxRgbBytes> out) {
  constexpr uint32_t kColours = 0x00FFFFFFU;
  size_t i = 0;
  for (; i + 4 <= out.size(); i += 4) {
    const uint32_t a = Load<uint32_t>(in + i) & kColours;
    const uint32_t b = Load<uint32_t>(in + i + 1) & kColours;
    const uint32_t c = Load<uint32_t>(in + i + 2) & kColours;
    const uint32_t d = Load<uint32_t>(in + i + 3) & kColours;
    auto* const bytes = reinterpret_cast<uint8_t*>(&out[i]);
    Store(bytes, a | b << 24);
    Store(bytes + 4, b >> 8 | c << 16);
    Store(bytes + 8, c >> 16 | d << 8);
  }
  for (; i < out.size(); ++i)
    out[i].PutRgba(in[i]);
}

void GetRgbaRow(std::span<const PxRgba64> in, PxRgbaBytes* out) {
  Narrow(in.data(), out, in.size());
}
void PutRgba64Row(const PxRgba64* in, std::span<PxRgbaBytes> out) {
  Narrow(in, out.data(), out.size());
}
void GetRgba64Row(std::span<const PxRgbaBytes> in, PxRgba64* out) {
  Widen(in.data(), out, in.size());
}
void PutRgbaRow(const PxRgbaBytes* in, std::span<PxRgba64> out) {
  Widen(in, out.data(), out.size());
}

// The plain rules are loops of independent words here, which the compiler vectorises.
void GetRgba64Row(std::span<const PxRgb48> in, PxRgba64* out) {
  scalar::GetRgba64(in, out);
}
void PutRgba64Row(const PxRgba64* in, std::span<PxRgb48> out) {
  scalar::PutRgba64(in, out);
}

void GetRgbaRow(std::span<const PxRgbaBytes> in, PxRgbaBytes* out) {
  CopyBytesOf(out, in.data(), in.size_bytes());
}
void PutRgbaRow(const PxRgbaBytes* in, std::span<PxRgbaBytes> out) {
  CopyBytesOf(out.data(), in, out.size_bytes());
}
void GetRgba64Row(std::span<const PxRgba64> in, PxRgba64* out) {
  CopyBytesOf(out, in.data(), in.size_bytes());
}
void PutRgba64Row(const PxRgba64* in, std::span<PxRgba64> out) {
  CopyBytesOf(out.data(), in, out.size_bytes());
}

}  // namespace vm
