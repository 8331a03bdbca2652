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

// Packed 4:2:2 destinations need a width of 2; 4:2:0 needs 2 x 2 and warns
// on odd sizes; 4:1:1 warns when the width is not a multiple of 4.
ExportShape encoderShape(const rows::Name& n) {
    using namespace rows;
    const ImageShape s = n.image(0), d = n.image(1);
    if (n.vsub[1] == 2) return plain(s, d, 2, 2, Warn::OddSize);
    if (n.hsub[1] == 4) return plain(s, d, 1, 1, Warn::WidthQuad);
    return plain(s, d, d.pass == Pass::Single ? 2 : 1);
}

}  // namespace tpxtest
