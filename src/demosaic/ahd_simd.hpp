// AHD stage row functions on whole blocks of N pixels in 32-bit lanes,
// written with the compiler's vector types so that one body serves AVX2
// (N = 8) and AVX-512 (N = 16); the table lookup of f is a hardware gather.
// They compute every block from column 0 up to n rounded up to whole blocks
// (at most kCompute), the same arithmetic as the scalar row functions. The
// green and colour stages take blocks of 2 N pixels as even and odd columns.
#pragma once

#include "demosaic/ahd.hpp"
#include "demosaic/ahd_lab.hpp"

#include <immintrin.h>

#include <cstring>
#include <type_traits>
#include <utility>

namespace tpx::ahd::simd {

template <int N>
struct V {
    typedef int32_t i32 __attribute__((vector_size(4 * N)));
    typedef uint32_t u32 __attribute__((vector_size(4 * N)));
    typedef uint16_t u16 __attribute__((vector_size(2 * N)));
    typedef int16_t i16 __attribute__((vector_size(2 * N)));
    typedef uint8_t u8 __attribute__((vector_size(N)));
};

// Loads and stores of 16-bit planes widened to 32-bit lanes (one instruction
// each way where the instruction set has it).
template <int N, class E>
inline typename V<N>::i32 load(const E* p) {
    static_assert(sizeof(E) == 2, "16-bit planes only");
    using i32 = typename V<N>::i32;
    if constexpr (N == 8) {
        const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
        return (i32)(std::is_signed_v<E> ? _mm256_cvtepi16_epi32(v) : _mm256_cvtepu16_epi32(v));
    } else {
        const __m256i v = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p));
        return (i32)(std::is_signed_v<E> ? _mm512_maskz_cvtepi16_epi32(0xffff, v) : _mm512_maskz_cvtepu16_epi32(0xffff, v));
    }
}

// Values are within the range of E.
template <int N, class E>
inline void store(E* p, typename V<N>::i32 v) {
    static_assert(sizeof(E) == 2, "16-bit planes only");
    if constexpr (N == 8) {
        const __m256i w = std::is_signed_v<E> ? _mm256_packs_epi32((__m256i)v, (__m256i)v)
                                              : _mm256_packus_epi32((__m256i)v, (__m256i)v);
        _mm_storeu_si128(reinterpret_cast<__m128i*>(p), _mm256_castsi256_si128(_mm256_permute4x64_epi64(w, 0x08)));
    } else {
        _mm512_mask_cvtepi32_storeu_epi16(p, __mmask16(0xffff), (__m512i)v);
    }
}

template <int N>
inline typename V<N>::i32 vmin(typename V<N>::i32 a, typename V<N>::i32 b) { return a < b ? a : b; }
template <int N>
inline typename V<N>::i32 vmax(typename V<N>::i32 a, typename V<N>::i32 b) { return a > b ? a : b; }
template <int N>
inline typename V<N>::i32 vclamp(typename V<N>::i32 v, typename V<N>::i32 lo, typename V<N>::i32 hi) {
    return vmin<N>(vmax<N>(v, lo), hi);
}
template <int N>
inline typename V<N>::i32 vabs(typename V<N>::i32 v) { return v < 0 ? -v : v; }

// Products of 16-bit pairs summed in 32 bits (one instruction).
template <int N>
inline typename V<N>::i32 madd(typename V<N>::i32 a, typename V<N>::i32 b) {
    if constexpr (N == 8)
        return (typename V<N>::i32)_mm256_madd_epi16((__m256i)a, (__m256i)b);
    else
        return (typename V<N>::i32)_mm512_madd_epi16((__m512i)a, (__m512i)b);
}

