#include "yuv/chroma_rows.hpp"

#include "frame/cpu.hpp"

#include <cstring>

namespace tpx::chroma {
namespace {

void copy(const uint8_t* s, Len n, uint8_t* d) { std::memcpy(d, s, size_t(n)); }
void split2(const uint8_t* s, Len n, uint8_t* even, uint8_t* odd) { split2Scalar(s, 0, n, even, odd); }
void merge2(const uint8_t* a, const uint8_t* b, Len n, uint8_t* d) { merge2Scalar(a, b, 0, n, d); }
void permute4(const uint8_t* s, Len groups, const uint8_t order[4], uint8_t* d) {
    permute4Scalar(s, 0, groups, order, d);
}
void unpack422(const uint8_t* s, Len pairs, bool yOdd, uint8_t* y, uint8_t* c0, uint8_t* c1) {
    unpack422Scalar(s, 0, pairs, yOdd, y, c0, c1);
}
void pack422(const uint8_t* y, const uint8_t* c0, const uint8_t* c1, Len pairs, bool yOdd, uint8_t* d) {
    pack422Scalar(y, c0, c1, 0, pairs, yOdd, d);
}
void average(const uint8_t* a, const uint8_t* b, Len n, bool up, uint8_t* d) { averageScalar(a, b, 0, n, up, d); }
void interpolate2(const uint8_t* s, Len n, uint8_t* d) { interpolate2Scalar(s, 0, n, d); }
void halve2(const uint8_t* s, Len n, uint8_t* d) { halve2Scalar(s, 0, n, d); }
void fourTap(const uint8_t* a, const uint8_t* b, const uint8_t* c, const uint8_t* e, Len n, uint8_t* d) {
    fourTapScalar(a, b, c, e, 0, n, d);
}
void blend(const uint8_t* a, const uint8_t* b, Len n, int wa, int shift, uint8_t* d) {
    blendScalar(a, b, 0, n, wa, shift, d);
}
void tap121(const uint8_t* a, const uint8_t* b, const uint8_t* c, Len n, int add, uint8_t* d) {
    tap121Scalar(a, b, c, 0, n, add, d);
}

const Rows kRowsScalar{copy, split2, merge2, permute4, unpack422, pack422, average, interpolate2, halve2, fourTap, blend, tap121};

}  // namespace

const Rows& rows() {
    return *pick(TierKernels<const Rows*>{&kRowsScalar, TPX_X86(&kRowsAvx2), TPX_X86(&kRowsAvx512)});
}

}  // namespace tpx::chroma
