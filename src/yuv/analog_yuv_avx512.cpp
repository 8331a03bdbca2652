// Analog YUV rows compiled for AVX-512 (bodies in analog_yuv.hpp).
#define TPX_ANALOG_MERGE_FOURTH 1
#define TPX_ANALOG_VECTOR_ROWS 2
#include "yuv/analog_yuv.hpp"

namespace tpx::analog {
const Rows kRowsAvx512 = TPX_ANALOG_TABLE;
}  // namespace tpx::analog
