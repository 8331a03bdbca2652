// GrayToRGB: the gray value copied bit for bit into the three colour channels,
// and for C4 destinations the caller's alpha into the fourth.
#include "colorimetric/gray_rows.hpp"
#include "frame/check.hpp"
#include "frame/cpu.hpp"
#include "frame/image.hpp"

#include <cstddef>

namespace tpx::gray {
namespace {

template <class T, int Ch>
void scalarExpand(const T* src, T* dst, int x0, int x1, T alpha) {
    for (int x = x0; x < x1; ++x) {
        T* p = dst + std::ptrdiff_t(x) * Ch;
        p[0] = p[1] = p[2] = src[x];
        if constexpr (Ch == 4) p[3] = alpha;
    }
}

template <class T, int Ch>
int scalarExpandRow(const T* src, T* dst, int n, T alpha) {
    scalarExpand<T, Ch>(src, dst, 0, n, alpha);
    return n;
}

template <class T, int Ch>
TpxStatus grayToColor(const T* src, int srcStep, T* dst, int dstStep, TpxSize roi, T alpha = T()) {
    const ExpandRow<T> row = pick(TierKernels<ExpandRow<T>>{&scalarExpandRow<T, Ch>, TPX_X86((&expandRowAvx2<T, Ch>)),
                                                           TPX_X86((&expandRowAvx512<T, Ch>))});
    // Steps of multi-byte elements are whole element counts (arithmetic shift).
    constexpr int shift = sizeof(T) == 1 ? 0 : sizeof(T) == 2 ? 1 : 2;
    const std::ptrdiff_t ss = std::ptrdiff_t(srcStep >> shift) * std::ptrdiff_t(sizeof(T));
    const std::ptrdiff_t ds = std::ptrdiff_t(dstStep >> shift) * std::ptrdiff_t(sizeof(T));
    for (int y = 0; y < roi.height; ++y) {
        const T* s = rowAt(src, ss, y);
        T* d = rowAt(dst, ds, y);
        const int k = row(s, d, roi.width, alpha);
        scalarExpand<T, Ch>(s, d, k, roi.width, alpha);
    }
    return tpxStatusOk;
}

}  // namespace
}  // namespace tpx::gray

using namespace tpx;
using tpx::gray::grayToColor;

#define TPX_GRAY_TO_RGB_C3(types, T)                                                                  \
    extern "C" TPXCC_API TpxStatus tpxiGrayToRGB_##types##_C1C3R(const T* pSrc, int srcStep, T* pDst, \
                                                                 int dstStep, TpxSize roiSize) {      \
        TPX_CHECK(check::notNull(pSrc, pDst));                                                        \
        TPX_CHECK(check::size(roiSize));                                                              \
        return grayToColor<T, 3>(pSrc, srcStep, pDst, dstStep, roiSize);                              \
    }
#define TPX_GRAY_TO_RGB_C4(types, T)                                                                  \
    extern "C" TPXCC_API TpxStatus tpxiGrayToRGB_##types##_C1C4R(const T* pSrc, int srcStep, T* pDst, \
                                                                 int dstStep, TpxSize roiSize, T aval) { \
        TPX_CHECK(check::notNull(pSrc, pDst));                                                        \
        TPX_CHECK(check::size(roiSize));                                                              \
        return grayToColor<T, 4>(pSrc, srcStep, pDst, dstStep, roiSize, aval);                        \
    }

TPX_GRAY_TO_RGB_C3(8u, Tpx8u)
TPX_GRAY_TO_RGB_C3(16u, Tpx16u)
TPX_GRAY_TO_RGB_C3(32f, Tpx32f)
TPX_GRAY_TO_RGB_C4(8u, Tpx8u)
TPX_GRAY_TO_RGB_C4(16u, Tpx16u)
TPX_GRAY_TO_RGB_C4(32f, Tpx32f)
