// Packed and planar 4:2:2 and planar 4:1:1 decoders against the model.
#include "ycbcr_decoders.hpp"

#include <gtest/gtest.h>

using namespace dec;

TEST(Decode422, EveryMemberMatchesTheModel) { expectFamilyMatchesModel("422To"); }

// Width / 4 blocks per row; the (width mod 4) tail stays unwritten, status 0.
TEST(Decode411, EveryMemberMatchesTheModel) { expectFamilyMatchesModel("411To"); }

// The offsets carry no rounding half: full-scale luma truncates to 254 in B
// and R. Two pixels of one pair differ only through their luma.
TEST(Decode422, WhiteTruncatesAndPairsShareChroma) {
    const Tpx8u src[8] = {235, 128, 235, 128, 16, 128, 235, 128};
    Tpx8u dst[16] = {};
    ASSERT_EQ(tpxiYCbCr422ToBGR_8u_C2C4R(src, 8, dst, 16, {4, 1}, 0x80), tpxStatusOk);
    const Tpx8u want[16] = {254, 255, 254, 0x80, 254, 255, 254, 0x80, 0, 0, 0, 0x80, 254, 255, 254, 0x80};
    for (int i = 0; i < 16; ++i) EXPECT_EQ(dst[i], want[i]) << i;

    const Tpx8u pair[4] = {60, 200, 180, 40};  // Y0 Cb Y1 Cr
    Tpx8u rgb[6];
    ASSERT_EQ(tpxiYCbCr422ToRGB_8u_C2C3R(pair, 4, rgb, 6, {2, 1}), tpxStatusOk);
    const Rgb p0 = bt601(60, 200, 40), p1 = bt601(180, 200, 40);
    EXPECT_EQ(rgb[0], p0.r);
    EXPECT_EQ(rgb[1], p0.g);
    EXPECT_EQ(rgb[2], p0.b);
    EXPECT_EQ(rgb[3], p1.r);
    EXPECT_EQ(rgb[4], p1.g);
    EXPECT_EQ(rgb[5], p1.b);
}

// A single pixel is no whole pair: nothing is written and the status is 0.
TEST(Decode422, WidthOneWritesNothing) {
    const Tpx8u src[4] = {100, 100, 100, 100};
    Tpx8u dst[4] = {1, 2, 3, 4};
    EXPECT_EQ(tpxiCbYCr422ToBGR_8u_C2C4R(src, 4, dst, 4, {1, 3}, 9), tpxStatusOk);
    EXPECT_EQ(dst[0] + dst[1] + dst[2] + dst[3], 10);
}
