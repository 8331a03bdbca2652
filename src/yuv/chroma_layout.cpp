// Entries of the chroma layout conversions: every pointer (plane arrays,
// step arrays and the planes in them) checked first, then the size against
// the member's minimum; the ROI is then rounded down to the member's
// multiples without a warning (leftover columns and rows are neither read
// nor written), and steps are used as given.
#include "yuv/chroma_layout.hpp"

#include "frame/check.hpp"

namespace tpx::chroma {
namespace {

// Minimum width and height (0: the height is not checked, and a height
// below 1 converts nothing) and the multiples the ROI is rounded down to.
struct Sizes {
    int minW, minH, roundW, roundH;
};
constexpr Sizes k2x2{2, 2, 2, 2}, k2x1{2, 1, 2, 1}, k2x0{2, 0, 2, 1}, k4x0{4, 0, 4, 1}, k4x1{4, 1, 4, 1},
    k4x2{4, 2, 4, 2}, k2x8{2, 8, 2, 8};

// The images of a call, built from its arguments as each shape passes them.
inline Image planes(const uint8_t* const* p, const int* steps) {
    return {{const_cast<uint8_t*>(p[0]), const_cast<uint8_t*>(p[1]), const_cast<uint8_t*>(p[2])},
            {steps[0], steps[1], steps[2]}};
}
inline Image planes(uint8_t* const* p, const int* steps) { return {{p[0], p[1], p[2]}, {steps[0], steps[1], steps[2]}}; }
inline Image twoPlanes(const uint8_t* y, int ys, const uint8_t* c, int cs) {
    return {{const_cast<uint8_t*>(y), const_cast<uint8_t*>(c), nullptr}, {ys, cs, 0}};
}
inline Image packed(const uint8_t* p, int step) { return {{const_cast<uint8_t*>(p), nullptr, nullptr}, {step, 0, 0}}; }

template <class S, class D, Rule R, PlaneStreaming Luma = PlaneStreaming::CacheSize>
TpxStatus run(const Image& src, const Image& dst, TpxSize roi, Sizes z) {
    TPX_CHECK(check::width(roi, z.minW));
    if (z.minH > 0) TPX_CHECK(check::height(roi, z.minH));
    const int W = roi.width / z.roundW * z.roundW, H = roi.height / z.roundH * z.roundH;
    if (H > 0) convert<S, D, R>(src, dst, W, H, Luma);
    return tpxStatusOk;
}

}  // namespace
}  // namespace tpx::chroma

using namespace tpx;
using namespace tpx::chroma;

// One line per member over the argument shapes: source, destination, rule, sizes.
#define TPX_C2_P3(name, S, D, R, Z)                                                                             \
    extern "C" TPXCC_API TpxStatus name(const Tpx8u* pSrc, int srcStep, Tpx8u* const pDst[3], const int dstStep[3], \
                                        TpxSize roiSize) {                                                      \
        TPX_CHECK(check::notNull(pSrc, pDst, dstStep));                                                         \
        TPX_CHECK(check::planes(pDst, 3));                                                                      \
        return run<S, D, R>(packed(pSrc, srcStep), planes(pDst, dstStep), roiSize, Z);                          \
    }
#define TPX_C2_P2(name, S, D, R, Z)                                                                             \
    extern "C" TPXCC_API TpxStatus name(const Tpx8u* pSrc, int srcStep, Tpx8u* pDstY, int dstYStep, Tpx8u* pDstC, \
                                        int dstCStep, TpxSize roiSize) {                                        \
        TPX_CHECK(check::notNull(pSrc, pDstY, pDstC));                                                          \
        return run<S, D, R>(packed(pSrc, srcStep), twoPlanes(pDstY, dstYStep, pDstC, dstCStep), roiSize, Z);    \
    }
