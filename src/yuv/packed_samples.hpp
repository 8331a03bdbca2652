// Rows of 10-bit v210 video and of 12-bit packed samples. The per-pixel
// forms below define the results; packed_samples_avx2.cpp and
// packed_samples_avx512.cpp compile the same loops for their instruction sets
// (the bodies have internal linkage, so every file keeps its own).
//
// v210: each group of four little-endian words carries six pixels:
//   word 0: Cb0 | Y0 << 10 | Cr0 << 20    word 1: Y1 | Cb1 << 10 | Y2 << 20
//   word 2: Cr1 | Y3 << 10 | Cb2 << 20    word 3: Y4 | Cr2 << 10 | Y5 << 20
// pixels 2k and 2k+1 sharing Cbk and Crk. Colour in single precision:
// R = y + 1.54 cr, G = (y - 0.459 cr) - 0.183 cb, B = y + 1.816 cb with
// cb = Cb - 512, cr = Cr - 512, each rounded to nearest (ties to even) and
// limited to 0..31 (R, B) or 0..63 (G) on the 10-bit scale, then packed 5:6:5
// (the first-named channel in bits 0-4, G in 5-10, the last in 11-15).
//
// 12-bit: samples a, b (low 12 bits of 16-bit words) as bytes a >> 4,
// (a & 15) << 4 | (b >> 8 & 15), b & 255; an odd last sample as its first two.
#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace tpx::packed {

using Len = std::ptrdiff_t;

// Rows: v210 words to gray or colour words; 12-bit pack and unpack.
using V210Row = void (*)(const uint32_t* s, uint16_t* d, Len n);
// 16-bit samples of the 12-bit rows are read and written bytewise: their byte
// steps may leave rows unaligned.
using PackRow = void (*)(const uint8_t* s, uint8_t* d, Len n);
using UnpackRow = void (*)(const uint8_t* s, uint8_t* d, Len n);

struct Rows {
    V210Row gray, rgb, bgr;
    PackRow pack;
    UnpackRow unpack;
};
extern const Rows kRowsAvx2, kRowsAvx512;

namespace {

// The 10-bit field at bit `at` of word w of group g.
inline int field(const uint32_t* s, Len g, int w, int at) { return int(s[4 * g + w] >> at & 1023); }
// Y of pixel i (0..5) of a group, and Cb, Cr of its pair.
inline int lumaOf(const uint32_t* s, Len g, int i) {
    static constexpr int word[6] = {0, 1, 1, 2, 3, 3}, at[6] = {10, 0, 20, 10, 0, 20};
    return field(s, g, word[i], at[i]);
}
inline int cbOf(const uint32_t* s, Len g, int k) {
    static constexpr int word[3] = {0, 1, 2}, at[3] = {0, 10, 20};
    return field(s, g, word[k], at[k]);
}
inline int crOf(const uint32_t* s, Len g, int k) {
    static constexpr int word[3] = {0, 2, 3}, at[3] = {20, 0, 10};
    return field(s, g, word[k], at[k]);
}

inline int limited(float v, int top) {
    const int r = int(std::nearbyint(v));
    return r < 0 ? 0 : r > top ? top : r;
}
template <bool Rgb>
inline uint16_t colour(int Y, int Cb, int Cr) {
    const float y = float(Y), cb = float(Cb - 512), cr = float(Cr - 512);
    const int r = limited(y + 1.54f * cr, 31), g = limited((y - 0.459f * cr) - 0.183f * cb, 63),
              b = limited(y + 1.816f * cb, 31);
    return uint16_t(Rgb ? r | g << 5 | b << 11 : b | g << 5 | r << 11);
}

// Whole groups of six pixels, then the pixels of a partial last group. The
// colour rows unpack a chunk of groups into Y, Cb, Cr arrays (each pair's
// chroma repeated) and convert those pixels in one loop the compiler
// vectorises.
template <int Kind>  // 0 gray, 1 RGB, 2 BGR
void v210Row(const uint32_t* __restrict s, uint16_t* __restrict d, Len n) {
    const Len groups = n / 6;
    if constexpr (Kind == 0) {
        for (Len g = 0; g < groups; ++g)
            for (int i = 0; i < 6; ++i) d[6 * g + i] = uint16_t(lumaOf(s, g, i));
    } else {
        constexpr Len kGroups = 32;
        alignas(64) int Y[6 * kGroups], Cb[6 * kGroups], Cr[6 * kGroups];
        for (Len g0 = 0; g0 < groups; g0 += kGroups) {
            const Len m = groups - g0 < kGroups ? groups - g0 : kGroups;
            for (Len g = 0; g < m; ++g)
                for (int i = 0; i < 6; ++i)
                    Y[6 * g + i] = lumaOf(s, g0 + g, i), Cb[6 * g + i] = cbOf(s, g0 + g, i / 2),
                    Cr[6 * g + i] = crOf(s, g0 + g, i / 2);
            uint16_t* __restrict out = d + 6 * g0;
            for (Len i = 0; i < 6 * m; ++i) out[i] = colour<Kind == 1>(Y[i], Cb[i], Cr[i]);
        }
    }
    for (int i = 0; i < int(n - 6 * groups); ++i) {
        const int Y = lumaOf(s, groups, i);
        d[6 * groups + i] =
            Kind == 0 ? uint16_t(Y) : colour<Kind == 1>(Y, cbOf(s, groups, i / 2), crOf(s, groups, i / 2));
    }
}

inline unsigned sample(const uint8_t* s, Len i) {
    uint16_t v;
    std::memcpy(&v, s + 2 * i, 2);
    return v & 0xFFFu;
}
inline void store16(uint8_t* d, Len i, unsigned v) {
    const uint16_t w = uint16_t(v);
    std::memcpy(d + 2 * i, &w, 2);
}

void packRow(const uint8_t* __restrict s, uint8_t* __restrict d, Len n) {
    const Len pairs = n / 2;
    for (Len k = 0; k < pairs; ++k) {
        const unsigned a = sample(s, 2 * k), b = sample(s, 2 * k + 1);
        d[3 * k] = uint8_t(a >> 4);
        d[3 * k + 1] = uint8_t((a & 15) << 4 | b >> 8);
        d[3 * k + 2] = uint8_t(b);
    }
    if (n % 2) {
        const unsigned a = sample(s, n - 1);
        d[3 * pairs] = uint8_t(a >> 4);
        d[3 * pairs + 1] = uint8_t((a & 15) << 4);
    }
}

void unpackRow(const uint8_t* __restrict s, uint8_t* __restrict d, Len n) {
    const Len pairs = n / 2;
    for (Len k = 0; k < pairs; ++k) {
        store16(d, 2 * k, unsigned(s[3 * k] << 4 | s[3 * k + 1] >> 4));
        store16(d, 2 * k + 1, unsigned((s[3 * k + 1] & 15) << 8 | s[3 * k + 2]));
    }
    if (n % 2) store16(d, n - 1, unsigned(s[3 * pairs] << 4 | s[3 * pairs + 1] >> 4));
}

constexpr Rows kRows{v210Row<0>, v210Row<1>, v210Row<2>, packRow, unpackRow};

}  // namespace
}  // namespace tpx::packed
