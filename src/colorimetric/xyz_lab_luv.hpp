// XYZ, Lab and LUV. RGB is linear (no gamma curve on either side); every
// member shares the matrices and the white point below. Single precision in
// the order written (no fused multiply-add: the build contracts nothing), as
// block rows (pixel_blocks.hpp) that xyz_lab_luv_avx2.cpp and
// xyz_lab_luv_avx512.cpp compile for their instruction sets; the 64f planar
// Lab members use the same formulas in double precision with std::cbrt.
//
// Encodings (rhe: round half to even, then saturation):
//   RGB 8u and 16-bit: / F in (Lab: IEEE division; LUV: times the float 1/F),
//     rhe(x * F) out. XYZ members apply the matrices to the codes themselves.
//   Lab 8u: L * 2.55, a + 128, b + 128; 16u: L * 655.35, (a + 128) * 256, (b + 128) * 256.
//   LUV 8u: L * 2.55, (u + 134) * 255/354, (v + 140) * 255/262; 16-bit:
//     L * 655.35, (u + 134) * 185.12712, (v + 140) * 250.13359 + 0.5.
//   16s: the 16u code less 32768.
#pragma once

#include "frame/pixel_blocks.hpp"

#include <cmath>

namespace tpx::cie {

using blocks::Len;
using blocks::Row;
using blocks::Trio;

enum Op { kToXyz, kFromXyz, kToLab, kFromLab, kToLuv, kFromLuv };

// The cube-root table (cube_root_table.cpp): c_i, the float nearest
// cbrt((i + 1) / 128 + 0.0001), and r_i, the float nearest 1 / c_i^3.
struct CubeRootPair {
    float c, r;
};
extern const CubeRootPair kCubeRoots[129];

// Every block row of the members: source and destination element types,
// elements per pixel (1: planes), conversion, flags (pixel_blocks.hpp).
#define TPX_CIE_BOTH(X, T, O)                                                                                   \
    X(T, T, 3, 3, kTo##O, 0) X(T, T, 4, 4, kTo##O, 0) X(T, T, 3, 3, kFrom##O, 0) X(T, T, 4, 4, kFrom##O, 0)
#define TPX_CIE_ROWS(X)                                                                                        \
    TPX_CIE_BOTH(X, uint8_t, Xyz) TPX_CIE_BOTH(X, uint16_t, Xyz) TPX_CIE_BOTH(X, int16_t, Xyz)                  \
    TPX_CIE_BOTH(X, float, Xyz) TPX_CIE_BOTH(X, uint8_t, Luv) TPX_CIE_BOTH(X, uint16_t, Luv)                   \
    TPX_CIE_BOTH(X, int16_t, Luv) TPX_CIE_BOTH(X, float, Luv)                                                 \
    X(uint8_t, uint8_t, 3, 3, kToLuv, 1) X(float, float, 3, 3, kToLuv, 1)                                      \
    X(uint8_t, uint8_t, 3, 3, kFromLuv, 2) X(float, float, 3, 3, kFromLuv, 2)                                  \
    X(uint8_t, uint8_t, 3, 3, kToLab, 0) X(float, float, 3, 3, kToLab, 0) X(float, float, 1, 1, kToLab, 0)     \
    X(uint8_t, uint8_t, 3, 3, kToLab, 1) X(uint8_t, uint16_t, 3, 3, kToLab, 1) X(float, float, 3, 3, kToLab, 1) \
    X(uint8_t, uint8_t, 3, 3, kFromLab, 0) X(float, float, 3, 3, kFromLab, 0)                                  \
    X(float, float, 1, 1, kFromLab, 0) X(uint8_t, uint8_t, 3, 3, kFromLab, 2)                                  \
    X(uint16_t, uint8_t, 3, 3, kFromLab, 2) X(float, float, 3, 3, kFromLab, 2)

namespace {

// A constant in the precision of F, from its decimal digits (no rounding
// through double for float).
#define TPX_K(x) F(sizeof(F) == 4 ? x##f : x)

template <class F>
struct Three {
    F a, b, c;
};

// RGB to XYZ, each row summed R term, G term, B term.
template <class F>
inline Three<F> toXyz(F R, F G, F B) {
    return {(TPX_K(0.412453) * R + TPX_K(0.357580) * G) + TPX_K(0.180423) * B,
            (TPX_K(0.212671) * R + TPX_K(0.715160) * G) + TPX_K(0.072169) * B,
            (TPX_K(0.019334) * R + TPX_K(0.119193) * G) + TPX_K(0.950227) * B};
}
// XYZ to RGB, each row summed X term, Y term, Z term.
template <class F>
inline Three<F> fromXyz(F X, F Y, F Z) {
    return {(TPX_K(3.240479) * X - TPX_K(1.53715) * Y) - TPX_K(0.498535) * Z,
            (TPX_K(-0.969256) * X + TPX_K(1.875991) * Y) + TPX_K(0.041556) * Z,
            (TPX_K(0.055648) * X - TPX_K(0.204043) * Y) + TPX_K(1.057311) * Z};
}

// ---- Cube roots -------------------------------------------------------------------------
constexpr float kThreshold = 0.008856f;
// For t in (threshold, 1]: i = trunc(t * 128), u = t * r_i - 1, the root
// c_i (1 + u p(u)) with p from the series' coefficients by Horner's rule.
// Other t (NaN too) read entry 128 and are not used by the callers.
inline float tableRoot(float t) {
    const float below = std::min(t, 1.0f), ti = below > kThreshold ? below : 1.0f;
    const CubeRootPair e = kCubeRoots[int(ti * 128.0f)];
    const float u = ti * e.r - 1.0f;
    float p = -0.015834307f;
    p = p * u + 0.019001168f;
    p = p * u - 0.023472032f;
    p = p * u + 0.030178327f;
    p = p * u - 0.041152265f;
    p = p * u + 0.061728396f;
    p = p * u - 0.11111111f;
    p = p * u + 0.33333334f;
    return e.c * (1.0f + u * p);
}
inline float labRoot(float t) { return tableRoot(t); }
inline double labRoot(double t) { return std::cbrt(t); }
// The table's root refined by one Newton step in the precision F.
template <class F>
inline F preciseRoot(F t) {
    const F r = tableRoot(float(t));
    return r - (r * r * r - t) / (F(3) * r * r);
}

// ---- Lab ------------------------------------------------------------------------------
// RGB 0..1 to L, a, b: XYZ over the white point, each clamped to at most 1,
// f(t) the cube root above the threshold and 7.787 t + 16/116 at or below.
template <class F>
inline Three<F> toLab(F R, F G, F B) {
    const Three<F> m = toXyz(R, G, B);
    const F one = 1, x = std::min(m.a * TPX_K(1.0521265), one), y = std::min(m.b, one),
            z = std::min(m.c * TPX_K(0.9184812), one);
    const F t = TPX_K(0.008856), k = TPX_K(7.787), c = TPX_K(0.13793103);
    const F rx = labRoot(x), ry = labRoot(y), rz = labRoot(z);  // used above the threshold only
    const F fx = x > t ? rx : k * x + c, fy = y > t ? ry : k * y + c, fz = z > t ? rz : k * z + c;
    return {y > t ? TPX_K(116.0) * fy - TPX_K(16.0) : TPX_K(903.3) * y, TPX_K(500.0) * (fx - fy),
            TPX_K(200.0) * (fy - fz)};
}
// L, a, b to RGB: the cube everywhere (no linear segment), no clamping.
template <class F>
inline Three<F> fromLab(F L, F a, F b) {
    const F fy = (L + TPX_K(16.0)) * TPX_K(0.00862069), fx = fy + a * TPX_K(0.002), fz = fy - b * TPX_K(0.005);
    const F Y = fy * fy * fy, X = fx * fx * fx * TPX_K(0.950456), Z = fz * fz * fz * TPX_K(1.0887539);
    return {(TPX_K(-1.53715) * Y + TPX_K(3.240479) * X) - TPX_K(0.498535) * Z,
            (TPX_K(1.875991) * Y - TPX_K(0.969256) * X) + TPX_K(0.041556) * Z,
            (TPX_K(-0.204043) * Y + TPX_K(0.055648) * X) + TPX_K(1.057311) * Z};
}
// ---- Encodings -------------------------------------------------------------------------
template <class T>
constexpr float kF = float(blocks::kFull<T>);
template <class T>
constexpr bool kReal = std::is_same_v<T, float>;

inline Trio trio(Three<float> v) { return {v.a, v.b, v.c}; }
// RGB codes to 0..1 by IEEE division, and back.
template <class T>
inline Three<float> rgbIn(float r, float g, float b) {
    if constexpr (kReal<T>) return {r, g, b};
    else return {r / kF<T>, g / kF<T>, b / kF<T>};
}
template <class T>
inline Trio rgbOut(Three<float> v) {
    if constexpr (kReal<T>) return trio(v);
    else return {v.a * kF<T>, v.b * kF<T>, v.c * kF<T>};
}
template <class T>
inline Trio labCodes(Three<float> v) {
    if constexpr (kReal<T>) return trio(v);
    else if constexpr (std::is_same_v<T, uint8_t>) return {v.a * 2.55f, v.b + 128.0f, v.c + 128.0f};
    else return {v.a * 655.35f, (v.b + 128.0f) * 256.0f, (v.c + 128.0f) * 256.0f};
}
template <class T>
inline Three<float> labValues(float L, float a, float b) {
    if constexpr (kReal<T>) return {L, a, b};
    else if constexpr (std::is_same_v<T, uint8_t>) return {L * float(100.0 / 255), a - 128.0f, b - 128.0f};
    else return {L * float(100.0 / 65535), a * 0.00390625f - 128.0f, b * 0.00390625f - 128.0f};
}
template <class T>
inline Trio luvCodes(float L, float u, float v) {
    if constexpr (kReal<T>) return {L, u, v};
    else if constexpr (std::is_same_v<T, uint8_t>)
        return {L * 2.55f, (u + 134.0f) * float(255.0 / 354), (v + 140.0f) * float(255.0 / 262)};
    else return {L * 655.35f, (u + 134.0f) * 185.12712f, (v + 140.0f) * 250.13359f + 0.5f};
}
template <class T, class F>
inline Three<F> luvValues(F L, F u, F v) {
    if constexpr (kReal<T>) return {L, u, v};
    else if constexpr (std::is_same_v<T, uint8_t>)
        return {L * F(100.0 / 255), u * F(354.0 / 255) - F(134), v * F(262.0 / 255) - F(140)};
    else return {L / F(655.35), u / F(185.12712) - F(134), (v - F(0.5)) / F(250.13359) - F(140)};
}

// ---- LUV, in precision F: float for 8u; double for the 16-bit and 32f
// members, whose u, v and inverse would otherwise carry float rounding
// amplified by the chromaticity quotients into their last places.
template <class T>
using Precision = std::conditional_t<std::is_same_v<T, uint8_t>, float, double>;

// RGB codes to L, u, v codes: L from Y clamped to 1; a zero X + 15Y + 3Z
// stores u and v codes 0 (32f: u = v = 0).
template <class T, class F>
inline Trio toLuv(float r, float g, float b) {
    const F k = kReal<T> ? F(1) : F(1.0f / kF<T>);
    const Three<F> m = toXyz(F(r) * k, F(g) * k, F(b) * k);
    const F y = std::min(m.b, F(1)), root = preciseRoot(y);  // the root is used above the threshold only
    const F L = y > TPX_K(0.008856) ? TPX_K(116.0) * root - TPX_K(16.0) : TPX_K(903.3) * y;
    const F d = (m.a + TPX_K(15.0) * m.b) + TPX_K(3.0) * m.c, rd = F(1) / d, l13 = TPX_K(13.0) * L;
    const F u = l13 * (TPX_K(4.0) * m.a * rd - TPX_K(0.197839)), v = l13 * (TPX_K(9.0) * m.b * rd - TPX_K(0.468342));
    const Trio o = luvCodes<T>(float(L), float(u), float(v));
    return d == F(0) ? Trio{o.a, 0.0f, 0.0f} : o;
}
// L, u, v codes to RGB codes: Y = ((L + 16) / 116)^3 above L = 8, else
// L / 903.3; u' = u / 13L + un', v' = v / 13L + vn'; X = 9Y u' / 4v',
// Z = Y (12 - 3u' - 20v') / 4v'; L = 0 is black.
template <class S, class D, class F>
inline Trio fromLuv(float a, float b, float c) {
    const Three<F> v = luvValues<S, F>(a, b, c);
    const F L = v.a, fy = (L + TPX_K(16.0)) * TPX_K(0.00862069);
    const F Y = L > TPX_K(8.0) ? fy * fy * fy : L * F(1 / 903.3);
    const F rl = F(1) / (TPX_K(13.0) * L), up = v.b * rl + TPX_K(0.197839), vp = v.c * rl + TPX_K(0.468342);
    const F rq = F(1) / (TPX_K(4.0) * vp);
    const F X = TPX_K(9.0) * Y * up * rq, Z = Y * ((TPX_K(12.0) - TPX_K(3.0) * up) - TPX_K(20.0) * vp) * rq;
    const bool black = L == F(0);
    const Three<F> o = fromXyz(black ? F(0) : X, black ? F(0) : Y, black ? F(0) : Z);
    return rgbOut<D>({float(o.a), float(o.b), float(o.c)});
}

// ---- One pixel: source codes to destination codes -------------------------------------------
template <class S, class D, int O>
struct Convert : blocks::Fixed {
    // Lab and LUV (cube roots from a table) run faster over staged blocks.
    static constexpr bool kStaged = O != kToXyz && O != kFromXyz;
    static Trio apply(const State&, float a, float b, float c) {
        if constexpr (O == kToXyz) {
            return trio(toXyz(a, b, c));
        } else if constexpr (O == kFromXyz) {
            return trio(fromXyz(a, b, c));
        } else if constexpr (O == kToLab) {
            const Three<float> v = rgbIn<S>(a, b, c);
            return labCodes<D>(toLab(v.a, v.b, v.c));
        } else if constexpr (O == kFromLab) {
            const Three<float> v = labValues<S>(a, b, c);
            return rgbOut<D>(fromLab(v.a, v.b, v.c));
        } else if constexpr (O == kToLuv) {
            return toLuv<D, Precision<S>>(a, b, c);
        } else {
            return fromLuv<S, D, Precision<S>>(a, b, c);
        }
    }
};

// 64f planar Lab: the formulas in double precision.
template <int O>
void row64(const void* const* sv, void* const* dv, Len n, const void*) {
    const double *r = static_cast<const double*>(sv[0]), *g = static_cast<const double*>(sv[1]),
                 *b = static_cast<const double*>(sv[2]);
    double *x = static_cast<double*>(dv[0]), *y = static_cast<double*>(dv[1]), *z = static_cast<double*>(dv[2]);
    for (Len i = 0; i < n; ++i) {
        const Three<double> o = O == kToLab ? toLab(r[i], g[i], b[i]) : fromLab(r[i], g[i], b[i]);
        x[i] = o.a, y[i] = o.b, z[i] = o.c;
    }
}

#undef TPX_K

}  // namespace

// The rows of one tier.
struct Rows {
#define X(S, D, SK, DK, O, F) Row r_##S##_##D##_##SK##_##DK##_##O##_##F;
    TPX_CIE_ROWS(X)
#undef X
};
#define TPX_CIE_ENTRY(S, D, SK, DK, O, F) blocks::row<S, D, SK, DK, F, Convert<S, D, O>>,
#define TPX_CIE_TABLE {TPX_CIE_ROWS(TPX_CIE_ENTRY)}
extern const Rows kRowsAvx2, kRowsAvx512;

}  // namespace tpx::cie
