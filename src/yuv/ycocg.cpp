// YCoCg entries: null pointers (images and plane arrays), the size, the plane
// pointers; steps are used as given (one step for the three planes).
// tpxiYCoCgToRGB_8u_P3C3R converts nothing and succeeds for a size below 1.
#include "yuv/ycocg.hpp"

#include "frame/check.hpp"
#include "frame/cpu.hpp"
#include "frame/image.hpp"
#include "tpxcc.h"

namespace tpx::ycocg {
namespace {

template <class S, class D, int Ch, bool Rev, bool Bgr>
TpxStatus toPlanes(const S* src, int srcStep, D* const* dst, int dstStep, TpxSize roi) {
    TPX_CHECK(check::notNull(src, dst));
    TPX_CHECK(check::size(roi));
    TPX_CHECK(check::planes(dst, 3));
    const ForwardFn row = pick(TierKernels<ForwardFn>{forward<S, D, Ch, Rev, Bgr>, TPX_X86((forwardAvx2<S, D, Ch, Rev, Bgr>)),
                                                      TPX_X86((forwardAvx512<S, D, Ch, Rev, Bgr>))});
    for (int y = 0; y < roi.height; ++y)
        row(rowAt(src, srcStep, y), rowAt(dst[0], dstStep, y), rowAt(dst[1], dstStep, y), rowAt(dst[2], dstStep, y),
            roi.width);
    return tpxStatusOk;
}

template <class S, class D, int Ch, bool Rev, bool Bgr>
TpxStatus fromPlanes(const S* const* src, int srcStep, D* dst, int dstStep, TpxSize roi, D fourth,
                     bool emptyIsOk = false) {
    TPX_CHECK(check::notNull(src, dst));
    if (emptyIsOk && (roi.width < 1 || roi.height < 1)) return tpxStatusOk;
    TPX_CHECK(check::size(roi));
    TPX_CHECK(check::planes(src, 3));
    const InverseFn row = pick(TierKernels<InverseFn>{inverse<S, D, Ch, Rev, Bgr>, TPX_X86((inverseAvx2<S, D, Ch, Rev, Bgr>)),
                                                      TPX_X86((inverseAvx512<S, D, Ch, Rev, Bgr>))});
    for (int y = 0; y < roi.height; ++y)
        row(rowAt(src[0], srcStep, y), rowAt(src[1], srcStep, y), rowAt(src[2], srcStep, y), rowAt(dst, dstStep, y),
            roi.width, fourth);
    return tpxStatusOk;
}

}  // namespace
}  // namespace tpx::ycocg

using namespace tpx::ycocg;

#define TPX_YCOCG_TO(name, S, D, Ch, Rev, Bgr)                                                            \
    extern "C" TPXCC_API TpxStatus name(const S* pSrc, int srcStep, D* const pDst[3], int dstStep,       \
                                        TpxSize roiSize) {                                               \
        return toPlanes<S, D, Ch, Rev, Bgr>(pSrc, srcStep, pDst, dstStep, roiSize);                      \
    }
#define TPX_YCOCG_FROM3(name, S, D, Rev, Bgr)                                                             \
    extern "C" TPXCC_API TpxStatus name(const S* const pSrc[3], int srcStep, D* pDst, int dstStep,       \
                                        TpxSize roiSize) {                                               \
        return fromPlanes<S, D, 3, Rev, Bgr>(pSrc, srcStep, pDst, dstStep, roiSize, D(0));               \
    }
#define TPX_YCOCG_FROM4(name, S, D, Rev)                                                                  \
    extern "C" TPXCC_API TpxStatus name(const S* const pSrc[3], int srcStep, D* pDst, int dstStep,       \
                                        TpxSize roiSize, D aval) {                                       \
        return fromPlanes<S, D, 4, Rev, true>(pSrc, srcStep, pDst, dstStep, roiSize, aval);              \
    }

