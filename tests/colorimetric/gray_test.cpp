// Gray conversions against a per-pixel model written from the formulas:
// RGBToGray and ColorToGray (8u, 16u, 16s, 32f, 64f; C3 and AC4 sources) and
// GrayToRGB (8u, 16u, 32f; C3 and C4 destinations).
#include "argcheck.hpp"
#include "image.hpp"
#include "shapes.hpp"
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

// ---- Members -----------------------------------------------------------------
template <class T> using ToGrayFn = TpxStatus (*)(const T*, int, T*, int, TpxSize);
template <class T, class W> using ColorFn = TpxStatus (*)(const T*, int, T*, int, TpxSize, const W*);

struct ToGray {
    std::string name;
    int channels;
    bool fixedOnly;  // RGBToGray
    // Runs the member on shape s with weights w (ignored by RGBToGray) and checks it.
    std::function<void(const Shape&, const void* w)> run;
};

template <class T, class W>
std::function<void(const Shape&, const void*)> checker(ToGrayFn<T> fixed, ColorFn<T, W> color, int ch) {
    return [=](const Shape& s, const void* wv) {
        const W* w = static_cast<const W*>(wv);
        Image src(s.width * ch, s.height, sizeof(T), s.src, s.seed);
        Image dst(s.width, s.height, sizeof(T), s.dst, s.seed + 1000);
        if constexpr (std::is_floating_point_v<T>) {
            Random<T> r(s.seed);
            fill<T>(src, [&] { return T(4) * r() - T(1.5); });
        } else {
            fill<T>(src, Random<T>(s.seed));
        }
        dst.snapshot();
        const TpxStatus st = fixed ? fixed(src.ptr<T>(), src.step(), dst.ptr<T>(), dst.step(), {s.width, s.height})
                                   : color(src.ptr<T>(), src.step(), dst.ptr<T>(), dst.step(), {s.width, s.height}, w);
        ASSERT_EQ(st, tpxStatusOk) << s;
        auto want = [&](int x, int y) -> T {
            T c[3];
            for (int i = 0; i < 3; ++i) c[i] = src.get<T>(x * ch + i, y);
            if constexpr (std::is_same_v<T, uint8_t>) return model8u(c, w, x, s.width, ch);
            else if constexpr (std::is_same_v<T, uint16_t>) return model16u(c, w);
            else if constexpr (std::is_same_v<T, int16_t>) return model16s(c, w, x, s.width);
            else if constexpr (std::is_same_v<T, float>) return weightedSum(c[0], c[1], c[2], w ? w : kFixed);
            else return weightedSum(c[0], c[1], c[2], w);
        };
        EXPECT_TRUE(matches<T>(dst, s.width, s.height, want)) << s;
        EXPECT_TRUE(dst.untouchedExcept([](int, int) { return true; })) << s;
    };
}

