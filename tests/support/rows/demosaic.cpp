// Bayer demosaicing: bilinear, VNG and AHD.
#include "support/rows/rows.hpp"

#include <cstring>

namespace tpxtest {
namespace {

// The grid code, and for VNG its four gains.
void bayerInit(Args& a, std::vector<uint8_t>&, uint32_t seed) { a.code[0] = seed % 4; }
void vngInit(Args& a, std::vector<uint8_t>& extra, uint32_t seed) {
    bayerInit(a, extra, seed);
    const float k[4] = {1.0f, 0.75f, 1.5f, 1.0f};
    extra.resize(sizeof k);
    std::memcpy(extra.data(), k, sizeof k);
    a.extra = extra.data();
}

// After the mosaic size: the grid code, then the rectangle's origin.
const FamilyCheck kBayerChecks[] = {
    {"grid 4", tpxStatusBadArg, [](Args& a) { a.code[0] = 4; },
     [](const Args& a) { return uint32_t(a.code[0]) > 3; }},
    {"origin outside", tpxStatusBadSize, [](Args& a) { a.x = a.imageWidth; },
     [](const Args& a) { return a.x < 0 || a.y < 0 || a.x >= a.imageWidth || a.y >= a.imageHeight; }},
};
// AHD: smooth fields with random detail, so that each of its two candidate
// interpolations wins somewhere.
template <class T>
void smoothWithDetail(int, uint8_t* row0, int64_t rowBytes, int64_t rows, int64_t step, uint32_t seed) {
    const uint32_t top = sizeof(T) == 1 ? 255 : 65535;
    for (int64_t r = 0; r < rows; ++r)
        for (int64_t i = 0; i + int64_t(sizeof(T)) <= rowBytes; i += int64_t(sizeof(T))) {
            seed = seed * 1664525u + 1013904223u;
            const uint32_t u = seed >> 8;
            const T v = T(u % 4 == 0 ? (u >> 2) % (top + 1) : top / 2 + (u >> 2) % 9);
            std::memcpy(row0 + r * step + i, &v, sizeof v);
        }
}

const Family kBayer{bayerInit, nullptr, kBayerChecks, 2, false};
const Family kAhd8{bayerInit, smoothWithDetail<uint8_t>, kBayerChecks, 2, false};
const Family kAhd16{bayerInit, smoothWithDetail<uint16_t>, kBayerChecks, 2, false};
const Family kVng{vngInit, nullptr, kBayerChecks, 2, true};

}  // namespace

void addDemosaicRows(std::vector<Export>& t) {
    using namespace rows;
    // The mosaic side minimum, the samples read around a produced pixel.
    constexpr auto bayer = [](ImageShape s, ImageShape d, int minSide, int reach, const Family* f,
                              const char* order) {
        return ExportShape{s, d, order, int8_t(minSide), int8_t(minSide), Warn::None, false, false,
                           uint8_t(reach), f};
    };
    constexpr ImageShape m8 = mosaic(Elem::U8), m16 = mosaic(Elem::U16);
    // The bilinear members count steps in whole elements; VNG and AHD in bytes.
    constexpr ImageShape cfa8 = mosaic(Elem::U8, StepUnit::WholeElements),
                         cfa16 = mosaic(Elem::U16, StepUnit::WholeElements);
    t.insert(t.end(), {
        TPX_EXPORT(tpxiCFAToRGB_8u_C1C3R, bayer(cfa8, px(3, Elem::U8, -1, StepUnit::WholeElements), 2, 2, &kBayer, "ns01")),
        TPX_EXPORT(tpxiCFAToRGB_16u_C1C3R, bayer(cfa16, px(3, Elem::U16, -1, StepUnit::WholeElements), 2, 2, &kBayer, "ns01")),
        TPX_EXPORT(tpxiCFAToBGRA_VNG_8u_C1C4R, bayer(m8, px(4), 5, 2, &kVng, "ns01")),
        TPX_EXPORT(tpxiCFAToBGRA_VNG_16u_C1C4R, bayer(m16, px(4, Elem::U16), 5, 2, &kVng, "ns01")),
        TPX_EXPORT(tpxiCFAToBGRA_VNG_8u_C1C4R_L, wide(bayer(m8, px(4), 5, 2, &kVng, "nls01"))),
        TPX_EXPORT(tpxiCFAToBGRA_VNG_16u_C1C4R_L, wide(bayer(m16, px(4, Elem::U16), 5, 2, &kVng, "nls01"))),
        TPX_EXPORT(tpxiDemosaicAHD_8u_C1C3R, bayer(m8, px(3), 5, 6, &kAhd8, "ns01")),
        TPX_EXPORT(tpxiDemosaicAHD_16u_C1C3R, bayer(m16, px(3, Elem::U16), 5, 6, &kAhd16, "ns01")),
    });
}

}  // namespace tpxtest
