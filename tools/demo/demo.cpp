#include "demo.hpp"

#include "frame/cpu.hpp"
#include "support/buffers.hpp"
#include "support/export_table.hpp"
#include "support/roundtrips.hpp"
#include "tpxcc.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstring>

namespace demo {
namespace {

// Best time of `reps` runs of fn, in seconds.
template <class Fn>
double bestTime(Fn&& fn, int reps = 5) {
    double best = 1e30;
    for (int i = 0; i < reps; ++i) {
        auto t0 = std::chrono::steady_clock::now();
        fn();
        best = std::min(best, std::chrono::duration<double>(std::chrono::steady_clock::now() - t0).count());
    }
    return best;
}

// The picture in the source of an export whose source holds 8-bit colour
// pixels (three or four channels, or three or four planes); others keep the
// table's samples.
void paint(const tpxtest::Export& e, tpxtest::Buffers& b, const Picture& pic) {
    const tpxtest::ImageShape& s = e.shape.src;
    if (s.elem != tpxtest::Elem::U8 || s.plane[0].hsub != 1) return;
    const bool planar = s.pass == tpxtest::Pass::Planes;
    const int ch = planar ? s.planes : s.plane[0].unitBytes;
    if ((s.pass != tpxtest::Pass::Single && !planar) || ch < 3 || ch > 4) return;
    for (int y = 0; y < pic.height; ++y)
        for (int x = 0; x < pic.width; ++x)
            for (int c = 0; c < ch; ++c) {
                const uint8_t v = c < 3 ? pic.at(x, y, c) : 255;
                if (planar) b.row(0, c, y)[x] = v;
                else b.row(0, 0, y)[x * ch + c] = v;
            }
}

}  // namespace

Picture makePicture(int w, int h) {
    Picture p;
    p.width = w;
    p.height = h;
    p.rgb.resize(size_t(w) * size_t(h) * 3);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            uint8_t* px = &p.rgb[(size_t(y) * size_t(w) + size_t(x)) * 3];
            const double hue = 6.0 * x / w, light = 1.0 - double(y) / h;
            const int sector = int(hue) % 6;
            const double f = hue - std::floor(hue);
            double r = 0, g = 0, b = 0;
            switch (sector) {
                case 0: r = 1, g = f; break;
                case 1: r = 1 - f, g = 1; break;
                case 2: g = 1, b = f; break;
                case 3: g = 1 - f, b = 1; break;
                case 4: r = f, b = 1; break;
                default: r = 1, b = 1 - f; break;
            }
            const bool checker = ((x / 32) + (y / 32)) % 2 == 0 && y >= h * 3 / 4;
            const double k = checker ? 0.15 : 1.0;
            px[0] = uint8_t(std::lround(255 * r * light * k));
            px[1] = uint8_t(std::lround(255 * g * light * k));
            px[2] = uint8_t(std::lround(255 * b * light * k));
        }
    return p;
}

void printTable(const Picture& pic) {
    const TpxLibraryVersion* v = tpxccGetLibVersion();
    std::printf("%s, version %s, kernels %s\n", v->name, v->versionText, tpx::tierName(tpx::activeTier()));
    std::printf("test image %d x %d\n", pic.width, pic.height);
    const char* family = nullptr;
    for (const tpxtest::Export& e : tpxtest::exportTable()) {
        if (!family || std::strcmp(family, e.family)) {
            family = e.family;
            std::printf("\n%s\n%-46s %6s %10s\n", family, "function", "status", "Mpix/s");
        }
        tpxtest::Buffers b(e, pic.width, pic.height, 1, {tpxtest::StepKind::Tight, tpxtest::StepKind::Tight});
        paint(e, b, pic);
        TpxStatus st = tpxStatusOk;
        double s = bestTime([&] { st = e.call(b.args); }, 1);
        if (s < 0.02) s = std::min(s, bestTime([&] { e.call(b.args); }, 4));  // quick ones: the best of 5
        std::printf("%-46s %6d %10.1f\n", e.name, int(st), double(pic.width) * pic.height / s / 1e6);
    }
    std::printf("\nround trips: largest difference from the picture\n");
    const auto picture = [&pic](int c, int64_t x, int64_t y) -> double {
        return c < 3 ? pic.at(int(x), int(y), c) : 255;
    };
    for (const tpxtest::RoundTrip& t : tpxtest::roundTrips())
        std::printf("%-40s then %-40s %6g\n", t.there, t.back, tpxtest::roundTripError(t, pic.width, pic.height, picture));
}

}  // namespace demo
