// Copy of a plane of bytes (the luma plane of the layout conversions), row
// by row through any steps, with non-temporal stores for large planes. The
// bytes written are the same either way.
#pragma once

#include <cstddef>
#include <cstdint>

namespace tpx {

enum class PlaneStreaming {
    // Non-temporal stores when width * height is at least 348603 pixels.
    FixedThreshold,
    // Rows of 1023 bytes or less are plain copies. Wider planes whose steps
    // both equal the width are copied as one row; non-temporal stores when
    // width * height >= 2097153, width >= 128 and twice the plane exceeds the
    // largest processor cache.
    CacheSize,
};

// Rows copied with normal stores go through `copy` (a vector copy of the
// caller's tier; the library's memory copy may itself stream large blocks).
using CopyBytes = void (*)(const uint8_t* src, std::ptrdiff_t n, uint8_t* dst);
void copyPlane(const uint8_t* src, std::ptrdiff_t srcStep, uint8_t* dst, std::ptrdiff_t dstStep, int width,
               int height, PlaneStreaming rule, CopyBytes copy);

}  // namespace tpx
