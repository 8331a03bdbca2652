// HSV, HLS and photo YCC entries.
//
// Interleaved members: null pointers, then the size; steps are used as given,
// counting whole elements (an odd byte step of a 16-bit image loses its
// remainder). BGR/HLS members with planes: null pointers (images, the plane
// array and its planes), then the steps (below 1: -16), then the size.
#include "colorimetric/hsv_hls_ycc.hpp"

#include "frame/block_images.hpp"
#include "frame/cpu.hpp"

namespace tpx::hls {
namespace {

const Rows kRows = TPX_HLS_TABLE;
const Rows& rows() { return *pick(TierKernels<const Rows*>{&kRows, TPX_X86(&kRowsAvx2), TPX_X86(&kRowsAvx512)}); }

using blocks::Image;
using blocks::interleaved;

// The BGR/HLS members with planes: N planes on the planar side (or sides).
template <int N>
TpxStatus entries(const uint8_t*) { return tpxStatusOk; }
template <int N>
TpxStatus entries(const uint8_t* const* p) { return check::planes(p, N); }
template <int N>
Image imageOf(const uint8_t* p, int step) { return blocks::pixels(p, step); }
template <int N>
Image imageOf(const uint8_t* const* p, int step) { return blocks::planes(p, step, N); }

template <int N, class S, class D>
TpxStatus withPlanes(S src, int srcStep, D dst, int dstStep, TpxSize roi, Row row) {
    TPX_CHECK(check::notNull(src, dst));
    TPX_CHECK(entries<N>(src));
    TPX_CHECK(entries<N>(dst));
    TPX_CHECK(check::steps(srcStep, dstStep));
    TPX_CHECK(check::size(roi));
    return blocks::run(imageOf<N>(src, srcStep), imageOf<N>(dst, dstStep), roi.width, roi.height, row);
}

}  // namespace
}  // namespace tpx::hls

using namespace tpx::hls;

// Interleaved: element type, pixel elements, conversion (the row's flags 0).
#define TPX_HLS_PIXELS(name, T, K, O)                                                                          \
    extern "C" TPXCC_API TpxStatus name(const T* pSrc, int srcStep, T* pDst, int dstStep, TpxSize roiSize) { \
        return interleaved(pSrc, srcStep, pDst, dstStep, roiSize, rows().r_##T##_##K##_##K##_##O##_0);       \
    }
// The members with planes: source and destination pixel elements (1: planes),
// the planes, conversion, flags.
#define TPX_HLS_PLANES(name, SK, DK, N, O, F)                                                                    \
    extern "C" TPXCC_API TpxStatus name(const uint8_t* const pSrc[N], int srcStep, uint8_t* const pDst[N],      \
                                        int dstStep, TpxSize roiSize) {                                          \
        return withPlanes<N>(pSrc, srcStep, pDst, dstStep, roiSize, rows().r_uint8_t_##SK##_##DK##_##O##_##F);      \
    }
#define TPX_HLS_TO_PLANES(name, SK, N, O, F)                                                                     \
    extern "C" TPXCC_API TpxStatus name(const uint8_t* pSrc, int srcStep, uint8_t* const pDst[N], int dstStep, \
                                        TpxSize roiSize) {                                                       \
        return withPlanes<N>(pSrc, srcStep, pDst, dstStep, roiSize, rows().r_uint8_t_##SK##_1_##O##_##F);         \
    }
#define TPX_HLS_FROM_PLANES(name, DK, N, O, F)                                                                   \
    extern "C" TPXCC_API TpxStatus name(const uint8_t* const pSrc[N], int srcStep, uint8_t* pDst, int dstStep, \
                                        TpxSize roiSize) {                                                       \
        return withPlanes<N>(pSrc, srcStep, pDst, dstStep, roiSize, rows().r_uint8_t_1_##DK##_##O##_##F);       \
    }

// C3 and AC4 members of the element types: 8u and 16u (HSV), and 16s and 32f too.
#define TPX_HLS_UNSIGNED(prefix, O)                             \
    TPX_HLS_PIXELS(prefix##_8u_C3R, uint8_t, 3, O)              \
    TPX_HLS_PIXELS(prefix##_8u_AC4R, uint8_t, 4, O)             \
    TPX_HLS_PIXELS(prefix##_16u_C3R, uint16_t, 3, O)            \
    TPX_HLS_PIXELS(prefix##_16u_AC4R, uint16_t, 4, O)
#define TPX_HLS_TYPES(prefix, O)                                \
    TPX_HLS_UNSIGNED(prefix, O)                                 \
    TPX_HLS_PIXELS(prefix##_16s_C3R, int16_t, 3, O)             \
    TPX_HLS_PIXELS(prefix##_16s_AC4R, int16_t, 4, O)            \
    TPX_HLS_PIXELS(prefix##_32f_C3R, float, 3, O)               \
    TPX_HLS_PIXELS(prefix##_32f_AC4R, float, 4, O)

TPX_HLS_UNSIGNED(tpxiRGBToHSV, kToHsv)
TPX_HLS_UNSIGNED(tpxiHSVToRGB, kFromHsv)
TPX_HLS_TYPES(tpxiRGBToHLS, kToHls)
TPX_HLS_TYPES(tpxiHLSToRGB, kFromHls)
TPX_HLS_TYPES(tpxiRGBToYCC, kToYcc)
TPX_HLS_TYPES(tpxiYCCToRGB, kFromYcc)

// BGR and HLS 8u: the BGR side reverses its first three channels or planes;
// flags 4 copy the fourth.
extern "C" TPXCC_API TpxStatus tpxiBGRToHLS_8u_AC4R(const uint8_t* pSrc, int srcStep, uint8_t* pDst, int dstStep,
                                                     TpxSize roiSize) {
    return interleaved(pSrc, srcStep, pDst, dstStep, roiSize, rows().r_uint8_t_4_4_kToHls_1);
}
#define TPX_HLS_BGR(prefix, O, F, F4)                             \
    TPX_HLS_TO_PLANES(prefix##_8u_C3P3R, 3, 3, O, F)              \
    TPX_HLS_FROM_PLANES(prefix##_8u_P3C3R, 3, 3, O, F)            \
    TPX_HLS_PLANES(prefix##_8u_P3R, 1, 1, 3, O, F)                \
    TPX_HLS_PLANES(prefix##_8u_AP4R, 1, 1, 4, O, F4)              \
    TPX_HLS_FROM_PLANES(prefix##_8u_AP4C4R, 4, 4, O, F4)          \
    TPX_HLS_TO_PLANES(prefix##_8u_AC4P4R, 4, 4, O, F4)
TPX_HLS_BGR(tpxiBGRToHLS, kToHls, 1, 5)
TPX_HLS_BGR(tpxiHLSToBGR, kFromHls, 2, 6)
