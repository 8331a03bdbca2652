#include "yuv/ycbcr444.hpp"

#include "frame/image.hpp"

namespace tpx::yuv444 {

void convert(const uint8_t* const src[3], int srcStep, uint8_t* const dst[3], int dstStep, TpxSize roi,
             uint8_t alpha, SimdRow simd, ScalarRow scalar) {
    for (int y = 0; y < roi.height; ++y) {
        const Row r{{rowAt(src[0], srcStep, y), rowAt(src[1], srcStep, y), rowAt(src[2], srcStep, y)},
                    {rowAt(dst[0], dstStep, y), rowAt(dst[1], dstStep, y), rowAt(dst[2], dstStep, y)},
                    roi.width,
                    alpha};
        const int done = simd ? simd(r) : 0;
        if (done < roi.width) scalar(r, done);
    }
}

}  // namespace tpx::yuv444
