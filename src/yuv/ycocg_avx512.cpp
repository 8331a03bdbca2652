// YCoCg rows compiled for AVX-512 (bodies in ycocg.hpp).
#include "yuv/ycocg.hpp"

#define TPX_YCOCG_FWD forwardAvx512
#define TPX_YCOCG_INV inverseAvx512
TPX_YCOCG_ISA_ROWS
