#include "image/kernels/resample/CubicKernels.h"

#include <emmintrin.h>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace vm {
namespace {

// Channel values of four pixels, as the one-pixel forms see them.
struct Four {
  float p[4];
};

// The channels of a pixel in storage order.
std::array<uint8_t, 4> ChannelsOf(const PxRgbaBytes& pixel) {
  return {pixel.blue, pixel.green, pixel.red, pixel.alpha};
}
PxRgbaBytes PixelOf(const std::array<uint8_t, 4>& channels) {
  return {channels[0], channels[1], channels[2], channels[3]};
}

uint8_t RoundToByte(float sum) {
  return static_cast<uint8_t>(LimitTo(TruncToInt32(sum + 0.5F), 0, 255));
}

// --- cubic

float CubicWeight(float distance) {
  const float d = std::fabs(distance);
  const float d2 = d * d;
  const float d3 = d2 * d;
  if (d < 1)
    return 1.5F * d3 - 2.5F * d2 + 1;
  return -0.5F * d3 + 2.5F * d2 - 4 * d + 2;
}

float WeightedSum(const Four& v, const CubicWeights& w) {
  return v.p[0] * w.weight[0] + v.p[1] * w.weight[1] + v.p[2] * w.weight[2] + v.p[3] * w.weight[3];
}

// --- fixed cubic

// W in units of 2^-24, for a distance of `steps` / 256.
constexpr int64_t FixedCubicWeight(int64_t steps) {
  const int64_t d = steps;
  if (d < 256)
    return d * d * d - 2 * 256 * d * d + 256 * 256 * 256;
  return -d * d * d + 5 * 256 * d * d - 8 * 256 * 256 * d + 4 * 256 * 256 * 256;
}

// To units of 2^-16, rounded to the nearest. None of the table's values is negative.
constexpr int32_t RoundedWeight(int64_t weight) {
  return static_cast<int32_t>((weight + 128) >> 8);
}

constexpr std::array<FixedWeights, 256> MakeFixedCubicTable() {
  std::array<FixedWeights, 256> table{};
  for (int32_t r = 0; r < 256; ++r) {
    table[static_cast<size_t>(r)] = {
        RoundedWeight(-FixedCubicWeight(256 + r)), RoundedWeight(FixedCubicWeight(r)),
        RoundedWeight(FixedCubicWeight(256 - r)), RoundedWeight(-FixedCubicWeight(512 - r))};
  }
  return table;
}

uint8_t FixedSum(int32_t p0, int32_t p1, int32_t p2, int32_t p3, const FixedWeights& w) {
  return static_cast<uint8_t>(
      LimitTo((p1 * w[1] - p0 * w[0] + p2 * w[2] - p3 * w[3] + 0x8000) >> 16, 0, 255));
}

// --- cubic blend

float BlendedSpline(const Four& v, const BlendCoefficients& c) {
  const auto& p = v.p;
  return c.nearShare *
             (c.nearCurve * (p[1] - (p[2] + p[0]) * 0.5F) + c.nearSlope * (p[2] - p[0]) + p[0]) +
         c.farShare *
             (c.farCurve * (p[2] - (p[3] + p[1]) * 0.5F) + c.farSlope * (p[3] - p[1]) + p[1]);
}

// A float kernel over a block: `reduce(four values, coefficients)` along each row, then down.
template <class Coefficients, class Reduce>
PxRgbaBytes ReduceBlock(const KernelBlock& block, const Coefficients& across,
                        const Coefficients& down, Reduce reduce) {
  std::array<uint8_t, 4> result;
  for (size_t channel = 0; channel < 4; ++channel) {
    Four rows;
    for (size_t row = 0; row < 4; ++row) {
      Four values;
      for (size_t column = 0; column < 4; ++column)
        values.p[column] = static_cast<float>(ChannelsOf(block[row][column])[channel]);
      rows.p[row] = reduce(values, across);
    }
    result[channel] = RoundToByte(reduce(rows, down));
  }
  return PixelOf(result);
}

// --- vectors: one pixel's four channels

__m128 Load(const FloatPixel& pixel) {
  return _mm_loadu_ps(pixel.channel);
}

// + 0.5, truncated, limited; what isn't a number becomes 0, as truncating does.
__m128i RoundToInts(__m128 sum) {
  const __m128 raised = _mm_add_ps(sum, _mm_set1_ps(0.5F));
  // max yields its second operand when the first is not a number.
  const __m128 limited = _mm_min_ps(_mm_max_ps(raised, _mm_setzero_ps()), _mm_set1_ps(255));
  return _mm_cvttps_epi32(limited);
}

void StorePixel(PxRgbaBytes* out, __m128i ints) {
  const __m128i words = _mm_packs_epi32(ints, ints);
  const int32_t bytes = _mm_cvtsi128_si32(_mm_packus_epi16(words, words));
  std::memcpy(static_cast<void*>(out), &bytes, sizeof bytes);
}

// Sums to bytes, four pixels at a time.
template <class SumAt>
void StoreRow(PxRgbaBytes* out, size_t count, SumAt&& sumAt) {
  size_t i = 0;
  for (; i + 4 <= count; i += 4) {
    const __m128i first = _mm_packs_epi32(RoundToInts(sumAt(i)), RoundToInts(sumAt(i + 1)));
    const __m128i second = _mm_packs_epi32(RoundToInts(sumAt(i + 2)), RoundToInts(sumAt(i + 3)));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out + i), _mm_packus_epi16(first, second));
  }
  for (; i < count; ++i)
    StorePixel(out + i, RoundToInts(sumAt(i)));
}

