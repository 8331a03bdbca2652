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

// Steps count whole elements; float Lab and LUV sources hold nominal values.
ExportShape xyzLabLuvShape(const rows::Name& n) {
    using namespace rows;
    const bool flt = n.elem[0] == Elem::F32 || n.elem[0] == Elem::F64;
    const Family* f = !flt ? nullptr : n.has("LUVTo") ? &kLuv : !n.has("LabTo") ? nullptr : n.elem[0] == Elem::F64 ? &kLab64 : &kLab;
    const ExportShape s = plain(n.image(0, StepUnit::WholeElements), n.image(1, StepUnit::WholeElements), 1, 1, Warn::None, f);
    return n.wide ? withOrder(wide(s), "nlsp") : s;
}

}  // namespace tpxtest
