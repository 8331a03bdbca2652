// No-dither and ordered rows of the bit-depth reduction compiled for AVX2
// (bodies in reduce_bits.hpp).
#include "tone/reduce_bits.hpp"

#include <immintrin.h>

namespace tpx::reduce {
const Rows kRowsAvx2 = TPX_REDUCE_TABLE;

namespace avx2 {

std::ptrdiff_t products(const Products& p, const uint8_t* s, uint8_t* d, std::ptrdiff_t n) {
    const __m256i m = _mm256_set1_epi16(int16_t(p.m)), a = _mm256_set1_epi16(int16_t(p.a));
    const __m256i high = _mm256_set1_epi16(int16_t(0xFF00)), b = _mm256_set1_epi16(p.b);
    const __m256i fourth = _mm256_set1_epi32(p.keepFourth ? int32_t(0xFF000000u) : 0);
    auto level = [&](__m256i w, __m256i e) {
        const __m256i k = _mm256_add_epi16(_mm256_mulhi_epu16(w, m), e);
        return _mm256_mulhi_epu16(_mm256_or_si256(_mm256_and_si256(k, high), b), a);
    };
    const __m256i zero = _mm256_setzero_si256();
    std::ptrdiff_t i = 0;
    for (; i + 192 <= n; i += 192)
        for (int v = 0; v < 6; ++v) {
            const __m256i x = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(s + i + 32 * v));
            const __m256i eLo = _mm256_load_si256(reinterpret_cast<const __m256i*>(p.eLanes + 32 * v));
            const __m256i eHi = _mm256_load_si256(reinterpret_cast<const __m256i*>(p.eLanes + 32 * v + 16));
            const __m256i r = _mm256_packus_epi16(level(_mm256_unpacklo_epi8(zero, x), eLo),
                                                  level(_mm256_unpackhi_epi8(zero, x), eHi));
            uint8_t* at = d + i + 32 * v;
            const __m256i kept =
                p.keepFourth ? _mm256_blendv_epi8(r, _mm256_loadu_si256(reinterpret_cast<const __m256i*>(at)), fourth) : r;
            _mm256_storeu_si256(reinterpret_cast<__m256i*>(at), kept);
        }
    return i;
}

}  // namespace avx2
}  // namespace tpx::reduce
