// The row operations of chroma_rows.hpp on whole vectors, one body for AVX2
// and AVX-512: chroma_rows_avx2.cpp and chroma_rows_avx512.cpp each define
// the vector primitives of their instruction set (struct V) and instantiate
// the table below. Each operation converts whole vectors from the row start
// and finishes the row with the scalar form.
#pragma once

#include "yuv/chroma_rows.hpp"

namespace tpx::chroma::simd {

// V provides: I, kBytes, load, store, set8, set16, and_, srl16_8, packus16 (per
// 128-bit lane), inOrder (the lane order of a two-vector packus back to
// natural order), unpackLo8/unpackHi8 (per lane), interleaved (two unpacked
// vectors back to natural order), avg8, xor_, add16, sub16, mullo16, sra16_4,
// srl16(n), shuffle8 (per lane).
template <class V>
struct Ops {
    using I = typename V::I;
    static constexpr Len B = V::kBytes;

    // Even and odd bytes of 2B bytes.
    static void split(const uint8_t* s, I& even, I& odd) {
        const I a = V::load(s), b = V::load(s + B), low = V::set16(0xFF);
        even = V::inOrder(V::packus16(V::and_(a, low), V::and_(b, low)));
        odd = V::inOrder(V::packus16(V::srl16_8(a), V::srl16_8(b)));
    }
    static void merge(I a, I b, uint8_t* d) {
        I first, second;
        V::interleaved(V::unpackLo8(a, b), V::unpackHi8(a, b), first, second);
        V::store(d, first);
        V::store(d + B, second);
    }
    // Long rows by the processor's string copy, which writes whole lines
    // without reading them first; short ones by vectors.
    static void copy(const uint8_t* s, Len n, uint8_t* d) {
        if (n >= 4096) {
            size_t count = size_t(n);
            __asm__ volatile("rep movsb" : "+D"(d), "+S"(s), "+c"(count) : : "memory");
            return;
        }
        Len k = 0;
        for (; k + 4 * B <= n; k += 4 * B) {
            const I a = V::load(s + k), b = V::load(s + k + B), c = V::load(s + k + 2 * B), e = V::load(s + k + 3 * B);
            V::store(d + k, a), V::store(d + k + B, b), V::store(d + k + 2 * B, c), V::store(d + k + 3 * B, e);
        }
        for (; k + B <= n; k += B) V::store(d + k, V::load(s + k));
        copyScalar(s, k, n, d);
    }
    static void split2(const uint8_t* s, Len n, uint8_t* even, uint8_t* odd) {
        Len k = 0;
        const I low = V::set16(0xFF);
        if (!odd || !even) {  // one of the two: one pack per vector
            uint8_t* d = even ? even : odd;
            for (; k + B <= n; k += B) {
                const I a = V::load(s + 2 * k), b = V::load(s + 2 * k + B);
                V::store(d + k, V::inOrder(even ? V::packus16(V::and_(a, low), V::and_(b, low))
                                                : V::packus16(V::srl16_8(a), V::srl16_8(b))));
            }
        }
        for (; k + B <= n; k += B) {
            I e, o;
            split(s + 2 * k, e, o);
            V::store(even + k, e);
            V::store(odd + k, o);
        }
        split2Scalar(s, k, n, even, odd);
    }
    static void merge2(const uint8_t* a, const uint8_t* b, Len n, uint8_t* d) {
        Len k = 0;
        for (; k + B <= n; k += B) merge(V::load(a + k), V::load(b + k), d + 2 * k);
        merge2Scalar(a, b, k, n, d);
    }
    static void permute4(const uint8_t* s, Len groups, const uint8_t order[4], uint8_t* d) {
        alignas(64) int8_t m[16];
        for (int i = 0; i < 16; ++i) m[i] = int8_t(i / 4 * 4 + order[i % 4]);
        const I mask = V::lanes(m);
        Len k = 0;
        for (; 4 * (k + B / 4) <= 4 * groups; k += B / 4) V::store(d + 4 * k, V::shuffle8(V::load(s + 4 * k), mask));
        permute4Scalar(s, k, groups, order, d);
    }
    // B pairs (4B bytes): luma as two vectors, chroma c0 and c1 as one each.
    static void unpack422(const uint8_t* s, Len pairs, bool yOdd, uint8_t* y, uint8_t* c0, uint8_t* c1) {
        Len k = 0;
        for (; k + B <= pairs; k += B) {
            I e0, o0, e1, o1;
            split(s + 4 * k, e0, o0);
            split(s + 4 * k + 2 * B, e1, o1);
            V::store(y + 2 * k, yOdd ? o0 : e0);
            V::store(y + 2 * k + B, yOdd ? o1 : e1);
            if (!c0 && !c1) continue;
            const I lo = yOdd ? e0 : o0, hi = yOdd ? e1 : o1, low = V::set16(0xFF);
            if (c0) V::store(c0 + k, V::inOrder(V::packus16(V::and_(lo, low), V::and_(hi, low))));
            if (c1) V::store(c1 + k, V::inOrder(V::packus16(V::srl16_8(lo), V::srl16_8(hi))));
        }
        unpack422Scalar(s, k, pairs, yOdd, y, c0, c1);
    }
    static void pack422(const uint8_t* y, const uint8_t* c0, const uint8_t* c1, Len pairs, bool yOdd, uint8_t* d) {
        Len k = 0;
        for (; k + B <= pairs; k += B) {
            const I a = V::load(c0 + k), b = V::load(c1 + k);
            I cc0, cc1;
            V::interleaved(V::unpackLo8(a, b), V::unpackHi8(a, b), cc0, cc1);
            const I y0 = V::load(y + 2 * k), y1 = V::load(y + 2 * k + B);
            if (yOdd) {
                merge(cc0, y0, d + 4 * k);
                merge(cc1, y1, d + 4 * k + 2 * B);
            } else {
                merge(y0, cc0, d + 4 * k);
                merge(y1, cc1, d + 4 * k + 2 * B);
            }
        }
        pack422Scalar(y, c0, c1, k, pairs, yOdd, d);
    }
    // (a + b) >> 1 is the rounding-up mean less the carried-out low bit.
    static I average(I a, I b, bool up) {
        const I r = V::avg8(a, b);
        return up ? r : V::sub8(r, V::and_(V::xor_(a, b), V::set8(1)));
    }
    static void averageRows(const uint8_t* a, const uint8_t* b, Len n, bool up, uint8_t* d) {
        Len k = 0;
        for (; k + B <= n; k += B) V::store(d + k, average(V::load(a + k), V::load(b + k), up));
        averageScalar(a, b, k, n, up, d);
    }
    static void interpolate2(const uint8_t* s, Len n, uint8_t* d) {
        Len k = 0;
        for (; k + B < n; k += B) {  // every s[k + 1] read lies in the row
            const I v = V::load(s + k);
            merge(v, V::avg8(v, V::load(s + k + 1)), d + 2 * k);
        }
        interpolate2Scalar(s, k, n, d);
    }
    static void halve2(const uint8_t* s, Len n, uint8_t* d) {
        Len k = 0;
        for (; k + B <= n; k += B) {
            I e, o;
            split(s + 2 * k, e, o);
            V::store(d + k, V::avg8(e, o));
        }
        halve2Scalar(s, k, n, d);
    }
    // 16-bit halves of a vector of bytes (per lane) and back.
    static I lo(I v) { return V::unpackLo8(v, V::set8(0)); }
    static I hi(I v) { return V::unpackHi8(v, V::set8(0)); }
    static void fourTap(const uint8_t* a, const uint8_t* b, const uint8_t* c, const uint8_t* e, Len n, uint8_t* d) {
        const I nine = V::set16(9), eight = V::set16(8);
        auto taps = [&](I va, I vb, I vc, I ve) {
            return V::sra16_4(V::add16(V::sub16(V::mullo16(V::add16(vb, vc), nine), V::add16(va, ve)), eight));
        };
        Len k = 0;
        for (; k + B <= n; k += B) {
            const I va = V::load(a + k), vb = V::load(b + k), vc = V::load(c + k), ve = V::load(e + k);
            V::store(d + k, V::packus16(taps(lo(va), lo(vb), lo(vc), lo(ve)), taps(hi(va), hi(vb), hi(vc), hi(ve))));
        }
        fourTapScalar(a, b, c, e, k, n, d);
    }
    static void blend(const uint8_t* a, const uint8_t* b, Len n, int wa, int shift, uint8_t* d) {
        const I ka = V::set16(int16_t(wa)), kb = V::set16(int16_t((1 << shift) - wa)),
                round = V::set16(int16_t(1 << (shift - 1)));
        auto mix = [&](I va, I vb) { return V::srl16(V::add16(V::add16(V::mullo16(va, ka), V::mullo16(vb, kb)), round), shift); };
        Len k = 0;
        for (; k + B <= n; k += B) {
            const I va = V::load(a + k), vb = V::load(b + k);
            V::store(d + k, V::packus16(mix(lo(va), lo(vb)), mix(hi(va), hi(vb))));
        }
        blendScalar(a, b, k, n, wa, shift, d);
    }
    static void tap121(const uint8_t* a, const uint8_t* b, const uint8_t* c, Len n, int add, uint8_t* d) {
        const I k4 = V::set16(int16_t(add));
        auto taps = [&](I va, I vb, I vc) { return V::srl16(V::add16(V::add16(V::add16(va, vb), V::add16(vb, vc)), k4), 2); };
        Len k = 0;
        for (; k + B <= n; k += B) {
            const I va = V::load(a + k), vb = V::load(b + k), vc = V::load(c + k);
            V::store(d + k, V::packus16(taps(lo(va), lo(vb), lo(vc)), taps(hi(va), hi(vb), hi(vc))));
        }
        tap121Scalar(a, b, c, k, n, add, d);
    }

    static constexpr Rows table() {
        return {copy, split2, merge2, permute4, unpack422, pack422, averageRows, interpolate2, halve2, fourTap, blend, tap121};
    }
};

}  // namespace tpx::chroma::simd
