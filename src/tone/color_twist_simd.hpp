// Vector rows of the 8u colour twist, one body for AVX2 and AVX-512
// (color_twist_avx2.cpp and color_twist_avx512.cpp include this file once
// each). kStep pixels per iteration move in as channel vectors
// (frame/pixels3_simd.hpp), widen to floats, take the twist in the grouping
// of Twist3, and go back rounded by the conversion (the entries hold the
// rounding mode at nearest) and saturated: min(255, v) first (a NaN passes
// through it), then the conversion (values below the 32-bit range and NaN
// give the most negative integer) and the signed and unsigned packs, which
// store 0 for everything below 0. The block row finishes the row.
#pragma once

#include "frame/pixels3_simd.hpp"
#include "tone/color_twist.hpp"

namespace tpx::twist {
namespace {

using namespace vec3;

#if defined(__AVX512BW__)
// The all-ones zero-masking forms are the plain instructions without the
// undefined pass-through operand of the unmasked intrinsics.
using F = __m512;
inline F toFloat(V v) { return _mm512_maskz_cvtepi32_ps(0xFFFF, v); }
inline V toInt(F f) { return _mm512_maskz_cvtps_epi32(0xFFFF, f); }
inline F mulF(F a, F b) { return _mm512_mul_ps(a, b); }
inline F addF(F a, F b) { return _mm512_add_ps(a, b); }
inline F minF(F a, F b) { return _mm512_maskz_min_ps(0xFFFF, a, b); }
inline F setF(float v) { return _mm512_set1_ps(v); }
#else
using F = __m256;
inline F toFloat(V v) { return _mm256_cvtepi32_ps(v); }
inline V toInt(F f) { return _mm256_cvtps_epi32(f); }
inline F mulF(F a, F b) { return _mm256_mul_ps(a, b); }
inline F addF(F a, F b) { return _mm256_add_ps(a, b); }
inline F minF(F a, F b) { return _mm256_min_ps(a, b); }
inline F setF(float v) { return _mm256_set1_ps(v); }
#endif

// K bytes per pixel (1: three planes); a fourth byte is left as it is.
template <int K>
void row8(const void* const* sv, void* const* dv, Len n, const void* args) {
    using Block = decltype(&blocks::row<uint8_t, uint8_t, K, K, 0, Twist3>);
    const Twist3::State st(args);
    F m[4][3];
    for (int j = 0; j < 4; ++j)
        for (int i = 0; i < 3; ++i) m[j][i] = setF(st.m[j][i]);
    const uint8_t* src[4] = {};
    uint8_t* dst[4] = {};
    for (int c = 0; c < 3; ++c)
        src[c] = static_cast<const uint8_t*>(sv[K == 1 ? c : 0]), dst[c] = static_cast<uint8_t*>(dv[K == 1 ? c : 0]);
    const V z = zero();
    const F top = setF(255.0f);
    Len x = 0;
    for (; x + kStep <= n; x += kStep) {
        const Tri t = loadPixels<K>(src, x);
        F c[3][4];  // channel, quarter of every lane
        for (int ch = 0; ch < 3; ++ch) {
            const V w0 = lo8(t.c[ch], z), w1 = hi8(t.c[ch], z);
            c[ch][0] = toFloat(lo16(w0, z)), c[ch][1] = toFloat(hi16(w0, z));
            c[ch][2] = toFloat(lo16(w1, z)), c[ch][3] = toFloat(hi16(w1, z));
        }
        Tri o;
        for (int i = 0; i < 3; ++i) {
            V q[4];
            for (int j = 0; j < 4; ++j) {
                const F v = addF(addF(m[3][i], mulF(m[0][i], c[0][j])),
                                 addF(mulF(m[1][i], c[1][j]), mulF(m[2][i], c[2][j])));
                q[j] = toInt(minF(top, v));
            }
            o.c[i] = packus16(packs32(q[0], q[1]), packs32(q[2], q[3]));
        }
        storePixels<K, true>(dst, x, o, 0);
    }
    if (x == n) return;
    const void* s[4] = {};
    void* d[4] = {};
    for (int c = 0; c < (K == 1 ? 3 : 1); ++c) s[c] = src[c] + (K == 1 ? 1 : K) * x, d[c] = dst[c] + (K == 1 ? 1 : K) * x;
    const Block rest = blocks::row<uint8_t, uint8_t, K, K, 0, Twist3>;
    rest(s, d, n - x, args);
}

// The tier's row of element type T and K elements per pixel.
template <class T, int K>
constexpr Row vectorRow() {
    if constexpr (std::is_same_v<T, uint8_t>) return row8<K>;
    else return blocks::row<T, T, K, K, 0, Twist3>;
}

}  // namespace
}  // namespace tpx::twist

#define TPX_TWIST_VECTOR_ENTRY(T, K) vectorRow<T, K>(),
#define TPX_TWIST_VECTOR_TABLE {TPX_TWIST_ROWS(TPX_TWIST_VECTOR_ENTRY) rowC4}
