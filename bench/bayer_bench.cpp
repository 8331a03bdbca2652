// Bayer demosaicing of a 1920x1080 mosaic, 8u and 16u, whole image.
#include <benchmark/benchmark.h>

#include "tpxcc.h"

#include <random>
#include <vector>

namespace {

template <class T>
void BM_CFAToRGB(benchmark::State& state) {
    const int w = 1920, h = 1080;
    std::vector<T> src(size_t(w) * h), dst(size_t(w) * h * 3);
    std::mt19937 rng(5);
    for (auto& v : src) v = T(rng());
    for (auto _ : state) {
        if constexpr (sizeof(T) == 1)
            tpxiCFAToRGB_8u_C1C3R(src.data(), {0, 0, w, h}, {w, h}, w, dst.data(), 3 * w, tpxBayerRGGB, 0);
        else
            tpxiCFAToRGB_16u_C1C3R(src.data(), {0, 0, w, h}, {w, h}, 2 * w, dst.data(), 6 * w, tpxBayerRGGB, 0);
        benchmark::DoNotOptimize(dst.data());
    }
    state.SetItemsProcessed(int64_t(state.iterations()) * w * h);
}

}  // namespace

BENCHMARK_TEMPLATE(BM_CFAToRGB, uint8_t);
BENCHMARK_TEMPLATE(BM_CFAToRGB, uint16_t);
