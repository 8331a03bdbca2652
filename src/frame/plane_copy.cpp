#include "frame/plane_copy.hpp"

#include "frame/image.hpp"
#include "frame/stream.hpp"

namespace tpx {

void copyPlane(const uint8_t* src, std::ptrdiff_t srcStep, uint8_t* dst, std::ptrdiff_t dstStep, int width,
               int height, PlaneStreaming rule, CopyBytes copy) {
    const std::size_t w = std::size_t(width), pixels = w * std::size_t(height);
    bool nt = false;
    if (rule == PlaneStreaming::FixedThreshold) {
        nt = pixels >= 348603;
    } else if (w > 1023) {
        if (srcStep == dstStep && srcStep == std::ptrdiff_t(w)) {
            // Rows without padding: the plane as one row.
            nt = pixels >= 2097153 && stream::worthStreaming(2 * pixels, 0);
            if (nt) stream::copyRow(dst, src, pixels, true);
            else copy(src, std::ptrdiff_t(pixels), dst);
            stream::fence(nt);
            return;
        }
        nt = pixels >= 2097153 && stream::worthStreaming(2 * pixels, 0);
    }
    for (int y = 0; y < height; ++y) {
        if (nt) stream::copyRow(rowAt(dst, dstStep, y), rowAt(src, srcStep, y), w, true);
        else copy(rowAt(src, srcStep, y), std::ptrdiff_t(w), rowAt(dst, dstStep, y));
    }
    stream::fence(nt);
}

}  // namespace tpx
