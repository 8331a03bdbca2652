// Sizes and steps near the limits, on small memory: every export with row
// steps of +-2^31 (and beyond 32 bits for the 64-bit members), whose rows
// are a few pages inside an address-space reservation that faults anywhere
// else; and demosaicing of a mosaic 2^31 - 1 pixels a side through a
// rectangle in its far corner, of which only the rows and columns the
// rectangle reads exist. Each result must equal the same conversion of a
// small compact image with the same pixels.
#include "support/buffers.hpp"
#include "support/checks.hpp"
#include "support/export_table.hpp"
#include "support/plane_memory.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

namespace {

using namespace tpxtest;


// Calls `e` on a width x height image whose planes all take the step
// argument `step`, and on the same pixels compact; the destination rows and
// status must agree and nothing else may change.
void expectSameWithStep(const Export& e, int64_t width, int64_t height, int64_t step) {
    const ExportShape& s = e.shape;
    const uint32_t seed = uint32_t(width * 31 + height);
    const Layout tight{StepKind::Tight, StepKind::Tight};
    Buffers compact(e, width, height, seed, tight), before(e, width, height, seed, tight);
    const TpxStatus want = e.call(compact.args);

    Args a = compact.args;
    std::vector<std::unique_ptr<PlaneMemory>> mem[2];
    for (int d = 0; d < 2; ++d)
        for (int p = 0; p < side(s, d).planes; ++p) {
            const int64_t rows = before.rows(d, p), rowBytes = before.rowBytes(d, p);
            auto m = std::make_unique<PlaneMemory>();
            ASSERT_TRUE(m->allocate(rows, rowBytes, effectiveStep(side(s, d), step))) << e.name;
            m->fill(seed + uint32_t(d * 4 + p));
            for (int64_t r = 0; r < rows; ++r) std::memcpy(m->row(r), before.row(d, p, r), size_t(rowBytes));
            m->snapshot();
            (d ? a.dstStep : a.srcStep)[p] = step;
            if (d) a.dst[p] = m->row(0);
            else a.src[p] = m->row(0);
            mem[d].push_back(std::move(m));
        }
    // A step the member refuses: the refusal, and nothing written.
    const TpxStatus refused = checkStatus(faultsOf(e), a);
    ASSERT_EQ(e.call(a), refused < 0 ? refused : want) << e.name << " step " << step;
    for (int p = 0; p < s.src.planes; ++p) EXPECT_TRUE(mem[0][size_t(p)]->intact(false)) << e.name << " source";
    if (refused < 0) {
        for (auto& m : mem[1]) EXPECT_TRUE(m->intact(false)) << e.name << " step " << step;
        return;
    }
    for (int p = 0; p < s.dst.planes; ++p) {
        PlaneMemory& m = *mem[1][size_t(p)];
        EXPECT_TRUE(m.intact(true, s.dst.alphaByte, s.dst.plane[0].unitBytes)) << e.name << " step " << step;
        for (int64_t r = 0; r < compact.rows(1, p); ++r)
            ASSERT_EQ(0, std::memcmp(m.row(r), compact.row(1, p, r), size_t(compact.rowBytes(1, p))))
                << e.name << " step " << step << " plane " << p << " row " << r;
    }
}

TEST(HugeSteps, EveryExportAddressesRowsInSixtyFourBits) {
    for (const Export& e : exportTable()) {
        const ExportShape& s = e.shape;
        if (s.noSteps) continue;  // whole images: the library derives the steps
        std::vector<int64_t> steps = {INT_MAX, (1 << 30) + 1, INT_MIN, -(1 << 30) - 1};
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

// Rows an odd number of bytes apart: unaligned 16-bit rows, and steps that
// count whole elements lose the remainder.
TEST(OddSteps, RowsAnOddNumberOfBytesApart) {
    for (const Export& e : exportTable()) {
        const ExportShape& s = e.shape;
        if (s.noSteps || s.src.unit == StepUnit::Elements || s.dst.unit == StepUnit::Elements) continue;
        SCOPED_TRACE(e.name);
        const Buffers widest(e, 45, 7, 1);
        int64_t rowBytes = 0;
        for (int d = 0; d < 2; ++d)
            for (int p = 0; p < widest.planes(d); ++p) rowBytes = std::max(rowBytes, widest.rowBytes(d, p));
        expectSameWithStep(e, 45, 7, rowBytes * 4 + 7);
        expectSameWithStep(e, 45, 7, -(rowBytes * 4 + 7));
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
        const int elem = elemBytes(e.shape.src.elem);
        for (int64_t stepPixels : {16, 21, -16, 0}) {
            const int64_t step = stepPixels * elem;
            const Layout tight{StepKind::Tight, StepKind::Tight};
            Buffers small(e, 15, 13, 77, tight), huge(e, 15, 13, 77, tight);
            // Window: 15 x 13 samples at `step` bytes; the same bytes in both calls.
            std::vector<uint8_t> window(size_t(15 * elem + 13 * std::llabs(step)));
            for (size_t i = 0; i < window.size(); ++i) window[i] = uint8_t(i * 37 + 11);
            const uintptr_t row0 = uintptr_t(window.data()) + uintptr_t(step < 0 ? -12 * step : 0);
            small.args.src[0] = reinterpret_cast<const void*>(row0);
            small.args.srcStep[0] = step;
            small.args.x = 6, small.args.y = 6, small.args.width = 9, small.args.height = 9;
            // The huge mosaic's row 0 lies y0 rows and x0 columns before the window.
            huge.args.src[0] = reinterpret_cast<const void*>(row0 - uintptr_t(y0 * effectiveStep(e.shape.src, step) + x0 * elem));
            huge.args.srcStep[0] = step;
            huge.args.imageWidth = W, huge.args.imageHeight = H;
            // A rectangle reaching far past the edges, cut to the same 9 x 7 pixels.
            huge.args.x = x0 + 6, huge.args.y = y0 + 6, huge.args.width = INT32_MAX, huge.args.height = INT32_MAX;
            ASSERT_EQ(e.call(small.args), tpxStatusOk);
            ASSERT_EQ(e.call(huge.args), tpxStatusOk);
            EXPECT_TRUE(small.sameDestination(huge)) << "step " << step;
        }
    }
}

}  // namespace
