// Addressing of rows through signed byte steps.
#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace tpx {

// Row y of an image whose row 0 starts at `base`, with `step` bytes between rows
// (zero and negative steps are used as given).
template <class T>
inline T* rowAt(T* base, std::ptrdiff_t step, std::ptrdiff_t y) {
    using Byte = std::conditional_t<std::is_const_v<T>, const unsigned char, unsigned char>;
    return reinterpret_cast<T*>(reinterpret_cast<Byte*>(base) + step * y);
}

// Saturation of an int to 0..255.
constexpr uint8_t clamp255(int v) { return uint8_t(v < 0 ? 0 : v > 255 ? 255 : v); }

}  // namespace tpx
