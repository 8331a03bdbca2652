// VNG row function on whole blocks of N pixels of 8-bit mosaics, written with
// the compiler's vector types so that one body serves AVX2 (N = 16) and
// AVX-512 (N = 32); included only by the TUs built for those instruction sets.
//
// Lanes hold 16-bit values (gradients reach 8 x 255, sums of means 8 x 1020).
// Green and non-green sites alternate across lanes; where their rules differ
// both are formed and a lane mask picks one. Per site, "first" is the colour
// of (0, +-1) (green at X sites, Y at green sites) and "second" the third
// colour (Y at X sites, X at green sites). The division by 4 n is
// trunc((num + 0.5) * (1 / (4 n))) in single precision, exact because num is
// an integer below 2^15 and 4 n <= 32.
#pragma once

#include <cstdint>
#include <cstring>

namespace tpx::vng::simd {

template <int N>
struct V {
    typedef int16_t i16 __attribute__((vector_size(2 * N)));
    typedef uint8_t u8 __attribute__((vector_size(N)));
    typedef int32_t i32 __attribute__((vector_size(4 * N)));
    typedef uint32_t u32 __attribute__((vector_size(4 * N)));
    typedef float f32 __attribute__((vector_size(4 * N)));
};

template <int N>
inline typename V<N>::i16 load(const uint8_t* p) {
    typename V<N>::u8 b;
    std::memcpy(&b, p, N);
    return __builtin_convertvector(b, typename V<N>::i16);
}

template <int N>
inline typename V<N>::i16 absd(typename V<N>::i16 a, typename V<N>::i16 b) {
    const typename V<N>::i16 d = a - b;
    return d < 0 ? -d : d;
}

template <int N>
inline typename V<N>::i16 vmin(typename V<N>::i16 a, typename V<N>::i16 b) {
    return a < b ? a : b;
}
template <int N>
inline typename V<N>::i16 vmax(typename V<N>::i16 a, typename V<N>::i16 b) {
    return a > b ? a : b;
}

// floor(max(num, 0) / (4 n)), limited to 255; rcp = 1 / (4 n).
template <int N>
inline typename V<N>::i16 divide(typename V<N>::i16 num, typename V<N>::f32 rcp) {
    using i16 = typename V<N>::i16;
    using f32 = typename V<N>::f32;
    num = num < 0 ? i16{} : num;
    const f32 f = (__builtin_convertvector(num, f32) + 0.5f) * rcp;
    const i16 q = __builtin_convertvector(__builtin_convertvector(f, typename V<N>::i32), i16);
    return q > 255 ? i16{} + 255 : q;
}

template <int N>
int row8u(const uint8_t* const* rows, int n, bool firstGreen, bool rowRed, uint8_t* dst) {
    using i16 = typename V<N>::i16;
    using u32 = typename V<N>::u32;
    using f32 = typename V<N>::f32;
    i16 green;
    for (int k = 0; k < N; ++k) green[k] = int16_t(((k & 1) == 0) == firstGreen ? -1 : 0);
    const i16 notGreen = ~green;
    int i = 0;
    for (; i + N <= n; i += N) {
        auto p = [&](int dx, int dy) { return load<N>(rows[2 + dy] + i + 2 + dx); };
        const i16 c = p(0, 0);
        const i16 n2 = p(0, -2), n1 = p(0, -1), s1 = p(0, 1), s2 = p(0, 2);
        const i16 w2 = p(-2, 0), w1 = p(-1, 0), e1 = p(1, 0), e2 = p(2, 0);
        const i16 nw = p(-1, -1), ne = p(1, -1), sw = p(-1, 1), se = p(1, 1);
        const i16 nnw = p(-1, -2), nne = p(1, -2), ssw = p(-1, 2), sse = p(1, 2);
        const i16 wnw = p(-2, -1), ene = p(2, -1), wsw = p(-2, 1), ese = p(2, 1);
        const i16 nwnw = p(-2, -2), nene = p(2, -2), swsw = p(-2, 2), sese = p(2, 2);

        // Differences shared between directions.
        const i16 dNS = absd<N>(n1, s1), dWE = absd<N>(w1, e1);
        const i16 dWcol = absd<N>(nw, sw), dEcol = absd<N>(ne, se);  // left and right columns, rows -1/+1
        const i16 dNrow = absd<N>(nw, ne), dSrow = absd<N>(sw, se);  // top and bottom rows, columns -1/+1
        const i16 gN = 2 * (dNS + absd<N>(n2, c)) + dWcol + dEcol + absd<N>(nnw, w1) + absd<N>(nne, e1);
        const i16 gS = 2 * (dNS + absd<N>(s2, c)) + dWcol + dEcol + absd<N>(ssw, w1) + absd<N>(sse, e1);
        const i16 gE = 2 * (dWE + absd<N>(e2, c)) + dNrow + dSrow + absd<N>(ene, n1) + absd<N>(ese, s1);
        const i16 gW = 2 * (dWE + absd<N>(w2, c)) + dNrow + dSrow + absd<N>(wnw, n1) + absd<N>(wsw, s1);
        const i16 dD1 = absd<N>(ne, sw), dD2 = absd<N>(se, nw);
        auto diag = [&](i16 mainPair, i16 far, i16 sideA, i16 sideB) {
            const i16 side = sideA + sideB;
            return 2 * (mainPair + absd<N>(far, c)) + side + (side & green);
        };
        const i16 gNE = diag(dD1, nene, absd<N>(nne, w1), absd<N>(ene, s1));
        const i16 gSE = diag(dD2, sese, absd<N>(sse, w1), absd<N>(ese, n1));
        const i16 gNW = diag(dD2, nwnw, absd<N>(nnw, e1), absd<N>(wnw, s1));
        const i16 gSW = diag(dD1, swsw, absd<N>(ssw, e1), absd<N>(wsw, n1));
        const i16 lo = vmin<N>(vmin<N>(vmin<N>(gN, gS), vmin<N>(gE, gW)), vmin<N>(vmin<N>(gNE, gSE), vmin<N>(gNW, gSW)));
        const i16 hi = vmax<N>(vmax<N>(vmax<N>(gN, gS), vmax<N>(gE, gW)), vmax<N>(vmax<N>(gNE, gSE), vmax<N>(gNW, gSW)));
        const i16 limit = 2 * lo + hi;

        i16 sOwn{}, sFirst{}, sSecond{}, count{};
        auto add = [&](i16 g, i16 own, i16 first, i16 second) {
            const i16 m = 2 * g <= limit;
            sOwn += own & m;
            sFirst += first & m;
            sSecond += second & m;
            count -= m;
        };
        auto pick = [&](i16 atGreen, i16 atOther) { return (atGreen & green) | (atOther & notGreen); };
        // N, E, S, W: own from the far sample, first from the near one, second
        // from the pair beside the near sample (X sites) or the four beside the
        // centre and the far sample (green sites).
        add(gN, 2 * (n2 + c), 4 * n1, pick(nnw + nne + w1 + e1, 2 * (nw + ne)));
        add(gS, 2 * (s2 + c), 4 * s1, pick(ssw + sse + w1 + e1, 2 * (sw + se)));
        // East and west: the near sample is X at green sites (second) and G at X sites (first).
        add(gE, 2 * (e2 + c), pick(ene + ese + n1 + s1, 4 * e1), pick(4 * e1, 2 * (ne + se)));
        add(gW, 2 * (w2 + c), pick(wnw + wsw + n1 + s1, 4 * w1), pick(4 * w1, 2 * (nw + sw)));
        // Diagonals: at green sites own is the diagonal sample, first the pair
        // in its row, second the pair in its column; at X sites own from the far
        // sample, first the four greens around the diagonal sample, second it.
        add(gNE, pick(4 * ne, 2 * (nene + c)), pick(2 * (n1 + ene), nne + n1 + ene + e1), pick(2 * (nne + e1), 4 * ne));
        add(gSE, pick(4 * se, 2 * (sese + c)), pick(2 * (s1 + ese), sse + s1 + ese + e1), pick(2 * (sse + e1), 4 * se));
        add(gNW, pick(4 * nw, 2 * (nwnw + c)), pick(2 * (n1 + wnw), nnw + n1 + wnw + w1), pick(2 * (nnw + w1), 4 * nw));
        add(gSW, pick(4 * sw, 2 * (swsw + c)), pick(2 * (s1 + wsw), ssw + s1 + wsw + w1), pick(2 * (ssw + w1), 4 * sw));

        const i16 count4 = 4 * count;
        const f32 rcp = 1.0f / __builtin_convertvector(count4, f32);
        const i16 base = count4 * c + 2 * count - sOwn;
        const i16 first = divide<N>(base + sFirst, rcp), second = divide<N>(base + sSecond, rcp);
        // X sites: X = c, G = first, Y = second; green sites: X = second, G = c, Y = first.
        const i16 x = pick(second, c), g = pick(c, first), y = pick(first, second);
        const i16 b = rowRed ? y : x, r = rowRed ? x : y;
        const u32 px = __builtin_convertvector(b, u32) | (__builtin_convertvector(g, u32) << 8) |
                       (__builtin_convertvector(r, u32) << 16) | 0xff000000u;
        std::memcpy(dst + 4 * i, &px, 4 * N);
    }
    return i;
}

}  // namespace tpx::vng::simd
