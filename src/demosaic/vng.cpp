// VNG demosaicing members: entries and the driver over rows and column chunks.
#include "demosaic/bayer_frame.hpp"
#include "demosaic/vng.hpp"
#include "frame/cpu.hpp"
#include "frame/image.hpp"

#include <cmath>
#include <cstring>

namespace tpx::vng {

// SIMD row functions (vng_avx2.cpp, vng_avx512.cpp).
int row8uAvx2(const uint8_t* const* rows, int n, bool firstGreen, bool rowRed, uint8_t* dst);
int row8uAvx512(const uint8_t* const* rows, int n, bool firstGreen, bool rowRed, uint8_t* dst);
int row16uAvx2(const uint16_t* const* rows, int n, bool firstGreen, bool rowRed, uint16_t* dst);
int row16uAvx512(const uint16_t* const* rows, int n, bool firstGreen, bool rowRed, uint16_t* dst);

namespace {

template <class T>
RowFn<T> chooseRow();
template <>
RowFn<uint8_t> chooseRow<uint8_t>() {
    return pick(TierKernels<RowFn<uint8_t>>{rowScalar<uint8_t>, TPX_X86(row8uAvx2), TPX_X86(row8uAvx512)});
}
template <>
RowFn<uint16_t> chooseRow<uint16_t>() {
    return pick(TierKernels<RowFn<uint16_t>>{rowScalar<uint16_t>, TPX_X86(row16uAvx2), TPX_X86(row16uAvx512)});
}

// Channel c = saturate(round-half-even(scale[c] * value)) over n BGRA pixels.
template <class T>
void applyScale(T* px, int n, const Tpx32f scale[4]) {
    constexpr float kMax = sizeof(T) == 1 ? 255.0f : 65535.0f;
    for (int i = 0; i < 4 * n; ++i) {
        float f = scale[i & 3] * float(px[i]);
        f = f > 0.0f ? f : 0.0f;  // also NaN -> 0
        f = f < kMax ? f : kMax;
        px[i] = T(std::nearbyint(f));
    }
}

// Column chunk of one pass: the five rows of a chunk are read in place when
// the chunk's two-column margins lie inside the image and the rows are aligned
// to the element, else copied with the edge mirrored. A destination whose rows
// are not aligned to the element (16u images with an odd byte step) gets each
// chunk through an aligned copy.
constexpr int kChunk = 1024;

template <class T>
void run(const T* src, std::ptrdiff_t srcStep, T* dst, std::ptrdiff_t dstStep, const bayer::Region& r, bayer::Phase ph,
         const Tpx32f scale[4]) {
    const RowFn<T> simdRow = chooseRow<T>();
    const bool plain = scale[0] == 1.0f && scale[1] == 1.0f && scale[2] == 1.0f && scale[3] == 1.0f;
    T pad[5][kChunk + 4];
    T staged[4 * kChunk];
    const bool srcAligned = alignedRows(src, srcStep), dstAligned = alignedRows(dst, dstStep);
    for (int64_t oy = 0; oy < r.height; ++oy) {
        const int64_t y = r.y + oy;
        const T* srcRows[5];
        for (int k = 0; k < 5; ++k) srcRows[k] = rowAt(src, srcStep, bayer::mirror(y - 2 + k, r.imageHeight));
        T* out = rowAt(dst, dstStep, oy);
        const bool rowRed = ph.redRow(y);
        for (int64_t ox = 0; ox < r.width; ox += kChunk) {
            const int64_t x = r.x + ox;
            const int n = int(r.width - ox < kChunk ? r.width - ox : kChunk);
            const T* rows[5];
            if (srcAligned && x >= 2 && x + n + 2 <= r.imageWidth) {
                for (int k = 0; k < 5; ++k) rows[k] = srcRows[k] + (x - 2);
            } else {
                // Samples inside the image are copied as they are, the few
                // beyond the edge through the mirror.
                const int64_t lo = x - 2 < 0 ? 0 : x - 2;
                const int64_t hi = x + n + 2 > r.imageWidth ? r.imageWidth : x + n + 2;
                for (int k = 0; k < 5; ++k) {
                    std::memcpy(pad[k] + (lo - (x - 2)), srcRows[k] + lo, size_t(hi - lo) * sizeof(T));
                    for (int64_t i = x - 2; i < lo; ++i)
                        pad[k][i - (x - 2)] = loadAt(srcRows[k], bayer::mirror(i, r.imageWidth));
                    for (int64_t i = hi; i < x + n + 2; ++i)
                        pad[k][i - (x - 2)] = loadAt(srcRows[k], bayer::mirror(i, r.imageWidth));
                    rows[k] = pad[k];
                }
            }
            const bool firstGreen = ph.at(x, y) == bayer::Colour::Green;
            T* const target = out + 4 * ox;
            T* o = dstAligned ? target : staged;
            const int done = simdRow(rows, n, firstGreen, rowRed, o);
            if (done < n) {
                const T* rest[5];
                for (int k = 0; k < 5; ++k) rest[k] = rows[k] + done;
                rowScalar<T>(rest, n - done, ((done & 1) == 0) == firstGreen, rowRed, o + 4 * done);
            }
            if (!plain) applyScale(o, n, scale);
            if (!dstAligned) std::memcpy(target, staged, size_t(4 * n) * sizeof(T));
        }
    }
}

// The checks of every member in order, then the work. The 64-bit members add
// the range check of their sizes after the null pointers.
template <class T, class Rect, class Size, class Step>
TpxStatus entry(const T* pSrc, Rect roi, Size size, Step srcStep, const Tpx32f scale[4], T* pDst, Step dstStep,
                TpxBayerGrid grid) {
    TPX_CHECK(check::notNull(pSrc, pDst, scale));
    if constexpr (sizeof(Step) == 8)
        TPX_CHECK(check::fits32(size.width, size.height, roi.x, roi.y, roi.width, roi.height));
    bayer::Region r;
    TPX_CHECK(bayer::checkRegion(roi, size, int(grid), bayer::kHighQualityMinSide, r));
    if (r.empty()) return tpxStatusOk;
    run(pSrc, srcStep, pDst, dstStep, r, bayer::Phase::of(grid), scale);
    return tpxStatusOk;
}

}  // namespace
}  // namespace tpx::vng

