// The RGB to subsampled YCbCr encoders as test subjects: one table of all
// members with how to call each, and an independent per-pixel model of what
// each must write, built from the formulas alone.
#pragma once

#include "support/argcheck.hpp"
#include "support/image.hpp"
#include "support/shapes.hpp"
#include "tpxcc.h"

#include <cmath>
#include <memory>
#include <vector>

namespace enctest {

enum class Src { C3, C4, Planes };
enum class Dst { Planes, PlanesCrFirst, TwoPlane, YCbCr, YCrCb, CbYCr };
enum class Sub { S422, S420, S411 };
enum class Math { Bt601, Csc709, Hdtv709 };

// Arguments of any member: source plane(s) and step, destination planes and steps.
struct Io {
    const Tpx8u* src[3]{};
    int srcStep = 0;
    Tpx8u* dst[3]{};
    int dstStep[3]{};
    TpxSize roi{};
    bool noSrcArray = false, noDstArray = false, noStepArray = false;  // pass null arrays
    const Tpx8u* const* srcArray() const { return noSrcArray ? nullptr : src; }
    Tpx8u* const* dstArray() const { return noDstArray ? nullptr : dst; }
    const int* stepArray() const { return noStepArray ? nullptr : dstStep; }
};
using Call = TpxStatus (*)(const Io&);

struct Member {
    const char* name;
    Call call;
    Src src;
    bool bgr;
    Sub sub;
    Dst dst;
    Math math;
    int k;  // chroma offset (128 plus the member's rounding fraction)
    // Y1Floor: second luma of a pair without the rounding half; HalfSums:
    // chroma from halved per-pixel weighted sums; Gamma: HalfSums after the curve.
    enum Rule { Plain, Y1Floor, HalfSums, Gamma } rule = Plain;
};


// ---- Calling the members through one argument record ------------------------
using P3Fn = TpxStatus (*)(const Tpx8u*, int, Tpx8u* const*, const int*, TpxSize);
using P2Fn = TpxStatus (*)(const Tpx8u*, int, Tpx8u*, int, Tpx8u*, int, TpxSize);
using C2Fn = TpxStatus (*)(const Tpx8u*, int, Tpx8u*, int, TpxSize);
using P3C2Fn = TpxStatus (*)(const Tpx8u* const*, int, Tpx8u*, int, TpxSize);
template <P3Fn F> TpxStatus p3(const Io& io) {
    return F(io.src[0], io.srcStep, io.dstArray(), io.stepArray(), io.roi);
}
template <P2Fn F> TpxStatus p2(const Io& io) {
    return F(io.src[0], io.srcStep, io.dst[0], io.dstStep[0], io.dst[1], io.dstStep[1], io.roi);
}
template <C2Fn F> TpxStatus c2(const Io& io) { return F(io.src[0], io.srcStep, io.dst[0], io.dstStep[0], io.roi); }
template <P3C2Fn F> TpxStatus p3c2(const Io& io) {
    return F(io.srcArray(), io.srcStep, io.dst[0], io.dstStep[0], io.roi);
}

// Chroma offsets: 128 plus 1/8 or 1/2 at the chroma scale.
constexpr int kPair8 = 16793600, kPairHalf = 16842752, kBlock8 = 33587200;

#define M(fn, form) #fn, &form<&fn>
inline const std::vector<Member>& members() {
    using S = Sub;
    using D = Dst;
    using A = Math;
    constexpr Src C3 = Src::C3, C4 = Src::C4, P = Src::Planes;
    static const std::vector<Member> all = {
        {M(tpxiBGRToYCbCr422_8u_C3C2R, c2), C3, true, S::S422, D::YCbCr, A::Bt601, kPair8},
        {M(tpxiBGRToYCbCr422_8u_AC4C2R, c2), C4, true, S::S422, D::YCbCr, A::Bt601, kPair8},
        {M(tpxiBGRToYCbCr422_8u_C3P3R, p3), C3, true, S::S422, D::Planes, A::Bt601, kPair8},
        {M(tpxiBGRToYCbCr422_8u_AC4P3R, p3), C4, true, S::S422, D::Planes, A::Bt601, kPair8},
        {M(tpxiRGBToYCbCr422_8u_C3C2R, c2), C3, false, S::S422, D::YCbCr, A::Bt601, kPairHalf, Member::Y1Floor},
        {M(tpxiRGBToYCbCr422_8u_P3C2R, p3c2), P, false, S::S422, D::YCbCr, A::Bt601, kPairHalf},
        {M(tpxiRGBToYCbCr422_8u_C3P3R, p3), C3, false, S::S422, D::Planes, A::Bt601, kPairHalf},
        {M(tpxiRGBToYCrCb422_8u_C3C2R, c2), C3, false, S::S422, D::YCrCb, A::Bt601, kPairHalf, Member::Y1Floor},
        {M(tpxiRGBToYCrCb422_8u_P3C2R, p3c2), P, false, S::S422, D::YCrCb, A::Bt601, kPairHalf},
        {M(tpxiBGRToCbYCr422_8u_AC4C2R, c2), C4, true, S::S422, D::CbYCr, A::Bt601, 0, Member::HalfSums},
        {M(tpxiBGRToCbYCr422_709HDTV_8u_C3C2R, c2), C3, true, S::S422, D::CbYCr, A::Hdtv709, kPair8},
        {M(tpxiBGRToCbYCr422_709HDTV_8u_AC4C2R, c2), C4, true, S::S422, D::CbYCr, A::Hdtv709, kPair8},
        {M(tpxiRGBToCbYCr422_8u_C3C2R, c2), C3, false, S::S422, D::CbYCr, A::Bt601, 0, Member::HalfSums},
        {M(tpxiRGBToCbYCr422Gamma_8u_C3C2R, c2), C3, false, S::S422, D::CbYCr, A::Bt601, 0, Member::Gamma},
        {M(tpxiBGRToYCbCr420_8u_C3P3R, p3), C3, true, S::S420, D::Planes, A::Bt601, kBlock8},
        {M(tpxiBGRToYCbCr420_8u_AC4P3R, p3), C4, true, S::S420, D::Planes, A::Bt601, kBlock8},
        {M(tpxiBGRToYCbCr420_8u_C3P2R, p2), C3, true, S::S420, D::TwoPlane, A::Bt601, kBlock8},
        {M(tpxiBGRToYCbCr420_8u_AC4P2R, p2), C4, true, S::S420, D::TwoPlane, A::Bt601, kBlock8},
        {M(tpxiBGRToYCbCr420_709CSC_8u_C3P3R, p3), C3, true, S::S420, D::Planes, A::Csc709, kBlock8},
        {M(tpxiBGRToYCbCr420_709CSC_8u_AC4P3R, p3), C4, true, S::S420, D::Planes, A::Csc709, kBlock8},
        {M(tpxiBGRToYCbCr420_709CSC_8u_C3P2R, p2), C3, true, S::S420, D::TwoPlane, A::Csc709, kBlock8},
        {M(tpxiBGRToYCbCr420_709CSC_8u_AC4P2R, p2), C4, true, S::S420, D::TwoPlane, A::Csc709, kBlock8},
        {M(tpxiBGRToYCbCr420_709HDTV_8u_AC4P3R, p3), C4, true, S::S420, D::Planes, A::Hdtv709, kBlock8},
        {M(tpxiBGRToYCrCb420_8u_C3P3R, p3), C3, true, S::S420, D::PlanesCrFirst, A::Bt601, kBlock8},
        {M(tpxiBGRToYCrCb420_8u_AC4P3R, p3), C4, true, S::S420, D::PlanesCrFirst, A::Bt601, kBlock8},
        {M(tpxiBGRToYCrCb420_709CSC_8u_C3P3R, p3), C3, true, S::S420, D::PlanesCrFirst, A::Csc709, kBlock8},
        {M(tpxiBGRToYCrCb420_709CSC_8u_AC4P3R, p3), C4, true, S::S420, D::PlanesCrFirst, A::Csc709, kBlock8},
        {M(tpxiRGBToYCbCr420_8u_C3P3R, p3), C3, false, S::S420, D::Planes, A::Bt601, kBlock8},
        {M(tpxiRGBToYCbCr420_8u_C3P2R, p2), C3, false, S::S420, D::TwoPlane, A::Bt601, kBlock8},
        {M(tpxiRGBToYCbCr420_8u_C4P2R, p2), C4, false, S::S420, D::TwoPlane, A::Bt601, kBlock8},
        {M(tpxiRGBToYCrCb420_8u_AC4P3R, p3), C4, false, S::S420, D::PlanesCrFirst, A::Bt601, kBlock8},
        {M(tpxiBGRToYCbCr411_8u_C3P3R, p3), C3, true, S::S411, D::Planes, A::Bt601, kBlock8},
        {M(tpxiBGRToYCbCr411_8u_AC4P3R, p3), C4, true, S::S411, D::Planes, A::Bt601, kBlock8},
    };
    return all;
}
#undef M

inline bool packed(const Member& m) { return m.dst == Dst::YCbCr || m.dst == Dst::YCrCb || m.dst == Dst::CbYCr; }
inline int minWidth(const Member& m) { return m.sub == Sub::S420 || packed(m) ? 2 : 1; }
inline int minHeight(const Member& m) { return m.sub == Sub::S420 ? 2 : 1; }
inline int blockW(const Member& m) { return m.sub == Sub::S411 ? 4 : 2; }
inline int blockH(const Member& m) { return m.sub == Sub::S420 ? 2 : 1; }

// ---- The model ----------------------------------------------------------------
inline int floorShift(long long v, int s) { return int(v >= 0 ? v >> s : -((-v + (1LL << s) - 1) >> s)); }

inline int gammaOf(int v) {
    const double x = v / 255.0;
    const double c = x < 0.018 ? 4.5 * x : 1.099 * std::pow(x, 0.45) - 0.099;
    return int(std::nearbyint(255.0 * c));
}

struct Rgb {
    int r, g, b;
};

inline int lumaOf(const Member& m, Rgb p, bool secondOfPair) {
    switch (m.math) {
        case Math::Bt601:
            return floorShift(16843LL * p.r + 33030LL * p.g + 6423LL * p.b +
                                  (m.rule == Member::Y1Floor && secondOfPair ? 1048576 : 1081344), 16);
        case Math::Csc709: return floorShift(11993LL * p.r + 40239LL * p.g + 4063LL * p.b + 1081344, 16);
        case Math::Hdtv709: {
            const long long s = 13959LL * p.r + 46858LL * p.g + 4719LL * p.b;
            return s < 32768 ? 1 : std::min(int((s + 32768) >> 16), 254);
        }
    }
    return -1;
}

// Cb and Cr of one block of pixels.
inline std::pair<int, int> chromaOf(const Member& m, const std::vector<Rgb>& block) {
    if (m.rule == Member::HalfSums || m.rule == Member::Gamma) {
        long long cb = 8421375, cr = 8421375;
        for (const Rgb& p : block) {
            cb += floorShift(-9699LL * p.r - 19071LL * p.g + 28770LL * p.b, 1);
            cr += floorShift(28770LL * p.r - 24117LL * p.g - 4653LL * p.b, 1);
        }
        return {floorShift(cb, 16), floorShift(cr, 16)};
    }
    long long sr = 0, sg = 0, sb = 0;
    for (const Rgb& p : block) sr += p.r, sg += p.g, sb += p.b;
    const int shift = m.sub == Sub::S422 ? 17 : 18;
    switch (m.math) {
        case Math::Bt601:
            return {floorShift(-9699 * sr - 19071 * sg + 28770 * sb + m.k, shift),
                    floorShift(28770 * sr - 24117 * sg - 4653 * sb + m.k, shift)};
        case Math::Csc709:
            return {floorShift(-6619 * sr - 22151 * sg + 28770 * sb + m.k, shift),
                    floorShift(28770 * sr - 26149 * sg - 2621 * sb + m.k, shift)};
        case Math::Hdtv709: {
            auto lim = [](int v) { return v >= 254 ? 254 : v < 2 ? 1 : v; };
            return {lim(floorShift(33489 * sb - 25821 * sg - 7668 * sr + m.k, shift)),
                    lim(floorShift(33489 * sr - 30409 * sg - 3080 * sb + m.k, shift))};
        }
    }
    return {-1, -1};
}

// Source images of a member, filled with random bytes.
struct Source {
    std::vector<std::unique_ptr<tpxtest::Image>> planes;  // one interleaved image or planes R, G, B
    int bytes = 1;                                         // bytes per pixel of an interleaved image
    Source(const Member& m, int w, int h, tpxtest::StepKind kind, uint32_t seed) {
        bytes = m.src == Src::C3 ? 3 : m.src == Src::C4 ? 4 : 1;
        const int n = m.src == Src::Planes ? 3 : 1;
        for (int i = 0; i < n; ++i) {
            planes.push_back(std::make_unique<tpxtest::Image>(w * bytes, h, 1, kind, seed + uint32_t(i)));
            tpxtest::fill<uint8_t>(*planes.back(), tpxtest::Random<uint8_t>(seed * 7 + uint32_t(i)));
        }
    }
    void set(const Member& m, int x, int y, Rgb p) {
        if (m.src == Src::Planes) {
            planes[0]->set<uint8_t>(x, y, uint8_t(p.r));
            planes[1]->set<uint8_t>(x, y, uint8_t(p.g));
            planes[2]->set<uint8_t>(x, y, uint8_t(p.b));
            return;
        }
        planes[0]->set<uint8_t>(x * bytes + (m.bgr ? 2 : 0), y, uint8_t(p.r));
        planes[0]->set<uint8_t>(x * bytes + 1, y, uint8_t(p.g));
        planes[0]->set<uint8_t>(x * bytes + (m.bgr ? 0 : 2), y, uint8_t(p.b));
    }
    Rgb at(const Member& m, int x, int y) const {
        Rgb p;
        if (m.src == Src::Planes) {
            p = {planes[0]->get<uint8_t>(x, y), planes[1]->get<uint8_t>(x, y), planes[2]->get<uint8_t>(x, y)};
        } else {
            const tpxtest::Image& im = *planes[0];
            p = {im.get<uint8_t>(x * bytes + (m.bgr ? 2 : 0), y), im.get<uint8_t>(x * bytes + 1, y),
                 im.get<uint8_t>(x * bytes + (m.bgr ? 0 : 2), y)};
        }
        if (m.rule == Member::Gamma) p = {gammaOf(p.r), gammaOf(p.g), gammaOf(p.b)};
        return p;
    }
};

// A destination image with what the member must write: the value of each
// element, -1 where nothing may be written.
struct Target {
    std::unique_ptr<tpxtest::Image> img;
    std::vector<int> want;
    Target(int w, int h, tpxtest::StepKind kind, uint32_t seed)
        : img(std::make_unique<tpxtest::Image>(w, h, 1, kind, seed)), want(size_t(w) * size_t(h), -1) {}
    int& at(int e, int y) { return want[size_t(y) * size_t(img->width()) + size_t(e)]; }
    int at(int e, int y) const { return want[size_t(y) * size_t(img->width()) + size_t(e)]; }
};

// Destinations sized to the whole ROI rounded up to blocks, so that the
// unconverted last column, row or tail lies inside them.
inline std::vector<Target> makeTargets(const Member& m, int w, int h, tpxtest::StepKind kind, uint32_t seed) {
    std::vector<Target> t;
    const int bw = blockW(m), bh = blockH(m);
    const int cw = (w + bw - 1) / bw, ch = (h + bh - 1) / bh;
    if (packed(m)) {
        t.emplace_back(2 * cw * 2, h, kind, seed);
    } else if (m.dst == Dst::TwoPlane) {
        t.emplace_back(w, h, kind, seed);
        t.emplace_back(2 * cw, ch, kind, seed + 1);
    } else {
        t.emplace_back(w, h, kind, seed);
        t.emplace_back(cw, ch, kind, seed + 1);
        t.emplace_back(cw, ch, kind, seed + 2);
    }
    return t;
}

// Fills Target::want: every whole block of the ROI from the model.
inline void model(const Member& m, const Source& s, int w, int h, std::vector<Target>& t) {
    const int bw = blockW(m), bh = blockH(m);
    for (int by = 0; by + bh <= h; by += bh)
        for (int bx = 0; bx + bw <= w; bx += bw) {
            std::vector<Rgb> block;
            for (int j = 0; j < bh; ++j)
                for (int i = 0; i < bw; ++i) {
                    const Rgb p = s.at(m, bx + i, by + j);
                    block.push_back(p);
                    const int y = lumaOf(m, p, i % 2 == 1);
                    if (m.dst == Dst::YCbCr || m.dst == Dst::YCrCb)
                        t[0].at(2 * (bx + i), by + j) = y;
                    else if (m.dst == Dst::CbYCr)
                        t[0].at(2 * (bx + i) + 1, by + j) = y;
                    else
                        t[0].at(bx + i, by + j) = y;
                }
            const auto [cb, cr] = chromaOf(m, block);
            const int cx = bx / bw, cy = by / bh;
            switch (m.dst) {
                case Dst::YCbCr: t[0].at(2 * bx + 1, by) = cb, t[0].at(2 * bx + 3, by) = cr; break;
                case Dst::YCrCb: t[0].at(2 * bx + 1, by) = cr, t[0].at(2 * bx + 3, by) = cb; break;
                case Dst::CbYCr: t[0].at(2 * bx, by) = cb, t[0].at(2 * bx + 2, by) = cr; break;
                case Dst::TwoPlane: t[1].at(2 * cx, cy) = cb, t[1].at(2 * cx + 1, cy) = cr; break;
                case Dst::Planes: t[1].at(cx, cy) = cb, t[2].at(cx, cy) = cr; break;
                case Dst::PlanesCrFirst: t[1].at(cx, cy) = cr, t[2].at(cx, cy) = cb; break;
            }
        }
}

inline Io ioOf(const Source& s, std::vector<Target>& t, int w, int h) {
    Io io{};
    for (size_t i = 0; i < s.planes.size(); ++i) io.src[i] = s.planes[i]->ptr<Tpx8u>();
    io.srcStep = s.planes[0]->step();
    for (size_t i = 0; i < t.size(); ++i) io.dst[i] = t[i].img->ptr<Tpx8u>(), io.dstStep[i] = t[i].img->step();
    io.roi = {w, h};
    return io;
}

// Every destination against the model, and nothing written where the model
// writes nothing. With a zero step every row lands on the same memory and
// only the last row written keeps its values.
inline ::testing::AssertionResult verify(const std::vector<Target>& t) {
    for (size_t d = 0; d < t.size(); ++d) {
        const tpxtest::Image& im = *t[d].img;
        int lastRow = -1;
        for (int y = 0; y < im.height(); ++y)
            for (int e = 0; e < im.width(); ++e)
                if (t[d].at(e, y) >= 0) lastRow = y;
        for (int y = 0; y < im.height(); ++y) {
            if (im.kind() == tpxtest::StepKind::Zero && y != lastRow) continue;
            for (int e = 0; e < im.width(); ++e) {
                const int want = t[d].at(e, y);
                if (want >= 0 && im.get<uint8_t>(e, y) != want)
                    return ::testing::AssertionFailure() << "destination " << d << " element " << e << " of row " << y
                                                         << ": got " << int(im.get<uint8_t>(e, y)) << ", want "
                                                         << want;
            }
        }
        auto r = im.untouchedExcept([&](int e, int y) { return t[d].at(e, y) >= 0; });
        if (!r) return r << " (destination " << d << ")";
    }
    return ::testing::AssertionSuccess();
}

inline TpxStatus wantStatus(const Member& m, int w, int h) {
    if (m.sub == Sub::S420) return (w | h) & 1 ? tpxStatusOddSize : tpxStatusOk;
    if (m.sub == Sub::S411) return w % 4 ? tpxStatusOddSize : tpxStatusOk;
    return tpxStatusOk;
}

// Every member of one sampling over the standard shapes with its minimums.
inline void runShapes(Sub sub) {
    for (const Member& m : members()) {
        if (m.sub != sub) continue;
        for (const tpxtest::Shape& sh : tpxtest::standardShapes(minWidth(m), minHeight(m))) {
            Source s(m, sh.width, sh.height, sh.src, sh.seed);
            std::vector<Target> t = makeTargets(m, sh.width, sh.height, sh.dst, sh.seed * 31);
            model(m, s, sh.width, sh.height, t);
            for (auto& d : t) d.img->snapshot();
            const Io io = ioOf(s, t, sh.width, sh.height);
            ASSERT_EQ(m.call(io), wantStatus(m, sh.width, sh.height)) << m.name << " " << sh;
            ASSERT_TRUE(verify(t)) << m.name << " " << sh;
        }
    }
}

}  // namespace enctest
