// Colour twist and gamma correction.
#include "support/roundtrips.hpp"
#include "support/rows/rows.hpp"

#include <cstring>

TPX_ROUND_TRIP("tpxiGammaFwd_16u_C3R", "tpxiGammaInv_16u_C3R", 1);
TPX_ROUND_TRIP("tpxiGammaFwd_32f_C3R", "tpxiGammaInv_32f_C3R", 1e-5);

namespace tpxtest {
namespace {

// A 4 x 4 matrix (the 3 x 4 members read its first 12 values): weights in
// -1.25..1.75, constants in -0.25..1.25 of `Full`; every fifth seed the identity.
template <int Full>
void twistInit(Args& a, std::vector<uint8_t>& extra, uint32_t seed) {
    float m[16];
    uint32_t s = seed * 2654435761u + 7;
    for (int k = 0; k < 16; ++k) {
        s ^= s << 13, s ^= s >> 17, s ^= s << 5;
        const float u = float(s >> 8) / 16777216.0f;
        m[k] = k % 4 == 3 && k < 12 ? (u * 1.5f - 0.25f) * Full : u * 3.0f - 1.25f;
        if (seed % 5 == 0) m[k] = k % 5 == 0 ? 1.0f : 0.0f;
    }
    extra.resize(sizeof m);
    std::memcpy(extra.data(), m, sizeof m);
    a.extra = extra.data();
}
const Family kTwist8u{twistInit<255>, nullptr, nullptr, 0, true};
const Family kTwist16{twistInit<65535>, nullptr, nullptr, 0, true};
const Family kTwist32f{twistInit<1>, nullptr, nullptr, 0, true};

// 32f gamma: the range [vMin, vMax] in value[0], value[1] (seeds 0..2 alike,
// so a round trip's two calls share it).
void rangeInit(Args& a, std::vector<uint8_t>&, uint32_t seed) {
    static const double ranges[][2] = {{0, 1}, {-1, 1}, {0.25, 0.75}};
    a.value[0] = ranges[seed / 3 % 3][0], a.value[1] = ranges[seed / 3 % 3][1];
}
const FamilyCheck kRangeCheck[] = {{"vMax = vMin", tpxStatusBadRange, [](Args& a) { a.value[1] = a.value[0]; },
                                    [](const Args& a) { return !(float(a.value[1]) - float(a.value[0]) > 0.0f); }}};
const Family kRange{rangeInit, nullptr, kRangeCheck, 1, false};

}  // namespace

void addTwistGammaRows(std::vector<Export>& t) {
    using namespace rows;
    constexpr auto c = [](Elem e, int ch) { return px(ch, e, ch == 4 ? 3 : -1, StepUnit::WholeElements); };
    constexpr auto p = [](Elem e) { return planes(3, e, StepUnit::WholeElements); };
    // The members of one type: C3, AC4, P3 and in place; checks `pix` for
    // interleaved images, `pl` for planar ones.
    auto type = [&](Elem e, const Family* f, const char* pix, const char* pl) {
        return std::vector<ExportShape>{withOrder(plain(c(e, 3), c(e, 3), 1, 1, Warn::None, f), pix),
                                        withOrder(plain(c(e, 4), c(e, 4), 1, 1, Warn::None, f), pix),
                                        withOrder(plain(p(e), p(e), 1, 1, Warn::None, f), pl),
                                        inPlace(c(e, 3), pix, f), inPlace(c(e, 4), pix, f), inPlace(p(e), pl, f)};
    };
    auto add = [&t](std::initializer_list<Thunk> calls, std::initializer_list<const char*> names,
                    const std::vector<ExportShape>& shapes) {
        size_t k = 0;
        auto n = names.begin();
        for (Thunk call : calls) t.push_back({*n++, shapes[k++], call});
    };
    const Elem u8 = Elem::U8, u16 = Elem::U16, s16 = Elem::S16, f32 = Elem::F32;
#define TPX_SIX(prefix)                                                                                         \
    {&thunk<&prefix##_C3R>, &thunk<&prefix##_AC4R>, &thunk<&prefix##_P3R>, &thunk<&prefix##_C3IR>,           \
     &thunk<&prefix##_AC4IR>, &thunk<&prefix##_IP3R>},                                                          \
    {#prefix "_C3R", #prefix "_AC4R", #prefix "_P3R", #prefix "_C3IR", #prefix "_AC4IR", #prefix "_IP3R"}
    add(TPX_SIX(tpxiColorTwist_32f), type(f32, &kTwist32f, "nst", "npst"));
    constexpr ImageShape c4 = px(4, Elem::F32, -1, StepUnit::WholeElements);  // all four channels written
    t.push_back(TPX_EXPORT(tpxiColorTwist_32f_C4R, withOrder(plain(c4, c4, 1, 1, Warn::None, &kTwist32f), "nst")));
    add(TPX_SIX(tpxiColorTwist32f_8u), type(u8, &kTwist8u, "nst", "npst"));
    add(TPX_SIX(tpxiColorTwist32f_16u), type(u16, &kTwist16, "nst", "npst"));
    add(TPX_SIX(tpxiColorTwist32f_16s), type(s16, &kTwist16, "nst", "npst"));
    add(TPX_SIX(tpxiGammaFwd_8u), type(u8, nullptr, "nst", "nspt"));
    add(TPX_SIX(tpxiGammaFwd_16u), type(u16, nullptr, "nst", "nspt"));
    add(TPX_SIX(tpxiGammaFwd_32f), type(f32, &kRange, "0nst", "0nspt"));
    add(TPX_SIX(tpxiGammaInv_8u), type(u8, nullptr, "nst", "nspt"));
    add(TPX_SIX(tpxiGammaInv_16u), type(u16, nullptr, "nst", "nspt"));
    add(TPX_SIX(tpxiGammaInv_32f), type(f32, &kRange, "0nst", "0nspt"));
#undef TPX_SIX
}

}  // namespace tpxtest
