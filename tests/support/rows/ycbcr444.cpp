// RGB and YCbCr 4:4:4.
#include "support/rows/rows.hpp"

namespace tpxtest {

void addYCbCr444Rows(std::vector<Export>& t) {
    using namespace rows;
    constexpr ImageShape c3 = px(3), ac4 = px(4, Elem::U8, 3), c4 = px(4);
    constexpr ExportShape alpha = plain(kP3, c4, 1, 1, Warn::None, &kAlpha);
    // The BGR decoders test every pointer, the plane pointers included, before the size.
    constexpr ExportShape bgr3 = withOrder(plain(kP3, c3), "nps"), bgr4 = withOrder(alpha, "nps");
    t.insert(t.end(), {
        TPX_EXPORT(tpxiRGBToYCbCr_8u_C3R, plain(c3, c3)),
        TPX_EXPORT(tpxiRGBToYCbCr_8u_AC4R, plain(ac4, ac4)),
        TPX_EXPORT(tpxiRGBToYCbCr_8u_P3R, plain(kP3, kP3)),
        TPX_EXPORT(tpxiRGBToYCbCr_8u_C3P3R, plain(c3, kP3)),
        TPX_EXPORT(tpxiRGBToYCbCr_8u_AC4P3R, plain(ac4, kP3)),
        TPX_EXPORT(tpxiYCbCrToRGB_8u_C3R, plain(c3, c3)),
        TPX_EXPORT(tpxiYCbCrToRGB_8u_AC4R, plain(ac4, ac4)),
        TPX_EXPORT(tpxiYCbCrToRGB_8u_P3R, plain(kP3, kP3)),
        TPX_EXPORT(tpxiYCbCrToRGB_8u_P3C3R, plain(kP3, c3)),
        TPX_EXPORT(tpxiYCbCrToRGB_8u_P3C4R, alpha),
        TPX_EXPORT(tpxiYCbCrToBGR_8u_P3C3R, bgr3),
        TPX_EXPORT(tpxiYCbCrToBGR_8u_P3C4R, bgr4),
        TPX_EXPORT(tpxiYCbCrToBGR_709CSC_8u_P3C3R, bgr3),
        TPX_EXPORT(tpxiYCbCrToBGR_709CSC_8u_P3C4R, bgr4),
    });
}

}  // namespace tpxtest
