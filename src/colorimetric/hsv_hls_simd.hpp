// Hand-written rows of the five busiest HSV and HLS members (RGB to HSV and
// back, RGB to HLS on 8u; RGB to HLS and back on 32f), written once over a
// vector traits class V (AVX2 in hsv_hls_ycc_avx2.cpp, AVX-512 in
// hsv_hls_ycc_avx512.cpp). Every result is that of the IEEE single
// operations of hsv_hls_ycc.hpp, in their order, so every tier gives the bytes
// of the scalar rows; where a step is taken otherwise (on the 8u bytes, or by
// a conversion to integers) the comment says why the value is the same. The
// other members keep the block rows.
//
// What V supplies: F (kN floats), I (the same bits as integers), M (the
// result of a comparison); the members of TPX_HLS_VECTOR_OPS below; floor,
// cmp<predicate>, sel(m, yes, no), mor, blend<bits>(a, b) (b where the bit is
// set) and permute(v, places) (element i from place i); on bytes: eq8, sel8
// and or8 (comparisons of bytes and choices by them), orI, control (a
// vector of bytes from memory), chunks and storeChunks (16 bytes per lane, lane j
// at p + 48 j).
#pragma once

#include "colorimetric/hsv_hls_ycc.hpp"
#include "frame/float3_simd.hpp"

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
    static I set1_8(int v) { return P##_set1_epi8(char(v)); }                                     \
    static I maxu8(I a, I b) { return P##_max_epu8(a, b); }                                       \
    static I minu8(I a, I b) { return P##_min_epu8(a, b); }                                       \
    static I sub8(I a, I b) { return P##_sub_epi8(a, b); }                                        \
    static F load(const float* p) { return P##_loadu_ps(p); }                                     \
    static void store(float* p, F v) { P##_storeu_ps(p, v); }

namespace tpx::hls::simd {
namespace {

// ---- 32f conversions ------------------------------------------------------------------------
// Each takes the three channels of kN pixels and replaces them with the
// results, as rgbToHls and hlsToRgb do. (Where two NaNs of different signs
// meet in one addition or product, which of them comes out is the compiler's
// choice of operand order, here as in the scalar rows.)

template <class V>
struct ToHls {
    using F = typename V::F;
    static void apply(F& a, F& b, F& c) {
        const F R = a, G = b, B = c, zero = V::set1(0.0f);
        const F mx = V::maxOf(V::maxOf(R, G), B), mn = V::minOf(V::minOf(R, G), B), d = V::sub(mx, mn);
        const F sum = V::add(mx, mn), L = V::mul(sum, V::set1(0.5f));
        const auto low = V::template cmp<_CMP_LE_OQ>(L, V::set1(0.5f));
        const F S = V::div(d, V::sel(low, sum, V::sub(V::set1(2.0f), sum)));
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
        const F r = channel(m1, dm, m2, hr, V::mul(hr, sixth));
        const F g = channel(m1, dm, m2, h, V::mul(H, V::set1(6.0000005f)));
        const F bl = channel(m1, dm, m2, hb, V::mul(hb, sixth));
        const auto grey = V::template cmp<_CMP_EQ_OQ>(S, V::set1(0.0f));
        a = V::sel(grey, L, r), b = V::sel(grey, L, g), c = V::sel(grey, L, bl);
    }
};

// ---- Rows ---------------------------------------------------------------------------------
// Whole blocks in place; the last part of a row goes through a block-sized
// buffer (a row may be converted in place, so no block reads what another
// has written).

// 8u: blocks of 4 kN pixels, each 128-bit lane taking 16 of them (48 bytes,
// three 16-byte chunks: lane j of chunk vector k holds bytes 48 j + 16 k on).
// Byte controls within a lane (-1: zero): channel c of the quad of pixels
// 4 q.. (bytes 12 q on, moved to the front) to 32-bit elements; channel c of
// the 16 pixels from chunk k; bytes 4 q..4 q + 3 of a channel to 32-bit
// elements; and chunk k from the channel's bytes.
using Control = std::array<int8_t, 16>;
constexpr Control spreadControl(int c) {
    Control o{};
    for (int b = 0; b < 16; ++b) o[b] = b % 4 ? -1 : int8_t(3 * (b / 4) + c);
    return o;
}
constexpr Control planeControl(int k, int c) {
    Control o{};
    for (int j = 0; j < 16; ++j) o[j] = (3 * j + c) / 16 == k ? int8_t((3 * j + c) % 16) : -1;
    return o;
}
constexpr Control widenControl(int q) {
    Control o{};
    for (int b = 0; b < 16; ++b) o[b] = b % 4 ? -1 : int8_t(4 * q + b / 4);
    return o;
}
constexpr Control chunkControl(int k, int c) {
    Control o{};
    for (int b = 0; b < 16; ++b) o[b] = (16 * k + b) % 3 == c ? int8_t((16 * k + b) / 3) : -1;
    return o;
}
// The controls repeated over the W bytes of a vector (loaded whole, they need
// no broadcast).
template <int W>
constexpr std::array<int8_t, W> repeat(const Control& c) {
    std::array<int8_t, W> o{};
    for (int i = 0; i < W; ++i) o[i] = c[i % 16];
    return o;
}
template <int W>
struct Lane48 {
    using Wide = std::array<int8_t, W>;
    static constexpr Wide kSpread[3] = {repeat<W>(spreadControl(0)), repeat<W>(spreadControl(1)),
                                        repeat<W>(spreadControl(2))};
    static constexpr Wide kWiden[4] = {repeat<W>(widenControl(0)), repeat<W>(widenControl(1)),
                                       repeat<W>(widenControl(2)), repeat<W>(widenControl(3))};
    static constexpr Wide kPlane[3][3] = {
        {repeat<W>(planeControl(0, 0)), repeat<W>(planeControl(0, 1)), repeat<W>(planeControl(0, 2))},
        {repeat<W>(planeControl(1, 0)), repeat<W>(planeControl(1, 1)), repeat<W>(planeControl(1, 2))},
        {repeat<W>(planeControl(2, 0)), repeat<W>(planeControl(2, 1)), repeat<W>(planeControl(2, 2))}};
    static constexpr Wide kChunk[3][3] = {
        {repeat<W>(chunkControl(0, 0)), repeat<W>(chunkControl(0, 1)), repeat<W>(chunkControl(0, 2))},
        {repeat<W>(chunkControl(1, 0)), repeat<W>(chunkControl(1, 1)), repeat<W>(chunkControl(1, 2))},
        {repeat<W>(chunkControl(2, 0)), repeat<W>(chunkControl(2, 1)), repeat<W>(chunkControl(2, 2))}};
};
template <class V>
using LaneOf = Lane48<int(sizeof(typename V::I))>;

// The three chunks of a block and its four quads (quad q: pixels 4 q..4 q + 3
// of each lane at the front).
template <class V>
struct Quads {
    using I = typename V::I;
    I chunk[3], quad[4];
    explicit Quads(const uint8_t* s) : chunk{V::chunks(s), V::chunks(s + 16), V::chunks(s + 32)} {
        quad[0] = chunk[0], quad[1] = V::template alignr<12>(chunk[1], chunk[0]);
        quad[2] = V::template alignr<8>(chunk[2], chunk[1]), quad[3] = V::template bsrli<4>(chunk[2]);
    }
    typename V::F codes(int q, int c) const {
        return V::toF(V::shuffle8(quad[q], V::control(LaneOf<V>::kSpread[c].data())));
    }
    // Channel c of the lane's 16 pixels as bytes.
    I plane(int c) const {
        I v = V::shuffle8(chunk[0], V::control(LaneOf<V>::kPlane[0][c].data()));
        v = V::orI(v, V::shuffle8(chunk[1], V::control(LaneOf<V>::kPlane[1][c].data())));
        return V::orI(v, V::shuffle8(chunk[2], V::control(LaneOf<V>::kPlane[2][c].data())));
    }
};
// Quad q of a channel's bytes as floats.
template <class V>
typename V::F widen(typename V::I v, int q) {
    return V::toF(V::shuffle8(v, V::control(LaneOf<V>::kWiden[q].data())));
}
// Four quads of 32-bit integers as the lane's 16 bytes, saturated to 0..255
// as the block rows store them.
template <class V>
typename V::I bytesOf(const typename V::I (&v)[4]) {
    return V::packus16(V::packs32(v[0], v[1]), V::packs32(v[2], v[3]));
}
// Chunk k of three channels of bytes, interleaved.
template <class V>
typename V::I chunkOf(int k, typename V::I a, typename V::I b, typename V::I c) {
    const typename V::I ab = V::orI(V::shuffle8(a, V::control(LaneOf<V>::kChunk[k][0].data())),
                                    V::shuffle8(b, V::control(LaneOf<V>::kChunk[k][1].data())));
    return V::orI(ab, V::shuffle8(c, V::control(LaneOf<V>::kChunk[k][2].data())));
}

// 8u RGB to HSV: V, the least value, their difference d and the channels
// each hue formula takes found on the bytes; h = (o + X / d) - Y / d, the
// quotients as products with the IEEE 1 / d, with (o, X, Y) red's (0, V - B,
// V - G), green's (2, V - R, V - B) or blue's (4, V - G, V - R) (blue's test
// wins over green's, green's over red's; 0 + X / d is X / d), and S, H in
// floats, their floor() the truncating conversions (both are at least 0).
// Grey pixels (d = 0) divide by 1 and get hue and saturation 0.
template <class V>
[[gnu::always_inline]] inline void blockToHsv8(const uint8_t* src, uint8_t* d) {
    using I = typename V::I;
    using F = typename V::F;
    const Quads<V> in(src);
    const I R = in.plane(0), G = in.plane(1), B = in.plane(2), zero = V::set1_8(0), one = V::set1_8(1);
    const I Vb = V::maxu8(V::maxu8(R, G), B), diff = V::sub8(Vb, V::minu8(V::minu8(R, G), B));
    const auto blue = V::eq8(B, Vb), green = V::eq8(G, Vb);
    const I X = V::sub8(Vb, V::sel8(blue, G, V::sel8(green, R, B)));
    const I Y = V::sub8(Vb, V::sel8(blue, R, V::sel8(green, B, G)));
    const I o = V::sel8(blue, V::set1_8(4), V::sel8(green, V::set1_8(2), zero));
    const I dd = V::maxu8(diff, one), vv = V::maxu8(Vb, one);
    I hue[4], sat[4];
    for (int q = 0; q < 4; ++q) {
        const F dq = widen<V>(dd, q), rd = V::div(V::set1(1.0f), dq);
        F h = V::sub(V::add(widen<V>(o, q), V::mul(widen<V>(X, q), rd)), V::mul(widen<V>(Y, q), rd));
        const auto wrap = V::template cmp<_CMP_LT_OQ>(V::add(h, V::set1(1.1920929e-7f)), V::set1(0.0f));
        h = V::sel(wrap, V::add(h, V::set1(6.0f)), h);
        hue[q] = V::truncI(V::add(V::mul(h, V::set1(42.5f)), V::set1(0.5f)));
        sat[q] = V::truncI(V::add(V::div(V::mul(dq, V::set1(255.0f)), widen<V>(vv, q)), V::set1(0.5f)));
    }
    const auto grey = V::eq8(diff, zero);
    const I H = V::sel8(grey, zero, bytesOf<V>(hue)), S = V::sel8(grey, zero, bytesOf<V>(sat));
    for (int k = 0; k < 3; ++k) V::storeChunks(d + 16 * k, chunkOf<V>(k, H, S, Vb));
}

// 8u RGB to HLS on the values x = code / 255 (the IEEE quotient, by
// frame/float3_simd.hpp's per255). The largest code and the two channels of the hue
// formula found on the bytes: red (G - B, no offset) when R is the largest,
// else green (B - R, 120) when G is, else blue (R - G, 240); the least value
// is the smaller of those two. Red's offset is added as +0, which changes
// nothing here (no quotient is -0). Grey pixels (all three codes equal, the
// only ones with d <= 2^-23) get hue and saturation 0; the results times 255
// are rounded by the conversions.
template <class V>
typename V::F unitOf(typename V::I bytes, int q) {
    return vec3::per255(widen<V>(bytes, q));
}
template <class V>
[[gnu::always_inline]] inline void blockToHls8(const uint8_t* src, uint8_t* d) {
    using I = typename V::I;
    using F = typename V::F;
    const Quads<V> in(src);
    const I R = in.plane(0), G = in.plane(1), B = in.plane(2), zero = V::set1_8(0);
    const I top = V::maxu8(V::maxu8(R, G), B);
    const auto red = V::eq8(R, top), green = V::eq8(G, top);
    const I a = V::sel8(red, G, V::sel8(green, B, R)), b = V::sel8(red, B, V::sel8(green, R, G));
    const I o = V::sel8(red, zero, V::sel8(green, V::set1_8(120), V::set1_8(240)));
    I hue[4], light[4], sat[4];
    for (int q = 0; q < 4; ++q) {
        const F mx = unitOf<V>(top, q), xa = unitOf<V>(a, q), xb = unitOf<V>(b, q), mn = V::minOf(xa, xb);
        const F dq = V::sub(mx, mn), sum = V::add(mx, mn), L = V::mul(sum, V::set1(0.5f));
        const auto low = V::template cmp<_CMP_LE_OQ>(L, V::set1(0.5f));
        const F S = V::div(dq, V::sel(low, sum, V::sub(V::set1(2.0f), sum)));
        F h = V::add(V::div(V::mul(V::sub(xa, xb), V::set1(60.0f)), dq), widen<V>(o, q));
        h = V::sel(V::template cmp<_CMP_LT_OQ>(h, V::set1(0.0f)), V::add(h, V::set1(360.0f)), h);
        const F k = V::set1(255.0f);
        hue[q] = V::toI(V::mul(V::mul(h, V::set1(0.0027777778f)), k));
        light[q] = V::toI(V::mul(L, k)), sat[q] = V::toI(V::mul(S, k));
    }
    const auto grey = V::eq8(top, V::minu8(V::minu8(R, G), B));
    const I H = V::sel8(grey, zero, bytesOf<V>(hue)), S = V::sel8(grey, zero, bytesOf<V>(sat));
    for (int k = 0; k < 3; ++k) V::storeChunks(d + 16 * k, chunkOf<V>(k, H, bytesOf<V>(light), S));
}

// 8u HSV to RGB: p, q, t and the sector of every pixel in floats, then as
// bytes (the conversions round p, q and t as nearbyint() does; the sector,
// 0..5 for 8u hues, is a whole number), and the sector's choice among V, p,
// q and t on the bytes. S = 0 needs no test of its own: s, sV and sVf are 0,
// and p, q and t the whole number V.
template <class V>
[[gnu::always_inline]] inline void blockFromHsv8(const uint8_t* src, uint8_t* d) {
    using I = typename V::I;
    using F = typename V::F;
    const Quads<V> in(src);
    I p[4], q[4], t[4], sector[4];
    for (int k = 0; k < 4; ++k) {
        const F H = in.codes(k, 0), S = in.codes(k, 1), Vc = in.codes(k, 2);
        const F h = V::sel(V::template cmp<_CMP_EQ_OQ>(H, V::set1(255.0f)), V::set1(0.0f),
                           V::mul(V::mul(H, V::set1(0.016666668f)), V::set1(1.4117647f)));
        const F i = V::floor(h), f = V::sub(h, i), s = V::mul(S, V::set1(0.003921569f));
        const F sV = V::mul(s, Vc), sVf = V::mul(sV, f), VsV = V::sub(Vc, sV);
        p[k] = V::toI(VsV), q[k] = V::toI(V::sub(Vc, sVf)), t[k] = V::toI(V::add(VsV, sVf)), sector[k] = V::truncI(i);
    }
    const I P = bytesOf<V>(p), Q = bytesOf<V>(q), T = bytesOf<V>(t), Vb = in.plane(2), i = bytesOf<V>(sector);
    const auto i0 = V::eq8(i, V::set1_8(0)), i1 = V::eq8(i, V::set1_8(1)), i2 = V::eq8(i, V::set1_8(2)),
               i3 = V::eq8(i, V::set1_8(3)), i4 = V::eq8(i, V::set1_8(4)), i5 = V::eq8(i, V::set1_8(5));
    // Sectors 0..5 as (r, g, b): (V t p) (q V p) (p V t) (p q V) (t p V) (V p q).
    const I r = V::sel8(i1, Q, V::sel8(V::or8(i2, i3), P, V::sel8(i4, T, Vb)));
    const I g = V::sel8(i0, T, V::sel8(i3, Q, V::sel8(V::or8(i4, i5), P, Vb)));
    const I b = V::sel8(V::or8(i0, i1), P, V::sel8(i2, T, V::sel8(i5, Q, Vb)));
    for (int k = 0; k < 3; ++k) V::storeChunks(d + 16 * k, chunkOf<V>(k, r, g, b));
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

// Runs block(s, d) over whole blocks of W pixels of three elements T, then the rest.
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

template <class V, void (*Block)(const uint8_t*, uint8_t*)>
void row8u(const void* const* s, void* const* d, blocks::Len n, const void*) {
    rowOf<uint8_t, 4 * V::kN>(s, d, n, [](const uint8_t* p, uint8_t* q) { Block(p, q); });
}
template <class V, template <class> class Op>
void row32f(const void* const* s, void* const* d, blocks::Len n, const void*) {
    rowOf<float, V::kN>(s, d, n, [](const float* p, float* q) { block32f<V, Op>(p, q); });
}

// A tier's table: the block rows, with the five hand-written ones in their places.
template <class V>
constexpr Rows withSimdRows(Rows r) {
    r.r_uint8_t_3_3_kToHsv_0 = row8u<V, blockToHsv8<V>>;
    r.r_uint8_t_3_3_kFromHsv_0 = row8u<V, blockFromHsv8<V>>;
    r.r_uint8_t_3_3_kToHls_0 = row8u<V, blockToHls8<V>>;
    r.r_float_3_3_kToHls_0 = row32f<V, ToHls>;
    r.r_float_3_3_kFromHls_0 = row32f<V, FromHls>;
    return r;
}

}  // namespace
}  // namespace tpx::hls::simd
