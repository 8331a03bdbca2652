// Chroma layout, interlaced and 16:20 conversions against a model that
// reads any source layout into Y, Cb and Cr planes, applies the member's
// chroma rule sample by sample, and writes any destination layout; the
// stripe filter's invariant; worked values.
#include "support/harness.hpp"
#include "tpxcc.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

using namespace tpxtest;

namespace {

// Layouts: packed YUYV (YCbCr422), YVYU (YCrCb422), UYVY (CbYCr422); planar
// P3 and two-plane P2 (luma, then chroma pairs), Cb first or, with a trailing
// r, Cr first; Y: luma only.
struct Format {
    std::string name;
    int h, v;  // chroma subsampling
    bool packed() const { return name.size() == 4; }
    bool pairs() const { return name.find("P2") != std::string::npos; }
    bool crFirst() const { return name.back() == 'r' || name == "YVYU"; }
};
// Side d's layout: its shape, and the component order named on its side of "To".
Format formatOf(const Export& e, int d) {
    const std::string n = e.name, op = n.substr(0, n.find('_'));
    const size_t to = op.find("To");
    const std::string part = to == std::string::npos ? op : d ? op.substr(to) : op.substr(0, to);
    auto has = [](const std::string& s, const char* w) { return s.find(w) != std::string::npos; };
    const ImageShape& im = side(e.shape, d);
    if (im.pass == Pass::Single)
        return {im.plane[0].unitBytes == 1 ? "Y" : has(part, "CbYCr") ? "UYVY" : has(part, "YCrCb") ? "YVYU" : "YUYV", 2, 1};
    // The Cr-first 4:2:0 deinterleavers put the first byte of each pair in plane 1, as a Cb-first image.
    const bool cr = has(part, "YCrCb") && !has(n, "YCbCr420ToYCrCb420");
    return {std::string(im.pass == Pass::TwoPlane ? "P2" : "P3") + (cr ? "r" : ""), im.plane[1].hsub, im.plane[1].vsub};
}

enum Rule { Same, EvenRows, RepeatRows, FourTap, EvenCols, Double, To411, To420, Stripe, Interlace, From1620, To1620,
            From411x, To411x };
// Layouts, rule, and the whole blocks a call converts.
struct Member {
    Format src, dst;
    Rule rule;
    int roundW, roundH;
};
Member memberOf(const Export& e) {
    const Format s = formatOf(e, 0), d = formatOf(e, 1);
    const std::string n = e.name;
    auto has = [&](const char* w) { return n.find(w) != std::string::npos; };
    Rule r = s.h == d.h ? Same : s.h == 2 ? EvenCols : Double;
    if (has("Interlace")) r = Interlace;
    else if (has("Filter")) r = d.packed() || has("ToYCrCb420") ? Stripe : FourTap;
    else if (s.v == 4 || d.v == 4) r = s.v == 4 ? From1620 : To1620;
    else if (has("411To420") || has("420To411")) r = has("411To420") ? From411x : To411x;
    else if (s.v == 1 && d.v == 2) r = s.h == 2 ? EvenRows : To420;
    else if (s.v == 2 && d.v == 1) r = d.h == 2 ? RepeatRows : To411;
    return {s, d, r, d.name == "Y" ? 1 : std::max(s.h, d.h), std::max({s.v, d.v, int(e.shape.minH)})};
}

// Y, Cb, Cr planes of w x h luma and cw x ch chroma samples.
struct Planes {
    int64_t w, h, cw, ch;
    std::vector<int> y, c[2];
    Planes(int64_t w_, int64_t h_, int64_t cw_, int64_t ch_)
        : w(w_), h(h_), cw(cw_), ch(ch_), y(size_t(w * h)), c{std::vector<int>(size_t(cw * ch)), std::vector<int>(size_t(cw * ch))} {}
    int& at(int p, int64_t x, int64_t r) { return p == 0 ? y[size_t(r * w + x)] : c[p - 1][size_t(r * cw + x)]; }
};

// Reads (or writes) the W x H image of a format through the call's planes.
template <class Fn>
void walk(const Export& e, const Args& a, bool dst, const Format& f, Planes& p, Fn&& fn) {
    auto view = [&](int i) { return dst ? out<uint8_t>(e, a, i) : in<uint8_t>(e, a, i); };
    const std::string& n = f.name;
    for (int64_t r = 0; r < p.h; ++r)
        for (int64_t x = 0; x < p.w; ++x) {
            if (f.packed()) {
                const int64_t at = 4 * (x / 2);
                const bool uyvy = n == "UYVY";
                fn(view(0), at + (uyvy ? 1 : 0) + 2 * (x & 1), r, p.at(0, x, r));
                if (x % 2 == 0) {
                    const int cbAt = uyvy ? 0 : n == "YVYU" ? 3 : 1, crAt = uyvy ? 2 : n == "YVYU" ? 1 : 3;
                    fn(view(0), at + cbAt, r, p.at(1, x / 2, r));
                    fn(view(0), at + crAt, r, p.at(2, x / 2, r));
                }
            } else {
                fn(view(0), x, r, p.at(0, x, r));
            }
        }
    if (f.packed() || n == "Y") return;
    for (int64_t r = 0; r < p.ch; ++r)
        for (int64_t k = 0; k < p.cw; ++k)
            for (int q = 1; q <= 2; ++q) {
                const int comp = f.crFirst() ? 3 - q : q;  // the component stored q-th
                if (f.pairs()) fn(view(1), 2 * k + q - 1, r, p.at(comp, k, r));
                else fn(view(q), k, r, p.at(comp, k, r));
            }
}

int avgUp(int a, int b) { return (a + b + 1) >> 1; }

// Destination chroma of rule `m.rule` from source chroma s.
void resample(const Member& m, Planes& s, Planes& d, int code) {
    auto S = [&](int q, int64_t k, int64_t r) { return s.at(q, k, r); };
    for (int q = 1; q <= 2; ++q)
        for (int64_t r = 0; r < d.ch; ++r)
            for (int64_t k = 0; k < d.cw; ++k) {
                int v = 0;
                const int64_t n = s.ch;
                auto I = [&](int64_t row, int64_t i) {  // 2x horizontal interpolation
                    const int64_t next = std::min(i / 2 + 1, s.cw - 1);
                    return i % 2 ? avgUp(S(q, i / 2, row), S(q, next, row)) : S(q, i / 2, row);
                };
                auto H = [&](int64_t row, int64_t i) { return avgUp(S(q, 2 * i, row), S(q, 2 * i + 1, row)); };
                switch (m.rule) {
                    case Same: v = S(q, k, r); break;
                    case EvenRows: v = S(q, k, 2 * r); break;
                    case RepeatRows: v = S(q, k, r / 2); break;
                    case FourTap: {
                        const int64_t j = r / 2;
                        auto c = [&](int64_t i) { return S(q, k, std::clamp<int64_t>(i, 0, n - 1)); };
                        v = r % 2 ? std::clamp((9 * (c(j) + c(j + 1)) - (c(j - 1) + c(j + 2)) + 8) >> 4, 0, 255) : c(j);
                        break;
                    }
                    case EvenCols: v = S(q, 2 * k, r); break;
                    case Double: v = S(q, k / 2, r); break;
                    case To411: v = S(q, 2 * k + r % 2, r / 2); break;
                    case To420: v = S(q, k / 2, 2 * r + k % 2); break;
                    case Interlace:
                        if (s.ch > d.ch) {  // 4:2:2 to 4:2:0: rows 4m..4m+3 give 2m, 2m+1
                            const int64_t b = 4 * (r / 2);
                            v = r % 2 ? (S(q, k, b + 1) + 3 * S(q, k, b + 3) + 2) >> 2 : (3 * S(q, k, b) + S(q, k, b + 2) + 2) >> 2;
                        } else {  // 4:2:0 to 4:2:2: rows 2g..2g+3, the field's last row past the end
                            static const int first[4] = {5, 7, 1, 3};
                            const int64_t g = r / 4, o = r % 4, a = 2 * g + (o & 1), b = std::min(a + 2, n - 2 + (o & 1));
                            v = (first[o] * S(q, k, a) + (8 - first[o]) * S(q, k, b) + 4) >> 3;
                        }
                        break;
                    case From1620: {
                        const int64_t sr = r / 2, next = std::min(sr + 1, n - 1);
                        v = r % 2 ? avgUp(I(sr, k), I(next, k)) : I(sr, k);
                        break;
                    }
                    case To1620: v = avgUp(H(2 * r, k), H(2 * r + 1, k)); break;
                    case From411x: v = avgUp(I(2 * r, k), I(2 * r + 1, k)); break;
                    case To411x: {
                        const int64_t j = r / 2, next = std::min(j + 1, n - 1);
                        v = r % 2 ? avgUp(H(j, k), H(next, k)) : H(j, k);
                        break;
                    }
                    case Stripe: {  // chroma row r of the stripe filter, whole image
                        (void)code;
                        const int64_t j = r, nx = std::min(j + 1, n - 1);
                        v = (S(q, k, j) + S(q, k, nx)) >> 1;
                        break;
                    }
                }
                d.at(q, k, r) = v;
            }
}

TpxStatus model(const Export& e, const Args& a) {
    const Member m = memberOf(e);
    const Format &fs = m.src, &fd = m.dst;
    // The two {Y, Cr, Cb} members refuse a width or height of 1.
    if (std::strstr(e.name, "ToYCrCb420") && std::strstr(e.name, "P2P3R") && (a.width == 1 || a.height == 1))
        return tpxStatusBadSize;
    const int64_t W = a.width / m.roundW * m.roundW, H = a.height / m.roundH * m.roundH;
    if (W < 1 || H < 1) return tpxStatusOk;
    Planes s(W, H, W / fs.h, H / fs.v);
    if (fd.name == "Y") {  // luma bytes, an odd width's last included
        for (int64_t r = 0; r < H; ++r)
            for (int64_t x = 0; x < W; ++x) out<uint8_t>(e, a, 0).set(x, r, in<uint8_t>(e, a, 0)(2 * x, r));
        return tpxStatusOk;
    }
    walk(e, a, false, fs, s, [](const View<uint8_t>& v, int64_t x, int64_t r, int& p) { p = v(x, r); });
    Planes d(W, H, W / fd.h, H / fd.v);
    d.y = s.y;
    if (m.rule == Stripe) {  // whole image: [1 2 1] luma (+4 in the packed member), chroma row means
        const int add = fd.packed() ? 4 : 0;
        for (int64_t r = 0; r < H; ++r)
            for (int64_t x = 0; x < W; ++x) {
                const int64_t up = std::max<int64_t>(r - 1, 0), dn = std::min(r + 1, H - 1);
                d.at(0, x, r) = std::min((s.at(0, x, up) + 2 * s.at(0, x, r) + s.at(0, x, dn) + add) >> 2, 255);
            }
        if (fd.packed()) {  // both rows of a chroma pair of rows take the mean
            Planes half(W, H, W / 2, H / 2);
            half.c[0] = s.c[0], half.c[1] = s.c[1];
            Planes mean(W, H, W / 2, H / 2);
            Member plain = m;
            resample(plain, half, mean, 0);
            for (int q = 1; q <= 2; ++q)
                for (int64_t r = 0; r < H; ++r)
                    for (int64_t k = 0; k < W / 2; ++k) d.at(q, k, r) = mean.at(q, k, r / 2);
        } else {
            resample(m, s, d, 0);
        }
    } else {
        resample(m, s, d, 0);
    }
    walk(e, a, true, fd, d, [](const View<uint8_t>& v, int64_t x, int64_t r, int& p) { v.set(x, r, uint8_t(p)); });
    if (m.rule == Interlace) return a.width % 2 || a.height % 4 ? tpxStatusOddSize : tpxStatusOk;
    return tpxStatusOk;
}

TEST(ChromaLayout, EveryMemberMatchesModel) {
    // The resamplers take whole blocks only: sizes of multiples of 4.
    std::vector<Shape> blocks;
    for (const Shape& s : standardShapes(4, 4))
        if (s.width % 4 == 0) blocks.push_back({s.width, (s.height + 3) / 4 * 4, s.src, s.dst, s.seed});
    expectFamily("Chroma layout, interlaced and 16:20", 65, [](const Export& e) { return Model{e.name, model}; },
                 [&](const Export& e) { return memberOf(e).rule >= From1620 ? blocks : std::vector<Shape>{}; });
}

// Stripes 1, 4, ..., 4, 16 over consecutive bands give the bytes of the
// whole image: the whole-image call for the planar member, the whole-image
// formulas without the +4 luma rounding for the packed one.
TEST(ChromaLayout, StripesCoverTheImage) {
    for (const char* name : {"tpxiYCbCr420ToYCrCb420_Filter_8u_P2P3R", "tpxiYCbCr420ToYCbCr422_Filter_8u_P2C2R"}) {
        const Export& e = *findExport(name);
        const bool packed = e.shape.dst.pass == Pass::Single;
        for (int W : {2, 37, 130})
            for (const std::vector<int>& bands : {std::vector<int>{4, 16}, {6, 2, 4, 10}, {8, 8, 2}}) {
                int H = 0;
                for (int b : bands) H += b;
                Buffers whole(e, W, H, uint32_t(W + H), {StepKind::Padded, StepKind::Padded});
                Buffers striped(whole);
                ASSERT_EQ(e.call(whole.args), tpxStatusOk);
                int top = 0;
                for (size_t i = 0; i < bands.size(); ++i) {
                    Args a = striped.args;
                    const int code = i == 0 ? 1 : i + 1 == bands.size() ? 16 : 4;
                    for (int p = 0; p < striped.planes(0); ++p)
                        a.src[p] = striped.row(0, p, p == 0 ? top : top / 2);
                    for (int p = 0; p < striped.planes(1); ++p)
                        a.dst[p] = striped.row(1, p, p == 0 || packed ? top : top / 2);
                    a.height = bands[i];
                    a.code[0] = code;
                    ASSERT_EQ(e.call(a), tpxStatusOk);
                    top += bands[i];
                }
                if (!packed) {
                    EXPECT_TRUE(whole.sameDestination(striped)) << name << " " << W << "x" << H;
                    continue;
                }
                // Packed: luma bytes differ from the whole-image call only by the
                // +4 rounding, which adds one (saturating).
                for (int64_t r = 0; r < H; ++r)
                    for (int64_t x = 0; x < 2 * (W & ~1); ++x) {
                        const int got = striped.row(1, 0, r)[x], full = whole.row(1, 0, r)[x];
                        ASSERT_EQ(x % 2 ? got : std::min(got + 1, 255), full) << "byte " << x << " row " << r;
                    }
            }
    }
}

// Stated cases: a first stripe of fewer than 4 rows and an unknown stripe
// code write nothing; 5 x 5 to 4:2:0 converts 4 x 4; 16:20 of 4 x 4 writes
// one pair of chroma rows from one sample.
TEST(ChromaLayout, StatedCases) {
    const Export& f = *findExport("tpxiYCbCr420ToYCrCb420_Filter_8u_P2P3R");
    for (int code : {2, 5, 0}) {
        Buffers b(f, 8, 6, 1);
        b.args.code[0] = code;
        EXPECT_EQ(f.call(b.args), tpxStatusOk);
        EXPECT_TRUE(b.intact(1)) << code;
    }
    Buffers first(f, 8, 2, 1);
    first.args.code[0] = 1;
    EXPECT_EQ(f.call(first.args), tpxStatusOk);
    EXPECT_TRUE(first.intact(1));
    const Export& r = *findExport("tpxiYCbCr1620To420_8u_P3R");
    Buffers q(r, 4, 4, 3);
    q.row(0, 1, 0)[0] = 77, q.row(0, 2, 0)[0] = 200;
    ASSERT_EQ(r.call(q.args), tpxStatusOk);
    for (int row = 0; row < 2; ++row)
        for (int k = 0; k < 2; ++k) EXPECT_TRUE(q.row(1, 1, row)[k] == 77 && q.row(1, 2, row)[k] == 200);
}

}  // namespace
