// Colour twist entries: null pointers (images, the matrix, plane pointers),
// then the size, then the steps (below 1: -16). Steps count whole elements.
// In-place members are the same rows with the image as source and
// destination (every block is read before it is written).
#include "tone/color_twist.hpp"

#include "frame/block_images.hpp"
#include "frame/cpu.hpp"
#include "frame/stream.hpp"

#include <algorithm>

namespace tpx::twist {
namespace {

const Rows kRows = TPX_TWIST_TABLE;
const Rows& rows() { return *pick(TierKernels<const Rows*>{&kRows, TPX_X86(&kRowsAvx2), TPX_X86(&kRowsAvx512)}); }

const float* matrix(const void* t) { return static_cast<const float*>(t); }

template <class T>
TpxStatus pixels(const T* src, int srcStep, T* dst, int dstStep, TpxSize roi, const void* t, Row row) {
    TPX_CHECK(check::notNull(src, dst, matrix(t)));
    TPX_CHECK(check::size(roi));
    TPX_CHECK(check::steps(srcStep, dstStep));
    return blocks::run(blocks::pixels(src, elementStep<T>(srcStep)), blocks::pixels(dst, elementStep<T>(dstStep)),
                       roi.width, roi.height, row, t);
}

template <class T>
TpxStatus planar(const T* const* src, int srcStep, T* const* dst, int dstStep, TpxSize roi, const void* t, Row row) {
    TPX_CHECK(check::notNull(src, dst, matrix(t)));
    TPX_CHECK(check::planes(src, 3));
    TPX_CHECK(check::planes(dst, 3));
    TPX_CHECK(check::size(roi));
    TPX_CHECK(check::steps(srcStep, dstStep));
    return blocks::run(blocks::planes(src, elementStep<T>(srcStep), 3), blocks::planes(dst, elementStep<T>(dstStep), 3),
                       roi.width, roi.height, row, t);
}

// 32f C3: rows as one run when both steps are the row's 12 W bytes; from
// 34993 samples on, results go out through non-temporal stores.
TpxStatus c3f(const float* src, int srcStep, float* dst, int dstStep, TpxSize roi, const void* t) {
    TPX_CHECK(check::notNull(src, dst, matrix(t)));
    TPX_CHECK(check::size(roi));
    TPX_CHECK(check::steps(srcStep, dstStep));
    const int64_t rowBytes = int64_t(roi.width) * 12;
    const bool run = srcStep == dstStep && srcStep == rowBytes;
    const int64_t width = run ? int64_t(roi.width) * roi.height : roi.width, height = run ? 1 : roi.height;
    const bool nt = int64_t(roi.width) * 3 * roi.height >= 34993;
    const Row row = rows().r_float_3;
    const NearestRounding nearest;
    constexpr Len kChunk = 1024;  // pixels
    alignas(64) float staged[3 * kChunk];
    for (int64_t y = 0; y < height; ++y) {
        const float* s = rowAt(src, elementStep<float>(srcStep), y);
        float* d = rowAt(dst, elementStep<float>(dstStep), y);
        for (int64_t x = 0; x < width; x += kChunk) {
            const Len n = std::min<int64_t>(kChunk, width - x);
            const void* in[4] = {s + 3 * x, nullptr, nullptr, nullptr};
            void* out[4] = {nt ? staged : d + 3 * x, nullptr, nullptr, nullptr};
            row(in, out, n, t);
            if (nt) stream::copyRow(d + 3 * x, staged, size_t(n) * 12, true);
        }
    }
    stream::fence(nt);
    return tpxStatusOk;
}

// C4 with the 4 x 4 matrix: one run of W x H pixels when both steps are W x 4 bytes.
TpxStatus c4f(const float* src, int srcStep, float* dst, int dstStep, TpxSize roi, const void* t) {
    TPX_CHECK(check::notNull(src, dst, matrix(t)));
    TPX_CHECK(check::size(roi));
    TPX_CHECK(check::steps(srcStep, dstStep));
    const bool run = srcStep == dstStep && int64_t(srcStep) == int64_t(roi.width) * 4;
    const Row row = rows().c4;
    if (run) {
        const void* in[4] = {src, nullptr, nullptr, nullptr};
        void* out[4] = {dst, nullptr, nullptr, nullptr};
        row(in, out, int64_t(roi.width) * roi.height, t);
        return tpxStatusOk;
    }
    return blocks::run(blocks::pixels(src, elementStep<float>(srcStep)), blocks::pixels(dst, elementStep<float>(dstStep)),
                       roi.width, roi.height, row, t);
}

}  // namespace
}  // namespace tpx::twist

