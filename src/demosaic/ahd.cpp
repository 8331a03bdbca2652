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
// 5. the candidate with the larger 3 x 3 sum of counts (the sign of the sum
//    of the per-pixel differences), on a tie the mean
//    (a + b + 1) >> 1;
// 6. one pass of median filtering of the colour differences: with
//    dR and dB the medians of R - G and B - G over the 3 x 3 neighbourhood of
//    chosen pixels, a green site gives G, G + dR, G + dB, a red site R,
//    G' = R - dR, G' + dB, a blue site G' + dR, G' = B - dB, B, each limited
//    to 0..65535 (the mosaic's own sample is kept, the others follow the
//    neighbourhood's differences).
// Every plane is mirrored about the image edge like the source, which is the
// same as computing on the source mirrored as far as needed.
#include "demosaic/ahd.hpp"
#include "demosaic/ahd_lab.hpp"
#include "demosaic/bayer_frame.hpp"
#include "frame/cpu.hpp"
#include "frame/image.hpp"

#include <cstring>

namespace tpx::ahd {
namespace {

inline int clampTo(int v, int lo, int hi) { return v < lo ? lo : v > hi ? hi : v; }
inline int absd(int a, int b) { return a > b ? a - b : b - a; }
inline int maxOf(int a, int b) { return a > b ? a : b; }
inline int minOf(int a, int b) { return a < b ? a : b; }
inline bool isGreen(int i, bool firstGreen) { return ((i & 1) == 0) == firstGreen; }

int greensRow(Tile& t, int j, int i0, int n, bool firstGreen, bool) {
    for (int i = i0; i < n; ++i) {
        const uint16_t* s = &t.src[j + 2][i + 2];
        if (isGreen(i, firstGreen)) {
            t.green[0][j][i] = t.green[1][j][i] = s[0];
            continue;
        }
        const int l = s[-1], r = s[1], u = s[-kStride], d = s[kStride];
        const int gh = (2 * (l + r) + 2 * s[0] - s[-2] - s[2] + 2) >> 2;
        const int gv = (2 * (u + d) + 2 * s[0] - s[-2 * kStride] - s[2 * kStride] + 2) >> 2;
        t.green[0][j][i] = uint16_t(clampTo(gh, minOf(l, r), maxOf(l, r)));
        t.green[1][j][i] = uint16_t(clampTo(gv, minOf(u, d), maxOf(u, d)));
    }
    return n;
}

int coloursRow(Tile& t, int j, int i0, int n, bool firstGreen, bool rowRed) {
    for (int i = i0; i < n; ++i) {
        const uint16_t* s = &t.src[j + 3][i + 3];
        for (int d = 0; d < 2; ++d) {
            const uint16_t* g = &t.green[d][j + 1][i + 1];
            auto diff = [&](int dx, int dy) { return int(s[dy * kStride + dx]) - int(g[dy * kStride + dx]); };
            // x: the row's red or blue, y: the other one.
            int x, green, y;
            if (isGreen(i, firstGreen)) {
                green = s[0];
                x = clampTo(s[0] + ((diff(-1, 0) + diff(1, 0) + 1) >> 1), 0, 65535);
                y = clampTo(s[0] + ((diff(0, -1) + diff(0, 1) + 1) >> 1), 0, 65535);
            } else {
                green = g[0];
                x = s[0];
                y = clampTo(g[0] + ((diff(-1, -1) + diff(1, -1) + diff(-1, 1) + diff(1, 1) + 2) >> 2), 0, 65535);
            }
            const int red = rowRed ? x : y, blue = rowRed ? y : x;
            t.rb[d][0][j][i] = uint16_t(red);
            t.rb[d][1][j][i] = uint16_t(blue);
            const int fx = labF(red, green, blue, kLabMatrix.k[0]);
            const int fy = labF(red, green, blue, kLabMatrix.k[1]);
            const int fz = labF(red, green, blue, kLabMatrix.k[2]);
            t.lab[d][0][j][i] = int16_t(fy);
            t.lab[d][1][j][i] = int16_t(fx - fy);
            t.lab[d][2][j][i] = int16_t(fy - fz);
        }
    }
    return n;
}

int homogeneityRow(Tile& t, int j, int i0, int n, bool, bool) {
    const int offs[4] = {-1, 1, -kStride, kStride};  // left, right, up, down
    for (int i = i0; i < n; ++i) {
        int dl[2][4], dc[2][4];
        for (int d = 0; d < 2; ++d) {
            const int16_t* L = &t.lab[d][0][j + 1][i + 1];
            const int16_t* A = &t.lab[d][1][j + 1][i + 1];
            const int16_t* B = &t.lab[d][2][j + 1][i + 1];
            for (int k = 0; k < 4; ++k) {
                const int da = A[0] - A[offs[k]], db = B[0] - B[offs[k]];
                dl[d][k] = absd(L[0], L[offs[k]]);
                dc[d][k] = (5 * da) * (5 * da) + (2 * db) * (2 * db);
            }
        }
        const int epsL = minOf(maxOf(dl[0][0], dl[0][1]), maxOf(dl[1][2], dl[1][3]));
        const int epsC = minOf(maxOf(dc[0][0], dc[0][1]), maxOf(dc[1][2], dc[1][3]));
        int balance = 0;  // homogeneous neighbours of the horizontal candidate minus the vertical's
        for (int k = 0; k < 4; ++k)
            balance += int(dl[0][k] <= epsL && dc[0][k] <= epsC) - int(dl[1][k] <= epsL && dc[1][k] <= epsC);
        t.balance[j][i] = int16_t(balance);
    }
    return n;
}

int chooseRow(Tile& t, int j, int i0, int n, bool, bool) {
    for (int i = i0; i < n; ++i) {
        int sum = 0;
        for (int dy = 0; dy < 3; ++dy)
            for (int dx = 0; dx < 3; ++dx) sum += t.balance[j + dy][i + dx];
        for (int ch = 0; ch < 3; ++ch) {
            const int h = *candidate(t, 0, ch, j, i), v = *candidate(t, 1, ch, j, i);
            const int val = sum > 0 ? h : sum < 0 ? v : (h + v + 1) >> 1;
            t.chosen[ch][j][i] = uint16_t(val);
        }
    }
    return n;
}

// Median of the 3 x 3 differences chosen[ch] - chosen[1] around (i + 1, j + 1).
int medianDiff(const Tile& t, int ch, int j, int i) {
    int v[9], n = 0;
    for (int dy = 0; dy < 3; ++dy)
        for (int dx = 0; dx < 3; ++dx) {
            const int d = t.chosen[ch][j + dy][i + dx] - t.chosen[1][j + dy][i + dx];
            int k = n++;
            for (; k > 0 && v[k - 1] > d; --k) v[k] = v[k - 1];
            v[k] = d;
        }
    return v[4];
}

int refineRow(Tile& t, int j, int i0, int n, bool firstGreen, bool rowRed, bool eightBit) {
    for (int i = i0; i < n; ++i) {
        const int dr = medianDiff(t, 0, j, i), db = medianDiff(t, 2, j, i);
        int px[3];
        for (int ch = 0; ch < 3; ++ch) px[ch] = t.chosen[ch][j + 1][i + 1];
        if (isGreen(i, firstGreen)) {
            px[0] = clampTo(px[1] + dr, 0, 65535);
            px[2] = clampTo(px[1] + db, 0, 65535);
        } else if (rowRed) {
            px[1] = clampTo(px[0] - dr, 0, 65535);
            px[2] = clampTo(px[1] + db, 0, 65535);
        } else {
            px[1] = clampTo(px[2] - db, 0, 65535);
            px[0] = clampTo(px[1] + dr, 0, 65535);
        }
        for (int ch = 0; ch < 3; ++ch) t.out[ch][i] = uint16_t(eightBit ? (px[ch] + 128) / 257 : px[ch]);
    }
    return n;
}

int refine8Row(Tile& t, int j, int n, bool firstGreen, bool rowRed, uint8_t* dst) {
    refineRow(t, j, 0, n, firstGreen, rowRed, true);
    for (int i = 0; i < n; ++i)
        for (int ch = 0; ch < 3; ++ch) dst[3 * i + ch] = uint8_t(t.out[ch][i]);
    return n;
}

// Tile whose pixel (0,0) is image pixel (tx, ty), tw x th pixels.
struct Place {
    int64_t tx, ty;
    int tw, th;
};

template <class T>
void gather(Tile& t, const T* src, std::ptrdiff_t step, const bayer::Region& r, const Place& p, int j0) {
    const int w = p.tw + 12, h = p.th + 12;
    const bool inside = p.tx >= 6 && p.tx + p.tw + 6 <= r.imageWidth;
    int64_t cols[kTileW + 12];
    if (!inside)
        for (int i = 0; i < w; ++i) cols[i] = bayer::mirror(p.tx - 6 + i, r.imageWidth);
    const int mul = sizeof(T) == 1 ? 257 : 1;
    for (int j = j0; j < h; ++j) {
        const T* row = rowAt(src, step, bayer::mirror(p.ty - 6 + j, r.imageHeight));
        // The same columns of the next tile's rows are asked for now, so that
        // they arrive from memory while this tile is worked on.
        if (inside && p.ty - 6 + j + kTileH < r.imageHeight) {
            const char* next = reinterpret_cast<const char*>(rowAt(src, step, p.ty - 6 + j + kTileH) + (p.tx - 6));
            for (size_t b = 0; b < size_t(w) * sizeof(T); b += 64) __builtin_prefetch(next + b);
        }
        uint16_t* out = t.src[j];
        if (inside) {
            const T* s = row + (p.tx - 6);
            for (int i = 0; i < w; ++i) out[i] = uint16_t(loadAt(s, i) * mul);
        } else {
            for (int i = 0; i < w; ++i) out[i] = uint16_t(loadAt(row, cols[i]) * mul);
        }
    }
}

const Stages kScalar{greensRow, coloursRow, homogeneityRow, chooseRow, refineRow, refine8Row};

Stages chooseStages() {
#if TPX_HAVE_X86
    const Tier tier = activeTier();
    if (tier >= Tier::Avx512) return stagesAvx512();
    if (tier >= Tier::Avx2) return stagesAvx2();
#endif
    return kScalar;
}

// Rows a tile computes itself when the tile above in its strip passed on the
// rows it shares: the new rows of each stage start where the rows passed on
// end, and the stages below only read rows from there on.
constexpr int kSrcOverlap = 12, kGreenOverlap = 8, kColourOverlap = 6, kBalanceOverlap = 4, kChosenOverlap = 2;
static_assert(kTileH >= kSrcOverlap - kGreenOverlap, "the rows passed on must not overlap their copies");

// Passes the rows a full tile shares with the next one down to the top: for
// each plane only those the next tile reads (source rows 8..11 for the new
// green rows from 8, green rows 6..7 for the new colour rows from 6 and row 5
// for the new chosen rows' green, colour and Lab rows 4..5 for the new
// balance rows from 4 and the new chosen rows, balance rows 2..3 for the new
// chosen rows from 2, chosen rows 0..1 for the output).
void slide(Tile& t) {
    auto move = [](auto& plane, int from, int to) {
        std::memcpy(plane[from], plane[kTileH + from], sizeof(plane[0]) * size_t(to - from));
    };
    move(t.src, kGreenOverlap, kSrcOverlap);
    for (auto& g : t.green) move(g, kColourOverlap - 1, kGreenOverlap);
    for (int d = 0; d < 2; ++d)
        for (int c = 0; c < 3; ++c) {
            if (c < 2) move(t.rb[d][c], kBalanceOverlap, kColourOverlap);
            move(t.lab[d][c], kBalanceOverlap, kColourOverlap);
        }
    move(t.balance, kChosenOverlap, kBalanceOverlap);
    for (auto& c : t.chosen) move(c, 0, kChosenOverlap);
}

// Strips of kTileW columns from top to bottom; every tile after the first of
// a strip takes its upper margins from the tile above and computes only new
// rows (the vector homogeneity carries its row distances across, t.below).
template <class T>
void run(const T* src, std::ptrdiff_t srcStep, T* dst, std::ptrdiff_t dstStep, const bayer::Region& r, bayer::Phase ph) {
    const Stages vec = chooseStages();
    Tile t{};  // columns past a row's width are computed from defined values
    // Runs a stage over rows j0..rows of `n` columns whose (0,0) is image pixel (x0, y0).
    auto stage = [&](StageFn fast, StageFn scalar, int j0, int rows, int n, int64_t x0, int64_t y0) {
        for (int j = j0; j < rows; ++j) {
            const bool firstGreen = ph.at(x0, y0 + j) == bayer::Colour::Green;
            const bool rowRed = ph.redRow(y0 + j);
            const int done = fast(t, j, 0, n, firstGreen, rowRed);
            if (done < n) scalar(t, j, done, n, firstGreen, rowRed);
        }
    };
    for (int64_t ox = 0; ox < r.width; ox += kTileW)
        for (int64_t oy = 0; oy < r.height; oy += kTileH) {
            const Place p{r.x + ox, r.y + oy, int(r.width - ox < kTileW ? r.width - ox : kTileW),
                          int(r.height - oy < kTileH ? r.height - oy : kTileH)};
            const bool first = oy == 0;
            if (!first) slide(t);
            gather(t, src, srcStep, r, p, first ? 0 : kSrcOverlap);
            stage(vec.greens, greensRow, first ? 0 : kGreenOverlap, p.th + 8, p.tw + 8, p.tx - 4, p.ty - 4);
            stage(vec.colours, coloursRow, first ? 0 : kColourOverlap, p.th + 6, p.tw + 6, p.tx - 3, p.ty - 3);
            stage(vec.homogeneity, homogeneityRow, first ? 0 : kBalanceOverlap, p.th + 4, p.tw + 4, p.tx - 2,
                  p.ty - 2);
            stage(vec.choose, chooseRow, first ? 0 : kChosenOverlap, p.th + 2, p.tw + 2, p.tx - 1, p.ty - 1);
            for (int j = 0; j < p.th; ++j) {
                const bool firstGreen = ph.at(p.tx, p.ty + j) == bayer::Colour::Green, rowRed = ph.redRow(p.ty + j);
                T* out = rowAt(dst, dstStep, oy + j) + 3 * ox;
                if (oy + j + kTileH < r.height) {  // the next tile's row, for writing
                    char* next = reinterpret_cast<char*>(rowAt(dst, dstStep, oy + j + kTileH) + 3 * ox);
                    for (size_t b = 0; b < size_t(p.tw) * 3 * sizeof(T); b += 64) __builtin_prefetch(next + b, 1);
                }
                if constexpr (sizeof(T) == 1) {
                    if (vec.refine8(t, j, p.tw, firstGreen, rowRed, out) < p.tw)
                        refine8Row(t, j, p.tw, firstGreen, rowRed, out);
                } else {
                    const int done = vec.refine(t, j, 0, p.tw, firstGreen, rowRed, false);
                    if (done < p.tw) refineRow(t, j, done, p.tw, firstGreen, rowRed, false);
                    for (int i = 0; i < p.tw; ++i)
                        for (int ch = 0; ch < 3; ++ch) storeAt(out, 3 * i + ch, T(t.out[ch][i]));
                }
            }
        }
}

template <class T>
TpxStatus entry(const T* pSrc, TpxRect roi, TpxSize size, int srcStep, T* pDst, int dstStep, TpxBayerGrid grid) {
    bayer::Region r;
    TPX_CHECK(bayer::checkRegion(roi, size, int(grid), bayer::kHighQualityMinSide, r));
    if (r.empty()) return tpxStatusOk;
    run(pSrc, srcStep, pDst, dstStep, r, bayer::Phase::of(grid));
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
