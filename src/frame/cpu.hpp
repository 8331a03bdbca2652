// Kernel tiers and their choice at run time.
//
// The tier is read once when the library is loaded, from the processor's
// features and the operating system's register support, and can be lowered
// (never raised) by the environment variable TPXCC_TIER = scalar | avx2 |
// avx512 | avx512bw (the AVX-512 tier without the VBMI byte permutes). It is
// constant afterwards: no call changes it.
#pragma once

namespace tpx {

enum class Tier : int { Scalar = 0, Avx2 = 1, Avx512 = 2 };

// The tier every entry uses in this process.
Tier activeTier();
// The highest tier this processor supports (ignores TPXCC_TIER).
Tier detectedTier();
const char* tierName(Tier t);
// True when the active tier is AVX-512 and the processor also has the AVX-512
// byte permutes (VBMI). Kernels that use them keep an AVX-512 F/BW/VL/DQ
// alternative for processors without.
bool activeAvx512Vbmi();

#if defined(TPXCC_TIER_SWITCH)
// Fuzzing builds only (never the shipped library): later calls use tier `t`,
// lowered to what the processor has, and the AVX-512 byte permutes when `vbmi`
// and the processor has them. Not for concurrent use.
void setTierForTesting(Tier t, bool vbmi);
#endif

// One kernel per tier; null where a family has no kernel for that tier or the
// build has none (non-x86 targets).
template <class Fn>
struct TierKernels {
    Fn scalar;
    Fn avx2;
    Fn avx512;
};

// The best kernel at or below the active tier.
template <class Fn>
inline Fn pick(const TierKernels<Fn>& k, Tier t = activeTier()) {
    if (t >= Tier::Avx512 && k.avx512) return k.avx512;
    if (t >= Tier::Avx2 && k.avx2) return k.avx2;
    return k.scalar;
}

}  // namespace tpx

// A SIMD kernel's name on x86-64 builds, null elsewhere: TPX_X86(fooRow_avx2).
#if defined(__x86_64__) || defined(_M_X64)
#define TPX_HAVE_X86 1
#define TPX_X86(fn) (fn)
#else
#define TPX_HAVE_X86 0
#define TPX_X86(fn) nullptr
#endif
