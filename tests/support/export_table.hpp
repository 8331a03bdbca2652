// One table of every image export: its name, the shape of its images and
// arguments, and a thunk that calls it from a generic argument record. The
// fuzzer, the overflow tests and the concurrency test walk this table, so a
// family adds its members here once and every one of those covers them.
#pragma once

#include "tpxcc.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tpxtest {

// How an image is passed.
enum class Pass : uint8_t {
    Single,      // pointer, step
    Planes,      // array of three plane pointers, one step shared by the planes
    PlaneSteps,  // array of three plane pointers, array of three steps
    TwoPlane,    // luma pointer and step, chroma pointer and step
    Mosaic,      // demosaicing source: pointer at pixel (0,0) of the whole image
};

// One plane: `unitBytes` bytes for every `hsub` pixels of a row (a whole unit
// only), one plane row for every `vsub` image rows (whole ones only).
struct Plane {
    uint8_t unitBytes, hsub, vsub;
};

struct ImageShape {
    Pass pass;
    uint8_t planes;
    Plane plane[3];
    int8_t alphaByte;  // AC4 destination: byte of a unit that is never written (-1: none)
};

// Family arguments after the images.
enum class Extra : uint8_t { None, Alpha, Weights32f, Weights64f, Scale, Bayer };
// Status after a successful call.
enum class Warn : uint8_t { None, OddSize, WidthQuad };

struct ExportShape {
    ImageShape src, dst;
    uint8_t elem;           // element size in bytes
    bool elementSteps;      // the step is read as step >> log2(elem) elements
    int8_t minW, minH;      // ROI minimum (demosaic: image side minimum)
    Warn warn;
    Extra extra;
    bool wide;              // 64-bit sizes and steps (_L)
    uint8_t reach;          // demosaic: mosaic samples read on each side of a produced pixel
    bool bayer() const { return src.pass == Pass::Mosaic; }
};

// Everything an export may take. Plane pointers and steps by index; the
// demosaicing members take (x, y, width, height) and (imageWidth,
// imageHeight), the others the ROI (width, height).
struct Args {
    const void* src[3] = {};
    int64_t srcStep[3] = {};
    void* dst[3] = {};
    int64_t dstStep[3] = {};
    int64_t width = 0, height = 0;
    int64_t x = 0, y = 0, imageWidth = 0, imageHeight = 0;
    int64_t grid = 0, interpolation = 0;
    double alpha = 0;
    const void* extra = nullptr;  // weights (float[3] or double[3]) or the VNG scale (float[4])
    // Pass the plane-pointer or step arrays themselves as null.
    bool nullSrcArray = false, nullDstArray = false, nullSrcSteps = false, nullDstSteps = false;
};

using Thunk = TpxStatus (*)(const Args&);

struct Export {
    const char* name;
    ExportShape shape;
    Thunk call;
};

const std::vector<Export>& exportTable();
const Export* findExport(const char* name);

// Bytes of one row of plane p of an image `width` pixels wide, and its rows.
inline int64_t planeRowBytes(const ImageShape& s, int p, int64_t width) {
    return width / s.plane[p].hsub * s.plane[p].unitBytes;
}
inline int64_t planeRows(const ImageShape& s, int p, int64_t height) { return height / s.plane[p].vsub; }
// The byte step the library walks rows with, given the step argument.
inline int64_t effectiveStep(const ExportShape& s, int64_t step) {
    if (!s.elementSteps || s.elem == 1) return step;
    const int shift = s.elem == 2 ? 1 : s.elem == 4 ? 2 : 3;
    return (step >> shift) * s.elem;
}

}  // namespace tpxtest

namespace tpxtest {

// Images for one call of an export, each plane in its own buffer with rows
// `pad` bytes longer than the ROI needs and random contents; `args` points
// into them. Demosaicing members get a width x height mosaic converted whole,
// with the grid code seed % 4.
struct Buffers {
    Buffers(const Export& e, int64_t width, int64_t height, uint32_t seed, int pad = 3);
    Args args;
    std::vector<std::vector<uint8_t>> src, dst;
    std::vector<uint8_t> extra;
};

}  // namespace tpxtest
