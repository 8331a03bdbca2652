// XYZ, Lab and LUV.
#include "support/roundtrips.hpp"
#include "support/rows/rows.hpp"

#include <cstring>

TPX_ROUND_TRIP("tpxiRGBToXYZ_32f_C3R", "tpxiXYZToRGB_32f_C3R", 1e-5);
TPX_ROUND_TRIP("tpxiRGBToLab_32f_C3R", "tpxiLabToRGB_32f_C3R", 1e-5);
TPX_ROUND_TRIP("tpxiRGBToLUV_32f_C3R", "tpxiLUVToRGB_32f_C3R", 1e-5);
TPX_ROUND_TRIP("tpxiRGBToLab_8u_C3R", "tpxiLabToRGB_8u_C3R", 3);
TPX_ROUND_TRIP("tpxiBGRToLab_8u16u_C3R", "tpxiLabToBGR_16u8u_C3R", 0);
TPX_ROUND_TRIP("tpxiRGBToLUV_16u_C3R", "tpxiLUVToRGB_16u_C3R", 4);

namespace tpxtest {
namespace {

// Float L, a, b (or L, u, v) sources: L in L0..100, the others in Lo..Hi;
// channel c of an interleaved row is element c mod 3, of a planar image plane c.
template <class T, int L0, int Lo, int Hi>
void nominal(int plane, uint8_t* row0, int64_t rowBytes, int64_t rows, int64_t step, uint32_t seed) {
    uint32_t s = seed * 2654435761u + 1;
    for (int64_t r = 0; r < rows; ++r)
        for (int64_t i = 0; i < rowBytes / int64_t(sizeof(T)); ++i) {
            s = s * 1664525u + 1013904223u;
            const int c = plane > 0 ? plane : int(i % 3);
            const float unit = float(s >> 8) / 16777216.0f;
            const T v = c == 0 ? L0 + (100 - L0) * unit : Lo + (Hi - Lo) * unit;
            std::memcpy(row0 + r * step + int64_t(sizeof v) * i, &v, sizeof v);
        }
}
const Family kLab{nullptr, nominal<float, 0, -128, 127>, nullptr, 0, false};
const Family kLab64{nullptr, nominal<double, 0, -128, 127>, nullptr, 0, false};
// Chromaticities that keep RGB within a few units (v' well away from 0).
const Family kLuv{nullptr, nominal<float, 10, -50, 50>, nullptr, 0, false};

}  // namespace

void addXyzLabLuvRows(std::vector<Export>& t) {
    using namespace rows;
    constexpr auto i = [](Elem e, int ch) { return px(ch, e, ch == 4 ? 3 : -1, StepUnit::WholeElements); };
    constexpr auto pix = [i](Elem s, Elem d, int ch, const Family* f = nullptr) {
        return plain(i(s, ch), i(d, ch), 1, 1, Warn::None, f);
    };
    constexpr auto p3 = [](Elem e) { return planes(3, e, StepUnit::WholeElements); };
    constexpr auto pl = [p3](Elem e, const Family* f = nullptr) { return plain(p3(e), p3(e), 1, 1, Warn::None, f); };
    constexpr auto pl64 = [pl](Elem e, const Family* f = nullptr) { return withOrder(wide(pl(e, f)), "nlsp"); };
    constexpr Elem u8 = Elem::U8, u16 = Elem::U16, s16 = Elem::S16, f32 = Elem::F32, f64 = Elem::F64;
    const Family *lab = &kLab, *lab64 = &kLab64, *luv = &kLuv;
    t.insert(t.end(), {
        TPX_EXPORT(tpxiRGBToXYZ_8u_C3R, pix(u8, u8, 3)),
        TPX_EXPORT(tpxiRGBToXYZ_8u_AC4R, pix(u8, u8, 4)),
        TPX_EXPORT(tpxiRGBToXYZ_16u_C3R, pix(u16, u16, 3)),
        TPX_EXPORT(tpxiRGBToXYZ_16u_AC4R, pix(u16, u16, 4)),
        TPX_EXPORT(tpxiRGBToXYZ_16s_C3R, pix(s16, s16, 3)),
        TPX_EXPORT(tpxiRGBToXYZ_16s_AC4R, pix(s16, s16, 4)),
        TPX_EXPORT(tpxiRGBToXYZ_32f_C3R, pix(f32, f32, 3)),
        TPX_EXPORT(tpxiRGBToXYZ_32f_AC4R, pix(f32, f32, 4)),
        TPX_EXPORT(tpxiXYZToRGB_8u_C3R, pix(u8, u8, 3)),
        TPX_EXPORT(tpxiXYZToRGB_8u_AC4R, pix(u8, u8, 4)),
        TPX_EXPORT(tpxiXYZToRGB_16u_C3R, pix(u16, u16, 3)),
        TPX_EXPORT(tpxiXYZToRGB_16u_AC4R, pix(u16, u16, 4)),
        TPX_EXPORT(tpxiXYZToRGB_16s_C3R, pix(s16, s16, 3)),
        TPX_EXPORT(tpxiXYZToRGB_16s_AC4R, pix(s16, s16, 4)),
        TPX_EXPORT(tpxiXYZToRGB_32f_C3R, pix(f32, f32, 3)),
        TPX_EXPORT(tpxiXYZToRGB_32f_AC4R, pix(f32, f32, 4)),
        TPX_EXPORT(tpxiRGBToLUV_8u_C3R, pix(u8, u8, 3)),
        TPX_EXPORT(tpxiRGBToLUV_8u_AC4R, pix(u8, u8, 4)),
        TPX_EXPORT(tpxiRGBToLUV_16u_C3R, pix(u16, u16, 3)),
        TPX_EXPORT(tpxiRGBToLUV_16u_AC4R, pix(u16, u16, 4)),
        TPX_EXPORT(tpxiRGBToLUV_16s_C3R, pix(s16, s16, 3)),
        TPX_EXPORT(tpxiRGBToLUV_16s_AC4R, pix(s16, s16, 4)),
        TPX_EXPORT(tpxiRGBToLUV_32f_C3R, pix(f32, f32, 3)),
        TPX_EXPORT(tpxiRGBToLUV_32f_AC4R, pix(f32, f32, 4)),
        TPX_EXPORT(tpxiLUVToRGB_8u_C3R, pix(u8, u8, 3)),
        TPX_EXPORT(tpxiLUVToRGB_8u_AC4R, pix(u8, u8, 4)),
        TPX_EXPORT(tpxiLUVToRGB_16u_C3R, pix(u16, u16, 3)),
        TPX_EXPORT(tpxiLUVToRGB_16u_AC4R, pix(u16, u16, 4)),
        TPX_EXPORT(tpxiLUVToRGB_16s_C3R, pix(s16, s16, 3)),
        TPX_EXPORT(tpxiLUVToRGB_16s_AC4R, pix(s16, s16, 4)),
        TPX_EXPORT(tpxiLUVToRGB_32f_C3R, pix(f32, f32, 3, luv)),
        TPX_EXPORT(tpxiLUVToRGB_32f_AC4R, pix(f32, f32, 4, luv)),
        TPX_EXPORT(tpxiBGRToLUV_8u_C3R, pix(u8, u8, 3)),
        TPX_EXPORT(tpxiBGRToLUV_32f_C3R, pix(f32, f32, 3)),
        TPX_EXPORT(tpxiLUVToBGR_8u_C3R, pix(u8, u8, 3)),
        TPX_EXPORT(tpxiLUVToBGR_32f_C3R, pix(f32, f32, 3, luv)),
        TPX_EXPORT(tpxiRGBToLab_8u_C3R, pix(u8, u8, 3)),
        TPX_EXPORT(tpxiRGBToLab_32f_C3R, pix(f32, f32, 3)),
        TPX_EXPORT(tpxiRGBToLab_32f_P3R, pl(f32)),
        TPX_EXPORT(tpxiRGBToLab_64f_P3R, pl(f64)),
        TPX_EXPORT(tpxiRGBToLab_32f_P3R_L, pl64(f32)),
        TPX_EXPORT(tpxiRGBToLab_64f_P3R_L, pl64(f64)),
        TPX_EXPORT(tpxiLabToRGB_8u_C3R, pix(u8, u8, 3)),
        TPX_EXPORT(tpxiLabToRGB_32f_C3R, pix(f32, f32, 3, lab)),
        TPX_EXPORT(tpxiLabToRGB_32f_P3R, pl(f32, lab)),
        TPX_EXPORT(tpxiLabToRGB_64f_P3R, pl(f64, lab64)),
        TPX_EXPORT(tpxiLabToRGB_32f_P3R_L, pl64(f32, lab)),
        TPX_EXPORT(tpxiLabToRGB_64f_P3R_L, pl64(f64, lab64)),
        TPX_EXPORT(tpxiBGRToLab_8u_C3R, pix(u8, u8, 3)),
        TPX_EXPORT(tpxiBGRToLab_8u16u_C3R, pix(u8, u16, 3)),
        TPX_EXPORT(tpxiBGRToLab_32f_C3R, pix(f32, f32, 3)),
        TPX_EXPORT(tpxiLabToBGR_8u_C3R, pix(u8, u8, 3)),
        TPX_EXPORT(tpxiLabToBGR_16u8u_C3R, pix(u16, u8, 3)),
        TPX_EXPORT(tpxiLabToBGR_32f_C3R, pix(f32, f32, 3, lab)),
    });
}

}  // namespace tpxtest
