// Encoders from 8-bit RGB to subsampled YCbCr (4:2:2, 4:2:0, 4:1:1): the
// arithmetic of each member, the layouts, the scalar row function and the
// plane driver shared by all members.
//
// Luma is computed per pixel; chroma once per block from the sums of the
// block's R, G and B, all in exact 32-bit integer arithmetic.
#pragma once

#include "frame/cpu.hpp"
#include "frame/image.hpp"
#include "tone/gamma_table.hpp"

#include <cstddef>
#include <cstdint>

namespace tpx::yuv::enc {

// The arithmetic of one member.
//   Y = limit((yR R + yG G + yB B + yOff[x & 1]) >> 16)
//   C = limit((cR SR + cG SG + cB SB + cOff) >> cShift)    (sums over the block)
// Under Rule::HalfSums (the BT.601 CbYCr 4:2:2 members) each pixel contributes
// its weighted sum shifted right by one instead: C = (p0 + p1 + cOff) >> cShift.
// limit() clamps to lo..hi; the studio-range results never reach 0 or 255, so
// 0..255 makes it a no-op. Under Rule::Analog (the analog YUV rows) the sum
// is an intermediate: t = (cR SR + cG SG + cB SB + cOff) >> 16, then
// C = (t * m >> (cShift - 16)) + 128 clamped to 0..255, m = kAnalogCbScale
// or kAnalogCrScale; luma is truncated (yOff 0).
struct Arith {
    int32_t yR, yG, yB;
    int32_t yOff[2];  // even and odd pixel of a pair
    int32_t cbR, cbG, cbB, crR, crG, crB;
    int32_t cOff;
    int cShift;
    int lo, hi;
};

// BT.601 studio range. The offsets hold 128 plus a rounding fraction that
// differs by member: 1/8 in the BGR 4:2:2 members, 1/2 in the RGB 4:2:2
// members, 1/8 in every 4:2:0 and 4:1:1 member.
inline constexpr Arith k601Pair8{16843, 33030, 6423, {1081344, 1081344}, -9699, -19071, 28770, 28770, -24117, -4653,
                                 16793600, 17, 0, 255};
inline constexpr Arith k601PairHalf{16843, 33030, 6423, {1081344, 1081344}, -9699, -19071, 28770, 28770, -24117, -4653,
                                    16842752, 17, 0, 255};
// The packed RGB YCbCr/YCrCb members truncate the second luma of each pair.
inline constexpr Arith k601PairHalfY1Floor{16843, 33030, 6423, {1081344, 1048576}, -9699, -19071, 28770, 28770,
                                           -24117, -4653, 16842752, 17, 0, 255};
// CbYCr: (p0 + p1 + (128 + 1/2) * 65536 - 1) >> 16 from half-sums.
inline constexpr Arith k601PairPartial{16843, 33030, 6423, {1081344, 1081344}, -9699, -19071, 28770, 28770, -24117,
                                       -4653, 8421375, 16, 0, 255};
inline constexpr Arith k601Block{16843, 33030, 6423, {1081344, 1081344}, -9699, -19071, 28770, 28770, -24117, -4653,
                                 33587200, 18, 0, 255};
// BT.709 studio range.
inline constexpr Arith k709CscBlock{11993, 40239, 4063, {1081344, 1081344}, -6619, -22151, 28770, 28770, -26149, -2621,
                                    33587200, 18, 0, 255};
// BT.709 full range with the codes 0 and 255 kept free. Luma weights sum to
// 65536; clamping (s + 32768) >> 16 to 1..254 gives 1 for s < 32768.
inline constexpr Arith k709HdtvBlock{13959, 46858, 4719, {32768, 32768}, -7668, -25821, 33489, 33489, -30409, -3080,
                                     33587200, 18, 1, 254};
inline constexpr Arith k709HdtvPair{13959, 46858, 4719, {32768, 32768}, -7668, -25821, 33489, 33489, -30409, -3080,
                                    16793600, 17, 1, 254};

// The analog YUV weights: S = 19595 R + 38470 G + 7471 B; over a block the
// chroma sums are (SB << 16) - SS and (SR << 16) - SS plus 65535 (pairs) or
// 131071 (2 x 2 blocks), scaled by 0.492 and 0.877 in 16 fractional bits.
inline constexpr int32_t kAnalogCbScale = 32244, kAnalogCrScale = 57475;
inline constexpr Arith kAnalogPair{19595, 38470, 7471, {0, 0}, -19595, -38470, 58065, 46941, -38470, -7471,
                                   65535, 17, 0, 255};
inline constexpr Arith kAnalogBlock{19595, 38470, 7471, {0, 0}, -19595, -38470, 58065, 46941, -38470, -7471,
                                    131071, 18, 0, 255};

enum class Sampling { Pair, Block, Quad };  // 4:2:2, 4:2:0, 4:1:1
enum class Out { Planes, TwoPlane, Packed };
// Byte order of a packed 4:2:2 group.
enum class Pack { None, YCbCr, YCrCb, CbYCr };
// How chroma is formed: from the block sums; from halved per-pixel sums; from
// the block sums with every byte limited to 1..254 (709HDTV); analog YUV (the
// shifted sums scaled once more, see Arith).
enum class Rule { Sums, HalfSums, Limited, Analog };

// A member's layout. SrcBytes is 3 or 4 for interleaved sources (R at byte
// Bgr ? 2 : 0 of the pixel) and 0 for three source planes R, G, B sharing
// one step. Planar outputs always see the chroma planes as Cb, Cr (the
// entries of YCrCb members swap them).
template <int SrcBytes, bool Bgr, Sampling S, Out O, Pack P = Pack::None, Rule C = Rule::Sums, bool Gamma = false>
struct Layout {
    static constexpr int srcBytes = SrcBytes;
    static constexpr bool bgr = Bgr;
    static constexpr Sampling sampling = S;
    static constexpr Out out = O;
    static constexpr Pack pack = P;
    static constexpr bool gamma = Gamma;
    static constexpr Rule rule = C;
    static constexpr int blockW = S == Sampling::Quad ? 4 : 2;
    static constexpr int blockH = S == Sampling::Block ? 2 : 1;
    static constexpr int rOff = Bgr ? 2 : 0, gOff = 1, bOff = Bgr ? 0 : 2;
    // Byte positions of Y0, Y1, Cb and Cr in a packed group.
    static constexpr int posY0 = P == Pack::CbYCr ? 1 : 0;
    static constexpr int posY1 = P == Pack::CbYCr ? 3 : 2;
    static constexpr int posCb = P == Pack::YCbCr ? 1 : P == Pack::YCrCb ? 3 : 0;
    static constexpr int posCr = P == Pack::YCbCr ? 3 : P == Pack::YCrCb ? 1 : 2;
};

// One group of rows of the ROI: the source rows of one chroma row (two for
// 4:2:0) and where its results go.
struct Rows {
    const uint8_t* src[2][3];  // [row][plane]; interleaved sources use plane 0
    uint8_t* y[2];             // luma rows; the packed row of packed members
    uint8_t* cb;               // Cb row, or the interleaved CbCr row
    uint8_t* cr;
    int width;
};

// A SIMD row function converts whole vector blocks from the row start and
// returns the number of pixels it did (a multiple of the block width).
using RowFn = int (*)(const Rows&, const Arith&);

struct Px {
    int r, g, b;
};

template <class L>
inline Px fetch(const uint8_t* const* src, std::ptrdiff_t x) {
    Px p;
    if constexpr (L::srcBytes == 0) {
        p = {src[0][x], src[1][x], src[2][x]};
    } else {
        const uint8_t* q = src[0] + std::ptrdiff_t(x) * L::srcBytes;
        p = {q[L::rOff], q[L::gOff], q[L::bOff]};
    }
    if constexpr (L::gamma) p = {tone::kGammaFwd8u[p.r], tone::kGammaFwd8u[p.g], tone::kGammaFwd8u[p.b]};
    return p;
}

inline uint8_t limit(int32_t v, const Arith& a) { return uint8_t(v < a.lo ? a.lo : v > a.hi ? a.hi : v); }

// Scalar conversion of the row group from pixel x0 to the last whole block.
template <class L>
void rowScalar(const Rows& r, const Arith& a, int x0) {
    static_assert(L::rule != Rule::Analog, "the analog YUV rows keep their own scalar code");
    constexpr int bw = L::blockW, bh = L::blockH;
    for (std::ptrdiff_t x = x0; x + bw <= r.width; x += bw) {
        int32_t sr = 0, sg = 0, sb = 0, hcb = 0, hcr = 0;
        for (int j = 0; j < bh; ++j)
            for (int i = 0; i < bw; ++i) {
                const Px p = fetch<L>(r.src[j], x + i);
                const uint8_t y = limit((a.yR * p.r + a.yG * p.g + a.yB * p.b + a.yOff[i & 1]) >> 16, a);
                if constexpr (L::out == Out::Packed)
                    r.y[0][2 * x + (i ? L::posY1 : L::posY0)] = y;
                else
                    r.y[j][x + i] = y;
                sr += p.r, sg += p.g, sb += p.b;
                if constexpr (L::rule == Rule::HalfSums) {
                    hcb += (a.cbR * p.r + a.cbG * p.g + a.cbB * p.b) >> 1;
                    hcr += (a.crR * p.r + a.crG * p.g + a.crB * p.b) >> 1;
                }
            }
        if constexpr (L::rule != Rule::HalfSums) {
            hcb = a.cbR * sr + a.cbG * sg + a.cbB * sb;
            hcr = a.crR * sr + a.crG * sg + a.crB * sb;
        }
        const uint8_t cb = limit((hcb + a.cOff) >> a.cShift, a), cr = limit((hcr + a.cOff) >> a.cShift, a);
        if constexpr (L::out == Out::Packed) {
            r.y[0][2 * x + L::posCb] = cb;
            r.y[0][2 * x + L::posCr] = cr;
        } else if constexpr (L::out == Out::TwoPlane) {
            r.cb[x] = cb;
            r.cb[x + 1] = cr;
        } else {
            r.cb[x / bw] = cb;
            r.cr[x / bw] = cr;
        }
    }
}

// The whole ROI: source planes (or the interleaved image in src[0]) sharing
// srcStep; destination planes Y, Cb, Cr (or Y, CbCr; or the packed image).
struct Image {
    const uint8_t* src[3];
    std::ptrdiff_t srcStep;
    uint8_t* dst[3];
    std::ptrdiff_t dstStep[3];
    int width, height;
};

// Converts every whole block of the ROI; `simd` (may be null) starts each row group.
template <class L>
void encode(const Image& im, const Arith& a, RowFn simd) {
    Rows r{};
    r.width = im.width;
    for (int y = 0, cy = 0; y <= im.height - L::blockH; y += L::blockH, ++cy) {
        for (int j = 0; j < L::blockH; ++j) {
            for (int p = 0; p < 3; ++p) r.src[j][p] = im.src[p] ? rowAt(im.src[p], im.srcStep, y + j) : nullptr;
            r.y[j] = rowAt(im.dst[0], im.dstStep[0], y + j);
        }
        r.cb = im.dst[1] ? rowAt(im.dst[1], im.dstStep[1], cy) : nullptr;
        r.cr = im.dst[2] ? rowAt(im.dst[2], im.dstStep[2], cy) : nullptr;
        const int done = simd ? simd(r, a) : 0;
        rowScalar<L>(r, a, done);
    }
}

// ---- SIMD row functions (x86-64) -------------------------------------------
// Defined for the layouts listed in TPX_ENC_SIMD_LAYOUTS by
// rgb_to_ycbcr_sub_avx2.cpp and rgb_to_ycbcr_sub_avx512.cpp.
template <class L> int rowAvx2(const Rows&, const Arith&);
template <class L> int rowAvx512(const Rows&, const Arith&);

// The layouts of the members.
using C3Bgr422Packed = Layout<3, true, Sampling::Pair, Out::Packed, Pack::YCbCr>;
using C4Bgr422Packed = Layout<4, true, Sampling::Pair, Out::Packed, Pack::YCbCr>;
using C3Bgr422Planes = Layout<3, true, Sampling::Pair, Out::Planes>;
using C4Bgr422Planes = Layout<4, true, Sampling::Pair, Out::Planes>;
using C3Rgb422Packed = Layout<3, false, Sampling::Pair, Out::Packed, Pack::YCbCr>;
using C3Rgb422PackedCr = Layout<3, false, Sampling::Pair, Out::Packed, Pack::YCrCb>;
using P3Rgb422Packed = Layout<0, false, Sampling::Pair, Out::Packed, Pack::YCbCr>;
using P3Rgb422PackedCr = Layout<0, false, Sampling::Pair, Out::Packed, Pack::YCrCb>;
using C3Rgb422Planes = Layout<3, false, Sampling::Pair, Out::Planes>;
using C4Bgr422CbFirst = Layout<4, true, Sampling::Pair, Out::Packed, Pack::CbYCr, Rule::HalfSums>;
using C3Bgr422CbFirstLimited = Layout<3, true, Sampling::Pair, Out::Packed, Pack::CbYCr, Rule::Limited>;
using C4Bgr422CbFirstLimited = Layout<4, true, Sampling::Pair, Out::Packed, Pack::CbYCr, Rule::Limited>;
using C3Rgb422CbFirst = Layout<3, false, Sampling::Pair, Out::Packed, Pack::CbYCr, Rule::HalfSums>;
using C3Rgb422CbFirstGamma = Layout<3, false, Sampling::Pair, Out::Packed, Pack::CbYCr, Rule::HalfSums, true>;
using C3Bgr420Planes = Layout<3, true, Sampling::Block, Out::Planes>;
using C4Bgr420Planes = Layout<4, true, Sampling::Block, Out::Planes>;
using C4Bgr420PlanesLimited = Layout<4, true, Sampling::Block, Out::Planes, Pack::None, Rule::Limited>;
using C3Bgr420TwoPlane = Layout<3, true, Sampling::Block, Out::TwoPlane>;
using C4Bgr420TwoPlane = Layout<4, true, Sampling::Block, Out::TwoPlane>;
using C3Rgb420Planes = Layout<3, false, Sampling::Block, Out::Planes>;
using C4Rgb420Planes = Layout<4, false, Sampling::Block, Out::Planes>;
using C3Rgb420TwoPlane = Layout<3, false, Sampling::Block, Out::TwoPlane>;
using C4Rgb420TwoPlane = Layout<4, false, Sampling::Block, Out::TwoPlane>;
using C3Bgr411Planes = Layout<3, true, Sampling::Quad, Out::Planes>;
using C4Bgr411Planes = Layout<4, true, Sampling::Quad, Out::Planes>;
using C3RgbAnalog422Packed = Layout<3, false, Sampling::Pair, Out::Packed, Pack::YCbCr, Rule::Analog>;
using C3RgbAnalog422Planes = Layout<3, false, Sampling::Pair, Out::Planes, Pack::None, Rule::Analog>;
using P3RgbAnalog422Planes = Layout<0, false, Sampling::Pair, Out::Planes, Pack::None, Rule::Analog>;
using C3RgbAnalog420Planes = Layout<3, false, Sampling::Block, Out::Planes, Pack::None, Rule::Analog>;
using C4BgrAnalog420Planes = Layout<4, true, Sampling::Block, Out::Planes, Pack::None, Rule::Analog>;
using P3RgbAnalog420Planes = Layout<0, false, Sampling::Block, Out::Planes, Pack::None, Rule::Analog>;

// Every member's layout has SIMD row functions.
#define TPX_ENC_SIMD_LAYOUTS(X)                                                                         \
    X(C3Bgr422Packed) X(C4Bgr422Packed) X(C3Bgr422Planes) X(C4Bgr422Planes) X(C3Rgb422Packed)           \
    X(C3Rgb422PackedCr) X(P3Rgb422Packed) X(P3Rgb422PackedCr) X(C3Rgb422Planes) X(C4Bgr422CbFirst)      \
    X(C3Bgr422CbFirstLimited) X(C4Bgr422CbFirstLimited) X(C3Rgb422CbFirst) X(C3Rgb422CbFirstGamma)      \
    X(C3Bgr420Planes) X(C4Bgr420Planes) X(C4Bgr420PlanesLimited) X(C3Bgr420TwoPlane) X(C4Bgr420TwoPlane) \
    X(C3Rgb420Planes) X(C4Rgb420Planes) X(C3Rgb420TwoPlane) X(C4Rgb420TwoPlane) X(C3Bgr411Planes)       \
    X(C4Bgr411Planes) X(C3RgbAnalog422Packed) X(C3RgbAnalog422Planes) X(P3RgbAnalog422Planes)             \
    X(C3RgbAnalog420Planes) X(C4BgrAnalog420Planes) X(P3RgbAnalog420Planes)

#define TPX_ENC_DECLARE_ROWS(L)                \
    template <>                                \
    int rowAvx2<L>(const Rows&, const Arith&); \
    template <>                                \
    int rowAvx512<L>(const Rows&, const Arith&);
TPX_ENC_SIMD_LAYOUTS(TPX_ENC_DECLARE_ROWS)
#undef TPX_ENC_DECLARE_ROWS

// The row function of the active tier (null for the scalar tier).
template <class L>
RowFn simdRow() {
    return pick(TierKernels<RowFn>{nullptr, TPX_X86(&rowAvx2<L>), TPX_X86(&rowAvx512<L>)});
}

}  // namespace tpx::yuv::enc
