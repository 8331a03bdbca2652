// Vector rows of the busiest XYZ, Lab and LUV members (RGB to XYZ 8u and
// 32f, RGB to Lab 8u and 32f, Lab to RGB 32f, RGB to LUV 8u, all C3 in RGB
// order), written
// once over a vector traits class V (xyz_lab_luv_avx2.cpp,
// xyz_lab_luv_avx512.cpp). They evaluate the block rows' arithmetic of
// xyz_lab_luv.hpp operation for operation, in single precision without fused
// multiply-adds, so every tier gives the same bits; the pixels outside whole
// blocks go through the block rows themselves.
//
// V supplies (most through TPX_CIE_ARITHMETIC): F (V::kN floats), I (as
// many 32-bit integers); set1, add, sub, mul, div, min (min(a, b): a < b ?
// a : b), gt (ordered a > b), eq, sel (m ? a : b); Roots, the cube-root
// table as the tier reads it (built once a row; roots.index(x) gives
// trunc(x) for x in [1, 128] and some entry for any other x, NaN too;
// roots.get(i, c, r) gives c_i and r_i); load8u / store8u between 16 C3
// pixels and three channels of 16 / kN vectors (rounding to nearest even,
// saturating to 0..255; every result here is far inside the int32 range);
// load32f / store32f between kN C3 pixels and three channel vectors.
#pragma once

#include "colorimetric/xyz_lab_luv.hpp"

#include <immintrin.h>

