// VNG and AHD on a mosaic of the demo picture: largest error against the picture.
#include "demo.hpp"

#include <algorithm>
#include <cstdlib>

TPX_DEMO("demosaic (VNG, AHD)", vngahdDemo)(const demo::Picture& pic, demo::Report& report) {
    const int w = pic.width, h = pic.height;
    // RGGB mosaic: red at even columns of even rows, blue at odd of odd.
    std::vector<uint8_t> mosaic(size_t(w) * size_t(h));
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            const int c = (y & 1) == 0 ? ((x & 1) == 0 ? 0 : 1) : ((x & 1) == 0 ? 1 : 2);
            mosaic[size_t(y) * size_t(w) + size_t(x)] = pic.at(x, y, c);
        }
    auto maxError = [&](const std::vector<uint8_t>& out, int channels, bool bgr) {
        int worst = 0;
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x)
                for (int c = 0; c < 3; ++c) {
                    const int got = out[(size_t(y) * size_t(w) + size_t(x)) * size_t(channels) + size_t(bgr ? 2 - c : c)];
                    worst = std::max(worst, std::abs(got - pic.at(x, y, c)));
                }
        return double(worst);
    };
    std::vector<uint8_t> bgra(size_t(w) * size_t(h) * 4), rgb(size_t(w) * size_t(h) * 3);
    const Tpx32f one[4] = {1, 1, 1, 1};
    TpxStatus st = tpxStatusOk;
    double t = demo::bestTime([&] {
        st = tpxiCFAToBGRA_VNG_8u_C1C4R(mosaic.data(), {0, 0, w, h}, {w, h}, w, one, bgra.data(), w * 4, tpxBayerRGGB);
    });
    report.add("tpxiCFAToBGRA_VNG_8u_C1C4R", st, maxError(bgra, 4, true), t, double(w) * h);
    t = demo::bestTime([&] {
        st = tpxiDemosaicAHD_8u_C1C3R(mosaic.data(), {0, 0, w, h}, {w, h}, w, rgb.data(), w * 3, tpxBayerRGGB);
    });
    report.add("tpxiDemosaicAHD_8u_C1C3R", st, maxError(rgb, 3, false), t, double(w) * h);
}
