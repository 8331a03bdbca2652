// AVX-512 (F, BW, VL, DQ) row functions of the gray conversions (bodies in
// gray_simd.hpp).
// GCC's AVX-512 intrinsics pass an undefined vector as the unused merge source
// of their unmasked forms, which -W(maybe-)uninitialized reports after inlining.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic ignored "-Wuninitialized"
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#endif
#include "colorimetric/gray_simd.hpp"

#include <immintrin.h>

namespace tpx::gray {
namespace {

struct Avx512 {
    using I = __m512i;
    using F = __m512;
    static constexpr int kF = 16;

    static I loadu(const void* p) { return _mm512_loadu_si512(p); }
    static void storeu(void* p, I v) { _mm512_storeu_si512(p, v); }
    static F loadf(const float* p) { return _mm512_loadu_ps(p); }
    static void storef(float* p, F v) { _mm512_storeu_ps(p, v); }
    static I loadIdx(const int32_t* p) { return loadu(p); }
    static I set1_32(uint32_t v) { return _mm512_set1_epi32(int(v)); }
    static F set1f(float v) { return _mm512_set1_ps(v); }

    static I and_(I a, I b) { return _mm512_and_si512(a, b); }
    static I xor_(I a, I b) { return _mm512_xor_si512(a, b); }
    static I slli16_8(I x) { return _mm512_slli_epi16(x, 8); }
    static I srai16_7(I x) { return _mm512_srai_epi16(x, 7); }
    static I mulhi_u16(I a, I b) { return _mm512_mulhi_epu16(a, b); }
    static I adds_u16(I a, I b) { return _mm512_adds_epu16(a, b); }
    static I packus16(I a, I b) { return _mm512_packus_epi16(a, b); }
    static I packus32(I a, I b) { return _mm512_packus_epi32(a, b); }
    static I shuffle8(I x, I m) { return _mm512_shuffle_epi8(x, m); }
    // Low words and high words of the 32-bit elements of a then b, in order.
    static void evenOdd(I a, I b, I& even, I& odd) {
        const I e = _mm512_setr_epi32(0x00020000, 0x00060004, 0x000A0008, 0x000E000C, 0x00120010, 0x00160014,
                                      0x001A0018, 0x001E001C, 0x00220020, 0x00260024, 0x002A0028, 0x002E002C,
                                      0x00320030, 0x00360034, 0x003A0038, 0x003E003C);
        even = _mm512_permutex2var_epi16(a, e, b);
        odd = _mm512_permutex2var_epi16(a, _mm512_add_epi16(e, _mm512_set1_epi16(1)), b);
    }
    // R << 8, G << 8 and B << 8 of the pixels of a then b, as words in order.
    static void channelWords(I a, I b, I& r, I& g, I& bl) {
        I rg, ba;
        evenOdd(a, b, rg, ba);
        r = slli16_8(rg), g = and_(rg, set1_32(0xFF00FF00u)), bl = slli16_8(ba);
    }
    // Two vectors of words packed to bytes (lane k: 8 of each) back to pixel order.
    static I fixPackWords(I x) { return fixPack64(x); }
    static I fixPack64(I x) { return _mm512_permutexvar_epi64(_mm512_setr_epi64(0, 2, 4, 6, 1, 3, 5, 7), x); }

    // 16 C3 pixels (48 bytes, read with a masked load): lane k gets bytes
    // 12k..12k+15, so each lane starts with its 4 pixels.
    static I lanesC3(const uint8_t* p) {
        const I v = _mm512_maskz_loadu_epi32(0x0FFF, p);
        return _mm512_permutexvar_epi32(_mm512_setr_epi32(0, 1, 2, 3, 3, 4, 5, 6, 6, 7, 8, 9, 9, 10, 11, 11), v);
    }
    static I lanesC3Shuffle(const int8_t* m) {
        return _mm512_broadcast_i32x4(_mm_loadu_si128(reinterpret_cast<const __m128i*>(m)));
    }

