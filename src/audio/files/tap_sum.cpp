#include "audio/files/tap_sum.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace orma {

std::int32_t TapSumPortable(const InterpolationTable::Row& row, const std::int16_t* x) {
    std::int32_t sum = 0;
    for (std::uint32_t tap = 0; tap < InterpolationTable::kTaps; ++tap) {
        sum += (row.taps[tap] * x[tap]) >> 4;
    }
    return sum;
}

// pmaddwd adds whole products in pairs, so the four low bits of each are summed apart and taken
// off: sum(p >> 4) = (sum(p) - sum(p & 15)) / 16. No lane overflows: its four taps stay below 65536
// in absolute sum, and the lanes are shifted before they are added up.
std::int32_t TapSum(const InterpolationTable::Row& row, const std::int16_t* x) {
#if defined(__SSE2__)
    const auto* taps = reinterpret_cast<const __m128i*>(row.taps.data());
    const auto* samples = reinterpret_cast<const __m128i*>(x);
    const __m128i h0 = _mm_load_si128(taps);
    const __m128i h1 = _mm_load_si128(taps + 1);
    const __m128i x0 = _mm_loadu_si128(samples);
    const __m128i x1 = _mm_loadu_si128(samples + 1);
    const __m128i lowBits = _mm_set1_epi16(15);
    const __m128i low = _mm_add_epi16(_mm_and_si128(_mm_mullo_epi16(h0, x0), lowBits),
                                      _mm_and_si128(_mm_mullo_epi16(h1, x1), lowBits));
    const __m128i whole = _mm_add_epi32(_mm_madd_epi16(h0, x0), _mm_madd_epi16(h1, x1));
    __m128i sum = _mm_sub_epi32(whole, _mm_madd_epi16(low, _mm_set1_epi16(1)));
    sum = _mm_srai_epi32(sum, 4);
    sum = _mm_add_epi32(sum, _mm_shuffle_epi32(sum, _MM_SHUFFLE(1, 0, 3, 2)));
    sum = _mm_add_epi32(sum, _mm_shuffle_epi32(sum, _MM_SHUFFLE(2, 3, 0, 1)));
    return _mm_cvtsi128_si32(sum);
#else
    return TapSumPortable(row, x);
#endif
}

}  // namespace orma
