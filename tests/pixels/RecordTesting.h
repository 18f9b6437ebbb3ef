#pragma once

// What the tests of the pixel records share: reading and writing channels, and the blend rules as
// plain arithmetic on wide integers, written down once more without the code under test.

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <cstring>

namespace vm {

// Channel n of the record, read as T. Fails the test if another width than that of T is written.
template <class T, class P>
T ChannelOf(const P& pixel, int32_t n) {
  std::array<uint8_t, 8> around{0xA5, 0xA5, 0xA5, 0xA5, 0xA5, 0xA5, 0xA5, 0xA5};
  pixel.GetChannel(around.data() + 2, n);
  EXPECT_EQ(around[0], 0xA5);
  EXPECT_EQ(around[1], 0xA5);
  for (size_t i = 2 + sizeof(T); i < around.size(); ++i) {
    EXPECT_EQ(around[i], 0xA5) << "byte " << i - 2 << " of the value";
  }
  T value;
  std::memcpy(&value, around.data() + 2, sizeof value);
  return value;
}

// A copy of the record with channel n set.
template <class T, class P>
P WithChannel(P pixel, int32_t n, T value) {
  pixel.PutChannel(&value, n);
  return pixel;
}

template <class P>
P Mixed255(P dst, const P& src, float t) {
  dst.Mix255(src, t);
  return dst;
}
template <class P>
P Mixed256(P dst, const P& src, float t) {
  dst.Mix256(src, t);
  return dst;
}
template <class P>
P Composited(P dst, const P& src) {
  dst.Composite(src);
  return dst;
}
template <class P>
P Composited(P dst, const P& src, float t) {
  dst.Composite(src, t);
  return dst;
}

// Fractions at and around the steps of a byte's and a word's weight.
inline constexpr std::array<float, 17> kFractions{
    0.0F,   0.001F, 0.00390625F, 0.0039215689F, 0.1F,  0.25F,  0.3F,     0.498F, 0.5F,
    0.502F, 0.75F,  0.9F,        0.989F,        0.99F, 0.996F, 0.99999F, 1.0F};

// (src*w + dst*(full-w) + rounding) / full
inline int64_t WeightedMean(int64_t dst, int64_t src, int64_t w, int64_t full, int64_t rounding) {
  return (src * w + dst * (full - w) + rounding) / full;
}

// The alpha that a composite leaves, for an alpha that spans 0 to `full`: the limited sum, or
// "over".
inline int64_t SummedAlpha(int64_t dst, int64_t s, int64_t full) {
  return dst + s > full ? full : dst + s;
}
inline int64_t OverAlpha(int64_t dst, int64_t s, int64_t full) {
  return s * (full - dst) / full + dst;
}

}  // namespace vm
