// Tone mapping passes compiled for AVX2 (bodies in tone_map.hpp).
#include "tone/tone_map.hpp"

#include <immintrin.h>

#include <limits>

namespace tpx::tonemap {
namespace {
float maximumLanes(const float* s, Len n, float m) {
    __m256 top = _mm256_set1_ps(m), nan = _mm256_cmp_ps(top, top, _CMP_UNORD_Q);
    Len i = 0;
    for (; i + 8 <= n; i += 8) {
        const __m256 v = _mm256_loadu_ps(s + i);
        top = _mm256_max_ps(top, v);
        nan = _mm256_or_ps(nan, _mm256_cmp_ps(v, v, _CMP_UNORD_Q));
    }
    if (_mm256_movemask_ps(nan)) return std::numeric_limits<float>::quiet_NaN();
    alignas(32) float lanes[8];
    _mm256_store_ps(lanes, top);
    for (int k = 0; k < 8; ++k) m = lanes[k] > m ? lanes[k] : m;
    return maximumRow(s + i, n - i, m);
}
}  // namespace

const Passes kPassesAvx2 = TPX_TONEMAP_PASSES_LANES;
}
