// SIMD row functions of the subsampled YCbCr decoders, one body for AVX2 and
// AVX-512 over an instruction-set class V (V::N pixels per step; vectors of
// N bytes or N/2 16-bit values, made of 128-bit lanes).
//
// Lane order: luma is widened with unpacklo/hi, so half A holds pixels
// 16k..16k+7 of lane k and half B pixels 16k+8..16k+15. Chroma is one 16-bit
// value per pair in natural order (lane k: pairs 8k..8k+7), so
// unpacklo/hi_epi16(t, t) of a chroma term lines up with halves A and B, and
// packus(A, B) gives the pixels back in natural order.
//
// Interleaved destinations take the pixels in "transposed" order instead:
// V::transpose permutes the 32-bit groups of luma and chroma so that the
// byte/word interleave of R, G, B, A leaves whole runs of consecutive pixels
// in each register and no lane permutes are needed before the stores.
//
// BT.601: (Y<<8) * 2384 high half is floor(Y*128*4768 / 65536); chroma terms
// floor((C<<7) * c / 65536) are unsigned 16-bit high products, computed once
// per pair. BT.709 blocks: signed high products of the centred values
// prescaled by 128, then +8 and >> 4. Full-range BT.709 reference: 32-bit
// products per pair. The filtered 4:2:0 member computes chroma per pixel.
// packus clamps to 0..255.
#pragma once

#include "yuv/ycbcr_sub_to_rgb.hpp"

#include <immintrin.h>

#include <algorithm>
#include <cstdint>
#include <type_traits>

