#pragma once

#include <emmintrin.h>

#include <cstdint>

// Sixteen bytes at any address, and what the kernels do with them. SSE2 is all that may be used:
// every processor that the products run on has it.
namespace vm {

inline __m128i Load16(const void* from) {
  return _mm_loadu_si128(static_cast<const __m128i*>(from));
}
inline void Store16(void* to, __m128i bytes) {
  _mm_storeu_si128(static_cast<__m128i*>(to), bytes);
}

// Exchanges the first and the third of each four words.
inline __m128i SwapOuterWords(__m128i words) {
  constexpr int kThirdSecondFirstFourth = _MM_SHUFFLE(3, 0, 1, 2);
  return _mm_shufflehi_epi16(_mm_shufflelo_epi16(words, kThirdSecondFirstFourth),
                             kThirdSecondFirstFourth);
}

// `chosen` where the mask is all ones, `other` where it is zero.
inline __m128i Select(__m128i mask, __m128i chosen, __m128i other) {
  return _mm_or_si128(_mm_and_si128(mask, chosen), _mm_andnot_si128(mask, other));
}

}  // namespace vm
