// AHD demosaicing: exactness against a whole-image model whose every plane
// is mirrored about the image edge, rectangles, properties, and the checks.
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

// A plane over the image, read with reflection beyond its edge.
struct Plane {
    int w, h;
    std::vector<int> v;
    Plane(int w_, int h_) : w(w_), h(h_), v(size_t(w_ * h_)) {}
    int& at(int x, int y) { return v[size_t(y * w + x)]; }
    int operator()(long x, long y) const { return v[size_t(reflect(y, h) * w + reflect(x, w))]; }
};

// Lab in units of f (times 4096): L' = F(Y), A' = F(X) - F(Y), B' = F(Y) - F(Z).
struct LabModel {
    long k[3][3];
    int f[4096];
    LabModel() {
        const double m[3][3] = {{0.412453, 0.357580, 0.180423}, {0.212671, 0.715160, 0.072169},
                                {0.019334, 0.119193, 0.950227}};
        const double white[3] = {1.0521265, 1.0, 0.9184812};
        for (int i = 0; i < 3; ++i)
            for (int j = 0; j < 3; ++j) k[i][j] = std::lround(m[i][j] * white[i] * 16384);
        for (int i = 0; i < 4096; ++i) {
            const double t = (i + 0.5) / 4096;
            f[i] = int(std::lround(4096 * (t > 0.008856 ? std::cbrt(t) : 7.787 * t + 16.0 / 116.0)));
        }
    }
    int F(int row, int r, int g, int b) const {
        const long t = std::min(65535L, (k[row][0] * r + k[row][1] * g + k[row][2] * b + 8192) >> 14);
        return f[t >> 4];
    }
};
const LabModel kLab;

