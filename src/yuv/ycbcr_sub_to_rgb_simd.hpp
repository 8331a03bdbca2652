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
// BT.601: (Y<<8) * 2384 high half is floor(Y*128*4768 / 65536); chroma terms
// floor((C<<7) * c / 65536) are unsigned 16-bit high products, computed once
// per pair. BT.709 blocks: signed high products of the centred values
// prescaled by 128, then +8 and >> 4. packus clamps to 0..255.
#pragma once

#include "yuv/ycbcr_sub_to_rgb.hpp"

#include <immintrin.h>

namespace tpx::yuv::sub::simd {

template <class V>
struct Input {
    typename V::I yA, yB;  // Y << 8 per pixel
    typename V::I cb, cr;  // uncentred chroma per pair
};

// ---- Loading ---------------------------------------------------------------
template <class V, class L>
struct Load;

template <class V, int H, int Vs, int CbP, int CrP>
struct Load<V, Planar<H, Vs, CbP, CrP>> {
    static Input<V> at(const Row& r, int x) {
        const auto y = V::load(r.y + x);
        if constexpr (H == 2)
            return {V::unpackLo8(V::zero(), y), V::unpackHi8(V::zero(), y), V::widenHalf(r.cb + x / 2),
                    V::widenHalf(r.cr + x / 2)};
        else
            return {V::unpackLo8(V::zero(), y), V::unpackHi8(V::zero(), y), V::widenQuarterDup(r.cb + x / 4),
                    V::widenQuarterDup(r.cr + x / 4)};
    }
};

template <class V, int CbOff>
struct Load<V, TwoPlane<CbOff>> {
    static Input<V> at(const Row& r, int x) {
        const auto y = V::load(r.y + x);
        const auto c = V::load(r.cb - CbOff + x);  // N/2 pairs start at byte x
        const auto first = V::and_(c, V::set16(0xff)), second = V::template srl16<8>(c);
        return {V::unpackLo8(V::zero(), y), V::unpackHi8(V::zero(), y), CbOff ? second : first,
                CbOff ? first : second};
    }
};

// Byte K of every 32-bit group, zero-extended.
template <class V, int K>
inline typename V::I byteOf(typename V::I w) {
    if constexpr (K == 3)
        return V::template srl32<24>(w);
    else
        return V::template srl32<24>(V::template sll32<24 - 8 * K>(w));
}

template <class V, int YOff, int CbOff, int CrOff>
struct Load<V, Packed422<YOff, CbOff, CrOff>> {
    static Input<V> at(const Row& r, int x) {
        const uint8_t* p = r.y - YOff + 2 * x;
        const auto v0 = V::load(p), v1 = V::load(p + V::N);
        const auto w0 = V::lanesEven(v0, v1), w1 = V::lanesOdd(v0, v1);
        auto yHigh = [](typename V::I w) {
            return YOff == 0 ? V::template sll16<8>(w) : V::and_(w, V::set16(int16_t(0xff00)));
        };
        return {yHigh(w0), yHigh(w1), V::packus32(byteOf<V, CbOff>(w0), byteOf<V, CbOff>(w1)),
                V::packus32(byteOf<V, CrOff>(w0), byteOf<V, CrOff>(w1))};
    }
};

// ---- Arithmetic: R, G, B as bytes in natural pixel order --------------------
template <class V>
struct Channels {
    typename V::I r, g, b;
};

template <class V, int Shift>
inline typename V::I finish(typename V::I ya, typename V::I yb, typename V::I t) {
    return V::packus16(V::template sra16<Shift>(V::add(ya, V::unpackLo16(t, t))),
                       V::template sra16<Shift>(V::add(yb, V::unpackHi16(t, t))));
}

template <class V, class A>
struct Arith;

template <class V>
struct Arith<V, Bt601> {
    static Channels<V> at(const Input<V>& in) {
        const auto ya = V::mulhiU(in.yA, V::set16(2384)), yb = V::mulhiU(in.yB, V::set16(2384));
        const auto cb = V::template sll16<7>(in.cb), cr = V::template sll16<7>(in.cr);
        const auto tr = V::sub(V::mulhiU(cr, V::set16(6537)), V::set16(1783));
        const auto tg = V::sub(V::set16(1085), V::add(V::mulhiU(cb, V::set16(1606)), V::mulhiU(cr, V::set16(3330))));
        const auto tb = V::sub(V::mulhiU(cb, V::set16(8262)), V::set16(2214));
        return {finish<V, 3>(ya, yb, tr), finish<V, 3>(ya, yb, tg), finish<V, 3>(ya, yb, tb)};
    }
};

template <class V, class M>
struct Arith<V, Blocked709<M>> {
    static typename V::I luma(typename V::I yHigh) {
        const auto y = V::template sll16<7>(V::sub(V::template srl16<8>(yHigh), V::set16(M::k.lumaOffset)));
        return V::add(V::mulhiS(y, V::set16(M::k.luma)), V::set16(8));
    }
    static Channels<V> at(const Input<V>& in) {
        const auto ya = luma(in.yA), yb = luma(in.yB);
        const auto cb = V::template sll16<7>(V::sub(in.cb, V::set16(128)));
        const auto cr = V::template sll16<7>(V::sub(in.cr, V::set16(128)));
        const auto tr = V::mulhiS(cr, V::set16(M::k.crToR));
        const auto tg = V::sub(V::zero(), V::add(V::mulhiS(cb, V::set16(M::k.cbToG)), V::mulhiS(cr, V::set16(M::k.crToG))));
        const auto tb = V::mulhiS(cb, V::set16(M::k.cbToB));
        return {finish<V, 4>(ya, yb, tr), finish<V, 4>(ya, yb, tg), finish<V, 4>(ya, yb, tb)};
    }
};

// ---- Storing ---------------------------------------------------------------
template <class V, class O>
inline void put(const Row& r, int x, const Channels<V>& c) {
    if constexpr (O::planes) {
        V::store(r.d[0] + x, c.r);
        V::store(r.d[1] + x, c.g);
        V::store(r.d[2] + x, c.b);
    } else {
        const auto first = O::bgr ? c.b : c.r, third = O::bgr ? c.r : c.b;
        if constexpr (O::channels == 4)
            V::storeC4(r.d[0] + 4 * x, first, c.g, third, V::set8(char(r.alpha)));
        else
            V::storeC3(r.d[0] + 3 * x, first, c.g, third);
    }
}

// Whole vectors from the row start; a last partial vector is done as the
// vector ending at the end of the SIMD range, recomputing a few pixels with the
// same arithmetic (and so the same bytes). Every start is a multiple of the
// chroma block, and the range holds one arithmetic only.
template <class V, class L, class A, class O>
int row(const Row& r) {
    const int end = A::simdEnd(r);
    if (end < V::N) return 0;
    auto step = [&r](int x) { put<V, O>(r, x, Arith<V, A>::at(Load<V, L>::at(r, x))); };
    int x = 0;
    for (; x + V::N <= end; x += V::N) step(x);
    if (x < end) step(end - V::N);
    return end;
}

}  // namespace tpx::yuv::sub::simd

// Defines the row functions of one instruction set and instantiates them for
// every SIMD member.
#define TPX_DEC_SUB_ROWS(name, V)                                                  \
    namespace tpx::yuv::sub {                                                      \
    template <class L, class A, class O>                                           \
    int name(const Row& r) {                                                       \
        return simd::row<V, L, A, O>(r);                                           \
    }                                                                              \
    TPX_DEC_SUB_SIMD_MEMBERS(TPX_DEC_SUB_INSTANTIATE_##name)                       \
    }
