// Gamma entries. 8u and 16u: null pointers, the size, plane pointers, then
// the steps (below 1: -16). 32f: first vMax - vMin > 0 (else -49), then the
// same. Steps count whole elements.
#include "tone/gamma.hpp"

#include "frame/block_images.hpp"
#include "frame/byte_table.hpp"
#include "frame/cpu.hpp"
#include "tone/gamma_table.hpp"

namespace tpx::gamma {
namespace {

const Rows kRows = TPX_GAMMA_TABLE;
const Rows& rows() { return *pick(TierKernels<const Rows*>{&kRows, TPX_X86(&kRowsAvx2), TPX_X86(&kRowsAvx512)}); }

// Table rows: K elements per pixel, the first three (all of a plane's)
// looked up, one by one in increasing address order, so that where the
// images overlap each sample is read after the writes before it. A row
// whose source and destination bytes are apart gives the same result a vector
// (8u) or eight samples (16u) at a time (rows run in order, so deciding row by row keeps the
// image's order too).
template <class T, int K>
void lookupApart(const T* __restrict s, T* __restrict d, Len n, const T* __restrict t) {
    if constexpr (sizeof(T) == 1) {
        if constexpr (K == 4) ::tpx::lookupBytes3of4(t, s, d, n);
        else ::tpx::lookupBytes(t, s, d, n * K);
    } else if constexpr (K == 4) {
        for (Len p = 0; p < n; ++p)
            for (int c = 0; c < 3; ++c) d[4 * p + c] = t[s[4 * p + c]];
    } else {
        const Len samples = n * K;
        Len i = 0;
        for (; i + 8 <= samples; i += 8) {
            T v[8];
            for (int k = 0; k < 8; ++k) v[k] = t[s[i + k]];
            for (int k = 0; k < 8; ++k) d[i + k] = v[k];
        }
        for (; i < samples; ++i) d[i] = t[s[i]];
    }
}
template <class T, int K>
void lookupRow(const void* const* sv, void* const* dv, Len n, const void* table) {
    const T* s = static_cast<const T*>(sv[0]);
    T* d = static_cast<T*>(dv[0]);
    const T* t = static_cast<const T*>(table);
    const auto at = [](const void* p) { return reinterpret_cast<uintptr_t>(p); };
    const uintptr_t bytes = uintptr_t(n * K) * sizeof(T);
    // In place (the same address), no sample is read after a write to it
    // either: each is read, then written, and later writes go further on.
    if (at(s) == at(d) || at(s) + bytes <= at(d) || at(d) + bytes <= at(s)) return lookupApart<T, K>(s, d, n, t);
    for (Len p = 0; p < n; ++p)
        for (int c = 0; c < (K == 4 ? 3 : K); ++c) d[K * p + c] = t[s[K * p + c]];
}

template <class T>
const T* tableOf(bool fwd) {
    if constexpr (sizeof(T) == 1) return fwd ? tone::kGammaFwd8u : tone::kGammaInv8u;
    else return fwd ? tone::kGammaFwd16u : tone::kGammaInv16u;
}

template <class T>
TpxStatus pixels(const T* src, int srcStep, T* dst, int dstStep, TpxSize roi, Row row, const void* args) {
    TPX_CHECK(check::notNull(src, dst));
    TPX_CHECK(check::size(roi));
    TPX_CHECK(check::steps(srcStep, dstStep));
    return blocks::run(blocks::pixels(src, elementStep<T>(srcStep)), blocks::pixels(dst, elementStep<T>(dstStep)),
                       roi.width, roi.height, row, args);
}
// Planes: the table rows take each plane as an image of its own, in order;
// the 32f rows the three at once.
template <class T>
TpxStatus planar(const T* const* src, int srcStep, T* const* dst, int dstStep, TpxSize roi, Row row, const void* args) {
    TPX_CHECK(check::notNull(src, dst));
    TPX_CHECK(check::size(roi));
    TPX_CHECK(check::planes(src, 3));
    TPX_CHECK(check::planes(dst, 3));
    TPX_CHECK(check::steps(srcStep, dstStep));
    const std::ptrdiff_t ss = elementStep<T>(srcStep), ds = elementStep<T>(dstStep);
    if constexpr (std::is_same_v<T, float>)
        return blocks::run(blocks::planes(src, ss, 3), blocks::planes(dst, ds, 3), roi.width, roi.height, row, args);
    for (int p = 0; p < 3; ++p)
        blocks::run(blocks::pixels(src[p], ss), blocks::pixels(dst[p], ds), roi.width, roi.height, row, args);
    return tpxStatusOk;
}
TpxStatus range(float vMin, float vMax) { return check::failIf(!(vMax - vMin > 0.0f), tpxStatusBadRange); }

// 32f: the range first, then the checks of the images.
template <class S, class D>
TpxStatus curve(S src, int srcStep, D dst, int dstStep, TpxSize roi, float vMin, float vMax, Row row) {
    TPX_CHECK(range(vMin, vMax));
    const Range r{vMin, vMax};
    if constexpr (std::is_pointer_v<std::remove_pointer_t<S>>) return planar(src, srcStep, dst, dstStep, roi, row, &r);
    else return pixels(src, srcStep, dst, dstStep, roi, row, &r);
}

}  // namespace
}  // namespace tpx::gamma

