// RGB to 4:2:0 and 4:1:1 encoders against the independent model (odd sizes
// leave the last column or row unwritten; 4:1:1 leaves the width % 4 tail),
// and the one-colour block example.
#include "yuv/rgb_to_ycbcr_sub_members.hpp"

using namespace enctest;

TEST(RgbToYCbCr420, EveryMemberMatchesModel) { runShapes(Sub::S420); }

TEST(RgbToYCbCr411, EveryMemberMatchesModel) { runShapes(Sub::S411); }

TEST(RgbToYCbCr420, OneColourBlockGivesTheFullResolutionValues) {
    // 4:4:4 reference chroma of the colour: (c + 8421376) >> 16; the 4:2:0
    // offset rounds by 1/8 instead of 1/2, so it can be one below.
    const Rgb colours[] = {{200, 30, 90}, {12, 240, 17}, {255, 255, 255}, {0, 0, 255}};
    for (const Member& m : members()) {
        if (m.sub != Sub::S420 || m.math != Math::Bt601) continue;
        for (const Rgb c : colours) {
            Source s(m, 2, 2, tpxtest::StepKind::Padded, 3);
            for (int y = 0; y < 2; ++y)
                for (int x = 0; x < 2; ++x) s.set(m, x, y, c);
            std::vector<Target> t = makeTargets(m, 2, 2, tpxtest::StepKind::Padded, 4);
            ASSERT_EQ(m.call(ioOf(s, t, 2, 2)), tpxStatusOk) << m.name;
            const int y444 = (16843 * c.r + 33030 * c.g + 6423 * c.b + 1081344) >> 16;
            const int cb444 = (-9699 * c.r - 19071 * c.g + 28770 * c.b + 8421376) >> 16;
            const int cr444 = (28770 * c.r - 24117 * c.g - 4653 * c.b + 8421376) >> 16;
            for (int y = 0; y < 2; ++y)
                for (int x = 0; x < 2; ++x) EXPECT_EQ(t[0].img->get<uint8_t>(x, y), y444) << m.name;
            int cb, cr;
            if (m.dst == Dst::TwoPlane) {
                cb = t[1].img->get<uint8_t>(0, 0), cr = t[1].img->get<uint8_t>(1, 0);
            } else {
                cb = t[1].img->get<uint8_t>(0, 0), cr = t[2].img->get<uint8_t>(0, 0);
                if (m.dst == Dst::PlanesCrFirst) std::swap(cb, cr);
            }
            EXPECT_TRUE(cb == cb444 || cb == cb444 - 1) << m.name << " Cb " << cb << " vs " << cb444;
            EXPECT_TRUE(cr == cr444 || cr == cr444 - 1) << m.name << " Cr " << cr << " vs " << cr444;
        }
    }
}
