// VNG row functions (AVX-512): 32 pixels at a time for 8-bit mosaics, 16 for 16-bit ones.
#include "demosaic/vng_simd.hpp"

namespace tpx::vng {
int row8uAvx512(const uint8_t* const* rows, int n, bool firstGreen, bool rowRed, uint8_t* dst) {
    return simd::row<uint8_t, 32>(rows, n, firstGreen, rowRed, dst);
}
int row16uAvx512(const uint16_t* const* rows, int n, bool firstGreen, bool rowRed, uint16_t* dst) {
    return simd::row<uint16_t, 16>(rows, n, firstGreen, rowRed, dst);
}
}  // namespace tpx::vng
