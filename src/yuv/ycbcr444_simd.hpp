// SIMD row functions of the RGB <-> YCbCr 4:4:4 conversions, one body for
// AVX2 and AVX-512: ycbcr444_avx2.cpp and ycbcr444_avx512.cpp each include
// this file once with TPX_YUV444_ISA naming their namespace; the vector
// primitives below are chosen by the instruction set the file is compiled for
// and have internal linkage, so the two copies never mix.
//
// Layout of a vector of bytes: 128-bit lane k holds pixels 16k..16k+15 of one
// channel ("lane-split"). 3-byte pixels are then moved in and out with
// in-lane blends and byte shuffles on 16-pixel groups, and widening to 16
// bits (unpack low/high) and narrowing (pack) keep that order without
// cross-lane moves. 4-byte pixels use "group order" (below) so that they move
// with whole-vector loads and stores. The arithmetic is per pixel, so any
// order that is undone on the way out gives the same bytes; every function
// here reproduces the scalar arithmetic of ycbcr_math.hpp bit for bit.
// Loads of 4-byte source pixels take the fourth bytes along but never use
// them.
#ifndef TPX_YUV444_ISA
#error "define TPX_YUV444_ISA (avx2 or avx512) before including this file"
#endif

#include "yuv/ycbcr444.hpp"

#include <immintrin.h>

