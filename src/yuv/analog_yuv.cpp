// Analog YUV entries: null pointers (images and plane arrays), the size, the
// plane pointers; steps are used as given. The members without steps take
// whole images: packed RGB rows of 3 W bytes, Y rows of W and chroma rows of
// W / 2. 4:2:0 members convert whole 2 x 2 blocks (+35 when W or H is odd);
// 4:2:2 members whole pairs (the packed decoder also an odd last pixel).
#include "yuv/analog_yuv.hpp"

#include "frame/check.hpp"
#include "frame/cpu.hpp"
#include "frame/image.hpp"
#include "tpxcc.h"

namespace tpx::analog {
namespace {

const Rows kRows = TPX_ANALOG_TABLE;
const Rows& rows() { return *pick(TierKernels<const Rows*>{&kRows, TPX_X86(&kRowsAvx2), TPX_X86(&kRowsAvx512)}); }

// An image as channel pointers: an interleaved one by its pointer (the rows
// know the channel offsets), a planar one by its planes, each with a step.
struct Image {
    uint8_t* c[4];
    std::ptrdiff_t step[4];
    void rowOf(std::ptrdiff_t y, uint8_t* out[4]) const {
        for (int i = 0; i < 4; ++i) out[i] = c[i] ? rowAt(c[i], step[i], y) : nullptr;
    }
};
uint8_t* mut(const uint8_t* p) { return const_cast<uint8_t*>(p); }
Image pixels(const uint8_t* p, int step) { return {{mut(p), nullptr, nullptr, nullptr}, {step, 0, 0, 0}}; }
Image planes(const uint8_t* const* p, int step, int n = 3) {
    return {{mut(p[0]), mut(p[1]), mut(p[2]), n == 4 ? mut(p[3]) : nullptr}, {step, step, step, step}};
}
Image planes(const uint8_t* const* p, const int* steps) {
    return {{mut(p[0]), mut(p[1]), mut(p[2]), nullptr}, {steps[0], steps[1], steps[2], 0}};
}

TpxStatus rows444(const Image& s, const Image& d, TpxSize roi, Row444 row, uint8_t alpha = 0) {
    uint8_t *a[4], *b[4];
    for (int y = 0; y < roi.height; ++y) {
        s.rowOf(y, a), d.rowOf(y, b);
        row(a, b, roi.width, alpha);
    }
    return tpxStatusOk;
}
TpxStatus rows422(const Image& s, const Image& d, TpxSize roi, Row422 row) {
    uint8_t *a[4], *b[4];
    for (int y = 0; y < roi.height; ++y) {
        s.rowOf(y, a), d.rowOf(y, b);
        row(a, b, roi.width);
    }
    return tpxStatusOk;
}
// Pairs of rows: the source rows 2j and 2j+1, the destination rows, and the
// chroma row j (of whichever side is subsampled).
TpxStatus rows420(const Image& s, const Image& d, TpxSize roi, Row420 row, bool encode, uint8_t alpha = 0) {
    // The side without subsampling gives two rows; the subsampled one two
    // luma rows and one row of each chroma.
    const Image& full = encode ? s : d;
    const Image& sub = encode ? d : s;
    uint8_t *a0[4], *a1[4], *b0[4], *b1[4];
    uint8_t** full0 = encode ? a0 : b0;
    uint8_t** full1 = encode ? a1 : b1;
    uint8_t** sub0 = encode ? b0 : a0;
    uint8_t** sub1 = encode ? b1 : a1;
    for (int j = 0; j < roi.height / 2; ++j) {
        full.rowOf(2 * j, full0), full.rowOf(2 * j + 1, full1);
        sub0[0] = rowAt(sub.c[0], sub.step[0], 2 * j), sub1[0] = rowAt(sub.c[0], sub.step[0], 2 * j + 1);
        for (int c = 1; c <= 2; ++c) sub0[c] = sub1[c] = rowAt(sub.c[c], sub.step[c], j);
        sub0[3] = sub1[3] = nullptr;
        row(a0, a1, b0, b1, roi.width / 2, alpha);
    }
    return (roi.width | roi.height) & 1 ? tpxStatusOddSize : tpxStatusOk;
}

// Derived steps of the members without steps.
int chromaStep(TpxSize roi) { return roi.width / 2; }
const int* stepsOf(TpxSize roi, int* s) {
    s[0] = roi.width, s[1] = s[2] = chromaStep(roi);
    return s;
}

}  // namespace
}  // namespace tpx::analog

