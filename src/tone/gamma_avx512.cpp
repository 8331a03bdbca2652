// 32f gamma rows compiled for AVX-512 (bodies in gamma.hpp).
#include "tone/gamma.hpp"

namespace tpx::gamma {
const Rows kRowsAvx512 = TPX_GAMMA_TABLE;
}
