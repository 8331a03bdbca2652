// Analog YUV rows: full-range luma with the weights 0.299, 0.587, 0.114 (S =
// 19595 R + 38470 G + 7471 B, 16 fractional bits), U = 0.492 (B - Y) and
// V = 0.877 (R - Y) offset by 128, in 4:4:4, 4:2:2 and 4:2:0 sampling.
//
// 4:4:4 encoder: Y = (S + 32768) >> 16, U = ((((B << 16) - S + 32768) >> 16)
//   * 32244 >> 16) + 128 (never leaves 0..255), V = clamp(((((R << 16) - S +
//   32768) >> 16) * 57475 >> 16) + 128).
// 4:4:4 decoder (u = U - 128, v = V - 128): R = clamp(((Y << 16) + 74711 v +
//   32768) >> 16), G = clamp(((Y << 16) - 25821 u - 38076 v) >> 16), B =
//   clamp(((Y << 16) + 133169 u + 32768) >> 16): R and B round, G does not.
// 4:2:2 and 4:2:0 encoders: Y = S >> 16 (truncated); over the two pixels of
//   a pair (k = 17, r = 65535) or the four of a 2 x 2 block (k = 18, r =
//   131071), with sums SB, SR, SS: U = ((((SB << 16) - SS + r) >> 16) * 32244
//   >> k) + 128, V = clamp(((((SR << 16) - SS + r) >> 16) * 57475 >> k) + 128).
// 4:2:2 and 4:2:0 decoders: the 4:4:4 decoder without rounding terms, each
//   chroma sample serving its pair or block. A packed 4:2:2 pixel without a
//   pair (a width of one, or an odd last pixel) reads its U byte c - 128 for
//   both chroma: R = clamp(((Y << 16) + 74711 c) >> 16), G = clamp(((Y << 16)
//   - 63897 c) >> 16), B = clamp(((Y << 16) + 133169 c) >> 16).
//
// Rows read and write channels through pointers and compile-time strides
// (an interleaved image is its pointer at each channel's offset, a planar one
// its planes), as plain loops that analog_yuv_avx2.cpp and
// analog_yuv_avx512.cpp compile for their instruction sets (the bodies have
// internal linkage, so every file keeps its own).
#pragma once

#include <cstddef>
#include <cstdint>

