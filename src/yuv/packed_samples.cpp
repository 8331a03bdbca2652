// v210 to gray or packed colour, and 12-bit pack and unpack.
//
// The v210 members count their steps in elements (32-bit words for the
// source, 16-bit words for the destination) and report a step below 1 as a
// bad size; the 12-bit members take byte steps and report -16.
#include "yuv/packed_samples.hpp"

#include "frame/check.hpp"
#include "frame/cpu.hpp"
#include "frame/image.hpp"
#include "tpxcc.h"

namespace tpx::packed {
namespace {

const Rows& rows() { return *pick(TierKernels<const Rows*>{&kRows, TPX_X86(&kRowsAvx2), TPX_X86(&kRowsAvx512)}); }

TpxStatus v210(const uint32_t* src, int srcStep, uint16_t* dst, int dstStep, TpxSize roi, V210Row Rows::*kind) {
    TPX_CHECK(check::notNull(src, dst));
    TPX_CHECK(check::size(roi));
    TPX_CHECK(check::failIf(srcStep < 1 || dstStep < 1, tpxStatusBadSize));
    const V210Row row = rows().*kind;
    for (int y = 0; y < roi.height; ++y)
        row(src + std::ptrdiff_t(srcStep) * y, dst + std::ptrdiff_t(dstStep) * y, roi.width);
    return tpxStatusOk;
}

template <class S, class D, class Row>
TpxStatus twelve(const S* src, int srcStep, D* dst, int dstStep, TpxSize roi, Row Rows::*kind) {
    TPX_CHECK(check::notNull(src, dst));
    TPX_CHECK(check::size(roi));
    TPX_CHECK(check::steps(srcStep, dstStep));
    const Row row = rows().*kind;
    const auto* s = reinterpret_cast<const uint8_t*>(src);
    auto* d = reinterpret_cast<uint8_t*>(dst);
    for (int y = 0; y < roi.height; ++y) row(rowAt(s, srcStep, y), rowAt(d, dstStep, y), roi.width);
    return tpxStatusOk;
}

}  // namespace
}  // namespace tpx::packed

using namespace tpx::packed;

extern "C" TPXCC_API TpxStatus tpxiYUV422v210ToGray_709HDTV_32u16u_C3C1(const Tpx32u* pSrc, int srcStep, Tpx16u* pDst,
                                                                         int dstStep, TpxSize roiSize) {
    return v210(pSrc, srcStep, pDst, dstStep, roiSize, &Rows::gray);
}
extern "C" TPXCC_API TpxStatus tpxiYUV422v210ToRGB_709HDTV_32u16u_C3(const Tpx32u* pSrc, int srcStep, Tpx16u* pDst,
                                                                      int dstStep, TpxSize roiSize) {
    return v210(pSrc, srcStep, pDst, dstStep, roiSize, &Rows::rgb);
}
extern "C" TPXCC_API TpxStatus tpxiYUV422v210ToBGR_709HDTV_32u16u_C3(const Tpx32u* pSrc, int srcStep, Tpx16u* pDst,
                                                                      int dstStep, TpxSize roiSize) {
    return v210(pSrc, srcStep, pDst, dstStep, roiSize, &Rows::bgr);
}
extern "C" TPXCC_API TpxStatus tpxiPack_16u12u_C1R(const Tpx16u* pSrc, int srcStep, Tpx8u* pDst, int dstStep,
                                                   TpxSize roiSize) {
    return twelve(pSrc, srcStep, pDst, dstStep, roiSize, &Rows::pack);
}
extern "C" TPXCC_API TpxStatus tpxiUnpack_12u16u_C1R(const Tpx8u* pSrc, int srcStep, Tpx16u* pDst, int dstStep,
                                                     TpxSize roiSize) {
    return twelve(pSrc, srcStep, pDst, dstStep, roiSize, &Rows::unpack);
}
