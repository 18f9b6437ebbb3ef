// The conversions of ink records.

#include <array>

#include "image/kernels/rows/ConvertRows.h"
#include "image/kernels/rows/Vectors.h"
#include "image/kernels/rows/Words.h"

namespace vm {
namespace {

// For each value of each ink, what it does to the four channels of a pixel.
struct Channels {
  uint16_t words[4];
};
using InkTable = std::array<std::array<Channels, 256>, 4>;

template <class Of>
constexpr InkTable TableOf(Of of) {
  InkTable table{};
  for (size_t ink = 0; ink < 4; ++ink) {
    for (size_t value = 0; value < 256; ++value)
      table[ink][value] = of(ink, value);
  }
  return table;
}

// What PxCmykBytes leave of the light in blue, green, red, and of alpha, which no ink touches.
constexpr InkTable kLeftByInk = TableOf([](size_t ink, size_t value) {
  const auto left = [&](size_t channel) {
    return static_cast<uint16_t>(255 - kInkAbsorption[channel][ink][value]);
  };
  return Channels{{left(2), left(1), left(0), 255}};
});

// What the larger records take from red, green and blue by the curves: each ink from its own, black
// from all.
constexpr InkTable kTakenByCurve = TableOf([](size_t ink, size_t value) {
  const uint16_t taken = kInkCurve[ink][value];
  const auto from = [&](size_t channel) -> uint16_t {
    return ink == channel || ink == 3 ? taken : 0;
  };
  return Channels{{from(0), from(1), from(2), 0}};
});

// The entries for two pixels.
__m128i Entries(const std::array<Channels, 256>& table, size_t first, size_t second) {
  return _mm_unpacklo_epi64(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(&table[first])),
                            _mm_loadl_epi64(reinterpret_cast<const __m128i*>(&table[second])));
}

// a * b / 255 for words up to 255.
__m128i Share(__m128i a, __m128i b) {
  const __m128i product = _mm_mullo_epi16(a, b);
  const __m128i above =
      _mm_add_epi16(_mm_add_epi16(product, _mm_set1_epi16(1)), _mm_srli_epi16(product, 8));
  return _mm_srli_epi16(above, 8);
}

// Two pixels as words.
__m128i LightUnder(const PxCmykBytes& first, const PxCmykBytes& second) {
  __m128i light = Entries(kLeftByInk[0], first.cyan, second.cyan);
  light = Share(light, Entries(kLeftByInk[1], first.magenta, second.magenta));
  light = Share(light, Entries(kLeftByInk[2], first.yellow, second.yellow));
  return Share(light, Entries(kLeftByInk[3], first.black, second.black));
}

// In each 32-bit number the first and the third byte exchanged, the fourth 0.
__m128i SwappedOuterBytes(__m128i pixels) {
  const __m128i low = _mm_set1_epi32(0xFF);
  const __m128i middle = _mm_and_si128(pixels, _mm_set1_epi32(0xFF00));
  return _mm_or_si128(middle, _mm_or_si128(_mm_and_si128(_mm_srli_epi32(pixels, 16), low),
                                           _mm_slli_epi32(_mm_and_si128(pixels, low), 16)));
}

// The low byte of each 32-bit number in its three low bytes.
__m128i InThreeBytes(__m128i low) {
  return _mm_or_si128(low, _mm_or_si128(_mm_slli_epi32(low, 8), _mm_slli_epi32(low, 16)));
}

__m128i Numbers(uint32_t a, uint32_t b, uint32_t c, uint32_t d) {
  return _mm_set_epi32(static_cast<int32_t>(d), static_cast<int32_t>(c), static_cast<int32_t>(b),
                       static_cast<int32_t>(a));
}

// SSE2 knows the smaller of words only with a sign.
__m128i SmallerWords(__m128i a, __m128i b) {
  return _mm_sub_epi16(a, _mm_subs_epu16(a, b));
}

// Words up to 255 as they are, of others the high bytes: the places in a curve.
__m128i CurvePlaces(__m128i words) {
  const __m128i high = _mm_srli_epi16(words, 8);
  return _mm_or_si128(high, _mm_and_si128(words, _mm_cmpeq_epi16(high, _mm_setzero_si128())));
}

}  // namespace

