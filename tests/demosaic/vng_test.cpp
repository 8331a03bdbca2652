// VNG demosaicing: exactness against a per-pixel model on random mosaics,
// rectangles, properties of the method, and the argument checks.
#include "demosaic/cfa_model.hpp"
#include "support/argcheck.hpp"
#include "support/shapes.hpp"

#include <array>
#include <cmath>
#include <random>

using namespace cfamodel;
using tpxtest::Image;
using tpxtest::StepKind;

namespace {

struct Off {
    int dx, dy;
};

// Expected B, G, R, A of image pixel (x, y).
template <class T>
std::array<int, 4> model(const Mosaic<T>& m, int grid, long x, long y, const float* scale) {
    const int maxV = sizeof(T) == 1 ? 255 : 65535;
    auto P = [&](Off o) { return m.at(x + o.dx, y + o.dy); };
    auto col = [&](Off o) { return colour(grid, x + o.dx, y + o.dy); };
    auto ad = [&](Off a, Off b) { return std::abs(P(a) - P(b)); };
    const int own = col({0, 0});
    const bool green = own == G;
    const Off dirs[8] = {{0, -1}, {1, 0}, {0, 1}, {-1, 0}, {1, -1}, {1, 1}, {-1, -1}, {-1, 1}};
    int grad[8];
    std::vector<Off> region[8];
    for (int k = 0; k < 8; ++k) {
        const Off d = dirs[k], d2{2 * d.dx, 2 * d.dy}, md{-d.dx, -d.dy}, c{0, 0};
        const int mainPairs = ad(d, md) + ad(d2, c);
        if (k < 4) {
            const Off p{d.dy != 0, d.dx != 0};
            int half = 0;
            for (int s : {-1, 1}) {
                const Off sp{s * p.dx, s * p.dy};
                half += ad({sp.dx + d.dx, sp.dy + d.dy}, {sp.dx - d.dx, sp.dy - d.dy}) +
                        ad({sp.dx + d2.dx, sp.dy + d2.dy}, sp);
            }
            grad[k] = 2 * mainPairs + half;
            region[k] = {c, d, d2, {d.dx + p.dx, d.dy + p.dy}, {d.dx - p.dx, d.dy - p.dy}};
            if (green)
                region[k] = {c, d, d2, p, {-p.dx, -p.dy}, {d2.dx + p.dx, d2.dy + p.dy}, {d2.dx - p.dx, d2.dy - p.dy}};
        } else {
            const int side = ad({d.dx, 2 * d.dy}, {-d.dx, 0}) + ad({2 * d.dx, d.dy}, {0, -d.dy});
            grad[k] = 2 * mainPairs + (green ? 2 : 1) * side;
            region[k] = {d, {d.dx + 1, d.dy}, {d.dx - 1, d.dy}, {d.dx, d.dy + 1}, {d.dx, d.dy - 1}};
            if (!green) region[k].insert(region[k].end(), {c, d2});
        }
    }
    const int lo = *std::min_element(grad, grad + 8), hi = *std::max_element(grad, grad + 8);
    long sum4[3] = {0, 0, 0};  // sums of the means, in quarter units
    int n = 0;
    for (int k = 0; k < 8; ++k) {
        if (2 * grad[k] > 2 * lo + hi) continue;
        ++n;
        for (int c = 0; c < 3; ++c) {
            int s = 0, cnt = 0;
            for (Off o : region[k])
                if (col(o) == c) s += P(o), ++cnt;
            sum4[c] += 4 * s / cnt;
        }
    }
    int rgb[3];
    for (int c = 0; c < 3; ++c) {
        if (c == own) {
            rgb[c] = P({0, 0});
            continue;
        }
        const long v = 4L * n * P({0, 0}) + sum4[c] - sum4[own] + 2 * n;
        const long q = v >= 0 ? v / (4 * n) : -((-v + 4 * n - 1) / (4 * n));
        rgb[c] = int(q < 0 ? 0 : q > maxV ? maxV : q);
    }
    const int raw[4] = {rgb[B], rgb[G], rgb[R], maxV};
    std::array<int, 4> out{};
    for (int c = 0; c < 4; ++c) {
        const float f = scale[c] * float(raw[c]);
        out[size_t(c)] = !(f > 0) ? 0 : f >= float(maxV) ? maxV : int(std::nearbyint(f));
    }
    return out;
}

const float kOne[4] = {1, 1, 1, 1};

template <class T>
TpxStatus call(bool wide, const Image& src, Rect r, int w, int h, const float* scale, Image& dst, int grid) {
    const T* s = src.ptr<T>();
    T* d = dst.ptr<T>();
    const auto g = TpxBayerGrid(grid);
    if constexpr (sizeof(T) == 1) {
        if (wide) return tpxiCFAToBGRA_VNG_8u_C1C4R_L(s, {r.x, r.y, r.w, r.h}, {w, h}, src.step(), scale, d, dst.step(), g);
        return tpxiCFAToBGRA_VNG_8u_C1C4R(s, {r.x, r.y, r.w, r.h}, {w, h}, src.step(), scale, d, dst.step(), g);
    } else {
        if (wide) return tpxiCFAToBGRA_VNG_16u_C1C4R_L(s, {r.x, r.y, r.w, r.h}, {w, h}, src.step(), scale, d, dst.step(), g);
        return tpxiCFAToBGRA_VNG_16u_C1C4R(s, {r.x, r.y, r.w, r.h}, {w, h}, src.step(), scale, d, dst.step(), g);
    }
}

// Converts rectangle r of src (w x h) and compares every written pixel with
// the model and every other byte with its snapshot.
template <class T>
void expectModel(bool wide, const Image& src, Rect r, int w, int h, StepKind dstKind, const float* scale, int grid,
                 uint32_t seed) {
    const int tw = std::min(r.w, w - r.x), th = std::min(r.h, h - r.y);
    Image dst(4 * tw, th, sizeof(T), dstKind, seed);
    dst.snapshot();
    ASSERT_EQ(call<T>(wide, src, r, w, h, scale, dst, grid), tpxStatusOk);
    EXPECT_TRUE(dst.untouchedExcept([&](int e, int y) { return e < 4 * tw && y < th; }));
    const Mosaic<T> m{src, w, h};
    EXPECT_TRUE(tpxtest::matches<T>(dst, 4 * tw, th, [&](int e, int y) {
        return model(m, grid, r.x + e / 4, r.y + y, scale)[size_t(e % 4)];
    })) << "rect " << r.x << "," << r.y << " " << tw << "x" << th << " grid " << grid;
}

template <class T>
void shapesAgainstModel() {
    auto shapes = tpxtest::standardShapes(5, 5);
    shapes.push_back({17, 19, StepKind::Padded, StepKind::Tight, 900});
    shapes.push_back({6, 31, StepKind::Negative, StepKind::Negative, 901});
    shapes.push_back({40, 12, StepKind::Tight, StepKind::Padded, 902});
    const float odd[4] = {0.5f, 1.75f, 1.3f, 0.25f};
    for (const auto& s : shapes) {
        SCOPED_TRACE(::testing::Message() << s);
        Image src(s.width, s.height, sizeof(T), s.src, s.seed);
        tpxtest::fill<T>(src, tpxtest::Random<T>(s.seed));
        const int grid = int(s.seed % 4);
        expectModel<T>(s.seed % 2, src, {0, 0, s.width, s.height}, s.width, s.height, s.dst,
                       s.seed % 5 == 0 ? odd : kOne, grid, s.seed + 7);
    }
}

TEST(Vng, MatchesModelOverShapes8u) { shapesAgainstModel<uint8_t>(); }
TEST(Vng, MatchesModelOverShapes16u) { shapesAgainstModel<uint16_t>(); }

// Rectangles at every parity, inside and reaching past the right and bottom
// edge, equal the model and the same pixels of the whole image.
template <class T>
void rectangles() {
    const int w = 23, h = 19;
    Image src(w, h, sizeof(T), StepKind::Padded, 5);
    tpxtest::fill<T>(src, tpxtest::Random<T>(5));
    std::mt19937 rng(11);
    for (int grid = 0; grid < 4; ++grid) {
        Image whole(4 * w, h, sizeof(T), StepKind::Tight, 6);
        ASSERT_EQ(call<T>(false, src, {0, 0, w, h}, w, h, kOne, whole, grid), tpxStatusOk);
        for (int k = 0; k < 12; ++k) {
            const Rect r{int(rng() % w), int(rng() % h), 1 + int(rng() % 30), 1 + int(rng() % 25)};
            expectModel<T>(k & 1, src, r, w, h, StepKind::Padded, kOne, grid, 40 + k);
            const int tw = std::min(r.w, w - r.x), th = std::min(r.h, h - r.y);
            Image part(4 * tw, th, sizeof(T), StepKind::Negative, 7);
            ASSERT_EQ(call<T>(false, src, r, w, h, kOne, part, grid), tpxStatusOk);
            EXPECT_TRUE(tpxtest::matches<T>(part, 4 * tw, th,
                                            [&](int e, int y) { return whole.get<T>(4 * r.x + e, r.y + y); }));
        }
    }
}

TEST(Vng, RectanglesEqualTheWholeImage8u) { rectangles<uint8_t>(); }
TEST(Vng, RectanglesEqualTheWholeImage16u) { rectangles<uint16_t>(); }

// Runs the whole image from a function of (x, y) and returns the output.
template <class T, class F>
Image demosaic(int w, int h, int grid, F&& sample, const float* scale = kOne) {
    Image src(w, h, sizeof(T), StepKind::Tight, 3);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) src.set<T>(x, y, T(sample(x, y)));
    Image dst(4 * w, h, sizeof(T), StepKind::Tight, 4);
    EXPECT_EQ(call<T>(false, src, {0, 0, w, h}, w, h, scale, dst, grid), tpxStatusOk);
    return dst;
}