#define TPX_P3_P2(name, S, D, R, Z, ...)                                                                        \
    extern "C" TPXCC_API TpxStatus name(const Tpx8u* const pSrc[3], const int srcStep[3], Tpx8u* pDstY,         \
                                        int dstYStep, Tpx8u* pDstC, int dstCStep, TpxSize roiSize) {            \
        TPX_CHECK(check::notNull(pSrc, srcStep, pDstY, pDstC));                                                 \
        TPX_CHECK(check::planes(pSrc, 3));                                                                      \
        return run<S, D, R __VA_ARGS__>(planes(pSrc, srcStep), twoPlanes(pDstY, dstYStep, pDstC, dstCStep),    \
                                        roiSize, Z);                                                            \
    }
#define TPX_P3_P3(name, S, D, R, Z, ...)                                                                        \
    extern "C" TPXCC_API TpxStatus name(const Tpx8u* const pSrc[3], const int srcStep[3], Tpx8u* const pDst[3], \
                                        const int dstStep[3], TpxSize roiSize) {                                \
        TPX_CHECK(check::notNull(pSrc, srcStep, pDst, dstStep));                                                \
        TPX_CHECK(check::planes(pSrc, 3));                                                                      \
        TPX_CHECK(check::planes(pDst, 3));                                                                      \
        return run<S, D, R __VA_ARGS__>(planes(pSrc, srcStep), planes(pDst, dstStep), roiSize, Z);              \
    }
#define TPX_P2_P3(name, S, D, R, Z, ...)                                                                        \
    extern "C" TPXCC_API TpxStatus name(const Tpx8u* pSrcY, int srcYStep, const Tpx8u* pSrcC, int srcCStep,     \
                                        Tpx8u* const pDst[3], const int dstStep[3], TpxSize roiSize) {          \
        TPX_CHECK(check::notNull(pSrcY, pSrcC, pDst, dstStep));                                                 \
        TPX_CHECK(check::planes(pDst, 3));                                                                      \
        return run<S, D, R __VA_ARGS__>(twoPlanes(pSrcY, srcYStep, pSrcC, srcCStep), planes(pDst, dstStep),    \
                                        roiSize, Z);                                                            \
    }
#define TPX_P2_C2(name, S, D, R, Z)                                                                             \
    extern "C" TPXCC_API TpxStatus name(const Tpx8u* pSrcY, int srcYStep, const Tpx8u* pSrcC, int srcCStep,     \
                                        Tpx8u* pDst, int dstStep, TpxSize roiSize) {                            \
        TPX_CHECK(check::notNull(pSrcY, pSrcC, pDst));                                                          \
        return run<S, D, R>(twoPlanes(pSrcY, srcYStep, pSrcC, srcCStep), packed(pDst, dstStep), roiSize, Z);    \
    }
#define TPX_P3_C2(name, S, D, R, Z)                                                                             \
    extern "C" TPXCC_API TpxStatus name(const Tpx8u* const pSrc[3], const int srcStep[3], Tpx8u* pDst,          \
                                        int dstStep, TpxSize roiSize) {                                         \
        TPX_CHECK(check::notNull(pSrc, srcStep, pDst));                                                         \
        TPX_CHECK(check::planes(pSrc, 3));                                                                      \
        return run<S, D, R>(planes(pSrc, srcStep), packed(pDst, dstStep), roiSize, Z);                          \
    }

using k422 = Planar<2, 1>;
using k420 = Planar<2, 2>;
using k411 = Planar<4, 1>;
using kCr422 = Planar<2, 1, true>;
using kCr420 = Planar<2, 2, true>;
using k420P2 = TwoPlane<2, 2>;
using kCr420P2 = TwoPlane<2, 2, true>;
using k411P2 = TwoPlane<4, 1>;
using kYCbCr422 = YCbCr422;
using kYCrCb422 = YCrCb422;
using kCbYCr422 = CbYCr422;
constexpr auto kFixed = PlaneStreaming::FixedThreshold;

