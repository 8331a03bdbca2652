// Tone mapping passes compiled for AVX-512 (bodies in tone_map.hpp).
#include "tone/tone_map.hpp"

namespace tpx::tonemap {
const Passes kPassesAvx512 = TPX_TONEMAP_PASSES;
}
