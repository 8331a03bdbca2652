// Every export gives the same bytes and status at every kernel tier. The
// test runs each export over a set of shapes, hashes what it wrote, and
// runs itself again with TPXCC_TIER lowered to each tier this processor has
// (the tier is fixed when the library loads), comparing the hashes. This
// holds for every member, also those whose models allow a tolerance.
#include "frame/cpu.hpp"
#include "support/buffers.hpp"
#include "support/export_table.hpp"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>
#include <unistd.h>

namespace {

using namespace tpxtest;

// FNV-1a over the status and every destination byte of calls on widths that
// reach every block size and tail, with padded, upward and zero steps.
uint64_t digest(const Export& e) {
    uint64_t h = 1469598103934665603ull;
    auto mix = [&h](const uint8_t* p, size_t n) {
        for (size_t i = 0; i < n; ++i) h = (h ^ p[i]) * 1099511628211ull;
    };
    const int minW = e.shape.minW, minH = e.shape.minH;
    uint32_t seed = 1;
    for (int w : {1, 2, 3, 5, 7, 8, 9, 15, 16, 17, 31, 32, 33, 47, 63, 64, 65, 95, 127, 129, 200, 257, 1000}) {
        if (w < minW) continue;
        for (Layout l : {Layout{StepKind::Padded, StepKind::Padded}, Layout{StepKind::Negative, StepKind::Tight},
                         Layout{StepKind::Zero, StepKind::Zero}}) {
            Buffers b(e, w, std::max(minH, 2 + w % 5), seed++, l);
            const TpxStatus st = e.call(b.args);
            mix(reinterpret_cast<const uint8_t*>(&st), sizeof st);
            for (int p = 0; p < b.planes(1); ++p) mix(b.bytes(1, p).data(), b.bytes(1, p).size());
        }
    }
    return h;
}

// Run by the test below in a child process at a lower tier.
TEST(Tiers, PrintDigests) {
    if (!std::getenv("TPXCC_PRINT_DIGESTS")) GTEST_SKIP() << "run by Tiers.SameBytesAtEveryTier";
    for (const Export& e : exportTable()) std::printf("digest %s %llx\n", e.name, (unsigned long long)digest(e));
}

std::map<std::string, uint64_t> digestsAt(const char* tier) {
    char self[4096];
    const ssize_t n = readlink("/proc/self/exe", self, sizeof self - 1);
    std::map<std::string, uint64_t> out;
    if (n <= 0) return out;
    self[n] = 0;
    const std::string cmd = std::string("TPXCC_TIER=") + tier + " TPXCC_PRINT_DIGESTS=1 '" + self +
                            "' --gtest_filter=Tiers.PrintDigests";
    FILE* f = popen(cmd.c_str(), "r");
    if (!f) return out;
    char name[256];
    unsigned long long d;
    char line[512];
    while (std::fgets(line, sizeof line, f))
        if (std::sscanf(line, "digest %255s %llx", name, &d) == 2) out[name] = d;
    pclose(f);
    return out;
}

TEST(Tiers, SameBytesAtEveryTier) {
    if (std::getenv("TPXCC_PRINT_DIGESTS")) GTEST_SKIP();
    std::vector<const char*> tiers = {"scalar"};
    if (tpx::detectedTier() >= tpx::Tier::Avx2) tiers.push_back("avx2");
    if (tpx::detectedTier() >= tpx::Tier::Avx512) tiers.insert(tiers.end(), {"avx512bw", "avx512"});
    std::map<std::string, uint64_t> first;
    for (const char* tier : tiers) {
        const std::map<std::string, uint64_t> d = digestsAt(tier);
        ASSERT_EQ(d.size(), exportTable().size()) << "digests at " << tier;
        if (first.empty()) {
            first = d;
            continue;
        }
        for (const auto& [name, value] : d) EXPECT_EQ(value, first[name]) << name << " at " << tier << " differs from scalar";
    }
}

}  // namespace
