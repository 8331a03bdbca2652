// Test-side model of a Bayer mosaic: colours of the four grid codes, mirrored
// addressing beyond the edge, and the call shapes of the demosaicing members.
#pragma once

#include "support/image.hpp"
#include "tpxcc.h"

#include <cstdint>
#include <random>
#include <vector>

namespace cfamodel {

enum { R = 0, G = 1, B = 2 };

// Colour at image pixel (x, y): grid 0 BGGR, 1 RGGB, 2 GBRG, 3 GRBG.
inline int colour(int grid, long x, long y) {
    const char* names[4] = {"BGGR", "RGGB", "GBRG", "GRBG"};
    const char ch = names[grid][(y & 1) * 2 + (x & 1)];
    return ch == 'R' ? R : ch == 'G' ? G : B;
}

// Reflection about the edge samples, repeated as often as needed.
inline long reflect(long i, long n) {
    while (i < 0 || i >= n) i = i < 0 ? -i : 2 * (n - 1) - i;
    return i;
}

// A whole mosaic read through a guarded image, addressed with reflection.
template <class T>
struct Mosaic {
    const tpxtest::Image& img;
    int w, h;
    int at(long x, long y) const { return img.get<T>(int(reflect(x, w)), int(reflect(y, h))); }
};

// Rectangles and phases the tests sweep.
struct Rect {
    int x, y, w, h;
};

// A w x h field of random bytes.
struct Field {
    int w;
    std::vector<int> v;
    Field(int w_, int h, uint32_t seed) : w(w_), v(size_t(w_ * h)) {
        std::mt19937 rng(seed);
        for (int& x : v) x = int(rng() % 256);
    }
    int operator()(int x, int y) const { return v[size_t(y * w + x)]; }
};

// The grid code whose pattern starts with the colours at (sx, sy) of `grid`.
inline int shiftedGrid(int grid, int sx, int sy) {
    for (int g = 0; g < 4; ++g)
        if (colour(g, 0, 0) == colour(grid, sx, sy) && colour(g, 1, 0) == colour(grid, sx + 1, sy) &&
            colour(g, 0, 1) == colour(grid, sx, sy + 1))
            return g;
    return -1;
}

// A mosaic demosaiced with grid g, and the same mosaic moved by (sx, sy) with
// the grid found there, give the same pixels `margin` pixels away from the
// edges (where the mirrored neighbourhoods differ). `run(w, h, grid, sample)`
// returns the 8-bit output of `channels` channels.
template <class Run>
void expectShiftAgreement(int w, int h, int channels, int margin, Run&& run) {
    const Field a(w, h, 3);
    for (int grid = 0; grid < 4; ++grid) {
        const tpxtest::Image base = run(w, h, grid, [&](int x, int y) { return a(x, y); });
        for (int sx = 0; sx < 2; ++sx)
            for (int sy = 0; sy < 2; ++sy) {
                const tpxtest::Image out = run(w - sx, h - sy, shiftedGrid(grid, sx, sy),
                                               [&](int x, int y) { return a(x + sx, y + sy); });
                for (int y = margin; y < h - sy - margin; ++y)
                    for (int e = channels * margin; e < channels * (w - sx - margin); ++e)
                        ASSERT_EQ(out.get<uint8_t>(e, y), base.get<uint8_t>(e + channels * sx, y + sy))
                            << "grid " << grid << " shift " << sx << "," << sy;
            }
    }
}

}  // namespace cfamodel
