// No-dither and ordered rows of the bit-depth reduction compiled for AVX-512
// (bodies in reduce_bits.hpp).
#include "tone/reduce_bits.hpp"

namespace tpx::reduce {
const Rows kRowsAvx512 = TPX_REDUCE_TABLE;
}
