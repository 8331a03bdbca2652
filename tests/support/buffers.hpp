// Images for one call of any export of the table: every plane of the
// source and the destination in its own buffer, with random guard bytes
// around and between its rows, rows laid out tight, padded, upwards
// (negative step) or all in one place (zero step); the sources hold random
// samples (floats in 0..1) unless the family fills them its own way, and
// `args` holds a valid call on them.
#pragma once

#include "support/export_table.hpp"
#include "support/layout.hpp"

#include <cstdint>
#include <string>
#include <vector>

namespace tpxtest {

struct Layout {
    StepKind src = StepKind::Padded, dst = StepKind::Padded;
};

class Buffers {
public:
    Buffers(const Export& e, int64_t width, int64_t height, uint32_t seed, Layout layout = {});
    // A deep copy whose arguments point into its own buffers.
    Buffers(const Buffers& other);
    Buffers& operator=(const Buffers&) = delete;

    Args args;

    // Plane p of side d (0 source, 1 destination): rows, bytes per row, byte
    // step between rows, and row r.
    int planes(int d) const { return int(side_[d].size()); }
    int64_t rows(int d, int p) const { return side_[d][size_t(p)].rows; }
    int64_t rowBytes(int d, int p) const { return side_[d][size_t(p)].rowBytes; }
    int64_t stepBytes(int d, int p) const { return side_[d][size_t(p)].step; }
    uint8_t* row(int d, int p, int64_t r) {
        Plane& pl = side_[d][size_t(p)];
        return pl.bytes.data() + pl.origin + r * pl.step;
    }
    // Every byte of plane p of side d, guards included.
    const std::vector<uint8_t>& bytes(int d, int p) const { return side_[d][size_t(p)].bytes; }

    // No byte of side d changed since construction; otherwise the first change.
    bool intact(int d) const { return firstChange(d).empty(); }
    std::string firstChange(int d) const;
    // Every destination byte as in `other` (same export and layout).
    bool sameDestination(const Buffers& other) const;

private:
    struct Plane {
        std::vector<uint8_t> bytes, snapshot;
        std::ptrdiff_t origin = 0;
        int64_t rows = 0, rowBytes = 0, step = 0;
    };
    std::vector<Plane> side_[2];
    std::vector<uint8_t> extra_;
    void pointArgs();
};

}  // namespace tpxtest
