// RGB <-> YCbCr 4:4:4: the 14 members against a per-pixel model written here
// from the conversion formulas, over the standard shapes and step layouts,
// with guard bytes; the argument checks of every member from one table; and
// fixed values (black, white, saturated chroma, alpha).
#include "argcheck.hpp"
#include "image.hpp"
#include "shapes.hpp"
#include "tpxcc.h"

#include <array>
#include <cmath>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

using namespace tpxtest;

namespace {

// ---- Model -----------------------------------------------------------------
using Px = std::array<int, 3>;

int floorDiv(double num, double den) { return int(std::floor(num / den)); }
int sat(int v) { return v < 0 ? 0 : v > 255 ? 255 : v; }
int wrap16(int v) { return int16_t(uint16_t(v & 0xFFFF)); }

// 32-bit encoder: offsets 16 / 128 plus one half, floor.
Px encodeReference(int r, int g, int b) {
    return {floorDiv(16843.0 * r + 33030.0 * g + 6423.0 * b + 16.5 * 65536, 65536),
            floorDiv(-9699.0 * r - 19071.0 * g + 28770.0 * b + 128.5 * 65536, 65536),
            floorDiv(28770.0 * r - 24117.0 * g - 4653.0 * b + 128.5 * 65536, 65536)};
}

// 16-bit encoder: every term v*c/256 rounded half up (units of 1/64), 16-bit sums.
Px encodeBlock(int r, int g, int b) {
    auto t = [](int v, int c) { return floorDiv(v * c / 256.0 + 0.5, 1); };
    return {sat(wrap16(t(r, 4211) + t(g, 8258) + t(b, 1606) + 1056) >> 6),
            sat(wrap16(t(b, 7193) - t(r, 2425) - t(g, 4768) + 8224) >> 6),
            sat(wrap16(t(r, 7193) - t(g, 6029) - t(b, 1163) + 8224) >> 6)};
}

// 32-bit BT.601 decoder: 76282*(Y-16) + k*(C-128), rounded by +32768, floor.
Px decodeReference(int y, int cb, int cr) {
    const double l = 76282.0 * (y - 16) + 32768;
    return {sat(floorDiv(l + 104593.0 * (cr - 128), 65536)),
            sat(floorDiv(l - 25689.0 * (cb - 128) - 53279.0 * (cr - 128), 65536)),
            sat(floorDiv(l + 132184.0 * (cb - 128), 65536))};
}

// 16-bit decoder, 4 fractional bits: prescale by 128, high half of x*c.
Px decodeBlock(int y, int cb, int cr, bool bt709) {
    auto m = [](int x, int c) { return floorDiv(double(x) * c, 65536); };
    const int crR = bt709 ? 14688 : 13074, cbG = bt709 ? 1745 : 3211, crG = bt709 ? 4375 : 6660,
              cbB = bt709 ? 17326 : 16523;
    const int l = m((y - 16) * 128, 9535), u = (cb - 128) * 128, v = (cr - 128) * 128;
    return {sat(floorDiv(l + m(v, crR) + 8, 16)), sat(floorDiv(l - m(u, cbG) - m(v, crG) + 8, 16)),
            sat(floorDiv(l + m(u, cbB) + 8, 16))};
}

// ---- The members -------------------------------------------------------------
enum class Layout { P3, C3, C4, AC4 };
int channels(Layout l) { return l == Layout::C3 ? 3 : l == Layout::P3 ? 1 : 4; }

struct Member {
    const char* name;
    bool encoder;
    Layout src, dst;
    int block;  // pixels x < width - width % block take the block arithmetic (0: none)
    bool bgr, bt709;
    std::function<TpxStatus(CheckArgs&)> call;

