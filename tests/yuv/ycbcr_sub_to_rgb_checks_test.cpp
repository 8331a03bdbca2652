// Argument checks of all subsampled YCbCr decoders from one table, and black
// in every member.
#include "ycbcr_decoders.hpp"

#include <gtest/gtest.h>

using namespace dec;
using namespace tpxtest;

// Null source (array, step array) and destination, then the size, then the
// plane pointers inside the arrays.
static std::vector<Fault> checkOrder(Sig sig) {
    const Fault nullStepArray = custom("null step array", tpxStatusNullPtr, [](CheckArgs& a) { a.ext[0] = 1; });
    switch (sig) {
    case Sig::Packed: return {nullSrc(0), nullDst(0), badWidth(0), badHeight(-1)};
    case Sig::PackedP3:
        return {nullSrc(0), nullDstArray(), badWidth(-3), badHeight(0), nullDst(0), nullDst(1), nullDst(2)};
    case Sig::Planar:
        return {nullSrcArray(), nullStepArray, nullDst(0), badWidth(0),
                badHeight(0),   nullSrc(0),    nullSrc(1), nullSrc(2)};
    case Sig::TwoPlane: return {nullSrc(0), nullSrc(1), nullDst(0), badWidth(-1), badHeight(0)};
    }
    return {};
}

TEST(DecodeSubsampled, ArgumentChecksInOrder) {
    for (const Member& d : members()) {
        Images im(d, 4, 4, StepKind::Tight, StepKind::Tight, 1);
        CheckArgs valid;
        for (size_t i = 0; i < 3; ++i) {
            valid.src[i] = im.srcPtr[i];
            valid.srcStep[i] = im.srcStep[i];
            valid.dst[i] = im.dstPtr[i];
        }
        valid.dstStep[0] = im.dst[0]->step();
        valid.roi = {4, 4};
        auto call = [&d](CheckArgs& a) {
            return d.call(a.srcPlanes<Tpx8u>(), a.ext[0] ? nullptr : a.srcStep.data(), a.dstPlanes<Tpx8u>(),
                          a.dstStep[0], a.roi, 7);
        };
        std::vector<Image*> dsts;
        for (auto& p : im.dst) dsts.push_back(p.get());
        expectCheckOrder(d.name, call, valid, checkOrder(d.sig), dsts);
    }
}

// Y = 16 with neutral chroma is black in every studio-range member; the
// full-range BT.709 members give black for Y = 0.
TEST(DecodeSubsampled, BlackInEveryMember) {
    for (const Member& d : members()) {
        const bool fullRange = d.math == Math::Hdtv709 || d.math == Math::Hdtv709Ref;
        Images im(d, 12, 4, StepKind::Padded, StepKind::Padded, 2);
        for (size_t p = 0; p < im.src.size(); ++p) {
            Image& s = *im.src[p];
            for (int y = 0; y < s.height(); ++y)
                for (int e = 0; e < s.width(); ++e) {
                    const bool luma = d.source == Source::Packed ? (e % 2 == (d.yOff & 1)) : p == 0;
                    s.set<uint8_t>(e, y, uint8_t(luma ? (fullRange ? 0 : 16) : 128));
                }
        }
        ASSERT_EQ(im.run(d, {12, 4}, 0xEE), tpxStatusOk) << d.name;
        for (auto& out : im.dst)
            EXPECT_TRUE(matches<uint8_t>(*out, out->width(), 4, [&](int e, int) { return d.channels == 4 && e % 4 == 3 ? 0xEE : 0; }))
                << d.name;
    }
}
