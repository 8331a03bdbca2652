// RGB <-> YCbCr 4:4:4: the 14 members against a per-pixel model written from
// the conversion formulas (whole blocks of a row and the row's remainder take
// different fixed-point forms), every pair of channel values, and fixed
// values (black, white, saturation).
#include "support/harness.hpp"
#include "tpxcc.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstring>
#include <string>

using namespace tpxtest;

namespace {

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

// Pixels x < width - width % block of a row take the block arithmetic (0: none).
struct Member {
    const char* name;
    int block;
};
const Member kMembers[] = {
    {"tpxiRGBToYCbCr_8u_C3R", 16},         {"tpxiRGBToYCbCr_8u_AC4R", 0},
    {"tpxiRGBToYCbCr_8u_P3R", 0},          {"tpxiRGBToYCbCr_8u_C3P3R", 0},
    {"tpxiRGBToYCbCr_8u_AC4P3R", 0},       {"tpxiYCbCrToRGB_8u_C3R", 16},
    {"tpxiYCbCrToRGB_8u_AC4R", 8},         {"tpxiYCbCrToRGB_8u_P3R", 1},
    {"tpxiYCbCrToRGB_8u_P3C3R", 8},        {"tpxiYCbCrToRGB_8u_P3C4R", 8},
    {"tpxiYCbCrToBGR_8u_P3C3R", 1},        {"tpxiYCbCrToBGR_8u_P3C4R", 1},
    {"tpxiYCbCrToBGR_709CSC_8u_P3C3R", 1}, {"tpxiYCbCrToBGR_709CSC_8u_P3C4R", 1},
};

int blockOf(const Export& e) {
    for (const Member& m : kMembers)
        if (!std::strcmp(m.name, e.name)) return m.block;
    return -1;
}
bool named(const Export& e, const char* word) { return std::strstr(e.name, word) != nullptr; }

TpxStatus model(const Export& e, const Args& a) {
    const bool encoder = named(e, "RGBToYCbCr"), bgr = named(e, "ToBGR"), bt709 = named(e, "709");
    const int block = blockOf(e), ch = e.shape.dst.planes == 3 ? 1 : e.shape.dst.plane[0].unitBytes;
    for (int64_t y = 0; y < a.height; ++y)
        for (int64_t x = 0; x < a.width; ++x) {
            const int i0 = int(sampleAt(e, a, false, x, y, 0)), i1 = int(sampleAt(e, a, false, x, y, 1)),
                      i2 = int(sampleAt(e, a, false, x, y, 2));
            const bool blk = block > 0 && x < a.width - a.width % block;
            Px p = encoder ? (blk ? encodeBlock(i0, i1, i2) : encodeReference(i0, i1, i2))
                           : (blk ? decodeBlock(i0, i1, i2, bt709) : decodeReference(i0, i1, i2));
            if (bgr) std::swap(p[0], p[2]);
            for (int c = 0; c < 3; ++c) put(e, a, x, y, c, p[size_t(c)]);
            if (ch == 4 && e.shape.dst.alphaByte < 0) put(e, a, x, y, 3, double(a.code[0] & 0xFF));
        }
    return tpxStatusOk;
}

std::vector<Model> models() {
    std::vector<Model> v;
    for (const Member& m : kMembers) v.push_back({m.name, model});
    return v;
}

TEST(RgbYCbCr444, MatchesModel) { expectModels(models()); }

// Every pair of values of the first two channels (the third varying with
// them), spread over block and remainder positions: 773 pixels leave 5 after
// whole 8- and 16-pixel blocks.
TEST(RgbYCbCr444, MatchesModelOnEveryChannelPair) {
    for (const Model& m : models()) {
        const Export& e = *findExport(m.name);
        const Buffers b = imageOf(e, 773, 256 * 256 / 773 + 2, 3, [](int c, int64_t x, int64_t y) {
            const uint32_t i = uint32_t(y * 773 + x);
            return double(uint8_t(c == 0 ? i : c == 1 ? i >> 8 : i * 7 + (i >> 16)));
        });
        expectModelOn(m, e, b, "every channel pair");
    }
}

// Black and white, and no wrap-around at either end, in block and remainder
// positions (37 pixels).
TEST(RgbYCbCr444, FixedValues) {
    for (const Member& mb : kMembers) {
        const Export& e = *findExport(mb.name);
        const bool encoder = named(e, "RGBToYCbCr"), bgr = named(e, "ToBGR");
        auto convert = [&](Px px, int c) {
            Buffers b = imageOf(e, 37, 1, 3, [&](int k, int64_t, int64_t) { return px[size_t(k)]; });
            EXPECT_EQ(e.call(b.args), tpxStatusOk);
            std::vector<int> v;
            for (int64_t x = 0; x < 37; ++x) v.push_back(int(sampleAt(e, b.args, true, x, 0, bgr ? 2 - c : c)));
            return v;
        };
        auto expect = [&](Px px, Px want) {
            for (int c = 0; c < 3; ++c) EXPECT_EQ(convert(px, c), std::vector<int>(37, want[size_t(c)])) << mb.name;
        };
        if (encoder) {
            expect({0, 0, 0}, {16, 128, 128});
            expect({255, 255, 255}, {235, 128, 128});
        } else {
            expect({16, 128, 128}, {0, 0, 0});
            expect({235, 128, 128}, {255, 255, 255});
            EXPECT_EQ(convert({255, 128, 255}, 0), std::vector<int>(37, 255)) << mb.name;
            EXPECT_EQ(convert({0, 255, 255}, 1), std::vector<int>(37, 0)) << mb.name;
        }
    }
}

}  // namespace
