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

void addYCoCgYuvRows(std::vector<Export>& t) {
    using namespace rows;
    constexpr ImageShape v210{Pass::Single, 1, {{16, 6, 1, true}, kNone, kNone, kNone}, -1, Elem::U32, StepUnit::Elements};
    constexpr ImageShape words = px(1, Elem::U16, -1, StepUnit::Elements);
    constexpr ImageShape twelve{Pass::Single, 1, {{3, 2, 1, true}, kNone, kNone, kNone}, -1, Elem::U8, StepUnit::Bytes};
    constexpr ImageShape c3 = px(3), c4 = px(4), ac4 = px(4, Elem::U8, 3), s3 = px(3, Elem::S16), s4 = px(4, Elem::S16);
    constexpr ImageShape p8 = planes(3), p16 = planes(3, Elem::S16), p32 = planes(3, Elem::S32);
    constexpr ImageShape c2odd{Pass::Single, 1, {{4, 2, 1, true}, kNone, kNone, kNone}, -1, Elem::U8, StepUnit::Bytes};
    constexpr auto a = [](ImageShape s, ImageShape d) { return plain(s, d, 1, 1, Warn::None, &kAlpha); };
    constexpr auto enc420 = [](ImageShape s) { return plain(s, kP420, 1, 1, Warn::OddSize); };
    constexpr auto dec420 = [](ImageShape d, int min = 1) { return plain(kP420, d, min, min, Warn::OddSize); };
    t.insert(t.end(), {
        TPX_EXPORT(tpxiYUV422v210ToGray_709HDTV_32u16u_C3C1, withOrder(plain(v210, words, 1, 1, Warn::None, &kV210), "ns0")),
        TPX_EXPORT(tpxiYUV422v210ToRGB_709HDTV_32u16u_C3, withOrder(plain(v210, words, 1, 1, Warn::None, &kV210), "ns0")),
        TPX_EXPORT(tpxiYUV422v210ToBGR_709HDTV_32u16u_C3, withOrder(plain(v210, words, 1, 1, Warn::None, &kV210), "ns0")),
        TPX_EXPORT(tpxiPack_16u12u_C1R, withOrder(plain(px(1, Elem::U16), twelve), "nst")),
        TPX_EXPORT(tpxiUnpack_12u16u_C1R, withOrder(plain(twelve, px(1, Elem::U16)), "nst")),
        // YCoCg
        TPX_EXPORT(tpxiBGRToYCoCg_8u16s_C3P3R, plain(c3, p16)),
        TPX_EXPORT(tpxiBGRToYCoCg_8u16s_C4P3R, plain(c4, p16)),
        TPX_EXPORT(tpxiBGRToYCoCg_Rev_8u16s_C3P3R, plain(c3, p16)),
        TPX_EXPORT(tpxiBGRToYCoCg_Rev_8u16s_C4P3R, plain(c4, p16)),
        TPX_EXPORT(tpxiRGBToYCoCg_8u_C3P3R, plain(c3, p8)),
        TPX_EXPORT(tpxiYCoCgToBGR_16s8u_P3C3R, plain(p16, c3)),
        TPX_EXPORT(tpxiYCoCgToBGR_16s8u_P3C4R, a(p16, c4)),
        TPX_EXPORT(tpxiYCoCgToBGR_Rev_16s8u_P3C3R, plain(p16, c3)),
        TPX_EXPORT(tpxiYCoCgToBGR_Rev_16s8u_P3C4R, a(p16, c4)),
        TPX_EXPORT(tpxiYCoCgToRGB_8u_P3C3R, withOrder(plain(p8, c3, 1, 1, Warn::None, &kEmpty), "n0p")),
        TPX_EXPORT(tpxiSBGRToYCoCg_16s_C3P3R, plain(s3, p16)),
        TPX_EXPORT(tpxiSBGRToYCoCg_16s_C4P3R, plain(s4, p16)),
        TPX_EXPORT(tpxiSBGRToYCoCg_16s32s_C3P3R, plain(s3, p32)),
        TPX_EXPORT(tpxiSBGRToYCoCg_16s32s_C4P3R, plain(s4, p32)),
        TPX_EXPORT(tpxiSBGRToYCoCg_Rev_16s_C3P3R, plain(s3, p16)),
        TPX_EXPORT(tpxiSBGRToYCoCg_Rev_16s_C4P3R, plain(s4, p16)),
        TPX_EXPORT(tpxiSBGRToYCoCg_Rev_16s32s_C3P3R, plain(s3, p32)),
        TPX_EXPORT(tpxiSBGRToYCoCg_Rev_16s32s_C4P3R, plain(s4, p32)),
        TPX_EXPORT(tpxiYCoCgToSBGR_16s_P3C3R, plain(p16, s3)),
        TPX_EXPORT(tpxiYCoCgToSBGR_16s_P3C4R, a(p16, s4)),
        TPX_EXPORT(tpxiYCoCgToSBGR_32s16s_P3C3R, plain(p32, s3)),
        TPX_EXPORT(tpxiYCoCgToSBGR_32s16s_P3C4R, a(p32, s4)),
        TPX_EXPORT(tpxiYCoCgToSBGR_Rev_16s_P3C3R, plain(p16, s3)),
        TPX_EXPORT(tpxiYCoCgToSBGR_Rev_16s_P3C4R, a(p16, s4)),
        TPX_EXPORT(tpxiYCoCgToSBGR_Rev_32s16s_P3C3R, plain(p32, s3)),
        TPX_EXPORT(tpxiYCoCgToSBGR_Rev_32s16s_P3C4R, a(p32, s4)),
        // Analog YUV
        TPX_EXPORT(tpxiRGBToYUV_8u_C3R, plain(c3, c3)),
        TPX_EXPORT(tpxiRGBToYUV_8u_AC4R, plain(ac4, ac4)),
        TPX_EXPORT(tpxiRGBToYUV_8u_C3P3R, plain(c3, p8)),
        TPX_EXPORT(tpxiRGBToYUV_8u_P3R, plain(p8, p8)),
        TPX_EXPORT(tpxiRGBToYUV_8u_AC4P4R, plain(c4, planes(4))),
        TPX_EXPORT(tpxiYUVToRGB_8u_C3R, plain(c3, c3)),
        TPX_EXPORT(tpxiYUVToRGB_8u_AC4R, plain(ac4, ac4)),
        TPX_EXPORT(tpxiYUVToRGB_8u_C3C4R, a(c3, c4)),
        TPX_EXPORT(tpxiYUVToRGB_8u_P3C3R, plain(p8, c3)),
        TPX_EXPORT(tpxiYUVToRGB_8u_P3R, plain(p8, p8)),
        TPX_EXPORT(tpxiRGBToYUV422_8u_C3C2R, plain(c3, kC2)),
        TPX_EXPORT(tpxiRGBToYUV422_8u_C3P3R, plain(c3, kP422)),
        TPX_EXPORT(tpxiRGBToYUV422_8u_P3R, plain(p8, kP422)),
        TPX_EXPORT(tpxiRGBToYUV422_8u_C3P3, noSteps(plain(c3, kP422))),
        TPX_EXPORT(tpxiRGBToYUV422_8u_P3, noSteps(plain(p8, kP422))),
        TPX_EXPORT(tpxiYUV422ToRGB_8u_C2C3R, plain(c2odd, c3)),
        TPX_EXPORT(tpxiYUV422ToRGB_8u_P3C3R, plain(kP422, c3)),
        TPX_EXPORT(tpxiYUV422ToRGB_8u_P3R, plain(kP422, p8)),
        TPX_EXPORT(tpxiYUV422ToRGB_8u_P3AC4R, plain(kP422, ac4)),
        TPX_EXPORT(tpxiYUV422ToRGB_8u_P3, noSteps(plain(kP422, p8))),
        TPX_EXPORT(tpxiYUV422ToRGB_8u_P3C3, noSteps(plain(kP422, c3))),
        TPX_EXPORT(tpxiRGBToYUV420_8u_C3P3R, enc420(c3)),
        TPX_EXPORT(tpxiRGBToYUV420_8u_P3R, enc420(p8)),
        TPX_EXPORT(tpxiRGBToYUV420_8u_C3P3, noSteps(enc420(c3))),
        TPX_EXPORT(tpxiRGBToYUV420_8u_P3, noSteps(enc420(p8))),
        TPX_EXPORT(tpxiBGRToYUV420_8u_AC4P3R, enc420(ac4)),
        TPX_EXPORT(tpxiYUV420ToRGB_8u_P3C3R, dec420(c3)),
        TPX_EXPORT(tpxiYUV420ToRGB_8u_P3R, dec420(p8)),
        TPX_EXPORT(tpxiYUV420ToRGB_8u_P3AC4R, dec420(ac4)),
        TPX_EXPORT(tpxiYUV420ToRGB_8u_P3, noSteps(dec420(p8))),
        TPX_EXPORT(tpxiYUV420ToRGB_8u_P3C3, noSteps(dec420(c3))),
        TPX_EXPORT(tpxiYUV420ToBGR_8u_P3C3R, dec420(c3, 2)),
    });
}

}  // namespace tpxtest
