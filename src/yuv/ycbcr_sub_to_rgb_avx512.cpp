// AVX-512 row functions of the subsampled YCbCr decoders: 64 pixels per step.
// GCC 12's AVX-512 intrinsics start from a self-initialised "undefined"
// vector, which -Wmaybe-uninitialized reports after inlining.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#pragma GCC diagnostic ignored "-Wuninitialized"
#endif

#include "yuv/ycbcr_sub_to_rgb_simd.hpp"

namespace tpx::yuv::sub::simd {
namespace {

struct Avx512 {
    using I = __m512i;
    static constexpr int N = 64;
    static I load(const uint8_t* p) { return _mm512_loadu_si512(p); }
    static void store(uint8_t* p, I v) { _mm512_storeu_si512(p, v); }
    static I zero() { return _mm512_setzero_si512(); }
    static I set16(int16_t v) { return _mm512_set1_epi16(v); }
    static I set8(char v) { return _mm512_set1_epi8(v); }
    static I and_(I a, I b) { return _mm512_and_si512(a, b); }
    static I or_(I a, I b) { return _mm512_or_si512(a, b); }
    static I add(I a, I b) { return _mm512_add_epi16(a, b); }
    static I sub(I a, I b) { return _mm512_sub_epi16(a, b); }
    static I mulhiU(I a, I b) { return _mm512_mulhi_epu16(a, b); }
    static I set32(int32_t v) { return _mm512_set1_epi32(v); }
    static I add32(I a, I b) { return _mm512_add_epi32(a, b); }
    static I mullo32(I a, I b) { return _mm512_mullo_epi32(a, b); }
    static I packs32(I a, I b) { return _mm512_packs_epi32(a, b); }
    template <int n> static I sra32(I a) { return _mm512_srai_epi32(a, n); }
    static I mulhiS(I a, I b) { return _mm512_mulhi_epi16(a, b); }
    template <int n> static I sll16(I a) { return _mm512_slli_epi16(a, n); }
    template <int n> static I srl16(I a) { return _mm512_srli_epi16(a, n); }
    template <int n> static I sra16(I a) { return _mm512_srai_epi16(a, n); }
    static I unpackLo8(I a, I b) { return _mm512_unpacklo_epi8(a, b); }
    static I unpackHi8(I a, I b) { return _mm512_unpackhi_epi8(a, b); }
    static I unpackLo16(I a, I b) { return _mm512_unpacklo_epi16(a, b); }
    static I unpackHi16(I a, I b) { return _mm512_unpackhi_epi16(a, b); }
    static I packus16(I a, I b) { return _mm512_packus_epi16(a, b); }
    static I unpackLo64(I a, I b) { return _mm512_unpacklo_epi64(a, b); }
    static I unpackHi64(I a, I b) { return _mm512_unpackhi_epi64(a, b); }
    static I shuffle8(I a, I m) { return _mm512_shuffle_epi8(a, m); }
    template <class... B>
    static I bytesPerLane(B... b) { return _mm512_broadcast_i32x4(_mm_setr_epi8(char(b)...)); }
    static I lanesEven(I a, I b) { return _mm512_shuffle_i64x2(a, b, 0x88); }
    static I lanesOdd(I a, I b) { return _mm512_shuffle_i64x2(a, b, 0xDD); }
    static I widenHalf(const uint8_t* p) {
        return _mm512_cvtepu8_epi16(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(p)));
    }
    static I widenQuarterDup(const uint8_t* p) {
        const __m128i c = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
        return _mm512_cvtepu8_epi16(_mm256_set_m128i(_mm_unpackhi_epi8(c, c), _mm_unpacklo_epi8(c, c)));
    }
    // Transposed order: 32-bit group (lane k, slot m) holds pixels 16m + 4k..
    // of the natural order (vector of bytes or of pair values alike).
    static I transpose(I v) {
        return _mm512_permutexvar_epi32(_mm512_setr_epi32(0, 4, 8, 12, 1, 5, 9, 13, 2, 6, 10, 14, 3, 7, 11, 15), v);
    }
    // Packed pairs (one 32-bit group each) in the order of halves A and B of
    // the transposed order.
    static I groupsT(I v) {
        return _mm512_permutexvar_epi32(_mm512_setr_epi32(0, 1, 8, 9, 2, 3, 10, 11, 4, 5, 12, 13, 6, 7, 14, 15), v);
    }
    // Four-byte pixels of channels a, b, c, d in transposed order: q[i]
    // holds pixels 16i..16i+15.
    static void interleave4(I a, I b, I c, I d, I q[4]) {
        const I ab0 = _mm512_unpacklo_epi8(a, b), ab1 = _mm512_unpackhi_epi8(a, b);
        const I cd0 = _mm512_unpacklo_epi8(c, d), cd1 = _mm512_unpackhi_epi8(c, d);
        q[0] = _mm512_unpacklo_epi16(ab0, cd0);
        q[1] = _mm512_unpackhi_epi16(ab0, cd0);
        q[2] = _mm512_unpacklo_epi16(ab1, cd1);
        q[3] = _mm512_unpackhi_epi16(ab1, cd1);
    }
    static void storeC4T(uint8_t* p, I a, I b, I c, I d) {
        I q[4];
        interleave4(a, b, c, d, q);
        for (int i = 0; i < 4; ++i) store(p + 64 * i, q[i]);
    }
    static void storeC3T(uint8_t* p, I a, I b, I c) {
        I q[4];
        interleave4(a, b, c, zero(), q);
        const I drop = _mm512_broadcast_i32x4(_mm_setr_epi8(0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1));
        const I pack = _mm512_setr_epi32(0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, 3, 7, 11, 15);
        for (int i = 0; i < 4; ++i) {
            const I v = _mm512_permutexvar_epi32(pack, _mm512_shuffle_epi8(q[i], drop));
            _mm256_storeu_si256(reinterpret_cast<__m256i*>(p + 48 * i), _mm512_castsi512_si256(v));
            _mm_storeu_si128(reinterpret_cast<__m128i*>(p + 48 * i + 32), _mm512_extracti32x4_epi32(v, 2));
        }
    }
};

}  // namespace
}  // namespace tpx::yuv::sub::simd

#define TPX_DEC_SUB_INSTANTIATE_rowAvx512(L, A, O) template int rowAvx512<L, A, O>(const Row&, const Row&);
TPX_DEC_SUB_ROWS(rowAvx512, simd::Avx512)
