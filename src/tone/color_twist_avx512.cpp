// Colour twist rows compiled for AVX-512 (bodies in color_twist.hpp).
#include "tone/color_twist.hpp"

namespace tpx::twist {
const Rows kRowsAvx512 = TPX_TWIST_TABLE;
}
