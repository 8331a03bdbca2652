// Interlaced 4:2:2 <-> 4:2:0 conversions, which never mix the chroma of the
// two fields (even and odd rows), and the 16:20 and 4:1:1 resamplers, which
// move planar chroma between the 4:2:0 grid and grids of quarter width. Luma
// is copied unchanged by the plane copy.
//
// Interlaced 4:2:2 to 4:2:0: source chroma rows r0..r3 of each four rows
// give destination rows 2m = (3 r0 + r2 + 2) >> 2 (top field) and 2m + 1 =
// (r1 + 3 r3 + 2) >> 2 (bottom field).
// Interlaced 4:2:0 to 4:2:2: group g takes source chroma rows 2g..2g+3 as
// c0..c3 and writes rows 4g..4g+3: (5 c0 + 3 c2 + 4) >> 3, (7 c1 + c3 + 4) >> 3,
// (c0 + 7 c2 + 4) >> 3, (3 c1 + 5 c3 + 4) >> 3; a row beyond the converted
// block is its last row of the same field.
// Both convert the largest block of whole fields (width even, height a
// multiple of 4) and report +35 when that is not the whole ROI.
//
// 16:20 to 4:2:0: each source row interpolated, I(r)[2k] = s[k] and
// I(r)[2k+1] = (s[k] + s[k+1] + 1) >> 1 (the last s[k+1] being s[k]); rows 2r
// and 2r+1 are I(r) and (I(r) + I(r+1) + 1) >> 1 (the last I(r+1) being I(r)).
// 4:2:0 to 16:20: h(r)[k] = (s[r][2k] + s[r][2k+1] + 1) >> 1, row j is
// (h(2j) + h(2j+1) + 1) >> 1.
// 4:1:1 to 4:2:0: row j is (I(2j) + I(2j+1) + 1) >> 1 with I as above.
// 4:2:0 to 4:1:1: rows 2j and 2j+1 are h(j) and (h(j) + h(j+1) + 1) >> 1, the
// last h(j+1) being h(j).
#include "frame/check.hpp"
#include "yuv/chroma_layout.hpp"

