// HSV, HLS and photo YCC rows compiled for AVX2: the block rows (bodies in
// hsv_hls_ycc.hpp) and the hand-written ones of hsv_hls_simd.hpp and ycc_simd.hpp.
#include "colorimetric/hsv_hls_simd.hpp"
#include "colorimetric/ycc_simd.hpp"

namespace tpx::hls {
namespace {

struct Avx2 {
    using F = __m256;
    using I = __m256i;
    using M = __m256;
    TPX_HLS_VECTOR_OPS(_mm256)
    static constexpr int kN = 8;

    static F floor(F a) { return _mm256_round_ps(a, _MM_FROUND_TO_NEG_INF | _MM_FROUND_NO_EXC); }
    template <int P>
    static M cmp(F a, F b) { return _mm256_cmp_ps(a, b, P); }
    static F sel(M m, F yes, F no) { return _mm256_blendv_ps(no, yes, m); }
    static M mor(M a, M b) { return _mm256_or_ps(a, b); }

    static I control(const int8_t* c) { return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(c)); }
    static I eq8(I a, I b) { return _mm256_cmpeq_epi8(a, b); }
    static I sel8(I m, I yes, I no) { return _mm256_blendv_epi8(no, yes, m); }
    static I or8(I a, I b) { return _mm256_or_si256(a, b); }
    static I orI(I a, I b) { return _mm256_or_si256(a, b); }
    static I chunks(const uint8_t* p) {
        return _mm256_loadu2_m128i(reinterpret_cast<const __m128i*>(p + 48), reinterpret_cast<const __m128i*>(p));
    }
    static void storeChunks(uint8_t* p, I v) {
        _mm256_storeu2_m128i(reinterpret_cast<__m128i*>(p + 48), reinterpret_cast<__m128i*>(p), v);
    }

    template <unsigned Bits>
    static F blend(F a, F b) { return _mm256_blend_ps(a, b, Bits); }
    static F permute(F v, const std::array<int, kN>& at) {
        return _mm256_permutevar8x32_ps(v, _mm256_loadu_si256(reinterpret_cast<const __m256i*>(at.data())));
    }
};

}  // namespace

const Rows kRowsAvx2 = ycc::withYccRows(simd::withSimdRows<Avx2>(Rows TPX_HLS_TABLE));
}  // namespace tpx::hls
