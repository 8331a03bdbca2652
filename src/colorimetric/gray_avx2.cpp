// AVX2 row functions of the gray conversions (bodies in gray_simd.hpp).
#include "colorimetric/gray_simd.hpp"

#include <immintrin.h>

namespace tpx::gray {
namespace {

struct Avx2 {
    using I = __m256i;
    using F = __m256;
    static constexpr int kF = 8;

    static I loadu(const void* p) { return _mm256_loadu_si256(static_cast<const __m256i*>(p)); }
    static void storeu(void* p, I v) { _mm256_storeu_si256(static_cast<__m256i*>(p), v); }
    static F loadf(const float* p) { return _mm256_loadu_ps(p); }
    static void storef(float* p, F v) { _mm256_storeu_ps(p, v); }
    static I loadIdx(const int32_t* p) { return loadu(p); }
    static I set1_32(uint32_t v) { return _mm256_set1_epi32(int(v)); }
    static F set1f(float v) { return _mm256_set1_ps(v); }

    static I and_(I a, I b) { return _mm256_and_si256(a, b); }
    static I xor_(I a, I b) { return _mm256_xor_si256(a, b); }
    static I srai16_7(I x) { return _mm256_srai_epi16(x, 7); }
    static I mulhi_u16(I a, I b) { return _mm256_mulhi_epu16(a, b); }
    static I adds_u16(I a, I b) { return _mm256_adds_epu16(a, b); }
    static I packus16(I a, I b) { return _mm256_packus_epi16(a, b); }
    static I packus32(I a, I b) { return _mm256_packus_epi32(a, b); }
    static I shuffle8(I x, I m) { return _mm256_shuffle_epi8(x, m); }
    // R << 8, G << 8 and B << 8 of the pixels of a and b as words, each vector
    // holding a's lane 0, b's lane 0, a's lane 1, b's lane 1 (4 words each):
    // one byte shuffle puts each lane's four R bytes and four G bytes into the
    // high bytes of its words, another its B bytes, and 64-bit unpacks join
    // a's and b's halves.
    static void channelWords(I a, I b, I& r, I& g, I& bl) {
        alignas(16) static constexpr auto masks = [] {
            std::array<int8_t, 32> m{};
            for (int w = 0; w < 8; ++w) {
                m[size_t(2 * w)] = m[size_t(16 + 2 * w)] = -128;
                m[size_t(2 * w + 1)] = int8_t(w < 4 ? 4 * w : 4 * (w - 4) + 1);
                m[size_t(16 + 2 * w + 1)] = int8_t(w < 4 ? 4 * w + 2 : -128);
            }
            return m;
        }();
        const I mRG = _mm256_broadcastsi128_si256(_mm_load_si128(reinterpret_cast<const __m128i*>(masks.data())));
        const I mB = _mm256_broadcastsi128_si256(_mm_load_si128(reinterpret_cast<const __m128i*>(masks.data() + 16)));
        const I rgA = _mm256_shuffle_epi8(a, mRG), rgB = _mm256_shuffle_epi8(b, mRG);
        r = _mm256_unpacklo_epi64(rgA, rgB), g = _mm256_unpackhi_epi64(rgA, rgB);
        bl = _mm256_unpacklo_epi64(_mm256_shuffle_epi8(a, mB), _mm256_shuffle_epi8(b, mB));
    }
    // Bytes of two channelWords orders packed together back to pixel order.
    static I fixPackWords(I x) { return _mm256_permutevar8x32_epi32(x, _mm256_setr_epi32(0, 4, 1, 5, 2, 6, 3, 7)); }
    // 64-bit halves of a two-source pack back to source order.
    static I fixPack64(I x) { return _mm256_permute4x64_epi64(x, 0xD8); }

    // 8 C3 pixels: lane 0 holds bytes 0..15 and lane 1 bytes 8..23, so that
    // pixels 4..7 start at byte 4 of lane 1 (no byte past the 24 is read).
    static I lanesC3(const uint8_t* p) {
        return _mm256_inserti128_si256(_mm256_castsi128_si256(_mm_loadu_si128(reinterpret_cast<const __m128i*>(p))),
                                       _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + 8)), 1);
    }
    static I lanesC3Shuffle(const int8_t* m) {
        const __m128i lo = _mm_loadu_si128(reinterpret_cast<const __m128i*>(m));
        const __m128i four = _mm_set1_epi8(4);
        // Index bytes of lane 1 move by 4; the zeroing entries (-128) stay negative.
        const __m128i hi = _mm_blendv_epi8(_mm_add_epi8(lo, four), lo, lo);
        return _mm256_inserti128_si256(_mm256_castsi128_si256(lo), hi, 1);
    }

