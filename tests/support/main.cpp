// Test main: runs the suite at the tier TPXCC_TIER asks for, and skips the
// whole suite when this processor lacks that tier.
#include "frame/cpu.hpp"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

class SkipAll : public ::testing::Environment {
public:
    void SetUp() override { GTEST_SKIP() << "this processor lacks the requested tier"; }
};

}  // namespace

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    const char* asked = std::getenv("TPXCC_TIER");
    tpx::Tier want = tpx::detectedTier();
    if (asked && !std::strcmp(asked, "scalar")) want = tpx::Tier::Scalar;
    if (asked && !std::strcmp(asked, "avx2")) want = tpx::Tier::Avx2;
    if (asked && !std::strcmp(asked, "avx512")) want = tpx::Tier::Avx512;
    std::printf("[   tier   ] %s (processor supports %s)\n", tpx::tierName(tpx::activeTier()),
                tpx::tierName(tpx::detectedTier()));
    if (want > tpx::detectedTier()) {
        std::printf("[   tier   ] %s is not available here: every test is skipped\n", asked);
        ::testing::AddGlobalTestEnvironment(new SkipAll);
    }
    return RUN_ALL_TESTS();
}
