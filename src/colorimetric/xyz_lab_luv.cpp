// XYZ, Lab and LUV entries. Interleaved members: null pointers, then the
// size; steps used as given, counting whole elements. Planar Lab members:
// null pointers (the plane arrays), a 64-bit size above 2^31 - 1 (-232), the
// size, then the plane pointers; the 32-bit planar members are thin forms of
// the _L ones.
#include "colorimetric/xyz_lab_luv.hpp"

#include "frame/block_images.hpp"
#include "frame/cpu.hpp"

namespace tpx::cie {
namespace {

const Rows kRows = TPX_CIE_TABLE;
const Rows& rows() { return *pick(TierKernels<const Rows*>{&kRows, TPX_X86(&kRowsAvx2), TPX_X86(&kRowsAvx512)}); }

template <class T>
TpxStatus planar(const T* const* src, int64_t srcStep, T* const* dst, int64_t dstStep, TpxSizeL roi, Row row) {
    TPX_CHECK(check::notNull(src, dst));
    TPX_CHECK(check::fits32(roi.width, roi.height));
    TPX_CHECK(check::size(roi));
    TPX_CHECK(check::planes(src, 3));
    TPX_CHECK(check::planes(dst, 3));
    return blocks::run(blocks::planes(src, elementStep<T>(srcStep), 3), blocks::planes(dst, elementStep<T>(dstStep), 3),
                       roi.width, roi.height, row);
}

}  // namespace
}  // namespace tpx::cie

using namespace tpx::cie;
using tpx::blocks::interleaved;

// Interleaved: source and destination element types, pixel elements, conversion, flags.
#define TPX_CIE_PIXELS(name, S, D, K, O, F)                                                                   \
    extern "C" TPXCC_API TpxStatus name(const S* pSrc, int srcStep, D* pDst, int dstStep, TpxSize roiSize) { \
        return interleaved(pSrc, srcStep, pDst, dstStep, roiSize, rows().r_##S##_##D##_##K##_##K##_##O##_##F); \
    }
#define TPX_CIE_TYPES(prefix, O)                          \
    TPX_CIE_PIXELS(prefix##_8u_C3R, uint8_t, uint8_t, 3, O, 0)    \
    TPX_CIE_PIXELS(prefix##_8u_AC4R, uint8_t, uint8_t, 4, O, 0)   \
    TPX_CIE_PIXELS(prefix##_16u_C3R, uint16_t, uint16_t, 3, O, 0) \
    TPX_CIE_PIXELS(prefix##_16u_AC4R, uint16_t, uint16_t, 4, O, 0) \
    TPX_CIE_PIXELS(prefix##_16s_C3R, int16_t, int16_t, 3, O, 0)   \
    TPX_CIE_PIXELS(prefix##_16s_AC4R, int16_t, int16_t, 4, O, 0)  \
    TPX_CIE_PIXELS(prefix##_32f_C3R, float, float, 3, O, 0)       \
    TPX_CIE_PIXELS(prefix##_32f_AC4R, float, float, 4, O, 0)

TPX_CIE_TYPES(tpxiRGBToXYZ, kToXyz)
TPX_CIE_TYPES(tpxiXYZToRGB, kFromXyz)
TPX_CIE_TYPES(tpxiRGBToLUV, kToLuv)
TPX_CIE_TYPES(tpxiLUVToRGB, kFromLuv)
TPX_CIE_PIXELS(tpxiBGRToLUV_8u_C3R, uint8_t, uint8_t, 3, kToLuv, 1)
TPX_CIE_PIXELS(tpxiBGRToLUV_32f_C3R, float, float, 3, kToLuv, 1)
TPX_CIE_PIXELS(tpxiLUVToBGR_8u_C3R, uint8_t, uint8_t, 3, kFromLuv, 2)
TPX_CIE_PIXELS(tpxiLUVToBGR_32f_C3R, float, float, 3, kFromLuv, 2)

// Lab: the RGB side in RGB (flags 0) or BGR order (1 source, 2 destination).
#define TPX_CIE_LAB(prefix, O, F)                                          \
    TPX_CIE_PIXELS(prefix##_8u_C3R, uint8_t, uint8_t, 3, O, F)             \
    TPX_CIE_PIXELS(prefix##_32f_C3R, float, float, 3, O, F)
TPX_CIE_LAB(tpxiRGBToLab, kToLab, 0)
TPX_CIE_LAB(tpxiBGRToLab, kToLab, 1)
TPX_CIE_LAB(tpxiLabToRGB, kFromLab, 0)
TPX_CIE_LAB(tpxiLabToBGR, kFromLab, 2)
TPX_CIE_PIXELS(tpxiBGRToLab_8u16u_C3R, uint8_t, uint16_t, 3, kToLab, 1)
TPX_CIE_PIXELS(tpxiLabToBGR_16u8u_C3R, uint16_t, uint8_t, 3, kFromLab, 2)

// Planar Lab: the _L members and their 32-bit forms.
#define TPX_CIE_PLANAR(name, T, row)                                                                            \
    extern "C" TPXCC_API TpxStatus name##_L(const T* const pSrc[3], int64_t srcStep, T* const pDst[3],         \
                                            int64_t dstStep, TpxSizeL roiSize) {                               \
        return planar(pSrc, srcStep, pDst, dstStep, roiSize, row);                                             \
    }                                                                                                          \
    extern "C" TPXCC_API TpxStatus name(const T* const pSrc[3], int srcStep, T* const pDst[3], int dstStep,    \
                                        TpxSize roiSize) {                                                     \
        return name##_L(pSrc, srcStep, pDst, dstStep, TpxSizeL{roiSize.width, roiSize.height});                \
    }
TPX_CIE_PLANAR(tpxiRGBToLab_32f_P3R, float, rows().r_float_float_1_1_kToLab_0)
TPX_CIE_PLANAR(tpxiLabToRGB_32f_P3R, float, rows().r_float_float_1_1_kFromLab_0)
TPX_CIE_PLANAR(tpxiRGBToLab_64f_P3R, double, row64<kToLab>)
TPX_CIE_PLANAR(tpxiLabToRGB_64f_P3R, double, row64<kFromLab>)
