// RGB and BGR to subsampled YCbCr, YCrCb and CbYCr.
#include "support/roundtrips.hpp"
#include "support/rows/rows.hpp"

// Encoding a smooth image and decoding it again: replicating one chroma value
// over its block costs up to about the image's change per pixel (3 codes) on
// top of the encoder's rounding and the decoders' truncation.
TPX_ROUND_TRIP("tpxiRGBToYCbCr420_8u_C3P3R", "tpxiYCbCr420ToRGB_8u_P3C3R", 5);
TPX_ROUND_TRIP("tpxiBGRToYCbCr420_8u_C3P3R", "tpxiYCbCr420ToBGR_8u_P3C3R", 5);
TPX_ROUND_TRIP("tpxiBGRToYCbCr420_8u_AC4P2R", "tpxiYCbCr420ToBGR_8u_P2C4R", 5);
TPX_ROUND_TRIP("tpxiRGBToYCbCr422_8u_C3C2R", "tpxiYCbCr422ToRGB_8u_C2C3R", 3);
TPX_ROUND_TRIP("tpxiRGBToYCrCb422_8u_C3C2R", "tpxiYCrCb422ToRGB_8u_C2C3R", 3);
TPX_ROUND_TRIP("tpxiRGBToCbYCr422_8u_C3C2R", "tpxiCbYCr422ToRGB_8u_C2C3R", 3);
TPX_ROUND_TRIP("tpxiRGBToYCbCr422_8u_C3P3R", "tpxiYCbCr422ToRGB_8u_P3C3R", 3);
TPX_ROUND_TRIP("tpxiBGRToYCbCr411_8u_C3P3R", "tpxiYCbCr411ToBGR_8u_P3C3R", 6);
TPX_ROUND_TRIP("tpxiBGRToYCbCr420_709CSC_8u_C3P3R", "tpxiYCbCr420ToBGR_709CSC_8u_P3C3R", 5);
TPX_ROUND_TRIP("tpxiBGRToYCbCr420_709HDTV_8u_AC4P3R", "tpxiYCbCr420ToBGR_709HDTV_8u_P3C4R", 5);
TPX_ROUND_TRIP("tpxiBGRToCbYCr422_709HDTV_8u_C3C2R", "tpxiCbYCr422ToBGR_709HDTV_8u_C2C3R", 3);
TPX_ROUND_TRIP("tpxiRGBToYCbCr_8u_C3R", "tpxiYCbCrToRGB_8u_C3R", 2);

namespace tpxtest {

void addEncoderRows(std::vector<Export>& t) {
    using namespace rows;
    constexpr ImageShape c3 = px(3), ac4 = px(4, Elem::U8, 3);
    // Packed 4:2:2 destinations need a width of 2; 4:2:0 needs 2 x 2 and
    // warns on odd sizes; 4:1:1 warns when the width is not a multiple of 4.
    constexpr auto enc422 = [](ImageShape s, ImageShape d) { return plain(s, d, d.pass == Pass::Single ? 2 : 1); };
    constexpr auto enc420 = [](ImageShape s, ImageShape d) { return plain(s, d, 2, 2, Warn::OddSize); };
    constexpr auto enc411 = [](ImageShape s) { return plain(s, kP411, 1, 1, Warn::WidthQuad); };
    t.insert(t.end(), {
        TPX_EXPORT(tpxiBGRToYCbCr422_8u_C3C2R, enc422(c3, kC2)),
        TPX_EXPORT(tpxiBGRToYCbCr422_8u_AC4C2R, enc422(ac4, kC2)),
        TPX_EXPORT(tpxiBGRToYCbCr422_8u_C3P3R, enc422(c3, kP422)),
        TPX_EXPORT(tpxiBGRToYCbCr422_8u_AC4P3R, enc422(ac4, kP422)),
        TPX_EXPORT(tpxiRGBToYCbCr422_8u_C3C2R, enc422(c3, kC2)),
        TPX_EXPORT(tpxiRGBToYCbCr422_8u_P3C2R, enc422(kP3, kC2)),
        TPX_EXPORT(tpxiRGBToYCbCr422_8u_C3P3R, enc422(c3, kP422)),
        TPX_EXPORT(tpxiRGBToYCrCb422_8u_C3C2R, enc422(c3, kC2)),
        TPX_EXPORT(tpxiRGBToYCrCb422_8u_P3C2R, enc422(kP3, kC2)),
        TPX_EXPORT(tpxiBGRToCbYCr422_8u_AC4C2R, enc422(ac4, kC2)),
        TPX_EXPORT(tpxiBGRToCbYCr422_709HDTV_8u_C3C2R, enc422(c3, kC2)),
        TPX_EXPORT(tpxiBGRToCbYCr422_709HDTV_8u_AC4C2R, enc422(ac4, kC2)),
        TPX_EXPORT(tpxiRGBToCbYCr422_8u_C3C2R, enc422(c3, kC2)),
        TPX_EXPORT(tpxiRGBToCbYCr422Gamma_8u_C3C2R, enc422(c3, kC2)),
        TPX_EXPORT(tpxiBGRToYCbCr420_8u_C3P3R, enc420(c3, kP420)),
        TPX_EXPORT(tpxiBGRToYCbCr420_8u_AC4P3R, enc420(ac4, kP420)),
        TPX_EXPORT(tpxiBGRToYCbCr420_8u_C3P2R, enc420(c3, kP2)),
        TPX_EXPORT(tpxiBGRToYCbCr420_8u_AC4P2R, enc420(ac4, kP2)),
        TPX_EXPORT(tpxiBGRToYCbCr420_709CSC_8u_C3P3R, enc420(c3, kP420)),
        TPX_EXPORT(tpxiBGRToYCbCr420_709CSC_8u_AC4P3R, enc420(ac4, kP420)),
        TPX_EXPORT(tpxiBGRToYCbCr420_709CSC_8u_C3P2R, enc420(c3, kP2)),
        TPX_EXPORT(tpxiBGRToYCbCr420_709CSC_8u_AC4P2R, enc420(ac4, kP2)),
        TPX_EXPORT(tpxiBGRToYCbCr420_709HDTV_8u_AC4P3R, enc420(ac4, kP420)),
        TPX_EXPORT(tpxiBGRToYCrCb420_8u_C3P3R, enc420(c3, kP420)),
        TPX_EXPORT(tpxiBGRToYCrCb420_8u_AC4P3R, enc420(ac4, kP420)),
        TPX_EXPORT(tpxiBGRToYCrCb420_709CSC_8u_C3P3R, enc420(c3, kP420)),
        TPX_EXPORT(tpxiBGRToYCrCb420_709CSC_8u_AC4P3R, enc420(ac4, kP420)),
        TPX_EXPORT(tpxiRGBToYCbCr420_8u_C3P3R, enc420(c3, kP420)),
        TPX_EXPORT(tpxiRGBToYCbCr420_8u_C3P2R, enc420(c3, kP2)),
        TPX_EXPORT(tpxiRGBToYCbCr420_8u_C4P2R, enc420(ac4, kP2)),
        TPX_EXPORT(tpxiRGBToYCrCb420_8u_AC4P3R, enc420(ac4, kP420)),
        TPX_EXPORT(tpxiBGRToYCbCr411_8u_C3P3R, enc411(c3)),
        TPX_EXPORT(tpxiBGRToYCbCr411_8u_AC4P3R, enc411(ac4)),
    });
}

}  // namespace tpxtest
