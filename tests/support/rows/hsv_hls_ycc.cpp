// HSV, HLS and photo YCC.
#include "support/roundtrips.hpp"
#include "support/rows/rows.hpp"

// In units of the first image's samples (16u codes, 32f values).
TPX_ROUND_TRIP("tpxiRGBToHSV_16u_C3R", "tpxiHSVToRGB_16u_C3R", 2);
TPX_ROUND_TRIP("tpxiRGBToHLS_16u_C3R", "tpxiHLSToRGB_16u_C3R", 2);
TPX_ROUND_TRIP("tpxiRGBToHLS_32f_C3R", "tpxiHLSToRGB_32f_C3R", 1e-5);
// The YCC inverse is not the forward's exact inverse (its luma gain 1.3584
// times 0.7132668 is 0.969): a few hundredths of full scale apart.
TPX_ROUND_TRIP("tpxiRGBToYCC_32f_C3R", "tpxiYCCToRGB_32f_C3R", 0.03);
TPX_ROUND_TRIP("tpxiBGRToHLS_8u_C3P3R", "tpxiHLSToBGR_8u_P3C3R", 3);

namespace tpxtest {

// Interleaved: steps count whole elements, checks of pointers and size; with
// planes: null pointers and entries, steps, size.
ExportShape hsvHlsYccShape(const rows::Name& n) {
    using namespace rows;
    const bool planar = (n.layout[0] + n.layout[1]).find('P') != std::string::npos;
    return withOrder(plain(n.image(0, StepUnit::WholeElements), n.image(1, StepUnit::WholeElements)), planar ? "npts" : "ns");
}

}  // namespace tpxtest