// The whole R, G, B output of a w x h mosaic (16-bit scale).
std::vector<std::array<int, 3>> model(const std::function<int(long, long)>& sample, int w, int h, int grid) {
    auto S = [&](long x, long y) { return sample(reflect(x, w), reflect(y, h)); };
    Plane green[2] = {{w, h}, {w, h}};
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x)
            for (int d = 0; d < 2; ++d) {
                const int dx = d == 0, dy = d == 1;
                const int a = S(x - dx, y - dy), b = S(x + dx, y + dy);
                if (colour(grid, x, y) == G) {
                    green[d].at(x, y) = S(x, y);
                    continue;
                }
                const int v = int(std::floor((2.0 * (a + b) + 2 * S(x, y) - S(x - 2 * dx, y - 2 * dy) -
                                              S(x + 2 * dx, y + 2 * dy)) / 4 + 0.5));
                green[d].at(x, y) = std::clamp(v, std::min(a, b), std::max(a, b));
            }
    Plane rgb[2][3] = {{{w, h}, {w, h}, {w, h}}, {{w, h}, {w, h}, {w, h}}};
    Plane lab[2][3] = {{{w, h}, {w, h}, {w, h}}, {{w, h}, {w, h}, {w, h}}};
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x)
            for (int d = 0; d < 2; ++d) {
                const Plane& g = green[d];
                auto diff = [&](int dx, int dy) { return S(x + dx, y + dy) - g(x + dx, y + dy); };
                auto meanOf = [&](std::initializer_list<int> ds) {
                    double s = 0;
                    for (int v : ds) s += v;
                    return int(std::floor(s / double(ds.size()) + 0.5));
                };
                int c[3];
                const int own = colour(grid, x, y);
                c[G] = g(x, y);
                if (own == G) {
                    c[colour(grid, x + 1, y)] = S(x, y) + meanOf({diff(-1, 0), diff(1, 0)});
                    c[colour(grid, x, y + 1)] = S(x, y) + meanOf({diff(0, -1), diff(0, 1)});
                } else {
                    c[own] = S(x, y);
                    c[2 - own] = g(x, y) + meanOf({diff(-1, -1), diff(1, -1), diff(-1, 1), diff(1, 1)});
                }
                for (int ch = 0; ch < 3; ++ch) rgb[d][ch].at(x, y) = std::clamp(c[ch], 0, 65535);
                const int r = rgb[d][R].at(x, y), gg = rgb[d][G].at(x, y), b = rgb[d][B].at(x, y);
                const int fx = kLab.F(0, r, gg, b), fy = kLab.F(1, r, gg, b), fz = kLab.F(2, r, gg, b);
                lab[d][0].at(x, y) = fy;
                lab[d][1].at(x, y) = fx - fy;
                lab[d][2].at(x, y) = fy - fz;
            }
    const int nb[4][2] = {{-1, 0}, {1, 0}, {0, -1}, {0, 1}};
    auto dL = [&](int d, int x, int y, int k) { return std::abs(lab[d][0](x, y) - lab[d][0](x + nb[k][0], y + nb[k][1])); };
    auto dC = [&](int d, int x, int y, int k) {
        const long da = lab[d][1](x, y) - lab[d][1](x + nb[k][0], y + nb[k][1]);
        const long db = lab[d][2](x, y) - lab[d][2](x + nb[k][0], y + nb[k][1]);
        return 25 * da * da + 4 * db * db;
    };
    Plane count[2] = {{w, h}, {w, h}};
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            const long epsL = std::min(std::max(dL(0, x, y, 0), dL(0, x, y, 1)), std::max(dL(1, x, y, 2), dL(1, x, y, 3)));
            const long epsC = std::min(std::max(dC(0, x, y, 0), dC(0, x, y, 1)), std::max(dC(1, x, y, 2), dC(1, x, y, 3)));
            for (int d = 0; d < 2; ++d) {
                int n = 0;
                for (int k = 0; k < 4; ++k) n += dL(d, x, y, k) <= epsL && dC(d, x, y, k) <= epsC;
                count[d].at(x, y) = n;
            }
        }
    std::vector<std::array<int, 3>> out;
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            int sum[2] = {0, 0};
            for (int d = 0; d < 2; ++d)
                for (int j = -1; j <= 1; ++j)
                    for (int i = -1; i <= 1; ++i) sum[d] += count[d](x + i, y + j);
            std::array<int, 3> px{};
            for (int ch = 0; ch < 3; ++ch) {
                const int a = rgb[0][ch].at(x, y), b = rgb[1][ch].at(x, y);
                px[size_t(ch)] = sum[0] > sum[1] ? a : sum[1] > sum[0] ? b : (a + b + 1) / 2;
            }
            out.push_back(px);
        }
    return out;
}

template <class T>
TpxStatus call(const Image& src, Rect r, int w, int h, Image& dst, int grid) {
    if constexpr (sizeof(T) == 1)
        return tpxiDemosaicAHD_8u_C1C3R(src.ptr<uint8_t>(), {r.x, r.y, r.w, r.h}, {w, h}, src.step(),
                                        dst.ptr<uint8_t>(), dst.step(), TpxBayerGrid(grid));
    else
        return tpxiDemosaicAHD_16u_C1C3R(src.ptr<uint16_t>(), {r.x, r.y, r.w, r.h}, {w, h}, src.step(),
                                         dst.ptr<uint16_t>(), dst.step(), TpxBayerGrid(grid));
}

// Expected output value of type T from the 16-bit model.
template <class T>
int narrow(int v) { return sizeof(T) == 1 ? (v + 128) / 257 : v; }

template <class T>
void expectModel(const Image& src, Rect r, int w, int h, StepKind dstKind, int grid, uint32_t seed,
                 const std::vector<std::array<int, 3>>& want) {
    const int tw = std::min(r.w, w - r.x), th = std::min(r.h, h - r.y);
    Image dst(3 * tw, th, sizeof(T), dstKind, seed);
    dst.snapshot();
    ASSERT_EQ(call<T>(src, r, w, h, dst, grid), tpxStatusOk);
    EXPECT_TRUE(dst.untouchedExcept([&](int e, int y) { return e < 3 * tw && y < th; }));
    EXPECT_TRUE(tpxtest::matches<T>(dst, 3 * tw, th, [&](int e, int y) {
        return narrow<T>(want[size_t((r.y + y) * w + r.x + e / 3)][size_t(e % 3)]);
    })) << "rect " << r.x << "," << r.y << " " << tw << "x" << th << " grid " << grid;
}

