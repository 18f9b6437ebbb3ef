#pragma once

#include "image/kernels/rows/ScalarRows.h"
#include "image/kernels/rows/Words.h"

// Blends of a row with a source row of the same records. `t` is a float from 0 to 1; outside of
// that, what the record's own rule gives comes out too, only slower. The two rows may be one, and
// the source may overlap the row from a higher address: it is read before it is written over.
namespace vm {

// Records whose Mix255 gives exactly the source at t = 1. (Floats don't where the old value is
// infinite.)
template <class P>
inline constexpr bool kMixesToSource =
    !std::is_same_v<P, PxGrayBit> && !std::is_same_v<P, PxDepthFloat> &&
    !std::is_same_v<P, PxXyFloats> && !std::is_same_v<P, PxXyFixed>;

template <class P>
void CopyRow(std::span<P> row, const P* source) {
  MoveBytesOf(row.data(), source, row.size_bytes());
}

// Towards the source by t, in the form that blends of images use.
template <class P>
void Mix255Row(std::span<P> row, const P* source, float t) {
  if (kMixesToSource<P> && t == 1)
    CopyRow(row, source);
  else
    scalar::Mix255(row, source, t);
}
void Mix255Row(std::span<PxGrayByte> row, const PxGrayByte* source, float t);
void Mix255Row(std::span<PxGrayABytes> row, const PxGrayABytes* source, float t);
void Mix255Row(std::span<PxAlphaByte> row, const PxAlphaByte* source, float t);
void Mix255Row(std::span<PxRgbBytes> row, const PxRgbBytes* source, float t);
void Mix255Row(std::span<PxRgbaBytes> row, const PxRgbaBytes* source, float t);
void Mix255Row(std::span<PxCmykBytes> row, const PxCmykBytes* source, float t);
void Mix255Row(std::span<PxCmykaBytes> row, const PxCmykaBytes* source, float t);
void Mix255Row(std::span<PxRgb48> row, const PxRgb48* source, float t);
void Mix255Row(std::span<PxRgba64> row, const PxRgba64* source, float t);

// Towards the source by t, in the form that sampling uses.
template <class P>
void Mix256Row(std::span<P> row, const P* source, float t) {
  scalar::Mix256(row, source, t);
}
void Mix256Row(std::span<PxGrayByte> row, const PxGrayByte* source, float t);
void Mix256Row(std::span<PxGrayABytes> row, const PxGrayABytes* source, float t);
void Mix256Row(std::span<PxAlphaByte> row, const PxAlphaByte* source, float t);
void Mix256Row(std::span<PxRgbBytes> row, const PxRgbBytes* source, float t);
void Mix256Row(std::span<PxRgbaBytes> row, const PxRgbaBytes* source, float t);
void Mix256Row(std::span<PxRgba64> row, const PxRgba64* source, float t);

// The source over the row by the source's alpha, and by its alpha times t. (Words stay with their
// scalar form: two divisions at a time in double precision are no faster than four in integers.)
template <Compositing P>
void CompositeRow(std::span<P> row, const P* source) {
  scalar::Composite(row, source);
}
template <Compositing P>
void CompositeRow(std::span<P> row, const P* source, float t) {
  scalar::Composite(row, source, t);
}
void CompositeRow(std::span<PxRgbaBytes> row, const PxRgbaBytes* source);
void CompositeRow(std::span<PxRgbaBytes> row, const PxRgbaBytes* source, float t);

}  // namespace vm
