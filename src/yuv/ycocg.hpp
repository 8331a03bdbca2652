// YCoCg rows: BGR or RGB pixels to {Y, Co, Cg} planes and back, plain or
// reversible. The per-pixel forms below define the results; the rows are
// plain loops that ycocg_avx2.cpp and ycocg_avx512.cpp compile for their
// instruction sets, which vectorises them with the same integer arithmetic.
// The bodies have internal linkage, so every file keeps its own.
//
// Plain:      Y = (R + 2G + B + 2) >> 2, Co = (R - B + 1) >> 1,
//             Cg = (2G - R - B + 2) >> 2;  R = Y + Co - Cg, G = Y + Cg, B = Y - Co - Cg.
// Reversible: Co = R - B, t = B + (Co >> 1), Cg = G - t, Y = t + (Cg >> 1);
//             t = Y - (Cg >> 1), G = Cg + t, B = t - (Co >> 1), R = B + Co.
// Shifts are arithmetic. 8-bit planes hold Co + 128 and Cg + 128 limited
// above at 255 (and are read back less 128); every store to an 8-bit pixel
// saturates to 0..255 and to a 16-bit one to -32768..32767.
#pragma once

#include "frame/image.hpp"

#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace tpx::ycocg {

using Len = std::ptrdiff_t;

// A row of a member: the member's element types and layout behind void pointers.
using ForwardFn = void (*)(const void* s, void* y, void* co, void* cg, Len n);
using InverseFn = void (*)(const void* y, const void* co, const void* cg, void* d, Len n, int64_t fourth);

// The rows of every member: source, destination, channels, reversible, BGR order.
#define TPX_YCOCG_FORWARD(X)                                                                          \
    X(uint8_t, int16_t, 3, false, true) X(uint8_t, int16_t, 4, false, true)                          \
    X(uint8_t, int16_t, 3, true, true) X(uint8_t, int16_t, 4, true, true)                            \
    X(uint8_t, uint8_t, 3, false, false) X(int16_t, int16_t, 3, false, true)                         \
    X(int16_t, int16_t, 4, false, true) X(int16_t, int32_t, 3, false, true)                          \
    X(int16_t, int32_t, 4, false, true) X(int16_t, int16_t, 3, true, true)                           \
    X(int16_t, int16_t, 4, true, true) X(int16_t, int32_t, 3, true, true) X(int16_t, int32_t, 4, true, true)
#define TPX_YCOCG_INVERSE(X)                                                                          \
    X(int16_t, uint8_t, 3, false, true) X(int16_t, uint8_t, 4, false, true)                          \
    X(int16_t, uint8_t, 3, true, true) X(int16_t, uint8_t, 4, true, true)                            \
    X(uint8_t, uint8_t, 3, false, false) X(int16_t, int16_t, 3, false, true)                         \
    X(int16_t, int16_t, 4, false, true) X(int32_t, int16_t, 3, false, true)                          \
    X(int32_t, int16_t, 4, false, true) X(int16_t, int16_t, 3, true, true)                           \
    X(int16_t, int16_t, 4, true, true) X(int32_t, int16_t, 3, true, true) X(int32_t, int16_t, 4, true, true)

template <class S, class D, int Ch, bool Rev, bool Bgr> void forwardAvx2(const void*, void*, void*, void*, Len);
template <class S, class D, int Ch, bool Rev, bool Bgr> void forwardAvx512(const void*, void*, void*, void*, Len);
template <class S, class D, int Ch, bool Rev, bool Bgr>
void inverseAvx2(const void*, const void*, const void*, void*, Len, int64_t);
template <class S, class D, int Ch, bool Rev, bool Bgr>
void inverseAvx512(const void*, const void*, const void*, void*, Len, int64_t);

