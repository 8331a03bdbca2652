// 32f gamma rows compiled for AVX2 (bodies in gamma.hpp).
#include "tone/gamma.hpp"

namespace tpx::gamma {
const Rows kRowsAvx2 = TPX_GAMMA_TABLE;
}
