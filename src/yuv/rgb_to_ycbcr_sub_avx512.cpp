// AVX-512 row functions of the RGB to subsampled YCbCr encoders: 32 pixels
// of each row per iteration.
// GCC 12's AVX-512 intrinsics start from a self-initialised "undefined"
// vector, which -W(maybe-)uninitialized reports after inlining.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic ignored "-Wuninitialized"
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#endif
#include "yuv/rgb_to_ycbcr_sub_simd.hpp"

namespace tpx::yuv::enc {
namespace {

struct V512 {
    using T = __m512i;
    static constexpr int lanes = 4;
    static T bcast128(__m128i m) { return _mm512_broadcast_i32x4(m); }
    static T set32(int32_t v) { return _mm512_set1_epi32(v); }
    static T set64(int32_t lo, int32_t hi) { return _mm512_set1_epi64(int64_t(uint32_t(lo)) | (int64_t(hi) << 32)); }
    static __m128i load128(const uint8_t* p) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p)); }
    static T loadLanes(const uint8_t* p, int stride) {
        const __m256i lo = _mm256_inserti128_si256(_mm256_castsi128_si256(load128(p)), load128(p + stride), 1);
        const __m256i hi =
            _mm256_inserti128_si256(_mm256_castsi128_si256(load128(p + 2 * stride)), load128(p + 3 * stride), 1);
        return _mm512_inserti64x4(_mm512_castsi256_si512(lo), hi, 1);
    }
    static T shuffle(T v, T m) { return _mm512_shuffle_epi8(v, m); }
    static T andv(T a, T b) { return _mm512_and_si512(a, b); }
    static T srli16(T v, int n) { return _mm512_srli_epi16(v, unsigned(n)); }
    static T madd(T a, T b) { return _mm512_madd_epi16(a, b); }
    static T add16(T a, T b) { return _mm512_add_epi16(a, b); }
    static T add32(T a, T b) { return _mm512_add_epi32(a, b); }
    static T sra32(T v, __m128i n) { return _mm512_sra_epi32(v, n); }
    static T swapPairs(T v) { return _mm512_shuffle_epi32(v, _MM_PERM_CDAB); }
    static T packs32(T a, T b) { return _mm512_packs_epi32(a, b); }
    static T packus16(T a, T b) { return _mm512_packus_epi16(a, b); }
    static T unpacklo16(T a, T b) { return _mm512_unpacklo_epi16(a, b); }
    static T unpackhi16(T a, T b) { return _mm512_unpackhi_epi16(a, b); }
    static void store(uint8_t* p, T v) { _mm512_storeu_si512(p, v); }
    // Words of two rows (lane k: pixels 8k..8k+7) to 32 bytes each.
    static void storeRows(uint8_t* p0, uint8_t* p1, T w0, T w1) {
        const T b = _mm512_permutexvar_epi64(_mm512_setr_epi64(0, 2, 4, 6, 1, 3, 5, 7), _mm512_packus_epi16(w0, w1));
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(p0), _mm512_castsi512_si256(b));
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(p1), _mm512_extracti64x4_epi64(b, 1));
    }
    static void storeRow(uint8_t* p, T w) {
        const T b = _mm512_permutexvar_epi64(_mm512_setr_epi64(0, 2, 4, 6, 1, 3, 5, 7), _mm512_packus_epi16(w, w));
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(p), _mm512_castsi512_si256(b));
    }
    // Words Cb0 Cr0 Cb1 Cr1 ... to 16 bytes of each plane.
    static void storePlanes(uint8_t* cb, uint8_t* cr, T c) {
        const T split = _mm512_broadcast_i32x4(_mm_setr_epi8(0, 2, 4, 6, 1, 3, 5, 7, 8, 10, 12, 14, 9, 11, 13, 15));
        const T b = _mm512_permutexvar_epi32(_mm512_setr_epi32(0, 4, 8, 12, 1, 5, 9, 13, 0, 4, 8, 12, 1, 5, 9, 13),
                                             _mm512_shuffle_epi8(_mm512_packus_epi16(c, c), split));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(cb), _mm512_castsi512_si128(b));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(cr), _mm512_extracti32x4_epi32(b, 1));
    }
};

}  // namespace

#define TPX_ENC_AVX512(L) \
    template <>           \
    int rowAvx512<L>(const Rows& r, const Arith& a) { return rowSimd<V512, L>(r, a); }
TPX_ENC_SIMD_LAYOUTS(TPX_ENC_AVX512)
#undef TPX_ENC_AVX512

}  // namespace tpx::yuv::enc
