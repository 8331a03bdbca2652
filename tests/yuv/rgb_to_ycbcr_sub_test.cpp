// RGB and BGR to subsampled YCbCr, YCrCb and CbYCr: every encoder against a
// per-block model written from the formulas (whole blocks only: a last odd
// column or row, or the width % 4 tail of 4:1:1, is neither read nor
// written), and worked examples of the member-specific rules.
#include "support/harness.hpp"
#include "tpxcc.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <string>
#include <vector>

using namespace tpxtest;

namespace {

enum class Math { Bt601, Csc709, Hdtv709 };
// Y1Floor: second luma of a pair without the rounding half; HalfSums: chroma
// from halved per-pixel weighted sums; Gamma: HalfSums after the curve.
enum class Rule { Plain, Y1Floor, HalfSums, Gamma };

struct Rgb {
    int r, g, b;
};

// What the name does not say: the rule, and the chroma offset (128 plus the
// rounding fraction at the chroma scale: 1/8 or 1/2 of a pair, 1/8 of a block).
constexpr int kPair8 = 16793600, kPairHalf = 16842752, kBlock8 = 33587200;
Rule ruleOf(const std::string& n) {
    if (n == "tpxiRGBToYCbCr422_8u_C3C2R" || n == "tpxiRGBToYCrCb422_8u_C3C2R") return Rule::Y1Floor;
    if (n == "tpxiBGRToCbYCr422_8u_AC4C2R" || n == "tpxiRGBToCbYCr422_8u_C3C2R") return Rule::HalfSums;
    if (n == "tpxiRGBToCbYCr422Gamma_8u_C3C2R") return Rule::Gamma;
    return Rule::Plain;
}
int offsetOf(const std::string& n) {
    if (n.find("422") == std::string::npos) return kBlock8;
    return n.rfind("tpxiBGR", 0) == 0 ? kPair8 : kPairHalf;
}

int floorShift(long long v, int s) { return int(v >= 0 ? v >> s : -((-v + (1LL << s) - 1) >> s)); }

int gammaOf(int v) {
    const double x = v / 255.0;
    const double c = x < 0.018 ? 4.5 * x : 1.099 * std::pow(x, 0.45) - 0.099;
    return int(std::nearbyint(255.0 * c));
}

struct Member {
    std::string name;
    Math math;
    Rule rule;
    int k, bw, bh;  // chroma offset, block width and height
    bool bgr, crFirst;

    explicit Member(const Export& e)
        : name(e.name),
          math(name.find("709CSC") != std::string::npos    ? Math::Csc709
               : name.find("709HDTV") != std::string::npos ? Math::Hdtv709
                                                           : Math::Bt601),
          rule(ruleOf(name)), k(offsetOf(name)), bw(name.find("411") != std::string::npos ? 4 : 2),
          bh(name.find("420") != std::string::npos ? 2 : 1), bgr(name.rfind("tpxiBGR", 0) == 0),
          crFirst(name.find("YCrCb") != std::string::npos) {}

    int luma(Rgb p, bool secondOfPair) const {
        switch (math) {
            case Math::Bt601:
                return floorShift(16843LL * p.r + 33030LL * p.g + 6423LL * p.b +
                                      (rule == Rule::Y1Floor && secondOfPair ? 1048576 : 1081344), 16);
            case Math::Csc709: return floorShift(11993LL * p.r + 40239LL * p.g + 4063LL * p.b + 1081344, 16);
            case Math::Hdtv709: {
                const long long s = 13959LL * p.r + 46858LL * p.g + 4719LL * p.b;
                return s < 32768 ? 1 : std::min(int((s + 32768) >> 16), 254);
            }
        }
        return -1;
    }

