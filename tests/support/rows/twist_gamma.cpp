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

// Steps count whole elements. Interleaved images check pointers, steps and
// size; planar ones the plane entries too (gamma after the size); 32f gamma
// checks its range first.
ExportShape twistGammaShape(const rows::Name& n) {
    using namespace rows;
    const bool gamma = n.has("Gamma"), planar = n.layout[1][0] == 'P';
    const Family* f = gamma ? (n.elem[0] == Elem::F32 ? &kRange : nullptr)
                            : n.elem[0] == Elem::F32 ? &kTwist32f : n.elem[0] == Elem::U8 ? &kTwist8u : &kTwist16;
    const ImageShape d = n.image(1, StepUnit::WholeElements);
    ExportShape s = n.inPlace() ? inPlace(d, "", f) : plain(n.image(0, StepUnit::WholeElements), d, 1, 1, Warn::None, f);
    s.order = f == &kRange ? (planar ? "0nspt" : "0nst") : !planar ? "nst" : gamma ? "nspt" : "npst";
    return s;
}

}  // namespace tpxtest