template <int lane>
__m128 Lane(__m128 all) {
  // The integer shuffle has a target of its own and saves a copy.
  return _mm_castsi128_ps(
      _mm_shuffle_epi32(_mm_castps_si128(all), _MM_SHUFFLE(lane, lane, lane, lane)));
}

// Four neighbouring pixels as floats.
struct FloatPixels {
  __m128 p0, p1, p2, p3;

  explicit FloatPixels(const PxRgbaBytes* pixels) {
    const __m128i zero = _mm_setzero_si128();
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(pixels));
    const __m128i low = _mm_unpacklo_epi8(bytes, zero);
    const __m128i high = _mm_unpackhi_epi8(bytes, zero);
    p0 = _mm_cvtepi32_ps(_mm_unpacklo_epi16(low, zero));
    p1 = _mm_cvtepi32_ps(_mm_unpackhi_epi16(low, zero));
    p2 = _mm_cvtepi32_ps(_mm_unpacklo_epi16(high, zero));
    p3 = _mm_cvtepi32_ps(_mm_unpackhi_epi16(high, zero));
  }
};

__m128 CubicSum(__m128 p0, __m128 p1, __m128 p2, __m128 p3, const __m128 w[4]) {
  const __m128 first = _mm_add_ps(_mm_mul_ps(p0, w[0]), _mm_mul_ps(p1, w[1]));
  return _mm_add_ps(_mm_add_ps(first, _mm_mul_ps(p2, w[2])), _mm_mul_ps(p3, w[3]));
}

struct BlendVectors {
  __m128 nearShare, nearCurve, nearSlope, farShare, farCurve, farSlope;

  explicit BlendVectors(const BlendCoefficients& c) {
    const __m128 first = _mm_loadu_ps(&c.nearShare);
    const __m128 second = _mm_loadu_ps(&c.farCurve);
    nearShare = Lane<0>(first);
    nearCurve = Lane<1>(first);
    nearSlope = Lane<2>(first);
    farShare = Lane<3>(first);
    farCurve = Lane<0>(second);
    farSlope = Lane<1>(second);
  }
};

__m128 BlendedSpline(__m128 p0, __m128 p1, __m128 p2, __m128 p3, const BlendVectors& c) {
  const __m128 half = _mm_set1_ps(0.5F);
  const __m128 nearBend =
      _mm_mul_ps(c.nearCurve, _mm_sub_ps(p1, _mm_mul_ps(_mm_add_ps(p2, p0), half)));
  const __m128 near =
      _mm_add_ps(_mm_add_ps(nearBend, _mm_mul_ps(c.nearSlope, _mm_sub_ps(p2, p0))), p0);
  const __m128 farBend =
      _mm_mul_ps(c.farCurve, _mm_sub_ps(p2, _mm_mul_ps(_mm_add_ps(p3, p1), half)));
  const __m128 far =
      _mm_add_ps(_mm_add_ps(farBend, _mm_mul_ps(c.farSlope, _mm_sub_ps(p3, p1))), p1);
  return _mm_add_ps(_mm_mul_ps(c.nearShare, near), _mm_mul_ps(c.farShare, far));
}

// --- vectors: 16-bit products of split weights

struct SplitVectors {
  __m128i high01, high23, low01, low23;
};

__m128i Pair(int16_t first, int16_t second) {
  return _mm_set1_epi32(
      static_cast<int32_t>(static_cast<uint32_t>(static_cast<uint16_t>(first)) |
                           static_cast<uint32_t>(static_cast<uint16_t>(second)) << 16));
}

