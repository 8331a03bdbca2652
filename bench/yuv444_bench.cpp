// RGB <-> YCbCr 4:4:4: every member on a 1920x1080 image.
#include "tpxcc.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <random>
#include <vector>

namespace {

constexpr int kW = 1920, kH = 1080;

struct Buffers {
    std::vector<uint8_t> src, dst;
    const Tpx8u* srcPlanes[3];
    Tpx8u* dstPlanes[3];
    Buffers() : src(size_t(kW) * kH * 4), dst(size_t(kW) * kH * 4) {
        std::mt19937 rng(1);
        for (auto& b : src) b = uint8_t(rng());
        for (int i = 0; i < 3; ++i) {
            srcPlanes[i] = src.data() + size_t(i) * kW * kH;
            dstPlanes[i] = dst.data() + size_t(i) * kW * kH;
        }
    }
};

// fn(buffers, roi) runs one conversion; the counter is pixels per second.
template <class Fn>
void run(benchmark::State& state, Fn fn) {
    Buffers b;
    for (auto _ : state) {
        benchmark::DoNotOptimize(fn(b, TpxSize{kW, kH}));
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(int64_t(state.iterations()) * kW * kH);
}

#define PACKED(fn, sc, dc)                                                                                  \
    void BM_##fn(benchmark::State& s) {                                                                     \
        run(s, [](Buffers& b, TpxSize r) { return fn(b.src.data(), kW * sc, b.dst.data(), kW * dc, r); }); \
    }                                                                                                       \
    BENCHMARK(BM_##fn)
#define PLANAR(fn)                                                                                    \
    void BM_##fn(benchmark::State& s) {                                                               \
        run(s, [](Buffers& b, TpxSize r) { return fn(b.srcPlanes, kW, b.dstPlanes, kW, r); });        \
    }                                                                                                 \
    BENCHMARK(BM_##fn)
#define TO_PLANES(fn, sc)                                                                             \
    void BM_##fn(benchmark::State& s) {                                                               \
        run(s, [](Buffers& b, TpxSize r) { return fn(b.src.data(), kW * sc, b.dstPlanes, kW, r); });  \
    }                                                                                                 \
    BENCHMARK(BM_##fn)
#define FROM_PLANES(fn, dc, ...)                                                                                \
    void BM_##fn(benchmark::State& s) {                                                                         \
        run(s, [](Buffers& b, TpxSize r) { return fn(b.srcPlanes, kW, b.dst.data(), kW * dc, r __VA_ARGS__); }); \
    }                                                                                                           \
    BENCHMARK(BM_##fn)

PACKED(tpxiRGBToYCbCr_8u_C3R, 3, 3);
PACKED(tpxiRGBToYCbCr_8u_AC4R, 4, 4);
PLANAR(tpxiRGBToYCbCr_8u_P3R);
TO_PLANES(tpxiRGBToYCbCr_8u_C3P3R, 3);
TO_PLANES(tpxiRGBToYCbCr_8u_AC4P3R, 4);
PACKED(tpxiYCbCrToRGB_8u_C3R, 3, 3);
PACKED(tpxiYCbCrToRGB_8u_AC4R, 4, 4);
PLANAR(tpxiYCbCrToRGB_8u_P3R);
FROM_PLANES(tpxiYCbCrToRGB_8u_P3C3R, 3);
FROM_PLANES(tpxiYCbCrToRGB_8u_P3C4R, 4, , 255);
FROM_PLANES(tpxiYCbCrToBGR_8u_P3C3R, 3);
FROM_PLANES(tpxiYCbCrToBGR_8u_P3C4R, 4, , 255);
FROM_PLANES(tpxiYCbCrToBGR_709CSC_8u_P3C3R, 3);
FROM_PLANES(tpxiYCbCrToBGR_709CSC_8u_P3C4R, 4, , 255);

}  // namespace