namespace tpx::analog {

using Len = std::ptrdiff_t;

// 4:4:4 rows: channel pointers in and out (four each), pixels, fourth value.
using Row444 = void (*)(const uint8_t* const* s, uint8_t* const* d, Len n, uint8_t alpha);
// 4:2:2 rows: luma and chroma pointers, pairs (plus a last unpaired pixel).
using Row422 = void (*)(const uint8_t* const* s, uint8_t* const* d, Len n);
// 4:2:0 rows: two rows of pixels or luma with one row of chroma, blocks.
using Row420 = void (*)(const uint8_t* const* s0, const uint8_t* const* s1, uint8_t* const* d0, uint8_t* const* d1,
                        Len blocks, uint8_t alpha);

// Fourth channels: none, an AC4 byte left alone, the source's fourth byte
// copied, or the alpha argument.
enum Fourth { kNone, kKeep, kCopy, kValue };

// Every row kind of the members: the template arguments of each.
#define TPX_ANALOG_444(X)                                                                          \
    X(encode444, 3, 3, kNone) X(encode444, 4, 4, kKeep) X(encode444, 3, 1, kNone)                  \
    X(encode444, 1, 1, kNone) X(encode444, 4, 1, kCopy) X(decode444, 3, 3, kNone)                  \
    X(decode444, 4, 4, kKeep) X(decode444, 3, 4, kValue) X(decode444, 1, 3, kNone) X(decode444, 1, 1, kNone)
#define TPX_ANALOG_422(X)                                                                          \
    X(encode422, 3, 2, 4) X(encode422, 3, 1, 1) X(encode422, 1, 1, 1) X(decode422, 1, 1, 3)        \
    X(decode422, 1, 1, 1) X(decode422, 1, 1, 4) X(decode422Packed, 2, 4, 3)
#define TPX_ANALOG_420(X) X(encode420, 3, 0, 0) X(encode420, 4, 0, 0) X(encode420, 1, 0, 0) \
    X(decode420, 3, kNone, 0) X(decode420, 1, kNone, 0) X(decode420, 4, kKeep, 0)

namespace {

inline int clamp255(int v) { return v < 0 ? 0 : v > 255 ? 255 : v; }
inline int lumaSum(int r, int g, int b) { return 19595 * r + 38470 * g + 7471 * b; }

// 4:4:4: channels R, G, B at strides SK (in) and Y, U, V at DK (out), or back.
template <int SK, int DK, int F>
void encode444(const uint8_t* const* s, uint8_t* const* d, Len n, uint8_t) {
    const uint8_t *__restrict r = s[0], *__restrict g = s[1], *__restrict b = s[2], *__restrict a = s[3];
    uint8_t *__restrict y = d[0], *__restrict u = d[1], *__restrict v = d[2], *__restrict q = d[3];
    for (Len i = 0; i < n; ++i) {
        const int R = r[i * SK], G = g[i * SK], B = b[i * SK], S = lumaSum(R, G, B);
        y[i * DK] = uint8_t((S + 32768) >> 16);
        u[i * DK] = uint8_t(((((B << 16) - S + 32768) >> 16) * 32244 >> 16) + 128);
        v[i * DK] = uint8_t(clamp255(((((R << 16) - S + 32768) >> 16) * 57475 >> 16) + 128));
        if constexpr (F == kCopy) q[i * DK] = a[i * SK];
    }
}
template <int SK, int DK, int F>
void decode444(const uint8_t* const* s, uint8_t* const* d, Len n, uint8_t alpha) {
    const uint8_t *__restrict y = s[0], *__restrict u = s[1], *__restrict v = s[2];
    uint8_t *__restrict r = d[0], *__restrict g = d[1], *__restrict b = d[2], *__restrict q = d[3];
    for (Len i = 0; i < n; ++i) {
        const int Y = y[i * SK] << 16, U = u[i * SK] - 128, V = v[i * SK] - 128;
        r[i * DK] = uint8_t(clamp255((Y + 74711 * V + 32768) >> 16));
        g[i * DK] = uint8_t(clamp255((Y - 25821 * U - 38076 * V) >> 16));
        b[i * DK] = uint8_t(clamp255((Y + 133169 * U + 32768) >> 16));
        if constexpr (F == kValue) q[i * DK] = alpha;
    }
}

// 4:2:2 encoder: pixels at stride SK; luma out at stride YK, U and V at CK.
template <int SK, int YK, int CK>
void encode422(const uint8_t* const* s, uint8_t* const* d, Len n) {
    const uint8_t *__restrict r = s[0], *__restrict g = s[1], *__restrict b = s[2];
    uint8_t *__restrict y = d[0], *__restrict u = d[1], *__restrict v = d[2];
    for (Len k = 0; k < n / 2; ++k) {
        const Len i = 2 * k, j = i + 1;
        const int S0 = lumaSum(r[i * SK], g[i * SK], b[i * SK]), S1 = lumaSum(r[j * SK], g[j * SK], b[j * SK]);
        const int SB = b[i * SK] + b[j * SK], SR = r[i * SK] + r[j * SK], SS = S0 + S1;
        y[i * YK] = uint8_t(S0 >> 16);
        y[j * YK] = uint8_t(S1 >> 16);
        u[k * CK] = uint8_t(((((SB << 16) - SS + 65535) >> 16) * 32244 >> 17) + 128);
        v[k * CK] = uint8_t(clamp255(((((SR << 16) - SS + 65535) >> 16) * 57475 >> 17) + 128));
    }
}

// 4:2:2 decoder: luma at stride YK, chroma at CK, pixels out at DK.
template <int YK, int CK, int DK>
void decode422(const uint8_t* const* s, uint8_t* const* d, Len n) {
    const uint8_t *__restrict y = s[0], *__restrict u = s[1], *__restrict v = s[2];
    uint8_t *__restrict r = d[0], *__restrict g = d[1], *__restrict b = d[2];
    for (Len i = 0; i < n / 2 * 2; ++i) {
        const int Y = y[i * YK] << 16, U = u[i / 2 * CK] - 128, V = v[i / 2 * CK] - 128;
        r[i * DK] = uint8_t(clamp255((Y + 74711 * V) >> 16));
        g[i * DK] = uint8_t(clamp255((Y - 25821 * U - 38076 * V) >> 16));
        b[i * DK] = uint8_t(clamp255((Y + 133169 * U) >> 16));
    }
}
// Packed 4:2:2: the pairs, then an odd last pixel from its Y and U bytes.
template <int YK, int CK, int DK>
void decode422Packed(const uint8_t* const* s, uint8_t* const* d, Len n) {
    decode422<YK, CK, DK>(s, d, n);
    if (n % 2 == 0) return;
    const Len i = n - 1;
    const int Y = s[0][i * YK] << 16, c = s[1][i / 2 * CK] - 128;
    d[0][i * DK] = uint8_t(clamp255((Y + 74711 * c) >> 16));
    d[1][i * DK] = uint8_t(clamp255((Y - 63897 * c) >> 16));
    d[2][i * DK] = uint8_t(clamp255((Y + 133169 * c) >> 16));
}

// 4:2:0 encoder: two rows of pixels at stride SK to two luma rows and one
// row of each chroma.
template <int SK, int, int>
void encode420(const uint8_t* const* s0, const uint8_t* const* s1, uint8_t* const* d0, uint8_t* const* d1, Len n,
               uint8_t) {
    const uint8_t *__restrict r0 = s0[0], *__restrict g0 = s0[1], *__restrict b0 = s0[2];
    const uint8_t *__restrict r1 = s1[0], *__restrict g1 = s1[1], *__restrict b1 = s1[2];
    uint8_t *__restrict y0 = d0[0], *__restrict y1 = d1[0], *__restrict u = d0[1], *__restrict v = d0[2];
    for (Len k = 0; k < n; ++k) {
        const Len i = 2 * k, j = i + 1;
        const int S00 = lumaSum(r0[i * SK], g0[i * SK], b0[i * SK]), S01 = lumaSum(r0[j * SK], g0[j * SK], b0[j * SK]);
        const int S10 = lumaSum(r1[i * SK], g1[i * SK], b1[i * SK]), S11 = lumaSum(r1[j * SK], g1[j * SK], b1[j * SK]);
        y0[i] = uint8_t(S00 >> 16), y0[j] = uint8_t(S01 >> 16), y1[i] = uint8_t(S10 >> 16), y1[j] = uint8_t(S11 >> 16);
        const int SB = b0[i * SK] + b0[j * SK] + b1[i * SK] + b1[j * SK];
        const int SR = r0[i * SK] + r0[j * SK] + r1[i * SK] + r1[j * SK], SS = S00 + S01 + S10 + S11;
        u[k] = uint8_t(((((SB << 16) - SS + 131071) >> 16) * 32244 >> 18) + 128);
        v[k] = uint8_t(clamp255(((((SR << 16) - SS + 131071) >> 16) * 57475 >> 18) + 128));
    }
}
// 4:2:0 decoder: two luma rows and one chroma row to two rows of pixels at DK.
template <int DK, int F, int>
void decode420(const uint8_t* const* s0, const uint8_t* const* s1, uint8_t* const* d0, uint8_t* const* d1, Len n,
               uint8_t) {
    const uint8_t *__restrict y0 = s0[0], *__restrict y1 = s1[0], *__restrict u = s0[1], *__restrict v = s0[2];
    for (int row = 0; row < 2; ++row) {
        const uint8_t* __restrict y = row ? y1 : y0;
        uint8_t* const* d = row ? d1 : d0;
        uint8_t *__restrict r = d[0], *__restrict g = d[1], *__restrict b = d[2];
        for (Len i = 0; i < 2 * n; ++i) {
            const int Y = y[i] << 16, U = u[i / 2] - 128, V = v[i / 2] - 128;
            r[i * DK] = uint8_t(clamp255((Y + 74711 * V) >> 16));
            g[i * DK] = uint8_t(clamp255((Y - 25821 * U - 38076 * V) >> 16));
            b[i * DK] = uint8_t(clamp255((Y + 133169 * U) >> 16));
        }
    }
}

}  // namespace

// The rows of every tier: one table per instruction set.
struct Rows {
#define TPX_ANALOG_FIELD(fn, a, b, c) decltype(&fn<a, b, c>) fn##_##a##_##b##_##c;
    TPX_ANALOG_444(TPX_ANALOG_FIELD)
    TPX_ANALOG_422(TPX_ANALOG_FIELD)
    TPX_ANALOG_420(TPX_ANALOG_FIELD)
#undef TPX_ANALOG_FIELD
};
#define TPX_ANALOG_ENTRY(fn, a, b, c) fn<a, b, c>,
#define TPX_ANALOG_TABLE {TPX_ANALOG_444(TPX_ANALOG_ENTRY) TPX_ANALOG_422(TPX_ANALOG_ENTRY) TPX_ANALOG_420(TPX_ANALOG_ENTRY)}
extern const Rows kRowsAvx2, kRowsAvx512;

}  // namespace tpx::analog
