// Subsampled YCbCr, YCrCb and CbYCr to RGB and BGR: every decoder against a
// per-pixel model written from the formulas (whole chroma blocks only; a last
// odd column or row, or the width % 4 tail of 4:1:1, stays unwritten), and
// worked values.
#include "support/harness.hpp"
#include "tpxcc.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>

using namespace tpxtest;

namespace {

struct Rgb {
    int r, g, b;
};
int clamp8(int v) { return std::min(255, std::max(0, v)); }
int floorDiv65536(int64_t v) { return int(v >= 0 ? v / 65536 : -((-v + 65535) / 65536)); }

// BT.601: 3 fractional bits; t(v, c) = floor(v*128*c / 65536), offsets in 1/8
// without rounding half, truncating shift.
Rgb bt601(int y, int cb, int cr) {
    auto t = [](int v, int c) { return floorDiv65536(int64_t(v) * 128 * c); };
    const int ys = t(y, 4768);
    return {clamp8((ys + t(cr, 6537) - 1783) >> 3), clamp8((ys + 1085 - t(cb, 1606) - t(cr, 3330)) >> 3),
            clamp8((ys + t(cb, 8262) - 2214) >> 3)};
}

// 32-bit references: (k*Y + a*C ... + c) >> 16.
Rgb ref709Csc(int y, int cb, int cr) {
    return {clamp8(floorDiv65536(76284LL * y + 117506LL * cr - 16228544)),
            clamp8(floorDiv65536(76284LL * y - 13959LL * cb - 34996LL * cr + 5078464)),
            clamp8(floorDiv65536(76284LL * y + 138609LL * cb - 18929728))};
}
Rgb ref709Hdtv(int y, int cb, int cr) {
    return {clamp8(floorDiv65536(65536LL * y + 100925LL * cr - 12885632)),
            clamp8(floorDiv65536(65536LL * y - 11993LL * cb - 30081LL * cr + 5418240)),
            clamp8(floorDiv65536(65536LL * y + 119013LL * cb - 15200896))};
}

// 16-bit block arithmetic: m(x, c) = floor(x*c / 65536) of values prescaled by
// 128; (sum + 8) >> 4.
Rgb block709(int y, int cb, int cr, int luma, int black, int kR, int kGb, int kGr, int kB) {
    auto m = [](int x, int c) { return floorDiv65536(int64_t(x) * c); };
    const int ys = m((y - black) * 128, luma), cbs = (cb - 128) * 128, crs = (cr - 128) * 128;
    auto out = [](int v) { return clamp8((v + 8) >> 4); };
    return {out(ys + m(crs, kR)), out(ys - m(cbs, kGb) - m(crs, kGr)), out(ys + m(cbs, kB))};
}

bool has(const Export& e, const char* word) { return std::strstr(e.name, word) != nullptr; }

// Pixels of whole 8-pixel blocks of the converted width take the BT.709 block
// arithmetic, the rest the reference; the packed full-range members take the
// reference throughout.
Rgb decode(const Export& e, int64_t x, int64_t convW, int y, int cb, int cr) {
    const bool block = x < convW / 8 * 8;
    if (has(e, "709CSC")) return block ? block709(y, cb, cr, 9535, 16, 14688, 1745, 4375, 17326) : ref709Csc(y, cb, cr);
    if (has(e, "709HDTV") && e.shape.src.pass == Pass::Single) return ref709Hdtv(y, cb, cr);
    if (has(e, "709HDTV")) return block ? block709(y, cb, cr, 8192, 0, 12616, 1499, 3760, 14877) : ref709Hdtv(y, cb, cr);
    return bt601(y, cb, cr);
}

// Luma and chroma of pixel (x, y) as the member reads them.
void sample(const Export& e, const Args& a, int64_t x, int64_t y, int64_t convW, int64_t convH, int& Y, int& cb,
            int& cr) {
    const ImageShape& s = e.shape.src;
    const View<uint8_t> p0 = in<uint8_t>(e, a, 0);
    if (s.pass == Pass::Single) {  // packed pairs: Y0 Cb Y1 Cr, Y0 Cr Y1 Cb or Cb Y0 Cr Y1
        const bool cbycr = has(e, "CbYCr"), crFirst = has(e, "YCrCb");
        const int64_t at = 4 * (x / 2);
        Y = p0(at + (cbycr ? 1 : 0) + 2 * (x & 1), y);
        cb = p0(at + (cbycr ? 0 : crFirst ? 3 : 1), y);
        cr = p0(at + (cbycr ? 2 : crFirst ? 1 : 3), y);
        return;
    }
    Y = p0(x, y);
    if (s.pass == Pass::TwoPlane) {
        const int cbAt = has(e, "YCrCb") ? 1 : 0;
        cb = in<uint8_t>(e, a, 1)(2 * (x / 2) + cbAt, y / 2);
        cr = in<uint8_t>(e, a, 1)(2 * (x / 2) + 1 - cbAt, y / 2);
        return;
    }
    const View<uint8_t> first = in<uint8_t>(e, a, 1), second = in<uint8_t>(e, a, 2);  // Cb, Cr or Cr, Cb
    const int h = s.plane[1].hsub, v = s.plane[1].vsub;
    if (has(e, "Filter")) {
        // Nearest sample weighted 9, the horizontal and vertical neighbours 3,
        // the diagonal 1; neighbours beyond the plane edge clamp to it.
        const int64_t cw = convW / 2, ch = convH / 2, i = x / 2, n = y / 2;
        const int64_t j = (x & 1) ? std::min(i + 1, cw - 1) : std::max<int64_t>(i - 1, 0);
        const int64_t f = (y & 1) ? std::min(n + 1, ch - 1) : std::max<int64_t>(n - 1, 0);
        auto filt = [&](const View<uint8_t>& p) { return (9 * p(i, n) + 3 * p(j, n) + 3 * p(i, f) + p(j, f) + 8) >> 4; };
        cr = filt(first), cb = filt(second);
        return;
    }
    const bool crFirst = has(e, "YCrCb");
    cb = (crFirst ? second : first)(x / h, y / v);
    cr = (crFirst ? first : second)(x / h, y / v);
}

TpxStatus model(const Export& e, const Args& a) {
    const ImageShape& s = e.shape.src;
    const int h = s.pass == Pass::Single ? 2 : s.plane[1].hsub, v = s.pass == Pass::Single ? 1 : s.plane[1].vsub;
    const int64_t convW = a.width / h * h, convH = a.height / v * v;
    const bool bgr = has(e, "ToBGR"), planes = e.shape.dst.planes == 3;
    const int ch = planes ? 1 : e.shape.dst.plane[0].unitBytes;
    for (int64_t y = 0; y < convH; ++y)
        for (int64_t x = 0; x < convW; ++x) {
            int Y, cb, cr;
            sample(e, a, x, y, convW, convH, Y, cb, cr);
            const Rgb c = decode(e, x, convW, Y, cb, cr);
            const int out[4] = {bgr ? c.b : c.r, c.g, bgr ? c.r : c.b, int(a.code[0] & 0xFF)};
            for (int k = 0; k < (planes ? 3 : ch); ++k) put(e, a, x, y, k, out[k]);
        }
    return v == 2 && ((a.width | a.height) & 1) ? tpxStatusOddSize : tpxStatusOk;
}

constexpr const char* kFamily = "Subsampled YCbCr to RGB";

TEST(YCbCrSubToRgb, EveryDecoderMatchesModel) {
    expectFamily(kFamily, 33, [](const Export& e) { return Model{e.name, model}; });
}

// The offsets carry no rounding half: full-scale luma truncates to 254 in B
// and R. Two pixels of one pair differ only through their luma.
TEST(YCbCrSubToRgb, WhiteTruncatesAndPairsShareChroma) {
    const Tpx8u src[8] = {235, 128, 235, 128, 16, 128, 235, 128};
    Tpx8u dst[16] = {};
    ASSERT_EQ(tpxiYCbCr422ToBGR_8u_C2C4R(src, 8, dst, 16, {4, 1}, 0x80), tpxStatusOk);
    const Tpx8u want[16] = {254, 255, 254, 0x80, 254, 255, 254, 0x80, 0, 0, 0, 0x80, 254, 255, 254, 0x80};
    EXPECT_TRUE(std::equal(dst, dst + 16, want));
    const Tpx8u pair[4] = {60, 200, 180, 40};  // Y0 Cb Y1 Cr
    Tpx8u rgb[6];
    ASSERT_EQ(tpxiYCbCr422ToRGB_8u_C2C3R(pair, 4, rgb, 6, {2, 1}), tpxStatusOk);
    const Rgb p0 = bt601(60, 200, 40), p1 = bt601(180, 200, 40);
    const Tpx8u both[6] = {Tpx8u(p0.r), Tpx8u(p0.g), Tpx8u(p0.b), Tpx8u(p1.r), Tpx8u(p1.g), Tpx8u(p1.b)};
    EXPECT_TRUE(std::equal(rgb, rgb + 6, both));
}

// Y = 16 with neutral chroma is black in every studio-range member; the
// full-range BT.709 members give black for Y = 0. A 3x3 4:2:0 image writes
// its top-left 2x2 block and reports +35.
TEST(YCbCrSubToRgb, BlackAndOddSizes) {
    for (const Export* m : membersOf(kFamily)) {
        const Export& e = *m;
        const int black = has(e, "709HDTV") ? 0 : 16;
        Buffers b(e, 12, 4, 2);
        for (int p = 0; p < b.planes(0); ++p)
            for (int64_t y = 0; y < b.rows(0, p); ++y)
                for (int64_t i = 0; i < b.rowBytes(0, p); ++i) {
                    const bool luma = e.shape.src.pass == Pass::Single ? i % 2 == (has(e, "CbYCr") ? 1 : 0) : p == 0;
                    b.row(0, p, y)[i] = uint8_t(luma ? black : 128);
                }
        ASSERT_EQ(e.call(b.args), tpxStatusOk) << e.name;
        const int ch = e.shape.dst.planes == 3 ? 1 : e.shape.dst.plane[0].unitBytes;
        for (int p = 0; p < b.planes(1); ++p)
            for (int64_t i = 0; i < b.rowBytes(1, p); ++i)
                ASSERT_EQ(b.row(1, p, 3)[i], ch == 4 && i % 4 == 3 ? int(b.args.code[0] & 0xFF) : 0) << e.name;
    }
    const Export& e = *findExport("tpxiYCbCr420ToBGR_8u_P3C4R");
    Buffers b(e, 3, 3, 5);
    std::memset(b.row(0, 0, 0), 235, 3), std::memset(b.row(0, 0, 1), 235, 3);
    b.row(0, 1, 0)[0] = b.row(0, 2, 0)[0] = 128;
    b.args.code[0] = 0x42;
    ASSERT_EQ(e.call(b.args), tpxStatusOddSize);
    const uint8_t want[8] = {254, 255, 254, 0x42, 254, 255, 254, 0x42};
    EXPECT_TRUE(std::equal(want, want + 8, b.row(1, 0, 0)) && std::equal(want, want + 8, b.row(1, 0, 1)));
}

}  // namespace
