// Subsampled YCbCr, YCrCb and CbYCr to RGB and BGR.
#include "support/rows/rows.hpp"

namespace tpxtest {

// 4:2:0 decoders warn on odd sizes.
ExportShape decoderShape(const rows::Name& n) {
    using namespace rows;
    return plain(n.image(0), n.image(1), 1, 1, n.vsub[0] == 2 ? Warn::OddSize : Warn::None, n.alpha());
}

}  // namespace tpxtest