    // Cb and Cr of one block of pixels.
    std::pair<int, int> chroma(const std::vector<Rgb>& block) const {
        if (rule == Rule::HalfSums || rule == Rule::Gamma) {
            long long cb = 8421375, cr = 8421375;
            for (const Rgb& p : block) {
                cb += floorShift(-9699LL * p.r - 19071LL * p.g + 28770LL * p.b, 1);
                cr += floorShift(28770LL * p.r - 24117LL * p.g - 4653LL * p.b, 1);
            }
            return {floorShift(cb, 16), floorShift(cr, 16)};
        }
        long long sr = 0, sg = 0, sb = 0;
        for (const Rgb& p : block) sr += p.r, sg += p.g, sb += p.b;
        const int shift = bh == 1 && bw == 2 ? 17 : 18;
        switch (math) {
            case Math::Bt601:
                return {floorShift(-9699 * sr - 19071 * sg + 28770 * sb + k, shift),
                        floorShift(28770 * sr - 24117 * sg - 4653 * sb + k, shift)};
            case Math::Csc709:
                return {floorShift(-6619 * sr - 22151 * sg + 28770 * sb + k, shift),
                        floorShift(28770 * sr - 26149 * sg - 2621 * sb + k, shift)};
            case Math::Hdtv709: {
                auto lim = [](int v) { return v >= 254 ? 254 : v < 2 ? 1 : v; };
                return {lim(floorShift(33489 * sb - 25821 * sg - 7668 * sr + k, shift)),
                        lim(floorShift(33489 * sr - 30409 * sg - 3080 * sb + k, shift))};
            }
        }
        return {-1, -1};
    }
};

// Channel c of a pixel in the member's source order.
int channel(const Member& m, const Rgb& p, int c) {
    const int k = m.bgr ? 2 - c : c;
    return k == 0 ? p.r : k == 1 ? p.g : p.b;
}

Rgb pixel(const Export& e, const Member& m, const Args& a, int64_t x, int64_t y) {
    int v[3];
    for (int c = 0; c < 3; ++c) v[m.bgr ? 2 - c : c] = int(sampleAt(e, a, false, x, y, c));
    const Rgb p{v[0], v[1], v[2]};
    return m.rule == Rule::Gamma ? Rgb{gammaOf(p.r), gammaOf(p.g), gammaOf(p.b)} : p;
}

TpxStatus model(const Export& e, const Args& a) {
    const Member m(e);
    const bool packed = e.shape.dst.pass == Pass::Single, cbycr = m.name.find("CbYCr") != std::string::npos;
    for (int64_t by = 0; by + m.bh <= a.height; by += m.bh)
        for (int64_t bx = 0; bx + m.bw <= a.width; bx += m.bw) {
            std::vector<Rgb> block;
            for (int j = 0; j < m.bh; ++j)
                for (int i = 0; i < m.bw; ++i) {
                    const Rgb p = pixel(e, m, a, bx + i, by + j);
                    block.push_back(p);
                    const uint8_t y = uint8_t(m.luma(p, i % 2 == 1));
                    if (packed) out<uint8_t>(e, a, 0).set(2 * (bx + i) + (cbycr ? 1 : 0), by + j, y);
                    else out<uint8_t>(e, a, 0).set(bx + i, by + j, y);
                }
            auto [cb, cr] = m.chroma(block);
            if (m.crFirst) std::swap(cb, cr);  // the first chroma of the layout, then the second
            const int64_t cx = bx / m.bw, cy = by / m.bh;
            if (packed) {
                const View<uint8_t> d = out<uint8_t>(e, a, 0);
                d.set(2 * bx + (cbycr ? 0 : 1), by, uint8_t(cb));
                d.set(2 * bx + (cbycr ? 2 : 3), by, uint8_t(cr));
            } else if (e.shape.dst.pass == Pass::TwoPlane) {
                out<uint8_t>(e, a, 1).set(2 * cx, cy, uint8_t(cb));
                out<uint8_t>(e, a, 1).set(2 * cx + 1, cy, uint8_t(cr));
            } else {
                out<uint8_t>(e, a, 1).set(cx, cy, uint8_t(cb));
                out<uint8_t>(e, a, 2).set(cx, cy, uint8_t(cr));
            }
        }
    if (m.bh == 2) return (a.width | a.height) & 1 ? tpxStatusOddSize : tpxStatusOk;
    if (m.bw == 4) return a.width % 4 ? tpxStatusOddSize : tpxStatusOk;
    return tpxStatusOk;
}

constexpr const char* kFamily = "RGB to subsampled YCbCr";

TEST(RgbToYCbCrSub, EveryEncoderMatchesModel) {
    expectFamily(kFamily, 33, [](const Export& e) { return Model{e.name, model}; });
}

// One row of pixels (repeated over a block's rows) through a member: the
// bytes of the first row of its first plane.
std::vector<int> row(const char* name, const std::vector<Rgb>& px) {
    const Export& e = *findExport(name);
    const Member m(e);
    Buffers b = imageOf(e, int64_t(px.size()), m.bh, 3,
                        [&](int c, int64_t x, int64_t) { return channel(m, px[size_t(x)], c); });
    EXPECT_EQ(e.call(b.args), tpxStatusOk) << name;
    return std::vector<int>(b.row(1, 0, 0), b.row(1, 0, 0) + b.rowBytes(1, 0));
}

TEST(RgbToYCbCrSub, BlackGivesTheBlackLevel) {
    for (const Export* e : membersOf(kFamily)) {
        const Member m(*e);
        const int black = m.math == Math::Hdtv709 ? 1 : 16;  // 709HDTV keeps code 0 free
        const std::vector<int> got = row(e->name, std::vector<Rgb>(8, Rgb{0, 0, 0}));
        const bool packed = e->shape.dst.pass == Pass::Single, cbycr = m.name.find("CbYCr") != std::string::npos;
        for (size_t i = 0; i < got.size(); ++i)
            EXPECT_EQ(got[i], !packed || (i % 2 == (cbycr ? 1u : 0u)) ? black : 128) << e->name << " byte " << i;
    }
}

TEST(RgbToYCbCrSub, OneColourBlockGivesTheFullResolutionValues) {
    // 4:4:4 chroma of the colour: (c + 8421376) >> 16; the 4:2:0 offset rounds
    // by 1/8 instead of 1/2, so it can be one below.
    for (const Rgb c : {Rgb{200, 30, 90}, Rgb{12, 240, 17}, Rgb{255, 255, 255}, Rgb{0, 0, 255}})
        for (const char* name : {"tpxiBGRToYCbCr420_8u_C3P3R", "tpxiRGBToYCbCr420_8u_C3P2R"}) {
            const Export& e = *findExport(name);
            Buffers b = imageOf(e, 2, 2, 3, [&](int k, int64_t, int64_t) { return channel(Member(e), c, k); });
            ASSERT_EQ(e.call(b.args), tpxStatusOk);
            const int cb444 = (-9699 * c.r - 19071 * c.g + 28770 * c.b + 8421376) >> 16;
            const int cr444 = (28770 * c.r - 24117 * c.g - 4653 * c.b + 8421376) >> 16;
            EXPECT_EQ(b.row(1, 0, 0)[0], (16843 * c.r + 33030 * c.g + 6423 * c.b + 1081344) >> 16) << name;
            const int cb = b.row(1, 1, 0)[0], cr = b.planes(1) == 2 ? b.row(1, 1, 0)[1] : b.row(1, 2, 0)[0];
            EXPECT_TRUE(cb == cb444 || cb == cb444 - 1) << name << " Cb " << cb << " vs " << cb444;
            EXPECT_TRUE(cr == cr444 || cr == cr444 - 1) << name << " Cr " << cr << " vs " << cr444;
        }
}

TEST(RgbToYCbCrSub, PackedRgbMembersTruncateSecondLuma) {
    // Grey 1: 56296 + 1081344 rounds to 17, 56296 + 1048576 truncates to 16.
    const std::vector<Rgb> grey(2, Rgb{1, 1, 1});
    EXPECT_EQ(row("tpxiRGBToYCbCr422_8u_C3C2R", grey), (std::vector<int>{17, 128, 16, 128}));
    EXPECT_EQ(row("tpxiRGBToYCrCb422_8u_C3C2R", grey), (std::vector<int>{17, 128, 16, 128}));
    EXPECT_EQ(row("tpxiRGBToYCbCr422_8u_C3P3R", grey).at(0), 17);
}

TEST(RgbToYCbCrSub, HalfSumChromaDiffersFromPairSums) {
    // (12, 164, 0): Cb weighted sum -3244032. Half sums: (2 * -1622016 + 8421375) >> 16 = 78;
    // the pair-sum rule of the planar RGB member: (2 * -3244032 + 16842752) >> 17 = 79.
    const std::vector<Rgb> px(2, Rgb{12, 164, 0});
    EXPECT_EQ(row("tpxiRGBToCbYCr422_8u_C3C2R", px)[0], 78);
    EXPECT_EQ(row("tpxiRGBToYCbCr422_8u_P3C2R", px)[1], 79);
}

TEST(RgbToYCbCrSub, GammaMemberEncodesTheCurve) {
    // Code 1 maps to 4 (4.5 / 255 * 255 = 4.5, ties to even), code 255 to 255.
    const std::vector<int> lit = row("tpxiRGBToCbYCr422Gamma_8u_C3C2R", {{1, 1, 1}, {255, 255, 255}});
    EXPECT_EQ(lit, row("tpxiRGBToCbYCr422_8u_C3C2R", {{4, 4, 4}, {255, 255, 255}}));
    EXPECT_EQ(lit[1], (56296 * 4 + 1081344) >> 16);
}

TEST(RgbToYCbCrSub, HdtvKeepsCodesZeroAnd255Free) {
    for (const char* name : {"tpxiBGRToCbYCr422_709HDTV_8u_C3C2R", "tpxiBGRToCbYCr422_709HDTV_8u_AC4C2R"}) {
        // Black and white: luma 1 and 254, neutral chroma 128.
        EXPECT_EQ(row(name, {{0, 0, 0}, {255, 255, 255}}), (std::vector<int>{128, 1, 128, 254})) << name;
        // Saturated blue: Cb would be 258; yellow: Cb would be -3.
        EXPECT_EQ(row(name, {{0, 0, 255}, {0, 0, 255}})[0], 254) << name;
        EXPECT_EQ(row(name, {{255, 255, 0}, {255, 255, 0}})[0], 1) << name;
    }
}

}  // namespace
