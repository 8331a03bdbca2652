// VNG row function on whole blocks of N pixels, written with the compiler's
// vector types so that one body serves AVX2 and AVX-512; included only by the
// TUs built for those instruction sets.
//
// 8-bit mosaics run in 16-bit lanes (gradients reach 8 x 255, sums of means
// 8 x 1020), 16-bit mosaics in 32-bit lanes. Green and non-green sites
// alternate across lanes; where their rules differ both are formed and a lane
// mask picks one. Per site, "first" is the colour of (0, +-1) (green at X
// sites, Y at green sites) and "second" the third colour (Y at X sites, X at
// green sites). The division by 4 n is trunc((num + 0.5) * (1 / (4 n))) in
// single precision for 8-bit mosaics (num < 2^15) and in double precision for
// 16-bit ones: exact, because num is an integer and 4 n <= 32.
#pragma once

#include <cstdint>
#include <cstring>
#include <type_traits>

namespace tpx::vng::simd {

template <class T, int N>
struct V {
    static constexpr bool kEight = sizeof(T) == 1;
    using Lane = std::conditional_t<kEight, int16_t, int32_t>;
    using Real = std::conditional_t<kEight, float, double>;
    using Word = std::conditional_t<kEight, uint32_t, uint64_t>;  // one BGRA pixel
    typedef Lane lanes __attribute__((vector_size(sizeof(Lane) * N)));
    typedef T samples __attribute__((vector_size(sizeof(T) * N)));
    typedef Real reals __attribute__((vector_size(sizeof(Real) * N)));
    typedef Word words __attribute__((vector_size(sizeof(Word) * N)));
    typedef int32_t ints __attribute__((vector_size(4 * N)));
    static constexpr int kMax = kEight ? 255 : 65535;
};

template <class T, int N>
inline typename V<T, N>::lanes load(const T* p) {
    typename V<T, N>::samples b;
    std::memcpy(&b, p, sizeof b);
    return __builtin_convertvector(b, typename V<T, N>::lanes);
}

template <class L>
inline L absd(L a, L b) {
    const L d = a - b;
    return d < 0 ? -d : d;
}
template <class L>
inline L vmin(L a, L b) { return a < b ? a : b; }
template <class L>
inline L vmax(L a, L b) { return a > b ? a : b; }

// floor(max(num, 0) / (4 n)), limited to the type's maximum; rcp = 1 / (4 n).
template <class T, int N>
inline typename V<T, N>::lanes divide(typename V<T, N>::lanes num, typename V<T, N>::reals rcp) {
    using lanes = typename V<T, N>::lanes;
    using reals = typename V<T, N>::reals;
    num = num < 0 ? lanes{} : num;
    const reals f = (__builtin_convertvector(num, reals) + typename V<T, N>::Real(0.5)) * rcp;
    // Through 32-bit integers: the direct float to 16-bit conversion is not one instruction.
    const lanes q = __builtin_convertvector(__builtin_convertvector(f, typename V<T, N>::ints), lanes);
    return q > V<T, N>::kMax ? lanes{} + V<T, N>::kMax : q;
}

template <class T, int N>
int row(const T* const* rows, int n, bool firstGreen, bool rowRed, T* dst) {
    using Lanes = typename V<T, N>::lanes;  // 16-bit lanes for 8-bit samples, else 32-bit
    using f32 = typename V<T, N>::reals;
    using Word = typename V<T, N>::Word;
    using words = typename V<T, N>::words;
    Lanes green;
    for (int k = 0; k < N; ++k) green[k] = typename V<T, N>::Lane(((k & 1) == 0) == firstGreen ? -1 : 0);
    const Lanes notGreen = ~green;
    int i = 0;
    for (; i + N <= n; i += N) {
        auto p = [&](int dx, int dy) { return load<T, N>(rows[2 + dy] + i + 2 + dx); };
        const Lanes c = p(0, 0);
        const Lanes n2 = p(0, -2), n1 = p(0, -1), s1 = p(0, 1), s2 = p(0, 2);
        const Lanes w2 = p(-2, 0), w1 = p(-1, 0), e1 = p(1, 0), e2 = p(2, 0);
        const Lanes nw = p(-1, -1), ne = p(1, -1), sw = p(-1, 1), se = p(1, 1);
        const Lanes nnw = p(-1, -2), nne = p(1, -2), ssw = p(-1, 2), sse = p(1, 2);
        const Lanes wnw = p(-2, -1), ene = p(2, -1), wsw = p(-2, 1), ese = p(2, 1);
        const Lanes nwnw = p(-2, -2), nene = p(2, -2), swsw = p(-2, 2), sese = p(2, 2);

        // Differences shared between directions.
        const Lanes dNS = absd(n1, s1), dWE = absd(w1, e1);
        const Lanes dWcol = absd(nw, sw), dEcol = absd(ne, se);  // left and right columns, rows -1/+1
        const Lanes dNrow = absd(nw, ne), dSrow = absd(sw, se);  // top and bottom rows, columns -1/+1
        const Lanes gN = 2 * (dNS + absd(n2, c)) + dWcol + dEcol + absd(nnw, w1) + absd(nne, e1);
        const Lanes gS = 2 * (dNS + absd(s2, c)) + dWcol + dEcol + absd(ssw, w1) + absd(sse, e1);
        const Lanes gE = 2 * (dWE + absd(e2, c)) + dNrow + dSrow + absd(ene, n1) + absd(ese, s1);
        const Lanes gW = 2 * (dWE + absd(w2, c)) + dNrow + dSrow + absd(wnw, n1) + absd(wsw, s1);
        const Lanes dD1 = absd(ne, sw), dD2 = absd(se, nw);
        auto diag = [&](Lanes mainPair, Lanes far, Lanes sideA, Lanes sideB) {
            const Lanes side = sideA + sideB;
            return 2 * (mainPair + absd(far, c)) + side + (side & green);
        };
        const Lanes gNE = diag(dD1, nene, absd(nne, w1), absd(ene, s1));
        const Lanes gSE = diag(dD2, sese, absd(sse, w1), absd(ese, n1));
        const Lanes gNW = diag(dD2, nwnw, absd(nnw, e1), absd(wnw, s1));
        const Lanes gSW = diag(dD1, swsw, absd(ssw, e1), absd(wsw, n1));
        const Lanes lo = vmin(vmin(vmin(gN, gS), vmin(gE, gW)), vmin(vmin(gNE, gSE), vmin(gNW, gSW)));
        const Lanes hi = vmax(vmax(vmax(gN, gS), vmax(gE, gW)), vmax(vmax(gNE, gSE), vmax(gNW, gSW)));
        const Lanes limit = 2 * lo + hi;

        Lanes sOwn{}, sFirst{}, sSecond{}, count{};
        auto add = [&](Lanes g, Lanes own, Lanes first, Lanes second) {
            const Lanes m = 2 * g <= limit;
            sOwn += own & m;
            sFirst += first & m;
            sSecond += second & m;
            count -= m;
        };
        auto pick = [&](Lanes atGreen, Lanes atOther) { return (atGreen & green) | (atOther & notGreen); };
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

        const Lanes count4 = 4 * count;
        const f32 rcp = typename V<T, N>::Real(1) / __builtin_convertvector(count4, f32);
        const Lanes base = count4 * c + 2 * count - sOwn;
        const Lanes first = divide<T, N>(base + sFirst, rcp), second = divide<T, N>(base + sSecond, rcp);
        // X sites: X = c, G = first, Y = second; green sites: X = second, G = c, Y = first.
        const Lanes x = pick(second, c), g = pick(c, first), y = pick(first, second);
        const Lanes b = rowRed ? y : x, r = rowRed ? x : y;
        constexpr int bits = 8 * sizeof(T);
        const words px = __builtin_convertvector(b, words) | (__builtin_convertvector(g, words) << bits) |
                         (__builtin_convertvector(r, words) << (2 * bits)) | (Word(V<T, N>::kMax) << (3 * bits));
        std::memcpy(dst + 4 * i, &px, sizeof px);
    }
    return i;
}

}  // namespace tpx::vng::simd
