#pragma once

#include "image/kernels/rows/ScalarRows.h"

// Changes of single channels in place: the exchange of red and blue, scaling, halving, inversion.
// All but the inversion are rules of the 64-bit view, which the overloads apply to the stored
// fields where that gives the same record.
namespace vm {

// Exchanges the first and the third channel.
template <class P>
void SwapRedAndBlueRow(std::span<P> row) {
  scalar::SwapRedAndBlue(row);
}
void SwapRedAndBlueRow(std::span<PxRgbBytes> row);
void SwapRedAndBlueRow(std::span<PxRgbaBytes> row);
void SwapRedAndBlueRow(std::span<PxRgb48> row);
void SwapRedAndBlueRow(std::span<PxRgba64> row);

// Each of the first `channels` channels, 0 to 4, becomes the low 16 bits of trunc(c * 1.999).
template <class P>
void ScaleRow(std::span<P> row, int32_t channels) {
  scalar::Scale(row, channels);
}
void ScaleRow(std::span<PxRgba64> row, int32_t channels);

// Each of the four channels becomes c >> 1.
template <class P>
void HalveRow(std::span<P> row) {
  scalar::Halve(row);
}
void HalveRow(std::span<PxRgb48> row);
void HalveRow(std::span<PxRgba64> row);

// The complement of the colours or inks; alpha stays.
template <class P>
void InvertRow(std::span<P> row) {
  scalar::Invert(row);
}
void InvertRow(std::span<PxGrayByte> row);
void InvertRow(std::span<PxGrayABytes> row);
void InvertRow(std::span<PxRgbBytes> row);
void InvertRow(std::span<PxRgbaBytes> row);
void InvertRow(std::span<PxRgb48> row);
void InvertRow(std::span<PxRgba64> row);
void InvertRow(std::span<PxCmykBytes> row);
void InvertRow(std::span<PxCmykaBytes> row);
void InvertRow(std::span<PxCmyk64> row);
void InvertRow(std::span<PxCmyka80> row);

}  // namespace vm
