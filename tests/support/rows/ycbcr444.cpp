// RGB and YCbCr 4:4:4.
#include "support/rows/rows.hpp"

namespace tpxtest {

// The BGR decoders test every pointer, the plane pointers included, before the size.
ExportShape ycbcr444Shape(const rows::Name& n) {
    using namespace rows;
    return withOrder(plain(n.image(0), n.image(1), 1, 1, Warn::None, n.alpha()), n.has("ToBGR") ? "nps" : "");
}

}  // namespace tpxtest
