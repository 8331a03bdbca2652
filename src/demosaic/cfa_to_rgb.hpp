// Bayer mosaic to R,G,B: the per-pixel rules, the row functions of the
// interior and the plane driver shared by the 8u and 16u members.
//
// The colour a pixel's own site holds is copied. At a green site the colour
// of the row neighbours is avg2 of them and the colour of the column
// neighbours avg2 of those. At a red or blue site the opposite colour is avg4
// of the four diagonals; green is taken along the direction of lesser change
// (dH = |P(i-2,j) - P(i+2,j)|, dV = |P(i,j-2) - P(i,j+2)|): avg2 of the row
// neighbours when dH < dV, of the column neighbours when dV < dH, avg4 of all
// four when they tie. Pixels within two of an image edge (the border band)
// always take avg4 green and read neighbours outside the image from their
// mirror images about the edge pixel. All sums are 32-bit, so nothing clamps.
#pragma once

#include "demosaic/bayer_frame.hpp"
#include "frame/cpu.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace tpx::bayer {

inline uint32_t avg2(uint32_t a, uint32_t b) { return (a + b + 1) >> 1; }
inline uint32_t avg4(uint32_t a, uint32_t b, uint32_t c, uint32_t d) { return (a + b + c + d + 2) >> 2; }
inline uint32_t absDiff(uint32_t a, uint32_t b) { return a > b ? a - b : b - a; }

// Writes one R,G,B pixel of a row with red sites (redRow) or blue sites:
// `rowColour` is the red (resp. blue) value, `otherColour` the blue (resp. red).
template <class T>
inline void put(T* out, bool redRow, uint32_t rowColour, uint32_t green, uint32_t otherColour) {
    out[redRow ? 0 : 2] = T(rowColour);
    out[1] = T(green);
    out[redRow ? 2 : 0] = T(otherColour);
}

// One pixel at column i of the row `mid`, whose neighbour rows are `up` and
// `down` and neighbour columns l and r (mirrored where the edge needs it).
// Directed: green at a red or blue site from the gradients, reading rows
// `up2`, `down2` and columns i-2, i+2 (interior pixels only); otherwise avg4.
template <bool Directed, class T>
inline void pixel(const T* up2, const T* up, const T* mid, const T* down, const T* down2, int l, int i, int r,
                  bool greenSite, bool redRow, T* out) {
    const uint32_t across = avg2(mid[l], mid[r]), along = avg2(up[i], down[i]);
    if (greenSite) {
        put(out, redRow, across, mid[i], along);
        return;
    }
    uint32_t green = avg4(mid[l], mid[r], up[i], down[i]);
    if (Directed) {
        const uint32_t dH = absDiff(mid[i - 2], mid[i + 2]), dV = absDiff(up2[i], down2[i]);
        if (dH < dV) green = across;
        else if (dV < dH) green = along;
    }
    put(out, redRow, mid[i], green, avg4(up[l], up[r], down[l], down[r]));
}

// A stretch of one interior row: every pixel has two neighbours on each side
// inside the image.
template <class T>
struct InteriorRow {
    const T* up2;  // image rows j-2 .. j+2, each at column 0
    const T* up;
    const T* mid;
    const T* down;
    const T* down2;
    T* out;            // destination pixel of column `begin`
    int begin, count;  // first image column, number of pixels
    bool redRow;       // the row holds red sites (else blue sites)
    int siteParity;    // parity of the columns of its red or blue sites
};

// A row function converts the first pixels of the stretch and returns how
// many it did (a multiple of 2, so the phase of the rest is unchanged); the
// scalar one does them all.
template <class T>
using InteriorRowFn = int (*)(const InteriorRow<T>&);

template <class T>
inline void interiorScalar(const InteriorRow<T>& r, int done) {
    for (int k = done; k < r.count; ++k) {
        const int i = r.begin + k;
        pixel<true>(r.up2, r.up, r.mid, r.down, r.down2, i - 1, i, i + 1, ((i ^ r.siteParity) & 1) != 0,
                    r.redRow, r.out + 3 * std::ptrdiff_t(k));
    }
}
template <class T>
int interiorRowScalar(const InteriorRow<T>& r) {
    interiorScalar(r, 0);
    return r.count;
}

#if TPX_HAVE_X86
int interiorRow8_avx2(const InteriorRow<uint8_t>& r);
int interiorRow16_avx2(const InteriorRow<uint16_t>& r);
int interiorRow8_avx512(const InteriorRow<uint8_t>& r);
int interiorRow16_avx512(const InteriorRow<uint16_t>& r);
#endif

// Converts the region `rg` of a W x H mosaic whose row 0 starts at `src`;
// steps count elements. `dst` is the destination pixel of (rg.x, rg.y).
template <class T>
void cfaToRgb(const T* src, std::ptrdiff_t srcStep, TpxSize image, Region rg, Phase ph, T* dst,
              std::ptrdiff_t dstStep, InteriorRowFn<T> rowFn) {
    const int W = image.width, H = image.height, xEnd = rg.x + rg.width, yEnd = rg.y + rg.height;
    auto row = [&](int j) { return src + srcStep * j; };
    auto out = [&](int i, int j) { return dst + dstStep * (j - rg.y) + 3 * std::ptrdiff_t(i - rg.x); };
    auto borderPixels = [&](int j, int from, int to) {
        const T* up = row(mirror(j - 1, H));
        const T* mid = row(j);
        const T* down = row(mirror(j + 1, H));
        for (int i = from; i < to; ++i)
            pixel<false>(up, up, mid, down, down, mirror(i - 1, W), i, mirror(i + 1, W), ph.at(i, j) == Colour::Green,
                         ph.redRow(j), out(i, j));
    };

    // Border band: image rows 0, 1, H-2, H-1 whole, columns 0, 1, W-2, W-1 elsewhere.
    for (int j = rg.y; j < yEnd; ++j) {
        if (j < 2 || j >= H - 2) {
            borderPixels(j, rg.x, xEnd);
        } else {
            borderPixels(j, rg.x, std::min(xEnd, 2));
            borderPixels(j, std::max({rg.x, W - 2, 2}), xEnd);
        }
    }

    // Interior.
    const int c0 = std::max(rg.x, 2), c1 = std::min(xEnd - 1, W - 3);
    const int r0 = std::max(rg.y, 2), r1 = std::min(yEnd - 1, H - 3);
    if (c0 > c1 || r0 > r1) return;
    for (int j = r0; j <= r1; ++j) {
        const InteriorRow<T> r{row(j - 2), row(j - 1), row(j), row(j + 1), row(j + 2), out(c0, j),
                               c0, c1 - c0 + 1, ph.redRow(j), ph.siteColumnParity(j)};
        const int done = rowFn(r);
        if (done < r.count) interiorScalar(r, done);
    }
}

}  // namespace tpx::bayer
