#pragma once

#include <cstdint>
#include <span>

#include "image/pixels/PxRecords.h"

// The scalar forms of the row kernels: each applies the rule of the record to one pixel after the
// other. They say what the kernels beside them compute; tests hold the two against each other. Rows
// that stand for input and output have the same length and, except where a row is changed in place,
// don't overlap.
namespace vm::scalar {

template <class P>
void GetRgba(std::span<const P> in, PxRgbaBytes* out) {
  for (const P& pixel : in)
    *out++ = pixel.GetRgba();
}
template <class P>
void PutRgba(const PxRgbaBytes* in, std::span<P> out) {
  for (P& pixel : out)
    pixel.PutRgba(*in++);
}
template <class P>
void GetRgba64(std::span<const P> in, PxRgba64* out) {
  for (const P& pixel : in)
    *out++ = pixel.GetRgba64();
}
template <class P>
void PutRgba64(const PxRgba64* in, std::span<P> out) {
  for (P& pixel : out)
    pixel.PutRgba64(*in++);
}

// `change` edits the 64-bit view of each pixel, which is then put back.
template <class P, class Change>
void Through64(std::span<P> row, Change change) {
  for (P& pixel : row) {
    PxRgba64 view = pixel.GetRgba64();
    change(view);
    pixel.PutRgba64(view);
  }
}

template <class P>
void SwapRedAndBlue(std::span<P> row) {
  Through64(row, [](PxRgba64& view) {
    const uint16_t red = view.red;
    view.red = view.blue;
    view.blue = red;
  });
}

// The low 16 bits of the truncated product: from 32785 on it wraps.
constexpr uint16_t ScaledWord(uint16_t word) {
  return static_cast<uint16_t>(static_cast<uint32_t>(word * 1.999));
}

template <class P>
void Scale(std::span<P> row, int32_t channels) {
  Through64(row, [channels](PxRgba64& view) {
    uint16_t* const words[] = {&view.red, &view.green, &view.blue, &view.alpha};
    for (int32_t n = 0; n < channels && n < 4; ++n)
      *words[n] = ScaledWord(*words[n]);
  });
}

template <class P>
void Halve(std::span<P> row) {
  Through64(row, [](PxRgba64& view) {
    view = {static_cast<uint16_t>(view.red >> 1), static_cast<uint16_t>(view.green >> 1),
            static_cast<uint16_t>(view.blue >> 1), static_cast<uint16_t>(view.alpha >> 1)};
  });
}

template <class P>
void Invert(std::span<P> row) {
  for (P& pixel : row)
    pixel.Invert();
}

// Bytes of one sample in a plane.
template <class P>
inline constexpr size_t kSampleBytes = static_cast<size_t>(P::kInfo.bitsPerChannel + 7) / 8;

template <class P>
void Gather(std::span<const P> in, void* samples, int32_t channel) {
  auto* out = static_cast<uint8_t*>(samples);
  for (const P& pixel : in) {
    pixel.GetChannel(out, channel);
    out += kSampleBytes<P>;
  }
}
template <class P>
void Scatter(const void* samples, std::span<P> out, int32_t channel) {
  const auto* in = static_cast<const uint8_t*>(samples);
  for (P& pixel : out) {
    pixel.PutChannel(in, channel);
    in += kSampleBytes<P>;
  }
}

template <class P>
void Mix255(std::span<P> row, const P* source, float t) {
  for (P& pixel : row)
    pixel.Mix255(*source++, t);
}
template <class P>
void Mix256(std::span<P> row, const P* source, float t) {
  for (P& pixel : row)
    pixel.Mix256(*source++, t);
}
template <Compositing P>
void Composite(std::span<P> row, const P* source) {
  for (P& pixel : row)
    pixel.Composite(*source++);
}
template <Compositing P>
void Composite(std::span<P> row, const P* source, float t) {
  for (P& pixel : row)
    pixel.Composite(*source++, t);
}

}  // namespace vm::scalar