    static I widen16(const void* p, bool flipSign) {
        __m128i v = _mm_loadu_si128(static_cast<const __m128i*>(p));
        if (flipSign) v = _mm_xor_si128(v, _mm_set1_epi16(int16_t(0x8000)));
        return _mm256_cvtepu16_epi32(v);
    }
    static F cvt_f(I x) { return _mm256_cvtepi32_ps(x); }
    static I cvt_i(F x) { return _mm256_cvtps_epi32(x); }
    static F mul(F a, F b) { return _mm256_mul_ps(a, b); }
    static F add(F a, F b) { return _mm256_add_ps(a, b); }
    template <unsigned M> static F blend(F a, F b) { return _mm256_blend_ps(a, b, M); }
    static F perm(F x, I idx) { return _mm256_permutevar8x32_ps(x, idx); }
    static F unpacklo(F a, F b) { return _mm256_unpacklo_ps(a, b); }
    static F unpackhi(F a, F b) { return _mm256_unpackhi_ps(a, b); }
    template <int J> static I c3Chunks(I g) {
        if constexpr (J == 0) return _mm256_permute2x128_si256(g, g, 0x00);
        else if constexpr (J == 1) return g;
        else return _mm256_permute2x128_si256(g, g, 0x11);
    }
    alignas(32) static constexpr Idx<8> kSpreadC4 = spreadC4<8>();
    static I permute32(I x, I idx) { return _mm256_permutevar8x32_epi32(x, idx); }
    template <int E> static I unpacklo(I a, I b) {
        if constexpr (E == 1) return _mm256_unpacklo_epi8(a, b);
        else if constexpr (E == 2) return _mm256_unpacklo_epi16(a, b);
        else if constexpr (E == 4) return _mm256_unpacklo_epi32(a, b);
        else return _mm256_unpacklo_epi64(a, b);
    }
    template <int E> static I unpackhi(I a, I b) {
        if constexpr (E == 1) return _mm256_unpackhi_epi8(a, b);
        else if constexpr (E == 2) return _mm256_unpackhi_epi16(a, b);
        else if constexpr (E == 4) return _mm256_unpackhi_epi32(a, b);
        else return _mm256_unpackhi_epi64(a, b);
    }
    using D = __m256d;
    static D loadd(const double* p) { return _mm256_loadu_pd(p); }
    static void stored(double* p, D v) { _mm256_storeu_pd(p, v); }
    static D set1d(double v) { return _mm256_set1_pd(v); }
    static D muld(D a, D b) { return _mm256_mul_pd(a, b); }
    static D addd(D a, D b) { return _mm256_add_pd(a, b); }
    template <unsigned M> static D blend(D a, D b) { return _mm256_blend_pd(a, b, M); }
    // Double indices as pairs of 32-bit indices.
    static I idxD(const int32_t* o) {
        return _mm256_setr_epi32(2 * o[0], 2 * o[0] + 1, 2 * o[1], 2 * o[1] + 1, 2 * o[2], 2 * o[2] + 1, 2 * o[3],
                                 2 * o[3] + 1);
    }
    static D perm(D x, I idx) {
        return _mm256_castps_pd(_mm256_permutevar8x32_ps(_mm256_castpd_ps(x), idx));
    }
    // Pixels 0..3, one per vector, to R, G and B vectors.
    static void transposeAc4(D v0, D v1, D v2, D v3, D& r, D& g, D& b) {
        const D rb01 = _mm256_unpacklo_pd(v0, v1), rb23 = _mm256_unpacklo_pd(v2, v3);
        const D ga01 = _mm256_unpackhi_pd(v0, v1), ga23 = _mm256_unpackhi_pd(v2, v3);
        r = _mm256_permute2f128_pd(rb01, rb23, 0x20);
        b = _mm256_permute2f128_pd(rb01, rb23, 0x31);
        g = _mm256_permute2f128_pd(ga01, ga23, 0x20);
    }
    template <int M> static F shuffle(F a, F b) { return _mm256_shuffle_ps(a, b, M); }
};

}  // namespace

TPX_GRAY_COLOR_ROWS(Avx2, colorRowAvx2)
TPX_GRAY_EXPAND_ROWS(Avx2, expandRowAvx2)

}  // namespace tpx::gray
