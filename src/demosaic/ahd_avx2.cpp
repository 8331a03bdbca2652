// AHD stage row functions, 8 pixels at a time (AVX2).
#include "demosaic/ahd_simd.hpp"

namespace tpx::ahd {
Stages stagesAvx2() { return simd::stages<8>(); }
}  // namespace tpx::ahd
