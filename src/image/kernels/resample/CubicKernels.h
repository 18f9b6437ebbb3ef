#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "image/pixels/PxViews.h"

// The three 4 by 4 kernels of the resampling modes, on pixels of four bytes. A pixel is read from
// four columns and four rows around its position; all four channels go the same way.
//
// Each kernel has a form for one pixel, which reads like its rule, and the row forms that scaling
// uses. Both give the same bytes.
namespace vm {

struct FloatPixel {
  float channel[4];  // in storage order
};

using KernelBlock = PxRgbaBytes[4][4];  // [row][column]

// Cubic: the interpolating convolution kernel with a = -0.5, in single precision. Rows are summed
// first, left to right, then their four sums from the top; 0.5 is added, the result truncated and
// limited to a byte.
struct CubicWeights {
  float weight[4];
};
// The weights of distances 1 + f, f, 1 - f and 2 - f.
CubicWeights CubicWeightsAt(float fraction);
PxRgbaBytes CubicPixel(const KernelBlock& block, float fx, float fy);

// Fixed cubic: the kernel with a = -1 in steps of 1/256, in integers. Columns are reduced first and
// limited to bytes, then the four results. The outer two weights are stored with their sign turned:
// see kFixedCubicTable.
using FixedWeights = std::array<int32_t, 4>;
FixedWeights FixedWeightsAt(float fraction);
PxRgbaBytes FixedCubicPixel(const KernelBlock& block, float fx, float fy);

// Row r: -W(1 + t), W(t), W(1 - t), -W(2 - t) at t = r / 256, times 65536, rounded.
extern const std::array<FixedWeights, 256> kFixedCubicTable;

// Cubic blend: two cubics, one that leaves the second sample and one that arrives at the third,
// faded into each other; in single precision. Rows first, then their four results; + 0.5,
// truncated, limited.
struct BlendCoefficients {
  float nearShare;  // 1 - v
  float nearCurve;  // 1 - t^3
  float nearSlope;  // (1 + t) * 0.5
  float farShare;   // v = t^2 (3 - 2t)
  float farCurve;   // 1 - u^3 with u = 1 - t
  float farSlope;   // 0.5 * t
  float unused[2] = {};
};
BlendCoefficients BlendCoefficientsAt(float fraction);
PxRgbaBytes CubicBlendPixel(const KernelBlock& block, float fx, float fy);

// Row forms. `taps[i]` is the first of the four columns of target pixel i; the columns lie side by
// side.
void CubicAcross(const PxRgbaBytes* columns, const int32_t* taps, const CubicWeights* weights,
                 FloatPixel* out, size_t count);
void CubicDown(const FloatPixel* const rows[4], const CubicWeights& weights, PxRgbaBytes* out,
               size_t count);

void BlendAcross(const PxRgbaBytes* columns, const int32_t* taps,
                 const BlendCoefficients* coefficients, FloatPixel* out, size_t count);
void BlendDown(const FloatPixel* const rows[4], const BlendCoefficients& coefficients,
               PxRgbaBytes* out, size_t count);

// Weights split for 16-bit products: weight = high * 256 + low, as (0, 1) and (2, 3) pairs.
struct SplitWeights {
  int16_t high[4];
  int16_t low[4];
};
SplitWeights SplitFixedWeights(const FixedWeights& weights);

void FixedCubicDown(const PxRgbaBytes* const rows[4], const FixedWeights& weights, PxRgbaBytes* out,
                    size_t count);
void FixedCubicAcross(const PxRgbaBytes* columns, const int32_t* taps, const SplitWeights* weights,
                      PxRgbaBytes* out, size_t count);

}  // namespace vm
