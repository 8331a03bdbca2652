// A row stretch of the Bayer demosaic on vectors of V::kLanes samples,
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
#include <cstring>

namespace tpx::bayer::simd {

// One block of V::kLanes pixels starting k pixels into the stretch, written
// to `out`; `site` marks the lanes that hold red or blue sites. Without
// Directed (border rows) green at those sites is avg4 and columns i-2, i+2
// and rows j-2, j+2 are not read.
template <class V, bool RedRow, bool Directed, class T>
inline void block(const Stretch<T>& r, int k, typename V::Mask site, T* out) {
    using Vec = typename V::Vec;
    const int i = r.begin + k;
    const Vec c = V::load(r.mid + i), cl = V::load(r.mid + i - 1), cr = V::load(r.mid + i + 1);
    const Vec u = V::load(r.up + i), d = V::load(r.down + i);
    const Vec across = V::avg(cl, cr), along = V::avg(u, d);
    const Vec cross = V::avg4(across, along, cl, cr, u, d);
    const Vec ul = V::load(r.up + i - 1), ur = V::load(r.up + i + 1);
    const Vec dl = V::load(r.down + i - 1), dr = V::load(r.down + i + 1);
    const Vec diag = V::avg4(V::avg(ul, ur), V::avg(dl, dr), ul, ur, dl, dr);
    Vec green = cross;
    if (Directed) {
        const Vec dH = V::absDiff(V::load(r.mid + i - 2), V::load(r.mid + i + 2));
        const Vec dV = V::absDiff(V::load(r.up2 + i), V::load(r.down2 + i));
        green = V::directed(dH, dV, across, along, cross);
    }
    const Vec own = V::select(site, c, across);  // red in a red row, blue in a blue row
    const Vec g = V::select(site, green, c);
    const Vec other = V::select(site, diag, along);
    if (RedRow) V::store3(out, own, g, other);
    else V::store3(out, other, g, own);
}

// Whole blocks, then one block over the last kLanes pixels of the stretch
// computed aside, of which only the pixels not yet written are copied out:
// every pixel is written once and nothing outside the image is read.
template <class V, bool RedRow, bool Directed, class T>
inline int stretchRows(const Stretch<T>& r) {
    constexpr int L = V::kLanes;
    if (r.count < L) return 0;
    auto site = [&](int k) { return V::sites(((r.begin + k) ^ r.siteParity) & 1); };
    const auto first = site(0);
    const int n = r.count / L * L;
    for (int k = 0; k < n; k += L) block<V, RedRow, Directed>(r, k, first, r.out + 3 * std::ptrdiff_t(k));
    if (n < r.count) {
        alignas(64) T aside[3 * L];
        const int k = r.count - L;
        block<V, RedRow, Directed>(r, k, site(k), aside);
        std::memcpy(r.out + 3 * std::ptrdiff_t(n), aside + 3 * (n - k), sizeof(T) * 3 * size_t(r.count - n));
    }
    return r.count;
}

// The row function for one instruction set.
template <class V, class T>
int stretchRow(const Stretch<T>& r) {
    if (r.directed) return r.redRow ? stretchRows<V, true, true>(r) : stretchRows<V, false, true>(r);
    return r.redRow ? stretchRows<V, true, false>(r) : stretchRows<V, false, false>(r);
}

}  // namespace tpx::bayer::simd
