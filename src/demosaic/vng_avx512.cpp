// VNG row function for 8-bit mosaics, 32 pixels at a time (AVX-512).
#include "demosaic/vng_simd.hpp"

namespace tpx::vng {
int row8uAvx512(const uint8_t* const* rows, int n, bool firstGreen, bool rowRed, uint8_t* dst) {
    return simd::row8u<32>(rows, n, firstGreen, rowRed, dst);
}
}  // namespace tpx::vng