namespace {

template <class T>
constexpr T saturate(int64_t v) {
    if constexpr (std::is_same_v<T, uint8_t>) return T(v < 0 ? 0 : v > 255 ? 255 : v);
    else if constexpr (std::is_same_v<T, int16_t>) return T(v < -32768 ? -32768 : v > 32767 ? 32767 : v);
    else return T(v);
}

// Source pixels of `Ch` channels (B at 0 unless RGB) to three planes. Rows
// of 16- and 32-bit samples need not be aligned (steps are any byte count).
template <class S, class D, int Ch, bool Rev, bool Bgr>
void forwardRow(const S* __restrict s, D* __restrict y, D* __restrict co, D* __restrict cg, Len n) {
    constexpr bool offset = std::is_same_v<D, uint8_t>;
    for (Len i = 0; i < n; ++i) {
        const int32_t b = loadAt(s, Ch * i + (Bgr ? 0 : 2)), g = loadAt(s, Ch * i + 1), r = loadAt(s, Ch * i + (Bgr ? 2 : 0));
        int32_t Y, Co, Cg;
        if constexpr (Rev) {
            Co = r - b;
            const int32_t t = b + (Co >> 1);
            Cg = g - t;
            Y = t + (Cg >> 1);
        } else {
            Y = (r + 2 * g + b + 2) >> 2;
            Co = (r - b + 1) >> 1;
            Cg = (2 * g - r - b + 2) >> 2;
        }
        if constexpr (offset) {
            storeAt(y, i, D(Y));
            storeAt(co, i, D(Co + 128 > 255 ? 255 : Co + 128));
            storeAt(cg, i, D(Cg + 128 > 255 ? 255 : Cg + 128));
        } else {
            storeAt(y, i, saturate<D>(Y)), storeAt(co, i, saturate<D>(Co)), storeAt(cg, i, saturate<D>(Cg));
        }
    }
}

// Three planes to pixels of `Ch` channels; a fourth channel gets `fourth`.
template <class S, class D, int Ch, bool Rev, bool Bgr>
void inverseRow(const S* __restrict y, const S* __restrict co, const S* __restrict cg, D* __restrict d, Len n,
                D fourth) {
    // 32-bit planes may hold any value: their sums need 64 bits.
    using W = std::conditional_t<std::is_same_v<S, int32_t>, int64_t, int32_t>;
    constexpr W off = std::is_same_v<S, uint8_t> ? 128 : 0;
    for (Len i = 0; i < n; ++i) {
        const W Y = loadAt(y, i), Co = W(loadAt(co, i)) - off, Cg = W(loadAt(cg, i)) - off;
        W r, g, b;
        if constexpr (Rev) {
            const W t = Y - (Cg >> 1);
            g = Cg + t;
            b = t - (Co >> 1);
            r = b + Co;
        } else {
            r = Y + Co - Cg;
            g = Y + Cg;
            b = Y - Co - Cg;
        }
        if constexpr (Ch == 4) {
            storePixel4(d + Ch * i, saturate<D>(Bgr ? b : r), saturate<D>(g), saturate<D>(Bgr ? r : b), fourth);
        } else {
            storeAt(d, Ch * i + (Bgr ? 0 : 2), saturate<D>(b));
            storeAt(d, Ch * i + 1, saturate<D>(g));
            storeAt(d, Ch * i + (Bgr ? 2 : 0), saturate<D>(r));
        }
    }
}

// The rows behind void pointers.
template <class S, class D, int Ch, bool Rev, bool Bgr>
void forward(const void* s, void* y, void* co, void* cg, Len n) {
    forwardRow<S, D, Ch, Rev, Bgr>(static_cast<const S*>(s), static_cast<D*>(y), static_cast<D*>(co),
                                   static_cast<D*>(cg), n);
}
template <class S, class D, int Ch, bool Rev, bool Bgr>
void inverse(const void* y, const void* co, const void* cg, void* d, Len n, int64_t fourth) {
    inverseRow<S, D, Ch, Rev, Bgr>(static_cast<const S*>(y), static_cast<const S*>(co), static_cast<const S*>(cg),
                                   static_cast<D*>(d), n, D(fourth));
}

}  // namespace
}  // namespace tpx::ycocg

// Defines the rows of one instruction set (in ycocg_avx2.cpp, ycocg_avx512.cpp).
#define TPX_YCOCG_ISA_FORWARD(S, D, Ch, Rev, Bgr) \
    template void TPX_YCOCG_FWD<S, D, Ch, Rev, Bgr>(const void*, void*, void*, void*, Len);
#define TPX_YCOCG_ISA_INVERSE(S, D, Ch, Rev, Bgr) \
    template void TPX_YCOCG_INV<S, D, Ch, Rev, Bgr>(const void*, const void*, const void*, void*, Len, int64_t);
#define TPX_YCOCG_ISA_ROWS                                                                              \
    namespace tpx::ycocg {                                                                              \
    template <class S, class D, int Ch, bool Rev, bool Bgr>                                             \
    void TPX_YCOCG_FWD(const void* s, void* y, void* co, void* cg, Len n) {                             \
        forward<S, D, Ch, Rev, Bgr>(s, y, co, cg, n);                                                   \
    }                                                                                                   \
    template <class S, class D, int Ch, bool Rev, bool Bgr>                                             \
    void TPX_YCOCG_INV(const void* y, const void* co, const void* cg, void* d, Len n, int64_t fourth) { \
        inverse<S, D, Ch, Rev, Bgr>(y, co, cg, d, n, fourth);                                           \
    }                                                                                                   \
    TPX_YCOCG_FORWARD(TPX_YCOCG_ISA_FORWARD)                                                            \
    TPX_YCOCG_INVERSE(TPX_YCOCG_ISA_INVERSE)                                                            \
    }
