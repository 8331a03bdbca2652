// tpxiCFAToRGB_8u_C1C3R / tpxiCFAToRGB_16u_C1C3R against a per-pixel model of
// the demosaic written here from its rules.
#include "argcheck.hpp"
#include "image.hpp"
#include "shapes.hpp"
#include "tpxcc.h"

#include <gtest/gtest.h>

#include <array>
#include <climits>
#include <cstdlib>
#include <vector>

using namespace tpxtest;

namespace {

template <class T>
TpxStatus call(const T* src, TpxRect roi, TpxSize size, int srcStep, T* dst, int dstStep, int grid, int interp) {
    if constexpr (sizeof(T) == 1)
        return tpxiCFAToRGB_8u_C1C3R(src, roi, size, srcStep, dst, dstStep, TpxBayerGrid(grid), interp);
    else
        return tpxiCFAToRGB_16u_C1C3R(src, roi, size, srcStep, dst, dstStep, TpxBayerGrid(grid), interp);
}

// Colour (0 red, 1 green, 2 blue) at (0,0), (1,0), (0,1), (1,1) of each grid.
constexpr int kGrid[4][4] = {{2, 1, 1, 0}, {0, 1, 1, 2}, {1, 2, 0, 1}, {1, 0, 2, 1}};

// The expected R,G,B of pixel (i, j) of a W x H mosaic read through `at`.
template <class At>
std::array<unsigned, 3> model(At&& at, int W, int H, int grid, int i, int j) {
    auto P = [&](int x, int y) -> unsigned {
        x = x < 0 ? -x : x >= W ? 2 * W - 2 - x : x;  // mirror about the edge pixel
        y = y < 0 ? -y : y >= H ? 2 * H - 2 - y : y;
        return at(x, y);
    };
    auto colour = [&](int x, int y) { return kGrid[grid][(x & 1) + 2 * (y & 1)]; };
    std::array<unsigned, 3> px{};
    const int own = colour(i, j);
    px[size_t(own)] = P(i, j);
    const unsigned h = (P(i - 1, j) + P(i + 1, j) + 1) / 2, v = (P(i, j - 1) + P(i, j + 1) + 1) / 2;
    if (own == 1) {
        px[size_t(colour(i + 1, j))] = h;
        px[size_t(colour(i, j + 1))] = v;
        return px;
    }
    px[size_t(2 - own)] = (P(i - 1, j - 1) + P(i + 1, j - 1) + P(i - 1, j + 1) + P(i + 1, j + 1) + 2) / 4;
    unsigned g = (P(i - 1, j) + P(i + 1, j) + P(i, j - 1) + P(i, j + 1) + 2) / 4;
    if (i >= 2 && j >= 2 && i < W - 2 && j < H - 2) {
        const unsigned dH = unsigned(std::abs(int(P(i - 2, j)) - int(P(i + 2, j))));
        const unsigned dV = unsigned(std::abs(int(P(i, j - 2)) - int(P(i, j + 2))));
        if (dH < dV) g = h;
        if (dV < dH) g = v;
    }
    px[1] = g;
    return px;
}

// Fills: full range, a narrow range (many gradient ties), the extremes only.
template <class T>
void fillMosaic(Image& img, int kind, uint32_t seed) {
    Random<T> rnd(seed);
    const T top = T(~T(0));
    if (kind == 0) fill<T>(img, rnd);
    if (kind == 1) fill<T>(img, [&] { return T(rnd() % 4 + (seed & 1 ? top - 3 : 0)); });
    if (kind == 2) fill<T>(img, [&] {
        const T r = rnd();
        return T(r & 2 ? top - (r & 1) : r & 1);
    });
}

// Converts `roi` of a mosaic of `shape` with every grid and compares the
// destination with the model, guard bytes included.
template <class T>
void expectModel(const Shape& s, TpxRect roi, int kind) {
    Image src(s.width, s.height, sizeof(T), s.src, s.seed);
    fillMosaic<T>(src, kind, s.seed);
    const int w = std::min(roi.width, s.width - roi.x), h = std::min(roi.height, s.height - roi.y);
    for (int grid = 0; grid < 4; ++grid) {
        Image dst(3 * w, h, sizeof(T), s.dst, s.seed + 7 * unsigned(grid));
        const int interp = int(s.seed * 2654435761u) >> (grid * 4);  // any value; ignored
        ASSERT_EQ(call<T>(src.ptr<T>(), roi, {s.width, s.height}, src.step(), dst.ptr<T>(), dst.step(), grid, interp),
                  tpxStatusOk);
        auto at = [&](int x, int y) { return unsigned(src.get<T>(x, y)); };
        // With a zero destination step the rows (of alternating phase) overwrite
        // one another in an order of the library's choosing: check bounds only.
        if (s.dst != StepKind::Zero) {
            ASSERT_TRUE(matches<T>(dst, 3 * w, h, [&](int e, int y) {
                return model(at, s.width, s.height, grid, roi.x + e / 3, roi.y + y)[size_t(e % 3)];
            })) << s << " grid " << grid << " rect " << roi.x << "," << roi.y << " " << roi.width << "x" << roi.height;
        }
        ASSERT_TRUE(dst.untouchedExcept([&](int e, int) { return e < 3 * w; })) << s << " grid " << grid;
    }
}

// Whole images and rectangles touching each edge, reaching past the right and
// bottom, lying inside the interior, over the standard shapes (made tall
// enough to have interior rows).
template <class T>
void differential() {
    for (Shape s : standardShapes(2, 2)) {
        if (s.width > 300 && s.height < 6) s.height = 6;
        else if (s.width <= 300) s.height += int(s.seed % 9);
        const int W = s.width, H = s.height;
        const TpxRect rects[] = {{0, 0, W, H},
                                 {0, 0, (W + 1) / 2, (H + 1) / 2},
                                 {W / 3, H / 3, W, INT_MAX},
                                 {W - 1, H - 1, 5, 5},
                                 {2, 2, W - 4, H - 4},
                                 {std::min(3, W - 1), 1, W / 2 + 1, H}};
        for (const TpxRect& r : rects) {
            if (r.width < 1 || r.height < 1) continue;
            for (int kind = 0; kind < 3; ++kind) expectModel<T>(s, r, kind);
        }
    }
}

TEST(CFAToRGB, MatchesModel8u) { differential<uint8_t>(); }
TEST(CFAToRGB, MatchesModel16u) { differential<uint16_t>(); }

// Small images whole, every size from 2 x 2 up, every grid.
TEST(CFAToRGB, SmallImages) {
    for (int W = 2; W <= 9; ++W)
        for (int H = 2; H <= 9; ++H) {
            const Shape s{W, H, StepKind::Padded, StepKind::Padded, uint32_t(W * 16 + H)};
            expectModel<uint8_t>(s, {0, 0, W, H}, 0);
            expectModel<uint16_t>(s, {0, 0, W, H}, 2);
        }
}

// Plain statements of the rules on shaped images, 7 x 7 RGGB, centre (3,3) blue
// and (2,2) red: flat areas give the value everywhere; a vertical edge (dV = 0)
// takes green from above and below, a horizontal one from left and right.
TEST(CFAToRGB, FlatAndEdges) {
    auto run = [](auto&& f) {
        std::vector<uint8_t> src(49), dst(49 * 3);
        for (int j = 0; j < 7; ++j)
            for (int i = 0; i < 7; ++i) src[size_t(j * 7 + i)] = uint8_t(f(i, j));
        EXPECT_EQ(tpxiCFAToRGB_8u_C1C3R(src.data(), {0, 0, 7, 7}, {7, 7}, 7, dst.data(), 21, tpxBayerRGGB, 0), 0);
        return dst;
    };
    for (uint8_t v : run([](int, int) { return 77; })) EXPECT_EQ(v, 77);
    // Bright from column 3 on: at the blue site (3,3) dH = 190, dV = 0, so green
    // is avg2 of (3,2), (3,4); red is avg4 of the diagonals.
    auto vert = run([](int i, int) { return i >= 3 ? 200 : 10; });
    EXPECT_EQ(vert[(3 * 7 + 3) * 3 + 1], 200);
    EXPECT_EQ(vert[(3 * 7 + 3) * 3 + 0], 105);
    // Bright from row 2 on: at the red site (2,2) green comes from the row; at
    // the green site (3,2) blue is avg2 of the column.
    auto horiz = run([](int, int j) { return j >= 2 ? 180 : 20; });
    EXPECT_EQ(horiz[(2 * 7 + 2) * 3 + 1], 180);
    EXPECT_EQ(horiz[(2 * 7 + 3) * 3 + 2], 100);
}

// The 16u member turns byte steps into element steps by an arithmetic shift,
// so an odd step gives the same result as the even one below it.
TEST(CFAToRGB, OddStepsRoundDown16u) {
    const int W = 40, H = 9;
    std::vector<uint16_t> src(size_t(W + 1) * H);
    Random<uint16_t> rnd(3);
    for (auto& v : src) v = rnd();
    for (int stride : {W, W + 1}) {
        for (int dir : {1, -1}) {
            const int even = dir * 2 * stride;
            const uint16_t* base = dir > 0 ? src.data() : src.data() + size_t(stride) * (H - 1);
            std::vector<uint16_t> a(size_t(W) * 3 * H + 2), b(a.size());
            ASSERT_EQ(tpxiCFAToRGB_16u_C1C3R(base, {0, 0, W, H}, {W, H}, even, a.data(), 6 * W, tpxBayerGRBG, 0), 0);
            ASSERT_EQ(tpxiCFAToRGB_16u_C1C3R(base, {0, 0, W, H}, {W, H}, even + 1, b.data(), 6 * W + 1, tpxBayerGRBG, 0), 0);
            EXPECT_EQ(a, b) << "step " << even;
        }
    }
}

// Every check in its order for both members; bad rectangle origins are -6
// whatever their size; rectangles cut to nothing write nothing and succeed.
TEST(CFAToRGB, Checks) {
    const int W = 12, H = 8;
    Image src8(W, H, 1, StepKind::Tight, 1), dst8(3 * W, H, 1, StepKind::Tight, 2);
    Image src16(W, H, 2, StepKind::Tight, 3), dst16(3 * W, H, 2, StepKind::Tight, 4);
    CheckArgs v;
    v.srcStep[0] = W;
    v.dstStep[0] = 3 * W;
    v.roi = {W, H};
    v.ext = {1, 1, 4, 4, tpxBayerBGGR};
    auto r = [](const CheckArgs& a) {
        return TpxRect{int(a.ext[0]), int(a.ext[1]), int(a.ext[2]), int(a.ext[3])};
    };
    const std::vector<Fault> order = {
        nullSrc(), nullDst(), badWidth(1), badHeight(1), badHeight(-3),
        custom("grid 4", tpxStatusBadArg, [](CheckArgs& a) { a.ext[4] = 4; }),
        custom("grid -1", tpxStatusBadArg, [](CheckArgs& a) { a.ext[4] = -1; }),
        custom("x -1", tpxStatusBadSize, [](CheckArgs& a) { a.ext[0] = -1; }),
        custom("y -2", tpxStatusBadSize, [](CheckArgs& a) { a.ext[1] = -2; }),
        custom("x = W", tpxStatusBadSize, [](CheckArgs& a) { a.ext[0] = a.roi.width; }),
        custom("y past H", tpxStatusBadSize, [](CheckArgs& a) { a.ext[1] = INT_MAX; }),
    };
    CheckArgs v8 = v;
    v8.src[0] = src8.origin();
    v8.dst[0] = dst8.origin();
    expectCheckOrder("8u", [&](CheckArgs& a) {
        return call(a.s<uint8_t>(), r(a), a.roi, a.srcStep[0], a.d<uint8_t>(), a.dstStep[0], int(a.ext[4]), 0);
    }, v8, order, {&dst8});
    CheckArgs v16 = v;
    v16.src[0] = src16.origin();
    v16.dst[0] = dst16.origin();
    v16.srcStep[0] *= 2;
    v16.dstStep[0] *= 2;
    expectCheckOrder("16u", [&](CheckArgs& a) {
        return call(a.s<uint16_t>(), r(a), a.roi, a.srcStep[0], a.d<uint16_t>(), a.dstStep[0], int(a.ext[4]), 0);
    }, v16, order, {&dst16});

    for (TpxRect empty : {TpxRect{3, 3, 0, 4}, TpxRect{3, 3, 4, -1}, TpxRect{0, 0, INT_MIN, 2}}) {
        EXPECT_EQ(call(src8.ptr<uint8_t>(), empty, {W, H}, W, dst8.ptr<uint8_t>(), 3 * W, 0, 0), 0);
        EXPECT_EQ(call(src16.ptr<uint16_t>(), empty, {W, H}, 2 * W, dst16.ptr<uint16_t>(), 6 * W, 3, 0), 0);
        EXPECT_TRUE(dst8.untouched());
        EXPECT_TRUE(dst16.untouched());
    }
    // A bad origin is refused even when the rectangle is empty.
    EXPECT_EQ(call(src8.ptr<uint8_t>(), {-1, 0, 0, 0}, {W, H}, W, dst8.ptr<uint8_t>(), 3 * W, 0, 0), tpxStatusBadSize);
    EXPECT_EQ(call(src16.ptr<uint16_t>(), {0, H, -5, 2}, {W, H}, 2 * W, dst16.ptr<uint16_t>(), 6 * W, 0, 0),
              tpxStatusBadSize);
}

}  // namespace