namespace tpx::chroma {
namespace {

Image planesOf(const uint8_t* const* p, const int* s) {
    return {{const_cast<uint8_t*>(p[0]), const_cast<uint8_t*>(p[1]), const_cast<uint8_t*>(p[2])}, {s[0], s[1], s[2]}};
}
Image planesOf(uint8_t* const* p, const int* s) { return {{p[0], p[1], p[2]}, {s[0], s[1], s[2]}}; }

// Interlaced 4:2:2 (planes or packed CbYCr) to 4:2:0 planes. A packed row
// is read once: its luma goes to the destination, its chroma to scratch rows.
TpxStatus interlacedTo420(const Image& src, bool packed, const Image& dst, TpxSize roi) {
    TPX_CHECK(check::size(roi, 2, 4));
    const int W = roi.width & ~1, H = roi.height & ~3;
    if (!packed) copyPlane(src.p[0], src.step[0], dst.p[0], dst.step[0], W, H, PlaneStreaming::CacheSize, rows().copy);
    alignas(64) uint8_t cb[4][kChunk], cr[4][kChunk];
    for (int m = 0; m < H / 4; ++m)
        for (Len k0 = 0; k0 < W / 2; k0 += kChunk) {
            const Len n = std::min<Len>(W / 2 - k0, kChunk);
            const uint8_t *b[4], *r[4];
            for (int t = 0; t < 4; ++t) {
                const int y = 4 * m + t;
                if (packed) rows().unpack422(src.row(0, y) + 4 * k0, n, true, dst.row(0, y) + 2 * k0, cb[t], cr[t]);
                b[t] = packed ? cb[t] : src.row(1, y) + k0;
                r[t] = packed ? cr[t] : src.row(2, y) + k0;
            }
            for (int c = 1; c <= 2; ++c) {
                const uint8_t* const* q = c == 1 ? b : r;
                rows().blend(q[0], q[2], n, 3, 2, dst.row(c, 2 * m) + k0);
                rows().blend(q[3], q[1], n, 3, 2, dst.row(c, 2 * m + 1) + k0);
            }
        }
    return (roi.width | roi.height) & 1 || roi.height % 4 ? tpxStatusOddSize : tpxStatusOk;
}

// Interlaced 4:2:0 planes to 4:2:2 planes, or to packed CbYCr pairs.
TpxStatus interlacedTo422(const Image& src, const Image& dst, bool packed, TpxSize roi) {
    TPX_CHECK(check::size(roi, 2, 4));
    const int W = roi.width & ~1, H = roi.height & ~3, n = H / 2;
    if (!packed) copyPlane(src.p[0], src.step[0], dst.p[0], dst.step[0], W, H, PlaneStreaming::CacheSize, rows().copy);
    // Weights of c0 (or c1) in eighths for output rows 4g..4g+3; the other
    // row of the same field takes the rest.
    static constexpr int kFirst[4] = {5, 7, 1, 3};
    alignas(64) uint8_t out[2][kChunk];
    for (int g = 0; g < H / 4; ++g)
        for (int o = 0; o < 4; ++o) {
            const int field = o & 1, a = 2 * g + field, b = std::min(a + 2, n - 2 + field);
            for (Len k0 = 0; k0 < W / 2; k0 += kChunk) {
                const Len cn = std::min<Len>(W / 2 - k0, kChunk);
                for (int c = 1; c <= 2; ++c) {
                    uint8_t* d = packed ? out[c - 1] : dst.row(c, 4 * g + o) + k0;
                    rows().blend(src.row(c, a) + k0, src.row(c, b) + k0, cn, kFirst[o], 3, d);
                }
                if (packed) rows().pack422(src.row(0, 4 * g + o) + 2 * k0, out[0], out[1], cn, true, dst.row(0, 4 * g + o) + 4 * k0);
            }
        }
    return (roi.width | roi.height) & 1 || roi.height % 4 ? tpxStatusOddSize : tpxStatusOk;
}

// The resamplers' check: sizes at least minW x minH and multiples of 4 (the
// height of 4:2:0 to 4:1:1 a multiple of 2).
TpxStatus strictSize(TpxSize roi, int hMultiple) {
    TPX_CHECK(check::size(roi, 4, hMultiple == 4 ? 4 : 2));
    return check::failIf(roi.width % 4 || roi.height % hMultiple, tpxStatusBadSize);
}

void from1620(const Image& src, const Image& dst, int W, int H) {
    const Len n = W / 4, rowsIn = H / 4;
    alignas(64) uint8_t next[2 * kChunk + 2];
    for (int c = 1; c <= 2; ++c)
        for (Len r = 0; r < rowsIn; ++r) {
            uint8_t* even = dst.row(c, 2 * r);
            rows().interpolate2(src.row(c, r), n, even);
            for (Len k0 = 0; k0 < n; k0 += kChunk) {
                // The next row's interpolation over this chunk, from one sample
                // more where the row goes on.
                const Len cn = std::min<Len>(n - k0, kChunk), more = k0 + cn < n ? 1 : 0;
                const uint8_t* s = src.row(c, r + 1 < rowsIn ? r + 1 : r) + k0;
                rows().interpolate2(s, cn + more, next);
                rows().average(even + 2 * k0, next, 2 * cn, true, dst.row(c, 2 * r + 1) + 2 * k0);
            }
        }
}

void to1620(const Image& src, const Image& dst, int W, int H) {
    alignas(64) uint8_t a[kChunk], b[kChunk];
    for (int c = 1; c <= 2; ++c)
        for (Len j = 0; j < H / 4; ++j)
            for (Len k0 = 0; k0 < W / 4; k0 += kChunk) {
                const Len n = std::min<Len>(W / 4 - k0, kChunk);
                rows().halve2(src.row(c, 2 * j) + 2 * k0, n, a);
                rows().halve2(src.row(c, 2 * j + 1) + 2 * k0, n, b);
                rows().average(a, b, n, true, dst.row(c, j) + k0);
            }
}

void from411(const Image& src, const Image& dst, int W, int H) {
    const Len n = W / 4;
    alignas(64) uint8_t a[2 * kChunk + 2], b[2 * kChunk + 2];
    for (int c = 1; c <= 2; ++c)
        for (Len j = 0; j < H / 2; ++j)
            for (Len k0 = 0; k0 < n; k0 += kChunk) {
                const Len cn = std::min<Len>(n - k0, kChunk), more = k0 + cn < n ? 1 : 0;
                rows().interpolate2(src.row(c, 2 * j) + k0, cn + more, a);
                rows().interpolate2(src.row(c, 2 * j + 1) + k0, cn + more, b);
                rows().average(a, b, 2 * cn, true, dst.row(c, j) + 2 * k0);
            }
}

void to411(const Image& src, const Image& dst, int W, int H) {
    alignas(64) uint8_t next[kChunk];
    for (int c = 1; c <= 2; ++c)
        for (Len j = 0; j < H / 2; ++j) {
            uint8_t* even = dst.row(c, 2 * j);
            rows().halve2(src.row(c, j), W / 4, even);
            for (Len k0 = 0; k0 < W / 4; k0 += kChunk) {
                const Len n = std::min<Len>(W / 4 - k0, kChunk);
                rows().halve2(src.row(c, j + 1 < H / 2 ? j + 1 : j) + 2 * k0, n, next);
                rows().average(even + k0, next, n, true, dst.row(c, 2 * j + 1) + k0);
            }
        }
}

template <void (*Chroma)(const Image&, const Image&, int, int)>
TpxStatus resample(const uint8_t* const* src, const int* srcStep, uint8_t* const* dst, const int* dstStep, TpxSize roi,
                   int hMultiple) {
    TPX_CHECK(check::notNull(src, srcStep));
    TPX_CHECK(check::planes(src, 3));
    TPX_CHECK(check::notNull(dst, dstStep));
    TPX_CHECK(check::planes(dst, 3));
    TPX_CHECK(strictSize(roi, hMultiple));
    const Image s = planesOf(src, srcStep), d = planesOf(dst, dstStep);
    copyPlane(s.p[0], s.step[0], d.p[0], d.step[0], roi.width, roi.height, PlaneStreaming::CacheSize, rows().copy);
    Chroma(s, d, roi.width, roi.height);
    return tpxStatusOk;
}

}  // namespace
}  // namespace tpx::chroma

