// AHD stage row functions, 16 pixels at a time (AVX-512).
#include "demosaic/ahd_simd.hpp"

namespace tpx::ahd {
Stages stagesAvx512() { return simd::stages<16>(); }
}  // namespace tpx::ahd
