// Vector rows of the 8u colour twist, one body for AVX2 and AVX-512
// (color_twist_avx2.cpp and color_twist_avx512.cpp include this file once
// each): whole vector blocks through frame/float3_simd.hpp with the twist in
// the grouping of Twist3; the block row finishes the row.
#pragma once

#include "frame/float3_simd.hpp"
#include "tone/color_twist.hpp"

namespace tpx::twist {
namespace {

using namespace vec3;

// K bytes per pixel (1: three planes); a fourth byte is left as it is.
template <int K>
void row8(const void* const* sv, void* const* dv, Len n, const void* args) {
    const Twist3::State st(args);
    F m[4][3];
    for (int j = 0; j < 4; ++j)
        for (int i = 0; i < 3; ++i) m[j][i] = setF(st.m[j][i]);
    auto twist = [&m](const F* c, F* o) {
        for (int i = 0; i < 3; ++i)
            o[i] = addF(addF(m[3][i], mulF(m[0][i], c[0])), addF(mulF(m[1][i], c[1]), mulF(m[2][i], c[2])));
    };
    floatRow8Then<K>(sv, dv, n, twist, blocks::row<uint8_t, uint8_t, K, K, 0, Twist3>, args);
}

// The tier's row of element type T and K elements per pixel.
template <class T, int K>
constexpr Row vectorRow() {
    if constexpr (std::is_same_v<T, uint8_t>) return row8<K>;
    else return blocks::row<T, T, K, K, 0, Twist3>;
}

}  // namespace
}  // namespace tpx::twist

#define TPX_TWIST_VECTOR_ENTRY(T, K) vectorRow<T, K>(),
#define TPX_TWIST_VECTOR_TABLE {TPX_TWIST_ROWS(TPX_TWIST_VECTOR_ENTRY) rowC4}
