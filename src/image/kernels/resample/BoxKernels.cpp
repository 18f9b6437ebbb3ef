#include "image/kernels/resample/BoxKernels.h"

#include <emmintrin.h>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace vm {
namespace {

__m128i WidenPixel(const PxRgbaBytes& pixel) {
  int32_t bytes;
  std::memcpy(&bytes, &pixel, sizeof bytes);
  const __m128i zero = _mm_setzero_si128();
  return _mm_unpacklo_epi16(_mm_unpacklo_epi8(_mm_cvtsi32_si128(bytes), zero), zero);
}

// The bytes of a mean; values lie in 0 .. 255.
PxRgbaBytes TruncateToPixel(__m128 mean) {
  const __m128i ints = _mm_cvttps_epi32(mean);
  const __m128i words = _mm_packs_epi32(ints, ints);
  const int32_t bytes = _mm_cvtsi128_si32(_mm_packus_epi16(words, words));
  PxRgbaBytes pixel;
  std::memcpy(static_cast<void*>(&pixel), &bytes, sizeof bytes);
  return pixel;
}

void AddTo(ChannelSums& sums, __m128i values) {
  auto* const place = reinterpret_cast<__m128i*>(sums.channel);
  _mm_storeu_si128(place, _mm_add_epi32(_mm_loadu_si128(place), values));
}

// sum + value, `times` times over.
float RepeatedSum(float sum, float value, int64_t times) {
  while (times > 0) {
    const float next = sum + value;
    --times;
    if (next == sum)
      return sum;  // too small to count, now and later
    const bool sameSpacing = sum > 0 && std::ilogb(sum) == std::ilogb(next);
    sum = next;
    if (!sameSpacing)
      continue;
    // Between two powers of two all numbers have the same spacing and every step rounds alike: a
    // tie can only go another way at the first step, which was just taken. So the steps up to the
    // next power of two can be made at once, and exactly.
    const double step = static_cast<double>(sum + value) - static_cast<double>(sum);
    const double top = std::ldexp(1.0, std::ilogb(sum) + 1);
    if (step <= 0)
      continue;
    const int64_t room = static_cast<int64_t>((top - static_cast<double>(sum)) / step) - 1;
    const int64_t jump = std::min(times, room);
    if (jump > 0) {
      sum = static_cast<float>(static_cast<double>(sum) + step * static_cast<double>(jump));
      times -= jump;
    }
  }
  return sum;
}

}  // namespace

void AddPixels(const PxRgbaBytes* pixels, ChannelSums* sums, size_t count) {
  const __m128i zero = _mm_setzero_si128();
  size_t i = 0;
  for (; i + 4 <= count; i += 4) {
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(pixels + i));
    const __m128i low = _mm_unpacklo_epi8(bytes, zero);
    const __m128i high = _mm_unpackhi_epi8(bytes, zero);
    AddTo(sums[i], _mm_unpacklo_epi16(low, zero));
    AddTo(sums[i + 1], _mm_unpackhi_epi16(low, zero));
    AddTo(sums[i + 2], _mm_unpacklo_epi16(high, zero));
    AddTo(sums[i + 3], _mm_unpackhi_epi16(high, zero));
  }
  for (; i < count; ++i)
    AddTo(sums[i], WidenPixel(pixels[i]));
}

void AddPixelTimes(const PxRgbaBytes& pixel, uint32_t times, ChannelSums* sums, size_t count) {
  const ChannelSums product = {
      {pixel.blue * times, pixel.green * times, pixel.red * times, pixel.alpha * times}};
  const __m128i values = _mm_loadu_si128(reinterpret_cast<const __m128i*>(product.channel));
  for (size_t i = 0; i < count; ++i)
    AddTo(sums[i], values);
}

void SumPixels(const PxRgbaBytes* const* rows, size_t rowCount, NarrowSums* sums, size_t count) {
  const __m128i zero = _mm_setzero_si128();
  size_t i = 0;
  for (; i + 4 <= count; i += 4) {
    __m128i low = zero;
    __m128i high = zero;
    for (size_t row = 0; row < rowCount; ++row) {
      const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(rows[row] + i));
      low = _mm_add_epi16(low, _mm_unpacklo_epi8(bytes, zero));
      high = _mm_add_epi16(high, _mm_unpackhi_epi8(bytes, zero));
    }
    _mm_storeu_si128(reinterpret_cast<__m128i*>(sums + i), low);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(sums + i + 2), high);
  }
  for (; i < count; ++i) {
    __m128i sum = zero;
    for (size_t row = 0; row < rowCount; ++row) {
      int32_t bytes;
      std::memcpy(&bytes, rows[row] + i, sizeof bytes);
      sum = _mm_add_epi16(sum, _mm_unpacklo_epi8(_mm_cvtsi32_si128(bytes), zero));
    }
    _mm_storel_epi64(reinterpret_cast<__m128i*>(sums + i), sum);
  }
}

namespace {

__m128i LoadSums(const ChannelSums& sums) {
  return _mm_loadu_si128(reinterpret_cast<const __m128i*>(sums.channel));
}
__m128i LoadSums(const NarrowSums& sums) {
  return _mm_unpacklo_epi16(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(sums.channel)),
                            _mm_setzero_si128());
}

template <class Sums>
void MeansOf(const Sums* sums, const ColumnRange* ranges, size_t count, int64_t rows,
             PxRgbaBytes* out) {
  int32_t columns = 0;
  __m128 share = _mm_setzero_ps();
  for (size_t i = 0; i < count; ++i) {
    const Sums* const first = sums + ranges[i].first;
    if (ranges[i].count != columns) {
      columns = ranges[i].count;
      share = _mm_set1_ps(1.0F / static_cast<float>(columns * rows));
    }
    __m128i total = LoadSums(first[0]);
    for (int32_t column = 1; column < columns; ++column)
      total = _mm_add_epi32(total, LoadSums(first[column]));
    out[i] = TruncateToPixel(_mm_mul_ps(_mm_cvtepi32_ps(total), share));
  }
}

}  // namespace

void MeansOfSums(const ChannelSums* sums, const ColumnRange* ranges, size_t count, int64_t rows,
                 PxRgbaBytes* out) {
  MeansOf(sums, ranges, count, rows, out);
}
void MeansOfSums(const NarrowSums* sums, const ColumnRange* ranges, size_t count, int64_t rows,
                 PxRgbaBytes* out) {
  MeansOf(sums, ranges, count, rows, out);
}

void FloatSums::Add(const PxRgbaBytes* pixels, size_t count) {
  __m128 sums = _mm_loadu_ps(mChannel);
  for (size_t i = 0; i < count; ++i)
    sums = _mm_add_ps(sums, _mm_cvtepi32_ps(WidenPixel(pixels[i])));
  _mm_storeu_ps(mChannel, sums);
}

void FloatSums::AddRepeated(const PxRgbaBytes& pixel, int64_t times) {
  const uint8_t values[4] = {pixel.blue, pixel.green, pixel.red, pixel.alpha};
  for (size_t i = 0; i < 4; ++i)
    mChannel[i] = RepeatedSum(mChannel[i], static_cast<float>(values[i]), times);
}

PxRgbaBytes FloatSums::Mean(int64_t count) const {
  const float share = 1.0F / static_cast<float>(count);
  return TruncateToPixel(_mm_mul_ps(_mm_loadu_ps(mChannel), _mm_set1_ps(share)));
}

}  // namespace vm
