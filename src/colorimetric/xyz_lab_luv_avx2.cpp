// XYZ, Lab and LUV rows compiled for AVX2 (bodies in xyz_lab_luv.hpp).
#include "colorimetric/xyz_lab_luv.hpp"

namespace tpx::cie {
const Rows kRowsAvx2 = TPX_CIE_TABLE;
}
