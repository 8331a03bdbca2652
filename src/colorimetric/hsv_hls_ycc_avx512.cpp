// HSV, HLS and photo YCC rows compiled for AVX-512: the block rows (bodies in
// hsv_hls_ycc.hpp) and the hand-written ones of hsv_hls_simd.hpp.
// GCC's AVX-512 intrinsics pass an undefined vector as the unused merge source
// of their unmasked forms, which -W(maybe-)uninitialized reports after inlining.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic ignored "-Wuninitialized"
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#endif
#include "colorimetric/hsv_hls_simd.hpp"

#include <array>

namespace tpx::hls {
namespace {

// Indices of the two-source permutes that split 16 pixels x y z (three
// vectors) into channels: channel c of pixel i is float 3 i + c; the first
// permute takes floats 0..31 from the first two vectors, the second keeps
// those (index i) and takes the rest from the third (16 + their place in it).
constexpr std::array<int, 16> splitFirst(int c) {
    std::array<int, 16> v{};
    for (int i = 0; i < 16; ++i) v[i] = 3 * i + c < 32 ? 3 * i + c : 0;
    return v;
}
constexpr std::array<int, 16> splitSecond(int c) {
    std::array<int, 16> v{};
    for (int i = 0; i < 16; ++i) v[i] = 3 * i + c < 32 ? i : 3 * i + c - 16;
    return v;
}
// And back: float f of vector k (f + 16 k overall) is channel f % 3 of pixel
// f / 3; the first permute takes channels 0 and 1 (x: i, y: 16 + i), the
// second keeps those and takes channel 2 from z.
constexpr std::array<int, 16> joinFirst(int k) {
    std::array<int, 16> v{};
    for (int f = 0; f < 16; ++f) v[f] = (f + 16 * k) % 3 == 1 ? 16 + (f + 16 * k) / 3 : (f + 16 * k) / 3;
    return v;
}
constexpr std::array<int, 16> joinSecond(int k) {
    std::array<int, 16> v{};
    for (int f = 0; f < 16; ++f) v[f] = (f + 16 * k) % 3 == 2 ? 16 + (f + 16 * k) / 3 : f;
    return v;
}
constexpr std::array<std::array<int, 16>, 3> kSplitFirst{splitFirst(0), splitFirst(1), splitFirst(2)},
    kSplitSecond{splitSecond(0), splitSecond(1), splitSecond(2)}, kJoinFirst{joinFirst(0), joinFirst(1), joinFirst(2)},
    kJoinSecond{joinSecond(0), joinSecond(1), joinSecond(2)};

struct Avx512 {
    using F = __m512;
    using I = __m512i;
    using M = __mmask16;
    TPX_HLS_VECTOR_OPS(_mm512)
    static constexpr int kN = 16;

    static F floor(F a) { return _mm512_roundscale_ps(a, _MM_FROUND_TO_NEG_INF | _MM_FROUND_NO_EXC); }
    static F nearest(F a) { return _mm512_roundscale_ps(a, _MM_FROUND_CUR_DIRECTION | _MM_FROUND_NO_EXC); }
    template <int P>
    static M cmp(F a, F b) { return _mm512_cmp_ps_mask(a, b, P); }
    static F sel(M m, F yes, F no) { return _mm512_mask_blend_ps(m, no, yes); }
    static M mor(M a, M b) { return M(a | b); }

    static I lanes16(const int8_t* c) {
        return _mm512_broadcast_i32x4(_mm_loadu_si128(reinterpret_cast<const __m128i*>(c)));
    }
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

    static I index(const std::array<int, 16>& v) { return _mm512_loadu_si512(v.data()); }
    static void load3(const float* p, F& x, F& y, F& z) {
        const F a = _mm512_loadu_ps(p), b = _mm512_loadu_ps(p + 16), c = _mm512_loadu_ps(p + 32);
        F* out[3] = {&x, &y, &z};
        for (int k = 0; k < 3; ++k)
            *out[k] = _mm512_permutex2var_ps(_mm512_permutex2var_ps(a, index(kSplitFirst[k]), b), index(kSplitSecond[k]), c);
    }
    static void store3(float* p, F x, F y, F z) {
        for (int k = 0; k < 3; ++k)
            _mm512_storeu_ps(p + 16 * k, _mm512_permutex2var_ps(_mm512_permutex2var_ps(x, index(kJoinFirst[k]), y),
                                                                index(kJoinSecond[k]), z));
    }
};

}  // namespace

const Rows kRowsAvx512 = simd::withSimdRows<Avx512>(Rows TPX_HLS_TABLE);
}  // namespace tpx::hls
