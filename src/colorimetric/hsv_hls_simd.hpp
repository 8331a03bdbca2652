// Hand-written rows of the five busiest HSV and HLS members (RGB to HSV and
// back, RGB to HLS on 8u; RGB to HLS and back on 32f), written once over a
// vector traits class V (AVX2 in hsv_hls_ycc_avx2.cpp, AVX-512 in
// hsv_hls_ycc_avx512.cpp). Every pixel goes through the same IEEE single
// operations, in the same order, as in hsv_hls_ycc.hpp, so every tier gives
// the bytes of the scalar rows; the other members keep the block rows.
//
// What V supplies: F (kN floats), I (the same bits as integers), M (the
// result of a comparison); the members of TPX_HLS_VECTOR_OPS below; floor,
// cmp<predicate>, sel(m, yes, no), mor, blend<bits>(a, b) (b where the bit is
// set) and permute(v, places) (element i from place i); the byte work within
// 128-bit lanes: orI, lanes16 (16 bytes in every lane), chunks and
// storeChunks (16 bytes per lane, lane j at p + 48 j).
#pragma once

#include "colorimetric/hsv_hls_ycc.hpp"

#include <immintrin.h>

#include <array>
#include <cstdint>
#include <cstring>

// The members of V whose intrinsics differ only in their prefix P (_mm256,
// _mm512); F and I are V's float and integer vectors.
#define TPX_HLS_VECTOR_OPS(P)                                                                     \
    static F set1(float v) { return P##_set1_ps(v); }                                             \
    static F add(F a, F b) { return P##_add_ps(a, b); }                                           \
    static F sub(F a, F b) { return P##_sub_ps(a, b); }                                           \
    static F mul(F a, F b) { return P##_mul_ps(a, b); }                                           \
    static F div(F a, F b) { return P##_div_ps(a, b); }                                           \
    static F fma(F a, F b, F c) { return P##_fmadd_ps(a, b, c); }                                 \
    /* std::max(a, b) is a unless a < b; the instruction gives its second operand */              \
    /* unless the first is greater (equal zeros and NaN alike). */                                \
    static F maxOf(F a, F b) { return P##_max_ps(b, a); }                                         \
    static F minOf(F a, F b) { return P##_min_ps(b, a); }                                         \
    static F toF(I v) { return P##_cvtepi32_ps(v); }                                              \
    static I toI(F v) { return P##_cvtps_epi32(v); }                                              \
    static I truncI(F v) { return P##_cvttps_epi32(v); }                                          \
    static I shuffle8(I a, I c) { return P##_shuffle_epi8(a, c); }                                \
    template <int K>                                                                              \
    static I alignr(I hi, I lo) { return P##_alignr_epi8(hi, lo, K); }                            \
    template <int K>                                                                              \
    static I bsrli(I a) { return P##_bsrli_epi128(a, K); }                                        \
    template <int K>                                                                              \
    static I bslli(I a) { return P##_bslli_epi128(a, K); }                                        \
    static I packs32(I a, I b) { return P##_packs_epi32(a, b); }                                  \
    static I packus16(I a, I b) { return P##_packus_epi16(a, b); }                                \
    static F load(const float* p) { return P##_loadu_ps(p); }                                     \
    static void store(float* p, F v) { P##_storeu_ps(p, v); }

namespace tpx::hls::simd {
namespace {

// ---- The conversions, on vectors of codes ---------------------------------------------------
// Each takes the three channels of kN pixels and replaces them with the
// results, as rgbToHsv<255>, hsvToRgb<255>, rgbToHls and hlsToRgb do.

template <class V>
struct ToHsv8 {
    using F = typename V::F;
    static void apply(F& a, F& b, F& c) {
        const F R = a, G = b, B = c, one = V::set1(1.0f), zero = V::set1(0.0f);
        const F mx = V::maxOf(V::maxOf(R, G), B), mn = V::minOf(V::minOf(R, G), B);
        const auto grey = V::template cmp<_CMP_EQ_OQ>(mx, mn);
        const F d = V::sel(grey, one, V::sub(mx, mn)), rd = V::div(one, d);
        const F cr = V::mul(V::sub(mx, R), rd), cg = V::mul(V::sub(mx, G), rd), cb = V::mul(V::sub(mx, B), rd);
        F h = V::sel(V::template cmp<_CMP_EQ_OQ>(R, mx), V::sub(cb, cg), zero);
        h = V::sel(V::template cmp<_CMP_EQ_OQ>(G, mx), V::sub(V::add(V::set1(2.0f), cr), cb), h);
        h = V::sel(V::template cmp<_CMP_GE_OQ>(B, V::maxOf(R, G)), V::sub(V::add(V::set1(4.0f), cg), cr), h);
        h = V::sel(V::template cmp<_CMP_LT_OQ>(V::add(h, V::set1(1.1920929e-7f)), zero), V::add(h, V::set1(6.0f)), h);
        const F half = V::set1(0.5f);
        // S and H before their floor(), which codes() takes: both are at least 0.
        const F S = V::add(V::div(V::mul(d, V::set1(255.0f)), V::sel(grey, one, mx)), half);
        const F H = V::add(V::mul(h, V::set1(42.5f)), half);
        a = V::sel(grey, zero, H), b = V::sel(grey, zero, S), c = mx;
    }
    static typename V::I codes(F x) { return V::truncI(x); }
};

template <class V>
struct FromHsv8 {
    using F = typename V::F;
    static typename V::M is(F i, float k) { return V::template cmp<_CMP_EQ_OQ>(i, V::set1(k)); }
    static void apply(F& a, F& b, F& c) {
        const F H = a, S = b, Vc = c;
        const F h = V::sel(V::template cmp<_CMP_EQ_OQ>(H, V::set1(255.0f)), V::set1(0.0f),
                           V::mul(V::mul(H, V::set1(0.016666668f)), V::set1(1.4117647f)));
        const F i = V::floor(h), f = V::sub(h, i), s = V::mul(S, V::set1(0.003921569f));
        const F sV = V::mul(s, Vc), sVf = V::mul(sV, f), VsV = V::sub(Vc, sV);
        // p, q and t before their nearbyint(), which codes() applies as the
        // selected value becomes an integer (V is one already).
        const F p = VsV, q = V::sub(Vc, sVf), t = V::add(VsV, sVf);
        const auto i0 = is(i, 0.0f), i1 = is(i, 1.0f), i2 = is(i, 2.0f), i3 = is(i, 3.0f), i4 = is(i, 4.0f),
                   i5 = is(i, 5.0f);
        // Sectors 0..5 as (r, g, b): (V t p) (q V p) (p V t) (p q V) (t p V) (V p q);
        // sector 6 and above give V, V, V.
        const F r = V::sel(i1, q, V::sel(V::mor(i2, i3), p, V::sel(i4, t, Vc)));
        const F g = V::sel(i0, t, V::sel(i3, q, V::sel(V::mor(i4, i5), p, Vc)));
        const F bl = V::sel(V::mor(i0, i1), p, V::sel(i2, t, V::sel(i5, q, Vc)));
        // S = 0 needs no test of its own: s, sV and sVf are 0, and p, q and t
        // the whole number V.
        a = r, b = g, c = bl;
    }
    static typename V::I codes(F x) { return V::toI(x); }
};

template <class V>
struct ToHls {
    using F = typename V::F;
    static void apply(F& a, F& b, F& c) {
        const F R = a, G = b, B = c, zero = V::set1(0.0f);
        const F mx = V::maxOf(V::maxOf(R, G), B), mn = V::minOf(V::minOf(R, G), B), d = V::sub(mx, mn);
        const F sum = V::add(mx, mn), L = V::mul(sum, V::set1(0.5f));
        const F S = V::div(d, V::sel(V::template cmp<_CMP_LE_OQ>(L, V::set1(0.5f)), sum, V::sub(V::set1(2.0f), sum)));
        // One quotient for the three hue formulas; red's adds no offset (an
        // added 0 would turn -0 into +0).
        const auto red = V::template cmp<_CMP_EQ_OQ>(R, mx), notGreen = V::template cmp<_CMP_NEQ_UQ>(G, mx);
        const F num = V::sel(red, V::sub(G, B), V::sel(notGreen, V::sub(R, G), V::sub(B, R)));
        const F quo = V::div(V::mul(num, V::set1(60.0f)), d);
        F h = V::sel(red, quo, V::add(quo, V::sel(notGreen, V::set1(240.0f), V::set1(120.0f))));
        h = V::sel(V::template cmp<_CMP_LT_OQ>(h, zero), V::add(h, V::set1(360.0f)), h);
        const auto grey = V::template cmp<_CMP_LE_OQ>(d, V::set1(1.1920929e-7f));
        a = V::sel(grey, zero, V::mul(h, V::set1(0.0027777778f))), b = L, c = V::sel(grey, zero, S);
    }
};

template <class V>
struct FromHls {
    using F = typename V::F;
    // hlsChannel: the ramps up (x < 60) and down (180 <= x < 240) share one product.
    static F channel(F m1, F dm, F m2, F x, F factor) {
        const auto up = V::template cmp<_CMP_LT_OQ>(x, V::set1(60.0f));
        const F ramp = V::add(m1, V::mul(dm, V::sel(up, factor, V::sub(V::set1(4.0f), factor))));
        return V::sel(up, ramp, V::sel(V::template cmp<_CMP_LT_OQ>(x, V::set1(180.0f)), m2,
                                       V::sel(V::template cmp<_CMP_LT_OQ>(x, V::set1(240.0f)), ramp, m1)));
    }
    static void apply(F& a, F& b, F& c) {
        const F H = a, L = b, S = c;
        const F m2 = V::sel(V::template cmp<_CMP_LE_OQ>(L, V::set1(0.5f)), V::mul(L, V::add(V::set1(1.0f), S)),
                            V::sub(V::add(L, S), V::mul(L, S)));
        const F m1 = V::sub(V::mul(V::set1(2.0f), L), m2), dm = V::sub(m2, m1);
        const F h = V::mul(H, V::set1(360.0f)), up = V::add(h, V::set1(120.0f)), down = V::sub(h, V::set1(120.0f));
        const F hr = V::sel(V::template cmp<_CMP_GT_OQ>(up, V::set1(360.0f)), V::sub(h, V::set1(240.0f)), up);
        const F hb = V::sel(V::template cmp<_CMP_LT_OQ>(down, V::set1(0.0f)), V::add(h, V::set1(240.0f)), down);
        const F sixth = V::set1(0.016666668f);
        const F r = channel(m1, dm, m2, hr, V::mul(hr, sixth)), g = channel(m1, dm, m2, h, V::mul(H, V::set1(6.0000005f))),
                bl = channel(m1, dm, m2, hb, V::mul(hb, sixth));
        const auto grey = V::template cmp<_CMP_EQ_OQ>(S, V::set1(0.0f));
        a = V::sel(grey, L, r), b = V::sel(grey, L, g), c = V::sel(grey, L, bl);
    }
};

// 8u HLS: the codes divided by 255 (the IEEE quotient, formed as the product
// with 1/255 corrected by its exact remainder: the same float for every code
// 0..255), the 32f steps, and the results times 255.
template <class V>
struct ToHls8 {
    using F = typename V::F;
    static F unit(F x) {
        const F k = V::set1(255.0f), r = V::set1(1.0f / 255.0f), q = V::mul(x, r);
        return V::fma(V::fma(V::sub(V::set1(0.0f), q), k, x), r, q);
    }
    static void apply(F& a, F& b, F& c) {
        a = unit(a), b = unit(b), c = unit(c);
        ToHls<V>::apply(a, b, c);
        const F k = V::set1(255.0f);
        a = V::mul(a, k), b = V::mul(b, k), c = V::mul(c, k);
    }
    static typename V::I codes(F x) { return V::toI(x); }
};

// ---- Rows ---------------------------------------------------------------------------------
// Whole blocks in place; the last part of a row goes through a block-sized
// buffer (a row may be converted in place, so no block reads what another
// has written).

// 8u: blocks of 4 kN pixels, each 128-bit lane taking 16 of them (48 bytes,
// three 16-byte chunks: lane j of chunk vector k holds bytes 48 j + 16 k on).
// Four quads of pixels per lane are spread to 32-bit elements, converted,
// and gathered back into the three chunks.
template <class V, template <class> class Op>
void block8u(const uint8_t* s, uint8_t* d) {
    using I = typename V::I;
    using F = typename V::F;
    const I y0 = V::chunks(s), y1 = V::chunks(s + 16), y2 = V::chunks(s + 32);
    const I quad[4] = {y0, V::template alignr<12>(y1, y0), V::template alignr<8>(y2, y1), V::template bsrli<4>(y2)};
    // Byte controls: a channel of the quad's four pixels to 32-bit elements;
    // back from the bytes a0-a3 b0-b3 c0-c3 (c of the next quad after them) to
    // 12 bytes a0 b0 c0 a1 .. (-1: zero).
    static constexpr int8_t kR[16] = {0, -1, -1, -1, 3, -1, -1, -1, 6, -1, -1, -1, 9, -1, -1, -1};
    static constexpr int8_t kG[16] = {1, -1, -1, -1, 4, -1, -1, -1, 7, -1, -1, -1, 10, -1, -1, -1};
    static constexpr int8_t kB[16] = {2, -1, -1, -1, 5, -1, -1, -1, 8, -1, -1, -1, 11, -1, -1, -1};
    static constexpr int8_t kEven[16] = {0, 4, 8, 1, 5, 9, 2, 6, 10, 3, 7, 11, -1, -1, -1, -1};
    static constexpr int8_t kOdd[16] = {0, 4, 12, 1, 5, 13, 2, 6, 14, 3, 7, 15, -1, -1, -1, -1};
    const I toR = V::lanes16(kR), toG = V::lanes16(kG), toB = V::lanes16(kB);
    I out[4];
    for (int k = 0; k < 4; k += 2) {
        I code[2][3];
        for (int j = 0; j < 2; ++j) {
            F a = V::toF(V::shuffle8(quad[k + j], toR)), b = V::toF(V::shuffle8(quad[k + j], toG)),
              c = V::toF(V::shuffle8(quad[k + j], toB));
            Op<V>::apply(a, b, c);
            code[j][0] = Op<V>::codes(a), code[j][1] = Op<V>::codes(b), code[j][2] = Op<V>::codes(c);
        }
        // The saturating packs clamp to 0..255 as the stores of the block rows do.
        const I cc = V::packs32(code[0][2], code[1][2]);
        out[k] = V::shuffle8(V::packus16(V::packs32(code[0][0], code[0][1]), cc), V::lanes16(kEven));
        out[k + 1] = V::shuffle8(V::packus16(V::packs32(code[1][0], code[1][1]), cc), V::lanes16(kOdd));
    }
    V::storeChunks(d, V::orI(out[0], V::template bslli<12>(out[1])));
    V::storeChunks(d + 16, V::orI(V::template bsrli<4>(out[1]), V::template bslli<8>(out[2])));
    V::storeChunks(d + 32, V::orI(V::template bsrli<8>(out[2]), V::template bslli<4>(out[3])));
}

// 32f: blocks of kN pixels, 3 kN floats in three vectors. Channel c of pixel
// i is float f = 3 i + c: place f % kN of vector f / kN. For one channel these
// places are all different (3 and kN have no common factor), so two blends
// bring the channel's kN values into one vector and a permute puts them in
// pixel order; the reverse writes them back.
template <int N>
struct Split {
    // Places of channel c taken from vector v; in pixel order, the places.
    static constexpr unsigned from(int c, int v) {
        unsigned m = 0;
        for (int i = 0; i < N; ++i) m |= (3 * i + c) / N == v ? 1u << ((3 * i + c) % N) : 0u;
        return m;
    }
    static constexpr std::array<int, N> order(int c) {
        std::array<int, N> o{};
        for (int i = 0; i < N; ++i) o[i] = (3 * i + c) % N;
        return o;
    }
    // Places of vector v that hold channel c; the pixels of the places.
    static constexpr unsigned holds(int v, int c) {
        unsigned m = 0;
        for (int f = 0; f < N; ++f) m |= (v * N + f) % 3 == c ? 1u << f : 0u;
        return m;
    }
    static constexpr std::array<int, N> pixels(int c) {
        std::array<int, N> o{};
        for (int i = 0; i < N; ++i) o[(3 * i + c) % N] = i;
        return o;
    }
    static constexpr std::array<int, N> kOrder[3] = {order(0), order(1), order(2)};
    static constexpr std::array<int, N> kPixels[3] = {pixels(0), pixels(1), pixels(2)};
};

template <class V, int C>
typename V::F channelOf(typename V::F a, typename V::F b, typename V::F c) {
    using S = Split<V::kN>;
    return V::permute(V::template blend<S::from(C, 2)>(V::template blend<S::from(C, 1)>(a, b), c), S::kOrder[C]);
}
template <class V, int K>
typename V::F vectorOf(typename V::F x, typename V::F y, typename V::F z) {
    using S = Split<V::kN>;
    return V::template blend<S::holds(K, 2)>(V::template blend<S::holds(K, 1)>(x, y), z);
}

template <class V, template <class> class Op>
void block32f(const float* s, float* d) {
    using F = typename V::F;
    using S = Split<V::kN>;
    const F u = V::load(s), v = V::load(s + V::kN), w = V::load(s + 2 * V::kN);
    F a = channelOf<V, 0>(u, v, w), b = channelOf<V, 1>(u, v, w), c = channelOf<V, 2>(u, v, w);
    Op<V>::apply(a, b, c);
    a = V::permute(a, S::kPixels[0]), b = V::permute(b, S::kPixels[1]), c = V::permute(c, S::kPixels[2]);
    V::store(d, vectorOf<V, 0>(a, b, c));
    V::store(d + V::kN, vectorOf<V, 1>(a, b, c));
    V::store(d + 2 * V::kN, vectorOf<V, 2>(a, b, c));
}

// Runs block(s, d) over whole blocks of W pixels of K elements T, then the rest.
template <class T, int W, class Block>
void rowOf(const void* const* sv, void* const* dv, blocks::Len n, Block&& block) {
    const T* s = static_cast<const T*>(sv[0]);
    T* d = static_cast<T*>(dv[0]);
    blocks::Len x = 0;
    for (; x + W <= n; x += W) {
        // The source's lines asked for 4 KiB ahead, the destination's 1 KiB
        // ahead: the compiler turns some blends of loaded vectors into masked
        // loads, and without these requests the 32f AVX-512 rows ran at a
        // quarter of their speed on images larger than the last-level cache.
        for (int k = 0; k < int(sizeof(T)) * 3 * W; k += 64) {
            __builtin_prefetch(reinterpret_cast<const char*>(s + 3 * x) + 4096 + k);
            __builtin_prefetch(reinterpret_cast<const char*>(d + 3 * x) + 1024 + k);
        }
        block(s + 3 * x, d + 3 * x);
    }
    if (x < n) {
        alignas(64) T buf[3 * W] = {};
        std::memcpy(buf, s + 3 * x, sizeof(T) * 3 * size_t(n - x));
        block(buf, buf);
        std::memcpy(d + 3 * x, buf, sizeof(T) * 3 * size_t(n - x));
    }
}

template <class V, template <class> class Op>
void row8u(const void* const* s, void* const* d, blocks::Len n, const void*) {
    rowOf<uint8_t, 4 * V::kN>(s, d, n, [](const uint8_t* p, uint8_t* q) { block8u<V, Op>(p, q); });
}
template <class V, template <class> class Op>
void row32f(const void* const* s, void* const* d, blocks::Len n, const void*) {
    rowOf<float, V::kN>(s, d, n, [](const float* p, float* q) { block32f<V, Op>(p, q); });
}

// A tier's table: the block rows, with the five hand-written ones in their places.
template <class V>
constexpr Rows withSimdRows(Rows r) {
    r.r_uint8_t_3_3_kToHsv_0 = row8u<V, ToHsv8>;
    r.r_uint8_t_3_3_kFromHsv_0 = row8u<V, FromHsv8>;
    r.r_uint8_t_3_3_kToHls_0 = row8u<V, ToHls8>;
    r.r_float_3_3_kToHls_0 = row32f<V, ToHls>;
    r.r_float_3_3_kFromHls_0 = row32f<V, FromHls>;
    return r;
}

}  // namespace
}  // namespace tpx::hls::simd
