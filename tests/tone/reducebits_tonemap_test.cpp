// Bit-depth reduction and tone mapping against a single-precision model of
// the quantiser (no dither, ordered, the three error diffusions gathered from
// whole-image error planes), the one-bit member and the two tone maps; the
// stated cases.
#include "support/harness.hpp"
#include "tpxcc.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

using namespace tpxtest;

namespace {

bool has(const Export& e, const char* w) { return std::strstr(e.name, w) != nullptr; }

float normalisedOf(Elem e, double v) {
    if (e == Elem::U8) return float(v) * float(1.0 / 255);
    if (e == Elem::U16) return float(v) * 1.5259022e-5f;
    if (e == Elem::S16) return float(int(v) + 32768) * float(1.0 / 65536);
    return float(v);
}
// trunc(t) saturated to 0..F.
float saturate(float t, float F) { return t >= F ? F : t > 0.0f ? std::trunc(t) : 0.0f; }

// Error weights of Floyd-Steinberg, Jarvis-Judice-Ninke and Stucki, gathered
// in this order: row y-1 at x-2..x+2, row y-2 at x-2..x+2, row y at x-2, x-1.
const int kAt[12][2] = {{-2, -1}, {-1, -1}, {0, -1}, {1, -1}, {2, -1}, {-2, -2},
                        {-1, -2}, {0, -2},  {1, -2}, {2, -2}, {-2, 0},  {-1, 0}};
const float kW[4][12] = {{},
                         {0, 1, 5, 3, 0, 0, 0, 0, 0, 0, 0, 7},
                         {3, 5, 7, 5, 3, 1, 3, 5, 3, 1, 5, 7},
                         {2, 4, 8, 4, 2, 1, 2, 4, 2, 1, 4, 8}};

TpxStatus reduceModel(const Export& e, const Args& a) {
    const int type = int(a.code[1]), levels = int(a.code[2]);
    const Elem se = e.shape.src.elem, de = e.shape.dst.elem;
    const int pixel = e.shape.src.plane[0].unitBytes / elemBytes(se), colours = e.shape.dst.alphaByte >= 0 ? 3 : pixel;
    const float L = float(levels - 1), rL = 1.0f / L, D = de == Elem::U8 ? 255.0f : 65535.0f;
    const float step = D / L, inv = L * (1.0f / D), offset = de == Elem::S16 ? 32768.0f : 0.0f;
    const float scale = type == 1 ? 0.0625f : type == 2 ? float(1.0 / 48) : float(1.0 / 42);
    static const int kMatrix[4][4] = {{0, 8, 2, 10}, {12, 4, 14, 6}, {3, 11, 1, 9}, {15, 7, 13, 5}};
    for (int c = 0; c < colours; ++c) {
        std::vector<float> err(size_t(a.width * a.height), 0.0f);
        auto errAt = [&](int64_t x, int64_t y) {
            return x < 0 || x >= a.width || y < 0 ? 0.0f : err[size_t(y * a.width + x)];
        };
        for (int64_t y = 0; y < a.height; ++y)
            for (int64_t x = 0; x < a.width; ++x) {
                const double s = sampleAt(e, a, false, x, y, c);
                float out;
                if (type == 0) {
                    const float xn = normalisedOf(se, s);
                    float q = std::trunc(L * xn) * rL;
                    if (0.5f * rL < xn - q) q = q + rL;
                    out = saturate(q * D, D);
                } else {
                    float v = se == Elem::U8 && de == Elem::U8 ? float(s) : normalisedOf(se, s) * D;
                    const bool diffused = type != 4;
                    if (diffused) {
                        float sum = 0.0f;  // adding the zero weights changes no sum
                        for (int k = 0; k < 12; ++k) sum = sum + kW[type][k] * errAt(x + kAt[k][0], y + kAt[k][1]);
                        v = v + sum * scale;
                    }
                    float q = std::trunc(v * inv) * step;
                    if ((diffused ? step * 0.5f : float(kMatrix[y % 4][x % 4]) / 15.0f * step) < v - q) q = q + step;
                    if (diffused && !(v < D && v >= 0.0f)) out = v >= D ? D : 0.0f;  // passes on no error
                    else out = saturate(q, D), err[size_t(y * a.width + x)] = v - q;
                }
                put(e, a, x, y, c, out - offset);
            }
    }
    return tpxStatusOk;
}

TpxStatus bitsModel(const Export& e, const Args& a) {
    const int64_t offset = a.code[0];
    const int type = int(a.code[3]), threshold = int(a.code[4]);
    std::vector<int32_t> err(size_t(a.width * a.height), 0);
    auto errAt = [&](int64_t x, int64_t y) { return x < 0 || x >= a.width || y < 0 ? 0 : err[size_t(y * a.width + x)]; };
    const View<uint8_t> d = out<uint8_t>(e, a, 0);
    for (int64_t y = 0; y < a.height; ++y)
        for (int64_t x = 0; x < a.width; ++x) {
            const int s = int(sampleAt(e, a, false, x, y, 0));
            bool bit = s > threshold;
            if (type == 3) {
                int32_t sum = 0;
                for (int k = 0; k < 12; ++k) sum += int32_t(kW[3][k]) * errAt(x + kAt[k][0], y + kAt[k][1]);
                const int32_t v = s * 8192 + sum / 42;
                bit = v > threshold * 8192;
                err[size_t(y * a.width + x)] = v - (bit ? 255 * 8192 : 0);
            }
            const int64_t at = offset + x;
            const uint8_t mask = uint8_t(0x80 >> (at % 8)), old = d(at / 8, y);
            d.set(at / 8, y, uint8_t(bit ? old | mask : old & ~mask));
        }
    return tpxStatusOk;
}

TpxStatus toneModel(const Export& e, const Args& a) {
    const bool linear = has(e, "Linear");
    float m = float(sampleAt(e, a, false, 0, 0, 0));
    double sum = 0;
    for (int64_t y = 0; y < a.height; ++y)
        for (int64_t x = 0; x < a.width; ++x) {
            const float s = float(sampleAt(e, a, false, x, y, 0));
            m = std::isnan(s) || std::isnan(m) ? NAN : std::max(m, s);
            sum += s;
        }
    const double stat = linear ? double(m) : 2.0 * (sum / double(a.width * a.height));
    if (stat < 0) return tpxStatusNoOperation;
    const bool zero = !(stat > 1.1754944e-38);
    const float r = linear ? 1.0f / m : float(127.5 / (stat / 2));
    for (int64_t y = 0; y < a.height; ++y)
        for (int64_t x = 0; x < a.width; ++x) {
            const float s = float(sampleAt(e, a, false, x, y, 0));
            const float t = linear ? (255.0f * s) * r : r * s;
            put(e, a, x, y, 0, zero || !(std::fabs(t) < 2147483648.0f) ? 0
                               : linear ? int(int32_t(t)) & 255 : t >= 255.0f ? 255 : t >= 1.0f ? int(t) : 0);
        }
    return tpxStatusOk;
}

TEST(ReduceBitsToneMap, EveryMemberMatchesModel) {
    expectFamily("Bit-depth reduction and tone mapping", 35, [](const Export& e) {
        if (has(e, "ReduceBits_8u1u")) return Model{e.name, bitsModel};
        // The mean's sum may group differently: one code either way.
        if (has(e, "ToneMap")) return Model{e.name, toneModel, has(e, "Mean") ? 1.0 : 0.0};
        return Model{e.name, reduceModel};
    });
}

TEST(ReduceBitsToneMap, StatedCases) {
    uint8_t ramp[256], out[256];
    for (int i = 0; i < 256; ++i) ramp[i] = uint8_t(i);
    std::vector<uint8_t> buffer(8192);
    // Levels 1 fail (the check order table tries 257); type 0 needs no buffer, even with noise.
    EXPECT_EQ(tpxiReduceBits_8u_C1R(ramp, 16, out, 16, {16, 1}, 0, 0, 1, nullptr), tpxStatusBadLevels);
    EXPECT_EQ(tpxiReduceBits_8u_C1R(ramp, 16, out, 16, {16, 1}, 50, 0, 4, nullptr), tpxStatusOk);
    // Sizes, then the query's checks in order (each case also failing every later check).
    int size = -1;
    EXPECT_TRUE(tpxiReduceBitsGetBufferSize(3, 100, 50, 0, &size) == tpxStatusOk && size == 0);
    EXPECT_TRUE(tpxiReduceBitsGetBufferSize(4, 100, 0, 1, &size) == tpxStatusOk && size == 8 * 100 + 16 + 64);
    EXPECT_TRUE(tpxiReduceBitsGetBufferSize(9, 100, 1, 3, &size) == tpxStatusOk && size == 12 * 100 + 48 + 128 + 6144 + 64);
    EXPECT_EQ(tpxiReduceBitsGetBufferSize(2, 0, 101, 5, nullptr), tpxStatusNullPtr);
    EXPECT_EQ(tpxiReduceBitsGetBufferSize(2, 0, 101, 5, &size), tpxStatusBadSize);
    EXPECT_EQ(tpxiReduceBitsGetBufferSize(2, 100, 101, 5, &size), tpxStatusBadChannels);
    EXPECT_EQ(tpxiReduceBitsGetBufferSize(1, 100, -1, 5, &size), tpxStatusBadNoise);
    EXPECT_EQ(tpxiReduceBitsGetBufferSize(1, 100, 0, -1, &size), tpxStatusBadDitherType);
    // Half a step rounds down without dither (levels 3: steps of 0.5).
    const float halves[2] = {0.25f, std::nextafter(0.25f, 1.0f)};
    EXPECT_EQ(tpxiReduceBits_32f8u_C1R(halves, 8, out, 2, {2, 1}, 0, 0, 3, nullptr), tpxStatusOk);
    EXPECT_TRUE(out[0] == 0 && out[1] == 127);
    // Ordered: the threshold at row 3, column 0 is a whole step: 254 stays 0 there.
    const std::vector<uint8_t> high(16, 254);
    EXPECT_EQ(tpxiReduceBits_8u_C1R(high.data(), 4, out, 4, {4, 4}, 0, 4, 2, nullptr), tpxStatusOk);
    EXPECT_TRUE(out[12] == 0 && out[1] == 255);
    // A saturated row passes no error: the row below it quantises as a first
    // row. (With 8 levels the in-range arithmetic would give 255 as 254.)
    uint8_t two[2 * 8], alone[8], twoOut[2 * 8];
    for (int i = 0; i < 8; ++i) two[i] = 255, two[8 + i] = alone[i] = uint8_t(37 * i + 20);
    for (int type = 1; type <= 3; ++type) {
        ASSERT_EQ(tpxiReduceBits_8u_C1R(two, 8, twoOut, 8, {8, 2}, 0, type, 8, buffer.data()), tpxStatusOk);
        ASSERT_EQ(tpxiReduceBits_8u_C1R(alone, 8, out, 8, {8, 1}, 0, type, 8, buffer.data()), tpxStatusOk);
        EXPECT_TRUE(std::memcmp(twoOut + 8, out, 8) == 0 && std::memcmp(twoOut, two, 8) == 0) << type;
    }
    // Noise: the same call gives the same bytes; its output keeps to the levels.
    uint8_t n2[256];
    for (uint8_t* d : {out, n2}) tpxiReduceBits_8u_C1R(ramp, 16, d, 16, {16, 16}, 40, 1, 5, buffer.data());
    EXPECT_EQ(0, std::memcmp(out, n2, sizeof n2));
    for (uint8_t v : out) EXPECT_TRUE(v == 0 || v == 63 || v == 127 || v == 191 || v == 255) << int(v);
}

TEST(ReduceBitsToneMap, ToneMapStatedCases) {
    auto map = [](bool linear, std::vector<float> s, uint8_t fill = 9) {
        std::vector<uint8_t> d(s.size(), fill);
        const int w = int(s.size());
        const TpxStatus st = linear ? tpxiToneMapLinear_32f8u_C1R(s.data(), 4 * w, d.data(), w, {w, 1})
                                    : tpxiToneMapMean_32f8u_C1R(s.data(), 4 * w, d.data(), w, {w, 1});
        d.push_back(uint8_t(st + 100));  // the status last, offset
        return d;
    };
    using V = std::vector<uint8_t>;
    EXPECT_EQ(map(true, {0, 0, 0}), (V{0, 0, 0, 100}));
    EXPECT_EQ(map(true, {-3, -1, -2}), (V{9, 9, 9, 101}));
    EXPECT_EQ(map(true, {2, 4, -1}), (V{127, 255, 193, 100}));  // the low byte of -63
    EXPECT_EQ(map(false, {1, 3, 2}), (V{63, 191, 127, 100}));
    EXPECT_EQ(map(false, {1, 1, 10}).at(2), 255);
    EXPECT_EQ(map(false, {5}), (V{127, 100}));
    EXPECT_EQ(map(false, {1, NAN, 2}), (V{0, 0, 0, 100}));
    std::vector<float> wide(40, 1.0f);  // a NaN among whole vectors, a larger number after it
    wide[20] = NAN, wide[30] = 4.0f;
    EXPECT_EQ(map(true, wide), map(true, std::vector<float>(40, 0.0f)));  // zeros, like all zero
}

// Large 8u images take faster paths (byte tables; two 16-bit products at
// AVX2) that must give the bytes of the per-sample arithmetic, which bands of
// four rows too small for them still use.
TEST(ReduceBitsToneMap, LargeImagesAsSmallBands) {
    using Fn = TpxStatus (*)(const Tpx8u*, int, Tpx8u*, int, TpxSize, int, int, int, Tpx8u*);
    const int w = 500, h = 528;
    std::vector<uint8_t> src(size_t(w) * h * 4), whole(src.size(), 7), bands(src.size(), 7);
    for (size_t i = 0; i < src.size(); ++i) src[i] = uint8_t((i * 2654435761u) >> 13);
    for (const auto& [f, k] : {std::pair<Fn, int>{tpxiReduceBits_8u_C1R, 1}, {tpxiReduceBits_8u_C3R, 3}, {tpxiReduceBits_8u_AC4R, 4}})
        for (int type : {0, 4})
            for (int levels : {2, 5, 16, 93, 256}) {
                const int step = w * k;
                ASSERT_EQ(f(src.data(), step, whole.data(), step, {w, h}, 0, type, levels, nullptr), tpxStatusOk);
                for (int y = 0; y < h; y += 4)
                    f(src.data() + y * step, step, bands.data() + y * step, step, {w, 4}, 0, type, levels, nullptr);
                EXPECT_EQ(whole, bands) << k << " channels, type " << type << ", " << levels << " levels";
            }
}

}  // namespace
