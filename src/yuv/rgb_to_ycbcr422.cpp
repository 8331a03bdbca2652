// RGB and BGR to 4:2:2 YCbCr, YCrCb and CbYCr: packed and planar.
#include "yuv/rgb_to_ycbcr_sub_entry.hpp"

using namespace tpx::yuv::enc;

extern "C" {

TPXCC_API TpxStatus tpxiBGRToYCbCr422_8u_C3C2R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep,
                                               TpxSize roiSize) {
    return toPacked<C3Bgr422Packed>(pSrc, srcStep, pDst, dstStep, roiSize, k601Pair8);
}
TPXCC_API TpxStatus tpxiBGRToYCbCr422_8u_AC4C2R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep,
                                                TpxSize roiSize) {
    return toPacked<C4Bgr422Packed>(pSrc, srcStep, pDst, dstStep, roiSize, k601Pair8);
}
TPXCC_API TpxStatus tpxiBGRToYCbCr422_8u_C3P3R(const Tpx8u* pSrc, int srcStep, Tpx8u* const pDst[3],
                                               const int dstStep[3], TpxSize roiSize) {
    return toPlanes<C3Bgr422Planes>(pSrc, srcStep, pDst, dstStep, roiSize, k601Pair8);
}
TPXCC_API TpxStatus tpxiBGRToYCbCr422_8u_AC4P3R(const Tpx8u* pSrc, int srcStep, Tpx8u* const pDst[3],
                                                const int dstStep[3], TpxSize roiSize) {
    return toPlanes<C4Bgr422Planes>(pSrc, srcStep, pDst, dstStep, roiSize, k601Pair8);
}
TPXCC_API TpxStatus tpxiRGBToYCbCr422_8u_C3C2R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep,
                                               TpxSize roiSize) {
    return toPacked<C3Rgb422Packed>(pSrc, srcStep, pDst, dstStep, roiSize, k601PairHalfY1Floor);
}
TPXCC_API TpxStatus tpxiRGBToYCbCr422_8u_P3C2R(const Tpx8u* const pSrc[3], int srcStep, Tpx8u* pDst, int dstStep,
                                               TpxSize roiSize) {
    return planesToPacked<P3Rgb422Packed>(pSrc, srcStep, pDst, dstStep, roiSize, k601PairHalf);
}
TPXCC_API TpxStatus tpxiRGBToYCbCr422_8u_C3P3R(const Tpx8u* pSrc, int srcStep, Tpx8u* const pDst[3],
                                               const int dstStep[3], TpxSize roiSize) {
    return toPlanes<C3Rgb422Planes>(pSrc, srcStep, pDst, dstStep, roiSize, k601PairHalf);
}
TPXCC_API TpxStatus tpxiRGBToYCrCb422_8u_C3C2R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep,
                                               TpxSize roiSize) {
    return toPacked<C3Rgb422PackedCr>(pSrc, srcStep, pDst, dstStep, roiSize, k601PairHalfY1Floor);
}
TPXCC_API TpxStatus tpxiRGBToYCrCb422_8u_P3C2R(const Tpx8u* const pSrc[3], int srcStep, Tpx8u* pDst, int dstStep,
                                               TpxSize roiSize) {
    return planesToPacked<P3Rgb422PackedCr>(pSrc, srcStep, pDst, dstStep, roiSize, k601PairHalf);
}
TPXCC_API TpxStatus tpxiBGRToCbYCr422_8u_AC4C2R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep,
                                                TpxSize roiSize) {
    return toPacked<C4Bgr422CbFirst>(pSrc, srcStep, pDst, dstStep, roiSize, k601PairPartial);
}
TPXCC_API TpxStatus tpxiBGRToCbYCr422_709HDTV_8u_C3C2R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep,
                                                       TpxSize roiSize) {
    return toPacked<C3Bgr422CbFirstLimited>(pSrc, srcStep, pDst, dstStep, roiSize, k709HdtvPair);
}
TPXCC_API TpxStatus tpxiBGRToCbYCr422_709HDTV_8u_AC4C2R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep,
                                                        TpxSize roiSize) {
    return toPacked<C4Bgr422CbFirstLimited>(pSrc, srcStep, pDst, dstStep, roiSize, k709HdtvPair);
}
TPXCC_API TpxStatus tpxiRGBToCbYCr422_8u_C3C2R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep,
                                               TpxSize roiSize) {
    return toPacked<C3Rgb422CbFirst>(pSrc, srcStep, pDst, dstStep, roiSize, k601PairPartial);
}
TPXCC_API TpxStatus tpxiRGBToCbYCr422Gamma_8u_C3C2R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep,
                                                    TpxSize roiSize) {
    return toPacked<C3Rgb422CbFirstGamma>(pSrc, srcStep, pDst, dstStep, roiSize, k601PairPartial);
}

}  // extern "C"
