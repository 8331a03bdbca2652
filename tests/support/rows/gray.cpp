// Gray: colour to gray with fixed or caller weights, gray to colour.
#include "support/rows/rows.hpp"

#include <cstring>

namespace tpxtest {
namespace {

// Caller weights: within 0..1, outside, or so large that 16-bit sums leave
// the 32-bit range, by seed; 64f weights are doubles.
template <class W>
void weights(Args& a, std::vector<uint8_t>& extra, uint32_t seed) {
    static const W sets[][3] = {{W(0.25), W(0.5), W(0.125)}, {W(0.2126), W(0.7152), W(0.0722)},
                                {W(-0.75), W(1.4), W(0.62)}, {W(3.0e4), W(-2.0e4), W(1)}};
    extra.resize(sizeof sets[0]);
    std::memcpy(extra.data(), sets[seed % 4], sizeof sets[0]);
    a.extra = extra.data();
}
const Family kWeights32f{weights<float>, nullptr, nullptr, 0, false};
const Family kWeights64f{weights<double>, nullptr, nullptr, 0, false};

}  // namespace

// Steps count whole elements; ColorToGray takes the caller's weights.
ExportShape grayShape(const rows::Name& n) {
    using namespace rows;
    const Family* f = !n.has("ColorToGray") ? n.alpha() : n.elem[0] == Elem::F64 ? &kWeights64f : &kWeights32f;
    return plain(n.image(0, StepUnit::WholeElements), n.image(1, StepUnit::WholeElements), 1, 1, Warn::None, f);
}

}  // namespace tpxtest
