// Bit-depth reduction with dithering, and tone mapping.
#include "support/rows/rows.hpp"

#include <algorithm>

namespace tpxtest {
namespace {

// A work buffer large enough for any type and noise at this width (the
// largest size the query gives), so that any codes chosen later fit it.
void workBuffer(Args& a, std::vector<uint8_t>& extra, int layout) {
    int most = 1;
    for (int type = 0; type <= 4; ++type)
        for (int noise : {0, 50}) {
            int size = 0;
            tpxiReduceBitsGetBufferSize(layout, int(std::max<int64_t>(a.width, 1)), noise, type, &size);
            most = std::max(most, size);
        }
    extra.assign(size_t(most), 0xA5);  // not zero: the kernels zero what they read
    a.buffer = extra.data();
}

// noise 0, dither type and levels by seed.
void reduceInit(Args& a, std::vector<uint8_t>& extra, uint32_t seed) {
    static const int kLevels[] = {2, 3, 16, 17, 100, 256};
    a.code[0] = 0, a.code[1] = seed % 5, a.code[2] = kLevels[seed / 5 % 6];
    workBuffer(a, extra, 1);
}
bool needsBuffer(const Args& a) {
    const int type = int(a.code[1]);
    return (type >= 1 && type <= 3) || (type == 4 && a.code[0] != 0);
}
const FamilyCheck kReduceChecks[] = {
    {"noise 101", tpxStatusBadNoise, [](Args& a) { a.code[0] = 101; }, [](const Args& a) { return uint32_t(a.code[0]) > 100; }},
    {"levels 257", tpxStatusBadLevels, [](Args& a) { a.code[2] = 257; },
     [](const Args& a) { return int32_t(a.code[2]) < 2 || int32_t(a.code[2]) > 256; }},
    {"dither type 5", tpxStatusBadDitherType, [](Args& a) { a.code[1] = 5; },
     [](const Args& a) { return uint32_t(a.code[1]) > 4; }},
    {"null work buffer", tpxStatusNullPtr, [](Args& a) { a.nullBuffer = true, a.code[1] = 1; },
     [](const Args& a) { return (a.nullBuffer || !a.buffer) && needsBuffer(a); }},
};
const Family kReduce{reduceInit, nullptr, kReduceChecks, 4, false};

// One bit per pixel: bit offset (code 0), dither type 0 or 3 (code 3), threshold (code 4).
void bitsInit(Args& a, std::vector<uint8_t>& extra, uint32_t seed) {
    a.code[0] = seed % 13, a.code[3] = seed % 2 ? 3 : 0, a.code[4] = seed * 37 % 256;
    workBuffer(a, extra, 1);
}
int64_t bitsRowBytes(int d, int, const Args& a) {
    return d ? (std::max<int64_t>(a.code[0], 0) + a.width + 7) / 8 : a.width;
}
const FamilyCheck kBitsChecks[] = {
    {"bit offset -1", tpxStatusBadSize, [](Args& a) { a.code[0] = -1; }, [](const Args& a) { return int32_t(a.code[0]) < 0; }},
    {"Stucki without a buffer", tpxStatusNullPtr, [](Args& a) { a.nullBuffer = true, a.code[3] = 3; },
     [](const Args& a) { return int32_t(a.code[3]) == 3 && (a.nullBuffer || !a.buffer); }},
    {"dither type 1", tpxStatusBadDitherType, [](Args& a) { a.code[3] = 1; },
     [](const Args& a) { return int32_t(a.code[3]) != 0 && int32_t(a.code[3]) != 3; }},
};
const Family kBits{bitsInit, nullptr, kBitsChecks, 3, false, bitsRowBytes};

}  // namespace

void addReduceBitsToneMapRows(std::vector<Export>& t) {
    using namespace rows;
    constexpr auto c = [](Elem e, int ch, bool alpha) { return px(ch, e, alpha ? 3 : -1, StepUnit::WholeElements); };
    constexpr ImageShape bits{Pass::Single, 1, {{1, 8, 1, true}, kNone, kNone, kNone}, -1, Elem::U8, StepUnit::Bytes};
    const Family* r = &kReduce;
    // C1, C3, C4 and AC4 of one type pair.
#define TPX_REDUCE(prefix, S, D)                                                                                 \
    TPX_EXPORT(prefix##_C1R, withOrder(plain(c(S, 1, false), c(D, 1, false), 1, 1, Warn::None, r), "ns0123")),  \
        TPX_EXPORT(prefix##_C3R, withOrder(plain(c(S, 3, false), c(D, 3, false), 1, 1, Warn::None, r), "ns0123")), \
        TPX_EXPORT(prefix##_C4R, withOrder(plain(c(S, 4, false), c(D, 4, false), 1, 1, Warn::None, r), "ns0123")), \
        TPX_EXPORT(prefix##_AC4R, withOrder(plain(c(S, 4, false), c(D, 4, true), 1, 1, Warn::None, r), "ns0123"))
    constexpr Elem u8 = Elem::U8, u16 = Elem::U16, s16 = Elem::S16, f32 = Elem::F32;
    t.insert(t.end(), {
        TPX_REDUCE(tpxiReduceBits_8u, u8, u8),
        TPX_REDUCE(tpxiReduceBits_16u, u16, u16),
        TPX_REDUCE(tpxiReduceBits_16s, s16, s16),
        TPX_REDUCE(tpxiReduceBits_16u8u, u16, u8),
        TPX_REDUCE(tpxiReduceBits_16s8u, s16, u8),
        TPX_REDUCE(tpxiReduceBits_32f8u, f32, u8),
        TPX_REDUCE(tpxiReduceBits_32f16u, f32, u16),
        TPX_REDUCE(tpxiReduceBits_32f16s, f32, s16),
        TPX_EXPORT(tpxiReduceBits_8u1u_C1R, withOrder(plain(px(1), bits, 1, 1, Warn::None, &kBits), "ns012")),
        TPX_EXPORT(tpxiToneMapLinear_32f8u_C1R, plain(c(f32, 1, false), px(1), 1, 1, Warn::Data)),
        TPX_EXPORT(tpxiToneMapMean_32f8u_C1R, plain(c(f32, 1, false), px(1), 1, 1, Warn::Data)),
    });
#undef TPX_REDUCE
}

}  // namespace tpxtest