void GetRgbaRow(std::span<const PxCmykBytes> in, PxRgbaBytes* out) {
  size_t i = 0;
  for (; i + 4 <= in.size(); i += 4) {
    Store16(out + i,
            _mm_packus_epi16(LightUnder(in[i], in[i + 1]), LightUnder(in[i + 2], in[i + 3])));
  }
  scalar::GetRgba(in.subspan(i), out + i);
}

void GetRgbaRow(std::span<const PxCmykaBytes> in, PxRgbaBytes* out) {
  const auto inks = [&](size_t i) { return Load<uint32_t>(&in[i]); };
  const auto black = [&](size_t i) { return uint32_t{kInkCurve[3][in[i].black]}; };
  const auto alpha = [&](size_t i) { return uint32_t{in[i].alpha} << 24; };
  size_t i = 0;
  for (; i + 4 <= in.size(); i += 4) {
    const __m128i cyanFirst = Numbers(inks(i), inks(i + 1), inks(i + 2), inks(i + 3));
    const __m128i blacks = Numbers(black(i), black(i + 1), black(i + 2), black(i + 3));
    const __m128i unlit = _mm_subs_epu8(_mm_set1_epi32(0xFFFFFF), SwappedOuterBytes(cyanFirst));
    const __m128i colours = _mm_subs_epu8(unlit, InThreeBytes(blacks));
    Store16(out + i,
            _mm_or_si128(colours, Numbers(alpha(i), alpha(i + 1), alpha(i + 2), alpha(i + 3))));
  }
  scalar::GetRgba(in.subspan(i), out + i);
}

void PutRgbaRow(const PxRgbaBytes* in, std::span<PxCmykaBytes> out) {
  size_t i = 0;
  for (; i + 4 <= out.size(); i += 4) {
    const __m128i colours = Load16(in + i);
    const __m128i inks = _mm_xor_si128(SwappedOuterBytes(colours), _mm_set1_epi32(0xFFFFFF));
    const __m128i smaller = _mm_min_epu8(inks, _mm_srli_epi32(inks, 8));
    const __m128i black =
        _mm_and_si128(_mm_min_epu8(smaller, _mm_srli_epi32(inks, 16)), _mm_set1_epi32(0xFF));
    uint32_t numbers[4];
    Store16(numbers,
            _mm_or_si128(_mm_sub_epi8(inks, InThreeBytes(black)), _mm_slli_epi32(black, 24)));
    for (size_t k = 0; k < 4; ++k) {
      Store(&out[i + k], numbers[k]);
      out[i + k].alpha = in[i + k].alpha;
    }
  }
  scalar::PutRgba(in + i, out.subspan(i));
}

void GetRgba64Row(std::span<const PxCmyk64> in, PxRgba64* out) {
  size_t i = 0;
  for (; i + 2 <= in.size(); i += 2) {
    uint16_t at[8];
    Store16(at, CurvePlaces(Load16(&in[i])));
    const auto taken = [&at](size_t ink) {
      return Entries(kTakenByCurve[ink], at[ink], at[ink + 4]);
    };
    const __m128i inks = _mm_or_si128(_mm_or_si128(taken(0), taken(1)), taken(2));
    const __m128i left = _mm_subs_epu16(_mm_subs_epu16(_mm_set1_epi16(0xFF), inks), taken(3));
    Store16(out + i, _mm_or_si128(left, _mm_slli_epi16(left, 8)));
  }
  scalar::GetRgba64(in.subspan(i), out + i);
}

void PutRgba64Row(const PxRgba64* in, std::span<PxCmyk64> out) {
  const __m128i fourth = _mm_set_epi16(-1, 0, 0, 0, -1, 0, 0, 0);
  size_t i = 0;
  for (; i + 2 <= out.size(); i += 2) {
    const __m128i inks = _mm_xor_si128(Load16(in + i), _mm_set1_epi16(-1));
    // Only the first lane of the minimum needs to be right: from there it goes to all.
    const __m128i magenta = _mm_srli_epi64(inks, 16);
    const __m128i yellow = _mm_srli_epi64(inks, 32);
    const __m128i smallest = SmallerWords(SmallerWords(inks, magenta), yellow);
    const __m128i black = _mm_shufflehi_epi16(_mm_shufflelo_epi16(smallest, 0), 0);
    Store16(&out[i], Select(fourth, black, _mm_sub_epi16(inks, black)));
  }
  scalar::PutRgba64(in + i, out.subspan(i));
}

}  // namespace vm