// f of the normalised X, Y and Z. The matrix products run on signed 16-bit
// pairs: k . C = k . (C - 32768) + 32768 (k_r + k_g + k_b), the same integers.
template <int N>
inline void labF(typename V<N>::i32 r, typename V<N>::i32 g, typename V<N>::i32 b, typename V<N>::i32 f[3]) {
    using i32 = typename V<N>::i32;
    const i32 rg = ((r - 32768) & 0xffff) | ((g - 32768) << 16), b0 = (b - 32768) & 0xffff;
    for (int row = 0; row < 3; ++row) {
        const int* k = kLabMatrix.k[row];
        const i32 krg = i32{} + ((k[0] & 0xffff) | (k[1] << 16)), kb = i32{} + k[2];
        const int bias = 32768 * (k[0] + k[1] + k[2]) + (1 << (kMatrixBits - 1));
        const i32 t = (madd<N>(rg, krg) + madd<N>(b0, kb) + bias) >> kMatrixBits;
        const i32 idx = vmin<N>(t, i32{} + 65535) >> kCbrtShift;
        i32 v;
        if constexpr (N == 8)
            v = (i32)_mm256_mask_i32gather_epi32(_mm256_setzero_si256(), kCbrt.f, (__m256i)idx,
                                                 _mm256_set1_epi32(-1), 4);
        else
            v = (i32)_mm512_mask_i32gather_epi32(_mm512_setzero_si512(), __mmask16(0xffff), (__m512i)idx, kCbrt.f, 4);
        f[row] = v;
    }
}

// Blocks of 2 N pixels are taken as their even and odd columns, N lanes
// each: a half is then all green sites or all red or blue sites, and 16-bit
// planes load and store without widening shuffles. Sample k of a half: column
// 2k (even half) or 2k + 1 (odd half) after p.
template <int N>
inline typename V<N>::i32 half(const uint16_t* p, int h) {
    typename V<N>::u32 w;
    std::memcpy(&w, p, sizeof w);
    return (typename V<N>::i32)(h == 0 ? w & 0xffff : w >> 16);
}
// The halves put back together as 2 N 16-bit values (within the range of the
// plane's type).
template <int N, class E>
inline void storePairs(E* p, typename V<N>::i32 even, typename V<N>::i32 odd) {
    static_assert(sizeof(E) == 2, "16-bit planes only");
    using u32 = typename V<N>::u32;
    const u32 w = ((u32)even & 0xffff) | ((u32)odd << 16);
    std::memcpy(p, &w, sizeof w);
}

template <int N>
int greensRow(Tile& t, int j, int, int n, bool firstGreen, bool) {
    using i32 = typename V<N>::i32;
    int i = 0;
    for (; i < n && i + 2 * N <= kCompute; i += 2 * N) {
        const uint16_t* s = &t.src[j + 2][i + 2];
        i32 gh[2], gv[2];
        for (int h = 0; h < 2; ++h) {
            auto p = [&](int off) { return half<N>(s + off, h); };
            const i32 c = p(0);
            if ((h == 0) == firstGreen) {
                gh[h] = gv[h] = c;
                continue;
            }
            const i32 l = p(-1), r = p(1), u = p(-kStride), d = p(kStride);
            const i32 eh = (2 * (l + r) + 2 * c - p(-2) - p(2) + 2) >> 2;
            const i32 ev = (2 * (u + d) + 2 * c - p(-2 * kStride) - p(2 * kStride) + 2) >> 2;
            gh[h] = vclamp<N>(eh, vmin<N>(l, r), vmax<N>(l, r));
            gv[h] = vclamp<N>(ev, vmin<N>(u, d), vmax<N>(u, d));
        }
        storePairs<N>(&t.green[0][j][i], gh[0], gh[1]);
        storePairs<N>(&t.green[1][j][i], gv[0], gv[1]);
    }
    return i;
}

// Blocks of 2 N pixels as even and odd columns, each half reading only the
// samples its kind of site needs.
template <int N>
int coloursRow(Tile& t, int j, int, int n, bool firstGreen, bool rowRed) {
    using i32 = typename V<N>::i32;
    const i32 zero{}, top = zero + 65535;
    int i = 0;
    for (; i < n && i + 2 * N <= kCompute; i += 2 * N) {
        const uint16_t* s = &t.src[j + 3][i + 3];
        for (int d = 0; d < 2; ++d) {
            const uint16_t* g = &t.green[d][j + 1][i + 1];
            i32 red[2], blue[2], lab[3][2];
            for (int h = 0; h < 2; ++h) {
                auto diff = [&](int dx, int dy) {
                    return half<N>(s + dy * kStride + dx, h) - half<N>(g + dy * kStride + dx, h);
                };
                const i32 c = half<N>(s, h);
                i32 x, gr, y;
                if ((h == 0) == firstGreen) {
                    gr = c;
                    x = vclamp<N>(c + ((diff(-1, 0) + diff(1, 0) + 1) >> 1), zero, top);
                    y = vclamp<N>(c + ((diff(0, -1) + diff(0, 1) + 1) >> 1), zero, top);
                } else {
                    gr = half<N>(g, h);
                    x = c;
                    y = vclamp<N>(gr + ((diff(-1, -1) + diff(1, -1) + diff(-1, 1) + diff(1, 1) + 2) >> 2), zero, top);
                }
                red[h] = rowRed ? x : y;
                blue[h] = rowRed ? y : x;
                i32 f[3];
                labF<N>(red[h], gr, blue[h], f);
                lab[0][h] = f[1];
                lab[1][h] = f[0] - f[1];
                lab[2][h] = f[1] - f[2];
            }
            storePairs<N>(&t.rb[d][0][j][i], red[0], red[1]);
            storePairs<N>(&t.rb[d][1][j][i], blue[0], blue[1]);
            for (int k = 0; k < 3; ++k) storePairs<N>(&t.lab[d][k][j][i], lab[k][0], lab[k][1]);
        }
    }
    return i;
}

