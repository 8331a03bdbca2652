// XYZ, Lab and LUV rows compiled for AVX2: the block rows of xyz_lab_luv.hpp
// and the vector rows of xyz_lab_luv_simd.hpp over the traits below.
#include "colorimetric/xyz_lab_luv_simd.hpp"

namespace tpx::cie {
namespace {

struct Avx2 {
    TPX_CIE_ARITHMETIC(_mm256, 256, _cmp_ps)
    static F sel(F m, F a, F b) { return _mm256_blendv_ps(b, a, m); }

    // The table read pair by pair (c_i and r_i are adjacent).
    struct Roots {
        Roots() {}
        // Truncated, negatives and NaN (INT_MIN) to entry 0.
        static I index(F x) { return _mm256_max_epi32(_mm256_cvttps_epi32(x), _mm256_setzero_si256()); }
        void get(I i, F& c, F& r) const {
            // The indices through memory: loads are cheaper than extractions.
            alignas(32) int32_t k[8];
            _mm256_store_si256(reinterpret_cast<__m256i*>(k), i);
            asm("" : "+m"(k));
            const auto two = [&k](int a, int b) {  // [c_a r_a c_b r_b]
                const __m128 p = _mm_castpd_ps(_mm_load_sd(reinterpret_cast<const double*>(&kCubeRoots[k[a]])));
                return _mm_loadh_pi(p, reinterpret_cast<const __m64*>(&kCubeRoots[k[b]]));
            };
            const F lo = _mm256_insertf128_ps(_mm256_castps128_ps256(two(0, 1)), two(4, 5), 1);
            const F hi = _mm256_insertf128_ps(_mm256_castps128_ps256(two(2, 3)), two(6, 7), 1);
            c = _mm256_shuffle_ps(lo, hi, 0x88);
            r = _mm256_shuffle_ps(lo, hi, 0xDD);
        }
    };

    static F floats(__m128i bytes) { return _mm256_cvtepi32_ps(_mm256_cvtepu8_epi32(bytes)); }
    static void load8u(const uint8_t* p, F* a, F* b, F* c) {
        __m128i ch[3];
        splitBytes(p, ch);
        F* out[3] = {a, b, c};
        for (int k = 0; k < 3; ++k) out[k][0] = floats(ch[k]), out[k][1] = floats(_mm_srli_si128(ch[k], 8));
    }
    // Rounded (the current mode: to nearest even), saturated to 16 bits, then to bytes.
    static __m128i bytes(F lo, F hi) {
        const __m256i w = _mm256_permute4x64_epi64(
            _mm256_packs_epi32(_mm256_cvtps_epi32(lo), _mm256_cvtps_epi32(hi)), 0xD8);
        return _mm_packus_epi16(_mm256_castsi256_si128(w), _mm256_extracti128_si256(w, 1));
    }
    static void store8u(uint8_t* p, const F* a, const F* b, const F* c) {
        const __m128i ch[3] = {bytes(a[0], a[1]), bytes(b[0], b[1]), bytes(c[0], c[1])};
        joinBytes(p, ch);
    }

    // 8 C3 pixels as three vectors whose 128-bit lanes hold 4 pixels each,
    // pixels 0..3 in the low lanes and 4..7 in the high ones: lane floats
    // p0..p11 give R = p0 p3 p6 p9, G = p1 p4 p7 p10, B = p2 p5 p8 p11 by
    // two blends and one in-lane permutation each (their own inverses).
    static constexpr int kPermR = 0x6C, kPermG = 0xB1, kPermB = 0xC6;
    static void load32f(const float* p, F& r, F& g, F& b) {
        const F m0 = _mm256_loadu_ps(p), m1 = _mm256_loadu_ps(p + 8), m2 = _mm256_loadu_ps(p + 16);
        const F x = _mm256_permute2f128_ps(m0, m1, 0x30), y = _mm256_permute2f128_ps(m0, m2, 0x21),
                z = _mm256_permute2f128_ps(m1, m2, 0x30);
        r = _mm256_permute_ps(_mm256_blend_ps(_mm256_blend_ps(x, y, 0x44), z, 0x22), kPermR);
        g = _mm256_permute_ps(_mm256_blend_ps(_mm256_blend_ps(x, y, 0x99), z, 0x44), kPermG);
        b = _mm256_permute_ps(_mm256_blend_ps(_mm256_blend_ps(x, y, 0x22), z, 0x99), kPermB);
    }
    static void store32f(float* p, F r, F g, F b) {
        const F pr = _mm256_permute_ps(r, kPermR), pg = _mm256_permute_ps(g, kPermG), pb = _mm256_permute_ps(b, kPermB);
        const F x = _mm256_blend_ps(_mm256_blend_ps(pr, pg, 0x22), pb, 0x44);
        const F y = _mm256_blend_ps(_mm256_blend_ps(pg, pb, 0x22), pr, 0x44);
        const F z = _mm256_blend_ps(_mm256_blend_ps(pb, pr, 0x22), pg, 0x44);
        _mm256_storeu_ps(p, _mm256_permute2f128_ps(x, y, 0x20));
        _mm256_storeu_ps(p + 8, _mm256_permute2f128_ps(z, x, 0x30));
        _mm256_storeu_ps(p + 16, _mm256_permute2f128_ps(y, z, 0x31));
    }
};

}  // namespace

const Rows kRowsAvx2 = vectorRows<Avx2>(Rows TPX_CIE_TABLE);
}  // namespace tpx::cie
