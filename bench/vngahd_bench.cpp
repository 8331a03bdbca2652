// VNG and AHD demosaicing of a 1920x1080 random mosaic, 8 and 16 bits.
#include "tpxcc.h"

#include <benchmark/benchmark.h>

#include <random>
#include <vector>

namespace {

constexpr int kW = 1920, kH = 1080;

template <class T>
std::vector<T> mosaic() {
    std::vector<T> m(size_t(kW) * kH);
    std::mt19937 rng(1);
    for (T& v : m) v = T(rng());
    return m;
}

template <class T>
void BM_Vng(benchmark::State& state) {
    const auto src = mosaic<T>();
    std::vector<T> dst(size_t(kW) * kH * 4);
    const Tpx32f one[4] = {1, 1, 1, 1};
    for (auto _ : state) {
        if constexpr (sizeof(T) == 1)
            tpxiCFAToBGRA_VNG_8u_C1C4R(src.data(), {0, 0, kW, kH}, {kW, kH}, kW, one, dst.data(), kW * 4, tpxBayerBGGR);
        else
            tpxiCFAToBGRA_VNG_16u_C1C4R(src.data(), {0, 0, kW, kH}, {kW, kH}, kW * 2, one, dst.data(), kW * 8,
                                        tpxBayerBGGR);
        benchmark::DoNotOptimize(dst.data());
    }
    state.SetItemsProcessed(int64_t(state.iterations()) * kW * kH);
}

template <class T>
void BM_Ahd(benchmark::State& state) {
    const auto src = mosaic<T>();
    std::vector<T> dst(size_t(kW) * kH * 3);
    for (auto _ : state) {
        if constexpr (sizeof(T) == 1)
            tpxiDemosaicAHD_8u_C1C3R(src.data(), {0, 0, kW, kH}, {kW, kH}, kW, dst.data(), kW * 3, tpxBayerBGGR);
        else
            tpxiDemosaicAHD_16u_C1C3R(src.data(), {0, 0, kW, kH}, {kW, kH}, kW * 2, dst.data(), kW * 6, tpxBayerBGGR);
        benchmark::DoNotOptimize(dst.data());
    }
    state.SetItemsProcessed(int64_t(state.iterations()) * kW * kH);
}

}  // namespace

BENCHMARK_TEMPLATE(BM_Vng, uint8_t)->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(BM_Vng, uint16_t)->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(BM_Ahd, uint8_t)->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(BM_Ahd, uint16_t)->Unit(benchmark::kMillisecond);
