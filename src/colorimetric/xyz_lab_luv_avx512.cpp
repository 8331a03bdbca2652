// XYZ, Lab and LUV rows compiled for AVX-512 (bodies in xyz_lab_luv.hpp).
#include "colorimetric/xyz_lab_luv.hpp"

namespace tpx::cie {
const Rows kRowsAvx512 = TPX_CIE_TABLE;
}
