// v210 and 12-bit packing, YCoCg, analog YUV.
#include "support/roundtrips.hpp"
#include "support/rows/rows.hpp"

// The reversible transform restores every 8-bit image; 12-bit packing loses nothing.
TPX_ROUND_TRIP("tpxiBGRToYCoCg_Rev_8u16s_C3P3R", "tpxiYCoCgToBGR_Rev_16s8u_P3C3R", 0);
TPX_ROUND_TRIP("tpxiSBGRToYCoCg_Rev_16s32s_C3P3R", "tpxiYCoCgToSBGR_Rev_32s16s_P3C3R", 0);
TPX_ROUND_TRIP("tpxiBGRToYCoCg_8u16s_C3P3R", "tpxiYCoCgToBGR_16s8u_P3C3R", 2);
TPX_ROUND_TRIP("tpxiRGBToYUV_8u_C3R", "tpxiYUVToRGB_8u_C3R", 3);
TPX_ROUND_TRIP("tpxiRGBToYUV420_8u_C3P3R", "tpxiYUV420ToRGB_8u_P3C3R", 6);

namespace tpxtest {
namespace {

// v210: a step below 1 is a bad size, after the ROI's.
const FamilyCheck kV210Steps[] = {{"source step 0", tpxStatusBadSize, [](Args& a) { a.srcStep[0] = 0; },
                                   [](const Args& a) { return int32_t(a.srcStep[0]) < 1 || int32_t(a.dstStep[0]) < 1; }}};
const Family kV210{nullptr, nullptr, kV210Steps, 1, false};

// tpxiYCoCgToRGB_8u_P3C3R converts nothing and succeeds for a size below 1.
const FamilyCheck kEmptyOk[] = {{"width 0 (nothing converted)", tpxStatusOk, [](Args& a) { a.width = 0; },
                                 [](const Args& a) { return int32_t(a.width) < 1 || int32_t(a.height) < 1; }}};
const Family kEmpty{nullptr, nullptr, kEmptyOk, 1, false};

}  // namespace

ExportShape ycocgYuvShape(const rows::Name& n) {
    using namespace rows;
    constexpr ImageShape twelve{Pass::Single, 1, {{3, 2, 1, true}, kNone, kNone, kNone}, -1, Elem::U8, StepUnit::Bytes};
    if (n.has("v210"))
        return withOrder(plain({Pass::Single, 1, {{16, 6, 1, true}, kNone, kNone, kNone}, -1, Elem::U32, StepUnit::Elements},
                               px(1, Elem::U16, -1, StepUnit::Elements), 1, 1, Warn::None, &kV210), "ns0");
    if (n.has("Pack_16u12u")) return withOrder(plain(px(1, Elem::U16), twelve), "nst");
    if (n.has("Unpack_12u16u")) return withOrder(plain(twelve, px(1, Elem::U16)), "nst");
    if (n.has("YCoCgToRGB_8u")) return withOrder(plain(n.image(0), n.image(1), 1, 1, Warn::None, &kEmpty), "n0p");
    ImageShape s = n.image(0);
    if (n.layout[0] == "C2") s.plane[0].partial = true;  // rows end in a partial pair at odd widths
    // 4:2:0 warns on odd sizes; the BGR decoder needs 2 x 2.
    const int min = n.has("YUV420ToBGR") ? 2 : 1;
    ExportShape e = plain(s, n.image(1), min, min, n.vsub[0] == 2 || n.vsub[1] == 2 ? Warn::OddSize : Warn::None, n.alpha());
    return n.steps ? e : noSteps(e);
}

}  // namespace tpxtest
