// Shared pieces of the Bayer-mosaic demosaicing members: the colour of a
// pixel from the grid code, mirrored addressing beyond the image edge, and the
// checks and trimming of the source rectangle.
#pragma once

#include "frame/check.hpp"
#include "tpxcc.h"

#include <cstddef>
#include <cstdint>

namespace tpx::cfa {

enum Colour : int { Red = 0, Green = 1, Blue = 2 };

// Colour of image pixel (x, y) under a grid code 0..3; the pattern has period 2.
inline Colour colourAt(int grid, int64_t x, int64_t y) {
    // Per grid: colours at (0,0), (1,0), (0,1), (1,1).
    static constexpr Colour kGrid[4][4] = {{Blue, Green, Green, Red},
                                           {Red, Green, Green, Blue},
                                           {Green, Blue, Red, Green},
                                           {Green, Red, Blue, Green}};
    return kGrid[grid][(y & 1) * 2 + (x & 1)];
}

// Index i of a row or column of n >= 2 samples, mirrored about the edge samples
// as often as needed: -1 -> 1, -2 -> 2, n -> n - 2, n + 1 -> n - 3. Mirroring
// keeps the parity, so the colour of a mirrored sample is that of its position.
inline int64_t mirror(int64_t i, int64_t n) {
    if (i >= 0 && i < n) return i;
    const int64_t period = 2 * (n - 1);
    int64_t m = i % period;
    if (m < 0) m += period;
    return m < n ? m : period - m;
}

// The rectangle to produce, in image coordinates, after trimming.
struct Region {
    int64_t x, y, width, height;  // trimmed rectangle
    int64_t imageWidth, imageHeight;
    bool empty() const { return width < 1 || height < 1; }
};

// Checks shared by the demosaicing members after the null pointers (and, for
// the 64-bit members, the range of the values): image below minSize -> -6;
// grid outside 0..3 -> -5; a negative origin or one outside the image -> -6.
// On success `r` holds the rectangle trimmed at the right and bottom.
inline TpxStatus checkRegion(int64_t x, int64_t y, int64_t w, int64_t h, int64_t imageW, int64_t imageH, int grid,
                             int64_t minSize, Region& r) {
    TPX_CHECK(check::failIf(imageW < minSize || imageH < minSize, tpxStatusBadSize));
    TPX_CHECK(check::failIf(uint32_t(grid) > 3u, tpxStatusBadArg));
    TPX_CHECK(check::failIf(x < 0 || y < 0 || x >= imageW || y >= imageH, tpxStatusBadSize));
    r = {x, y, x + w > imageW ? imageW - x : w, y + h > imageH ? imageH - y : h, imageW, imageH};
    return tpxStatusOk;
}

// Smallest image side of the high-quality members.
constexpr int64_t kMinSide = 5;

}  // namespace tpx::cfa
