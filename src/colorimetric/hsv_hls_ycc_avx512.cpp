// HSV, HLS and photo YCC rows compiled for AVX-512: the block rows (bodies in
// hsv_hls_ycc.hpp) and the hand-written ones of hsv_hls_simd.hpp and ycc_simd.hpp.
// GCC's AVX-512 intrinsics pass an undefined vector as the unused merge source
// of their unmasked forms, which -W(maybe-)uninitialized reports after inlining.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic ignored "-Wuninitialized"
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#endif
#include "colorimetric/hsv_hls_simd.hpp"
#include "colorimetric/ycc_simd.hpp"

namespace tpx::hls {
namespace {

struct Avx512 {
    using F = __m512;
    using I = __m512i;
    using M = __mmask16;
    TPX_HLS_VECTOR_OPS(_mm512)
    static constexpr int kN = 16;

    static F floor(F a) { return _mm512_roundscale_ps(a, _MM_FROUND_TO_NEG_INF | _MM_FROUND_NO_EXC); }
    template <int P>
    static M cmp(F a, F b) { return _mm512_cmp_ps_mask(a, b, P); }
    static F sel(M m, F yes, F no) { return _mm512_mask_blend_ps(m, no, yes); }
    static M mor(M a, M b) { return M(a | b); }

    static I control(const int8_t* c) { return _mm512_loadu_si512(c); }
    static __mmask64 eq8(I a, I b) { return _mm512_cmpeq_epi8_mask(a, b); }
    static I sel8(__mmask64 m, I yes, I no) { return _mm512_mask_blend_epi8(m, no, yes); }
    static __mmask64 or8(__mmask64 a, __mmask64 b) { return a | b; }
    static I orI(I a, I b) { return _mm512_or_si512(a, b); }
    static __m128i chunk(const uint8_t* p) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p)); }
    static I chunks(const uint8_t* p) {
        I v = _mm512_castsi128_si512(chunk(p));
        v = _mm512_inserti32x4(v, chunk(p + 48), 1);
        v = _mm512_inserti32x4(v, chunk(p + 96), 2);
        return _mm512_inserti32x4(v, chunk(p + 144), 3);
    }
    static void storeChunks(uint8_t* p, I v) {
        _mm_storeu_si128(reinterpret_cast<__m128i*>(p), _mm512_castsi512_si128(v));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(p + 48), _mm512_extracti32x4_epi32(v, 1));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(p + 96), _mm512_extracti32x4_epi32(v, 2));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(p + 144), _mm512_extracti32x4_epi32(v, 3));
    }

    template <unsigned Bits>
    static F blend(F a, F b) { return _mm512_mask_blend_ps(__mmask16(Bits), a, b); }
    static F permute(F v, const std::array<int, kN>& at) {
        return _mm512_permutexvar_ps(_mm512_loadu_si512(at.data()), v);
    }
};

}  // namespace

const Rows kRowsAvx512 = ycc::withYccRows(simd::withSimdRows<Avx512>(Rows TPX_HLS_TABLE));
}  // namespace tpx::hls
