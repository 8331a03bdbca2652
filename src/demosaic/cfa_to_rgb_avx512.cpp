// AVX-512 row stretches of the Bayer demosaic: 64 (8u) or 32 (16u) pixels a step.
#include "demosaic/cfa_to_rgb_simd.hpp"

#include <immintrin.h>

#include <type_traits>

namespace tpx::bayer {
namespace {

// Word indices that interleave three vectors of 32 units into 96 units, in
// three 32-unit parts: ab[part] for a two-source permute of a and b, then c
// merged at the positions fromC[part] through c[part].
struct WordInterleave {
    alignas(64) uint16_t ab[3][32];
    alignas(64) uint16_t c[3][32];
    uint32_t fromC[3];
};
constexpr WordInterleave wordInterleave() {
    WordInterleave t{};
    for (int part = 0; part < 3; ++part)
        for (int w = 0; w < 32; ++w) {
            const int n = 32 * part + w, src = n % 3, i = n / 3;
            t.ab[part][w] = uint16_t(src == 0 ? i : src == 1 ? 32 + i : 0);
            t.c[part][w] = uint16_t(src == 2 ? i : 0);
            if (src == 2) t.fromC[part] |= 1u << w;
        }
    return t;
}

template <class T>
struct Avx512 {
    using Vec = __m512i;
    static constexpr bool kBytes = sizeof(T) == 1;
    static constexpr int kLanes = 64 / int(sizeof(T));
    using Mask = std::conditional_t<kBytes, __mmask64, __mmask32>;

    static Vec load(const T* p) { return _mm512_loadu_si512(p); }
    static Vec avg(Vec a, Vec b) { return kBytes ? _mm512_avg_epu8(a, b) : _mm512_avg_epu16(a, b); }
    static Vec absDiff(Vec a, Vec b) {
        return kBytes ? _mm512_or_si512(_mm512_subs_epu8(a, b), _mm512_subs_epu8(b, a))
                      : _mm512_or_si512(_mm512_subs_epu16(a, b), _mm512_subs_epu16(b, a));
    }
    // avg4 of a, b, c, d from p = avg(a, b) and q = avg(c, d).
    static Vec avg4(Vec p, Vec q, Vec a, Vec b, Vec c, Vec d) {
        const Vec one = kBytes ? _mm512_set1_epi8(1) : _mm512_set1_epi16(1);
        const Vec odd = _mm512_ternarylogic_epi32(_mm512_xor_si512(a, b), c, d, 0xf6);  // A | (B ^ C)
        const Vec lsb = _mm512_ternarylogic_epi32(p, q, one, 0x28);                      // (A ^ B) & C
        const Vec fix = _mm512_and_si512(odd, lsb);
        const Vec s = avg(p, q);
        return kBytes ? _mm512_sub_epi8(s, fix) : _mm512_sub_epi16(s, fix);
    }
    // across where dH < dV, along where dV < dH, cross where they tie.
    static Vec directed(Vec dH, Vec dV, Vec across, Vec along, Vec cross) {
        if constexpr (kBytes) {
            const Vec v = _mm512_mask_blend_epi8(_mm512_cmplt_epu8_mask(dV, dH), cross, along);
            return _mm512_mask_blend_epi8(_mm512_cmplt_epu8_mask(dH, dV), v, across);
        } else {
            const Vec v = _mm512_mask_blend_epi16(_mm512_cmplt_epu16_mask(dV, dH), cross, along);
            return _mm512_mask_blend_epi16(_mm512_cmplt_epu16_mask(dH, dV), v, across);
        }
    }
    // Lanes whose index has parity p.
    static Mask sites(int p) { return Mask(p ? 0xaaaaaaaaaaaaaaaaull : 0x5555555555555555ull); }
    static Vec select(Mask m, Vec a, Vec b) {
        if constexpr (kBytes) return _mm512_mask_blend_epi8(m, b, a);
        else return _mm512_mask_blend_epi16(m, b, a);
    }

    // 16-bit units of R,G,B output in memory order are taken three ways from
    // units of `a`, `b`, `c` (unit n from vector n % 3, index n / 3).
    static void interleaveUnits(void* out, Vec a, Vec b, Vec c) {
        static constexpr WordInterleave t = wordInterleave();
        for (int part = 0; part < 3; ++part) {
            const Vec ab = _mm512_permutex2var_epi16(a, _mm512_load_si512(t.ab[part]), b);
            const Vec abc = _mm512_mask_permutexvar_epi16(ab, t.fromC[part], _mm512_load_si512(t.c[part]), c);
            _mm512_storeu_si512(static_cast<uint8_t*>(out) + 64 * part, abc);
        }
    }
    static void store3(T* out, Vec r, Vec g, Vec b) {
        if constexpr (kBytes) {
            // Pixel pairs 2k, 2k+1 are the units (r0 g0) (b0 r1) (g1 b1).
            const __mmask64 high = 0xaaaaaaaaaaaaaaaaull;
            interleaveUnits(out, _mm512_mask_blend_epi8(high, r, _mm512_slli_epi16(g, 8)),
                            _mm512_mask_blend_epi8(high, b, r),
                            _mm512_mask_blend_epi8(high, _mm512_srli_epi16(g, 8), b));
        } else {
            interleaveUnits(out, r, g, b);
        }
    }
};

}  // namespace

int stretchRow8_avx512(const Stretch<uint8_t>& r) { return simd::stretchRow<Avx512<uint8_t>>(r); }
int stretchRow16_avx512(const Stretch<uint16_t>& r) { return simd::stretchRow<Avx512<uint16_t>>(r); }

}  // namespace tpx::bayer
