// Chroma layout, interlaced and 16:20 conversions.
#include "support/roundtrips.hpp"
#include "support/rows/rows.hpp"

#include <algorithm>
#include <cctype>

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

// Every pointer, then the size, silently rounded: at least one chroma block
// (the height not checked by most of the 4:2:2 and 4:1:1 members).
ExportShape chromaLayoutShape(const rows::Name& n) {
    using namespace rows;
    const ImageShape s = n.image(0), d = n.image(1);
    if (n.has("Interlace")) return withOrder(plain(s, d, 2, 4, Warn::FieldBlock), "nps");
    if (n.has("YCbCr420ToYCrCb420"))
        return withOrder(plain(s, d, 1, 1, Warn::None, n.has("Filter") ? &kStripeDeinterleave : &kDeinterleave), "nsp0");
    if (n.has("Filter_8u_P2C2R")) return withOrder(plain(s, d, 2, 2, Warn::None, &kStripe), "nps");
    if (n.has("Filter")) return withOrder(plain(s, d, 2, 8), "nps");
    if (n.has("ToGray"))
        return withOrder(plain({Pass::Single, 1, {{4, 2, 1, true}, kNone, kNone, kNone}, -1, Elem::U8, StepUnit::Bytes}, d),
                         "nps");
    const size_t to = n.s.find("To");
    if (to != std::string::npos && isdigit(uint8_t(n.s[to + 2])))  // whole blocks of the 16:20 and 4:1:1 resamplers
        return withOrder(plain(s, d, 4, n.has("To411") ? 2 : 4, Warn::None, n.has("To411") ? &kQuadEven : &kQuad), "nps0");
    const int minW = std::max(n.hsub[0], n.hsub[1]), minH = std::max(n.vsub[0], n.vsub[1]);
    const bool noHeight = (n.has("411") && !n.has("YCbCr422ToYCbCr411_8u_C2P3R")) || n.has("YCbCr422ToYCrCb422");
    return withOrder(plain(s, d, minW, minH == 1 && noHeight ? 0 : minH), "nps");
}

}  // namespace tpxtest
