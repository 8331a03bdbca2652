// VNG row function for 8-bit mosaics, 16 pixels at a time (AVX2).
#include "demosaic/vng_simd.hpp"

namespace tpx::vng {
int row8uAvx2(const uint8_t* const* rows, int n, bool firstGreen, bool rowRed, uint8_t* dst) {
    return simd::row8u<16>(rows, n, firstGreen, rowRed, dst);
}
}  // namespace tpx::vng
