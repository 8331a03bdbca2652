// Tone mapping entries: null pointers, the size; then the statistic over the
// ROI: negative gives +1 with the destination untouched, not above the
// smallest normal float (NaN too) fills the ROI with 0, otherwise every
// sample is converted.
#include "tone/tone_map.hpp"

#include "frame/check.hpp"
#include "frame/cpu.hpp"
#include "frame/image.hpp"
#include "frame/stream.hpp"
#include "tpxcc.h"

namespace tpx::tonemap {
namespace {

const Passes kPasses = TPX_TONEMAP_PASSES;
const Passes& passes() {
    return *pick(TierKernels<const Passes*>{&kPasses, TPX_X86(&kPassesAvx2), TPX_X86(&kPassesAvx512)});
}

constexpr float kSmallestNormal = 1.1754944e-38f;

// The ROI filled with 0: one run when the rows are contiguous; streamed from
// 524289 bytes on when the fill exceeds the largest cache.
void zeroFill(uint8_t* dst, int dstStep, TpxSize roi) {
    const size_t bytes = size_t(roi.width) * size_t(roi.height);
    const bool nt = bytes >= 524289 && stream::worthStreaming(bytes, 524288);
    if (dstStep == roi.width) {
        stream::fillRow8(dst, 0, bytes, nt);
    } else {
        for (int y = 0; y < roi.height; ++y) stream::fillRow8(rowAt(dst, dstStep, y), 0, size_t(roi.width), nt);
    }
    stream::fence(nt);
}

template <bool Linear>
TpxStatus toneMap(const float* src, int srcStep, uint8_t* dst, int dstStep, TpxSize roi) {
    TPX_CHECK(check::notNull(src, dst));
    TPX_CHECK(check::size(roi));
    const Passes& p = passes();
    const std::ptrdiff_t ss = elementStep<float>(srcStep);
    double statistic;
    if constexpr (Linear) {
        float m = src[0];
        for (int y = 0; y < roi.height; ++y) m = p.maximum(rowAt(src, ss, y), roi.width, m);
        statistic = m;
    } else {
        double sums[8] = {};
        for (int y = 0; y < roi.height; ++y) p.sum(rowAt(src, ss, y), roi.width, sums);
        const double total = ((sums[0] + sums[1]) + (sums[2] + sums[3])) + ((sums[4] + sums[5]) + (sums[6] + sums[7]));
        const int32_t count = int32_t(uint32_t(roi.width) * uint32_t(roi.height));  // a 32-bit product
        statistic = 2.0 * (total / count);
    }
    if (statistic < 0.0) return tpxStatusNoOperation;
    if (!(statistic > double(kSmallestNormal))) return zeroFill(dst, dstStep, roi), tpxStatusOk;
    const float factor = Linear ? 1.0f / float(statistic) : float(127.5 / (statistic / 2.0));
    for (int y = 0; y < roi.height; ++y)
        (Linear ? p.linear : p.mean)(rowAt(src, ss, y), rowAt(dst, dstStep, y), roi.width, factor);
    return tpxStatusOk;
}

}  // namespace
}  // namespace tpx::tonemap

extern "C" TPXCC_API TpxStatus tpxiToneMapLinear_32f8u_C1R(const Tpx32f* pSrc, int srcStep, Tpx8u* pDst, int dstStep,
                                                            TpxSize roiSize) {
    return tpx::tonemap::toneMap<true>(pSrc, srcStep, pDst, dstStep, roiSize);
}
extern "C" TPXCC_API TpxStatus tpxiToneMapMean_32f8u_C1R(const Tpx32f* pSrc, int srcStep, Tpx8u* pDst, int dstStep,
                                                          TpxSize roiSize) {
    return tpx::tonemap::toneMap<false>(pSrc, srcStep, pDst, dstStep, roiSize);
}
