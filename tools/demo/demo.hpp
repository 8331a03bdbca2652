// The demo: a colourful test image, every conversion the library has, one
// line per conversion (function, status, largest round-trip error, Mpix/s).
// Each family adds its conversions in a file of its own with TPX_DEMO.
#pragma once

#include "tpxcc.h"

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

namespace demo {

// The test image: RGB, 8 bits per channel, tightly packed, with ramps, hues
// and sharp edges.
struct Picture {
    int width = 0, height = 0;
    std::vector<uint8_t> rgb;  // width * height * 3
    uint8_t at(int x, int y, int c) const { return rgb[(size_t(y) * size_t(width) + size_t(x)) * 3 + size_t(c)]; }
};

struct Report {
    // One line of the table: `maxError` is the largest absolute difference of
    // a round trip against the original (negative when it does not apply).
    void add(const std::string& function, TpxStatus status, double maxError, double seconds, double pixels);
};

// Best time of `reps` runs of fn, in seconds.
template <class Fn>
double bestTime(Fn&& fn, int reps = 5) {
    double best = 1e30;
    for (int i = 0; i < reps; ++i) {
        auto t0 = std::chrono::steady_clock::now();
        fn();
        double s = std::chrono::duration<double>(std::chrono::steady_clock::now() - t0).count();
        if (s < best) best = s;
    }
    return best;
}

// The test image of the demo.
Picture makePicture(int w, int h);
// Runs every registered conversion on `pic` and prints one line for each.
void printTable(const Picture& pic);

using DemoFn = void (*)(const Picture&, Report&);
struct Registrar {
    Registrar(const char* family, DemoFn fn);
};

}  // namespace demo

#define TPX_DEMO(family, fn)                                   \
    static void fn(const demo::Picture&, demo::Report&);       \
    static const demo::Registrar fn##_registrar(family, fn);   \
    static void fn
