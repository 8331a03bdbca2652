// AVX2 row operations of the chroma layout conversions (bodies in chroma_rows_simd.hpp).
#include "yuv/chroma_rows_simd.hpp"

#include <immintrin.h>

namespace tpx::chroma {
namespace {

struct Avx2 {
    using I = __m256i;
    static constexpr Len kBytes = 32;
    static I load(const uint8_t* p) { return _mm256_loadu_si256(reinterpret_cast<const I*>(p)); }
    static void store(uint8_t* p, I v) { _mm256_storeu_si256(reinterpret_cast<I*>(p), v); }
    static I lanes(const int8_t* m) { return _mm256_broadcastsi128_si256(_mm_load_si128(reinterpret_cast<const __m128i*>(m))); }
    static I set8(int v) { return _mm256_set1_epi8(char(v)); }
    static I set16(int16_t v) { return _mm256_set1_epi16(v); }
    static I and_(I a, I b) { return _mm256_and_si256(a, b); }
    static I xor_(I a, I b) { return _mm256_xor_si256(a, b); }
    static I srl16_8(I a) { return _mm256_srli_epi16(a, 8); }
    static I srl16(I a, int n) { return _mm256_srl_epi16(a, _mm_cvtsi32_si128(n)); }
    static I sra16_4(I a) { return _mm256_srai_epi16(a, 4); }
    static I packus16(I a, I b) { return _mm256_packus_epi16(a, b); }
    static I inOrder(I v) { return _mm256_permute4x64_epi64(v, 0xD8); }
    static I unpackLo8(I a, I b) { return _mm256_unpacklo_epi8(a, b); }
    static I unpackHi8(I a, I b) { return _mm256_unpackhi_epi8(a, b); }
    static void interleaved(I lo, I hi, I& first, I& second) {
        first = _mm256_permute2x128_si256(lo, hi, 0x20);
        second = _mm256_permute2x128_si256(lo, hi, 0x31);
    }
    static I avg8(I a, I b) { return _mm256_avg_epu8(a, b); }
    static I sub8(I a, I b) { return _mm256_sub_epi8(a, b); }
    static I add16(I a, I b) { return _mm256_add_epi16(a, b); }
    static I sub16(I a, I b) { return _mm256_sub_epi16(a, b); }
    static I mullo16(I a, I b) { return _mm256_mullo_epi16(a, b); }
    static I shuffle8(I v, I m) { return _mm256_shuffle_epi8(v, m); }
};

}  // namespace

const Rows kRowsAvx2 = simd::Ops<Avx2>::table();

}  // namespace tpx::chroma