using namespace tpx;
using namespace tpx::analog;

#define TPX_ROW(fn, a, b, c, d) rows().fn##_##a##_##b##_##c##_##d
#define TPX_CHECKED(minW, minH, ...)                             \
    TPX_CHECK(check::notNull(__VA_ARGS__));                      \
    TPX_CHECK(check::size(roiSize, minW, minH));

// ---- 4:4:4 --------------------------------------------------------------------------
extern "C" TPXCC_API TpxStatus tpxiRGBToYUV_8u_C3R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep,
                                                   TpxSize roiSize) {
    TPX_CHECKED(1, 1, pSrc, pDst)
    return rows444(pixels(pSrc, srcStep), pixels(pDst, dstStep), roiSize, TPX_ROW(encode444, 3, 0, 3, kNone));
}
extern "C" TPXCC_API TpxStatus tpxiRGBToYUV_8u_AC4R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep,
                                                    TpxSize roiSize) {
    TPX_CHECKED(1, 1, pSrc, pDst)
    return rows444(pixels(pSrc, srcStep), pixels(pDst, dstStep), roiSize, TPX_ROW(encode444, 4, 0, 4, kKeep));
}
extern "C" TPXCC_API TpxStatus tpxiRGBToYUV_8u_C3P3R(const Tpx8u* pSrc, int srcStep, Tpx8u* const pDst[3], int dstStep,
                                                     TpxSize roiSize) {
    TPX_CHECKED(1, 1, pSrc, pDst)
    TPX_CHECK(check::planes(pDst, 3));
    return rows444(pixels(pSrc, srcStep), planes(pDst, dstStep), roiSize, TPX_ROW(encode444, 3, 0, 1, kNone));
}
extern "C" TPXCC_API TpxStatus tpxiRGBToYUV_8u_P3R(const Tpx8u* const pSrc[3], int srcStep, Tpx8u* const pDst[3],
                                                   int dstStep, TpxSize roiSize) {
    TPX_CHECKED(1, 1, pSrc, pDst)
    TPX_CHECK(check::planes(pSrc, 3));
    TPX_CHECK(check::planes(pDst, 3));
    return rows444(planes(pSrc, srcStep), planes(pDst, dstStep), roiSize, TPX_ROW(encode444, 1, 0, 1, kNone));
}
extern "C" TPXCC_API TpxStatus tpxiRGBToYUV_8u_AC4P4R(const Tpx8u* pSrc, int srcStep, Tpx8u* const pDst[4],
                                                      int dstStep, TpxSize roiSize) {
    TPX_CHECKED(1, 1, pSrc, pDst)
    TPX_CHECK(check::planes(pDst, 4));
    return rows444(pixels(pSrc, srcStep), planes(pDst, dstStep, 4), roiSize, TPX_ROW(encode444, 4, 0, 1, kCopy));
}
extern "C" TPXCC_API TpxStatus tpxiYUVToRGB_8u_C3R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep,
                                                   TpxSize roiSize) {
    TPX_CHECKED(1, 1, pSrc, pDst)
    return rows444(pixels(pSrc, srcStep), pixels(pDst, dstStep), roiSize, TPX_ROW(decode444, 3, 0, 3, kNone));
}
extern "C" TPXCC_API TpxStatus tpxiYUVToRGB_8u_AC4R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep,
                                                    TpxSize roiSize) {
    TPX_CHECKED(1, 1, pSrc, pDst)
    return rows444(pixels(pSrc, srcStep), pixels(pDst, dstStep), roiSize, TPX_ROW(decode444, 4, 0, 4, kKeep));
}
extern "C" TPXCC_API TpxStatus tpxiYUVToRGB_8u_C3C4R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep,
                                                     TpxSize roiSize, Tpx8u aval) {
    TPX_CHECKED(1, 1, pSrc, pDst)
    return rows444(pixels(pSrc, srcStep), pixels(pDst, dstStep), roiSize, TPX_ROW(decode444, 3, 0, 4, kValue), aval);
}
extern "C" TPXCC_API TpxStatus tpxiYUVToRGB_8u_P3C3R(const Tpx8u* const pSrc[3], int srcStep, Tpx8u* pDst, int dstStep,
                                                     TpxSize roiSize) {
    TPX_CHECKED(1, 1, pSrc, pDst)
    TPX_CHECK(check::planes(pSrc, 3));
    return rows444(planes(pSrc, srcStep), pixels(pDst, dstStep), roiSize, TPX_ROW(decode444, 1, 0, 3, kNone));
}
extern "C" TPXCC_API TpxStatus tpxiYUVToRGB_8u_P3R(const Tpx8u* const pSrc[3], int srcStep, Tpx8u* const pDst[3],
                                                   int dstStep, TpxSize roiSize) {
    TPX_CHECKED(1, 1, pSrc, pDst)
    TPX_CHECK(check::planes(pSrc, 3));
    TPX_CHECK(check::planes(pDst, 3));
    return rows444(planes(pSrc, srcStep), planes(pDst, dstStep), roiSize, TPX_ROW(decode444, 1, 0, 1, kNone));
}

