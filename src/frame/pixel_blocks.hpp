// Rows of the floating-point colour conversions, in blocks of pixels: the
// samples to float codes, the conversion of every pixel, the codes back to
// samples, each a loop of its own over the block, which the compiler
// vectorises for the instruction set of the file that instantiates it. The
// operations are the same IEEE ones at every vector width, so every tier
// gives the same bits.
//
// Codes: a sample as a float, a 16s sample plus 32768 (so 0..65535); 32f
// samples as they are. Stored back: rounded to nearest (ties to even, under
// the entries' NearestRounding guard) and saturated to 0..F, less 32768 for
// 16s; NaN stores 0. Conversions whose Op sets kRaw take 16s samples as
// they are and saturate them to -32768..32767.
#pragma once

#include "frame/image.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace tpx::blocks {

using Len = std::ptrdiff_t;

// A row: channel pointers in and out (four each: the planes of a planar
// image, an interleaved image's pointer first), pixels, and the
// conversion's arguments (a matrix; null for most).
using Row = void (*)(const void* const* s, void* const* d, Len n, const void* args);

// Flags of a row: source or destination in BGR order (the first three
// channels or planes reversed), the fourth plane or channel copied from the
// source.
enum Flags { kSrcBgr = 1, kDstBgr = 2, kCopyFourth = 4 };

struct Trio {
    float a, b, c;
};

// What an Op without arguments derives from: its per-row state is empty.
struct Fixed {
    static constexpr bool kRaw = false;
    static constexpr bool kStaged = false;  // floats to floats through the blocks too
    struct State {
        explicit State(const void*) {}
    };
};

namespace {

template <class T>
constexpr bool kFloat = std::is_floating_point_v<T>;
// Whether an Op asks for staged blocks even from floats to floats (Ops
// that do not derive from Fixed may leave kStaged out).
template <class Op, class = void>
struct Staged : std::false_type {};
template <class Op>
struct Staged<Op, std::void_t<decltype(Op::kStaged)>> : std::bool_constant<Op::kStaged> {};
template <class T>
constexpr int kFull = std::is_same_v<T, uint8_t> ? 255 : 65535;
template <class T, bool Raw = false>
constexpr int kBias = std::is_same_v<T, int16_t> && !Raw ? 32768 : 0;

template <class T, bool Raw = false>
inline float codeOf(T v) {
    if constexpr (kFloat<T>) return v;
    else return float(int(v) + kBias<T, Raw>);
}
template <class T, bool Raw = false>
inline T stored(float code) {
    if constexpr (kFloat<T>) {
        return code;
    } else {
        constexpr bool raw16s = Raw && std::is_same_v<T, int16_t>;
        const float r = std::nearbyint(code), lo = raw16s ? -32768.0f : 0.0f, hi = raw16s ? 32767.0f : float(kFull<T>);
        return T(int(r >= lo ? (r <= hi ? r : hi) : lo) - kBias<T, Raw>);
    }
}

// Channel c of pixel i: planes (K = 1) or interleaved (K = 3, 4).
constexpr int slot(bool bgr, int c) { return bgr && c < 3 ? 2 - c : c; }
template <class T, int K, bool Bgr, class P>
inline T get(const P& p, Len i, int c) {
    if constexpr (K == 1) return p[slot(Bgr, c)][i];
    else return p[0][i * K + slot(Bgr, c)];
}
template <class T, int K, bool Bgr, class P>
inline void set(const P& p, Len i, int c, T v) {
    if constexpr (K == 1) p[slot(Bgr, c)][i] = v;
    else p[0][i * K + slot(Bgr, c)] = v;
}

// Source elements S of SK per pixel (1: planes), destination D of DK, flags;
// Op::apply(state, a, b, c) maps three source codes to three destination
// codes. A four-channel destination is written whole: its fourth channel is
// the source's (kCopyFourth) or its own, read back. Every block is read
// before it is written, so the source may be the destination (in place).
template <class S, class D, int SK, int DK, int Fl, class Op>
void row(const void* const* sv, void* const* dv, Len n, const void* args) {
    constexpr Len kBlock = 128;
    constexpr bool sb = Fl & kSrcBgr, db = Fl & kDstBgr, copy = Fl & kCopyFourth, keep = DK == 4 && !copy;
    constexpr bool raw = Op::kRaw;
    static_assert(!copy || std::is_same_v<S, D>, "a copied fourth channel has one type");
    const S* s[4] = {static_cast<const S*>(sv[0]), static_cast<const S*>(sv[1]), static_cast<const S*>(sv[2]),
                     static_cast<const S*>(sv[3])};
    D* d[4] = {static_cast<D*>(dv[0]), static_cast<D*>(dv[1]), static_cast<D*>(dv[2]), static_cast<D*>(dv[3])};
    const typename Op::State state(args);
    if constexpr (kFloat<S> && kFloat<D> && !copy && !Staged<Op>::value) {
        // Floats to floats need no conversions: pixel by pixel, each read
        // before it is written and touching no other (in place is the same).
        TPX_INDEPENDENT
        for (Len i = 0; i < n; ++i) {
            const Trio o = Op::apply(state, get<S, SK, sb>(s, i, 0), get<S, SK, sb>(s, i, 1), get<S, SK, sb>(s, i, 2));
            set<D, DK, db>(d, i, 0, o.a), set<D, DK, db>(d, i, 1, o.b), set<D, DK, db>(d, i, 2, o.c);
        }
        return;
    }
    alignas(64) float x0[kBlock], x1[kBlock], x2[kBlock], y0[kBlock], y1[kBlock], y2[kBlock];
    alignas(64) D w[kBlock];
    for (Len at = 0; at < n; at += kBlock) {
        const Len m = std::min(kBlock, n - at);
        for (Len i = 0; i < m; ++i) {
            x0[i] = codeOf<S, raw>(get<S, SK, sb>(s, at + i, 0));
            x1[i] = codeOf<S, raw>(get<S, SK, sb>(s, at + i, 1));
            x2[i] = codeOf<S, raw>(get<S, SK, sb>(s, at + i, 2));
            if constexpr (copy) w[i] = D(get<S, SK, sb>(s, at + i, 3));
        }
        if constexpr (keep)
            for (Len i = 0; i < m; ++i) w[i] = get<D, DK, db>(d, at + i, 3);
        for (Len i = 0; i < m; ++i) {
            const Trio o = Op::apply(state, x0[i], x1[i], x2[i]);
            y0[i] = o.a, y1[i] = o.b, y2[i] = o.c;
        }
        // The samples first, then the interleaving, in loops of their own
        // (together, the stores of the samples went out one by one).
        alignas(64) D z0[kBlock], z1[kBlock], z2[kBlock];
        for (Len i = 0; i < m; ++i)
            z0[i] = stored<D, raw>(y0[i]), z1[i] = stored<D, raw>(y1[i]), z2[i] = stored<D, raw>(y2[i]);
        if constexpr (DK == 4 && !kFloat<D>) {
            for (Len i = 0; i < m; ++i)  // one word a pixel
                storePixel4(d[0] + 4 * (at + i), db ? z2[i] : z0[i], z1[i], db ? z0[i] : z2[i], w[i]);
        } else {
            for (Len i = 0; i < m; ++i) {
                set<D, DK, db>(d, at + i, 0, z0[i]);
                set<D, DK, db>(d, at + i, 1, z1[i]);
                set<D, DK, db>(d, at + i, 2, z2[i]);
                if constexpr (copy || keep) set<D, DK, db>(d, at + i, 3, w[i]);
            }
        }
    }
}

}  // namespace
}  // namespace tpx::blocks
