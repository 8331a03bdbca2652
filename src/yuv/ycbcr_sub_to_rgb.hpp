// Decoders from subsampled YCbCr (packed 4:2:2, planar 4:2:2 / 4:2:0 / 4:1:1,
// two-plane 4:2:0) to RGB or BGR. One kernel body, a template over
//   L  the source layout and sampling (where luma and chroma of pixel x live),
//   A  the arithmetic (BT.601 3-fractional-bit scheme, BT.709 block + reference),
//   O  the destination (channel order, 3 or 4 channels, or three planes).
// The scalar row function defines the results; the SIMD row functions
// (ycbcr_sub_to_rgb_simd.hpp) convert whole vectors from the row start (the
// filtered member: from its second pair) and return where they stopped; the
// scalar function does the rest of the row.
#pragma once

#include "frame/cpu.hpp"
#include "frame/image.hpp"
#include "tpxcc.h"
#include "yuv/ycbcr_math.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace tpx::yuv::sub {

struct Src {
    const uint8_t* p[3];
    int step[3];
};
struct Dst {
    uint8_t* p[3];
    int step;
};

// One destination row and what a layout binds for it; pointers at row start.
struct Row {
    const uint8_t* y;
    const uint8_t* cb;
    const uint8_t* cr;
    const uint8_t* cbFar;  // Filter: the vertically farther chroma rows
    const uint8_t* crFar;
    uint8_t* d[3];
    int width;        // converted width (whole chroma blocks)
    int blockEnd;     // BT.709: pixels before this take the block arithmetic
    int chromaWidth;  // chroma samples per row
    uint8_t alpha;
};
// SIMD row function: converts whole vectors of the row (4:2:0: of both rows
// of the pair, sharing the chroma) from the layout's simdStart and returns
// where it stopped, or 0 when the row is too short for it.
using SimdRow = int (*)(const Row& first, const Row& second);

// ---- Source layouts --------------------------------------------------------
// Packed 4:2:2: four bytes per pair; byte offsets of Y0, Cb and Cr in a group
// (Y1 follows Y0 two bytes later).
template <int YOff, int CbOff, int CrOff>
struct Packed422 {
    static constexpr int hsub = 2, vsub = 1;
    static constexpr bool simd = true;
    static constexpr int simdStart = 0;
    static int simdLimit(const Row& r) { return r.width; }
    static constexpr int yOff = YOff, cbOff = CbOff, crOff = CrOff;
    static void bind(Row& r, const Src& s, int y, int) {
        const uint8_t* p = rowAt(s.p[0], s.step[0], y);
        r.y = p + YOff;
        r.cb = p + CbOff;
        r.cr = p + CrOff;
    }
    static int luma(const Row& r, std::ptrdiff_t x) { return r.y[2 * x]; }
    static void chroma(const Row& r, std::ptrdiff_t x, int& cb, int& cr) {
        cb = r.cb[(x >> 1) * 4];
        cr = r.cr[(x >> 1) * 4];
    }
};

// Three planes; CbPlane / CrPlane are their indices in the plane array.
template <int H, int V, int CbPlane, int CrPlane>
struct Planar {
    static constexpr int hsub = H, vsub = V;
    static constexpr bool simd = true;
    static constexpr int simdStart = 0;
    static int simdLimit(const Row& r) { return r.width; }
    static void bind(Row& r, const Src& s, int y, int) {
        r.y = rowAt(s.p[0], s.step[0], y);
        r.cb = rowAt(s.p[CbPlane], s.step[CbPlane], y / V);
        r.cr = rowAt(s.p[CrPlane], s.step[CrPlane], y / V);
    }
    static int luma(const Row& r, std::ptrdiff_t x) { return r.y[x]; }
    static void chroma(const Row& r, std::ptrdiff_t x, int& cb, int& cr) {
        cb = r.cb[x / H];
        cr = r.cr[x / H];
    }
};

