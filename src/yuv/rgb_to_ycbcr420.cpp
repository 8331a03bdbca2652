// RGB and BGR to 4:2:0 YCbCr and YCrCb (BT.601, 709CSC, 709HDTV): three
// planes or luma plus interleaved chroma; and BGR to 4:1:1 planes.
#include "yuv/rgb_to_ycbcr_sub_entry.hpp"

using namespace tpx::yuv::enc;

extern "C" {

TPXCC_API TpxStatus tpxiBGRToYCbCr420_8u_C3P3R(const Tpx8u* pSrc, int srcStep, Tpx8u* const pDst[3],
                                               const int dstStep[3], TpxSize roiSize) {
    return toPlanes<C3Bgr420Planes>(pSrc, srcStep, pDst, dstStep, roiSize, k601Block);
}
TPXCC_API TpxStatus tpxiBGRToYCbCr420_8u_AC4P3R(const Tpx8u* pSrc, int srcStep, Tpx8u* const pDst[3],
                                                const int dstStep[3], TpxSize roiSize) {
    return toPlanes<C4Bgr420Planes>(pSrc, srcStep, pDst, dstStep, roiSize, k601Block);
}
TPXCC_API TpxStatus tpxiBGRToYCbCr420_8u_C3P2R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDstY, int dstYStep,
                                               Tpx8u* pDstCbCr, int dstCbCrStep, TpxSize roiSize) {
    return toTwoPlanes<C3Bgr420TwoPlane>(pSrc, srcStep, pDstY, dstYStep, pDstCbCr, dstCbCrStep, roiSize, k601Block);
}
TPXCC_API TpxStatus tpxiBGRToYCbCr420_8u_AC4P2R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDstY, int dstYStep,
                                                Tpx8u* pDstCbCr, int dstCbCrStep, TpxSize roiSize) {
    return toTwoPlanes<C4Bgr420TwoPlane>(pSrc, srcStep, pDstY, dstYStep, pDstCbCr, dstCbCrStep, roiSize, k601Block);
}
TPXCC_API TpxStatus tpxiBGRToYCbCr420_709CSC_8u_C3P3R(const Tpx8u* pSrc, int srcStep, Tpx8u* const pDst[3],
                                                      const int dstStep[3], TpxSize roiSize) {
    return toPlanes<C3Bgr420Planes>(pSrc, srcStep, pDst, dstStep, roiSize, k709CscBlock);
}
TPXCC_API TpxStatus tpxiBGRToYCbCr420_709CSC_8u_AC4P3R(const Tpx8u* pSrc, int srcStep, Tpx8u* const pDst[3],
                                                       const int dstStep[3], TpxSize roiSize) {
    return toPlanes<C4Bgr420Planes>(pSrc, srcStep, pDst, dstStep, roiSize, k709CscBlock);
}
TPXCC_API TpxStatus tpxiBGRToYCbCr420_709CSC_8u_C3P2R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDstY, int dstYStep,
                                                      Tpx8u* pDstCbCr, int dstCbCrStep, TpxSize roiSize) {
    return toTwoPlanes<C3Bgr420TwoPlane>(pSrc, srcStep, pDstY, dstYStep, pDstCbCr, dstCbCrStep, roiSize,
                                         k709CscBlock);
}
TPXCC_API TpxStatus tpxiBGRToYCbCr420_709CSC_8u_AC4P2R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDstY, int dstYStep,
                                                       Tpx8u* pDstCbCr, int dstCbCrStep, TpxSize roiSize) {
    return toTwoPlanes<C4Bgr420TwoPlane>(pSrc, srcStep, pDstY, dstYStep, pDstCbCr, dstCbCrStep, roiSize,
                                         k709CscBlock);
}
TPXCC_API TpxStatus tpxiBGRToYCbCr420_709HDTV_8u_AC4P3R(const Tpx8u* pSrc, int srcStep, Tpx8u* const pDst[3],
                                                        const int dstStep[3], TpxSize roiSize) {
    return toPlanes<C4Bgr420PlanesLimited>(pSrc, srcStep, pDst, dstStep, roiSize, k709HdtvBlock);
}
TPXCC_API TpxStatus tpxiBGRToYCrCb420_8u_C3P3R(const Tpx8u* pSrc, int srcStep, Tpx8u* const pDst[3],
                                               const int dstStep[3], TpxSize roiSize) {
    return toPlanes<C3Bgr420Planes>(pSrc, srcStep, pDst, dstStep, roiSize, k601Block, true);
}
TPXCC_API TpxStatus tpxiBGRToYCrCb420_8u_AC4P3R(const Tpx8u* pSrc, int srcStep, Tpx8u* const pDst[3],
                                                const int dstStep[3], TpxSize roiSize) {
    return toPlanes<C4Bgr420Planes>(pSrc, srcStep, pDst, dstStep, roiSize, k601Block, true);
}
TPXCC_API TpxStatus tpxiBGRToYCrCb420_709CSC_8u_C3P3R(const Tpx8u* pSrc, int srcStep, Tpx8u* const pDst[3],
                                                      const int dstStep[3], TpxSize roiSize) {
    return toPlanes<C3Bgr420Planes>(pSrc, srcStep, pDst, dstStep, roiSize, k709CscBlock, true);
}
TPXCC_API TpxStatus tpxiBGRToYCrCb420_709CSC_8u_AC4P3R(const Tpx8u* pSrc, int srcStep, Tpx8u* const pDst[3],
                                                       const int dstStep[3], TpxSize roiSize) {
    return toPlanes<C4Bgr420Planes>(pSrc, srcStep, pDst, dstStep, roiSize, k709CscBlock, true);
}
TPXCC_API TpxStatus tpxiRGBToYCbCr420_8u_C3P3R(const Tpx8u* pSrc, int srcStep, Tpx8u* const pDst[3],
                                               const int dstStep[3], TpxSize roiSize) {
    return toPlanes<C3Rgb420Planes>(pSrc, srcStep, pDst, dstStep, roiSize, k601Block);
}
TPXCC_API TpxStatus tpxiRGBToYCbCr420_8u_C3P2R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDstY, int dstYStep,
                                               Tpx8u* pDstCbCr, int dstCbCrStep, TpxSize roiSize) {
    return toTwoPlanes<C3Rgb420TwoPlane>(pSrc, srcStep, pDstY, dstYStep, pDstCbCr, dstCbCrStep, roiSize, k601Block);
}
TPXCC_API TpxStatus tpxiRGBToYCbCr420_8u_C4P2R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDstY, int dstYStep,
                                               Tpx8u* pDstCbCr, int dstCbCrStep, TpxSize roiSize) {
    return toTwoPlanes<C4Rgb420TwoPlane>(pSrc, srcStep, pDstY, dstYStep, pDstCbCr, dstCbCrStep, roiSize, k601Block);
}
TPXCC_API TpxStatus tpxiRGBToYCrCb420_8u_AC4P3R(const Tpx8u* pSrc, int srcStep, Tpx8u* const pDst[3],
                                                const int dstStep[3], TpxSize roiSize) {
    return toPlanes<C4Rgb420Planes>(pSrc, srcStep, pDst, dstStep, roiSize, k601Block, true);
}

TPXCC_API TpxStatus tpxiBGRToYCbCr411_8u_C3P3R(const Tpx8u* pSrc, int srcStep, Tpx8u* const pDst[3],
                                               const int dstStep[3], TpxSize roiSize) {
    return toPlanes<C3Bgr411Planes>(pSrc, srcStep, pDst, dstStep, roiSize, k601Block);
}
TPXCC_API TpxStatus tpxiBGRToYCbCr411_8u_AC4P3R(const Tpx8u* pSrc, int srcStep, Tpx8u* const pDst[3],
                                                const int dstStep[3], TpxSize roiSize) {
    return toPlanes<C4Bgr411Planes>(pSrc, srcStep, pDst, dstStep, roiSize, k601Block);
}

}  // extern "C"
