// AHD demosaicing: the tile held on the stack and the row functions of its
// stages (scalar in ahd.cpp, AVX2 and AVX-512 in ahd_avx2.cpp and
// ahd_avx512.cpp from one body in ahd_simd.hpp).
//
// A tile produces up to kTileW x kTileH pixels. Its planes carry the margins
// the stages need (source 6, green candidates 4, colour candidates and Lab 3,
// homogeneity balance 2, chosen colours 1; a candidate's green is read from
// its green plane) and share one row stride, wide enough that the vector row
// functions may compute whole blocks up to column kCompute; the columns past
// a row's width hold values nobody reads.
#pragma once

#include <cstdint>

namespace tpx::ahd {

constexpr int kTileW = 120;  // kTileW + 8 columns of green candidates fit kCompute
constexpr int kTileH = 8;
constexpr int kCompute = 128;  // columns a vector row function may compute
constexpr int kStride = 132;  // row stride of every plane (vector reads reach column kCompute + 3)

struct Tile {
    uint16_t src[kTileH + 12][kStride];       // (tx - 6, ty - 6) at [0][0], 16-bit scale
    uint16_t green[2][kTileH + 8][kStride];   // horizontal, vertical; (tx - 4, ty - 4) at [0][0]
    uint16_t rb[2][2][kTileH + 6][kStride];   // red, blue; (tx - 3, ty - 3) at [0][0]
    int16_t lab[2][3][kTileH + 6][kStride];   // L', A', B'
    int16_t balance[kTileH + 4][kStride];     // horizontal minus vertical count; (tx - 2, ty - 2) at [0][0]
    uint16_t chosen[3][kTileH + 2][kStride];  // R, G, B of the chosen candidates; (tx - 1, ty - 1) at [0][0]
    uint16_t out[3][kStride];                 // R, G, B of one output row, in the destination's scale
    int32_t below[2][2][kStride];             // vector homogeneity: lightness and chroma distances to the next row
};
static_assert(sizeof(Tile) <= 64 * 1024, "the AHD tile must stay within 64 KiB of stack");

// Channel ch (0 R, 1 G, 2 B) of candidate d (0 horizontal, 1 vertical) at
// pixel (i, j) of the chosen planes: a candidate's green is its green plane.
inline const uint16_t* candidate(const Tile& t, int d, int ch, int j, int i) {
    return ch == 1 ? &t.green[d][j + 3][i + 3] : &t.rb[d][ch >> 1][j + 2][i + 2];
}

// Row j of a stage from column i0 to n; `firstGreen` tells whether column 0
// of the row is a green site, `rowRed` whether the row's other sites are red.
// Returns the columns done (the vector forms do whole blocks from column 0).
// The choice of candidate is such a stage too (into t.chosen).
using StageFn = int (*)(Tile& t, int j, int i0, int n, bool firstGreen, bool rowRed);
// The refinement of output row j into t.out; 8-bit output when `eightBit`.
using RefineFn = int (*)(Tile& t, int j, int i0, int n, bool firstGreen, bool rowRed, bool eightBit);
// The refinement of output row j written straight to n 8-bit R, G, B pixels;
// returns n, or 0 when the row is too short for the vector form (the last
// block of a row may overlap the one before it: same pixels, same values).
using Refine8Fn = int (*)(Tile& t, int j, int n, bool firstGreen, bool rowRed, uint8_t* dst);

struct Stages {
    StageFn greens, colours, homogeneity, choose;
    RefineFn refine;
    Refine8Fn refine8;
};

Stages stagesAvx2();
Stages stagesAvx512();

}  // namespace tpx::ahd
