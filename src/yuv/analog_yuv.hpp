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
// Rows read and write an interleaved image through its pointer and
// compile-time channel offsets, a planar one through its planes, as plain
// loops that analog_yuv_avx2.cpp and analog_yuv_avx512.cpp compile for their
// instruction sets (the bodies have internal linkage, so every file keeps its
// own). In those builds the rows start with the vector row functions of the
// YCbCr families under the analog arithmetic (ycbcr444_simd.hpp for 4:4:4,
// rgb_to_ycbcr_sub_simd.hpp and ycbcr_sub_to_rgb_simd.hpp for the subsampled
// rows), which give the same bytes; the loops below finish the row.
#pragma once

#include "frame/image.hpp"
#include "yuv/rgb_to_ycbcr_sub.hpp"
#include "yuv/ycbcr444.hpp"
#include "yuv/ycbcr_sub_to_rgb.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

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

// The vector builds (analog_yuv_avx2.cpp, analog_yuv_avx512.cpp) store a
// four-byte pixel whole, its own fourth byte merged back in, as the other
// AC4 vector rows of the library do.
#ifndef TPX_ANALOG_MERGE_FOURTH
#define TPX_ANALOG_MERGE_FOURTH 0
#endif
constexpr bool kMergeFourth = TPX_ANALOG_MERGE_FOURTH;
// The vector row functions of the build: none (0), AVX2 (1), AVX-512 (2).
#ifndef TPX_ANALOG_VECTOR_ROWS
#define TPX_ANALOG_VECTOR_ROWS 0
#endif

// Every row kind of the members: the template arguments of each (elements
// per source pixel, BGR source, elements per destination pixel, BGR
// destination or fourth channel).
#define TPX_ANALOG_ROWS(X)                                                                                    \
    X(encode444, 3, 0, 3, kNone) X(encode444, 4, 0, 4, kKeep) X(encode444, 3, 0, 1, kNone)                    \
    X(encode444, 1, 0, 1, kNone) X(encode444, 4, 0, 1, kCopy) X(decode444, 3, 0, 3, kNone)                    \
    X(decode444, 4, 0, 4, kKeep) X(decode444, 3, 0, 4, kValue) X(decode444, 1, 0, 3, kNone)                   \
    X(decode444, 1, 0, 1, kNone) X(encode422, 3, 0, 2, 0) X(encode422, 3, 0, 1, 0) X(encode422, 1, 0, 1, 0)   \
    X(decode422, 1, 0, 3, 0) X(decode422, 1, 0, 1, 0) X(decode422, 1, 0, 4, 0) X(decode422Packed, 2, 0, 3, 0) \
    X(encode420, 3, 0, 1, 0) X(encode420, 4, 1, 1, 0) X(encode420, 1, 0, 1, 0) X(decode420, 1, 0, 3, 0)      \
    X(decode420, 1, 0, 1, 0) X(decode420, 1, 0, 4, 0) X(decode420, 1, 0, 3, 1)