SplitVectors Spread(const SplitWeights& w) {
  const __m128i all = _mm_loadu_si128(reinterpret_cast<const __m128i*>(&w));
  return {_mm_shuffle_epi32(all, 0x00), _mm_shuffle_epi32(all, 0x55), _mm_shuffle_epi32(all, 0xAA),
          _mm_shuffle_epi32(all, 0xFF)};
}

// Four weighted sums from words in pairs (p0, p1) and (p2, p3): rounded and shifted, not yet
// limited.
__m128i FixedSums(__m128i p01, __m128i p23, const SplitVectors& w) {
  const __m128i high = _mm_add_epi32(_mm_madd_epi16(p01, w.high01), _mm_madd_epi16(p23, w.high23));
  const __m128i low = _mm_add_epi32(_mm_madd_epi16(p01, w.low01), _mm_madd_epi16(p23, w.low23));
  const __m128i sum = _mm_add_epi32(_mm_slli_epi32(high, 8), low);
  return _mm_srai_epi32(_mm_add_epi32(sum, _mm_set1_epi32(0x8000)), 16);
}

__m128i LoadFourPixels(const PxRgbaBytes* pixels) {
  return _mm_loadu_si128(reinterpret_cast<const __m128i*>(pixels));
}

}  // namespace

constexpr std::array<FixedWeights, 256> kFixedCubicTable = MakeFixedCubicTable();

CubicWeights CubicWeightsAt(float f) {
  return {{CubicWeight(1 + f), CubicWeight(f), CubicWeight(1 - f), CubicWeight(2 - f)}};
}

PxRgbaBytes CubicPixel(const KernelBlock& block, float fx, float fy) {
  return ReduceBlock(block, CubicWeightsAt(fx), CubicWeightsAt(fy),
                     [](const Four& v, const CubicWeights& w) { return WeightedSum(v, w); });
}

FixedWeights FixedWeightsAt(float f) {
  // Positions left of or above the image have fractions below 0; they take row 0.
  const int32_t row = LimitTo(TruncToInt32(256 * f + 0.5F), 0, 256);
  if (f - 0.5F > 0) {
    const FixedWeights& mirrored = kFixedCubicTable[static_cast<size_t>(256 - row)];
    return {mirrored[3], mirrored[2], mirrored[1], mirrored[0]};
  }
  return kFixedCubicTable[static_cast<size_t>(row)];
}

PxRgbaBytes FixedCubicPixel(const KernelBlock& block, float fx, float fy) {
  const FixedWeights across = FixedWeightsAt(fx);
  const FixedWeights down = FixedWeightsAt(fy);
  std::array<uint8_t, 4> result;
  for (size_t channel = 0; channel < 4; ++channel) {
    uint8_t columns[4];
    for (size_t column = 0; column < 4; ++column) {
      columns[column] = FixedSum(
          ChannelsOf(block[0][column])[channel], ChannelsOf(block[1][column])[channel],
          ChannelsOf(block[2][column])[channel], ChannelsOf(block[3][column])[channel], down);
    }
    result[channel] = FixedSum(columns[0], columns[1], columns[2], columns[3], across);
  }
  return PixelOf(result);
}

BlendCoefficients BlendCoefficientsAt(float t) {
  const float u = 1 - t;
  const float v = t * t * (3 - 2 * t);
  return {1 - v, 1 - t * t * t, (1 + t) * 0.5F, v, 1 - u * u * u, 0.5F * t};
}

PxRgbaBytes CubicBlendPixel(const KernelBlock& block, float fx, float fy) {
  return ReduceBlock(block, BlendCoefficientsAt(fx), BlendCoefficientsAt(fy),
                     [](const Four& v, const BlendCoefficients& c) { return BlendedSpline(v, c); });
}

void CubicAcross(const PxRgbaBytes* columns, const int32_t* taps, const CubicWeights* weights,
                 FloatPixel* out, size_t count) {
  for (size_t i = 0; i < count; ++i) {
    const FloatPixels p(columns + taps[i]);
    const __m128 all = _mm_loadu_ps(weights[i].weight);
    const __m128 w[4] = {Lane<0>(all), Lane<1>(all), Lane<2>(all), Lane<3>(all)};
    _mm_storeu_ps(out[i].channel, CubicSum(p.p0, p.p1, p.p2, p.p3, w));
  }
}

void CubicDown(const FloatPixel* const rows[4], const CubicWeights& weights, PxRgbaBytes* out,
               size_t count) {
  const float* const f = weights.weight;
  const __m128 w[4] = {_mm_set1_ps(f[0]), _mm_set1_ps(f[1]), _mm_set1_ps(f[2]), _mm_set1_ps(f[3])};
  StoreRow(out, count, [&](size_t i) {
    return CubicSum(Load(rows[0][i]), Load(rows[1][i]), Load(rows[2][i]), Load(rows[3][i]), w);
  });
}

