// XYZ, Lab and LUV against a double-precision model of the formulas (integer
// results within one code, 32f within 1e-4 for L, a, b, u, v and 1e-5 for
// XYZ and RGB), the 32f Lab forward path against an exact single-precision
// model with its own cube-root table, and the stated values.
#include "support/harness.hpp"
#include "tpxcc.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <string>

using namespace tpxtest;

namespace {

bool has(const Export& e, const char* w) { return std::strstr(e.name, w) != nullptr; }

// ---- Double precision, with the stated constants (white point reciprocals, 16/116, 1/116) ----
struct D3 {
    double a, b, c;
};
D3 toXyz(D3 p) {
    return {0.412453 * p.a + 0.357580 * p.b + 0.180423 * p.c, 0.212671 * p.a + 0.715160 * p.b + 0.072169 * p.c,
            0.019334 * p.a + 0.119193 * p.b + 0.950227 * p.c};
}
D3 fromXyz(D3 p) {
    return {3.240479 * p.a - 1.53715 * p.b - 0.498535 * p.c, -0.969256 * p.a + 1.875991 * p.b + 0.041556 * p.c,
            0.055648 * p.a - 0.204043 * p.b + 1.057311 * p.c};
}
double labF(double t) { return t > 0.008856 ? std::cbrt(t) : 7.787 * t + 0.13793103; }
D3 toLab(D3 rgb) {
    const D3 m = toXyz(rgb);
    const double x = std::min(m.a * 1.0521265, 1.0), y = std::min(m.b, 1.0), z = std::min(m.c * 0.9184812, 1.0);
    return {y > 0.008856 ? 116 * std::cbrt(y) - 16 : 903.3 * y, 500 * (labF(x) - labF(y)), 200 * (labF(y) - labF(z))};
}
D3 fromLab(D3 lab) {
    const double fy = (lab.a + 16) * 0.00862069, fx = fy + lab.b * 0.002, fz = fy - lab.c * 0.005;
    return fromXyz({fx * fx * fx * 0.950456, fy * fy * fy, fz * fz * fz * 1.0887539});
}
const double un = 0.197839, vn = 0.468342;
// L, u, v and whether the denominator was zero.
D3 toLuv(D3 rgb, bool& zero) {
    const D3 m = toXyz(rgb);
    const double y = std::min(m.b, 1.0), L = y > 0.008856 ? 116 * std::cbrt(y) - 16 : 903.3 * y;
    const double d = m.a + 15 * m.b + 3 * m.c;
    zero = d == 0;
    return zero ? D3{L, 0, 0} : D3{L, 13 * L * (4 * m.a / d - un), 13 * L * (9 * m.b / d - vn)};
}
D3 fromLuv(D3 luv) {
    const double L = luv.a;
    if (L == 0) return {0, 0, 0};
    const double Y = L > 8 ? std::pow((L + 16) / 116, 3) : L / 903.3;
    const double up = luv.b / (13 * L) + un, vp = luv.c / (13 * L) + vn;
    return fromXyz({9 * Y * up / (4 * vp), Y, Y * (12 - 3 * up - 20 * vp) / (4 * vp)});
}

// ---- Encodings -----------------------------------------------------------------------------
// Full scale of an integer element type (1 for floating types); 16s codes are the value + 32768.
double fullOf(Elem el) { return el == Elem::U8 ? 255 : el == Elem::F32 || el == Elem::F64 ? 1 : 65535; }
double biasOf(Elem el) { return el == Elem::S16 ? 32768 : 0; }
bool real(Elem el) { return el == Elem::F32 || el == Elem::F64; }

D3 labCodes(D3 v, Elem el) {
    if (real(el)) return v;
    if (el == Elem::U8) return {v.a * 255 / 100, v.b + 128, v.c + 128};
    return {v.a * 65535 / 100, (v.b + 128) * 256, (v.c + 128) * 256};
}
D3 labValues(D3 c, Elem el) {
    if (real(el)) return c;
    if (el == Elem::U8) return {c.a * 100 / 255, c.b - 128, c.c - 128};
    return {c.a * 100 / 65535, c.b / 256 - 128, c.c / 256 - 128};
}
D3 luvCodes(D3 v, Elem el) {
    if (real(el)) return v;
    if (el == Elem::U8) return {v.a * 255 / 100, (v.b + 134) * 255 / 354, (v.c + 140) * 255 / 262};
    return {v.a * 655.35, (v.b + 134) * 185.12712, (v.c + 140) * 250.13359 + 0.5};
}
D3 luvValues(D3 c, Elem el) {
    if (real(el)) return c;
    if (el == Elem::U8) return {c.a * 100 / 255, c.b * 354 / 255 - 134, c.c * 262 / 255 - 140};
    return {c.a / 655.35, c.b / 185.12712 - 134, (c.c - 0.5) / 250.13359 - 140};
}

TpxStatus doubleModel(const Export& e, const Args& a) {
    const Elem se = e.shape.src.elem, de = e.shape.dst.elem;
    const bool srcBgr = has(e, "BGRTo"), dstBgr = has(e, "ToBGR");
    const double sf = fullOf(se), df = fullOf(de);
    for (int64_t y = 0; y < a.height; ++y)
        for (int64_t x = 0; x < a.width; ++x) {
            double v[3];
            for (int c = 0; c < 3; ++c) v[c] = sampleAt(e, a, false, x, y, srcBgr ? 2 - c : c) + biasOf(se);
            const D3 in{v[0], v[1], v[2]}, rgb{v[0] / sf, v[1] / sf, v[2] / sf};
            D3 o;
            bool zero = false;
            if (has(e, "ToXYZ")) o = toXyz(in);
            else if (has(e, "XYZTo")) o = fromXyz(in);
            else if (has(e, "ToLab")) o = labCodes(toLab(rgb), de);
            else if (has(e, "ToLUV")) o = luvCodes(toLuv(rgb, zero), de);
            else {
                const D3 rgbOut = has(e, "LabTo") ? fromLab(labValues(in, se)) : fromLuv(luvValues(in, se));
                o = {rgbOut.a * df, rgbOut.b * df, rgbOut.c * df};
            }
            if (zero) o.b = o.c = 0;  // the zero-denominator rule: u and v codes 0
            const double out[3] = {o.a, o.b, o.c};
            for (int c = 0; c < 3; ++c) {
                double w = out[c];
                if (!real(de)) w = std::clamp(std::nearbyint(w), 0.0, df) - biasOf(de);
                put(e, a, x, y, dstBgr ? 2 - c : c, w);
            }
        }
    return tpxStatusOk;
}

// ---- The exact single-precision 32f Lab forward path -------------------------------------------
struct Root {
    float c, r;
};
std::vector<Root> rootTable() {
    std::vector<Root> t(129);
    for (int i = 0; i < 129; ++i) {
        t[size_t(i)].c = float(std::cbrt((i + 1) / 128.0 + 0.0001));
        const double c = t[size_t(i)].c;
        t[size_t(i)].r = float(1.0 / (c * c * c));
    }
    return t;
}
float exactF(float t) {
    static const std::vector<Root> table = rootTable();
    if (!(t > 0.008856f)) return 7.787f * t + 0.13793103f;
    const Root e = table[size_t(t * 128.0f)];
    const float u = t * e.r - 1.0f;
    const float k[8] = {0.33333334f, -0.11111111f, 0.061728396f, -0.041152265f,
                        0.030178327f, -0.023472032f, 0.019001168f, -0.015834307f};
    float p = k[7];
    for (int j = 6; j >= 0; --j) p = p * u + k[j];
    return e.c * (1.0f + u * p);
}
TpxStatus exactLab(const Export& e, const Args& a) {
    const bool bgr = has(e, "BGRTo");
    for (int64_t y = 0; y < a.height; ++y)
        for (int64_t x = 0; x < a.width; ++x) {
            const float R = float(sampleAt(e, a, false, x, y, bgr ? 2 : 0)), G = float(sampleAt(e, a, false, x, y, 1)),
                        B = float(sampleAt(e, a, false, x, y, bgr ? 0 : 2));
            const float X = std::min((0.412453f * R + 0.357580f * G + 0.180423f * B) * 1.0521265f, 1.0f);
            const float Y = std::min(0.212671f * R + 0.715160f * G + 0.072169f * B, 1.0f);
            const float Z = std::min((0.019334f * R + 0.119193f * G + 0.950227f * B) * 0.9184812f, 1.0f);
            const float fy = exactF(Y);
            put(e, a, x, y, 0, Y > 0.008856f ? 116.0f * fy - 16.0f : 903.3f * Y);
            put(e, a, x, y, 1, 500.0f * (exactF(X) - fy));
            put(e, a, x, y, 2, 200.0f * (fy - exactF(Z)));
        }
    return tpxStatusOk;
}

TEST(XyzLabLuv, EveryMemberMatchesModel) {
    expectFamily("XYZ, Lab and LUV", 54, [](const Export& e) {
        const Elem de = e.shape.dst.elem;
        const bool exact = has(e, "ToLab_32f");
        const double tolerance = de == Elem::F64 ? 1e-9 : !real(de) ? 1 : has(e, "ToLab") || has(e, "ToLUV") ? 1e-4 : 1e-5;
        return Model{e.name, exact ? exactLab : doubleModel, exact ? 0 : tolerance};
    });
}

TEST(XyzLabLuv, StatedValues) {
    using V = std::vector<double>;
    // Black: L = a = b = 0; LUV codes (32f: u = v) 0 through the zero-denominator rule.
    EXPECT_EQ(onePixel<Tpx32f>(tpxiRGBToLab_32f_C3R, 0, 0, 0), (V{0, 0, 0}));
    EXPECT_EQ(onePixel<Tpx16u>(tpxiRGBToLUV_16u_C3R, 0, 0, 0), (V{0, 0, 0}));
    EXPECT_EQ(onePixel<Tpx32f>(tpxiRGBToLUV_32f_C3R, 0, 0, 0), (V{0, 0, 0}));  // not 0 / 0
    EXPECT_EQ(onePixel<Tpx16s>(tpxiRGBToLUV_16s_C3R, -32768, -32768, -32768), (V{-32768, -32768, -32768}));
    // White gives L = 100 and neutral a, b; inputs above 1 clamp, so L never exceeds 100.
    for (float v : {1.0f, 4.0f}) {
        const V lab = onePixel<Tpx32f>(tpxiRGBToLab_32f_C3R, v, v, v);
        EXPECT_NEAR(lab[0], 100.0, 1e-3) << v;
        EXPECT_LE(lab[0], 100.001) << v;
        EXPECT_NEAR(lab[1], 0.0, 0.01) << v;
        EXPECT_NEAR(lab[2], 0.0, 0.01) << v;
    }
}

}  // namespace
