// Colour twist rows compiled for AVX2 (bodies in color_twist.hpp).
#include "tone/color_twist.hpp"

namespace tpx::twist {
const Rows kRowsAvx2 = TPX_TWIST_TABLE;
}