// [prev[N - 1], cur[0], ..., cur[N - 2]]: the distance to the left neighbour
// is the previous lane's distance to its right neighbour.
// (Lane indices as constants, which both GCC and clang accept.)
template <int N, int... K>
inline typename V<N>::i32 shiftIn(typename V<N>::i32 prev, typename V<N>::i32 cur, std::integer_sequence<int, K...>) {
    return __builtin_shufflevector(prev, cur, (K == 0 ? N - 1 : N + K - 1)...);
}
template <int N>
inline typename V<N>::i32 shiftIn(typename V<N>::i32 prev, typename V<N>::i32 cur) {
    return shiftIn<N>(prev, cur, std::make_integer_sequence<int, N>());
}

// Each distance is formed once: the left one from the previous block's right
// one, the upper one from the previous row's lower one (t.below; rows come in
// order from 0, every block from column 0).
template <int N>
int homogeneityRow(Tile& t, int j, int, int n, bool, bool) {
    using i32 = typename V<N>::i32;
    i32 prevL[2], prevC[2];
    int i = 0;
    for (; i < n && i + N <= kCompute; i += N) {
        i32 dl[2][4], dc[2][4];  // left, right, up, down
        for (int d = 0; d < 2; ++d) {
            const int16_t* L = &t.lab[d][0][j + 1][i + 1];
            const int16_t* A = &t.lab[d][1][j + 1][i + 1];
            const int16_t* B = &t.lab[d][2][j + 1][i + 1];
            const i32 l0 = load<N>(L), a0 = load<N>(A), b0 = load<N>(B);
            auto dist = [&](int off, i32& outL, i32& outC) {
                const i32 da = a0 - load<N>(A + off), db = b0 - load<N>(B + off);
                const i32 da5 = (da << 2) + da, db2 = db << 1;
                outL = vabs<N>(l0 - load<N>(L + off));
                outC = da5 * da5 + db2 * db2;
            };
            dist(1, dl[d][1], dc[d][1]);
            if (i == 0) {
                dist(-1, dl[d][0], dc[d][0]);
            } else {
                dl[d][0] = shiftIn<N>(prevL[d], dl[d][1]);
                dc[d][0] = shiftIn<N>(prevC[d], dc[d][1]);
            }
            prevL[d] = dl[d][1];
            prevC[d] = dc[d][1];
            if (j == 0) {
                dist(-kStride, dl[d][2], dc[d][2]);
            } else {
                std::memcpy(&dl[d][2], &t.below[d][0][i], sizeof(i32));
                std::memcpy(&dc[d][2], &t.below[d][1][i], sizeof(i32));
            }
            dist(kStride, dl[d][3], dc[d][3]);
            std::memcpy(&t.below[d][0][i], &dl[d][3], sizeof(i32));
            std::memcpy(&t.below[d][1][i], &dc[d][3], sizeof(i32));
        }
        const i32 epsL = vmin<N>(vmax<N>(dl[0][0], dl[0][1]), vmax<N>(dl[1][2], dl[1][3]));
        const i32 epsC = vmin<N>(vmax<N>(dc[0][0], dc[0][1]), vmax<N>(dc[1][2], dc[1][3]));
        i32 balance{};
        for (int k = 0; k < 4; ++k)
            balance += ((dl[1][k] <= epsL) & (dc[1][k] <= epsC)) - ((dl[0][k] <= epsL) & (dc[0][k] <= epsC));
        store<N>(&t.balance[j][i], balance);
    }
    return i;
}

