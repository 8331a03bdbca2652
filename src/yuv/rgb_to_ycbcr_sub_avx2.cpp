// AVX2 row functions of the RGB to subsampled YCbCr encoders: 16 pixels of
// each row per iteration.
#include <cstring>

#include "yuv/rgb_to_ycbcr_sub_simd.hpp"

namespace tpx::yuv::enc {
namespace {

// Vector A holds pixels 0-7 of an iteration, B pixels 8-15; after the packs
// lane 0 holds quarters 0-3 and 8-11, lane 1 quarters 4-7 and 12-15, which
// the dword permute kOrder puts back in order.
struct V256 {
    using T = __m256i;
    static constexpr int lanes = 2;
    static __m128i load128(const uint8_t* p) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p)); }
    static T twoLanes(__m128i lo, __m128i hi) { return _mm256_inserti128_si256(_mm256_castsi128_si256(lo), hi, 1); }
    static T order() { return _mm256_setr_epi32(0, 4, 1, 5, 2, 6, 3, 7); }
    template <class L>
    static void masks(T m[2], bool green) {
        const __m128i m0 = pixelMask<L>(0, green);
        m[0] = twoLanes(m0, m0);
        // Three-byte pixels 12-15 are loaded from 4 bytes early so that no
        // load passes the iteration's last byte.
        m[1] = L::srcBytes == 3 ? twoLanes(m0, pixelMask<L>(4, green)) : m[0];
    }
    template <int Bpp>
    static T load(const uint8_t* s, int h) {
        if constexpr (Bpp == 4)
            return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(s + 32 * h));
        else
            return h ? twoLanes(load128(s + 24), load128(s + 32)) : twoLanes(load128(s), load128(s + 12));
    }
    static T bcast(__m128i m) { return _mm256_broadcastsi128_si256(m); }
    static T set16(int16_t v) { return _mm256_set1_epi16(v); }
    static T min16(T a, T b) { return _mm256_min_epi16(a, b); }
    static T max16(T a, T b) { return _mm256_max_epi16(a, b); }
    // Even 32-bit lanes from a, odd lanes from b.
    static T blendOdd(T a, T b) { return _mm256_blend_epi32(a, b, 0xAA); }
    // Planes: 8 pixels of each plane to the words (B, R) and (G, G).
    static void planes(const uint8_t* b, const uint8_t* r, const uint8_t* g, T& br, T& gg) {
        const __m128i b8 = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(b));
        const __m128i r8 = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(r));
        const __m128i g8 = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(g));
        br = _mm256_cvtepu8_epi16(_mm_unpacklo_epi8(b8, r8));
        gg = _mm256_cvtepu8_epi16(_mm_unpacklo_epi8(g8, g8));
    }
    static T shuffle(T v, T m) { return _mm256_shuffle_epi8(v, m); }
    static T set32(int32_t v) { return _mm256_set1_epi32(v); }
    static T set64(int32_t lo, int32_t hi) {
        return _mm256_set1_epi64x(int64_t(uint64_t(uint32_t(hi)) << 32 | uint32_t(lo)));
    }
    template <int N>
    static T srai(T v) {
        return _mm256_srai_epi32(v, N);
    }
    static T andv(T a, T b) { return _mm256_and_si256(a, b); }
    static T madd(T a, T b) { return _mm256_madd_epi16(a, b); }
    static T add16(T a, T b) { return _mm256_add_epi16(a, b); }
    static T mulhi16(T a, T b) { return _mm256_mulhi_epi16(a, b); }
    template <int N>
    static T srai16(T v) {
        return _mm256_srai_epi16(v, N);
    }
    static T add32(T a, T b) { return _mm256_add_epi32(a, b); }
    static T sub32(T a, T b) { return _mm256_sub_epi32(a, b); }
    static T swapPairs(T v) { return _mm256_shuffle_epi32(v, 0xB1); }
    static T swapHalves(T v) { return _mm256_shuffle_epi32(v, 0x4E); }
    static T packs32(T a, T b) { return _mm256_packs_epi32(a, b); }
    static T packus16(T a, T b) { return _mm256_packus_epi16(a, b); }
    static T unpacklo16(T a, T b) { return _mm256_unpacklo_epi16(a, b); }
    static T unpackhi16(T a, T b) { return _mm256_unpackhi_epi16(a, b); }
    // Packed groups: lane 0 holds pixels 0-3 and 8-11, lane 1 4-7 and 12-15.
    static void storePacked(uint8_t* p, T v) {
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(p), _mm256_permute4x64_epi64(v, 0xD8));
    }
    // Words of two rows to 16 bytes each.
    static void storeRows(uint8_t* p0, uint8_t* p1, T w0, T w1) {
        const T b = _mm256_permutevar8x32_epi32(_mm256_packus_epi16(w0, w1), order());
        _mm_storeu_si128(reinterpret_cast<__m128i*>(p0), _mm256_castsi256_si128(b));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(p1), _mm256_extracti128_si256(b, 1));
    }
    static void storeRow(uint8_t* p, T w) {
        const T b = _mm256_permutevar8x32_epi32(_mm256_packus_epi16(w, w), order());
        _mm_storeu_si128(reinterpret_cast<__m128i*>(p), _mm256_castsi256_si128(b));
    }
    // Words Cb Cr of 8 blocks to 8 bytes of each plane.
    static void storePlanes(uint8_t* cb, uint8_t* cr, T c) {
        const __m128i inOrder = _mm256_castsi256_si128(_mm256_permutevar8x32_epi32(_mm256_packus_epi16(c, c), order()));
        const __m128i split =
            _mm_shuffle_epi8(inOrder, _mm_setr_epi8(0, 2, 4, 6, 8, 10, 12, 14, 1, 3, 5, 7, 9, 11, 13, 15));
        _mm_storel_epi64(reinterpret_cast<__m128i*>(cb), split);
        _mm_storel_epi64(reinterpret_cast<__m128i*>(cr), _mm_unpackhi_epi64(split, split));
    }
    // Words Cb Cr Cb Cr of 4 quads (each twice) to 4 bytes of each plane.
    static void storeQuads(uint8_t* cb, uint8_t* cr, T c) {
        const __m128i inOrder = _mm256_castsi256_si128(_mm256_permutevar8x32_epi32(_mm256_packus_epi16(c, c), order()));
        const __m128i split =
            _mm_shuffle_epi8(inOrder, _mm_setr_epi8(0, 4, 8, 12, 1, 5, 9, 13, 0, 4, 8, 12, 1, 5, 9, 13));
        const int32_t b = _mm_cvtsi128_si32(split), r = _mm_extract_epi32(split, 1);
        std::memcpy(cb, &b, 4);
        std::memcpy(cr, &r, 4);
    }
};

}  // namespace

#define TPX_ENC_AVX2(L)                             \
    template <>                                     \
    int rowAvx2<L>(const Rows& r, const Arith& a) { \
        return rowFor<V256, L>(r, a);               \
    }
TPX_ENC_SIMD_LAYOUTS(TPX_ENC_AVX2)
#undef TPX_ENC_AVX2

}  // namespace tpx::yuv::enc
