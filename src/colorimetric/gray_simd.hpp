// SIMD bodies of the gray row functions, written once over a vector traits
// class V (AVX2 in gray_avx2.cpp, AVX-512 in gray_avx512.cpp). V::kF is the
// number of 32-bit elements in a vector; every 128-bit lane is processed alike
// and the traits supply the few operations that cross lanes.
//
// Every row function works on blocks whose results do not depend on their
// position within the group form, so after the last whole block a row that is
// at least one block wide finishes with one block ending exactly at n (it
// rewrites a few pixels with the same values).
#pragma once

#include "colorimetric/gray_rows.hpp"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

namespace tpx::gray {
namespace {

template <int N>
using Idx = std::array<int32_t, N>;

// Runs block(x) over [0, n) in steps of `width` pixels. After a first block
// at 0 the blocks start where `align` + x * `stride` bytes is aligned to the
// vector size (`align` is the image whose accesses matter most, `stride` its
// bytes per pixel, a power of two); the last block ends at n.
template <class V, class Block>
inline int blocks(const void* align, int stride, int n, int width, Block&& block) {
    if (n < width) return 0;
    std::ptrdiff_t x = 0;
    const std::uintptr_t a = reinterpret_cast<std::uintptr_t>(align);
    if (a % std::uintptr_t(stride) == 0) {
        const int skew = int((0 - a) % (4 * V::kF) / std::uintptr_t(stride));
        if (skew) {
            block(0);
            x = skew;
        }
    }
    for (; x + width <= n; x += width) block(x);
    if (x < n) block(std::ptrdiff_t(n - width));
    return n;
}
// The same with the stores of a one-channel destination aligned.
template <class V, class T, class Block>
inline int blocks(const T* dst, int n, int width, Block&& block) {
    return blocks<V>(dst, int(sizeof(T)), n, width, block);
}

// Asks for the lines `Ahead` bytes beyond a block of `bytes` bytes at p: the
// hardware prefetchers stop at page boundaries, and rows read from the
// last-level cache run faster with the next lines already on their way. The
// source is requested 4 KiB ahead, the destination (a read request, so the
// stores find their lines in L1) 1 KiB ahead. Against 1 KiB for the source
// and no destination requests, 16u/16s/32f/64f rows measured about 0.88-0.97
// of the time; 8u rows, already as fast as a copy of the same bytes, stay
// alike. A hint only: it never faults and changes no data, also past the end
// of the image.
constexpr int kSourceAhead = 4096, kDestinationAhead = 1024;
template <int Ahead>
inline void prefetchAhead(const void* p, int bytes) {
    for (int k = 0; k < bytes; k += 64) __builtin_prefetch(static_cast<const char*>(p) + Ahead + k);
}
// The source lines of a block of `srcBytes` at s and the destination lines of
// its `dstBytes` at d.
inline void prefetchBlock(const void* s, int srcBytes, const void* d, int dstBytes) {
    prefetchAhead<kSourceAhead>(s, srcBytes);
    prefetchAhead<kDestinationAhead>(d, dstBytes);
}

// ---- 8u --------------------------------------------------------------------
// Pixels as 32-bit elements R | G << 8 | B << 16 | (ignored) << 24. Two vectors
// of them are split into their even words (R | G << 8) and odd words
// (B | A << 8), one word per pixel; R << 8, G << 8 and B << 8 multiplied (high
// halves, unsigned) by q0, q1, q2 give the floor(c * q / 256) terms, three
// saturating additions give their sum + 64 (saturated at 65535), and an
// arithmetic shift by 7 of each word leaves the gray value as a signed 16-bit
// number, which the final pack clamps to 0..255 (a negative one to 0).
template <class V>
struct Gray8u {
    using I = typename V::I;
    I q0, q1, q2, round;
    explicit Gray8u(const uint16_t* q)
        : q0(V::set1_32(uint32_t(q[0]) * 0x10001u)),
          q1(V::set1_32(uint32_t(q[1]) * 0x10001u)),
          q2(V::set1_32(uint32_t(q[2]) * 0x10001u)),
          round(V::set1_32(0x00400040u)) {}