using tpx::vng::entry;

extern "C" TPXCC_API TpxStatus tpxiCFAToBGRA_VNG_8u_C1C4R(const uint8_t* pSrc, TpxRect srcRoi, TpxSize srcSize,
                                                           int srcStep, const Tpx32f scale[4], uint8_t* pDst,
                                                           int dstStep, TpxBayerGrid grid) {
    return entry(pSrc, srcRoi, srcSize, srcStep, scale, pDst, dstStep, grid);
}

extern "C" TPXCC_API TpxStatus tpxiCFAToBGRA_VNG_16u_C1C4R(const uint16_t* pSrc, TpxRect srcRoi, TpxSize srcSize,
                                                            int srcStep, const Tpx32f scale[4], uint16_t* pDst,
                                                            int dstStep, TpxBayerGrid grid) {
    return entry(pSrc, srcRoi, srcSize, srcStep, scale, pDst, dstStep, grid);
}

extern "C" TPXCC_API TpxStatus tpxiCFAToBGRA_VNG_8u_C1C4R_L(const uint8_t* pSrc, TpxRectL srcRoi, TpxSizeL srcSize,
                                                             int64_t srcStep, const Tpx32f scale[4], uint8_t* pDst,
                                                             int64_t dstStep, TpxBayerGrid grid) {
    return entry(pSrc, srcRoi, srcSize, srcStep, scale, pDst, dstStep, grid);
}

extern "C" TPXCC_API TpxStatus tpxiCFAToBGRA_VNG_16u_C1C4R_L(const uint16_t* pSrc, TpxRectL srcRoi,
                                                              TpxSizeL srcSize, int64_t srcStep,
                                                              const Tpx32f scale[4], uint16_t* pDst,
                                                              int64_t dstStep, TpxBayerGrid grid) {
    return entry(pSrc, srcRoi, srcSize, srcStep, scale, pDst, dstStep, grid);
}
