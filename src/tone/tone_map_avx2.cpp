// Tone mapping passes compiled for AVX2 (bodies in tone_map.hpp).
#include "tone/tone_map.hpp"

namespace tpx::tonemap {
const Passes kPassesAvx2 = TPX_TONEMAP_PASSES;
}
