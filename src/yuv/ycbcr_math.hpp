// Per-pixel arithmetic of the BT.601 / BT.709 luma-chroma conversions, shared
// by the 4:4:4 and the subsampled families. These scalar forms define the
// results; SIMD kernels reproduce them bit for bit.
#pragma once

#include "frame/image.hpp"

#include <cstdint>

namespace tpx::yuv {

// ---- Encoder, 32-bit reference (coefficients at scale 65536) ---------------
// Offsets fold the black level (16, or 128 for chroma) and the rounding half;
// the shift is a floor. Results always lie in 16..235 / 16..240.
constexpr uint8_t encY(int r, int g, int b) { return uint8_t((16843 * r + 33030 * g + 6423 * b + 1081344) >> 16); }
constexpr uint8_t encCb(int r, int g, int b) { return uint8_t((-9699 * r - 19071 * g + 28770 * b + 8421376) >> 16); }
constexpr uint8_t encCr(int r, int g, int b) { return uint8_t((28770 * r - 24117 * g - 4653 * b + 8421376) >> 16); }

// ---- Encoder, 16-bit block arithmetic (coefficients at scale 16384) --------
// Each product term is v*c/256 rounded half up, in units of 1/64; sums wrap
// at 16 bits and the result is clamped to 0..255.
constexpr int16_t encTerm(int v, int c) { return int16_t((v * 128 * c + 16384) >> 15); }
constexpr uint8_t encBlockY(int r, int g, int b) {
    return clamp255(int16_t(encTerm(r, 4211) + encTerm(g, 8258) + encTerm(b, 1606) + 1056) >> 6);
}
constexpr uint8_t encBlockCb(int r, int g, int b) {
    return clamp255(int16_t(encTerm(b, 7193) - int16_t(encTerm(r, 2425) + encTerm(g, 4768)) + 8224) >> 6);
}
constexpr uint8_t encBlockCr(int r, int g, int b) {
    return clamp255(int16_t(encTerm(r, 7193) - int16_t(encTerm(g, 6029) + encTerm(b, 1163)) + 8224) >> 6);
}

// ---- Decoder, 32-bit reference (BT.601, coefficients at scale 65536) -------
// +32768 rounding folded into the constants; arithmetic shift; clamp 0..255.
struct Rgb {
    uint8_t r, g, b;
};
constexpr Rgb decRef601(int y, int cb, int cr) {
    return {clamp255((76282 * y + 104593 * cr - 14575648) >> 16),
            clamp255((76282 * y - 25689 * cb - 53279 * cr + 8920160) >> 16),
            clamp255((76282 * y + 132184 * cb - 18107296) >> 16)};
}

// ---- Decoder, 16-bit block arithmetic (4 fractional bits) ------------------
// Values are prescaled by 128 and multiplied by coefficients at scale 8192
// keeping the high half of the signed 16 x 16-bit product; sums stay within
// 16 bits; (sum + 8) >> 4 is clamped to 0..255.
struct BlockCoeffs {
    int16_t luma;    // luma factor at scale 8192
    int16_t lumaOffset;  // black level subtracted from Y before scaling
    int16_t crToR, cbToG, crToG, cbToB;  // magnitudes; G subtracts its two terms
};
constexpr BlockCoeffs kBlock601{9535, 16, 13074, 3211, 6660, 16523};
constexpr BlockCoeffs kBlock709Csc{9535, 16, 14688, 1745, 4375, 17326};

constexpr int16_t mulHigh(int16_t x, int16_t c) { return int16_t((int32_t(x) * c) >> 16); }
constexpr Rgb decBlock(int y, int cb, int cr, const BlockCoeffs& k) {
    const int16_t ys = mulHigh(int16_t((y - k.lumaOffset) * 128), k.luma);
    const int16_t cbs = int16_t((cb - 128) * 128), crs = int16_t((cr - 128) * 128);
    return {clamp255(int16_t(ys + mulHigh(crs, k.crToR) + 8) >> 4),
            clamp255(int16_t(ys - int16_t(mulHigh(cbs, k.cbToG) + mulHigh(crs, k.crToG)) + 8) >> 4),
            clamp255(int16_t(ys + mulHigh(cbs, k.cbToB) + 8) >> 4)};
}

// ---- Decoder, BT.601 16-bit with 3 fractional bits (subsampled members) ----
// Each term is floor(v*128*c / 65536) of the uncentred byte v with c at scale
// 4096 (the high half of an unsigned 16 x 16-bit product); the black levels
// are folded into the constants in units of 1/8 with no rounding half, so the
// final shift truncates: Y = 235 with neutral chroma gives 254, 255, 254.
constexpr int decTerm3(int v, int c) { return (v * 128 * c) >> 16; }
constexpr Rgb decSub601(int y, int cb, int cr) {
    const int ys = decTerm3(y, 4768);
    return {clamp255((ys + decTerm3(cr, 6537) - 1783) >> 3),
            clamp255((ys + 1085 - (decTerm3(cb, 1606) + decTerm3(cr, 3330))) >> 3),
            clamp255((ys + decTerm3(cb, 8262) - 2214) >> 3)};
}

// ---- Decoders, BT.709 32-bit reference (coefficients at scale 65536) -------
// Each constant is the black level (16 for studio luma, 128 for chroma) times
// its coefficient, negated, plus 32768 for rounding; arithmetic shift; clamp.
struct RefCoeffs {
    int32_t luma, crToR, r0, cbToG, crToG, g0, cbToB, b0;  // G coefficients signed
};
// Studio range; note the luma factor 76284 (not the 76282 of BT.601).
constexpr RefCoeffs kRef709Csc{76284, 117506, -16228544, -13959, -34996, 5078464, 138609, -18929728};
// Full range: luma is not rescaled.
constexpr RefCoeffs kRef709Hdtv{65536, 100925, -12885632, -11993, -30081, 5418240, 119013, -15200896};
constexpr Rgb decRef(int y, int cb, int cr, const RefCoeffs& k) {
    return {clamp255((k.luma * y + k.crToR * cr + k.r0) >> 16),
            clamp255((k.luma * y + k.cbToG * cb + k.crToG * cr + k.g0) >> 16),
            clamp255((k.luma * y + k.cbToB * cb + k.b0) >> 16)};
}
// Full-range BT.709 in the block form: m(Y*128, 8192) is Y*16 exactly.
constexpr BlockCoeffs kBlock709Hdtv{8192, 0, 12616, 1499, 3760, 14877};

}  // namespace tpx::yuv
