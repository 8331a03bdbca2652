// Streaming (non-temporal) stores for large destinations.
//
// A kernel that writes a large image asks worthStreaming() once per call; it
// says yes only when the data written exceeds the family's threshold AND the
// largest processor cache, as tpxGetMaxCacheSizeB reports it. When the query
// fails the answer is no. Streamed rows end with fence(). The bytes written are
// the same either way: streaming only keeps the destination out of the cache.
#pragma once

#include <cstddef>
#include <cstdint>

namespace tpx::stream {

// True when `bytesWritten` > `threshold` and > the largest cache size.
bool worthStreaming(std::size_t bytesWritten, std::size_t threshold);

// Row copy and fills; `nt` selects non-temporal stores.
void copyRow(void* dst, const void* src, std::size_t bytes, bool nt);
void fillRow8(uint8_t* dst, uint8_t value, std::size_t count, bool nt);
void fillRow16(uint16_t* dst, uint16_t value, std::size_t count, bool nt);
void fillRow32(uint32_t* dst, uint32_t value, std::size_t count, bool nt);

// Orders earlier non-temporal stores before later stores; a no-op when !nt.
void fence(bool nt);

}  // namespace tpx::stream
