// Byte tables with AVX2: sixteen 16-entry shuffles of the index's low nibble,
// each kept where the high nibble names its sixteenth of the table.
#include "frame/byte_table.hpp"

#include <immintrin.h>

namespace tpx::avx2 {

std::ptrdiff_t lookupBytes(const uint8_t* table, const uint8_t* s, uint8_t* d, std::ptrdiff_t n) {
    __m256i part[16];
    for (int h = 0; h < 16; ++h)
        part[h] = _mm256_broadcastsi128_si256(_mm_loadu_si128(reinterpret_cast<const __m128i*>(table + 16 * h)));
    const __m256i nibble = _mm256_set1_epi8(15);
    std::ptrdiff_t i = 0;
    for (; i + 32 <= n; i += 32) {
        const __m256i x = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(s + i));
        const __m256i lo = _mm256_and_si256(x, nibble), hi = _mm256_and_si256(_mm256_srli_epi16(x, 4), nibble);
        __m256i r = _mm256_setzero_si256();
        for (int h = 0; h < 16; ++h) {
            const __m256i here = _mm256_cmpeq_epi8(hi, _mm256_set1_epi8(char(h)));
            r = _mm256_or_si256(r, _mm256_and_si256(here, _mm256_shuffle_epi8(part[h], lo)));
        }
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(d + i), r);
    }
    return i;
}

}  // namespace tpx::avx2
