// YCbCr 4:4:4 to RGB and BGR: the nine decoder entries.
//
// Which pixels take the 16-bit block arithmetic and which the 32-bit BT.601
// reference (the two can differ by one in a channel):
// - YCbCrToRGB P3C3R, P3C4R and AC4R: whole 8-pixel blocks from the row start
//   take the block arithmetic, the rest of the row the reference;
// - YCbCrToRGB C3R: whole 16-pixel groups block, the rest reference;
// - YCbCrToRGB P3R and every YCbCrToBGR member: every pixel block arithmetic
//   (BT.709 coefficients in the 709CSC members).
#include "yuv/ycbcr444.hpp"

using namespace tpx;
using namespace tpx::yuv444;

extern "C" TPXCC_API TpxStatus tpxiYCbCrToRGB_8u_C3R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep,
                                                     TpxSize roi) {
    return checkedConvert(pSrc, srcStep, pDst, dstStep, roi, 0,
                          TPX_YUV444_VBMI(decodeC3, TPX_YUV444_SIMD(decodeC3)),
                          decodeRow<Pack::C3, Pack::C3, false, 16, false>);
}

extern "C" TPXCC_API TpxStatus tpxiYCbCrToRGB_8u_AC4R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep,
                                                      TpxSize roi) {
    return checkedConvert(pSrc, srcStep, pDst, dstStep, roi, 0, TPX_YUV444_SIMD(decodeAC4),
                          decodeRow<Pack::AC4, Pack::AC4, false, 8, false>);
}

extern "C" TPXCC_API TpxStatus tpxiYCbCrToRGB_8u_P3R(const Tpx8u* const pSrc[3], int srcStep, Tpx8u* const pDst[3],
                                                     int dstStep, TpxSize roi) {
    return checkedConvert(pSrc, srcStep, pDst, dstStep, roi, 0, TPX_YUV444_SIMD(decodeP3),
                          decodeRow<Pack::P3, Pack::P3, false, 1, false>);
}

namespace {

// The BGR members: every null pointer first, then height, then width.
TpxStatus toBgr(const Tpx8u* const src[3], int srcStep, Tpx8u* dst, int dstStep, TpxSize roi, uint8_t alpha,
                SimdRow simd, ScalarRow scalar) {
    TPX_CHECK(check::notNull(src, dst));
    TPX_CHECK(check::planes(src, 3));
    TPX_CHECK(check::height(roi));
    TPX_CHECK(check::width(roi));
    convert(src, srcStep, interleaved(dst).p, dstStep, roi, alpha, simd, scalar);
    return tpxStatusOk;
}

}  // namespace

extern "C" TPXCC_API TpxStatus tpxiYCbCrToRGB_8u_P3C3R(const Tpx8u* const pSrc[3], int srcStep, Tpx8u* pDst,
                                                       int dstStep, TpxSize roi) {
    return checkedConvert(pSrc, srcStep, pDst, dstStep, roi, 0, TPX_YUV444_SIMD(decodeP3C3Rgb),
                          decodeRow<Pack::P3, Pack::C3, false, 8, false>);
}

extern "C" TPXCC_API TpxStatus tpxiYCbCrToRGB_8u_P3C4R(const Tpx8u* const pSrc[3], int srcStep, Tpx8u* pDst,
                                                       int dstStep, TpxSize roi, Tpx8u alpha) {
    return checkedConvert(pSrc, srcStep, pDst, dstStep, roi, alpha, TPX_YUV444_AVX2_ROW(decodeP3C4Rgb),
                          decodeRow<Pack::P3, Pack::C4, false, 8, false>);
}

extern "C" TPXCC_API TpxStatus tpxiYCbCrToBGR_8u_P3C3R(const Tpx8u* const pSrc[3], int srcStep, Tpx8u* pDst,
                                                       int dstStep, TpxSize roi) {
    return toBgr(pSrc, srcStep, pDst, dstStep, roi, 0, TPX_YUV444_SIMD(decodeP3C3Bgr),
                 decodeRow<Pack::P3, Pack::C3, true, 1, false>);
}

extern "C" TPXCC_API TpxStatus tpxiYCbCrToBGR_8u_P3C4R(const Tpx8u* const pSrc[3], int srcStep, Tpx8u* pDst,
                                                       int dstStep, TpxSize roi, Tpx8u alpha) {
    return toBgr(pSrc, srcStep, pDst, dstStep, roi, alpha, TPX_YUV444_AVX2_ROW(decodeP3C4Bgr),
                 decodeRow<Pack::P3, Pack::C4, true, 1, false>);
}

extern "C" TPXCC_API TpxStatus tpxiYCbCrToBGR_709CSC_8u_P3C3R(const Tpx8u* const pSrc[3], int srcStep, Tpx8u* pDst,
                                                              int dstStep, TpxSize roi) {
    return toBgr(pSrc, srcStep, pDst, dstStep, roi, 0, TPX_YUV444_SIMD(decode709P3C3Bgr),
                 decodeRow<Pack::P3, Pack::C3, true, 1, true>);
}

extern "C" TPXCC_API TpxStatus tpxiYCbCrToBGR_709CSC_8u_P3C4R(const Tpx8u* const pSrc[3], int srcStep, Tpx8u* pDst,
                                                              int dstStep, TpxSize roi, Tpx8u alpha) {
    return toBgr(pSrc, srcStep, pDst, dstStep, roi, alpha, TPX_YUV444_AVX2_ROW(decode709P3C4Bgr),
                 decodeRow<Pack::P3, Pack::C4, true, 1, true>);
}
