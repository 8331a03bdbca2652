// tpxiCFAToRGB_8u_C1C3R and tpxiCFAToRGB_16u_C1C3R: argument checks and the
// choice of the row function; the arithmetic is in cfa_to_rgb.hpp.
#include "demosaic/cfa_to_rgb.hpp"

namespace tpx::bayer {
namespace {

// Checks in order: pointers (-8), image at least 2 x 2 (-6), grid code (-5),
// rectangle origin inside the image (-6). A rectangle cut to nothing at the
// right or bottom writes nothing. Steps are not checked; the 16u member turns
// byte steps into element steps by an arithmetic shift.
template <class T>
TpxStatus cfaToRgbEntry(const T* pSrc, TpxRect srcRoi, TpxSize srcSize, int srcStep, T* pDst, int dstStep,
                        TpxBayerGrid grid, StretchFn<T> rowFn) {
    TPX_CHECK(check::notNull(pSrc, pDst));
    Region rg;
    TPX_CHECK(checkRegion(srcRoi, srcSize, int(grid), 2, rg));
    if (rg.empty()) return tpxStatusOk;
    constexpr int shift = sizeof(T) == 2 ? 1 : 0;
    cfaToRgb(pSrc, std::ptrdiff_t(srcStep >> shift), rg, Phase::of(grid), pDst,
             std::ptrdiff_t(dstStep >> shift), rowFn);
    return tpxStatusOk;
}

}  // namespace
}  // namespace tpx::bayer

using namespace tpx::bayer;

extern "C" TPXCC_API TpxStatus tpxiCFAToRGB_8u_C1C3R(const Tpx8u* pSrc, TpxRect srcRoi, TpxSize srcSize,
                                                     int srcStep, Tpx8u* pDst, int dstStep, TpxBayerGrid grid,
                                                     int /*interpolation: one method only*/) {
    static constexpr tpx::TierKernels<StretchFn<uint8_t>> rows{
        stretchRowScalar<uint8_t>, TPX_X86(stretchRow8_avx2), TPX_X86(stretchRow8_avx512)};
    return cfaToRgbEntry(pSrc, srcRoi, srcSize, srcStep, pDst, dstStep, grid, tpx::pick(rows));
}

extern "C" TPXCC_API TpxStatus tpxiCFAToRGB_16u_C1C3R(const Tpx16u* pSrc, TpxRect srcRoi, TpxSize srcSize,
                                                      int srcStep, Tpx16u* pDst, int dstStep, TpxBayerGrid grid,
                                                      int /*interpolation: one method only*/) {
    static constexpr tpx::TierKernels<StretchFn<uint16_t>> rows{
        stretchRowScalar<uint16_t>, TPX_X86(stretchRow16_avx2), TPX_X86(stretchRow16_avx512)};
    return cfaToRgbEntry(pSrc, srcRoi, srcSize, srcStep, pDst, dstStep, grid, tpx::pick(rows));
}