namespace tpx::yuv444 {
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
#error "ycbcr444_simd.hpp needs AVX2 or AVX-512BW"
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

// Three channel vectors of kStep pixels from x: AC4 sources in group order,
// P3 sources in group order when `grouped` (for 4-byte destinations), else in
// lane-split order.
template <Pack S, bool grouped = false>
inline Tri loadTri(const Row& r, std::ptrdiff_t x) {
    if constexpr (S == Pack::P3) {
        Tri t{{load(r.src[0] + x), load(r.src[1] + x), load(r.src[2] + x)}};
        if constexpr (grouped)
            for (V& c : t.c) c = toGroups(c);
        return t;
    } else if constexpr (S == Pack::C3) {
        return deinterleave3(r.src[0] + 3 * x);
    } else {
        return deinterleave4(r.src[0] + 4 * x);
    }
}

// Stores kStep pixels from x; 4-byte destinations take channels in group
// order. The fourth bytes of AC4 destinations keep their values: AVX-512
// stores the other bytes under a byte mask; AVX2, which has no byte-masked
// store, merges the destination's own fourth bytes into the vector it stores
// (the values never change, and the call owns its destination rows).
template <Pack D>
inline void storeTri(const Row& r, std::ptrdiff_t x, const Tri& t) {
    if constexpr (D == Pack::P3) {
        for (int c = 0; c < 3; ++c) store(r.dst[c] + x, t.c[c]);
    } else if constexpr (D == Pack::C3) {
        interleave3(r.dst[0] + 3 * x, t);
    } else {
        V px[4];
        interleave4(t, set8(r.alpha), px);
        if constexpr (D == Pack::C4) {
            for (int j = 0; j < 4; ++j) store(r.dst[0] + 4 * x + 16 * kLanes * j, px[j]);
        } else {
#if defined(__AVX512BW__)
            for (int j = 0; j < 4; ++j)
                _mm512_mask_storeu_epi8(r.dst[0] + 4 * x + 16 * kLanes * j, 0x7777777777777777ull, px[j]);
#else
            const V colour = _mm256_set1_epi32(0x00FFFFFF);
            for (int j = 0; j < 4; ++j) {
                uint8_t* at = r.dst[0] + 4 * x + 16 * kLanes * j;
                store(at, _mm256_blendv_epi8(load(at), px[j], colour));
            }
#endif
        }
    }
}

// Three channels of kStep pixels as 16-bit elements holding each byte in the
// upper half (v << 8): lo[c] has pixels 0-7 of every 16-pixel lane, hi[c]
// pixels 8-15. `flip` toggles bit 7 of the chosen channels' bytes first.
struct Wide {
    V lo[3], hi[3];
};
template <Pack S, bool grouped = false>
inline Wide loadWide(const Row& r, std::ptrdiff_t x, const bool (&flip)[3]) {
    Wide w;
    const V sign = set8(0x80);
    if constexpr (S == Pack::C3) {
        static constexpr Mask lo[3] = {gather3High(0, 0), gather3High(1, 0), gather3High(2, 0)};
        static constexpr Mask hi[3] = {gather3High(0, 1), gather3High(1, 1), gather3High(2, 1)};
        const Tri t = blend3(r.src[0] + 3 * x);
        for (int c = 0; c < 3; ++c) {
            const V v = flip[c] ? xorV(t.c[c], sign) : t.c[c];
            w.lo[c] = shuffle(v, mask(lo[c]));
            w.hi[c] = shuffle(v, mask(hi[c]));
        }
    } else {
        const V z = zero();
        const Tri t = loadTri<S, grouped>(r, x);
        for (int c = 0; c < 3; ++c) {
            const V v = flip[c] ? xorV(t.c[c], sign) : t.c[c];
            w.lo[c] = lo8(z, v);
            w.hi[c] = hi8(z, v);
        }
    }
    return w;
}

// ---- Encoder ----------------------------------------------------------------
// 16-bit block arithmetic: t(v, c) = (v*128*c + 16384) >> 15 is the rounding
// high multiply of v << 7 by c. The sums never leave 16 bits and the results
// never leave 16..235 / 16..240, so (sum + 1056) >> 6 is computed as
// ((sum + 32) >> 6) + 16 (a rounding multiply by 512, then a byte add after
// packing), and the chroma (sum + 8224) >> 6 as ((sum + 32) >> 6) + 128 (a
// signed pack, then bit 7 toggled).
inline void encodeBlock16(V r8, V g8, V b8, V& y, V& cb, V& cr) {
    const V r7 = shr16<1>(r8), g7 = shr16<1>(g8), b7 = shr16<1>(b8), k = set16(512);
    y = mulhrs16(add16(add16(mulhrs16(r7, set16(4211)), mulhrs16(g7, set16(8258))), mulhrs16(b7, set16(1606))), k);
    cb = mulhrs16(sub16(mulhrs16(b7, set16(7193)), add16(mulhrs16(r7, set16(2425)), mulhrs16(g7, set16(4768)))), k);
    cr = mulhrs16(sub16(mulhrs16(r7, set16(7193)), add16(mulhrs16(g7, set16(6029)), mulhrs16(b7, set16(1163)))), k);
}

template <Pack S, Pack D>
int encodeBlockRow(const Row& row) {
    const Row r = row;  // a local copy: the stores below cannot change it
    static constexpr bool kNoFlip[3] = {false, false, false};
    const V black = set8(16), sign = set8(0x80);
    std::ptrdiff_t x = 0;
    for (; x <= r.width - kStep; x += kStep) {
        const Wide in = loadWide<S>(r, x, kNoFlip);
        V lo[3], hi[3];
        encodeBlock16(in.lo[0], in.lo[1], in.lo[2], lo[0], lo[1], lo[2]);
        encodeBlock16(in.hi[0], in.hi[1], in.hi[2], hi[0], hi[1], hi[2]);
        storeTri<D>(r, x, {{add8(packus16(lo[0], hi[0]), black), xorV(packs16(lo[1], hi[1]), sign),
                            xorV(packs16(lo[2], hi[2]), sign)}});
    }
    return int(x);
}

// 32-bit reference on R,G,B,x pixels in 32-bit elements, with multiply-adds of
// 16-bit pairs: Y = (R,G).(16843,16515) + (G,B).(16515,6423) + 1081344, and the
// chroma offset 8421376 as 512 * 16448 in the (B,512) pair; >> 16.
inline void encodeRef32(V px, V& y, V& cb, V& cr) {
    static constexpr Mask mRG = pairs(0, 1), mGB = pairs(1, 2), mB = pairs(2, -1);
    const V rg = shuffle(px, mask(mRG)), gb = shuffle(px, mask(mGB));
    const V bk = orV(shuffle(px, mask(mB)), set32(512 << 16));
    y = shr32<16>(add32(add32(madd16(rg, pair16(16843, 16515)), madd16(gb, pair16(16515, 6423))), set32(1081344)));
    cb = shr32<16>(add32(madd16(rg, pair16(-9699, -19071)), madd16(bk, pair16(28770, 16448))));
    cr = shr32<16>(add32(madd16(rg, pair16(28770, -24117)), madd16(bk, pair16(-4653, 16448))));
}

template <Pack S, Pack D>
int encodeRefRows(const Row& row) {
    const Row r = row;  // a local copy: the stores below cannot change it
    std::ptrdiff_t x = 0;
    for (; x <= r.width - kStep; x += kStep) {
        V px[4];
        if constexpr (S == Pack::AC4) {
            for (int j = 0; j < 4; ++j) px[j] = load(r.src[0] + 4 * x + 16 * kLanes * j);
        } else {
            interleave4(loadTri<S>(r, x), zero(), px);
        }
        V y[4], cb[4], cr[4];
        for (int j = 0; j < 4; ++j) encodeRef32(px[j], y[j], cb[j], cr[j]);
        // Consecutive 4-byte pixels pack into group order, interleaved ones
        // (interleave4 output) back into lane-split order.
        auto pack = [](const V* q) {
            const V v = packus16(packus32(q[0], q[1]), packus32(q[2], q[3]));
            return S == Pack::AC4 && D == Pack::P3 ? fromGroups(v) : v;
        };
        storeTri<D>(r, x, {{pack(y), pack(cb), pack(cr)}});
    }
    return int(x);
}

// ---- Decoder block arithmetic -----------------------------------------------
// y = (Y-16)*128 as (Y << 8) >> 1 minus 2048; chroma (C-128)*128 as the signed
// byte C ^ 0x80 in the upper half, shifted right once. m(x, c) is the signed
// high multiply; (sum + 8) >> 4 is the rounding multiply by 2048; pack clamps
// to 0..255. When both coefficients of a chroma channel are even, m(x*128, c)
// is taken as m(x*256, c/2), the same product without the prescaling shift.
// Interleaved destination lines 1 KiB ahead of the stores are requested
// first, so that they are on their way before the stores need them (a read
// prefetch: it never faults and changes nothing).
template <Pack D>
inline void prefetchDestination(const Row& r, std::ptrdiff_t x) {
    if constexpr (D != Pack::P3) {
        const char* at = reinterpret_cast<const char*>(r.dst[0] + std::ptrdiff_t(x) * kPixelBytes<D>) + 1024;
        for (int k = 0; k < kStep * kPixelBytes<D>; k += 64) _mm_prefetch(at + k, _MM_HINT_T0);
    }
}

// The decoder loop: `half(w, out, h)` turns the 16-bit channels w of one half
// of kStep pixels into the three 16-bit results out[c][h], which are packed
// to bytes with saturation and stored (interleaved 3-byte sources arrive in
// lane-split order, 4-byte destinations take group order).
template <Pack S, Pack D, bool Bgr, class Half>
int decodeWith(const Row& row, Half half) {
    const Row r = row;  // a local copy: the stores below cannot change it
    static constexpr bool kFlip[3] = {false, true, true};
    std::ptrdiff_t x = 0;
    for (; x <= r.width - kStep; x += kStep) {
        const Wide in = loadWide<S, D == Pack::C4 || D == Pack::AC4>(r, x, kFlip);
        V out[3][2];
        for (int h = 0; h < 2; ++h) half(h ? in.hi : in.lo, out, h);
        auto pack = [&](int c) {
            const V q = packus16(out[c][0], out[c][1]);
            return S == Pack::C3 && D == Pack::C4 ? toGroups(q) : q;
        };
        prefetchDestination<D>(r, x);
        storeTri<D>(r, x, Bgr ? Tri{{pack(2), pack(1), pack(0)}} : Tri{{pack(0), pack(1), pack(2)}});
    }
    return int(x);
}

template <Pack S, Pack D, bool Bgr, bool Bt709>
int decodeRows(const Row& row) {
    static constexpr yuv::BlockCoeffs k = Bt709 ? yuv::kBlock709Csc : yuv::kBlock601;
    static constexpr bool cbHalf = k.cbToG % 2 == 0 && k.cbToB % 2 == 0;
    static constexpr bool crHalf = k.crToR % 2 == 0 && k.crToG % 2 == 0;
    const V black = set16(k.lumaOffset * 128), round4 = set16(2048), luma = set16(k.luma);
    const V crR = set16(crHalf ? k.crToR / 2 : k.crToR), crG = set16(crHalf ? k.crToG / 2 : k.crToG);
    const V cbG = set16(cbHalf ? k.cbToG / 2 : k.cbToG), cbB = set16(cbHalf ? k.cbToB / 2 : k.cbToB);
    return decodeWith<S, D, Bgr>(row, [&](const V* w, V (&out)[3][2], int h) {
        const V cb = cbHalf ? w[1] : sar16<1>(w[1]);
        const V cr = crHalf ? w[2] : sar16<1>(w[2]);
        const V yl = mulhi16(sub16(shr16<1>(w[0]), black), luma);
        out[0][h] = mulhrs16(add16(yl, mulhi16(cr, crR)), round4);
        out[1][h] = mulhrs16(sub16(yl, add16(mulhi16(cb, cbG), mulhi16(cr, crG))), round4);
        out[2][h] = mulhrs16(add16(yl, mulhi16(cb, cbB)), round4);
    });
}

// ---- Analog YUV 4:4:4 ---------------------------------------------------------
// Encoder, exact in 16-bit elements. With S = 19595 R + 38470 G + 7471 B
// split by bytes of the weights into S = 256 H + L, H = 76 R + 150 G + 29 B
// and L = 139 R + 70 G + 47 B (both within 0..65280), each sum is two
// unsigned-by-signed byte multiply-adds that never saturate: H = (R,G).(76,51)
// + (B,G).(29,99), L = (R,G).(58,70) + (R,B).(81,47). Then T = H + (L >> 8)
// + 128 gives S + 32768 = 256 T + (L & 255), so Y = T >> 8, and the
// remainder of (S + 32768) / 65536 is zero exactly when the low bytes of T
// and L are. The chroma sums reduce to tU = ((B << 16) + 32768 - S) >> 16 =
// B - Y + [that remainder is zero], tV the same with R; after them U = (tU *
// 32244 >> 16) + 128 is a signed high multiply and V = (tV * 57475 >> 16) +
// 128 the high multiply by 57475 - 65536 plus tV; the pack to bytes
// saturates V.
template <Pack S, Pack D>
int encodeAnalogRows(const Row& row) {
    const Row r = row;  // a local copy: the stores below cannot change it
    const V h1 = set16(76 | 51 << 8), h2 = set16(29 | 99 << 8), l1 = set16(58 | 70 << 8), l2 = set16(81 | 47 << 8);
    const V low = set16(0xFF), half = set16(128), ku = set16(32244), kv = set16(57475 - 65536), z = zero();
    std::ptrdiff_t x = 0;
    for (; x <= r.width - kStep; x += kStep) {
        const Tri t = loadTri<S>(r, x);  // AC4 sources in group order
        V out[3][2];
        for (int h = 0; h < 2; ++h) {
            // Byte pairs (R,G), (B,G), (R,B) of pixels 0-7 (h = 0) or 8-15 of each lane.
            const V rg = h ? hi8(t.c[0], t.c[1]) : lo8(t.c[0], t.c[1]), bg = h ? hi8(t.c[2], t.c[1]) : lo8(t.c[2], t.c[1]),
                    rb = h ? hi8(t.c[0], t.c[2]) : lo8(t.c[0], t.c[2]);
            const V hs = add16(maddubs16(rg, h1), maddubs16(bg, h2)), l = add16(maddubs16(rg, l1), maddubs16(rb, l2));
            const V sum = add16(add16(hs, shr16<8>(l)), half), y = shr16<8>(sum);
            const V yf = add16(y, cmpeq16(andV(orV(sum, l), low), z));  // Y less one where the remainder is zero
            const V tu = sub16(shr16<8>(rb), yf), tv = sub16(andV(rb, low), yf);
            out[0][h] = y;
            out[1][h] = add16(mulhi16(tu, ku), half);
            out[2][h] = add16(add16(mulhi16(tv, kv), tv), half);
        }
        auto order = [](V q) { return S == Pack::AC4 && D == Pack::P3 ? fromGroups(q) : q; };
        storeTri<D>(r, x, {{order(packus16(out[0][0], out[0][1])), order(packus16(out[1][0], out[1][1])),
                            order(packus16(out[2][0], out[2][1]))}});
    }
    return int(x);
}

// Decoder in 16-bit elements, u = U - 128 and v = V - 128 arriving as u << 8
// and v << 8 (the flipped bytes in the upper half). With 74711 = 65536 + 9175,
// R = Y + v + ((hi(v << 8, 9175) + 128) >> 8), since the high multiply is
// floor(9175 v / 256) and floor((floor(x / 256) + 128) / 256) = floor((x +
// 32768) / 65536); B = Y + 2u + ((hi(u << 8, 2097) + 128) >> 8) with 133169 =
// 2 * 65536 + 2097; (p + 128) >> 8 is the rounding multiply of p by 128.
// G = Y - v + ((u,v).(-25821,27460) >> 16) by a 32-bit multiply-add, -38076
// being -65536 + 27460. The pack to bytes saturates.
template <Pack S, Pack D>
int decodeAnalogRows(const Row& row) {
    const V half = set16(128), kr = set16(9175), kb = set16(2097), kg = pair16(-25821, 27460);
    return decodeWith<S, D, false>(row, [&](const V* w, V (&out)[3][2], int h) {
        const V y = shr16<8>(w[0]), u = sar16<8>(w[1]), v = sar16<8>(w[2]);
        const V g = packs32(sar32<16>(madd16(lo16(u, v), kg)), sar32<16>(madd16(hi16(u, v), kg)));
        out[0][h] = add16(add16(y, v), mulhrs16(mulhi16(w[2], kr), half));
        out[1][h] = add16(sub16(y, v), g);
        out[2][h] = add16(add16(y, add16(u, u)), mulhrs16(mulhi16(w[1], kb), half));
    });
}

}  // namespace

