// Gray conversions at 1920x1080, single-threaded.
#include <benchmark/benchmark.h>

#include "tpxcc.h"

#include <cstdint>
#include <vector>

namespace {

constexpr int kW = 1920, kH = 1080;

// Source of `srcCh` and destination of `dstCh` elements of type T per pixel.
template <class T, int srcCh, int dstCh, class Call>
void run(benchmark::State& state, Call call) {
    std::vector<T> src(size_t(kW) * kH * srcCh), dst(size_t(kW) * kH * dstCh);
    for (size_t i = 0; i < src.size(); ++i) src[i] = T((i * 2654435761u >> 8) % 200);
    for (auto _ : state) {
        call(src.data(), int(sizeof(T)) * kW * srcCh, dst.data(), int(sizeof(T)) * kW * dstCh, TpxSize{kW, kH});
        benchmark::DoNotOptimize(dst.data());
    }
    state.SetItemsProcessed(int64_t(state.iterations()) * kW * kH);
}

const float kWeights[3] = {0.25f, 0.5f, 0.25f};
const double kWeights64[3] = {0.25, 0.5, 0.25};

}  // namespace

#define TPX_BENCH_TO_GRAY(types, T, layout, ch)                                                          \
    static void BM_RGBToGray_##types##_##layout(benchmark::State& s) {                                   \
        run<T, ch, 1>(s, tpxiRGBToGray_##types##_##layout);                                              \
    }                                                                                                    \
    BENCHMARK(BM_RGBToGray_##types##_##layout);                                                          \
    static void BM_ColorToGray_##types##_##layout(benchmark::State& s) {                                 \
        run<T, ch, 1>(s, [](auto... a) { return tpxiColorToGray_##types##_##layout(a..., kWeights); }); \
    }                                                                                                    \
    BENCHMARK(BM_ColorToGray_##types##_##layout);

TPX_BENCH_TO_GRAY(8u, Tpx8u, C3C1R, 3)
TPX_BENCH_TO_GRAY(8u, Tpx8u, AC4C1R, 4)
TPX_BENCH_TO_GRAY(16u, Tpx16u, C3C1R, 3)
TPX_BENCH_TO_GRAY(16u, Tpx16u, AC4C1R, 4)
TPX_BENCH_TO_GRAY(16s, Tpx16s, C3C1R, 3)
TPX_BENCH_TO_GRAY(16s, Tpx16s, AC4C1R, 4)
TPX_BENCH_TO_GRAY(32f, Tpx32f, C3C1R, 3)
TPX_BENCH_TO_GRAY(32f, Tpx32f, AC4C1R, 4)

static void BM_ColorToGray_64f_C3C1R(benchmark::State& s) {
    run<Tpx64f, 3, 1>(s, [](auto... a) { return tpxiColorToGray_64f_C3C1R(a..., kWeights64); });
}
BENCHMARK(BM_ColorToGray_64f_C3C1R);
static void BM_ColorToGray_64f_AC4C1R(benchmark::State& s) {
    run<Tpx64f, 4, 1>(s, [](auto... a) { return tpxiColorToGray_64f_AC4C1R(a..., kWeights64); });
}
BENCHMARK(BM_ColorToGray_64f_AC4C1R);

#define TPX_BENCH_FROM_GRAY(types, T)                                                                  \
    static void BM_GrayToRGB_##types##_C1C3R(benchmark::State& s) {                                    \
        run<T, 1, 3>(s, tpxiGrayToRGB_##types##_C1C3R);                                                \
    }                                                                                                  \
    BENCHMARK(BM_GrayToRGB_##types##_C1C3R);                                                           \
    static void BM_GrayToRGB_##types##_C1C4R(benchmark::State& s) {                                    \
        run<T, 1, 4>(s, [](auto... a) { return tpxiGrayToRGB_##types##_C1C4R(a..., T(1)); });         \
    }                                                                                                  \
    BENCHMARK(BM_GrayToRGB_##types##_C1C4R);

TPX_BENCH_FROM_GRAY(8u, Tpx8u)
TPX_BENCH_FROM_GRAY(16u, Tpx16u)
TPX_BENCH_FROM_GRAY(32f, Tpx32f)
