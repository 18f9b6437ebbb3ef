#pragma once

#include "image/kernels/rows/ScalarRows.h"

// Rows of records to and from the two wide views. The overloads are the conversions on the road of
// a filter run, as vector code; every other record goes through its scalar form.
namespace vm {

template <class P>
void GetRgbaRow(std::span<const P> in, PxRgbaBytes* out) {
  scalar::GetRgba(in, out);
}
void GetRgbaRow(std::span<const PxGrayByte> in, PxRgbaBytes* out);
void GetRgbaRow(std::span<const PxGrayABytes> in, PxRgbaBytes* out);
void GetRgbaRow(std::span<const PxRgbBytes> in, PxRgbaBytes* out);
void GetRgbaRow(std::span<const PxRgbaBytes> in, PxRgbaBytes* out);
void GetRgbaRow(std::span<const PxRgba64> in, PxRgbaBytes* out);
void GetRgbaRow(std::span<const PxCmykBytes> in, PxRgbaBytes* out);
void GetRgbaRow(std::span<const PxCmykaBytes> in, PxRgbaBytes* out);

template <class P>
void PutRgbaRow(const PxRgbaBytes* in, std::span<P> out) {
  scalar::PutRgba(in, out);
}
void PutRgbaRow(const PxRgbaBytes* in, std::span<PxRgbBytes> out);
void PutRgbaRow(const PxRgbaBytes* in, std::span<PxRgbaBytes> out);
void PutRgbaRow(const PxRgbaBytes* in, std::span<PxRgba64> out);
void PutRgbaRow(const PxRgbaBytes* in, std::span<PxCmykaBytes> out);

template <class P>
void GetRgba64Row(std::span<const P> in, PxRgba64* out) {
  scalar::GetRgba64(in, out);
}
void GetRgba64Row(std::span<const PxRgbaBytes> in, PxRgba64* out);
void GetRgba64Row(std::span<const PxRgb48> in, PxRgba64* out);
void GetRgba64Row(std::span<const PxRgba64> in, PxRgba64* out);
void GetRgba64Row(std::span<const PxCmyk64> in, PxRgba64* out);

template <class P>
void PutRgba64Row(const PxRgba64* in, std::span<P> out) {
  scalar::PutRgba64(in, out);
}
void PutRgba64Row(const PxRgba64* in, std::span<PxRgbaBytes> out);
void PutRgba64Row(const PxRgba64* in, std::span<PxRgb48> out);
void PutRgba64Row(const PxRgba64* in, std::span<PxRgba64> out);
void PutRgba64Row(const PxRgba64* in, std::span<PxCmyk64> out);

}  // namespace vm
