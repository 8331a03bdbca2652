// Bit-depth reduction. With L = levels - 1 steps and D the destination's
// full scale (255 for 8u, 65535 for 16u and 16s), all single precision, no
// fused multiply-add:
//
// No dither: x = the sample normalised by its type (8u x (1/255), 16u
//   x 1.5259022e-5, 16s (s + 32768) x (1/65536), 32f as it is); k = trunc(L x);
//   q = k (1/L); q += 1/L if 0.5 (1/L) < x - q; out = trunc(q D) saturated
//   to 0..D (16s: less 32768).
// The dithering types work in the destination domain: v = the source byte
//   for 8u to 8u, else fl(x D); step = fl(D / L), inv = fl(L fl(1/D)).
// Ordered: q = trunc(v inv) step; q += step if t < v - q with t = fl(fl(k / 15)
//   step), k from the 4 x 4 matrix by ROI row and pixel column; out = trunc(q)
//   saturated.
// Error diffusion: v = the sample + (the gathered, weighted errors) x 1/16,
//   1/48 or 1/42; v >= D gives D and v < 0 (or NaN) gives 0, both passing no error;
//   otherwise q as in the ordered type with the threshold step / 2, the error
//   v - q, out = trunc(q). Each channel is diffused as an image of its own.
//   The gathered sum adds weight x error terms one at a time: the row above
//   from left to right, the row before it likewise, then the current row at
//   x-2 and x-1 (last, so that only they wait for the previous pixel).
// Noise (types 1-4 with noise > 0): before quantisation v gains
//   (r - 0.5) x (noise / 100) x step, r in [0, 1) from a 32-bit xorshift
//   generator seeded with 0x9E3779B9 at the start of every call, one draw per
//   sample in the order the samples are quantised; its state lives in the
//   work buffer.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace tpx::reduce {

using Len = std::ptrdiff_t;

// The constants of one call.
struct Quant {
    float L, rL, halfStep0;  // no dither: L, 1/L, 0.5 (1/L)
    float D, step, inv;      // dithering domain
    float threshold[4][4];   // ordered: [row mod 4][column mod 4]
};
Quant quantFor(int levels, float D);

// A no-dither or ordered row: n pixels of K samples (AC4: the fourth kept),
// ROI row y.
using Row = void (*)(const void* s, void* d, Len n, const Quant& q, int64_t y);

// Every such row: source, destination, samples per pixel (4 with alpha kept: 5), type (0 or 4).
#define TPX_REDUCE_PAIRS(X, K, O)                                                                            \
    X(uint8_t, uint8_t, K, O) X(uint16_t, uint16_t, K, O) X(int16_t, int16_t, K, O) X(uint16_t, uint8_t, K, O) \
    X(int16_t, uint8_t, K, O) X(float, uint8_t, K, O) X(float, uint16_t, K, O) X(float, int16_t, K, O)
#define TPX_REDUCE_ROWS(X)                                                                                      \
    TPX_REDUCE_PAIRS(X, 1, 0) TPX_REDUCE_PAIRS(X, 3, 0) TPX_REDUCE_PAIRS(X, 4, 0) TPX_REDUCE_PAIRS(X, 5, 0)     \
    TPX_REDUCE_PAIRS(X, 1, 4) TPX_REDUCE_PAIRS(X, 3, 4) TPX_REDUCE_PAIRS(X, 4, 4) TPX_REDUCE_PAIRS(X, 5, 4)

namespace {

template <class T>
constexpr float kFull = std::is_same_v<T, uint8_t> ? 255.0f : 65535.0f;
template <class T>
constexpr int kOffset = std::is_same_v<T, int16_t> ? 32768 : 0;

// The sample normalised by its type.
template <class S>
inline float normalised(S s) {
    if constexpr (std::is_same_v<S, uint8_t>) return float(s) * float(1.0 / 255);
    else if constexpr (std::is_same_v<S, uint16_t>) return float(s) * 1.5259022e-5f;
    else if constexpr (std::is_same_v<S, int16_t>) return float(int(s) + 32768) * float(1.0 / 65536);
    else return s;
}
// The dithering domain.
template <class S, class D>
inline float domain(S s) {
    if constexpr (std::is_same_v<S, uint8_t> && std::is_same_v<D, uint8_t>) return float(s);
    else return normalised(s) * kFull<D>;
}
// Truncation toward zero (NaN stays NaN and saturates to 0 below).
inline float truncated(float v) { return std::trunc(v); }
// trunc(t) saturated to 0..F, less the destination's offset.
template <class D>
inline D saturated(float t) {
    const float F = kFull<D>, held = t >= F ? F : t > 0.0f ? t : 0.0f;  // NaN: 0
    return D(int(held) - kOffset<D>);
}

// One flat loop over the samples of a chunk of 64 pixels (the ordered
// thresholds repeat every four pixels); AC4 writes back the destination's
// fourth sample.
template <class S, class D, int K, int O>
void row(const void* sv, void* dv, Len n, const Quant& quant, int64_t y) {
    constexpr int channels = K == 5 ? 4 : K;
    constexpr Len kChunk = 64 * channels;
    const S* s = static_cast<const S*>(sv);
    D* d = static_cast<D*>(dv);
    // The constants in locals: the destination's stores may alias anything.
    const float L = quant.L, rL = quant.rL, half = quant.halfStep0, full = quant.D, step = quant.step, inv = quant.inv;
    float threshold[kChunk];
    for (Len j = 0; j < kChunk; ++j) threshold[j] = quant.threshold[y & 3][j / channels & 3];
    for (Len at = 0; at < n * channels; at += kChunk) {
        const Len m = std::min(kChunk, n * channels - at);
        const S* sc = s + at;
        D* dc = d + at;
        for (Len j = 0; j < m; ++j) {
            D out;
            if constexpr (O == 0) {
                const float x = normalised(sc[j]), k = truncated(L * x);
                float r = k * rL;
                r = half < x - r ? r + rL : r;
                out = saturated<D>(r * full);
            } else {
                const float v = domain<S, D>(sc[j]);
                float r = truncated(v * inv) * step;
                r = threshold[j] < v - r ? r + step : r;
                out = saturated<D>(r);
            }
            dc[j] = K == 5 && j % 4 == 3 ? dc[j] : out;
        }
    }
}

}  // namespace

struct Rows {
#define X(S, D, K, O) Row r_##S##_##D##_##K##_##O;
    TPX_REDUCE_ROWS(X)
#undef X
};
#define TPX_REDUCE_ENTRY(S, D, K, O) row<S, D, K, O>,
#define TPX_REDUCE_TABLE {TPX_REDUCE_ROWS(TPX_REDUCE_ENTRY)}
extern const Rows kRowsAvx2, kRowsAvx512;

// 8u to 8u by two 16-bit high products, an exact stand-in for the tables
// where the search in reduce_bits.cpp finds constants that give every value's
// result: k = (high(v * 256 * m) + e) with its low byte replaced by b (e by
// byte, a pattern that repeats every 192 bytes), d = min(255, high(k * a)).
// AVX2 rows; they return the bytes done.
struct Products {
    uint16_t m, a;
    uint8_t b;
    const uint16_t* e;       // 192 offsets in byte order
    const uint16_t* eLanes;  // the same in the order of the rows' word unpacking
    bool keepFourth;
};
namespace avx2 {
std::ptrdiff_t products(const Products& p, const uint8_t* s, uint8_t* d, std::ptrdiff_t n);
}

}  // namespace tpx::reduce
