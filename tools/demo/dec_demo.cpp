// Subsampled YCbCr to RGB: the picture is encoded here (floating point, chroma
// from the mean RGB of each block), decoded by every member, and compared with
// the original: the round-trip error includes the loss of chroma resolution.
#include "demo.hpp"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <functional>

namespace {

struct Model {
    double kr, kb, yScale, yOff, crDiv, cbDiv;  // Cr = 128 + (R - Y') / crDiv
};
const Model kBt601{0.299, 0.114, 219.0 / 255, 16, 1.402 * 255 / 224, 1.772 * 255 / 224};
const Model kCsc709{0.2126, 0.0722, 219.0 / 255, 16, 1.5748 * 255 / 224, 1.8556 * 255 / 224};
const Model kHdtv709{0.2126, 0.0722, 1, 0, 1.540, 1.816};

uint8_t byte(double v) { return uint8_t(std::clamp(std::lround(v), 0L, 255L)); }

// Y, Cb, Cr planes with chroma subsampled h x v (chroma planes of w/h x rows/v).
struct Encoded {
    int w, rows, cw, ch;
    std::vector<uint8_t> y, cb, cr;
};
Encoded encode(const demo::Picture& p, const Model& m, int h, int v) {
    Encoded e{p.width, p.height, p.width / h, p.height / v, {}, {}, {}};
    e.y.resize(size_t(e.w) * e.rows);
    e.cb.resize(size_t(e.cw) * e.ch);
    e.cr.resize(e.cb.size());
    auto luma = [&](double r, double g, double b) { return m.kr * r + (1 - m.kr - m.kb) * g + m.kb * b; };
    for (int y = 0; y < e.rows; ++y)
        for (int x = 0; x < e.w; ++x)
            e.y[size_t(y) * e.w + x] = byte(m.yOff + m.yScale * luma(p.at(x, y, 0), p.at(x, y, 1), p.at(x, y, 2)));
    for (int j = 0; j < e.ch; ++j)
        for (int i = 0; i < e.cw; ++i) {
            double s[3] = {0, 0, 0};
            for (int dy = 0; dy < v; ++dy)
                for (int dx = 0; dx < h; ++dx)
                    for (int c = 0; c < 3; ++c) s[c] += p.at(i * h + dx, j * v + dy, c) / double(h * v);
            const double yl = luma(s[0], s[1], s[2]);
            e.cr[size_t(j) * e.cw + i] = byte(128 + (s[0] - yl) / m.crDiv);
            e.cb[size_t(j) * e.cw + i] = byte(128 + (s[2] - yl) / m.cbDiv);
        }
    return e;
}

enum Layout { YCbCr422, YCrCb422, CbYCr422, Planes, PlanesCrCb, PairsCbCr, PairsCrCb };

// The source of one layout, built from the planes.
struct Source {
    std::vector<uint8_t> a, b, c;
    const uint8_t* planes[3];
    int steps[3];
};
Source arrange(const Encoded& e, Layout l) {
    Source s;
    if (l == YCbCr422 || l == YCrCb422 || l == CbYCr422) {
        static const int order[3][4] = {{0, 1, 0, 2}, {0, 2, 0, 1}, {1, 0, 2, 0}};  // 0 Y, 1 Cb, 2 Cr
        s.a.resize(size_t(e.w) * 2 * e.rows);
        for (int y = 0; y < e.rows; ++y)
            for (int i = 0; i < e.cw; ++i) {
                int yk = 0;
                for (int k = 0; k < 4; ++k) {
                    const int what = order[l][k];
                    const size_t at = size_t(y) * e.w * 2 + size_t(i) * 4 + size_t(k);
                    s.a[at] = what == 0 ? e.y[size_t(y) * e.w + 2 * i + yk++]
                              : what == 1 ? e.cb[size_t(y) * e.cw + i] : e.cr[size_t(y) * e.cw + i];
                }
            }
        s.planes[0] = s.a.data();
        s.steps[0] = e.w * 2;
    } else if (l == PairsCbCr || l == PairsCrCb) {
        s.a = e.y;
        s.b.resize(e.cb.size() * 2);
        for (size_t i = 0; i < e.cb.size(); ++i) {
            s.b[2 * i + (l == PairsCrCb)] = e.cb[i];
            s.b[2 * i + (l == PairsCbCr)] = e.cr[i];
        }
        s.planes[0] = s.a.data();
        s.planes[1] = s.b.data();
        s.steps[0] = e.w;
        s.steps[1] = e.cw * 2;
    } else {
        s.a = e.y;
        s.b = l == Planes ? e.cb : e.cr;
        s.c = l == Planes ? e.cr : e.cb;
        s.planes[0] = s.a.data();
        s.planes[1] = s.b.data();
        s.planes[2] = s.c.data();
        s.steps[0] = e.w;
        s.steps[1] = s.steps[2] = e.cw;
    }
    return s;
}

// A call into one member: source, destination (planes of three for C2P3),
// destination step, ROI.
using Call = std::function<TpxStatus(const Source&, uint8_t* const*, int, TpxSize)>;
struct Member {
    const char* name;
    const Model* model;
    Layout layout;
    int h, v;
    bool bgr;
    int channels;  // 0: planes R, G, B
    Call call;
};

void runMember(const demo::Picture& pic, demo::Report& rep, const Member& m) {
    const Encoded e = encode(pic, *m.model, m.h, m.v);
    const Source s = arrange(e, m.layout);
    const int w = pic.width, h = pic.height, ch = std::max(m.channels, 1);
    std::vector<uint8_t> out(size_t(w) * h * 3 * (m.channels == 4 ? 2 : 1));
    uint8_t* planes[3] = {out.data(), out.data() + size_t(w) * h, out.data() + 2 * size_t(w) * h};
    const int step = m.channels ? w * ch : w;
    TpxStatus st = 0;
    const double sec = demo::bestTime([&] { st = m.call(s, planes, step, {w, h}); });
    double err = 0;
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x)
            for (int c = 0; c < 3; ++c) {
                const int k = m.bgr ? 2 - c : c;
                const uint8_t got = m.channels ? out[size_t(y) * step + size_t(x) * ch + k] : planes[c][size_t(y) * w + x];
                err = std::max(err, double(std::abs(got - pic.at(x, y, c))));
            }
    rep.add(m.name, st, err, sec, double(w) * h);
}