namespace TPX_YUV444_ISA {
int encodeC3Block(const Row& r) { return encodeBlockRow<Pack::C3, Pack::C3>(r); }
int encodeC3P3(const Row& r) { return encodeRefRows<Pack::C3, Pack::P3>(r); }
int encodeAC4P3(const Row& r) { return encodeRefRows<Pack::AC4, Pack::P3>(r); }
int encodeP3(const Row& r) { return encodeRefRows<Pack::P3, Pack::P3>(r); }
int decodeC3(const Row& r) { return decodeRows<Pack::C3, Pack::C3, false, false>(r); }
int decodeP3(const Row& r) { return decodeRows<Pack::P3, Pack::P3, false, false>(r); }
int decodeP3C3Rgb(const Row& r) { return decodeRows<Pack::P3, Pack::C3, false, false>(r); }
int decodeP3C3Bgr(const Row& r) { return decodeRows<Pack::P3, Pack::C3, true, false>(r); }
int decode709P3C3Bgr(const Row& r) { return decodeRows<Pack::P3, Pack::C3, true, true>(r); }
int encodeAC4(const Row& r) { return encodeRefRows<Pack::AC4, Pack::AC4>(r); }
int decodeAC4(const Row& r) { return decodeRows<Pack::AC4, Pack::AC4, false, false>(r); }
int analogEncodeC3(const Row& r) { return encodeAnalogRows<Pack::C3, Pack::C3>(r); }
int analogEncodeAC4(const Row& r) { return encodeAnalogRows<Pack::AC4, Pack::AC4>(r); }
int analogEncodeC3P3(const Row& r) { return encodeAnalogRows<Pack::C3, Pack::P3>(r); }
int analogEncodeP3(const Row& r) { return encodeAnalogRows<Pack::P3, Pack::P3>(r); }
int analogDecodeC3(const Row& r) { return decodeAnalogRows<Pack::C3, Pack::C3>(r); }
int analogDecodeAC4(const Row& r) { return decodeAnalogRows<Pack::AC4, Pack::AC4>(r); }
int analogDecodeC3C4(const Row& r) { return decodeAnalogRows<Pack::C3, Pack::C4>(r); }
int analogDecodeP3C3(const Row& r) { return decodeAnalogRows<Pack::P3, Pack::C3>(r); }
int analogDecodeP3(const Row& r) { return decodeAnalogRows<Pack::P3, Pack::P3>(r); }
#if !defined(__AVX512BW__)
int decodeP3C4Rgb(const Row& r) { return decodeRows<Pack::P3, Pack::C4, false, false>(r); }
int decodeP3C4Bgr(const Row& r) { return decodeRows<Pack::P3, Pack::C4, true, false>(r); }
int decode709P3C4Bgr(const Row& r) { return decodeRows<Pack::P3, Pack::C4, true, true>(r); }
#endif
}  // namespace TPX_YUV444_ISA

}  // namespace tpx::yuv444
