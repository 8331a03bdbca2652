// What every Bayer demosaicing family shares: the colour of a mosaic pixel,
// mirrored addressing at the image edges, and the rectangle of interest
// checked against the image and cut at its right and bottom edges.
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

    static Phase of(TpxBayerGrid grid) {
        switch (grid) {
            case tpxBayerBGGR: return {1, 1};
            case tpxBayerRGGB: return {0, 0};
            case tpxBayerGBRG: return {0, 1};
            default: return {1, 0};  // tpxBayerGRBG
        }
    }
    // Row j holds red sites (else blue ones) besides its green sites.
    bool redRow(int j) const { return ((j ^ redY) & 1) == 0; }
    // Parity of the columns of row j's red or blue sites.
    int siteColumnParity(int j) const { return redRow(j) ? redX : redX ^ 1; }
    Colour at(int i, int j) const {
        if (((i ^ siteColumnParity(j)) & 1) != 0) return Colour::Green;
        return redRow(j) ? Colour::Red : Colour::Blue;
    }
};

// -5 for a grid code outside 0..3 (negative codes included).
inline TpxStatus checkGrid(int grid) { return check::failIf(uint32_t(grid) > 3u, tpxStatusBadArg); }

// -6 for a rectangle whose origin is negative or lies outside the image,
// whatever its width and height.
inline TpxStatus checkOrigin(TpxRect roi, TpxSize image) {
    return check::failIf(roi.x < 0 || roi.y < 0 || roi.x >= image.width || roi.y >= image.height,
                         tpxStatusBadSize);
}

// The rectangle cut at the right and bottom edges of the image (its origin has
// passed checkOrigin). Empty when the width or height comes out below 1.
struct Region {
    int x, y, width, height;
    bool empty() const { return width < 1 || height < 1; }
};
inline Region trimmed(TpxRect roi, TpxSize image) {
    Region r{roi.x, roi.y, roi.width, roi.height};
    if (int64_t(r.x) + r.width > image.width) r.width = image.width - r.x;
    if (int64_t(r.y) + r.height > image.height) r.height = image.height - r.y;
    return r;
}

// Coordinate i of an image n pixels long, reflected about the edge pixel when
// it falls outside: -1 -> 1, n -> n-2 (and -2 -> 2, n+1 -> n-3 when n >= 3).
constexpr int mirror(int i, int n) { return i < 0 ? -i : i >= n ? 2 * (n - 1) - i : i; }

}  // namespace tpx::bayer