using namespace tpx::twist;

// One element type: C3, AC4, P3 and their in-place forms.
#define TPX_TWIST_TYPE(prefix, T)                                                                                 \
    extern "C" TPXCC_API TpxStatus prefix##_AC4R(const T* pSrc, int srcStep, T* pDst, int dstStep, TpxSize roiSize, \
                                                 const Tpx32f twist[3][4]) {                                         \
        return pixels(pSrc, srcStep, pDst, dstStep, roiSize, twist, rows().r_##T##_4);                               \
    }                                                                                                                \
    extern "C" TPXCC_API TpxStatus prefix##_P3R(const T* const pSrc[3], int srcStep, T* const pDst[3], int dstStep, \
                                                TpxSize roiSize, const Tpx32f twist[3][4]) {                          \
        return planar(pSrc, srcStep, pDst, dstStep, roiSize, twist, rows().r_##T##_1);                               \
    }                                                                                                                \
    extern "C" TPXCC_API TpxStatus prefix##_C3IR(T* pSrcDst, int srcDstStep, TpxSize roiSize,                       \
                                                 const Tpx32f twist[3][4]) {                                         \
        return prefix##_C3R(pSrcDst, srcDstStep, pSrcDst, srcDstStep, roiSize, twist);                               \
    }                                                                                                                \
    extern "C" TPXCC_API TpxStatus prefix##_AC4IR(T* pSrcDst, int srcDstStep, TpxSize roiSize,                      \
                                                  const Tpx32f twist[3][4]) {                                        \
        return prefix##_AC4R(pSrcDst, srcDstStep, pSrcDst, srcDstStep, roiSize, twist);                              \
    }                                                                                                                \
    extern "C" TPXCC_API TpxStatus prefix##_IP3R(T* const pSrcDst[3], int srcDstStep, TpxSize roiSize,              \
                                                 const Tpx32f twist[3][4]) {                                         \
        return prefix##_P3R(pSrcDst, srcDstStep, pSrcDst, srcDstStep, roiSize, twist);                               \
    }
#define TPX_TWIST_C3(prefix, T)                                                                                    \
    extern "C" TPXCC_API TpxStatus prefix##_C3R(const T* pSrc, int srcStep, T* pDst, int dstStep, TpxSize roiSize, \
                                                const Tpx32f twist[3][4]) {                                          \
        return pixels(pSrc, srcStep, pDst, dstStep, roiSize, twist, rows().r_##T##_3);                               \
    }

TPX_TWIST_C3(tpxiColorTwist32f_8u, uint8_t)
TPX_TWIST_C3(tpxiColorTwist32f_16u, uint16_t)
TPX_TWIST_C3(tpxiColorTwist32f_16s, int16_t)
TPX_TWIST_TYPE(tpxiColorTwist32f_8u, uint8_t)
TPX_TWIST_TYPE(tpxiColorTwist32f_16u, uint16_t)
TPX_TWIST_TYPE(tpxiColorTwist32f_16s, int16_t)

extern "C" TPXCC_API TpxStatus tpxiColorTwist_32f_C3R(const Tpx32f* pSrc, int srcStep, Tpx32f* pDst, int dstStep,
                                                       TpxSize roiSize, const Tpx32f twist[3][4]) {
    return c3f(pSrc, srcStep, pDst, dstStep, roiSize, twist);
}
TPX_TWIST_TYPE(tpxiColorTwist_32f, float)

extern "C" TPXCC_API TpxStatus tpxiColorTwist_32f_C4R(const Tpx32f* pSrc, int srcStep, Tpx32f* pDst, int dstStep,
                                                       TpxSize roiSize, const Tpx32f twist[4][4]) {
    return c4f(pSrc, srcStep, pDst, dstStep, roiSize, twist);
}
