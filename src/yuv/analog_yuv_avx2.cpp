// Analog YUV rows compiled for AVX2 (bodies in analog_yuv.hpp).
#define TPX_ANALOG_MERGE_FOURTH 1
#define TPX_ANALOG_VECTOR_ROWS 1
#include "yuv/analog_yuv.hpp"

namespace tpx::analog {
const Rows kRowsAvx2 = TPX_ANALOG_TABLE;
}  // namespace tpx::analog