// ---- 4:2:2 --------------------------------------------------------------------------
extern "C" TPXCC_API TpxStatus tpxiRGBToYUV422_8u_C3C2R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep,
                                                        TpxSize roiSize) {
    TPX_CHECKED(1, 1, pSrc, pDst)
    return rows422(pixels(pSrc, srcStep), pixels(pDst, dstStep), roiSize, TPX_ROW(encode422, 3, 0, 2, 0));
}
extern "C" TPXCC_API TpxStatus tpxiRGBToYUV422_8u_C3P3R(const Tpx8u* pSrc, int srcStep, Tpx8u* const pDst[3],
                                                        const int dstStep[3], TpxSize roiSize) {
    TPX_CHECKED(1, 1, pSrc, pDst, dstStep)
    TPX_CHECK(check::planes(pDst, 3));
    return rows422(pixels(pSrc, srcStep), planes(pDst, dstStep), roiSize, TPX_ROW(encode422, 3, 0, 1, 0));
}
extern "C" TPXCC_API TpxStatus tpxiRGBToYUV422_8u_P3R(const Tpx8u* const pSrc[3], int srcStep, Tpx8u* const pDst[3],
                                                      const int dstStep[3], TpxSize roiSize) {
    TPX_CHECKED(1, 1, pSrc, pDst, dstStep)
    TPX_CHECK(check::planes(pSrc, 3));
    TPX_CHECK(check::planes(pDst, 3));
    return rows422(planes(pSrc, srcStep), planes(pDst, dstStep), roiSize, TPX_ROW(encode422, 1, 0, 1, 0));
}
extern "C" TPXCC_API TpxStatus tpxiRGBToYUV422_8u_C3P3(const Tpx8u* pSrc, Tpx8u* const pDst[3], TpxSize roiSize) {
    TPX_CHECKED(1, 1, pSrc, pDst)
    TPX_CHECK(check::planes(pDst, 3));
    int s[3];
    return rows422(pixels(pSrc, 3 * roiSize.width), planes(pDst, stepsOf(roiSize, s)), roiSize,
                   TPX_ROW(encode422, 3, 0, 1, 0));
}
extern "C" TPXCC_API TpxStatus tpxiRGBToYUV422_8u_P3(const Tpx8u* const pSrc[3], Tpx8u* const pDst[3],
                                                     TpxSize roiSize) {
    TPX_CHECKED(1, 1, pSrc, pDst)
    TPX_CHECK(check::planes(pSrc, 3));
    TPX_CHECK(check::planes(pDst, 3));
    int s[3];
    return rows422(planes(pSrc, roiSize.width), planes(pDst, stepsOf(roiSize, s)), roiSize,
                   TPX_ROW(encode422, 1, 0, 1, 0));
}
extern "C" TPXCC_API TpxStatus tpxiYUV422ToRGB_8u_C2C3R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep,
                                                        TpxSize roiSize) {
    TPX_CHECKED(1, 1, pSrc, pDst)
    return rows422(pixels(pSrc, srcStep), pixels(pDst, dstStep), roiSize, TPX_ROW(decode422Packed, 2, 0, 3, 0));
}
extern "C" TPXCC_API TpxStatus tpxiYUV422ToRGB_8u_P3C3R(const Tpx8u* const pSrc[3], const int srcStep[3], Tpx8u* pDst,
                                                        int dstStep, TpxSize roiSize) {
    TPX_CHECKED(1, 1, pSrc, srcStep, pDst)
    TPX_CHECK(check::planes(pSrc, 3));
    return rows422(planes(pSrc, srcStep), pixels(pDst, dstStep), roiSize, TPX_ROW(decode422, 1, 0, 3, 0));
}
extern "C" TPXCC_API TpxStatus tpxiYUV422ToRGB_8u_P3R(const Tpx8u* const pSrc[3], const int srcStep[3],
                                                      Tpx8u* const pDst[3], int dstStep, TpxSize roiSize) {
    TPX_CHECKED(1, 1, pSrc, srcStep, pDst)
    TPX_CHECK(check::planes(pSrc, 3));
    TPX_CHECK(check::planes(pDst, 3));
    return rows422(planes(pSrc, srcStep), planes(pDst, dstStep), roiSize, TPX_ROW(decode422, 1, 0, 1, 0));
}
extern "C" TPXCC_API TpxStatus tpxiYUV422ToRGB_8u_P3AC4R(const Tpx8u* const pSrc[3], const int srcStep[3],
                                                         Tpx8u* pDst, int dstStep, TpxSize roiSize) {
    TPX_CHECKED(1, 1, pSrc, srcStep, pDst)
    TPX_CHECK(check::planes(pSrc, 3));
    return rows422(planes(pSrc, srcStep), pixels(pDst, dstStep), roiSize, TPX_ROW(decode422, 1, 0, 4, 0));
}
extern "C" TPXCC_API TpxStatus tpxiYUV422ToRGB_8u_P3(const Tpx8u* const pSrc[3], Tpx8u* const pDst[3],
                                                     TpxSize roiSize) {
    TPX_CHECKED(1, 1, pSrc, pDst)
    TPX_CHECK(check::planes(pSrc, 3));
    TPX_CHECK(check::planes(pDst, 3));
    int s[3];
    return rows422(planes(pSrc, stepsOf(roiSize, s)), planes(pDst, roiSize.width), roiSize,
                   TPX_ROW(decode422, 1, 0, 1, 0));
}
extern "C" TPXCC_API TpxStatus tpxiYUV422ToRGB_8u_P3C3(const Tpx8u* const pSrc[3], Tpx8u* pDst, TpxSize roiSize) {
    TPX_CHECKED(1, 1, pSrc, pDst)
    TPX_CHECK(check::planes(pSrc, 3));
    int s[3];
    return rows422(planes(pSrc, stepsOf(roiSize, s)), pixels(pDst, 3 * roiSize.width), roiSize,
                   TPX_ROW(decode422, 1, 0, 3, 0));
}

