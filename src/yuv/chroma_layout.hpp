// The chroma layout conversions: luma copied, chroma moved between sampling
// structures (4:2:2, 4:2:0, 4:1:1), storage layouts (three planes, luma plus
// an interleaved chroma plane, packed pairs) and chroma orders, by one rule
// per member. A member is a source layout, a destination layout and a rule;
// convert() walks the rows (in column chunks, so that scratch rows live on
// the stack) and composes the row operations of chroma_rows.hpp.
#pragma once

#include "frame/image.hpp"
#include "frame/plane_copy.hpp"
#include "tpxcc.h"
#include "yuv/chroma_rows.hpp"

#include <algorithm>
#include <cstdint>

namespace tpx::chroma {

enum class Form : uint8_t { P3, P2, C2 };

// A storage layout: form, chroma subsampling, and chroma order. P3 images
// are passed as {Y, first, second} and P2 chroma as first, second pairs,
// where `crFirst` makes Cr the first; packed pairs name the byte (0..3) of
// Y(2k), Y(2k+1), Cb(k) and Cr(k).
struct Layout {
    Form form;
    uint8_t hsub, vsub;
    bool crFirst;
    uint8_t y0, y1, cb, cr;
};
// Layouts as types, to be template arguments.
template <Form F, int H, int V, bool CrFirst = false, int Y0 = 0, int Y1 = 0, int Cb = 0, int Cr = 0>
struct Lay {
    static constexpr Layout value{F, uint8_t(H), uint8_t(V), CrFirst, uint8_t(Y0), uint8_t(Y1), uint8_t(Cb), uint8_t(Cr)};
};
template <int H, int V, bool CrFirst = false>
using Planar = Lay<Form::P3, H, V, CrFirst>;
template <int H, int V, bool CrFirst = false>
using TwoPlane = Lay<Form::P2, H, V, CrFirst>;
using YCbCr422 = Lay<Form::C2, 2, 1, false, 0, 2, 1, 3>;
using YCrCb422 = Lay<Form::C2, 2, 1, false, 0, 2, 3, 1>;
using CbYCr422 = Lay<Form::C2, 2, 1, false, 1, 3, 0, 2>;

enum class Rule : uint8_t {
    Same,         // the same sampling: chroma copied
    EvenRows,     // 4:2:2 to 4:2:0: row 2j
    RepeatRows,   // 4:2:0 to 4:2:2: row j twice
    FourTap,      // 4:2:0 to 4:2:2: row j, then the four-tap interpolation
    EvenColumns,  // 4:2:2 to 4:1:1: sample 2k
    Double,       // 4:1:1 to 4:2:2: sample k twice
    To411,        // 4:2:0 to 4:1:1: samples 2k, 2k+1 of row j to rows 2j, 2j+1
    To420,        // 4:1:1 to 4:2:0: samples k of rows 2j, 2j+1 to 2k, 2k+1 of row j
};

// An image: plane pointers {Y, first, second} (P2: Y and the pair plane; C2:
// the one plane) and their byte steps.
struct Image {
    uint8_t* p[3];
    std::ptrdiff_t step[3];
    uint8_t* row(int plane, std::ptrdiff_t y) const { return rowAt(p[plane], step[plane], y); }
};

// Columns converted per chunk: whole 4:1:1 blocks, scratch rows on the stack.
constexpr int kChunk = 2048;

// Chroma rows (Cb, Cr) of a source image over luma columns [x0, x1).
struct SourceChroma {
    const Layout& s;
    const Image& im;
    Len x0, x1;
    uint8_t (*scratch)[kChunk];  // two rows per source row read: [2r], [2r + 1]
    int used = 0;
    // Cb and Cr of source chroma row j (samples from x0 / hsub): pointers
    // into a planar source, or the row unpacked into `toCb` and `toCr` when
    // given (else into scratch rows).
    void get(std::ptrdiff_t j, const uint8_t*& cb, const uint8_t*& cr, uint8_t* toCb = nullptr,
             uint8_t* toCr = nullptr) {
        const Len k0 = x0 / s.hsub, n = (x1 - x0) / s.hsub;
        if (s.form == Form::P3) {
            cb = im.row(s.crFirst ? 2 : 1, j) + k0;
            cr = im.row(s.crFirst ? 1 : 2, j) + k0;
            return;
        }
        uint8_t* b = toCb ? toCb : scratch[used++];
        uint8_t* r = toCr ? toCr : scratch[used++];
        const bool cbFirst = s.form == Form::P2 ? !s.crFirst : s.cb < s.cr;
        const uint8_t* pairs = im.row(1, j) + 2 * k0;
        if (s.form == Form::C2) {  // chroma pairs from the even or odd bytes
            uint8_t* t = scratch[used++];
            const bool chromaOdd = s.cb % 2 == 1;
            rows().split2(im.row(0, j) + 2 * x0, x1 - x0, chromaOdd ? nullptr : t, chromaOdd ? t : nullptr);
            pairs = t;
        }
        rows().split2(pairs, n, cbFirst ? b : r, cbFirst ? r : b);
        cb = b;
        cr = r;
    }
};

// Destination chroma row jd (columns [x0, x1) of the destination sampling)
// from the source rows by the rule, into cb and cr.
template <Rule R>
void chromaRow(SourceChroma& src, int hd, std::ptrdiff_t jd, std::ptrdiff_t nRows, uint8_t* cb, uint8_t* cr) {
    const Rows& k = rows();
    const Len n = (src.x1 - src.x0) / hd;
    const uint8_t *sb, *sr;
    auto copied = [&](std::ptrdiff_t j) {
        src.get(j, sb, sr, cb, cr);
        if (sb != cb) std::copy(sb, sb + n, cb);
        if (sr != cr) std::copy(sr, sr + n, cr);
    };
    if constexpr (R == Rule::Same || R == Rule::EvenRows || R == Rule::RepeatRows) {
        copied(R == Rule::EvenRows ? 2 * jd : R == Rule::RepeatRows ? jd / 2 : jd);
    } else if constexpr (R == Rule::FourTap) {
        const std::ptrdiff_t j = jd / 2;
        if (jd % 2 == 0) return copied(j);
        auto at = [&](std::ptrdiff_t i) { return i < 0 ? 0 : i > nRows - 1 ? nRows - 1 : i; };
        const uint8_t *b[4], *r[4];
        for (int t = 0; t < 4; ++t) src.get(at(j - 1 + t), b[t], r[t]);
        k.fourTap(b[0], b[1], b[2], b[3], n, cb);
        k.fourTap(r[0], r[1], r[2], r[3], n, cr);
    } else if constexpr (R == Rule::EvenColumns) {
        src.get(jd, sb, sr);
        k.split2(sb, n, cb, nullptr);
        k.split2(sr, n, cr, nullptr);
    } else if constexpr (R == Rule::Double) {
        src.get(jd, sb, sr);
        k.merge2(sb, sb, n / 2, cb);
        k.merge2(sr, sr, n / 2, cr);
    } else if constexpr (R == Rule::To411) {
        src.get(jd / 2, sb, sr);
        const bool odd = jd % 2;
        k.split2(sb, n, odd ? nullptr : cb, odd ? cb : nullptr);
        k.split2(sr, n, odd ? nullptr : cr, odd ? cr : nullptr);
    } else {  // To420
        const uint8_t *b1, *r1;
        src.get(2 * jd, sb, sr);
        src.get(2 * jd + 1, b1, r1);
        k.merge2(sb, b1, n / 2, cb);
        k.merge2(sr, r1, n / 2, cr);
    }
}

// Packed sources into planar destinations. Luma and the chroma pairs of each
// row come apart in one pass; chroma goes straight into the destination
// planes where the rule copies or selects rows, else through scratch rows.
template <class SL, class DL, Rule R>
void fromPacked(const Image& src, const Image& dst, int W, int H) {
    constexpr Layout S = SL::value, D = DL::value;
    const Rows& k = rows();
    const bool yOdd = S.y0 == 1, cbFirst = S.cb < S.cr;
    constexpr bool direct = D.form == Form::P3 && (R == Rule::Same || R == Rule::EvenRows);
    // Two-plane 4:2:0 destinations in the source's chroma order: the packed
    // row's bytes split into luma and (on chroma rows) the pair row.
    if constexpr (D.form == Form::P2 && R == Rule::EvenRows && D.hsub == 2) {
        if (cbFirst == !D.crFirst) {
            for (int y = 0; y < H; ++y) {
                uint8_t *luma = dst.row(0, y), *pairs = y % 2 == 0 ? dst.row(1, y / 2) : nullptr;
                k.split2(src.row(0, y), W, yOdd ? pairs : luma, yOdd ? luma : pairs);
            }
            return;
        }
    }
    alignas(64) uint8_t c[2][kChunk / 2], sel[2][kChunk / 4];
    for (int y = 0; y < H; ++y) {
        const uint8_t* s = src.row(0, y);
        uint8_t* luma = dst.row(0, y);
        const bool chroma = R != Rule::EvenRows || y % 2 == 0;
        const std::ptrdiff_t jd = y / D.vsub;
        if (direct || !chroma) {
            uint8_t* cb = chroma ? dst.row(D.crFirst ? 2 : 1, jd) : nullptr;
            uint8_t* cr = chroma ? dst.row(D.crFirst ? 1 : 2, jd) : nullptr;
            k.unpack422(s, W / 2, yOdd, luma, cbFirst ? cb : cr, cbFirst ? cr : cb);
            continue;
        }
        for (Len x0 = 0; x0 < W; x0 += kChunk) {
            const Len n = std::min<Len>(W - x0, kChunk), pairs = n / 2;
            k.unpack422(s + 2 * x0, pairs, yOdd, luma + x0, c[cbFirst ? 0 : 1], c[cbFirst ? 1 : 0]);
            const uint8_t *cb = c[0], *cr = c[1];
            Len m = pairs;
            if (R == Rule::EvenColumns) {  // sample 2k of each chroma row
                m = pairs / 2;
                k.split2(c[0], m, sel[0], nullptr);
                k.split2(c[1], m, sel[1], nullptr);
                cb = sel[0], cr = sel[1];
            }
            const Len at = x0 / D.hsub;
            if (D.form == Form::P2) {
                k.merge2(D.crFirst ? cr : cb, D.crFirst ? cb : cr, m, dst.row(1, jd) + 2 * at);
            } else {
                std::copy(cb, cb + m, dst.row(D.crFirst ? 2 : 1, jd) + at);
                std::copy(cr, cr + m, dst.row(D.crFirst ? 1 : 2, jd) + at);
            }
        }
    }
}

// Planar or two-plane sources into packed pairs: each row's 4:2:2 chroma by
// the rule (straight from the source planes where it copies or repeats
// rows), then luma and chroma packed in one pass.
template <class SL, class DL, Rule R>
void toPacked(const Image& src, const Image& dst, int W, int H) {
    constexpr Layout S = SL::value, D = DL::value;
    const Rows& k = rows();
    const bool yOdd = D.y0 == 1, cbFirst = D.cb < D.cr;
    // Two-plane chroma pairs in the destination's chroma order, with a row
    // for every row (or every two): the packed row is luma and the pair row
    // interleaved byte by byte.
    if constexpr (S.form == Form::P2 && (R == Rule::Same || R == Rule::RepeatRows) && S.hsub == 2) {
        if (cbFirst == !S.crFirst) {
            for (int y = 0; y < H; ++y) {
                const uint8_t *luma = src.row(0, y), *pairs = src.row(1, R == Rule::RepeatRows ? y / 2 : y);
                k.merge2(yOdd ? pairs : luma, yOdd ? luma : pairs, W, dst.row(0, y));
            }
            return;
        }
    }
    alignas(64) uint8_t scratch[12][kChunk];
    alignas(64) uint8_t c[2][kChunk];
    for (int y = 0; y < H; ++y)
        for (Len x0 = 0; x0 < W; x0 += kChunk) {
            const Len n = std::min<Len>(W - x0, kChunk);
            SourceChroma sc{S, src, x0, x0 + n, scratch};
            const uint8_t *cb, *cr;
            if constexpr (S.form == Form::P3 && (R == Rule::Same || R == Rule::RepeatRows)) {
                sc.get(R == Rule::RepeatRows ? y / 2 : y, cb, cr);
            } else {
                chromaRow<R>(sc, D.hsub, y, H / S.vsub, c[0], c[1]);
                cb = c[0], cr = c[1];
            }
            k.pack422(src.row(0, y) + x0, cbFirst ? cb : cr, cbFirst ? cr : cb, n / 2, yOdd, dst.row(0, y) + 2 * x0);
        }
}

// Writes luma and chroma of destination rows; W, H are the rounded ROI.
template <class SL, class DL, Rule R>
void convert(const Image& src, const Image& dst, int W, int H, PlaneStreaming luma) {
    constexpr Layout S = SL::value, D = DL::value;
    if constexpr (S.form == Form::C2) {
        fromPacked<SL, DL, R>(src, dst, W, H);
    } else if constexpr (D.form == Form::C2) {
        toPacked<SL, DL, R>(src, dst, W, H);
    } else {
        const Rows& k = rows();
        alignas(64) uint8_t scratch[12][kChunk];
        alignas(64) uint8_t out[2][kChunk];
        copyPlane(src.p[0], src.step[0], dst.p[0], dst.step[0], W, H, luma, rows().copy);
        for (std::ptrdiff_t jd = 0; jd < H / D.vsub; ++jd)
            for (Len x0 = 0; x0 < W; x0 += kChunk) {
                const Len x1 = std::min<Len>(W, x0 + kChunk), n = (x1 - x0) / D.hsub;
                SourceChroma sc{S, src, x0, x1, scratch};
                if constexpr (D.form == Form::P3) {
                    uint8_t* cb = dst.row(D.crFirst ? 2 : 1, jd) + x0 / D.hsub;
                    uint8_t* cr = dst.row(D.crFirst ? 1 : 2, jd) + x0 / D.hsub;
                    chromaRow<R>(sc, D.hsub, jd, H / S.vsub, cb, cr);
                } else {
                    const uint8_t *cb = out[0], *cr = out[1];
                    if constexpr (S.form == Form::P3 && (R == Rule::Same || R == Rule::EvenRows || R == Rule::RepeatRows))
                        sc.get(R == Rule::EvenRows ? 2 * jd : R == Rule::RepeatRows ? jd / 2 : jd, cb, cr);
                    else
                        chromaRow<R>(sc, D.hsub, jd, H / S.vsub, out[0], out[1]);
                    k.merge2(D.crFirst ? cr : cb, D.crFirst ? cb : cr, n, dst.row(1, jd) + 2 * (x0 / D.hsub));
                }
            }
    }
}

}  // namespace tpx::chroma