    bool bgrChecks() const { return !encoder && bgr; }
    Px expected(const Px& in, int x, int width) const {
        const bool blk = block > 0 && x < width - width % block;
        if (encoder) return blk ? encodeBlock(in[0], in[1], in[2]) : encodeReference(in[0], in[1], in[2]);
        return blk ? decodeBlock(in[0], in[1], in[2], bt709) : decodeReference(in[0], in[1], in[2]);
    }
};

#define PACKED(fn) [](CheckArgs& a) { return fn(a.s<Tpx8u>(), a.srcStep[0], a.d<Tpx8u>(), a.dstStep[0], a.roi); }
#define PLANAR(fn) \
    [](CheckArgs& a) { return fn(a.srcPlanes<Tpx8u>(), a.srcStep[0], a.dstPlanes<Tpx8u>(), a.dstStep[0], a.roi); }
#define TO_PLANES(fn) \
    [](CheckArgs& a) { return fn(a.s<Tpx8u>(), a.srcStep[0], a.dstPlanes<Tpx8u>(), a.dstStep[0], a.roi); }
#define FROM_PLANES(fn) \
    [](CheckArgs& a) { return fn(a.srcPlanes<Tpx8u>(), a.srcStep[0], a.d<Tpx8u>(), a.dstStep[0], a.roi); }
#define FROM_PLANES_ALPHA(fn)                                                                          \
    [](CheckArgs& a) {                                                                                 \
        return fn(a.srcPlanes<Tpx8u>(), a.srcStep[0], a.d<Tpx8u>(), a.dstStep[0], a.roi, Tpx8u(a.ext[0])); \
    }

const std::vector<Member>& members() {
    using L = Layout;
    static const std::vector<Member> m = {
        {"tpxiRGBToYCbCr_8u_C3R", true, L::C3, L::C3, 16, false, false, PACKED(tpxiRGBToYCbCr_8u_C3R)},
        {"tpxiRGBToYCbCr_8u_AC4R", true, L::AC4, L::AC4, 0, false, false, PACKED(tpxiRGBToYCbCr_8u_AC4R)},
        {"tpxiRGBToYCbCr_8u_P3R", true, L::P3, L::P3, 0, false, false, PLANAR(tpxiRGBToYCbCr_8u_P3R)},
        {"tpxiRGBToYCbCr_8u_C3P3R", true, L::C3, L::P3, 0, false, false, TO_PLANES(tpxiRGBToYCbCr_8u_C3P3R)},
        {"tpxiRGBToYCbCr_8u_AC4P3R", true, L::AC4, L::P3, 0, false, false, TO_PLANES(tpxiRGBToYCbCr_8u_AC4P3R)},
        {"tpxiYCbCrToRGB_8u_C3R", false, L::C3, L::C3, 16, false, false, PACKED(tpxiYCbCrToRGB_8u_C3R)},
        {"tpxiYCbCrToRGB_8u_AC4R", false, L::AC4, L::AC4, 8, false, false, PACKED(tpxiYCbCrToRGB_8u_AC4R)},
        {"tpxiYCbCrToRGB_8u_P3R", false, L::P3, L::P3, 1, false, false, PLANAR(tpxiYCbCrToRGB_8u_P3R)},
        {"tpxiYCbCrToRGB_8u_P3C3R", false, L::P3, L::C3, 8, false, false, FROM_PLANES(tpxiYCbCrToRGB_8u_P3C3R)},
        {"tpxiYCbCrToRGB_8u_P3C4R", false, L::P3, L::C4, 8, false, false,
         FROM_PLANES_ALPHA(tpxiYCbCrToRGB_8u_P3C4R)},
        {"tpxiYCbCrToBGR_8u_P3C3R", false, L::P3, L::C3, 1, true, false, FROM_PLANES(tpxiYCbCrToBGR_8u_P3C3R)},
        {"tpxiYCbCrToBGR_8u_P3C4R", false, L::P3, L::C4, 1, true, false,
         FROM_PLANES_ALPHA(tpxiYCbCrToBGR_8u_P3C4R)},
        {"tpxiYCbCrToBGR_709CSC_8u_P3C3R", false, L::P3, L::C3, 1, true, true,
         FROM_PLANES(tpxiYCbCrToBGR_709CSC_8u_P3C3R)},
        {"tpxiYCbCrToBGR_709CSC_8u_P3C4R", false, L::P3, L::C4, 1, true, true,
         FROM_PLANES_ALPHA(tpxiYCbCrToBGR_709CSC_8u_P3C4R)},
    };
    return m;
}

// Guarded images of one side of a call: three planes or one interleaved image.
std::vector<Image> images(Layout l, int w, int h, StepKind kind, uint32_t seed) {
    std::vector<Image> v;
    const int planes = l == Layout::P3 ? 3 : 1;
    v.reserve(size_t(planes));
    for (int i = 0; i < planes; ++i) v.emplace_back(w * channels(l), h, 1, kind, seed + uint32_t(i));
    return v;
}
int get(const std::vector<Image>& img, Layout l, int c, int x, int y) {
    return l == Layout::P3 ? img[size_t(c)].get<uint8_t>(x, y) : img[0].get<uint8_t>(x * channels(l) + c, y);
}

struct Call {
    std::vector<Image> src, dst;
    CheckArgs args;
    Call(const Member& m, int w, int h, StepKind sk, StepKind dk, uint32_t seed, uint8_t alpha)
        : src(images(m.src, w, h, sk, seed)), dst(images(m.dst, w, h, dk, seed + 7)) {
        for (size_t i = 0; i < src.size(); ++i) args.src[i] = src[i].origin();
        for (size_t i = 0; i < dst.size(); ++i) args.dst[i] = dst[i].origin();
        args.srcStep[0] = src[0].step();
        args.dstStep[0] = dst[0].step();
        args.roi = {w, h};
        args.ext[0] = alpha;
    }
    std::vector<Image*> dstPtrs() {
        std::vector<Image*> p;
        for (auto& d : dst) p.push_back(&d);
        return p;
    }
};

// Runs the member and compares every surviving destination pixel with the
// model; checks that nothing else (guards, AC4 alpha) was written.
void expectConverted(const Member& m, Call& c, const std::string& what) {
    for (auto& d : c.dst) d.snapshot();
    ASSERT_EQ(m.call(c.args), tpxStatusOk) << m.name << " " << what;
    const int w = c.args.roi.width, h = c.args.roi.height;
    const uint8_t alpha = uint8_t(c.args.ext[0]);
    for (int y = 0; y < h; ++y) {
        if (!c.dst[0].rowSurvives(y)) continue;
        for (int x = 0; x < w; ++x) {
            const Px in{get(c.src, m.src, 0, x, y), get(c.src, m.src, 1, x, y), get(c.src, m.src, 2, x, y)};
            Px want = m.expected(in, x, w);
            if (m.bgr) std::swap(want[0], want[2]);
            for (int ch = 0; ch < 3; ++ch)
                ASSERT_EQ(get(c.dst, m.dst, ch, x, y), want[size_t(ch)])
                    << m.name << " " << what << ": pixel " << x << " row " << y << " channel " << ch << " of input "
                    << in[0] << "," << in[1] << "," << in[2];
            if (m.dst == Layout::C4) {
                ASSERT_EQ(get(c.dst, m.dst, 3, x, y), alpha) << m.name << " " << what;
            }
        }
    }
    const int n = channels(m.dst);
    for (auto& d : c.dst)
        EXPECT_TRUE(d.untouchedExcept([&](int e, int) { return m.dst != Layout::AC4 || e % n != 3; }))
            << m.name << " " << what;
}

TEST(RgbYCbCr444, MatchesModelOverShapesAndSteps) {
    for (const Member& m : members())
        for (const Shape& s : standardShapes()) {
            Call c(m, s.width, s.height, s.src, s.dst, s.seed, uint8_t(s.seed * 37));
            for (auto& img : c.src) fill<uint8_t>(img, Random<uint8_t>(s.seed * 101 + 5));
            std::ostringstream what;
            what << s;
            expectConverted(m, c, what.str());
            if (::testing::Test::HasFatalFailure()) return;
        }
}

// Every pair of values of the first two channels (the third varying with
// them), spread over block and remainder positions.
TEST(RgbYCbCr444, MatchesModelOnEveryChannelPair) {
    for (const Member& m : members()) {
        const int w = 773;  // 5 remainder pixels after whole 8- and 16-pixel blocks
        Call c(m, w, 256 * 256 / w + 2, StepKind::Tight, StepKind::Padded, 3, 0x5A);
        uint32_t i = 0;
        for (int y = 0; y < c.args.roi.height; ++y)
            for (int x = 0; x < w; ++x, ++i)
                for (int ch = 0; ch < 3; ++ch) {
                    const uint8_t v = uint8_t(ch == 0 ? i : ch == 1 ? i >> 8 : i * 7 + (i >> 16));
                    if (m.src == Layout::P3) c.src[size_t(ch)].set<uint8_t>(x, y, v);
                    else c.src[0].set<uint8_t>(x * channels(m.src) + ch, y, v);
                }
        expectConverted(m, c, "every input");
        if (::testing::Test::HasFatalFailure()) return;
    }
}

TEST(RgbYCbCr444, ChecksArgumentsInOrder) {
    for (const Member& m : members()) {
        Call c(m, 5, 3, StepKind::Padded, StepKind::Padded, 9, 0x80);
        const Fault srcNull = m.src == Layout::P3 ? nullSrcArray() : nullSrc();
        const Fault dstNull = m.dst == Layout::P3 ? nullDstArray() : nullDst();
        std::vector<Fault> planes;
        for (int i = 0; i < 3; ++i) {
            if (m.src == Layout::P3) planes.push_back(nullSrc(i));
            if (m.dst == Layout::P3) planes.push_back(nullDst(i));
        }
        std::vector<Fault> order{srcNull, dstNull};
        if (m.bgrChecks()) {
            order.insert(order.end(), planes.begin(), planes.end());
            order.insert(order.end(), {badHeight(0), badHeight(-3), badWidth(0), badWidth(INT32_MIN)});
        } else {
            order.insert(order.end(), {badWidth(0), badWidth(INT32_MIN), badHeight(0), badHeight(-3)});
            order.insert(order.end(), planes.begin(), planes.end());
        }
        expectCheckOrder(m.name, m.call, c.args, order, c.dstPtrs());
    }
}

// Runs one member on a single row of `w` copies of one triple.
std::vector<Px> convertConstant(const Member& m, Px in, int w, uint8_t alpha = 0) {
    Call c(m, w, 1, StepKind::Tight, StepKind::Tight, 11, alpha);
    for (int x = 0; x < w; ++x)
        for (int ch = 0; ch < 3; ++ch) {
            if (m.src == Layout::P3) c.src[size_t(ch)].set<uint8_t>(x, 0, uint8_t(in[size_t(ch)]));
            else c.src[0].set<uint8_t>(x * channels(m.src) + ch, 0, uint8_t(in[size_t(ch)]));
        }
    EXPECT_EQ(m.call(c.args), tpxStatusOk);
    std::vector<Px> out;
    for (int x = 0; x < w; ++x) {
        Px p{get(c.dst, m.dst, 0, x, 0), get(c.dst, m.dst, 1, x, 0), get(c.dst, m.dst, 2, x, 0)};
        if (m.bgr) std::swap(p[0], p[2]);
        out.push_back(p);
    }
    return out;
}

// 37 pixels put some on the block paths and some on the remainder paths.
TEST(RgbYCbCr444, FixedValues) {
    for (const Member& m : members()) {
        SCOPED_TRACE(m.name);
        auto all = [&](Px in, Px want) {
            for (const Px& got : convertConstant(m, in, 37)) ASSERT_EQ(got, want);
        };
        if (m.encoder) {
            all({0, 0, 0}, {16, 128, 128});
            all({255, 255, 255}, {235, 128, 128});
        } else {
            all({16, 128, 128}, {0, 0, 0});
            all({235, 128, 128}, {255, 255, 255});
            for (const Px& got : convertConstant(m, {255, 128, 255}, 37)) ASSERT_EQ(got[0], 255);  // no wrap
            for (const Px& got : convertConstant(m, {0, 255, 255}, 37)) ASSERT_EQ(got[1], 0);
        }
    }
}

TEST(RgbYCbCr444, WritesAlphaIntoEveryFourthByte) {
    for (const Member& m : members()) {
        if (m.dst != Layout::C4) continue;
        Call c(m, 37, 3, StepKind::Padded, StepKind::Padded, 5, 0x80);
        c.dst[0].snapshot();
        ASSERT_EQ(m.call(c.args), tpxStatusOk);
        for (int y = 0; y < 3; ++y)
            for (int x = 0; x < 37; ++x) EXPECT_EQ(c.dst[0].get<uint8_t>(4 * x + 3, y), 0x80) << m.name;
        EXPECT_TRUE(c.dst[0].untouchedExcept([](int, int) { return true; })) << m.name;
    }
}

}  // namespace
