// Every export called from several threads at once, on destinations of its
// own and sources shared by all threads, gives the bytes and status of the
// same call made alone. The kernel tier is fixed while the library loads, so
// calls never race on it; run under ThreadSanitizer this also shows that no
// call writes anything but its destination.
#include "support/buffers.hpp"
#include "support/export_table.hpp"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <thread>
#include <vector>

namespace {

using tpxtest::Buffers;
using tpxtest::exportTable;

constexpr int kThreads = 4, kRounds = 3;

// Sizes differ between exports so that vector blocks and row tails both run.
std::unique_ptr<Buffers> buffersFor(size_t i) {
    const auto& e = exportTable()[i];
    return std::make_unique<Buffers>(e, int64_t(64 + i * 13 % 71), int64_t(6 + i % 5), uint32_t(1000 + i));
}

TEST(Concurrency, ExportsCalledFromManyThreadsMatchLoneCalls) {
    const auto& table = exportTable();
    const size_t n = table.size();
    std::vector<std::unique_ptr<Buffers>> alone;
    std::vector<TpxStatus> aloneStatus;
    for (size_t i = 0; i < n; ++i) {
        alone.push_back(buffersFor(i));
        aloneStatus.push_back(table[i].call(alone.back()->args));
    }
    // Each thread: destinations holding the same bytes as the lone call's
    // before it ran, and the lone call's sources, which every thread reads.
    std::vector<std::vector<std::unique_ptr<Buffers>>> mine(kThreads);
    for (auto& own : mine)
        for (size_t i = 0; i < n; ++i) {
            own.push_back(buffersFor(i));
            for (int p = 0; p < alone[i]->planes(0); ++p) own.back()->args.src[p] = alone[i]->args.src[p];
        }
    std::vector<std::vector<TpxStatus>> status(kThreads, std::vector<TpxStatus>(n));
    std::atomic<bool> go{false};
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t)
        threads.emplace_back([&, t] {
            while (!go.load()) std::this_thread::yield();
            for (int round = 0; round < kRounds; ++round)
                for (size_t k = 0; k < n; ++k) {
                    const size_t i = (k + size_t(t) * 29) % n;  // every thread in its own order
                    if (round > 0 && table[i].shape.inPlace()) continue;  // converts its own result again
                    status[size_t(t)][i] = table[i].call(mine[size_t(t)][i]->args);
                }
        });
    go = true;
    for (auto& th : threads) th.join();

    for (int t = 0; t < kThreads; ++t)
        for (size_t i = 0; i < n; ++i) {
            EXPECT_EQ(status[size_t(t)][i], aloneStatus[i]) << table[i].name << " thread " << t;
            EXPECT_TRUE(mine[size_t(t)][i]->sameDestination(*alone[i])) << table[i].name << " thread " << t;
        }
}

}  // namespace
