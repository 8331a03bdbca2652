// Every export of the table at 1920x1080, single-threaded, on tightly packed
// images of random samples (the family's own values where it has them), with
// the family's arguments for a valid call. Items are pixels; bytes are those
// read and written.
#include "support/buffers.hpp"
#include "support/export_table.hpp"

#include <benchmark/benchmark.h>

namespace {

constexpr int kW = 1920, kH = 1080;

void run(benchmark::State& state, const tpxtest::Export* e) {
    tpxtest::Buffers b(*e, kW, kH, 1, {tpxtest::StepKind::Tight, tpxtest::StepKind::Tight});
    int64_t bytes = 0;
    for (int d = 0; d < 2; ++d)
        for (int p = 0; p < b.planes(d); ++p) bytes += b.rowBytes(d, p) * b.rows(d, p);
    for (auto _ : state) {
        benchmark::DoNotOptimize(e->call(b.args));
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(int64_t(state.iterations()) * kW * kH);
    state.SetBytesProcessed(int64_t(state.iterations()) * bytes);
}

const bool kRegistered = [] {
    for (const tpxtest::Export& e : tpxtest::exportTable())
        benchmark::RegisterBenchmark(e.name, run, &e)->Unit(benchmark::kMillisecond);
    return true;
}();

}  // namespace
