// Gray: colour to gray with fixed or caller weights, gray to colour.
#include "support/rows/rows.hpp"

#include <cstring>

namespace tpxtest {
namespace {

// Caller weights: within 0..1 or outside, by seed; 64f weights are doubles.
template <class W>
void weights(Args& a, std::vector<uint8_t>& extra, uint32_t seed) {
    static const W sets[][3] = {{W(0.25), W(0.5), W(0.125)}, {W(0.2126), W(0.7152), W(0.0722)},
                                {W(-0.75), W(1.4), W(0.62)}};
    extra.resize(sizeof sets[0]);
    std::memcpy(extra.data(), sets[seed % 3], sizeof sets[0]);
    a.extra = extra.data();
}
const Family kWeights32f{weights<float>, nullptr, nullptr, 0, false};
const Family kWeights64f{weights<double>, nullptr, nullptr, 0, false};

}  // namespace

void addGrayRows(std::vector<Export>& t) {
    using namespace rows;
    // Steps count whole elements.
    constexpr auto g = [](Elem e, int srcCh, int dstCh, const Family* f = nullptr) {
        return plain(px(srcCh, e, -1, StepUnit::WholeElements), px(dstCh, e, -1, StepUnit::WholeElements), 1, 1,
                     Warn::None, f);
    };
    const Family* w32 = &kWeights32f;
    t.insert(t.end(), {
        TPX_EXPORT(tpxiRGBToGray_8u_C3C1R, g(Elem::U8, 3, 1)),
        TPX_EXPORT(tpxiRGBToGray_8u_AC4C1R, g(Elem::U8, 4, 1)),
        TPX_EXPORT(tpxiRGBToGray_16u_C3C1R, g(Elem::U16, 3, 1)),
        TPX_EXPORT(tpxiRGBToGray_16u_AC4C1R, g(Elem::U16, 4, 1)),
        TPX_EXPORT(tpxiRGBToGray_16s_C3C1R, g(Elem::S16, 3, 1)),
        TPX_EXPORT(tpxiRGBToGray_16s_AC4C1R, g(Elem::S16, 4, 1)),
        TPX_EXPORT(tpxiRGBToGray_32f_C3C1R, g(Elem::F32, 3, 1)),
        TPX_EXPORT(tpxiRGBToGray_32f_AC4C1R, g(Elem::F32, 4, 1)),
        TPX_EXPORT(tpxiColorToGray_8u_C3C1R, g(Elem::U8, 3, 1, w32)),
        TPX_EXPORT(tpxiColorToGray_8u_AC4C1R, g(Elem::U8, 4, 1, w32)),
        TPX_EXPORT(tpxiColorToGray_16u_C3C1R, g(Elem::U16, 3, 1, w32)),
        TPX_EXPORT(tpxiColorToGray_16u_AC4C1R, g(Elem::U16, 4, 1, w32)),
        TPX_EXPORT(tpxiColorToGray_16s_C3C1R, g(Elem::S16, 3, 1, w32)),
        TPX_EXPORT(tpxiColorToGray_16s_AC4C1R, g(Elem::S16, 4, 1, w32)),
        TPX_EXPORT(tpxiColorToGray_32f_C3C1R, g(Elem::F32, 3, 1, w32)),
        TPX_EXPORT(tpxiColorToGray_32f_AC4C1R, g(Elem::F32, 4, 1, w32)),
        TPX_EXPORT(tpxiColorToGray_64f_C3C1R, g(Elem::F64, 3, 1, &kWeights64f)),
        TPX_EXPORT(tpxiColorToGray_64f_AC4C1R, g(Elem::F64, 4, 1, &kWeights64f)),
        TPX_EXPORT(tpxiGrayToRGB_8u_C1C3R, g(Elem::U8, 1, 3)),
        TPX_EXPORT(tpxiGrayToRGB_16u_C1C3R, g(Elem::U16, 1, 3)),
        TPX_EXPORT(tpxiGrayToRGB_32f_C1C3R, g(Elem::F32, 1, 3)),
        TPX_EXPORT(tpxiGrayToRGB_8u_C1C4R, g(Elem::U8, 1, 4, &kAlpha)),
        TPX_EXPORT(tpxiGrayToRGB_16u_C1C4R, g(Elem::U16, 1, 4, &kAlpha)),
        TPX_EXPORT(tpxiGrayToRGB_32f_C1C4R, g(Elem::F32, 1, 4, &kAlpha)),
    });
}

}  // namespace tpxtest
