// Encoding a smooth image to subsampled YCbCr and decoding it again stays
// within a few codes of the original. The image's channels change by up to 3
// codes per pixel, so replicating one chroma value over its block costs up to
// about that much on top of the rounding of the encoder and the truncation of
// the decoders: the bounds are 3 codes for 4:2:2, 5 for 4:2:0 and 6 for 4:1:1.
#include "support/harness.hpp"

#include <gtest/gtest.h>

namespace {

// Channel values kept inside the range that studio-range YCbCr represents
// without clipping; BGR images hold the same colours in the other order.
tpxtest::SampleFn smooth(bool bgr) {
    return [bgr](int c, int64_t x, int64_t y) -> double {
        const int k = bgr && c < 3 ? 2 - c : c;
        return k == 0 ? 40 + 2 * x + y : k == 1 ? 60 + x + 2 * y : k == 2 ? 200 - x - y : 0;
    };
}

TEST(RoundTrip, SmoothImagesComeBackWithinAFewCodes) {
    struct Trip {
        const char *there, *back;
        double bound;
    };
    const Trip trips[] = {
        {"tpxiRGBToYCbCr420_8u_C3P3R", "tpxiYCbCr420ToRGB_8u_P3C3R", 5},
        {"tpxiBGRToYCbCr420_8u_C3P3R", "tpxiYCbCr420ToBGR_8u_P3C3R", 5},
        {"tpxiBGRToYCbCr420_8u_AC4P2R", "tpxiYCbCr420ToBGR_8u_P2C4R", 5},
        {"tpxiRGBToYCbCr422_8u_C3C2R", "tpxiYCbCr422ToRGB_8u_C2C3R", 3},
        {"tpxiRGBToYCrCb422_8u_C3C2R", "tpxiYCrCb422ToRGB_8u_C2C3R", 3},
        {"tpxiRGBToCbYCr422_8u_C3C2R", "tpxiCbYCr422ToRGB_8u_C2C3R", 3},
        {"tpxiRGBToYCbCr422_8u_C3P3R", "tpxiYCbCr422ToRGB_8u_P3C3R", 3},
        {"tpxiBGRToYCbCr411_8u_C3P3R", "tpxiYCbCr411ToBGR_8u_P3C3R", 6},
        {"tpxiBGRToYCbCr420_709CSC_8u_C3P3R", "tpxiYCbCr420ToBGR_709CSC_8u_P3C3R", 5},
        {"tpxiBGRToYCbCr420_709HDTV_8u_AC4P3R", "tpxiYCbCr420ToBGR_709HDTV_8u_P3C4R", 5},
        {"tpxiBGRToCbYCr422_709HDTV_8u_C3C2R", "tpxiCbYCr422ToBGR_709HDTV_8u_C2C3R", 3},
    };
    for (const Trip& t : trips) {
        const double err = tpxtest::roundTripError(t.there, t.back, 64, 48, smooth(t.there[4] == 'B'));
        EXPECT_LE(err, t.bound) << t.there;
        RecordProperty(t.there, int(err));
    }
}

}  // namespace
