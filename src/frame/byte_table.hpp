// Byte tables: d[i] = t[s[i]], 64 bytes at a time with the AVX-512 byte
// permutes (four 64-byte quarters of the table, two two-table permutes and
// a blend on the index's top bit), 32 at a time with AVX2 (sixteen 16-entry
// shuffles and a tree of blends on the high nibble's bits). The source
// and destination are apart or the same bytes.
#pragma once

#include <cstddef>
#include <cstdint>

namespace tpx {

// n bytes.
void lookupBytes(const uint8_t* table, const uint8_t* s, uint8_t* d, std::ptrdiff_t n);
// The first three bytes of each of n four-byte pixels; the fourth byte of a
// destination pixel is neither read nor written.
void lookupBytes3of4(const uint8_t* table, const uint8_t* s, uint8_t* d, std::ptrdiff_t n);
// Ranked tables: with p = packed[s[i]] (a rank in its low five bits, an
// index into `steps` in its top three) and r = ranks[i % 192] (a pattern that
// repeats every 192 bytes, a whole number of 64-byte vectors),
// d[i] = base[s[i]] + (r < p % 32 ? steps[p / 32] : 0), n bytes. With
// keepFourth the fourth byte of every four is left alone.
struct Ranked {
    const uint8_t* base;
    const uint8_t* packed;
    uint8_t steps[8];
    const uint8_t* ranks;  // 192 bytes, 64-byte aligned
    bool keepFourth;
};
void lookupBytesRanked(const Ranked& t, const uint8_t* s, uint8_t* d, std::ptrdiff_t n);

// Vector parts: each does a multiple of its width and returns how many bytes
// (pixels) it did; the caller finishes the rest.
namespace avx2 {
std::ptrdiff_t lookupBytes(const uint8_t* table, const uint8_t* s, uint8_t* d, std::ptrdiff_t n);
std::ptrdiff_t lookupBytes3of4(const uint8_t* table, const uint8_t* s, uint8_t* d, std::ptrdiff_t n);
std::ptrdiff_t lookupBytesRanked(const Ranked& t, const uint8_t* s, uint8_t* d, std::ptrdiff_t n);
}  // namespace avx2
namespace avx512vbmi {
std::ptrdiff_t lookupBytes(const uint8_t* table, const uint8_t* s, uint8_t* d, std::ptrdiff_t n);
std::ptrdiff_t lookupBytes3of4(const uint8_t* table, const uint8_t* s, uint8_t* d, std::ptrdiff_t n);
std::ptrdiff_t lookupBytesRanked(const Ranked& t, const uint8_t* s, uint8_t* d, std::ptrdiff_t n);
}  // namespace avx512vbmi

}  // namespace tpx
