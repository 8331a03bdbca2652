// libFuzzer target over every image export of the export table.
//
// The input picks an export, the kernel tier, the ROI (or mosaic and
// rectangle), every step (tight, padded, zero, negative, odd, overlapping,
// huge) and the family arguments. Each plane is its own allocation of exactly
// the bytes its rows span, so AddressSanitizer stops any access outside it;
// planes whose rows lie gigabytes apart are reserved without access and only
// the pages of their rows are opened. After the call the status must be one
// of the library's statuses, an error exactly when the arguments hold a
// fault (and then one of the faults' statuses, with nothing written), and
// otherwise the success or warning the member gives; no source byte and no
// destination byte outside the rows of the ROI (nor an AC4 alpha byte) may
// have changed.
#include "frame/cpu.hpp"
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

struct Faults {
    std::vector<TpxStatus> list;
    void add(bool present, TpxStatus s) {
        if (present) list.push_back(s);
    }
};

// Pointers and step arrays: each null now and then.
void maybeNull(Input& in, Args& a, const ExportShape& s) {
    auto planePointers = [&](const ImageShape& im, const void** p, bool& nullArray, bool& nullSteps) {
        if (im.pass == Pass::Planes || im.pass == Pass::PlaneSteps) {
            nullArray = in.oneIn(24);
            nullSteps = im.pass == Pass::PlaneSteps && in.oneIn(24);
            for (int i = 0; i < 3; ++i)
                if (in.oneIn(40)) p[i] = nullptr;
        } else {
            for (int i = 0; i < im.planes; ++i)
                if (in.oneIn(24)) p[i] = nullptr;
        }
    };
    planePointers(s.src, a.src, a.nullSrcArray, a.nullSrcSteps);
    planePointers(s.dst, const_cast<const void**>(a.dst), a.nullDstArray, a.nullDstSteps);
    if (s.extra == Extra::Scale && in.oneIn(24)) a.extra = nullptr;
}

// The faults the arguments hold, as the statuses the member may answer with.
Faults faultsOf(const Args& a, const ExportShape& s) {
    Faults f;
    auto direct = [&](const ImageShape& im, const void* const* p, bool nullArray, bool nullSteps) {
        const bool arrays = im.pass == Pass::Planes || im.pass == Pass::PlaneSteps;
        if (arrays) f.add(nullArray || nullSteps, tpxStatusNullPtr);
        else for (int i = 0; i < im.planes; ++i) f.add(!p[i], tpxStatusNullPtr);
    };
    direct(s.src, a.src, a.nullSrcArray, a.nullSrcSteps);
    direct(s.dst, const_cast<const void* const*>(a.dst), a.nullDstArray, a.nullDstSteps);
    if (s.bayer()) {
        f.add(s.extra == Extra::Scale && !a.extra, tpxStatusNullPtr);
        const int64_t m = INT32_MAX;
        f.add(s.wide && (a.imageWidth > m || a.imageHeight > m || a.x > m || a.y > m || a.width > m || a.height > m),
              tpxStatusSizeTooLarge);
        f.add(a.imageWidth < s.minW || a.imageHeight < s.minH, tpxStatusBadSize);
        f.add(uint64_t(a.grid) > 3, tpxStatusBadArg);
        f.add(a.x < 0 || a.y < 0 || a.x >= a.imageWidth || a.y >= a.imageHeight, tpxStatusBadSize);
        return f;
    }
    f.add(a.width < s.minW || a.height < s.minH, tpxStatusBadSize);
    auto entries = [&](const ImageShape& im, const void* const* p, bool nullArray) {
        if ((im.pass == Pass::Planes || im.pass == Pass::PlaneSteps) && !nullArray)
            for (int i = 0; i < 3; ++i) f.add(!p[i], tpxStatusNullPtr);
    };
    entries(s.src, a.src, a.nullSrcArray);
    entries(s.dst, const_cast<const void* const*>(a.dst), a.nullDstArray);
    return f;
}

TpxStatus successStatus(const Args& a, const ExportShape& s) {
    if (s.warn == Warn::OddSize && ((a.width | a.height) & 1)) return tpxStatusOddSize;
    if (s.warn == Warn::WidthQuad && a.width % 4) return tpxStatusOddSize;
    return tpxStatusOk;
}

