// The gamma lookup tables (written at build time by
// src/tone/generator/gamma_tables.cpp): entry i = round-half-even(F *
// curve(i / F)), F = 255 or 65535, with the forward curve 4.5 x for x < 0.018
// (the exact product 4.5 i) and 1.099 x^0.45 - 0.099 otherwise, and the
// inverse y / 4.5 for y < 0.0812 and ((y + 0.099) / 1.099)^(1 / 0.45)
// otherwise. The 8-bit forward table also serves the conversions that apply
// the curve before encoding.
#pragma once

#include <cstdint>

namespace tpx::tone {

extern const uint8_t kGammaFwd8u[256];
extern const uint8_t kGammaInv8u[256];
extern const uint16_t kGammaFwd16u[65536];
extern const uint16_t kGammaInv16u[65536];

}  // namespace tpx::tone
