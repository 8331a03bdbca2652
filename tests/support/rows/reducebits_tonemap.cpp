// Bit-depth reduction with dithering, and tone mapping.
#include "support/rows/rows.hpp"

#include <algorithm>

namespace tpxtest {
namespace {

// A work buffer large enough for any type and noise at this width (the
// largest size the query gives: two error lines and noise), so that any
// codes chosen later fit it.
void workBuffer(Args& a, std::vector<uint8_t>& extra, int layout) {
    int most = 1;
    tpxiReduceBitsGetBufferSize(layout, int(std::max<int64_t>(a.width, 1)), 50, 3, &most);
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

// Steps count whole elements; tone mapping's status depends on the pixels.
ExportShape reduceBitsToneMapShape(const rows::Name& n) {
    using namespace rows;
    if (n.has("8u1u")) {
        constexpr ImageShape bits{Pass::Single, 1, {{1, 8, 1, true}, kNone, kNone, kNone}, -1, Elem::U8, StepUnit::Bytes};
        return withOrder(plain(px(1), bits, 1, 1, Warn::None, &kBits), "ns012");
    }
    const ImageShape s = n.image(0, StepUnit::WholeElements), d = n.image(1, StepUnit::WholeElements);
    if (n.has("ToneMap")) return plain(s, d, 1, 1, Warn::Data);
    return withOrder(plain(s, d, 1, 1, Warn::None, &kReduce), "ns0123");
}

}  // namespace tpxtest
