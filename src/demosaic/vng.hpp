// Demosaicing by a threshold on eight gradients (VNG): the row functions.
//
// A row function gets five source rows (the output row and two above and
// below, already mirrored at the image edge) whose element 0 is the column two
// to the left of output pixel 0, and writes n pixels as B, G, R and full-scale
// A. Within a row the sites alternate between green and the row's other colour
// X (red or blue); Y is the third colour, found on the diagonals of X sites and
// above and below green sites.
//
// At each pixel (all in integers):
// - eight gradients in half units: N, E, S, W sum twice the absolute
//   differences of the two pairs through the centre along the direction plus
//   the four parallel pairs one column or row aside; the diagonals sum the two
//   pairs on the diagonal (twice) and the two pairs next to it (twice at green
//   sites, once elsewhere);
// - a direction is chosen when 2 g <= 2 min + max;
// - each chosen direction adds the means of X, G and Y in the region it points
//   at, in quarter units (a sample counts 4, a pair 2 each, four samples 1 each);
// - a missing colour is own + (S_c - S_own) / n over the n chosen directions:
//   floor((4 n own + S_c - S_own + 2 n) / (4 n)), limited to 0..max.
#pragma once

#include <cstdint>
#include <cstdlib>

namespace tpx::vng {

// Row function: rows[5] as above, n pixels, pixel 0 green or not, the row's
// X colour red (true) or blue, destination BGRA. Returns the pixels done (SIMD
// forms do whole vector blocks; the scalar form finishes the row).
template <class T>
using RowFn = int (*)(const T* const* rows, int n, bool firstGreen, bool rowRed, T* dst);

// Result of one pixel: X, G and Y.
struct Rgb3 {
    int x, g, y;
};

inline int absd(int a, int b) { return a > b ? a - b : b - a; }

template <class T>
inline Rgb3 pixel(const T* const* rows, int i, bool green, int maxValue) {
    auto p = [&](int dx, int dy) -> int { return rows[2 + dy][i + 2 + dx]; };
    const int c = p(0, 0);
    // Orthogonal gradients share their shape at every site.
    const int gN = 2 * (absd(p(0, -1), p(0, 1)) + absd(p(0, -2), c)) + absd(p(-1, -1), p(-1, 1)) +
                   absd(p(1, -1), p(1, 1)) + absd(p(-1, -2), p(-1, 0)) + absd(p(1, -2), p(1, 0));
    const int gS = 2 * (absd(p(0, 1), p(0, -1)) + absd(p(0, 2), c)) + absd(p(-1, 1), p(-1, -1)) +
                   absd(p(1, 1), p(1, -1)) + absd(p(-1, 2), p(-1, 0)) + absd(p(1, 2), p(1, 0));
    const int gE = 2 * (absd(p(1, 0), p(-1, 0)) + absd(p(2, 0), c)) + absd(p(1, -1), p(-1, -1)) +
                   absd(p(1, 1), p(-1, 1)) + absd(p(2, -1), p(0, -1)) + absd(p(2, 1), p(0, 1));
    const int gW = 2 * (absd(p(-1, 0), p(1, 0)) + absd(p(-2, 0), c)) + absd(p(-1, -1), p(1, -1)) +
                   absd(p(-1, 1), p(1, 1)) + absd(p(-2, -1), p(0, -1)) + absd(p(-2, 1), p(0, 1));
    const int sideW = green ? 2 : 1;
    const int gNE = 2 * (absd(p(1, -1), p(-1, 1)) + absd(p(2, -2), c)) +
                    sideW * (absd(p(1, -2), p(-1, 0)) + absd(p(2, -1), p(0, 1)));
    const int gSE = 2 * (absd(p(1, 1), p(-1, -1)) + absd(p(2, 2), c)) +
                    sideW * (absd(p(1, 2), p(-1, 0)) + absd(p(2, 1), p(0, -1)));
    const int gNW = 2 * (absd(p(-1, -1), p(1, 1)) + absd(p(-2, -2), c)) +
                    sideW * (absd(p(-1, -2), p(1, 0)) + absd(p(-2, -1), p(0, 1)));
    const int gSW = 2 * (absd(p(-1, 1), p(1, -1)) + absd(p(-2, 2), c)) +
                    sideW * (absd(p(-1, 2), p(1, 0)) + absd(p(-2, 1), p(0, -1)));
    const int g[8] = {gN, gE, gS, gW, gNE, gSE, gNW, gSW};
    int lo = g[0], hi = g[0];
    for (int k = 1; k < 8; ++k) {
        lo = g[k] < lo ? g[k] : lo;
        hi = g[k] > hi ? g[k] : hi;
    }
    const int limit = 2 * lo + hi;
    // Means in quarter units of (X or own-row colour, G, Y) per direction.
    int sx = 0, sg = 0, sy = 0, n = 0;
    auto add = [&](int k, int mx, int mg, int my) {
        if (2 * g[k] <= limit) sx += mx, sg += mg, sy += my, ++n;
    };
    if (!green) {
        add(0, 2 * (p(0, -2) + c), 4 * p(0, -1), 2 * (p(-1, -1) + p(1, -1)));
        add(1, 2 * (p(2, 0) + c), 4 * p(1, 0), 2 * (p(1, -1) + p(1, 1)));
        add(2, 2 * (p(0, 2) + c), 4 * p(0, 1), 2 * (p(-1, 1) + p(1, 1)));
        add(3, 2 * (p(-2, 0) + c), 4 * p(-1, 0), 2 * (p(-1, -1) + p(-1, 1)));
        add(4, 2 * (p(2, -2) + c), p(1, -2) + p(0, -1) + p(2, -1) + p(1, 0), 4 * p(1, -1));
        add(5, 2 * (p(2, 2) + c), p(1, 2) + p(0, 1) + p(2, 1) + p(1, 0), 4 * p(1, 1));
        add(6, 2 * (p(-2, -2) + c), p(-1, -2) + p(0, -1) + p(-2, -1) + p(-1, 0), 4 * p(-1, -1));
        add(7, 2 * (p(-2, 2) + c), p(-1, 2) + p(0, 1) + p(-2, 1) + p(-1, 0), 4 * p(-1, 1));
    } else {
        // X lies left and right of a green site, Y above and below.
        add(0, p(-1, -2) + p(1, -2) + p(-1, 0) + p(1, 0), 2 * (p(0, -2) + c), 4 * p(0, -1));
        add(1, 4 * p(1, 0), 2 * (p(2, 0) + c), p(2, -1) + p(2, 1) + p(0, -1) + p(0, 1));
        add(2, p(-1, 2) + p(1, 2) + p(-1, 0) + p(1, 0), 2 * (p(0, 2) + c), 4 * p(0, 1));
        add(3, 4 * p(-1, 0), 2 * (p(-2, 0) + c), p(-2, -1) + p(-2, 1) + p(0, -1) + p(0, 1));
        add(4, 2 * (p(1, -2) + p(1, 0)), 4 * p(1, -1), 2 * (p(0, -1) + p(2, -1)));
        add(5, 2 * (p(1, 2) + p(1, 0)), 4 * p(1, 1), 2 * (p(0, 1) + p(2, 1)));
        add(6, 2 * (p(-1, -2) + p(-1, 0)), 4 * p(-1, -1), 2 * (p(0, -1) + p(-2, -1)));
        add(7, 2 * (p(-1, 2) + p(-1, 0)), 4 * p(-1, 1), 2 * (p(0, 1) + p(-2, 1)));
    }
    const int own = green ? sg : sx;
    auto fill = [&](int s) {
        const int t = 4 * n * c + s - own + 2 * n;
        if (t <= 0) return 0;
        const int v = t / (4 * n);
        return v > maxValue ? maxValue : v;
    };
    return green ? Rgb3{fill(sx), c, fill(sy)} : Rgb3{c, fill(sg), fill(sy)};
}

template <class T>
int rowScalar(const T* const* rows, int n, bool firstGreen, bool rowRed, T* dst) {
    constexpr int kMax = sizeof(T) == 1 ? 255 : 65535;
    for (int i = 0; i < n; ++i) {
        const Rgb3 v = pixel(rows, i, ((i & 1) == 0) == firstGreen, kMax);
        T* o = dst + 4 * i;
        o[0] = T(rowRed ? v.y : v.x);
        o[1] = T(v.g);
        o[2] = T(rowRed ? v.x : v.y);
        o[3] = T(kMax);
    }
    return n;
}

}  // namespace tpx::vng
