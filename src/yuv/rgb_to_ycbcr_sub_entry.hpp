// The entry layer of the RGB to subsampled YCbCr encoders, one form per kind
// of destination. Checks, in order: null pointers and arrays (-8), the size
// minimum (-6), null plane pointers inside arrays (-8); steps are used as
// given. The status after the work reports partial blocks of 4:2:0 (odd width
// or height) and 4:1:1 (width not a multiple of 4) as +35.
#pragma once

#include "frame/check.hpp"
#include "yuv/rgb_to_ycbcr_sub.hpp"

namespace tpx::yuv::enc {

// 4:2:0 needs 2 x 2 and packed 4:2:2 a width of 2; planar 4:2:2 and 4:1:1
// accept any size (a row without a whole block is left alone).
template <class L>
constexpr int minWidth() {
    return L::sampling == Sampling::Block || L::out == Out::Packed ? 2 : 1;
}
template <class L>
constexpr int minHeight() {
    return L::sampling == Sampling::Block ? 2 : 1;
}

template <class L>
TpxStatus run(const Image& im, const Arith& a) {
    encode<L>(im, a, simdRow<L>());
    if constexpr (L::sampling == Sampling::Block)
        return (im.width | im.height) & 1 ? tpxStatusOddSize : tpxStatusOk;
    else if constexpr (L::sampling == Sampling::Quad)
        return im.width % 4 ? tpxStatusOddSize : tpxStatusOk;
    else
        return tpxStatusOk;
}

// Interleaved source to three planes; `crFirst` for plane arrays Y, Cr, Cb.
template <class L>
TpxStatus toPlanes(const uint8_t* src, int srcStep, uint8_t* const dst[3], const int dstStep[3], TpxSize roi,
                   const Arith& a, bool crFirst = false) {
    TPX_CHECK(check::notNull(src, dst, dstStep));
    TPX_CHECK(check::size(roi, minWidth<L>(), minHeight<L>()));
    TPX_CHECK(check::planes(dst, 3));
    const int cb = crFirst ? 2 : 1, cr = crFirst ? 1 : 2;
    return run<L>({{src, nullptr, nullptr}, srcStep, {dst[0], dst[cb], dst[cr]},
                   {dstStep[0], dstStep[cb], dstStep[cr]}, roi.width, roi.height}, a);
}

// Interleaved source to a luma plane and an interleaved CbCr plane.
template <class L>
TpxStatus toTwoPlanes(const uint8_t* src, int srcStep, uint8_t* dstY, int dstYStep, uint8_t* dstC, int dstCStep,
                      TpxSize roi, const Arith& a) {
    TPX_CHECK(check::notNull(src, dstY, dstC));
    TPX_CHECK(check::size(roi, minWidth<L>(), minHeight<L>()));
    return run<L>({{src, nullptr, nullptr}, srcStep, {dstY, dstC, nullptr}, {dstYStep, dstCStep, 0}, roi.width,
                   roi.height}, a);
}

// Interleaved source to packed 4:2:2.
template <class L>
TpxStatus toPacked(const uint8_t* src, int srcStep, uint8_t* dst, int dstStep, TpxSize roi, const Arith& a) {
    TPX_CHECK(check::notNull(src, dst));
    TPX_CHECK(check::size(roi, minWidth<L>(), minHeight<L>()));
    return run<L>({{src, nullptr, nullptr}, srcStep, {dst, nullptr, nullptr}, {dstStep, 0, 0}, roi.width,
                   roi.height}, a);
}

// Source planes R, G, B to packed 4:2:2.
template <class L>
TpxStatus planesToPacked(const uint8_t* const src[3], int srcStep, uint8_t* dst, int dstStep, TpxSize roi,
                         const Arith& a) {
    TPX_CHECK(check::notNull(src, dst));
    TPX_CHECK(check::size(roi, minWidth<L>(), minHeight<L>()));
    TPX_CHECK(check::planes(src, 3));
    return run<L>({{src[0], src[1], src[2]}, srcStep, {dst, nullptr, nullptr}, {dstStep, 0, 0}, roi.width,
                   roi.height}, a);
}

}  // namespace tpx::yuv::enc