using namespace tpx::gamma;

// 8u and 16u members of one direction.
#define TPX_GAMMA_TABLES(prefix, T, fwd)                                                                        \
    extern "C" TPXCC_API TpxStatus prefix##_C3R(const T* pSrc, int srcStep, T* pDst, int dstStep, TpxSize roiSize) { \
        return pixels(pSrc, srcStep, pDst, dstStep, roiSize, lookupRow<T, 3>, tableOf<T>(fwd));                  \
    }                                                                                                            \
    extern "C" TPXCC_API TpxStatus prefix##_AC4R(const T* pSrc, int srcStep, T* pDst, int dstStep,              \
                                                 TpxSize roiSize) {                                              \
        return pixels(pSrc, srcStep, pDst, dstStep, roiSize, lookupRow<T, 4>, tableOf<T>(fwd));                  \
    }                                                                                                            \
    extern "C" TPXCC_API TpxStatus prefix##_P3R(const T* const pSrc[3], int srcStep, T* const pDst[3], int dstStep, \
                                                TpxSize roiSize) {                                               \
        return planar(pSrc, srcStep, pDst, dstStep, roiSize, lookupRow<T, 1>, tableOf<T>(fwd));                  \
    }                                                                                                            \
    extern "C" TPXCC_API TpxStatus prefix##_C3IR(T* pSrcDst, int srcDstStep, TpxSize roiSize) {                  \
        return prefix##_C3R(pSrcDst, srcDstStep, pSrcDst, srcDstStep, roiSize);                                 \
    }                                                                                                            \
    extern "C" TPXCC_API TpxStatus prefix##_AC4IR(T* pSrcDst, int srcDstStep, TpxSize roiSize) {                 \
        return prefix##_AC4R(pSrcDst, srcDstStep, pSrcDst, srcDstStep, roiSize);                                \
    }                                                                                                            \
    extern "C" TPXCC_API TpxStatus prefix##_IP3R(T* const pSrcDst[3], int srcDstStep, TpxSize roiSize) {         \
        return prefix##_P3R(pSrcDst, srcDstStep, pSrcDst, srcDstStep, roiSize);                                 \
    }
TPX_GAMMA_TABLES(tpxiGammaFwd_8u, uint8_t, true)
TPX_GAMMA_TABLES(tpxiGammaInv_8u, uint8_t, false)
TPX_GAMMA_TABLES(tpxiGammaFwd_16u, uint16_t, true)
TPX_GAMMA_TABLES(tpxiGammaInv_16u, uint16_t, false)

// 32f members of one direction: the range first.
#define TPX_GAMMA_FLOAT(prefix, F)                                                                              \
    extern "C" TPXCC_API TpxStatus prefix##_C3R(const Tpx32f* pSrc, int srcStep, Tpx32f* pDst, int dstStep,     \
                                                TpxSize roiSize, Tpx32f vMin, Tpx32f vMax) {                    \
        return curve(pSrc, srcStep, pDst, dstStep, roiSize, vMin, vMax, rows().r_3_##F);                         \
    }                                                                                                            \
    extern "C" TPXCC_API TpxStatus prefix##_AC4R(const Tpx32f* pSrc, int srcStep, Tpx32f* pDst, int dstStep,    \
                                                 TpxSize roiSize, Tpx32f vMin, Tpx32f vMax) {                   \
        return curve(pSrc, srcStep, pDst, dstStep, roiSize, vMin, vMax, rows().r_4_##F);                         \
    }                                                                                                            \
    extern "C" TPXCC_API TpxStatus prefix##_P3R(const Tpx32f* const pSrc[3], int srcStep, Tpx32f* const pDst[3], \
                                                int dstStep, TpxSize roiSize, Tpx32f vMin, Tpx32f vMax) {       \
        return curve(pSrc, srcStep, pDst, dstStep, roiSize, vMin, vMax, rows().r_1_##F);                         \
    }                                                                                                            \
    extern "C" TPXCC_API TpxStatus prefix##_C3IR(Tpx32f* pSrcDst, int srcDstStep, TpxSize roiSize, Tpx32f vMin,  \
                                                 Tpx32f vMax) {                                                  \
        return prefix##_C3R(pSrcDst, srcDstStep, pSrcDst, srcDstStep, roiSize, vMin, vMax);                     \
    }                                                                                                            \
    extern "C" TPXCC_API TpxStatus prefix##_AC4IR(Tpx32f* pSrcDst, int srcDstStep, TpxSize roiSize, Tpx32f vMin, \
                                                  Tpx32f vMax) {                                                 \
        return prefix##_AC4R(pSrcDst, srcDstStep, pSrcDst, srcDstStep, roiSize, vMin, vMax);                    \
    }                                                                                                            \
    extern "C" TPXCC_API TpxStatus prefix##_IP3R(Tpx32f* const pSrcDst[3], int srcDstStep, TpxSize roiSize,      \
                                                 Tpx32f vMin, Tpx32f vMax) {                                     \
        return prefix##_P3R(pSrcDst, srcDstStep, pSrcDst, srcDstStep, roiSize, vMin, vMax);                     \
    }
TPX_GAMMA_FLOAT(tpxiGammaFwd_32f, true)
TPX_GAMMA_FLOAT(tpxiGammaInv_32f, false)
