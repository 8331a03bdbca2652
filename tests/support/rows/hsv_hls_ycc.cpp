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

void addHsvHlsYccRows(std::vector<Export>& t) {
    using namespace rows;
    // Interleaved: steps count whole elements; AC4 leaves the fourth channel.
    constexpr auto i = [](Elem e, int ch) { return px(ch, e, ch == 4 ? 3 : -1, StepUnit::WholeElements); };
    constexpr auto pix = [i](Elem e, int ch) { return withOrder(plain(i(e, ch), i(e, ch)), "ns"); };
    // With planes: null pointers and entries, steps, size.
    constexpr auto pl = [](ImageShape s, ImageShape d) { return withOrder(plain(s, d), "npts"); };
    constexpr ImageShape c3 = px(3), c4 = px(4), ac4 = px(4, Elem::U8, 3), p3 = planes(3), p4 = planes(4);
    constexpr Elem u8 = Elem::U8, u16 = Elem::U16, s16 = Elem::S16, f32 = Elem::F32;
    t.insert(t.end(), {
        TPX_EXPORT(tpxiRGBToHSV_8u_C3R, pix(u8, 3)),
        TPX_EXPORT(tpxiRGBToHSV_8u_AC4R, pix(u8, 4)),
        TPX_EXPORT(tpxiRGBToHSV_16u_C3R, pix(u16, 3)),
        TPX_EXPORT(tpxiRGBToHSV_16u_AC4R, pix(u16, 4)),
        TPX_EXPORT(tpxiHSVToRGB_8u_C3R, pix(u8, 3)),
        TPX_EXPORT(tpxiHSVToRGB_8u_AC4R, pix(u8, 4)),
        TPX_EXPORT(tpxiHSVToRGB_16u_C3R, pix(u16, 3)),
        TPX_EXPORT(tpxiHSVToRGB_16u_AC4R, pix(u16, 4)),
        TPX_EXPORT(tpxiRGBToHLS_8u_C3R, pix(u8, 3)),
        TPX_EXPORT(tpxiRGBToHLS_8u_AC4R, pix(u8, 4)),
        TPX_EXPORT(tpxiRGBToHLS_16u_C3R, pix(u16, 3)),
        TPX_EXPORT(tpxiRGBToHLS_16u_AC4R, pix(u16, 4)),
        TPX_EXPORT(tpxiRGBToHLS_16s_C3R, pix(s16, 3)),
        TPX_EXPORT(tpxiRGBToHLS_16s_AC4R, pix(s16, 4)),
        TPX_EXPORT(tpxiRGBToHLS_32f_C3R, pix(f32, 3)),
        TPX_EXPORT(tpxiRGBToHLS_32f_AC4R, pix(f32, 4)),
        TPX_EXPORT(tpxiHLSToRGB_8u_C3R, pix(u8, 3)),
        TPX_EXPORT(tpxiHLSToRGB_8u_AC4R, pix(u8, 4)),
        TPX_EXPORT(tpxiHLSToRGB_16u_C3R, pix(u16, 3)),
        TPX_EXPORT(tpxiHLSToRGB_16u_AC4R, pix(u16, 4)),
        TPX_EXPORT(tpxiHLSToRGB_16s_C3R, pix(s16, 3)),
        TPX_EXPORT(tpxiHLSToRGB_16s_AC4R, pix(s16, 4)),
        TPX_EXPORT(tpxiHLSToRGB_32f_C3R, pix(f32, 3)),
        TPX_EXPORT(tpxiHLSToRGB_32f_AC4R, pix(f32, 4)),
        TPX_EXPORT(tpxiBGRToHLS_8u_AC4R, withOrder(plain(ac4, ac4), "ns")),
        TPX_EXPORT(tpxiBGRToHLS_8u_C3P3R, pl(c3, p3)),
        TPX_EXPORT(tpxiBGRToHLS_8u_P3C3R, pl(p3, c3)),
        TPX_EXPORT(tpxiBGRToHLS_8u_P3R, pl(p3, p3)),
        TPX_EXPORT(tpxiBGRToHLS_8u_AP4R, pl(p4, p4)),
        TPX_EXPORT(tpxiBGRToHLS_8u_AP4C4R, pl(p4, c4)),
        TPX_EXPORT(tpxiBGRToHLS_8u_AC4P4R, pl(c4, p4)),
        TPX_EXPORT(tpxiHLSToBGR_8u_C3P3R, pl(c3, p3)),
        TPX_EXPORT(tpxiHLSToBGR_8u_P3C3R, pl(p3, c3)),
        TPX_EXPORT(tpxiHLSToBGR_8u_P3R, pl(p3, p3)),
        TPX_EXPORT(tpxiHLSToBGR_8u_AP4R, pl(p4, p4)),
        TPX_EXPORT(tpxiHLSToBGR_8u_AP4C4R, pl(p4, c4)),
        TPX_EXPORT(tpxiHLSToBGR_8u_AC4P4R, pl(c4, p4)),
        TPX_EXPORT(tpxiRGBToYCC_8u_C3R, pix(u8, 3)),
        TPX_EXPORT(tpxiRGBToYCC_8u_AC4R, pix(u8, 4)),
        TPX_EXPORT(tpxiRGBToYCC_16u_C3R, pix(u16, 3)),
        TPX_EXPORT(tpxiRGBToYCC_16u_AC4R, pix(u16, 4)),
        TPX_EXPORT(tpxiRGBToYCC_16s_C3R, pix(s16, 3)),
        TPX_EXPORT(tpxiRGBToYCC_16s_AC4R, pix(s16, 4)),
        TPX_EXPORT(tpxiRGBToYCC_32f_C3R, pix(f32, 3)),
        TPX_EXPORT(tpxiRGBToYCC_32f_AC4R, pix(f32, 4)),
        TPX_EXPORT(tpxiYCCToRGB_8u_C3R, pix(u8, 3)),
        TPX_EXPORT(tpxiYCCToRGB_8u_AC4R, pix(u8, 4)),
        TPX_EXPORT(tpxiYCCToRGB_16u_C3R, pix(u16, 3)),
        TPX_EXPORT(tpxiYCCToRGB_16u_AC4R, pix(u16, 4)),
        TPX_EXPORT(tpxiYCCToRGB_16s_C3R, pix(s16, 3)),
        TPX_EXPORT(tpxiYCCToRGB_16s_AC4R, pix(s16, 4)),
        TPX_EXPORT(tpxiYCCToRGB_32f_C3R, pix(f32, 3)),
        TPX_EXPORT(tpxiYCCToRGB_32f_AC4R, pix(f32, 4)),
    });
}

}  // namespace tpxtest
