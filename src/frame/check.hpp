// Argument checks of the entry layer. An entry states its check order as one
// TPX_CHECK line per check; the first failing check returns its status and
// nothing has been written.
#pragma once

#include "tpxcc.h"

#include <cstdint>

#define TPX_CHECK(expr)                                  \
    do {                                                 \
        const TpxStatus tpx_check_status_ = (expr);      \
        if (tpx_check_status_ != tpxStatusOk) return tpx_check_status_; \
    } while (0)

namespace tpx::check {

// -8 when any of the pointers is null.
template <class... P>
constexpr TpxStatus notNull(const P*... p) {
    return ((p != nullptr) && ...) ? tpxStatusOk : tpxStatusNullPtr;
}

// -8 when any of the first n entries of a plane-pointer array is null.
template <class P>
inline TpxStatus planes(const P* const* array, int n) {
    for (int i = 0; i < n; ++i)
        if (array[i] == nullptr) return tpxStatusNullPtr;
    return tpxStatusOk;
}

// -6 when the ROI is below minWidth x minHeight (signed comparison).
constexpr TpxStatus size(TpxSize roi, int32_t minWidth = 1, int32_t minHeight = 1) {
    return roi.width < minWidth || roi.height < minHeight ? tpxStatusBadSize : tpxStatusOk;
}
constexpr TpxStatus size(TpxSizeL roi) { return roi.width < 1 || roi.height < 1 ? tpxStatusBadSize : tpxStatusOk; }
constexpr TpxStatus width(TpxSize roi, int32_t minWidth = 1) {
    return roi.width < minWidth ? tpxStatusBadSize : tpxStatusOk;
}
constexpr TpxStatus height(TpxSize roi, int32_t minHeight = 1) {
    return roi.height < minHeight ? tpxStatusBadSize : tpxStatusOk;
}

// -16 when any step is below 1 (only the families that check steps use it).
template <class... S>
constexpr TpxStatus steps(S... s) {
    return ((s >= 1) && ...) ? tpxStatusOk : tpxStatusBadStep;
}

// -232 when any 64-bit size or rectangle value exceeds the 32-bit range.
template <class... V>
constexpr TpxStatus fits32(V... v) {
    return ((int64_t(v) <= INT32_MAX) && ...) ? tpxStatusOk : tpxStatusSizeTooLarge;
}

// `status` when the condition holds.
constexpr TpxStatus failIf(bool condition, TpxStatus status) {
    return condition ? status : tpxStatusOk;
}

}  // namespace tpx::check
