// Argument checks of every RGB to subsampled YCbCr encoder from one table:
// null pointers and arrays, then the size minimum, then null plane pointers;
// a refused call writes nothing. And black encodes to the black level in
// every member.
#include "yuv/rgb_to_ycbcr_sub_members.hpp"

using namespace enctest;
using tpxtest::CheckArgs;
using tpxtest::Fault;

namespace {

bool planarDst(const Member& m) { return m.dst == Dst::Planes || m.dst == Dst::PlanesCrFirst; }

// The faults of a member in check order.
std::vector<Fault> faultsOf(const Member& m) {
    std::vector<Fault> f;
    const bool planarSrc = m.src == Src::Planes;
    f.push_back(planarSrc ? tpxtest::nullSrcArray() : tpxtest::nullSrc(0));
    if (planarDst(m)) {
        f.push_back(tpxtest::nullDstArray());
        f.push_back(tpxtest::custom("null step array", tpxStatusNullPtr, [](CheckArgs& a) { a.ext[0] = 1; }));
    } else {
        f.push_back(tpxtest::nullDst(0));
        if (m.dst == Dst::TwoPlane) f.push_back(tpxtest::nullDst(1));
    }
    f.push_back(tpxtest::badWidth(minWidth(m) - 1));
    f.push_back(tpxtest::badHeight(minHeight(m) - 1));
    f.push_back(tpxtest::badHeight(-7));
    if (planarSrc)
        for (int i = 0; i < 3; ++i) f.push_back(tpxtest::nullSrc(i));
    if (planarDst(m))
        for (int i = 0; i < 3; ++i) f.push_back(tpxtest::nullDst(i));
    return f;
}

}  // namespace

TEST(RgbToYCbCrSub, ChecksInOrderAndWriteNothingOnFailure) {
    for (const Member& m : members()) {
        const int w = 6, h = 4;
        Source s(m, w, h, tpxtest::StepKind::Padded, 11);
        std::vector<Target> t = makeTargets(m, w, h, tpxtest::StepKind::Padded, 12);
        const Io io = ioOf(s, t, w, h);
        CheckArgs valid;
        for (int i = 0; i < 3; ++i) valid.src[size_t(i)] = io.src[i], valid.dst[size_t(i)] = io.dst[i];
        valid.srcStep[0] = io.srcStep;
        for (int i = 0; i < 3; ++i) valid.dstStep[size_t(i)] = io.dstStep[i];
        valid.roi = io.roi;
        auto call = [&m](CheckArgs& a) {
            Io c;
            for (int i = 0; i < 3; ++i) c.src[i] = a.s<Tpx8u>(i), c.dst[i] = a.d<Tpx8u>(i);
            c.srcStep = a.srcStep[0];
            for (int i = 0; i < 3; ++i) c.dstStep[i] = a.dstStep[size_t(i)];
            c.roi = a.roi;
            c.noSrcArray = a.srcArrayNull, c.noDstArray = a.dstArrayNull, c.noStepArray = a.ext[0] != 0;
            return m.call(c);
        };
        std::vector<tpxtest::Image*> dsts;
        for (auto& d : t) dsts.push_back(d.img.get());
        tpxtest::expectCheckOrder(m.name, call, valid, faultsOf(m), dsts);
    }
}

TEST(RgbToYCbCrSub, BlackGivesTheBlackLevel) {
    for (const Member& m : members()) {
        const int w = 8, h = 2;
        Source s(m, w, h, tpxtest::StepKind::Tight, 21);
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x) s.set(m, x, y, {0, 0, 0});
        std::vector<Target> t = makeTargets(m, w, h, tpxtest::StepKind::Tight, 22);
        ASSERT_EQ(m.call(ioOf(s, t, w, h)), tpxStatusOk) << m.name;
        const int black = m.math == Math::Hdtv709 ? 1 : 16;  // full range keeps 0 free
        for (int y = 0; y < h; ++y)
            for (int e = 0; e < w * (packed(m) ? 2 : 1); ++e) {
                const bool luma = !packed(m) || (m.dst == Dst::CbYCr ? e % 2 == 1 : e % 2 == 0);
                EXPECT_EQ(t[0].img->get<uint8_t>(e, y), luma ? black : 128) << m.name << " " << e << "," << y;
            }
        for (size_t d = 1; d < t.size(); ++d)
            for (int e = 0; e < t[d].img->width(); ++e) EXPECT_EQ(t[d].img->get<uint8_t>(e, 0), 128) << m.name;
    }
}
