#include "stream.hpp"

#include "tpxcore.h"

#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#define TPX_STREAM_SSE2 1
#endif

namespace tpx::stream {

bool worthStreaming(std::size_t bytesWritten, std::size_t threshold) {
    if (bytesWritten <= threshold) return false;
    int32_t cache = 0;
    if (tpxGetMaxCacheSizeB(&cache) != 0 || cache <= 0) return false;
    return bytesWritten > static_cast<std::size_t>(cache);
}

namespace {

// Writes `bytes` of a 16-byte repeating pattern (or copies from src when src
// is non-null) with non-temporal stores on the 16-byte-aligned middle part.
void ntWrite(uint8_t* dst, const uint8_t* src, const uint8_t pattern[16], std::size_t bytes) {
#if TPX_STREAM_SSE2
    std::size_t head = (16 - (reinterpret_cast<std::uintptr_t>(dst) & 15)) & 15;
    if (head > bytes) head = bytes;
    for (std::size_t i = 0; i < head; ++i) dst[i] = src ? src[i] : pattern[i & 15];
    std::size_t i = head;
    // The pattern's phase restarts at dst; rotate it to the aligned start.
    alignas(16) uint8_t rotated[16] = {};
    if (!src)
        for (int k = 0; k < 16; ++k) rotated[k] = pattern[(head + k) & 15];
    const __m128i fillAligned = _mm_load_si128(reinterpret_cast<const __m128i*>(rotated));
    for (; i + 16 <= bytes; i += 16) {
        __m128i v = src ? _mm_loadu_si128(reinterpret_cast<const __m128i*>(src + i)) : fillAligned;
        _mm_stream_si128(reinterpret_cast<__m128i*>(dst + i), v);
    }
    for (; i < bytes; ++i) dst[i] = src ? src[i] : pattern[i & 15];
#else
    for (std::size_t i = 0; i < bytes; ++i) dst[i] = src ? src[i] : pattern[i & 15];
#endif
}

template <class T>
void fillRow(T* dst, T value, std::size_t count, bool nt) {
    if (!nt) {
        for (std::size_t i = 0; i < count; ++i) dst[i] = value;
        return;
    }
    uint8_t pattern[16];
    for (std::size_t k = 0; k < 16; k += sizeof(T)) std::memcpy(pattern + k, &value, sizeof(T));
    ntWrite(reinterpret_cast<uint8_t*>(dst), nullptr, pattern, count * sizeof(T));
}

}  // namespace

void copyRow(void* dst, const void* src, std::size_t bytes, bool nt) {
    if (!nt) {
        std::memmove(dst, src, bytes);
        return;
    }
    ntWrite(static_cast<uint8_t*>(dst), static_cast<const uint8_t*>(src), nullptr, bytes);
}

void fillRow8(uint8_t* dst, uint8_t value, std::size_t count, bool nt) { fillRow(dst, value, count, nt); }
void fillRow16(uint16_t* dst, uint16_t value, std::size_t count, bool nt) { fillRow(dst, value, count, nt); }
void fillRow32(uint32_t* dst, uint32_t value, std::size_t count, bool nt) { fillRow(dst, value, count, nt); }

void fence(bool nt) {
#if TPX_STREAM_SSE2
    if (nt) _mm_sfence();
#else
    (void)nt;
#endif
}

}  // namespace tpx::stream
