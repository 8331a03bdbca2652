// Tone mapping passes compiled for AVX-512 (bodies in tone_map.hpp).
#include "tone/tone_map.hpp"

#include <immintrin.h>

#include <limits>

namespace tpx::tonemap {
namespace {
float maximumLanes(const float* s, Len n, float m) {
    __m512 top = _mm512_set1_ps(m);
    __mmask16 nan = _mm512_cmp_ps_mask(top, top, _CMP_UNORD_Q);
    Len i = 0;
    for (; i + 16 <= n; i += 16) {
        const __m512 v = _mm512_loadu_ps(s + i);
        top = _mm512_mask_mov_ps(top, _mm512_cmp_ps_mask(v, top, _CMP_GT_OQ), v);
        nan |= _mm512_cmp_ps_mask(v, v, _CMP_UNORD_Q);
    }
    if (nan) return std::numeric_limits<float>::quiet_NaN();
    alignas(64) float lanes[16];
    _mm512_store_ps(lanes, top);
    for (int k = 0; k < 16; ++k) m = lanes[k] > m ? lanes[k] : m;
    return maximumRow(s + i, n - i, m);
}
}  // namespace

const Passes kPassesAvx512 = TPX_TONEMAP_PASSES_LANES;
}
