// HSV, HLS and photo YCC rows compiled for AVX2: the block rows (bodies in
// hsv_hls_ycc.hpp) and the hand-written ones of hsv_hls_simd.hpp.
#include "colorimetric/hsv_hls_simd.hpp"

namespace tpx::hls {
namespace {

struct Avx2 {
    using F = __m256;
    using I = __m256i;
    using M = __m256;
    TPX_HLS_VECTOR_OPS(_mm256)
    static constexpr int kN = 8;

    static F floor(F a) { return _mm256_round_ps(a, _MM_FROUND_TO_NEG_INF | _MM_FROUND_NO_EXC); }
    static F nearest(F a) { return _mm256_round_ps(a, _MM_FROUND_CUR_DIRECTION | _MM_FROUND_NO_EXC); }
    template <int P>
    static M cmp(F a, F b) { return _mm256_cmp_ps(a, b, P); }
    static F sel(M m, F yes, F no) { return _mm256_blendv_ps(no, yes, m); }
    static M mor(M a, M b) { return _mm256_or_ps(a, b); }

    static I lanes16(const int8_t* c) {
        return _mm256_broadcastsi128_si256(_mm_loadu_si128(reinterpret_cast<const __m128i*>(c)));
    }
    static I orI(I a, I b) { return _mm256_or_si256(a, b); }
    static I chunks(const uint8_t* p) {
        return _mm256_loadu2_m128i(reinterpret_cast<const __m128i*>(p + 48), reinterpret_cast<const __m128i*>(p));
    }
    static void storeChunks(uint8_t* p, I v) {
        _mm256_storeu2_m128i(reinterpret_cast<__m128i*>(p + 48), reinterpret_cast<__m128i*>(p), v);
    }

    // Eight pixels x y z: the three vectors rearranged so that each lane holds
    // the 12 floats of four pixels (lane 0: pixels 0-3, lane 1: 4-7), then
    // split within the lanes (and the reverse).
    static void load3(const float* p, F& x, F& y, F& z) {
        const F a = _mm256_loadu_ps(p), b = _mm256_loadu_ps(p + 8), c = _mm256_loadu_ps(p + 16);
        const F m03 = _mm256_blend_ps(a, b, 0xF0), m14 = _mm256_permute2f128_ps(a, c, 0x21),
                m25 = _mm256_blend_ps(b, c, 0xF0);  // x0 y0 z0 x1, y1 z1 x2 y2, z2 x3 y3 z3
        const F xy = _mm256_shuffle_ps(m14, m25, _MM_SHUFFLE(2, 1, 3, 2));  // x2 y2 x3 y3
        const F yz = _mm256_shuffle_ps(m03, m14, _MM_SHUFFLE(1, 0, 2, 1));  // y0 z0 y1 z1
        x = _mm256_shuffle_ps(m03, xy, _MM_SHUFFLE(2, 0, 3, 0));
        y = _mm256_shuffle_ps(yz, xy, _MM_SHUFFLE(3, 1, 2, 0));
        z = _mm256_shuffle_ps(yz, m25, _MM_SHUFFLE(3, 0, 3, 1));
    }
    static void store3(float* p, F x, F y, F z) {
        const F xy = _mm256_shuffle_ps(x, y, _MM_SHUFFLE(2, 0, 2, 0));  // x0 x2 y0 y2
        const F yz = _mm256_shuffle_ps(y, z, _MM_SHUFFLE(3, 1, 3, 1));  // y1 y3 z1 z3
        const F zx = _mm256_shuffle_ps(z, x, _MM_SHUFFLE(3, 1, 2, 0));  // z0 z2 x1 x3
        const F m03 = _mm256_shuffle_ps(xy, zx, _MM_SHUFFLE(2, 0, 2, 0)), m14 = _mm256_shuffle_ps(yz, xy, _MM_SHUFFLE(3, 1, 2, 0)),
                m25 = _mm256_shuffle_ps(zx, yz, _MM_SHUFFLE(3, 1, 3, 1));
        _mm256_storeu_ps(p, _mm256_permute2f128_ps(m03, m14, 0x20));
        _mm256_storeu_ps(p + 8, _mm256_permute2f128_ps(m25, m03, 0x30));
        _mm256_storeu_ps(p + 16, _mm256_permute2f128_ps(m14, m25, 0x31));
    }
};

}  // namespace

const Rows kRowsAvx2 = simd::withSimdRows<Avx2>(Rows TPX_HLS_TABLE);
}  // namespace tpx::hls
