// The 8-bit forward gamma table shared by the conversions that apply the
// transfer curve before encoding and by the gamma family.
#pragma once

#include <cstdint>

namespace tpx::tone {

// Entry i = round-half-even(255 * curve(i / 255)) with curve(x) = 4.5 x for
// x < 0.018 and 1.099 x^0.45 - 0.099 otherwise.
extern const uint8_t kGammaFwd8u[256];

}  // namespace tpx::tone
