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

// Vector A holds pixels 0-15 of an iteration, B pixels 16-31; after the
// packs lane k holds quarters 4k..4k+3 and 16+4k..16+4k+3, which the dword
// permute order() puts back in order.
struct V512 {
    using T = __m512i;
    static constexpr int lanes = 4;
    static T order() { return _mm512_setr_epi32(0, 4, 8, 12, 1, 5, 9, 13, 2, 6, 10, 14, 3, 7, 11, 15); }
    template <class L>
    static void masks(T m[2], bool green) {
        const __m128i m0 = pixelMask<L>(0, green);
        m[0] = _mm512_broadcast_i32x4(m0);
        // Three-byte pixels 28-31 sit 4 bytes into their lane (see load).
        m[1] = L::srcBytes == 3 ? _mm512_inserti32x4(m[0], pixelMask<L>(4, green), 3) : m[0];
    }
    // Three-byte pixels: 64 bytes loaded and their 12-byte quarters moved to
    // the lanes by a dword permute; the second vector loads from byte 32 so
    // as not to pass the iteration's last byte.
    template <int Bpp>
    static T load(const uint8_t* s, int h) {
        if constexpr (Bpp == 4) {
            return _mm512_loadu_si512(s + 64 * h);
        } else {
            const T v = _mm512_loadu_si512(s + 32 * h);
            return h ? _mm512_permutexvar_epi32(
                           _mm512_setr_epi32(4, 5, 6, 7, 7, 8, 9, 10, 10, 11, 12, 13, 12, 13, 14, 15), v)
                     : _mm512_permutexvar_epi32(_mm512_setr_epi32(0, 1, 2, 3, 3, 4, 5, 6, 6, 7, 8, 9, 9, 10, 11, 12),
                                                v);
        }
    }
    static T bcast(__m128i m) { return _mm512_broadcast_i32x4(m); }
    static T set16(int16_t v) { return _mm512_set1_epi16(v); }
    static T min16(T a, T b) { return _mm512_min_epi16(a, b); }
    static T max16(T a, T b) { return _mm512_max_epi16(a, b); }
    // Even 32-bit lanes from a, odd lanes from b.
    static T blendOdd(T a, T b) { return _mm512_mask_blend_epi32(0xAAAA, a, b); }
    // Planes: 16 pixels of each plane to the words (B, R) and (G, G).
    static void planes(const uint8_t* b, const uint8_t* r, const uint8_t* g, T& br, T& gg) {
        const __m128i b16 = _mm_loadu_si128(reinterpret_cast<const __m128i*>(b));
        const __m128i r16 = _mm_loadu_si128(reinterpret_cast<const __m128i*>(r));
        const __m128i g16 = _mm_loadu_si128(reinterpret_cast<const __m128i*>(g));
        const __m256i brBytes = _mm256_inserti128_si256(_mm256_castsi128_si256(_mm_unpacklo_epi8(b16, r16)),
                                                        _mm_unpackhi_epi8(b16, r16), 1);
        const __m256i ggBytes = _mm256_inserti128_si256(_mm256_castsi128_si256(_mm_unpacklo_epi8(g16, g16)),
                                                        _mm_unpackhi_epi8(g16, g16), 1);
        br = _mm512_cvtepu8_epi16(brBytes);
        gg = _mm512_cvtepu8_epi16(ggBytes);
    }
    static T shuffle(T v, T m) { return _mm512_shuffle_epi8(v, m); }
    static T set32(int32_t v) { return _mm512_set1_epi32(v); }
    static T set64(int32_t lo, int32_t hi) {
        return _mm512_set1_epi64(int64_t(uint64_t(uint32_t(hi)) << 32 | uint32_t(lo)));
    }
    template <int N>
    static T srai(T v) {
        return _mm512_srai_epi32(v, N);
    }
    static T andv(T a, T b) { return _mm512_and_si512(a, b); }
    static T madd(T a, T b) { return _mm512_madd_epi16(a, b); }
    static T add16(T a, T b) { return _mm512_add_epi16(a, b); }
    static T mulhi16(T a, T b) { return _mm512_mulhi_epi16(a, b); }
    template <int N>
    static T srai16(T v) {
        return _mm512_srai_epi16(v, N);
    }
    static T add32(T a, T b) { return _mm512_add_epi32(a, b); }
    static T sub32(T a, T b) { return _mm512_sub_epi32(a, b); }
    static T swapPairs(T v) { return _mm512_shuffle_epi32(v, _MM_PERM_CDAB); }
    static T swapHalves(T v) { return _mm512_shuffle_epi32(v, _MM_PERM_BADC); }
    static T packs32(T a, T b) { return _mm512_packs_epi32(a, b); }
    static T packus16(T a, T b) { return _mm512_packus_epi16(a, b); }
    static T unpacklo16(T a, T b) { return _mm512_unpacklo_epi16(a, b); }
    static T unpackhi16(T a, T b) { return _mm512_unpackhi_epi16(a, b); }
    // Packed groups: lane k holds pixels 4k..4k+3 and 16+4k..16+4k+3.
    static void storePacked(uint8_t* p, T v) {
        _mm512_storeu_si512(p, _mm512_permutexvar_epi64(_mm512_setr_epi64(0, 2, 4, 6, 1, 3, 5, 7), v));
    }
    // Words of two rows to 32 bytes each.
    static void storeRows(uint8_t* p0, uint8_t* p1, T w0, T w1) {
        const T b = _mm512_permutexvar_epi32(order(), _mm512_packus_epi16(w0, w1));
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(p0), _mm512_castsi512_si256(b));
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(p1), _mm512_extracti64x4_epi64(b, 1));
    }
    static void storeRow(uint8_t* p, T w) {
        const T b = _mm512_permutexvar_epi32(order(), _mm512_packus_epi16(w, w));
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(p), _mm512_castsi512_si256(b));
    }
    // Words Cb Cr of 16 blocks to 16 bytes of each plane.
    static void storePlanes(uint8_t* cb, uint8_t* cr, T c) {
        const __m256i inOrder = _mm512_castsi512_si256(_mm512_permutexvar_epi32(order(), _mm512_packus_epi16(c, c)));
        const __m256i split =
            _mm256_shuffle_epi8(inOrder, _mm256_setr_epi8(0, 2, 4, 6, 8, 10, 12, 14, 1, 3, 5, 7, 9, 11, 13, 15,  //
                                                          0, 2, 4, 6, 8, 10, 12, 14, 1, 3, 5, 7, 9, 11, 13, 15));
        const __m256i planes = _mm256_permute4x64_epi64(split, 0xD8);
        _mm_storeu_si128(reinterpret_cast<__m128i*>(cb), _mm256_castsi256_si128(planes));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(cr), _mm256_extracti128_si256(planes, 1));
    }
    // Words Cb Cr Cb Cr of 8 quads (each twice) to 8 bytes of each plane.
    static void storeQuads(uint8_t* cb, uint8_t* cr, T c) {
        const __m256i inOrder = _mm512_castsi512_si256(_mm512_permutexvar_epi32(order(), _mm512_packus_epi16(c, c)));
        const __m256i split =
            _mm256_shuffle_epi8(inOrder, _mm256_setr_epi8(0, 4, 8, 12, 1, 5, 9, 13, 0, 4, 8, 12, 1, 5, 9, 13, 0, 4, 8,
                                                          12, 1, 5, 9, 13, 0, 4, 8, 12, 1, 5, 9, 13));
        const __m128i planes =
            _mm256_castsi256_si128(_mm256_permutevar8x32_epi32(split, _mm256_setr_epi32(0, 4, 1, 5, 0, 4, 1, 5)));
        _mm_storel_epi64(reinterpret_cast<__m128i*>(cb), planes);
        _mm_storel_epi64(reinterpret_cast<__m128i*>(cr), _mm_unpackhi_epi64(planes, planes));
    }
};

}  // namespace

#define TPX_ENC_AVX512(L)                             \
    template <>                                       \
    int rowAvx512<L>(const Rows& r, const Arith& a) { \
        return rowFor<V512, L>(r, a);                 \
    }
TPX_ENC_SIMD_LAYOUTS(TPX_ENC_AVX512)
#undef TPX_ENC_AVX512

}  // namespace tpx::yuv::enc
