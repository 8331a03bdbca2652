// Test-side model of a Bayer mosaic: colours of the four grid codes, mirrored
// addressing beyond the edge, and the call shapes of the demosaicing members.
#pragma once

#include "support/image.hpp"
#include "tpxcc.h"

#include <cstdint>
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

}  // namespace cfamodel
