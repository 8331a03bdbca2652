// Addressing of rows through signed byte steps.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

namespace tpx {

// Row y of an image whose row 0 starts at `base`, with `step` bytes between rows
// (zero and negative steps are used as given).
template <class T>
inline T* rowAt(T* base, std::ptrdiff_t step, std::ptrdiff_t y) {
    using Byte = std::conditional_t<std::is_const_v<T>, const unsigned char, unsigned char>;
    return reinterpret_cast<T*>(reinterpret_cast<Byte*>(base) + step * y);
}

// The byte distance between rows of T elements for a step in bytes that
// counts whole elements: an arithmetic shift drops the remainder of a byte
// count that is not a multiple of the element size.
template <class T, class I>
constexpr std::ptrdiff_t elementStep(I step) {
    constexpr int shift = sizeof(T) == 1 ? 0 : sizeof(T) == 2 ? 1 : sizeof(T) == 4 ? 2 : 3;
    return std::ptrdiff_t(step >> shift) * std::ptrdiff_t(sizeof(T));
}

// Element i of a row, and its store, for rows that need not be aligned to
// their element (a 16-bit image with an odd byte step).
template <class T>
inline T loadAt(const T* row, std::ptrdiff_t i) {
    T v;
    std::memcpy(&v, reinterpret_cast<const unsigned char*>(row) + i * std::ptrdiff_t(sizeof(T)), sizeof v);
    return v;
}
template <class T>
inline void storeAt(T* row, std::ptrdiff_t i, T v) {
    std::memcpy(reinterpret_cast<unsigned char*>(row) + i * std::ptrdiff_t(sizeof(T)), &v, sizeof v);
}
// Whether a pixel's samples may be stored as one word, the first sample in
// its low bits.
#if defined(__BYTE_ORDER__) && __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__
constexpr bool kLittleEndian = true;
#else
constexpr bool kLittleEndian = false;
#endif
// The four samples of a pixel of 8- or 16-bit integers at p: one word store
// where the byte order allows (the rows around it then vectorise), else
// sample by sample.
template <class T>
inline void storePixel4(T* p, T s0, T s1, T s2, T s3) {
    static_assert(std::is_integral_v<T> && sizeof(T) <= 2, "8- or 16-bit samples");
    if constexpr (kLittleEndian) {
        using U = std::make_unsigned_t<T>;
        using Word = std::conditional_t<sizeof(T) == 1, uint32_t, uint64_t>;
        constexpr int bits = 8 * sizeof(T);
        const Word w = Word(U(s0)) | Word(U(s1)) << bits | Word(U(s2)) << 2 * bits | Word(U(s3)) << 3 * bits;
        std::memcpy(p, &w, sizeof w);
    } else {
        storeAt(p, 0, s0), storeAt(p, 1, s1), storeAt(p, 2, s2), storeAt(p, 3, s3);
    }
}

// Marks a loop whose iterations touch disjoint elements (a destination row
// that is the source row itself, or apart from it), so that it may be
// vectorised without the compiler proving that the row pointers do not alias.
#if defined(__clang__)
#define TPX_INDEPENDENT _Pragma("clang loop vectorize(assume_safety)")
#elif defined(__GNUC__)
#define TPX_INDEPENDENT _Pragma("GCC ivdep")
#else
#define TPX_INDEPENDENT
#endif

// True when rows from `p` at `step` bytes apart are all aligned to T.
template <class T>
inline bool alignedRows(const T* p, std::ptrdiff_t step) {
    return (reinterpret_cast<uintptr_t>(p) | uintptr_t(step)) % alignof(T) == 0;
}

// Saturation of an int to 0..255.
constexpr uint8_t clamp255(int v) { return uint8_t(v < 0 ? 0 : v > 255 ? 255 : v); }

}  // namespace tpx