// N pixels R | G << 8 | B << 16 (one per 32-bit lane) stored as 3 N bytes: the
// three low bytes of each lane packed within 128-bit lanes, then the 12-byte
// groups moved next to each other.
template <int N>
inline void storeRgb8(typename V<N>::i32 px, uint8_t* dst) {
    if constexpr (N == 8) {
        const __m256i packMask = _mm256_setr_epi8(0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1, 0, 1, 2, 4,
                                                  5, 6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1);
        const __m256i packed = _mm256_permutevar8x32_epi32(_mm256_shuffle_epi8((__m256i)px, packMask),
                                                           _mm256_setr_epi32(0, 1, 2, 4, 5, 6, 3, 7));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(dst), _mm256_castsi256_si128(packed));
        _mm_storel_epi64(reinterpret_cast<__m128i*>(dst + 16), _mm256_extracti128_si256(packed, 1));
    } else {
        const __m512i packMask = _mm512_maskz_broadcast_i32x4(
            __mmask16(0xffff), _mm_setr_epi8(0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1));
        const __m512i packed = _mm512_maskz_permutexvar_epi32(
            __mmask16(0xffff), _mm512_setr_epi32(0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, 3, 7, 11, 15),
            _mm512_shuffle_epi8((__m512i)px, packMask));
        _mm512_mask_storeu_epi8(dst, __mmask64((1ull << 48) - 1), packed);
    }
}

// The choice in 16-bit lanes, 2 N pixels at a time: the balance sums stay
// within -36..36 and the tie mean (h + v + 1) >> 1 is the unsigned rounding
// average.
template <int N>
int chooseRow(Tile& t, int j, int, int n, bool, bool) {
    constexpr int M = 2 * N;
    typedef int16_t s16 __attribute__((vector_size(2 * M)));
    auto loadS = [](const void* p) {
        s16 v;
        std::memcpy(&v, p, sizeof v);
        return v;
    };
    int i = 0;
    for (; i < n && i + M <= kCompute; i += M) {
        s16 sum{};
        for (int dy = 0; dy < 3; ++dy)
            for (int dx = 0; dx < 3; ++dx) sum += loadS(&t.balance[j + dy][i + dx]);
        const s16 takeH = sum > 0, takeV = sum < 0, tie = ~(takeH | takeV);
        for (int c = 0; c < 3; ++c) {
            const s16 h = loadS(candidate(t, 0, c, j, i)), v = loadS(candidate(t, 1, c, j, i));
            s16 mean;
            if constexpr (N == 8)
                mean = (s16)_mm256_avg_epu16((__m256i)h, (__m256i)v);
            else
                mean = (s16)_mm512_avg_epu16((__m512i)h, (__m512i)v);
            const s16 val = (h & takeH) | (v & takeV) | (mean & tie);
            std::memcpy(&t.chosen[c][j][i], &val, sizeof val);
        }
    }
    return i;
}

// Median of three.
template <int N>
inline typename V<N>::i32 med3(typename V<N>::i32 a, typename V<N>::i32 b, typename V<N>::i32 c) {
    return vmax<N>(vmin<N>(a, b), vmin<N>(vmax<N>(a, b), c));
}

// The refinement reads, per column of chosen pixels, the smallest, median and
// largest of the three differences R - G (k = 0..2) and B - G (k = 3..5) of
// rows j..j + 2; the median of nine is the median of the largest of three
// column minima, the median of their medians and the smallest of their maxima.
struct ColumnStats {
    alignas(64) int32_t v[6][kCompute + 16];
};

// Column statistics for columns 0 .. n, whole blocks up to kCompute.
template <int N>
inline void columnStats(const Tile& t, int j, int n, ColumnStats& st) {
    using i32 = typename V<N>::i32;
    for (int i = 0; i < n && i + N <= kCompute; i += N) {
        i32 g[3];
        for (int dy = 0; dy < 3; ++dy) g[dy] = load<N>(&t.chosen[1][j + dy][i]);
        for (int c = 0; c < 2; ++c) {
            const uint16_t (*p)[kStride] = t.chosen[2 * c];
            const i32 a = load<N>(&p[j][i]) - g[0], b = load<N>(&p[j + 1][i]) - g[1], d = load<N>(&p[j + 2][i]) - g[2];
            const i32 mn = vmin<N>(a, b), mx = vmax<N>(a, b);
            const i32 out[3] = {vmin<N>(mn, d), vmax<N>(mn, vmin<N>(mx, d)), vmax<N>(mx, d)};
            for (int k = 0; k < 3; ++k) std::memcpy(&st.v[3 * c + k][i], &out[k], sizeof(i32));
        }
    }
}

