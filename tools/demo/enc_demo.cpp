// RGB to subsampled YCbCr: every encoder on the test image (no round trip:
// the error column shows -1).
#include "demo.hpp"

#include <array>

namespace {

enum class Form { P3, P2, C2, P3C2 };

struct Encoder {
    const char* name;
    Form form;
    int srcBytes;  // 3 or 4 (interleaved), 1 for planes R, G, B
    bool bgr;
    int chromaW, chromaH;  // chroma plane divisors
    TpxStatus (*p3)(const Tpx8u*, int, Tpx8u* const*, const int*, TpxSize);
    TpxStatus (*p2)(const Tpx8u*, int, Tpx8u*, int, Tpx8u*, int, TpxSize);
    TpxStatus (*c2)(const Tpx8u*, int, Tpx8u*, int, TpxSize);
    TpxStatus (*p3c2)(const Tpx8u* const*, int, Tpx8u*, int, TpxSize);
};

#define P3(fn, bytes, bgr, cw, ch) {#fn, Form::P3, bytes, bgr, cw, ch, fn, nullptr, nullptr, nullptr}
#define P2(fn, bytes, bgr) {#fn, Form::P2, bytes, bgr, 2, 2, nullptr, fn, nullptr, nullptr}
#define C2(fn, bytes, bgr) {#fn, Form::C2, bytes, bgr, 2, 1, nullptr, nullptr, fn, nullptr}
#define P3C2(fn) {#fn, Form::P3C2, 1, false, 2, 1, nullptr, nullptr, nullptr, fn}

const Encoder kEncoders[] = {
    C2(tpxiBGRToYCbCr422_8u_C3C2R, 3, true),
    C2(tpxiBGRToYCbCr422_8u_AC4C2R, 4, true),
    P3(tpxiBGRToYCbCr422_8u_C3P3R, 3, true, 2, 1),
    P3(tpxiBGRToYCbCr422_8u_AC4P3R, 4, true, 2, 1),
    C2(tpxiRGBToYCbCr422_8u_C3C2R, 3, false),
    P3C2(tpxiRGBToYCbCr422_8u_P3C2R),
    P3(tpxiRGBToYCbCr422_8u_C3P3R, 3, false, 2, 1),
    C2(tpxiRGBToYCrCb422_8u_C3C2R, 3, false),
    P3C2(tpxiRGBToYCrCb422_8u_P3C2R),
    C2(tpxiBGRToCbYCr422_8u_AC4C2R, 4, true),
    C2(tpxiBGRToCbYCr422_709HDTV_8u_C3C2R, 3, true),
    C2(tpxiBGRToCbYCr422_709HDTV_8u_AC4C2R, 4, true),
    C2(tpxiRGBToCbYCr422_8u_C3C2R, 3, false),
    C2(tpxiRGBToCbYCr422Gamma_8u_C3C2R, 3, false),
    P3(tpxiBGRToYCbCr420_8u_C3P3R, 3, true, 2, 2),
    P3(tpxiBGRToYCbCr420_8u_AC4P3R, 4, true, 2, 2),
    P2(tpxiBGRToYCbCr420_8u_C3P2R, 3, true),
    P2(tpxiBGRToYCbCr420_8u_AC4P2R, 4, true),
    P3(tpxiBGRToYCbCr420_709CSC_8u_C3P3R, 3, true, 2, 2),
    P3(tpxiBGRToYCbCr420_709CSC_8u_AC4P3R, 4, true, 2, 2),
    P2(tpxiBGRToYCbCr420_709CSC_8u_C3P2R, 3, true),
    P2(tpxiBGRToYCbCr420_709CSC_8u_AC4P2R, 4, true),
    P3(tpxiBGRToYCbCr420_709HDTV_8u_AC4P3R, 4, true, 2, 2),
    P3(tpxiBGRToYCrCb420_8u_C3P3R, 3, true, 2, 2),
    P3(tpxiBGRToYCrCb420_8u_AC4P3R, 4, true, 2, 2),
    P3(tpxiBGRToYCrCb420_709CSC_8u_C3P3R, 3, true, 2, 2),
    P3(tpxiBGRToYCrCb420_709CSC_8u_AC4P3R, 4, true, 2, 2),
    P3(tpxiRGBToYCbCr420_8u_C3P3R, 3, false, 2, 2),
    P2(tpxiRGBToYCbCr420_8u_C3P2R, 3, false),
    P2(tpxiRGBToYCbCr420_8u_C4P2R, 4, false),
    P3(tpxiRGBToYCrCb420_8u_AC4P3R, 4, false, 2, 2),
    P3(tpxiBGRToYCbCr411_8u_C3P3R, 3, true, 4, 1),
    P3(tpxiBGRToYCbCr411_8u_AC4P3R, 4, true, 4, 1),
};

}  // namespace

TPX_DEMO("RGB to subsampled YCbCr", encoders)(const demo::Picture& pic, demo::Report& report) {
    const int w = pic.width, h = pic.height;
    const size_t n = size_t(w) * size_t(h);
    // The picture as RGB, BGR, BGRA/RGBA (alpha 255) and planes R, G, B.
    std::vector<uint8_t> rgb = pic.rgb, bgr(n * 3), bgra(n * 4), rgba(n * 4), planes(n * 3);
    for (size_t i = 0; i < n; ++i) {
        const uint8_t r = pic.rgb[3 * i], g = pic.rgb[3 * i + 1], b = pic.rgb[3 * i + 2];
        bgr[3 * i] = b, bgr[3 * i + 1] = g, bgr[3 * i + 2] = r;
        bgra[4 * i] = b, bgra[4 * i + 1] = g, bgra[4 * i + 2] = r, bgra[4 * i + 3] = 255;
        rgba[4 * i] = r, rgba[4 * i + 1] = g, rgba[4 * i + 2] = b, rgba[4 * i + 3] = 255;
        planes[i] = r, planes[n + i] = g, planes[2 * n + i] = b;
    }
    const std::array<const Tpx8u*, 3> srcPlanes{planes.data(), planes.data() + n, planes.data() + 2 * n};
    std::vector<uint8_t> y(n), c1(n), c2(n), packed(n * 2);
    const TpxSize roi{w, h};
    for (const Encoder& e : kEncoders) {
        const uint8_t* src = e.srcBytes == 3 ? (e.bgr ? bgr.data() : rgb.data()) : e.bgr ? bgra.data() : rgba.data();
        const int srcStep = w * e.srcBytes;
        Tpx8u* dst[3] = {y.data(), c1.data(), c2.data()};
        const int steps[3] = {w, w / e.chromaW, w / e.chromaW};
        TpxStatus st = tpxStatusOk;
        auto run = [&] {
            switch (e.form) {
                case Form::P3: st = e.p3(src, srcStep, dst, steps, roi); break;
                case Form::P2: st = e.p2(src, srcStep, y.data(), w, c1.data(), w, roi); break;
                case Form::C2: st = e.c2(src, srcStep, packed.data(), 2 * w, roi); break;
                case Form::P3C2: st = e.p3c2(srcPlanes.data(), w, packed.data(), 2 * w, roi); break;
            }
        };
        const double s = demo::bestTime(run);
        report.add(e.name, st, -1, s, double(n));
    }
}
