// Row operations of the chroma layout, interlaced and resampling conversions:
// every conversion of these families is a sequence of them over rows of
// bytes. The scalar forms below define the results; the AVX2 and AVX-512
// forms (chroma_rows_simd.hpp) compute whole vectors from the row start and
// finish the row with the scalar form, giving the same bytes.
#pragma once

#include <cstddef>
#include <cstdint>

namespace tpx::chroma {

using Len = std::ptrdiff_t;

// even[k] = s[2k], odd[k] = s[2k + 1] for k < n; either output may be null.
inline void split2Scalar(const uint8_t* s, Len from, Len n, uint8_t* even, uint8_t* odd) {
    for (Len k = from; k < n; ++k) {
        if (even) even[k] = s[2 * k];
        if (odd) odd[k] = s[2 * k + 1];
    }
}
// d[2k] = a[k], d[2k + 1] = b[k].
inline void merge2Scalar(const uint8_t* a, const uint8_t* b, Len from, Len n, uint8_t* d) {
    for (Len k = from; k < n; ++k) d[2 * k] = a[k], d[2 * k + 1] = b[k];
}
// Packed pairs (4 bytes per pair of pixels: Y c0 Y c1, or c0 Y c1 Y when
// yOdd) to luma and the two chroma samples of each pair, and back; c0 and c1
// may be null (luma only).
inline void unpack422Scalar(const uint8_t* s, Len from, Len pairs, bool yOdd, uint8_t* y, uint8_t* c0, uint8_t* c1) {
    const int yAt = yOdd ? 1 : 0, cAt = yOdd ? 0 : 1;
    for (Len k = from; k < pairs; ++k) {
        y[2 * k] = s[4 * k + yAt];
        y[2 * k + 1] = s[4 * k + yAt + 2];
        if (c0) c0[k] = s[4 * k + cAt];
        if (c1) c1[k] = s[4 * k + cAt + 2];
    }
}
inline void pack422Scalar(const uint8_t* y, const uint8_t* c0, const uint8_t* c1, Len from, Len pairs, bool yOdd,
                          uint8_t* d) {
    const int yAt = yOdd ? 1 : 0, cAt = yOdd ? 0 : 1;
    for (Len k = from; k < pairs; ++k) {
        d[4 * k + yAt] = y[2 * k];
        d[4 * k + yAt + 2] = y[2 * k + 1];
        d[4 * k + cAt] = c0[k];
        d[4 * k + cAt + 2] = c1[k];
    }
}
// d[4k + i] = s[4k + order[i]] for `groups` groups of four bytes.
inline void permute4Scalar(const uint8_t* s, Len from, Len groups, const uint8_t order[4], uint8_t* d) {
    for (Len k = from; k < groups; ++k)
        for (int i = 0; i < 4; ++i) d[4 * k + i] = s[4 * k + order[i]];
}
// (a + b + 1) >> 1 when `up`, else (a + b) >> 1.
inline void averageScalar(const uint8_t* a, const uint8_t* b, Len from, Len n, bool up, uint8_t* d) {
    for (Len k = from; k < n; ++k) d[k] = uint8_t((a[k] + b[k] + (up ? 1 : 0)) >> 1);
}
// Doubling with interpolation: d[2k] = s[k], d[2k + 1] = (s[k] + s[k + 1] + 1) >> 1,
// the last s[k + 1] being s[k].
inline void interpolate2Scalar(const uint8_t* s, Len from, Len n, uint8_t* d) {
    for (Len k = from; k < n; ++k) {
        const int next = k + 1 < n ? s[k + 1] : s[k];
        d[2 * k] = s[k];
        d[2 * k + 1] = uint8_t((s[k] + next + 1) >> 1);
    }
}
// Halving: d[k] = (s[2k] + s[2k + 1] + 1) >> 1.
inline void halve2Scalar(const uint8_t* s, Len from, Len n, uint8_t* d) {
    for (Len k = from; k < n; ++k) d[k] = uint8_t((s[2 * k] + s[2 * k + 1] + 1) >> 1);
}
// Four taps: clamp((9 * (b + c) - (a + e) + 8) >> 4, 0, 255), arithmetic shift.
inline void fourTapScalar(const uint8_t* a, const uint8_t* b, const uint8_t* c, const uint8_t* e, Len from, Len n,
                          uint8_t* d) {
    for (Len k = from; k < n; ++k) {
        const int v = (9 * (b[k] + c[k]) - (a[k] + e[k]) + 8) >> 4;
        d[k] = uint8_t(v < 0 ? 0 : v > 255 ? 255 : v);
    }
}
// Weighted mean: (wa * a + (2^shift - wa) * b + 2^(shift - 1)) >> shift.
inline void blendScalar(const uint8_t* a, const uint8_t* b, Len from, Len n, int wa, int shift, uint8_t* d) {
    const int wb = (1 << shift) - wa, round = 1 << (shift - 1);
    for (Len k = from; k < n; ++k) d[k] = uint8_t((wa * a[k] + wb * b[k] + round) >> shift);
}
// The [1 2 1] tap: (a + 2b + c + add) >> 2, saturated at 255 (reached with
// add = 4 on white).
inline void tap121Scalar(const uint8_t* a, const uint8_t* b, const uint8_t* c, Len from, Len n, int add,
                         uint8_t* d) {
    for (Len k = from; k < n; ++k) {
        const int v = (a[k] + 2 * b[k] + c[k] + add) >> 2;
        d[k] = uint8_t(v > 255 ? 255 : v);
    }
}

inline void copyScalar(const uint8_t* s, Len from, Len n, uint8_t* d) {
    for (Len k = from; k < n; ++k) d[k] = s[k];
}

// The row operations of one kernel tier.
struct Rows {
    void (*copy)(const uint8_t* s, Len n, uint8_t* d);
    void (*split2)(const uint8_t* s, Len n, uint8_t* even, uint8_t* odd);
    void (*merge2)(const uint8_t* a, const uint8_t* b, Len n, uint8_t* d);
    void (*permute4)(const uint8_t* s, Len groups, const uint8_t order[4], uint8_t* d);
    void (*unpack422)(const uint8_t* s, Len pairs, bool yOdd, uint8_t* y, uint8_t* c0, uint8_t* c1);
    void (*pack422)(const uint8_t* y, const uint8_t* c0, const uint8_t* c1, Len pairs, bool yOdd, uint8_t* d);
    void (*average)(const uint8_t* a, const uint8_t* b, Len n, bool up, uint8_t* d);
    void (*interpolate2)(const uint8_t* s, Len n, uint8_t* d);
    void (*halve2)(const uint8_t* s, Len n, uint8_t* d);
    void (*fourTap)(const uint8_t* a, const uint8_t* b, const uint8_t* c, const uint8_t* e, Len n, uint8_t* d);
    void (*blend)(const uint8_t* a, const uint8_t* b, Len n, int wa, int shift, uint8_t* d);
    void (*tap121)(const uint8_t* a, const uint8_t* b, const uint8_t* c, Len n, int add, uint8_t* d);
};

// The rows of the active tier.
const Rows& rows();

#if defined(__x86_64__) || defined(_M_X64)
extern const Rows kRowsAvx2, kRowsAvx512;
#endif

}  // namespace tpx::chroma
