// Byte tables with AVX2: sixteen 16-entry shuffles of the index's low nibble,
// then a tree of byte blends on the index's bits 4, 5, 6 and 7 (each moved to
// the top bit of its byte, where the blend looks) picks the one the high
// nibble names.
#include "frame/byte_table.hpp"

#include <immintrin.h>

namespace tpx::avx2 {
namespace {

struct Table {
    __m256i part[16];
    explicit Table(const uint8_t* t) {
        for (int h = 0; h < 16; ++h)
            part[h] = _mm256_broadcastsi128_si256(_mm_loadu_si128(reinterpret_cast<const __m128i*>(t + 16 * h)));
    }
    __m256i operator()(__m256i x) const {
        const __m256i lo = _mm256_and_si256(x, _mm256_set1_epi8(15));
        // Word shifts: the bits that cross into the next byte never reach its top bit.
        const __m256i bit4 = _mm256_slli_epi16(x, 3), bit5 = _mm256_slli_epi16(x, 2), bit6 = _mm256_add_epi8(x, x);
        __m256i r[8];
        for (int k = 0; k < 8; ++k)
            r[k] = _mm256_blendv_epi8(_mm256_shuffle_epi8(part[2 * k], lo), _mm256_shuffle_epi8(part[2 * k + 1], lo),
                                      bit4);
        for (int k = 0; k < 4; ++k) r[k] = _mm256_blendv_epi8(r[2 * k], r[2 * k + 1], bit5);
        for (int k = 0; k < 2; ++k) r[k] = _mm256_blendv_epi8(r[2 * k], r[2 * k + 1], bit6);
        return _mm256_blendv_epi8(r[0], r[1], x);
    }
};

__m256i load(const uint8_t* p) { return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p)); }
void store(uint8_t* p, __m256i v) { _mm256_storeu_si256(reinterpret_cast<__m256i*>(p), v); }

}  // namespace

std::ptrdiff_t lookupBytes(const uint8_t* table, const uint8_t* s, uint8_t* d, std::ptrdiff_t n) {
    const Table t(table);
    std::ptrdiff_t i = 0;
    for (; i + 32 <= n; i += 32) store(d + i, t(load(s + i)));
    return i;
}

// Eight pixels at a time, each stored whole with its own fourth byte merged
// back in, as the library's other AC4 vector rows do.
std::ptrdiff_t lookupBytes3of4(const uint8_t* table, const uint8_t* s, uint8_t* d, std::ptrdiff_t n) {
    const Table t(table);
    const __m256i fourth = _mm256_set1_epi32(int32_t(0xFF000000u));
    std::ptrdiff_t p = 0;
    for (; p + 8 <= n; p += 8)
        store(d + 4 * p, _mm256_blendv_epi8(t(load(s + 4 * p)), load(d + 4 * p), fourth));
    return p;
}

// 192 bytes at a time: six vectors, each with its part of the ranks.
std::ptrdiff_t lookupBytesRanked(const Ranked& t, const uint8_t* s, uint8_t* d, std::ptrdiff_t n) {
    const Table base(t.base), packed(t.packed);
    alignas(32) uint8_t steps[16] = {};
    for (int k = 0; k < 8; ++k) steps[k] = t.steps[k];
    const __m256i stepOf = _mm256_broadcastsi128_si256(_mm_load_si128(reinterpret_cast<const __m128i*>(steps)));
    const __m256i low5 = _mm256_set1_epi8(31), low3 = _mm256_set1_epi8(7);
    const __m256i fourth = _mm256_set1_epi32(t.keepFourth ? int32_t(0xFF000000u) : 0);
    std::ptrdiff_t i = 0;
    for (; i + 192 <= n; i += 192)
        for (int v = 0; v < 6; ++v) {
            const __m256i x = load(s + i + 32 * v), p = packed(x);
            const __m256i step = _mm256_shuffle_epi8(stepOf, _mm256_and_si256(_mm256_srli_epi16(p, 5), low3));
            const __m256i up = _mm256_cmpgt_epi8(_mm256_and_si256(p, low5), load(t.ranks + 32 * v));
            const __m256i r = _mm256_add_epi8(base(x), _mm256_and_si256(up, step));
            store(d + i + 32 * v, _mm256_blendv_epi8(r, load(d + i + 32 * v), fourth));
        }
    return i;
}

}  // namespace tpx::avx2