// Family arguments: alpha, weights (sane or any bit pattern; null selects the
// fixed ones except for 64f), the VNG scale, the grid code and interpolation.
void chooseExtra(Input& in, Args& a, const ExportShape& s, std::vector<uint8_t>& extra) {
    a.alpha = in.byte() | (s.elem > 1 ? in.byte() << 8 : 0);
    auto values = [&](int n, int bytes) {
        extra.resize(size_t(n * bytes));
        const bool raw = in.oneIn(8);
        for (int i = 0; i < n; ++i) {
            const double v = raw ? 0 : double(int(in.byte()) - 64) / 128.0;
            if (bytes == 4) {
                float f = float(v);
                if (raw) { const uint32_t b = in.u32(); std::memcpy(&f, &b, 4); }
                std::memcpy(&extra[size_t(i * 4)], &f, 4);
            } else {
                double d = v;
                if (raw) { const uint64_t b = in.u64(); std::memcpy(&d, &b, 8); }
                std::memcpy(&extra[size_t(i * 8)], &d, 8);
            }
        }
        a.extra = extra.data();
    };
    switch (s.extra) {
        case Extra::Weights32f: if (!in.oneIn(6)) values(3, 4); break;
        case Extra::Weights64f: values(3, 8); break;
        case Extra::Scale: values(4, 4); break;
        default: break;
    }
    a.grid = in.oneIn(16) ? int32_t(in.u32()) : in.below(4);
    a.interpolation = int32_t(in.u32());
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
void describe(const Export& e, const Args& a, const Faults& f) {
    std::fprintf(stderr, "%s roi %lldx%lld at (%lld,%lld) image %lldx%lld steps %lld/%lld/%lld -> %lld/%lld/%lld grid %lld faults",
                 e.name, (long long)a.width, (long long)a.height, (long long)a.x, (long long)a.y,
                 (long long)a.imageWidth, (long long)a.imageHeight, (long long)a.srcStep[0], (long long)a.srcStep[1],
                 (long long)a.srcStep[2], (long long)a.dstStep[0], (long long)a.dstStep[1], (long long)a.dstStep[2],
                 (long long)a.grid);
    for (TpxStatus s : f.list) std::fprintf(stderr, " %d", s);
    std::fprintf(stderr, "\n");
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
    std::vector<uint8_t> extra;
    chooseExtra(in, a, s, extra);
    if (s.bayer()) {
        chooseMosaic(in, a, s);
    } else {
        a.width = chooseSide(in, s.minW, true);
        a.height = chooseSide(in, s.minH, false);
        if (a.width > 0 && a.height > 0 && a.width * a.height > 40000) a.height = std::max<int64_t>(1, 40000 / a.width);
    }
    // Non-null placeholders, so that only the pointers chosen below are null.
    static uint8_t marker;
    for (int i = 0; i < 3; ++i) a.src[i] = a.dst[i] = &marker;
    maybeNull(in, a, s);
    const Faults faults = faultsOf(a, s);
    const bool refused = !faults.list.empty();
    const Window win = s.bayer() && !refused ? windowOf(a, s) : Window{};

    // Row counts, row bytes and steps of every plane.
    const bool hugeMosaic = s.bayer() && (a.imageWidth > 4096 || a.imageHeight > 4096);
    int64_t rows[2][3] = {}, rowBytes[2][3] = {};
    for (int side = 0; side < 2; ++side) {
        const ImageShape& im = side ? s.dst : s.src;
        int64_t* steps = side ? a.dstStep : a.srcStep;
        for (int p = 0; p < im.planes; ++p) {
            if (refused) {
                // nothing is allocated but a few bytes
            } else if (s.bayer()) {
                rows[side][p] = side ? win.outH : win.rows;
                rowBytes[side][p] = side ? planeRowBytes(im, p, win.outW) : win.cols * s.elem;
            } else {
                rows[side][p] = planeRows(im, p, a.height);
                rowBytes[side][p] = planeRowBytes(im, p, a.width);
            }
            if (im.pass == Pass::Planes && p > 0) steps[p] = steps[0];
            else if (side == 0 && hugeMosaic) steps[p] = in.range(-16384, 16384);  // row 0 stays addressable
            else steps[p] = chooseStep(in, rowBytes[side][p], rows[side][p], s.wide);
        }
    }

    // Memory: exactly what the arguments describe, or a few bytes for a refused call.
    std::unique_ptr<PlaneMemory> mem[2][3];
    const uint32_t seed = in.u32();
    for (int side = 0; side < 2; ++side) {
        const ImageShape& im = side ? s.dst : s.src;
        const void** ptrs = side ? const_cast<const void**>(a.dst) : a.src;
        const int64_t* steps = side ? a.dstStep : a.srcStep;
        for (int p = 0; p < im.planes; ++p) {
            mem[side][p] = std::make_unique<PlaneMemory>();
            PlaneMemory& m = *mem[side][p];
            if (refused) {
                m.tiny();
            } else if (!m.allocate(rows[side][p], rowBytes[side][p], effectiveStep(s, steps[p]))) {
                return 0;  // too large even as a reservation: not a call we can make
            }
            m.fill(seed + uint32_t(side * 3 + p));
            if (!ptrs[p]) continue;
            uintptr_t at = m.row0();
            // A mosaic pointer addresses pixel (0,0) of the whole image.
            if (!refused && side == 0 && s.bayer())
                at -= uintptr_t(win.y0 * effectiveStep(s, steps[p]) + win.x0 * s.elem);
            ptrs[p] = reinterpret_cast<const void*>(at);
        }
    }

    if (std::getenv("TPXCC_FUZZ_DEBUG")) describe(e, a, faults);
    const TpxStatus got = e.call(a);
    ++(refused ? stats.refused : stats.ok)[size_t(&e - table.data())];
    if (!isLibraryStatus(got)) fail("status outside the table", e);
    if (refused) {
        if (std::find(faults.list.begin(), faults.list.end(), got) == faults.list.end())
            fail("refused call answered with a status none of its faults has", e);
    } else if (got != successStatus(a, s)) {
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
