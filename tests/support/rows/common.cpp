#include "support/rows/rows.hpp"

namespace tpxtest::rows {
namespace {

void alphaInit(Args& a, std::vector<uint8_t>&, uint32_t seed) {
    a.code[0] = int64_t(seed * 2654435761u >> 16);  // any 16-bit value; 8-bit members take its low byte
    a.value[0] = 0.25 + double(seed % 7);
}

}  // namespace

const Family kAlpha{alphaInit, nullptr, nullptr, 0, false};

}  // namespace tpxtest::rows