    static I widen16(const void* p, bool flipSign) {
        __m256i v = _mm256_loadu_si256(static_cast<const __m256i*>(p));
        if (flipSign) v = _mm256_xor_si256(v, _mm256_set1_epi16(int16_t(0x8000)));
        return _mm512_cvtepu16_epi32(v);
    }
    static F cvt_f(I x) { return _mm512_cvtepi32_ps(x); }
    static I cvt_i(F x) { return _mm512_cvtps_epi32(x); }
    static F mul(F a, F b) { return _mm512_mul_ps(a, b); }
    static F add(F a, F b) { return _mm512_add_ps(a, b); }
    template <unsigned M> static F blend(F a, F b) { return _mm512_mask_blend_ps(__mmask16(M), a, b); }
    static F perm(F x, I idx) { return _mm512_permutexvar_ps(idx, x); }
    static F unpacklo(F a, F b) { return _mm512_unpacklo_ps(a, b); }
    static F unpackhi(F a, F b) { return _mm512_unpackhi_ps(a, b); }
    // Lanes of output vector J of a C1C3 expansion: chunks (4J + l) / 3.
    template <int J> static I c3Chunks(I g) {
        if constexpr (J == 0) return _mm512_shuffle_i32x4(g, g, 0x40);       // 0 0 0 1
        else if constexpr (J == 1) return _mm512_shuffle_i32x4(g, g, 0xA5);  // 1 1 2 2
        else return _mm512_shuffle_i32x4(g, g, 0xFE);                        // 2 3 3 3
    }
    alignas(64) static constexpr Idx<16> kSpreadC4 = spreadC4<16>();
    static I permute32(I x, I idx) { return _mm512_permutexvar_epi32(idx, x); }
    template <int E> static I unpacklo(I a, I b) {
        if constexpr (E == 1) return _mm512_unpacklo_epi8(a, b);
        else if constexpr (E == 2) return _mm512_unpacklo_epi16(a, b);
        else if constexpr (E == 4) return _mm512_unpacklo_epi32(a, b);
        else return _mm512_unpacklo_epi64(a, b);
    }
    template <int E> static I unpackhi(I a, I b) {
        if constexpr (E == 1) return _mm512_unpackhi_epi8(a, b);
        else if constexpr (E == 2) return _mm512_unpackhi_epi16(a, b);
        else if constexpr (E == 4) return _mm512_unpackhi_epi32(a, b);
        else return _mm512_unpackhi_epi64(a, b);
    }
    using D = __m512d;
    static D loadd(const double* p) { return _mm512_loadu_pd(p); }
    static void stored(double* p, D v) { _mm512_storeu_pd(p, v); }
    static D set1d(double v) { return _mm512_set1_pd(v); }
    static D muld(D a, D b) { return _mm512_mul_pd(a, b); }
    static D addd(D a, D b) { return _mm512_add_pd(a, b); }
    template <unsigned M> static D blend(D a, D b) { return _mm512_mask_blend_pd(__mmask8(M), a, b); }
    static I idxD(const int32_t* o) { return _mm512_cvtepi32_epi64(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(o))); }
    static D perm(D x, I idx) { return _mm512_permutexvar_pd(idx, x); }
    // Pixels 0..7, two per vector, to R, G and B vectors: the unpacks leave
    // lanes [c0 c2], [c0' c2'], [c1 c3], [c1' c3'] of pixel pairs.
    static void transposeAc4(D v0, D v1, D v2, D v3, D& r, D& g, D& b) {
        const I first = _mm512_setr_epi64(0, 4, 1, 5, 8, 12, 9, 13), second = _mm512_setr_epi64(2, 6, 3, 7, 10, 14, 11, 15);
        const D rb01 = _mm512_unpacklo_pd(v0, v1), rb23 = _mm512_unpacklo_pd(v2, v3);
        const D ga01 = _mm512_unpackhi_pd(v0, v1), ga23 = _mm512_unpackhi_pd(v2, v3);
        r = _mm512_permutex2var_pd(rb01, first, rb23);
        b = _mm512_permutex2var_pd(rb01, second, rb23);
        g = _mm512_permutex2var_pd(ga01, first, ga23);
    }
    template <int M> static F shuffle(F a, F b) { return _mm512_shuffle_ps(a, b, M); }
};

}  // namespace

TPX_GRAY_COLOR_ROWS(Avx512, colorRowAvx512)
TPX_GRAY_EXPAND_ROWS(Avx512, expandRowAvx512)

}  // namespace tpx::gray
