// HSV, HLS and photo YCC rows compiled for AVX-512 (bodies in hsv_hls_ycc.hpp).
#include "colorimetric/hsv_hls_ycc.hpp"

namespace tpx::hls {
const Rows kRowsAvx512 = TPX_HLS_TABLE;
}
