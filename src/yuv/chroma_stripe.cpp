// 4:2:0 with a luma and an interleaved chroma plane to {Y, Cr, Cb} planes
// (the first byte of each chroma pair to plane 1), plain and stripe-filtered,
// and the stripe-filtered 4:2:0 to packed 4:2:2.
//
// The stripe filter smooths luma vertically with the [1 2 1] tap, (Y[r-1] +
// 2 Y[r] + Y[r+1]) >> 2, the image's first row as (3 Y[0] + Y[1]) >> 2 and
// its last as (Y[H-2] + 3 Y[H-1]) >> 2, and takes chroma row j as (c[j] +
// c[j+1]) >> 1, c[n] read as c[n-1] at the image's bottom (n = H/2 chroma
// rows). A tall image is converted in stripes named by the code after the
// ROI, the source and destination pointers standing for the same image row:
//   1   the first stripe: luma rows 0..H-3, chroma rows 0..n-2;
//   4   an inner stripe: luma rows -2..H-3, chroma rows -1..n-2 (reading
//       three luma rows and one chroma row above the pointers);
//   16  the last stripe: luma rows -2..H-1, chroma rows -1..n-1;
//   1|4|16 and any code with those three bits: the whole image, rows 0..H-1.
// Any other code converts nothing. A first stripe of fewer than 4 rows
// converts nothing. Stripes 1, 4, ..., 4, 16 over consecutive bands give the
// bytes of the whole image; the whole-image form of the packed member adds 4
// before each luma shift, the stripes do not.
#include "frame/check.hpp"
#include "yuv/chroma_layout.hpp"

namespace tpx::chroma {
namespace {

struct Stripe {
    bool ok = false, top = false, bottom = false;
    int lumaFrom = 0, lumaTo = 0, chromaFrom = 0, chromaTo = 0;
};
constexpr int kWhole = 1 | 4 | 16;

Stripe stripeOf(int code, int H) {
    Stripe s;
    const int n = H / 2;
    if ((code & kWhole) == kWhole) s = {true, true, true, 0, H, 0, n};
    else if (code == 1 && H >= 4) s = {true, true, false, 0, H - 2, 0, n - 1};
    else if (code == 4) s = {true, false, false, -2, H - 2, -1, n - 1};
    else if (code == 16) s = {true, false, true, -2, H, -1, n};
    return s;
}

// Luma row r of the stripe into d (W bytes), with `add` before the shift.
void lumaRow(const Image& src, const Stripe& s, int H, int r, Len W, int add, uint8_t* d) {
    const uint8_t* mid = src.row(0, r);
    const uint8_t* up = s.top && r == 0 ? mid : src.row(0, r - 1);
    const uint8_t* down = s.bottom && r == H - 1 ? mid : src.row(0, r + 1);
    rows().tap121(up, mid, down, W, add, d);
}

// Chroma pairs row j of the stripe (W bytes of pairs) into d.
void chromaPairs(const Image& src, const Stripe& s, int H, int j, Len W, uint8_t* d) {
    const uint8_t* c = src.row(1, j);
    const uint8_t* next = s.bottom && j == H / 2 - 1 ? c : src.row(1, j + 1);
    rows().average(c, next, W, false, d);
}

// Stripe-filtered P2 to planes: plane 1 takes the first byte of each pair.
void filterToPlanes(const Image& src, const Image& dst, int W, int H, const Stripe& s) {
    alignas(64) uint8_t pairs[2 * kChunk];
    for (int r = s.lumaFrom; r < s.lumaTo; ++r) lumaRow(src, s, H, r, W, 0, dst.row(0, r));
    for (int j = s.chromaFrom; j < s.chromaTo; ++j)
        for (Len x0 = 0; x0 < W; x0 += 2 * kChunk) {
            const Len n = std::min<Len>(W - x0, 2 * kChunk);
            chromaPairs({{src.p[0], src.row(1, 0) + x0, nullptr}, {src.step[0], src.step[1], 0}}, s, H, j, n, pairs);
            rows().split2(pairs, n / 2, dst.row(1, j) + x0 / 2, dst.row(2, j) + x0 / 2);
        }
}

// The special check order of the {Y, Cr, Cb} members: source pointers and
// the destination array, the size, the destination planes, then a width or
// height of 1.
TpxStatus checkToPlanes(const uint8_t* y, const uint8_t* c, uint8_t* const* dst, const int* steps, TpxSize roi) {
    TPX_CHECK(check::notNull(y, c, dst, steps));
    TPX_CHECK(check::size(roi));
    TPX_CHECK(check::planes(dst, 3));
    TPX_CHECK(check::size(roi, 2, 2));
    return tpxStatusOk;
}

Image planesOf(uint8_t* const* p, const int* steps) { return {{p[0], p[1], p[2]}, {steps[0], steps[1], steps[2]}}; }
Image twoPlanesOf(const uint8_t* y, int ys, const uint8_t* c, int cs) {
    return {{const_cast<uint8_t*>(y), const_cast<uint8_t*>(c), nullptr}, {ys, cs, 0}};
}

}  // namespace
}  // namespace tpx::chroma

