// Differential tests of exports against independent models.
//
// A model is written in the test from the formulas alone, per pixel, and
// takes the same argument record as the export: it reads the source planes
// and writes into the destination planes exactly what the export must
// write, and returns the status the export must return. expectModels()
// runs each export and its model on the same images over the standard
// shapes (widths 1 to 67 and a few large ones, odd heights, tight, padded,
// upward and zero steps) and compares every byte of every destination
// buffer, guard bytes included: a byte written outside the ROI, or an AC4
// alpha byte written, is a difference like any other.
#pragma once

#include "support/buffers.hpp"
#include "support/export_table.hpp"
#include "support/roundtrips.hpp"
#include "support/shapes.hpp"

#include <cstring>
#include <functional>
#include <string>
#include <vector>

namespace tpxtest {

using Reference = TpxStatus (*)(const Export& e, const Args& a);

struct Model {
    const char* name;  // the export
    Reference reference;
    // Largest difference allowed in a sample the model writes (0: the same
    // bytes; floats are compared as values, NaN equal to NaN).
    double tolerance = 0;
};

// Each model against its export over the standard shapes (or `shapes`).
void expectModels(const std::vector<Model>& models, const std::vector<Shape>& shapes = {});
// The members of the table under `heading`.
std::vector<const Export*> membersOf(const char* heading);
// Every member of the table under `heading`, `count` of them, against the
// model pick() gives it (over shapes(), when given, of that member).
void expectFamily(const char* heading, size_t count, const std::function<Model(const Export&)>& pick,
                  const std::function<std::vector<Shape>(const Export&)>& shapes = {});
// One export against its model on one image, or on images the test prepared.
void expectModel(const Model& m, const Export& e, const Shape& s);
void expectModelOn(const Model& m, const Export& e, const Buffers& prepared, const std::string& what);

// Element x of row y of one plane, through the plane's step as the export
// reads it (rows need not be aligned to the element).
template <class T>
struct View {
    uint8_t* row0;
    int64_t step;
    T operator()(int64_t x, int64_t y) const {
        T v;
        std::memcpy(&v, row0 + y * step + x * int64_t(sizeof(T)), sizeof v);
        return v;
    }
    void set(int64_t x, int64_t y, T v) const { std::memcpy(row0 + y * step + x * int64_t(sizeof(T)), &v, sizeof v); }
};

// Plane p of the images an export reads (the destination, in place) and writes.
template <class T>
View<T> in(const Export& e, const Args& a, int p) {
    const bool d = e.shape.inPlace();
    const ImageShape& im = side(e.shape, d);
    const int q = im.pass == Pass::Planes ? 0 : p;
    void* base = d ? a.dst[p] : const_cast<void*>(a.src[p]);
    return {static_cast<uint8_t*>(base), effectiveStep(im, d ? a.dstStep[q] : a.srcStep[q])};
}
template <class T>
View<T> out(const Export& e, const Args& a, int p) {
    const ImageShape& im = e.shape.dst;
    const int q = im.pass == Pass::Planes ? 0 : p;
    return {static_cast<uint8_t*>(a.dst[p]), effectiveStep(im, a.dstStep[q])};
}

// Sample c of pixel x in row y as a number: channel c of an interleaved
// image, plane c of a planar one; of the source (or, in place, the image) or
// the destination. put() stores v in the element type (floats as they are,
// integers truncated: the caller rounds and saturates).
double sampleAt(const Export& e, const Args& a, bool dst, int64_t x, int64_t y, int c);
void put(const Export& e, const Args& a, int64_t x, int64_t y, int c, double v, bool dst = true);
// Images for `e`, width x height with tight rows, whose source samples
// c < channels of pixel (x, y) (as sampleAt counts them) are value(c, x, y).
Buffers imageOf(const Export& e, int64_t width, int64_t height, int channels, const SampleFn& value);

// The three results of an interleaved three-channel member for one pixel.
template <class S, class D = S>
std::vector<double> onePixel(TpxStatus (*f)(const S*, int, D*, int, TpxSize), S a, S b, S c) {
    const S src[3] = {a, b, c};
    D dst[3] = {};
    if (f(src, 3 * int(sizeof(S)), dst, 3 * int(sizeof(D)), {1, 1}) != tpxStatusOk) return {};
    return {double(dst[0]), double(dst[1]), double(dst[2])};
}

// Each check of `e` alone and every ordered pair of them on the valid
// arguments of a small image: the call answers with the status of the first
// fault in the member's order and writes nothing.
void expectChecks(const Export& e);

}  // namespace tpxtest
