// One table of every image export: its name, the shape of its images and
// arguments, its checks in order, and a thunk that calls it from a generic
// argument record. The check-order, model, tier-agreement, limit, concurrency
// and fuzz tests all walk this table. Its rows are the header's declarations
// (support/rows/generate.cmake); each family's file in support/rows/ reads
// its members' shapes from their names and adds what names cannot say.
#pragma once

#include "tpxcc.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

namespace tpxtest {

// How an image is passed.
enum class Pass : uint8_t {
    None,        // no image on this side (in-place members have a destination only)
    Single,      // pointer, step
    Planes,      // array of plane pointers, one step shared by the planes
    PlaneSteps,  // array of plane pointers, array of steps
    TwoPlane,    // luma pointer and step, chroma pointer and step
    Mosaic,      // demosaicing source: pointer at pixel (0,0) of the whole image
};

// How a step argument becomes the byte distance between rows.
enum class StepUnit : uint8_t {
    Bytes,          // the step is the byte distance
    WholeElements,  // (step >> log2 elem) * elem: an odd byte step loses its remainder
    Elements,       // step * elem: the step counts elements
};

// Element type of an image's samples (for comparisons with a tolerance and
// for filling sources with sensible values).
enum class Elem : uint8_t { U8, U16, S16, U32, S32, F32, F64 };
constexpr int elemBytes(Elem e) {
    return e == Elem::U8 ? 1 : e == Elem::U16 || e == Elem::S16 ? 2 : e == Elem::F64 ? 8 : 4;
}
// The sample of type e at p as a number, and v stored there (integers
// truncated: the caller rounds and saturates). p need not be aligned.
template <class T> T loadAs(const uint8_t* p) { T v; std::memcpy(&v, p, sizeof v); return v; }
template <class T> void storeAs(uint8_t* p, T v) { std::memcpy(p, &v, sizeof v); }
inline double loadSample(Elem e, const uint8_t* p) {
    switch (e) {
        case Elem::U8: return *p;
        case Elem::U16: return loadAs<uint16_t>(p);
        case Elem::S16: return loadAs<int16_t>(p);
        case Elem::U32: return loadAs<uint32_t>(p);
        case Elem::S32: return loadAs<int32_t>(p);
        case Elem::F32: return loadAs<float>(p);
        case Elem::F64: return loadAs<double>(p);
    }
    return 0;
}
inline void storeSample(Elem e, uint8_t* p, double v) {
    switch (e) {
        case Elem::U8: storeAs(p, uint8_t(v)); break;
        case Elem::U16: storeAs(p, uint16_t(v)); break;
        case Elem::S16: storeAs(p, int16_t(v)); break;
        case Elem::U32: storeAs(p, uint32_t(v)); break;
        case Elem::S32: storeAs(p, int32_t(v)); break;
        case Elem::F32: storeAs(p, float(v)); break;
        case Elem::F64: storeAs(p, v); break;
    }
}

// One plane: `unitBytes` bytes for every `hsub` pixels of a row (whole units
// only, or with `partial` a last partial unit too), one plane row for every
// `vsub` image rows (whole ones only).
struct Plane {
    uint8_t unitBytes, hsub, vsub;
    bool partial = false;
};

struct ImageShape {
    Pass pass;
    uint8_t planes;
    Plane plane[4];
    int8_t alphaByte;  // AC4 destination: byte of a unit that is never written (-1: none)
    Elem elem;
    StepUnit unit;
};

// Status after a successful call.
enum class Warn : uint8_t {
    None,
    OddSize,    // +35 when the width or the height is odd
    WidthQuad,  // +35 when the width is not a multiple of 4
    FieldBlock, // +35 when the width is odd or the height is not a multiple of 4
    Data,       // 0 or another status that depends on the pixels (see the family's model)
};

struct Args;

// A check of a family's own (a range, a code): how to make valid arguments
// fail it, and whether given arguments fail it.
struct FamilyCheck {
    const char* name;
    TpxStatus status;
    void (*apply)(Args&);
    bool (*present)(const Args&);
};

// What a family adds to the shapes: its own arguments for a valid call, its
// own source values, and its own checks. Every hook may be null.
struct Family {
    // Arguments after the images and the ROI for a valid call (`extra` holds
    // any data they point at; `seed` varies them between calls).
    void (*init)(Args& a, std::vector<uint8_t>& extra, uint32_t seed);
    // Source values where random bytes (integers) or 0..1 (floats) do not suit.
    // Called with each source plane's row-0 pointer, row bytes, rows and byte step.
    void (*fill)(int plane, uint8_t* row0, int64_t rowBytes, int64_t rows, int64_t step, uint32_t seed);
    const FamilyCheck* checks;
    uint8_t checkCount;
    bool extraRequired;  // a null Args::extra is a null-pointer fault (checked with the images)
    // Bytes of a row of plane p of side d where the shape alone cannot say
    // (they depend on a family argument, such as a bit offset); null: the shape's.
    int64_t (*rowBytes)(int d, int p, const Args& a) = nullptr;
};

struct ExportShape {
    ImageShape src, dst;
    // Checks in order, one letter each:
    //   n  null pointers passed directly (images, plane and step arrays, required extras)
    //   s  ROI below minW x minH (-6)
    //   p  null entries inside plane arrays
    //   t  any step below 1 (-16)
    //   l  a 64-bit size or value above 2^31 - 1 (-232)
    //   0..7  the family's own check of that index (Family::checks)
    // "" means "nsp". Demosaicing members keep their own rules (see the fuzzer).
    const char* order;
    int8_t minW, minH;  // ROI minimum (demosaic: image side minimum); minH 0: the height is not checked
    Warn warn;
    bool wide;          // 64-bit sizes and steps (_L)
    bool noSteps;       // whole images with rows packed without padding: no step arguments
    uint8_t reach;      // demosaic: mosaic samples read on each side of a produced pixel
    const Family* family;
    bool bayer() const { return src.pass == Pass::Mosaic; }
    bool inPlace() const { return src.pass == Pass::None; }
    const char* checks() const { return order && *order ? order : "nsp"; }
};

// Everything an export may take. Plane pointers and steps by index; the
// demosaicing members take (x, y, width, height) and (imageWidth,
// imageHeight), the others the ROI (width, height). In-place members use
// the destination images only.
struct Args {
    const void* src[4] = {};
    int64_t srcStep[4] = {};
    void* dst[4] = {};
    int64_t dstStep[4] = {};
    int64_t width = 0, height = 0;
    int64_t x = 0, y = 0, imageWidth = 0, imageHeight = 0;
    const void* extra = nullptr;  // weights, matrices, the VNG scale: family data
    void* buffer = nullptr;       // a work buffer
    // The family's scalars in the order of the parameter list: integers
    // (alpha values, codes, levels, the Bayer grid) in code[j], floating
    // values in value[j].
    int64_t code[6] = {};
    double value[6] = {};
    // Pass the plane-pointer or step arrays themselves as null.
    bool nullSrcArray = false, nullDstArray = false, nullSrcSteps = false, nullDstSteps = false;
    bool nullExtra = false, nullBuffer = false;
};

using Thunk = TpxStatus (*)(const Args&);

struct Export {
    const char* name;
    ExportShape shape;
    Thunk call;
    const char* family = nullptr;  // set by the table: the family's heading
};

const std::vector<Export>& exportTable();
const Export* findExport(const char* name);

// Bytes of one row of plane p of an image `width` pixels wide, and its rows.
inline int64_t planeRowBytes(const ImageShape& s, int p, int64_t width) {
    const Plane& pl = s.plane[p];
    return (pl.partial ? (width + pl.hsub - 1) : width) / pl.hsub * pl.unitBytes;
}
inline int64_t planeRows(const ImageShape& s, int p, int64_t height) { return height / s.plane[p].vsub; }
// The byte step the library walks rows with, given the step argument.
inline int64_t effectiveStep(const ImageShape& s, int64_t step) {
    const int e = elemBytes(s.elem);
    switch (s.unit) {
        case StepUnit::Elements: return step * e;
        case StepUnit::WholeElements: return e == 1 ? step : (step >> (e == 2 ? 1 : e == 4 ? 2 : 3)) * e;
        default: return step;
    }
}
// A step argument whose rows lie `bytes` apart (bytes a multiple of the unit).
inline int64_t stepArgument(const ImageShape& s, int64_t bytes) {
    return s.unit == StepUnit::Elements ? bytes / elemBytes(s.elem) : bytes;
}
// The side of an export whose images are the destination (and, in place, the source).
inline const ImageShape& side(const ExportShape& s, int d) { return d ? s.dst : s.src; }
// Bytes of a row of plane p of side d for the call `a` (ROI a.width wide).
inline int64_t rowBytesOf(const ExportShape& s, int d, int p, const Args& a) {
    if (s.family && s.family->rowBytes) return s.family->rowBytes(d, p, a);
    return planeRowBytes(side(s, d), p, a.width);
}

}  // namespace tpxtest
