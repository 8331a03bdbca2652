// The avx2 row functions of the RGB <-> YCbCr 4:4:4 conversions.
#define TPX_YUV444_ISA avx2
#include "yuv/ycbcr444_simd.hpp"