// Luma plane plus one plane of interleaved 4:2:0 chroma pairs; CbOff is the
// offset of Cb in a pair (0 for CbCr, 1 for CrCb).
template <int CbOff>
struct TwoPlane {
    static constexpr int hsub = 2, vsub = 2;
    static constexpr bool simd = true;
    static constexpr int simdStart = 0;
    static int simdLimit(const Row& r) { return r.width; }
    static constexpr int cbOff = CbOff;
    static void bind(Row& r, const Src& s, int y, int) {
        r.y = rowAt(s.p[0], s.step[0], y);
        const uint8_t* c = rowAt(s.p[1], s.step[1], y / 2);
        r.cb = c + CbOff;
        r.cr = c + (1 - CbOff);
    }
    static int luma(const Row& r, std::ptrdiff_t x) { return r.y[x]; }
    static void chroma(const Row& r, std::ptrdiff_t x, int& cb, int& cr) {
        cb = r.cb[(x >> 1) * 2];
        cr = r.cr[(x >> 1) * 2];
    }
};

// Planes Y, Cr, Cb of 4:2:0 with chroma interpolated by the triangular filter:
// each pixel's chroma is (9a + 3b + 3c + d + 8) >> 4 of its four nearest chroma
// samples (a the nearest, d the diagonal one), samples beyond the plane edges
// replaced by the nearest edge sample. Vertically 3*near + far per column,
// horizontally 3*v(i) + v(neighbour). SIMD rows leave the first and the last
// pair (whose neighbours clamp at the edges) to the scalar function.
struct Filter420 {
    static constexpr int hsub = 2, vsub = 2;
    static constexpr bool simd = true;
    static constexpr int simdStart = 2;
    static int simdLimit(const Row& r) { return r.width - 2; }
    static void bind(Row& r, const Src& s, int y, int rows) {
        const int near = y / 2, far = (y & 1) ? std::min(near + 1, rows / 2 - 1) : std::max(near - 1, 0);
        r.y = rowAt(s.p[0], s.step[0], y);
        r.cr = rowAt(s.p[1], s.step[1], near);
        r.crFar = rowAt(s.p[1], s.step[1], far);
        r.cb = rowAt(s.p[2], s.step[2], near);
        r.cbFar = rowAt(s.p[2], s.step[2], far);
    }
    static int luma(const Row& r, std::ptrdiff_t x) { return r.y[x]; }
    static int filtered(const uint8_t* near, const uint8_t* far, int i, int j) {
        return (3 * (3 * near[i] + far[i]) + 3 * near[j] + far[j] + 8) >> 4;
    }
    static void chroma(const Row& r, std::ptrdiff_t x, int& cb, int& cr) {
        const int i = x >> 1, j = (x & 1) ? std::min(i + 1, r.chromaWidth - 1) : std::max(i - 1, 0);
        cb = filtered(r.cb, r.cbFar, i, j);
        cr = filtered(r.cr, r.crFar, i, j);
    }
};

// ---- Arithmetic ------------------------------------------------------------
struct Bt601 {
    static constexpr bool simd = true;
    static int simdEnd(const Row& r) { return r.width; }
    static Rgb pixel(const Row&, int, int y, int cb, int cr) { return decSub601(y, cb, cr); }
};
// BT.709 4:2:0: whole groups of eight pixels from the row start take the block
// arithmetic, the remaining pairs the 32-bit reference.
struct Csc709 {
    static constexpr const BlockCoeffs& k = kBlock709Csc;
    static constexpr const RefCoeffs& ref = kRef709Csc;
};
struct Hdtv709 {
    static constexpr const BlockCoeffs& k = kBlock709Hdtv;
    static constexpr const RefCoeffs& ref = kRef709Hdtv;
};
template <class M>
struct Blocked709 {
    static constexpr bool simd = true;
    static constexpr const BlockCoeffs& k = M::k;
    static int simdEnd(const Row& r) { return r.blockEnd; }
    static Rgb pixel(const Row& r, std::ptrdiff_t x, int y, int cb, int cr) {
        return x < r.blockEnd ? decBlock(y, cb, cr, M::k) : decRef(y, cb, cr, M::ref);
    }
};
// The reference for every pixel (packed BT.709 4:2:2).
template <class M>
struct Reference709 {
    static constexpr bool simd = true;
    static constexpr const RefCoeffs& k = M::ref;
    static int simdEnd(const Row& r) { return r.width; }
    static Rgb pixel(const Row&, int, int y, int cb, int cr) { return decRef(y, cb, cr, M::ref); }
};

