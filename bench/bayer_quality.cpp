// Demosaicing quality on natural photographs: each picture (binary PPM; a
// 16-bit one is first rounded to 8 bits) is sampled through each of the four
// Bayer phases, demosaiced by every method, and compared with the original.
// Printed per picture and method: the colour PSNR over all three channels, a
// border of 4 pixels left out, as the mean of the four phases; then the mean
// over the pictures. Methods: tpxiCFAToRGB, VNG, AHD, OpenCV's bilinear
// COLOR_Bayer..2RGB and edge-aware ..._EA, and OpenCV's VNG, whose output is
// displaced by two rows (its row y holds the picture's row y + 2): the tool
// moves it back before comparing.
// Usage: bayer_quality PICTURE.ppm ...
//
// Photographs used so far: astronaut.png, chelsea.png, coffee.png,
// motorcycle_left.png and rocket.jpg from the data directory of Debian's
// python3-skimage package, turned into PPM with netpbm (pngtopnm, jpegtopnm).
#include "tpxcc.h"

#include <opencv2/imgproc.hpp>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

namespace {

struct Picture {
    int width = 0, height = 0, maxval = 0;
    std::vector<uint16_t> rgb;  // width * height * 3 samples
};

bool readPpm(const char* path, Picture& p) {
    std::ifstream in(path, std::ios::binary);
    std::string magic;
    in >> magic;
    auto number = [&](int& v) {
        while (in >> std::ws && in.peek() == '#') in.ignore(1 << 20, '\n');
        return bool(in >> v);
    };
    if (magic != "P6" || !number(p.width) || !number(p.height) || !number(p.maxval) || p.maxval < 1 ||
        p.maxval > 65535 || p.width < 10 || p.height < 10)
        return false;
    in.get();
    const size_t n = size_t(p.width) * size_t(p.height) * 3, bytes = p.maxval > 255 ? 2 : 1;
    std::vector<unsigned char> raw(n * bytes);
    if (!in.read(reinterpret_cast<char*>(raw.data()), std::streamsize(raw.size()))) return false;
    p.rgb.resize(n);
    for (size_t i = 0; i < n; ++i) {
        const long v = bytes == 2 ? long(raw[2 * i]) << 8 | raw[2 * i + 1] : raw[i];
        p.rgb[i] = uint16_t((v * 255 + p.maxval / 2) / p.maxval);
    }
    p.maxval = 255;
    return true;
}

// Channel (0 R, 1 G, 2 B) at (x, y) of each grid code.
int colourAt(int grid, int x, int y) {
    static const int table[4][4] = {{2, 1, 1, 0}, {0, 1, 1, 2}, {1, 2, 0, 1}, {1, 0, 2, 1}};
    return table[grid][(x & 1) + 2 * (y & 1)];
}

cv::Mat mosaic(const Picture& p, int grid) {
    cv::Mat m(p.height, p.width, CV_8UC1);
    for (int y = 0; y < p.height; ++y)
        for (int x = 0; x < p.width; ++x)
            m.at<uint8_t>(y, x) =
                uint8_t(p.rgb[(size_t(y) * size_t(p.width) + size_t(x)) * 3 + size_t(colourAt(grid, x, y))]);
    return m;
}

// PSNR of an R,G,B image against the picture; the image's row y is compared
// with the picture's row y + shift.
double psnr(const Picture& p, const cv::Mat& rgb, int shift = 0) {
    double sum = 0;
    size_t n = 0;
    for (int y = 4; y < p.height - 4; ++y)
        for (int x = 4; x < p.width - 4; ++x)
            for (int c = 0; c < 3; ++c) {
                const double d = double(rgb.ptr<uint8_t>(y - shift)[3 * x + c]) -
                                 double(p.rgb[(size_t(y) * size_t(p.width) + size_t(x)) * 3 + size_t(c)]);
                sum += d * d;
                ++n;
            }
    const double mse = sum / double(n);
    return mse == 0 ? 99.0 : 10.0 * std::log10(double(p.maxval) * p.maxval / mse);
}

TpxRect roiOf(const cv::Mat& m) { return {0, 0, m.cols, m.rows}; }
TpxSize sizeOf(const cv::Mat& m) { return {m.cols, m.rows}; }

cv::Mat bilinear(const cv::Mat& m, int grid) {
    cv::Mat out(m.rows, m.cols, CV_8UC3);
    tpxiCFAToRGB_8u_C1C3R(m.ptr(), roiOf(m), sizeOf(m), int(m.step), out.ptr(), int(out.step), TpxBayerGrid(grid), 0);
    return out;
}
cv::Mat vng(const cv::Mat& m, int grid) {
    cv::Mat bgra(m.rows, m.cols, CV_8UC4), out;
    const Tpx32f one[4] = {1, 1, 1, 1};
    tpxiCFAToBGRA_VNG_8u_C1C4R(m.ptr(), roiOf(m), sizeOf(m), int(m.step), one, bgra.ptr(), int(bgra.step),
                               TpxBayerGrid(grid));
    cv::cvtColor(bgra, out, cv::COLOR_BGRA2RGB);
    return out;
}
cv::Mat ahd(const cv::Mat& m, int grid) {
    cv::Mat out(m.rows, m.cols, CV_8UC3);
    tpxiDemosaicAHD_8u_C1C3R(m.ptr(), roiOf(m), sizeOf(m), int(m.step), out.ptr(), int(out.step), TpxBayerGrid(grid));
    return out;
}

// OpenCV's codes per pattern, in one order for the three methods.
const int kBilinear[4] = {cv::COLOR_BayerBG2RGB, cv::COLOR_BayerGB2RGB, cv::COLOR_BayerRG2RGB, cv::COLOR_BayerGR2RGB};
const int kEdgeAware[4] = {cv::COLOR_BayerBG2RGB_EA, cv::COLOR_BayerGB2RGB_EA, cv::COLOR_BayerRG2RGB_EA,
                           cv::COLOR_BayerGR2RGB_EA};
const int kVng[4] = {cv::COLOR_BayerBG2RGB_VNG, cv::COLOR_BayerGB2RGB_VNG, cv::COLOR_BayerRG2RGB_VNG,
                     cv::COLOR_BayerGR2RGB_VNG};

// Index of OpenCV's pattern that reproduces a flat-coloured picture sampled
// through `grid`: found by trying them, not from their names.
int matchingPattern(int grid) {
    Picture flat;
    flat.width = flat.height = 16;
    flat.maxval = 255;
    for (int i = 0; i < 16 * 16; ++i) flat.rgb.insert(flat.rgb.end(), {200, 120, 40});
    const cv::Mat m = mosaic(flat, grid);
    for (int k = 0; k < 4; ++k) {
        cv::Mat out;
        cv::cvtColor(m, out, kBilinear[k]);
        if (psnr(flat, out) > 90) return k;
    }
    return 0;
}

constexpr int kMethods = 6;
const char* const kNames[kMethods] = {"CFAToRGB", "VNG", "AHD", "CV bilin", "CV EA", "CV VNG"};

// PSNR of every method for one phase.
void measure(const Picture& p, int grid, double v[kMethods]) {
    const cv::Mat m = mosaic(p, grid);
    const int k = matchingPattern(grid);
    cv::Mat b, e, g;
    cv::cvtColor(m, b, kBilinear[k]);
    cv::cvtColor(m, e, kEdgeAware[k]);
    cv::cvtColor(m, g, kVng[k]);
    v[0] = psnr(p, bilinear(m, grid));
    v[1] = psnr(p, vng(m, grid));
    v[2] = psnr(p, ahd(m, grid));
    v[3] = psnr(p, b);
    v[4] = psnr(p, e);
    v[5] = psnr(p, g, 2);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fprintf(stderr, "usage: %s PICTURE.ppm ...\n", argv[0]);
        return 2;
    }
    cv::setNumThreads(1);
    std::printf("colour PSNR in dB, 8 bits, mean of the four phases, border of 4 pixels excluded;\n"
                "OpenCV's VNG output is moved up by two rows before comparing (it comes out displaced)\n");
    std::printf("%-20s", "picture");
    for (const char* n : kNames) std::printf(" %9s", n);
    std::printf("\n");
    double total[kMethods] = {};
    int pictures = 0, status = 0;
    for (int a = 1; a < argc; ++a) {
        Picture p;
        if (!readPpm(argv[a], p)) {
            std::fprintf(stderr, "%s: not a binary PPM this tool reads\n", argv[a]);
            status = 1;
            continue;
        }
        std::string name = argv[a];
        name = name.substr(name.find_last_of('/') + 1);
        double mean[kMethods] = {};
        for (int grid = 0; grid < 4; ++grid) {
            double v[kMethods];
            measure(p, grid, v);
            for (int k = 0; k < kMethods; ++k) mean[k] += v[k] / 4;
        }
        std::printf("%-20s", name.c_str());
        for (int k = 0; k < kMethods; ++k) {
            std::printf(" %9.2f", mean[k]);
            total[k] += mean[k];
        }
        std::printf("\n");
        ++pictures;
    }
    if (pictures > 1) {
        std::printf("%-20s", "mean");
        for (double t : total) std::printf(" %9.2f", t / pictures);
        std::printf("\n");
    }
    return status;
}
