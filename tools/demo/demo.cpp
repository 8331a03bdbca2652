#include "demo.hpp"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace demo {
namespace {

struct Entry {
    const char* family;
    DemoFn fn;
};
std::vector<Entry>& registry() {
    static std::vector<Entry> r;
    return r;
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

Registrar::Registrar(const char* family, DemoFn fn) { registry().push_back({family, fn}); }

void Report::add(const std::string& function, TpxStatus status, double maxError, double seconds, double pixels) {
    char err[32] = "-";
    if (maxError >= 0) std::snprintf(err, sizeof err, "%.0f", maxError);
    std::printf("%-44s %6d %9s %10.1f\n", function.c_str(), int(status), err,
                seconds > 0 ? pixels / seconds / 1e6 : 0.0);
}

void printTable(const Picture& pic) {
    const TpxLibraryVersion* v = tpxccGetLibVersion();
    std::printf("%s, version %s\n", v->name, v->versionText);
    std::printf("test image %d x %d\n\n", pic.width, pic.height);
    std::printf("%-44s %6s %9s %10s\n", "function", "status", "max err", "Mpix/s");
    auto& entries = registry();
    std::stable_sort(entries.begin(), entries.end(),
                     [](const auto& a, const auto& b) { return std::string(a.family) < b.family; });
    Report report;
    for (const auto& e : entries) e.fn(pic, report);
}

}  // namespace demo
