// The subsampled YCbCr to RGB decoders as one table, an independent per-pixel
// model of each written from the formulas, and a differential run of a member
// over one shape with guard bytes around every destination.
#pragma once

#include "argcheck.hpp"
#include "image.hpp"
#include "shapes.hpp"
#include "tpxcc.h"

#include <algorithm>
#include <array>
#include <functional>
#include <memory>
#include <vector>

namespace dec {

using tpxtest::Image;

enum class Source { Packed, Planar, TwoPlane, Filter };
enum class Math { Bt601, Csc709, Hdtv709, Hdtv709Ref };
enum class Sig { Packed, PackedP3, Planar, TwoPlane };

// One call form for every member: plane pointers and steps of the source,
// destination planes (one for interleaved) and their step.
using Call = std::function<TpxStatus(const Tpx8u* const* src, const int* srcStep, Tpx8u* const* dst, int dstStep,
                                     TpxSize roi, Tpx8u alpha)>;

struct Member {
    const char* name;
    Sig sig;
    Source source;
    int h, v;                // chroma sampling
    int yOff, cbOff, crOff;  // packed: byte offsets in a pair group; two-plane: Cb offset in a pair
    bool crFirst;            // planar planes Y, Cr, Cb
    Math math;
    bool bgr;
    int channels;  // 3, 4, or 0 for three destination planes R, G, B
    Call call;
};

#define DEC_PACKED(fn) [](auto s, auto ss, auto d, int ds, TpxSize r, Tpx8u) { return fn(s[0], ss[0], d[0], ds, r); }
#define DEC_PACKED_A(fn) [](auto s, auto ss, auto d, int ds, TpxSize r, Tpx8u a) { return fn(s[0], ss[0], d[0], ds, r, a); }
#define DEC_PACKED_P3(fn) [](auto s, auto ss, auto d, int ds, TpxSize r, Tpx8u) { return fn(s[0], ss[0], d, ds, r); }
#define DEC_PLANAR(fn) [](auto s, auto ss, auto d, int ds, TpxSize r, Tpx8u) { return fn(s, ss, d[0], ds, r); }
#define DEC_PLANAR_A(fn) [](auto s, auto ss, auto d, int ds, TpxSize r, Tpx8u a) { return fn(s, ss, d[0], ds, r, a); }
#define DEC_TWO(fn) \
    [](auto s, auto ss, auto d, int ds, TpxSize r, Tpx8u) { return fn(s[0], ss[0], s[1], ss[1], d[0], ds, r); }
#define DEC_TWO_A(fn) \
    [](auto s, auto ss, auto d, int ds, TpxSize r, Tpx8u a) { return fn(s[0], ss[0], s[1], ss[1], d[0], ds, r, a); }

inline const std::vector<Member>& members() {
    using S = Source;
    using M = Math;
    static const std::vector<Member> all = {
        {"tpxiYCbCr422ToRGB_8u_C2C3R", Sig::Packed, S::Packed, 2, 1, 0, 1, 3, false, M::Bt601, false, 3, DEC_PACKED(tpxiYCbCr422ToRGB_8u_C2C3R)},
        {"tpxiYCbCr422ToRGB_8u_C2C4R", Sig::Packed, S::Packed, 2, 1, 0, 1, 3, false, M::Bt601, false, 4, DEC_PACKED_A(tpxiYCbCr422ToRGB_8u_C2C4R)},
        {"tpxiYCbCr422ToBGR_8u_C2C3R", Sig::Packed, S::Packed, 2, 1, 0, 1, 3, false, M::Bt601, true, 3, DEC_PACKED(tpxiYCbCr422ToBGR_8u_C2C3R)},
        {"tpxiYCbCr422ToBGR_8u_C2C4R", Sig::Packed, S::Packed, 2, 1, 0, 1, 3, false, M::Bt601, true, 4, DEC_PACKED_A(tpxiYCbCr422ToBGR_8u_C2C4R)},
        {"tpxiYCbCr422ToRGB_8u_C2P3R", Sig::PackedP3, S::Packed, 2, 1, 0, 1, 3, false, M::Bt601, false, 0, DEC_PACKED_P3(tpxiYCbCr422ToRGB_8u_C2P3R)},
        {"tpxiYCrCb422ToRGB_8u_C2C3R", Sig::Packed, S::Packed, 2, 1, 0, 3, 1, false, M::Bt601, false, 3, DEC_PACKED(tpxiYCrCb422ToRGB_8u_C2C3R)},
        {"tpxiYCrCb422ToRGB_8u_C2C4R", Sig::Packed, S::Packed, 2, 1, 0, 3, 1, false, M::Bt601, false, 4, DEC_PACKED_A(tpxiYCrCb422ToRGB_8u_C2C4R)},
        {"tpxiYCrCb422ToBGR_8u_C2C3R", Sig::Packed, S::Packed, 2, 1, 0, 3, 1, false, M::Bt601, true, 3, DEC_PACKED(tpxiYCrCb422ToBGR_8u_C2C3R)},
        {"tpxiYCrCb422ToBGR_8u_C2C4R", Sig::Packed, S::Packed, 2, 1, 0, 3, 1, false, M::Bt601, true, 4, DEC_PACKED_A(tpxiYCrCb422ToBGR_8u_C2C4R)},
        {"tpxiYCrCb422ToRGB_8u_C2P3R", Sig::PackedP3, S::Packed, 2, 1, 0, 3, 1, false, M::Bt601, false, 0, DEC_PACKED_P3(tpxiYCrCb422ToRGB_8u_C2P3R)},
        {"tpxiCbYCr422ToRGB_8u_C2C3R", Sig::Packed, S::Packed, 2, 1, 1, 0, 2, false, M::Bt601, false, 3, DEC_PACKED(tpxiCbYCr422ToRGB_8u_C2C3R)},
        {"tpxiCbYCr422ToBGR_8u_C2C4R", Sig::Packed, S::Packed, 2, 1, 1, 0, 2, false, M::Bt601, true, 4, DEC_PACKED_A(tpxiCbYCr422ToBGR_8u_C2C4R)},
        {"tpxiCbYCr422ToBGR_709HDTV_8u_C2C3R", Sig::Packed, S::Packed, 2, 1, 1, 0, 2, false, M::Hdtv709Ref, true, 3, DEC_PACKED(tpxiCbYCr422ToBGR_709HDTV_8u_C2C3R)},
        {"tpxiCbYCr422ToBGR_709HDTV_8u_C2C4R", Sig::Packed, S::Packed, 2, 1, 1, 0, 2, false, M::Hdtv709Ref, true, 4, DEC_PACKED_A(tpxiCbYCr422ToBGR_709HDTV_8u_C2C4R)},
        {"tpxiYCbCr422ToRGB_8u_P3C3R", Sig::Planar, S::Planar, 2, 1, 0, 0, 0, false, M::Bt601, false, 3, DEC_PLANAR(tpxiYCbCr422ToRGB_8u_P3C3R)},
        {"tpxiYCbCr422ToBGR_8u_P3C3R", Sig::Planar, S::Planar, 2, 1, 0, 0, 0, false, M::Bt601, true, 3, DEC_PLANAR(tpxiYCbCr422ToBGR_8u_P3C3R)},
        {"tpxiYCbCr420ToRGB_8u_P3C3R", Sig::Planar, S::Planar, 2, 2, 0, 0, 0, false, M::Bt601, false, 3, DEC_PLANAR(tpxiYCbCr420ToRGB_8u_P3C3R)},
        {"tpxiYCbCr420ToBGR_8u_P3C3R", Sig::Planar, S::Planar, 2, 2, 0, 0, 0, false, M::Bt601, true, 3, DEC_PLANAR(tpxiYCbCr420ToBGR_8u_P3C3R)},
        {"tpxiYCbCr420ToBGR_8u_P3C4R", Sig::Planar, S::Planar, 2, 2, 0, 0, 0, false, M::Bt601, true, 4, DEC_PLANAR_A(tpxiYCbCr420ToBGR_8u_P3C4R)},
        {"tpxiYCbCr420ToBGR_709CSC_8u_P3C3R", Sig::Planar, S::Planar, 2, 2, 0, 0, 0, false, M::Csc709, true, 3, DEC_PLANAR(tpxiYCbCr420ToBGR_709CSC_8u_P3C3R)},
        {"tpxiYCbCr420ToBGR_709HDTV_8u_P3C4R", Sig::Planar, S::Planar, 2, 2, 0, 0, 0, false, M::Hdtv709, true, 4, DEC_PLANAR_A(tpxiYCbCr420ToBGR_709HDTV_8u_P3C4R)},
        {"tpxiYCrCb420ToRGB_8u_P3C4R", Sig::Planar, S::Planar, 2, 2, 0, 0, 0, true, M::Bt601, false, 4, DEC_PLANAR_A(tpxiYCrCb420ToRGB_8u_P3C4R)},
        {"tpxiYCrCb420ToBGR_Filter_8u_P3C4R", Sig::Planar, S::Filter, 2, 2, 0, 0, 0, true, M::Bt601, true, 4, DEC_PLANAR_A(tpxiYCrCb420ToBGR_Filter_8u_P3C4R)},
        {"tpxiYCbCr420ToRGB_8u_P2C3R", Sig::TwoPlane, S::TwoPlane, 2, 2, 0, 0, 1, false, M::Bt601, false, 3, DEC_TWO(tpxiYCbCr420ToRGB_8u_P2C3R)},
        {"tpxiYCbCr420ToRGB_8u_P2C4R", Sig::TwoPlane, S::TwoPlane, 2, 2, 0, 0, 1, false, M::Bt601, false, 4, DEC_TWO_A(tpxiYCbCr420ToRGB_8u_P2C4R)},
        {"tpxiYCbCr420ToBGR_8u_P2C3R", Sig::TwoPlane, S::TwoPlane, 2, 2, 0, 0, 1, false, M::Bt601, true, 3, DEC_TWO(tpxiYCbCr420ToBGR_8u_P2C3R)},
        {"tpxiYCbCr420ToBGR_8u_P2C4R", Sig::TwoPlane, S::TwoPlane, 2, 2, 0, 0, 1, false, M::Bt601, true, 4, DEC_TWO_A(tpxiYCbCr420ToBGR_8u_P2C4R)},
        {"tpxiYCrCb420ToRGB_8u_P2C3R", Sig::TwoPlane, S::TwoPlane, 2, 2, 0, 1, 0, false, M::Bt601, false, 3, DEC_TWO(tpxiYCrCb420ToRGB_8u_P2C3R)},
        {"tpxiYCrCb420ToRGB_8u_P2C4R", Sig::TwoPlane, S::TwoPlane, 2, 2, 0, 1, 0, false, M::Bt601, false, 4, DEC_TWO_A(tpxiYCrCb420ToRGB_8u_P2C4R)},
        {"tpxiYCrCb420ToBGR_8u_P2C3R", Sig::TwoPlane, S::TwoPlane, 2, 2, 0, 1, 0, false, M::Bt601, true, 3, DEC_TWO(tpxiYCrCb420ToBGR_8u_P2C3R)},
        {"tpxiYCrCb420ToBGR_8u_P2C4R", Sig::TwoPlane, S::TwoPlane, 2, 2, 0, 1, 0, false, M::Bt601, true, 4, DEC_TWO_A(tpxiYCrCb420ToBGR_8u_P2C4R)},
        {"tpxiYCbCr411ToBGR_8u_P3C3R", Sig::Planar, S::Planar, 4, 1, 0, 0, 0, false, M::Bt601, true, 3, DEC_PLANAR(tpxiYCbCr411ToBGR_8u_P3C3R)},
        {"tpxiYCbCr411ToBGR_8u_P3C4R", Sig::Planar, S::Planar, 4, 1, 0, 0, 0, false, M::Bt601, true, 4, DEC_PLANAR_A(tpxiYCbCr411ToBGR_8u_P3C4R)},
    };
    return all;
}

inline const Member& member(const char* name) {
    for (const Member& m : members())
        if (std::string(m.name) == name) return m;
    throw std::runtime_error(name);
}

// ---- The model -------------------------------------------------------------
struct Rgb {
    int r, g, b;
};
inline int clamp8(int v) { return std::min(255, std::max(0, v)); }
inline int floorDiv65536(int64_t v) { return int(v >= 0 ? v / 65536 : -((-v + 65535) / 65536)); }

// BT.601: 3 fractional bits; t(v, c) = floor(v*128*c / 65536), offsets in 1/8
// without rounding half, truncating shift.
inline Rgb bt601(int y, int cb, int cr) {
    auto t = [](int v, int c) { return floorDiv65536(int64_t(v) * 128 * c); };
    const int ys = t(y, 4768);
    return {clamp8((ys + t(cr, 6537) - 1783) >> 3), clamp8((ys + 1085 - t(cb, 1606) - t(cr, 3330)) >> 3),
            clamp8((ys + t(cb, 8262) - 2214) >> 3)};
}

// 32-bit reference: (k*Y + a*C ... + c) >> 16 with the given constants.
inline Rgb ref709Csc(int y, int cb, int cr) {
    return {clamp8(floorDiv65536(76284LL * y + 117506LL * cr - 16228544)),
            clamp8(floorDiv65536(76284LL * y - 13959LL * cb - 34996LL * cr + 5078464)),
            clamp8(floorDiv65536(76284LL * y + 138609LL * cb - 18929728))};
}
inline Rgb ref709Hdtv(int y, int cb, int cr) {
    return {clamp8(floorDiv65536(65536LL * y + 100925LL * cr - 12885632)),
            clamp8(floorDiv65536(65536LL * y - 11993LL * cb - 30081LL * cr + 5418240)),
            clamp8(floorDiv65536(65536LL * y + 119013LL * cb - 15200896))};
}

// 16-bit block arithmetic: m(x, c) = floor(x*c / 65536) of values prescaled by
// 128; (sum + 8) >> 4.
inline Rgb block709(int y, int cb, int cr, int luma, int black, int kR, int kGb, int kGr, int kB) {
    auto m = [](int x, int c) { return floorDiv65536(int64_t(x) * c); };
    const int ys = m((y - black) * 128, luma), cbs = (cb - 128) * 128, crs = (cr - 128) * 128;
    auto out = [](int v) { return clamp8((v + 8) >> 4); };
    return {out(ys + m(crs, kR)), out(ys - m(cbs, kGb) - m(crs, kGr)), out(ys + m(cbs, kB))};
}

inline Rgb decode(const Member& d, int x, int convW, int y, int cb, int cr) {
    const bool block = x < convW / 8 * 8;
    switch (d.math) {
    case Math::Bt601: return bt601(y, cb, cr);
    case Math::Csc709: return block ? block709(y, cb, cr, 9535, 16, 14688, 1745, 4375, 17326) : ref709Csc(y, cb, cr);
    case Math::Hdtv709: return block ? block709(y, cb, cr, 8192, 0, 12616, 1499, 3760, 14877) : ref709Hdtv(y, cb, cr);
    case Math::Hdtv709Ref: return ref709Hdtv(y, cb, cr);
    }
    return {};
}

// ---- Images of one call ----------------------------------------------------
struct Images {
    std::vector<std::unique_ptr<Image>> src, dst;
    std::array<const Tpx8u*, 3> srcPtr{};
    std::array<int, 3> srcStep{};
    std::array<Tpx8u*, 3> dstPtr{};

