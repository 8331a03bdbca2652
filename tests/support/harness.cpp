#include "support/harness.hpp"

#include "support/checks.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

namespace tpxtest {
namespace {

uint8_t* sampleByte(const Export& e, const Args& a, bool dst, int64_t x, int64_t y, int c) {
    const ImageShape& im = dst || e.shape.inPlace() ? e.shape.dst : e.shape.src;
    const bool planar = im.pass == Pass::Planes || im.pass == Pass::PlaneSteps;
    const View<uint8_t> v = dst ? out<uint8_t>(e, a, planar ? c : 0) : in<uint8_t>(e, a, planar ? c : 0);
    const int eb = elemBytes(im.elem);
    return v.row0 + y * v.step + (planar ? x : x * (im.plane[0].unitBytes / eb) + c) * eb;
}

// Destination plane p of `got` against `want`: the samples of the ROI rows
// within the tolerance, every other byte identical.
::testing::AssertionResult samePlane(const Export& e, Buffers& got, Buffers& want, int p, double tolerance) {
    const std::vector<uint8_t>& g = got.bytes(1, p);
    const std::vector<uint8_t>& w = want.bytes(1, p);
    std::vector<uint8_t> inRow(g.size(), 0);
    const Elem el = e.shape.dst.elem;
    const int eb = elemBytes(el);
    if (tolerance > 0)
        for (int64_t r = 0; r < got.rows(1, p); ++r) {
            const std::ptrdiff_t at = got.row(1, p, r) - g.data();
            for (int64_t b = 0; b < got.rowBytes(1, p); ++b) inRow[size_t(at + b)] = 1;
        }
    for (size_t i = 0; i < g.size(); ++i) {
        if (g[i] == w[i]) continue;
        const std::ptrdiff_t fromRow0 = std::ptrdiff_t(i) - (got.row(1, p, 0) - g.data());
        if (inRow[i]) {
            // Compare the whole sample that holds byte i.
            const size_t start = i - size_t(((fromRow0 % eb) + eb) % eb);
            const double a = loadSample(el, &g[start]), b = loadSample(el, &w[start]);
            if ((a != a && b != b) || std::fabs(a - b) <= tolerance) {
                i = start + size_t(eb) - 1;
                continue;
            }
            return ::testing::AssertionFailure() << "plane " << p << " byte " << fromRow0 << " from row 0: got " << a
                                                 << ", want " << b;
        }
        return ::testing::AssertionFailure() << "plane " << p << " byte " << fromRow0 << " from row 0 (step "
                                             << got.stepBytes(1, p) << "): got " << int(g[i]) << ", want "
                                             << int(w[i]);
    }
    return ::testing::AssertionSuccess();
}

}  // namespace

double sampleAt(const Export& e, const Args& a, bool dst, int64_t x, int64_t y, int c) {
    return loadSample((dst || e.shape.inPlace() ? e.shape.dst : e.shape.src).elem, sampleByte(e, a, dst, x, y, c));
}

void put(const Export& e, const Args& a, int64_t x, int64_t y, int c, double v, bool dst) {
    storeSample((dst || e.shape.inPlace() ? e.shape.dst : e.shape.src).elem, sampleByte(e, a, dst, x, y, c), v);
}

Buffers imageOf(const Export& e, int64_t width, int64_t height, int channels, const SampleFn& value) {
    Buffers b(e, width, height, 3, {StepKind::Tight, StepKind::Tight});
    for (int64_t y = 0; y < height; ++y)
        for (int64_t x = 0; x < width; ++x)
            for (int c = 0; c < channels; ++c) put(e, b.args, x, y, c, value(c, x, y), false);
    return b;
}

void expectModelOn(const Model& m, const Export& e, const Buffers& prepared, const std::string& what) {
    Buffers got(prepared), want(prepared);
    // Layouts a member refuses (steps below 1 where it checks them): the
    // refusal, and nothing written.
    const TpxStatus refused = checkStatus(faultsOf(e), got.args);
    if (refused < 0) {
        EXPECT_EQ(e.call(got.args), refused) << e.name << " " << what;
        EXPECT_EQ(got.firstChange(1), "") << e.name << " " << what;
        return;
    }
    const TpxStatus status = e.call(got.args);
    const TpxStatus expected = m.reference(e, want.args);
    EXPECT_EQ(status, expected) << e.name << " " << what;
    EXPECT_EQ(got.firstChange(0), "") << e.name << " " << what;
    for (int p = 0; p < got.planes(1); ++p) ASSERT_TRUE(samePlane(e, got, want, p, m.tolerance)) << e.name << " " << what;
}

void expectModel(const Model& m, const Export& e, const Shape& s) {
    std::ostringstream where;
    where << s;
    expectModelOn(m, e, Buffers(e, s.width, s.height, s.seed, {s.src, s.dst}), where.str());
}

void expectModels(const std::vector<Model>& models, const std::vector<Shape>& shapes) {
    for (const Model& m : models) {
        const Export* e = findExport(m.name);
        ASSERT_NE(e, nullptr) << m.name << " is not in the export table";
        const std::vector<Shape> all = shapes.empty() ? standardShapes(e->shape.minW, e->shape.minH) : shapes;
        for (const Shape& s : all) {
            expectModel(m, *e, s);
            if (::testing::Test::HasFatalFailure()) return;
        }
    }
}

std::vector<const Export*> membersOf(const char* heading) {
    std::vector<const Export*> v;
    for (const Export& e : exportTable())
        if (!std::strcmp(e.family, heading)) v.push_back(&e);
    return v;
}

void expectFamily(const char* heading, size_t count, const std::function<Model(const Export&)>& pick,
                  const std::function<std::vector<Shape>(const Export&)>& shapes) {
    const std::vector<const Export*> members = membersOf(heading);
    ASSERT_EQ(members.size(), count) << heading;
    for (const Export* e : members) {
        expectModels({pick(*e)}, shapes ? shapes(*e) : std::vector<Shape>{});
        if (::testing::Test::HasFatalFailure()) return;
    }
}

void expectChecks(const Export& e) {
    const ExportShape& s = e.shape;
    const std::vector<Fault> faults = faultsOf(e);
    const int64_t w = std::max<int64_t>(s.minW, 8) + 1, h = std::max<int64_t>(s.minH, 4) + 2;
    const Buffers valid(e, w, h, 5);
    auto run = [&](std::initializer_list<size_t> which) {
        Buffers b(valid);
        std::string names;
        for (size_t k : which) {
            faults[k].apply(b.args);
            names += (names.empty() ? "" : " + ") + faults[k].name;
        }
        const TpxStatus want = checkStatus(faults, b.args);
        EXPECT_EQ(e.call(b.args), want) << e.name << " with " << names;
        if (want < 0) {
            EXPECT_EQ(b.firstChange(1), "") << e.name << " with " << names;
        }
        EXPECT_EQ(b.firstChange(0), "") << e.name << " with " << names;
    };
    for (size_t i = 0; i < faults.size(); ++i) {
        run({i});
        for (size_t j = i + 1; j < faults.size(); ++j) {
            run({i, j});
            run({j, i});
        }
    }
}

}  // namespace tpxtest
