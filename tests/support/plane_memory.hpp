// Memory of exactly one plane as its arguments describe it: `rows` rows of
// `rowBytes` bytes, row r at byte r * step from row 0 (any step: zero,
// negative, huge). Spans up to kDense bytes are one malloc block of exactly
// the span, so AddressSanitizer stops any access outside it; larger spans
// (huge steps with few rows) are an address-space reservation in which only
// the pages of the rows are accessible, so any other access faults. Never
// allocates the span itself.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tpxtest {

class PlaneMemory {
public:
    static constexpr int64_t kDense = int64_t(8) << 20;
    static constexpr int64_t kSparse = int64_t(48) << 30;
    // Bytes of rows a sparse plane may open (the rows are filled and
    // remembered, so each opened byte costs three).
    static constexpr int64_t kOpen = int64_t(64) << 20;

    PlaneMemory() = default;
    PlaneMemory(const PlaneMemory&) = delete;
    PlaneMemory& operator=(const PlaneMemory&) = delete;
    ~PlaneMemory();

    // False when the span is too large to reserve (over kSparse, or over
    // kDense with more than 8 rows or rows of more than kOpen bytes in all).
    bool allocate(int64_t rows, int64_t rowBytes, int64_t step);
    // A few bytes, for a call that must not touch its images.
    void tiny();

    // Address of row 0 (possibly outside the accessible bytes when the step is negative).
    uintptr_t row0() const { return row0_; }
    uint8_t* row(int64_t r) const { return reinterpret_cast<uint8_t*>(row0_ + uintptr_t(r * step_)); }

    // Random bytes everywhere, remembered for intact().
    void fill(uint32_t seed);
    // Remembers the bytes as they are now (after rows were written in).
    void snapshot();
    // No byte changed since fill(), except (when `written`) the bytes of the
    // rows; an AC4 alpha byte (byte alphaByte of each unit of `unit` bytes)
    // must not change either, where rows do not overlap.
    bool intact(bool written, int alphaByte = -1, int unit = 1) const;

private:
    struct Chunk {
        uint8_t* p;
        size_t n;
        std::vector<uint8_t> snap;
    };
    uint8_t* dense_ = nullptr;
    uint8_t* map_ = nullptr;
    size_t mapLen_ = 0;
    uintptr_t row0_ = 0;
    int64_t rows_ = 0, rowBytes_ = 0, step_ = 0;
    std::vector<Chunk> chunks_;
};

}  // namespace tpxtest
