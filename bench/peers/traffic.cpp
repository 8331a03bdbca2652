// Bytes a conversion reads and writes over a width x height ROI, from the
// shapes of its images in the export table (an in-place image is read and
// written); 0 for a function the table does not know.
#include "peers.hpp"
#include "support/export_table.hpp"

namespace peers {

size_t trafficBytes(const std::string& name, int width, int height) {
    const tpxtest::Export* e = tpxtest::findExport((name.rfind("tpxi", 0) == 0 ? name : "tpxi" + name).c_str());
    if (!e) return 0;
    tpxtest::Args a;
    a.width = width, a.height = height;
    size_t bytes = 0;
    for (int d = 0; d < 2; ++d) {
        const tpxtest::ImageShape& im = tpxtest::side(e->shape, d);
        for (int p = 0; p < im.planes; ++p)
            bytes += size_t(tpxtest::rowBytesOf(e->shape, d, p, a) * tpxtest::planeRows(im, p, height));
    }
    return e->shape.inPlace() ? 2 * bytes : bytes;
}

}  // namespace peers
