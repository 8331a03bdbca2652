#include "export_table.hpp"

#include <cstring>

namespace tpxtest {
namespace {

// ---- Calling an export from Args: one overload per signature ----------------
// Plane arrays and step arrays built from Args (null when asked for).
template <class T>
struct Arrays {
    const T* src[3];
    T* dst[3];
    int srcStep[3], dstStep[3];
    explicit Arrays(const Args& a) {
        for (int i = 0; i < 3; ++i) {
            src[i] = static_cast<const T*>(a.src[i]);
            dst[i] = static_cast<T*>(a.dst[i]);
            srcStep[i] = int(a.srcStep[i]);
            dstStep[i] = int(a.dstStep[i]);
        }
    }
    const T* const* srcs(const Args& a) const { return a.nullSrcArray ? nullptr : src; }
    T* const* dsts(const Args& a) const { return a.nullDstArray ? nullptr : dst; }
    const int* srcSteps(const Args& a) const { return a.nullSrcSteps ? nullptr : srcStep; }
    const int* dstSteps(const Args& a) const { return a.nullDstSteps ? nullptr : dstStep; }
};

template <class T> const T* s0(const Args& a) { return static_cast<const T*>(a.src[0]); }
template <class T> T* d0(const Args& a) { return static_cast<T*>(a.dst[0]); }
inline int ss(const Args& a, int i = 0) { return int(a.srcStep[i]); }
inline int ds(const Args& a, int i = 0) { return int(a.dstStep[i]); }
inline TpxSize roi(const Args& a) { return {int32_t(a.width), int32_t(a.height)}; }
template <class T> T alphaOf(const Args& a) {
    if constexpr (sizeof(T) < 4) return T(int64_t(a.alpha) & ((int64_t(1) << (8 * sizeof(T))) - 1));
    else return T(a.alpha);
}

// Interleaved (or any single-pointer) source and destination.
template <class T>
TpxStatus invoke(TpxStatus (*f)(const T*, int, T*, int, TpxSize), const Args& a) {
    return f(s0<T>(a), ss(a), d0<T>(a), ds(a), roi(a));
}
template <class T>
TpxStatus invoke(TpxStatus (*f)(const T*, int, T*, int, TpxSize, T), const Args& a) {
    return f(s0<T>(a), ss(a), d0<T>(a), ds(a), roi(a), alphaOf<T>(a));
}
template <class T, class W>
TpxStatus invoke(TpxStatus (*f)(const T*, int, T*, int, TpxSize, const W*), const Args& a) {
    return f(s0<T>(a), ss(a), d0<T>(a), ds(a), roi(a), static_cast<const W*>(a.extra));
}
// Planes sharing one step.
TpxStatus invoke(TpxStatus (*f)(const Tpx8u* const*, int, Tpx8u* const*, int, TpxSize), const Args& a) {
    const Arrays<Tpx8u> p(a);
    return f(p.srcs(a), ss(a), p.dsts(a), ds(a), roi(a));
}
TpxStatus invoke(TpxStatus (*f)(const Tpx8u*, int, Tpx8u* const*, int, TpxSize), const Args& a) {
    const Arrays<Tpx8u> p(a);
    return f(s0<Tpx8u>(a), ss(a), p.dsts(a), ds(a), roi(a));
}
TpxStatus invoke(TpxStatus (*f)(const Tpx8u* const*, int, Tpx8u*, int, TpxSize), const Args& a) {
    const Arrays<Tpx8u> p(a);
    return f(p.srcs(a), ss(a), d0<Tpx8u>(a), ds(a), roi(a));
}
TpxStatus invoke(TpxStatus (*f)(const Tpx8u* const*, int, Tpx8u*, int, TpxSize, Tpx8u), const Args& a) {
    const Arrays<Tpx8u> p(a);
    return f(p.srcs(a), ss(a), d0<Tpx8u>(a), ds(a), roi(a), alphaOf<Tpx8u>(a));
}
// Planes with a step array.
TpxStatus invoke(TpxStatus (*f)(const Tpx8u*, int, Tpx8u* const*, const int*, TpxSize), const Args& a) {
    const Arrays<Tpx8u> p(a);
    return f(s0<Tpx8u>(a), ss(a), p.dsts(a), p.dstSteps(a), roi(a));
}
TpxStatus invoke(TpxStatus (*f)(const Tpx8u* const*, const int*, Tpx8u*, int, TpxSize), const Args& a) {
    const Arrays<Tpx8u> p(a);
    return f(p.srcs(a), p.srcSteps(a), d0<Tpx8u>(a), ds(a), roi(a));
}
TpxStatus invoke(TpxStatus (*f)(const Tpx8u* const*, const int*, Tpx8u*, int, TpxSize, Tpx8u), const Args& a) {
    const Arrays<Tpx8u> p(a);
    return f(p.srcs(a), p.srcSteps(a), d0<Tpx8u>(a), ds(a), roi(a), alphaOf<Tpx8u>(a));
}
// Two planes: luma and interleaved chroma.
TpxStatus invoke(TpxStatus (*f)(const Tpx8u*, int, Tpx8u*, int, Tpx8u*, int, TpxSize), const Args& a) {
    return f(s0<Tpx8u>(a), ss(a), d0<Tpx8u>(a), ds(a), static_cast<Tpx8u*>(a.dst[1]), ds(a, 1), roi(a));
}
TpxStatus invoke(TpxStatus (*f)(const Tpx8u*, int, const Tpx8u*, int, Tpx8u*, int, TpxSize), const Args& a) {
    return f(s0<Tpx8u>(a), ss(a), static_cast<const Tpx8u*>(a.src[1]), ss(a, 1), d0<Tpx8u>(a), ds(a), roi(a));
}
TpxStatus invoke(TpxStatus (*f)(const Tpx8u*, int, const Tpx8u*, int, Tpx8u*, int, TpxSize, Tpx8u),
                 const Args& a) {
    return f(s0<Tpx8u>(a), ss(a), static_cast<const Tpx8u*>(a.src[1]), ss(a, 1), d0<Tpx8u>(a), ds(a), roi(a),
             alphaOf<Tpx8u>(a));
}
// Demosaicing. The grid is passed as the raw code a C caller may give.
inline TpxBayerGrid gridOf(const Args& a) {
    TpxBayerGrid g;
    const int32_t code = int32_t(a.grid);
    static_assert(sizeof g == sizeof code, "the grid is passed as a 32-bit code");
    std::memcpy(&g, &code, sizeof g);
    return g;
}
inline TpxRect rect(const Args& a) { return {int32_t(a.x), int32_t(a.y), int32_t(a.width), int32_t(a.height)}; }
inline TpxSize image(const Args& a) { return {int32_t(a.imageWidth), int32_t(a.imageHeight)}; }
template <class T>
TpxStatus invoke(TpxStatus (*f)(const T*, TpxRect, TpxSize, int, T*, int, TpxBayerGrid, int), const Args& a) {
    return f(s0<T>(a), rect(a), image(a), ss(a), d0<T>(a), ds(a), gridOf(a), int(a.interpolation));
}
template <class T>
TpxStatus invoke(TpxStatus (*f)(const T*, TpxRect, TpxSize, int, const Tpx32f*, T*, int, TpxBayerGrid),
                 const Args& a) {
    return f(s0<T>(a), rect(a), image(a), ss(a), static_cast<const Tpx32f*>(a.extra), d0<T>(a), ds(a), gridOf(a));
}
template <class T>
TpxStatus invoke(TpxStatus (*f)(const T*, TpxRectL, TpxSizeL, int64_t, const Tpx32f*, T*, int64_t, TpxBayerGrid),
                 const Args& a) {
    return f(s0<T>(a), {a.x, a.y, a.width, a.height}, {a.imageWidth, a.imageHeight}, a.srcStep[0],
             static_cast<const Tpx32f*>(a.extra), d0<T>(a), a.dstStep[0], gridOf(a));
}
template <class T>
TpxStatus invoke(TpxStatus (*f)(const T*, TpxRect, TpxSize, int, T*, int, TpxBayerGrid), const Args& a) {
    return f(s0<T>(a), rect(a), image(a), ss(a), d0<T>(a), ds(a), gridOf(a));
}

template <auto F>
TpxStatus thunk(const Args& a) {
    return invoke(F, a);
}

// ---- Shapes ----------------------------------------------------------------
constexpr Plane kNone{0, 1, 1};
// Interleaved pixels of `bytes` bytes; AC4 leaves byte `alpha` of each pixel alone.
constexpr ImageShape px(int bytes, int alpha = -1) {
    return {Pass::Single, 1, {{uint8_t(bytes), 1, 1}, kNone, kNone}, int8_t(alpha)};
}
// Packed 4:2:2: four bytes per pair of pixels.
constexpr ImageShape kC2{Pass::Single, 1, {{4, 2, 1}, kNone, kNone}, -1};
// Three full planes sharing one step.
constexpr ImageShape kP3{Pass::Planes, 3, {{1, 1, 1}, {1, 1, 1}, {1, 1, 1}}, -1};
// Luma plane and two chroma planes subsampled h x v, each with its own step.
constexpr ImageShape planar(int h, int v) {
    return {Pass::PlaneSteps, 3, {{1, 1, 1}, {1, uint8_t(h), uint8_t(v)}, {1, uint8_t(h), uint8_t(v)}}, -1};
}
constexpr ImageShape kP420 = planar(2, 2), kP422 = planar(2, 1), kP411 = planar(4, 1);
// Luma plane and an interleaved 4:2:0 chroma plane.
constexpr ImageShape kP2{Pass::TwoPlane, 2, {{1, 1, 1}, {2, 2, 2}, kNone}, -1};
constexpr ImageShape kMosaic8{Pass::Mosaic, 1, {{1, 1, 1}, kNone, kNone}, -1};
constexpr ImageShape kMosaic16{Pass::Mosaic, 1, {{2, 1, 1}, kNone, kNone}, -1};

constexpr ExportShape plain(ImageShape s, ImageShape d, Extra e = Extra::None, int minW = 1, int minH = 1,
                            Warn w = Warn::None) {
    return {s, d, 1, false, int8_t(minW), int8_t(minH), w, e, false, 0};
}
constexpr ExportShape alpha(ImageShape s, ImageShape d) { return plain(s, d, Extra::Alpha); }
// 4:2:0 encoders need 2 x 2 and warn on odd sizes; packed 4:2:2 encoders need a width of 2.
constexpr ExportShape enc420(ImageShape d) { return plain(px(3), d, Extra::None, 2, 2, Warn::OddSize); }
constexpr ExportShape enc420a(ImageShape d) { return plain(px(4, 3), d, Extra::None, 2, 2, Warn::OddSize); }
constexpr ExportShape enc422(ImageShape s, ImageShape d) { return plain(s, d, Extra::None, d.pass == Pass::Single ? 2 : 1); }
constexpr ExportShape dec420(ImageShape s, ImageShape d, Extra e = Extra::None) {
    return plain(s, d, e, 1, 1, Warn::OddSize);
}
// Gray: `elem`-byte elements, steps counted in elements.
constexpr ExportShape gray(int elem, int srcCh, int dstCh, Extra e = Extra::None) {
    return {px(srcCh * elem), px(dstCh * elem), uint8_t(elem), true, 1, 1, Warn::None, e, false, 0};
}
constexpr ExportShape cfa(int elem) {
    return {elem == 1 ? kMosaic8 : kMosaic16, px(3 * elem), uint8_t(elem), true, 2, 2, Warn::None, Extra::Bayer,
            false, 2};
}
constexpr ExportShape vng(int elem, bool wide) {
    return {elem == 1 ? kMosaic8 : kMosaic16, px(4 * elem), uint8_t(elem), false, 5, 5, Warn::None, Extra::Scale,
            wide, 2};
}
constexpr ExportShape ahd(int elem) {
    return {elem == 1 ? kMosaic8 : kMosaic16, px(3 * elem), uint8_t(elem), false, 5, 5, Warn::None, Extra::Bayer,
            false, 5};
}

#define TPX_EXPORT(fn, shape) {#fn, shape, &thunk<&fn>}

const std::vector<Export>& table() {
    static const std::vector<Export> kTable = {
    // RGB and YCbCr 4:4:4
    TPX_EXPORT(tpxiRGBToYCbCr_8u_C3R, plain(px(3), px(3))),
    TPX_EXPORT(tpxiRGBToYCbCr_8u_AC4R, plain(px(4, 3), px(4, 3))),
    TPX_EXPORT(tpxiRGBToYCbCr_8u_P3R, plain(kP3, kP3)),
    TPX_EXPORT(tpxiRGBToYCbCr_8u_C3P3R, plain(px(3), kP3)),
    TPX_EXPORT(tpxiRGBToYCbCr_8u_AC4P3R, plain(px(4, 3), kP3)),
    TPX_EXPORT(tpxiYCbCrToRGB_8u_C3R, plain(px(3), px(3))),
    TPX_EXPORT(tpxiYCbCrToRGB_8u_AC4R, plain(px(4, 3), px(4, 3))),
    TPX_EXPORT(tpxiYCbCrToRGB_8u_P3R, plain(kP3, kP3)),
    TPX_EXPORT(tpxiYCbCrToRGB_8u_P3C3R, plain(kP3, px(3))),
    TPX_EXPORT(tpxiYCbCrToRGB_8u_P3C4R, alpha(kP3, px(4))),
    TPX_EXPORT(tpxiYCbCrToBGR_8u_P3C3R, plain(kP3, px(3))),
    TPX_EXPORT(tpxiYCbCrToBGR_8u_P3C4R, alpha(kP3, px(4))),
    TPX_EXPORT(tpxiYCbCrToBGR_709CSC_8u_P3C3R, plain(kP3, px(3))),
    TPX_EXPORT(tpxiYCbCrToBGR_709CSC_8u_P3C4R, alpha(kP3, px(4))),
    // RGB to subsampled YCbCr
    TPX_EXPORT(tpxiBGRToYCbCr422_8u_C3C2R, enc422(px(3), kC2)),
    TPX_EXPORT(tpxiBGRToYCbCr422_8u_AC4C2R, enc422(px(4, 3), kC2)),
    TPX_EXPORT(tpxiBGRToYCbCr422_8u_C3P3R, enc422(px(3), kP422)),
    TPX_EXPORT(tpxiBGRToYCbCr422_8u_AC4P3R, enc422(px(4, 3), kP422)),
    TPX_EXPORT(tpxiRGBToYCbCr422_8u_C3C2R, enc422(px(3), kC2)),
    TPX_EXPORT(tpxiRGBToYCbCr422_8u_P3C2R, enc422(kP3, kC2)),
    TPX_EXPORT(tpxiRGBToYCbCr422_8u_C3P3R, enc422(px(3), kP422)),
    TPX_EXPORT(tpxiRGBToYCrCb422_8u_C3C2R, enc422(px(3), kC2)),
    TPX_EXPORT(tpxiRGBToYCrCb422_8u_P3C2R, enc422(kP3, kC2)),
    TPX_EXPORT(tpxiBGRToCbYCr422_8u_AC4C2R, enc422(px(4, 3), kC2)),
    TPX_EXPORT(tpxiBGRToCbYCr422_709HDTV_8u_C3C2R, enc422(px(3), kC2)),
    TPX_EXPORT(tpxiBGRToCbYCr422_709HDTV_8u_AC4C2R, enc422(px(4, 3), kC2)),
    TPX_EXPORT(tpxiRGBToCbYCr422_8u_C3C2R, enc422(px(3), kC2)),
    TPX_EXPORT(tpxiRGBToCbYCr422Gamma_8u_C3C2R, enc422(px(3), kC2)),
    TPX_EXPORT(tpxiBGRToYCbCr420_8u_C3P3R, enc420(kP420)),
    TPX_EXPORT(tpxiBGRToYCbCr420_8u_AC4P3R, enc420a(kP420)),
    TPX_EXPORT(tpxiBGRToYCbCr420_8u_C3P2R, enc420(kP2)),
    TPX_EXPORT(tpxiBGRToYCbCr420_8u_AC4P2R, enc420a(kP2)),
    TPX_EXPORT(tpxiBGRToYCbCr420_709CSC_8u_C3P3R, enc420(kP420)),
    TPX_EXPORT(tpxiBGRToYCbCr420_709CSC_8u_AC4P3R, enc420a(kP420)),
    TPX_EXPORT(tpxiBGRToYCbCr420_709CSC_8u_C3P2R, enc420(kP2)),
    TPX_EXPORT(tpxiBGRToYCbCr420_709CSC_8u_AC4P2R, enc420a(kP2)),
    TPX_EXPORT(tpxiBGRToYCbCr420_709HDTV_8u_AC4P3R, enc420a(kP420)),
    TPX_EXPORT(tpxiBGRToYCrCb420_8u_C3P3R, enc420(kP420)),
    TPX_EXPORT(tpxiBGRToYCrCb420_8u_AC4P3R, enc420a(kP420)),
    TPX_EXPORT(tpxiBGRToYCrCb420_709CSC_8u_C3P3R, enc420(kP420)),
    TPX_EXPORT(tpxiBGRToYCrCb420_709CSC_8u_AC4P3R, enc420a(kP420)),
    TPX_EXPORT(tpxiRGBToYCbCr420_8u_C3P3R, enc420(kP420)),
    TPX_EXPORT(tpxiRGBToYCbCr420_8u_C3P2R, enc420(kP2)),
    TPX_EXPORT(tpxiRGBToYCbCr420_8u_C4P2R, enc420a(kP2)),
    TPX_EXPORT(tpxiRGBToYCrCb420_8u_AC4P3R, enc420a(kP420)),
    TPX_EXPORT(tpxiBGRToYCbCr411_8u_C3P3R, plain(px(3), kP411, Extra::None, 1, 1, Warn::WidthQuad)),
    TPX_EXPORT(tpxiBGRToYCbCr411_8u_AC4P3R, plain(px(4, 3), kP411, Extra::None, 1, 1, Warn::WidthQuad)),
    // Subsampled YCbCr to RGB
    TPX_EXPORT(tpxiYCbCr422ToRGB_8u_C2C3R, plain(kC2, px(3))),
    TPX_EXPORT(tpxiYCbCr422ToRGB_8u_C2C4R, alpha(kC2, px(4))),
    TPX_EXPORT(tpxiYCbCr422ToBGR_8u_C2C3R, plain(kC2, px(3))),
    TPX_EXPORT(tpxiYCbCr422ToBGR_8u_C2C4R, alpha(kC2, px(4))),
    TPX_EXPORT(tpxiYCbCr422ToRGB_8u_C2P3R, plain(kC2, kP3)),
    TPX_EXPORT(tpxiYCrCb422ToRGB_8u_C2C3R, plain(kC2, px(3))),
    TPX_EXPORT(tpxiYCrCb422ToRGB_8u_C2C4R, alpha(kC2, px(4))),
    TPX_EXPORT(tpxiYCrCb422ToBGR_8u_C2C3R, plain(kC2, px(3))),
    TPX_EXPORT(tpxiYCrCb422ToBGR_8u_C2C4R, alpha(kC2, px(4))),
    TPX_EXPORT(tpxiYCrCb422ToRGB_8u_C2P3R, plain(kC2, kP3)),
    TPX_EXPORT(tpxiCbYCr422ToRGB_8u_C2C3R, plain(kC2, px(3))),
    TPX_EXPORT(tpxiCbYCr422ToBGR_8u_C2C4R, alpha(kC2, px(4))),
    TPX_EXPORT(tpxiCbYCr422ToBGR_709HDTV_8u_C2C3R, plain(kC2, px(3))),
    TPX_EXPORT(tpxiCbYCr422ToBGR_709HDTV_8u_C2C4R, alpha(kC2, px(4))),
    TPX_EXPORT(tpxiYCbCr422ToRGB_8u_P3C3R, plain(kP422, px(3))),
    TPX_EXPORT(tpxiYCbCr422ToBGR_8u_P3C3R, plain(kP422, px(3))),
    TPX_EXPORT(tpxiYCbCr420ToRGB_8u_P3C3R, dec420(kP420, px(3))),
    TPX_EXPORT(tpxiYCbCr420ToBGR_8u_P3C3R, dec420(kP420, px(3))),
    TPX_EXPORT(tpxiYCbCr420ToBGR_8u_P3C4R, dec420(kP420, px(4), Extra::Alpha)),
    TPX_EXPORT(tpxiYCbCr420ToBGR_709CSC_8u_P3C3R, dec420(kP420, px(3))),
    TPX_EXPORT(tpxiYCbCr420ToBGR_709HDTV_8u_P3C4R, dec420(kP420, px(4), Extra::Alpha)),
    TPX_EXPORT(tpxiYCrCb420ToRGB_8u_P3C4R, dec420(kP420, px(4), Extra::Alpha)),
    TPX_EXPORT(tpxiYCrCb420ToBGR_Filter_8u_P3C4R, dec420(kP420, px(4), Extra::Alpha)),
    TPX_EXPORT(tpxiYCbCr420ToRGB_8u_P2C3R, dec420(kP2, px(3))),
    TPX_EXPORT(tpxiYCbCr420ToRGB_8u_P2C4R, dec420(kP2, px(4), Extra::Alpha)),
    TPX_EXPORT(tpxiYCbCr420ToBGR_8u_P2C3R, dec420(kP2, px(3))),
    TPX_EXPORT(tpxiYCbCr420ToBGR_8u_P2C4R, dec420(kP2, px(4), Extra::Alpha)),
    TPX_EXPORT(tpxiYCrCb420ToRGB_8u_P2C3R, dec420(kP2, px(3))),
    TPX_EXPORT(tpxiYCrCb420ToRGB_8u_P2C4R, dec420(kP2, px(4), Extra::Alpha)),
    TPX_EXPORT(tpxiYCrCb420ToBGR_8u_P2C3R, dec420(kP2, px(3))),
    TPX_EXPORT(tpxiYCrCb420ToBGR_8u_P2C4R, dec420(kP2, px(4), Extra::Alpha)),
    TPX_EXPORT(tpxiYCbCr411ToBGR_8u_P3C3R, plain(kP411, px(3))),
    TPX_EXPORT(tpxiYCbCr411ToBGR_8u_P3C4R, alpha(kP411, px(4))),
    // Gray
    TPX_EXPORT(tpxiRGBToGray_8u_C3C1R, gray(1, 3, 1)),
    TPX_EXPORT(tpxiRGBToGray_8u_AC4C1R, gray(1, 4, 1)),
    TPX_EXPORT(tpxiRGBToGray_16u_C3C1R, gray(2, 3, 1)),
    TPX_EXPORT(tpxiRGBToGray_16u_AC4C1R, gray(2, 4, 1)),
    TPX_EXPORT(tpxiRGBToGray_16s_C3C1R, gray(2, 3, 1)),
    TPX_EXPORT(tpxiRGBToGray_16s_AC4C1R, gray(2, 4, 1)),
    TPX_EXPORT(tpxiRGBToGray_32f_C3C1R, gray(4, 3, 1)),
    TPX_EXPORT(tpxiRGBToGray_32f_AC4C1R, gray(4, 4, 1)),
    TPX_EXPORT(tpxiColorToGray_8u_C3C1R, gray(1, 3, 1, Extra::Weights32f)),
    TPX_EXPORT(tpxiColorToGray_8u_AC4C1R, gray(1, 4, 1, Extra::Weights32f)),
    TPX_EXPORT(tpxiColorToGray_16u_C3C1R, gray(2, 3, 1, Extra::Weights32f)),
    TPX_EXPORT(tpxiColorToGray_16u_AC4C1R, gray(2, 4, 1, Extra::Weights32f)),
    TPX_EXPORT(tpxiColorToGray_16s_C3C1R, gray(2, 3, 1, Extra::Weights32f)),
    TPX_EXPORT(tpxiColorToGray_16s_AC4C1R, gray(2, 4, 1, Extra::Weights32f)),
    TPX_EXPORT(tpxiColorToGray_32f_C3C1R, gray(4, 3, 1, Extra::Weights32f)),
    TPX_EXPORT(tpxiColorToGray_32f_AC4C1R, gray(4, 4, 1, Extra::Weights32f)),
    TPX_EXPORT(tpxiColorToGray_64f_C3C1R, gray(8, 3, 1, Extra::Weights64f)),
    TPX_EXPORT(tpxiColorToGray_64f_AC4C1R, gray(8, 4, 1, Extra::Weights64f)),
    TPX_EXPORT(tpxiGrayToRGB_8u_C1C3R, gray(1, 1, 3)),
    TPX_EXPORT(tpxiGrayToRGB_16u_C1C3R, gray(2, 1, 3)),
    TPX_EXPORT(tpxiGrayToRGB_32f_C1C3R, gray(4, 1, 3)),
    TPX_EXPORT(tpxiGrayToRGB_8u_C1C4R, gray(1, 1, 4, Extra::Alpha)),
    TPX_EXPORT(tpxiGrayToRGB_16u_C1C4R, gray(2, 1, 4, Extra::Alpha)),
    TPX_EXPORT(tpxiGrayToRGB_32f_C1C4R, gray(4, 1, 4, Extra::Alpha)),
    // Bayer demosaicing
    TPX_EXPORT(tpxiCFAToRGB_8u_C1C3R, cfa(1)),
    TPX_EXPORT(tpxiCFAToRGB_16u_C1C3R, cfa(2)),
    TPX_EXPORT(tpxiCFAToBGRA_VNG_8u_C1C4R, vng(1, false)),
    TPX_EXPORT(tpxiCFAToBGRA_VNG_16u_C1C4R, vng(2, false)),
    TPX_EXPORT(tpxiCFAToBGRA_VNG_8u_C1C4R_L, vng(1, true)),
    TPX_EXPORT(tpxiCFAToBGRA_VNG_16u_C1C4R_L, vng(2, true)),
    TPX_EXPORT(tpxiDemosaicAHD_8u_C1C3R, ahd(1)),
    TPX_EXPORT(tpxiDemosaicAHD_16u_C1C3R, ahd(2)),
    };
    return kTable;
}

}  // namespace

const std::vector<Export>& exportTable() { return table(); }

const Export* findExport(const char* name) {
    for (const Export& e : table())
        if (!std::strcmp(e.name, name)) return &e;
    return nullptr;
}

}  // namespace tpxtest

