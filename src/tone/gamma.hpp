// Gamma correction. 8u and 16u: every colour sample through the constant
// tables of gamma_table.hpp, one by one in increasing address order (so
// overlapping images give a defined result). 32f: x = (v - vMin) / (vMax -
// vMin) clamped to 0..1, out = vMin + (vMax - vMin) * curve(x), with the
// power x^0.45 (and ^(1 / 0.45)) evaluated as 2^(p log2 x) by the
// single-precision polynomials below; block rows (frame/pixel_blocks.hpp)
// that gamma_avx2.cpp and gamma_avx512.cpp compile for their instruction sets.
#pragma once

#include "frame/pixel_blocks.hpp"

#include <cstring>

namespace tpx::gamma {

using blocks::Len;
using blocks::Row;
using blocks::Trio;

struct Range {
    float vMin, vMax;
};

#define TPX_GAMMA_ROWS(X) X(3, true) X(4, true) X(1, true) X(3, false) X(4, false) X(1, false)

namespace {

inline int32_t bitsOf(float x) {
    int32_t i;
    std::memcpy(&i, &x, sizeof i);
    return i;
}
inline float floatOf(int32_t i) {
    float x;
    std::memcpy(&x, &i, sizeof x);
    return x;
}
// log2 of a positive normal x: x = m 2^e with m in [sqrt(1/2), sqrt(2)),
// log m = 2 atanh(s), s = (m - 1) / (m + 1), by its series to s^9.
inline float log2Of(float x) {
    const int32_t bits = bitsOf(x);
    const int32_t e0 = ((bits >> 23) & 255) - 127;
    const float m0 = floatOf((bits & 0x7FFFFF) | 0x3F800000);
    const bool high = m0 > 1.41421356f;
    const float m = high ? m0 * 0.5f : m0, e = float(high ? e0 + 1 : e0);
    const float s = (m - 1.0f) / (m + 1.0f), s2 = s * s;
    const float series = 1.0f + s2 * (0.33333333f + s2 * (0.2f + s2 * (0.14285714f + s2 * 0.11111111f)));
    return e + 2.8853901f * s * series;  // 2 / ln 2 = 2.8853901
}
// 2^z for z in -126..0: z = n + f, n = nearest(z), f in [-1/2, 1/2], 2^f by its Taylor series to f^7.
inline float exp2Of(float z) {
    const float n = std::nearbyint(z), f = (z - n) * 0.69314718f;
    const float p = 1.0f + f * (1.0f + f * (0.5f + f * (0.16666667f + f * (0.041666668f + f * (0.008333334f +
                    f * (0.0013888889f + f * 0.00019841270f))))));
    return p * floatOf((int32_t(n) + 127) << 23);
}
inline float forward(float x) {
    const float power = 1.099f * exp2Of(0.45f * log2Of(x)) - 0.099f;  // used from 0.018 on only
    return x < 0.018f ? 4.5f * x : power;
}
inline float inverse(float y) {
    const float power = exp2Of(2.2222222f * log2Of((y + 0.099f) / 1.099f));  // 1 / 0.45; used from 0.0812 on only
    return y < 0.0812f ? y / 4.5f : power;
}

template <bool Fwd>
struct Curve {
    static constexpr bool kRaw = false;
    struct State {
        float vMin, range;
        explicit State(const void* args)
            : vMin(static_cast<const Range*>(args)->vMin), range(static_cast<const Range*>(args)->vMax - vMin) {}
    };
    static float one(const State& s, float v) {
        const float q = (v - s.vMin) / s.range, x = q > 0.0f ? (q < 1.0f ? q : 1.0f) : 0.0f;  // NaN: 0
        return s.vMin + s.range * (Fwd ? forward(x) : inverse(x));
    }
    static Trio apply(const State& s, float a, float b, float c) { return {one(s, a), one(s, b), one(s, c)}; }
};

}  // namespace

// The 32f rows of one tier: elements per pixel (1: planes), direction.
struct Rows {
#define X(K, F) Row r_##K##_##F;
    TPX_GAMMA_ROWS(X)
#undef X
};
#define TPX_GAMMA_ENTRY(K, F) blocks::row<float, float, K, K, 0, Curve<F>>,
#define TPX_GAMMA_TABLE {TPX_GAMMA_ROWS(TPX_GAMMA_ENTRY)}
extern const Rows kRowsAvx2, kRowsAvx512;

}  // namespace tpx::gamma
