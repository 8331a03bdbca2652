// No-dither and ordered rows of the bit-depth reduction compiled for AVX2
// (bodies in reduce_bits.hpp).
#include "tone/reduce_bits.hpp"

namespace tpx::reduce {
const Rows kRowsAvx2 = TPX_REDUCE_TABLE;
}
