// libFuzzer target over every image export of the export table.
//
// The input picks an export, the kernel tier, the ROI (or mosaic and
// rectangle), every step (tight, padded, zero, negative, odd, overlapping,
// huge) and the family arguments. Each plane is its own allocation of exactly
// the bytes its rows span, so AddressSanitizer stops any access outside it;
// planes whose rows lie gigabytes apart are reserved without access and only
// the pages of their rows are opened. After the call the status must be one
// of the library's statuses, an error exactly when the arguments hold a
// fault (and then the status of the first fault in the member's check
// order, with nothing written), and
// otherwise the success or warning the member gives; no source byte and no
// destination byte outside the rows of the ROI (nor an AC4 alpha byte) may
// have changed.
#include "frame/cpu.hpp"
#include "support/checks.hpp"
#include "support/export_table.hpp"
#include "support/plane_memory.hpp"

#include <algorithm>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

namespace {

using namespace tpxtest;

[[noreturn]] void fail(const char* what, const Export& e) {
    std::fprintf(stderr, "FAULT in %s: %s\n", e.name, what);
    std::abort();
}

// The fuzz input as a stream of choices; zeros once it is used up.
class Input {
public:
    Input(const uint8_t* d, size_t n) : d_(d), n_(n) {}
    uint8_t byte() { return pos_ < n_ ? d_[pos_++] : 0; }
    uint32_t u32() {
        uint32_t v = 0;
        for (int i = 0; i < 4; ++i) v = v << 8 | byte();
        return v;
    }
    uint64_t u64() { return uint64_t(u32()) << 32 | u32(); }
    int below(int n) { return byte() % n; }
    int64_t range(int64_t lo, int64_t hi) { return lo + int64_t(u32() % uint64_t(hi - lo + 1)); }
    bool oneIn(int n) { return below(n) == 1; }  // false once the input is used up

private:
    const uint8_t* d_;
    size_t n_, pos_ = 0;
};

// A step argument for rows of rowBytes bytes: tight, padded, zero, negative,
// odd, overlapping rows, huge (only with few rows), or any 32-bit value.
int64_t chooseStep(Input& in, int64_t rowBytes, int64_t rows, bool wide) {
    const bool few = rows <= 8;
    switch (in.below(few ? 12 : 8)) {
        case 0: case 1: return rowBytes;
        case 2: return rowBytes + in.range(1, 70);
        case 3: return 0;
        case 4: return -rowBytes;
        case 5: return -(rowBytes + in.range(1, 70));
        case 6: return rowBytes | 1;
        case 7: return rowBytes / 2 * (in.oneIn(2) ? 1 : -1);
        case 8: {
            static const int64_t huge[] = {INT_MAX, INT_MIN, INT_MAX - 1, INT_MIN + 1, 1 << 30, -(1 << 30), 0x7fff0001};
            return huge[in.below(7)];
        }
        case 9: return int32_t(in.u32());
        case 10: return wide ? (in.oneIn(2) ? 1 : -1) * ((int64_t(1) << 31) + in.range(0, 4096)) : rowBytes;
        default: return wide && rows <= 4 ? (in.oneIn(2) ? 1 : -1) * (int64_t(1) << 33) : -rowBytes;
    }
}

// Width or height of a ROI: mostly small and valid, wide enough now and then
// for every vector block size, sometimes below the member's minimum.
int64_t chooseSide(Input& in, int minSide, bool width) {
    if (in.oneIn(12)) {
        static const int64_t bad[] = {0, -1, INT_MIN, -2};
        const int k = in.below(5);
        return k < 4 ? bad[k] : minSide - 1;
    }
    if (!width) return in.oneIn(4) ? in.range(1, 40) : in.range(1, 12);
    switch (in.below(8)) {
        case 0: case 1: return in.range(80, 400);
        case 2: return in.range(400, 1100);
        default: return in.range(1, 80);
    }
}

bool isLibraryStatus(TpxStatus s) {
    static const TpxStatus all[] = {0, 1, 35, -5, -6, -8, -16, -47, -49, -54, -55, -224, -232};
    return std::find(std::begin(all), std::end(all), s) != std::end(all);
}

// Now and then a fault of the member's own checks: a null pointer, a null
// array, a family argument out of its range. Sizes and steps are chosen
// below, bad ones among them.
void chooseFaults(Input& in, Args& a, const std::vector<Fault>& faults) {
    for (const Fault& f : faults)
        if (f.status == tpxStatusNullPtr ? in.oneIn(24) : f.status != tpxStatusBadSize &&
                                                               f.status != tpxStatusBadStep &&
                                                               f.status != tpxStatusSizeTooLarge && in.oneIn(16))
            f.apply(a);
}

// Family arguments for a valid call of this size, from the family's own
// rules; their data (weights, matrices, gains) now and then any bit pattern.
void chooseFamily(Input& in, Args& a, const ExportShape& s, std::vector<uint8_t>& extra) {
    if (!s.family || !s.family->init) return;
    s.family->init(a, extra, in.u32());
    if (!extra.empty() && in.oneIn(8))
        for (uint8_t& b : extra) b = in.byte();
    for (int64_t& c : a.code)
        if (in.oneIn(32)) c = int32_t(in.u32());
}


void setTier(Input& in) {
    switch (in.below(4)) {
        case 0: tpx::setTierForTesting(tpx::Tier::Scalar, false); break;
        case 1: tpx::setTierForTesting(tpx::Tier::Avx2, false); break;
        case 2: tpx::setTierForTesting(tpx::Tier::Avx512, false); break;
        default: tpx::setTierForTesting(tpx::Tier::Avx512, true); break;
    }
}

// Mosaic, rectangle and the window of the mosaic that the rectangle reads:
// either a small mosaic held whole, or a mosaic of up to 2^31 - 1 (more for
// the 64-bit members) a side whose rectangle lies near the far corner, of
// which only the rows and columns within reach of the rectangle exist.
struct Window {
    int64_t x0 = 0, y0 = 0, cols = 0, rows = 0;
    int64_t outW = 0, outH = 0;  // the rectangle cut at the image edges
};
void chooseMosaic(Input& in, Args& a, const ExportShape& s) {
    if (in.oneIn(4)) {
        const int64_t top = s.wide && in.oneIn(8) ? INT64_MAX / 4 : INT32_MAX;
        a.imageWidth = in.range(s.minW, INT32_MAX) + (top > INT32_MAX ? in.range(0, 1 << 20) : 0);
        a.imageHeight = in.range(s.minH, INT32_MAX);
        a.x = a.imageWidth - (in.oneIn(16) ? 0 : in.range(1, 40));
        a.y = a.imageHeight - (in.oneIn(16) ? 0 : in.range(1, 40));
    } else {
        a.imageWidth = in.oneIn(16) ? in.range(-3, 4) : in.range(s.minW, 70);
        a.imageHeight = in.oneIn(16) ? in.range(-3, 4) : in.range(s.minH, 40);
        // An origin outside the image now and then.
        a.x = in.oneIn(16) ? (in.oneIn(2) ? -in.range(1, 2) : a.imageWidth) : in.range(0, std::max<int64_t>(a.imageWidth - 1, 0));
        a.y = in.oneIn(16) ? (in.oneIn(2) ? -in.range(1, 2) : a.imageHeight) : in.range(0, std::max<int64_t>(a.imageHeight - 1, 0));
    }
    a.width = in.oneIn(16) ? in.range(-2, 0) : in.range(1, 80);
    a.height = in.oneIn(16) ? in.range(-2, 0) : in.range(1, 30);
    if (s.wide && in.oneIn(16)) (in.oneIn(2) ? a.width : a.x) = int64_t(in.u64() >> in.below(40));
}
// The window of a valid call (all values within 32 bits).
Window windowOf(const Args& a, const ExportShape& s) {
    Window w;
    const int64_t reach = s.reach;
    w.outW = std::max<int64_t>(0, std::min(a.width, a.imageWidth - a.x));  // a negative width writes nothing
    w.outH = std::max<int64_t>(0, std::min(a.height, a.imageHeight - a.y));
    w.x0 = std::max<int64_t>(0, a.x - reach);
    w.y0 = std::max<int64_t>(0, a.y - reach);
    // Mirrored reads at the far edge stay within reach of it.
    w.cols = a.imageWidth - w.x0;
    w.rows = a.imageHeight - w.y0;
    if (a.x + w.outW + reach < a.imageWidth) w.cols = a.x + w.outW + reach - w.x0;
    if (a.y + w.outH + reach < a.imageHeight) w.rows = a.y + w.outH + reach - w.y0;
    return w;
}

// With TPXCC_FUZZ_DEBUG set, each call is printed before it is made (to
// see what a crashing input asks for); no faults listed = a valid call.
void describe(const Export& e, const Args& a, TpxStatus expected) {
    std::fprintf(stderr, "%s roi %lldx%lld at (%lld,%lld) image %lldx%lld steps %lld/%lld/%lld -> %lld/%lld/%lld codes[0] %lld",
                 e.name, (long long)a.width, (long long)a.height, (long long)a.x, (long long)a.y,
                 (long long)a.imageWidth, (long long)a.imageHeight, (long long)a.srcStep[0], (long long)a.srcStep[1],
                 (long long)a.srcStep[2], (long long)a.dstStep[0], (long long)a.dstStep[1], (long long)a.dstStep[2],
                 (long long)a.code[0]);
    std::fprintf(stderr, " expected %d\n", expected);
}

// Calls per export that succeeded and that were refused, printed at exit when
// TPXCC_FUZZ_STATS is set (which exports a corpus reaches, and how).
struct Stats {
    std::vector<long> ok, refused;
    Stats() : ok(exportTable().size()), refused(exportTable().size()) {}
    ~Stats() {
        if (!std::getenv("TPXCC_FUZZ_STATS")) return;
        long calls = 0, reached = 0;
        for (size_t i = 0; i < ok.size(); ++i) {
            std::fprintf(stderr, "%-44s %9ld ok %9ld refused\n", exportTable()[i].name, ok[i], refused[i]);
            calls += ok[i] + refused[i];
            reached += ok[i] > 0;
        }
        std::fprintf(stderr, "%ld calls; %ld of %zu exports called successfully\n", calls, reached, ok.size());
    }
};
Stats stats;

int run(const uint8_t* data, size_t size) {
    Input in(data, size);
    const auto& table = exportTable();
    const Export& e = table[in.u32() % table.size()];
    const ExportShape& s = e.shape;
    setTier(in);

    Args a;
    if (s.bayer()) {
        chooseMosaic(in, a, s);
    } else {
        a.width = chooseSide(in, s.minW, true);
        a.height = chooseSide(in, s.minH, false);
        if (a.width > 0 && a.height > 0 && a.width * a.height > 40000) a.height = std::max<int64_t>(1, 40000 / a.width);
    }
    std::vector<uint8_t> extra;
    chooseFamily(in, a, s, extra);
    // Non-null placeholders, so that only the pointers chosen below are null.
    static uint8_t marker;
    for (int i = 0; i < 4; ++i) a.src[i] = a.dst[i] = &marker;
    const std::vector<Fault> faults = faultsOf(e);
    chooseFaults(in, a, faults);
    // Whether anything but a step is refused: the rows to lay out follow from the rest.
    std::vector<Fault> others;
    for (const Fault& f : faults)
        if (f.status != tpxStatusBadStep) others.push_back(f);
    // (Steps are not chosen yet: a family check that reads them sees valid ones.)
    Args probe = a;
    for (int i = 0; i < 4; ++i) probe.srcStep[i] = probe.dstStep[i] = 1;
    const bool refusedBeforeSteps = checkStatus(others, probe) < 0;
    const Window win = s.bayer() && !refusedBeforeSteps ? windowOf(a, s) : Window{};

    // Row counts, row bytes and steps of every plane.
    const bool hugeMosaic = s.bayer() && (a.imageWidth > 4096 || a.imageHeight > 4096);
    int64_t rows[2][4] = {}, rowBytes[2][4] = {};
    for (int d = 0; d < 2; ++d) {
        const ImageShape& im = side(s, d);
        int64_t* steps = d ? a.dstStep : a.srcStep;
        for (int p = 0; p < im.planes; ++p) {
            if (refusedBeforeSteps) {
                // nothing is allocated but a few bytes
            } else if (s.bayer()) {
                rows[d][p] = d ? win.outH : win.rows;
                rowBytes[d][p] = d ? planeRowBytes(im, p, win.outW) : win.cols * elemBytes(im.elem);
            } else {
                rows[d][p] = planeRows(im, p, a.height);
                rowBytes[d][p] = rowBytesOf(s, d, p, a);
            }
            const int64_t perUnit = im.unit == StepUnit::Elements ? elemBytes(im.elem) : 1;
            if (im.pass == Pass::Planes && p > 0) steps[p] = steps[0];
            else if (s.noSteps) steps[p] = rowBytes[d][p] / perUnit;  // the library derives tight steps
            else if (d == 0 && hugeMosaic) steps[p] = in.range(-16384, 16384);  // row 0 stays addressable
            else steps[p] = chooseStep(in, rowBytes[d][p] / perUnit, rows[d][p], s.wide);
        }
    }
    const TpxStatus expected = checkStatus(faults, a);
    const bool refused = expected < 0;

    // Memory: exactly what the arguments describe, or a few bytes for a refused call.
    std::unique_ptr<PlaneMemory> mem[2][4];
    const uint32_t seed = in.u32();
    for (int d = 0; d < 2; ++d) {
        const ImageShape& im = side(s, d);
        const void** ptrs = d ? const_cast<const void**>(a.dst) : a.src;
        const int64_t* steps = d ? a.dstStep : a.srcStep;
        for (int p = 0; p < im.planes; ++p) {
            mem[d][p] = std::make_unique<PlaneMemory>();
            PlaneMemory& m = *mem[d][p];
            if (refused) {
                m.tiny();
            } else if (!m.allocate(rows[d][p], rowBytes[d][p], effectiveStep(im, steps[p]))) {
                return 0;  // too large even as a reservation: not a call we can make
            }
            m.fill(seed + uint32_t(d * 4 + p));
            if (!ptrs[p]) continue;
            uintptr_t at = m.row0();
            // A mosaic pointer addresses pixel (0,0) of the whole image.
            if (!refused && d == 0 && s.bayer())
                at -= uintptr_t(win.y0 * effectiveStep(im, steps[p]) + win.x0 * elemBytes(im.elem));
            ptrs[p] = reinterpret_cast<const void*>(at);
        }
    }

    if (std::getenv("TPXCC_FUZZ_DEBUG")) describe(e, a, expected);
    const TpxStatus got = e.call(a);
    ++(refused ? stats.refused : stats.ok)[size_t(&e - table.data())];
    if (!isLibraryStatus(got)) fail("status outside the table", e);
    if (refused) {
        if (got != expected) {
            std::fprintf(stderr, "status %d, the first fault's %d\n", got, expected);
            fail("refused call answered with a status other than its first fault's", e);
        }
    } else if (s.warn == Warn::Data ? got < 0 : got != successStatus(s, a)) {
        std::fprintf(stderr, "status %d\n", got);
        fail("valid call did not succeed with the expected status", e);
    }
    for (int p = 0; p < s.src.planes; ++p)
        if (!mem[0][p]->intact(false)) fail("a source changed", e);
    const int unit = s.dst.plane[0].unitBytes;
    for (int p = 0; p < s.dst.planes; ++p)
        if (!mem[1][p]->intact(!refused, s.dst.alphaByte, unit))
            fail(refused ? "a refused call wrote" : "wrote outside the rows of the ROI", e);
    return 0;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) { return run(data, size); }