// 4:2:2 sources
TPX_C2_P2(tpxiYCbCr422ToYCbCr420_8u_C2P2R, kYCbCr422, k420P2, Rule::EvenRows, k2x2)
TPX_C2_P3(tpxiYCbCr422ToYCbCr420_8u_C2P3R, kYCbCr422, k420, Rule::EvenRows, k2x2)
TPX_P3_P2(tpxiYCbCr422ToYCbCr420_8u_P3P2R, k422, k420P2, Rule::EvenRows, k2x2)
TPX_P3_P3(tpxiYCbCr422ToYCbCr420_8u_P3R, k422, k420, Rule::EvenRows, k2x2, , kFixed)
TPX_C2_P2(tpxiYCbCr422ToYCrCb420_8u_C2P2R, kYCbCr422, kCr420P2, Rule::EvenRows, k2x2)
TPX_C2_P3(tpxiYCbCr422ToYCrCb420_8u_C2P3R, kYCbCr422, kCr420, Rule::EvenRows, k2x2)
TPX_C2_P2(tpxiYCbCr422ToYCbCr411_8u_C2P2R, kYCbCr422, k411P2, Rule::EvenColumns, k4x0)
TPX_C2_P3(tpxiYCbCr422ToYCbCr411_8u_C2P3R, kYCbCr422, k411, Rule::EvenColumns, k4x1)
TPX_P3_P2(tpxiYCbCr422ToYCbCr411_8u_P3P2R, k422, k411P2, Rule::EvenColumns, k4x0)
TPX_P3_P3(tpxiYCbCr422ToYCbCr411_8u_P3R, k422, k411, Rule::EvenColumns, k4x0)
TPX_P3_C2(tpxiYCbCr422ToYCrCb422_8u_P3C2R, k422, kYCrCb422, Rule::Same, k2x0)
TPX_P3_C2(tpxiYCbCr422ToCbYCr422_8u_P3C2R, k422, kCbYCr422, Rule::Same, k2x1)
TPX_C2_P3(tpxiYCbCr422_8u_C2P3R, kYCbCr422, k422, Rule::Same, k2x1)
TPX_P3_C2(tpxiYCbCr422_8u_P3C2R, k422, kYCbCr422, Rule::Same, k2x1)
TPX_C2_P2(tpxiCbYCr422ToYCbCr420_8u_C2P2R, kCbYCr422, k420P2, Rule::EvenRows, k2x2)
TPX_C2_P3(tpxiCbYCr422ToYCbCr420_8u_C2P3R, kCbYCr422, k420, Rule::EvenRows, k2x2)
TPX_C2_P3(tpxiCbYCr422ToYCrCb420_8u_C2P3R, kCbYCr422, kCr420, Rule::EvenRows, k2x2)
TPX_C2_P3(tpxiCbYCr422ToYCbCr411_8u_C2P3R, kCbYCr422, k411, Rule::EvenColumns, k4x0)
TPX_C2_P3(tpxiCbYCr422ToYCbCr422_8u_C2P3R, kCbYCr422, k422, Rule::Same, k2x1)
TPX_C2_P3(tpxiYCrCb422ToYCbCr420_8u_C2P3R, kYCrCb422, k420, Rule::EvenRows, k2x2)
TPX_C2_P3(tpxiYCrCb422ToYCbCr411_8u_C2P3R, kYCrCb422, k411, Rule::EvenColumns, k4x0)
TPX_C2_P3(tpxiYCrCb422ToYCbCr422_8u_C2P3R, kYCrCb422, k422, Rule::Same, k2x1)

