// RGB to subsampled YCbCr at 1920x1080, single-threaded.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <vector>

#include "tpxcc.h"

namespace {

constexpr int kW = 1920, kH = 1080;

struct Buffers {
    std::vector<uint8_t> src, y, cb, cr, packed;
    Tpx8u* planes[3];
    int steps[3] = {kW, kW / 2, kW / 2};
    explicit Buffers(int bytes)
        : src(size_t(kW) * kH * size_t(bytes)),
          y(size_t(kW) * kH),
          cb(size_t(kW) * kH),
          cr(size_t(kW) * kH),
          packed(size_t(kW) * kH * 2) {
        for (size_t i = 0; i < src.size(); ++i) src[i] = uint8_t(i * 2654435761u >> 13);
        planes[0] = y.data(), planes[1] = cb.data(), planes[2] = cr.data();
    }
};

using P3 = TpxStatus (*)(const Tpx8u*, int, Tpx8u* const*, const int*, TpxSize);
using P2 = TpxStatus (*)(const Tpx8u*, int, Tpx8u*, int, Tpx8u*, int, TpxSize);
using C2 = TpxStatus (*)(const Tpx8u*, int, Tpx8u*, int, TpxSize);

void toPlanes(benchmark::State& state, P3 fn, int bytes) {
    Buffers b(bytes);
    for (auto _ : state) benchmark::DoNotOptimize(fn(b.src.data(), kW * bytes, b.planes, b.steps, {kW, kH}));
    state.SetItemsProcessed(int64_t(state.iterations()) * kW * kH);
}
void toTwoPlanes(benchmark::State& state, P2 fn, int bytes) {
    Buffers b(bytes);
    for (auto _ : state)
        benchmark::DoNotOptimize(fn(b.src.data(), kW * bytes, b.y.data(), kW, b.cb.data(), kW, {kW, kH}));
    state.SetItemsProcessed(int64_t(state.iterations()) * kW * kH);
}
void toPacked(benchmark::State& state, C2 fn, int bytes) {
    Buffers b(bytes);
    for (auto _ : state) benchmark::DoNotOptimize(fn(b.src.data(), kW * bytes, b.packed.data(), 2 * kW, {kW, kH}));
    state.SetItemsProcessed(int64_t(state.iterations()) * kW * kH);
}

}  // namespace

BENCHMARK_CAPTURE(toPlanes, BGRToYCbCr420_8u_C3P3R, tpxiBGRToYCbCr420_8u_C3P3R, 3);
BENCHMARK_CAPTURE(toPlanes, RGBToYCbCr420_8u_C3P3R, tpxiRGBToYCbCr420_8u_C3P3R, 3);
BENCHMARK_CAPTURE(toPlanes, BGRToYCbCr420_8u_AC4P3R, tpxiBGRToYCbCr420_8u_AC4P3R, 4);
BENCHMARK_CAPTURE(toPlanes, BGRToYCbCr420_709CSC_8u_AC4P3R, tpxiBGRToYCbCr420_709CSC_8u_AC4P3R, 4);
BENCHMARK_CAPTURE(toPlanes, BGRToYCbCr420_709HDTV_8u_AC4P3R, tpxiBGRToYCbCr420_709HDTV_8u_AC4P3R, 4);
BENCHMARK_CAPTURE(toTwoPlanes, BGRToYCbCr420_8u_AC4P2R, tpxiBGRToYCbCr420_8u_AC4P2R, 4);
BENCHMARK_CAPTURE(toTwoPlanes, BGRToYCbCr420_8u_C3P2R, tpxiBGRToYCbCr420_8u_C3P2R, 3);
BENCHMARK_CAPTURE(toPlanes, BGRToYCbCr422_8u_C3P3R, tpxiBGRToYCbCr422_8u_C3P3R, 3);
BENCHMARK_CAPTURE(toPlanes, BGRToYCbCr411_8u_C3P3R, tpxiBGRToYCbCr411_8u_C3P3R, 3);
BENCHMARK_CAPTURE(toPacked, BGRToYCbCr422_8u_AC4C2R, tpxiBGRToYCbCr422_8u_AC4C2R, 4);
BENCHMARK_CAPTURE(toPacked, RGBToYCbCr422_8u_C3C2R, tpxiRGBToYCbCr422_8u_C3C2R, 3);
BENCHMARK_CAPTURE(toPacked, BGRToCbYCr422_8u_AC4C2R, tpxiBGRToCbYCr422_8u_AC4C2R, 4);
BENCHMARK_CAPTURE(toPacked, BGRToCbYCr422_709HDTV_8u_AC4C2R, tpxiBGRToCbYCr422_709HDTV_8u_AC4C2R, 4);
BENCHMARK_CAPTURE(toPacked, RGBToCbYCr422Gamma_8u_C3C2R, tpxiRGBToCbYCr422Gamma_8u_C3C2R, 3);
