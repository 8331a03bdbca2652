// Vector rows of the 8u photo YCC members (C3 and AC4, both directions),
// through frame/float3_simd.hpp: codes / 255 (the IEEE quotient), the steps
// of rgbToYcc and yccToRgb in their order (the clamp to 0..1 as a maximum
// and a minimum, which differ from it only in the sign of a zero), times 255.
// hsv_hls_ycc_avx2.cpp and hsv_hls_ycc_avx512.cpp include this file once
// each; the block rows finish the rows.
#pragma once

#include "colorimetric/hsv_hls_ycc.hpp"
#include "frame/float3_simd.hpp"

namespace tpx::hls::ycc {
namespace {

using namespace vec3;

template <int K>
void toYcc8(const void* const* sv, void* const* dv, blocks::Len n, const void* args) {
    auto op = [](const F* c, F* o) {
        const F R = per255(c[0]), G = per255(c[1]), B = per255(c[2]), k = setF(255.0f);
        const F L = addF(addF(mulF(setF(0.587f), G), mulF(setF(0.299f), R)), mulF(setF(0.114f), B));
        o[0] = mulF(mulF(L, setF(0.7132668f)), k);
        o[1] = mulF(addF(mulF(subF(B, L), setF(0.4368627f)), setF(0.6117647f)), k);
        o[2] = mulF(addF(mulF(subF(R, L), setF(0.5319216f)), setF(0.5372549f)), k);
    };
    floatRow8Then<K>(sv, dv, n, op, blocks::row<uint8_t, uint8_t, K, K, 0, Convert<uint8_t, kToYcc>>, args);
}

template <int K>
void fromYcc8(const void* const* sv, void* const* dv, blocks::Len n, const void* args) {
    auto op = [](const F* c, F* o) {
        const F zero = setF(0.0f), one = setF(1.0f), k = setF(255.0f);
        auto unit = [&](F v) { return minF(maxF(v, zero), one); };
        const F y = mulF(setF(1.3584f), per255(c[0]));
        const F c1 = subF(mulF(setF(2.2179f), per255(c[1])), setF(1.356833f));
        const F c2 = subF(mulF(setF(1.8215f), per255(c[2])), setF(0.9786098f));
        o[0] = mulF(unit(addF(c2, y)), k);
        o[1] = mulF(unit(subF(subF(y, mulF(setF(0.194f), c1)), mulF(setF(0.509f), c2))), k);
        o[2] = mulF(unit(addF(c1, y)), k);
    };
    floatRow8Then<K>(sv, dv, n, op, blocks::row<uint8_t, uint8_t, K, K, 0, Convert<uint8_t, kFromYcc>>, args);
}

// The table of a tier with its 8u YCC rows replaced by these.
constexpr Rows withYccRows(Rows r) {
    r.r_uint8_t_3_3_kToYcc_0 = toYcc8<3>;
    r.r_uint8_t_4_4_kToYcc_0 = toYcc8<4>;
    r.r_uint8_t_3_3_kFromYcc_0 = fromYcc8<3>;
    r.r_uint8_t_4_4_kFromYcc_0 = fromYcc8<4>;
    return r;
}

}  // namespace
}  // namespace tpx::hls::ycc