#define TPX_TO_GRAY(T, W, types, layout, ch)                                                                 \
    ToGray{"RGBToGray_" #types "_" #layout, ch, true,                                                        \
           checker<T, W>(tpxiRGBToGray_##types##_##layout, nullptr, ch)},                                    \
        ToGray {                                                                                             \
        "ColorToGray_" #types "_" #layout, ch, false, checker<T, W>(nullptr, tpxiColorToGray_##types##_##layout, ch) \
    }

std::vector<ToGray> toGrayMembers() {
    return {TPX_TO_GRAY(Tpx8u, float, 8u, C3C1R, 3),    TPX_TO_GRAY(Tpx8u, float, 8u, AC4C1R, 4),
            TPX_TO_GRAY(Tpx16u, float, 16u, C3C1R, 3),  TPX_TO_GRAY(Tpx16u, float, 16u, AC4C1R, 4),
            TPX_TO_GRAY(Tpx16s, float, 16s, C3C1R, 3),  TPX_TO_GRAY(Tpx16s, float, 16s, AC4C1R, 4),
            TPX_TO_GRAY(Tpx32f, float, 32f, C3C1R, 3),  TPX_TO_GRAY(Tpx32f, float, 32f, AC4C1R, 4),
            ToGray{"ColorToGray_64f_C3C1R", 3, false,
                   checker<Tpx64f, double>(nullptr, tpxiColorToGray_64f_C3C1R, 3)},
            ToGray{"ColorToGray_64f_AC4C1R", 4, false,
                   checker<Tpx64f, double>(nullptr, tpxiColorToGray_64f_AC4C1R, 4)}};
}

// Every shape with the fixed weights (RGBToGray, and ColorToGray with a null
// pointer except 64f), weights within 0..1, and weights outside that range
// (in 8u their fixed-point values wrap, in 16u and 16s the sums leave 0..65535
// and, for large weights, the 32-bit range).
TEST(Gray, ToGrayMatchesModel) {
    const float inRange[3] = {0.21f, 0.65f, 0.14f}, outside[3] = {-0.75f, 1.4f, 0.62f};
    const float huge[3] = {3.0e4f, -2.0e4f, 1.0f};
    const double inRange64[3] = {0.2126, 0.7152, 0.0722}, outside64[3] = {-1.25, 2.5, 0.3};
    for (const ToGray& m : toGrayMembers()) {
        SCOPED_TRACE(m.name);
        const bool is64 = m.name.find("64f") != std::string::npos;
        for (const Shape& s : standardShapes()) {
            if (m.fixedOnly) {
                m.run(s, nullptr);
                continue;
            }
            m.run(s, is64 ? static_cast<const void*>(inRange64) : inRange);
            if (!is64) m.run(s, nullptr);
            m.run(s, is64 ? static_cast<const void*>(outside64) : outside);
            if (!is64) m.run(s, huge);
        }
    }
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

// A 16-bit or 32f step is a count of elements: an odd byte step loses its
// remainder, so steps 2k + 1 and 2k read and write the same rows.
TEST(Gray, OddStepsAreWholeElements) {
    std::vector<uint16_t> src(3 * 7 * 3 + 8), a(3 * 7 + 8, 0), b(3 * 7 + 8, 0);
    for (size_t i = 0; i < src.size(); ++i) src[i] = uint16_t(i * 2654435761u >> 7);
    ASSERT_EQ(tpxiRGBToGray_16u_C3C1R(src.data(), 43, a.data(), 15, {6, 3}), tpxStatusOk);
    ASSERT_EQ(tpxiRGBToGray_16u_C3C1R(src.data(), 42, b.data(), 14, {6, 3}), tpxStatusOk);
    EXPECT_EQ(a, b);
    std::vector<float> g(4 * 3, 0.5f), c1(4 * 3 * 4, 0), c2(4 * 3 * 4, 0);
    ASSERT_EQ(tpxiGrayToRGB_32f_C1C4R(g.data(), 19, c1.data(), 51, {3, 3}, 1.0f), tpxStatusOk);
    ASSERT_EQ(tpxiGrayToRGB_32f_C1C4R(g.data(), 16, c2.data(), 48, {3, 3}, 1.0f), tpxStatusOk);
    EXPECT_EQ(c1, c2);
}

// ---- Gray to colour ----------------------------------------------------------------
template <class T>
void checkGrayToColor(TpxStatus (*c3)(const T*, int, T*, int, TpxSize),
                      TpxStatus (*c4)(const T*, int, T*, int, TpxSize, T), T alpha) {
    for (const Shape& s : standardShapes()) {
        for (int ch : {3, 4}) {
            Image src(s.width, s.height, sizeof(T), s.src, s.seed);
            Image dst(s.width * ch, s.height, sizeof(T), s.dst, s.seed + 7);
            fill<T>(src, Random<T>(s.seed));
            dst.snapshot();
            const TpxSize roi{s.width, s.height};
            ASSERT_EQ(ch == 3 ? c3(src.ptr<T>(), src.step(), dst.ptr<T>(), dst.step(), roi)
                              : c4(src.ptr<T>(), src.step(), dst.ptr<T>(), dst.step(), roi, alpha),
                      tpxStatusOk);
            // Compared bit for bit, so that any float (also NaN) is copied exactly.
            auto bits = [](T v) { uint32_t u = 0; std::memcpy(&u, &v, sizeof v); return u; };
            auto want = [&](int e, int y) {
                return e % ch == 3 ? bits(alpha) : bits(src.get<T>(e / ch, y));
            };
            for (int y = 0; y < s.height; ++y) {
                if (!dst.rowSurvives(y)) continue;
                for (int e = 0; e < s.width * ch; ++e)
                    ASSERT_EQ(bits(dst.get<T>(e, y)), want(e, y)) << s << " C" << ch << " element " << e << " row " << y;
            }
            EXPECT_TRUE(dst.untouchedExcept([](int, int) { return true; })) << s;
        }
    }
}

TEST(Gray, GrayToColorCopies) {
    checkGrayToColor<Tpx8u>(tpxiGrayToRGB_8u_C1C3R, tpxiGrayToRGB_8u_C1C4R, 0x80);
    checkGrayToColor<Tpx16u>(tpxiGrayToRGB_16u_C1C3R, tpxiGrayToRGB_16u_C1C4R, 0xBEEF);
    checkGrayToColor<Tpx32f>(tpxiGrayToRGB_32f_C1C3R, tpxiGrayToRGB_32f_C1C4R, std::nanf("0x5"));
    const uint8_t g[2] = {7, 200};
    uint8_t out[8] = {};
    ASSERT_EQ(tpxiGrayToRGB_8u_C1C4R(g, 2, out, 8, {2, 1}, 0x80), tpxStatusOk);
    const uint8_t want[8] = {7, 7, 7, 0x80, 200, 200, 200, 0x80};
    EXPECT_TRUE(std::equal(out, out + 8, want));
}

// ---- Argument checks: null source, null destination, width, height; no step check.
TEST(Gray, CheckOrder) {
    struct Member {
        std::string name;
        int elem, srcCh, dstCh;
        std::function<TpxStatus(CheckArgs&)> call;
    };
#define TPX_CALL(fn, T, ...) \
    [](CheckArgs& a) { return fn(a.s<T>(), a.srcStep[0], a.d<T>(), a.dstStep[0], a.roi __VA_ARGS__); }
#define TPX_GRAY_MEMBERS(types, T, layout, ch)                                                         \
    Member{"RGBToGray_" #types "_" #layout, int(sizeof(T)), ch, 1, TPX_CALL(tpxiRGBToGray_##types##_##layout, T)}, \
        Member {                                                                                       \
        "ColorToGray_" #types "_" #layout, int(sizeof(T)), ch, 1,                                      \
            TPX_CALL(tpxiColorToGray_##types##_##layout, T, , nullptr)                                 \
    }
    static const double w64[3] = {0.3, 0.3, 0.3};
    const std::vector<Member> members = {
        TPX_GRAY_MEMBERS(8u, Tpx8u, C3C1R, 3),    TPX_GRAY_MEMBERS(8u, Tpx8u, AC4C1R, 4),
        TPX_GRAY_MEMBERS(16u, Tpx16u, C3C1R, 3),  TPX_GRAY_MEMBERS(16u, Tpx16u, AC4C1R, 4),
        TPX_GRAY_MEMBERS(16s, Tpx16s, C3C1R, 3),  TPX_GRAY_MEMBERS(16s, Tpx16s, AC4C1R, 4),
        TPX_GRAY_MEMBERS(32f, Tpx32f, C3C1R, 3),  TPX_GRAY_MEMBERS(32f, Tpx32f, AC4C1R, 4),
        Member{"ColorToGray_64f_C3", 8, 3, 1, TPX_CALL(tpxiColorToGray_64f_C3C1R, Tpx64f, , w64)},
        Member{"ColorToGray_64f_C4", 8, 4, 1, TPX_CALL(tpxiColorToGray_64f_AC4C1R, Tpx64f, , w64)},
        Member{"GrayToRGB_8u_C3", 1, 1, 3, TPX_CALL(tpxiGrayToRGB_8u_C1C3R, Tpx8u)},
        Member{"GrayToRGB_16u_C3", 2, 1, 3, TPX_CALL(tpxiGrayToRGB_16u_C1C3R, Tpx16u)},
        Member{"GrayToRGB_32f_C3", 4, 1, 3, TPX_CALL(tpxiGrayToRGB_32f_C1C3R, Tpx32f)},
        Member{"GrayToRGB_8u_C4", 1, 1, 4, TPX_CALL(tpxiGrayToRGB_8u_C1C4R, Tpx8u, , 9)},
        Member{"GrayToRGB_16u_C4", 2, 1, 4, TPX_CALL(tpxiGrayToRGB_16u_C1C4R, Tpx16u, , 9)},
        Member{"GrayToRGB_32f_C4", 4, 1, 4, TPX_CALL(tpxiGrayToRGB_32f_C1C4R, Tpx32f, , 9.0f)},
    };
#undef TPX_GRAY_MEMBERS
#undef TPX_CALL
    ASSERT_EQ(members.size(), 24u);
    for (const Member& m : members) {
        Image src(9 * m.srcCh, 3, m.elem, StepKind::Padded, 1);
        Image dst(9 * m.dstCh, 3, m.elem, StepKind::Padded, 2);
        CheckArgs valid;
        valid.src[0] = src.origin();
        valid.dst[0] = dst.origin();
        valid.srcStep[0] = src.step();
        valid.dstStep[0] = dst.step();
        valid.roi = {9, 3};
        expectCheckOrder(m.name, m.call, valid,
                         {nullSrc(), nullDst(), badWidth(0), badHeight(0), badWidth(-3), badHeight(INT32_MIN)},
                         {&dst});
        // Steps are never checked: a zero and a negative step are used as given.
        CheckArgs odd = valid;
        odd.srcStep[0] = 0;
        odd.dstStep[0] = -dst.step();
        odd.dst[0] = dst.origin() + 2 * dst.step();
        EXPECT_EQ(m.call(odd), tpxStatusOk) << m.name;
    }
}

}  // namespace
