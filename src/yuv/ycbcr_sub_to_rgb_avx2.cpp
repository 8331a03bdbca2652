// AVX2 row functions of the subsampled YCbCr decoders: 32 pixels per step.
#include "yuv/ycbcr_sub_to_rgb_simd.hpp"

namespace tpx::yuv::sub::simd {
namespace {

struct Avx2 {
    using I = __m256i;
    static constexpr int N = 32;
    static I load(const uint8_t* p) { return _mm256_loadu_si256(reinterpret_cast<const I*>(p)); }
    static void store(uint8_t* p, I v) { _mm256_storeu_si256(reinterpret_cast<I*>(p), v); }
    TPX_DEC_SUB_COMMON_OPS(_mm256, si256)
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
    // The first three bytes of each four-byte pixel of q (8 pixels) to p.
    static void store3of4(uint8_t* p, I q) {
        const I drop = _mm256_setr_epi8(0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1,  //
                                        0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1);
        const I v = _mm256_permutevar8x32_epi32(_mm256_shuffle_epi8(q, drop), _mm256_setr_epi32(0, 1, 2, 4, 5, 6, 3, 7));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(p), _mm256_castsi256_si128(v));
        _mm_storel_epi64(reinterpret_cast<__m128i*>(p + 16), _mm256_extracti128_si256(v, 1));
    }
};

}  // namespace
}  // namespace tpx::yuv::sub::simd

#define TPX_DEC_SUB_INSTANTIATE_rowAvx2(L, A, O) template int rowAvx2<L, A, O>(const Row&, const Row&);
TPX_DEC_SUB_ROWS(rowAvx2, simd::Avx2)
