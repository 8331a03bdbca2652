// v210 and 12-bit rows compiled for AVX-512 (bodies in packed_samples.hpp).
#include "yuv/packed_samples.hpp"

namespace tpx::packed {
const Rows kRowsAvx512 = kRows;
}  // namespace tpx::packed