namespace tpx::cie {
namespace {

// The types and arithmetic of a traits class whose intrinsics begin with P
// (_mm256, _mm512), W bits wide, comparing by P##C (_cmp_ps, _cmp_ps_mask).
#define TPX_CIE_ARITHMETIC(P, W, C)                                                            \
    using F = __m##W;                                                                        \
    using I = __m##W##i;                                                                     \
    static constexpr int kN = W / 32;                                                        \
    static F set1(float x) { return P##_set1_ps(x); }                                        \
    static F add(F a, F b) { return P##_add_ps(a, b); }                                      \
    static F sub(F a, F b) { return P##_sub_ps(a, b); }                                      \
    static F mul(F a, F b) { return P##_mul_ps(a, b); }                                      \
    static F div(F a, F b) { return P##_div_ps(a, b); }                                      \
    static F min(F a, F b) { return P##_min_ps(a, b); }                                      \
    static auto gt(F a, F b) { return P##C(a, b, _CMP_GT_OQ); }                              \
    static auto eq(F a, F b) { return P##C(a, b, _CMP_EQ_OQ); }

// 16 C3 pixels of bytes (48) and their three channels of 16 bytes, by byte
// shuffles: byte q of the pixels is channel q % 3 of pixel q / 3.
struct ByteShuffles {
    int8_t split[3][3][16];  // channel, 16-byte part of the pixels, channel byte
    int8_t join[3][3][16];   // part, channel, part byte
};
constexpr ByteShuffles byteShuffles() {
    ByteShuffles m{};
    for (int c = 0; c < 3; ++c)
        for (int v = 0; v < 3; ++v)
            for (int j = 0; j < 16; ++j) {
                const int q = 3 * j + c, o = 16 * v + j;
                m.split[c][v][j] = int8_t(q / 16 == v ? q % 16 : -128);
                m.join[v][c][j] = int8_t(o % 3 == c ? o / 3 : -128);
            }
    return m;
}
constexpr ByteShuffles kByteShuffles = byteShuffles();

inline __m128i shuffleBytes(__m128i x, const int8_t* m) {
    return _mm_shuffle_epi8(x, _mm_loadu_si128(reinterpret_cast<const __m128i*>(m)));
}
inline void splitBytes(const uint8_t* p, __m128i ch[3]) {
    const __m128i x[3] = {_mm_loadu_si128(reinterpret_cast<const __m128i*>(p)),
                          _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + 16)),
                          _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + 32))};
    for (int c = 0; c < 3; ++c) {
        const int8_t(*m)[16] = kByteShuffles.split[c];
        ch[c] = _mm_or_si128(_mm_or_si128(shuffleBytes(x[0], m[0]), shuffleBytes(x[1], m[1])), shuffleBytes(x[2], m[2]));
    }
}
inline void joinBytes(uint8_t* p, const __m128i ch[3]) {
    for (int v = 0; v < 3; ++v) {
        const int8_t(*m)[16] = kByteShuffles.join[v];
        const __m128i o =
            _mm_or_si128(_mm_or_si128(shuffleBytes(ch[0], m[0]), shuffleBytes(ch[1], m[1])), shuffleBytes(ch[2], m[2]));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(p + 16 * v), o);
    }
}

template <class V>
struct Simd {
    using F = typename V::F;
    static constexpr int kN = V::kN, kChunks = 16 / kN;

    static F k(float x) { return V::set1(x); }
    static F mul(F a, float b) { return V::mul(a, k(b)); }
    static F add(F a, float b) { return V::add(a, k(b)); }
    static F sub(F a, float b) { return V::sub(a, k(b)); }

    // (m0 R + m1 G) + m2 B, the row order of toXyz and fromXyz.
    static F dot(F r, F g, F b, float m0, float m1, float m2) {
        return V::add(V::add(mul(r, m0), mul(g, m1)), mul(b, m2));
    }
    static void toXyz(F& r, F& g, F& b) {
        const F x = dot(r, g, b, 0.412453f, 0.357580f, 0.180423f), y = dot(r, g, b, 0.212671f, 0.715160f, 0.072169f);
        b = dot(r, g, b, 0.019334f, 0.119193f, 0.950227f), r = x, g = y;
    }

    // tableRoot of K values side by side (their steps interleaved, so that
    // the long Horner chains overlap), for t at most 1 (or NaN; the callers
    // clamp). Where t is above the threshold this is tableRoot's arithmetic;
    // elsewhere the callers take their linear branch and the root, from
    // whatever entry roots.index(t * 128) picks, is not used (tableRoot
    // reads entry 128 there, to the same end).
    template <int K>
    static void tableRoots(const typename V::Roots& roots, const F (&t)[K], F (&root)[K]) {
        static constexpr float kP[7] = {0.019001168f, -0.023472032f, 0.030178327f, -0.041152265f,
                                        0.061728396f, -0.11111111f,  0.33333334f};
        F u[K], c[K], p[K];
        for (int j = 0; j < K; ++j) {
            F r;
            roots.get(roots.index(mul(t[j], 128.0f)), c[j], r);
            u[j] = sub(V::mul(t[j], r), 1.0f);
            p[j] = k(-0.015834307f);
        }
        for (float q : kP)
            for (int j = 0; j < K; ++j) p[j] = V::add(V::mul(p[j], u[j]), k(q));
        for (int j = 0; j < K; ++j) root[j] = V::mul(c[j], V::add(k(1.0f), V::mul(u[j], p[j])));
    }
    // f(t) of toLab: the root above the threshold, 7.787 t + 16/116 at or below.
    static F labF(F t, F root) { return V::sel(V::gt(t, k(kThreshold)), root, add(mul(t, 7.787f), 0.13793103f)); }
    // L from Y (clamped to 1) and its f(Y).
    static F lightness(F y, F fy) {
        return V::sel(V::gt(y, k(kThreshold)), sub(mul(fy, 116.0f), 16.0f), mul(y, 903.3f));
    }
};

// ---- Vectors of pixels: kK vectors of three source codes in, of three
// destination codes out, each step over all of them before the next (the
// chains of one vector are too long to keep the units busy alone; LUV, one
// root a pixel, gains most from more of them, Lab with the AVX-512 table in
// registers loses from more than two).
#define TPX_EACH for (int j = 0; j < kK; ++j)

template <class V>
struct XyzPixels {
    using F = typename V::F;
    static constexpr int kK = 4;
    static void apply(const typename V::Roots&, F* a, F* b, F* c) { TPX_EACH Simd<V>::toXyz(a[j], b[j], c[j]); }
};

// toLab, the 8u RGB codes divided by 255 first and the results coded L * 2.55, a + 128, b + 128.
template <class V, bool Bytes>
struct LabPixels {
    using F = typename V::F;
    using S = Simd<V>;
    static constexpr int kK = V::kN == 8 ? 4 : 2;
    static void apply(const typename V::Roots& roots, F* a, F* b, F* c) {
        F t[3 * kK], root[3 * kK];  // x, y, z of each vector
        const F one = S::k(1.0f);
        TPX_EACH {
            if constexpr (Bytes) {
                const F full = S::k(255.0f);
                a[j] = V::div(a[j], full), b[j] = V::div(b[j], full), c[j] = V::div(c[j], full);
            }
            S::toXyz(a[j], b[j], c[j]);
            t[3 * j] = V::min(one, S::mul(a[j], 1.0521265f));
            t[3 * j + 1] = V::min(one, b[j]);
            t[3 * j + 2] = V::min(one, S::mul(c[j], 0.9184812f));
        }
        S::template tableRoots<3 * kK>(roots, t, root);
        TPX_EACH {
            const F y = t[3 * j + 1], fx = S::labF(t[3 * j], root[3 * j]), fy = S::labF(y, root[3 * j + 1]),
                    fz = S::labF(t[3 * j + 2], root[3 * j + 2]);
            a[j] = S::lightness(y, fy), b[j] = S::mul(V::sub(fx, fy), 500.0f), c[j] = S::mul(V::sub(fy, fz), 200.0f);
            if constexpr (Bytes) a[j] = S::mul(a[j], 2.55f), b[j] = S::add(b[j], 128.0f), c[j] = S::add(c[j], 128.0f);
        }
    }
};

// fromLab for 32f: the cube everywhere, no clamping.
template <class V>
struct FromLabPixels {
    using F = typename V::F;
    using S = Simd<V>;
    static constexpr int kK = 4;
    static F cube(F f) { return V::mul(V::mul(f, f), f); }
    static void apply(const typename V::Roots&, F* a, F* b, F* c) {
        TPX_EACH {
            const F fy = S::mul(S::add(a[j], 16.0f), 0.00862069f), fx = V::add(fy, S::mul(b[j], 0.002f)),
                    fz = V::sub(fy, S::mul(c[j], 0.005f));
            const F Y = cube(fy), X = S::mul(cube(fx), 0.950456f), Z = S::mul(cube(fz), 1.0887539f);
            a[j] = V::sub(V::add(S::mul(Y, -1.53715f), S::mul(X, 3.240479f)), S::mul(Z, 0.498535f));
            b[j] = V::add(V::sub(S::mul(Y, 1.875991f), S::mul(X, 0.969256f)), S::mul(Z, 0.041556f));
            c[j] = V::add(V::add(S::mul(Y, -0.204043f), S::mul(X, 0.055648f)), S::mul(Z, 1.057311f));
        }
    }
};

// toLuv for 8u in float: the codes times the float 1/255, L from the table
// root refined by one Newton step, u and v codes 0 where X + 15Y + 3Z is 0.
template <class V>
struct LuvPixels {
    using F = typename V::F;
    using S = Simd<V>;
    static constexpr int kK = 4;
    static void apply(const typename V::Roots& roots, F* a, F* b, F* c) {
        const float scale = 1.0f / 255.0f;
        F y[kK], r[kK];
        TPX_EACH {
            a[j] = S::mul(a[j], scale), b[j] = S::mul(b[j], scale), c[j] = S::mul(c[j], scale);
            S::toXyz(a[j], b[j], c[j]);
            y[j] = V::min(S::k(1.0f), b[j]);
        }
        S::template tableRoots<kK>(roots, y, r);
        TPX_EACH {
            const F X = a[j], Y = b[j], Z = c[j], rr = V::mul(r[j], r[j]);
            const F root = V::sub(r[j], V::div(V::sub(V::mul(rr, r[j]), y[j]), V::mul(S::mul(r[j], 3.0f), r[j])));
            const F L = S::lightness(y[j], root);
            const F d = V::add(V::add(X, S::mul(Y, 15.0f)), S::mul(Z, 3.0f)), rd = V::div(S::k(1.0f), d);
            const F l13 = S::mul(L, 13.0f);
            const F u = V::mul(l13, S::sub(V::mul(S::mul(X, 4.0f), rd), 0.197839f));
            const F v = V::mul(l13, S::sub(V::mul(S::mul(Y, 9.0f), rd), 0.468342f));
            const auto zero = V::eq(d, S::k(0.0f));
            a[j] = S::mul(L, 2.55f);
            b[j] = V::sel(zero, S::k(0.0f), S::mul(S::add(u, 134.0f), float(255.0 / 354)));
            c[j] = V::sel(zero, S::k(0.0f), S::mul(S::add(v, 140.0f), float(255.0 / 262)));
        }
    }
};
#undef TPX_EACH

// ---- Rows ------------------------------------------------------------------------------------
// Pixels [from, to) through the block row `Tail`.
template <class T, Row Tail>
inline void blockRow(const void* const* s, void* const* d, Len from, Len to, const void* args) {
    if (from == to) return;
    const void* s1[4] = {static_cast<const T*>(s[0]) + 3 * from, nullptr, nullptr, nullptr};
    void* d1[4] = {static_cast<T*>(d[0]) + 3 * from, nullptr, nullptr, nullptr};
    Tail(s1, d1, to - from, args);
}

// 8u C3 to 8u C3, P::kK vectors a block (a multiple of 16 pixels).
template <class V, class P, Row Tail>
void rowBytes(const void* const* s, void* const* d, Len n, const void* args) {
    using F = typename V::F;
    constexpr int kK = P::kK, kLoads = kK * V::kN / 16, kPer = 16 / V::kN;  // 16-pixel loads a block, vectors a load
    static_assert(kLoads * kPer == kK, "whole 16-pixel loads");
    const uint8_t* src = static_cast<const uint8_t*>(s[0]);
    uint8_t* dst = static_cast<uint8_t*>(d[0]);
    const typename V::Roots roots;
    Len x = 0;
    for (; x + 16 * kLoads <= n; x += 16 * kLoads) {
        F a[kK], b[kK], c[kK];
        for (int l = 0; l < kLoads; ++l) V::load8u(src + 3 * (x + 16 * l), a + kPer * l, b + kPer * l, c + kPer * l);
        P::apply(roots, a, b, c);
        for (int l = 0; l < kLoads; ++l) V::store8u(dst + 3 * (x + 16 * l), a + kPer * l, b + kPer * l, c + kPer * l);
    }
    blockRow<uint8_t, Tail>(s, d, x, n, args);
}

// 32f C3 to 32f C3, P::kK vectors a block. The blocks start where the
// destination is aligned to the vector size (the pixels before go through
// `Tail`): stores that straddle cache lines cost about twice the time.
template <class V, class P, Row Tail>
void rowFloats(const void* const* s, void* const* d, Len n, const void* args) {
    using F = typename V::F;
    constexpr int kK = P::kK;
    constexpr Len kBlock = kK * V::kN;
    const float* src = static_cast<const float*>(s[0]);
    float* dst = static_cast<float*>(d[0]);
    Len x = 0;
    while (x < V::kN && (reinterpret_cast<std::uintptr_t>(dst + 3 * x) % (4 * V::kN)) != 0) ++x;
    if (x == V::kN || x + kBlock > n) x = 0;  // floats not on 4-byte boundaries, or a short row
    blockRow<float, Tail>(s, d, 0, x, args);
    const typename V::Roots roots;
    for (; x + kBlock <= n; x += kBlock) {
        F a[kK], b[kK], c[kK];
        for (int j = 0; j < kK; ++j) V::load32f(src + 3 * (x + j * V::kN), a[j], b[j], c[j]);
        P::apply(roots, a, b, c);
        for (int j = 0; j < kK; ++j) V::store32f(dst + 3 * (x + j * V::kN), a[j], b[j], c[j]);
    }
    blockRow<float, Tail>(s, d, x, n, args);
}

template <class S, int O, int Fl = 0>
constexpr Row kBlockRow = blocks::row<S, S, 3, 3, Fl, Convert<S, S, O>>;

// The tier's table: the block rows, with the vector rows in place of the busiest.
template <class V>
constexpr Rows vectorRows(Rows r) {
    r.r_uint8_t_uint8_t_3_3_kToXyz_0 = rowBytes<V, XyzPixels<V>, kBlockRow<uint8_t, kToXyz>>;
    r.r_float_float_3_3_kToXyz_0 = rowFloats<V, XyzPixels<V>, kBlockRow<float, kToXyz>>;
    r.r_uint8_t_uint8_t_3_3_kToLab_0 = rowBytes<V, LabPixels<V, true>, kBlockRow<uint8_t, kToLab>>;
    r.r_float_float_3_3_kToLab_0 = rowFloats<V, LabPixels<V, false>, kBlockRow<float, kToLab>>;
    r.r_float_float_3_3_kFromLab_0 = rowFloats<V, FromLabPixels<V>, kBlockRow<float, kFromLab>>;
    r.r_uint8_t_uint8_t_3_3_kToLuv_0 = rowBytes<V, LuvPixels<V>, kBlockRow<uint8_t, kToLuv>>;
    return r;
}

}  // namespace
}  // namespace tpx::cie
