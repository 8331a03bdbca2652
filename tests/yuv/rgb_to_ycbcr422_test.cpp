// RGB to 4:2:2 encoders against the independent model, and worked examples of
// the member-specific rules (truncated second luma, half-sum chroma, gamma,
// the 1..254 limits of 709HDTV).
#include "yuv/rgb_to_ycbcr_sub_members.hpp"

using namespace enctest;

namespace {

// Converts one row of pixels with a packed member; returns the packed bytes.
std::vector<int> packedRow(const char* name, const std::vector<Rgb>& px) {
    for (const Member& m : members()) {
        if (std::string(m.name) != name) continue;
        const int w = int(px.size());
        Source s(m, w, 1, tpxtest::StepKind::Tight, 5);
        for (int x = 0; x < w; ++x) s.set(m, x, 0, px[size_t(x)]);
        std::vector<Target> t = makeTargets(m, w, 1, tpxtest::StepKind::Tight, 9);
        EXPECT_EQ(m.call(ioOf(s, t, w, 1)), tpxStatusOk) << name;
        std::vector<int> out;
        for (int e = 0; e < 2 * w; ++e) out.push_back(t[0].img->get<uint8_t>(e, 0));
        return out;
    }
    ADD_FAILURE() << "no member " << name;
    return {};
}

}  // namespace

TEST(RgbToYCbCr422, EveryMemberMatchesModel) { runShapes(Sub::S422); }

TEST(RgbToYCbCr422, PackedRgbMembersTruncateSecondLuma) {
    // Grey 1: 56296 + 1081344 rounds to 17, 56296 + 1048576 truncates to 16.
    const std::vector<Rgb> grey(2, Rgb{1, 1, 1});
    EXPECT_EQ(packedRow("tpxiRGBToYCbCr422_8u_C3C2R", grey), (std::vector<int>{17, 128, 16, 128}));
    EXPECT_EQ(packedRow("tpxiRGBToYCrCb422_8u_C3C2R", grey), (std::vector<int>{17, 128, 16, 128}));
    EXPECT_EQ(packedRow("tpxiRGBToYCbCr422_8u_C3P3R", grey).at(0), 17);
}

TEST(RgbToYCbCr422, HalfSumChromaDiffersFromPairSums) {
    // (12, 164, 0): Cb weighted sum -3244032. Half sums: (2 * -1622016 + 8421375) >> 16 = 78;
    // the pair-sum rule of the planar RGB member: (2 * -3244032 + 16842752) >> 17 = 79.
    const std::vector<Rgb> px(2, Rgb{12, 164, 0});
    EXPECT_EQ(packedRow("tpxiRGBToCbYCr422_8u_C3C2R", px)[0], 78);
    EXPECT_EQ(packedRow("tpxiRGBToYCbCr422_8u_P3C2R", px)[1], 79);
}

TEST(RgbToYCbCr422, GammaMemberEncodesTheCurve) {
    // Code 1 maps to 4 (4.5 / 255 * 255 = 4.5, ties to even), code 255 to 255.
    const std::vector<int> lit = packedRow("tpxiRGBToCbYCr422Gamma_8u_C3C2R", {{1, 1, 1}, {255, 255, 255}});
    const std::vector<int> plain = packedRow("tpxiRGBToCbYCr422_8u_C3C2R", {{4, 4, 4}, {255, 255, 255}});
    EXPECT_EQ(lit, plain);
    EXPECT_EQ(lit[1], (56296 * 4 + 1081344) >> 16);
}

TEST(RgbToYCbCr422, HdtvKeepsCodesZeroAnd255Free) {
    for (const char* name : {"tpxiBGRToCbYCr422_709HDTV_8u_C3C2R", "tpxiBGRToCbYCr422_709HDTV_8u_AC4C2R"}) {
        // Black and white: luma 1 and 254, neutral chroma 128.
        EXPECT_EQ(packedRow(name, {{0, 0, 0}, {255, 255, 255}}), (std::vector<int>{128, 1, 128, 254})) << name;
        // Saturated blue: Cb would be 258, Cr 117; yellow: Cb would be -3.
        EXPECT_EQ(packedRow(name, {{0, 0, 255}, {0, 0, 255}})[0], 254) << name;
        EXPECT_EQ(packedRow(name, {{255, 255, 0}, {255, 255, 0}})[0], 1) << name;
    }
}
