// Bayer demosaicing: the picture sampled through an RGGB mosaic and
// demosaiced; the error is the largest difference from the picture (sharp
// edges and the checkerboard make it large: the mosaic drops two thirds of
// the samples).
#include "demo.hpp"

#include <algorithm>
#include <cstdlib>

namespace {

template <class T>
void run(const demo::Picture& pic, demo::Report& report, const char* name) {
    const int w = pic.width, h = pic.height, scale = sizeof(T) == 1 ? 1 : 257;
    std::vector<T> mosaic(size_t(w) * size_t(h)), rgb(size_t(w) * size_t(h) * 3);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x)  // RGGB: red at even x and y, blue at odd x and y
            mosaic[size_t(y) * size_t(w) + size_t(x)] = T(pic.at(x, y, (x & 1) + (y & 1)) * scale);
    TpxStatus st = 0;
    const double s = demo::bestTime([&] {
        if constexpr (sizeof(T) == 1)
            st = tpxiCFAToRGB_8u_C1C3R(mosaic.data(), {0, 0, w, h}, {w, h}, w, rgb.data(), 3 * w, tpxBayerRGGB, 0);
        else
            st = tpxiCFAToRGB_16u_C1C3R(mosaic.data(), {0, 0, w, h}, {w, h}, 2 * w, rgb.data(), 6 * w, tpxBayerRGGB, 0);
    });
    int err = 0;
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x)
            for (int c = 0; c < 3; ++c)
                err = std::max(err, std::abs((int(rgb[(size_t(y) * size_t(w) + size_t(x)) * 3 + size_t(c)]) + scale / 2) / scale -
                                             int(pic.at(x, y, c))));
    report.add(name, st, err, s, double(w) * h);
}

}  // namespace

TPX_DEMO("Bayer", bayerDemo)(const demo::Picture& pic, demo::Report& report) {
    run<uint8_t>(pic, report, "tpxiCFAToRGB_8u_C1C3R");
    run<uint16_t>(pic, report, "tpxiCFAToRGB_16u_C1C3R");
}
