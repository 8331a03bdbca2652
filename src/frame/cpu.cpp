#include "cpu.hpp"

#include <cstdlib>
#include <cstring>

#if TPX_HAVE_X86
#include <cpuid.h>
#endif

namespace tpx {
namespace {

#if TPX_HAVE_X86
unsigned long long xcr0() {
    unsigned lo, hi;
    __asm__ volatile("xgetbv" : "=a"(lo), "=d"(hi) : "c"(0));
    return (static_cast<unsigned long long>(hi) << 32) | lo;
}
#endif

Tier probe() {
#if TPX_HAVE_X86
    unsigned a, b, c, d;
    if (!__get_cpuid(1, &a, &b, &c, &d)) return Tier::Scalar;
    const bool fma = (c >> 12) & 1, osxsave = (c >> 27) & 1, avx = (c >> 28) & 1;
    if (!fma || !osxsave || !avx) return Tier::Scalar;
    const unsigned long long xcr = xcr0();
    if ((xcr & 0x6) != 0x6) return Tier::Scalar;  // XMM and YMM state
    if (!__get_cpuid_count(7, 0, &a, &b, &c, &d)) return Tier::Scalar;
    const bool bmi1 = (b >> 3) & 1, avx2 = (b >> 5) & 1, bmi2 = (b >> 8) & 1;
    if (!bmi1 || !avx2 || !bmi2) return Tier::Scalar;
    const bool f = (b >> 16) & 1, dq = (b >> 17) & 1, bw = (b >> 30) & 1, vl = (b >> 31) & 1;
    const bool zmm = (xcr & 0xe0) == 0xe0;  // opmask, upper ZMM, high ZMM state
    if (f && dq && bw && vl && zmm) return Tier::Avx512;
    return Tier::Avx2;
#else
    return Tier::Scalar;
#endif
}

Tier fromEnvironment(Tier detected) {
    const char* v = std::getenv("TPXCC_TIER");
    if (!v) return detected;
    Tier asked = detected;
    if (!std::strcmp(v, "scalar")) asked = Tier::Scalar;
    else if (!std::strcmp(v, "avx2")) asked = Tier::Avx2;
    else if (!std::strcmp(v, "avx512") || !std::strcmp(v, "avx512bw")) asked = Tier::Avx512;
    return asked < detected ? asked : detected;
}

bool probeVbmi() {
#if TPX_HAVE_X86
    unsigned a, b, c, d;
    if (!__get_cpuid_count(7, 0, &a, &b, &c, &d)) return false;
    return (c >> 1) & 1;
#else
    return false;
#endif
}

// Set once while the library loads, constant afterwards.
const Tier kDetected = probe();
const Tier kActive = fromEnvironment(kDetected);
// TPXCC_TIER=avx512bw: the AVX-512 tier without the byte permutes.
bool vbmiAllowed() {
    const char* v = std::getenv("TPXCC_TIER");
    return !v || std::strcmp(v, "avx512bw") != 0;
}
const bool kActiveVbmi = kActive == Tier::Avx512 && probeVbmi() && vbmiAllowed();

#if defined(TPXCC_TIER_SWITCH)
Tier gTier = kActive;
bool gVbmi = kActiveVbmi;
#endif

}  // namespace

#if defined(TPXCC_TIER_SWITCH)
Tier activeTier() { return gTier; }
bool activeAvx512Vbmi() { return gVbmi; }
void setTierForTesting(Tier t, bool vbmi) {
    gTier = t < kDetected ? t : kDetected;
    gVbmi = gTier == Tier::Avx512 && vbmi && probeVbmi();
}
#else
Tier activeTier() { return kActive; }
bool activeAvx512Vbmi() { return kActiveVbmi; }
#endif
Tier detectedTier() { return kDetected; }

const char* tierName(Tier t) {
    switch (t) {
        case Tier::Avx512: return "avx512";
        case Tier::Avx2: return "avx2";
        default: return "scalar";
    }
}

}  // namespace tpx
