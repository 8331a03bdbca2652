// Gray conversions: the picture to gray in every element type and layout, and
// gray back to colour; the round trip gray -> colour -> gray shows how far the
// gray weights (which sum to 1.00003 in 8u fixed point) move a gray value.
#include "demo.hpp"

#include <algorithm>
#include <cmath>
#include <string>
#include <type_traits>
#include <vector>

namespace {

// The picture's channel value v (0..255) in element type T.
template <class T>
T element(int v) {
    if constexpr (std::is_same_v<T, uint8_t>) return T(v);
    else if constexpr (std::is_same_v<T, uint16_t>) return T(v * 257);
    else if constexpr (std::is_same_v<T, int16_t>) return T(v * 257 - 32768);
    else return T(v / 255.0);
}

// The picture as C3 or AC4 (alpha 255) in type T.
template <class T>
std::vector<T> colour(const demo::Picture& p, int ch) {
    std::vector<T> out(size_t(p.width) * size_t(p.height) * size_t(ch));
    for (int y = 0; y < p.height; ++y)
        for (int x = 0; x < p.width; ++x)
            for (int c = 0; c < ch; ++c)
                out[(size_t(y) * size_t(p.width) + size_t(x)) * size_t(ch) + size_t(c)] =
                    element<T>(c < 3 ? p.at(x, y, c) : 255);
    return out;
}

template <class T>
using ToGray = TpxStatus (*)(const T*, int, T*, int, TpxSize);

// Colour to gray: no round trip.
template <class T, class Call>
void toGray(const demo::Picture& p, demo::Report& r, const std::string& name, int ch, Call call) {
    const std::vector<T> src = colour<T>(p, ch);
    std::vector<T> gray(size_t(p.width) * size_t(p.height));
    const int e = int(sizeof(T));
    TpxStatus st = tpxStatusOk;
    const double s = demo::bestTime([&] {
        st = call(src.data(), p.width * ch * e, gray.data(), p.width * e, TpxSize{p.width, p.height});
    });
    r.add(name, st, -1, s, double(p.width) * p.height);
}

// Gray to colour, timed, then back to gray with the fixed weights: the
// largest difference from the first gray image.
template <class T, class Expand>
void toColour(const demo::Picture& p, demo::Report& r, const std::string& name, int ch, Expand expand,
              ToGray<T> back) {
    const int w = p.width, h = p.height, e = int(sizeof(T));
    const std::vector<T> src = colour<T>(p, 3);
    std::vector<T> gray(size_t(w) * size_t(h)), rgb(gray.size() * size_t(ch)), again(gray.size());
    if constexpr (std::is_same_v<T, uint8_t>) tpxiRGBToGray_8u_C3C1R(src.data(), 3 * w, gray.data(), w, {w, h});
    else if constexpr (std::is_same_v<T, uint16_t>) tpxiRGBToGray_16u_C3C1R(src.data(), 6 * w, gray.data(), 2 * w, {w, h});
    else tpxiRGBToGray_32f_C3C1R(src.data(), 12 * w, gray.data(), 4 * w, {w, h});
    TpxStatus st = tpxStatusOk;
    const double s = demo::bestTime([&] { st = expand(gray.data(), w * e, rgb.data(), w * ch * e, TpxSize{w, h}); });
    back(rgb.data(), w * ch * e, again.data(), w * e, {w, h});
    double err = 0;
    for (size_t i = 0; i < gray.size(); ++i) err = std::max(err, std::fabs(double(again[i]) - double(gray[i])));
    r.add(name, st, err, s, double(w) * h);
}

const float kBt709[3] = {0.2126f, 0.7152f, 0.0722f};
const double kBt709d[3] = {0.2126, 0.7152, 0.0722};

}  // namespace

#define TPX_DEMO_TO_GRAY(types, T)                                                                                 \
    toGray<T>(p, r, "tpxiRGBToGray_" #types "_C3C1R", 3, tpxiRGBToGray_##types##_C3C1R);                          \
    toGray<T>(p, r, "tpxiRGBToGray_" #types "_AC4C1R", 4, tpxiRGBToGray_##types##_AC4C1R);                        \
    toGray<T>(p, r, "tpxiColorToGray_" #types "_C3C1R", 3,                                                        \
              [](auto... a) { return tpxiColorToGray_##types##_C3C1R(a..., kBt709); });                            \
    toGray<T>(p, r, "tpxiColorToGray_" #types "_AC4C1R", 4,                                                       \
              [](auto... a) { return tpxiColorToGray_##types##_AC4C1R(a..., kBt709); });

TPX_DEMO("gray", grayDemo)(const demo::Picture& p, demo::Report& r) {
    TPX_DEMO_TO_GRAY(8u, Tpx8u)
    TPX_DEMO_TO_GRAY(16u, Tpx16u)
    TPX_DEMO_TO_GRAY(16s, Tpx16s)
    TPX_DEMO_TO_GRAY(32f, Tpx32f)
    toGray<Tpx64f>(p, r, "tpxiColorToGray_64f_C3C1R", 3,
                   [](auto... a) { return tpxiColorToGray_64f_C3C1R(a..., kBt709d); });
    toGray<Tpx64f>(p, r, "tpxiColorToGray_64f_AC4C1R", 4,
                   [](auto... a) { return tpxiColorToGray_64f_AC4C1R(a..., kBt709d); });

    toColour<Tpx8u>(p, r, "tpxiGrayToRGB_8u_C1C3R", 3, tpxiGrayToRGB_8u_C1C3R, tpxiRGBToGray_8u_C3C1R);
    toColour<Tpx8u>(p, r, "tpxiGrayToRGB_8u_C1C4R", 4,
                    [](auto... a) { return tpxiGrayToRGB_8u_C1C4R(a..., 255); }, tpxiRGBToGray_8u_AC4C1R);
    toColour<Tpx16u>(p, r, "tpxiGrayToRGB_16u_C1C3R", 3, tpxiGrayToRGB_16u_C1C3R, tpxiRGBToGray_16u_C3C1R);
    toColour<Tpx16u>(p, r, "tpxiGrayToRGB_16u_C1C4R", 4,
                     [](auto... a) { return tpxiGrayToRGB_16u_C1C4R(a..., 65535); }, tpxiRGBToGray_16u_AC4C1R);
    toColour<Tpx32f>(p, r, "tpxiGrayToRGB_32f_C1C3R", 3, tpxiGrayToRGB_32f_C1C3R, tpxiRGBToGray_32f_C3C1R);
    toColour<Tpx32f>(p, r, "tpxiGrayToRGB_32f_C1C4R", 4,
                     [](auto... a) { return tpxiGrayToRGB_32f_C1C4R(a..., 1.0f); }, tpxiRGBToGray_32f_AC4C1R);
}