// 4:2:0 sources
TPX_P2_C2(tpxiYCbCr420ToYCbCr422_8u_P2C2R, k420P2, kYCbCr422, Rule::RepeatRows, k2x2)
TPX_P2_P3(tpxiYCbCr420ToYCbCr422_8u_P2P3R, k420P2, k422, Rule::RepeatRows, k2x2)
TPX_P3_P3(tpxiYCbCr420ToYCbCr422_8u_P3R, k420, k422, Rule::RepeatRows, k2x2)
TPX_P2_P3(tpxiYCbCr420ToYCbCr422_Filter_8u_P2P3R, k420P2, k422, Rule::FourTap, k2x8)
TPX_P3_P3(tpxiYCbCr420ToYCbCr422_Filter_8u_P3R, k420, k422, Rule::FourTap, k2x8)
TPX_P2_P3(tpxiYCbCr420ToYCbCr411_8u_P2P3R, k420P2, k411, Rule::To411, k4x2)
TPX_P3_P2(tpxiYCbCr420ToYCbCr411_8u_P3P2R, k420, k411P2, Rule::To411, k4x2)
TPX_P2_C2(tpxiYCbCr420ToCbYCr422_8u_P2C2R, k420P2, kCbYCr422, Rule::RepeatRows, k2x2)
TPX_P2_P3(tpxiYCbCr420_8u_P2P3R, k420P2, k420, Rule::Same, k2x2)
TPX_P3_P2(tpxiYCbCr420_8u_P3P2R, k420, k420P2, Rule::Same, k2x2)
TPX_P3_P3(tpxiYCrCb420ToYCbCr422_8u_P3R, kCr420, k422, Rule::RepeatRows, k2x2)
TPX_P3_C2(tpxiYCrCb420ToYCbCr422_8u_P3C2R, kCr420, kYCbCr422, Rule::RepeatRows, k2x2)
TPX_P3_P3(tpxiYCrCb420ToYCbCr422_Filter_8u_P3R, kCr420, k422, Rule::FourTap, k2x8)
TPX_P3_P2(tpxiYCrCb420ToYCbCr420_8u_P3P2R, kCr420, k420P2, Rule::Same, k2x2)
TPX_P3_P2(tpxiYCrCb420ToYCbCr411_8u_P3P2R, kCr420, k411P2, Rule::To411, k4x2)
TPX_P3_C2(tpxiYCrCb420ToCbYCr422_8u_P3C2R, kCr420, kCbYCr422, Rule::RepeatRows, k2x2)

// 4:1:1 sources
TPX_P2_P3(tpxiYCbCr411ToYCbCr420_8u_P2P3R, k411P2, k420, Rule::To420, k4x2)
TPX_P3_P2(tpxiYCbCr411ToYCbCr420_8u_P3P2R, k411, k420P2, Rule::To420, k4x2, , kFixed)
TPX_P3_P3(tpxiYCbCr411ToYCbCr420_8u_P3R, k411, k420, Rule::To420, k4x2)
TPX_P2_P3(tpxiYCbCr411ToYCrCb420_8u_P2P3R, k411P2, kCr420, Rule::To420, k4x2)
TPX_P2_C2(tpxiYCbCr411ToYCbCr422_8u_P2C2R, k411P2, kYCbCr422, Rule::Double, k4x0)
TPX_P2_P3(tpxiYCbCr411ToYCbCr422_8u_P2P3R, k411P2, k422, Rule::Double, k4x0, , kFixed)
TPX_P3_C2(tpxiYCbCr411ToYCbCr422_8u_P3C2R, k411, kYCbCr422, Rule::Double, k4x0)
TPX_P3_P3(tpxiYCbCr411ToYCbCr422_8u_P3R, k411, k422, Rule::Double, k4x0)
TPX_P3_C2(tpxiYCbCr411ToYCrCb422_8u_P3C2R, k411, kYCrCb422, Rule::Double, k4x0)
TPX_P3_P3(tpxiYCbCr411ToYCrCb422_8u_P3R, k411, kCr422, Rule::Double, k4x0)
TPX_P2_P3(tpxiYCbCr411_8u_P2P3R, k411P2, k411, Rule::Same, k4x0)
TPX_P3_P2(tpxiYCbCr411_8u_P3P2R, k411, k411P2, Rule::Same, k4x0, , kFixed)
