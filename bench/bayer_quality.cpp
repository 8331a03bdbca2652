// Demosaicing quality on natural photographs: each picture (binary PPM, 8 or
// 16 bits per sample) is sampled through each Bayer phase, demosaiced, and
// compared with the original; the colour PSNR over all three channels, a
// border of 4 pixels left out, is printed for tpxiCFAToRGB and for OpenCV's
// bilinear and edge-aware Bayer conversions.
// Usage: bayer_quality PICTURE.ppm ...
//
// Photographs used so far: astronaut.png, chelsea.png, coffee.png,
// motorcycle_left.png and rocket.jpg from the data directory of Debian's
// python3-skimage package, turned into PPM with netpbm (pngtopnm, jpegtopnm;
// pnmdepth 65535 for a 16-bit copy).
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
    for (size_t i = 0; i < n; ++i) p.rgb[i] = bytes == 2 ? uint16_t(raw[2 * i] << 8 | raw[2 * i + 1]) : raw[i];
    return true;
}

// Channel (0 R, 1 G, 2 B) at (x, y) of each grid code.
int colourAt(int grid, int x, int y) {
    static const int table[4][4] = {{2, 1, 1, 0}, {0, 1, 1, 2}, {1, 2, 0, 1}, {1, 0, 2, 1}};
    return table[grid][(x & 1) + 2 * (y & 1)];
}

template <class T>
cv::Mat mosaic(const Picture& p, int grid) {
    cv::Mat m(p.height, p.width, cv::DataType<T>::type);
    for (int y = 0; y < p.height; ++y)
        for (int x = 0; x < p.width; ++x)
            m.at<T>(y, x) = T(p.rgb[(size_t(y) * size_t(p.width) + size_t(x)) * 3 + size_t(colourAt(grid, x, y))]);
    return m;
}

template <class T>
double psnr(const Picture& p, const cv::Mat& rgb) {
    double sum = 0;
    size_t n = 0;
    for (int y = 4; y < p.height - 4; ++y)
        for (int x = 4; x < p.width - 4; ++x)
            for (int c = 0; c < 3; ++c) {
                const double d = double(rgb.ptr<T>(y)[3 * x + c]) -
                                 double(p.rgb[(size_t(y) * size_t(p.width) + size_t(x)) * 3 + size_t(c)]);
                sum += d * d;
                ++n;
            }
    const double mse = sum / double(n);
    return mse == 0 ? 99.0 : 10.0 * std::log10(double(p.maxval) * p.maxval / mse);
}

template <class T>
cv::Mat ours(const cv::Mat& m, int grid) {
    cv::Mat out(m.rows, m.cols, CV_MAKETYPE(cv::DataType<T>::depth, 3));
    const TpxRect roi{0, 0, m.cols, m.rows};
    const TpxSize size{m.cols, m.rows};
    if constexpr (sizeof(T) == 1)
        tpxiCFAToRGB_8u_C1C3R(m.ptr<T>(), roi, size, int(m.step), out.ptr<T>(), int(out.step), TpxBayerGrid(grid), 0);
    else
        tpxiCFAToRGB_16u_C1C3R(m.ptr<T>(), roi, size, int(m.step), out.ptr<T>(), int(out.step), TpxBayerGrid(grid), 0);
    return out;
}

// OpenCV's Bayer code (from `codes`) that reproduces a flat-coloured picture
// sampled through `grid`: found by trying them, not from their names.
int matchingCode(const int codes[4], int grid) {
    Picture flat;
    flat.width = flat.height = 16;
    flat.maxval = 255;
    for (int i = 0; i < 16 * 16; ++i) flat.rgb.insert(flat.rgb.end(), {200, 120, 40});
    const cv::Mat m = mosaic<uint8_t>(flat, grid);
    for (int k = 0; k < 4; ++k) {
        cv::Mat out;
        cv::cvtColor(m, out, codes[k]);
        if (psnr<uint8_t>(flat, out) > 90) return codes[k];
    }
    return -1;
}

// PSNR of ours, OpenCV bilinear and OpenCV edge-aware for one phase.
template <class T>
void measure(const Picture& p, int grid, const int bilinear[4], const int edgeAware[4], double v[3]) {
    const cv::Mat m = mosaic<T>(p, grid);
    cv::Mat b, e;
    cv::cvtColor(m, b, matchingCode(bilinear, grid));
    cv::cvtColor(m, e, matchingCode(edgeAware, grid));
    v[0] = psnr<T>(p, ours<T>(m, grid));
    v[1] = psnr<T>(p, b);
    v[2] = psnr<T>(p, e);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fprintf(stderr, "usage: %s PICTURE.ppm ...\n", argv[0]);
        return 2;
    }
    cv::setNumThreads(1);
    const int bilinear[4] = {cv::COLOR_BayerBG2RGB, cv::COLOR_BayerGB2RGB, cv::COLOR_BayerRG2RGB, cv::COLOR_BayerGR2RGB};
    const int edgeAware[4] = {cv::COLOR_BayerBG2RGB_EA, cv::COLOR_BayerGB2RGB_EA, cv::COLOR_BayerRG2RGB_EA,
                              cv::COLOR_BayerGR2RGB_EA};
    static const char* gridName[4] = {"BGGR", "RGGB", "GBRG", "GRBG"};
    std::printf("colour PSNR in dB (border of 4 pixels excluded)\n");
    std::printf("%-28s %-5s %5s  %8s %12s %14s\n", "picture", "grid", "bits", "tpxcc", "OpenCV bilin", "OpenCV EA");
    int status = 0;
    for (int a = 1; a < argc; ++a) {
        Picture p;
        if (!readPpm(argv[a], p)) {
            std::fprintf(stderr, "%s: not a binary PPM this tool reads\n", argv[a]);
            status = 1;
            continue;
        }
        const bool wide = p.maxval > 255;
        std::string name = argv[a];
        if (name.size() > 28) name = "..." + name.substr(name.size() - 25);
        double mean[3] = {0, 0, 0};
        for (int grid = 0; grid < 4; ++grid) {
            double v[3];
            if (wide) measure<uint16_t>(p, grid, bilinear, edgeAware, v);
            else measure<uint8_t>(p, grid, bilinear, edgeAware, v);
            std::printf("%-28s %-5s %5d  %8.2f %12.2f %14.2f\n", name.c_str(), gridName[grid], wide ? 16 : 8, v[0],
                        v[1], v[2]);
            for (int k = 0; k < 3; ++k) mean[k] += v[k] / 4;
        }
        std::printf("%-28s %-5s %5d  %8.2f %12.2f %14.2f\n", name.c_str(), "mean", wide ? 16 : 8, mean[0], mean[1],
                    mean[2]);
    }
    return status;
}
