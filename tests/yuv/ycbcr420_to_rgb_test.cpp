// Planar and two-plane 4:2:0 decoders (BT.601, BT.709, filtered) against the model.
#include "ycbcr_decoders.hpp"

#include <gtest/gtest.h>

using namespace dec;

TEST(Decode420, EveryMemberMatchesTheModel) { expectFamilyMatchesModel("420To"); }

// Odd sizes: whole 2x2 blocks only, +35. A 1x1 ROI writes nothing; 3x3
// writes the top-left 2x2.
TEST(Decode420, OddSizesWriteWholeBlocksOnly) {
    const Member& d = member("tpxiYCbCr420ToBGR_8u_P3C4R");
    for (int n : {1, 3}) {
        Images im(d, n, n, tpxtest::StepKind::Padded, tpxtest::StepKind::Padded, 5);
        for (int y = 0; y < n; ++y)
            for (int x = 0; x < n; ++x) im.src[0]->set<uint8_t>(x, y, 235);
        for (int p = 1; p < 3; ++p)
            for (int y = 0; y < (n + 1) / 2; ++y)
                for (int x = 0; x < (n + 1) / 2; ++x) im.src[size_t(p)]->set<uint8_t>(x, y, 128);
        ASSERT_EQ(im.run(d, {n, n}, 0x42), tpxStatusOddSize) << n;
        const Image& out = *im.dst[0];
        auto inBlock = [&](int e, int y) { return e < 8 && y < 2 && n == 3; };
        EXPECT_TRUE(out.untouchedExcept(inBlock)) << n;
        if (n == 3) {
            const int want[4] = {254, 255, 254, 0x42};
            EXPECT_TRUE(tpxtest::matches<uint8_t>(out, 8, 2, [&](int e, int) { return want[e % 4]; }));
        }
    }
}

// Constant chroma planes make the filter an identity: the filtered member then
// equals the replicating one (with R and B swapped).
TEST(Decode420, FilterOfFlatChromaEqualsReplication) {
    const Member& f = member("tpxiYCrCb420ToBGR_Filter_8u_P3C4R");
    const Member& r = member("tpxiYCrCb420ToRGB_8u_P3C4R");
    Images a(f, 10, 6, tpxtest::StepKind::Tight, tpxtest::StepKind::Tight, 3);
    Images b(r, 10, 6, tpxtest::StepKind::Tight, tpxtest::StepKind::Tight, 3);
    for (Images* im : {&a, &b})
        for (int p = 1; p < 3; ++p)
            for (int y = 0; y < 3; ++y)
                for (int x = 0; x < 5; ++x) im->src[size_t(p)]->set<uint8_t>(x, y, uint8_t(p == 1 ? 200 : 50));
    ASSERT_EQ(a.run(f, {10, 6}, 1), tpxStatusOk);
    ASSERT_EQ(b.run(r, {10, 6}, 1), tpxStatusOk);
    EXPECT_TRUE(tpxtest::matches<uint8_t>(*a.dst[0], 40, 6, [&](int e, int y) {
        const int k = e % 4;
        return b.dst[0]->get<uint8_t>(k == 3 || k == 1 ? e : e - k + 2 - k, y);
    }));
}
