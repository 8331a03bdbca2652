// What the rows of the export table are made with: the thunk that calls any
// export from an Args record, constructors of image shapes, and the shapes
// read from an export's name.
//
// The thunk reads the export's parameter list: before the ROI, a const
// element pointer is the next source plane and a non-const one the next
// destination plane (an in-place image is a destination), an array of plane
// pointers is the source or destination planes, and an int (or int64_t)
// right after an image is its step (a const int* right after a plane array,
// its step array); the ROI is TpxSize or TpxSizeL; every other scalar is the
// family's scalar j (integers from Args::code[j], floating values
// from Args::value[j]); a pointer after the ROI is the family's data
// (Args::extra) when const, the work buffer (Args::buffer) otherwise.
#pragma once

#include "support/export_table.hpp"

#include <array>
#include <cstring>
#include <string>
#include <type_traits>
#include <utility>

namespace tpxtest::rows {

// ---- The thunk ------------------------------------------------------------------
enum class Role : uint8_t { SrcPlane, SrcArray, DstPlane, DstArray, Step, StepArray, Roi, Scalar, Extra, Buffer };
struct Slot {
    Role role;
    uint8_t index;  // plane, scalar or step index
    bool dst;       // steps: of a destination image
};

template <class T> constexpr bool kElem = std::is_arithmetic_v<T> && !std::is_same_v<T, bool>;
template <class P> struct KindOf { static constexpr int v = 9; };  // a scalar
template <class T> struct KindOf<const T*> { static constexpr int v = kElem<T> ? 1 : 8; };
template <class T> struct KindOf<T*> { static constexpr int v = kElem<T> ? 2 : 8; };
template <class T> struct KindOf<const T* const*> { static constexpr int v = 3; };
template <class T> struct KindOf<T* const*> { static constexpr int v = 4; };
template <> struct KindOf<int> { static constexpr int v = 5; };
template <> struct KindOf<int64_t> { static constexpr int v = 5; };
template <> struct KindOf<TpxSize> { static constexpr int v = 6; };
template <> struct KindOf<TpxSizeL> { static constexpr int v = 6; };
template <class T, size_t N> struct KindOf<const T (*)[N]> { static constexpr int v = 8; };

template <class... P>
constexpr std::array<Slot, sizeof...(P)> slotsOf() {
    constexpr int kinds[] = {KindOf<P>::v..., 0};
    std::array<Slot, sizeof...(P)> out{};
    bool roiSeen = false;
    int src = 0, dst = 0, scalar = 0;
    // The image just before: 0 none, 1 a source plane, 2 a destination plane,
    // 3 a source array, 4 a destination array; and its plane index.
    int last = 0, lastIndex = 0;
    for (size_t i = 0; i < sizeof...(P); ++i) {
        const int k = kinds[i];
        int now = 0;
        Slot s{Role::Scalar, 0, false};
        if (k == 1 && !roiSeen && (last == 3 || last == 4)) {
            s = {Role::StepArray, 0, last == 4};  // a const int* after a plane array
        } else if (k == 1 && !roiSeen) {
            s = {Role::SrcPlane, uint8_t(src), false};
            now = 1, lastIndex = src++;
        } else if (k == 2 && !roiSeen) {
            s = {Role::DstPlane, uint8_t(dst), true};
            now = 2, lastIndex = dst++;
        } else if (k == 3 || k == 4) {
            s = {k == 3 ? Role::SrcArray : Role::DstArray, 0, k == 4};
            now = k, lastIndex = 0;
        } else if (k == 5 && last) {
            s = {Role::Step, uint8_t(lastIndex), last == 2 || last == 4};
        } else if (k == 6) {
            s = {Role::Roi, 0, false};
            roiSeen = true;
        } else if (k == 1 || k == 8) {
            s = {Role::Extra, 0, false};
        } else if (k == 2) {
            s = {Role::Buffer, 0, false};
        } else {
            s = {Role::Scalar, uint8_t(scalar++), false};
        }
        out[i] = s;
        last = now;
    }
    return out;
}

// Plane-pointer and step arrays built from Args (null when asked for).
struct Arrays {
    const void* src[4];
    void* dst[4];
    int srcStep[4], dstStep[4];
    explicit Arrays(const Args& a) {
        for (int i = 0; i < 4; ++i) {
            src[i] = a.src[i];
            dst[i] = a.dst[i];
            srcStep[i] = int(a.srcStep[i]);
            dstStep[i] = int(a.dstStep[i]);
        }
    }
};

// Any pointer as parameter type P (a data pointer), whatever its qualifiers.
template <class P>
P as(const volatile void* p) {
    return reinterpret_cast<P>(reinterpret_cast<uintptr_t>(p));
}

template <class P>
P argument(const Args& a, Arrays& arr, Slot s) {
    switch (s.role) {
        case Role::SrcPlane:
            if constexpr (std::is_pointer_v<P>) return as<P>(a.src[s.index]);
            break;
        case Role::DstPlane:
            if constexpr (std::is_pointer_v<P>) return as<P>(a.dst[s.index]);
            break;
        case Role::SrcArray:
            if constexpr (std::is_pointer_v<P>) return a.nullSrcArray ? nullptr : as<P>(arr.src);
            break;
        case Role::DstArray:
            if constexpr (std::is_pointer_v<P>) return a.nullDstArray ? nullptr : as<P>(arr.dst);
            break;
        case Role::StepArray:
            if constexpr (std::is_pointer_v<P>) {
                const bool nul = s.dst ? a.nullDstSteps : a.nullSrcSteps;
                return nul ? nullptr : as<P>(s.dst ? arr.dstStep : arr.srcStep);
            }
            break;
        case Role::Step:
            if constexpr (std::is_integral_v<P>) return P(s.dst ? a.dstStep[s.index] : a.srcStep[s.index]);
            break;
        case Role::Roi:
            if constexpr (std::is_same_v<P, TpxSize>) return TpxSize{int32_t(a.width), int32_t(a.height)};
            else if constexpr (std::is_same_v<P, TpxSizeL>) return TpxSizeL{a.width, a.height};
            break;
        case Role::Extra:
            if constexpr (std::is_pointer_v<P>) return a.nullExtra ? nullptr : as<P>(a.extra);
            break;
        case Role::Buffer:
            if constexpr (std::is_pointer_v<P>) return a.nullBuffer ? nullptr : as<P>(a.buffer);
            break;
        case Role::Scalar:
            if constexpr (std::is_floating_point_v<P>) {
                return P(a.value[s.index]);
            } else if constexpr (std::is_integral_v<P>) {
                return P(a.code[s.index]);
            }
            break;
    }
    return P{};
}

template <class... P, size_t... I>
TpxStatus callWith(TpxStatus (*f)(P...), const Args& a, std::index_sequence<I...>) {
    static constexpr std::array<Slot, sizeof...(P)> slots = slotsOf<P...>();
    Arrays arr(a);
    return f(argument<P>(a, arr, slots[I])...);
}

template <class... P>
TpxStatus invoke(TpxStatus (*f)(P...), const Args& a) {
    return callWith(f, a, std::index_sequence_for<P...>{});
}

inline TpxBayerGrid gridOf(const Args& a) {
    TpxBayerGrid g;
    const int32_t code = int32_t(a.code[0]);
    static_assert(sizeof g == sizeof code, "the grid is passed as a 32-bit code");
    std::memcpy(&g, &code, sizeof g);
    return g;
}

// Demosaicing (grid code[0], interpolation code[1]): pointer at the whole mosaic, rectangle, mosaic size and step.
template <class T>
TpxStatus invoke(TpxStatus (*f)(const T*, TpxRect, TpxSize, int, T*, int, TpxBayerGrid, int), const Args& a) {
    return f(static_cast<const T*>(a.src[0]), {int32_t(a.x), int32_t(a.y), int32_t(a.width), int32_t(a.height)},
             {int32_t(a.imageWidth), int32_t(a.imageHeight)}, int(a.srcStep[0]), static_cast<T*>(a.dst[0]),
             int(a.dstStep[0]), gridOf(a),
             int(a.code[1]));
}
template <class T>
TpxStatus invoke(TpxStatus (*f)(const T*, TpxRect, TpxSize, int, T*, int, TpxBayerGrid), const Args& a) {
    return f(static_cast<const T*>(a.src[0]), {int32_t(a.x), int32_t(a.y), int32_t(a.width), int32_t(a.height)},
             {int32_t(a.imageWidth), int32_t(a.imageHeight)}, int(a.srcStep[0]), static_cast<T*>(a.dst[0]),
             int(a.dstStep[0]), gridOf(a));
}
template <class T>
TpxStatus invoke(TpxStatus (*f)(const T*, TpxRect, TpxSize, int, const Tpx32f*, T*, int, TpxBayerGrid),
                 const Args& a) {
    return f(static_cast<const T*>(a.src[0]), {int32_t(a.x), int32_t(a.y), int32_t(a.width), int32_t(a.height)},
             {int32_t(a.imageWidth), int32_t(a.imageHeight)}, int(a.srcStep[0]),
             a.nullExtra ? nullptr : static_cast<const Tpx32f*>(a.extra), static_cast<T*>(a.dst[0]),
             int(a.dstStep[0]), gridOf(a));
}
template <class T>
TpxStatus invoke(TpxStatus (*f)(const T*, TpxRectL, TpxSizeL, int64_t, const Tpx32f*, T*, int64_t, TpxBayerGrid),
                 const Args& a) {
    return f(static_cast<const T*>(a.src[0]), {a.x, a.y, a.width, a.height}, {a.imageWidth, a.imageHeight},
             a.srcStep[0], a.nullExtra ? nullptr : static_cast<const Tpx32f*>(a.extra), static_cast<T*>(a.dst[0]),
             a.dstStep[0], gridOf(a));
}

template <auto F>
TpxStatus thunk(const Args& a) {
    return invoke(F, a);
}

#define TPX_EXPORT(fn, shape) {#fn, shape, &::tpxtest::rows::thunk<&fn>}

// ---- Shapes -----------------------------------------------------------------------
constexpr Plane kNone{0, 1, 1};
constexpr ImageShape kNoImage{Pass::None, 0, {kNone, kNone, kNone, kNone}, -1, Elem::U8, StepUnit::Bytes};

// Interleaved pixels of `channels` elements; an AC4 image leaves channel
// `alpha` of each pixel alone.
constexpr ImageShape px(int channels, Elem e = Elem::U8, int alpha = -1, StepUnit u = StepUnit::Bytes) {
    const int b = elemBytes(e);
    return {Pass::Single, 1, {{uint8_t(channels * b), 1, 1}, kNone, kNone, kNone},
            int8_t(alpha < 0 ? -1 : alpha * b), e, u};
}
// Packed 4:2:2: four bytes per pair of pixels.
constexpr ImageShape kC2{Pass::Single, 1, {{4, 2, 1}, kNone, kNone, kNone}, -1, Elem::U8, StepUnit::Bytes};
// n full planes sharing one step.
constexpr ImageShape planes(int n, Elem e = Elem::U8, StepUnit u = StepUnit::Bytes) {
    const Plane p{uint8_t(elemBytes(e)), 1, 1};
    return {Pass::Planes, uint8_t(n), {p, p, n > 2 ? p : kNone, n > 3 ? p : kNone}, -1, e, u};
}
// Luma plane and two chroma planes subsampled h x v, each with its own step.
constexpr ImageShape planar(int h, int v) {
    return {Pass::PlaneSteps, 3, {{1, 1, 1}, {1, uint8_t(h), uint8_t(v)}, {1, uint8_t(h), uint8_t(v)}, kNone}, -1,
            Elem::U8, StepUnit::Bytes};
}
// Luma plane and an interleaved chroma plane subsampled h x v.
constexpr ImageShape twoPlane(int h, int v) {
    return {Pass::TwoPlane, 2, {{1, 1, 1}, {2, uint8_t(h), uint8_t(v)}, kNone, kNone}, -1, Elem::U8, StepUnit::Bytes};
}
constexpr ImageShape mosaic(Elem e, StepUnit u = StepUnit::Bytes) {
    return {Pass::Mosaic, 1, {{uint8_t(elemBytes(e)), 1, 1}, kNone, kNone, kNone}, -1, e, u};
}

// A value for the alpha channel of C4 destinations: code[0] (and value[0]
// for floating members).
extern const Family kAlpha;

// A member with the common order (null pointers, size, plane entries).
constexpr ExportShape plain(ImageShape s, ImageShape d, int minW = 1, int minH = 1, Warn w = Warn::None,
                            const Family* f = nullptr) {
    return {s, d, "", int8_t(minW), int8_t(minH), w, false, false, 0, f};
}
// An in-place member: one image, source and destination.
constexpr ExportShape inPlace(ImageShape im, const char* order = "", const Family* f = nullptr) {
    return {kNoImage, im, order, 1, 1, Warn::None, false, false, 0, f};
}
constexpr ExportShape withOrder(ExportShape s, const char* order) { return s.order = order, s; }
constexpr ExportShape noSteps(ExportShape s) { return s.noSteps = true, s; }
constexpr ExportShape wide(ExportShape s) { return s.wide = true, s; }

// ---- Shapes read from the name ------------------------------------------------
// tpxi<operation>[_<qualifier>]_<types>_<layouts>[I]R[_L]: the element types
// (one for both sides, or source then destination: 8u16s), the layouts (C3,
// AC4, P3, AP4; C2 packed 4:2:2, P2 luma and interleaved chroma; one for both
// sides, or source then destination; I in place), R for images with steps, _L
// for 64-bit sizes, and the chroma subsampling named before and after "To".
struct Name {
    std::string s;
    Elem elem[2];
    std::string layout[2];  // the source's is empty in place
    bool steps, wide;
    int hsub[2], vsub[2];   // 0: not subsampled
    bool has(const char* w) const { return s.find(w) != std::string::npos; }
    bool inPlace() const { return layout[0].empty(); }
    // Side d's image, interleaved pixels and shared-step planes counted in `unit`;
    // subsampled planes have steps of their own.
    ImageShape image(int d, StepUnit unit = StepUnit::Bytes) const;
    // A C4 destination of a source with fewer channels takes the alpha argument.
    const Family* alpha() const;
};
Name readName(const char* name);

}  // namespace tpxtest::rows

namespace tpxtest {
// Every export the header declares, with its section (written by generate.cmake).
struct HeaderRow {
    const char *section, *name;
    Thunk call;
};
extern const HeaderRow kHeaderRows[];
extern const size_t kHeaderRowCount;
// The shape of each family's members from the name; demosaicing lists its rows.
ExportShape ycbcr444Shape(const rows::Name& n);
ExportShape encoderShape(const rows::Name& n);
ExportShape decoderShape(const rows::Name& n);
ExportShape grayShape(const rows::Name& n);
void addDemosaicRows(std::vector<Export>& t);
ExportShape chromaLayoutShape(const rows::Name& n);
ExportShape ycocgYuvShape(const rows::Name& n);
ExportShape hsvHlsYccShape(const rows::Name& n);
ExportShape xyzLabLuvShape(const rows::Name& n);
ExportShape twistGammaShape(const rows::Name& n);
ExportShape reduceBitsToneMapShape(const rows::Name& n);
}  // namespace tpxtest