using namespace tpx;
using namespace tpx::chroma;

extern "C" TPXCC_API TpxStatus tpxiYCbCr420ToYCrCb420_8u_P2P3R(const Tpx8u* pSrcY, int srcYStep, const Tpx8u* pSrcCbCr,
                                                              int srcCbCrStep, Tpx8u* const pDst[3],
                                                              const int dstStep[3], TpxSize roiSize) {
    TPX_CHECK(checkToPlanes(pSrcY, pSrcCbCr, pDst, dstStep, roiSize));
    const int W = roiSize.width & ~1, H = roiSize.height & ~1;
    convert<TwoPlane<2, 2>, Planar<2, 2>, Rule::Same>(twoPlanesOf(pSrcY, srcYStep, pSrcCbCr, srcCbCrStep),
                                                      planesOf(pDst, dstStep), W, H, PlaneStreaming::CacheSize);
    return tpxStatusOk;
}

extern "C" TPXCC_API TpxStatus tpxiYCbCr420ToYCrCb420_Filter_8u_P2P3R(const Tpx8u* pSrcY, int srcYStep,
                                                                     const Tpx8u* pSrcCbCr, int srcCbCrStep,
                                                                     Tpx8u* const pDst[3], const int dstStep[3],
                                                                     TpxSize roiSize, int layout) {
    TPX_CHECK(checkToPlanes(pSrcY, pSrcCbCr, pDst, dstStep, roiSize));
    const int W = roiSize.width & ~1, H = roiSize.height & ~1;
    const Stripe s = stripeOf(layout, H);
    if (s.ok) filterToPlanes(twoPlanesOf(pSrcY, srcYStep, pSrcCbCr, srcCbCrStep), planesOf(pDst, dstStep), W, H, s);
    return tpxStatusOk;
}

extern "C" TPXCC_API TpxStatus tpxiYCbCr420ToYCbCr422_Filter_8u_P2C2R(const Tpx8u* pSrcY, int srcYStep,
                                                                     const Tpx8u* pSrcCbCr, int srcCbCrStep,
                                                                     Tpx8u* pDst, int dstStep, TpxSize roiSize,
                                                                     int layout) {
    TPX_CHECK(check::notNull(pSrcY, pSrcCbCr, pDst));
    TPX_CHECK(check::size(roiSize, 2, 2));
    const int W = roiSize.width & ~1, H = roiSize.height & ~1;
    const Stripe s = stripeOf(layout, H);
    if (!s.ok) return tpxStatusOk;
    const Image src = twoPlanesOf(pSrcY, srcYStep, pSrcCbCr, srcCbCrStep);
    const int add = (layout & kWhole) == kWhole ? 4 : 0;
    alignas(64) uint8_t luma[kChunk], pairs[kChunk];
    // Packed row r: luma row r with chroma row r / 2 (rounded toward minus infinity).
    for (int r = s.lumaFrom; r < s.lumaTo; ++r) {
        const int j = r >= 0 ? r / 2 : -1;
        for (Len x0 = 0; x0 < W; x0 += kChunk) {
            const Len n = std::min<Len>(W - x0, kChunk);
            const Image band{{src.p[0] + x0, src.p[1] + x0, nullptr}, {src.step[0], src.step[1], 0}};
            lumaRow(band, s, H, r, n, add, luma);
            chromaPairs(band, s, H, j, n, pairs);
            rows().merge2(luma, pairs, n, rowAt(pDst, dstStep, r) + 2 * x0);
        }
    }
    return tpxStatusOk;
}
