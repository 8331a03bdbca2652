// The SIMD row function of the RGB to subsampled YCbCr encoders, shared by the
// AVX2 and AVX-512 translation units through a vector traits class V.
//
// Exact 32-bit arithmetic with 16 x 16-bit multiply-adds: two byte shuffles
// turn each pixel into the word pairs (B, R) and (G, G); luma is
// madd((B, R), (yB, yR)) + madd((G, G), (yG1, yG2)) with yG1 + yG2 = yG, so a
// coefficient above 32767 is split over the pair. Chroma first sums the
// blocks' words in 16 bits (vertically for 4:2:0, then the two columns of a
// pair, leaving the sum in both 32-bit halves of each 64-bit group), then one
// madd pair per vector gives Cb in the even and Cr in the odd 32-bit lanes.
//
// An iteration takes 2 vectors of 4 * lanes pixels from each row: V::load
// puts pixels 4k..4k+3 of a vector into its 128-bit lane k, from byte 0 of
// the lane or, in some three-byte lanes, byte 4 (V::masks shuffles either);
// the in-lane packs leave the two vectors' quarter-lanes interleaved and V's
// stores put them back in order.
#pragma once

#include "frame/byte_table.hpp"
#include "yuv/rgb_to_ycbcr_sub.hpp"

#include <immintrin.h>

