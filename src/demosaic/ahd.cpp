// Adaptive homogeneity-directed demosaicing (AHD), in tiles on the stack.
//
// All arithmetic runs on 16-bit samples; 8-bit mosaics enter as v * 257 and
// leave as (v + 128) / 257, so an 8-bit image and the same image scaled to 16
// bits give the same picture. Per pixel:
// 1. green candidates at red and blue sites: horizontal
//    G_h = (2 (P(-1,0) + P(1,0)) + 2 P(0,0) - P(-2,0) - P(2,0) + 2) >> 2, limited
//    to the range of P(-1,0) and P(1,0); vertical likewise; green sites keep P;
// 2. per candidate, red and blue from colour differences against its green:
//    own + ((d1 + d2 + 1) >> 1) from the two row (or column) neighbours at a
//    green site, G + ((d1 + d2 + d3 + d4 + 2) >> 2) from the four diagonals at
//    red and blue sites, limited to 0..65535;
// 3. Lab of both candidates (ahd_lab.hpp);
// 4. homogeneity: the count of the four neighbours within epsL in lightness and
//    epsC in chroma distance, eps being the smaller of the horizontal
//    candidate's larger left/right distance and the vertical candidate's larger
//    up/down distance;
// 5. the candidate with the larger 3 x 3 sum of counts, on a tie the mean
//    (a + b + 1) >> 1.
// Every plane is mirrored about the image edge like the source, which is the
// same as computing on the source mirrored as far as needed.
#include "demosaic/ahd_lab.hpp"
#include "demosaic/cfa_common.hpp"
#include "frame/image.hpp"

#include <cstring>