    // 2 * kF pixels from two vectors, as 16-bit values in the order of V::channelWords.
    I pixels(I x1, I x2) const {
        I r8, g8, b8;
        V::channelWords(x1, x2, r8, g8, b8);
        const I r = V::mulhi_u16(r8, q0);
        const I g = V::mulhi_u16(g8, q1);
        const I b = V::mulhi_u16(b8, q2);
        return V::srai16_7(V::adds_u16(V::adds_u16(V::adds_u16(r, g), b), round));
    }

    // Four vectors of pixels (two results of pixels()) to bytes in pixel order.
    static I pack(I lo, I hi) { return V::fixPackWords(V::packus16(lo, hi)); }
};

template <class V, int Ch>
int colorRow8u(const uint8_t* src, uint8_t* dst, int n, const uint16_t* q) {
    using I = typename V::I;
    const Gray8u<V> g(q);
    constexpr int kPx = V::kF;  // pixels per vector
    if constexpr (Ch == 4) {
        return blocks<V>(dst, n, 4 * kPx, [&](std::ptrdiff_t x) {
            const uint8_t* s = src + std::ptrdiff_t(x) * 4;
            prefetchBlock(s, 16 * kPx, dst + x, 4 * kPx);
            const I lo = g.pixels(V::loadu(s), V::loadu(s + 4 * kPx));
            const I hi = g.pixels(V::loadu(s + 8 * kPx), V::loadu(s + 12 * kPx));
            V::storeu(dst + x, Gray8u<V>::pack(lo, hi));
        });
    } else {
        // Each lane takes 4 pixels (12 bytes) and spreads them to 32-bit elements.
        alignas(64) static constexpr auto spread = [] {
            std::array<int8_t, 16> m{};
            for (int b = 0; b < 16; ++b) m[size_t(b)] = int8_t(b % 4 == 3 ? -128 : b / 4 * 3 + b % 4);
            return m;
        }();
        const I shuffle = V::lanesC3Shuffle(spread.data());
        return blocks<V>(dst, n, 4 * kPx, [&](std::ptrdiff_t x) {
            const uint8_t* s = src + std::ptrdiff_t(x) * 3;
            prefetchBlock(s, 12 * kPx, dst + x, 4 * kPx);
            I r[4];
            for (int k = 0; k < 4; ++k) r[k] = V::shuffle8(V::lanesC3(s + k * 3 * kPx), shuffle);
            V::storeu(dst + x, Gray8u<V>::pack(g.pixels(r[0], r[1]), g.pixels(r[2], r[3])));
        });
    }
}

// ---- 16u, 16s, 32f -----------------------------------------------------------
// Vectors of kF pixels per channel, as floats. 16s channels are moved to
// 0..65535 by inverting their sign bit (the same as adding 32768).
template <class V, class T>
inline typename V::F loadAsFloat(const T* p) {
    if constexpr (std::is_same_v<T, float>) return V::loadf(p);
    else if constexpr (std::is_same_v<T, uint16_t>) return V::cvt_f(V::widen16(p, false));
    else return V::cvt_f(V::widen16(p, true));
}

// C3 with N elements per vector (floats or doubles): element i of vector k
// holds channel (i + N*k) % 3; two blends gather a channel's elements and one
// permutation puts pixel p at element p.
template <class V, int N, int C>
struct C3Channel {
    static constexpr unsigned mask(int k) {
        unsigned m = 0;
        for (int i = 0; i < N; ++i)
            if ((i + N * k) % 3 == C) m |= 1u << i;
        return m;
    }
    static constexpr Idx<N> order() {
        Idx<N> o{};
        for (int p = 0; p < N; ++p) o[size_t(p)] = (3 * p + C) % N;
        return o;
    }
    alignas(64) static constexpr Idx<N> kOrder = order();
    template <class Vec>
    static Vec get(Vec v0, Vec v1, Vec v2, typename V::I idx) {
        return V::perm(V::template blend<mask(2)>(V::template blend<mask(1)>(v0, v1), v2), idx);
    }
};

// AC4: an in-lane 4 x 4 transpose leaves pixel (i % 4) * (kF / 4) + i / 4 at
// element i; the result is permuted back to pixel order.
template <class V>
constexpr Idx<V::kF> ac4Order() {
    constexpr int kF = V::kF, lanes = kF / 4;
    Idx<kF> o{};
    for (int p = 0; p < kF; ++p) o[size_t(p)] = 4 * (p % lanes) + p / lanes;
    return o;
}

template <class V, class T, int Ch>
struct FloatPixels {
    using F = typename V::F;
    using I = typename V::I;
    static constexpr int kF = V::kF;
    I o0, o1, o2, oAc4;
    F w0, w1, w2;
    explicit FloatPixels(const float* w)
        : o0(V::loadIdx(C3Channel<V, kF, 0>::kOrder.data())),
          o1(V::loadIdx(C3Channel<V, kF, 1>::kOrder.data())),
          o2(V::loadIdx(C3Channel<V, kF, 2>::kOrder.data())),
          oAc4(V::loadIdx(kAc4.data())),
          w0(V::set1f(w[0])), w1(V::set1f(w[1])), w2(V::set1f(w[2])) {}
    alignas(64) static constexpr Idx<kF> kAc4 = ac4Order<V>();

