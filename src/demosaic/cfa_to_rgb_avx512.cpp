// AVX-512 interior rows of the Bayer demosaic: 64 (8u) or 32 (16u) pixels a step.
#include "demosaic/cfa_to_rgb_simd.hpp"

#include <immintrin.h>

#include <type_traits>

namespace tpx::bayer {
namespace {

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

    static void store3(T* out, Vec r, Vec g, Vec b) {
        static constexpr auto masks = simd::interleaveMasks<int(sizeof(T))>();
        auto part = [&](int k) {
            auto m = [&](int ch) { return _mm512_load_si512(masks.m[k][ch]); };
            return _mm512_ternarylogic_epi32(_mm512_shuffle_epi8(r, m(0)), _mm512_shuffle_epi8(g, m(1)),
                                             _mm512_shuffle_epi8(b, m(2)), 0xfe);  // A | B | C
        };
        // Lane k of part p holds output bytes 48k + 16p .. 48k + 16p + 15.
        const Vec a = part(0), bb = part(1), c = part(2);
        const __mmask8 lane2 = 0x30;
        const Vec o0 = _mm512_mask_permutexvar_epi64(
            _mm512_permutex2var_epi64(a, _mm512_setr_epi64(0, 1, 8, 9, 0, 0, 2, 3), bb), lane2,
            _mm512_setr_epi64(0, 0, 0, 0, 0, 1, 0, 0), c);
        const Vec o1 = _mm512_mask_permutexvar_epi64(
            _mm512_permutex2var_epi64(bb, _mm512_setr_epi64(2, 3, 10, 11, 0, 0, 4, 5), c), lane2,
            _mm512_setr_epi64(0, 0, 0, 0, 4, 5, 0, 0), a);
        const Vec o2 = _mm512_mask_permutexvar_epi64(
            _mm512_permutex2var_epi64(c, _mm512_setr_epi64(4, 5, 14, 15, 0, 0, 6, 7), a), lane2,
            _mm512_setr_epi64(0, 0, 0, 0, 6, 7, 0, 0), bb);
        _mm512_storeu_si512(out, o0);
        _mm512_storeu_si512(reinterpret_cast<uint8_t*>(out) + 64, o1);
        _mm512_storeu_si512(reinterpret_cast<uint8_t*>(out) + 128, o2);
    }
};

}  // namespace

int interiorRow8_avx512(const InteriorRow<uint8_t>& r) { return simd::interiorRow<Avx512<uint8_t>>(r); }
int interiorRow16_avx512(const InteriorRow<uint16_t>& r) { return simd::interiorRow<Avx512<uint16_t>>(r); }

}  // namespace tpx::bayer
