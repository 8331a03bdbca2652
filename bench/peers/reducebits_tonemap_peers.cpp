// Bit-depth reduction (no dither, ordered) and tone mapping against a memory
// copy of their traffic (target 2.0 at 3840x2160; tone mapping reads its
// source twice); Floyd-Steinberg timed against the same copy for reference.
#include "peers.hpp"
#include "tpxcc.h"

#include <cstring>

using peers::Pair;

TPX_PEERS(reduceBitsPairs)(int w, int h, std::vector<Pair>& out) {
    auto src = peers::randomBytes(size_t(w) * h * 3, 7), dst = peers::randomBytes(size_t(w) * h * 3, 8);
    auto work = std::make_shared<std::vector<uint8_t>>(size_t(12) * w + 8192);
    auto copyOf = [](size_t bytes) {
        auto a = std::make_shared<std::vector<uint8_t>>(bytes, 1), b = std::make_shared<std::vector<uint8_t>>(bytes);
        return [a, b] { std::memcpy(b->data(), a->data(), a->size()); };
    };
    const TpxSize roi{w, h};
    struct Case {
        const char* name;
        int channels, type;
    };
    for (const Case c : {Case{"tpxiReduceBits_8u_C1R none", 1, 0}, Case{"tpxiReduceBits_8u_C3R none", 3, 0},
                         Case{"tpxiReduceBits_8u_C1R ordered", 1, 4}, Case{"tpxiReduceBits_8u_C3R ordered", 3, 4},
                         Case{"tpxiReduceBits_8u_C1R Floyd-Steinberg", 1, 1},
                         Case{"tpxiReduceBits_8u_C3R Floyd-Steinberg", 3, 1}}) {
        const int step = c.channels * w;
        auto f = c.channels == 1 ? tpxiReduceBits_8u_C1R : tpxiReduceBits_8u_C3R;
        out.push_back({"reduce bits", c.name, "memcpy (same bytes)",
                       [=] { f(src->data(), step, dst->data(), step, roi, 0, c.type, 16, work->data()); },
                       copyOf(size_t(step) * h), c.type == 1 ? 0.0 : 2.0});
    }
    auto f32 = peers::randomBytes(size_t(w) * h * 4, 9);
    for (float* p = reinterpret_cast<float*>(f32->data()), *e = p + size_t(w) * h; p < e; ++p) *p = float(*p != *p ? 0 : 1);
    out.push_back({"tone map", "tpxiToneMapLinear_32f8u_C1R", "memcpy (read twice)",
                   [=] { tpxiToneMapLinear_32f8u_C1R(reinterpret_cast<float*>(f32->data()), 4 * w, dst->data(), w, roi); },
                   copyOf(size_t(w) * h * 9 / 2), 2.0});
    out.push_back({"tone map", "tpxiToneMapMean_32f8u_C1R", "memcpy (read twice)",
                   [=] { tpxiToneMapMean_32f8u_C1R(reinterpret_cast<float*>(f32->data()), 4 * w, dst->data(), w, roi); },
                   copyOf(size_t(w) * h * 9 / 2), 2.0});
}
