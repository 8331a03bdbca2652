// Tone mapping passes: the statistic (maximum, or a sum in double precision
// over eight interleaved partial sums added in a fixed order) and the
// conversions, as plain loops that tone_map_avx2.cpp and tone_map_avx512.cpp
// compile for their instruction sets with the same results.
#pragma once

#include <cstddef>
#include <cstdint>

namespace tpx::tonemap {

using Len = std::ptrdiff_t;

struct Passes {
    // The running maximum given the row; NaN once any sample is NaN.
    float (*maximum)(const float* s, Len n, float m);
    // Adds the row to the eight partial sums: sample i to sums[i % 8].
    void (*sum)(const float* s, Len n, double* sums);
    // The low byte of trunc((255 s) r); 0 where that leaves the 32-bit range.
    void (*linear)(const float* s, uint8_t* d, Len n, float r);
    // trunc(scale s): 255 at or above 255, 0 below 1 and from 2^31 on.
    void (*mean)(const float* s, uint8_t* d, Len n, float scale);
};

namespace {

float maximumRow(const float* s, Len n, float m) {
    for (Len i = 0; i < n; ++i) m = s[i] > m || s[i] != s[i] ? s[i] : m;  // NaN sticks: nothing exceeds it
    return m;
}
void sumRow(const float* s, Len n, double* sums) {
    double acc[8];
    for (int k = 0; k < 8; ++k) acc[k] = sums[k];
    Len i = 0;
    for (; i + 8 <= n; i += 8)
        for (int k = 0; k < 8; ++k) acc[k] += double(s[i + k]);
    for (; i < n; ++i) acc[i % 8] += double(s[i]);
    for (int k = 0; k < 8; ++k) sums[k] = acc[k];
}
void linearRow(const float* s, uint8_t* d, Len n, float r) {
    for (Len i = 0; i < n; ++i) {
        const float t = (255.0f * s[i]) * r;
        d[i] = t > -2147483648.0f && t < 2147483648.0f ? uint8_t(int32_t(t)) : 0;
    }
}
void meanRow(const float* s, uint8_t* d, Len n, float scale) {
    for (Len i = 0; i < n; ++i) {
        const float t = scale * s[i];
        d[i] = t < 2147483648.0f ? (t >= 255.0f ? 255 : t >= 1.0f ? uint8_t(int32_t(t)) : 0) : 0;
    }
}

}  // namespace

#define TPX_TONEMAP_PASSES {maximumRow, sumRow, linearRow, meanRow}
// The vector builds take the maximum in lanes: the largest number does not
// depend on the order of the comparisons (only a zero's sign might, and the
// entries treat both zeros alike), and a NaN anywhere makes the result NaN.
#define TPX_TONEMAP_PASSES_LANES {maximumLanes, sumRow, linearRow, meanRow}
extern const Passes kPassesAvx2, kPassesAvx512;

}  // namespace tpx::tonemap
