// XYZ, Lab and LUV rows compiled for AVX-512: the block rows of
// xyz_lab_luv.hpp and the vector rows of xyz_lab_luv_simd.hpp over the
// traits below.
// GCC's AVX-512 intrinsics pass an undefined vector as the unused merge source
// of their unmasked forms, which -W(maybe-)uninitialized reports after inlining.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic ignored "-Wuninitialized"
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#endif
#include "colorimetric/xyz_lab_luv_simd.hpp"

namespace tpx::cie {
namespace {

// Lane indices of 16 C3 pixels (48 floats in three vectors): channel c of
// pixel j is float 3j + c; float q of vector v (q = 16v + j) is channel q % 3
// of pixel q / 3.
struct FloatLanes {
    int32_t split[3][16];  // 3j + c
    int32_t join[3][16];   // q / 3, plus 16 for G (the second table of a two-vector permutation)
    uint16_t joinB[3];     // the lanes of B
};
constexpr FloatLanes floatLanes() {
    FloatLanes l{};
    for (int v = 0; v < 3; ++v)
        for (int j = 0; j < 16; ++j) {
            const int q = 16 * v + j;
            l.split[v][j] = 3 * j + v;
            l.join[v][j] = q / 3 + (q % 3 == 1 ? 16 : 0);
            if (q % 3 == 2) l.joinB[v] = uint16_t(l.joinB[v] | 1u << j);
        }
    return l;
}
constexpr FloatLanes kFloatLanes = floatLanes();

struct Avx512 {
    using M = __mmask16;
    TPX_CIE_ARITHMETIC(_mm512, 512, _cmp_ps_mask)
    static F sel(M m, F a, F b) { return _mm512_mask_blend_ps(m, b, a); }
    static I lanes(const int32_t* p) { return _mm512_loadu_si512(p); }

    // The table in registers, c and r apart, 32 entries a two-vector
    // permutation chosen by index bits 5 and 6. Entry 0 is never asked for
    // (t > 0.008856 gives i >= 1): its slot holds entry 128, whose index has
    // the same low seven bits.
    struct Roots {
        F c[8], r[8];
        Roots() {
            const float* t = &kCubeRoots[0].c;
            const I even = _mm512_setr_epi32(0, 2, 4, 6, 8, 10, 12, 14, 16, 18, 20, 22, 24, 26, 28, 30);
            const I odd = _mm512_add_epi32(even, _mm512_set1_epi32(1));
            for (int k = 0; k < 8; ++k) {
                const F lo = _mm512_loadu_ps(t + 32 * k), hi = _mm512_loadu_ps(t + 32 * k + 16);
                c[k] = _mm512_permutex2var_ps(lo, even, hi);
                r[k] = _mm512_permutex2var_ps(lo, odd, hi);
            }
            c[0] = _mm512_mask_mov_ps(c[0], 1, _mm512_set1_ps(kCubeRoots[128].c));
            r[0] = _mm512_mask_mov_ps(r[0], 1, _mm512_set1_ps(kCubeRoots[128].r));
        }
        // Truncated; the lookup reads the low seven bits only.
        static I index(F x) { return _mm512_cvttps_epi32(x); }
        static F pick(const F* t, I i, M b5, M b6) {
            const F lo = _mm512_mask_blend_ps(b5, _mm512_permutex2var_ps(t[0], i, t[1]), _mm512_permutex2var_ps(t[2], i, t[3]));
            const F hi = _mm512_mask_blend_ps(b5, _mm512_permutex2var_ps(t[4], i, t[5]), _mm512_permutex2var_ps(t[6], i, t[7]));
            return _mm512_mask_blend_ps(b6, lo, hi);
        }
        void get(I i, F& cv, F& rv) const {
            const M b5 = _mm512_test_epi32_mask(i, _mm512_set1_epi32(32)), b6 = _mm512_test_epi32_mask(i, _mm512_set1_epi32(64));
            cv = pick(c, i, b5, b6), rv = pick(r, i, b5, b6);
        }
    };

    static void load8u(const uint8_t* p, F* a, F* b, F* c) {
        __m128i ch[3];
        splitBytes(p, ch);
        a[0] = _mm512_cvtepi32_ps(_mm512_cvtepu8_epi32(ch[0]));
        b[0] = _mm512_cvtepi32_ps(_mm512_cvtepu8_epi32(ch[1]));
        c[0] = _mm512_cvtepi32_ps(_mm512_cvtepu8_epi32(ch[2]));
    }
    // Rounded (the current mode: to nearest even), negatives to 0, then saturated to bytes.
    static __m128i bytes(F v) { return _mm512_cvtusepi32_epi8(_mm512_max_epi32(_mm512_cvtps_epi32(v), _mm512_setzero_si512())); }
    static void store8u(uint8_t* p, const F* a, const F* b, const F* c) {
        const __m128i ch[3] = {bytes(a[0]), bytes(b[0]), bytes(c[0])};
        joinBytes(p, ch);
    }

    // Floats 3j + c below 32 from the first two vectors, the rest from the third.
    static F channel(F m0, F m1, F m2, I idx) {
        const M late = _mm512_cmpge_epi32_mask(idx, _mm512_set1_epi32(32));
        return _mm512_mask_permutexvar_ps(_mm512_permutex2var_ps(m0, idx, m1), late, idx, m2);
    }
    static void load32f(const float* p, F& r, F& g, F& b) {
        const F m0 = _mm512_loadu_ps(p), m1 = _mm512_loadu_ps(p + 16), m2 = _mm512_loadu_ps(p + 32);
        r = channel(m0, m1, m2, lanes(kFloatLanes.split[0]));
        g = channel(m0, m1, m2, lanes(kFloatLanes.split[1]));
        b = channel(m0, m1, m2, lanes(kFloatLanes.split[2]));
    }
    static void store32f(float* p, F r, F g, F b) {
        for (int v = 0; v < 3; ++v) {
            const I idx = lanes(kFloatLanes.join[v]);
            _mm512_storeu_ps(p + 16 * v,
                             _mm512_mask_permutexvar_ps(_mm512_permutex2var_ps(r, idx, g), kFloatLanes.joinB[v], idx, b));
        }
    }
};

}  // namespace

const Rows kRowsAvx512 = vectorRows<Avx512>(Rows TPX_CIE_TABLE);
}  // namespace tpx::cie
