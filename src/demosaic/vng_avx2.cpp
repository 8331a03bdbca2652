// VNG row functions (AVX2): 16 pixels at a time for 8-bit mosaics, 8 for 16-bit ones.
#include "demosaic/vng_simd.hpp"

namespace tpx::vng {
int row8uAvx2(const uint8_t* const* rows, int n, bool firstGreen, bool rowRed, uint8_t* dst) {
    return simd::row<uint8_t, 16>(rows, n, firstGreen, rowRed, dst);
}
int row16uAvx2(const uint16_t* const* rows, int n, bool firstGreen, bool rowRed, uint16_t* dst) {
    return simd::row<uint16_t, 8>(rows, n, firstGreen, rowRed, dst);
}
}  // namespace tpx::vng