template <class T>
std::function<int(long, long)> samplesOf(const Image& src) {
    return [&src](long x, long y) { return (sizeof(T) == 1 ? 257 : 1) * int(src.get<T>(int(x), int(y))); };
}

template <class T>
void shapesAgainstModel() {
    auto shapes = tpxtest::standardShapes(5, 5);
    shapes.push_back({37, 41, StepKind::Padded, StepKind::Tight, 900});
    shapes.push_back({70, 9, StepKind::Negative, StepKind::Negative, 901});
    shapes.push_back({260, 23, StepKind::Tight, StepKind::Padded, 902});  // tiles across and down
    for (const auto& s : shapes) {
        SCOPED_TRACE(::testing::Message() << s);
        Image src(s.width, s.height, sizeof(T), s.src, s.seed);
        // Smooth random fields with random detail, so that both candidates win somewhere.
        std::mt19937 rng(s.seed);
        const int maxV = sizeof(T) == 1 ? 255 : 65535;
        tpxtest::fill<T>(src, [&] { return T(rng() % 4 == 0 ? rng() % (maxV + 1) : maxV / 2 + rng() % 9); });
        const int grid = int(s.seed % 4);
        const auto want = model(samplesOf<T>(src), s.width, s.height, grid);
        expectModel<T>(src, {0, 0, s.width, s.height}, s.width, s.height, s.dst, grid, s.seed + 3, want);
    }
}

TEST(Ahd, MatchesModelOverShapes8u) { shapesAgainstModel<uint8_t>(); }
TEST(Ahd, MatchesModelOverShapes16u) { shapesAgainstModel<uint16_t>(); }

// Rectangles at every parity, inside and past the right and bottom edge, on an
// image of several tiles.
TEST(Ahd, RectanglesEqualTheWholeImage) {
    const int w = 140, h = 40;
    Image src(w, h, 2, StepKind::Padded, 5);
    std::mt19937 rng(5);
    tpxtest::fill<uint16_t>(src, [&] { return uint16_t(rng()); });
    for (int grid = 0; grid < 4; ++grid) {
        const auto want = model(samplesOf<uint16_t>(src), w, h, grid);
        for (int k = 0; k < 8; ++k) {
            const Rect r{int(rng() % w), int(rng() % h), 1 + int(rng() % 150), 1 + int(rng() % 45)};
            expectModel<uint16_t>(src, r, w, h, StepKind::Negative, grid, 40 + k, want);
        }
    }
}

template <class T, class F>
Image demosaic(int w, int h, int grid, F&& sample) {
    Image src(w, h, sizeof(T), StepKind::Tight, 3);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) src.set<T>(x, y, T(sample(x, y)));
    Image dst(3 * w, h, sizeof(T), StepKind::Tight, 4);
    EXPECT_EQ(call<T>(src, {0, 0, w, h}, w, h, dst, grid), tpxStatusOk);
    return dst;
}

TEST(Ahd, FlatMosaicAndGreyRampsStayGrey) {
    for (int grid = 0; grid < 4; ++grid) {
        const Image flat = demosaic<uint8_t>(37, 9, grid, [](int, int) { return 93; });
        EXPECT_TRUE(tpxtest::matches<uint8_t>(flat, 3 * 37, 9, [](int, int) { return 93; }));
        for (int dir = 0; dir < 3; ++dir) {
            const int w = 45, h = 38;
            const Image out = demosaic<uint16_t>(w, h, grid, [&](int x, int y) {
                return dir == 0 ? 100 + 1000 * x : dir == 1 ? 7 + 1500 * y : 600 * x + 900 * y;
            });
            // The mirrored ramp bends at the edge; five pixels in, it is a ramp.
            for (int y = 5; y < h - 5; ++y)
                for (int x = 5; x < w - 5; ++x) {
                    ASSERT_EQ(out.get<uint16_t>(3 * x, y), out.get<uint16_t>(3 * x + 1, y)) << x << "," << y;
                    ASSERT_EQ(out.get<uint16_t>(3 * x + 2, y), out.get<uint16_t>(3 * x + 1, y)) << x << "," << y;
                }
        }
    }
}

