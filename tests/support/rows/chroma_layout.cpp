// Chroma layout, interlaced and 16:20 conversions.
#include "support/roundtrips.hpp"
#include "support/rows/rows.hpp"

// 4:2:0 to 4:1:1 and back, and 4:1:1 to 4:2:0 and back, move chroma samples
// without changing them.
TPX_ROUND_TRIP("tpxiYCbCr420ToYCbCr411_8u_P2P3R", "tpxiYCbCr411ToYCbCr420_8u_P3P2R", 0);
TPX_ROUND_TRIP("tpxiYCbCr411ToYCbCr420_8u_P3R", "tpxiYCbCr420ToYCbCr411_8u_P3P2R", 0);
TPX_ROUND_TRIP("tpxiYCbCr422_8u_C2P3R", "tpxiYCbCr422_8u_P3C2R", 0);
TPX_ROUND_TRIP("tpxiYCbCr420_8u_P2P3R", "tpxiYCbCr420_8u_P3P2R", 0);

namespace tpxtest {
namespace {

// The stripe-filter members convert the whole image (code 1 | 4 | 16).
void wholeImage(Args& a, std::vector<uint8_t>&, uint32_t) { a.code[0] = 1 | 4 | 16; }

// The {Y, Cr, Cb} members refuse a width or height of 1 after the plane pointers.
const FamilyCheck kOneCheck[] = {{"width 1", tpxStatusBadSize, [](Args& a) { a.width = 1; },
                                  [](const Args& a) { return a.width == 1 || a.height == 1; }}};
const Family kDeinterleave{nullptr, nullptr, kOneCheck, 1, false};
const Family kStripeDeinterleave{wholeImage, nullptr, kOneCheck, 1, false};
const Family kStripe{wholeImage, nullptr, nullptr, 0, false};

// The resamplers take whole blocks only.
const FamilyCheck kQuadChecks[] = {
    {"width 6", tpxStatusBadSize, [](Args& a) { a.width = 6; }, [](const Args& a) { return a.width % 4 || a.height % 4; }}};
const FamilyCheck kQuadEvenChecks[] = {
    {"width 6", tpxStatusBadSize, [](Args& a) { a.width = 6; }, [](const Args& a) { return a.width % 4 || a.height % 2; }}};
const Family kQuad{nullptr, nullptr, kQuadChecks, 1, false};
const Family kQuadEven{nullptr, nullptr, kQuadEvenChecks, 1, false};

}  // namespace

void addChromaLayoutRows(std::vector<Export>& t) {
    using namespace rows;
    constexpr ImageShape k420P2 = kP2, k411P2 = twoPlane(4, 1), kP1620 = planar(4, 4);
    // Every pointer, then the size (minimum width and height; 0: the height is
    // not checked), silently rounded.
    constexpr auto m = [](ImageShape s, ImageShape d, int minW, int minH) {
        return withOrder(plain(s, d, minW, minH), "nps");
    };
    constexpr ImageShape gray = ImageShape{Pass::Single, 1, {{4, 2, 1, true}, kNone, kNone, kNone}, -1, Elem::U8,
                                           StepUnit::Bytes};
    constexpr ExportShape interlaced = [] {
        ExportShape s = withOrder(plain(kP422, kP420, 2, 4, Warn::FieldBlock), "nps");
        return s;
    }();
    constexpr auto with = [](ImageShape s, ImageShape d, int minW, int minH, const char* order, const Family* f) {
        return withOrder(plain(s, d, minW, minH, Warn::None, f), order);
    };
    t.insert(t.end(), {
        TPX_EXPORT(tpxiCbYCr422ToYCbCr411_8u_C2P3R, m(kC2, kP411, 4, 0)),
        TPX_EXPORT(tpxiCbYCr422ToYCbCr420_8u_C2P2R, m(kC2, k420P2, 2, 2)),
        TPX_EXPORT(tpxiCbYCr422ToYCbCr420_8u_C2P3R, m(kC2, kP420, 2, 2)),
        TPX_EXPORT(tpxiCbYCr422ToYCbCr422_8u_C2P3R, m(kC2, kP422, 2, 1)),
        TPX_EXPORT(tpxiCbYCr422ToYCbCr422_8u_C2R, m(kC2, kC2, 2, 1)),
        TPX_EXPORT(tpxiCbYCr422ToYCrCb420_8u_C2P3R, m(kC2, kP420, 2, 2)),
        TPX_EXPORT(tpxiYCbCr411ToYCbCr420_8u_P2P3R, m(k411P2, kP420, 4, 2)),
        TPX_EXPORT(tpxiYCbCr411ToYCbCr420_8u_P3P2R, m(kP411, k420P2, 4, 2)),
        TPX_EXPORT(tpxiYCbCr411ToYCbCr420_8u_P3R, m(kP411, kP420, 4, 2)),
        TPX_EXPORT(tpxiYCbCr411ToYCbCr422_8u_P2C2R, m(k411P2, kC2, 4, 0)),
        TPX_EXPORT(tpxiYCbCr411ToYCbCr422_8u_P2P3R, m(k411P2, kP422, 4, 0)),
        TPX_EXPORT(tpxiYCbCr411ToYCbCr422_8u_P3C2R, m(kP411, kC2, 4, 0)),
        TPX_EXPORT(tpxiYCbCr411ToYCbCr422_8u_P3R, m(kP411, kP422, 4, 0)),
        TPX_EXPORT(tpxiYCbCr411ToYCrCb420_8u_P2P3R, m(k411P2, kP420, 4, 2)),
        TPX_EXPORT(tpxiYCbCr411ToYCrCb422_8u_P3C2R, m(kP411, kC2, 4, 0)),
        TPX_EXPORT(tpxiYCbCr411ToYCrCb422_8u_P3R, m(kP411, kP422, 4, 0)),
        TPX_EXPORT(tpxiYCbCr411_8u_P2P3R, m(k411P2, kP411, 4, 0)),
        TPX_EXPORT(tpxiYCbCr411_8u_P3P2R, m(kP411, k411P2, 4, 0)),
        TPX_EXPORT(tpxiYCbCr420ToCbYCr422_8u_P2C2R, m(k420P2, kC2, 2, 2)),
        TPX_EXPORT(tpxiYCbCr420ToYCbCr411_8u_P2P3R, m(k420P2, kP411, 4, 2)),
        TPX_EXPORT(tpxiYCbCr420ToYCbCr411_8u_P3P2R, m(kP420, k411P2, 4, 2)),
        TPX_EXPORT(tpxiYCbCr420ToYCbCr422_8u_P2C2R, m(k420P2, kC2, 2, 2)),
        TPX_EXPORT(tpxiYCbCr420ToYCbCr422_8u_P2P3R, m(k420P2, kP422, 2, 2)),
        TPX_EXPORT(tpxiYCbCr420ToYCbCr422_8u_P3R, m(kP420, kP422, 2, 2)),
        TPX_EXPORT(tpxiYCbCr420ToYCbCr422_Filter_8u_P2C2R, with(k420P2, kC2, 2, 2, "nps", &kStripe)),
        TPX_EXPORT(tpxiYCbCr420ToYCbCr422_Filter_8u_P2P3R, m(k420P2, kP422, 2, 8)),
        TPX_EXPORT(tpxiYCbCr420ToYCbCr422_Filter_8u_P3R, m(kP420, kP422, 2, 8)),
        TPX_EXPORT(tpxiYCbCr420ToYCrCb420_8u_P2P3R, with(k420P2, kP420, 1, 1, "nsp0", &kDeinterleave)),
        TPX_EXPORT(tpxiYCbCr420ToYCrCb420_Filter_8u_P2P3R, with(k420P2, kP420, 1, 1, "nsp0", &kStripeDeinterleave)),
        TPX_EXPORT(tpxiYCbCr420_8u_P2P3R, m(k420P2, kP420, 2, 2)),
        TPX_EXPORT(tpxiYCbCr420_8u_P3P2R, m(kP420, k420P2, 2, 2)),
        TPX_EXPORT(tpxiYCbCr422ToCbYCr422_8u_C2R, m(kC2, kC2, 2, 1)),
        TPX_EXPORT(tpxiYCbCr422ToCbYCr422_8u_P3C2R, m(kP422, kC2, 2, 1)),
        TPX_EXPORT(tpxiYCbCr422ToGray_8u_C2C1R, m(gray, px(1), 1, 1)),
        TPX_EXPORT(tpxiYCbCr422ToYCbCr411_8u_C2P2R, m(kC2, k411P2, 4, 0)),
        TPX_EXPORT(tpxiYCbCr422ToYCbCr411_8u_C2P3R, m(kC2, kP411, 4, 1)),
        TPX_EXPORT(tpxiYCbCr422ToYCbCr411_8u_P3P2R, m(kP422, k411P2, 4, 0)),
        TPX_EXPORT(tpxiYCbCr422ToYCbCr411_8u_P3R, m(kP422, kP411, 4, 0)),
        TPX_EXPORT(tpxiYCbCr422ToYCbCr420_8u_C2P2R, m(kC2, k420P2, 2, 2)),
        TPX_EXPORT(tpxiYCbCr422ToYCbCr420_8u_C2P3R, m(kC2, kP420, 2, 2)),
        TPX_EXPORT(tpxiYCbCr422ToYCbCr420_8u_P3P2R, m(kP422, k420P2, 2, 2)),
        TPX_EXPORT(tpxiYCbCr422ToYCbCr420_8u_P3R, m(kP422, kP420, 2, 2)),
        TPX_EXPORT(tpxiYCbCr422ToYCrCb420_8u_C2P2R, m(kC2, k420P2, 2, 2)),
        TPX_EXPORT(tpxiYCbCr422ToYCrCb420_8u_C2P3R, m(kC2, kP420, 2, 2)),
        TPX_EXPORT(tpxiYCbCr422ToYCrCb422_8u_C2R, m(kC2, kC2, 2, 0)),
        TPX_EXPORT(tpxiYCbCr422ToYCrCb422_8u_P3C2R, m(kP422, kC2, 2, 0)),
        TPX_EXPORT(tpxiYCbCr422_8u_C2P3R, m(kC2, kP422, 2, 1)),
        TPX_EXPORT(tpxiYCbCr422_8u_P3C2R, m(kP422, kC2, 2, 1)),
        TPX_EXPORT(tpxiYCrCb420ToCbYCr422_8u_P3C2R, m(kP420, kC2, 2, 2)),
        TPX_EXPORT(tpxiYCrCb420ToYCbCr411_8u_P3P2R, m(kP420, k411P2, 4, 2)),
        TPX_EXPORT(tpxiYCrCb420ToYCbCr420_8u_P3P2R, m(kP420, k420P2, 2, 2)),
        TPX_EXPORT(tpxiYCrCb420ToYCbCr422_8u_P3C2R, m(kP420, kC2, 2, 2)),
        TPX_EXPORT(tpxiYCrCb420ToYCbCr422_8u_P3R, m(kP420, kP422, 2, 2)),
        TPX_EXPORT(tpxiYCrCb420ToYCbCr422_Filter_8u_P3R, m(kP420, kP422, 2, 8)),
        TPX_EXPORT(tpxiYCrCb422ToYCbCr411_8u_C2P3R, m(kC2, kP411, 4, 0)),
        TPX_EXPORT(tpxiYCrCb422ToYCbCr420_8u_C2P3R, m(kC2, kP420, 2, 2)),
        TPX_EXPORT(tpxiYCrCb422ToYCbCr422_8u_C2P3R, m(kC2, kP422, 2, 1)),
        // Interlaced, 16:20 and 4:1:1 resampling
        TPX_EXPORT(tpxiCbYCr422ToYCbCr420_Interlace_8u_C2P3R, [&] { ExportShape s = interlaced; s.src = kC2; return s; }()),
        TPX_EXPORT(tpxiYCbCr1620To420_8u_P3R, with(kP1620, kP420, 4, 4, "nps0", &kQuad)),
        TPX_EXPORT(tpxiYCbCr411To420_8u_P3R, with(kP411, kP420, 4, 4, "nps0", &kQuad)),
        TPX_EXPORT(tpxiYCbCr420To1620_8u_P3R, with(kP420, kP1620, 4, 4, "nps0", &kQuad)),
        TPX_EXPORT(tpxiYCbCr420To411_8u_P3R, with(kP420, kP411, 4, 2, "nps0", &kQuadEven)),
        TPX_EXPORT(tpxiYCbCr420To422_Interlace_8u_P3R, [&] { ExportShape s = interlaced; s.src = kP420; s.dst = kP422; return s; }()),
        TPX_EXPORT(tpxiYCbCr420ToCbYCr422_Interlace_8u_P3C2R, [&] { ExportShape s = interlaced; s.src = kP420; s.dst = kC2; return s; }()),
        TPX_EXPORT(tpxiYCbCr422To420_Interlace_8u_P3R, interlaced),
    });
}

}  // namespace tpxtest
