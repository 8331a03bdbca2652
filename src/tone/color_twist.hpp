// Colour twist: out_i = (t[i][3] + t[i][0] c0) + (t[i][1] c1 + t[i][2] c2)
// in single precision in that grouping (no fused multiply-add), integer
// samples taken as they are (16s too) and stored rounded half to even and
// saturated to the type. Block rows (frame/pixel_blocks.hpp) that
// color_twist_avx2.cpp and color_twist_avx512.cpp compile for their
// instruction sets. C4: out_i = (t[i][3] c3 + t[i][0] c0) + (t[i][1] c1 + t[i][2] c2).
#pragma once

#include "frame/pixel_blocks.hpp"

namespace tpx::twist {

using blocks::Len;
using blocks::Row;
using blocks::Trio;

#define TPX_TWIST_ROWS(X)                                                                                   \
    X(uint8_t, 3) X(uint8_t, 4) X(uint8_t, 1) X(uint16_t, 3) X(uint16_t, 4) X(uint16_t, 1) X(int16_t, 3)      \
    X(int16_t, 4) X(int16_t, 1) X(float, 3) X(float, 4) X(float, 1)

namespace {

// The caller's 3 x 4 matrix, read once per row into its columns.
struct Twist3 {
    static constexpr bool kRaw = true;
    struct State {
        float m[4][3];
        explicit State(const void* args) {
            const float* t = static_cast<const float*>(args);
            for (int i = 0; i < 3; ++i)
                for (int j = 0; j < 4; ++j) m[j][i] = t[4 * i + j];
        }
    };
    static Trio apply(const State& s, float c0, float c1, float c2) {
        const auto& m = s.m;
        return {(m[3][0] + m[0][0] * c0) + (m[1][0] * c1 + m[2][0] * c2),
                (m[3][1] + m[0][1] * c0) + (m[1][1] * c1 + m[2][1] * c2),
                (m[3][2] + m[0][2] * c0) + (m[1][2] * c1 + m[2][2] * c2)};
    }
};

// Four channels in, four out, with the caller's 4 x 4 matrix.
void rowC4(const void* const* sv, void* const* dv, Len n, const void* args) {
    const float* t = static_cast<const float*>(args);
    float m[4][4];
    for (int i = 0; i < 4; ++i)
        for (int j = 0; j < 4; ++j) m[j][i] = t[4 * i + j];
    const float* s = static_cast<const float*>(sv[0]);
    float* d = static_cast<float*>(dv[0]);
    for (Len p = 0; p < n; ++p) {
        const float c0 = s[4 * p], c1 = s[4 * p + 1], c2 = s[4 * p + 2], c3 = s[4 * p + 3];
        for (int k = 0; k < 4; ++k) d[4 * p + k] = (m[3][k] * c3 + m[0][k] * c0) + (m[1][k] * c1 + m[2][k] * c2);
    }
}

}  // namespace

// The rows of one tier: element type, elements per pixel (1: planes).
struct Rows {
#define X(T, K) Row r_##T##_##K;
    TPX_TWIST_ROWS(X)
#undef X
    Row c4;
};
#define TPX_TWIST_ENTRY(T, K) blocks::row<T, T, K, K, 0, Twist3>,
#define TPX_TWIST_TABLE {TPX_TWIST_ROWS(TPX_TWIST_ENTRY) rowC4}
extern const Rows kRowsAvx2, kRowsAvx512;

}  // namespace tpx::twist