namespace tpxtest {
namespace {

// Element steps must hold whole elements: pad rows to a multiple of the element.
int64_t paddedStep(const ExportShape& s, int64_t rowBytes, int pad) {
    const int64_t step = rowBytes + pad;
    return (step + s.elem - 1) / s.elem * s.elem;
}

void allocate(const ExportShape& s, const ImageShape& im, int64_t width, int64_t height, int pad, uint32_t& seed,
              std::vector<std::vector<uint8_t>>& bufs, int64_t* steps) {
    for (int p = 0; p < im.planes; ++p) {
        const int64_t rowBytes = planeRowBytes(im, p, width);
        // Planes sharing a step use the luma plane's.
        steps[p] = im.pass == Pass::Planes && p > 0 ? steps[0] : paddedStep(s, rowBytes, pad);
        std::vector<uint8_t> b(size_t(steps[p] * (planeRows(im, p, height) + 1)));
        for (uint8_t& v : b) v = uint8_t((seed = seed * 1103515245u + 12345u) >> 16);
        bufs.push_back(std::move(b));
    }
}

}  // namespace

Buffers::Buffers(const Export& e, int64_t width, int64_t height, uint32_t seed, int pad) {
    const ExportShape& s = e.shape;
    allocate(s, s.src, width, height, pad, seed, src, args.srcStep);
    allocate(s, s.dst, width, height, pad, seed, dst, args.dstStep);
    for (size_t p = 0; p < src.size(); ++p) args.src[p] = src[p].data();
    for (size_t p = 0; p < dst.size(); ++p) args.dst[p] = dst[p].data();
    args.width = width;
    args.height = height;
    args.imageWidth = width;
    args.imageHeight = height;
    args.grid = seed % 4;
    args.alpha = seed % 200;
    if (s.extra == Extra::Weights32f) {
        const float w[3] = {0.25f, 0.5f, 0.125f};
        extra.assign(reinterpret_cast<const uint8_t*>(w), reinterpret_cast<const uint8_t*>(w) + sizeof w);
    } else if (s.extra == Extra::Weights64f) {
        const double w[3] = {0.299, 0.587, 0.114};
        extra.assign(reinterpret_cast<const uint8_t*>(w), reinterpret_cast<const uint8_t*>(w) + sizeof w);
    } else if (s.extra == Extra::Scale) {
        const float k[4] = {1.0f, 0.75f, 1.5f, 1.0f};
        extra.assign(reinterpret_cast<const uint8_t*>(k), reinterpret_cast<const uint8_t*>(k) + sizeof k);
    }
    args.extra = extra.empty() ? nullptr : extra.data();
    // Floating-point sources hold values in 0..1 rather than random bit patterns.
    if (s.elem >= 4 && !s.bayer())
        for (auto& b : src) {
            if (s.elem == 4)
                for (size_t i = 0; i + 4 <= b.size(); i += 4) {
                    const float f = float(b[i]) / 255.0f;
                    std::memcpy(&b[i], &f, 4);
                }
            else
                for (size_t i = 0; i + 8 <= b.size(); i += 8) {
                    const double f = double(b[i]) / 255.0;
                    std::memcpy(&b[i], &f, 8);
                }
        }
}

}  // namespace tpxtest
