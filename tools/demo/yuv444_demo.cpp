// RGB <-> YCbCr 4:4:4: every conversion once on the test image, with the
// largest error of an encode/decode round trip where the pair exists (the
// BT.709 decoders have no encoder here).
#include "demo.hpp"

#include <algorithm>
#include <cstdlib>

namespace {

using Bytes = std::vector<uint8_t>;

// Largest difference of the first three channels between the picture and an
// image of n bytes per pixel (bgr: channels reversed).
int maxError(const demo::Picture& p, const Bytes& img, int n, bool bgr = false) {
    int worst = 0;
    for (int y = 0; y < p.height; ++y)
        for (int x = 0; x < p.width; ++x)
            for (int c = 0; c < 3; ++c) {
                const size_t at = (size_t(y) * size_t(p.width) + size_t(x)) * size_t(n) + size_t(bgr ? 2 - c : c);
                worst = std::max(worst, std::abs(int(img[at]) - int(p.at(x, y, c))));
            }
    return worst;
}

// Three planes in one buffer, as the plane-pointer arrays of the calls.
struct Planes {
    Bytes data;
    Tpx8u* p[3];
    const Tpx8u* c[3];
    explicit Planes(size_t plane) : data(plane * 3) {
        for (int i = 0; i < 3; ++i) c[i] = p[i] = data.data() + size_t(i) * plane;
    }
    // Plane i interleaved into an image of 3 bytes per pixel.
    Bytes packed() const {
        const size_t n = data.size() / 3;
        Bytes out(n * 3);
        for (size_t i = 0; i < n; ++i)
            for (size_t k = 0; k < 3; ++k) out[i * 3 + k] = c[k][i];
        return out;
    }
};

}  // namespace

TPX_DEMO("RGB and YCbCr 4:4:4", yuv444Demo)(const demo::Picture& pic, demo::Report& report) {
    const int w = pic.width, h = pic.height;
    const TpxSize roi{w, h};
    const size_t n = size_t(w) * size_t(h);
    const double px = double(n);
    Bytes rgba(n * 4, 255);
    Planes rgbPlanes(n);
    for (size_t i = 0; i < n; ++i)
        for (size_t c = 0; c < 3; ++c) rgba[i * 4 + c] = rgbPlanes.p[c][i] = pic.rgb[i * 3 + c];

    Bytes ycc3(n * 3), ycc4(n * 4, 0), out3(n * 3), out4(n * 4, 0);
    Planes yccPlanes(n), outPlanes(n);
    TpxStatus st = 0;
    auto line = [&](const char* fn, auto&& call, auto&& error) {
        const double s = demo::bestTime([&] { st = call(); });
        report.add(fn, st, error(), s, px);
    };

    // Encoders, each checked by decoding its result again.
    line("tpxiRGBToYCbCr_8u_C3R", [&] { return tpxiRGBToYCbCr_8u_C3R(pic.rgb.data(), 3 * w, ycc3.data(), 3 * w, roi); },
         [&] {
             tpxiYCbCrToRGB_8u_C3R(ycc3.data(), 3 * w, out3.data(), 3 * w, roi);
             return maxError(pic, out3, 3);
         });
    line("tpxiRGBToYCbCr_8u_AC4R", [&] { return tpxiRGBToYCbCr_8u_AC4R(rgba.data(), 4 * w, ycc4.data(), 4 * w, roi); },
         [&] {
             tpxiYCbCrToRGB_8u_AC4R(ycc4.data(), 4 * w, out4.data(), 4 * w, roi);
             return maxError(pic, out4, 4);
         });
    line("tpxiRGBToYCbCr_8u_P3R", [&] { return tpxiRGBToYCbCr_8u_P3R(rgbPlanes.c, w, yccPlanes.p, w, roi); },
         [&] {
             tpxiYCbCrToRGB_8u_P3R(yccPlanes.c, w, outPlanes.p, w, roi);
             return maxError(pic, outPlanes.packed(), 3);
         });
    line("tpxiRGBToYCbCr_8u_C3P3R", [&] { return tpxiRGBToYCbCr_8u_C3P3R(pic.rgb.data(), 3 * w, yccPlanes.p, w, roi); },
         [&] {
             tpxiYCbCrToRGB_8u_P3C3R(yccPlanes.c, w, out3.data(), 3 * w, roi);
             return maxError(pic, out3, 3);
         });
    line("tpxiRGBToYCbCr_8u_AC4P3R", [&] { return tpxiRGBToYCbCr_8u_AC4P3R(rgba.data(), 4 * w, yccPlanes.p, w, roi); },
         [&] {
             tpxiYCbCrToRGB_8u_P3C4R(yccPlanes.c, w, out4.data(), 4 * w, roi, 255);
             return maxError(pic, out4, 4);
         });

    // Decoders of the encoded picture (yccPlanes and ycc3/ycc4 hold it now).
    auto none = [] { return -1; };
    line("tpxiYCbCrToRGB_8u_C3R", [&] { return tpxiYCbCrToRGB_8u_C3R(ycc3.data(), 3 * w, out3.data(), 3 * w, roi); },
         [&] { return maxError(pic, out3, 3); });
    line("tpxiYCbCrToRGB_8u_AC4R", [&] { return tpxiYCbCrToRGB_8u_AC4R(ycc4.data(), 4 * w, out4.data(), 4 * w, roi); },
         [&] { return maxError(pic, out4, 4); });
    line("tpxiYCbCrToRGB_8u_P3R", [&] { return tpxiYCbCrToRGB_8u_P3R(yccPlanes.c, w, outPlanes.p, w, roi); },
         [&] { return maxError(pic, outPlanes.packed(), 3); });
    line("tpxiYCbCrToRGB_8u_P3C3R", [&] { return tpxiYCbCrToRGB_8u_P3C3R(yccPlanes.c, w, out3.data(), 3 * w, roi); },
         [&] { return maxError(pic, out3, 3); });
    line("tpxiYCbCrToRGB_8u_P3C4R",
         [&] { return tpxiYCbCrToRGB_8u_P3C4R(yccPlanes.c, w, out4.data(), 4 * w, roi, 255); },
         [&] { return maxError(pic, out4, 4); });
    line("tpxiYCbCrToBGR_8u_P3C3R", [&] { return tpxiYCbCrToBGR_8u_P3C3R(yccPlanes.c, w, out3.data(), 3 * w, roi); },
         [&] { return maxError(pic, out3, 3, true); });
    line("tpxiYCbCrToBGR_8u_P3C4R",
         [&] { return tpxiYCbCrToBGR_8u_P3C4R(yccPlanes.c, w, out4.data(), 4 * w, roi, 255); },
         [&] { return maxError(pic, out4, 4, true); });
    line("tpxiYCbCrToBGR_709CSC_8u_P3C3R",
         [&] { return tpxiYCbCrToBGR_709CSC_8u_P3C3R(yccPlanes.c, w, out3.data(), 3 * w, roi); }, none);
    line("tpxiYCbCrToBGR_709CSC_8u_P3C4R",
         [&] { return tpxiYCbCrToBGR_709CSC_8u_P3C4R(yccPlanes.c, w, out4.data(), 4 * w, roi, 255); }, none);
}
