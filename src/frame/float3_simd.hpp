// 8-bit three-channel pixels through single-precision arithmetic, one body
// for AVX2 and AVX-512 (a row file includes this header once, compiled for
// its instruction set; everything has internal linkage). kStep pixels per
// iteration move in as channel vectors (pixels3_simd.hpp), widen to floats
// in four quarters of every lane, go through the caller's arithmetic, and go
// back rounded by the conversion (under the caller's rounding mode, which
// the entries hold at nearest) and saturated: min(255, v) first (a NaN
// passes through it), then the conversion (values below the 32-bit range
// and NaN give the most negative integer) and the signed and unsigned
// packs, which store 0 for everything below 0.
#pragma once

#include "frame/pixels3_simd.hpp"

namespace tpx::vec3 {
namespace {

#if defined(__AVX512BW__)
// The all-ones zero-masking forms are the plain instructions without the
// undefined pass-through operand of the unmasked intrinsics.
using F = __m512;
inline F toFloat(V v) { return _mm512_maskz_cvtepi32_ps(0xFFFF, v); }
inline V toInt(F f) { return _mm512_maskz_cvtps_epi32(0xFFFF, f); }
inline F mulF(F a, F b) { return _mm512_mul_ps(a, b); }
inline F addF(F a, F b) { return _mm512_add_ps(a, b); }
inline F subF(F a, F b) { return _mm512_sub_ps(a, b); }
inline F minF(F a, F b) { return _mm512_maskz_min_ps(0xFFFF, a, b); }
inline F maxF(F a, F b) { return _mm512_maskz_max_ps(0xFFFF, a, b); }
inline F setF(float v) { return _mm512_set1_ps(v); }
inline F fmaF(F a, F b, F c) { return _mm512_fmadd_ps(a, b, c); }
inline F fnmaF(F a, F b, F c) { return _mm512_fnmadd_ps(a, b, c); }
#else
using F = __m256;
inline F toFloat(V v) { return _mm256_cvtepi32_ps(v); }
inline V toInt(F f) { return _mm256_cvtps_epi32(f); }
inline F mulF(F a, F b) { return _mm256_mul_ps(a, b); }
inline F addF(F a, F b) { return _mm256_add_ps(a, b); }
inline F subF(F a, F b) { return _mm256_sub_ps(a, b); }
inline F minF(F a, F b) { return _mm256_min_ps(a, b); }
inline F maxF(F a, F b) { return _mm256_max_ps(a, b); }
inline F setF(float v) { return _mm256_set1_ps(v); }
inline F fmaF(F a, F b, F c) { return _mm256_fmadd_ps(a, b, c); }
inline F fnmaF(F a, F b, F c) { return _mm256_fnmadd_ps(a, b, c); }
#endif

// Code / 255 for codes 0..255, the same float as the IEEE quotient: the
// product with the float nearest 1/255 corrected once by its exact
// remainder (code - q * 255, exact in one fused step). Checked against the
// division for all 256 codes.
inline F per255(F code) {
    const F r = setF(1.0f / 255.0f), q = mulF(code, r);
    return fmaF(fnmaF(q, setF(255.0f), code), r, q);
}

// Pixels [0, returned) of a row of n pixels with K bytes each (1: three
// planes; a fourth byte is left as it is): op(c, out) maps the three channel
// floats c of a quarter to the three results out.
template <int K, class Op>
std::ptrdiff_t floatRow8(const uint8_t* const* src, uint8_t* const* dst, std::ptrdiff_t n, const Op& op) {
    const V z = zero();
    const F top = setF(255.0f);
    std::ptrdiff_t x = 0;
    for (; x + kStep <= n; x += kStep) {
        const Tri t = loadPixels<K>(src, x);
        F c[4][3];  // quarter of every lane, channel
        for (int ch = 0; ch < 3; ++ch) {
            const V w0 = lo8(t.c[ch], z), w1 = hi8(t.c[ch], z);
            c[0][ch] = toFloat(lo16(w0, z)), c[1][ch] = toFloat(hi16(w0, z));
            c[2][ch] = toFloat(lo16(w1, z)), c[3][ch] = toFloat(hi16(w1, z));
        }
        V q[3][4];
        for (int j = 0; j < 4; ++j) {
            F o[3];
            op(c[j], o);
            for (int i = 0; i < 3; ++i) q[i][j] = toInt(minF(top, o[i]));
        }
        Tri out;
        for (int i = 0; i < 3; ++i) out.c[i] = packus16(packs32(q[i][0], q[i][1]), packs32(q[i][2], q[i][3]));
        prefetchDestination<K>(dst[0], x);
        storePixels<K, true>(dst, x, out, 0);
    }
    return x;
}

// A whole row of n pixels given as four channel pointers in and out (planes
// for K = 1, else the interleaved row first): the vector blocks by
// floatRow8, the rest by the same conversion's row `rest` (called with
// `args`) from the first pixel they left.
template <int K, class Op>
void floatRow8Then(const void* const* sv, void* const* dv, std::ptrdiff_t n, const Op& op,
                   void (*rest)(const void* const*, void* const*, std::ptrdiff_t, const void*), const void* args) {
    const uint8_t* src[3];
    uint8_t* dst[3];
    for (int c = 0; c < 3; ++c)
        src[c] = static_cast<const uint8_t*>(sv[K == 1 ? c : 0]), dst[c] = static_cast<uint8_t*>(dv[K == 1 ? c : 0]);
    const std::ptrdiff_t x = floatRow8<K>(src, dst, n, op);
    if (x == n) return;
    const void* s[4] = {};
    void* d[4] = {};
    for (int c = 0; c < (K == 1 ? 3 : 1); ++c) s[c] = src[c] + (K == 1 ? 1 : K) * x, d[c] = dst[c] + (K == 1 ? 1 : K) * x;
    rest(s, d, n - x, args);
}

}  // namespace
}  // namespace tpx::vec3
