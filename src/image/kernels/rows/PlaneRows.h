#pragma once

#include "image/kernels/rows/ScalarRows.h"

// One channel of a row of records as a packed row of samples, and back. Samples are 1, 2 or 4 bytes
// wide, (bits per channel + 7) / 8, little-endian, at any address.
namespace vm {

// A channel index as the record counts it: out of range is channel 0.
template <class P>
constexpr int32_t ChannelInRange(int32_t channel) {
  return channel > 0 && channel < P::kInfo.channels ? channel : 0;
}

// Records that are an array of their samples. The others store a bit, or half of what they report.
template <class P>
inline constexpr bool kIsArrayOfSamples =
    sizeof(P) == scalar::kSampleBytes<P>* static_cast<size_t>(P::kInfo.channels) &&
    P::kInfo.bitsPerPixel > 1;

// Where the samples of a channel stand in the record, counted in samples.
template <class P>
constexpr size_t SampleOffset(int32_t channel) {
  constexpr bool kBlueFirst =
      std::is_same_v<P, PxRgbBytes> || std::is_same_v<P, PxRgbaBytes> || std::is_same_v<P, PxRgb48>;
  const int32_t n = ChannelInRange<P>(channel);
  return static_cast<size_t>(kBlueFirst && n < 3 ? 2 - n : n);
}

// `stride` samples of `sampleBytes` bytes make a record, of which the one at `offset` is meant.
// sampleBytes: 1, 2, 4; stride: 1 to 5.
void GatherSamples(const void* records, void* samples, size_t count, size_t sampleBytes,
                   size_t stride, size_t offset);
void ScatterSamples(const void* samples, void* records, size_t count, size_t sampleBytes,
                    size_t stride, size_t offset);

template <class P>
void GatherRow(std::span<const P> in, void* samples, int32_t channel) {
  if constexpr (kIsArrayOfSamples<P>)
    GatherSamples(in.data(), samples, in.size(), scalar::kSampleBytes<P>, P::kInfo.channels,
                  SampleOffset<P>(channel));
  else
    scalar::Gather(in, samples, channel);
}
template <class P>
void ScatterRow(const void* samples, std::span<P> out, int32_t channel) {
  if constexpr (kIsArrayOfSamples<P>)
    ScatterSamples(samples, out.data(), out.size(), scalar::kSampleBytes<P>, P::kInfo.channels,
                   SampleOffset<P>(channel));
  else
    scalar::Scatter(samples, out, channel);
}

}  // namespace vm
