// Kernels of the RGB <-> YCbCr 4:4:4 conversions.
//
// Every member is one instantiation of a row template over the source and
// destination layouts (and, for the decoders, channel order, coefficient set
// and which pixels take the block arithmetic). A row is described by three
// channel pointers on each side: the three planes of a planar image, or the
// same pointer three times for an interleaved one.
#pragma once

#include "frame/check.hpp"
#include "frame/cpu.hpp"
#include "tpxcc.h"
#include "yuv/ycbcr_math.hpp"

#include <cstddef>
#include <cstdint>

namespace tpx::yuv444 {

enum class Pack {
    P3,   // three planes
    C3,   // three interleaved channels
    C4,   // four interleaved channels, the fourth written with the alpha value
    AC4,  // four interleaved channels, the fourth neither read nor written
};
template <Pack P>
constexpr int kPixelBytes = P == Pack::P3 ? 1 : P == Pack::C3 ? 3 : 4;

struct Row {
    const uint8_t* src[3];
    uint8_t* dst[3];
    int width;
    uint8_t alpha;
};

// The channel pointers of an interleaved image: the same pointer three times.
struct SrcPointers {
    const uint8_t* p[3];
};
struct DstPointers {
    uint8_t* p[3];
};
inline SrcPointers interleaved(const uint8_t* p) { return {{p, p, p}}; }
inline DstPointers interleaved(uint8_t* p) { return {{p, p, p}}; }

// A SIMD row function converts whole vector blocks from the row start and
// returns how many pixels it did; the scalar row function then finishes the
// row from that pixel.
using SimdRow = int (*)(const Row&);
using ScalarRow = void (*)(const Row&, int from);

template <Pack P>
inline uint8_t load(const Row& r, int c, int x) {
    if constexpr (P == Pack::P3) return r.src[c][x];
    else return r.src[0][std::ptrdiff_t(x) * kPixelBytes<P> + c];
}
template <Pack P>
inline void store(const Row& r, int c, int x, uint8_t v) {
    if constexpr (P == Pack::P3) r.dst[c][x] = v;
    else r.dst[0][std::ptrdiff_t(x) * kPixelBytes<P> + c] = v;
}

// RGB to YCbCr. With Block > 0 the pixels of whole Block-pixel blocks from the
// row start take the 16-bit block arithmetic, the rest of the row the 32-bit
// reference; with Block == 0 every pixel takes the reference.
template <Pack S, Pack D, int Block>
void encodeRow(const Row& r, int from) {
    const int blockEnd = Block > 0 ? r.width - r.width % Block : 0;
    for (int x = from; x < r.width; ++x) {
        const int R = load<S>(r, 0, x), G = load<S>(r, 1, x), B = load<S>(r, 2, x);
        const bool block = x < blockEnd;
        store<D>(r, 0, x, block ? yuv::encBlockY(R, G, B) : yuv::encY(R, G, B));
        store<D>(r, 1, x, block ? yuv::encBlockCb(R, G, B) : yuv::encCb(R, G, B));
        store<D>(r, 2, x, block ? yuv::encBlockCr(R, G, B) : yuv::encCr(R, G, B));
    }
}

// YCbCr to RGB (BGR with Bgr: blue at the lowest address). The pixels of
// whole Block-pixel blocks from the row start take the 16-bit block arithmetic
// with the BT.601 or BT.709 coefficients, the rest the BT.601 32-bit reference;
// Block == 1 sends every pixel through the block arithmetic.
template <Pack S, Pack D, bool Bgr, int Block, bool Bt709>
void decodeRow(const Row& r, int from) {
    const int blockEnd = r.width - r.width % Block;
    const yuv::BlockCoeffs& k = Bt709 ? yuv::kBlock709Csc : yuv::kBlock601;
    for (int x = from; x < r.width; ++x) {
        const int Y = load<S>(r, 0, x), Cb = load<S>(r, 1, x), Cr = load<S>(r, 2, x);
        const yuv::Rgb p = x < blockEnd ? yuv::decBlock(Y, Cb, Cr, k) : yuv::decRef601(Y, Cb, Cr);
        store<D>(r, Bgr ? 2 : 0, x, p.r);
        store<D>(r, 1, x, p.g);
        store<D>(r, Bgr ? 0 : 2, x, p.b);
        if constexpr (D == Pack::C4) store<D>(r, 3, x, r.alpha);
    }
}

// Walks the ROI row by row (any step, also zero or negative) through the SIMD
// row function when there is one, then the scalar one.
void convert(const uint8_t* const src[3], int srcStep, uint8_t* const dst[3], int dstStep, TpxSize roi,
             uint8_t alpha, SimdRow simd, ScalarRow scalar);

// The entry of the encoders and the YCbCrToRGB members: null pointers (or
// arrays), size, then the entries of each plane-pointer array; then the work.
inline TpxStatus planeEntries(const uint8_t*) { return tpxStatusOk; }
inline TpxStatus planeEntries(const uint8_t* const* p) { return check::planes(p, 3); }
inline TpxStatus planeEntries(uint8_t* const* p) { return check::planes(p, 3); }
inline SrcPointers channels(const uint8_t* p) { return interleaved(p); }
inline SrcPointers channels(const uint8_t* const* p) { return {{p[0], p[1], p[2]}}; }
inline DstPointers channels(uint8_t* p) { return interleaved(p); }
inline DstPointers channels(uint8_t* const* p) { return {{p[0], p[1], p[2]}}; }

template <class S, class D>
TpxStatus checkedConvert(S src, int srcStep, D dst, int dstStep, TpxSize roi, uint8_t alpha, SimdRow simd,
                         ScalarRow scalar) {
    TPX_CHECK(check::notNull(src, dst));
    TPX_CHECK(check::size(roi));
    TPX_CHECK(planeEntries(src));
    TPX_CHECK(planeEntries(dst));
    convert(channels(src).p, srcStep, channels(dst).p, dstStep, roi, alpha, simd, scalar);
    return tpxStatusOk;
}

// The SIMD row functions, one set per instruction-set tier; planar to 4-byte
// pixels only at AVX2 (see TPX_YUV444_AVX2_ROW).
#define TPX_YUV444_SIMD_ROWS(X)                                                                       \
    X(encodeC3Block) X(encodeC3P3) X(encodeAC4P3) X(encodeP3) X(encodeAC4)                            \
    X(decodeC3) X(decodeP3) X(decodeP3C3Rgb) X(decodeP3C3Bgr) X(decode709P3C3Bgr) X(decodeAC4)        \
    X(analogEncodeC3) X(analogEncodeAC4) X(analogEncodeC3P3) X(analogEncodeAC4P3) X(analogEncodeP3)    \
    X(analogDecodeC3)                                                                                 \
    X(analogDecodeAC4) X(analogDecodeC3C4) X(analogDecodeP3C3) X(analogDecodeP3)
#define TPX_YUV444_AVX2_ROWS(X) X(decodeP3C4Rgb) X(decodeP3C4Bgr) X(decode709P3C4Bgr)
#define TPX_YUV444_DECLARE(name) int name(const Row&);
#if TPX_HAVE_X86
namespace avx2 { TPX_YUV444_SIMD_ROWS(TPX_YUV444_DECLARE) TPX_YUV444_AVX2_ROWS(TPX_YUV444_DECLARE) }
namespace avx512 { TPX_YUV444_SIMD_ROWS(TPX_YUV444_DECLARE) }
#endif
#undef TPX_YUV444_DECLARE
#if TPX_HAVE_X86
namespace avx512vbmi {
int encodeC3Block(const Row&);
int decodeC3(const Row&);
}  // namespace avx512vbmi
#endif

// The row function of every tier for one SIMD row name, and the AVX2 row for
// both SIMD tiers (planar to 4-byte pixels, where
// the 256-bit row measured faster on 1920x1080 images: the work is bound by
// memory and the 512-bit row adds a permutation per channel).
#define TPX_YUV444_SIMD(name) \
    ::tpx::pick(::tpx::TierKernels<::tpx::yuv444::SimdRow>{nullptr, TPX_X86(avx2::name), TPX_X86(avx512::name)})
#define TPX_YUV444_AVX2_ROW(name) \
    ::tpx::pick(::tpx::TierKernels<::tpx::yuv444::SimdRow>{nullptr, TPX_X86(avx2::name), TPX_X86(avx2::name)})
// The AVX-512 row with the byte permutes where the processor has them (see
// ycbcr444_avx512vbmi.cpp), else `otherwise`.
#define TPX_YUV444_VBMI(name, otherwise) \
    (::tpx::activeAvx512Vbmi() ? TPX_X86(avx512vbmi::name) : otherwise)

}  // namespace tpx::yuv444
