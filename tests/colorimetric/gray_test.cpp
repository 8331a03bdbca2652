// Gray conversions against a per-pixel model written from the formulas:
// RGBToGray and ColorToGray (8u, 16u, 16s, 32f, 64f; C3 and AC4 sources) and
// GrayToRGB (8u, 16u, 32f; C3 and C4 destinations).
#include "support/harness.hpp"
#include "tpxcc.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

namespace {

using namespace tpxtest;

const float kFixed[3] = {0.299f, 0.587f, 0.114f};

// ---- The model -------------------------------------------------------------
uint16_t fixedPoint(float w) { return uint16_t(int64_t(std::trunc(double(w) * 32768.0 + 0.5))); }

// 8u: whole groups of 4 (C3) or 8 (AC4) pixels use the rounded-down products
// with a saturating 16-bit sum that counts as negative from 32768; the rest of
// the row the exact sum, low 8 bits.
uint8_t model8u(const uint8_t* c, const float* w, int x, int width, int channels) {
    const int grouped = width / (channels == 3 ? 4 : 8) * (channels == 3 ? 4 : 8);
    int64_t q[3];
    for (int i = 0; i < 3; ++i) q[i] = fixedPoint(w ? w[i] : kFixed[i]);
    if (x < grouped) {
        int64_t s = 64;
        for (int i = 0; i < 3; ++i) s += c[i] * q[i] / 256;
        s = std::min<int64_t>(s, 65535);
        const int16_t signedSum = int16_t(uint16_t(s));
        return signedSum < 0 ? 0 : uint8_t(std::min(signedSum / 128, 255));
    }
    return uint8_t((c[0] * q[0] + c[1] * q[1] + c[2] * q[2] + 16384) / 32768 % 256);
}

template <class F>
F weightedSum(F c0, F c1, F c2, const F* w) {
    const F a = w[0] * c0, b = w[1] * c1, c = w[2] * c2;
    return (a + b) + c;
}

// Rounding to nearest, ties to even, to a 32-bit integer; values outside the
// 32-bit range give INT32_MIN, as the processor's conversion does.
int64_t roundEven(float v) {
    const double f = std::floor(double(v)), d = double(v) - f;
    int64_t r = int64_t(f);
    if (d > 0.5 || (d == 0.5 && (r & 1))) ++r;
    return r < INT32_MIN || r > INT32_MAX ? INT32_MIN : r;
}

uint16_t model16u(const uint16_t* c, const float* w) {
    const float* k = w ? w : kFixed;
    return uint16_t(roundEven(weightedSum<float>(c[0], c[1], c[2], k)) & 0xFFFF);
}

// 16s: channels + 32768, rounded, - 32768: saturated in whole groups of 4, the
// low 16 bits in the last width mod 4 pixels.
int16_t model16s(const int16_t* c, const float* w, int x, int width) {
    const float* k = w ? w : kFixed;
    const int64_t g = roundEven(weightedSum<float>(c[0] + 32768.0f, c[1] + 32768.0f, c[2] + 32768.0f, k)) - 32768;
    if (x < width / 4 * 4) return int16_t(std::clamp<int64_t>(g, -32768, 32767));
    return int16_t(uint16_t(g & 0xFFFF));
}

// ---- Models over the export table's argument record ----------------------------
template <class T, class W>
TpxStatus toGray(const Export& e, const Args& a) {
    const int ch = e.shape.src.plane[0].unitBytes / int(sizeof(T));
    const W* w = static_cast<const W*>(a.extra);
    const View<T> src = in<T>(e, a, 0), dst = out<T>(e, a, 0);
    for (int64_t y = 0; y < a.height; ++y)
        for (int64_t x = 0; x < a.width; ++x) {
            T c[3];
            for (int i = 0; i < 3; ++i) c[i] = src(x * ch + i, y);
            const int xi = int(x), wi = int(a.width);
            if constexpr (std::is_same_v<T, uint8_t>) dst.set(x, y, model8u(c, w, xi, wi, ch));
            else if constexpr (std::is_same_v<T, uint16_t>) dst.set(x, y, model16u(c, w));
            else if constexpr (std::is_same_v<T, int16_t>) dst.set(x, y, model16s(c, w, xi, wi));
            else if constexpr (std::is_same_v<T, float>) dst.set(x, y, weightedSum(c[0], c[1], c[2], w ? w : kFixed));
            else dst.set(x, y, weightedSum(c[0], c[1], c[2], w));
        }
    return tpxStatusOk;
}

// Gray to colour copies the gray value (bit for bit) and writes the alpha argument.
template <class T>
TpxStatus toColor(const Export& e, const Args& a) {
    const int ch = e.shape.dst.plane[0].unitBytes / int(sizeof(T));
    const T alpha = std::is_floating_point_v<T> ? T(a.value[0]) : T(a.code[0]);
    const View<T> src = in<T>(e, a, 0), dst = out<T>(e, a, 0);
    for (int64_t y = 0; y < a.height; ++y)
        for (int64_t x = 0; x < a.width; ++x)
            for (int i = 0; i < ch; ++i) dst.set(x * ch + i, y, i == 3 ? alpha : src(x, y));
    return tpxStatusOk;
}

#define TPX_GRAY(T, W, types)                                                                              \
    {"tpxiRGBToGray_" #types "_C3C1R", toGray<T, W>}, {"tpxiRGBToGray_" #types "_AC4C1R", toGray<T, W>},   \
        {"tpxiColorToGray_" #types "_C3C1R", toGray<T, W>}, {"tpxiColorToGray_" #types "_AC4C1R", toGray<T, W>}

// Fixed weights, weights within 0..1, outside (in 8u their fixed-point values
// wrap, in 16u and 16s the sums leave 0..65535) and so large that the 16-bit
// sums leave the 32-bit range.
TEST(Gray, MatchesModel) {
    expectModels({TPX_GRAY(Tpx8u, float, 8u), TPX_GRAY(Tpx16u, float, 16u), TPX_GRAY(Tpx16s, float, 16s),
                  TPX_GRAY(Tpx32f, float, 32f),
                  {"tpxiColorToGray_64f_C3C1R", toGray<Tpx64f, double>},
                  {"tpxiColorToGray_64f_AC4C1R", toGray<Tpx64f, double>},
                  {"tpxiGrayToRGB_8u_C1C3R", toColor<Tpx8u>}, {"tpxiGrayToRGB_8u_C1C4R", toColor<Tpx8u>},
                  {"tpxiGrayToRGB_16u_C1C3R", toColor<Tpx16u>}, {"tpxiGrayToRGB_16u_C1C4R", toColor<Tpx16u>},
                  {"tpxiGrayToRGB_32f_C1C3R", toColor<Tpx32f>}, {"tpxiGrayToRGB_32f_C1C4R", toColor<Tpx32f>}});
}

// ---- Worked examples of the 8u and 16s forms ------------------------------------
// One row of `width` equal C3 pixels through tpxiColorToGray_8u_C3C1R.
std::vector<uint8_t> row8u(uint8_t r, uint8_t g, uint8_t b, int width, const float* w) {
    std::vector<uint8_t> src, dst(size_t(width), 0xEE);
    for (int x = 0; x < width; ++x) src.insert(src.end(), {r, g, b});
    EXPECT_EQ(tpxiColorToGray_8u_C3C1R(src.data(), 3 * width, dst.data(), width, {width, 1}, w), tpxStatusOk);
    return dst;
}

// `count` copies of v followed by `last`.
std::vector<uint8_t> runOf(int count, uint8_t v, uint8_t last) {
    std::vector<uint8_t> out(size_t(count), v);
    out.push_back(last);
    return out;
}

TEST(Gray, EightBitForms) {
    using V = std::vector<uint8_t>;
    // White is 255 in both forms with the fixed weights.
    EXPECT_EQ(row8u(255, 255, 255, 5, nullptr), V(5, 255));
    // Whole groups take the group form, the rest of the row the exact form:
    // (119, 248, 3) gives floor terms 4551 + 18634 + 43 + 64 = 23292 -> 181,
    // exactly (5962522 + 16384) >> 15 = 182. Rows of 5 and 69 pixels (64 of
    // them in wide blocks) end with one pixel in the exact form.
    EXPECT_EQ(row8u(119, 248, 3, 5, nullptr), runOf(4, 181, 182));
    EXPECT_EQ(row8u(119, 248, 3, 69, nullptr), runOf(68, 181, 182));
    EXPECT_EQ(row8u(119, 248, 3, 3, nullptr), V(3, 182));
    // Weights summing above 1: q = 9830, 19661, 3604. White sums to 33028 in
    // the group form, negative as a 16-bit value: 0; exactly 8455609 >> 15 =
    // 258, whose low 8 bits are 2.
    const float heavy[3] = {0.3f, 0.6f, 0.11f};
    EXPECT_EQ(row8u(255, 255, 255, 69, heavy), runOf(68, 0, 2));
    // Terms that saturate the 16-bit sum at 65535 also give 0.
    const float twice[3] = {1.0f, 1.0f, 0.5f};
    EXPECT_EQ(row8u(255, 255, 255, 9, twice), runOf(8, 0, 126));
    EXPECT_EQ(row8u(255, 255, 255, 133, twice), runOf(132, 0, 126));
    // AC4 groups are 8 pixels: rows of 9 and 137 have one pixel in the exact form.
    for (int width : {9, 137}) {
        std::vector<uint8_t> src, dst(static_cast<size_t>(width), 0);
        for (int x = 0; x < width; ++x) src.insert(src.end(), {119, 248, 3, 0});
        ASSERT_EQ(tpxiRGBToGray_8u_AC4C1R(src.data(), 4 * width, dst.data(), width, {width, 1}), tpxStatusOk);
        EXPECT_EQ(dst, runOf(width - 1, 181, 182));
    }
}

TEST(Gray, SixteenBitExtremes) {
    for (int16_t v : {int16_t(-32768), int16_t(32767)}) {
        std::vector<int16_t> src(15, v), dst(5, 0);
        ASSERT_EQ(tpxiRGBToGray_16s_C3C1R(src.data(), 30, dst.data(), 10, {5, 1}), tpxStatusOk);
        EXPECT_EQ(dst, std::vector<int16_t>(5, v));
    }
    // Weights of 1: 65535 + 65535 + 0 rounds to 131070: 32767 in the group,
    // its low 16 bits 65534 with the sign bit inverted, 32766, in the tail.
    const float ones[3] = {1.0f, 1.0f, 0.0f};
    std::vector<int16_t> src(15, 32767), dst(5, 0);
    ASSERT_EQ(tpxiColorToGray_16s_C3C1R(src.data(), 30, dst.data(), 10, {5, 1}, ones), tpxStatusOk);
    EXPECT_EQ(dst, (std::vector<int16_t>{32767, 32767, 32767, 32767, 32766}));
    // 16u keeps the low 16 bits everywhere.
    std::vector<uint16_t> usrc(15, 65535), udst(5, 0);
    ASSERT_EQ(tpxiColorToGray_16u_C3C1R(usrc.data(), 30, udst.data(), 10, {5, 1}, ones), tpxStatusOk);
    EXPECT_EQ(udst, std::vector<uint16_t>(5, 65534));
}

}  // namespace
