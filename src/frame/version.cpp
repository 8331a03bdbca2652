// The constant version record.
#include "tpxcc.h"

namespace {
constexpr TpxLibraryVersion kVersion = {
    2022, 0, 0, 320770992, {'e', '9', '\0', '\0'},
    "tpxCC AVX (e9)", "2022.0.0 (r0x131e93b0)", "Sep  4 2024",
};
}  // namespace

extern "C" const TpxLibraryVersion* tpxccGetLibVersion(void) { return &kVersion; }
