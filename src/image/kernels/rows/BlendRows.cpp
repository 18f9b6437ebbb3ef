#include "image/kernels/rows/BlendRows.h"

#include "image/kernels/rows/Vectors.h"

namespace vm {
namespace {

bool IsFraction(float t) {
  return t >= 0 && t <= 1;
}

// (src*w + dst*(255-w) + 127) / 255 on bytes. The sum fits 16 bits, and there x / 255 is (x + 1 +
// x/256) / 256.
void MixBytes255(void* row, const void* source, size_t count, float t) {
  auto* const dst = static_cast<uint8_t*>(row);
  const auto* const src = static_cast<const uint8_t*>(source);
  const auto w = static_cast<uint16_t>(Weight255(t));
  const auto rest = static_cast<uint16_t>(255 - w);
  for (size_t i = 0; i < count; ++i) {
    const auto sum = static_cast<uint16_t>(src[i] * w + dst[i] * rest + 0x7F);
    dst[i] = static_cast<uint8_t>(static_cast<uint16_t>(sum + 1 + (sum >> 8)) >> 8);
  }
}

// (src*w + dst*(256-w) + rounding) >> 8 on bytes, kept to 16 bits on the way: for w up to 256
// nothing is lost.
void MixBytes256(void* row, const void* source, size_t count, float t, uint16_t rounding) {
  auto* const dst = static_cast<uint8_t*>(row);
  const auto* const src = static_cast<const uint8_t*>(source);
  const auto w = static_cast<uint16_t>(Weight256(t));
  const auto rest = static_cast<uint16_t>(256 - w);
  for (size_t i = 0; i < count; ++i) {
    const auto sum = static_cast<uint16_t>(src[i] * w + dst[i] * rest + rounding);
    dst[i] = static_cast<uint8_t>(sum >> 8);
  }
}

template <class P>
void Mix255Bytes(std::span<P> row, const P* source, float t) {
  if (t == 1)
    CopyRow(row, source);
  else
    MixBytes255(row.data(), source, row.size_bytes(), t);
}
template <class P>
void Mix256Bytes(std::span<P> row, const P* source, float t, uint16_t rounding) {
  if (IsFraction(t))
    MixBytes256(row.data(), source, row.size_bytes(), t, rounding);
  else
    scalar::Mix256(row, source, t);
}

// (src*w + dst*(65536-w)) >> 16 on words for w from 1 to 65535, in halves of 16 bits: the high
// halves of both products and the carry of the low ones.
__m128i MixedWords(__m128i row, __m128i source, __m128i w, __m128i rest) {
  const __m128i low = _mm_mullo_epi16(source, w);
  const __m128i sum = _mm_add_epi16(low, _mm_mullo_epi16(row, rest));
  // All ones, which is -1, where the sum of the low halves has not wrapped.
  const __m128i noCarry = _mm_cmpeq_epi16(_mm_subs_epu16(low, sum), _mm_setzero_si128());
  const __m128i high = _mm_add_epi16(_mm_mulhi_epu16(source, w), _mm_mulhi_epu16(row, rest));
  return _mm_add_epi16(_mm_add_epi16(high, _mm_set1_epi16(1)), noCarry);
}

void MixWords(std::span<PxRgba64> row, const PxRgba64* source, int32_t w, float t) {
  const __m128i weight = _mm_set1_epi16(static_cast<int16_t>(w));
  const __m128i rest = _mm_set1_epi16(static_cast<int16_t>(0x10000 - w));
  size_t i = 0;
  for (; i + 2 <= row.size(); i += 2)
    Store16(&row[i], MixedWords(Load16(&row[i]), Load16(source + i), weight, rest));
  scalar::Mix256(row.subspan(i), source + i, t);
}

void MixRow64(std::span<PxRgba64> row, const PxRgba64* source, float t) {
  const int32_t w = TruncToInt32(65535 * t + 1);
  if (w == 0x10000)
    CopyRow(row, source);
  else if (w > 0 && w < 0x10000)
    MixWords(row, source, w, t);
  else
    scalar::Mix256(row, source, t);
}

bool AllAre(__m128i values, int32_t value) {
  return _mm_movemask_epi8(_mm_cmpeq_epi32(values, _mm_set1_epi32(value))) == 0xFFFF;
}

// x / 255 for words up to 65279.
__m128i WordsBy255(__m128i x) {
  return _mm_srli_epi16(_mm_add_epi16(_mm_add_epi16(x, _mm_set1_epi16(1)), _mm_srli_epi16(x, 8)),
                        8);
}

// Two pixels as eight words: (s*source + (255-s)*row + 127) / 255.
__m128i OverOpaqueTwo(__m128i row, __m128i source, __m128i s) {
  const __m128i rest = _mm_sub_epi16(_mm_set1_epi16(255), s);
  const __m128i sum = _mm_add_epi16(_mm_mullo_epi16(s, source), _mm_mullo_epi16(rest, row));
  return WordsBy255(_mm_add_epi16(sum, _mm_set1_epi16(0x7F)));
}

// Four pixels of the source over four opaque ones, with their shares as 32-bit integers: the new
// alpha is 255 whatever the shares are, so all divisions are by 255.
__m128i OverOpaque(__m128i row, __m128i source, __m128i s) {
  const __m128i zero = _mm_setzero_si128();
  const __m128i opaque = _mm_or_si128(source, _mm_slli_epi32(_mm_set1_epi32(255), 24));
  const __m128i pairs = _mm_or_si128(s, _mm_slli_epi32(s, 16));
  return _mm_packus_epi16(
      OverOpaqueTwo(_mm_unpacklo_epi8(row, zero), _mm_unpacklo_epi8(opaque, zero),
                    _mm_unpacklo_epi32(pairs, pairs)),
      OverOpaqueTwo(_mm_unpackhi_epi8(row, zero), _mm_unpackhi_epi8(opaque, zero),
                    _mm_unpackhi_epi32(pairs, pairs)));
}

// Four pixels of the source over four of the row; shares s and new alphas A as 32-bit integers. A
// share of 0 leaves the pixel. Single precision gives the integer division: all terms are integers
// below 2^24, so their sum is exact, and a quotient of such integers by one up to 255 lies too far
// below the next integer to be rounded up to it.
__m128i Over(__m128i row, __m128i source, __m128i s, __m128i A) {
  const __m128 share = _mm_cvtepi32_ps(s);
  const __m128 rest = _mm_cvtepi32_ps(_mm_sub_epi32(A, s));
  const __m128 half = _mm_cvtepi32_ps(_mm_srli_epi32(A, 1));
  const __m128 divisor = _mm_cvtepi32_ps(_mm_max_epi16(A, _mm_set1_epi32(1)));
  __m128i over = _mm_slli_epi32(A, 24);
  for (int shift = 0; shift < 24; shift += 8) {
    const __m128i byte = _mm_set1_epi32(0xFF);
    const __m128 src = _mm_cvtepi32_ps(_mm_and_si128(_mm_srli_epi32(source, shift), byte));
    const __m128 dst = _mm_cvtepi32_ps(_mm_and_si128(_mm_srli_epi32(row, shift), byte));
    const __m128 sum = _mm_add_ps(_mm_add_ps(_mm_mul_ps(share, src), _mm_mul_ps(rest, dst)), half);
    over = _mm_or_si128(over, _mm_slli_epi32(_mm_cvttps_epi32(_mm_div_ps(sum, divisor)), shift));
  }
  return Select(_mm_cmpeq_epi32(s, _mm_setzero_si128()), row, over);
}

// x / 255 for 32-bit integers from 0 to 65534.
__m128i DividedBy255(__m128i x) {
  return _mm_srli_epi32(_mm_add_epi32(_mm_add_epi32(x, _mm_set1_epi32(1)), _mm_srli_epi32(x, 8)),
                        8);
}

}  // namespace

void Mix255Row(std::span<PxGrayByte> row, const PxGrayByte* source, float t) {
  Mix255Bytes(row, source, t);
}
void Mix255Row(std::span<PxGrayABytes> row, const PxGrayABytes* source, float t) {
  Mix255Bytes(row, source, t);
}
void Mix255Row(std::span<PxAlphaByte> row, const PxAlphaByte* source, float t) {
  Mix255Bytes(row, source, t);
}
void Mix255Row(std::span<PxRgbBytes> row, const PxRgbBytes* source, float t) {
  Mix255Bytes(row, source, t);
}
void Mix255Row(std::span<PxRgbaBytes> row, const PxRgbaBytes* source, float t) {
  Mix255Bytes(row, source, t);
}
void Mix255Row(std::span<PxCmykBytes> row, const PxCmykBytes* source, float t) {
  Mix255Bytes(row, source, t);
}
void Mix255Row(std::span<PxCmykaBytes> row, const PxCmykaBytes* source, float t) {
  Mix255Bytes(row, source, t);
}

void Mix255Row(std::span<PxRgb48> row, const PxRgb48* source, float t) {
  if (!IsFraction(t))
    return scalar::Mix255(row, source, t);
  if (t == 1)
    return CopyRow(row, source);
  auto* const dst = reinterpret_cast<uint16_t*>(row.data());
  const auto* const src = reinterpret_cast<const uint16_t*>(source);
  for (size_t i = 0; i < row.size() * 3; ++i) {
    const float mix = static_cast<float>(dst[i]) * (1 - t) + static_cast<float>(src[i]) * t;
    dst[i] = static_cast<uint16_t>(static_cast<int32_t>(mix));
  }
}
void Mix255Row(std::span<PxRgba64> row, const PxRgba64* source, float t) {
  MixRow64(row, source, t);
}

void Mix256Row(std::span<PxGrayByte> row, const PxGrayByte* source, float t) {
  Mix256Bytes(row, source, t, 0);
}
void Mix256Row(std::span<PxGrayABytes> row, const PxGrayABytes* source, float t) {
  Mix256Bytes(row, source, t, 0x7F);
}
void Mix256Row(std::span<PxAlphaByte> row, const PxAlphaByte* source, float t) {
  Mix256Bytes(row, source, t, 0);
}
void Mix256Row(std::span<PxRgbBytes> row, const PxRgbBytes* source, float t) {
  Mix256Bytes(row, source, t, 0);
}
void Mix256Row(std::span<PxRgbaBytes> row, const PxRgbaBytes* source, float t) {
  Mix256Bytes(row, source, t, 0x7F);
}
void Mix256Row(std::span<PxRgba64> row, const PxRgba64* source, float t) {
  MixRow64(row, source, t);
}

void CompositeRow(std::span<PxRgbaBytes> row, const PxRgbaBytes* source) {
  size_t i = 0;
  for (; i + 4 <= row.size(); i += 4) {
    const __m128i from = Load16(source + i);
    const __m128i s = _mm_srli_epi32(from, 24);
    // Most rows are opaque or clear for long stretches.
    if (AllAre(s, 0))
      continue;
    if (AllAre(s, 255)) {
      Store16(&row[i], from);
      continue;
    }
    const __m128i to = Load16(&row[i]);
    const __m128i toAlpha = _mm_srli_epi32(to, 24);
    const __m128i sum = _mm_min_epi16(_mm_add_epi32(toAlpha, s), _mm_set1_epi32(255));
    Store16(&row[i], AllAre(toAlpha, 255) ? OverOpaque(to, from, s) : Over(to, from, s, sum));
  }
  scalar::Composite(row.subspan(i), source + i);
}

void CompositeRow(std::span<PxRgbaBytes> row, const PxRgbaBytes* source, float t) {
  if (!IsFraction(t))
    return scalar::Composite(row, source, t);
  size_t i = 0;
  for (; i + 4 <= row.size(); i += 4) {
    const __m128i from = Load16(source + i);
    const __m128i to = Load16(&row[i]);
    const __m128 alpha = _mm_cvtepi32_ps(_mm_srli_epi32(from, 24));
    const __m128i s = _mm_cvttps_epi32(_mm_mul_ps(alpha, _mm_set1_ps(t)));
    const __m128i toAlpha = _mm_srli_epi32(to, 24);
    if (AllAre(toAlpha, 255)) {
      Store16(&row[i], OverOpaque(to, from, s));
      continue;
    }
    const __m128i left = _mm_mullo_epi16(s, _mm_sub_epi32(_mm_set1_epi32(255), toAlpha));
    Store16(&row[i], Over(to, from, s, _mm_add_epi32(toAlpha, DividedBy255(left))));
  }
  scalar::Composite(row.subspan(i), source + i, t);
}

}  // namespace vm
