// Subsampled YCbCr, YCrCb and CbYCr to RGB and BGR.
#include "support/rows/rows.hpp"

namespace tpxtest {

void addDecoderRows(std::vector<Export>& t) {
    using namespace rows;
    constexpr ImageShape c3 = px(3), c4 = px(4);
    constexpr auto dec = [](ImageShape s, ImageShape d) {
        return plain(s, d, 1, 1, Warn::None, d.plane[0].unitBytes == 4 ? &kAlpha : nullptr);
    };
    // 4:2:0 decoders warn on odd sizes.
    constexpr auto dec420 = [](ImageShape s, ImageShape d) {
        return plain(s, d, 1, 1, Warn::OddSize, d.plane[0].unitBytes == 4 ? &kAlpha : nullptr);
    };
    t.insert(t.end(), {
        TPX_EXPORT(tpxiYCbCr422ToRGB_8u_C2C3R, dec(kC2, c3)),
        TPX_EXPORT(tpxiYCbCr422ToRGB_8u_C2C4R, dec(kC2, c4)),
        TPX_EXPORT(tpxiYCbCr422ToBGR_8u_C2C3R, dec(kC2, c3)),
        TPX_EXPORT(tpxiYCbCr422ToBGR_8u_C2C4R, dec(kC2, c4)),
        TPX_EXPORT(tpxiYCbCr422ToRGB_8u_C2P3R, dec(kC2, kP3)),
        TPX_EXPORT(tpxiYCrCb422ToRGB_8u_C2C3R, dec(kC2, c3)),
        TPX_EXPORT(tpxiYCrCb422ToRGB_8u_C2C4R, dec(kC2, c4)),
        TPX_EXPORT(tpxiYCrCb422ToBGR_8u_C2C3R, dec(kC2, c3)),
        TPX_EXPORT(tpxiYCrCb422ToBGR_8u_C2C4R, dec(kC2, c4)),
        TPX_EXPORT(tpxiYCrCb422ToRGB_8u_C2P3R, dec(kC2, kP3)),
        TPX_EXPORT(tpxiCbYCr422ToRGB_8u_C2C3R, dec(kC2, c3)),
        TPX_EXPORT(tpxiCbYCr422ToBGR_8u_C2C4R, dec(kC2, c4)),
        TPX_EXPORT(tpxiCbYCr422ToBGR_709HDTV_8u_C2C3R, dec(kC2, c3)),
        TPX_EXPORT(tpxiCbYCr422ToBGR_709HDTV_8u_C2C4R, dec(kC2, c4)),
        TPX_EXPORT(tpxiYCbCr422ToRGB_8u_P3C3R, dec(kP422, c3)),
        TPX_EXPORT(tpxiYCbCr422ToBGR_8u_P3C3R, dec(kP422, c3)),
        TPX_EXPORT(tpxiYCbCr420ToRGB_8u_P3C3R, dec420(kP420, c3)),
        TPX_EXPORT(tpxiYCbCr420ToBGR_8u_P3C3R, dec420(kP420, c3)),
        TPX_EXPORT(tpxiYCbCr420ToBGR_8u_P3C4R, dec420(kP420, c4)),
        TPX_EXPORT(tpxiYCbCr420ToBGR_709CSC_8u_P3C3R, dec420(kP420, c3)),
        TPX_EXPORT(tpxiYCbCr420ToBGR_709HDTV_8u_P3C4R, dec420(kP420, c4)),
        TPX_EXPORT(tpxiYCrCb420ToRGB_8u_P3C4R, dec420(kP420, c4)),
        TPX_EXPORT(tpxiYCrCb420ToBGR_Filter_8u_P3C4R, dec420(kP420, c4)),
        TPX_EXPORT(tpxiYCbCr420ToRGB_8u_P2C3R, dec420(kP2, c3)),
        TPX_EXPORT(tpxiYCbCr420ToRGB_8u_P2C4R, dec420(kP2, c4)),
        TPX_EXPORT(tpxiYCbCr420ToBGR_8u_P2C3R, dec420(kP2, c3)),
        TPX_EXPORT(tpxiYCbCr420ToBGR_8u_P2C4R, dec420(kP2, c4)),
        TPX_EXPORT(tpxiYCrCb420ToRGB_8u_P2C3R, dec420(kP2, c3)),
        TPX_EXPORT(tpxiYCrCb420ToRGB_8u_P2C4R, dec420(kP2, c4)),
        TPX_EXPORT(tpxiYCrCb420ToBGR_8u_P2C3R, dec420(kP2, c3)),
        TPX_EXPORT(tpxiYCrCb420ToBGR_8u_P2C4R, dec420(kP2, c4)),
        TPX_EXPORT(tpxiYCbCr411ToBGR_8u_P3C3R, dec(kP411, c3)),
        TPX_EXPORT(tpxiYCbCr411ToBGR_8u_P3C4R, dec(kP411, c4)),
    });
}

}  // namespace tpxtest