TEST(Vng, FlatMosaicAndGreyRampsStayGrey) {
    for (int grid = 0; grid < 4; ++grid) {
        const Image flat = demosaic<uint16_t>(37, 9, grid, [](int, int) { return 40000; });
        EXPECT_TRUE(tpxtest::matches<uint16_t>(flat, 4 * 37, 9, [](int e, int) { return e % 4 == 3 ? 65535 : 40000; }));
        // Linear ramps in x, y and both give grey everywhere the neighbourhood
        // does not meet the mirrored edge of the ramp's own direction.
        for (int dir = 0; dir < 3; ++dir) {
            const int w = 41, h = 29;
            const Image out = demosaic<uint8_t>(w, h, grid, [&](int x, int y) {
                return dir == 0 ? 10 + 5 * x : dir == 1 ? 3 + 8 * y : 2 * x + 3 * y;
            });
            for (int y = 2; y < h - 2; ++y)
                for (int x = 2; x < w - 2; ++x) {
                    const int b = out.get<uint8_t>(4 * x, y);
                    ASSERT_EQ(out.get<uint8_t>(4 * x + 1, y), b) << x << "," << y << " dir " << dir;
                    ASSERT_EQ(out.get<uint8_t>(4 * x + 2, y), b) << x << "," << y << " dir " << dir;
                }
        }
    }
}

