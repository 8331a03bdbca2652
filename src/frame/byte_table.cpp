#include "frame/byte_table.hpp"

#include "frame/cpu.hpp"

namespace tpx {

void lookupBytes(const uint8_t* table, const uint8_t* s, uint8_t* d, std::ptrdiff_t n) {
    std::ptrdiff_t i = 0;
#if TPX_HAVE_X86
    if (activeAvx512Vbmi()) i = avx512vbmi::lookupBytes(table, s, d, n);
    else if (activeTier() >= Tier::Avx2) i = avx2::lookupBytes(table, s, d, n);
#endif
    for (; i < n; ++i) d[i] = table[s[i]];
}

void lookupBytes3of4(const uint8_t* table, const uint8_t* s, uint8_t* d, std::ptrdiff_t n) {
    std::ptrdiff_t p = 0;
#if TPX_HAVE_X86
    if (activeAvx512Vbmi()) p = avx512vbmi::lookupBytes3of4(table, s, d, n);
    else if (activeTier() >= Tier::Avx2) p = avx2::lookupBytes3of4(table, s, d, n);
#endif
    for (; p < n; ++p)
        for (int c = 0; c < 3; ++c) d[4 * p + c] = table[s[4 * p + c]];
}

void lookupBytesRanked(const Ranked& t, const uint8_t* s, uint8_t* d, std::ptrdiff_t n) {
    std::ptrdiff_t i = 0;
#if TPX_HAVE_X86
    if (activeAvx512Vbmi()) i = avx512vbmi::lookupBytesRanked(t, s, d, n);
    else if (activeTier() >= Tier::Avx2) i = avx2::lookupBytesRanked(t, s, d, n);
#endif
    for (; i < n; ++i) {
        if (t.keepFourth && i % 4 == 3) continue;
        const uint8_t p = t.packed[s[i]];
        d[i] = uint8_t(t.base[s[i]] + (t.ranks[i % 192] < p % 32 ? t.steps[p / 32] : 0));
    }
}

}  // namespace tpx