// Analog YUV (u = Cb - 128, v = Cr - 128): R = clamp(((Y << 16) + 74711 v)
// >> 16), G = clamp(((Y << 16) - 25821 u - 38076 v) >> 16), B = clamp(((Y
// << 16) + 133169 u) >> 16), without rounding terms. Its rows run their own
// scalar code; the SIMD row functions serve them.
struct Analog {
    static constexpr bool simd = true;
    static int simdEnd(const Row& r) { return r.width; }
    static Rgb pixel(const Row&, int, int y, int cb, int cr) {
        const int u = cb - 128, v = cr - 128;
        return {clamp255(y + ((74711 * v) >> 16)), clamp255(y + ((-25821 * u - 38076 * v) >> 16)),
                clamp255(y + ((133169 * u) >> 16))};
    }
};

// ---- Destinations ----------------------------------------------------------
// KeepFourth: four-byte pixels whose fourth byte stays as it is (the SIMD
// rows read it back and store whole pixels).
template <bool Bgr, int Channels, bool KeepFourth = false>
struct Interleaved {
    static constexpr bool bgr = Bgr, planes = false, keep = KeepFourth;
    static constexpr int channels = Channels;
    static void bind(Row& r, const Dst& d, int y) { r.d[0] = rowAt(d.p[0], d.step, y); }
    static void put(const Row& r, std::ptrdiff_t x, Rgb c) {
        uint8_t* p = r.d[0] + x * Channels;
        p[0] = Bgr ? c.b : c.r;
        p[1] = c.g;
        p[2] = Bgr ? c.r : c.b;
        if (Channels == 4 && !KeepFourth) p[3] = r.alpha;
    }
};
// Three full planes R, G, B sharing one step.
struct PlanesRgb {
    static constexpr bool bgr = false, planes = true;
    static constexpr int channels = 3;
    static void bind(Row& r, const Dst& d, int y) {
        for (int i = 0; i < 3; ++i) r.d[i] = rowAt(d.p[i], d.step, y);
    }
    static void put(const Row& r, std::ptrdiff_t x, Rgb c) {
        r.d[0][x] = c.r;
        r.d[1][x] = c.g;
        r.d[2][x] = c.b;
    }
};

using PkYCbCr = Packed422<0, 1, 3>;
using PkYCrCb = Packed422<0, 3, 1>;
using PkCbYCr = Packed422<1, 0, 2>;
using Pl422 = Planar<2, 1, 1, 2>;
using Pl420 = Planar<2, 2, 1, 2>;
using Pl420Cr = Planar<2, 2, 2, 1>;
using Pl411 = Planar<4, 1, 1, 2>;
using TpCbCr = TwoPlane<0>;
using TpCrCb = TwoPlane<1>;
using Csc = Blocked709<Csc709>;
using Hdtv = Blocked709<Hdtv709>;
using RgbC3 = Interleaved<false, 3>;
using RgbC4 = Interleaved<false, 4>;
using BgrC3 = Interleaved<true, 3>;
using BgrC4 = Interleaved<true, 4>;
using RgbAC4 = Interleaved<false, 4, true>;

