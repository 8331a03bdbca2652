// Subsampled YCbCr to RGB decoders at 1920x1080.
#include "tpxcc.h"

#include <benchmark/benchmark.h>

#include <vector>

namespace {

constexpr int kW = 1920, kH = 1080;

struct Frame {
    std::vector<Tpx8u> y = std::vector<Tpx8u>(size_t(kW) * kH, 120), cb = std::vector<Tpx8u>(size_t(kW) * kH / 4, 90),
                       cr = std::vector<Tpx8u>(size_t(kW) * kH / 4, 170), uv = std::vector<Tpx8u>(size_t(kW) * kH / 2, 100),
                       packed = std::vector<Tpx8u>(size_t(kW) * kH * 2, 110), dst = std::vector<Tpx8u>(size_t(kW) * kH * 4);
    const Tpx8u* planes[3] = {y.data(), cb.data(), cr.data()};
    int steps[3] = {kW, kW / 2, kW / 2};
};

template <class Fn>
void run(benchmark::State& state, Fn&& fn) {
    Frame f;
    for (auto _ : state) {
        fn(f);
        benchmark::DoNotOptimize(f.dst.data());
    }
    state.SetItemsProcessed(int64_t(state.iterations()) * kW * kH);
}

}  // namespace

static void BM_YCbCr420ToBGR_P3C4R(benchmark::State& s) {
    run(s, [](Frame& f) { tpxiYCbCr420ToBGR_8u_P3C4R(f.planes, f.steps, f.dst.data(), 4 * kW, {kW, kH}, 255); });
}
static void BM_YCbCr420ToBGR_P3C3R(benchmark::State& s) {
    run(s, [](Frame& f) { tpxiYCbCr420ToBGR_8u_P3C3R(f.planes, f.steps, f.dst.data(), 3 * kW, {kW, kH}); });
}
static void BM_YCbCr420ToRGB_P3C3R(benchmark::State& s) {
    run(s, [](Frame& f) { tpxiYCbCr420ToRGB_8u_P3C3R(f.planes, f.steps, f.dst.data(), 3 * kW, {kW, kH}); });
}
static void BM_YCbCr420ToBGR_P2C4R(benchmark::State& s) {
    run(s, [](Frame& f) { tpxiYCbCr420ToBGR_8u_P2C4R(f.y.data(), kW, f.uv.data(), kW, f.dst.data(), 4 * kW, {kW, kH}, 255); });
}
static void BM_YCbCr422ToBGR_C2C4R(benchmark::State& s) {
    run(s, [](Frame& f) { tpxiYCbCr422ToBGR_8u_C2C4R(f.packed.data(), 2 * kW, f.dst.data(), 4 * kW, {kW, kH}, 255); });
}
static void BM_YCbCr422ToBGR_C2C3R(benchmark::State& s) {
    run(s, [](Frame& f) { tpxiYCbCr422ToBGR_8u_C2C3R(f.packed.data(), 2 * kW, f.dst.data(), 3 * kW, {kW, kH}); });
}
static void BM_CbYCr422ToBGR_C2C4R(benchmark::State& s) {
    run(s, [](Frame& f) { tpxiCbYCr422ToBGR_8u_C2C4R(f.packed.data(), 2 * kW, f.dst.data(), 4 * kW, {kW, kH}, 255); });
}
static void BM_YCbCr420ToBGR_709CSC_P3C3R(benchmark::State& s) {
    run(s, [](Frame& f) { tpxiYCbCr420ToBGR_709CSC_8u_P3C3R(f.planes, f.steps, f.dst.data(), 3 * kW, {kW, kH}); });
}
static void BM_YCrCb420ToBGR_Filter_P3C4R(benchmark::State& s) {
    run(s, [](Frame& f) { tpxiYCrCb420ToBGR_Filter_8u_P3C4R(f.planes, f.steps, f.dst.data(), 4 * kW, {kW, kH}, 255); });
}
BENCHMARK(BM_YCbCr420ToBGR_P3C4R);
BENCHMARK(BM_YCbCr420ToBGR_P3C3R);
BENCHMARK(BM_YCbCr420ToRGB_P3C3R);
BENCHMARK(BM_YCbCr420ToBGR_P2C4R);
BENCHMARK(BM_YCbCr422ToBGR_C2C4R);
BENCHMARK(BM_YCbCr422ToBGR_C2C3R);
BENCHMARK(BM_CbYCr422ToBGR_C2C4R);
BENCHMARK(BM_YCbCr420ToBGR_709CSC_P3C3R);
BENCHMARK(BM_YCrCb420ToBGR_Filter_P3C4R);