// The refinement of N pixels from column i of output row j: R, G, B in the
// 16-bit scale.
template <int N, int... K>
inline void refineBlock(const Tile& t, const ColumnStats& st, int j, int i, bool firstGreen, bool rowRed,
                        typename V<N>::i32 px[3], std::integer_sequence<int, K...>) {
    using i32 = typename V<N>::i32;
    const i32 zero{}, top = zero + 65535;
    auto at = [&](int k, int dx) {
        i32 v;
        std::memcpy(&v, &st.v[k][i + dx], sizeof v);
        return v;
    };
    i32 med[2];
    for (int c = 0; c < 2; ++c) {
        const int k = 3 * c;
        med[c] = med3<N>(vmax<N>(vmax<N>(at(k, 0), at(k, 1)), at(k, 2)), med3<N>(at(k + 1, 0), at(k + 1, 1), at(k + 1, 2)),
                         vmin<N>(vmin<N>(at(k + 2, 0), at(k + 2, 1)), at(k + 2, 2)));
    }
    const i32 mr = med[0], mb = med[1];
    const i32 r = load<N>(&t.chosen[0][j + 1][i + 1]), g = load<N>(&t.chosen[1][j + 1][i + 1]),
              b = load<N>(&t.chosen[2][j + 1][i + 1]);
    // Lanes at green sites: every other one, from lane 0 when column i is green.
    const i32 even = i32{(K & 1) == 0 ? -1 : 0 ...};
    const i32 green = ((i & 1) == 0) == firstGreen ? even : ~even;
    auto pick = [&](i32 a, i32 c) { return (a & green) | (c & ~green); };
    if (rowRed) {
        px[1] = pick(g, vclamp<N>(r - mr, zero, top));
        px[0] = pick(vclamp<N>(px[1] + mr, zero, top), r);
        px[2] = vclamp<N>(px[1] + mb, zero, top);
    } else {
        px[1] = pick(g, vclamp<N>(b - mb, zero, top));
        px[2] = pick(vclamp<N>(px[1] + mb, zero, top), b);
        px[0] = vclamp<N>(px[1] + mr, zero, top);
    }
}
template <int N>
inline void refineBlock(const Tile& t, const ColumnStats& st, int j, int i, bool firstGreen, bool rowRed,
                        typename V<N>::i32 px[3]) {
    refineBlock<N>(t, st, j, i, firstGreen, rowRed, px, std::make_integer_sequence<int, N>());
}

// (v + 128) / 257 for v <= 65535.
template <int N>
inline typename V<N>::i32 to8(typename V<N>::i32 v) {
    using u32 = typename V<N>::u32;
    return (typename V<N>::i32)(((u32)(v + 128) * 65281u) >> 24);
}

template <int N>
int refineRow(Tile& t, int j, int, int n, bool firstGreen, bool rowRed, bool eightBit) {
    using i32 = typename V<N>::i32;
    ColumnStats st;
    columnStats<N>(t, j, n + N + 2, st);
    int i = 0;
    for (; i < n && i + N + 2 <= kCompute; i += N) {
        i32 px[3];
        refineBlock<N>(t, st, j, i, firstGreen, rowRed, px);
        for (int c = 0; c < 3; ++c) store<N>(&t.out[c][i], eightBit ? to8<N>(px[c]) : px[c]);
    }
    return i;
}

template <int N>
int refine8Row(Tile& t, int j, int n, bool firstGreen, bool rowRed, uint8_t* dst) {
    using i32 = typename V<N>::i32;
    if (n < N) return 0;
    ColumnStats st;
    columnStats<N>(t, j, n + 2, st);
    for (int i = 0;; i += N) {
        if (i + N > n) i = n - N;  // the last block overlaps the one before
        i32 px[3];
        refineBlock<N>(t, st, j, i, firstGreen, rowRed, px);
        storeRgb8<N>(to8<N>(px[0]) | to8<N>(px[1]) << 8 | to8<N>(px[2]) << 16, dst + 3 * i);
        if (i + N >= n) break;
    }
    return n;
}

template <int N>
Stages stages() {
    return {greensRow<N>, coloursRow<N>, homogeneityRow<N>, chooseRow<N>, refineRow<N>, refine8Row<N>};
}

}  // namespace tpx::ahd::simd
