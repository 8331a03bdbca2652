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
    TPX_DEC_SUB_COMMON_OPS(_mm512, si512)
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
    // The first three bytes of each four-byte pixel of q (16 pixels) to p.
    static void store3of4(uint8_t* p, I q) {
        const I drop = _mm512_broadcast_i32x4(_mm_setr_epi8(0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1));
        const I pack = _mm512_setr_epi32(0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, 3, 7, 11, 15);
        const I v = _mm512_permutexvar_epi32(pack, _mm512_shuffle_epi8(q, drop));
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(p), _mm512_castsi512_si256(v));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(p + 32), _mm512_extracti32x4_epi32(v, 2));
    }
};

}  // namespace
}  // namespace tpx::yuv::sub::simd

#define TPX_DEC_SUB_INSTANTIATE_rowAvx512(L, A, O) template int rowAvx512<L, A, O>(const Row&, const Row&);
TPX_DEC_SUB_ROWS(rowAvx512, simd::Avx512)