    Images(const Member& d, int w, int h, tpxtest::StepKind sk, tpxtest::StepKind dk, uint32_t seed) {
        auto add = [&](int elems, int rows) { src.push_back(std::make_unique<Image>(elems, rows, 1, sk, seed++)); };
        const int cw = (w + d.h - 1) / d.h, ch = (h + d.v - 1) / d.v;
        if (d.source == Source::Packed) {
            add(2 * w, h);
        } else if (d.source == Source::TwoPlane) {
            add(w, h);
            add(2 * cw, ch);
        } else {
            add(w, h);
            add(cw, ch);
            add(cw, ch);
        }
        for (size_t i = 0; i < src.size(); ++i) {
            tpxtest::fill<uint8_t>(*src[i], tpxtest::Random<uint8_t>(seed + 100 + uint32_t(i)));
            srcPtr[i] = src[i]->ptr<Tpx8u>();
            srcStep[i] = src[i]->step();
        }
        for (int i = 0; i < (d.channels ? 1 : 3); ++i) {
            dst.push_back(std::make_unique<Image>(w * std::max(d.channels, 1), h, 1, dk, seed + 200 + uint32_t(i)));
            dst.back()->snapshot();
            dstPtr[size_t(i)] = dst.back()->ptr<Tpx8u>();
        }
    }
    TpxStatus run(const Member& d, TpxSize roi, Tpx8u alpha) {
        return d.call(srcPtr.data(), srcStep.data(), dstPtr.data(), dst[0]->step(), roi, alpha);
    }
    // Luma and chroma of pixel (x, y) as the member reads them.
    void sample(const Member& d, int x, int y, int convW, int convH, int& Y, int& cb, int& cr) const {
        const Image& s0 = *src[0];
        switch (d.source) {
        case Source::Packed:
            Y = s0.get<uint8_t>(4 * (x / 2) + d.yOff + 2 * (x & 1), y);
            cb = s0.get<uint8_t>(4 * (x / 2) + d.cbOff, y);
            cr = s0.get<uint8_t>(4 * (x / 2) + d.crOff, y);
            return;
        case Source::TwoPlane:
            Y = s0.get<uint8_t>(x, y);
            cb = src[1]->get<uint8_t>(2 * (x / 2) + d.cbOff, y / 2);
            cr = src[1]->get<uint8_t>(2 * (x / 2) + 1 - d.cbOff, y / 2);
            return;
        case Source::Planar:
            Y = s0.get<uint8_t>(x, y);
            cb = src[d.crFirst ? 2 : 1]->get<uint8_t>(x / d.h, y / d.v);
            cr = src[d.crFirst ? 1 : 2]->get<uint8_t>(x / d.h, y / d.v);
            return;
        case Source::Filter: {
            // Nearest sample weighted 9, the horizontal and vertical neighbours 3,
            // the diagonal 1; neighbours beyond the plane edge clamp to it.
            const int cw = convW / 2, ch = convH / 2, i = x / 2, n = y / 2;
            const int j = (x & 1) ? std::min(i + 1, cw - 1) : std::max(i - 1, 0);
            const int f = (y & 1) ? std::min(n + 1, ch - 1) : std::max(n - 1, 0);
            auto filt = [&](const Image& p) {
                return (9 * p.get<uint8_t>(i, n) + 3 * p.get<uint8_t>(j, n) + 3 * p.get<uint8_t>(i, f) +
                        p.get<uint8_t>(j, f) + 8) >> 4;
            };
            Y = s0.get<uint8_t>(x, y);
            cr = filt(*src[1]);
            cb = filt(*src[2]);
            return;
        }
        }
    }
};

// Runs member d over one shape and compares with the model; nothing outside
// the converted region (whole chroma blocks) may change.
inline void expectMatchesModel(const Member& d, const tpxtest::Shape& s) {
    Images im(d, s.width, s.height, s.src, s.dst, s.seed);
    const Tpx8u alpha = Tpx8u(s.seed * 37);
    const int convW = s.width / d.h * d.h, convH = s.height / d.v * d.v;
    const TpxStatus want = d.v == 2 && ((s.width | s.height) & 1) ? tpxStatusOddSize : tpxStatusOk;
    ASSERT_EQ(im.run(d, {s.width, s.height}, alpha), want) << d.name << " " << s;
    const int ch = std::max(d.channels, 1);
    auto pixel = [&](int x, int y) {
        int Y = 0, cb = 0, cr = 0;
        im.sample(d, x, y, convW, convH, Y, cb, cr);
        return decode(d, x, convW, Y, cb, cr);
    };
    auto written = [&](int e, int y) { return e / ch < convW && y < convH; };
    for (size_t p = 0; p < im.dst.size(); ++p) {
        const Image& out = *im.dst[p];
        auto want = [&](int e, int y) -> int {
            const Rgb c = pixel(e / ch, y);
            const int k = d.channels ? e % ch : int(p);
            if (k == 3) return alpha;
            const int first = d.bgr ? c.b : c.r, third = d.bgr ? c.r : c.b;
            return k == 0 ? first : k == 1 ? c.g : third;
        };
        EXPECT_TRUE(tpxtest::matches<uint8_t>(out, convW * (d.channels ? ch : 1), convH, want, written))
            << d.name << " plane " << p << " " << s;
        EXPECT_TRUE(out.untouchedExcept(written)) << d.name << " plane " << p << " " << s;
    }
}

// Every member whose name contains `part`, over the standard shapes.
inline void expectFamilyMatchesModel(const char* part) {
    int tested = 0;
    for (const Member& d : members()) {
        if (std::string(d.name).find(part) == std::string::npos) continue;
        ++tested;
        for (const tpxtest::Shape& s : tpxtest::standardShapes()) expectMatchesModel(d, s);
    }
    EXPECT_GT(tested, 0);
}

}  // namespace dec
