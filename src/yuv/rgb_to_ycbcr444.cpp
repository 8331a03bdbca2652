// RGB to YCbCr 4:4:4 (BT.601 studio range): the five encoder entries.
// Only the C3R member takes the 16-bit block arithmetic (on whole 16-pixel
// blocks); the others use the 32-bit reference for every pixel.
#include "yuv/ycbcr444.hpp"

using namespace tpx;
using namespace tpx::yuv444;

extern "C" TPXCC_API TpxStatus tpxiRGBToYCbCr_8u_C3R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep,
                                                     TpxSize roi) {
    return checkedConvert(pSrc, srcStep, pDst, dstStep, roi, 0,
                          TPX_YUV444_VBMI(encodeC3Block, TPX_YUV444_SIMD(encodeC3Block)),
                          encodeRow<Pack::C3, Pack::C3, 16>);
}

extern "C" TPXCC_API TpxStatus tpxiRGBToYCbCr_8u_AC4R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep,
                                                      TpxSize roi) {
    return checkedConvert(pSrc, srcStep, pDst, dstStep, roi, 0, TPX_YUV444_SIMD(encodeAC4),
                          encodeRow<Pack::AC4, Pack::AC4, 0>);
}

extern "C" TPXCC_API TpxStatus tpxiRGBToYCbCr_8u_P3R(const Tpx8u* const pSrc[3], int srcStep, Tpx8u* const pDst[3],
                                                     int dstStep, TpxSize roi) {
    return checkedConvert(pSrc, srcStep, pDst, dstStep, roi, 0, TPX_YUV444_SIMD(encodeP3),
                          encodeRow<Pack::P3, Pack::P3, 0>);
}

extern "C" TPXCC_API TpxStatus tpxiRGBToYCbCr_8u_C3P3R(const Tpx8u* pSrc, int srcStep, Tpx8u* const pDst[3],
                                                       int dstStep, TpxSize roi) {
    return checkedConvert(pSrc, srcStep, pDst, dstStep, roi, 0, TPX_YUV444_SIMD(encodeC3P3),
                          encodeRow<Pack::C3, Pack::P3, 0>);
}

extern "C" TPXCC_API TpxStatus tpxiRGBToYCbCr_8u_AC4P3R(const Tpx8u* pSrc, int srcStep, Tpx8u* const pDst[3],
                                                        int dstStep, TpxSize roi) {
    return checkedConvert(pSrc, srcStep, pDst, dstStep, roi, 0, TPX_YUV444_SIMD(encodeAC4P3),
                          encodeRow<Pack::AC4, Pack::P3, 0>);
}
