// AVX2 row functions of the RGB to subsampled YCbCr encoders: 16 pixels of
// each row per iteration.
#include "yuv/rgb_to_ycbcr_sub_simd.hpp"

namespace tpx::yuv::enc {
namespace {

struct V256 {
    using T = __m256i;
    static constexpr int lanes = 2;
    static T bcast128(__m128i m) { return _mm256_broadcastsi128_si256(m); }
    static T set32(int32_t v) { return _mm256_set1_epi32(v); }
    static T set64(int32_t lo, int32_t hi) { return _mm256_set1_epi64x(int64_t(uint32_t(lo)) | (int64_t(hi) << 32)); }
    static T loadLanes(const uint8_t* p, int stride) {
        const __m128i l0 = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
        const __m128i l1 = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + stride));
        return _mm256_inserti128_si256(_mm256_castsi128_si256(l0), l1, 1);
    }
    static T shuffle(T v, T m) { return _mm256_shuffle_epi8(v, m); }
    static T andv(T a, T b) { return _mm256_and_si256(a, b); }
    static T srli16(T v, int n) { return _mm256_srli_epi16(v, n); }
    static T madd(T a, T b) { return _mm256_madd_epi16(a, b); }
    static T add16(T a, T b) { return _mm256_add_epi16(a, b); }
    static T add32(T a, T b) { return _mm256_add_epi32(a, b); }
    static T sra32(T v, __m128i n) { return _mm256_sra_epi32(v, n); }
    static T swapPairs(T v) { return _mm256_shuffle_epi32(v, 0xB1); }
    static T packs32(T a, T b) { return _mm256_packs_epi32(a, b); }
    static T packus16(T a, T b) { return _mm256_packus_epi16(a, b); }
    static T unpacklo16(T a, T b) { return _mm256_unpacklo_epi16(a, b); }
    static T unpackhi16(T a, T b) { return _mm256_unpackhi_epi16(a, b); }
    static void store(uint8_t* p, T v) { _mm256_storeu_si256(reinterpret_cast<__m256i*>(p), v); }
    // Words of two rows (lane k: pixels 8k..8k+7) to 16 bytes each.
    static void storeRows(uint8_t* p0, uint8_t* p1, T w0, T w1) {
        const T b = _mm256_permute4x64_epi64(_mm256_packus_epi16(w0, w1), 0xD8);
        _mm_storeu_si128(reinterpret_cast<__m128i*>(p0), _mm256_castsi256_si128(b));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(p1), _mm256_extracti128_si256(b, 1));
    }
    static void storeRow(uint8_t* p, T w) {
        const T b = _mm256_permute4x64_epi64(_mm256_packus_epi16(w, w), 0x08);
        _mm_storeu_si128(reinterpret_cast<__m128i*>(p), _mm256_castsi256_si128(b));
    }
    // Words Cb0 Cr0 Cb1 Cr1 ... to 8 bytes of each plane.
    static void storePlanes(uint8_t* cb, uint8_t* cr, T c) {
        const T split = _mm256_setr_epi8(0, 2, 4, 6, 1, 3, 5, 7, 8, 10, 12, 14, 9, 11, 13, 15,  //
                                         0, 2, 4, 6, 1, 3, 5, 7, 8, 10, 12, 14, 9, 11, 13, 15);
        const T b = _mm256_permutevar8x32_epi32(_mm256_shuffle_epi8(_mm256_packus_epi16(c, c), split),
                                                _mm256_setr_epi32(0, 4, 1, 5, 0, 4, 1, 5));
        const __m128i lo = _mm256_castsi256_si128(b);
        _mm_storel_epi64(reinterpret_cast<__m128i*>(cb), lo);
        _mm_storel_epi64(reinterpret_cast<__m128i*>(cr), _mm_unpackhi_epi64(lo, lo));
    }
};

}  // namespace

#define TPX_ENC_AVX2(L) \
    template <>         \
    int rowAvx2<L>(const Rows& r, const Arith& a) { return rowSimd<V256, L>(r, a); }
TPX_ENC_SIMD_LAYOUTS(TPX_ENC_AVX2)
#undef TPX_ENC_AVX2

}  // namespace tpx::yuv::enc
