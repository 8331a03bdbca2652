#include "plane_memory.hpp"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace tpxtest {

PlaneMemory::~PlaneMemory() {
    std::free(dense_);
    if (map_) munmap(map_, mapLen_);
}

void PlaneMemory::tiny() {
    dense_ = static_cast<uint8_t*>(std::malloc(16));
    row0_ = uintptr_t(dense_);
    chunks_.push_back({dense_, 16, {}});
}

bool PlaneMemory::allocate(int64_t rows, int64_t rowBytes, int64_t step) {
    rows_ = rows, rowBytes_ = rowBytes, step_ = step;
    if (rows <= 0 || rowBytes <= 0) {  // nothing may be touched
        dense_ = static_cast<uint8_t*>(std::malloc(0));
        row0_ = uintptr_t(dense_);
        return true;
    }
    const int64_t last = (rows - 1) * step;
    const int64_t lo = std::min<int64_t>(0, last), span = std::max<int64_t>(0, last) + rowBytes - lo;
    if (span <= kDense) {
        dense_ = static_cast<uint8_t*>(std::malloc(size_t(span)));
        row0_ = uintptr_t(dense_) - uintptr_t(lo);
        chunks_.push_back({dense_, size_t(span), {}});
        return true;
    }
    if (rows > 8 || span > kSparse || rows * rowBytes > kOpen) return false;
    const uintptr_t page = uintptr_t(sysconf(_SC_PAGESIZE));
    mapLen_ = size_t((uintptr_t(span) + 2 * page) / page * page);
    void* m = mmap(nullptr, mapLen_, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (m == MAP_FAILED) return false;
    map_ = static_cast<uint8_t*>(m);
    row0_ = uintptr_t(map_) + page - uintptr_t(lo);
    // The pages of every row, merged where rows share pages.
    std::vector<std::pair<uintptr_t, uintptr_t>> open, merged;
    for (int64_t r = 0; r < rows; ++r) {
        const uintptr_t a = uintptr_t(row(r));
        open.push_back({a / page * page, (a + uintptr_t(rowBytes) + page - 1) / page * page});
    }
    std::sort(open.begin(), open.end());
    for (const auto& o : open)
        if (!merged.empty() && o.first <= merged.back().second) merged.back().second = std::max(merged.back().second, o.second);
        else merged.push_back(o);
    for (const auto& o : merged) {
        if (mprotect(reinterpret_cast<void*>(o.first), o.second - o.first, PROT_READ | PROT_WRITE) != 0) return false;
        chunks_.push_back({reinterpret_cast<uint8_t*>(o.first), o.second - o.first, {}});
    }
    return true;
}

void PlaneMemory::fill(uint32_t seed) {
    for (auto& c : chunks_)
        for (size_t i = 0; i < c.n; ++i) c.p[i] = uint8_t((seed = seed * 1664525u + 1013904223u) >> 24);
    snapshot();
}

void PlaneMemory::snapshot() {
    for (auto& c : chunks_) c.snap.assign(c.p, c.p + c.n);
}

bool PlaneMemory::intact(bool written, int alphaByte, int unit) const {
    const bool keepAlpha = alphaByte >= 0 && (step_ == 0 || std::llabs(step_) >= rowBytes_);
    for (const auto& c : chunks_) {
        std::vector<uint8_t> mayChange(c.n, 0);
        if (written)
            for (int64_t r = 0; r < rows_; ++r) {
                const uintptr_t a = uintptr_t(row(r)), b = a + uintptr_t(rowBytes_);
                const uintptr_t from = std::max(a, uintptr_t(c.p)), to = std::min(b, uintptr_t(c.p) + c.n);
                for (uintptr_t x = from; x < to; ++x)
                    if (!keepAlpha || int((x - a) % uintptr_t(unit)) != alphaByte) mayChange[x - uintptr_t(c.p)] = 1;
            }
        for (size_t i = 0; i < c.n; ++i)
            if (!mayChange[i] && c.p[i] != c.snap[i]) return false;
    }
    return true;
}

}  // namespace tpxtest
