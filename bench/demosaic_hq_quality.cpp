// Quality of the high-quality demosaicing members on natural photographs.
//
// Usage: demosaic_hq_quality photo.ppm [more.ppm ...]   (binary PPM, 8 or 16 bits)
//
// Each photograph is mosaiced through each of the four Bayer phases and
// demosaiced by our VNG and AHD, by the peer's VNG and by the peer's bilinear
// demosaic; the colour PSNR (all three channels, a 4-pixel border excluded)
// against the photograph is printed per method, averaged over the phases. The
// 16-bit members are run on the 16-bit form of the photograph (the 8-bit one
// times 257 when the file has 8 bits) and scored on the 16-bit scale.
//
// Each method is one function from a mosaic to an RGB image, so that the
// table of methods can be joined with other demosaic quality tables.
//
// Photographs used so far: astronaut.png, chelsea.png, coffee.png,
// motorcycle_left.png and rocket.jpg from the Debian package python3-skimage
// (skimage/data), converted to binary PPM; they are not kept in the tree.
#include "tpxcc.h"

#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

namespace {

struct Photo {
    int width = 0, height = 0;
    std::vector<uint16_t> rgb;  // 16-bit samples
    bool sixteen = false;
};

bool readPpm(const char* path, Photo& p) {
    std::ifstream f(path, std::ios::binary);
    std::string magic;
    int maxv = 0;
    if (!(f >> magic >> p.width >> p.height >> maxv) || magic != "P6" || maxv < 1 || maxv > 65535) return false;
    f.get();
    p.sixteen = maxv > 255;
    const size_t n = size_t(p.width) * size_t(p.height) * 3;
    p.rgb.resize(n);
    for (size_t i = 0; i < n; ++i) {
        int v = f.get();
        if (p.sixteen) v = v * 256 + f.get();
        if (!f) return false;
        p.rgb[i] = uint16_t(p.sixteen ? v : v * 257);
    }
    return true;
}

// A mosaic in both sample widths, with the phase it was made with.
struct Mosaic {
    int width, height, grid;
    std::vector<uint8_t> m8;
    std::vector<uint16_t> m16;
};

int colourAt(int grid, int x, int y) {
    static const int kGrid[4][4] = {{2, 1, 1, 0}, {0, 1, 1, 2}, {1, 2, 0, 1}, {1, 0, 2, 1}};  // 0 R, 1 G, 2 B
    return kGrid[grid][(y & 1) * 2 + (x & 1)];
}

Mosaic makeMosaic(const Photo& p, int grid) {
    Mosaic m{p.width, p.height, grid, {}, {}};
    for (int y = 0; y < p.height; ++y)
        for (int x = 0; x < p.width; ++x) {
            const uint16_t v = p.rgb[(size_t(y) * p.width + x) * 3 + colourAt(grid, x, y)];
            m.m16.push_back(v);
            m.m8.push_back(uint8_t((v + 128) / 257));
        }
    return m;
}

// An RGB result with the peak of its scale.
struct Result {
    std::vector<double> rgb;
    double peak;
};

Result ourVng8(const Mosaic& m) {
    std::vector<uint8_t> out(size_t(m.width) * m.height * 4);
    const Tpx32f one[4] = {1, 1, 1, 1};
    tpxiCFAToBGRA_VNG_8u_C1C4R(m.m8.data(), {0, 0, m.width, m.height}, {m.width, m.height}, m.width, one,
                               out.data(), m.width * 4, TpxBayerGrid(m.grid));
    Result r{{}, 255};
    for (size_t i = 0; i < out.size(); i += 4) r.rgb.insert(r.rgb.end(), {double(out[i + 2]), double(out[i + 1]), double(out[i])});
    return r;
}

Result ourVng16(const Mosaic& m) {
    std::vector<uint16_t> out(size_t(m.width) * m.height * 4);
    const Tpx32f one[4] = {1, 1, 1, 1};
    tpxiCFAToBGRA_VNG_16u_C1C4R(m.m16.data(), {0, 0, m.width, m.height}, {m.width, m.height}, m.width * 2, one,
                                out.data(), m.width * 8, TpxBayerGrid(m.grid));
    Result r{{}, 65535};
    for (size_t i = 0; i < out.size(); i += 4) r.rgb.insert(r.rgb.end(), {double(out[i + 2]), double(out[i + 1]), double(out[i])});
    return r;
}

Result ourAhd8(const Mosaic& m) {
    std::vector<uint8_t> out(size_t(m.width) * m.height * 3);
    tpxiDemosaicAHD_8u_C1C3R(m.m8.data(), {0, 0, m.width, m.height}, {m.width, m.height}, m.width, out.data(),
                             m.width * 3, TpxBayerGrid(m.grid));
    return {std::vector<double>(out.begin(), out.end()), 255};
}

Result ourAhd16(const Mosaic& m) {
    std::vector<uint16_t> out(size_t(m.width) * m.height * 3);
    tpxiDemosaicAHD_16u_C1C3R(m.m16.data(), {0, 0, m.width, m.height}, {m.width, m.height}, m.width * 2,
                              out.data(), m.width * 6, TpxBayerGrid(m.grid));
    return {std::vector<double>(out.begin(), out.end()), 65535};
}

// The peer's Bayer code for each of our phases. The peer names a pattern by
// the second and third samples of its second row, so our BGGR (blue at (0,0))
// is its "RG", RGGB its "BG", GBRG its "GR" and GRBG its "GB".
int peerCode(int grid, bool vng) {
    static const int kBilinear[4] = {cv::COLOR_BayerRG2BGR, cv::COLOR_BayerBG2BGR, cv::COLOR_BayerGR2BGR,
                                     cv::COLOR_BayerGB2BGR};
    static const int kVng[4] = {cv::COLOR_BayerRG2BGR_VNG, cv::COLOR_BayerBG2BGR_VNG, cv::COLOR_BayerGR2BGR_VNG,
                                cv::COLOR_BayerGB2BGR_VNG};
    return vng ? kVng[grid] : kBilinear[grid];
}

Result peer(const Mosaic& m, bool vng) {
    cv::Mat in(m.height, m.width, CV_8UC1, const_cast<uint8_t*>(m.m8.data())), out;
    cv::cvtColor(in, out, peerCode(m.grid, vng));
    Result r{std::vector<double>(size_t(m.width) * m.height * 3), 255};
    // The peer's VNG output is displaced by two rows: its row y holds the
    // picture's row y + 2. Undo that before comparing (the two rows this
    // leaves at the top fall in the excluded 4-pixel border).
    const int shift = vng ? 2 : 0;
    for (int y = 0; y < m.height; ++y) {
        const int sy = y - shift >= 0 ? y - shift : 0;
        const uint8_t* row = out.ptr<uint8_t>(sy);
        for (int x = 0; x < m.width; ++x)
            for (int c = 0; c < 3; ++c) r.rgb[(size_t(y) * m.width + x) * 3 + c] = row[x * 3 + 2 - c];
    }
    return r;
}
Result peerVng(const Mosaic& m) { return peer(m, true); }
Result peerBilinear(const Mosaic& m) { return peer(m, false); }

// Colour PSNR over all three channels, a 4-pixel border excluded.
double psnr(const Photo& p, const Result& r) {
    const int b = 4;
    double se = 0;
    size_t n = 0;
    const double scale = r.peak / 65535.0;
    for (int y = b; y < p.height - b; ++y)
        for (int x = b; x < p.width - b; ++x)
            for (int c = 0; c < 3; ++c) {
                const size_t i = (size_t(y) * p.width + x) * 3 + c;
                double ref = p.rgb[i] * scale;
                if (r.peak == 255) ref = std::round(ref);  // the 8-bit photograph
                const double d = r.rgb[i] - ref;
                se += d * d;
                ++n;
            }
    return se == 0 ? 99.0 : 10.0 * std::log10(r.peak * r.peak * double(n) / se);
}

struct Method {
    const char* name;
    Result (*run)(const Mosaic&);
};
const Method kMethods[] = {
    {"VNG 8u", ourVng8},  {"AHD 8u", ourAhd8},  {"peer VNG 8u", peerVng}, {"peer bilinear 8u", peerBilinear},
    {"VNG 16u", ourVng16}, {"AHD 16u", ourAhd16},
};

}  // namespace

