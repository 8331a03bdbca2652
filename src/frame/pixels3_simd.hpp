// Vector primitives and the moves of 3-byte and 4-byte pixels in and out of
// channel vectors, one body for AVX2 and AVX-512: a row file includes this
// header once, compiled for its instruction set; everything here has internal
// linkage, so the AVX2 and AVX-512 copies never mix.
//
// Layout of a vector of bytes: 128-bit lane k holds pixels 16k..16k+15 of one
// channel ("lane-split"). 3-byte pixels are then moved in and out with
// in-lane blends and byte shuffles on 16-pixel groups, and widening (unpack
// low/high) and narrowing (pack) keep that order without cross-lane moves.
// 4-byte pixels use "group order" (below) so that they move with
// whole-vector loads and stores. Arithmetic per pixel may take any order
// that is undone on the way out.
#pragma once

#include <immintrin.h>

#include <cstddef>
#include <cstdint>

namespace tpx::vec3 {
namespace {

// ---- Vector primitives of the instruction set ------------------------------
#if defined(__AVX512BW__)
using V = __m512i;
constexpr int kLanes = 4;
inline V zero() { return _mm512_setzero_si512(); }
inline V set8(uint8_t v) { return _mm512_set1_epi8(char(v)); }
inline V set16(int v) { return _mm512_set1_epi16(short(v)); }
inline V set32(int v) { return _mm512_set1_epi32(v); }
// The all-ones zero-masking forms below are the plain instructions; they avoid
// the undefined pass-through operand of the unmasked intrinsics.
inline V lanes(const __m128i m) { return _mm512_maskz_broadcast_i32x4(0xFFFF, m); }
inline V load(const uint8_t* p) { return _mm512_loadu_si512(p); }
inline void store(uint8_t* p, V v) { _mm512_storeu_si512(p, v); }
// Chunks 3k, 3k+1, 3k+2 of twelve consecutive 16-byte chunks into lane k of a,
// b and c: three whole loads and two lane permutations per vector.
inline void loadChunks3(const uint8_t* p, V& a, V& b, V& c) {
    const V z0 = load(p), z1 = load(p + 64), z2 = load(p + 128);
    a = _mm512_permutex2var_epi64(z0, _mm512_setr_epi64(0, 1, 6, 7, 12, 13, 0, 0), z1);  // c0 c3 c6
    a = _mm512_mask_shuffle_i64x2(a, 0xC0, z2, z2, 0x40);                                 // c9
    b = _mm512_permutex2var_epi64(z0, _mm512_setr_epi64(2, 3, 8, 9, 14, 15, 0, 0), z1);  // c1 c4 c7
    b = _mm512_mask_shuffle_i64x2(b, 0xC0, z2, z2, 0x80);                                 // c10
    c = _mm512_permutex2var_epi64(z0, _mm512_setr_epi64(4, 5, 10, 11, 0, 0, 0, 0), z1);   // c2 c5
    c = _mm512_mask_shuffle_i64x2(c, 0xF0, z2, z2, 0xC0);                                 // c8 c11
}
// Lane k to the 16 bytes at p + k * stride, by masked full-width stores whose
// base is moved back by 16k bytes so that only lane k's bytes at p + k * stride
// are written (masked-off bytes are not touched).
inline const void* laneBase(const uint8_t* p, int stride, int k) {
    return reinterpret_cast<const void*>(reinterpret_cast<uintptr_t>(p) + uintptr_t(std::ptrdiff_t(k) * (stride - 16)));
}
inline void storeLanes(uint8_t* p, int stride, V v) {
    for (int k = 0; k < 4; ++k)
        _mm512_mask_storeu_epi32(const_cast<void*>(laneBase(p, stride, k)), __mmask16(0xF << (4 * k)), v);
}
inline V shuffle(V v, V m) { return _mm512_shuffle_epi8(v, m); }
inline V orV(V a, V b) { return _mm512_or_si512(a, b); }
inline V xorV(V a, V b) { return _mm512_xor_si512(a, b); }
// In every lane, the bytes at the positions set in `bits` from b, the rest
// from a (`bytes`: the same positions as 0xFF bytes).
inline V blend(V a, V b, uint16_t bits, const __m128i) {
    return _mm512_mask_blend_epi8(bits * 0x0001000100010001ull, a, b);
}
inline V lo8(V a, V b) { return _mm512_unpacklo_epi8(a, b); }
inline V hi8(V a, V b) { return _mm512_unpackhi_epi8(a, b); }
inline V lo16(V a, V b) { return _mm512_unpacklo_epi16(a, b); }
inline V hi16(V a, V b) { return _mm512_unpackhi_epi16(a, b); }
inline V lo32(V a, V b) { return _mm512_maskz_unpacklo_epi32(0xFFFF, a, b); }
inline V hi32(V a, V b) { return _mm512_maskz_unpackhi_epi32(0xFFFF, a, b); }
inline V lo64(V a, V b) { return _mm512_maskz_unpacklo_epi64(0xFF, a, b); }
inline V hi64(V a, V b) { return _mm512_maskz_unpackhi_epi64(0xFF, a, b); }
inline V add16(V a, V b) { return _mm512_add_epi16(a, b); }
inline V sub16(V a, V b) { return _mm512_sub_epi16(a, b); }
template <int N> V shl16(V a) { return _mm512_slli_epi16(a, N); }
template <int N> V shr16(V a) { return _mm512_srli_epi16(a, N); }
template <int N> V sar16(V a) { return _mm512_srai_epi16(a, N); }
inline V mulhi16(V a, V b) { return _mm512_mulhi_epi16(a, b); }
inline V mulhrs16(V a, V b) { return _mm512_mulhrs_epi16(a, b); }
inline V madd16(V a, V b) { return _mm512_madd_epi16(a, b); }
inline V maddubs16(V a, V b) { return _mm512_maddubs_epi16(a, b); }
inline V cmpeq16(V a, V b) { return _mm512_movm_epi16(_mm512_cmpeq_epi16_mask(a, b)); }
inline V add32(V a, V b) { return _mm512_add_epi32(a, b); }
inline V andV(V a, V b) { return _mm512_and_si512(a, b); }
template <int N> V shr32(V a) { return _mm512_maskz_srli_epi32(0xFFFF, a, N); }
template <int N> V sar32(V a) { return _mm512_maskz_srai_epi32(0xFFFF, a, N); }
inline V packus32(V a, V b) { return _mm512_packus_epi32(a, b); }
inline V packs32(V a, V b) { return _mm512_packs_epi32(a, b); }
inline V packus16(V a, V b) { return _mm512_packus_epi16(a, b); }
inline V packs16(V a, V b) { return _mm512_packs_epi16(a, b); }
inline V add8(V a, V b) { return _mm512_add_epi8(a, b); }
inline V permute32(V v, V idx) { return _mm512_maskz_permutexvar_epi32(0xFFFF, idx, v); }
#elif defined(__AVX2__)
using V = __m256i;
constexpr int kLanes = 2;
inline V zero() { return _mm256_setzero_si256(); }
inline V set8(uint8_t v) { return _mm256_set1_epi8(char(v)); }
inline V set16(int v) { return _mm256_set1_epi16(short(v)); }
inline V set32(int v) { return _mm256_set1_epi32(v); }
inline V lanes(const __m128i m) { return _mm256_broadcastsi128_si256(m); }
inline V load(const uint8_t* p) { return _mm256_loadu_si256(reinterpret_cast<const V*>(p)); }
inline void store(uint8_t* p, V v) { _mm256_storeu_si256(reinterpret_cast<V*>(p), v); }
inline V loadLanes(const uint8_t* p, int stride) {
    return _mm256_loadu2_m128i(reinterpret_cast<const __m128i*>(p + stride), reinterpret_cast<const __m128i*>(p));
}
inline void storeLanes(uint8_t* p, int stride, V v) {
    _mm256_storeu2_m128i(reinterpret_cast<__m128i*>(p + stride), reinterpret_cast<__m128i*>(p), v);
}
inline void loadChunks3(const uint8_t* p, V& a, V& b, V& c) {
    a = loadLanes(p, 48);
    b = loadLanes(p + 16, 48);
    c = loadLanes(p + 32, 48);
}
inline V shuffle(V v, V m) { return _mm256_shuffle_epi8(v, m); }
inline V orV(V a, V b) { return _mm256_or_si256(a, b); }
inline V xorV(V a, V b) { return _mm256_xor_si256(a, b); }
inline V blend(V a, V b, uint16_t, const __m128i bytes) {
    return _mm256_blendv_epi8(a, b, _mm256_broadcastsi128_si256(bytes));
}
inline V lo8(V a, V b) { return _mm256_unpacklo_epi8(a, b); }
inline V hi8(V a, V b) { return _mm256_unpackhi_epi8(a, b); }
inline V lo16(V a, V b) { return _mm256_unpacklo_epi16(a, b); }
inline V hi16(V a, V b) { return _mm256_unpackhi_epi16(a, b); }
inline V lo32(V a, V b) { return _mm256_unpacklo_epi32(a, b); }
inline V hi32(V a, V b) { return _mm256_unpackhi_epi32(a, b); }
inline V lo64(V a, V b) { return _mm256_unpacklo_epi64(a, b); }
inline V hi64(V a, V b) { return _mm256_unpackhi_epi64(a, b); }
inline V add16(V a, V b) { return _mm256_add_epi16(a, b); }
inline V sub16(V a, V b) { return _mm256_sub_epi16(a, b); }
template <int N> V shl16(V a) { return _mm256_slli_epi16(a, N); }
template <int N> V shr16(V a) { return _mm256_srli_epi16(a, N); }
template <int N> V sar16(V a) { return _mm256_srai_epi16(a, N); }
inline V mulhi16(V a, V b) { return _mm256_mulhi_epi16(a, b); }
inline V mulhrs16(V a, V b) { return _mm256_mulhrs_epi16(a, b); }
inline V madd16(V a, V b) { return _mm256_madd_epi16(a, b); }
inline V maddubs16(V a, V b) { return _mm256_maddubs_epi16(a, b); }
inline V cmpeq16(V a, V b) { return _mm256_cmpeq_epi16(a, b); }
inline V add32(V a, V b) { return _mm256_add_epi32(a, b); }
inline V andV(V a, V b) { return _mm256_and_si256(a, b); }
template <int N> V shr32(V a) { return _mm256_srli_epi32(a, N); }
template <int N> V sar32(V a) { return _mm256_srai_epi32(a, N); }
inline V packus32(V a, V b) { return _mm256_packus_epi32(a, b); }
inline V packs32(V a, V b) { return _mm256_packs_epi32(a, b); }
inline V packus16(V a, V b) { return _mm256_packus_epi16(a, b); }
inline V packs16(V a, V b) { return _mm256_packs_epi16(a, b); }
inline V add8(V a, V b) { return _mm256_add_epi8(a, b); }
inline V permute32(V v, V idx) { return _mm256_permutevar8x32_epi32(v, idx); }
#else
#error "pixels3_simd.hpp needs AVX2 or AVX-512BW"
#endif

constexpr int kStep = 16 * kLanes;  // pixels per iteration

// ---- Byte shuffles within a 16-pixel group ---------------------------------
struct Mask {
    uint8_t b[16];
};
constexpr uint8_t kNone = 0x80;  // shuffle index that yields zero

// 48 interleaved bytes of 16 three-channel pixels are three 16-byte chunks;
// since 16 = 1 (mod 3), position i of chunk m holds channel (m + i) % 3, and the
// three chunks never use the same position for the same channel.
struct Positions {
    uint16_t bits;
    Mask bytes;
};
constexpr Positions positions(int m, int c) {
    Positions k{};
    for (int i = 0; i < 16; ++i)
        if ((m + i) % 3 == c) {
            k.bits = uint16_t(k.bits | 1u << i);
            k.bytes.b[i] = 0xFF;
        }
    return k;
}
// Pixel p of channel c sits at position (3p + c) % 16 of its chunk.
constexpr Mask gather3(int c) {
    Mask k{};
    for (int p = 0; p < 16; ++p) k.b[p] = uint8_t((3 * p + c) % 16);
    return k;
}
// Pixels 8h..8h+7 of channel c as the upper bytes of 16-bit elements.
constexpr Mask gather3High(int c, int h) {
    Mask k{};
    for (int e = 0; e < 8; ++e) {
        k.b[2 * e] = kNone;
        k.b[2 * e + 1] = uint8_t((3 * (8 * h + e) + c) % 16);
    }
    return k;
}
constexpr Mask scatter3(int c) {
    Mask k{};
    for (int i = 0; i < 16; ++i) k.b[i] = uint8_t(((11 * (i - c)) % 16 + 16) % 16);  // 11 = 1/3 (mod 16)
    return k;
}
// Four 4-byte pixels regrouped by channel: c0 c0 c0 c0 c1 c1 c1 c1 ...
constexpr Mask byChannel4() {
    Mask k{};
    for (int c = 0; c < 4; ++c)
        for (int j = 0; j < 4; ++j) k.b[4 * c + j] = uint8_t(4 * j + c);
    return k;
}
// From R,G,B,x pixels, 16-bit pairs of two channels (c1 = -1: the pair's
// upper half zero) as the multiply-add takes them.
constexpr Mask pairs(int c0, int c1) {
    Mask k{};
    for (int j = 0; j < 4; ++j) {
        k.b[4 * j] = uint8_t(4 * j + c0);
        k.b[4 * j + 1] = kNone;
        k.b[4 * j + 2] = c1 < 0 ? kNone : uint8_t(4 * j + c1);
        k.b[4 * j + 3] = kNone;
    }
    return k;
}
inline V mask(const Mask& m) { return lanes(_mm_loadu_si128(reinterpret_cast<const __m128i*>(m.b))); }

// Two 16-bit values in every 32-bit element, for the multiply-add.
inline V pair16(int lo, int hi) { return set32(int(uint32_t(uint16_t(lo)) | uint32_t(uint16_t(hi)) << 16)); }

// Group order, for moving 4-byte pixels with whole-vector loads and stores:
// 32-bit element j of lane k holds the 4 pixels of group kLanes*j + k. Four
// channel vectors in group order interleave (interleave4) into four vectors
// of consecutive pixels, and four vectors of consecutive 4-byte pixels pack
// into channel vectors in group order.
struct Index {
    int32_t v[4 * kLanes];
};
constexpr Index groupOrder(bool inverse) {
    Index r{};
    for (int k = 0; k < kLanes; ++k)
        for (int j = 0; j < 4; ++j) {
            const int pos = 4 * k + j, group = kLanes * j + k;
            if (inverse) r.v[group] = pos;
            else r.v[pos] = group;
        }
    return r;
}
inline V toGroups(V v) {
    static constexpr Index idx = groupOrder(false);
    return permute32(v, load(reinterpret_cast<const uint8_t*>(idx.v)));
}
inline V fromGroups(V v) {
    static constexpr Index idx = groupOrder(true);
    return permute32(v, load(reinterpret_cast<const uint8_t*>(idx.v)));
}

// ---- Moving 16-pixel groups in and out of lane-split channel vectors ------
struct Tri {
    V c[3];
};

inline V blendAt(V a, V b, const Positions& k) {
    return blend(a, b, k.bits, _mm_loadu_si128(reinterpret_cast<const __m128i*>(k.bytes.b)));
}

// Per channel, the 16 bytes of a 16-pixel group blended into one vector (in
// the order of their positions in the chunks).
inline Tri blend3(const uint8_t* p) {
    static constexpr Positions r1 = positions(1, 0), r2 = positions(2, 0), g1 = positions(1, 1),
                               g2 = positions(2, 1), b1 = positions(1, 2), b2 = positions(2, 2);
    V a, b, c;
    loadChunks3(p, a, b, c);
    return {{blendAt(blendAt(a, b, r1), c, r2), blendAt(blendAt(a, b, g1), c, g2),
             blendAt(blendAt(a, b, b1), c, b2)}};
}

// Blend the three chunks so each channel's 16 bytes share one vector, then
// put them in pixel order (and the reverse).
inline Tri deinterleave3(const uint8_t* p) {
    static constexpr Mask g0 = gather3(0), g1 = gather3(1), g2 = gather3(2);
    const Tri t = blend3(p);
    return {{shuffle(t.c[0], mask(g0)), shuffle(t.c[1], mask(g1)), shuffle(t.c[2], mask(g2))}};
}

inline void interleave3(uint8_t* p, const Tri& t) {
    static constexpr Mask s0 = scatter3(0), s1 = scatter3(1), s2 = scatter3(2);
    static constexpr Positions c01 = positions(0, 1), c02 = positions(0, 2), c11 = positions(1, 1),
                               c12 = positions(1, 2), c21 = positions(2, 1), c22 = positions(2, 2);
    const V x0 = shuffle(t.c[0], mask(s0)), x1 = shuffle(t.c[1], mask(s1)), x2 = shuffle(t.c[2], mask(s2));
    storeLanes(p, 48, blendAt(blendAt(x0, x1, c01), x2, c02));
    storeLanes(p + 16, 48, blendAt(blendAt(x0, x1, c11), x2, c12));
    storeLanes(p + 32, 48, blendAt(blendAt(x0, x1, c21), x2, c22));
}

// The first three channels of kStep consecutive 4-byte pixels, in group order.
inline Tri deinterleave4(const uint8_t* p) {
    static constexpr Mask group = byChannel4();
    V q[4];
    for (int j = 0; j < 4; ++j) q[j] = shuffle(load(p + 16 * kLanes * j), mask(group));
    const V a = lo32(q[0], q[1]), b = lo32(q[2], q[3]), c = hi32(q[0], q[1]), d = hi32(q[2], q[3]);
    return {{lo64(a, b), hi64(a, b), lo64(c, d)}};
}

// Four channels to 4-byte pixels: out[j] lane k holds pixels 16k+4j..16k+4j+3.
inline void interleave4(const Tri& t, V fourth, V out[4]) {
    const V ab0 = lo8(t.c[0], t.c[1]), ab1 = hi8(t.c[0], t.c[1]);
    const V cd0 = lo8(t.c[2], fourth), cd1 = hi8(t.c[2], fourth);
    out[0] = lo16(ab0, cd0);
    out[1] = hi16(ab0, cd0);
    out[2] = lo16(ab1, cd1);
    out[3] = hi16(ab1, cd1);
}

// Three channel vectors of kStep pixels from x of an image with K bytes per
// pixel (1: the three planes src[0..2], else interleaved at src[0]): 4-byte
// pixels in group order, planes in group order when `grouped` (for 4-byte
// destinations), else lane-split.
template <int K, bool grouped = false>
inline Tri loadPixels(const uint8_t* const* src, std::ptrdiff_t x) {
    if constexpr (K == 1) {
        Tri t{{load(src[0] + x), load(src[1] + x), load(src[2] + x)}};
        if constexpr (grouped)
            for (V& c : t.c) c = toGroups(c);
        return t;
    } else if constexpr (K == 3) {
        return deinterleave3(src[0] + 3 * x);
    } else {
        return deinterleave4(src[0] + 4 * x);
    }
}

// Interleaved destination lines 1 KiB ahead of the stores of kStep pixels of
// K bytes from x, requested first so that they are on their way before the
// stores need them (the lane-wise stores run slower on lines not yet in the
// cache); a read prefetch: it never faults and changes nothing. Planes (K =
// 1) stream on their own.
template <int K>
inline void prefetchDestination(const uint8_t* dst0, std::ptrdiff_t x) {
    if constexpr (K != 1) {
        const char* at = reinterpret_cast<const char*>(dst0 + K * x) + 1024;
        for (int k = 0; k < kStep * K; k += 64) _mm_prefetch(at + k, _MM_HINT_T0);
    }
}

// Stores kStep pixels from x; 4-byte destinations take channels in group
// order and get the fourth byte `alpha`, or with Keep keep their own: AVX-512
// stores the other bytes under a byte mask; AVX2, which has no byte-masked
// store, merges the destination's own fourth bytes into the vector it stores
// (the values never change, and the call owns its destination rows).
template <int K, bool Keep>
inline void storePixels(uint8_t* const* dst, std::ptrdiff_t x, const Tri& t, uint8_t alpha) {
    if constexpr (K == 1) {
        for (int c = 0; c < 3; ++c) store(dst[c] + x, t.c[c]);
    } else if constexpr (K == 3) {
        interleave3(dst[0] + 3 * x, t);
    } else {
        V px[4];
        interleave4(t, set8(alpha), px);
        if constexpr (!Keep) {
            for (int j = 0; j < 4; ++j) store(dst[0] + 4 * x + 16 * kLanes * j, px[j]);
        } else {
#if defined(__AVX512BW__)
            for (int j = 0; j < 4; ++j)
                _mm512_mask_storeu_epi8(dst[0] + 4 * x + 16 * kLanes * j, 0x7777777777777777ull, px[j]);
#else
            const V colour = _mm256_set1_epi32(0x00FFFFFF);
            for (int j = 0; j < 4; ++j) {
                uint8_t* at = dst[0] + 4 * x + 16 * kLanes * j;
                store(at, _mm256_blendv_epi8(load(at), px[j], colour));
            }
#endif
        }
    }
}

}  // namespace
}  // namespace tpx::vec3
