// The bandwidth floor: a plain copy of a 1920x1080 image of 3 and 4 bytes per pixel.
#include <benchmark/benchmark.h>

#include <cstring>
#include <vector>

static void BM_CopyRGB24(benchmark::State& state) {
    const size_t n = 1920 * 1080 * size_t(state.range(0));
    std::vector<unsigned char> a(n, 1), b(n);
    for (auto _ : state) {
        std::memcpy(b.data(), a.data(), n);
        benchmark::DoNotOptimize(b.data());
    }
    state.SetBytesProcessed(int64_t(state.iterations()) * int64_t(n) * 2);
}
BENCHMARK(BM_CopyRGB24)->Arg(3)->Arg(4);