TEST(Ahd, GridsAgreeUnderTheMatchingShift) {
    // Five pixels of margin: the reach of the method.
    expectShiftAgreement(44, 36, 3, 5, [](int w, int h, int grid, auto&& f) { return demosaic<uint8_t>(w, h, grid, f); });
}

// 8-bit mosaics run as their 16-bit form (times 257), so the two members agree
// exactly up to the final rounding to 8 bits.
TEST(Ahd, EightAndSixteenBitsAgreeOnScaledInputs) {
    const int w = 40, h = 33;
    const Field a(w, h, 8);
    for (int grid = 0; grid < 4; ++grid) {
        const Image o8 = demosaic<uint8_t>(w, h, grid, a);
        const Image o16 = demosaic<uint16_t>(w, h, grid, [&](int x, int y) { return 257 * a(x, y); });
        EXPECT_TRUE(tpxtest::matches<uint8_t>(o8, 3 * w, h, [&](int e, int y) { return (o16.get<uint16_t>(e, y) + 128) / 257; }));
    }
}

TEST(Ahd, ChecksInOrder) {
    const int w = 8, h = 6;
    for (int sixteen = 0; sixteen < 2; ++sixteen) {
        const int es = sixteen ? 2 : 1;
        Image src(w, h, es, StepKind::Padded, 1), dst(3 * w, h, es, StepKind::Padded, 2);
        tpxtest::CheckArgs valid;
        valid.src[0] = src.origin();
        valid.dst[0] = dst.origin();
        valid.ext = {0, 0, w, h, w, h, 0, 0};
        auto callArgs = [&](tpxtest::CheckArgs& a) -> TpxStatus {
            const TpxRect r{int(a.ext[0]), int(a.ext[1]), int(a.ext[2]), int(a.ext[3])};
            const TpxSize s{int(a.ext[4]), int(a.ext[5])};
            const auto g = TpxBayerGrid(a.ext[6]);
            return sixteen ? tpxiDemosaicAHD_16u_C1C3R(a.s<uint16_t>(), r, s, src.step(), a.d<uint16_t>(), dst.step(), g)
                           : tpxiDemosaicAHD_8u_C1C3R(a.s<uint8_t>(), r, s, src.step(), a.d<uint8_t>(), dst.step(), g);
        };
        auto set = [](size_t i, int64_t v) { return [i, v](tpxtest::CheckArgs& a) { a.ext[i] = v; }; };
        const std::vector<tpxtest::Fault> order = {
            tpxtest::nullSrc(), tpxtest::nullDst(),
            tpxtest::custom("image width 4", tpxStatusBadSize, set(4, 4)),
            tpxtest::custom("image height -3", tpxStatusBadSize, set(5, -3)),
            tpxtest::custom("grid -1", tpxStatusBadArg, set(6, -1)),
            tpxtest::custom("origin x -2", tpxStatusBadSize, set(0, -2)),
            tpxtest::custom("origin y below the image", tpxStatusBadSize, set(1, h)),
        };
        tpxtest::expectCheckOrder(sixteen ? "AHD 16u" : "AHD 8u", callArgs, valid, order, {&dst});
        dst.snapshot();
        for (auto [i, v] : {std::pair<size_t, int64_t>{2, 0}, {3, -1}}) {
            tpxtest::CheckArgs a = valid;
            a.ext[i] = v;
            EXPECT_EQ(callArgs(a), tpxStatusOk);  // nothing left after trimming
            EXPECT_TRUE(dst.untouched());
        }
    }
}

}  // namespace