namespace tpx::ahd {
namespace {

constexpr int kTile = 32;
constexpr int kS = kTile + 10;  // source tile side (margin 5)
constexpr int kG = kTile + 6;   // green candidates (margin 3)
constexpr int kC = kTile + 4;   // colour candidates and Lab (margin 2)
constexpr int kH = kTile + 2;   // homogeneity counts (margin 1)

struct Tile {
    uint16_t src[kS][kS];
    uint16_t green[2][kG][kG];
    uint16_t rgb[2][3][kC][kC];
    int16_t lab[2][3][kC][kC];
    uint8_t count[2][kH][kH];
};
static_assert(sizeof(Tile) <= 64 * 1024, "AHD tile must stay within 64 KiB of stack");

inline int clampTo(int v, int lo, int hi) { return v < lo ? lo : v > hi ? hi : v; }
inline int absd(int a, int b) { return a > b ? a - b : b - a; }
inline int maxOf(int a, int b) { return a > b ? a : b; }
inline int minOf(int a, int b) { return a < b ? a : b; }

// Tile whose pixel (0,0) is image pixel (tx, ty), tw x th pixels.
struct Place {
    int64_t tx, ty;
    int tw, th;
    int grid;
};

inline cfa::Colour colourOf(const Place& p, int i, int j, int margin) {
    return cfa::colourAt(p.grid, p.tx - margin + i, p.ty - margin + j);
}

template <class T>
void gather(Tile& t, const T* src, std::ptrdiff_t step, const cfa::Region& r, const Place& p) {
    const int w = p.tw + 10, h = p.th + 10;
    int64_t cols[kS];
    for (int i = 0; i < w; ++i) cols[i] = cfa::mirror(p.tx - 5 + i, r.imageWidth);
    const bool inside = p.tx >= 5 && p.tx + p.tw + 5 <= r.imageWidth;
    for (int j = 0; j < h; ++j) {
        const T* row = rowAt(src, step, cfa::mirror(p.ty - 5 + j, r.imageHeight));
        uint16_t* out = t.src[j];
        const int mul = sizeof(T) == 1 ? 257 : 1;
        if (inside) {
            const T* s = row + (p.tx - 5);
            for (int i = 0; i < w; ++i) out[i] = uint16_t(s[i] * mul);
        } else {
            for (int i = 0; i < w; ++i) out[i] = uint16_t(row[cols[i]] * mul);
        }
    }
}

void greens(Tile& t, const Place& p) {
    for (int j = 0; j < p.th + 6; ++j)
        for (int i = 0; i < p.tw + 6; ++i) {
            const uint16_t* s = &t.src[j + 2][i + 2];
            if (colourOf(p, i, j, 3) == cfa::Green) {
                t.green[0][j][i] = t.green[1][j][i] = s[0];
                continue;
            }
            const int l = s[-1], rr = s[1], u = s[-kS], d = s[kS];
            const int gh = (2 * (l + rr) + 2 * s[0] - s[-2] - s[2] + 2) >> 2;
            const int gv = (2 * (u + d) + 2 * s[0] - s[-2 * kS] - s[2 * kS] + 2) >> 2;
            t.green[0][j][i] = uint16_t(clampTo(gh, minOf(l, rr), maxOf(l, rr)));
            t.green[1][j][i] = uint16_t(clampTo(gv, minOf(u, d), maxOf(u, d)));
        }
}

void colours(Tile& t, const Place& p) {
    for (int j = 0; j < p.th + 4; ++j)
        for (int i = 0; i < p.tw + 4; ++i) {
            const uint16_t* s = &t.src[j + 3][i + 3];
            const cfa::Colour c = colourOf(p, i, j, 2);
            // Colour of the row neighbours (the row's red or blue).
            const cfa::Colour rowColour = colourOf(p, i + 1, j, 2) == cfa::Green ? c : colourOf(p, i + 1, j, 2);
            for (int d = 0; d < 2; ++d) {
                const uint16_t* g = &t.green[d][j + 1][i + 1];
                auto diff = [&](int dx, int dy) { return int(s[dy * kS + dx]) - int(g[dy * kG + dx]); };
                int red, green, blue;
                if (c == cfa::Green) {
                    const int x = clampTo(s[0] + ((diff(-1, 0) + diff(1, 0) + 1) >> 1), 0, 65535);
                    const int y = clampTo(s[0] + ((diff(0, -1) + diff(0, 1) + 1) >> 1), 0, 65535);
                    green = s[0];
                    red = rowColour == cfa::Red ? x : y;
                    blue = rowColour == cfa::Red ? y : x;
                } else {
                    green = g[0];
                    const int other = clampTo(
                        g[0] + ((diff(-1, -1) + diff(1, -1) + diff(-1, 1) + diff(1, 1) + 2) >> 2), 0, 65535);
                    red = c == cfa::Red ? s[0] : other;
                    blue = c == cfa::Red ? other : s[0];
                }
                t.rgb[d][0][j][i] = uint16_t(red);
                t.rgb[d][1][j][i] = uint16_t(green);
                t.rgb[d][2][j][i] = uint16_t(blue);
                const int fx = labF(red, green, blue, kLabMatrix.k[0]);
                const int fy = labF(red, green, blue, kLabMatrix.k[1]);
                const int fz = labF(red, green, blue, kLabMatrix.k[2]);
                t.lab[d][0][j][i] = int16_t(fy);
                t.lab[d][1][j][i] = int16_t(fx - fy);
                t.lab[d][2][j][i] = int16_t(fy - fz);
            }
        }
}

void homogeneity(Tile& t, const Place& p) {
    for (int j = 0; j < p.th + 2; ++j)
        for (int i = 0; i < p.tw + 2; ++i) {
            const int offs[4] = {-1, 1, -kC, kC};  // left, right, up, down
            int dl[2][4], dc[2][4];
            for (int d = 0; d < 2; ++d) {
                const int16_t* L = &t.lab[d][0][j + 1][i + 1];
                const int16_t* A = &t.lab[d][1][j + 1][i + 1];
                const int16_t* B = &t.lab[d][2][j + 1][i + 1];
                for (int k = 0; k < 4; ++k) {
                    const int da = A[0] - A[offs[k]], db = B[0] - B[offs[k]];
                    dl[d][k] = absd(L[0], L[offs[k]]);
                    dc[d][k] = 25 * da * da + 4 * db * db;
                }
            }
            const int epsL = minOf(maxOf(dl[0][0], dl[0][1]), maxOf(dl[1][2], dl[1][3]));
            const int epsC = minOf(maxOf(dc[0][0], dc[0][1]), maxOf(dc[1][2], dc[1][3]));
            for (int d = 0; d < 2; ++d) {
                int n = 0;
                for (int k = 0; k < 4; ++k) n += dl[d][k] <= epsL && dc[d][k] <= epsC;
                t.count[d][j][i] = uint8_t(n);
            }
        }
}

template <class T>
void output(const Tile& t, const Place& p, T* dst, std::ptrdiff_t dstStep) {
    for (int j = 0; j < p.th; ++j) {
        T* out = rowAt(dst, dstStep, j);
        for (int i = 0; i < p.tw; ++i) {
            int sum[2];
            for (int d = 0; d < 2; ++d) {
                const uint8_t* c = &t.count[d][j + 1][i + 1];
                sum[d] = c[-kH - 1] + c[-kH] + c[-kH + 1] + c[-1] + c[0] + c[1] + c[kH - 1] + c[kH] + c[kH + 1];
            }
            for (int ch = 0; ch < 3; ++ch) {
                const int h = t.rgb[0][ch][j + 2][i + 2], v = t.rgb[1][ch][j + 2][i + 2];
                const int val = sum[0] > sum[1] ? h : sum[1] > sum[0] ? v : (h + v + 1) >> 1;
                out[3 * i + ch] = T(sizeof(T) == 1 ? (val + 128) / 257 : val);
            }
        }
    }
}

template <class T>
void run(const T* src, std::ptrdiff_t srcStep, T* dst, std::ptrdiff_t dstStep, const cfa::Region& r, int grid) {
    Tile t;
    for (int64_t oy = 0; oy < r.height; oy += kTile)
        for (int64_t ox = 0; ox < r.width; ox += kTile) {
            const Place p{r.x + ox, r.y + oy, int(r.width - ox < kTile ? r.width - ox : kTile),
                          int(r.height - oy < kTile ? r.height - oy : kTile), grid};
            gather(t, src, srcStep, r, p);
            greens(t, p);
            colours(t, p);
            homogeneity(t, p);
            output(t, p, rowAt(dst, dstStep, oy) + 3 * ox, dstStep);
        }
}

template <class T>
TpxStatus entry(const T* pSrc, TpxRect roi, TpxSize size, int srcStep, T* pDst, int dstStep, TpxBayerGrid grid) {
    cfa::Region r;
    TPX_CHECK(cfa::checkRegion(roi.x, roi.y, roi.width, roi.height, size.width, size.height, int(grid),
                               cfa::kMinSide, r));
    if (r.empty()) return tpxStatusOk;
    run(pSrc, srcStep, pDst, dstStep, r, int(grid));
    return tpxStatusOk;
}

}  // namespace
}  // namespace tpx::ahd

extern "C" TPXCC_API TpxStatus tpxiDemosaicAHD_8u_C1C3R(const uint8_t* pSrc, TpxRect srcRoi, TpxSize srcSize,
                                                         int srcStep, uint8_t* pDst, int dstStep, TpxBayerGrid grid) {
    TPX_CHECK(tpx::check::notNull(pSrc, pDst));
    return tpx::ahd::entry(pSrc, srcRoi, srcSize, srcStep, pDst, dstStep, grid);
}

extern "C" TPXCC_API TpxStatus tpxiDemosaicAHD_16u_C1C3R(const uint16_t* pSrc, TpxRect srcRoi, TpxSize srcSize,
                                                          int srcStep, uint16_t* pDst, int dstStep,
                                                          TpxBayerGrid grid) {
    TPX_CHECK(tpx::check::notNull(pSrc, pDst));
    return tpx::ahd::entry(pSrc, srcRoi, srcSize, srcStep, pDst, dstStep, grid);
}
