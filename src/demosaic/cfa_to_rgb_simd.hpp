// The interior row of the Bayer demosaic on vectors of V::kLanes samples,
// shared by the AVX2 and AVX-512 translation units (each supplies V).
//
// Every lane computes every candidate and a constant alternating lane mask
// picks the ones its site needs, so one body serves all four phases. avg2 is
// the unsigned rounding average; avg4 is built from two of them exactly:
// with p = avg2(a, b), q = avg2(c, d),
//   (a + b + c + d + 2) >> 2 = avg2(p, q) - (((a ^ b) | (c ^ d)) & (p ^ q) & 1),
// since p or q rounded up exactly when a + b or c + d is odd, and that
// matters only when p + q is odd.
#pragma once

#include "demosaic/cfa_to_rgb.hpp"

#include <cstdint>

namespace tpx::bayer::simd {

// pshufb masks that interleave three registers of samples (one per channel)
// into R,G,B order, per 16-byte lane: mask[part][channel] gathers the bytes of
// `channel` that go to output bytes part*16 .. part*16+15 of the lane's 48.
// Repeated for every lane of a 64-byte register.
template <int ElemSize>
struct InterleaveMasks {
    alignas(64) int8_t m[3][3][64];
};
template <int ElemSize>
constexpr InterleaveMasks<ElemSize> interleaveMasks() {
    InterleaveMasks<ElemSize> t{};
    for (int part = 0; part < 3; ++part)
        for (int ch = 0; ch < 3; ++ch)
            for (int b = 0; b < 64; ++b) {
                const int q = part * 16 + b % 16, e = q / ElemSize;
                t.m[part][ch][b] = int8_t(e % 3 == ch ? (e / 3) * ElemSize + q % ElemSize : -128);
            }
    return t;
}

template <class V, bool RedRow, class T>
inline int interiorRows(const InteriorRow<T>& r, typename V::Mask site) {
    using Vec = typename V::Vec;
    constexpr int L = V::kLanes;
    const int n = r.count / L * L;
    const T* up2 = r.up2 + r.begin;
    const T* up = r.up + r.begin;
    const T* mid = r.mid + r.begin;
    const T* down = r.down + r.begin;
    const T* down2 = r.down2 + r.begin;
    for (int k = 0; k < n; k += L) {
        const Vec c = V::load(mid + k), cl = V::load(mid + k - 1), cr = V::load(mid + k + 1);
        const Vec u = V::load(up + k), d = V::load(down + k);
        const Vec across = V::avg(cl, cr), along = V::avg(u, d);
        const Vec cross = V::avg4(across, along, cl, cr, u, d);
        const Vec ul = V::load(up + k - 1), ur = V::load(up + k + 1);
        const Vec dl = V::load(down + k - 1), dr = V::load(down + k + 1);
        const Vec diag = V::avg4(V::avg(ul, ur), V::avg(dl, dr), ul, ur, dl, dr);
        const Vec dH = V::absDiff(V::load(mid + k - 2), V::load(mid + k + 2));
        const Vec dV = V::absDiff(V::load(up2 + k), V::load(down2 + k));
        const Vec green = V::directed(dH, dV, across, along, cross);
        const Vec own = V::select(site, c, across);  // red in a red row, blue in a blue row
        const Vec g = V::select(site, green, c);
        const Vec other = V::select(site, diag, along);
        if (RedRow) V::store3(r.out + 3 * k, own, g, other);
        else V::store3(r.out + 3 * k, other, g, own);
    }
    return n;
}

// The row function for one instruction set.
template <class V, class T>
int interiorRow(const InteriorRow<T>& r) {
    const auto site = V::sites((r.begin ^ r.siteParity) & 1);
    return r.redRow ? interiorRows<V, true>(r, site) : interiorRows<V, false>(r, site);
}

}  // namespace tpx::bayer::simd
