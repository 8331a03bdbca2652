// AVX2 row stretches of the Bayer demosaic: 32 (8u) or 16 (16u) pixels a step.
#include "demosaic/cfa_to_rgb_simd.hpp"

#include <immintrin.h>

namespace tpx::bayer {
namespace {

// pshufb masks that interleave three registers of samples (one per channel)
// into R,G,B order, per 16-byte lane: mask[part][channel] gathers the bytes of
// `channel` that go to output bytes part*16 .. part*16+15 of the lane's 48.
// Repeated for both lanes of a register.
template <int ElemSize>
struct InterleaveMasks {
    alignas(32) int8_t m[3][3][32];
};
template <int ElemSize>
constexpr InterleaveMasks<ElemSize> interleaveMasks() {
    InterleaveMasks<ElemSize> t{};
    for (int part = 0; part < 3; ++part)
        for (int ch = 0; ch < 3; ++ch)
            for (int b = 0; b < 32; ++b) {
                const int q = part * 16 + b % 16, e = q / ElemSize;
                t.m[part][ch][b] = int8_t(e % 3 == ch ? (e / 3) * ElemSize + q % ElemSize : -128);
            }
    return t;
}

template <class T>
struct Avx2 {
    using Vec = __m256i;
    using Mask = __m256i;
    static constexpr bool kBytes = sizeof(T) == 1;
    static constexpr int kLanes = 32 / int(sizeof(T));

    static Vec load(const T* p) { return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p)); }
    static Vec avg(Vec a, Vec b) { return kBytes ? _mm256_avg_epu8(a, b) : _mm256_avg_epu16(a, b); }
    static Vec subs(Vec a, Vec b) { return kBytes ? _mm256_subs_epu8(a, b) : _mm256_subs_epu16(a, b); }
    static Vec isZero(Vec a) {
        return kBytes ? _mm256_cmpeq_epi8(a, _mm256_setzero_si256()) : _mm256_cmpeq_epi16(a, _mm256_setzero_si256());
    }
    static Vec absDiff(Vec a, Vec b) { return _mm256_or_si256(subs(a, b), subs(b, a)); }
    // avg4 of a, b, c, d from p = avg(a, b) and q = avg(c, d).
    static Vec avg4(Vec p, Vec q, Vec a, Vec b, Vec c, Vec d) {
        const Vec one = kBytes ? _mm256_set1_epi8(1) : _mm256_set1_epi16(1);
        const Vec odd = _mm256_or_si256(_mm256_xor_si256(a, b), _mm256_xor_si256(c, d));
        const Vec fix = _mm256_and_si256(_mm256_and_si256(odd, _mm256_xor_si256(p, q)), one);
        const Vec s = avg(p, q);
        return kBytes ? _mm256_sub_epi8(s, fix) : _mm256_sub_epi16(s, fix);
    }
    // across where dH < dV, along where dV < dH, cross where they tie.
    static Vec directed(Vec dH, Vec dV, Vec across, Vec along, Vec cross) {
        const Vec notVLess = isZero(subs(dH, dV));  // dH <= dV
        const Vec notHLess = isZero(subs(dV, dH));  // dV <= dH
        return _mm256_blendv_epi8(across, _mm256_blendv_epi8(along, cross, notVLess), notHLess);
    }
    // Lanes whose index has parity p.
    static Mask sites(int p) {
        const Vec even = kBytes ? _mm256_set1_epi16(0x00ff) : _mm256_set1_epi32(0x0000ffff);
        return p ? _mm256_xor_si256(even, _mm256_set1_epi8(-1)) : even;
    }
    static Vec select(Mask m, Vec a, Vec b) { return _mm256_blendv_epi8(b, a, m); }

    static void store3(T* out, Vec r, Vec g, Vec b) {
        static constexpr auto masks = interleaveMasks<int(sizeof(T))>();
        auto part = [&](int k) {
            auto m = [&](int ch) { return _mm256_load_si256(reinterpret_cast<const __m256i*>(masks.m[k][ch])); };
            return _mm256_or_si256(_mm256_or_si256(_mm256_shuffle_epi8(r, m(0)), _mm256_shuffle_epi8(g, m(1))),
                                   _mm256_shuffle_epi8(b, m(2)));
        };
        // Lane 0 of part k holds output bytes 16k.. of the first 48, lane 1 of the next 48.
        const Vec a = part(0), bb = part(1), c = part(2);
        __m256i* o = reinterpret_cast<__m256i*>(out);
        _mm256_storeu_si256(o, _mm256_permute2x128_si256(a, bb, 0x20));
        _mm256_storeu_si256(o + 1, _mm256_permute2x128_si256(c, a, 0x30));
        _mm256_storeu_si256(o + 2, _mm256_permute2x128_si256(bb, c, 0x31));
    }
};

}  // namespace

int stretchRow8_avx2(const Stretch<uint8_t>& r) { return simd::stretchRow<Avx2<uint8_t>>(r); }
int stretchRow16_avx2(const Stretch<uint16_t>& r) { return simd::stretchRow<Avx2<uint16_t>>(r); }

}  // namespace tpx::bayer