    // (w0*R + w1*G) + w2*B of kF pixels starting at p, in pixel order.
    F gray(const T* p) const {
        if constexpr (Ch == 3) {
            const F v0 = loadAsFloat<V>(p), v1 = loadAsFloat<V>(p + kF), v2 = loadAsFloat<V>(p + 2 * kF);
            const F r = C3Channel<V, kF, 0>::get(v0, v1, v2, o0);
            const F g = C3Channel<V, kF, 1>::get(v0, v1, v2, o1);
            const F b = C3Channel<V, kF, 2>::get(v0, v1, v2, o2);
            return V::add(V::add(V::mul(w0, r), V::mul(w1, g)), V::mul(w2, b));
        } else {
            const F v0 = loadAsFloat<V>(p), v1 = loadAsFloat<V>(p + kF);
            const F v2 = loadAsFloat<V>(p + 2 * kF), v3 = loadAsFloat<V>(p + 3 * kF);
            const F rg01 = V::unpacklo(v0, v1), rg23 = V::unpacklo(v2, v3);
            const F ba01 = V::unpackhi(v0, v1), ba23 = V::unpackhi(v2, v3);
            const F r = V::template shuffle<0x44>(rg01, rg23);
            const F g = V::template shuffle<0xEE>(rg01, rg23);
            const F b = V::template shuffle<0x44>(ba01, ba23);
            return V::perm(V::add(V::add(V::mul(w0, r), V::mul(w1, g)), V::mul(w2, b)), oAc4);
        }
    }
};

template <class V, class T, int Ch>
int colorRowFloat(const T* src, T* dst, int n, const float* w) {
    using I = typename V::I;
    const FloatPixels<V, T, Ch> px(w);
    constexpr int kF = V::kF;
    if constexpr (std::is_same_v<T, float>) {
        return blocks<V>(dst, n, kF, [&](std::ptrdiff_t x) {
            const float* s = src + std::ptrdiff_t(x) * Ch;
            prefetchBlock(s, 4 * Ch * kF, dst + x, 4 * kF);
            V::storef(dst + x, px.gray(s));
        });
    } else {
        const I low16 = V::set1_32(0xFFFFu), sign = V::set1_32(0x80008000u);
        return blocks<V>(dst, n, 2 * kF, [&](std::ptrdiff_t x) {
            const T* s = src + std::ptrdiff_t(x) * Ch;
            prefetchBlock(s, 4 * Ch * kF, dst + x, 4 * kF);
            I a = V::cvt_i(px.gray(s)), b = V::cvt_i(px.gray(s + kF * Ch));
            I out;
            if constexpr (std::is_same_v<T, uint16_t>) {
                // Low 16 bits of the rounded values.
                out = V::packus32(V::and_(a, low16), V::and_(b, low16));
            } else {
                // Rounded values saturated to 0..65535, then minus 32768.
                out = V::xor_(V::packus32(a, b), sign);
            }
            V::storeu(dst + x, V::fixPack64(out));
        });
    }
}

// ---- 64f ---------------------------------------------------------------------
// Vectors of kD = kF / 2 doubles. C3 as for floats; AC4 by the traits'
// transpose, in pixel order.
template <class V, int Ch>
int colorRow64f(const double* src, double* dst, int n, const double* w) {
    using D = typename V::D;
    constexpr int kD = V::kF / 2;
    const D w0 = V::set1d(w[0]), w1 = V::set1d(w[1]), w2 = V::set1d(w[2]);
    const typename V::I o0 = V::idxD(C3Channel<V, kD, 0>::kOrder.data()), o1 = V::idxD(C3Channel<V, kD, 1>::kOrder.data()),
                        o2 = V::idxD(C3Channel<V, kD, 2>::kOrder.data());
    return blocks<V>(dst, n, kD, [&](std::ptrdiff_t x) {
        const double* p = src + std::ptrdiff_t(x) * Ch;
        prefetchBlock(p, 8 * Ch * kD, dst + x, 8 * kD);
        D r, g, b;
        if constexpr (Ch == 3) {
            const D v0 = V::loadd(p), v1 = V::loadd(p + kD), v2 = V::loadd(p + 2 * kD);
            r = C3Channel<V, kD, 0>::get(v0, v1, v2, o0);
            g = C3Channel<V, kD, 1>::get(v0, v1, v2, o1);
            b = C3Channel<V, kD, 2>::get(v0, v1, v2, o2);
        } else {
            V::transposeAc4(V::loadd(p), V::loadd(p + kD), V::loadd(p + 2 * kD), V::loadd(p + 3 * kD), r, g, b);
        }
        V::stored(dst + x, V::addd(V::addd(V::muld(w0, r), V::muld(w1, g)), V::muld(w2, b)));
    });
}

// ---- Gray to colour -----------------------------------------------------------
// C3: output lane m (16 bytes) holds pixels of the 16-byte source chunk m / 3;
// each output vector gets its chunks by a lane permutation and one byte shuffle.
template <class V, int E>
struct C3Spread {
    static constexpr int kB = 4 * V::kF;  // bytes per vector
    static constexpr std::array<int8_t, 3 * kB> masks() {
        std::array<int8_t, 3 * kB> m{};
        for (int ob = 0; ob < 3 * kB; ++ob) {
            const int lane = ob / 16, pixel = ob / E / 3;
            m[size_t(ob)] = int8_t(pixel * E + ob % E - 16 * (lane / 3));
        }
        return m;
    }
    alignas(64) static constexpr std::array<int8_t, 3 * kB> kMasks = masks();
};

template <class V, class T, int Ch>
int expandRow(const T* src, T* dst, int n, T alpha) {
    using I = typename V::I;
    constexpr int E = int(sizeof(T)), kB = 4 * V::kF, kPx = kB / E;
    if constexpr (Ch == 3) {
        const I m0 = V::loadu(C3Spread<V, E>::kMasks.data());
        const I m1 = V::loadu(C3Spread<V, E>::kMasks.data() + kB);
        const I m2 = V::loadu(C3Spread<V, E>::kMasks.data() + 2 * kB);
        return blocks<V>(src, n, kPx, [&](std::ptrdiff_t x) {
            const I g = V::loadu(src + x);
            T* d = dst + std::ptrdiff_t(x) * 3;
            V::storeu(d, V::shuffle8(V::template c3Chunks<0>(g), m0));
            V::storeu(d + kPx, V::shuffle8(V::template c3Chunks<1>(g), m1));
            V::storeu(d + 2 * kPx, V::shuffle8(V::template c3Chunks<2>(g), m2));
        });
    } else {
        // Spreading 32-bit groups over the lanes first makes the in-lane unpacks
        // produce the four output vectors in order.
        uint32_t a32 = 0;
        for (int k = 0; k < 4 / E; ++k) std::memcpy(reinterpret_cast<uint8_t*>(&a32) + k * E, &alpha, size_t(E));
        const I a = V::set1_32(a32);
        const I spread = V::loadIdx(V::kSpreadC4.data());
        return blocks<V>(dst, 4 * E, n, kPx, [&](std::ptrdiff_t x) {
            const I g = V::permute32(V::loadu(src + x), spread);
            const I gg0 = V::template unpacklo<E>(g, g), gg1 = V::template unpackhi<E>(g, g);
            const I ga0 = V::template unpacklo<E>(g, a), ga1 = V::template unpackhi<E>(g, a);
            T* d = dst + std::ptrdiff_t(x) * 4;
            V::storeu(d, V::template unpacklo<2 * E>(gg0, ga0));
            V::storeu(d + kPx, V::template unpackhi<2 * E>(gg0, ga0));
            V::storeu(d + 2 * kPx, V::template unpacklo<2 * E>(gg1, ga1));
            V::storeu(d + 3 * kPx, V::template unpackhi<2 * E>(gg1, ga1));
        });
    }
}

// The 32-bit group order for C1C4: group 4L + k takes source group lanes*k + L.
template <int kF>
constexpr Idx<kF> spreadC4() {
    Idx<kF> o{};
    constexpr int lanes = kF / 4;
    for (int L = 0; L < lanes; ++L)
        for (int k = 0; k < 4; ++k) o[size_t(4 * L + k)] = lanes * k + L;
    return o;
}

}  // namespace

// A tier's colour-to-gray rows.
#define TPX_GRAY_COLOR_ROWS(V, NAME)                                                  \
    template <class T, int Ch>                                                        \
    int NAME(const T* s, T* d, int n, const Weight<T>* w) {                           \
        if constexpr (std::is_same_v<T, uint8_t>) return colorRow8u<V, Ch>(s, d, n, w); \
        else if constexpr (std::is_same_v<T, double>) return colorRow64f<V, Ch>(s, d, n, w); \
        else return colorRowFloat<V, T, Ch>(s, d, n, w);                              \
    }                                                                                 \
    TPX_GRAY_INSTANTIATE(NAME, uint8_t)                                               \
    TPX_GRAY_INSTANTIATE(NAME, uint16_t)                                              \
    TPX_GRAY_INSTANTIATE(NAME, int16_t)                                               \
    TPX_GRAY_INSTANTIATE(NAME, float)                                                 \
    TPX_GRAY_INSTANTIATE(NAME, double)

// A tier's gray-to-colour rows.
#define TPX_GRAY_EXPAND_ROWS(V, NAME)                                          \
    template <class T, int Ch>                                                 \
    int NAME(const T* s, T* d, int n, T alpha) {                               \
        return expandRow<V, T, Ch>(s, d, n, alpha);                            \
    }                                                                          \
    template int NAME<uint8_t, 3>(const uint8_t*, uint8_t*, int, uint8_t);     \
    template int NAME<uint8_t, 4>(const uint8_t*, uint8_t*, int, uint8_t);     \
    template int NAME<uint16_t, 3>(const uint16_t*, uint16_t*, int, uint16_t); \
    template int NAME<uint16_t, 4>(const uint16_t*, uint16_t*, int, uint16_t); \
    template int NAME<float, 3>(const float*, float*, int, float);             \
    template int NAME<float, 4>(const float*, float*, int, float);
#define TPX_GRAY_INSTANTIATE(NAME, T)                                         \
    template int NAME<T, 3>(const T*, T*, int, const Weight<T>*);             \
    template int NAME<T, 4>(const T*, T*, int, const Weight<T>*);

}  // namespace tpx::gray
