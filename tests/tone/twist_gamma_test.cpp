// Colour twist against an exact single-precision model of its grouping;
// gamma against tables and a curve computed here in double precision; the
// stated values.
#include "support/harness.hpp"
#include "tpxcc.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cfenv>
#include <cmath>
#include <cstring>
#include <vector>

using namespace tpxtest;

namespace {

bool has(const Export& e, const char* w) { return std::strstr(e.name, w) != nullptr; }

// Round half to even of a float, independent of the rounding mode.
double nearestEven(float v) {
    const double f = std::floor(double(v)), d = double(v) - f;
    return d > 0.5 || (d == 0.5 && std::fmod(f, 2.0) != 0.0) ? f + 1 : f;
}
double lowOf(Elem e) { return e == Elem::U8 || e == Elem::U16 ? 0 : -32768; }
double highOf(Elem e) { return e == Elem::U8 ? 255 : e == Elem::U16 ? 65535 : 32767; }

// ---- Colour twist ------------------------------------------------------------------------------
TpxStatus twist(const Export& e, const Args& a) {
    const float* t = static_cast<const float*>(a.extra);
    const Elem el = e.shape.dst.elem;
    const bool c4 = has(e, "_C4R");
    for (int64_t y = 0; y < a.height; ++y)
        for (int64_t x = 0; x < a.width; ++x) {
            float c[4];
            for (int k = 0; k < (c4 ? 4 : 3); ++k) c[k] = float(sampleAt(e, a, false, x, y, k));
            for (int i = 0; i < (c4 ? 4 : 3); ++i) {
                const float* r = t + 4 * i;
                const float lead = c4 ? r[3] * c[3] : r[3];
                const float v = (lead + r[0] * c[0]) + (r[1] * c[1] + r[2] * c[2]);
                put(e, a, x, y, i, el == Elem::F32 ? double(v) : std::clamp(nearestEven(v), lowOf(el), highOf(el)));
            }
        }
    return tpxStatusOk;
}

// ---- Gamma ------------------------------------------------------------------------------------
double fwdCurve(double x) { return x < 0.018 ? 4.5 * x : 1.099 * std::pow(x, 0.45) - 0.099; }
double invCurve(double y) { return y < 0.0812 ? y / 4.5 : std::pow((y + 0.099) / 1.099, 1 / 0.45); }
std::vector<double> tableOf(int full, bool fwd) {
    std::vector<double> t(size_t(full) + 1);
    for (int i = 0; i <= full; ++i) {
        const double x = double(i) / full, v = fwd && x < 0.018 ? 4.5 * i : full * (fwd ? fwdCurve(x) : invCurve(x));
        const double f = std::floor(v);
        t[size_t(i)] = v - f > 0.5 || (v - f == 0.5 && std::fmod(f, 2.0) != 0) ? f + 1 : f;
    }
    return t;
}
TpxStatus gamma(const Export& e, const Args& a) {
    const Elem el = e.shape.dst.elem;
    const bool fwd = has(e, "Fwd");
    static const std::vector<double> tables[2][2] = {{tableOf(255, false), tableOf(255, true)},
                                                     {tableOf(65535, false), tableOf(65535, true)}};
    const double lo = a.value[0], range = double(float(a.value[1]) - float(a.value[0]));
    for (int64_t y = 0; y < a.height; ++y)
        for (int64_t x = 0; x < a.width; ++x)
            for (int k = 0; k < 3; ++k) {
                const double v = sampleAt(e, a, false, x, y, k);
                if (el != Elem::F32) {
                    put(e, a, x, y, k, tables[el == Elem::U16][fwd][size_t(v)]);
                } else {
                    const double q = std::clamp((v - lo) / range, 0.0, 1.0);
                    put(e, a, x, y, k, lo + range * (fwd ? fwdCurve(q) : invCurve(q)));
                }
            }
    return tpxStatusOk;
}

TEST(TwistGamma, EveryMemberMatchesModel) {
    expectFamily("Colour twist and gamma", 61, [](const Export& e) {
        // 32f gamma within 2e-6 of the widest test range (2).
        if (has(e, "Gamma")) return Model{e.name, gamma, e.shape.dst.elem == Elem::F32 ? 4e-6 : 0};
        return Model{e.name, twist};
    });
}

TEST(TwistGamma, StatedValues) {
    const float identity[3][4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}};
    const Tpx16s s16[3] = {-32768, 7, 32767};
    Tpx16s o16[3];
    ASSERT_EQ(tpxiColorTwist32f_16s_C3R(s16, 6, o16, 6, {1, 1}, identity), tpxStatusOk);
    EXPECT_EQ(0, std::memcmp(s16, o16, sizeof s16));
    // Constants of +-300 saturate 8u, also beyond the 32-bit range; NaN stores
    // 0 (64 pixels, so that vector rows take them).
    Tpx8u px[64 * 3];
    for (int i = 0; i < 64 * 3; ++i) px[i] = Tpx8u(i * 37);
    for (float k : {300.0f, -300.0f, 3e9f, -3e9f, NAN}) {
        const float m[3][4] = {{1, 0, 0, k}, {0, 1, 0, k}, {0, 0, 1, k}};
        Tpx8u out[64 * 3];
        ASSERT_EQ(tpxiColorTwist32f_8u_C3R(px, 64 * 3, out, 64 * 3, {64, 1}, m), tpxStatusOk);
        for (Tpx8u v : out) ASSERT_EQ(v, k > 0 ? 255 : 0) << k;
    }
    // 2.5 rounds to 2 and 3.5 to 4 under a truncating caller mode, which is kept.
    const float half[3][4] = {{0, 0, 0, 2.5f}, {0, 0, 0, 3.5f}, {0, 0, 0, 2.5f}};
    Tpx8u rounded[3];
    const int mode = std::fegetround();
    std::fesetround(FE_TOWARDZERO);
    const TpxStatus st = tpxiColorTwist32f_8u_C3R(px, 3, rounded, 3, {1, 1}, half);
    EXPECT_EQ(std::fegetround(), FE_TOWARDZERO);
    std::fesetround(mode);
    ASSERT_EQ(st, tpxStatusOk);
    EXPECT_TRUE(rounded[0] == 2 && rounded[1] == 4);
    // C4R: a zero fourth row writes alpha 0; steps of W x 4 bytes convert W x H pixels as one run.
    const float c4[4][4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 0}};
    std::vector<float> src(2 * 3 * 4), dst(src.size(), -1.0f);
    for (size_t i = 0; i < src.size(); ++i) src[i] = float(i + 1);
    ASSERT_EQ(tpxiColorTwist_32f_C4R(src.data(), 3 * 4, dst.data(), 3 * 4, {3, 2}, c4), tpxStatusOk);
    for (size_t i = 0; i < src.size(); ++i) EXPECT_EQ(dst[i], i % 4 == 3 ? 0.0f : src[i]) << i;
    // Gamma tables: heads, ties to even in the linear segment, the inverse's switch.
    Tpx8u ramp[12], g8[12];
    for (int i = 0; i < 12; ++i) ramp[i] = Tpx8u(i < 10 ? i : 255);
    ASSERT_EQ(tpxiGammaFwd_8u_C3R(ramp, 12, g8, 12, {4, 1}), tpxStatusOk);
    EXPECT_EQ(std::vector<int>(g8, g8 + 12), (std::vector<int>{0, 4, 9, 14, 18, 23, 27, 30, 34, 37, 255, 255}));
    ASSERT_EQ(tpxiGammaInv_8u_C3R(ramp, 12, g8, 12, {4, 1}), tpxStatusOk);
    EXPECT_EQ(std::vector<int>(g8, g8 + 10), (std::vector<int>{0, 0, 0, 1, 1, 1, 1, 2, 2, 2}));
    const Tpx16u w[3] = {41, 65535, 5321};
    Tpx16u gw[3];
    ASSERT_EQ(tpxiGammaFwd_16u_C3R(w, 6, gw, 6, {1, 1}), tpxStatusOk);
    EXPECT_TRUE(gw[0] == 184 && gw[1] == 65535);
    const Tpx16u sw[3] = {5321, 5322, 0};
    ASSERT_EQ(tpxiGammaInv_16u_C3R(sw, 6, gw, 6, {1, 1}), tpxStatusOk);
    EXPECT_EQ(gw[0], 1182);
    EXPECT_EQ(gw[1], std::lrint(65535 * std::pow((5322.0 / 65535 + 0.099) / 1.099, 1 / 0.45)));
    // The 32f range is checked before the pointers.
    EXPECT_EQ(tpxiGammaFwd_32f_C3R(nullptr, 12, nullptr, 12, {1, 1}, 0.5f, 0.5f), tpxStatusBadRange);
}

// Overlapping images go sample by sample in increasing address order: a
// destination a pixel or a sample behind or ahead of the source, against
// that order run on a copy (the table read from apart images).
TEST(TwistGamma, GammaOverlapInAddressOrder) {
    Tpx8u all[256 * 3], table[256 * 3];
    for (int i = 0; i < 256 * 3; ++i) all[i] = Tpx8u(i / 3);
    ASSERT_EQ(tpxiGammaFwd_8u_C3R(all, 768, table, 768, {256, 1}), tpxStatusOk);
    for (int shift : {-4, -3, -1, 1, 3, 4}) {
        std::vector<Tpx8u> buf(3 * 200 + 8), want;
        for (size_t i = 0; i < buf.size(); ++i) buf[i] = Tpx8u(i * 37 + 11);
        want = buf;
        const int s = 4, d = s + shift;
        for (int i = 0; i < 3 * 190; ++i) want[d + i] = table[3 * want[s + i]];
        ASSERT_EQ(tpxiGammaFwd_8u_C3R(buf.data() + s, 600, buf.data() + d, 600, {190, 1}), tpxStatusOk);
        EXPECT_EQ(buf, want) << shift;
    }
}

}  // namespace
