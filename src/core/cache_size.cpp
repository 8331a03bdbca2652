// Largest processor cache, for the streaming-store decision of the tpxcc kernels.
#include "tpxcore.h"

#include <cstdint>
#include <cstdio>
#include <cstring>

#if defined(__x86_64__) || defined(__i386__)
#include <cpuid.h>
#define TPXCORE_X86 1
#endif

namespace {

#if TPXCORE_X86
// Walks a deterministic cache-parameters leaf (4 on Intel, 0x8000001D on AMD):
// size = ways * partitions * line size * sets for every data or unified cache.
int64_t largestFromLeaf(unsigned leaf) {
    unsigned a, b, c, d;
    if (!__get_cpuid(leaf & 0x80000000u, &a, &b, &c, &d) || a < leaf) return 0;
    int64_t best = 0;
    for (unsigned sub = 0; sub < 64; ++sub) {
        __cpuid_count(leaf, sub, a, b, c, d);
        unsigned type = a & 0x1f;
        if (type == 0) break;
        if (type == 2) continue;  // instruction cache
        int64_t ways = ((b >> 22) & 0x3ff) + 1;
        int64_t parts = ((b >> 12) & 0x3ff) + 1;
        int64_t line = (b & 0xfff) + 1;
        int64_t sets = int64_t(c) + 1;
        int64_t size = ways * parts * line * sets;
        if (size > best) best = size;
    }
    return best;
}

int64_t largestFromCpuid() {
    unsigned a, b, c, d;
    if (!__get_cpuid(0, &a, &b, &c, &d)) return 0;
    int64_t best = largestFromLeaf(4);
    if (best == 0) best = largestFromLeaf(0x8000001Du);
    if (best == 0 && __get_cpuid(0x80000006u, &a, &b, &c, &d)) {
        int64_t l2 = int64_t(c >> 16) * 1024;
        int64_t l3 = int64_t(d >> 18) * 512 * 1024;
        best = l2 > l3 ? l2 : l3;
    }
    return best;
}
#endif

// Reads the operating system's description of the caches of processor 0.
int64_t largestFromSystem() {
    int64_t best = 0;
    for (int index = 0; index < 16; ++index) {
        char path[96];
        std::snprintf(path, sizeof path, "/sys/devices/system/cpu/cpu0/cache/index%d/size", index);
        std::FILE* f = std::fopen(path, "r");
        if (!f) break;
        long long value = 0;
        char unit = 0;
        int got = std::fscanf(f, "%lld%c", &value, &unit);
        std::fclose(f);
        if (got < 1) continue;
        int64_t size = value;
        if (got == 2 && (unit == 'K' || unit == 'k')) size *= 1024;
        if (got == 2 && (unit == 'M' || unit == 'm')) size *= 1024 * 1024;
        if (size > best) best = size;
    }
    return best;
}

int64_t largest() {
    int64_t size = 0;
#if TPXCORE_X86
    size = largestFromCpuid();
#endif
    return size > 0 ? size : largestFromSystem();
}

// Read once while the library loads (a CPUID under a hypervisor costs
// microseconds, and the answer never changes); constant afterwards.
const int64_t kLargest = largest();

}  // namespace

extern "C" int32_t tpxGetMaxCacheSizeB(int32_t* pSize) {
    if (!pSize) return -8;
    if (kLargest <= 0) return -1;
    *pSize = kLargest > INT32_MAX ? INT32_MAX : int32_t(kLargest);
    return 0;
}
