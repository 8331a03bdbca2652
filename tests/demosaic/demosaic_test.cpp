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

// Sample (x, y) of the whole mosaic of a call, mirrored beyond its edges.
template <class T>
std::function<int(int64_t, int64_t)> mosaicOf(const Export& e, const Args& a) {
    const View<T> v = in<T>(e, a, 0);
    const int64_t w = a.imageWidth, h = a.imageHeight;
    return [v, w, h](int64_t x, int64_t y) { return int(v(reflect(x, w), reflect(y, h))); };
}

// Writes `channels` values of each pixel of the call's rectangle (cut at the
// mosaic's far edges) from px(x, y, channel) of image coordinates.
template <class T, class Px>
TpxStatus writeRect(const Export& e, const Args& a, int channels, Px&& px) {
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
struct Off {
    int dx, dy;
};

// B, G, R, A of image pixel (x, y).
template <class T>
std::array<int, 4> vngPixel(const std::function<int(int64_t, int64_t)>& m, int grid, int64_t x, int64_t y,
                            const float* scale) {
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

template <class T>
TpxStatus vng(const Export& e, const Args& a) {
    const auto m = mosaicOf<T>(e, a);
    const float* scale = static_cast<const float*>(a.extra);
    return writeRect<T>(e, a, 4, [&](int64_t x, int64_t y, int c) {
        return vngPixel<T>(m, int(a.code[0]), x, y, scale)[size_t(c)];
    });
}

// ---- AHD ---------------------------------------------------------------------
// A plane over the image, read with reflection beyond its edge.
struct Plane {
    int64_t w, h;
    std::vector<int> v;
    Plane(int64_t w_, int64_t h_) : w(w_), h(h_), v(size_t(w_ * h_)) {}
    int& at(int64_t x, int64_t y) { return v[size_t(y * w + x)]; }
    int operator()(int64_t x, int64_t y) const { return v[size_t(reflect(y, h) * w + reflect(x, w))]; }
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

// The whole R, G, B output of a w x h mosaic of 16-bit samples.
std::vector<std::array<int, 3>> ahdImage(const std::function<int(int64_t, int64_t)>& S, int64_t w, int64_t h, int grid) {
    static const LabModel kLab;
    Plane green[2] = {{w, h}, {w, h}};
    for (int64_t y = 0; y < h; ++y)
        for (int64_t x = 0; x < w; ++x)
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
    for (int64_t y = 0; y < h; ++y)
        for (int64_t x = 0; x < w; ++x)
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
    auto dL = [&](int d, int64_t x, int64_t y, int k) {
        return std::abs(lab[d][0](x, y) - lab[d][0](x + nb[k][0], y + nb[k][1]));
    };
    auto dC = [&](int d, int64_t x, int64_t y, int k) {
        const long da = lab[d][1](x, y) - lab[d][1](x + nb[k][0], y + nb[k][1]);
        const long db = lab[d][2](x, y) - lab[d][2](x + nb[k][0], y + nb[k][1]);
        return 25 * da * da + 4 * db * db;
    };
    Plane count[2] = {{w, h}, {w, h}};
    for (int64_t y = 0; y < h; ++y)
        for (int64_t x = 0; x < w; ++x) {
            const long epsL = std::min(std::max(dL(0, x, y, 0), dL(0, x, y, 1)), std::max(dL(1, x, y, 2), dL(1, x, y, 3)));
            const long epsC = std::min(std::max(dC(0, x, y, 0), dC(0, x, y, 1)), std::max(dC(1, x, y, 2), dC(1, x, y, 3)));
            for (int d = 0; d < 2; ++d) {
                int n = 0;
                for (int k = 0; k < 4; ++k) n += dL(d, x, y, k) <= epsL && dC(d, x, y, k) <= epsC;
                count[d].at(x, y) = n;
            }
        }
    Plane chosen[3] = {{w, h}, {w, h}, {w, h}};
    for (int64_t y = 0; y < h; ++y)
        for (int64_t x = 0; x < w; ++x) {
            int sum[2] = {0, 0};
            for (int d = 0; d < 2; ++d)
                for (int j = -1; j <= 1; ++j)
                    for (int i = -1; i <= 1; ++i) sum[d] += count[d](x + i, y + j);
            for (int ch = 0; ch < 3; ++ch) {
                const int a = rgb[0][ch].at(x, y), b = rgb[1][ch].at(x, y);
                chosen[ch].at(x, y) = sum[0] > sum[1] ? a : sum[1] > sum[0] ? b : (a + b + 1) / 2;
            }
        }
    // Refinement: the mosaic's own sample stays; the other two follow the
    // medians of R - G and B - G over 3 x 3 chosen pixels.
    auto median = [&](int ch, int64_t x, int64_t y) {
        std::vector<int> v;
        for (int j = -1; j <= 1; ++j)
            for (int i = -1; i <= 1; ++i) v.push_back(chosen[ch](x + i, y + j) - chosen[G](x + i, y + j));
        std::nth_element(v.begin(), v.begin() + 4, v.end());
        return v[4];
    };
    std::vector<std::array<int, 3>> out;
    for (int64_t y = 0; y < h; ++y)
        for (int64_t x = 0; x < w; ++x) {
            const int own = colour(grid, x, y), med[3] = {median(R, x, y), 0, median(B, x, y)};
            std::array<int, 3> px{};
            px[size_t(own)] = chosen[own].at(x, y);
            if (own != G) px[G] = std::clamp(px[size_t(own)] - med[own], 0, 65535);
            for (int ch : {R, B})
                if (ch != own) px[size_t(ch)] = std::clamp(px[G] + med[ch], 0, 65535);
            out.push_back(px);
        }
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
        const int v = img[size_t(y * a.imageWidth + x)][size_t(c)];
        return sizeof(T) == 1 ? (v + 128) / 257 : v;
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
// and bottom edges, with mosaics of the full range, a narrow range (many
// gradient ties) and the extremes only.
TEST(Demosaic, MatchesModelOnRectangles) {
    std::mt19937 rng(11);
    for (const Model& m : kModels) {
        const Export& e = *findExport(m.name);
        const int64_t top = elemBytes(e.shape.src.elem) == 1 ? 255 : 65535;
        for (int k = 0; k < 12; ++k) {
            const int64_t W = 5 + rng() % 40, H = 5 + rng() % 20;
            Buffers b(e, W, H, uint32_t(k + 1), {StepKind::Padded, StepKind::Negative});
            for (int64_t y = 0; y < H; ++y)
                for (int64_t x = 0; x < W; ++x) {
                    const uint32_t r = rng();
                    put(e, b.args, x, y, 0, double(k % 3 == 0 ? r % (top + 1) : k % 3 == 1 ? r % 4 + (k & 1 ? top - 3 : 0)
                                                                          : (r & 2 ? top - (r & 1) : r & 1)), false);
                }
            b.args.x = int64_t(rng() % W), b.args.y = int64_t(rng() % H);
            b.args.width = 1 + rng() % W, b.args.height = k == 5 ? INT_MAX : 1 + rng() % H;  // one reaching far past the bottom
            expectModelOn(m, e, b, "rectangle " + std::to_string(k));
        }
    }
}

// Plain statements of the bilinear rules on a 7 x 7 RGGB mosaic, centre (3,3)
// blue and (2,2) red: a vertical edge (dV = 0) takes green from above and
// below, a horizontal one from left and right.
TEST(Demosaic, BilinearEdges) {
    const Export& e = *findExport("tpxiCFAToRGB_8u_C1C3R");
    auto at = [&](int64_t x, int64_t y, int c, const SampleFn& mosaic) {
        Buffers b = imageOf(e, 7, 7, 1, mosaic);
        b.args.code[0] = 1;
        EXPECT_EQ(e.call(b.args), tpxStatusOk);
        return sampleAt(e, b.args, true, x, y, c);
    };
    const SampleFn vert = [](int, int64_t i, int64_t) { return i >= 3 ? 200 : 10; };
    const SampleFn horiz = [](int, int64_t, int64_t j) { return j >= 2 ? 180 : 20; };
    EXPECT_EQ(at(3, 3, G, vert), 200);
    EXPECT_EQ(at(3, 3, R, vert), 105);
    EXPECT_EQ(at(2, 2, G, horiz), 180);
    EXPECT_EQ(at(3, 2, B, horiz), 100);
}

// A rectangle cut to nothing writes nothing and succeeds; a bad origin is
// refused even when the rectangle is empty.
TEST(Demosaic, EmptyRectangles) {
    for (const Model& m : kModels) {
        const Export& e = *findExport(m.name);
        using Rect = std::array<int64_t, 4>;
        for (const Rect& r : {Rect{3, 3, 0, 4}, Rect{3, 3, 4, -1}, Rect{0, 0, INT_MIN, 2}}) {
            Buffers b(e, 12, 8, 1);
            b.args.x = r[0], b.args.y = r[1], b.args.width = r[2], b.args.height = r[3];
            EXPECT_EQ(e.call(b.args), tpxStatusOk) << m.name;
            EXPECT_TRUE(b.intact(1)) << m.name;
            b.args.x = -1;
            EXPECT_EQ(e.call(b.args), tpxStatusBadSize) << m.name;
        }
    }
}

}  // namespace
