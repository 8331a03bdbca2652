// Entries of the subsampled YCbCr to RGB decoders. Checks: null source (or
// plane array, step array) and destination -> -8; width or height < 1 -> -6;
// null plane pointers -> -8. Steps are used as given.
#include "frame/check.hpp"
#include "yuv/ycbcr_sub_to_rgb.hpp"

using namespace tpx;
using namespace tpx::yuv::sub;

namespace {

Src packedSrc(const Tpx8u* p, int step) { return {{p, nullptr, nullptr}, {step, 0, 0}}; }
Src planarSrc(const Tpx8u* const p[3], const int step[3]) { return {{p[0], p[1], p[2]}, {step[0], step[1], step[2]}}; }
Src twoPlaneSrc(const Tpx8u* y, int yStep, const Tpx8u* c, int cStep) { return {{y, c, nullptr}, {yStep, cStep, 0}}; }
Dst packedDst(Tpx8u* p, int step) { return {{p, nullptr, nullptr}, step}; }

}  // namespace

// Packed 4:2:2 source, interleaved destination.
#define TPX_DEC_PACKED(name, L, A, O)                                                                     \
    extern "C" TPXCC_API TpxStatus name(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roi) { \
        TPX_CHECK(check::notNull(pSrc, pDst));                                                           \
        TPX_CHECK(check::size(roi));                                                                     \
        return convert<L, A, O>(packedSrc(pSrc, srcStep), packedDst(pDst, dstStep), roi, 0);            \
    }
#define TPX_DEC_PACKED_A(name, L, A, O)                                                                   \
    extern "C" TPXCC_API TpxStatus name(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roi, \
                                        Tpx8u alpha) {                                                   \
        TPX_CHECK(check::notNull(pSrc, pDst));                                                           \
        TPX_CHECK(check::size(roi));                                                                     \
        return convert<L, A, O>(packedSrc(pSrc, srcStep), packedDst(pDst, dstStep), roi, alpha);        \
    }
// Packed 4:2:2 source, three destination planes R, G, B with one step.
#define TPX_DEC_PACKED_P3(name, L)                                                                        \
    extern "C" TPXCC_API TpxStatus name(const Tpx8u* pSrc, int srcStep, Tpx8u* const pDst[3], int dstStep, \
                                        TpxSize roi) {                                                   \
        TPX_CHECK(check::notNull(pSrc, pDst));                                                           \
        TPX_CHECK(check::size(roi));                                                                     \
        TPX_CHECK(check::planes(pDst, 3));                                                               \
        return convert<L, Bt601, PlanesRgb>(packedSrc(pSrc, srcStep), {{pDst[0], pDst[1], pDst[2]}, dstStep}, \
                                            roi, 0);                                                     \
    }
// Three source planes with a step array.
#define TPX_DEC_PLANAR(name, L, A, O)                                                                     \
    extern "C" TPXCC_API TpxStatus name(const Tpx8u* const pSrc[3], const int srcStep[3], Tpx8u* pDst,    \
                                        int dstStep, TpxSize roi) {                                      \
        TPX_CHECK(check::notNull(pSrc, srcStep, pDst));                                                  \
        TPX_CHECK(check::size(roi));                                                                     \
        TPX_CHECK(check::planes(pSrc, 3));                                                               \
        return convert<L, A, O>(planarSrc(pSrc, srcStep), packedDst(pDst, dstStep), roi, 0);            \
    }
#define TPX_DEC_PLANAR_A(name, L, A, O)                                                                   \
    extern "C" TPXCC_API TpxStatus name(const Tpx8u* const pSrc[3], const int srcStep[3], Tpx8u* pDst,    \
                                        int dstStep, TpxSize roi, Tpx8u alpha) {                         \
        TPX_CHECK(check::notNull(pSrc, srcStep, pDst));                                                  \
        TPX_CHECK(check::size(roi));                                                                     \
        TPX_CHECK(check::planes(pSrc, 3));                                                               \
        return convert<L, A, O>(planarSrc(pSrc, srcStep), packedDst(pDst, dstStep), roi, alpha);        \
    }
// Luma plane and interleaved chroma plane.
#define TPX_DEC_TWO_PLANE(name, L, O)                                                                     \
    extern "C" TPXCC_API TpxStatus name(const Tpx8u* pSrcY, int srcYStep, const Tpx8u* pSrcC, int srcCStep, \
                                        Tpx8u* pDst, int dstStep, TpxSize roi) {                         \
        TPX_CHECK(check::notNull(pSrcY, pSrcC, pDst));                                                   \
        TPX_CHECK(check::size(roi));                                                                     \
        return convert<L, Bt601, O>(twoPlaneSrc(pSrcY, srcYStep, pSrcC, srcCStep), packedDst(pDst, dstStep), \
                                    roi, 0);                                                             \
    }
#define TPX_DEC_TWO_PLANE_A(name, L, O)                                                                   \
    extern "C" TPXCC_API TpxStatus name(const Tpx8u* pSrcY, int srcYStep, const Tpx8u* pSrcC, int srcCStep, \
                                        Tpx8u* pDst, int dstStep, TpxSize roi, Tpx8u alpha) {            \
        TPX_CHECK(check::notNull(pSrcY, pSrcC, pDst));                                                   \
        TPX_CHECK(check::size(roi));                                                                     \
        return convert<L, Bt601, O>(twoPlaneSrc(pSrcY, srcYStep, pSrcC, srcCStep), packedDst(pDst, dstStep), \
                                    roi, alpha);                                                         \
    }

