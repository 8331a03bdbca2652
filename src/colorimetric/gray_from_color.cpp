// RGBToGray and ColorToGray: one kernel per element type over C3 and AC4
// sources; RGBToGray is ColorToGray with the fixed weights.
#include "colorimetric/gray_math.hpp"
#include "colorimetric/gray_rows.hpp"
#include "frame/check.hpp"
#include "frame/cpu.hpp"
#include "frame/image.hpp"

#include <cstddef>
#include <type_traits>

namespace tpx::gray {
namespace {

// Pixels of a row computed in the group form: whole groups of 4 (C3) or 8
// (AC4) pixels for 8u, whole groups of 4 for 16s; the other types have one form.
template <class T, int Ch>
constexpr int groupedWidth(int width) {
    if constexpr (std::is_same_v<T, uint8_t>) return groupedWidth8u(width, Ch);
    else if constexpr (std::is_same_v<T, int16_t>) return width & ~3;
    else return width;
}

// Pixels [x0, x1) of a row, in the group form (`grouped`) or the tail form.
template <class T, int Ch, bool grouped>
void scalarPixels(const T* src, T* dst, int x0, int x1, const Weight<T>* w) {
    for (int x = x0; x < x1; ++x) {
        const T* p = src + std::ptrdiff_t(x) * Ch;
        if constexpr (std::is_same_v<T, uint8_t>) {
            dst[x] = grouped ? vectorForm8u(p[0], p[1], p[2], w) : exactForm8u(p[0], p[1], p[2], w);
        } else if constexpr (std::is_same_v<T, int16_t>) {
            const int32_t g = gray16sBiased(p[0], p[1], p[2], w);
            dst[x] = grouped ? gray16sGroup(g) : gray16sTail(g);
        } else if constexpr (std::is_same_v<T, uint16_t>) {
            dst[x] = gray16u(p[0], p[1], p[2], w);
        } else {
            dst[x] = weighted(p[0], p[1], p[2], w);
        }
    }
}

template <class T, int Ch>
int scalarRow(const T* src, T* dst, int n, const Weight<T>* w) {
    scalarPixels<T, Ch, true>(src, dst, 0, n, w);
    return n;
}

template <class T, int Ch>
void colorToGray(const T* src, int srcStep, T* dst, int dstStep, TpxSize roi, const Weight<T>* w) {
    const ColorRow<T> row = pick(TierKernels<ColorRow<T>>{&scalarRow<T, Ch>, TPX_X86((&colorRowAvx2<T, Ch>)),
                                                          TPX_X86((&colorRowAvx512<T, Ch>))});
    const std::ptrdiff_t ss = elementStep<T>(srcStep), ds = elementStep<T>(dstStep);
    const int n = groupedWidth<T, Ch>(roi.width);
    for (int y = 0; y < roi.height; ++y) {
        const T* s = rowAt(src, ss, y);
        T* d = rowAt(dst, ds, y);
        const int k = row(s, d, n, w);
        scalarPixels<T, Ch, true>(s, d, k, n, w);
        scalarPixels<T, Ch, false>(s, d, n, roi.width, w);
    }
}

// 8u, 16u, 16s and 32f take float weights, the fixed ones when null; 64f takes
// double weights and always reads them.
template <class T, int Ch, class W>
TpxStatus toGray(const T* src, int srcStep, T* dst, int dstStep, TpxSize roi, const W* w) {
    if constexpr (std::is_same_v<T, double>) {
        colorToGray<T, Ch>(src, srcStep, dst, dstStep, roi, w);
    } else if constexpr (std::is_same_v<T, uint8_t>) {
        if (!w) w = kFixedWeights;
        const uint16_t q[3] = {quantize8u(w[0]), quantize8u(w[1]), quantize8u(w[2])};
        colorToGray<T, Ch>(src, srcStep, dst, dstStep, roi, q);
    } else {
        colorToGray<T, Ch>(src, srcStep, dst, dstStep, roi, w ? w : kFixedWeights);
    }
    return tpxStatusOk;
}

}  // namespace
}  // namespace tpx::gray

using namespace tpx;
using tpx::gray::toGray;

#define TPX_RGB_TO_GRAY(types, T, layout, Ch)                                                             \
    extern "C" TPXCC_API TpxStatus tpxiRGBToGray_##types##_##layout(const T* pSrc, int srcStep, T* pDst, \
                                                                    int dstStep, TpxSize roiSize) {      \
        TPX_CHECK(check::notNull(pSrc, pDst));                                                            \
        TPX_CHECK(check::size(roiSize));                                                                  \
        return toGray<T, Ch>(pSrc, srcStep, pDst, dstStep, roiSize, gray::kFixedWeights);                 \
    }

#define TPX_COLOR_TO_GRAY(types, T, layout, Ch, W)                                                          \
    extern "C" TPXCC_API TpxStatus tpxiColorToGray_##types##_##layout(                                      \
        const T* pSrc, int srcStep, T* pDst, int dstStep, TpxSize roiSize, const W coeffs[3]) {             \
        TPX_CHECK(check::notNull(pSrc, pDst));                                                              \
        TPX_CHECK(check::size(roiSize));                                                                    \
        return toGray<T, Ch>(pSrc, srcStep, pDst, dstStep, roiSize, coeffs);                                   \
    }

TPX_RGB_TO_GRAY(8u, Tpx8u, C3C1R, 3)
TPX_RGB_TO_GRAY(8u, Tpx8u, AC4C1R, 4)
TPX_RGB_TO_GRAY(16u, Tpx16u, C3C1R, 3)
TPX_RGB_TO_GRAY(16u, Tpx16u, AC4C1R, 4)
TPX_RGB_TO_GRAY(16s, Tpx16s, C3C1R, 3)
TPX_RGB_TO_GRAY(16s, Tpx16s, AC4C1R, 4)
TPX_RGB_TO_GRAY(32f, Tpx32f, C3C1R, 3)
TPX_RGB_TO_GRAY(32f, Tpx32f, AC4C1R, 4)

TPX_COLOR_TO_GRAY(8u, Tpx8u, C3C1R, 3, Tpx32f)
TPX_COLOR_TO_GRAY(8u, Tpx8u, AC4C1R, 4, Tpx32f)
TPX_COLOR_TO_GRAY(16u, Tpx16u, C3C1R, 3, Tpx32f)
TPX_COLOR_TO_GRAY(16u, Tpx16u, AC4C1R, 4, Tpx32f)
TPX_COLOR_TO_GRAY(16s, Tpx16s, C3C1R, 3, Tpx32f)
TPX_COLOR_TO_GRAY(16s, Tpx16s, AC4C1R, 4, Tpx32f)
TPX_COLOR_TO_GRAY(32f, Tpx32f, C3C1R, 3, Tpx32f)
TPX_COLOR_TO_GRAY(32f, Tpx32f, AC4C1R, 4, Tpx32f)
TPX_COLOR_TO_GRAY(64f, Tpx64f, C3C1R, 3, Tpx64f)
TPX_COLOR_TO_GRAY(64f, Tpx64f, AC4C1R, 4, Tpx64f)