#define PK(fn) [](const Source& s, uint8_t* const* d, int ds, TpxSize r) { return fn(s.planes[0], s.steps[0], d[0], ds, r); }
#define PK_A(fn) [](const Source& s, uint8_t* const* d, int ds, TpxSize r) { return fn(s.planes[0], s.steps[0], d[0], ds, r, 255); }
#define PK_P3(fn) [](const Source& s, uint8_t* const* d, int ds, TpxSize r) { return fn(s.planes[0], s.steps[0], d, ds, r); }
#define PL(fn) [](const Source& s, uint8_t* const* d, int ds, TpxSize r) { return fn(s.planes, s.steps, d[0], ds, r); }
#define PL_A(fn) [](const Source& s, uint8_t* const* d, int ds, TpxSize r) { return fn(s.planes, s.steps, d[0], ds, r, 255); }
#define TP(fn) \
    [](const Source& s, uint8_t* const* d, int ds, TpxSize r) { return fn(s.planes[0], s.steps[0], s.planes[1], s.steps[1], d[0], ds, r); }
#define TP_A(fn)                                                                                           \
    [](const Source& s, uint8_t* const* d, int ds, TpxSize r) {                                             \
        return fn(s.planes[0], s.steps[0], s.planes[1], s.steps[1], d[0], ds, r, 255);                      \
    }

}  // namespace