// ---- 4:2:0 --------------------------------------------------------------------------
extern "C" TPXCC_API TpxStatus tpxiRGBToYUV420_8u_C3P3R(const Tpx8u* pSrc, int srcStep, Tpx8u* const pDst[3],
                                                        const int dstStep[3], TpxSize roiSize) {
    TPX_CHECKED(1, 1, pSrc, pDst, dstStep)
    TPX_CHECK(check::planes(pDst, 3));
    return rows420(pixels(pSrc, srcStep), planes(pDst, dstStep), roiSize, TPX_ROW(encode420, 3, 0, 1, 0), true);
}
extern "C" TPXCC_API TpxStatus tpxiRGBToYUV420_8u_P3R(const Tpx8u* const pSrc[3], int srcStep, Tpx8u* const pDst[3],
                                                      const int dstStep[3], TpxSize roiSize) {
    TPX_CHECKED(1, 1, pSrc, pDst, dstStep)
    TPX_CHECK(check::planes(pSrc, 3));
    TPX_CHECK(check::planes(pDst, 3));
    return rows420(planes(pSrc, srcStep), planes(pDst, dstStep), roiSize, TPX_ROW(encode420, 1, 0, 1, 0), true);
}
extern "C" TPXCC_API TpxStatus tpxiRGBToYUV420_8u_C3P3(const Tpx8u* pSrc, Tpx8u* const pDst[3], TpxSize roiSize) {
    TPX_CHECKED(1, 1, pSrc, pDst)
    TPX_CHECK(check::planes(pDst, 3));
    int s[3];
    return rows420(pixels(pSrc, 3 * roiSize.width), planes(pDst, stepsOf(roiSize, s)), roiSize,
                   TPX_ROW(encode420, 3, 0, 1, 0), true);
}
extern "C" TPXCC_API TpxStatus tpxiRGBToYUV420_8u_P3(const Tpx8u* const pSrc[3], Tpx8u* const pDst[3],
                                                     TpxSize roiSize) {
    TPX_CHECKED(1, 1, pSrc, pDst)
    TPX_CHECK(check::planes(pSrc, 3));
    TPX_CHECK(check::planes(pDst, 3));
    int s[3];
    return rows420(planes(pSrc, roiSize.width), planes(pDst, stepsOf(roiSize, s)), roiSize,
                   TPX_ROW(encode420, 1, 0, 1, 0), true);
}
// B, G, R, A in memory; A is not read.
extern "C" TPXCC_API TpxStatus tpxiBGRToYUV420_8u_AC4P3R(const Tpx8u* pSrc, int srcStep, Tpx8u* const pDst[3],
                                                         const int dstStep[3], TpxSize roiSize) {
    TPX_CHECKED(1, 1, pSrc, pDst, dstStep)
    TPX_CHECK(check::planes(pDst, 3));
    return rows420(pixels(pSrc, srcStep), planes(pDst, dstStep), roiSize, TPX_ROW(encode420, 4, 1, 1, 0), true);
}
extern "C" TPXCC_API TpxStatus tpxiYUV420ToRGB_8u_P3C3R(const Tpx8u* const pSrc[3], const int srcStep[3], Tpx8u* pDst,
                                                        int dstStep, TpxSize roiSize) {
    TPX_CHECKED(1, 1, pSrc, srcStep, pDst)
    TPX_CHECK(check::planes(pSrc, 3));
    return rows420(planes(pSrc, srcStep), pixels(pDst, dstStep), roiSize, TPX_ROW(decode420, 1, 0, 3, 0), false);
}
extern "C" TPXCC_API TpxStatus tpxiYUV420ToRGB_8u_P3R(const Tpx8u* const pSrc[3], const int srcStep[3],
                                                      Tpx8u* const pDst[3], int dstStep, TpxSize roiSize) {
    TPX_CHECKED(1, 1, pSrc, srcStep, pDst)
    TPX_CHECK(check::planes(pSrc, 3));
    TPX_CHECK(check::planes(pDst, 3));
    return rows420(planes(pSrc, srcStep), planes(pDst, dstStep), roiSize, TPX_ROW(decode420, 1, 0, 1, 0), false);
}
extern "C" TPXCC_API TpxStatus tpxiYUV420ToRGB_8u_P3AC4R(const Tpx8u* const pSrc[3], const int srcStep[3],
                                                         Tpx8u* pDst, int dstStep, TpxSize roiSize) {
    TPX_CHECKED(1, 1, pSrc, srcStep, pDst)
    TPX_CHECK(check::planes(pSrc, 3));
    return rows420(planes(pSrc, srcStep), pixels(pDst, dstStep), roiSize, TPX_ROW(decode420, 1, 0, 4, 0), false);
}
extern "C" TPXCC_API TpxStatus tpxiYUV420ToRGB_8u_P3(const Tpx8u* const pSrc[3], Tpx8u* const pDst[3],
                                                     TpxSize roiSize) {
    TPX_CHECKED(1, 1, pSrc, pDst)
    TPX_CHECK(check::planes(pSrc, 3));
    TPX_CHECK(check::planes(pDst, 3));
    int s[3];
    return rows420(planes(pSrc, stepsOf(roiSize, s)), planes(pDst, roiSize.width), roiSize,
                   TPX_ROW(decode420, 1, 0, 1, 0), false);
}
extern "C" TPXCC_API TpxStatus tpxiYUV420ToRGB_8u_P3C3(const Tpx8u* const pSrc[3], Tpx8u* pDst, TpxSize roiSize) {
    TPX_CHECKED(1, 1, pSrc, pDst)
    TPX_CHECK(check::planes(pSrc, 3));
    int s[3];
    return rows420(planes(pSrc, stepsOf(roiSize, s)), pixels(pDst, 3 * roiSize.width), roiSize,
                   TPX_ROW(decode420, 1, 0, 3, 0), false);
}
// Needs a 2 x 2 ROI; writes B, G, R.
extern "C" TPXCC_API TpxStatus tpxiYUV420ToBGR_8u_P3C3R(const Tpx8u* const pSrc[3], const int srcStep[3], Tpx8u* pDst,
                                                        int dstStep, TpxSize roiSize) {
    TPX_CHECKED(2, 2, pSrc, srcStep, pDst)
    TPX_CHECK(check::planes(pSrc, 3));
    return rows420(planes(pSrc, srcStep), pixels(pDst, dstStep), roiSize, TPX_ROW(decode420, 1, 0, 3, 1),
                   false);
}
