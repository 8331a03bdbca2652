// Encoding a smooth image to subsampled YCbCr and decoding it again stays
// within a few codes of the original. The image's channels change by up to 3
// codes per pixel, so replicating one chroma value over its block costs up to
// about that much on top of the rounding of the encoder and the truncation of
// the decoders: the stated bounds are 3 codes for 4:2:2, 5 for 4:2:0 and 6 for
// 4:1:1.
#include "tpxcc.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

namespace {

constexpr int kW = 64, kH = 48;

// A smooth colour image, 4 bytes per pixel (the fourth is unused), with
// channel values kept inside the range that studio-range YCbCr represents
// without clipping.
std::vector<Tpx8u> smoothImage() {
    std::vector<Tpx8u> img(size_t(kW) * kH * 4);
    for (int y = 0; y < kH; ++y)
        for (int x = 0; x < kW; ++x) {
            Tpx8u* p = &img[(size_t(y) * kW + size_t(x)) * 4];
            p[0] = Tpx8u(40 + 2 * x + y);
            p[1] = Tpx8u(60 + x + 2 * y);
            p[2] = Tpx8u(200 - x - y);
            p[3] = 0;
        }
    return img;
}

struct Planes {
    std::vector<Tpx8u> y = std::vector<Tpx8u>(size_t(kW) * kH), u = y, v = y;
    Tpx8u* p[3] = {y.data(), u.data(), v.data()};
    int step[3] = {kW, kW, kW};
};

// One encoder and its decoder: `channels` is the pixel size of the packed
// source and destination, `bgr` tells the channel order.
struct Trip {
    std::string name;
    int channels;
    bool bgr;
    int tolerance;
    std::function<void(const Tpx8u* src, int srcStep, Tpx8u* dst, int dstStep)> run;
};

int maxError(const std::vector<Tpx8u>& orig, const std::vector<Tpx8u>& out, int channels, bool bgr) {
    int worst = 0;
    for (int y = 0; y < kH; ++y)
        for (int x = 0; x < kW; ++x)
            for (int c = 0; c < 3; ++c) {
                const int want = orig[(size_t(y) * kW + size_t(x)) * 4 + size_t(c)];
                const int oc = bgr ? 2 - c : c;
                const int got = out[(size_t(y) * kW + size_t(x)) * size_t(channels) + size_t(oc)];
                worst = std::max(worst, std::abs(got - want));
            }
    return worst;
}

std::vector<Tpx8u> pack(const std::vector<Tpx8u>& rgba, int channels, bool bgr) {
    std::vector<Tpx8u> out(size_t(kW) * kH * size_t(channels), 0);
    for (size_t i = 0; i < size_t(kW) * kH; ++i)
        for (int c = 0; c < 3; ++c) out[i * size_t(channels) + size_t(bgr ? 2 - c : c)] = rgba[i * 4 + size_t(c)];
    return out;
}

const TpxSize kRoi{kW, kH};

std::vector<Trip> trips() {
    return {
        {"RGB 4:2:0 planar", 3, false, 5,
         [](const Tpx8u* s, int ss, Tpx8u* d, int ds) {
             Planes pl;
             int cs[3] = {kW, kW / 2, kW / 2};
             ASSERT_EQ(tpxiRGBToYCbCr420_8u_C3P3R(s, ss, pl.p, cs, kRoi), 0);
             ASSERT_EQ(tpxiYCbCr420ToRGB_8u_P3C3R(pl.p, cs, d, ds, kRoi), 0);
         }},
        {"BGR 4:2:0 planar", 3, true, 5,
         [](const Tpx8u* s, int ss, Tpx8u* d, int ds) {
             Planes pl;
             int cs[3] = {kW, kW / 2, kW / 2};
             ASSERT_EQ(tpxiBGRToYCbCr420_8u_C3P3R(s, ss, pl.p, cs, kRoi), 0);
             ASSERT_EQ(tpxiYCbCr420ToBGR_8u_P3C3R(pl.p, cs, d, ds, kRoi), 0);
         }},
        {"BGRA 4:2:0 two-plane", 4, true, 5,
         [](const Tpx8u* s, int ss, Tpx8u* d, int ds) {
             Planes pl;
             ASSERT_EQ(tpxiBGRToYCbCr420_8u_AC4P2R(s, ss, pl.p[0], kW, pl.p[1], kW, kRoi), 0);
             ASSERT_EQ(tpxiYCbCr420ToBGR_8u_P2C4R(pl.p[0], kW, pl.p[1], kW, d, ds, kRoi, 255), 0);
         }},
        {"RGB 4:2:2 packed YCbCr", 3, false, 3,
         [](const Tpx8u* s, int ss, Tpx8u* d, int ds) {
             std::vector<Tpx8u> c2(size_t(kW) * kH * 2);
             ASSERT_EQ(tpxiRGBToYCbCr422_8u_C3C2R(s, ss, c2.data(), kW * 2, kRoi), 0);
             ASSERT_EQ(tpxiYCbCr422ToRGB_8u_C2C3R(c2.data(), kW * 2, d, ds, kRoi), 0);
         }},
        {"RGB 4:2:2 packed YCrCb", 3, false, 3,
         [](const Tpx8u* s, int ss, Tpx8u* d, int ds) {
             std::vector<Tpx8u> c2(size_t(kW) * kH * 2);
             ASSERT_EQ(tpxiRGBToYCrCb422_8u_C3C2R(s, ss, c2.data(), kW * 2, kRoi), 0);
             ASSERT_EQ(tpxiYCrCb422ToRGB_8u_C2C3R(c2.data(), kW * 2, d, ds, kRoi), 0);
         }},
        {"RGB 4:2:2 packed CbYCr", 3, false, 3,
         [](const Tpx8u* s, int ss, Tpx8u* d, int ds) {
             std::vector<Tpx8u> c2(size_t(kW) * kH * 2);
             ASSERT_EQ(tpxiRGBToCbYCr422_8u_C3C2R(s, ss, c2.data(), kW * 2, kRoi), 0);
             ASSERT_EQ(tpxiCbYCr422ToRGB_8u_C2C3R(c2.data(), kW * 2, d, ds, kRoi), 0);
         }},
        {"RGB 4:2:2 planar", 3, false, 3,
         [](const Tpx8u* s, int ss, Tpx8u* d, int ds) {
             Planes pl;
             int cs[3] = {kW, kW / 2, kW / 2};
             ASSERT_EQ(tpxiRGBToYCbCr422_8u_C3P3R(s, ss, pl.p, cs, kRoi), 0);
             ASSERT_EQ(tpxiYCbCr422ToRGB_8u_P3C3R(pl.p, cs, d, ds, kRoi), 0);
         }},
        {"BGR 4:1:1 planar", 3, true, 6,
         [](const Tpx8u* s, int ss, Tpx8u* d, int ds) {
             Planes pl;
             int cs[3] = {kW, kW / 4, kW / 4};
             ASSERT_EQ(tpxiBGRToYCbCr411_8u_C3P3R(s, ss, pl.p, cs, kRoi), 0);
             ASSERT_EQ(tpxiYCbCr411ToBGR_8u_P3C3R(pl.p, cs, d, ds, kRoi), 0);
         }},
        {"BGR 4:2:0 BT.709 studio", 3, true, 5,
         [](const Tpx8u* s, int ss, Tpx8u* d, int ds) {
             Planes pl;
             int cs[3] = {kW, kW / 2, kW / 2};
             ASSERT_EQ(tpxiBGRToYCbCr420_709CSC_8u_C3P3R(s, ss, pl.p, cs, kRoi), 0);
             ASSERT_EQ(tpxiYCbCr420ToBGR_709CSC_8u_P3C3R(pl.p, cs, d, ds, kRoi), 0);
         }},
        {"BGRA 4:2:0 BT.709 full range", 4, true, 5,
         [](const Tpx8u* s, int ss, Tpx8u* d, int ds) {
             Planes pl;
             int cs[3] = {kW, kW / 2, kW / 2};
             ASSERT_EQ(tpxiBGRToYCbCr420_709HDTV_8u_AC4P3R(s, ss, pl.p, cs, kRoi), 0);
             ASSERT_EQ(tpxiYCbCr420ToBGR_709HDTV_8u_P3C4R(pl.p, cs, d, ds, kRoi, 255), 0);
         }},
        {"BGR 4:2:2 BT.709 full range CbYCr", 3, true, 3,
         [](const Tpx8u* s, int ss, Tpx8u* d, int ds) {
             std::vector<Tpx8u> c2(size_t(kW) * kH * 2);
             ASSERT_EQ(tpxiBGRToCbYCr422_709HDTV_8u_C3C2R(s, ss, c2.data(), kW * 2, kRoi), 0);
             ASSERT_EQ(tpxiCbYCr422ToBGR_709HDTV_8u_C2C3R(c2.data(), kW * 2, d, ds, kRoi), 0);
         }},
    };
}

TEST(RoundTrip, SmoothImagesComeBackWithinAFewCodes) {
    const std::vector<Tpx8u> orig = smoothImage();
    for (const Trip& t : trips()) {
        const std::vector<Tpx8u> src = pack(orig, t.channels, t.bgr);
        std::vector<Tpx8u> dst(src.size(), 0);
        t.run(src.data(), kW * t.channels, dst.data(), kW * t.channels);
        const int err = maxError(orig, dst, t.channels, t.bgr);
        EXPECT_LE(err, t.tolerance) << t.name;
        std::printf("%-36s max error %d\n", t.name.c_str(), err);
        RecordProperty(t.name, err);
    }
}

}  // namespace
