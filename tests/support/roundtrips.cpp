#include "support/roundtrips.hpp"

#include "support/buffers.hpp"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace tpxtest {
namespace {

std::vector<RoundTrip>& registry() {
    static std::vector<RoundTrip> r;
    return r;
}

// Channels of an image: elements of an interleaved unit (a pixel, or a
// packed pair), luma and the two bytes of a chroma pair, or planes.
int channelsOf(const ImageShape& im) {
    if (im.pass == Pass::Single) return im.plane[0].unitBytes / elemBytes(im.elem);
    return im.pass == Pass::TwoPlane ? 3 : im.planes;
}
// Channel c of the sample that covers pixel (x, y).
uint8_t* sampleAt(Buffers& b, int d, const ImageShape& im, int c, int64_t x, int64_t y) {
    const int e = elemBytes(im.elem);
    const int p = im.pass == Pass::Single || (im.pass == Pass::TwoPlane && c == 0) ? 0 : im.pass == Pass::TwoPlane ? 1 : c;
    const Plane& pl = im.plane[p];
    const int64_t unit = x / pl.hsub * pl.unitBytes;
    const int64_t within = im.pass == Pass::Single ? c * e : im.pass == Pass::TwoPlane && c > 0 ? c - 1 : 0;
    return b.row(d, p, y / pl.vsub) + unit + within;
}
// Picture values 0..255 scaled to the element type (see SampleFn).
void store(Elem el, uint8_t* p, double v) {
    const double scaled = el == Elem::U16 ? v * 257 : el == Elem::S16 ? v * 257 - 32768 : v;
    if (el == Elem::F32 || el == Elem::F64) storeSample(el, p, v / 255);
    else storeSample(el, p, double(std::lround(scaled)));
}

}  // namespace

const std::vector<RoundTrip>& roundTrips() { return registry(); }

RoundTripRegistrar::RoundTripRegistrar(const char* there, const char* back, double bound) {
    registry().push_back({there, back, bound});
}

double smoothPicture(int c, int64_t x, int64_t y) {
    x %= 64, y %= 48;
    return c == 0 ? 40 + 2 * x + y : c == 1 ? 60 + x + 2 * y : c == 2 ? 200 - x - y : 0;
}

double roundTripError(const RoundTrip& t, int64_t width, int64_t height, const SampleFn& value) {
    const Export* a = findExport(t.there);
    const Export* b = findExport(t.back);
    if (!a || !b) return -1;
    const Layout tight{StepKind::Tight, StepKind::Tight};
    Buffers first(*a, width, height, 1, tight), second(*b, width, height, 2, tight);
    const ImageShape &from = a->shape.src, &to = b->shape.dst;
    for (int64_t y = 0; y < height; ++y)
        for (int64_t x = 0; x < width; ++x)
            for (int c = 0; c < channelsOf(from); ++c) store(from.elem, sampleAt(first, 0, from, c, x, y), value(c, x, y));
    if (a->call(first.args) < 0 || first.planes(1) != second.planes(0)) return -1;
    for (int p = 0; p < first.planes(1); ++p) {
        if (first.rowBytes(1, p) != second.rowBytes(0, p) || first.rows(1, p) != second.rows(0, p)) return -1;
        for (int64_t r = 0; r < first.rows(1, p); ++r)
            std::memcpy(second.row(0, p, r), first.row(1, p, r), size_t(first.rowBytes(1, p)));
    }
    if (b->call(second.args) < 0) return -1;
    double worst = 0;
    const int channels = std::min(std::min(channelsOf(from), channelsOf(to)), 3);
    for (int64_t y = 0; y < height; ++y)
        for (int64_t x = 0; x < width; ++x)
            for (int c = 0; c < channels; ++c)
                worst = std::max(worst, std::fabs(loadSample(from.elem, sampleAt(first, 0, from, c, x, y)) -
                                                  loadSample(to.elem, sampleAt(second, 1, to, c, x, y))));
    return worst;
}

}  // namespace tpxtest