void BlendAcross(const PxRgbaBytes* columns, const int32_t* taps,
                 const BlendCoefficients* coefficients, FloatPixel* out, size_t count) {
  for (size_t i = 0; i < count; ++i) {
    const FloatPixels p(columns + taps[i]);
    _mm_storeu_ps(out[i].channel,
                  BlendedSpline(p.p0, p.p1, p.p2, p.p3, BlendVectors(coefficients[i])));
  }
}

void BlendDown(const FloatPixel* const rows[4], const BlendCoefficients& coefficients,
               PxRgbaBytes* out, size_t count) {
  const BlendVectors c(coefficients);
  StoreRow(out, count, [&](size_t i) {
    return BlendedSpline(Load(rows[0][i]), Load(rows[1][i]), Load(rows[2][i]), Load(rows[3][i]), c);
  });
}

SplitWeights SplitFixedWeights(const FixedWeights& weights) {
  const int32_t signedWeights[4] = {-weights[0], weights[1], weights[2], -weights[3]};
  SplitWeights split;
  for (size_t i = 0; i < 4; ++i) {
    split.high[i] = static_cast<int16_t>(signedWeights[i] >> 8);
    split.low[i] = static_cast<int16_t>(signedWeights[i] & 0xFF);
  }
  return split;
}

void FixedCubicDown(const PxRgbaBytes* const rows[4], const FixedWeights& weights, PxRgbaBytes* out,
                    size_t count) {
  const SplitWeights split = SplitFixedWeights(weights);
  const SplitVectors w = {Pair(split.high[0], split.high[1]), Pair(split.high[2], split.high[3]),
                          Pair(split.low[0], split.low[1]), Pair(split.low[2], split.low[3])};
  const __m128i zero = _mm_setzero_si128();
  size_t i = 0;
  for (; i + 4 <= count; i += 4) {
    const __m128i r0 = LoadFourPixels(rows[0] + i);
    const __m128i r1 = LoadFourPixels(rows[1] + i);
    const __m128i r2 = LoadFourPixels(rows[2] + i);
    const __m128i r3 = LoadFourPixels(rows[3] + i);
    // Bytes of two rows side by side, widened: pairs for the products.
    const __m128i r01[2] = {_mm_unpacklo_epi8(r0, r1), _mm_unpackhi_epi8(r0, r1)};
    const __m128i r23[2] = {_mm_unpacklo_epi8(r2, r3), _mm_unpackhi_epi8(r2, r3)};
    __m128i words[2];
    for (int half = 0; half < 2; ++half) {
      const __m128i first =
          FixedSums(_mm_unpacklo_epi8(r01[half], zero), _mm_unpacklo_epi8(r23[half], zero), w);
      const __m128i second =
          FixedSums(_mm_unpackhi_epi8(r01[half], zero), _mm_unpackhi_epi8(r23[half], zero), w);
      words[half] = _mm_packs_epi32(first, second);
    }
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out + i), _mm_packus_epi16(words[0], words[1]));
  }
  for (; i < count; ++i) {
    std::array<uint8_t, 4> result;
    for (size_t channel = 0; channel < 4; ++channel)
      result[channel] =
          FixedSum(ChannelsOf(rows[0][i])[channel], ChannelsOf(rows[1][i])[channel],
                   ChannelsOf(rows[2][i])[channel], ChannelsOf(rows[3][i])[channel], weights);
    out[i] = PixelOf(result);
  }
}

void FixedCubicAcross(const PxRgbaBytes* columns, const int32_t* taps, const SplitWeights* weights,
                      PxRgbaBytes* out, size_t count) {
  const __m128i zero = _mm_setzero_si128();
  for (size_t i = 0; i < count; ++i) {
    const __m128i p = LoadFourPixels(columns + taps[i]);
    const __m128i p01 = _mm_unpacklo_epi8(p, zero);
    const __m128i p23 = _mm_unpackhi_epi8(p, zero);
    // The same channel of two neighbours side by side.
    const __m128i pairs01 = _mm_unpacklo_epi16(p01, _mm_srli_si128(p01, 8));
    const __m128i pairs23 = _mm_unpacklo_epi16(p23, _mm_srli_si128(p23, 8));
    StorePixel(out + i, FixedSums(pairs01, pairs23, Spread(weights[i])));
  }
}

}  // namespace vm
