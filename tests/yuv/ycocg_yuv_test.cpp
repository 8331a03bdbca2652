// YCoCg, analog YUV, v210 and 12-bit packing against per-pixel models
// written from the formulas, and the stated values.
#include "support/harness.hpp"
#include "support/roundtrips.hpp"
#include "tpxcc.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <string>

using namespace tpxtest;

namespace {

bool has(const Export& e, const char* w) { return std::strstr(e.name, w) != nullptr; }
int64_t clampTo(int64_t v, int64_t lo, int64_t hi) { return std::min(std::max(v, lo), hi); }

// Sample i of an image's element type read and written as a number (8-bit
// and 16s saturated, 16u and 32s wrapped).
int64_t get(Elem el, const View<uint8_t>& v, int64_t i, int64_t y) {
    return int64_t(loadSample(el, v.row0 + y * v.step + i * elemBytes(el)));
}
void put(Elem el, const View<uint8_t>& v, int64_t i, int64_t y, int64_t x) {
    const int64_t s = el == Elem::U8 ? clampTo(x, 0, 255) : el == Elem::S16 ? clampTo(x, -32768, 32767)
                                                          : el == Elem::U16 ? x & 0xFFFF : int32_t(x);
    storeSample(el, v.row0 + y * v.step + i * elemBytes(el), double(s));
}

// ---- YCoCg ------------------------------------------------------------------------
TpxStatus ycocg(const Export& e, const Args& a) {
    const bool fwd = e.shape.src.pass == Pass::Single, rev = has(e, "_Rev"), rgbOrder = has(e, "RGB");
    if (!fwd && has(e, "YCoCgToRGB") && (a.width < 1 || a.height < 1)) return tpxStatusOk;
    const ImageShape& px = fwd ? e.shape.src : e.shape.dst;
    const int ch = px.plane[0].unitBytes / elemBytes(px.elem);
    const Elem pl = fwd ? e.shape.dst.elem : e.shape.src.elem;
    const int bAt = rgbOrder ? 2 : 0, rAt = 2 - bAt;
    const int64_t off = pl == Elem::U8 ? 128 : 0;
    for (int64_t y = 0; y < a.height; ++y)
        for (int64_t x = 0; x < a.width; ++x) {
            if (fwd) {
                const View<uint8_t> s = in<uint8_t>(e, a, 0);
                const int64_t B = get(px.elem, s, ch * x + bAt, y), G = get(px.elem, s, ch * x + 1, y),
                              R = get(px.elem, s, ch * x + rAt, y);
                int64_t Y, Co, Cg;
                if (rev) {
                    Co = R - B;
                    const int64_t t = B + (Co >> 1);
                    Cg = G - t;
                    Y = t + (Cg >> 1);
                } else {
                    Y = (R + 2 * G + B + 2) >> 2, Co = (R - B + 1) >> 1, Cg = (2 * G - R - B + 2) >> 2;
                }
                put(pl, out<uint8_t>(e, a, 0), x, y, Y);
                put(pl, out<uint8_t>(e, a, 1), x, y, std::min(Co + off, off ? int64_t(255) : Co + off));
                put(pl, out<uint8_t>(e, a, 2), x, y, std::min(Cg + off, off ? int64_t(255) : Cg + off));
            } else {
                const int64_t Y = get(pl, in<uint8_t>(e, a, 0), x, y), Co = get(pl, in<uint8_t>(e, a, 1), x, y) - off,
                              Cg = get(pl, in<uint8_t>(e, a, 2), x, y) - off;
                int64_t R, G, B;
                if (rev) {
                    const int64_t t = Y - (Cg >> 1);
                    G = Cg + t, B = t - (Co >> 1), R = B + Co;
                } else {
                    R = Y + Co - Cg, G = Y + Cg, B = Y - Co - Cg;
                }
                const View<uint8_t> d = out<uint8_t>(e, a, 0);
                put(px.elem, d, ch * x + bAt, y, B), put(px.elem, d, ch * x + 1, y, G), put(px.elem, d, ch * x + rAt, y, R);
                if (ch == 4) put(px.elem, d, ch * x + 3, y, px.elem == Elem::U8 ? a.code[0] & 0xFF : int16_t(a.code[0]));
            }
        }
    return tpxStatusOk;
}

// ---- Analog YUV -----------------------------------------------------------------------
int c255(int64_t v) { return int(clampTo(v, 0, 255)); }
int64_t lumaSum(int64_t r, int64_t g, int64_t b) { return 19595 * r + 38470 * g + 7471 * b; }

// Channel c of pixel x: planes, interleaved pixels (BGR members reversed), or
// packed Y U Y V pairs (channel 0 luma, 1 U, 2 V of the pixel's pair).
struct Side {
    const Export& e;
    const Args& a;
    bool dst;
    const ImageShape& im() const { return dst ? e.shape.dst : e.shape.src; }
    View<uint8_t> view(int p) const { return dst ? out<uint8_t>(e, a, p) : in<uint8_t>(e, a, p); }
    int64_t at(int c, int64_t x, int64_t y, int hs = 1, int vs = 1) const {
        const ImageShape& s = im();
        if (s.pass != Pass::Single) return 0;
        if (s.plane[0].hsub == 2) return c == 0 ? 2 * x : 4 * (x / 2) + (c == 1 ? 1 : 3);
        const bool bgr = has(e, "BGR");
        (void)hs, (void)vs, (void)y;
        return x * s.plane[0].unitBytes + (bgr && c < 3 ? 2 - c : c);
    }
    uint8_t& ref(int c, int64_t x, int64_t y) const {
        const ImageShape& s = im();
        if (s.pass == Pass::Single) return view(0).row0[y * view(0).step + at(c, x, y)];
        const int hs = c ? s.plane[c].hsub : 1, vs = c ? s.plane[c].vsub : 1;
        return view(c).row0[(y / vs) * view(c).step + x / hs];
    }
};

TpxStatus analog(const Export& e, const Args& a) {
    const Side s{e, a, false}, d{e, a, true};
    const bool enc = has(e, "ToYUV"), is420 = has(e, "420"), is422 = has(e, "422");
    const int64_t W = a.width, H = a.height;
    if (!is420 && !is422) {
        for (int64_t y = 0; y < H; ++y)
            for (int64_t x = 0; x < W; ++x) {
                const int64_t p = s.ref(0, x, y), q = s.ref(1, x, y), r = s.ref(2, x, y);
                if (enc) {
                    const int64_t S = lumaSum(p, q, r);
                    d.ref(0, x, y) = uint8_t((S + 32768) >> 16);
                    d.ref(1, x, y) = uint8_t(((((r << 16) - S + 32768) >> 16) * 32244 >> 16) + 128);
                    d.ref(2, x, y) = uint8_t(c255(((((p << 16) - S + 32768) >> 16) * 57475 >> 16) + 128));
                    if (has(e, "AC4P4R")) d.ref(3, x, y) = s.ref(3, x, y);
                } else {
                    const int64_t Y = p << 16, U = q - 128, V = r - 128;
                    d.ref(0, x, y) = uint8_t(c255((Y + 74711 * V + 32768) >> 16));
                    d.ref(1, x, y) = uint8_t(c255((Y - 25821 * U - 38076 * V) >> 16));
                    d.ref(2, x, y) = uint8_t(c255((Y + 133169 * U + 32768) >> 16));
                    if (has(e, "C3C4R")) d.ref(3, x, y) = uint8_t(a.code[0]);
                }
            }
        return tpxStatusOk;
    }
    const int64_t bw = 2, bh = is420 ? 2 : 1, shift = is420 ? 18 : 17, round = is420 ? 131071 : 65535;
    for (int64_t by = 0; by + bh <= H; by += bh)
        for (int64_t bx = 0; bx + bw <= W; bx += bw) {
            if (enc) {
                int64_t SB = 0, SR = 0, SS = 0;
                for (int64_t y = by; y < by + bh; ++y)
                    for (int64_t x = bx; x < bx + bw; ++x) {
                        const int64_t r = s.ref(0, x, y), g = s.ref(1, x, y), b = s.ref(2, x, y), S = lumaSum(r, g, b);
                        d.ref(0, x, y) = uint8_t(S >> 16);
                        SB += b, SR += r, SS += S;
                    }
                d.ref(1, bx, by) = uint8_t(((((SB << 16) - SS + round) >> 16) * 32244 >> shift) + 128);
                d.ref(2, bx, by) = uint8_t(c255(((((SR << 16) - SS + round) >> 16) * 57475 >> shift) + 128));
            } else {
                const int64_t U = s.ref(1, bx, by) - 128, V = s.ref(2, bx, by) - 128;
                for (int64_t y = by; y < by + bh; ++y)
                    for (int64_t x = bx; x < bx + bw; ++x) {
                        const int64_t Y = s.ref(0, x, y) << 16;
                        d.ref(0, x, y) = uint8_t(c255((Y + 74711 * V) >> 16));
                        d.ref(1, x, y) = uint8_t(c255((Y - 25821 * U - 38076 * V) >> 16));
                        d.ref(2, x, y) = uint8_t(c255((Y + 133169 * U) >> 16));
                    }
            }
        }
    // The packed 4:2:2 decoder's odd last pixel: its U byte for both chroma.
    if (!enc && is422 && e.shape.src.pass == Pass::Single && W % 2)
        for (int64_t y = 0; y < H; ++y) {
            const int64_t x = W - 1, Y = s.ref(0, x, y) << 16, c = s.ref(1, x, y) - 128;
            d.ref(0, x, y) = uint8_t(c255((Y + 74711 * c) >> 16));
            d.ref(1, x, y) = uint8_t(c255((Y - 63897 * c) >> 16));
            d.ref(2, x, y) = uint8_t(c255((Y + 133169 * c) >> 16));
        }
    return is420 && (W | H) & 1 ? tpxStatusOddSize : tpxStatusOk;
}

// ---- v210 and 12-bit ---------------------------------------------------------------
TpxStatus v210(const Export& e, const Args& a) {
    const View<uint32_t> s = in<uint32_t>(e, a, 0);
    const View<uint16_t> d = out<uint16_t>(e, a, 0);
    static const int yw[6] = {0, 1, 1, 2, 3, 3}, ya[6] = {10, 0, 20, 10, 0, 20};
    static const int bw[3] = {0, 1, 2}, ba[3] = {0, 10, 20}, rw[3] = {0, 2, 3}, ra[3] = {20, 0, 10};
    for (int64_t y = 0; y < a.height; ++y)
        for (int64_t x = 0; x < a.width; ++x) {
            const int64_t g = x / 6, i = x % 6, k = i / 2;
            auto f = [&](int w, int at) { return int(s(4 * g + w, y) >> at & 1023); };
            const int Y = f(yw[i], ya[i]), Cb = f(bw[k], ba[k]), Cr = f(rw[k], ra[k]);
            if (has(e, "Gray")) {
                d.set(x, y, uint16_t(Y));
                continue;
            }
            const float fy = float(Y), cb = float(Cb - 512), cr = float(Cr - 512);
            auto lim = [](float v, int top) { return int(clampTo(int64_t(std::nearbyint(v)), 0, top)); };
            const int R = lim(fy + 1.54f * cr, 31), G = lim((fy - 0.459f * cr) - 0.183f * cb, 63),
                      B = lim(fy + 1.816f * cb, 31);
            d.set(x, y, uint16_t(has(e, "RGB") ? R | G << 5 | B << 11 : B | G << 5 | R << 11));
        }
    return tpxStatusOk;
}

TpxStatus twelve(const Export& e, const Args& a) {
    const View<uint8_t> s = in<uint8_t>(e, a, 0), d = out<uint8_t>(e, a, 0);
    for (int64_t y = 0; y < a.height; ++y)
        for (int64_t x = 0; x < a.width; ++x) {
            const int64_t at = 3 * (x / 2);
            if (has(e, "Pack")) {
                const unsigned v = unsigned(s(2 * x, y) | s(2 * x + 1, y) << 8) & 0xFFF;
                if (x % 2 == 0) {
                    d.set(at, y, uint8_t(v >> 4));
                    d.set(at + 1, y, uint8_t((v & 15) << 4 | (x + 1 < a.width ? (s(2 * x + 3, y) & 15) : 0)));
                } else {
                    d.set(at + 2, y, uint8_t(v));
                }
            } else {
                const unsigned v = x % 2 == 0 ? unsigned(s(at, y) << 4 | s(at + 1, y) >> 4)
                                              : unsigned((s(at + 1, y) & 15) << 8 | s(at + 2, y));
                d.set(2 * x, y, uint8_t(v)), d.set(2 * x + 1, y, uint8_t(v >> 8));
            }
        }
    return tpxStatusOk;
}

TEST(YCoCgYuv, EveryMemberMatchesModel) {
    expectFamily("v210, 12-bit, YCoCg and analog YUV", 63, [](const Export& e) {
        return Model{e.name, has(e, "v210") ? v210 : has(e, "12") ? twelve : has(e, "YCoCg") ? ycocg : analog};
    });
}

// One pixel (a 64 x 2 image of it, so that vector rows take it) through a
// member: its destination samples.
std::vector<int64_t> onePixel(const char* name, std::vector<double> values) {
    const Export& e = *findExport(name);
    Buffers b = imageOf(e, 64, 2, 3, [&](int c, int64_t, int64_t) { return values[size_t(c)]; });
    EXPECT_GE(e.call(b.args), 0) << name;
    std::vector<int64_t> got;
    for (int k = 0; k < 3; ++k) got.push_back(int64_t(sampleAt(e, b.args, true, 0, 0, k)));
    return got;
}

TEST(YCoCgYuv, StatedValues) {
    using V = std::vector<int64_t>;
    // Pure red (B 0, G 0, R 255 in BGR order): plain Y 64, Co 128, Cg -64;
    // reversible Co 255, Cg -127, Y 63. Gray stays gray with zero chroma.
    EXPECT_EQ(onePixel("tpxiBGRToYCoCg_8u16s_C3P3R", {0, 0, 255}), (V{64, 128, -64}));
    EXPECT_EQ(onePixel("tpxiBGRToYCoCg_Rev_8u16s_C3P3R", {0, 0, 255}), (V{63, 255, -127}));
    EXPECT_EQ(onePixel("tpxiBGRToYCoCg_8u16s_C3P3R", {77, 77, 77}), (V{77, 0, 0}));
    // Analog YUV: black and white; red's Y 76 and V saturated; the decoder's
    // (255, 131, 255) from Y 255, U 255, V 255.
    EXPECT_EQ(onePixel("tpxiRGBToYUV_8u_C3R", {0, 0, 0}), (V{0, 128, 128}));
    EXPECT_EQ(onePixel("tpxiRGBToYUV_8u_C3R", {255, 255, 255}), (V{255, 128, 128}));
    EXPECT_EQ(onePixel("tpxiRGBToYUV_8u_C3R", {255, 0, 0}).at(0), 76);
    EXPECT_EQ(onePixel("tpxiRGBToYUV_8u_C3R", {255, 0, 0}).at(2), 255);
    // R 1, G 53, B 185: S + 32768 = 53 * 65536 exactly, so both chroma
    // differences gain one: U = (133 * 32244 >> 16) + 128, V = (-51 * 57475 >> 16) + 128.
    EXPECT_EQ(onePixel("tpxiRGBToYUV_8u_C3R", {1, 53, 185}), (V{53, 193, 83}));
    EXPECT_EQ(onePixel("tpxiYUVToRGB_8u_C3R", {255, 255, 255}), (V{255, 131, 255}));
    EXPECT_EQ(onePixel("tpxiYUVToRGB_8u_C3R", {0, 128, 128}), (V{0, 0, 0}));
    // 4:2:0 encoder: four pixels (0, 199, 74) have weighted sums of exactly
    // 501 * 65536, so U is ((4 * 74 - 501) * 65536 + 131071) >> 16 = -204,
    // -204 * 32244 >> 18 = -26, plus 128: 102 (a rounding term one larger gives 103).
    EXPECT_EQ(onePixel("tpxiRGBToYUV420_8u_C3P3R", {0, 199, 74}).at(1), 102);
    // 12-bit: 0xABC and 0x123 pack to 0xAB 0xC1 0x23 and back.
    const uint16_t in12[2] = {0xABC, 0x123};
    uint8_t packed[3] = {};
    uint16_t back[2] = {};
    ASSERT_EQ(tpxiPack_16u12u_C1R(in12, 4, packed, 3, {2, 1}), tpxStatusOk);
    EXPECT_TRUE(packed[0] == 0xAB && packed[1] == 0xC1 && packed[2] == 0x23);
    ASSERT_EQ(tpxiUnpack_12u16u_C1R(packed, 3, back, 4, {2, 1}), tpxStatusOk);
    EXPECT_TRUE(back[0] == 0xABC && back[1] == 0x123);
    // v210: Y 64 with neutral chroma saturates every channel; Y 0 is black.
    for (uint32_t luma : {64u, 0u}) {
        const uint32_t group[4] = {512 | luma << 10 | 512u << 20, luma | 512 << 10 | luma << 20,
                                   512 | luma << 10 | 512u << 20, luma | 512 << 10 | luma << 20};
        uint16_t gray[6], colour[6];
        ASSERT_EQ(tpxiYUV422v210ToGray_709HDTV_32u16u_C3C1(group, 4, gray, 6, {6, 1}), tpxStatusOk);
        ASSERT_EQ(tpxiYUV422v210ToRGB_709HDTV_32u16u_C3(group, 4, colour, 6, {6, 1}), tpxStatusOk);
        for (int i = 0; i < 6; ++i) EXPECT_TRUE(gray[i] == luma && colour[i] == (luma ? 0xFFFF : 0)) << i;
    }
}

// Every 8-bit BGR value through the reversible transform and back.
TEST(YCoCgYuv, ReversibleRestoresEveryColour) {
    std::vector<uint8_t> bgr(256 * 256 * 3), back(bgr.size());
    std::vector<int16_t> p[3];
    for (auto& q : p) q.resize(256 * 256);
    for (int b = 0; b < 256; ++b) {
        for (int i = 0; i < 256 * 256; ++i) bgr[3 * i] = uint8_t(b), bgr[3 * i + 1] = uint8_t(i >> 8), bgr[3 * i + 2] = uint8_t(i);
        int16_t* planes[3] = {p[0].data(), p[1].data(), p[2].data()};
        const int16_t* cplanes[3] = {p[0].data(), p[1].data(), p[2].data()};
        ASSERT_EQ(tpxiBGRToYCoCg_Rev_8u16s_C3P3R(bgr.data(), 3 * 256, planes, 512, {256, 256}), tpxStatusOk);
        ASSERT_EQ(tpxiYCoCgToBGR_Rev_16s8u_P3C3R(cplanes, 512, back.data(), 3 * 256, {256, 256}), tpxStatusOk);
        ASSERT_EQ(bgr, back) << "blue " << b;
    }
}

}  // namespace
