// Bayer mosaic to R,G,B: the per-pixel rules, the row functions of the
// stretches of rows and the plane driver shared by the 8u and 16u members.
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

// A stretch of one row whose pixels all have their row and column neighbours
// inside the image, or mirrored rows above or below (`up`, `down`).
template <class T>
struct Stretch {
    const T* up2;  // image rows j-2 .. j+2, each at column 0 (up2, down2 only when directed)
    const T* up;
    const T* mid;
    const T* down;
    const T* down2;
    T* out;            // destination pixel of column `begin`
    int begin, count;  // first image column, number of pixels
    bool redRow;       // the row holds red sites (else blue sites)
    int siteParity;    // parity of the columns of its red or blue sites
    bool directed;     // interior row: gradient-directed green (else avg4)
};

// A row function converts the first pixels of the stretch and returns how
// many it did; the scalar one does them all.
template <class T>
using StretchFn = int (*)(const Stretch<T>&);

template <bool Directed, bool RedRow, class T>
inline void stretchPixels(const Stretch<T>& r, int done) {
    const T* up2 = Directed ? r.up2 : r.up;
    const T* down2 = Directed ? r.down2 : r.down;
    for (int k = done; k < r.count; ++k) {
        const int i = r.begin + k;
        pixel<Directed>(up2, r.up, r.mid, r.down, down2, i - 1, i, i + 1, ((i ^ r.siteParity) & 1) != 0, RedRow,
                        r.out + 3 * std::ptrdiff_t(k));
    }
}
template <class T>
inline void stretchScalar(const Stretch<T>& r, int done) {
    if (r.directed) r.redRow ? stretchPixels<true, true>(r, done) : stretchPixels<true, false>(r, done);
    else r.redRow ? stretchPixels<false, true>(r, done) : stretchPixels<false, false>(r, done);
}
template <class T>
int stretchRowScalar(const Stretch<T>& r) {
    stretchScalar(r, 0);
    return r.count;
}

#if TPX_HAVE_X86
int stretchRow8_avx2(const Stretch<uint8_t>& r);
int stretchRow16_avx2(const Stretch<uint16_t>& r);
int stretchRow8_avx512(const Stretch<uint8_t>& r);
int stretchRow16_avx512(const Stretch<uint16_t>& r);
#endif

// Converts the region `rg` of a mosaic whose row 0 starts at `src` (sizes
// within 32 bits); steps count elements. `dst` is the destination pixel of
// (rg.x, rg.y).
template <class T>
void cfaToRgb(const T* src, std::ptrdiff_t srcStep, const Region& rg, Phase ph, T* dst, std::ptrdiff_t dstStep,
              StretchFn<T> rowFn) {
    const int W = int(rg.imageWidth), H = int(rg.imageHeight), x0 = int(rg.x), y0 = int(rg.y);
    const int xEnd = x0 + int(rg.width), yEnd = y0 + int(rg.height);
    auto mirror = [](int i, int n) { return int(bayer::mirror(i, n)); };
    auto row = [&](int j) { return src + srcStep * j; };
    auto out = [&](int i, int j) { return dst + dstStep * (j - y0) + 3 * std::ptrdiff_t(i - x0); };
    // Columns [from, to) of row j, reading the columns and rows next to the
    // edges through their mirror images.
    auto border = [&](int j, int from, int to) {
        const T* up = row(mirror(j - 1, H));
        const T* mid = row(j);
        const T* down = row(mirror(j + 1, H));
        for (int i = from; i < to; ++i)
            pixel<false>(up, up, mid, down, down, mirror(i - 1, W), i, mirror(i + 1, W), ph.at(i, j) == Colour::Green,
                         ph.redRow(j), out(i, j));
    };
    // Columns [from, to) of row j, none of them in the first or last column.
    auto stretch = [&](int j, int from, int to, bool directed) {
        if (from >= to) return;
        const Stretch<T> r{directed ? row(j - 2) : nullptr, row(mirror(j - 1, H)), row(j), row(mirror(j + 1, H)),
                           directed ? row(j + 2) : nullptr, out(from, j), from, to - from, ph.redRow(j),
                           ph.siteColumnParity(j), directed};
        const int done = rowFn(r);
        if (done < r.count) stretchScalar(r, done);
    };

    // Border band: image rows 0, 1, H-2, H-1 whole, columns 0, 1, W-2, W-1 elsewhere.
    const int inner0 = std::max(x0, 1), inner1 = std::min(xEnd, W - 1);
    for (int j = y0; j < yEnd; ++j) {
        if (j < 2 || j >= H - 2) {
            border(j, x0, std::min(xEnd, 1));
            stretch(j, inner0, inner1, false);
            border(j, std::max(x0, W - 1), xEnd);
        } else {
            border(j, x0, std::min(xEnd, 2));
            border(j, std::max({x0, W - 2, 2}), xEnd);
        }
    }

    // Interior.
    const int c0 = std::max(x0, 2), c1 = std::min(xEnd, W - 2);
    for (int j = std::max(y0, 2); j < std::min(yEnd, H - 2); ++j) stretch(j, c0, c1, true);
}

}  // namespace tpx::bayer
