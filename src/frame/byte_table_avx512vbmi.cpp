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

// 192 bytes at a time: three vectors, each with its part of the ranks.
std::ptrdiff_t lookupBytesRanked(const Ranked& t, const uint8_t* s, uint8_t* d, std::ptrdiff_t n) {
    const Table base(t.base), packed(t.packed);
    alignas(64) uint8_t steps[64] = {};
    for (int k = 0; k < 8; ++k) steps[k] = steps[16 + k] = steps[32 + k] = steps[48 + k] = t.steps[k];
    const __m512i stepOf = _mm512_load_si512(steps);
    const __m512i low5 = _mm512_set1_epi8(31), low3 = _mm512_set1_epi8(7);
    const __m512i rank[3] = {_mm512_load_si512(t.ranks), _mm512_load_si512(t.ranks + 64), _mm512_load_si512(t.ranks + 128)};
    const __mmask64 write = t.keepFourth ? 0x7777777777777777ull : ~__mmask64(0);
    std::ptrdiff_t i = 0;
    for (; i + 192 <= n; i += 192)
        for (int v = 0; v < 3; ++v) {
            const __m512i x = _mm512_loadu_si512(s + i + 64 * v), p = packed(x);
            const __m512i step = _mm512_shuffle_epi8(stepOf, _mm512_and_si512(_mm512_srli_epi16(p, 5), low3));
            const __mmask64 up = _mm512_cmpgt_epi8_mask(_mm512_and_si512(p, low5), rank[v]);
            const __m512i lo = base(x), r = _mm512_mask_add_epi8(lo, up, lo, step);
            if (t.keepFourth) _mm512_mask_storeu_epi8(d + i + 64 * v, write, r);
            else _mm512_storeu_si512(d + i + 64 * v, r);
        }
    return i;
}

}  // namespace tpx::avx512vbmi