// The operations of an instruction-set class that differ only in the prefix
// of their intrinsics (P: _mm256 or _mm512; SI: si256 or si512).
#define TPX_DEC_SUB_COMMON_OPS(P, SI)                                              \
    static I zero() { return P##_setzero_##SI(); }                                 \
    static I set8(char v) { return P##_set1_epi8(v); }                             \
    static I set16(int16_t v) { return P##_set1_epi16(v); }                        \
    static I set32(int32_t v) { return P##_set1_epi32(v); }                        \
    static I and_(I a, I b) { return P##_and_##SI(a, b); }                         \
    static I or_(I a, I b) { return P##_or_##SI(a, b); }                           \
    static I add(I a, I b) { return P##_add_epi16(a, b); }                         \
    static I sub(I a, I b) { return P##_sub_epi16(a, b); }                         \
    static I add32(I a, I b) { return P##_add_epi32(a, b); }                       \
    static I mulhiU(I a, I b) { return P##_mulhi_epu16(a, b); }                    \
    static I mulhiS(I a, I b) { return P##_mulhi_epi16(a, b); }                    \
    static I mullo32(I a, I b) { return P##_mullo_epi32(a, b); }                   \
    static I madd(I a, I b) { return P##_madd_epi16(a, b); }                       \
    template <int n> static I sll16(I a) { return P##_slli_epi16(a, n); }          \
    template <int n> static I srl16(I a) { return P##_srli_epi16(a, n); }          \
    template <int n> static I sra16(I a) { return P##_srai_epi16(a, n); }          \
    template <int n> static I sra32(I a) { return P##_srai_epi32(a, n); }          \
    static I unpackLo8(I a, I b) { return P##_unpacklo_epi8(a, b); }               \
    static I unpackHi8(I a, I b) { return P##_unpackhi_epi8(a, b); }               \
    static I unpackLo16(I a, I b) { return P##_unpacklo_epi16(a, b); }             \
    static I unpackHi16(I a, I b) { return P##_unpackhi_epi16(a, b); }             \
    static I unpackLo64(I a, I b) { return P##_unpacklo_epi64(a, b); }             \
    static I unpackHi64(I a, I b) { return P##_unpackhi_epi64(a, b); }             \
    static I packus16(I a, I b) { return P##_packus_epi16(a, b); }                 \
    static I packs32(I a, I b) { return P##_packs_epi32(a, b); }                   \
    static I shuffle8(I a, I m) { return P##_shuffle_epi8(a, m); }

#if defined(__GNUC__)
#define TPX_DEC_SUB_INLINE inline __attribute__((always_inline))
#else
#define TPX_DEC_SUB_INLINE inline
#endif

namespace tpx::yuv::sub::simd {

template <class V>
struct Luma {
    typename V::I a, b;  // Y << 8 per pixel, halves A and B
};
template <class V>
struct Chroma {
    typename V::I cb, cr;  // uncentred chroma per pair
};

// ---- Loading ---------------------------------------------------------------
template <class V, bool T>
inline typename V::I order(typename V::I v) {
    if constexpr (T)
        return V::transpose(v);
    else
        return v;
}

template <class V, bool T>
inline Luma<V> lumaPlane(const uint8_t* p) {
    const auto y = order<V, T>(V::load(p));
    return {V::unpackLo8(V::zero(), y), V::unpackHi8(V::zero(), y)};
}

// T: transposed pixel order (interleaved destinations).
template <class V, class L, bool T>
struct Load;

template <class V, int H, int Vs, int CbP, int CrP, bool T>
struct Load<V, Planar<H, Vs, CbP, CrP>, T> {
    static Luma<V> luma(const Row& r, std::ptrdiff_t x) { return lumaPlane<V, T>(r.y + x); }
    static Chroma<V> chroma(const Row& r, std::ptrdiff_t x) {
        if constexpr (H == 2)
            return {order<V, T>(V::widenHalf(r.cb + x / 2)), order<V, T>(V::widenHalf(r.cr + x / 2))};
        else
            return {order<V, T>(V::widenQuarterDup(r.cb + x / 4)), order<V, T>(V::widenQuarterDup(r.cr + x / 4))};
    }
};

template <class V, int CbOff, bool T>
struct Load<V, TwoPlane<CbOff>, T> {
    static Luma<V> luma(const Row& r, std::ptrdiff_t x) { return lumaPlane<V, T>(r.y + x); }
    static Chroma<V> chroma(const Row& r, std::ptrdiff_t x) {
        const auto c = order<V, T>(V::load(r.cb - CbOff + x));  // N/2 pairs start at byte x
        const auto first = V::and_(c, V::set16(0xff)), second = V::template srl16<8>(c);
        return {CbOff ? second : first, CbOff ? first : second};
    }
};

// Filtered 4:2:0 chroma, one value per pixel: bytes of pixels 2*i0.. in
// natural order (even pixel (3v(i) + v(i-1) + 8) >> 4 in the low byte of each
// pair, odd pixel (3v(i) + v(i+1) + 8) >> 4 in the high byte), v = 3*near + far.
template <class V>
inline typename V::I filteredBytes(const uint8_t* near, const uint8_t* far, int i0) {
    auto v = [&](int i) {
        const auto n = V::widenHalf(near + i);
        return V::add(V::add(n, n), V::add(n, V::widenHalf(far + i)));
    };
    const auto c = v(i0);
    const auto c3 = V::add(V::add(c, c), V::add(c, V::set16(8)));
    const auto even = V::template srl16<4>(V::add(c3, v(i0 - 1)));
    const auto odd = V::template srl16<4>(V::add(c3, v(i0 + 1)));
    return V::or_(even, V::template sll16<8>(odd));
}

template <class V, bool T>
struct Load<V, Filter420, T> {
    static Luma<V> luma(const Row& r, std::ptrdiff_t x) { return lumaPlane<V, T>(r.y + x); }
    // Chroma per pixel, halves A and B.
    static void chroma(const Row& r, std::ptrdiff_t x, Chroma<V>& a, Chroma<V>& b) {
        const auto cb = order<V, T>(filteredBytes<V>(r.cb, r.cbFar, x / 2));
        const auto cr = order<V, T>(filteredBytes<V>(r.cr, r.crFar, x / 2));
        a = {V::unpackLo8(cb, V::zero()), V::unpackLo8(cr, V::zero())};
        b = {V::unpackHi8(cb, V::zero()), V::unpackHi8(cr, V::zero())};
    }
};

// Packed pairs: the lane shuffle puts pixels in the order of halves A and B.
template <class V, int YOff, int CbOff, int CrOff, bool T>
struct Load<V, Packed422<YOff, CbOff, CrOff>, T> {
    struct Both {
        Luma<V> y;
        Chroma<V> c;
    };
    static Both both(const Row& r, std::ptrdiff_t x) {
        const uint8_t* p = r.y - YOff + 2 * x;
        const auto v0 = V::load(p), v1 = V::load(p + V::N);
        const auto w0 = T ? V::groupsT(v0) : V::lanesEven(v0, v1), w1 = T ? V::groupsT(v1) : V::lanesOdd(v0, v1);
        auto yHigh = [](typename V::I w) {
            return YOff == 0 ? V::template sll16<8>(w) : V::and_(w, V::set16(int16_t(0xff00)));
        };
        // Per lane: Cb of the four groups as 16-bit values, then Cr.
        const auto pick = V::bytesPerLane(CbOff, -1, CbOff + 4, -1, CbOff + 8, -1, CbOff + 12, -1,  //
                                          CrOff, -1, CrOff + 4, -1, CrOff + 8, -1, CrOff + 12, -1);
        const auto c0 = V::shuffle8(w0, pick), c1 = V::shuffle8(w1, pick);
        return {{yHigh(w0), yHigh(w1)}, {V::unpackLo64(c0, c1), V::unpackHi64(c0, c1)}};
    }
};

// ---- Arithmetic: chroma terms per pair, widened to halves A and B; then the
// luma of each row and R, G, B as bytes in natural pixel order ---------------
template <class V>
struct Terms {
    typename V::I r[2], g[2], b[2];
};
template <class V>
struct Channels {
    typename V::I r, g, b;
};

template <class V>
inline void widen(typename V::I t, typename V::I out[2]) {
    out[0] = V::unpackLo16(t, t);
    out[1] = V::unpackHi16(t, t);
}
template <class V, int Shift>
inline typename V::I finish(typename V::I ya, typename V::I yb, const typename V::I t[2]) {
    return V::packus16(V::template sra16<Shift>(V::add(ya, t[0])), V::template sra16<Shift>(V::add(yb, t[1])));
}

template <class V, class A>
struct Arith;

template <class V>
struct Arith<V, Bt601> {
    static constexpr int shift = 3;
    // R, G and B chroma terms of the values in c (per pair or per pixel).
    static void raw(const Chroma<V>& c, typename V::I& r, typename V::I& g, typename V::I& b) {
        const auto cb = V::template sll16<7>(c.cb), cr = V::template sll16<7>(c.cr);
        r = V::sub(V::mulhiU(cr, V::set16(6537)), V::set16(1783));
        g = V::sub(V::set16(1085), V::add(V::mulhiU(cb, V::set16(1606)), V::mulhiU(cr, V::set16(3330))));
        b = V::sub(V::mulhiU(cb, V::set16(8262)), V::set16(2214));
    }
    static Terms<V> terms(const Chroma<V>& c) {
        typename V::I r, g, b;
        raw(c, r, g, b);
        Terms<V> t;
        widen<V>(r, t.r);
        widen<V>(g, t.g);
        widen<V>(b, t.b);
        return t;
    }
    // Chroma per pixel: halves A and B directly.
    static Terms<V> terms(const Chroma<V>& a, const Chroma<V>& b) {
        Terms<V> t;
        raw(a, t.r[0], t.g[0], t.b[0]);
        raw(b, t.r[1], t.g[1], t.b[1]);
        return t;
    }
    static typename V::I luma(typename V::I yHigh) { return V::mulhiU(yHigh, V::set16(2384)); }
};

template <class V, class M>
struct Arith<V, Blocked709<M>> {
    static constexpr int shift = 4;
    static Terms<V> terms(const Chroma<V>& c) {
        const auto cb = V::template sll16<7>(V::sub(c.cb, V::set16(128)));
        const auto cr = V::template sll16<7>(V::sub(c.cr, V::set16(128)));
        Terms<V> t;
        widen<V>(V::mulhiS(cr, V::set16(M::k.crToR)), t.r);
        widen<V>(V::sub(V::zero(), V::add(V::mulhiS(cb, V::set16(M::k.cbToG)), V::mulhiS(cr, V::set16(M::k.crToG)))),
                 t.g);
        widen<V>(V::mulhiS(cb, V::set16(M::k.cbToB)), t.b);
        return t;
    }
    // m((Y - black) * 128, luma) + 8 (the rounding of the final shift).
    static typename V::I luma(typename V::I yHigh) {
        const auto y = V::template sll16<7>(V::sub(V::template srl16<8>(yHigh), V::set16(M::k.lumaOffset)));
        return V::add(V::mulhiS(y, V::set16(M::k.luma)), V::set16(8));
    }
};

// Full-range BT.709 reference: with the luma factor 65536 the luma term is Y
// itself, so each channel is Y + floor((chroma terms + constant) / 65536),
// computed per pair in 32-bit lanes.
template <class V, class M>
struct Arith<V, Reference709<M>> {
    using I = typename V::I;
    static constexpr const RefCoeffs& k = M::ref;
    static_assert(k.luma == 65536, "luma enters unscaled");
    static constexpr int shift = 0;
    static I term(I cb, I cr, int32_t kCb, int32_t kCr, int32_t k0) {
        auto half = [&](I b, I r) {
            const I sum = V::add32(V::add32(V::mullo32(b, V::set32(kCb)), V::mullo32(r, V::set32(kCr))), V::set32(k0));
            return V::template sra32<16>(sum);
        };
        return V::packs32(half(V::unpackLo16(cb, V::zero()), V::unpackLo16(cr, V::zero())),
                          half(V::unpackHi16(cb, V::zero()), V::unpackHi16(cr, V::zero())));
    }
    static Terms<V> terms(const Chroma<V>& c) {
        Terms<V> t;
        widen<V>(term(c.cb, c.cr, 0, k.crToR, k.r0), t.r);
        widen<V>(term(c.cb, c.cr, k.cbToG, k.crToG, k.g0), t.g);
        widen<V>(term(c.cb, c.cr, k.cbToB, 0, k.b0), t.b);
        return t;
    }
    static I luma(I yHigh) { return V::template srl16<8>(yHigh); }
};

// Analog YUV: with Y << 16 exact, each channel is Y + floor(term / 65536):
// R's term 74711 v is v + (9175 v >> 16) and B's 133169 u is 2u + (2097 u
// >> 16) as signed high products; G's -25821 u - 38076 v is -v + ((-25821 u
// + 27460 v) >> 16), one madd of the pairs (u, v). All per pair, in 16 bits.
template <class V>
struct Arith<V, Analog> {
    using I = typename V::I;
    static constexpr int shift = 0;
    static Terms<V> terms(const Chroma<V>& c) {
        const I u = V::sub(c.cb, V::set16(128)), v = V::sub(c.cr, V::set16(128));
        const I kG = V::set32(int32_t(uint32_t(uint16_t(-25821)) | uint32_t(27460) << 16));
        const I lo = V::template sra32<16>(V::madd(V::unpackLo16(u, v), kG));
        const I hi = V::template sra32<16>(V::madd(V::unpackHi16(u, v), kG));
        Terms<V> t;
        widen<V>(V::add(v, V::mulhiS(v, V::set16(9175))), t.r);
        widen<V>(V::sub(V::packs32(lo, hi), v), t.g);
        widen<V>(V::add(V::add(u, u), V::mulhiS(u, V::set16(2097))), t.b);
        return t;
    }
    static I luma(I yHigh) { return V::template srl16<8>(yHigh); }
};

template <class V, class A>
inline Channels<V> apply(const Luma<V>& y, const Terms<V>& t) {
    const auto ya = Arith<V, A>::luma(y.a), yb = Arith<V, A>::luma(y.b);
    constexpr int s = Arith<V, A>::shift;
    return {finish<V, s>(ya, yb, t.r), finish<V, s>(ya, yb, t.g), finish<V, s>(ya, yb, t.b)};
}

// ---- Storing ---------------------------------------------------------------
// Four-byte pixels of channels a, b, c, d in transposed order: q[i] holds the
// N/4 pixels from i*N/4 on.
template <class V>
inline void interleave4(typename V::I a, typename V::I b, typename V::I c, typename V::I d, typename V::I q[4]) {
    const auto ab0 = V::unpackLo8(a, b), ab1 = V::unpackHi8(a, b);
    const auto cd0 = V::unpackLo8(c, d), cd1 = V::unpackHi8(c, d);
    q[0] = V::unpackLo16(ab0, cd0);
    q[1] = V::unpackHi16(ab0, cd0);
    q[2] = V::unpackLo16(ab1, cd1);
    q[3] = V::unpackHi16(ab1, cd1);
}
template <class V, class O>
inline void put(const Row& r, std::ptrdiff_t x, const Channels<V>& c) {
    if constexpr (O::planes) {
        V::store(r.d[0] + x, c.r);
        V::store(r.d[1] + x, c.g);
        V::store(r.d[2] + x, c.b);
    } else {
        const auto first = O::bgr ? c.b : c.r, third = O::bgr ? c.r : c.b;
        typename V::I q[4];
        interleave4<V>(first, c.g, third, V::set8(char(O::keep ? 0 : r.alpha)), q);
        for (int i = 0; i < 4; ++i) {
            uint8_t* p = r.d[0] + 4 * x + i * V::N;
            if constexpr (O::channels == 4 && O::keep)
                V::store(p, V::or_(q[i], V::and_(V::load(p), V::set32(int32_t(0xFF000000u)))));
            else if constexpr (O::channels == 4)
                V::store(p, q[i]);
            else
                V::store3of4(r.d[0] + 3 * x + i * (3 * V::N / 4), q[i]);
        }
    }
}

template <class L>
constexpr bool isFilter = std::is_same_v<L, Filter420>;
template <class L>
constexpr bool isPacked = false;
template <int Y, int B, int R>
constexpr bool isPacked<Packed422<Y, B, R>> = true;

// One vector of pixels at x: with Pair, of both rows of a 4:2:0 pair (sharing
// the chroma terms), else of row r0 only.
template <class V, class L, class A, class O, bool Pair>
TPX_DEC_SUB_INLINE void vectorAt(const Row& r0, const Row& r1, std::ptrdiff_t x) {
    using In = Load<V, L, !O::planes>;
    if constexpr (isFilter<L>) {
        for (const Row* r : {&r0, &r1}) {
            Chroma<V> a, b;
            In::chroma(*r, x, a, b);
            put<V, O>(*r, x, apply<V, A>(In::luma(*r, x), Arith<V, A>::terms(a, b)));
            if (!Pair) break;
        }
    } else if constexpr (L::vsub == 2 && Pair) {
        const Terms<V> t = Arith<V, A>::terms(In::chroma(r0, x));
        put<V, O>(r0, x, apply<V, A>(In::luma(r0, x), t));
        put<V, O>(r1, x, apply<V, A>(In::luma(r1, x), t));
    } else if constexpr (isPacked<L>) {
        const auto in = In::both(r0, x);
        put<V, O>(r0, x, apply<V, A>(in.y, Arith<V, A>::terms(in.c)));
    } else {
        put<V, O>(r0, x, apply<V, A>(In::luma(r0, x), Arith<V, A>::terms(In::chroma(r0, x))));
    }
}

// The destination lines kPrefetchAhead bytes beyond the vector being stored
// (of each plane, for planes) are prefetched first, so they are on their way
// to L1 before the stores reach them (measured about a tenth faster at 1920
// wide for interleaved destinations, 1-5 hundredths for planes; prefetchw and
// distances 512..4096 measured alike). A hint only: it never faults and
// changes no data, also past the end of the image.
constexpr std::uintptr_t kPrefetchAhead = 1024;
template <int Bytes>
TPX_DEC_SUB_INLINE void prefetchAhead(const uint8_t* p) {
    const std::uintptr_t at = reinterpret_cast<std::uintptr_t>(p) + kPrefetchAhead;
    for (int k = 0; k < Bytes; k += 64) _mm_prefetch(reinterpret_cast<const char*>(at + k), _MM_HINT_T0);
}
template <class V, class O>
TPX_DEC_SUB_INLINE void prefetchRow(const Row& r, std::ptrdiff_t x) {
    if constexpr (O::planes) {
        for (int i = 0; i < 3; ++i) prefetchAhead<V::N>(r.d[i] + x);
    } else {
        prefetchAhead<O::channels * V::N>(r.d[0] + O::channels * x);
    }
}

// Whole vectors from `from` to `end`; a last partial vector is done as the
// vector ending at `end`, recomputing a few pixels with the same arithmetic
// (and so the same bytes). Pair: both rows of a 4:2:0 pair per vector.
template <class V, class L, class A, class O, bool Pair>
TPX_DEC_SUB_INLINE void span(const Row& r0, const Row& r1, int from, int end) {
    std::ptrdiff_t x = from;
    for (; x + V::N <= end; x += V::N) {
        prefetchRow<V, O>(r0, x);
        if constexpr (Pair && L::vsub == 2) prefetchRow<V, O>(r1, x);
        vectorAt<V, L, A, O, Pair>(r0, r1, x);
    }
    if (x < end) vectorAt<V, L, A, O, Pair>(r0, r1, end - V::N);
}

// Every start is a multiple of the chroma block, and the range holds one
// arithmetic only. For 4:2:0, r1 is the second row of the pair (else r1 is r0
// and unused). Four-byte 4:2:0 destinations are written one row after the
// other (the unfiltered members compute the shared chroma terms twice): one
// store stream instead of two measured faster; three-byte and planar
// destinations keep the pair.
template <class V, class L, class A, class O>
int row(const Row& first, const Row& second) {
    const Row r0 = first, r1 = second;  // local copies: the stores cannot alias them
    const int end = std::min(A::simdEnd(r0), L::simdLimit(r0));
    if (end - L::simdStart < V::N) return 0;
    if constexpr (L::vsub == 2 && !O::planes && O::channels == 4) {
        span<V, L, A, O, false>(r0, r0, L::simdStart, end);
        span<V, L, A, O, false>(r1, r1, L::simdStart, end);
    } else {
        span<V, L, A, O, true>(r0, r1, L::simdStart, end);
    }
    return end;
}

}  // namespace tpx::yuv::sub::simd

// Defines the row functions of one instruction set and instantiates them for
// every SIMD member.
#define TPX_DEC_SUB_ROWS(name, V)                                                  \
    namespace tpx::yuv::sub {                                                      \
    template <class L, class A, class O>                                           \
    int name(const Row& r0, const Row& r1) {                                       \
        return simd::row<V, L, A, O>(r0, r1);                                      \
    }                                                                              \
    TPX_DEC_SUB_SIMD_MEMBERS(TPX_DEC_SUB_INSTANTIATE_##name)                       \
    }
