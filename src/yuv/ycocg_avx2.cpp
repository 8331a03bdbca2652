// YCoCg rows compiled for AVX2 (bodies in ycocg.hpp).
#include "yuv/ycocg.hpp"

#define TPX_YCOCG_FWD forwardAvx2
#define TPX_YCOCG_INV inverseAvx2
TPX_YCOCG_ISA_ROWS