TPX_DEC_PACKED(tpxiYCbCr422ToRGB_8u_C2C3R, PkYCbCr, Bt601, RgbC3)
TPX_DEC_PACKED_A(tpxiYCbCr422ToRGB_8u_C2C4R, PkYCbCr, Bt601, RgbC4)
TPX_DEC_PACKED(tpxiYCbCr422ToBGR_8u_C2C3R, PkYCbCr, Bt601, BgrC3)
TPX_DEC_PACKED_A(tpxiYCbCr422ToBGR_8u_C2C4R, PkYCbCr, Bt601, BgrC4)
TPX_DEC_PACKED_P3(tpxiYCbCr422ToRGB_8u_C2P3R, PkYCbCr)
TPX_DEC_PACKED(tpxiYCrCb422ToRGB_8u_C2C3R, PkYCrCb, Bt601, RgbC3)
TPX_DEC_PACKED_A(tpxiYCrCb422ToRGB_8u_C2C4R, PkYCrCb, Bt601, RgbC4)
TPX_DEC_PACKED(tpxiYCrCb422ToBGR_8u_C2C3R, PkYCrCb, Bt601, BgrC3)
TPX_DEC_PACKED_A(tpxiYCrCb422ToBGR_8u_C2C4R, PkYCrCb, Bt601, BgrC4)
TPX_DEC_PACKED_P3(tpxiYCrCb422ToRGB_8u_C2P3R, PkYCrCb)
TPX_DEC_PACKED(tpxiCbYCr422ToRGB_8u_C2C3R, PkCbYCr, Bt601, RgbC3)
TPX_DEC_PACKED_A(tpxiCbYCr422ToBGR_8u_C2C4R, PkCbYCr, Bt601, BgrC4)
TPX_DEC_PACKED(tpxiCbYCr422ToBGR_709HDTV_8u_C2C3R, PkCbYCr, Reference709<Hdtv709>, BgrC3)
TPX_DEC_PACKED_A(tpxiCbYCr422ToBGR_709HDTV_8u_C2C4R, PkCbYCr, Reference709<Hdtv709>, BgrC4)

TPX_DEC_PLANAR(tpxiYCbCr422ToRGB_8u_P3C3R, Pl422, Bt601, RgbC3)
TPX_DEC_PLANAR(tpxiYCbCr422ToBGR_8u_P3C3R, Pl422, Bt601, BgrC3)
TPX_DEC_PLANAR(tpxiYCbCr420ToRGB_8u_P3C3R, Pl420, Bt601, RgbC3)
TPX_DEC_PLANAR(tpxiYCbCr420ToBGR_8u_P3C3R, Pl420, Bt601, BgrC3)
TPX_DEC_PLANAR_A(tpxiYCbCr420ToBGR_8u_P3C4R, Pl420, Bt601, BgrC4)
TPX_DEC_PLANAR(tpxiYCbCr420ToBGR_709CSC_8u_P3C3R, Pl420, Csc, BgrC3)
TPX_DEC_PLANAR_A(tpxiYCbCr420ToBGR_709HDTV_8u_P3C4R, Pl420, Hdtv, BgrC4)
TPX_DEC_PLANAR_A(tpxiYCrCb420ToRGB_8u_P3C4R, Pl420Cr, Bt601, RgbC4)
TPX_DEC_PLANAR_A(tpxiYCrCb420ToBGR_Filter_8u_P3C4R, Filter420, Bt601, BgrC4)
TPX_DEC_PLANAR(tpxiYCbCr411ToBGR_8u_P3C3R, Pl411, Bt601, BgrC3)
TPX_DEC_PLANAR_A(tpxiYCbCr411ToBGR_8u_P3C4R, Pl411, Bt601, BgrC4)

TPX_DEC_TWO_PLANE(tpxiYCbCr420ToRGB_8u_P2C3R, TpCbCr, RgbC3)
TPX_DEC_TWO_PLANE_A(tpxiYCbCr420ToRGB_8u_P2C4R, TpCbCr, RgbC4)
TPX_DEC_TWO_PLANE(tpxiYCbCr420ToBGR_8u_P2C3R, TpCbCr, BgrC3)
TPX_DEC_TWO_PLANE_A(tpxiYCbCr420ToBGR_8u_P2C4R, TpCbCr, BgrC4)
TPX_DEC_TWO_PLANE(tpxiYCrCb420ToRGB_8u_P2C3R, TpCrCb, RgbC3)
TPX_DEC_TWO_PLANE_A(tpxiYCrCb420ToRGB_8u_P2C4R, TpCrCb, RgbC4)
TPX_DEC_TWO_PLANE(tpxiYCrCb420ToBGR_8u_P2C3R, TpCrCb, BgrC3)
TPX_DEC_TWO_PLANE_A(tpxiYCrCb420ToBGR_8u_P2C4R, TpCrCb, BgrC4)