int main(int argc, char** argv) {
    cv::setNumThreads(1);
    if (argc < 2) {
        std::fprintf(stderr, "usage: %s photo.ppm [more.ppm ...]\n", argv[0]);
        return 2;
    }
    std::printf("Colour PSNR in dB (mean of the four phases, 4-pixel border excluded).\n"
                "The peer's VNG output is displaced by two rows; that shift is undone before comparing.\n\n");
    std::printf("%-24s", "photograph");
    for (const Method& m : kMethods) std::printf(" %16s", m.name);
    std::printf("\n");
    const size_t nm = sizeof kMethods / sizeof kMethods[0];
    std::vector<double> total(nm, 0.0);
    int photos = 0;
    for (int a = 1; a < argc; ++a) {
        Photo p;
        if (!readPpm(argv[a], p) || p.width < 16 || p.height < 16) {
            std::fprintf(stderr, "cannot read %s\n", argv[a]);
            continue;
        }
        std::string name = argv[a];
        name = name.substr(name.find_last_of('/') + 1);
        std::printf("%-24s", name.c_str());
        for (size_t k = 0; k < nm; ++k) {
            double sum = 0;
            for (int grid = 0; grid < 4; ++grid) sum += psnr(p, kMethods[k].run(makeMosaic(p, grid)));
            std::printf(" %16.2f", sum / 4);
            total[k] += sum / 4;
        }
        std::printf("\n");
        ++photos;
    }
    if (photos > 1) {
        std::printf("%-24s", "mean");
        for (size_t k = 0; k < nm; ++k) std::printf(" %16.2f", total[k] / photos);
        std::printf("\n");
    }
    return 0;
}
