// Colour twist rows compiled for AVX2: the 8u rows by hand
// (color_twist_simd.hpp), the others from the bodies in color_twist.hpp.
#include "tone/color_twist_simd.hpp"

namespace tpx::twist {
const Rows kRowsAvx2 = TPX_TWIST_VECTOR_TABLE;
}
