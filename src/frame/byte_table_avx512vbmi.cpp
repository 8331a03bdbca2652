// Byte tables with the AVX-512 byte permutes: the index's low seven bits
// pick from two 128-entry halves of the table, its top bit picks the half.
#include "frame/byte_table.hpp"

#include <immintrin.h>

namespace tpx::avx512vbmi {
namespace {

struct Table {
    __m512i q0, q1, q2, q3;
    explicit Table(const uint8_t* t)
        : q0(_mm512_loadu_si512(t)), q1(_mm512_loadu_si512(t + 64)), q2(_mm512_loadu_si512(t + 128)),
          q3(_mm512_loadu_si512(t + 192)) {}
    __m512i operator()(__m512i x) const {
        const __m512i low = _mm512_permutex2var_epi8(q0, x, q1), high = _mm512_permutex2var_epi8(q2, x, q3);
        return _mm512_mask_blend_epi8(_mm512_movepi8_mask(x), low, high);
    }
};

}  // namespace

std::ptrdiff_t lookupBytes(const uint8_t* table, const uint8_t* s, uint8_t* d, std::ptrdiff_t n) {
    const Table t(table);
    std::ptrdiff_t i = 0;
    for (; i + 64 <= n; i += 64) _mm512_storeu_si512(d + i, t(_mm512_loadu_si512(s + i)));
    return i;
}

std::ptrdiff_t lookupBytes3of4(const uint8_t* table, const uint8_t* s, uint8_t* d, std::ptrdiff_t n) {
    const Table t(table);
    std::ptrdiff_t p = 0;
    for (; p + 16 <= n; p += 16) _mm512_mask_storeu_epi8(d + 4 * p, 0x7777777777777777ull, t(_mm512_loadu_si512(s + 4 * p)));
    return p;
}

}  // namespace tpx::avx512vbmi
