// HSV, HLS and photo YCC, in single precision in the order written below
// (no fused multiply-add: the build contracts nothing), as block rows
// (pixel_blocks.hpp) that hsv_hls_ycc_avx2.cpp and hsv_hls_ycc_avx512.cpp
// compile for their instruction sets.
//
// Encodings: 8u and 16u hold 0..1 (hue 0..360 degrees) as 0..F (255 or
// 65535); 16s as the 16u code less 32768; 32f as 0..1. Integer HLS and YCC
// members divide by F (IEEE), run the 32f steps and write x * F rounded to
// nearest (ties to even) and saturated. HSV works on the integer codes.
#pragma once

#include "frame/pixel_blocks.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

namespace tpx::hls {

using blocks::Row;
using blocks::Trio;

enum Op { kToHsv, kFromHsv, kToHls, kFromHls, kToYcc, kFromYcc };

// Every row of the members: element type, source and destination elements
// per pixel (1: planes), conversion, flags.
#define TPX_HLS_ROWS(X)                                                                                     \
    X(uint8_t, 3, 3, kToHsv, 0) X(uint8_t, 4, 4, kToHsv, 0) X(uint16_t, 3, 3, kToHsv, 0)                    \
    X(uint16_t, 4, 4, kToHsv, 0) X(uint8_t, 3, 3, kFromHsv, 0) X(uint8_t, 4, 4, kFromHsv, 0)                \
    X(uint16_t, 3, 3, kFromHsv, 0) X(uint16_t, 4, 4, kFromHsv, 0) X(uint8_t, 3, 3, kToHls, 0)               \
    X(uint8_t, 4, 4, kToHls, 0) X(uint16_t, 3, 3, kToHls, 0) X(uint16_t, 4, 4, kToHls, 0)                   \
    X(int16_t, 3, 3, kToHls, 0) X(int16_t, 4, 4, kToHls, 0) X(float, 3, 3, kToHls, 0)                       \
    X(float, 4, 4, kToHls, 0) X(uint8_t, 3, 3, kFromHls, 0) X(uint8_t, 4, 4, kFromHls, 0)                   \
    X(uint16_t, 3, 3, kFromHls, 0) X(uint16_t, 4, 4, kFromHls, 0) X(int16_t, 3, 3, kFromHls, 0)             \
    X(int16_t, 4, 4, kFromHls, 0) X(float, 3, 3, kFromHls, 0) X(float, 4, 4, kFromHls, 0)                   \
    X(uint8_t, 4, 4, kToHls, 1) X(uint8_t, 3, 1, kToHls, 1) X(uint8_t, 1, 3, kToHls, 1)                     \
    X(uint8_t, 1, 1, kToHls, 1) X(uint8_t, 1, 1, kToHls, 5) X(uint8_t, 1, 4, kToHls, 5)                     \
    X(uint8_t, 4, 1, kToHls, 5) X(uint8_t, 3, 1, kFromHls, 2) X(uint8_t, 1, 3, kFromHls, 2)                 \
    X(uint8_t, 1, 1, kFromHls, 2) X(uint8_t, 1, 1, kFromHls, 6) X(uint8_t, 1, 4, kFromHls, 6)               \
    X(uint8_t, 4, 1, kFromHls, 6) X(uint8_t, 3, 3, kToYcc, 0) X(uint8_t, 4, 4, kToYcc, 0)                   \
    X(uint16_t, 3, 3, kToYcc, 0) X(uint16_t, 4, 4, kToYcc, 0) X(int16_t, 3, 3, kToYcc, 0)                   \
    X(int16_t, 4, 4, kToYcc, 0) X(float, 3, 3, kToYcc, 0) X(float, 4, 4, kToYcc, 0)                         \
    X(uint8_t, 3, 3, kFromYcc, 0) X(uint8_t, 4, 4, kFromYcc, 0) X(uint16_t, 3, 3, kFromYcc, 0)              \
    X(uint16_t, 4, 4, kFromYcc, 0) X(int16_t, 3, 3, kFromYcc, 0) X(int16_t, 4, 4, kFromYcc, 0)              \
    X(float, 3, 3, kFromYcc, 0) X(float, 4, 4, kFromYcc, 0)

namespace {

// Every computation below runs on codes held in floats: whole numbers 0..F
// (F = 255 or 65535; a 16s sample plus 32768), or the values themselves for
// 32f. Truncations of positive values are floor(); rounding to nearest is
// nearbyint() under the entries' nearest-rounding guard.

// ---- HSV on the codes --------------------------------------------------------------------
template <int F>
inline Trio rgbToHsv(float R, float G, float B) {
    const float V = std::max(std::max(R, G), B), m = std::min(std::min(R, G), B);
    const bool grey = V == m;  // black too: hue and saturation 0
    const float d = grey ? 1.0f : V - m, rd = 1.0f / d;
    const float cr = (V - R) * rd, cg = (V - G) * rd, cb = (V - B) * rd;
    // Overriding tests: blue wins over green, green over red.
    float h = R == V ? cb - cg : 0.0f;
    h = G == V ? 2.0f + cr - cb : h;
    h = B >= std::max(R, G) ? 4.0f + cg - cr : h;
    h = h + 1.1920929e-7f < 0.0f ? h + 6.0f : h;
    const float S = std::floor(d * float(F) / (grey ? 1.0f : V) + 0.5f);
    const float H = std::floor(h * (F == 255 ? 42.5f : 10922.5f) + 0.5f);
    return {grey ? 0.0f : H, grey ? 0.0f : S, V};
}
template <int F>
inline Trio hsvToRgb(float H, float S, float V) {
    // Hue in sectors: H * (1/60) * (360/F) in single precision; H = F is hue 0.
    const float h = H == float(F) ? 0.0f : H * 0.016666668f * (F == 255 ? 1.4117647f : 0.005493248f);
    const float i = std::floor(h), f = h - i, s = S * (F == 255 ? 0.003921569f : 1.5259022e-5f);
    const float sV = s * V, sVf = sV * f;
    const float p = std::nearbyint(V - sV), q = std::nearbyint(V - sVf), t = std::nearbyint((V - sV) + sVf);
    // By sector (0..5); sector 6 and above, and S = 0, give V, V, V.
    // (One two-way select per statement, which the vectoriser takes.)
    float r = i == 1.0f ? q : V;
    r = i == 2.0f ? p : r;
    r = i == 3.0f ? p : r;
    r = i == 4.0f ? t : r;
    float g = i == 0.0f ? t : V;
    g = i == 3.0f ? q : g;
    g = i == 4.0f ? p : g;
    g = i == 5.0f ? p : g;
    float b = i == 0.0f ? p : V;
    b = i == 1.0f ? p : b;
    b = i == 2.0f ? t : b;
    b = i == 5.0f ? q : b;
    return S == 0.0f ? Trio{V, V, V} : Trio{r, g, b};
}

// ---- HLS on 0..1 ------------------------------------------------------------------------
inline Trio rgbToHls(float R, float G, float B) {
    const float mx = std::max(std::max(R, G), B), mn = std::min(std::min(R, G), B), d = mx - mn;
    const float sum = mx + mn, L = sum * 0.5f;
    const float S = L <= 0.5f ? d / sum : d / (2.0f - sum);
    // First match wins: red, then green.
    float h = R == mx ? (G - B) * 60.0f / d : G != mx ? (R - G) * 60.0f / d + 240.0f : (B - R) * 60.0f / d + 120.0f;
    h = h < 0.0f ? h + 360.0f : h;
    const bool grey = d <= 1.1920929e-7f;
    return {grey ? 0.0f : h * 0.0027777778f, L, grey ? 0.0f : S};
}
// One channel's value for a hue angle x (degrees), its factor x / 60 given.
inline float hlsChannel(float m1, float m2, float x, float factor) {
    return x < 60.0f ? m1 + (m2 - m1) * factor
                     : x < 180.0f ? m2 : x < 240.0f ? m1 + (m2 - m1) * (4.0f - factor) : m1;
}
inline Trio hlsToRgb(float H, float L, float S) {
    const float m2 = L <= 0.5f ? L * (1.0f + S) : (L + S) - L * S, m1 = 2.0f * L - m2;
    const float h = H * 360.0f, up = h + 120.0f, down = h - 120.0f;
    const float hr = up > 360.0f ? h - 240.0f : up, hb = down < 0.0f ? h + 240.0f : down;
    // Green forms its factor from H directly (6.0000005 is the float 0x40C00001).
    const float r = hlsChannel(m1, m2, hr, hr * 0.016666668f), g = hlsChannel(m1, m2, h, H * 6.0000005f),
                b = hlsChannel(m1, m2, hb, hb * 0.016666668f);
    return S == 0.0f ? Trio{L, L, L} : Trio{r, g, b};
}
// 16s on the codes 0..65535: L = trunc((mx + mn) / 2); the saturation's
// denominator switches at half scale; reciprocals are IEEE quotients;
// H = trunc(degrees * 182.04167).
inline Trio rgbToHls16s(float R, float G, float B) {
    const float mx = std::max(std::max(R, G), B), mn = std::min(std::min(R, G), B), d = mx - mn;
    const float sum = mx + mn, L = std::floor(sum * 0.5f);
    const float r = 1.0f / (L <= 32767.0f ? sum : 131070.0f - sum), rd = 1.0f / d;
    const float S = std::floor(d * r * 65535.0f);
    float h = R == mx ? (G - B) * 60.0f * rd : G != mx ? (R - G) * 60.0f * rd + 240.0f : (B - R) * 60.0f * rd + 120.0f;
    h = h < 0.0f ? h + 360.0f : h;
    const float H = std::floor(h * 182.04167f);
    return {d == 0.0f ? 0.0f : H, L, d == 0.0f ? 0.0f : S};
}

// ---- Photo YCC on 0..1 ---------------------------------------------------------------------
inline Trio rgbToYcc(float R, float G, float B, float c2Scale) {
    const float L = (0.587f * G + 0.299f * R) + 0.114f * B;
    return {L * 0.7132668f, (B - L) * 0.4368627f + 0.6117647f, (R - L) * c2Scale + 0.5372549f};
}
inline float unit(float v) { return v < 0.0f ? 0.0f : v > 1.0f ? 1.0f : v; }
inline Trio yccToRgb(float Y, float C1, float C2) {
    const float y = 1.3584f * Y, c1 = 2.2179f * C1 - 1.356833f, c2 = 1.8215f * C2 - 0.9786098f;
    return {unit(c2 + y), unit((y - 0.194f * c1) - 0.509f * c2), unit(c1 + y)};
}

template <class T>
constexpr bool kFloat = std::is_same_v<T, float>;

// One pixel: codes in, codes out. The integer HLS and YCC members divide the
// codes by F, run the 32f steps and multiply the results by F.
template <class T, int O>
inline Trio convert(float a, float b, float c) {
    constexpr int F = std::is_same_v<T, uint8_t> ? 255 : 65535;
    if constexpr (O == kToHsv) {
        return rgbToHsv<F>(a, b, c);
    } else if constexpr (O == kFromHsv) {
        return hsvToRgb<F>(a, b, c);
    } else if constexpr (O == kToHls && std::is_same_v<T, int16_t>) {
        return rgbToHls16s(a, b, c);
    } else {
        const float k = float(F);
        const float x = kFloat<T> ? a : a / k, y = kFloat<T> ? b : b / k, z = kFloat<T> ? c : c / k;
        const Trio o = O == kToHls    ? rgbToHls(x, y, z)
                       : O == kFromHls ? hlsToRgb(x, y, z)
                       : O == kToYcc   ? rgbToYcc(x, y, z, kFloat<T> ? 0.53192f : 0.5319216f)
                                       : yccToRgb(x, y, z);
        return kFloat<T> ? o : Trio{o.a * k, o.b * k, o.c * k};
    }
}

template <class T, int O>
struct Convert : blocks::Fixed {
    static Trio apply(const State&, float a, float b, float c) { return convert<T, O>(a, b, c); }
};

}  // namespace

// The rows of one tier.
struct Rows {
#define TPX_HLS_FIELD(T, SK, DK, O, F) Row r_##T##_##SK##_##DK##_##O##_##F;
    TPX_HLS_ROWS(TPX_HLS_FIELD)
#undef TPX_HLS_FIELD
};
#define TPX_HLS_ENTRY(T, SK, DK, O, F) blocks::row<T, T, SK, DK, F, Convert<T, O>>,
#define TPX_HLS_TABLE {TPX_HLS_ROWS(TPX_HLS_ENTRY)}
extern const Rows kRowsAvx2, kRowsAvx512;

}  // namespace tpx::hls