TPX_DEMO("Subsampled YCbCr to RGB", decoderDemo)(const demo::Picture& pic, demo::Report& rep) {
    const Member members[] = {
        {"tpxiYCbCr422ToRGB_8u_C2C3R", &kBt601, YCbCr422, 2, 1, false, 3, PK(tpxiYCbCr422ToRGB_8u_C2C3R)},
        {"tpxiYCbCr422ToRGB_8u_C2C4R", &kBt601, YCbCr422, 2, 1, false, 4, PK_A(tpxiYCbCr422ToRGB_8u_C2C4R)},
        {"tpxiYCbCr422ToBGR_8u_C2C3R", &kBt601, YCbCr422, 2, 1, true, 3, PK(tpxiYCbCr422ToBGR_8u_C2C3R)},
        {"tpxiYCbCr422ToBGR_8u_C2C4R", &kBt601, YCbCr422, 2, 1, true, 4, PK_A(tpxiYCbCr422ToBGR_8u_C2C4R)},
        {"tpxiYCbCr422ToRGB_8u_C2P3R", &kBt601, YCbCr422, 2, 1, false, 0, PK_P3(tpxiYCbCr422ToRGB_8u_C2P3R)},
        {"tpxiYCrCb422ToRGB_8u_C2C3R", &kBt601, YCrCb422, 2, 1, false, 3, PK(tpxiYCrCb422ToRGB_8u_C2C3R)},
        {"tpxiYCrCb422ToRGB_8u_C2C4R", &kBt601, YCrCb422, 2, 1, false, 4, PK_A(tpxiYCrCb422ToRGB_8u_C2C4R)},
        {"tpxiYCrCb422ToBGR_8u_C2C3R", &kBt601, YCrCb422, 2, 1, true, 3, PK(tpxiYCrCb422ToBGR_8u_C2C3R)},
        {"tpxiYCrCb422ToBGR_8u_C2C4R", &kBt601, YCrCb422, 2, 1, true, 4, PK_A(tpxiYCrCb422ToBGR_8u_C2C4R)},
        {"tpxiYCrCb422ToRGB_8u_C2P3R", &kBt601, YCrCb422, 2, 1, false, 0, PK_P3(tpxiYCrCb422ToRGB_8u_C2P3R)},
        {"tpxiCbYCr422ToRGB_8u_C2C3R", &kBt601, CbYCr422, 2, 1, false, 3, PK(tpxiCbYCr422ToRGB_8u_C2C3R)},
        {"tpxiCbYCr422ToBGR_8u_C2C4R", &kBt601, CbYCr422, 2, 1, true, 4, PK_A(tpxiCbYCr422ToBGR_8u_C2C4R)},
        {"tpxiCbYCr422ToBGR_709HDTV_8u_C2C3R", &kHdtv709, CbYCr422, 2, 1, true, 3, PK(tpxiCbYCr422ToBGR_709HDTV_8u_C2C3R)},
        {"tpxiCbYCr422ToBGR_709HDTV_8u_C2C4R", &kHdtv709, CbYCr422, 2, 1, true, 4, PK_A(tpxiCbYCr422ToBGR_709HDTV_8u_C2C4R)},
        {"tpxiYCbCr422ToRGB_8u_P3C3R", &kBt601, Planes, 2, 1, false, 3, PL(tpxiYCbCr422ToRGB_8u_P3C3R)},
        {"tpxiYCbCr422ToBGR_8u_P3C3R", &kBt601, Planes, 2, 1, true, 3, PL(tpxiYCbCr422ToBGR_8u_P3C3R)},
        {"tpxiYCbCr420ToRGB_8u_P3C3R", &kBt601, Planes, 2, 2, false, 3, PL(tpxiYCbCr420ToRGB_8u_P3C3R)},
        {"tpxiYCbCr420ToBGR_8u_P3C3R", &kBt601, Planes, 2, 2, true, 3, PL(tpxiYCbCr420ToBGR_8u_P3C3R)},
        {"tpxiYCbCr420ToBGR_8u_P3C4R", &kBt601, Planes, 2, 2, true, 4, PL_A(tpxiYCbCr420ToBGR_8u_P3C4R)},
        {"tpxiYCbCr420ToBGR_709CSC_8u_P3C3R", &kCsc709, Planes, 2, 2, true, 3, PL(tpxiYCbCr420ToBGR_709CSC_8u_P3C3R)},
        {"tpxiYCbCr420ToBGR_709HDTV_8u_P3C4R", &kHdtv709, Planes, 2, 2, true, 4, PL_A(tpxiYCbCr420ToBGR_709HDTV_8u_P3C4R)},
        {"tpxiYCrCb420ToRGB_8u_P3C4R", &kBt601, PlanesCrCb, 2, 2, false, 4, PL_A(tpxiYCrCb420ToRGB_8u_P3C4R)},
        {"tpxiYCrCb420ToBGR_Filter_8u_P3C4R", &kBt601, PlanesCrCb, 2, 2, true, 4, PL_A(tpxiYCrCb420ToBGR_Filter_8u_P3C4R)},
        {"tpxiYCbCr420ToRGB_8u_P2C3R", &kBt601, PairsCbCr, 2, 2, false, 3, TP(tpxiYCbCr420ToRGB_8u_P2C3R)},
        {"tpxiYCbCr420ToRGB_8u_P2C4R", &kBt601, PairsCbCr, 2, 2, false, 4, TP_A(tpxiYCbCr420ToRGB_8u_P2C4R)},
        {"tpxiYCbCr420ToBGR_8u_P2C3R", &kBt601, PairsCbCr, 2, 2, true, 3, TP(tpxiYCbCr420ToBGR_8u_P2C3R)},
        {"tpxiYCbCr420ToBGR_8u_P2C4R", &kBt601, PairsCbCr, 2, 2, true, 4, TP_A(tpxiYCbCr420ToBGR_8u_P2C4R)},
        {"tpxiYCrCb420ToRGB_8u_P2C3R", &kBt601, PairsCrCb, 2, 2, false, 3, TP(tpxiYCrCb420ToRGB_8u_P2C3R)},
        {"tpxiYCrCb420ToRGB_8u_P2C4R", &kBt601, PairsCrCb, 2, 2, false, 4, TP_A(tpxiYCrCb420ToRGB_8u_P2C4R)},
        {"tpxiYCrCb420ToBGR_8u_P2C3R", &kBt601, PairsCrCb, 2, 2, true, 3, TP(tpxiYCrCb420ToBGR_8u_P2C3R)},
        {"tpxiYCrCb420ToBGR_8u_P2C4R", &kBt601, PairsCrCb, 2, 2, true, 4, TP_A(tpxiYCrCb420ToBGR_8u_P2C4R)},
        {"tpxiYCbCr411ToBGR_8u_P3C3R", &kBt601, Planes, 4, 1, true, 3, PL(tpxiYCbCr411ToBGR_8u_P3C3R)},
        {"tpxiYCbCr411ToBGR_8u_P3C4R", &kBt601, Planes, 4, 1, true, 4, PL_A(tpxiYCbCr411ToBGR_8u_P3C4R)},
    };
    for (const Member& m : members) runMember(pic, rep, m);
}