namespace tpx::yuv::enc {
// Everything here is compiled once per instruction set: internal linkage keeps
// the AVX-512 copy of a helper from standing in for the AVX2 one.
namespace {

// In-lane shuffle of four pixels (starting `shift` bytes into the lane) to
// the words (B, R) or, with `green`, (G, G).
template <class L>
inline __m128i pixelMask(int shift, bool green) {
    alignas(16) int8_t m[16];
    for (int i = 0; i < 4; ++i) {
        const int base = i * L::srcBytes + shift;
        m[4 * i + 0] = int8_t(base + (green ? L::gOff : L::bOff));
        m[4 * i + 2] = int8_t(base + (green ? L::gOff : L::rOff));
        m[4 * i + 1] = m[4 * i + 3] = -128;  // zero high bytes
    }
    return _mm_load_si128(reinterpret_cast<const __m128i*>(m));
}

inline int32_t pair16(int lo, int hi) { return int32_t(uint32_t(lo & 0xFFFF) | (uint32_t(hi) << 16)); }

template <class V, class L>
int rowSimd(const Rows& rows, const Arith& a) {
    const Rows r = rows;  // a local copy: the stores cannot alias the row pointers
    static_assert(!L::gamma, "the gamma member runs through rowSimdGamma");
    static_assert(L::rule != Rule::HalfSums || L::blockH == 1, "half sums are a 4:2:2 rule");
    static_assert(L::rule != Rule::Limited || L::pack != Pack::YCrCb, "limited members put Cb first");
    using T = typename V::T;
    constexpr int bpp = L::srcBytes, n = 8 * V::lanes, bh = L::blockH;
    T mask[2][2];  // [(B, R) or (G, G)][vector]
    if constexpr (bpp != 0) {
        V::template masks<L>(mask[0], false);
        V::template masks<L>(mask[1], true);
    }
    const T lowBytes = V::set32(0x00FF00FF);
    const T yBR = V::set32(pair16(a.yB, a.yR)), yGG = V::set32(pair16(a.yG / 2, a.yG - a.yG / 2));
    const T yOff = V::set64(a.yOff[0], a.yOff[1]);
    // Even 32-bit lanes compute the first chroma byte of a packed group's
    // order (Cr for YCrCb), odd lanes the second.
    constexpr bool crFirst = L::pack == Pack::YCrCb;
    const int32_t cbBR = pair16(a.cbB, a.cbR), crBR = pair16(a.crB, a.crR);
    const int32_t cbGG = pair16(a.cbG / 2, a.cbG - a.cbG / 2), crGG = pair16(a.crG / 2, a.crG - a.crG / 2);
    const T cBR = crFirst ? V::set64(crBR, cbBR) : V::set64(cbBR, crBR);
    const T cGG = crFirst ? V::set64(crGG, cbGG) : V::set64(cbGG, crGG);
    const T cOff = V::set32(a.cOff);
    // Shifts of the members with SIMD layouts: 16 for half sums, else 17
    // (4:2:2) or 18 (4:2:0, 4:1:1).
    constexpr int cShift = L::rule == Rule::HalfSums ? 16 : L::sampling == Sampling::Pair ? 17 : 18;
    // Half sums: each pixel's Cb and Cr weighted sums.
    const T cbBRpx = V::set32(cbBR), cbGGpx = V::set32(cbGG), crBRpx = V::set32(crBR), crGGpx = V::set32(crGG);
    // Limited (709HDTV): coefficients above 32767 are taken as c - 65536 on the
    // high word of a pair and the pair's 32-bit value (low + 65536 high) is
    // added back, so the Cb lanes hold the sums as (SR, SB) and the Cr lanes
    // as (SB, SR); the low word's coefficient is one less for that addition.
    const T cHigh = V::set64(pair16(a.cbR - 1, a.cbB - 65536), pair16(a.crB - 1, a.crR - 65536));
    const T keepOrSwap = V::bcast(_mm_setr_epi8(2, 3, 0, 1, 4, 5, 6, 7, 10, 11, 8, 9, 12, 13, 14, 15));
    const T crossSwap = V::bcast(_mm_setr_epi8(6, 7, 4, 5, 0, 1, 2, 3, 14, 15, 12, 13, 8, 9, 10, 11));
    // Analog: (SB << 16) in the even and (SR << 16) in the odd 32-bit lanes of
    // the summed (B, R) words, less the block's luma sum SS (the pixels' sums
    // S before their shift, added); then per 16-bit t, t * 32244 >> 16 for Cb and
    // t * 57475 >> 16 = t + (t * (57475 - 65536) >> 16) for Cr as high
    // products (exact: t fits in 11 bits), the remaining shift of 1 or 2 and
    // the offset 128 in 16 bits.
    const T sumHigh = V::bcast(_mm_setr_epi8(-1, -1, 0, 1, -1, -1, 6, 7, -1, -1, 8, 9, -1, -1, 14, 15));
    const T analogScale = V::set32(pair16(kAnalogCbScale, kAnalogCrScale - 65536));
    const T oddWords = V::set32(int32_t(0xFFFF0000u)), offset128 = V::set16(128);
    const T lowest = V::set16(int16_t(a.lo)), highest = V::set16(int16_t(a.hi));
    auto limit = [&](T w) { return L::rule == Rule::Limited ? V::min16(V::max16(w, lowest), highest) : w; };
    std::ptrdiff_t x = 0;
    for (; x + n <= r.width; x += n) {
        // Half by half (h), so that only one half's words are live at a time.
        T yv[bh][2], cv[2];
        for (int h = 0; h < 2; ++h) {
            T br[bh], gg[bh];
            [[maybe_unused]] T ss{};  // analog: the luma sums of the rows, added
            for (int j = 0; j < bh; ++j) {
                if constexpr (bpp == 0) {  // planes R, G, B
                    const int at = x + 4 * V::lanes * h;
                    V::planes(r.src[j][2] + at, r.src[j][0] + at, r.src[j][1] + at, br[j], gg[j]);
                } else {
                    const T q = V::template load<bpp>(r.src[j][0] + std::ptrdiff_t(x) * bpp, h);
                    // BGRA holds (B, R) in the low bytes of its words already.
                    if constexpr (bpp == 4 && L::bgr)
                        br[j] = V::andv(q, lowBytes);
                    else
                        br[j] = V::shuffle(q, mask[0][h]);
                    gg[j] = V::shuffle(q, mask[1][h]);
                }
                const T sum = V::add32(V::add32(V::madd(br[j], yBR), V::madd(gg[j], yGG)), yOff);
                yv[j][h] = V::template srai<16>(sum);
                if constexpr (L::rule == Rule::Analog) ss = j ? V::add32(ss, sum) : sum;
            }
            if constexpr (L::rule == Rule::HalfSums) {
                // Pixel sums halved, then Cb0 + Cb1 in the even and Cr0 + Cr1 in the odd lanes.
                const T pcb = V::template srai<1>(V::add32(V::madd(br[0], cbBRpx), V::madd(gg[0], cbGGpx)));
                const T pcr = V::template srai<1>(V::add32(V::madd(br[0], crBRpx), V::madd(gg[0], crGGpx)));
                const T sum = V::add32(V::blendOdd(pcb, pcr), V::swapPairs(V::blendOdd(pcr, pcb)));
                cv[h] = V::template srai<cShift>(V::add32(sum, cOff));
                continue;
            }
            T sbr = br[0], sgg = gg[0];
            if constexpr (bh == 2) sbr = V::add16(sbr, br[1]), sgg = V::add16(sgg, gg[1]);
            sgg = V::add16(sgg, V::swapPairs(sgg));
            if constexpr (L::sampling == Sampling::Quad) {
                // 4:1:1: the pairs' sums added across each 64-bit half of a lane.
                sbr = V::add16(sbr, V::swapPairs(sbr));
                sbr = V::add16(sbr, V::swapHalves(sbr));
                sgg = V::add16(sgg, V::swapHalves(sgg));
                cv[h] = V::template srai<cShift>(V::add32(V::add32(V::madd(sbr, cBR), V::madd(sgg, cGG)), cOff));
                continue;
            }
            if constexpr (L::rule == Rule::Analog) {
                sbr = V::add16(sbr, V::swapPairs(sbr));
                ss = V::add32(ss, V::swapPairs(ss));
                cv[h] = V::template srai<16>(V::add32(V::sub32(V::shuffle(sbr, sumHigh), ss), cOff));
            } else if constexpr (L::rule == Rule::Limited) {
                sbr = V::add16(V::shuffle(sbr, keepOrSwap), V::shuffle(sbr, crossSwap));
                const T sum = V::add32(V::add32(V::madd(sbr, cHigh), V::madd(sgg, cGG)), sbr);
                cv[h] = V::template srai<cShift>(V::add32(sum, cOff));
            } else {
                sbr = V::add16(sbr, V::swapPairs(sbr));
                cv[h] = V::template srai<cShift>(V::add32(V::add32(V::madd(sbr, cBR), V::madd(sgg, cGG)), cOff));
            }
        }
        T yw[bh];
        for (int j = 0; j < bh; ++j) yw[j] = limit(V::packs32(yv[j][0], yv[j][1]));
        T c = limit(V::packs32(cv[0], cv[1]));  // Cb, Cr words of the blocks
        if constexpr (L::rule == Rule::Analog) {
            const T scaled = V::add16(V::mulhi16(c, analogScale), V::andv(c, oddWords));
            c = V::add16(V::template srai16<cShift - 16>(scaled), offset128);
        }
        if constexpr (L::out == Out::Packed) {
            // Words Y0 C0 Y1 C1 (or C0 Y0 C1 Y1), C alternating Cb, Cr.
            constexpr bool yFirst = L::pack != Pack::CbYCr;
            const T w = yw[0];
            const T lo = yFirst ? V::unpacklo16(w, c) : V::unpacklo16(c, w);
            const T hi = yFirst ? V::unpackhi16(w, c) : V::unpackhi16(c, w);
            V::storePacked(r.y[0] + 2 * std::ptrdiff_t(x), V::packus16(lo, hi));
        } else {
            if constexpr (bh == 2)
                V::storeRows(r.y[0] + x, r.y[1] + x, yw[0], yw[1]);
            else
                V::storeRow(r.y[0] + x, yw[0]);
            if constexpr (L::out == Out::TwoPlane)
                V::storeRow(r.cb + x, c);
            else if constexpr (L::sampling != Sampling::Quad)
                V::storePlanes(r.cb + x / 2, r.cr + x / 2, c);
            else
                V::storeQuads(r.cb + x / 4, r.cr + x / 4, c);
        }
    }
    return int(x);
}

// The gamma member: chunks of each row go through the gamma table into a
// three-byte buffer, which the plain layout's row function converts.
template <class V, class L>
int rowSimdGamma(const Rows& r, const Arith& a) {
    static_assert(L::gamma && L::srcBytes == 3 && L::out == Out::Packed, "packed three-byte gamma member");
    using Plain = Layout<3, L::bgr, L::sampling, L::out, L::pack, L::rule>;
    constexpr int chunk = 512;
    alignas(64) uint8_t buf[chunk * 3];
    Rows c = r;
    c.src[0][0] = buf;
    std::ptrdiff_t x = 0;
    while (r.width - x >= 8 * V::lanes) {
        const int n = r.width - x < chunk ? r.width - x : chunk;
        const uint8_t* s = r.src[0][0] + std::ptrdiff_t(x) * 3;
        ::tpx::lookupBytes(tone::kGammaFwd8u, s, buf, 3 * std::ptrdiff_t(n));
        c.y[0] = r.y[0] + 2 * std::ptrdiff_t(x);
        c.width = n;
        const int done = rowSimd<V, Plain>(c, a);
        x += done;
        if (done < n) break;
    }
    return int(x);
}

template <class V, class L>
int rowFor(const Rows& r, const Arith& a) {
    if constexpr (L::gamma)
        return rowSimdGamma<V, L>(r, a);
    else
        return rowSimd<V, L>(r, a);
}

}  // namespace
}  // namespace tpx::yuv::enc
