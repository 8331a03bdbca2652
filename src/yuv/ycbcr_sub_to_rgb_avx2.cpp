// AVX2 row functions of the subsampled YCbCr decoders: 32 pixels per step.
#include "yuv/ycbcr_sub_to_rgb_simd.hpp"

namespace tpx::yuv::sub::simd {
namespace {

struct Avx2 {
    using I = __m256i;
    static constexpr int N = 32;
    static I load(const uint8_t* p) { return _mm256_loadu_si256(reinterpret_cast<const I*>(p)); }
    static void store(uint8_t* p, I v) { _mm256_storeu_si256(reinterpret_cast<I*>(p), v); }
    static I zero() { return _mm256_setzero_si256(); }
    static I set16(int16_t v) { return _mm256_set1_epi16(v); }
    static I set8(char v) { return _mm256_set1_epi8(v); }
    static I and_(I a, I b) { return _mm256_and_si256(a, b); }
    static I or_(I a, I b) { return _mm256_or_si256(a, b); }
    static I add(I a, I b) { return _mm256_add_epi16(a, b); }
    static I sub(I a, I b) { return _mm256_sub_epi16(a, b); }
    static I mulhiU(I a, I b) { return _mm256_mulhi_epu16(a, b); }
    static I set32(int32_t v) { return _mm256_set1_epi32(v); }
    static I add32(I a, I b) { return _mm256_add_epi32(a, b); }
    static I mullo32(I a, I b) { return _mm256_mullo_epi32(a, b); }
    static I packs32(I a, I b) { return _mm256_packs_epi32(a, b); }
    template <int n> static I sra32(I a) { return _mm256_srai_epi32(a, n); }
    static I mulhiS(I a, I b) { return _mm256_mulhi_epi16(a, b); }
    template <int n> static I sll16(I a) { return _mm256_slli_epi16(a, n); }
    template <int n> static I srl16(I a) { return _mm256_srli_epi16(a, n); }
    template <int n> static I sra16(I a) { return _mm256_srai_epi16(a, n); }
    static I unpackLo8(I a, I b) { return _mm256_unpacklo_epi8(a, b); }
    static I unpackHi8(I a, I b) { return _mm256_unpackhi_epi8(a, b); }
    static I unpackLo16(I a, I b) { return _mm256_unpacklo_epi16(a, b); }
    static I unpackHi16(I a, I b) { return _mm256_unpackhi_epi16(a, b); }
    static I packus16(I a, I b) { return _mm256_packus_epi16(a, b); }
    static I unpackLo64(I a, I b) { return _mm256_unpacklo_epi64(a, b); }
    static I unpackHi64(I a, I b) { return _mm256_unpackhi_epi64(a, b); }
    static I shuffle8(I a, I m) { return _mm256_shuffle_epi8(a, m); }
    template <class... B>
    static I bytesPerLane(B... b) { return _mm256_broadcastsi128_si256(_mm_setr_epi8(char(b)...)); }
    static I lanesEven(I a, I b) { return _mm256_permute2x128_si256(a, b, 0x20); }
    static I lanesOdd(I a, I b) { return _mm256_permute2x128_si256(a, b, 0x31); }
    static I widenHalf(const uint8_t* p) {
        return _mm256_cvtepu8_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(p)));
    }
    static I widenQuarterDup(const uint8_t* p) {
        const __m128i c = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(p));
        return _mm256_cvtepu8_epi16(_mm_unpacklo_epi8(c, c));
    }
    // Transposed order: 32-bit group (lane k, slot m) holds pixels 8m + 4k..
    // of the natural order (vector of bytes or of pair values alike).
    static I transpose(I v) { return _mm256_permutevar8x32_epi32(v, _mm256_setr_epi32(0, 2, 4, 6, 1, 3, 5, 7)); }
    // Packed pairs (one 32-bit group each) in the order of halves A and B of
    // the transposed order.
    static I groupsT(I v) { return _mm256_permutevar8x32_epi32(v, _mm256_setr_epi32(0, 1, 4, 5, 2, 3, 6, 7)); }
    // Four-byte pixels of channels a, b, c, d in transposed order: q[i]
    // holds pixels 8i..8i+7.
    static void interleave4(I a, I b, I c, I d, I q[4]) {
        const I ab0 = _mm256_unpacklo_epi8(a, b), ab1 = _mm256_unpackhi_epi8(a, b);
        const I cd0 = _mm256_unpacklo_epi8(c, d), cd1 = _mm256_unpackhi_epi8(c, d);
        q[0] = _mm256_unpacklo_epi16(ab0, cd0);
        q[1] = _mm256_unpackhi_epi16(ab0, cd0);
        q[2] = _mm256_unpacklo_epi16(ab1, cd1);
        q[3] = _mm256_unpackhi_epi16(ab1, cd1);
    }
    static void storeC4T(uint8_t* p, I a, I b, I c, I d) {
        I q[4];
        interleave4(a, b, c, d, q);
        for (int i = 0; i < 4; ++i) store(p + 32 * i, q[i]);
    }
    static void storeC3T(uint8_t* p, I a, I b, I c) {
        I q[4];
        interleave4(a, b, c, zero(), q);
        const I drop = _mm256_setr_epi8(0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1,  //
                                        0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1);
        const I pack = _mm256_setr_epi32(0, 1, 2, 4, 5, 6, 3, 7);
        for (int i = 0; i < 4; ++i) {
            const I v = _mm256_permutevar8x32_epi32(_mm256_shuffle_epi8(q[i], drop), pack);
            _mm_storeu_si128(reinterpret_cast<__m128i*>(p + 24 * i), _mm256_castsi256_si128(v));
            _mm_storel_epi64(reinterpret_cast<__m128i*>(p + 24 * i + 16), _mm256_extracti128_si256(v, 1));
        }
    }
};

}  // namespace
}  // namespace tpx::yuv::sub::simd

#define TPX_DEC_SUB_INSTANTIATE_rowAvx2(L, A, O) template int rowAvx2<L, A, O>(const Row&, const Row&);
TPX_DEC_SUB_ROWS(rowAvx2, simd::Avx2)