TPX_YCOCG_TO(tpxiBGRToYCoCg_8u16s_C3P3R, Tpx8u, Tpx16s, 3, false, true)
TPX_YCOCG_TO(tpxiBGRToYCoCg_8u16s_C4P3R, Tpx8u, Tpx16s, 4, false, true)
TPX_YCOCG_TO(tpxiBGRToYCoCg_Rev_8u16s_C3P3R, Tpx8u, Tpx16s, 3, true, true)
TPX_YCOCG_TO(tpxiBGRToYCoCg_Rev_8u16s_C4P3R, Tpx8u, Tpx16s, 4, true, true)
TPX_YCOCG_TO(tpxiRGBToYCoCg_8u_C3P3R, Tpx8u, Tpx8u, 3, false, false)
TPX_YCOCG_TO(tpxiSBGRToYCoCg_16s_C3P3R, Tpx16s, Tpx16s, 3, false, true)
TPX_YCOCG_TO(tpxiSBGRToYCoCg_16s_C4P3R, Tpx16s, Tpx16s, 4, false, true)
TPX_YCOCG_TO(tpxiSBGRToYCoCg_16s32s_C3P3R, Tpx16s, Tpx32s, 3, false, true)
TPX_YCOCG_TO(tpxiSBGRToYCoCg_16s32s_C4P3R, Tpx16s, Tpx32s, 4, false, true)
TPX_YCOCG_TO(tpxiSBGRToYCoCg_Rev_16s_C3P3R, Tpx16s, Tpx16s, 3, true, true)
TPX_YCOCG_TO(tpxiSBGRToYCoCg_Rev_16s_C4P3R, Tpx16s, Tpx16s, 4, true, true)
TPX_YCOCG_TO(tpxiSBGRToYCoCg_Rev_16s32s_C3P3R, Tpx16s, Tpx32s, 3, true, true)
TPX_YCOCG_TO(tpxiSBGRToYCoCg_Rev_16s32s_C4P3R, Tpx16s, Tpx32s, 4, true, true)

TPX_YCOCG_FROM3(tpxiYCoCgToBGR_16s8u_P3C3R, Tpx16s, Tpx8u, false, true)
TPX_YCOCG_FROM4(tpxiYCoCgToBGR_16s8u_P3C4R, Tpx16s, Tpx8u, false)
TPX_YCOCG_FROM3(tpxiYCoCgToBGR_Rev_16s8u_P3C3R, Tpx16s, Tpx8u, true, true)
TPX_YCOCG_FROM4(tpxiYCoCgToBGR_Rev_16s8u_P3C4R, Tpx16s, Tpx8u, true)
TPX_YCOCG_FROM3(tpxiYCoCgToSBGR_16s_P3C3R, Tpx16s, Tpx16s, false, true)
TPX_YCOCG_FROM4(tpxiYCoCgToSBGR_16s_P3C4R, Tpx16s, Tpx16s, false)
TPX_YCOCG_FROM3(tpxiYCoCgToSBGR_32s16s_P3C3R, Tpx32s, Tpx16s, false, true)
TPX_YCOCG_FROM4(tpxiYCoCgToSBGR_32s16s_P3C4R, Tpx32s, Tpx16s, false)
TPX_YCOCG_FROM3(tpxiYCoCgToSBGR_Rev_16s_P3C3R, Tpx16s, Tpx16s, true, true)
TPX_YCOCG_FROM4(tpxiYCoCgToSBGR_Rev_16s_P3C4R, Tpx16s, Tpx16s, true)
TPX_YCOCG_FROM3(tpxiYCoCgToSBGR_Rev_32s16s_P3C3R, Tpx32s, Tpx16s, true, true)
TPX_YCOCG_FROM4(tpxiYCoCgToSBGR_Rev_32s16s_P3C4R, Tpx32s, Tpx16s, true)

// 8-bit planes with chroma offset by 128; an empty ROI converts nothing.
extern "C" TPXCC_API TpxStatus tpxiYCoCgToRGB_8u_P3C3R(const Tpx8u* const pSrc[3], int srcStep, Tpx8u* pDst,
                                                      int dstStep, TpxSize roiSize) {
    return fromPlanes<Tpx8u, Tpx8u, 3, false, false>(pSrc, srcStep, pDst, dstStep, roiSize, 0, true);
}
