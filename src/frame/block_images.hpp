// Images of the block-row conversions (pixel_blocks.hpp) and the entry
// forms they share.
#pragma once

#include "frame/pixel_blocks.hpp"
#include "frame/check.hpp"
#include "frame/image.hpp"
#include "frame/rounding.hpp"
#include "tpxcc.h"

#include <cstdint>

namespace tpx::blocks {

// Up to four channel pointers (an interleaved image: its pointer only)
// sharing one byte step.
struct Image {
    const void* c[4];
    std::ptrdiff_t step;
};
template <class T>
Image pixels(const T* p, std::ptrdiff_t step) {
    return {{p, nullptr, nullptr, nullptr}, step};
}
template <class T>
Image planes(const T* const* p, std::ptrdiff_t step, int n) {
    return {{p[0], p[1], p[2], n == 4 ? p[3] : nullptr}, step};
}

// `row` over every row, rounding to nearest whatever the caller's mode.
inline TpxStatus run(const Image& s, const Image& d, int64_t width, int64_t height, Row row,
                     const void* args = nullptr) {
    const NearestRounding nearest;
    for (int64_t y = 0; y < height; ++y) {
        const void* a[4];
        void* b[4];
        for (int i = 0; i < 4; ++i) {
            a[i] = s.c[i] ? rowAt(static_cast<const uint8_t*>(s.c[i]), s.step, y) : nullptr;
            b[i] = d.c[i] ? rowAt(const_cast<uint8_t*>(static_cast<const uint8_t*>(d.c[i])), d.step, y) : nullptr;
        }
        row(a, b, width, args);
    }
    return tpxStatusOk;
}

// Interleaved members: null pointers, then the size; steps are used as given,
// counting whole elements (an odd byte step of a 16-bit image loses its
// remainder).
template <class S, class D>
TpxStatus interleaved(const S* src, int srcStep, D* dst, int dstStep, TpxSize roi, Row row) {
    TPX_CHECK(check::notNull(src, dst));
    TPX_CHECK(check::size(roi));
    return run(pixels(src, elementStep<S>(srcStep)), pixels(dst, elementStep<D>(dstStep)), roi.width, roi.height, row);
}

}  // namespace tpx::blocks