// Every member that has SIMD row functions: X(layout, arithmetic, destination).
#define TPX_DEC_SUB_SIMD_MEMBERS(X)                                                                     \
    X(PkYCbCr, Bt601, RgbC3) X(PkYCbCr, Bt601, RgbC4) X(PkYCbCr, Bt601, BgrC3) X(PkYCbCr, Bt601, BgrC4) \
    X(PkYCbCr, Bt601, PlanesRgb) X(PkYCrCb, Bt601, RgbC3) X(PkYCrCb, Bt601, RgbC4)                      \
    X(PkYCrCb, Bt601, BgrC3) X(PkYCrCb, Bt601, BgrC4) X(PkYCrCb, Bt601, PlanesRgb)                      \
    X(PkCbYCr, Bt601, RgbC3) X(PkCbYCr, Bt601, BgrC4) X(Pl422, Bt601, RgbC3) X(Pl422, Bt601, BgrC3)     \
    X(Pl420, Bt601, RgbC3) X(Pl420, Bt601, BgrC3) X(Pl420, Bt601, BgrC4) X(Pl420, Csc, BgrC3)           \
    X(Pl420, Hdtv, BgrC4) X(Pl420Cr, Bt601, RgbC4) X(TpCbCr, Bt601, RgbC3) X(TpCbCr, Bt601, RgbC4)      \
    X(TpCbCr, Bt601, BgrC3) X(TpCbCr, Bt601, BgrC4) X(TpCrCb, Bt601, RgbC3) X(TpCrCb, Bt601, RgbC4)     \
    X(TpCrCb, Bt601, BgrC3) X(TpCrCb, Bt601, BgrC4) X(Pl411, Bt601, BgrC3) X(Pl411, Bt601, BgrC4)  \
    X(Filter420, Bt601, BgrC4) X(PkCbYCr, Reference709<Hdtv709>, BgrC3) X(PkCbYCr, Reference709<Hdtv709>, BgrC4) \
    X(PkYCbCr, Analog, RgbC3) X(Pl422, Analog, RgbC3) X(Pl422, Analog, PlanesRgb) X(Pl420, Analog, RgbC3)          \
    X(Pl420, Analog, BgrC3) X(Pl420, Analog, PlanesRgb) X(Pl422, Analog, RgbAC4) X(Pl420, Analog, RgbAC4)

template <class L, class A, class O>
int rowAvx2(const Row& first, const Row& second);
template <class L, class A, class O>
int rowAvx512(const Row& first, const Row& second);

template <class L, class A, class O>
void rowScalar(const Row& r, int from, int to) {
    for (std::ptrdiff_t x = from; x < to; ++x) {
        int cb, cr;
        L::chroma(r, x, cb, cr);
        O::put(r, x, A::pixel(r, x, L::luma(r, x), cb, cr));
    }
}

template <class L, class A, class O>
SimdRow simdRow() {
    if constexpr (L::simd && A::simd)
        return pick(TierKernels<SimdRow>{nullptr, TPX_X86((&rowAvx2<L, A, O>)), TPX_X86((&rowAvx512<L, A, O>))});
    else
        return nullptr;
}

// Converts the whole chroma blocks of the ROI; 4:2:0 members report an odd
// width or height with +35 (the last column / row stays unwritten).
template <class L, class A, class O>
TpxStatus convert(const Src& s, const Dst& d, TpxSize roi, uint8_t alpha) {
    Row r[2]{};
    r[0].width = roi.width / L::hsub * L::hsub;
    r[0].blockEnd = r[0].width / 8 * 8;
    r[0].chromaWidth = r[0].width / L::hsub;
    r[0].alpha = alpha;
    r[1] = r[0];
    const int rows = roi.height / L::vsub * L::vsub;
    const SimdRow simd = simdRow<L, A, O>();
    for (int y = 0; y < rows; y += L::vsub) {
        for (int k = 0; k < L::vsub; ++k) {
            L::bind(r[k], s, y + k, rows);
            O::bind(r[k], d, y + k);
        }
        const int done = simd ? simd(r[0], r[L::vsub - 1]) : 0;
        for (int k = 0; k < L::vsub; ++k) {
            if (done) rowScalar<L, A, O>(r[k], 0, L::simdStart);
            rowScalar<L, A, O>(r[k], done, r[k].width);
        }
    }
    return L::vsub == 2 && ((roi.width | roi.height) & 1) ? tpxStatusOddSize : tpxStatusOk;
}

}  // namespace tpx::yuv::sub
