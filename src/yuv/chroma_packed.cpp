// The packed 4:2:2 members that move bytes within the packed layout (byte
// orders, luma only), and the 4:2:0 de-interleave to {Y, Cr, Cb} with its
// stripe-filtered form, which check their arguments in an order of their own.
#include "frame/check.hpp"
#include "yuv/chroma_layout.hpp"

namespace tpx::chroma {
namespace {

// Packed rows to packed rows with each four-byte group reordered.
TpxStatus reorder(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, TpxSize roi, int minH,
                  const uint8_t (&order)[4]) {
    TPX_CHECK(check::notNull(src, dst));
    TPX_CHECK(check::width(roi, 2));
    if (minH > 0) TPX_CHECK(check::height(roi, minH));
    const Len groups = roi.width / 2;
    for (int y = 0; y < roi.height; ++y) rows().permute4(rowAt(src, srcStep, y), groups, order, rowAt(dst, dstStep, y));
    return tpxStatusOk;
}

}  // namespace
}  // namespace tpx::chroma

using namespace tpx;
using namespace tpx::chroma;

extern "C" TPXCC_API TpxStatus tpxiYCbCr422ToYCrCb422_8u_C2R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep,
                                                            TpxSize roiSize) {
    return reorder(pSrc, srcStep, pDst, dstStep, roiSize, 0, {0, 3, 2, 1});
}
extern "C" TPXCC_API TpxStatus tpxiYCbCr422ToCbYCr422_8u_C2R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep,
                                                            TpxSize roiSize) {
    return reorder(pSrc, srcStep, pDst, dstStep, roiSize, 1, {1, 0, 3, 2});
}
extern "C" TPXCC_API TpxStatus tpxiCbYCr422ToYCbCr422_8u_C2R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep,
                                                            TpxSize roiSize) {
    return reorder(pSrc, srcStep, pDst, dstStep, roiSize, 1, {1, 0, 3, 2});
}

// Luma bytes only, the last unpaired pixel of an odd width included.
extern "C" TPXCC_API TpxStatus tpxiYCbCr422ToGray_8u_C2C1R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep,
                                                          TpxSize roiSize) {
    TPX_CHECK(check::notNull(pSrc, pDst));
    TPX_CHECK(check::size(roiSize));
    for (int y = 0; y < roiSize.height; ++y) rows().split2(rowAt(pSrc, srcStep, y), roiSize.width, rowAt(pDst, dstStep, y), nullptr);
    return tpxStatusOk;
}
