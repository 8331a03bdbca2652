// Bayer demosaicing (bilinear, VNG, AHD) against per-pixel models written
// from each method's rules, on whole mosaics of every grid and on rectangles
// inside them and past their far edges; worked values of the bilinear rules.
#include "support/harness.hpp"
#include "tpxcc.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <climits>
#include <cmath>
#include <functional>
#include <random>
#include <vector>

using namespace tpxtest;

namespace {

enum { R = 0, G = 1, B = 2 };

// Colour at image pixel (x, y): grid 0 BGGR, 1 RGGB, 2 GBRG, 3 GRBG.
int colour(int grid, int64_t x, int64_t y) {
    static const char* names[4] = {"BGGR", "RGGB", "GBRG", "GRBG"};
    const char ch = names[grid][(y & 1) * 2 + (x & 1)];
    return ch == 'R' ? R : ch == 'G' ? G : B;
}

// Reflection about the edge samples, repeated as often as needed.
int64_t reflect(int64_t i, int64_t n) {
    while (i < 0 || i >= n) i = i < 0 ? -i : 2 * (n - 1) - i;
    return i;
}

using Mosaic = std::function<int(int64_t, int64_t)>;

// Sample (x, y) of the whole mosaic of a call, mirrored beyond its edges.
template <class T>
Mosaic mosaicOf(const Export& e, const Args& a) {
    const View<T> v = in<T>(e, a, 0);
    const int64_t w = a.imageWidth, h = a.imageHeight;
    return [v, w, h](int64_t x, int64_t y) { return int(v(reflect(x, w), reflect(y, h))); };
}

// Writes `channels` values of each pixel of the call's rectangle (cut at the
// mosaic's far edges) from px(x, y, channel) of image coordinates; an origin
// outside the mosaic is refused, also for an empty rectangle.
template <class T, class Px>
TpxStatus writeRect(const Export& e, const Args& a, int channels, Px&& px) {
    if (a.x < 0 || a.y < 0 || a.x >= a.imageWidth || a.y >= a.imageHeight) return tpxStatusBadSize;
    const int64_t w = std::min(a.width, a.imageWidth - a.x), h = std::min(a.height, a.imageHeight - a.y);
    const View<T> d = out<T>(e, a, 0);
    for (int64_t j = 0; j < h; ++j)
        for (int64_t i = 0; i < w; ++i)
            for (int c = 0; c < channels; ++c) d.set(i * channels + c, j, T(px(a.x + i, a.y + j, c)));
    return tpxStatusOk;
}

// ---- Bilinear with gradient-directed green ------------------------------------------
template <class T>
TpxStatus bilinear(const Export& e, const Args& a) {
    const auto P = mosaicOf<T>(e, a);
    const int64_t W = a.imageWidth, H = a.imageHeight;
    const int grid = int(a.code[0]);
    return writeRect<T>(e, a, 3, [&](int64_t i, int64_t j, int c) -> unsigned {
        std::array<unsigned, 3> px{};
        const int own = colour(grid, i, j);
        px[size_t(own)] = P(i, j);
        const unsigned h = (P(i - 1, j) + P(i + 1, j) + 1) / 2, v = (P(i, j - 1) + P(i, j + 1) + 1) / 2;
        if (own == G) {
            px[size_t(colour(grid, i + 1, j))] = h;
            px[size_t(colour(grid, i, j + 1))] = v;
            return px[size_t(c)];
        }
        px[size_t(2 - own)] = (P(i - 1, j - 1) + P(i + 1, j - 1) + P(i - 1, j + 1) + P(i + 1, j + 1) + 2) / 4;
        unsigned g = (P(i - 1, j) + P(i + 1, j) + P(i, j - 1) + P(i, j + 1) + 2) / 4;
        if (i >= 2 && j >= 2 && i < W - 2 && j < H - 2) {
            const int dH = std::abs(P(i - 2, j) - P(i + 2, j)), dV = std::abs(P(i, j - 2) - P(i, j + 2));
            if (dH < dV) g = h;
            if (dV < dH) g = v;
        }
        px[G] = g;
        return px[size_t(c)];
    });
}

// ---- VNG ---------------------------------------------------------------------
struct Off { int dx, dy; };

// B, G, R, A of image pixel (x, y).
template <class T>
std::array<int, 4> vngPixel(const Mosaic& m, int grid, int64_t x, int64_t y, const float* scale) {
    const int maxV = sizeof(T) == 1 ? 255 : 65535;
    auto P = [&](Off o) { return m(x + o.dx, y + o.dy); };
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
    std::array<int, 4> out{};  // own sample plus the mean difference, rounded half up (own: the sample)
    for (int c = 0; c < 4; ++c) {
        const long v = 4L * n * P({0, 0}) + (c < 3 ? sum4[2 - c] - sum4[own] : 0) + 2 * n;
        const long q = c == 3 ? maxV : v >= 0 ? v / (4 * n) : -((-v + 4 * n - 1) / (4 * n));
        const float f = scale[c] * float(std::clamp(q, 0L, long(maxV)));
        out[size_t(c)] = !(f > 0) ? 0 : f >= float(maxV) ? maxV : int(std::nearbyint(f));
    }
    return out;
}

template <class T>
TpxStatus vng(const Export& e, const Args& a) {
    const auto m = mosaicOf<T>(e, a);
    return writeRect<T>(e, a, 4, [&](int64_t x, int64_t y, int c) {
        return vngPixel<T>(m, int(a.code[0]), x, y, static_cast<const float*>(a.extra))[size_t(c)];
    });
}

// ---- AHD ---------------------------------------------------------------------
// A plane over the image, read with reflection beyond its edge.
struct Plane {
    int64_t w, h;
    std::vector<int> v;
    int& at(int64_t x, int64_t y) { return v[size_t(y * w + x)]; }
    int operator()(int64_t x, int64_t y) const { return v[size_t(reflect(y, h) * w + reflect(x, w))]; }
};

int roundDiv(int n, int d) { return int(std::floor(double(n) / d + 0.5)); }

// Lab in units of f (times 4096): L' = F(Y), A' = F(X) - F(Y), B' = F(Y) - F(Z).
// f of the centre of the bin of t >> 4, 4096 bins.
std::array<int, 3> labOf(int r, int g, int b) {
    auto f = [](long t) {
        const double u = ((t >> 4) + 0.5) / 4096;
        return int(std::lround(4096 * (u > 0.008856 ? std::cbrt(u) : 7.787 * u + 16.0 / 116.0)));
    };
    const double m[3][3] = {{0.412453, 0.357580, 0.180423}, {0.212671, 0.715160, 0.072169},
                            {0.019334, 0.119193, 0.950227}};
    const double white[3] = {1.0521265, 1.0, 0.9184812};
    int F[3];
    for (int i = 0; i < 3; ++i) {
        long t = 8192;
        for (int j = 0; j < 3; ++j) t += std::lround(m[i][j] * white[i] * 16384) * (j == 0 ? r : j == 1 ? g : b);
        F[i] = f(std::min(65535L, t >> 14));
    }
    return {F[1], F[0] - F[1], F[1] - F[2]};
}

// The whole R, G, B output of a w x h mosaic of 16-bit samples.
std::vector<std::array<int, 3>> ahdImage(const Mosaic& S, int64_t w, int64_t h, int grid) {
    std::vector<Plane> green(2, {w, h, std::vector<int>(size_t(w * h))}), rgb(6, green[0]), lab(6, green[0]),
        balance(1, green[0]), chosen(3, green[0]);  // rgb, lab: [3 * candidate + channel]
    std::vector<std::array<int, 3>> out;
    auto each = [&](auto&& f) {
        for (int64_t y = 0; y < h; ++y)
            for (int64_t x = 0; x < w; ++x) f(x, y);
    };
    each([&](int64_t x, int64_t y) {  // green candidates along the row (0) and the column (1)
        for (int d = 0; d < 2; ++d) {
            const int dx = d == 0, dy = d == 1, a = S(x - dx, y - dy), b = S(x + dx, y + dy);
            const int v = roundDiv(2 * (a + b) + 2 * S(x, y) - S(x - 2 * dx, y - 2 * dy) - S(x + 2 * dx, y + 2 * dy), 4);
            green[d].at(x, y) = colour(grid, x, y) == G ? S(x, y) : std::clamp(v, std::min(a, b), std::max(a, b));
        }
    });
    each([&](int64_t x, int64_t y) {  // red and blue from differences to the candidate's green; Lab
        for (int d = 0; d < 2; ++d) {
            auto diff = [&](int dx, int dy) { return S(x + dx, y + dy) - green[d](x + dx, y + dy); };
            const int own = colour(grid, x, y);
            int c[3];
            c[G] = green[d](x, y);
            if (own == G) {
                c[colour(grid, x + 1, y)] = S(x, y) + roundDiv(diff(-1, 0) + diff(1, 0), 2);
                c[colour(grid, x, y + 1)] = S(x, y) + roundDiv(diff(0, -1) + diff(0, 1), 2);
            } else {
                c[own] = S(x, y);
                c[2 - own] = c[G] + roundDiv(diff(-1, -1) + diff(1, -1) + diff(-1, 1) + diff(1, 1), 4);
            }
            for (int ch = 0; ch < 3; ++ch) c[ch] = rgb[size_t(3 * d + ch)].at(x, y) = std::clamp(c[ch], 0, 65535);
            const std::array<int, 3> l = labOf(c[R], c[G], c[B]);
            for (int k = 0; k < 3; ++k) lab[size_t(3 * d + k)].at(x, y) = l[size_t(k)];
        }
    });
    const int nb[4][2] = {{-1, 0}, {1, 0}, {0, -1}, {0, 1}};
    // Lightness distance (m = 0) or squared chroma distance (m = 1) of candidate d to neighbour k.
    auto dist = [&](int d, int64_t x, int64_t y, int k, int m) {
        auto delta = [&](int c) {
            const Plane& p = lab[size_t(3 * d + c)];
            return long(p(x, y) - p(x + nb[k][0], y + nb[k][1]));
        };
        return m == 0 ? std::abs(delta(0)) : 25 * delta(1) * delta(1) + 4 * delta(2) * delta(2);
    };
    each([&](int64_t x, int64_t y) {  // homogeneous neighbours of the horizontal candidate minus the vertical's
        long eps[2];
        for (int m = 0; m < 2; ++m)
            eps[m] = std::min(std::max(dist(0, x, y, 0, m), dist(0, x, y, 1, m)),
                              std::max(dist(1, x, y, 2, m), dist(1, x, y, 3, m)));
        auto near = [&](int d, int k) { return int(dist(d, x, y, k, 0) <= eps[0] && dist(d, x, y, k, 1) <= eps[1]); };
        balance[0].at(x, y) = 0;
        for (int k = 0; k < 4; ++k) balance[0].at(x, y) += near(0, k) - near(1, k);
    });
    each([&](int64_t x, int64_t y) {  // the candidate with more of them over 3 x 3, on a tie the mean
        int sum = 0;
        for (int j = -1; j <= 1; ++j)
            for (int i = -1; i <= 1; ++i) sum += balance[0](x + i, y + j);
        for (int ch = 0; ch < 3; ++ch) {
            const int a = rgb[size_t(ch)].at(x, y), b = rgb[size_t(3 + ch)].at(x, y);
            chosen[size_t(ch)].at(x, y) = sum > 0 ? a : sum < 0 ? b : (a + b + 1) / 2;
        }
    });
    // Refinement: the mosaic's own sample stays; the other two follow the
    // medians of R - G and B - G over 3 x 3 chosen pixels.
    auto median = [&](int ch, int64_t x, int64_t y) {
        std::vector<int> v;
        for (int j = -1; j <= 1; ++j)
            for (int i = -1; i <= 1; ++i) v.push_back(chosen[size_t(ch)](x + i, y + j) - chosen[G](x + i, y + j));
        std::nth_element(v.begin(), v.begin() + 4, v.end());
        return v[4];
    };
    each([&](int64_t x, int64_t y) {
        const int own = colour(grid, x, y), med[3] = {median(R, x, y), 0, median(B, x, y)};
        std::array<int, 3> px{};
        px[size_t(own)] = chosen[size_t(own)].at(x, y);
        if (own != G) px[G] = std::clamp(px[size_t(own)] - med[own], 0, 65535);
        for (int ch : {R, B})
            if (ch != own) px[size_t(ch)] = std::clamp(px[G] + med[ch], 0, 65535);
        out.push_back(px);
    });
    return out;
}

// 8-bit mosaics run as their 16-bit form (times 257), rounded back at the end.
template <class T>
TpxStatus ahd(const Export& e, const Args& a) {
    const auto m = mosaicOf<T>(e, a);
    const int k = sizeof(T) == 1 ? 257 : 1;
    const auto img = ahdImage([&](int64_t x, int64_t y) { return k * m(x, y); }, a.imageWidth, a.imageHeight,
                              int(a.code[0]));
    return writeRect<T>(e, a, 3, [&](int64_t x, int64_t y, int c) {
        return (img[size_t(y * a.imageWidth + x)][size_t(c)] + k / 2) / k;
    });
}

const std::vector<Model> kModels = {
    {"tpxiCFAToRGB_8u_C1C3R", bilinear<uint8_t>},       {"tpxiCFAToRGB_16u_C1C3R", bilinear<uint16_t>},
    {"tpxiCFAToBGRA_VNG_8u_C1C4R", vng<uint8_t>},       {"tpxiCFAToBGRA_VNG_16u_C1C4R", vng<uint16_t>},
    {"tpxiCFAToBGRA_VNG_8u_C1C4R_L", vng<uint8_t>},     {"tpxiCFAToBGRA_VNG_16u_C1C4R_L", vng<uint16_t>},
    {"tpxiDemosaicAHD_8u_C1C3R", ahd<uint8_t>},         {"tpxiDemosaicAHD_16u_C1C3R", ahd<uint16_t>},
};

// With a zero destination step, rows of alternating phase overwrite one
// another in an order of the library's choosing: those shapes are left out.
std::vector<Shape> shapesFor(const Export& e) {
    std::vector<Shape> v;
    for (Shape s : standardShapes(e.shape.minW, e.shape.minH))
        if (s.dst != StepKind::Zero) v.push_back(s);
    return v;
}

TEST(Demosaic, MatchesModelOnWholeMosaics) {
    for (const Model& m : kModels) expectModels({m}, shapesFor(*findExport(m.name)));
}

// Rectangles at every parity, inside the mosaic and reaching past its right
// and bottom edges (one far past the bottom), with mosaics of the full range,
// a narrow range (many gradient ties) and the extremes only; then empty
// rectangles, and one with its origin outside.
TEST(Demosaic, MatchesModelOnRectangles) {
    using Rect = std::array<int64_t, 4>;
    const Rect kFixed[3] = {{3, 3, 0, 4}, {3, 3, 4, -1}, {-1, 0, INT_MIN, 2}};
    std::mt19937 rng(11);
    for (const Model& m : kModels) {
        const Export& e = *findExport(m.name);
        const uint32_t top = elemBytes(e.shape.src.elem) == 1 ? 255 : 65535;
        for (int k = 0; k < 15; ++k) {
            const int64_t W = 5 + rng() % 40, H = 5 + rng() % 20;
            Buffers b(e, W, H, uint32_t(k + 1), {StepKind::Padded, StepKind::Negative});
            for (int64_t y = 0; y < H; ++y)
                for (int64_t x = 0; x < W; ++x) {
                    const uint32_t r = rng();
                    put(e, b.args, x, y, 0, k % 3 == 0 ? r % (top + 1) : k % 3 == 1 ? r % 4 + (k & 1 ? top - 3 : 0)
                                                                                : (r & 2 ? top - (r & 1) : r & 1), false);
                }
            const Rect r = k >= 12 ? kFixed[k - 12]
                                   : Rect{int64_t(rng() % W), int64_t(rng() % H), int64_t(1 + rng() % W),
                                          k == 5 ? INT_MAX : int64_t(1 + rng() % H)};
            b.args.x = r[0], b.args.y = r[1], b.args.width = r[2], b.args.height = r[3];
            expectModelOn(m, e, b, "rectangle " + std::to_string(k));
        }
    }
}

// Plain statements of the bilinear rules on a 7 x 7 RGGB mosaic, centre (3,3)
// blue and (2,2) red: a vertical edge (dV = 0) takes green from above and
// below, a horizontal one from left and right.
TEST(Demosaic, BilinearEdges) {
    const Export& e = *findExport("tpxiCFAToRGB_8u_C1C3R");
    const SampleFn vert = [](int, int64_t i, int64_t) { return i >= 3 ? 200 : 10; };
    const SampleFn horiz = [](int, int64_t, int64_t j) { return j >= 2 ? 180 : 20; };
    struct Case { const SampleFn* mosaic; int64_t x, y; int c; double want; };
    for (const Case& k :
         {Case{&vert, 3, 3, G, 200}, {&vert, 3, 3, R, 105}, {&horiz, 2, 2, G, 180}, {&horiz, 3, 2, B, 100}}) {
        Buffers b = imageOf(e, 7, 7, 1, *k.mosaic);
        b.args.code[0] = 1;
        EXPECT_EQ(e.call(b.args), tpxStatusOk);
        EXPECT_EQ(sampleAt(e, b.args, true, k.x, k.y, k.c), k.want);
    }
}

}  // namespace
