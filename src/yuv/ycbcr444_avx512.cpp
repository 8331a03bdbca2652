// The avx512 row functions of the RGB <-> YCbCr 4:4:4 conversions.
#define TPX_YUV444_ISA avx512
#include "yuv/ycbcr444_simd.hpp"
