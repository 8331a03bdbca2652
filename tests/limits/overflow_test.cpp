// Sizes and steps near the limits, on small memory: every export with row
// steps of +-2^31 (and beyond 32 bits for the 64-bit members), whose rows
// are a few pages inside an address-space reservation that faults anywhere
// else; and demosaicing of a mosaic 2^31 - 1 pixels a side through a
// rectangle in its far corner, of which only the rows and columns the
// rectangle reads exist. Each result must equal the same conversion of a
// small compact image with the same pixels.
#include "support/export_table.hpp"
#include "support/plane_memory.hpp"

#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <memory>
#include <vector>

namespace {

using namespace tpxtest;

const ImageShape& side(const ExportShape& s, int d) { return d ? s.dst : s.src; }

// The rows of every plane of a Buffers image, as (pointer, rows, row bytes, byte step).
struct PlaneRows {
    const uint8_t* p;
    int64_t rows, rowBytes, step;
};
PlaneRows planeOf(const Export& e, const Buffers& b, int d, int p) {
    const ExportShape& s = e.shape;
    const ImageShape& im = side(s, d);
    return {(d ? b.dst : b.src)[size_t(p)].data(), planeRows(im, p, b.args.height), planeRowBytes(im, p, b.args.width),
            effectiveStep(s, d ? b.args.dstStep[p] : b.args.srcStep[p])};
}

// Calls `e` on a width x height image whose planes all take the step
// argument `step`, and on the same pixels compact; the destination rows and
// status must agree and nothing else may change.
void expectSameWithStep(const Export& e, int64_t width, int64_t height, int64_t step) {
    const ExportShape& s = e.shape;
    const uint32_t seed = uint32_t(width * 31 + height);
    Buffers compact(e, width, height, seed, 0), before(e, width, height, seed, 0);
    const TpxStatus want = e.call(compact.args);

    Args a = compact.args;
    std::vector<std::unique_ptr<PlaneMemory>> mem[2];
    for (int d = 0; d < 2; ++d)
        for (int p = 0; p < side(s, d).planes; ++p) {
            const PlaneRows from = planeOf(e, before, d, p);
            const int64_t e64 = effectiveStep(s, step);
            auto m = std::make_unique<PlaneMemory>();
            ASSERT_TRUE(m->allocate(from.rows, from.rowBytes, e64)) << e.name;
            m->fill(seed + uint32_t(d * 3 + p));
            for (int64_t r = 0; r < from.rows; ++r)
                std::memcpy(m->row(r), from.p + r * from.step, size_t(from.rowBytes));
            m->snapshot();
            (d ? a.dstStep : a.srcStep)[p] = step;
            if (d) a.dst[p] = m->row(0);
            else a.src[p] = m->row(0);
            mem[d].push_back(std::move(m));
        }
    ASSERT_EQ(e.call(a), want) << e.name << " step " << step;
    for (int p = 0; p < s.src.planes; ++p) EXPECT_TRUE(mem[0][size_t(p)]->intact(false)) << e.name << " source";
    for (int p = 0; p < s.dst.planes; ++p) {
        PlaneMemory& m = *mem[1][size_t(p)];
        EXPECT_TRUE(m.intact(true, s.dst.alphaByte, s.dst.plane[0].unitBytes)) << e.name << " step " << step;
        const PlaneRows got = planeOf(e, compact, 1, p);
        for (int64_t r = 0; r < got.rows; ++r)
            ASSERT_EQ(0, std::memcmp(m.row(r), got.p + r * got.step, size_t(got.rowBytes)))
                << e.name << " step " << step << " plane " << p << " row " << r;
    }
}

TEST(HugeSteps, EveryExportAddressesRowsInSixtyFourBits) {
    for (const Export& e : exportTable()) {
        const ExportShape& s = e.shape;
        std::vector<int64_t> steps = {INT_MAX, INT_MIN, (1 << 30) + 1, -(1 << 30) - 1};
        if (s.wide) steps.insert(steps.end(), {(int64_t(1) << 32) + 1, -(int64_t(1) << 33)});
        // Rows 2 and 3 lie beyond 32-bit offsets; a mosaic needs five rows.
        const int64_t height = s.bayer() ? 6 : 4;
        for (int64_t step : steps) {
            SCOPED_TRACE(e.name);
            expectSameWithStep(e, 131, height, step);
            if (HasFatalFailure()) return;
        }
    }
}

// 16-bit images whose rows lie an odd number of bytes apart.
TEST(OddSteps, SixteenBitRowsNeedNotBeAligned) {
    for (const Export& e : exportTable())
        if (e.shape.elem == 2) {
            SCOPED_TRACE(e.name);
            const int64_t width = 45, rowBytes = width * (e.shape.bayer() ? 2 : e.shape.dst.plane[0].unitBytes);
            expectSameWithStep(e, width, 7, rowBytes * 4 + 7);
            expectSameWithStep(e, width, 7, -(rowBytes * 4 + 7));
        }
}

// A rectangle near the far corner of a mosaic 2^31 - 1 pixels a side: pixel
// (x, y) of the mosaic is pixel (x - x0, y - y0) of a small window. The
// origin (x0, y0) is even, so the window has the phase of the mosaic, and
// the window reaches the mosaic's right and bottom edges, so it mirrors the
// same way; the small mosaic that is the window gives the same pixels.
TEST(FarCorner, DemosaicOfAHugeMosaicMatchesItsWindow) {
    const int64_t W = INT32_MAX, H = INT32_MAX, x0 = W - 15, y0 = H - 13;  // W - 15 and H - 13 are even
    for (const Export& e : exportTable()) {
        if (!e.shape.bayer()) continue;
        SCOPED_TRACE(e.name);
        const int elem = e.shape.elem;
        for (int64_t stepPixels : {16, 21, -16, 0}) {
            const int64_t step = stepPixels * elem;
            Buffers small(e, 15, 13, 77, 0), huge(e, 15, 13, 77, 0);
            // Window: 15 x 13 samples at `step` bytes; the same bytes in both calls.
            std::vector<uint8_t> window(size_t(15 * elem + 13 * std::llabs(step)));
            for (size_t i = 0; i < window.size(); ++i) window[i] = uint8_t(i * 37 + 11);
            const uintptr_t row0 = uintptr_t(window.data()) + uintptr_t(step < 0 ? -12 * step : 0);
            small.args.src[0] = reinterpret_cast<const void*>(row0);
            small.args.srcStep[0] = step;
            small.args.x = 6, small.args.y = 6, small.args.width = 9, small.args.height = 9;
            // The huge mosaic's row 0 lies y0 rows and x0 columns before the window.
            huge.args.src[0] = reinterpret_cast<const void*>(row0 - uintptr_t(y0 * effectiveStep(e.shape, step) + x0 * elem));
            huge.args.srcStep[0] = step;
            huge.args.imageWidth = W, huge.args.imageHeight = H;
            // A rectangle reaching far past the edges, cut to the same 9 x 7 pixels.
            huge.args.x = x0 + 6, huge.args.y = y0 + 6, huge.args.width = INT32_MAX, huge.args.height = INT32_MAX;
            ASSERT_EQ(e.call(small.args), tpxStatusOk);
            ASSERT_EQ(e.call(huge.args), tpxStatusOk);
            EXPECT_TRUE(small.dst == huge.dst) << "step " << step;
        }
    }
}

}  // namespace
