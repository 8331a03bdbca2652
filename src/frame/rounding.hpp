// The floating-point rounding mode of a call. Kernels that round to nearest
// (ties to even) with the processor's rounding instruction run under this
// guard, so their results do not depend on the mode the caller left set; the
// caller's mode is restored on return.
#pragma once

#include <cfenv>

namespace tpx {

class NearestRounding {
public:
    NearestRounding() : saved_(std::fegetround()) {
        if (saved_ != FE_TONEAREST) std::fesetround(FE_TONEAREST);
    }
    ~NearestRounding() {
        if (saved_ != FE_TONEAREST) std::fesetround(saved_);
    }
    NearestRounding(const NearestRounding&) = delete;
    NearestRounding& operator=(const NearestRounding&) = delete;

private:
    int saved_;
};

}  // namespace tpx
