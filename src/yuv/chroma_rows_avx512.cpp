// AVX-512 row operations of the chroma layout conversions (bodies in chroma_rows_simd.hpp).
#include "yuv/chroma_rows_simd.hpp"

#include <immintrin.h>

namespace tpx::chroma {
namespace {

struct Avx512 {
    using I = __m512i;
    static constexpr Len kBytes = 64;
    static I load(const uint8_t* p) { return _mm512_loadu_si512(p); }
    static void store(uint8_t* p, I v) { _mm512_storeu_si512(p, v); }
    static I lanes(const int8_t* m) { return _mm512_maskz_broadcast_i32x4(0xFFFF, _mm_load_si128(reinterpret_cast<const __m128i*>(m))); }
    static I set8(int v) { return _mm512_set1_epi8(char(v)); }
    static I set16(int16_t v) { return _mm512_set1_epi16(v); }
    static I and_(I a, I b) { return _mm512_and_si512(a, b); }
    static I xor_(I a, I b) { return _mm512_xor_si512(a, b); }
    static I srl16_8(I a) { return _mm512_srli_epi16(a, 8); }
    static I srl16(I a, int n) { return _mm512_srl_epi16(a, _mm_cvtsi32_si128(n)); }
    static I sra16_4(I a) { return _mm512_srai_epi16(a, 4); }
    static I packus16(I a, I b) { return _mm512_packus_epi16(a, b); }
    static I inOrder(I v) { return _mm512_maskz_permutexvar_epi64(0xFF, _mm512_setr_epi64(0, 2, 4, 6, 1, 3, 5, 7), v); }
    static I unpackLo8(I a, I b) { return _mm512_unpacklo_epi8(a, b); }
    static I unpackHi8(I a, I b) { return _mm512_unpackhi_epi8(a, b); }
    static void interleaved(I lo, I hi, I& first, I& second) {
        first = _mm512_permutex2var_epi64(lo, _mm512_setr_epi64(0, 1, 8, 9, 2, 3, 10, 11), hi);
        second = _mm512_permutex2var_epi64(lo, _mm512_setr_epi64(4, 5, 12, 13, 6, 7, 14, 15), hi);
    }
    static I avg8(I a, I b) { return _mm512_avg_epu8(a, b); }
    static I sub8(I a, I b) { return _mm512_sub_epi8(a, b); }
    static I add16(I a, I b) { return _mm512_add_epi16(a, b); }
    static I sub16(I a, I b) { return _mm512_sub_epi16(a, b); }
    static I mullo16(I a, I b) { return _mm512_mullo_epi16(a, b); }
    static I shuffle8(I v, I m) { return _mm512_shuffle_epi8(v, m); }
};

}  // namespace

const Rows kRowsAvx512 = simd::Ops<Avx512>::table();

}  // namespace tpx::chroma
