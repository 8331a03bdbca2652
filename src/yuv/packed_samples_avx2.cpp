// v210 and 12-bit rows compiled for AVX2 (bodies in packed_samples.hpp).
#include "yuv/packed_samples.hpp"

namespace tpx::packed {
const Rows kRowsAvx2 = kRows;
}  // namespace tpx::packed
