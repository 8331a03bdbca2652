// What every Bayer demosaicing family shares: the colour of a mosaic pixel,
// mirrored addressing at the image edges, and the rectangle of interest
// checked against the image and cut at its right and bottom edges. Positions
// and sizes are 64-bit so the members with 64-bit rectangles use them too.
#pragma once

#include "frame/check.hpp"
#include "tpxcc.h"

#include <cstdint>

namespace tpx::bayer {

enum class Colour : uint8_t { Red, Green, Blue };

// The 2x2 phase of a mosaic: where the red site of each 2x2 cell sits. The
// blue site is diagonal to it, the other two are green. Coordinates are those
// of the whole image, so the phase never moves with a rectangle inside it.
struct Phase {
    int redX, redY;  // 0 or 1

    static Phase of(int grid) {
        switch (grid) {
            case tpxBayerBGGR: return {1, 1};
            case tpxBayerRGGB: return {0, 0};
            case tpxBayerGBRG: return {0, 1};
            default: return {1, 0};  // tpxBayerGRBG
        }
    }
    // Row j holds red sites (else blue ones) besides its green sites.
    bool redRow(int64_t j) const { return ((j ^ redY) & 1) == 0; }
    // Parity of the columns of row j's red or blue sites.
    int siteColumnParity(int64_t j) const { return redRow(j) ? redX : redX ^ 1; }
    Colour at(int64_t i, int64_t j) const {
        if (((i ^ siteColumnParity(j)) & 1) != 0) return Colour::Green;
        return redRow(j) ? Colour::Red : Colour::Blue;
    }
};

// Index i of a row or column of n >= 2 samples, mirrored about the edge
// samples as often as needed: -1 -> 1, -2 -> 2, n -> n - 2, n + 1 -> n - 3.
// Mirroring keeps the parity, so a mirrored sample has the colour of its
// position.
inline int64_t mirror(int64_t i, int64_t n) {
    if (i >= 0 && i < n) return i;
    const int64_t period = 2 * (n - 1);
    int64_t m = i % period;
    if (m < 0) m += period;
    return m < n ? m : period - m;
}

// The rectangle to produce, in image coordinates, cut at the right and bottom
// edges of the image, and the size of that image.
struct Region {
    int64_t x, y, width, height;
    int64_t imageWidth, imageHeight;
    bool empty() const { return width < 1 || height < 1; }
};

// The checks every demosaicing member makes after its null pointers (and, for
// the 64-bit members, the range of the values), in order: image side below
// minSide -> -6; grid code outside 0..3, negative codes included -> -5; a
// rectangle origin that is negative or outside the image, whatever its width
// and height -> -6. On success `r` holds the trimmed rectangle, which may be
// empty.
template <class Rect, class Size>
TpxStatus checkRegion(const Rect& roi, const Size& image, int grid, int64_t minSide, Region& r) {
    const int64_t W = image.width, H = image.height, x = roi.x, y = roi.y;
    TPX_CHECK(check::failIf(W < minSide || H < minSide, tpxStatusBadSize));
    TPX_CHECK(check::failIf(uint32_t(grid) > 3u, tpxStatusBadArg));
    TPX_CHECK(check::failIf(x < 0 || y < 0 || x >= W || y >= H, tpxStatusBadSize));
    const int64_t w = roi.width, h = roi.height;
    r = {x, y, x + w > W ? W - x : w, y + h > H ? H - y : h, W, H};
    return tpxStatusOk;
}

// Smallest image side of the VNG and AHD members (the 2-pixel margins of their
// 5 x 5 neighbourhoods mirror within the image).
constexpr int64_t kHighQualityMinSide = 5;

}  // namespace tpx::bayer
