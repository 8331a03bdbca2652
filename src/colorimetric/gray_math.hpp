// Per-pixel arithmetic of the gray conversions. These scalar forms define the
// results; the SIMD row functions reproduce them bit for bit.
#pragma once

#include <cmath>
#include <cstdint>

namespace tpx::gray {

// Luminance weights of R, G, B as single-precision values (bit patterns
// 0x3E991687, 0x3F1645A2, 0x3DE978D5).
inline constexpr float kFixedWeights[3] = {0.299f, 0.587f, 0.114f};

// ---- 8u: fixed point at scale 2^15 --------------------------------------
// q = trunc(w * 32768 + 0.5) in double precision, kept as its low 16 bits
// (a NaN or a value beyond the 64-bit range counts as 0). The fixed weights
// give 9798, 19235, 3736, whose sum 32769 is one more than 2^15.
inline uint16_t quantize8u(float w) {
    const double t = std::trunc(double(w) * 32768.0 + 0.5);
    if (!(t > -9.2e18 && t < 9.2e18)) return 0;
    return uint16_t(uint64_t(int64_t(t)));
}

// Vector form, used on the whole groups of a row: each product is floor(c*q/256),
// the three products and 64 are added saturating at 65535, and the sum shifted
// right by 7 as a signed 16-bit value is clamped to 0..255. A sum of 32768 or
// more is negative as a 16-bit value and gives 0.
inline uint8_t vectorForm8u(uint32_t c0, uint32_t c1, uint32_t c2, const uint16_t q[3]) {
    uint32_t s = ((c0 * q[0]) >> 8) + ((c1 * q[1]) >> 8) + ((c2 * q[2]) >> 8) + 64;
    if (s > 65535) s = 65535;
    return s >= 32768 ? 0 : uint8_t(s >> 7);
}

// Exact form, used on the rest of the row: (sum of c*q + 16384) >> 15 stored as
// its low 8 bits, without clamping.
inline uint8_t exactForm8u(uint32_t c0, uint32_t c1, uint32_t c2, const uint16_t q[3]) {
    return uint8_t((c0 * q[0] + c1 * q[1] + c2 * q[2] + 16384u) >> 15);
}

// Whole groups of an 8u row: groups of 4 pixels for C3 sources, of 8 for AC4.
constexpr int groupedWidth8u(int width, int channels) { return channels == 3 ? width & ~3 : width & ~7; }

// ---- Floating point -----------------------------------------------------
// (w0*c0 + w1*c1) + w2*c2 in the precision of the weights, in that order.
template <class F>
inline F weighted(F c0, F c1, F c2, const F w[3]) {
    const F a = w[0] * c0, b = w[1] * c1, c = w[2] * c2;
    return (a + b) + c;
}

// Conversion to a 32-bit integer rounding to nearest with ties to even; NaN
// and values outside the 32-bit range give INT32_MIN, as the processor's
// conversion does.
inline int32_t toInt32(float v) {
    if (!(v >= -2147483648.0f && v < 2147483648.0f)) return INT32_MIN;
    return int32_t(std::nearbyint(v));
}

// 16u: the rounded value's low 16 bits.
inline uint16_t gray16u(uint16_t c0, uint16_t c1, uint16_t c2, const float w[3]) {
    return uint16_t(uint32_t(toInt32(weighted(float(c0), float(c1), float(c2), w))));
}

// 16s: channels moved to 0..65535 by adding 32768, weighted and rounded to g.
inline int32_t gray16sBiased(int16_t c0, int16_t c1, int16_t c2, const float w[3]) {
    return toInt32(weighted(float(c0 + 32768), float(c1 + 32768), float(c2 + 32768), w));
}
// Whole groups of 4 pixels: g - 32768 saturated to -32768..32767.
inline int16_t gray16sGroup(int32_t g) {
    return int16_t((g < 0 ? 0 : g > 65535 ? 65535 : g) - 32768);
}
// The last width mod 4 pixels of a row: g's low 16 bits with the sign bit inverted.
inline int16_t gray16sTail(int32_t g) { return int16_t(uint16_t(uint32_t(g) ^ 0x8000u)); }

}  // namespace tpx::gray
