// AVX-512 rows with the byte permutes (VBMI) for the 3-byte-pixel to 3-byte-pixel
// members RGBToYCbCr C3R and YCbCrToRGB C3R; chosen only on processors that
// have them (the AVX-512 F/BW/VL/DQ rows of ycbcr444_simd.hpp serve the rest).
//
// 64 pixels per step, from three whole loads z0 z1 z2 (192 bytes). Two-table
// byte permutes gather each pixel's channels into 16-bit pairs (two channels of
// one pixel, or one channel of two pixels), and a multiply-add of unsigned
// bytes by signed byte pairs turns a pair into one channel as 16-bit values,
// already scaled: 64 v (encoder), 64 (Y - 16) or 128 (C - 128) (decoder).
// Halves: pixels 0-31 ("lo") and 32-63 ("hi"). On the way out, byte vectors packed from the 16-bit results go back
// to three interleaved vectors by two-table permutes. Bit for bit the scalar
// block arithmetic of ycbcr_math.hpp.
#include "yuv/ycbcr444.hpp"

#include <immintrin.h>

namespace tpx::yuv444 {
namespace {

using V = __m512i;
struct Bytes {
    uint8_t b[64];
};
inline V vec(const Bytes& k) { return _mm512_loadu_si512(k.b); }
inline V set16(int v) { return _mm512_set1_epi16(short(v)); }

// Byte offset in the 192-byte step of channel c of pixel 32h + i.
constexpr int at(int c, int h, int i) { return 3 * (32 * h + i) + c; }

// Indices for a two-table permute whose 16-bit element i is the pair (low
// byte, high byte) = (at(c0, h0, i), at(c1, h1, i)), tables starting at byte
// `base` of the step. c1 < 0: the high byte is `fill`, for permutes that keep
// the index byte where their mask is clear. Offsets are taken modulo 128; the
// bytes in z2 (offsets 128-191) of a base-0 pair are then fetched by a second,
// one-table permute with the indices of base 128 under the mask inZ2.
constexpr Bytes pairIndex(int c0, int h0, int c1, int h1, int base, int fill = 0) {
    Bytes k{};
    for (int i = 0; i < 32; ++i) {
        k.b[2 * i] = uint8_t((at(c0, h0, i) - base) & 127);
        k.b[2 * i + 1] = c1 < 0 ? uint8_t(fill) : uint8_t((at(c1, h1, i) - base) & 127);
    }
    return k;
}
// The bytes of a pairIndex(.., base 0) that lie in z2.
constexpr uint64_t inZ2(int c0, int h0, int c1, int h1) {
    uint64_t m = 0;
    for (int i = 0; i < 32; ++i) {
        if (at(c0, h0, i) >= 128) m |= 1ull << (2 * i);
        if (at(c1, h1, i) >= 128) m |= 1ull << (2 * i + 1);
    }
    return m;
}

// Interleave. Inputs: `a` = packus(lo, hi) of the channel stored at byte 1 of a
// pixel when A == 1 or byte 0 when A == 0; `b` = pack(lo of P, lo of Q) and
// `c` = pack(hi of P, hi of Q) for the other two channels P (the lower byte
// offset) and Q. A pack puts 16-bit elements 8k..8k+7 of its first operand at
// bytes 16k..16k+7 and of its second at 16k+8..16k+15.
constexpr int posA(int p) { return 16 * ((p % 32) / 8) + 8 * (p / 32) + p % 8; }
constexpr int posBC(int p, bool q) { return 16 * ((p % 32) / 8) + 8 * q + p % 8; }
// Output vector o: byte j from a (index posA) or from b / c as the second table
// (64 + posBC); with `single`, the b / c bytes as a one-table index. Q is the
// channel at byte 2 (A is 0 or 1).
constexpr Bytes outIndex(int A, int o, bool single) {
    Bytes k{};
    for (int j = 0; j < 64; ++j) {
        const int s = 64 * o + j, p = s / 3, c = s % 3;
        k.b[j] = uint8_t(c == A ? posA(p) : (single ? 0 : 64) + posBC(p, c == 2));
    }
    return k;
}
// Bytes of output vector 1 that come from c (pixels 32 and up, not channel A).
constexpr uint64_t fromHi(int A) {
    uint64_t m = 0;
    for (int j = 0; j < 64; ++j)
        if ((64 + j) % 3 != A && (64 + j) / 3 >= 32) m |= 1ull << j;
    return m;
}
template <int A>
inline void interleave3(uint8_t* p, V a, V b, V c) {
    static constexpr Bytes i0 = outIndex(A, 0, false), i1 = outIndex(A, 1, false), i1c = outIndex(A, 1, true),
                           i2 = outIndex(A, 2, false);
    _mm512_storeu_si512(p, _mm512_permutex2var_epi8(a, vec(i0), b));
    _mm512_storeu_si512(p + 64, _mm512_mask_permutexvar_epi8(_mm512_permutex2var_epi8(a, vec(i1), b), fromHi(A),
                                                             vec(i1c), c));
    _mm512_storeu_si512(p + 128, _mm512_permutex2var_epi8(a, vec(i2), c));
}

// ---- Encoder ------------------------------------------------------------------
// With v6 = 64 v, the term (v*128*c + 16384) >> 15 is the rounding high
// multiply of v6 by 2c (every 2c < 32768); (sum + 32) >> 6 is the rounding
// multiply by 512; packs, then +16 (Y) and +128 (chroma, as bit 7 toggled).
inline V term(V v6, int c) { return _mm512_mulhrs_epi16(v6, set16(2 * c)); }
inline void encode16(V r, V g, V b, V& y, V& cb, V& cr) {
    const V k = set16(512);
    y = _mm512_mulhrs_epi16(_mm512_add_epi16(_mm512_add_epi16(term(r, 4211), term(g, 8258)), term(b, 1606)), k);
    cb = _mm512_mulhrs_epi16(_mm512_sub_epi16(term(b, 7193), _mm512_add_epi16(term(r, 2425), term(g, 4768))), k);
    cr = _mm512_mulhrs_epi16(_mm512_sub_epi16(term(r, 7193), _mm512_add_epi16(term(g, 6029), term(b, 1163))), k);
}

// ---- Decoder ------------------------------------------------------------------
// Bytes toggled in bit 7 are the signed v - 128. Y: the pair (Y - 128, 112)
// times (64, 64) is 64 (Y - 16), and m(64 (Y-16), 2 * 9535) is the block
// arithmetic's m((Y-16)*128, 9535); chroma: (C - 128) times 128. Then as in
// the block arithmetic: (sum + 8) >> 4 as the rounding multiply by 2048, and
// packus clamps.
constexpr int kLumaFill = 112;

// One half: 16-bit luma 64 (Y - 16) and chroma 128 (C - 128) to R, G, B
// (before the clamp).
struct Rgb16 {
    V r, g, b;
};
inline Rgb16 decode16(V y64, V cb, V cr) {
    static constexpr yuv::BlockCoeffs k = yuv::kBlock601;
    static_assert(2 * k.luma < 32768 && k.lumaOffset == 16, "luma as 64 (Y - 16) times 2 * luma");
    const V yl = _mm512_mulhi_epi16(y64, set16(2 * k.luma)), round4 = set16(2048);
    const V r = _mm512_add_epi16(yl, _mm512_mulhi_epi16(cr, set16(k.crToR)));
    const V g = _mm512_sub_epi16(
        yl, _mm512_add_epi16(_mm512_mulhi_epi16(cb, set16(k.cbToG)), _mm512_mulhi_epi16(cr, set16(k.crToG))));
    const V b = _mm512_add_epi16(yl, _mm512_mulhi_epi16(cb, set16(k.cbToB)));
    return {_mm512_mulhrs_epi16(r, round4), _mm512_mulhrs_epi16(g, round4), _mm512_mulhrs_epi16(b, round4)};
}

}  // namespace

namespace avx512vbmi {

int encodeC3Block(const Row& row) {
    const Row r = row;  // a local copy: the stores below cannot change it
    static constexpr Bytes rg0 = pairIndex(0, 0, 1, 0, 0), rg1 = pairIndex(0, 1, 1, 1, 64),
                           bb = pairIndex(2, 0, 2, 1, 0), bbZ2 = pairIndex(2, 0, 2, 1, 128);
    static constexpr uint64_t kBbZ2 = inZ2(2, 0, 2, 1);
    const V low64 = set16(64), high64 = set16(64 << 8), black = _mm512_set1_epi8(16),
            sign = _mm512_set1_epi8(char(0x80));
    const int blocks = r.width - r.width % 16;  // only whole 16-pixel blocks take the block arithmetic
    std::ptrdiff_t x = 0;
    for (; x + 64 <= blocks; x += 64) {
        const uint8_t* s = r.src[0] + 3 * x;
        const V z0 = _mm512_loadu_si512(s), z1 = _mm512_loadu_si512(s + 64), z2 = _mm512_loadu_si512(s + 128);
        const V pRG0 = _mm512_permutex2var_epi8(z0, vec(rg0), z1), pRG1 = _mm512_permutex2var_epi8(z1, vec(rg1), z2);
        const V pB = _mm512_mask_permutexvar_epi8(_mm512_permutex2var_epi8(z0, vec(bb), z1), kBbZ2, vec(bbZ2), z2);
        V lo[3], hi[3];
        encode16(_mm512_maddubs_epi16(pRG0, low64), _mm512_maddubs_epi16(pRG0, high64),
                 _mm512_maddubs_epi16(pB, low64), lo[0], lo[1], lo[2]);
        encode16(_mm512_maddubs_epi16(pRG1, low64), _mm512_maddubs_epi16(pRG1, high64),
                 _mm512_maddubs_epi16(pB, high64), hi[0], hi[1], hi[2]);
        interleave3<0>(r.dst[0] + 3 * x, _mm512_add_epi8(_mm512_packus_epi16(lo[0], hi[0]), black),
                       _mm512_xor_si512(_mm512_packs_epi16(lo[1], lo[2]), sign),
                       _mm512_xor_si512(_mm512_packs_epi16(hi[1], hi[2]), sign));
    }
    return int(x);
}

int decodeC3(const Row& row) {
    const Row r = row;  // a local copy: the stores below cannot change it
    static constexpr Bytes yIdx[2] = {pairIndex(0, 0, -1, 0, 0, kLumaFill), pairIndex(0, 1, -1, 1, 64, kLumaFill)};
    static constexpr Bytes cIdx[2] = {pairIndex(1, 0, 2, 0, 0), pairIndex(1, 1, 2, 1, 64)};
    constexpr uint64_t kLowBytes = 0x5555555555555555ull;
    static_assert(yuv::kBlock601.lumaOffset == 128 - kLumaFill, "luma pair");
    const V sign = _mm512_set1_epi8(char(0x80)), by64 = _mm512_set1_epi8(64);
    const V lowBy128 = set16(128), highBy128 = set16(128 << 8);
    const int blocks = r.width - r.width % 16;
    std::ptrdiff_t x = 0;
    for (; x + 64 <= blocks; x += 64) {
        const uint8_t* s = r.src[0] + 3 * x;
        const V z[3] = {_mm512_xor_si512(_mm512_loadu_si512(s), sign),
                        _mm512_xor_si512(_mm512_loadu_si512(s + 64), sign),
                        _mm512_xor_si512(_mm512_loadu_si512(s + 128), sign)};
        Rgb16 h[2];
        for (int i = 0; i < 2; ++i) {
            const V yPair = _mm512_mask2_permutex2var_epi8(z[i], vec(yIdx[i]), kLowBytes, z[i + 1]);
            const V cPair = _mm512_permutex2var_epi8(z[i], vec(cIdx[i]), z[i + 1]);
            h[i] = decode16(_mm512_maddubs_epi16(by64, yPair), _mm512_maddubs_epi16(lowBy128, cPair),
                             _mm512_maddubs_epi16(highBy128, cPair));
        }
        interleave3<1>(r.dst[0] + 3 * x, _mm512_packus_epi16(h[0].g, h[1].g), _mm512_packus_epi16(h[0].r, h[0].b),
                       _mm512_packus_epi16(h[1].r, h[1].b));
    }
    return int(x);
}

}  // namespace avx512vbmi
}  // namespace tpx::yuv444