TEST(Vng, GridsAgreeUnderTheMatchingShift) {
    expectShiftAgreement(30, 22, 4, 2, [](int w, int h, int grid, auto&& f) { return demosaic<uint8_t>(w, h, grid, f); });
}

// The same mosaic in 8 and 16 bits (times 257) chooses the same directions, so
// the outputs differ only by the rounding of each: at most 129 on 16 bits.
TEST(Vng, EightAndSixteenBitsAgreeOnScaledInputs) {
    const int w = 33, h = 21;
    const Field a(w, h, 8);
    for (int grid = 0; grid < 4; ++grid) {
        const Image o8 = demosaic<uint8_t>(w, h, grid, a);
        const Image o16 = demosaic<uint16_t>(w, h, grid, [&](int x, int y) { return 257 * a(x, y); });
        for (int y = 0; y < h; ++y)
            for (int e = 0; e < 4 * w; ++e)
                ASSERT_LE(std::abs(o16.get<uint16_t>(e, y) - 257 * o8.get<uint8_t>(e, y)), 129) << e << "," << y;
    }
}

// One table of checks in order for all four members.
TEST(Vng, ChecksInOrder) {
    const int w = 9, h = 7;
    for (int member = 0; member < 4; ++member) {
        const bool sixteen = member & 1, wide = member & 2;
        const int es = sixteen ? 2 : 1;
        Image src(w, h, es, StepKind::Padded, 1), dst(4 * w, h, es, StepKind::Padded, 2);
        tpxtest::CheckArgs valid;
        valid.src[0] = src.origin();
        valid.dst[0] = dst.origin();
        valid.ext = {0, 0, w, h, w, h, 0, 1};  // rect x, y, w, h; image w, h; grid; scale present
        auto callArgs = [&](tpxtest::CheckArgs& a) -> TpxStatus {
            const float* sc = a.ext[7] ? kOne : nullptr;
            const auto g = TpxBayerGrid(a.ext[6]);
            const TpxRectL rl{a.ext[0], a.ext[1], a.ext[2], a.ext[3]};
            const TpxSizeL sl{a.ext[4], a.ext[5]};
            const TpxRect r{int(a.ext[0]), int(a.ext[1]), int(a.ext[2]), int(a.ext[3])};
            const TpxSize s{int(a.ext[4]), int(a.ext[5])};
            if (sixteen)
                return wide ? tpxiCFAToBGRA_VNG_16u_C1C4R_L(a.s<uint16_t>(), rl, sl, src.step(), sc, a.d<uint16_t>(), dst.step(), g)
                            : tpxiCFAToBGRA_VNG_16u_C1C4R(a.s<uint16_t>(), r, s, src.step(), sc, a.d<uint16_t>(), dst.step(), g);
            return wide ? tpxiCFAToBGRA_VNG_8u_C1C4R_L(a.s<uint8_t>(), rl, sl, src.step(), sc, a.d<uint8_t>(), dst.step(), g)
                        : tpxiCFAToBGRA_VNG_8u_C1C4R(a.s<uint8_t>(), r, s, src.step(), sc, a.d<uint8_t>(), dst.step(), g);
        };
        auto set = [](size_t i, int64_t v) { return [i, v](tpxtest::CheckArgs& a) { a.ext[i] = v; }; };
        const int64_t big = int64_t(INT32_MAX) + 1;
        std::vector<tpxtest::Fault> order = {tpxtest::nullSrc(), tpxtest::nullDst(),
                                             tpxtest::custom("null scale", tpxStatusNullPtr, set(7, 0))};
        if (wide)
            for (size_t i : {0, 2, 3})
                order.push_back(tpxtest::custom("rect value > 2^31-1", tpxStatusSizeTooLarge, set(i, big)));
        order.push_back(tpxtest::custom("image width 4", tpxStatusBadSize, set(4, 4)));
        order.push_back(tpxtest::custom("image height 4", tpxStatusBadSize, set(5, 4)));
        order.push_back(tpxtest::custom("grid 4", tpxStatusBadArg, set(6, 4)));
        order.push_back(tpxtest::custom("origin y -1", tpxStatusBadSize, set(1, -1)));
        tpxtest::expectCheckOrder(sixteen ? "VNG 16u" : "VNG 8u", callArgs, valid, order, {&dst});

        // Single faults on the fields the pairs above leave out.
        dst.snapshot();
        auto single = [&](size_t i, int64_t v, TpxStatus want) {
            tpxtest::CheckArgs a = valid;
            a.ext[i] = v;
            EXPECT_EQ(callArgs(a), want) << "member " << member << " field " << i << " = " << v;
            EXPECT_TRUE(dst.untouched());
        };
        if (wide)
            for (size_t i = 0; i < 6; ++i) single(i, big, tpxStatusSizeTooLarge);
        single(6, -1, tpxStatusBadArg);
        single(0, -1, tpxStatusBadSize);
        single(0, w, tpxStatusBadSize);
        single(1, h, tpxStatusBadSize);
        single(2, 0, tpxStatusOk);  // nothing left after trimming: nothing written
        single(3, -5, tpxStatusOk);
    }
}

}  // namespace