using namespace tpx;
using namespace tpx::chroma;

extern "C" TPXCC_API TpxStatus tpxiCbYCr422ToYCbCr420_Interlace_8u_C2P3R(const Tpx8u* pSrc, int srcStep,
                                                                         Tpx8u* const pDst[3], const int dstStep[3],
                                                                         TpxSize roiSize) {
    TPX_CHECK(check::notNull(pSrc, pDst, dstStep));
    TPX_CHECK(check::planes(pDst, 3));
    return interlacedTo420({{const_cast<Tpx8u*>(pSrc), nullptr, nullptr}, {srcStep, 0, 0}}, true,
                           planesOf(pDst, dstStep), roiSize);
}
extern "C" TPXCC_API TpxStatus tpxiYCbCr422To420_Interlace_8u_P3R(const Tpx8u* const pSrc[3], const int srcStep[3],
                                                                  Tpx8u* const pDst[3], const int dstStep[3],
                                                                  TpxSize roiSize) {
    TPX_CHECK(check::notNull(pSrc, srcStep, pDst, dstStep));
    TPX_CHECK(check::planes(pSrc, 3));
    TPX_CHECK(check::planes(pDst, 3));
    return interlacedTo420(planesOf(pSrc, srcStep), false, planesOf(pDst, dstStep), roiSize);
}
extern "C" TPXCC_API TpxStatus tpxiYCbCr420To422_Interlace_8u_P3R(const Tpx8u* const pSrc[3], const int srcStep[3],
                                                                  Tpx8u* const pDst[3], const int dstStep[3],
                                                                  TpxSize roiSize) {
    TPX_CHECK(check::notNull(pSrc, srcStep, pDst, dstStep));
    TPX_CHECK(check::planes(pSrc, 3));
    TPX_CHECK(check::planes(pDst, 3));
    return interlacedTo422(planesOf(pSrc, srcStep), planesOf(pDst, dstStep), false, roiSize);
}
extern "C" TPXCC_API TpxStatus tpxiYCbCr420ToCbYCr422_Interlace_8u_P3C2R(const Tpx8u* const pSrc[3],
                                                                         const int srcStep[3], Tpx8u* pDst,
                                                                         int dstStep, TpxSize roiSize) {
    TPX_CHECK(check::notNull(pSrc, srcStep, pDst));
    TPX_CHECK(check::planes(pSrc, 3));
    return interlacedTo422(planesOf(pSrc, srcStep), {{pDst, nullptr, nullptr}, {dstStep, 0, 0}}, true, roiSize);
}

extern "C" TPXCC_API TpxStatus tpxiYCbCr1620To420_8u_P3R(const Tpx8u* const pSrc[3], const int srcStep[3],
                                                         Tpx8u* const pDst[3], const int dstStep[3], TpxSize roiSize) {
    return resample<from1620>(pSrc, srcStep, pDst, dstStep, roiSize, 4);
}
extern "C" TPXCC_API TpxStatus tpxiYCbCr420To1620_8u_P3R(const Tpx8u* const pSrc[3], const int srcStep[3],
                                                         Tpx8u* const pDst[3], const int dstStep[3], TpxSize roiSize) {
    return resample<to1620>(pSrc, srcStep, pDst, dstStep, roiSize, 4);
}
extern "C" TPXCC_API TpxStatus tpxiYCbCr411To420_8u_P3R(const Tpx8u* const pSrc[3], const int srcStep[3],
                                                        Tpx8u* const pDst[3], const int dstStep[3], TpxSize roiSize) {
    return resample<from411>(pSrc, srcStep, pDst, dstStep, roiSize, 4);
}
extern "C" TPXCC_API TpxStatus tpxiYCbCr420To411_8u_P3R(const Tpx8u* const pSrc[3], const int srcStep[3],
                                                        Tpx8u* const pDst[3], const int dstStep[3], TpxSize roiSize) {
    return resample<to411>(pSrc, srcStep, pDst, dstStep, roiSize, 2);
}