namespace {

inline int clamp255(int v) { return v < 0 ? 0 : v > 255 ? 255 : v; }
inline int lumaSum(int r, int g, int b) { return 19595 * r + 38470 * g + 7471 * b; }

// Channel c (0..3) of pixel i of one side: K = 1 the planes p[c]; K = 3 or 4
// interleaved at p[0] (R, G, B or Y, U, V first, reversed when Bgr); K = 2
// packed pairs Y U Y V (channel 0 the pixel's luma, 1 and 2 its pair's U, V).
template <int K, bool Bgr>
struct Side {
    const uint8_t* __restrict p0;
    const uint8_t* __restrict p1;
    const uint8_t* __restrict p2;
    const uint8_t* __restrict p3;
    explicit Side(const uint8_t* const* p) : p0(p[0]), p1(p[1]), p2(p[2]), p3(p[3]) {}
    static constexpr Len at(Len i, int c) {
        if (K == 2) return c == 0 ? 2 * i : 4 * (i / 2) + (c == 1 ? 1 : 3);
        return i * K + (Bgr && c < 3 ? 2 - c : c);
    }
    int get(Len i, int c) const {
        if constexpr (K == 1) return (c == 0 ? p0 : c == 1 ? p1 : c == 2 ? p2 : p3)[i];
        else return p0[at(i, c)];
    }
};
template <int K, bool Bgr>
struct Out {
    uint8_t* __restrict p0;
    uint8_t* __restrict p1;
    uint8_t* __restrict p2;
    uint8_t* __restrict p3;
    explicit Out(uint8_t* const* p) : p0(p[0]), p1(p[1]), p2(p[2]), p3(p[3]) {}
    void set(Len i, int c, int v) const {
        if constexpr (K == 1) (c == 0 ? p0 : c == 1 ? p1 : c == 2 ? p2 : p3)[i] = uint8_t(v);
        else p0[Side<K, Bgr>::at(i, c)] = uint8_t(v);
    }
    // Channels 0, 1, 2 of pixel i, and a fourth byte `alpha` when F is kValue.
    // Four-byte pixels go out as one 32-bit word on little-endian hosts:
    // with the alpha value, or (vector builds, kMergeFourth) with the pixel's
    // own fourth byte read back, so that it keeps its value; otherwise byte
    // by byte, the fourth byte untouched.
    template <int F>
    void put3(Len i, int v0, int v1, int v2, uint8_t alpha = 0) const {
        if constexpr (K == 4 && kLittleEndian && (F == kValue || kMergeFourth)) {
            const uint32_t colour = uint32_t(Bgr ? v2 | v1 << 8 | v0 << 16 : v0 | v1 << 8 | v2 << 16);
            uint32_t w = uint32_t(alpha) << 24;
            if constexpr (F != kValue) std::memcpy(&w, p0 + 4 * i, 4), w &= 0xFF000000u;
            w |= colour;
            std::memcpy(p0 + 4 * i, &w, 4);
        } else {
            set(i, 0, v0), set(i, 1, v1), set(i, 2, v2);
            if constexpr (F == kValue) set(i, 3, alpha);
        }
    }
};

// Pixels of a row are independent, and a destination row never overlaps a
// source row, so the loops below are marked TPX_INDEPENDENT.

// Subsampled rows work in chunks of this many pixels, through planar arrays
// on the stack that the loops read and write at unit stride.
constexpr Len kChunk = 64;

// The channel pointers of a K-element side moved to pixel i.
template <int K, class P>
void advance(P* const* d, Len i, P** o) {
    for (int c = 0; c < 4; ++c) o[c] = K == 1 ? (d[c] ? d[c] + i : nullptr) : c == 0 ? d[0] + i * K : nullptr;
}

// R, G, B of pixels [i0, i0 + m) of one side.
template <int K, bool Bgr>
void loadRgb(const Side<K, Bgr>& in, Len i0, Len m, int* R, int* G, int* B) {
    TPX_INDEPENDENT
    for (Len t = 0; t < m; ++t) R[t] = in.get(i0 + t, 0), G[t] = in.get(i0 + t, 1), B[t] = in.get(i0 + t, 2);
}

// Each of h chroma samples repeated for the two pixels it serves.
inline void doubled(const uint8_t* __restrict u, const uint8_t* __restrict v, Len h, uint8_t* U2, uint8_t* V2) {
    for (Len k = 0; k < h; ++k) U2[2 * k] = U2[2 * k + 1] = u[k], V2[2 * k] = V2[2 * k + 1] = v[k];
}

// The encoder family's layout of a subsampled analog encoder row: source
// pixels of SK bytes (planes for 1), output packed Y U Y V (DK 2) or planes.
template <int SK, int SB, yuv::enc::Sampling S, int DK>
using EncLayout =
    yuv::enc::Layout<SK == 1 ? 0 : SK, SB != 0, S, DK == 2 ? yuv::enc::Out::Packed : yuv::enc::Out::Planes,
                     DK == 2 ? yuv::enc::Pack::YCbCr : yuv::enc::Pack::None, yuv::enc::Rule::Analog>;

// Pixels [0, returned) of a subsampled encoder row by the vector row function
// of layout L: source rows s0 (and s1 for 4:2:0), luma rows y0 (y1), chroma
// rows u, v (the packed row in y0 for packed output).
template <class L>
Len encodeVectors(const uint8_t* const* s0, const uint8_t* const* s1, uint8_t* y0, uint8_t* y1, uint8_t* u,
                  uint8_t* v, Len pixels) {
    if constexpr (TPX_ANALOG_VECTOR_ROWS == 0) {
        return 0;
    } else {
        yuv::enc::Rows r{};
        for (int p = 0; p < 3; ++p) r.src[0][p] = s0[p], r.src[1][p] = s1 ? s1[p] : nullptr;
        r.y[0] = y0, r.y[1] = y1, r.cb = u, r.cr = v, r.width = int(pixels);
        const yuv::enc::Arith& a = L::blockH == 2 ? yuv::enc::kAnalogBlock : yuv::enc::kAnalogPair;
        if constexpr (TPX_ANALOG_VECTOR_ROWS == 1)
            return yuv::enc::rowAvx2<L>(r, a);
        else
            return yuv::enc::rowAvx512<L>(r, a);
    }
}

// Pixels [0, returned) of a subsampled decoder row (of both rows r0, r1 for
// 4:2:0) by the decoder family's vector row function of layout L and
// destination DK (planes for 1; four-byte pixels keep their fourth byte).
template <class L, int DK, bool DB>
Len decodeVectors(const yuv::sub::Row& r0, const yuv::sub::Row& r1) {
    using O = std::conditional_t<DK == 1, yuv::sub::PlanesRgb, yuv::sub::Interleaved<DB, DK, DK == 4>>;
    if constexpr (TPX_ANALOG_VECTOR_ROWS == 0)
        return 0;
    else if constexpr (TPX_ANALOG_VECTOR_ROWS == 1)
        return yuv::sub::rowAvx2<L, yuv::sub::Analog, O>(r0, r1);
    else
        return yuv::sub::rowAvx512<L, yuv::sub::Analog, O>(r0, r1);
}
// A decoder row: luma y, chroma u, v, destination channel pointers d, pixels.
inline yuv::sub::Row decoderRow(const uint8_t* y, const uint8_t* u, const uint8_t* v, uint8_t* const* d, Len pixels) {
    yuv::sub::Row r{};
    r.y = y, r.cb = u, r.cr = v;
    for (int c = 0; c < 3; ++c) r.d[c] = d[c];
    r.width = r.blockEnd = int(pixels);
    r.chromaWidth = int(pixels / 2);
    return r;
}

// Pixels [0, returned) of a 4:4:4 row by the vector rows of the YCbCr 4:4:4
// family's analog arithmetic (ycbcr444_simd.hpp), which give the same bytes;
// a source's fourth channel copied to a plane follows here.
template <bool Enc, int SK, int DK, int F>
Len vectors444(const uint8_t* const* s, uint8_t* const* d, Len n, uint8_t alpha) {
#if TPX_ANALOG_VECTOR_ROWS == 0
    (void)s, (void)d, (void)n, (void)alpha;
    return 0;
#else
#if TPX_ANALOG_VECTOR_ROWS == 1
    namespace isa = yuv444::avx2;
#else
    namespace isa = yuv444::avx512;
#endif
    yuv444::Row r{};
    for (int c = 0; c < 3; ++c) r.src[c] = SK == 1 ? s[c] : s[0], r.dst[c] = DK == 1 ? d[c] : d[0];
    r.width = int(n), r.alpha = alpha;
    if constexpr (F == kCopy) {
        const Len done = isa::analogEncodeAC4P3(r);
        const uint8_t* __restrict px = s[0];
        uint8_t* __restrict alpha = d[3];
        TPX_INDEPENDENT
        for (Len i = 0; i < done; ++i) alpha[i] = px[4 * i + 3];
        return done;
    } else if constexpr (Enc) return (SK == 1 ? isa::analogEncodeP3 : SK == 4 ? isa::analogEncodeAC4
                                      : DK == 1 ? isa::analogEncodeC3P3 : isa::analogEncodeC3)(r);
    else return (SK == 4 ? isa::analogDecodeAC4 : SK == 1 ? (DK == 1 ? isa::analogDecodeP3 : isa::analogDecodeP3C3)
                 : DK == 4 ? isa::analogDecodeC3C4 : isa::analogDecodeC3)(r);
#endif
}

// 4:4:4: R, G, B (a fourth when F says) in, Y, U, V out; and back.
template <int SK, int SB, int DK, int F>
void encode444(const uint8_t* const* s, uint8_t* const* d, Len n, uint8_t) {
    const Side<SK, SB != 0> in(s);
    const Out<DK, false> out(d);
    TPX_INDEPENDENT
    for (Len i = vectors444<true, SK, DK, F>(s, d, n, 0); i < n; ++i) {
        const int R = in.get(i, 0), G = in.get(i, 1), B = in.get(i, 2), S = lumaSum(R, G, B);
        out.template put3<F>(i, (S + 32768) >> 16, ((((B << 16) - S + 32768) >> 16) * 32244 >> 16) + 128,
                             clamp255(((((R << 16) - S + 32768) >> 16) * 57475 >> 16) + 128));
        if constexpr (F == kCopy) out.set(i, 3, in.get(i, 3));
    }
}
// The decoder on n pixels with full-rate Y, U, V: with the rounding terms of
// R and B (4:4:4) or without (the subsampled decoders).
template <int SK, bool SB, int DK, bool DB, int F, bool Round>
void decodePixels(const uint8_t* const* s, uint8_t* const* d, Len n, uint8_t alpha) {
    const Side<SK, SB> in(s);
    const Out<DK, DB> out(d);
    constexpr int half = Round ? 32768 : 0;
    TPX_INDEPENDENT
    for (Len i = 0; i < n; ++i) {
        const int Y = in.get(i, 0) << 16, U = in.get(i, 1) - 128, V = in.get(i, 2) - 128;
        out.template put3<F>(i, clamp255((Y + 74711 * V + half) >> 16), clamp255((Y - 25821 * U - 38076 * V) >> 16),
                             clamp255((Y + 133169 * U + half) >> 16), alpha);
    }
}
template <int SK, int SB, int DK, int F>
void decode444(const uint8_t* const* s, uint8_t* const* d, Len n, uint8_t alpha) {
    const Len done = vectors444<false, SK, DK, F>(s, d, n, alpha);
    const uint8_t* in[4];
    uint8_t* out[4];
    advance<SK>(s, done, in);
    advance<DK>(d, done, out);
    decodePixels<SK, SB != 0, DK, false, F, true>(in, out, n - done, alpha);
}

// Pixels [i0, i0 + m) of a destination row from luma y and the doubled
// chroma U2, V2 of those pixels, by the decoder without rounding terms.
template <int DK, bool DB>
void decodeChunk(const uint8_t* y, const uint8_t* U2, const uint8_t* V2, uint8_t* const* d, Len i0, Len m) {
    const uint8_t* in[4] = {y, U2, V2, nullptr};
    uint8_t* out[4];
    advance<DK>(d, i0, out);
    decodePixels<1, false, DK, DB, kNone, false>(in, out, m, 0);
}

// 4:2:2 encoder: pairs of pixels to two luma samples and one U, V.
template <int SK, int SB, int DK, int>
void encode422(const uint8_t* const* s, uint8_t* const* d, Len n) {
    const Side<SK, SB != 0> in(s);
    alignas(64) int R[kChunk], G[kChunk], B[kChunk], S[kChunk];
    alignas(64) uint8_t Y[kChunk], U[kChunk / 2], V[kChunk / 2];
    const Len pixels = n / 2 * 2;
    const Len start = encodeVectors<EncLayout<SK, SB, yuv::enc::Sampling::Pair, DK>>(s, nullptr, d[0], nullptr, d[1],
                                                                                     d[2], pixels);
    for (Len i0 = start; i0 < pixels; i0 += kChunk) {
        const Len m = std::min(kChunk, pixels - i0), h = m / 2;
        loadRgb(in, i0, m, R, G, B);
        for (Len t = 0; t < m; ++t) S[t] = lumaSum(R[t], G[t], B[t]), Y[t] = uint8_t(S[t] >> 16);
        for (Len k = 0; k < h; ++k) {
            const int sumB = B[2 * k] + B[2 * k + 1], sumR = R[2 * k] + R[2 * k + 1], SS = S[2 * k] + S[2 * k + 1];
            U[k] = uint8_t(((((sumB << 16) - SS + 65535) >> 16) * 32244 >> 17) + 128);
            V[k] = uint8_t(clamp255(((((sumR << 16) - SS + 65535) >> 16) * 57475 >> 17) + 128));
        }
        if constexpr (DK == 2) {
            uint8_t* __restrict o = d[0] + 2 * i0;
            for (Len k = 0; k < h; ++k) o[4 * k] = Y[2 * k], o[4 * k + 1] = U[k], o[4 * k + 2] = Y[2 * k + 1], o[4 * k + 3] = V[k];
        } else {
            std::memcpy(d[0] + i0, Y, size_t(m));
            std::memcpy(d[1] + i0 / 2, U, size_t(h));
            std::memcpy(d[2] + i0 / 2, V, size_t(h));
        }
    }
}
// 4:2:2 decoder: each pair's U, V repeated for both pixels, then the
// decoder without rounding terms.
template <int SK, int SB, int DK, int>
void decode422(const uint8_t* const* s, uint8_t* const* d, Len n) {
    alignas(64) uint8_t Y[kChunk], U2[kChunk], V2[kChunk];
    const Len pixels = n / 2 * 2;
    using L = std::conditional_t<SK == 2, yuv::sub::PkYCbCr, yuv::sub::Pl422>;
    const yuv::sub::Row r = SK == 2 ? decoderRow(s[0], s[0] + 1, s[0] + 3, d, pixels)
                                    : decoderRow(s[0], s[1], s[2], d, pixels);
    for (Len i0 = decodeVectors<L, DK, false>(r, r); i0 < pixels; i0 += kChunk) {
        const Len m = std::min(kChunk, pixels - i0), h = m / 2;
        const uint8_t* y = Y;
        if constexpr (SK == 2) {
            const uint8_t* __restrict p = s[0] + 2 * i0;
            for (Len k = 0; k < h; ++k) {
                Y[2 * k] = p[4 * k], Y[2 * k + 1] = p[4 * k + 2];
                U2[2 * k] = U2[2 * k + 1] = p[4 * k + 1], V2[2 * k] = V2[2 * k + 1] = p[4 * k + 3];
            }
        } else {
            doubled(s[1] + i0 / 2, s[2] + i0 / 2, h, U2, V2);
            y = s[0] + i0;
        }
        decodeChunk<DK, false>(y, U2, V2, d, i0, m);
    }
}
// Packed 4:2:2: the pairs, then an odd last pixel from its Y and U bytes.
template <int SK, int SB, int DK, int X>
void decode422Packed(const uint8_t* const* s, uint8_t* const* d, Len n) {
    decode422<SK, SB, DK, X>(s, d, n);
    if (n % 2 == 0) return;
    const Side<SK, false> in(s);
    const Out<DK, false> out(d);
    const Len i = n - 1;
    const int Y = in.get(i, 0) << 16, c = in.get(i, 1) - 128;
    out.set(i, 0, clamp255((Y + 74711 * c) >> 16));
    out.set(i, 1, clamp255((Y - 63897 * c) >> 16));
    out.set(i, 2, clamp255((Y + 133169 * c) >> 16));
}

// 4:2:0 encoder: two rows of pixels to two luma rows (d0[0], d1[0]) and one
// row of each chroma (d0[1], d0[2]).
template <int SK, int SB, int, int>
void encode420(const uint8_t* const* s0, const uint8_t* const* s1, uint8_t* const* d0, uint8_t* const* d1, Len n,
               uint8_t) {
    const Side<SK, SB != 0> a(s0), b(s1);
    alignas(64) int R[2][kChunk], G[kChunk], B[2][kChunk], S[2][kChunk];
    alignas(64) uint8_t Y[kChunk], U[kChunk / 2], V[kChunk / 2];
    const Len start = encodeVectors<EncLayout<SK, SB, yuv::enc::Sampling::Block, 1>>(s0, s1, d0[0], d1[0], d0[1],
                                                                                      d0[2], 2 * n);
    for (Len i0 = start; i0 < 2 * n; i0 += kChunk) {
        const Len m = std::min(kChunk, 2 * n - i0), h = m / 2;
        for (int r = 0; r < 2; ++r) {
            loadRgb(r ? b : a, i0, m, R[r], G, B[r]);
            for (Len t = 0; t < m; ++t) S[r][t] = lumaSum(R[r][t], G[t], B[r][t]), Y[t] = uint8_t(S[r][t] >> 16);
            std::memcpy((r ? d1 : d0)[0] + i0, Y, size_t(m));
        }
        for (Len k = 0; k < h; ++k) {
            const Len i = 2 * k, j = i + 1;
            const int sumB = B[0][i] + B[0][j] + B[1][i] + B[1][j], sumR = R[0][i] + R[0][j] + R[1][i] + R[1][j];
            const int SS = S[0][i] + S[0][j] + S[1][i] + S[1][j];
            U[k] = uint8_t(((((sumB << 16) - SS + 131071) >> 16) * 32244 >> 18) + 128);
            V[k] = uint8_t(clamp255(((((sumR << 16) - SS + 131071) >> 16) * 57475 >> 18) + 128));
        }
        std::memcpy(d0[1] + i0 / 2, U, size_t(h));
        std::memcpy(d0[2] + i0 / 2, V, size_t(h));
    }
}
// 4:2:0 decoder: two luma rows (s0[0], s1[0]) and one chroma row (s0[1],
// s0[2]) to two rows of pixels, each block's U, V serving its four pixels.
template <int, int, int DK, int DB>
void decode420(const uint8_t* const* s0, const uint8_t* const* s1, uint8_t* const* d0, uint8_t* const* d1, Len n,
               uint8_t) {
    alignas(64) uint8_t U2[kChunk], V2[kChunk];
    const Len start = decodeVectors<yuv::sub::Pl420, DK, DB != 0>(decoderRow(s0[0], s0[1], s0[2], d0, 2 * n),
                                                                 decoderRow(s1[0], s0[1], s0[2], d1, 2 * n));
    for (Len i0 = start; i0 < 2 * n; i0 += kChunk) {
        const Len m = std::min(kChunk, 2 * n - i0);
        doubled(s0[1] + i0 / 2, s0[2] + i0 / 2, m / 2, U2, V2);
        for (int row = 0; row < 2; ++row) decodeChunk<DK, DB != 0>((row ? s1 : s0)[0] + i0, U2, V2, row ? d1 : d0, i0, m);
    }
}

}  // namespace

// The rows of every tier: one table per instruction set.
struct Rows {
#define TPX_ANALOG_FIELD(fn, a, b, c, d) decltype(&fn<a, b, c, d>) fn##_##a##_##b##_##c##_##d;
    TPX_ANALOG_ROWS(TPX_ANALOG_FIELD)
#undef TPX_ANALOG_FIELD
};
#define TPX_ANALOG_ENTRY(fn, a, b, c, d) fn<a, b, c, d>,
#define TPX_ANALOG_TABLE {TPX_ANALOG_ROWS(TPX_ANALOG_ENTRY)}
extern const Rows kRowsAvx2, kRowsAvx512;

}  // namespace tpx::analog
