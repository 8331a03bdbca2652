// SIMD row functions of the RGB <-> YCbCr 4:4:4 conversions, one body for
// AVX2 and AVX-512: ycbcr444_avx2.cpp and ycbcr444_avx512.cpp each include
// this file once with TPX_YUV444_ISA naming their namespace; the vector
// primitives (frame/pixels3_simd.hpp) are chosen by the instruction set the
// file is compiled for and have internal linkage, so the two copies never
// mix. Channels move in lane-split or group order (see there); the
// arithmetic is per pixel, so any order that is undone on the way out gives
// the same bytes; every function here reproduces the scalar arithmetic of
// ycbcr_math.hpp bit for bit. Loads of 4-byte source pixels take the fourth
// bytes along but never use them.
#ifndef TPX_YUV444_ISA
#error "define TPX_YUV444_ISA (avx2 or avx512) before including this file"
#endif

#include "frame/pixels3_simd.hpp"
#include "yuv/ycbcr444.hpp"

namespace tpx::yuv444 {
namespace {

// The vector primitives and pixel moves of frame/pixels3_simd.hpp; load and
// store name its whole-vector moves here, not the scalar sample accessors of
// ycbcr444.hpp.
using namespace vec3;
using vec3::load;
using vec3::store;

// Channels of kStep pixels in and out (frame/pixels3_simd.hpp).
template <Pack S, bool grouped = false>
inline Tri loadTri(const Row& r, std::ptrdiff_t x) {
    return loadPixels<kPixelBytes<S>, grouped>(r.src, x);
}
// Stores request their interleaved destination lines ahead first with
// Ahead: by default where they are lane-wise masked stores (AVX-512); the
// AVX2 encoders measured slower with the requests, the decoders faster.
template <Pack D, bool Ahead = kLanes == 4>
inline void storeTri(const Row& r, std::ptrdiff_t x, const Tri& t) {
    if constexpr (Ahead) prefetchDestination<kPixelBytes<D>>(r.dst[0], x);
    storePixels<kPixelBytes<D>, D == Pack::AC4>(r.dst, x, t, r.alpha);
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
        storeTri<D, true>(r, x, Bgr ? Tri{{pack(2), pack(1), pack(0)}} : Tri{{pack(0), pack(1), pack(2)}});
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
int analogEncodeAC4P3(const Row& r) { return encodeAnalogRows<Pack::AC4, Pack::P3>(r); }
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
