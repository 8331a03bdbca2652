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

// The intermediate image: up to three planes (Y and chroma) or one packed
// plane, each as large as the picture.
struct Planes {
    std::vector<Tpx8u> y = std::vector<Tpx8u>(size_t(kW) * kH * 2), u = y, v = y;
    Tpx8u* p[3] = {y.data(), u.data(), v.data()};
};

// Encoders and decoders of the three shapes the members come in.
using PlanarEnc = TpxStatus (*)(const Tpx8u*, int, Tpx8u* const[3], const int[3], TpxSize);
using PlanarDec = TpxStatus (*)(const Tpx8u* const[3], const int[3], Tpx8u*, int, TpxSize);
using TwoPlaneEnc = TpxStatus (*)(const Tpx8u*, int, Tpx8u*, int, Tpx8u*, int, TpxSize);
using TwoPlaneDec = TpxStatus (*)(const Tpx8u*, int, const Tpx8u*, int, Tpx8u*, int, TpxSize);
using PackedEnc = TpxStatus (*)(const Tpx8u*, int, Tpx8u*, int, TpxSize);
using PackedDec = TpxStatus (*)(const Tpx8u*, int, Tpx8u*, int, TpxSize);

// One encoder and its decoder: `channels` is the pixel size of the packed
// source and destination, `bgr` tells the channel order, `chromaDiv` the
// horizontal subsampling of planar chroma.
struct Trip {
    std::string name;
    int channels;
    bool bgr;
    int tolerance;
    int chromaDiv = 2;
    PlanarEnc planarEnc = nullptr;
    PlanarDec planarDec = nullptr;
    TwoPlaneEnc twoEnc = nullptr;
    TwoPlaneDec twoDec = nullptr;
    PackedEnc packedEnc = nullptr;
    PackedDec packedDec = nullptr;
};

const TpxSize kRoi{kW, kH};

void run(const Trip& t, const Tpx8u* s, int ss, Tpx8u* d, int ds) {
    Planes pl;
    if (t.planarEnc) {
        const int steps[3] = {kW, kW / t.chromaDiv, kW / t.chromaDiv};
        ASSERT_EQ(t.planarEnc(s, ss, pl.p, steps, kRoi), 0) << t.name;
        ASSERT_EQ(t.planarDec(pl.p, steps, d, ds, kRoi), 0) << t.name;
    } else if (t.twoEnc) {
        ASSERT_EQ(t.twoEnc(s, ss, pl.p[0], kW, pl.p[1], kW, kRoi), 0) << t.name;
        ASSERT_EQ(t.twoDec(pl.p[0], kW, pl.p[1], kW, d, ds, kRoi), 0) << t.name;
    } else {
        ASSERT_EQ(t.packedEnc(s, ss, pl.p[0], kW * 2, kRoi), 0) << t.name;
        ASSERT_EQ(t.packedDec(pl.p[0], kW * 2, d, ds, kRoi), 0) << t.name;
    }
}

Trip planar(std::string name, int ch, bool bgr, int tol, int div, PlanarEnc e, PlanarDec d) {
    Trip t{std::move(name), ch, bgr, tol, div};
    t.planarEnc = e;
    t.planarDec = d;
    return t;
}
Trip packed(std::string name, int ch, bool bgr, PackedEnc e, PackedDec d) {
    Trip t{std::move(name), ch, bgr, 3};
    t.packedEnc = e;
    t.packedDec = d;
    return t;
}

std::vector<Trip> trips() {
    Trip nv12{"BGRA 4:2:0 two-plane", 4, true, 5};
    nv12.twoEnc = tpxiBGRToYCbCr420_8u_AC4P2R;
    nv12.twoDec = [](const Tpx8u* y, int ys, const Tpx8u* c, int cs, Tpx8u* d, int ds, TpxSize roi) {
        return tpxiYCbCr420ToBGR_8u_P2C4R(y, ys, c, cs, d, ds, roi, 255);
    };
    return {
        planar("RGB 4:2:0 planar", 3, false, 5, 2, tpxiRGBToYCbCr420_8u_C3P3R, tpxiYCbCr420ToRGB_8u_P3C3R),
        planar("BGR 4:2:0 planar", 3, true, 5, 2, tpxiBGRToYCbCr420_8u_C3P3R, tpxiYCbCr420ToBGR_8u_P3C3R),
        nv12,
        packed("RGB 4:2:2 packed YCbCr", 3, false, tpxiRGBToYCbCr422_8u_C3C2R, tpxiYCbCr422ToRGB_8u_C2C3R),
        packed("RGB 4:2:2 packed YCrCb", 3, false, tpxiRGBToYCrCb422_8u_C3C2R, tpxiYCrCb422ToRGB_8u_C2C3R),
        packed("RGB 4:2:2 packed CbYCr", 3, false, tpxiRGBToCbYCr422_8u_C3C2R, tpxiCbYCr422ToRGB_8u_C2C3R),
        planar("RGB 4:2:2 planar", 3, false, 3, 2, tpxiRGBToYCbCr422_8u_C3P3R, tpxiYCbCr422ToRGB_8u_P3C3R),
        planar("BGR 4:1:1 planar", 3, true, 6, 4, tpxiBGRToYCbCr411_8u_C3P3R, tpxiYCbCr411ToBGR_8u_P3C3R),
        planar("BGR 4:2:0 BT.709 studio", 3, true, 5, 2, tpxiBGRToYCbCr420_709CSC_8u_C3P3R,
               tpxiYCbCr420ToBGR_709CSC_8u_P3C3R),
        planar("BGRA 4:2:0 BT.709 full range", 4, true, 5, 2, tpxiBGRToYCbCr420_709HDTV_8u_AC4P3R,
               [](const Tpx8u* const p[3], const int s[3], Tpx8u* d, int ds, TpxSize roi) {
                   return tpxiYCbCr420ToBGR_709HDTV_8u_P3C4R(p, s, d, ds, roi, 255);
               }),
        packed("BGR 4:2:2 BT.709 full range CbYCr", 3, true, tpxiBGRToCbYCr422_709HDTV_8u_C3C2R,
               tpxiCbYCr422ToBGR_709HDTV_8u_C2C3R),
    };
}

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

TEST(RoundTrip, SmoothImagesComeBackWithinAFewCodes) {
    const std::vector<Tpx8u> orig = smoothImage();
    for (const Trip& t : trips()) {
        const std::vector<Tpx8u> src = pack(orig, t.channels, t.bgr);
        std::vector<Tpx8u> dst(src.size(), 0);
        run(t, src.data(), kW * t.channels, dst.data(), kW * t.channels);
        const int err = maxError(orig, dst, t.channels, t.bgr);
        EXPECT_LE(err, t.tolerance) << t.name;
        std::printf("%-36s max error %d\n", t.name.c_str(), err);
        RecordProperty(t.name, err);
    }
}

}  // namespace
