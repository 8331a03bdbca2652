/*
 * tpxcc: colour-conversion primitives for images held in memory.
 *
 * Every image primitive is a free function that converts one region of
 * interest (ROI) and returns a TpxStatus: 0 on success, a negative error
 * (nothing written) or a positive warning. Steps are signed byte counts
 * between row starts, whatever the element type. The library keeps no state,
 * allocates nothing and may be called from any number of threads at once.
 *
 * Valid C99 and C++.
 */
#ifndef TPXCC_H
#define TPXCC_H

#include <stdint.h>

#if defined(_WIN32)
#  if defined(TPXCC_BUILDING)
#    define TPXCC_API __declspec(dllexport)
#  else
#    define TPXCC_API
#  endif
#elif defined(__GNUC__)
#  define TPXCC_API __attribute__((visibility("default")))
#else
#  define TPXCC_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Element types ---------------------------------------------------- */
typedef uint8_t  Tpx8u;
typedef int8_t   Tpx8s;
typedef uint16_t Tpx16u;
typedef int16_t  Tpx16s;
typedef uint32_t Tpx32u;
typedef int32_t  Tpx32s;
typedef int64_t  Tpx64s;
typedef float    Tpx32f;
typedef double   Tpx64f;

/* ---- Status codes ------------------------------------------------------ */
typedef int32_t TpxStatus;
enum {
    tpxStatusOk            = 0,
    tpxStatusNoOperation   = 1,    /* warning: nothing done */
    tpxStatusOddSize       = 35,   /* warning: ROI not whole subsampling blocks */
    tpxStatusBadArg        = -5,
    tpxStatusBadSize       = -6,
    tpxStatusNullPtr       = -8,
    tpxStatusBadStep       = -16,
    tpxStatusBadChannels   = -47,
    tpxStatusBadRange      = -49,
    tpxStatusBadLevels     = -54,
    tpxStatusBadNoise      = -55,
    tpxStatusBadDitherType = -224,
    tpxStatusSizeTooLarge  = -232
};

/* ---- Geometry ---------------------------------------------------------- */
typedef struct TpxSize  { int32_t width; int32_t height; } TpxSize;
typedef struct TpxSizeL { int64_t width; int64_t height; } TpxSizeL;
typedef struct TpxRect  { int32_t x; int32_t y; int32_t width; int32_t height; } TpxRect;
typedef struct TpxRectL { int64_t x; int64_t y; int64_t width; int64_t height; } TpxRectL;

/* Colour of image pixel (0,0) of a Bayer mosaic; the pattern has period 2. */
typedef enum TpxBayerGrid {
    tpxBayerBGGR = 0,
    tpxBayerRGGB = 1,
    tpxBayerGBRG = 2,
    tpxBayerGRBG = 3
} TpxBayerGrid;

/* ---- Version ----------------------------------------------------------- */
typedef struct TpxLibraryVersion {
    int32_t     major;
    int32_t     minor;
    int32_t     update;
    int32_t     build;
    char        targetTag[4];
    const char* name;
    const char* versionText;
    const char* buildDate;
} TpxLibraryVersion;

/* The constant version record; never null, never modified, same pointer on every call. */
TPXCC_API const TpxLibraryVersion* tpxccGetLibVersion(void);

/* ---- RGB and YCbCr 4:4:4 (BT.601 studio range; BT.709 709CSC decoders) --- */
/* Encoders: Y in 16..235, Cb and Cr in 16..240. Decoders clamp to 0..255. C4
 * destinations get `alpha` in every fourth byte; the fourth byte of an AC4
 * image is neither read nor written. Planar images share one step. */
TPXCC_API TpxStatus tpxiRGBToYCbCr_8u_C3R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToYCbCr_8u_AC4R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToYCbCr_8u_P3R(const Tpx8u* const pSrc[3], int srcStep, Tpx8u* const pDst[3], int dstStep,
                                          TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToYCbCr_8u_C3P3R(const Tpx8u* pSrc, int srcStep, Tpx8u* const pDst[3], int dstStep,
                                            TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToYCbCr_8u_AC4P3R(const Tpx8u* pSrc, int srcStep, Tpx8u* const pDst[3], int dstStep,
                                             TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCbCrToRGB_8u_C3R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCbCrToRGB_8u_AC4R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCbCrToRGB_8u_P3R(const Tpx8u* const pSrc[3], int srcStep, Tpx8u* const pDst[3], int dstStep,
                                          TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCbCrToRGB_8u_P3C3R(const Tpx8u* const pSrc[3], int srcStep, Tpx8u* pDst, int dstStep,
                                            TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCbCrToRGB_8u_P3C4R(const Tpx8u* const pSrc[3], int srcStep, Tpx8u* pDst, int dstStep,
                                            TpxSize roiSize, Tpx8u alpha);
TPXCC_API TpxStatus tpxiYCbCrToBGR_8u_P3C3R(const Tpx8u* const pSrc[3], int srcStep, Tpx8u* pDst, int dstStep,
                                            TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCbCrToBGR_8u_P3C4R(const Tpx8u* const pSrc[3], int srcStep, Tpx8u* pDst, int dstStep,
                                            TpxSize roiSize, Tpx8u alpha);
TPXCC_API TpxStatus tpxiYCbCrToBGR_709CSC_8u_P3C3R(const Tpx8u* const pSrc[3], int srcStep, Tpx8u* pDst, int dstStep,
                                                   TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCbCrToBGR_709CSC_8u_P3C4R(const Tpx8u* const pSrc[3], int srcStep, Tpx8u* pDst, int dstStep,
                                                   TpxSize roiSize, Tpx8u alpha);
/* end of RGB and YCbCr 4:4:4 */

/* ---- RGB to subsampled YCbCr (4:2:2, 4:2:0, 4:1:1) ---------------------- */
/*
 * Studio-range encoders with chroma computed once per block from the sums of
 * the block's R, G and B. Packed 4:2:2 byte orders: YCbCr422 = Y0 Cb Y1 Cr,
 * YCrCb422 = Y0 Cr Y1 Cb, CbYCr422 = Cb Y0 Cr Y1. Planar destinations take
 * three plane pointers and three steps (Y, then the chroma planes in the order
 * of the name); two-plane (P2) destinations a luma plane and an interleaved
 * Cb,Cr plane. Checks: null pointers (-8), the size minimum (-6; 4:2:0 needs
 * 2 x 2, packed 4:2:2 a width of 2), null plane pointers (-8). 4:2:0 returns
 * +35 for an odd width or height (the last column or row is not written),
 * 4:1:1 for a width that is not a multiple of 4 (the last width % 4 pixels
 * are neither read nor written); an odd last pixel of 4:2:2 is skipped.
 * 709HDTV members are full range and limit every byte to 1..254.
 */
/* 4:2:2 */
TPXCC_API TpxStatus tpxiBGRToYCbCr422_8u_C3C2R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst,
    int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiBGRToYCbCr422_8u_AC4C2R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst,
    int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiBGRToYCbCr422_8u_C3P3R(const Tpx8u* pSrc, int srcStep, Tpx8u* const pDst[3],
    const int dstStep[3], TpxSize roiSize);
TPXCC_API TpxStatus tpxiBGRToYCbCr422_8u_AC4P3R(const Tpx8u* pSrc, int srcStep,
    Tpx8u* const pDst[3], const int dstStep[3], TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToYCbCr422_8u_C3C2R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst,
    int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToYCbCr422_8u_P3C2R(const Tpx8u* const pSrc[3], int srcStep, Tpx8u* pDst,
    int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToYCbCr422_8u_C3P3R(const Tpx8u* pSrc, int srcStep, Tpx8u* const pDst[3],
    const int dstStep[3], TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToYCrCb422_8u_C3C2R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst,
    int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToYCrCb422_8u_P3C2R(const Tpx8u* const pSrc[3], int srcStep, Tpx8u* pDst,
    int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiBGRToCbYCr422_8u_AC4C2R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst,
    int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiBGRToCbYCr422_709HDTV_8u_C3C2R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst,
    int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiBGRToCbYCr422_709HDTV_8u_AC4C2R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst,
    int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToCbYCr422_8u_C3C2R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst,
    int dstStep, TpxSize roiSize);
/* R, G and B first pass through the 8-bit forward gamma curve
   (4.5 x below 0.018, 1.099 x^0.45 - 0.099 above). */
TPXCC_API TpxStatus tpxiRGBToCbYCr422Gamma_8u_C3C2R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst,
    int dstStep, TpxSize roiSize);

/* 4:2:0 */
TPXCC_API TpxStatus tpxiBGRToYCbCr420_8u_C3P3R(const Tpx8u* pSrc, int srcStep, Tpx8u* const pDst[3],
    const int dstStep[3], TpxSize roiSize);
TPXCC_API TpxStatus tpxiBGRToYCbCr420_8u_AC4P3R(const Tpx8u* pSrc, int srcStep,
    Tpx8u* const pDst[3], const int dstStep[3], TpxSize roiSize);
TPXCC_API TpxStatus tpxiBGRToYCbCr420_8u_C3P2R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDstY,
    int dstYStep, Tpx8u* pDstCbCr, int dstCbCrStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiBGRToYCbCr420_8u_AC4P2R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDstY,
    int dstYStep, Tpx8u* pDstCbCr, int dstCbCrStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiBGRToYCbCr420_709CSC_8u_C3P3R(const Tpx8u* pSrc, int srcStep,
    Tpx8u* const pDst[3], const int dstStep[3], TpxSize roiSize);
TPXCC_API TpxStatus tpxiBGRToYCbCr420_709CSC_8u_AC4P3R(const Tpx8u* pSrc, int srcStep,
    Tpx8u* const pDst[3], const int dstStep[3], TpxSize roiSize);
TPXCC_API TpxStatus tpxiBGRToYCbCr420_709CSC_8u_C3P2R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDstY,
    int dstYStep, Tpx8u* pDstCbCr, int dstCbCrStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiBGRToYCbCr420_709CSC_8u_AC4P2R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDstY,
    int dstYStep, Tpx8u* pDstCbCr, int dstCbCrStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiBGRToYCbCr420_709HDTV_8u_AC4P3R(const Tpx8u* pSrc, int srcStep,
    Tpx8u* const pDst[3], const int dstStep[3], TpxSize roiSize);
TPXCC_API TpxStatus tpxiBGRToYCrCb420_8u_C3P3R(const Tpx8u* pSrc, int srcStep, Tpx8u* const pDst[3],
    const int dstStep[3], TpxSize roiSize);
TPXCC_API TpxStatus tpxiBGRToYCrCb420_8u_AC4P3R(const Tpx8u* pSrc, int srcStep,
    Tpx8u* const pDst[3], const int dstStep[3], TpxSize roiSize);
TPXCC_API TpxStatus tpxiBGRToYCrCb420_709CSC_8u_C3P3R(const Tpx8u* pSrc, int srcStep,
    Tpx8u* const pDst[3], const int dstStep[3], TpxSize roiSize);
TPXCC_API TpxStatus tpxiBGRToYCrCb420_709CSC_8u_AC4P3R(const Tpx8u* pSrc, int srcStep,
    Tpx8u* const pDst[3], const int dstStep[3], TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToYCbCr420_8u_C3P3R(const Tpx8u* pSrc, int srcStep, Tpx8u* const pDst[3],
    const int dstStep[3], TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToYCbCr420_8u_C3P2R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDstY,
    int dstYStep, Tpx8u* pDstCbCr, int dstCbCrStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToYCbCr420_8u_C4P2R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDstY,
    int dstYStep, Tpx8u* pDstCbCr, int dstCbCrStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToYCrCb420_8u_AC4P3R(const Tpx8u* pSrc, int srcStep,
    Tpx8u* const pDst[3], const int dstStep[3], TpxSize roiSize);

/* 4:1:1 */
TPXCC_API TpxStatus tpxiBGRToYCbCr411_8u_C3P3R(const Tpx8u* pSrc, int srcStep, Tpx8u* const pDst[3],
    const int dstStep[3], TpxSize roiSize);
TPXCC_API TpxStatus tpxiBGRToYCbCr411_8u_AC4P3R(const Tpx8u* pSrc, int srcStep,
    Tpx8u* const pDst[3], const int dstStep[3], TpxSize roiSize);
/* end of RGB to subsampled YCbCr */

/* ---- Subsampled YCbCr to RGB -------------------------------------------- */
/* Decoders from studio-range YCbCr with subsampled chroma to RGB/BGR. Chroma
 * is replicated over its block (the Filter member interpolates it). 4:2:0
 * members convert whole 2x2 blocks and return tpxStatusOddSize (+35) when the
 * width or height is odd, leaving the last column/row unwritten; 4:2:2 and
 * 4:1:1 members convert whole pairs/quads of each row and return 0. C4
 * members write `alpha` into the fourth byte of every pixel they write. */
TPXCC_API TpxStatus tpxiYCbCr422ToRGB_8u_C2C3R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCbCr422ToRGB_8u_C2C4R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize, Tpx8u alpha);
TPXCC_API TpxStatus tpxiYCbCr422ToBGR_8u_C2C3R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCbCr422ToBGR_8u_C2C4R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize, Tpx8u alpha);
TPXCC_API TpxStatus tpxiYCbCr422ToRGB_8u_C2P3R(const Tpx8u* pSrc, int srcStep, Tpx8u* const pDst[3], int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCrCb422ToRGB_8u_C2C3R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCrCb422ToRGB_8u_C2C4R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize, Tpx8u alpha);
TPXCC_API TpxStatus tpxiYCrCb422ToBGR_8u_C2C3R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCrCb422ToBGR_8u_C2C4R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize, Tpx8u alpha);
TPXCC_API TpxStatus tpxiYCrCb422ToRGB_8u_C2P3R(const Tpx8u* pSrc, int srcStep, Tpx8u* const pDst[3], int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiCbYCr422ToRGB_8u_C2C3R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiCbYCr422ToBGR_8u_C2C4R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize, Tpx8u alpha);
TPXCC_API TpxStatus tpxiCbYCr422ToBGR_709HDTV_8u_C2C3R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiCbYCr422ToBGR_709HDTV_8u_C2C4R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize, Tpx8u alpha);
TPXCC_API TpxStatus tpxiYCbCr422ToRGB_8u_P3C3R(const Tpx8u* const pSrc[3], const int srcStep[3], Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCbCr422ToBGR_8u_P3C3R(const Tpx8u* const pSrc[3], const int srcStep[3], Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCbCr420ToRGB_8u_P3C3R(const Tpx8u* const pSrc[3], const int srcStep[3], Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCbCr420ToBGR_8u_P3C3R(const Tpx8u* const pSrc[3], const int srcStep[3], Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCbCr420ToBGR_8u_P3C4R(const Tpx8u* const pSrc[3], const int srcStep[3], Tpx8u* pDst, int dstStep, TpxSize roiSize, Tpx8u alpha);
TPXCC_API TpxStatus tpxiYCbCr420ToBGR_709CSC_8u_P3C3R(const Tpx8u* const pSrc[3], const int srcStep[3], Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCbCr420ToBGR_709HDTV_8u_P3C4R(const Tpx8u* const pSrc[3], const int srcStep[3], Tpx8u* pDst, int dstStep, TpxSize roiSize, Tpx8u alpha);
/* Planes and steps in the order Y, Cr, Cb. */
TPXCC_API TpxStatus tpxiYCrCb420ToRGB_8u_P3C4R(const Tpx8u* const pSrc[3], const int srcStep[3], Tpx8u* pDst, int dstStep, TpxSize roiSize, Tpx8u alpha);
TPXCC_API TpxStatus tpxiYCrCb420ToBGR_Filter_8u_P3C4R(const Tpx8u* const pSrc[3], const int srcStep[3], Tpx8u* pDst, int dstStep, TpxSize roiSize, Tpx8u alpha);
/* Two planes: luma, then interleaved chroma pairs (Cb, Cr or Cr, Cb). */
TPXCC_API TpxStatus tpxiYCbCr420ToRGB_8u_P2C3R(const Tpx8u* pSrcY, int srcYStep, const Tpx8u* pSrcCbCr, int srcCbCrStep, Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCbCr420ToRGB_8u_P2C4R(const Tpx8u* pSrcY, int srcYStep, const Tpx8u* pSrcCbCr, int srcCbCrStep, Tpx8u* pDst, int dstStep, TpxSize roiSize, Tpx8u alpha);
TPXCC_API TpxStatus tpxiYCbCr420ToBGR_8u_P2C3R(const Tpx8u* pSrcY, int srcYStep, const Tpx8u* pSrcCbCr, int srcCbCrStep, Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCbCr420ToBGR_8u_P2C4R(const Tpx8u* pSrcY, int srcYStep, const Tpx8u* pSrcCbCr, int srcCbCrStep, Tpx8u* pDst, int dstStep, TpxSize roiSize, Tpx8u alpha);
TPXCC_API TpxStatus tpxiYCrCb420ToRGB_8u_P2C3R(const Tpx8u* pSrcY, int srcYStep, const Tpx8u* pSrcCrCb, int srcCrCbStep, Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCrCb420ToRGB_8u_P2C4R(const Tpx8u* pSrcY, int srcYStep, const Tpx8u* pSrcCrCb, int srcCrCbStep, Tpx8u* pDst, int dstStep, TpxSize roiSize, Tpx8u alpha);
TPXCC_API TpxStatus tpxiYCrCb420ToBGR_8u_P2C3R(const Tpx8u* pSrcY, int srcYStep, const Tpx8u* pSrcCrCb, int srcCrCbStep, Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCrCb420ToBGR_8u_P2C4R(const Tpx8u* pSrcY, int srcYStep, const Tpx8u* pSrcCrCb, int srcCrCbStep, Tpx8u* pDst, int dstStep, TpxSize roiSize, Tpx8u alpha);
TPXCC_API TpxStatus tpxiYCbCr411ToBGR_8u_P3C3R(const Tpx8u* const pSrc[3], const int srcStep[3], Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCbCr411ToBGR_8u_P3C4R(const Tpx8u* const pSrc[3], const int srcStep[3], Tpx8u* pDst, int dstStep, TpxSize roiSize, Tpx8u alpha);
/* end of subsampled YCbCr to RGB */

/* ---- Gray conversions ---------------------------------------------------- */
/* Gray from colour: per pixel (w0*c0 + w1*c1) + w2*c2 over the channels R, G, B
 * of a C3 or AC4 source (alpha never read). RGBToGray uses the weights 0.299,
 * 0.587, 0.114; ColorToGray the caller's three weights (null selects the same
 * fixed weights, except in the 64f members, which always read them).
 * 8u: fixed point at scale 2^15 with q = trunc(w*32768 + 0.5); whole groups of
 *   4 (C3) or 8 (AC4) pixels use sum(floor(c*q/256)) + 64 saturating at 65535,
 *   then >> 7 as a signed 16-bit value clamped to 0..255 (a sum of 32768 or more
 *   gives 0); the rest of the row (c0*q0 + c1*q1 + c2*q2 + 16384) >> 15, low 8 bits.
 * 16u: single precision rounded to nearest even, low 16 bits.
 * 16s: channels + 32768, single precision rounded to nearest even, minus 32768;
 *   saturated in whole groups of 4 pixels, low 16 bits in the rest of the row.
 * 32f single, 64f double precision, no clamping.
 * Steps of 16-bit, 32f and 64f images are taken as whole element counts.
 * Checks: null pointer -8, width or height < 1 -6; steps are not checked. */
TPXCC_API TpxStatus tpxiRGBToGray_8u_C3C1R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToGray_8u_AC4C1R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToGray_16u_C3C1R(const Tpx16u* pSrc, int srcStep, Tpx16u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToGray_16u_AC4C1R(const Tpx16u* pSrc, int srcStep, Tpx16u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToGray_16s_C3C1R(const Tpx16s* pSrc, int srcStep, Tpx16s* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToGray_16s_AC4C1R(const Tpx16s* pSrc, int srcStep, Tpx16s* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToGray_32f_C3C1R(const Tpx32f* pSrc, int srcStep, Tpx32f* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToGray_32f_AC4C1R(const Tpx32f* pSrc, int srcStep, Tpx32f* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiColorToGray_8u_C3C1R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize, const Tpx32f coeffs[3]);
TPXCC_API TpxStatus tpxiColorToGray_8u_AC4C1R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize, const Tpx32f coeffs[3]);
TPXCC_API TpxStatus tpxiColorToGray_16u_C3C1R(const Tpx16u* pSrc, int srcStep, Tpx16u* pDst, int dstStep, TpxSize roiSize, const Tpx32f coeffs[3]);
TPXCC_API TpxStatus tpxiColorToGray_16u_AC4C1R(const Tpx16u* pSrc, int srcStep, Tpx16u* pDst, int dstStep, TpxSize roiSize, const Tpx32f coeffs[3]);
TPXCC_API TpxStatus tpxiColorToGray_16s_C3C1R(const Tpx16s* pSrc, int srcStep, Tpx16s* pDst, int dstStep, TpxSize roiSize, const Tpx32f coeffs[3]);
TPXCC_API TpxStatus tpxiColorToGray_16s_AC4C1R(const Tpx16s* pSrc, int srcStep, Tpx16s* pDst, int dstStep, TpxSize roiSize, const Tpx32f coeffs[3]);
TPXCC_API TpxStatus tpxiColorToGray_32f_C3C1R(const Tpx32f* pSrc, int srcStep, Tpx32f* pDst, int dstStep, TpxSize roiSize, const Tpx32f coeffs[3]);
TPXCC_API TpxStatus tpxiColorToGray_32f_AC4C1R(const Tpx32f* pSrc, int srcStep, Tpx32f* pDst, int dstStep, TpxSize roiSize, const Tpx32f coeffs[3]);
TPXCC_API TpxStatus tpxiColorToGray_64f_C3C1R(const Tpx64f* pSrc, int srcStep, Tpx64f* pDst, int dstStep, TpxSize roiSize, const Tpx64f coeffs[3]);
TPXCC_API TpxStatus tpxiColorToGray_64f_AC4C1R(const Tpx64f* pSrc, int srcStep, Tpx64f* pDst, int dstStep, TpxSize roiSize, const Tpx64f coeffs[3]);
/* Gray to colour: R = G = B = the gray value, bit for bit; C4 members write
 * aval into the fourth channel. */
TPXCC_API TpxStatus tpxiGrayToRGB_8u_C1C3R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiGrayToRGB_16u_C1C3R(const Tpx16u* pSrc, int srcStep, Tpx16u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiGrayToRGB_32f_C1C3R(const Tpx32f* pSrc, int srcStep, Tpx32f* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiGrayToRGB_8u_C1C4R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize, Tpx8u aval);
TPXCC_API TpxStatus tpxiGrayToRGB_16u_C1C4R(const Tpx16u* pSrc, int srcStep, Tpx16u* pDst, int dstStep, TpxSize roiSize, Tpx16u aval);
TPXCC_API TpxStatus tpxiGrayToRGB_32f_C1C4R(const Tpx32f* pSrc, int srcStep, Tpx32f* pDst, int dstStep, TpxSize roiSize, Tpx32f aval);
/* end of gray conversions */

/* ---- Bayer demosaicing ----------------------------------------------------- */
/* Bilinear demosaic of a Bayer mosaic into R,G,B pixels, with green at red and
 * blue sites taken along the direction of lesser change. pSrc points at pixel
 * (0,0) of the whole srcSize mosaic; srcRoi selects the pixels produced (cut
 * at the right and bottom edges of the mosaic) and pDst at the destination
 * pixel of (srcRoi.x, srcRoi.y). The grid names the colour of image pixel
 * (0,0). interpolation is accepted and ignored. */
TPXCC_API TpxStatus tpxiCFAToRGB_8u_C1C3R(const Tpx8u* pSrc, TpxRect srcRoi, TpxSize srcSize, int srcStep,
                                          Tpx8u* pDst, int dstStep, TpxBayerGrid grid, int interpolation);
TPXCC_API TpxStatus tpxiCFAToRGB_16u_C1C3R(const Tpx16u* pSrc, TpxRect srcRoi, TpxSize srcSize, int srcStep,
                                           Tpx16u* pDst, int dstStep, TpxBayerGrid grid, int interpolation);
/* end of Bayer demosaicing */

/* ---- High-quality demosaicing (VNG, AHD) ----------------------------------- */
/* pSrc points at pixel (0,0) of the whole W x H mosaic; pDst at the pixel that
   corresponds to (srcRoi.x, srcRoi.y). The rectangle is trimmed at the right and
   bottom to the image; samples beyond the image edge are mirrored about the
   edge sample. VNG writes B, G, R, A with channel c = saturate(round-half-even(
   scale[c] * value)), A's value being the full scale of the type. */
TPXCC_API TpxStatus tpxiCFAToBGRA_VNG_8u_C1C4R(const uint8_t* pSrc, TpxRect srcRoi, TpxSize srcSize, int srcStep,
                                                const Tpx32f scale[4], uint8_t* pDst, int dstStep, TpxBayerGrid grid);
TPXCC_API TpxStatus tpxiCFAToBGRA_VNG_16u_C1C4R(const uint16_t* pSrc, TpxRect srcRoi, TpxSize srcSize, int srcStep,
                                                 const Tpx32f scale[4], uint16_t* pDst, int dstStep, TpxBayerGrid grid);
TPXCC_API TpxStatus tpxiCFAToBGRA_VNG_8u_C1C4R_L(const uint8_t* pSrc, TpxRectL srcRoi, TpxSizeL srcSize,
                                                  int64_t srcStep, const Tpx32f scale[4], uint8_t* pDst,
                                                  int64_t dstStep, TpxBayerGrid grid);
TPXCC_API TpxStatus tpxiCFAToBGRA_VNG_16u_C1C4R_L(const uint16_t* pSrc, TpxRectL srcRoi, TpxSizeL srcSize,
                                                   int64_t srcStep, const Tpx32f scale[4], uint16_t* pDst,
                                                   int64_t dstStep, TpxBayerGrid grid);
/* AHD writes R, G, B. */
TPXCC_API TpxStatus tpxiDemosaicAHD_8u_C1C3R(const uint8_t* pSrc, TpxRect srcRoi, TpxSize srcSize, int srcStep,
                                              uint8_t* pDst, int dstStep, TpxBayerGrid grid);
TPXCC_API TpxStatus tpxiDemosaicAHD_16u_C1C3R(const uint16_t* pSrc, TpxRect srcRoi, TpxSize srcSize, int srcStep,
                                               uint16_t* pDst, int dstStep, TpxBayerGrid grid);
/* end of high-quality demosaicing */

/* ---- Chroma layout, interlaced and 16:20 conversions ---------------- */
/* Conversions between sampling structures (4:2:2, 4:2:0, 4:1:1), storage
 * layouts (P3: planes {Y, Cb, Cr}, or {Y, Cr, Cb} for YCrCb; P2: luma and one
 * plane of chroma pairs; C2: packed pairs in the byte order of the name) and
 * chroma orders. Luma is copied; chroma is copied, dropped, repeated,
 * reordered or (the Filter members) interpolated. Every pointer is checked
 * first, then the member's minimum size; the ROI is then rounded down to
 * whole chroma blocks without a warning, and steps are used as given. The
 * stripe-position code of the two stripe-filter members is 1 (first
 * stripe), 4 (inner), 16 (last) or 1|4|16 (the whole image); any other code
 * converts nothing. */
TPXCC_API TpxStatus tpxiCbYCr422ToYCbCr411_8u_C2P3R(const Tpx8u* pSrc, int srcStep, Tpx8u* const pDst[3],
    const int dstStep[3], TpxSize roiSize);
TPXCC_API TpxStatus tpxiCbYCr422ToYCbCr420_8u_C2P2R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDstY,
    int dstYStep, Tpx8u* pDstCbCr, int dstCbCrStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiCbYCr422ToYCbCr420_8u_C2P3R(const Tpx8u* pSrc, int srcStep, Tpx8u* const pDst[3],
    const int dstStep[3], TpxSize roiSize);
TPXCC_API TpxStatus tpxiCbYCr422ToYCbCr422_8u_C2P3R(const Tpx8u* pSrc, int srcStep, Tpx8u* const pDst[3],
    const int dstStep[3], TpxSize roiSize);
/* "C2R" without I: a separate source and destination, not in place. */
TPXCC_API TpxStatus tpxiCbYCr422ToYCbCr422_8u_C2R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep,
    TpxSize roiSize);
TPXCC_API TpxStatus tpxiCbYCr422ToYCrCb420_8u_C2P3R(const Tpx8u* pSrc, int srcStep, Tpx8u* const pDst[3],
    const int dstStep[3], TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCbCr411ToYCbCr420_8u_P2P3R(const Tpx8u* pSrcY, int srcYStep, const Tpx8u* pSrcCbCr,
    int srcCbCrStep, Tpx8u* const pDst[3], const int dstStep[3], TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCbCr411ToYCbCr420_8u_P3P2R(const Tpx8u* const pSrc[3], const int srcStep[3],
    Tpx8u* pDstY, int dstYStep, Tpx8u* pDstCbCr, int dstCbCrStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCbCr411ToYCbCr420_8u_P3R(const Tpx8u* const pSrc[3], const int srcStep[3],
    Tpx8u* const pDst[3], const int dstStep[3], TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCbCr411ToYCbCr422_8u_P2C2R(const Tpx8u* pSrcY, int srcYStep, const Tpx8u* pSrcCbCr,
    int srcCbCrStep, Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCbCr411ToYCbCr422_8u_P2P3R(const Tpx8u* pSrcY, int srcYStep, const Tpx8u* pSrcCbCr,
    int srcCbCrStep, Tpx8u* const pDst[3], const int dstStep[3], TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCbCr411ToYCbCr422_8u_P3C2R(const Tpx8u* const pSrc[3], const int srcStep[3],
    Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCbCr411ToYCbCr422_8u_P3R(const Tpx8u* const pSrc[3], const int srcStep[3],
    Tpx8u* const pDst[3], const int dstStep[3], TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCbCr411ToYCrCb420_8u_P2P3R(const Tpx8u* pSrcY, int srcYStep, const Tpx8u* pSrcCbCr,
    int srcCbCrStep, Tpx8u* const pDst[3], const int dstStep[3], TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCbCr411ToYCrCb422_8u_P3C2R(const Tpx8u* const pSrc[3], const int srcStep[3],
    Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCbCr411ToYCrCb422_8u_P3R(const Tpx8u* const pSrc[3], const int srcStep[3],
    Tpx8u* const pDst[3], const int dstStep[3], TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCbCr411_8u_P2P3R(const Tpx8u* pSrcY, int srcYStep, const Tpx8u* pSrcCbCr,
    int srcCbCrStep, Tpx8u* const pDst[3], const int dstStep[3], TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCbCr411_8u_P3P2R(const Tpx8u* const pSrc[3], const int srcStep[3], Tpx8u* pDstY,
    int dstYStep, Tpx8u* pDstCbCr, int dstCbCrStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCbCr420ToCbYCr422_8u_P2C2R(const Tpx8u* pSrcY, int srcYStep, const Tpx8u* pSrcCbCr,
    int srcCbCrStep, Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCbCr420ToYCbCr411_8u_P2P3R(const Tpx8u* pSrcY, int srcYStep, const Tpx8u* pSrcCbCr,
    int srcCbCrStep, Tpx8u* const pDst[3], const int dstStep[3], TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCbCr420ToYCbCr411_8u_P3P2R(const Tpx8u* const pSrc[3], const int srcStep[3],
    Tpx8u* pDstY, int dstYStep, Tpx8u* pDstCbCr, int dstCbCrStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCbCr420ToYCbCr422_8u_P2C2R(const Tpx8u* pSrcY, int srcYStep, const Tpx8u* pSrcCbCr,
    int srcCbCrStep, Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCbCr420ToYCbCr422_8u_P2P3R(const Tpx8u* pSrcY, int srcYStep, const Tpx8u* pSrcCbCr,
    int srcCbCrStep, Tpx8u* const pDst[3], const int dstStep[3], TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCbCr420ToYCbCr422_8u_P3R(const Tpx8u* const pSrc[3], const int srcStep[3],
    Tpx8u* const pDst[3], const int dstStep[3], TpxSize roiSize);
/* The stripe-position code follows the ROI as a plain int. */
TPXCC_API TpxStatus tpxiYCbCr420ToYCbCr422_Filter_8u_P2C2R(const Tpx8u* pSrcY, int srcYStep,
    const Tpx8u* pSrcCbCr, int srcCbCrStep, Tpx8u* pDst, int dstStep, TpxSize roiSize, int layout);
TPXCC_API TpxStatus tpxiYCbCr420ToYCbCr422_Filter_8u_P2P3R(const Tpx8u* pSrcY, int srcYStep,
    const Tpx8u* pSrcCbCr, int srcCbCrStep, Tpx8u* const pDst[3], const int dstStep[3], TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCbCr420ToYCbCr422_Filter_8u_P3R(const Tpx8u* const pSrc[3], const int srcStep[3],
    Tpx8u* const pDst[3], const int dstStep[3], TpxSize roiSize);
/* Destination planes {Y, Cr, Cb} per the name; plane 1 receives the first byte of each source pair. */
TPXCC_API TpxStatus tpxiYCbCr420ToYCrCb420_8u_P2P3R(const Tpx8u* pSrcY, int srcYStep, const Tpx8u* pSrcCbCr,
    int srcCbCrStep, Tpx8u* const pDst[3], const int dstStep[3], TpxSize roiSize);
/* The stripe-position code follows the ROI as a plain int; plane 1 receives the first byte of each source pair. */
TPXCC_API TpxStatus tpxiYCbCr420ToYCrCb420_Filter_8u_P2P3R(const Tpx8u* pSrcY, int srcYStep,
    const Tpx8u* pSrcCbCr, int srcCbCrStep, Tpx8u* const pDst[3], const int dstStep[3], TpxSize roiSize,
    int layout);
TPXCC_API TpxStatus tpxiYCbCr420_8u_P2P3R(const Tpx8u* pSrcY, int srcYStep, const Tpx8u* pSrcCbCr,
    int srcCbCrStep, Tpx8u* const pDst[3], const int dstStep[3], TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCbCr420_8u_P3P2R(const Tpx8u* const pSrc[3], const int srcStep[3], Tpx8u* pDstY,
    int dstYStep, Tpx8u* pDstCbCr, int dstCbCrStep, TpxSize roiSize);
/* "C2R" without I: a separate source and destination, not in place. */
TPXCC_API TpxStatus tpxiYCbCr422ToCbYCr422_8u_C2R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep,
    TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCbCr422ToCbYCr422_8u_P3C2R(const Tpx8u* const pSrc[3], const int srcStep[3],
    Tpx8u* pDst, int dstStep, TpxSize roiSize);
/* Destination: one 8-bit gray (luma) plane with its own step. */
TPXCC_API TpxStatus tpxiYCbCr422ToGray_8u_C2C1R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep,
    TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCbCr422ToYCbCr411_8u_C2P2R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDstY,
    int dstYStep, Tpx8u* pDstCbCr, int dstCbCrStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCbCr422ToYCbCr411_8u_C2P3R(const Tpx8u* pSrc, int srcStep, Tpx8u* const pDst[3],
    const int dstStep[3], TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCbCr422ToYCbCr411_8u_P3P2R(const Tpx8u* const pSrc[3], const int srcStep[3],
    Tpx8u* pDstY, int dstYStep, Tpx8u* pDstCbCr, int dstCbCrStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCbCr422ToYCbCr411_8u_P3R(const Tpx8u* const pSrc[3], const int srcStep[3],
    Tpx8u* const pDst[3], const int dstStep[3], TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCbCr422ToYCbCr420_8u_C2P2R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDstY,
    int dstYStep, Tpx8u* pDstCbCr, int dstCbCrStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCbCr422ToYCbCr420_8u_C2P3R(const Tpx8u* pSrc, int srcStep, Tpx8u* const pDst[3],
    const int dstStep[3], TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCbCr422ToYCbCr420_8u_P3P2R(const Tpx8u* const pSrc[3], const int srcStep[3],
    Tpx8u* pDstY, int dstYStep, Tpx8u* pDstCbCr, int dstCbCrStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCbCr422ToYCbCr420_8u_P3R(const Tpx8u* const pSrc[3], const int srcStep[3],
    Tpx8u* const pDst[3], const int dstStep[3], TpxSize roiSize);
/* The destination chroma plane holds Cr, Cb pairs: named pDstCrCb. */
TPXCC_API TpxStatus tpxiYCbCr422ToYCrCb420_8u_C2P2R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDstY,
    int dstYStep, Tpx8u* pDstCrCb, int dstCrCbStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCbCr422ToYCrCb420_8u_C2P3R(const Tpx8u* pSrc, int srcStep, Tpx8u* const pDst[3],
    const int dstStep[3], TpxSize roiSize);
/* "C2R" without I: a separate source and destination, not in place. */
TPXCC_API TpxStatus tpxiYCbCr422ToYCrCb422_8u_C2R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep,
    TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCbCr422ToYCrCb422_8u_P3C2R(const Tpx8u* const pSrc[3], const int srcStep[3],
    Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCbCr422_8u_C2P3R(const Tpx8u* pSrc, int srcStep, Tpx8u* const pDst[3],
    const int dstStep[3], TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCbCr422_8u_P3C2R(const Tpx8u* const pSrc[3], const int srcStep[3], Tpx8u* pDst,
    int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCrCb420ToCbYCr422_8u_P3C2R(const Tpx8u* const pSrc[3], const int srcStep[3],
    Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCrCb420ToYCbCr411_8u_P3P2R(const Tpx8u* const pSrc[3], const int srcStep[3],
    Tpx8u* pDstY, int dstYStep, Tpx8u* pDstCbCr, int dstCbCrStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCrCb420ToYCbCr420_8u_P3P2R(const Tpx8u* const pSrc[3], const int srcStep[3],
    Tpx8u* pDstY, int dstYStep, Tpx8u* pDstCbCr, int dstCbCrStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCrCb420ToYCbCr422_8u_P3C2R(const Tpx8u* const pSrc[3], const int srcStep[3],
    Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCrCb420ToYCbCr422_8u_P3R(const Tpx8u* const pSrc[3], const int srcStep[3],
    Tpx8u* const pDst[3], const int dstStep[3], TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCrCb420ToYCbCr422_Filter_8u_P3R(const Tpx8u* const pSrc[3], const int srcStep[3],
    Tpx8u* const pDst[3], const int dstStep[3], TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCrCb422ToYCbCr411_8u_C2P3R(const Tpx8u* pSrc, int srcStep, Tpx8u* const pDst[3],
    const int dstStep[3], TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCrCb422ToYCbCr420_8u_C2P3R(const Tpx8u* pSrc, int srcStep, Tpx8u* const pDst[3],
    const int dstStep[3], TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCrCb422ToYCbCr422_8u_C2P3R(const Tpx8u* pSrc, int srcStep, Tpx8u* const pDst[3],
    const int dstStep[3], TpxSize roiSize);

/* Interlaced 4:2:2 <-> 4:2:0 (the chroma of the two fields never mixed;
 * whole fields converted, +35 when the ROI is not whole fields), and the
 * resamplers between 4:2:0 and 16:20 (chroma W/4 x H/4) or 4:1:1 planes
 * (sizes must be whole blocks: -6 otherwise). */
TPXCC_API TpxStatus tpxiCbYCr422ToYCbCr420_Interlace_8u_C2P3R(const Tpx8u* pSrc, int srcStep,
    Tpx8u* const pDst[3], const int dstStep[3], TpxSize roiSize);
/* 16:20 source: chroma planes W/4 x H/4 with their own steps in srcStep[1], srcStep[2]. */
TPXCC_API TpxStatus tpxiYCbCr1620To420_8u_P3R(const Tpx8u* const pSrc[3], const int srcStep[3],
    Tpx8u* const pDst[3], const int dstStep[3], TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCbCr411To420_8u_P3R(const Tpx8u* const pSrc[3], const int srcStep[3],
    Tpx8u* const pDst[3], const int dstStep[3], TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCbCr420To1620_8u_P3R(const Tpx8u* const pSrc[3], const int srcStep[3],
    Tpx8u* const pDst[3], const int dstStep[3], TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCbCr420To411_8u_P3R(const Tpx8u* const pSrc[3], const int srcStep[3],
    Tpx8u* const pDst[3], const int dstStep[3], TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCbCr420To422_Interlace_8u_P3R(const Tpx8u* const pSrc[3], const int srcStep[3],
    Tpx8u* const pDst[3], const int dstStep[3], TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCbCr420ToCbYCr422_Interlace_8u_P3C2R(const Tpx8u* const pSrc[3],
    const int srcStep[3], Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCbCr422To420_Interlace_8u_P3R(const Tpx8u* const pSrc[3], const int srcStep[3],
    Tpx8u* const pDst[3], const int dstStep[3], TpxSize roiSize);
/* end of chroma layout conversions */

/* ---- v210 and 12-bit packing, YCoCg, analog YUV --------------------- */
/* v210 (six 10-bit 4:2:2 pixels in four 32-bit words) to the 10-bit luma or
 * to 5:6:5 colour words (RGB: R in bits 0-4, G 5-10, B 11-15; BGR: B in bits
 * 0-4, R in 11-15), computed in single precision and limited to 31 (63 for G)
 * on the 10-bit scale; a step below 1 is a bad size (-6). 12-bit samples
 * packed two to three bytes, an odd last sample in two bytes. */
/* v210: the source step counts 32-bit words, the destination step 16-bit words. */
TPXCC_API TpxStatus tpxiYUV422v210ToGray_709HDTV_32u16u_C3C1(const Tpx32u* pSrc, int srcStep, Tpx16u* pDst, int dstStep,
    TpxSize roiSize);
TPXCC_API TpxStatus tpxiYUV422v210ToRGB_709HDTV_32u16u_C3(const Tpx32u* pSrc, int srcStep, Tpx16u* pDst, int dstStep,
    TpxSize roiSize);
TPXCC_API TpxStatus tpxiYUV422v210ToBGR_709HDTV_32u16u_C3(const Tpx32u* pSrc, int srcStep, Tpx16u* pDst, int dstStep,
    TpxSize roiSize);
/* The ROI width counts samples. */
TPXCC_API TpxStatus tpxiPack_16u12u_C1R(const Tpx16u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiUnpack_12u16u_C1R(const Tpx8u* pSrc, int srcStep, Tpx16u* pDst, int dstStep, TpxSize roiSize);

/* YCoCg: plain (rounded) or reversible (integer lifting) transforms; 16-bit
 * stores saturate; 8-bit planes hold Co and Cg offset by 128. */
/* Planes {Y, Co, Cg} share one step. P3C4R members write `aval` into the fourth channel. */
TPXCC_API TpxStatus tpxiBGRToYCoCg_8u16s_C3P3R(const Tpx8u* pSrc, int srcStep, Tpx16s* const pDst[3], int dstStep,
    TpxSize roiSize);
TPXCC_API TpxStatus tpxiBGRToYCoCg_8u16s_C4P3R(const Tpx8u* pSrc, int srcStep, Tpx16s* const pDst[3], int dstStep,
    TpxSize roiSize);
TPXCC_API TpxStatus tpxiBGRToYCoCg_Rev_8u16s_C3P3R(const Tpx8u* pSrc, int srcStep, Tpx16s* const pDst[3], int dstStep,
    TpxSize roiSize);
TPXCC_API TpxStatus tpxiBGRToYCoCg_Rev_8u16s_C4P3R(const Tpx8u* pSrc, int srcStep, Tpx16s* const pDst[3], int dstStep,
    TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToYCoCg_8u_C3P3R(const Tpx8u* pSrc, int srcStep, Tpx8u* const pDst[3], int dstStep,
    TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCoCgToBGR_16s8u_P3C3R(const Tpx16s* const pSrc[3], int srcStep, Tpx8u* pDst, int dstStep,
    TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCoCgToBGR_16s8u_P3C4R(const Tpx16s* const pSrc[3], int srcStep, Tpx8u* pDst, int dstStep,
    TpxSize roiSize, Tpx8u aval);
TPXCC_API TpxStatus tpxiYCoCgToBGR_Rev_16s8u_P3C3R(const Tpx16s* const pSrc[3], int srcStep, Tpx8u* pDst, int dstStep,
    TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCoCgToBGR_Rev_16s8u_P3C4R(const Tpx16s* const pSrc[3], int srcStep, Tpx8u* pDst, int dstStep,
    TpxSize roiSize, Tpx8u aval);
TPXCC_API TpxStatus tpxiYCoCgToRGB_8u_P3C3R(const Tpx8u* const pSrc[3], int srcStep, Tpx8u* pDst, int dstStep,
    TpxSize roiSize);
TPXCC_API TpxStatus tpxiSBGRToYCoCg_16s_C3P3R(const Tpx16s* pSrc, int srcStep, Tpx16s* const pDst[3], int dstStep,
    TpxSize roiSize);
TPXCC_API TpxStatus tpxiSBGRToYCoCg_16s_C4P3R(const Tpx16s* pSrc, int srcStep, Tpx16s* const pDst[3], int dstStep,
    TpxSize roiSize);
TPXCC_API TpxStatus tpxiSBGRToYCoCg_16s32s_C3P3R(const Tpx16s* pSrc, int srcStep, Tpx32s* const pDst[3], int dstStep,
    TpxSize roiSize);
TPXCC_API TpxStatus tpxiSBGRToYCoCg_16s32s_C4P3R(const Tpx16s* pSrc, int srcStep, Tpx32s* const pDst[3], int dstStep,
    TpxSize roiSize);
TPXCC_API TpxStatus tpxiSBGRToYCoCg_Rev_16s_C3P3R(const Tpx16s* pSrc, int srcStep, Tpx16s* const pDst[3], int dstStep,
    TpxSize roiSize);
TPXCC_API TpxStatus tpxiSBGRToYCoCg_Rev_16s_C4P3R(const Tpx16s* pSrc, int srcStep, Tpx16s* const pDst[3], int dstStep,
    TpxSize roiSize);
TPXCC_API TpxStatus tpxiSBGRToYCoCg_Rev_16s32s_C3P3R(const Tpx16s* pSrc, int srcStep, Tpx32s* const pDst[3],
    int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiSBGRToYCoCg_Rev_16s32s_C4P3R(const Tpx16s* pSrc, int srcStep, Tpx32s* const pDst[3],
    int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCoCgToSBGR_16s_P3C3R(const Tpx16s* const pSrc[3], int srcStep, Tpx16s* pDst, int dstStep,
    TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCoCgToSBGR_16s_P3C4R(const Tpx16s* const pSrc[3], int srcStep, Tpx16s* pDst, int dstStep,
    TpxSize roiSize, Tpx16s aval);
TPXCC_API TpxStatus tpxiYCoCgToSBGR_32s16s_P3C3R(const Tpx32s* const pSrc[3], int srcStep, Tpx16s* pDst, int dstStep,
    TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCoCgToSBGR_32s16s_P3C4R(const Tpx32s* const pSrc[3], int srcStep, Tpx16s* pDst, int dstStep,
    TpxSize roiSize, Tpx16s aval);
TPXCC_API TpxStatus tpxiYCoCgToSBGR_Rev_16s_P3C3R(const Tpx16s* const pSrc[3], int srcStep, Tpx16s* pDst, int dstStep,
    TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCoCgToSBGR_Rev_16s_P3C4R(const Tpx16s* const pSrc[3], int srcStep, Tpx16s* pDst, int dstStep,
    TpxSize roiSize, Tpx16s aval);
TPXCC_API TpxStatus tpxiYCoCgToSBGR_Rev_32s16s_P3C3R(const Tpx32s* const pSrc[3], int srcStep, Tpx16s* pDst,
    int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCoCgToSBGR_Rev_32s16s_P3C4R(const Tpx32s* const pSrc[3], int srcStep, Tpx16s* pDst,
    int dstStep, TpxSize roiSize, Tpx16s aval);

/* Analog YUV: full-range luma, U = 0.492 (B - Y), V = 0.877 (R - Y) offset by
 * 128, in fixed point; 4:2:0 members convert whole 2 x 2 blocks (+35 when the
 * width or height is odd), 4:2:2 members whole pairs. */
/* 4:4:4 planes share one step; subsampled planes {Y, U, V} have a step each. Members without R take no
 * steps: packed RGB rows are 3 * width bytes, Y rows width bytes, U and V rows width / 2 bytes. */
TPXCC_API TpxStatus tpxiRGBToYUV_8u_C3R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToYUV_8u_AC4R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToYUV_8u_C3P3R(const Tpx8u* pSrc, int srcStep, Tpx8u* const pDst[3], int dstStep,
    TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToYUV_8u_P3R(const Tpx8u* const pSrc[3], int srcStep, Tpx8u* const pDst[3], int dstStep,
    TpxSize roiSize);
/* Four planes {Y, U, V, A}; A is the source's fourth byte. */
TPXCC_API TpxStatus tpxiRGBToYUV_8u_AC4P4R(const Tpx8u* pSrc, int srcStep, Tpx8u* const pDst[4], int dstStep,
    TpxSize roiSize);
TPXCC_API TpxStatus tpxiYUVToRGB_8u_C3R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiYUVToRGB_8u_AC4R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiYUVToRGB_8u_C3C4R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize,
    Tpx8u aval);
TPXCC_API TpxStatus tpxiYUVToRGB_8u_P3C3R(const Tpx8u* const pSrc[3], int srcStep, Tpx8u* pDst, int dstStep,
    TpxSize roiSize);
TPXCC_API TpxStatus tpxiYUVToRGB_8u_P3R(const Tpx8u* const pSrc[3], int srcStep, Tpx8u* const pDst[3], int dstStep,
    TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToYUV422_8u_C3C2R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep,
    TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToYUV422_8u_C3P3R(const Tpx8u* pSrc, int srcStep, Tpx8u* const pDst[3],
    const int dstStep[3], TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToYUV422_8u_P3R(const Tpx8u* const pSrc[3], int srcStep, Tpx8u* const pDst[3],
    const int dstStep[3], TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToYUV422_8u_C3P3(const Tpx8u* pSrc, Tpx8u* const pDst[3], TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToYUV422_8u_P3(const Tpx8u* const pSrc[3], Tpx8u* const pDst[3], TpxSize roiSize);
TPXCC_API TpxStatus tpxiYUV422ToRGB_8u_C2C3R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep,
    TpxSize roiSize);
TPXCC_API TpxStatus tpxiYUV422ToRGB_8u_P3C3R(const Tpx8u* const pSrc[3], const int srcStep[3], Tpx8u* pDst,
    int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiYUV422ToRGB_8u_P3R(const Tpx8u* const pSrc[3], const int srcStep[3], Tpx8u* const pDst[3],
    int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiYUV422ToRGB_8u_P3AC4R(const Tpx8u* const pSrc[3], const int srcStep[3], Tpx8u* pDst,
    int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiYUV422ToRGB_8u_P3(const Tpx8u* const pSrc[3], Tpx8u* const pDst[3], TpxSize roiSize);
TPXCC_API TpxStatus tpxiYUV422ToRGB_8u_P3C3(const Tpx8u* const pSrc[3], Tpx8u* pDst, TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToYUV420_8u_C3P3R(const Tpx8u* pSrc, int srcStep, Tpx8u* const pDst[3],
    const int dstStep[3], TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToYUV420_8u_P3R(const Tpx8u* const pSrc[3], int srcStep, Tpx8u* const pDst[3],
    const int dstStep[3], TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToYUV420_8u_C3P3(const Tpx8u* pSrc, Tpx8u* const pDst[3], TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToYUV420_8u_P3(const Tpx8u* const pSrc[3], Tpx8u* const pDst[3], TpxSize roiSize);
/* The source is B, G, R, A in memory; A is not read. */
TPXCC_API TpxStatus tpxiBGRToYUV420_8u_AC4P3R(const Tpx8u* pSrc, int srcStep, Tpx8u* const pDst[3],
    const int dstStep[3], TpxSize roiSize);
TPXCC_API TpxStatus tpxiYUV420ToRGB_8u_P3C3R(const Tpx8u* const pSrc[3], const int srcStep[3], Tpx8u* pDst,
    int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiYUV420ToRGB_8u_P3R(const Tpx8u* const pSrc[3], const int srcStep[3], Tpx8u* const pDst[3],
    int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiYUV420ToRGB_8u_P3AC4R(const Tpx8u* const pSrc[3], const int srcStep[3], Tpx8u* pDst,
    int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiYUV420ToRGB_8u_P3(const Tpx8u* const pSrc[3], Tpx8u* const pDst[3], TpxSize roiSize);
TPXCC_API TpxStatus tpxiYUV420ToRGB_8u_P3C3(const Tpx8u* const pSrc[3], Tpx8u* pDst, TpxSize roiSize);
TPXCC_API TpxStatus tpxiYUV420ToBGR_8u_P3C3R(const Tpx8u* const pSrc[3], const int srcStep[3], Tpx8u* pDst,
    int dstStep, TpxSize roiSize);
/* end of v210, 12-bit, YCoCg and analog YUV conversions */

/* ---- HSV, HLS and photo YCC ----------------------------------------- */
/* Steps are signed byte counts; the 16-bit and 32f members use whole elements of them (an arithmetic
 * shift). Planar members take arrays of three or four plane pointers sharing one step. */
/* ---- HSV and HLS ---- */
TPXCC_API TpxStatus tpxiRGBToHSV_8u_C3R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToHSV_8u_AC4R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToHSV_16u_C3R(const Tpx16u* pSrc, int srcStep, Tpx16u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToHSV_16u_AC4R(const Tpx16u* pSrc, int srcStep, Tpx16u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiHSVToRGB_8u_C3R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiHSVToRGB_8u_AC4R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiHSVToRGB_16u_C3R(const Tpx16u* pSrc, int srcStep, Tpx16u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiHSVToRGB_16u_AC4R(const Tpx16u* pSrc, int srcStep, Tpx16u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToHLS_8u_C3R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToHLS_8u_AC4R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToHLS_16u_C3R(const Tpx16u* pSrc, int srcStep, Tpx16u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToHLS_16u_AC4R(const Tpx16u* pSrc, int srcStep, Tpx16u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToHLS_16s_C3R(const Tpx16s* pSrc, int srcStep, Tpx16s* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToHLS_16s_AC4R(const Tpx16s* pSrc, int srcStep, Tpx16s* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToHLS_32f_C3R(const Tpx32f* pSrc, int srcStep, Tpx32f* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToHLS_32f_AC4R(const Tpx32f* pSrc, int srcStep, Tpx32f* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiHLSToRGB_8u_C3R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiHLSToRGB_8u_AC4R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiHLSToRGB_16u_C3R(const Tpx16u* pSrc, int srcStep, Tpx16u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiHLSToRGB_16u_AC4R(const Tpx16u* pSrc, int srcStep, Tpx16u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiHLSToRGB_16s_C3R(const Tpx16s* pSrc, int srcStep, Tpx16s* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiHLSToRGB_16s_AC4R(const Tpx16s* pSrc, int srcStep, Tpx16s* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiHLSToRGB_32f_C3R(const Tpx32f* pSrc, int srcStep, Tpx32f* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiHLSToRGB_32f_AC4R(const Tpx32f* pSrc, int srcStep, Tpx32f* pDst, int dstStep, TpxSize roiSize);
/* BGR and HLS 8u in planar and mixed layouts; AP4 images carry a fourth (alpha) plane, copied unchanged. */
TPXCC_API TpxStatus tpxiBGRToHLS_8u_AC4R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiBGRToHLS_8u_C3P3R(const Tpx8u* pSrc, int srcStep, Tpx8u* const pDst[3], int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiBGRToHLS_8u_P3C3R(const Tpx8u* const pSrc[3], int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiBGRToHLS_8u_P3R(const Tpx8u* const pSrc[3], int srcStep, Tpx8u* const pDst[3], int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiBGRToHLS_8u_AP4R(const Tpx8u* const pSrc[4], int srcStep, Tpx8u* const pDst[4], int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiBGRToHLS_8u_AP4C4R(const Tpx8u* const pSrc[4], int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiBGRToHLS_8u_AC4P4R(const Tpx8u* pSrc, int srcStep, Tpx8u* const pDst[4], int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiHLSToBGR_8u_C3P3R(const Tpx8u* pSrc, int srcStep, Tpx8u* const pDst[3], int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiHLSToBGR_8u_P3C3R(const Tpx8u* const pSrc[3], int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiHLSToBGR_8u_P3R(const Tpx8u* const pSrc[3], int srcStep, Tpx8u* const pDst[3], int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiHLSToBGR_8u_AP4R(const Tpx8u* const pSrc[4], int srcStep, Tpx8u* const pDst[4], int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiHLSToBGR_8u_AP4C4R(const Tpx8u* const pSrc[4], int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiHLSToBGR_8u_AC4P4R(const Tpx8u* pSrc, int srcStep, Tpx8u* const pDst[4], int dstStep, TpxSize roiSize);

/* ---- photo YCC ---- */
TPXCC_API TpxStatus tpxiRGBToYCC_8u_C3R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToYCC_8u_AC4R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToYCC_16u_C3R(const Tpx16u* pSrc, int srcStep, Tpx16u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToYCC_16u_AC4R(const Tpx16u* pSrc, int srcStep, Tpx16u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToYCC_16s_C3R(const Tpx16s* pSrc, int srcStep, Tpx16s* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToYCC_16s_AC4R(const Tpx16s* pSrc, int srcStep, Tpx16s* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToYCC_32f_C3R(const Tpx32f* pSrc, int srcStep, Tpx32f* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToYCC_32f_AC4R(const Tpx32f* pSrc, int srcStep, Tpx32f* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCCToRGB_8u_C3R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCCToRGB_8u_AC4R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCCToRGB_16u_C3R(const Tpx16u* pSrc, int srcStep, Tpx16u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCCToRGB_16u_AC4R(const Tpx16u* pSrc, int srcStep, Tpx16u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCCToRGB_16s_C3R(const Tpx16s* pSrc, int srcStep, Tpx16s* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCCToRGB_16s_AC4R(const Tpx16s* pSrc, int srcStep, Tpx16s* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCCToRGB_32f_C3R(const Tpx32f* pSrc, int srcStep, Tpx32f* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiYCCToRGB_32f_AC4R(const Tpx32f* pSrc, int srcStep, Tpx32f* pDst, int dstStep, TpxSize roiSize);
/* end of HSV, HLS and photo YCC conversions */

/* ---- XYZ, Lab and LUV ----------------------------------------------- */
/* Steps are signed byte counts; the 16-bit and float members use whole elements of them. Planar members
 * take three plane pointers sharing one step; the _L members take 64-bit sizes and steps. */
TPXCC_API TpxStatus tpxiRGBToXYZ_8u_C3R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToXYZ_8u_AC4R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToXYZ_16u_C3R(const Tpx16u* pSrc, int srcStep, Tpx16u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToXYZ_16u_AC4R(const Tpx16u* pSrc, int srcStep, Tpx16u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToXYZ_16s_C3R(const Tpx16s* pSrc, int srcStep, Tpx16s* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToXYZ_16s_AC4R(const Tpx16s* pSrc, int srcStep, Tpx16s* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToXYZ_32f_C3R(const Tpx32f* pSrc, int srcStep, Tpx32f* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToXYZ_32f_AC4R(const Tpx32f* pSrc, int srcStep, Tpx32f* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiXYZToRGB_8u_C3R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiXYZToRGB_8u_AC4R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiXYZToRGB_16u_C3R(const Tpx16u* pSrc, int srcStep, Tpx16u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiXYZToRGB_16u_AC4R(const Tpx16u* pSrc, int srcStep, Tpx16u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiXYZToRGB_16s_C3R(const Tpx16s* pSrc, int srcStep, Tpx16s* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiXYZToRGB_16s_AC4R(const Tpx16s* pSrc, int srcStep, Tpx16s* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiXYZToRGB_32f_C3R(const Tpx32f* pSrc, int srcStep, Tpx32f* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiXYZToRGB_32f_AC4R(const Tpx32f* pSrc, int srcStep, Tpx32f* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToLUV_8u_C3R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToLUV_8u_AC4R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToLUV_16u_C3R(const Tpx16u* pSrc, int srcStep, Tpx16u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToLUV_16u_AC4R(const Tpx16u* pSrc, int srcStep, Tpx16u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToLUV_16s_C3R(const Tpx16s* pSrc, int srcStep, Tpx16s* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToLUV_16s_AC4R(const Tpx16s* pSrc, int srcStep, Tpx16s* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToLUV_32f_C3R(const Tpx32f* pSrc, int srcStep, Tpx32f* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToLUV_32f_AC4R(const Tpx32f* pSrc, int srcStep, Tpx32f* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiLUVToRGB_8u_C3R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiLUVToRGB_8u_AC4R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiLUVToRGB_16u_C3R(const Tpx16u* pSrc, int srcStep, Tpx16u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiLUVToRGB_16u_AC4R(const Tpx16u* pSrc, int srcStep, Tpx16u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiLUVToRGB_16s_C3R(const Tpx16s* pSrc, int srcStep, Tpx16s* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiLUVToRGB_16s_AC4R(const Tpx16s* pSrc, int srcStep, Tpx16s* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiLUVToRGB_32f_C3R(const Tpx32f* pSrc, int srcStep, Tpx32f* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiLUVToRGB_32f_AC4R(const Tpx32f* pSrc, int srcStep, Tpx32f* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiBGRToLUV_8u_C3R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiBGRToLUV_32f_C3R(const Tpx32f* pSrc, int srcStep, Tpx32f* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiLUVToBGR_8u_C3R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiLUVToBGR_32f_C3R(const Tpx32f* pSrc, int srcStep, Tpx32f* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToLab_8u_C3R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToLab_32f_C3R(const Tpx32f* pSrc, int srcStep, Tpx32f* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToLab_32f_P3R(const Tpx32f* const pSrc[3], int srcStep, Tpx32f* const pDst[3], int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToLab_64f_P3R(const Tpx64f* const pSrc[3], int srcStep, Tpx64f* const pDst[3], int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiRGBToLab_32f_P3R_L(const Tpx32f* const pSrc[3], int64_t srcStep, Tpx32f* const pDst[3], int64_t dstStep,
    TpxSizeL roiSize);
TPXCC_API TpxStatus tpxiRGBToLab_64f_P3R_L(const Tpx64f* const pSrc[3], int64_t srcStep, Tpx64f* const pDst[3], int64_t dstStep,
    TpxSizeL roiSize);
TPXCC_API TpxStatus tpxiLabToRGB_8u_C3R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiLabToRGB_32f_C3R(const Tpx32f* pSrc, int srcStep, Tpx32f* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiLabToRGB_32f_P3R(const Tpx32f* const pSrc[3], int srcStep, Tpx32f* const pDst[3], int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiLabToRGB_64f_P3R(const Tpx64f* const pSrc[3], int srcStep, Tpx64f* const pDst[3], int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiLabToRGB_32f_P3R_L(const Tpx32f* const pSrc[3], int64_t srcStep, Tpx32f* const pDst[3], int64_t dstStep,
    TpxSizeL roiSize);
TPXCC_API TpxStatus tpxiLabToRGB_64f_P3R_L(const Tpx64f* const pSrc[3], int64_t srcStep, Tpx64f* const pDst[3], int64_t dstStep,
    TpxSizeL roiSize);
TPXCC_API TpxStatus tpxiBGRToLab_8u_C3R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiBGRToLab_8u16u_C3R(const Tpx8u* pSrc, int srcStep, Tpx16u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiBGRToLab_32f_C3R(const Tpx32f* pSrc, int srcStep, Tpx32f* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiLabToBGR_8u_C3R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiLabToBGR_16u8u_C3R(const Tpx16u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiLabToBGR_32f_C3R(const Tpx32f* pSrc, int srcStep, Tpx32f* pDst, int dstStep, TpxSize roiSize);
/* end of XYZ, Lab and LUV conversions */

/* ---- Colour twist and gamma correction ------------------------------ */
/* Steps are signed byte counts (whole elements of them for 16-bit and float samples); sources, then
 * destinations, the ROI, then the family's own arguments. */
/* ---- colour twist ---- */
/* twist: 3 rows x 4 columns, row-major, row i gives output channel i (C4R: 4 x 4, no constant). */
/* Planar (P3) members: three plane pointers sharing ONE step, as the other 4:4:4 planar families. */
TPXCC_API TpxStatus tpxiColorTwist_32f_C3R(const Tpx32f* pSrc, int srcStep, Tpx32f* pDst, int dstStep, TpxSize roiSize, const Tpx32f twist[3][4]);
TPXCC_API TpxStatus tpxiColorTwist_32f_AC4R(const Tpx32f* pSrc, int srcStep, Tpx32f* pDst, int dstStep, TpxSize roiSize, const Tpx32f twist[3][4]);
TPXCC_API TpxStatus tpxiColorTwist_32f_P3R(const Tpx32f* const pSrc[3], int srcStep, Tpx32f* const pDst[3], int dstStep, TpxSize roiSize, const Tpx32f twist[3][4]);
TPXCC_API TpxStatus tpxiColorTwist_32f_C3IR(Tpx32f* pSrcDst, int srcDstStep, TpxSize roiSize, const Tpx32f twist[3][4]);
TPXCC_API TpxStatus tpxiColorTwist_32f_AC4IR(Tpx32f* pSrcDst, int srcDstStep, TpxSize roiSize, const Tpx32f twist[3][4]);
TPXCC_API TpxStatus tpxiColorTwist_32f_IP3R(Tpx32f* const pSrcDst[3], int srcDstStep, TpxSize roiSize, const Tpx32f twist[3][4]);
TPXCC_API TpxStatus tpxiColorTwist_32f_C4R(const Tpx32f* pSrc, int srcStep, Tpx32f* pDst, int dstStep, TpxSize roiSize, const Tpx32f twist[4][4]);
TPXCC_API TpxStatus tpxiColorTwist32f_8u_C3R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize, const Tpx32f twist[3][4]);
TPXCC_API TpxStatus tpxiColorTwist32f_8u_AC4R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize, const Tpx32f twist[3][4]);
TPXCC_API TpxStatus tpxiColorTwist32f_8u_P3R(const Tpx8u* const pSrc[3], int srcStep, Tpx8u* const pDst[3], int dstStep, TpxSize roiSize, const Tpx32f twist[3][4]);
TPXCC_API TpxStatus tpxiColorTwist32f_8u_C3IR(Tpx8u* pSrcDst, int srcDstStep, TpxSize roiSize, const Tpx32f twist[3][4]);
TPXCC_API TpxStatus tpxiColorTwist32f_8u_AC4IR(Tpx8u* pSrcDst, int srcDstStep, TpxSize roiSize, const Tpx32f twist[3][4]);
TPXCC_API TpxStatus tpxiColorTwist32f_8u_IP3R(Tpx8u* const pSrcDst[3], int srcDstStep, TpxSize roiSize, const Tpx32f twist[3][4]);
TPXCC_API TpxStatus tpxiColorTwist32f_16u_C3R(const Tpx16u* pSrc, int srcStep, Tpx16u* pDst, int dstStep, TpxSize roiSize, const Tpx32f twist[3][4]);
TPXCC_API TpxStatus tpxiColorTwist32f_16u_AC4R(const Tpx16u* pSrc, int srcStep, Tpx16u* pDst, int dstStep, TpxSize roiSize, const Tpx32f twist[3][4]);
TPXCC_API TpxStatus tpxiColorTwist32f_16u_P3R(const Tpx16u* const pSrc[3], int srcStep, Tpx16u* const pDst[3], int dstStep, TpxSize roiSize, const Tpx32f twist[3][4]);
TPXCC_API TpxStatus tpxiColorTwist32f_16u_C3IR(Tpx16u* pSrcDst, int srcDstStep, TpxSize roiSize, const Tpx32f twist[3][4]);
TPXCC_API TpxStatus tpxiColorTwist32f_16u_AC4IR(Tpx16u* pSrcDst, int srcDstStep, TpxSize roiSize, const Tpx32f twist[3][4]);
TPXCC_API TpxStatus tpxiColorTwist32f_16u_IP3R(Tpx16u* const pSrcDst[3], int srcDstStep, TpxSize roiSize, const Tpx32f twist[3][4]);
TPXCC_API TpxStatus tpxiColorTwist32f_16s_C3R(const Tpx16s* pSrc, int srcStep, Tpx16s* pDst, int dstStep, TpxSize roiSize, const Tpx32f twist[3][4]);
TPXCC_API TpxStatus tpxiColorTwist32f_16s_AC4R(const Tpx16s* pSrc, int srcStep, Tpx16s* pDst, int dstStep, TpxSize roiSize, const Tpx32f twist[3][4]);
TPXCC_API TpxStatus tpxiColorTwist32f_16s_P3R(const Tpx16s* const pSrc[3], int srcStep, Tpx16s* const pDst[3], int dstStep, TpxSize roiSize, const Tpx32f twist[3][4]);
TPXCC_API TpxStatus tpxiColorTwist32f_16s_C3IR(Tpx16s* pSrcDst, int srcDstStep, TpxSize roiSize, const Tpx32f twist[3][4]);
TPXCC_API TpxStatus tpxiColorTwist32f_16s_AC4IR(Tpx16s* pSrcDst, int srcDstStep, TpxSize roiSize, const Tpx32f twist[3][4]);
TPXCC_API TpxStatus tpxiColorTwist32f_16s_IP3R(Tpx16s* const pSrcDst[3], int srcDstStep, TpxSize roiSize, const Tpx32f twist[3][4]);

/* ---- gamma correction ---- */
/* Planar (P3) members: three plane pointers sharing ONE step. 32f members: vMin, vMax after the size. */
TPXCC_API TpxStatus tpxiGammaFwd_8u_C3R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiGammaFwd_8u_AC4R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiGammaFwd_8u_P3R(const Tpx8u* const pSrc[3], int srcStep, Tpx8u* const pDst[3], int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiGammaFwd_8u_C3IR(Tpx8u* pSrcDst, int srcDstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiGammaFwd_8u_AC4IR(Tpx8u* pSrcDst, int srcDstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiGammaFwd_8u_IP3R(Tpx8u* const pSrcDst[3], int srcDstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiGammaFwd_16u_C3R(const Tpx16u* pSrc, int srcStep, Tpx16u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiGammaFwd_16u_AC4R(const Tpx16u* pSrc, int srcStep, Tpx16u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiGammaFwd_16u_P3R(const Tpx16u* const pSrc[3], int srcStep, Tpx16u* const pDst[3], int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiGammaFwd_16u_C3IR(Tpx16u* pSrcDst, int srcDstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiGammaFwd_16u_AC4IR(Tpx16u* pSrcDst, int srcDstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiGammaFwd_16u_IP3R(Tpx16u* const pSrcDst[3], int srcDstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiGammaFwd_32f_C3R(const Tpx32f* pSrc, int srcStep, Tpx32f* pDst, int dstStep, TpxSize roiSize, Tpx32f vMin, Tpx32f vMax);
TPXCC_API TpxStatus tpxiGammaFwd_32f_AC4R(const Tpx32f* pSrc, int srcStep, Tpx32f* pDst, int dstStep, TpxSize roiSize, Tpx32f vMin, Tpx32f vMax);
TPXCC_API TpxStatus tpxiGammaFwd_32f_P3R(const Tpx32f* const pSrc[3], int srcStep, Tpx32f* const pDst[3], int dstStep, TpxSize roiSize, Tpx32f vMin, Tpx32f vMax);
TPXCC_API TpxStatus tpxiGammaFwd_32f_C3IR(Tpx32f* pSrcDst, int srcDstStep, TpxSize roiSize, Tpx32f vMin, Tpx32f vMax);
TPXCC_API TpxStatus tpxiGammaFwd_32f_AC4IR(Tpx32f* pSrcDst, int srcDstStep, TpxSize roiSize, Tpx32f vMin, Tpx32f vMax);
TPXCC_API TpxStatus tpxiGammaFwd_32f_IP3R(Tpx32f* const pSrcDst[3], int srcDstStep, TpxSize roiSize, Tpx32f vMin, Tpx32f vMax);
TPXCC_API TpxStatus tpxiGammaInv_8u_C3R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiGammaInv_8u_AC4R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiGammaInv_8u_P3R(const Tpx8u* const pSrc[3], int srcStep, Tpx8u* const pDst[3], int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiGammaInv_8u_C3IR(Tpx8u* pSrcDst, int srcDstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiGammaInv_8u_AC4IR(Tpx8u* pSrcDst, int srcDstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiGammaInv_8u_IP3R(Tpx8u* const pSrcDst[3], int srcDstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiGammaInv_16u_C3R(const Tpx16u* pSrc, int srcStep, Tpx16u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiGammaInv_16u_AC4R(const Tpx16u* pSrc, int srcStep, Tpx16u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiGammaInv_16u_P3R(const Tpx16u* const pSrc[3], int srcStep, Tpx16u* const pDst[3], int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiGammaInv_16u_C3IR(Tpx16u* pSrcDst, int srcDstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiGammaInv_16u_AC4IR(Tpx16u* pSrcDst, int srcDstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiGammaInv_16u_IP3R(Tpx16u* const pSrcDst[3], int srcDstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiGammaInv_32f_C3R(const Tpx32f* pSrc, int srcStep, Tpx32f* pDst, int dstStep, TpxSize roiSize, Tpx32f vMin, Tpx32f vMax);
TPXCC_API TpxStatus tpxiGammaInv_32f_AC4R(const Tpx32f* pSrc, int srcStep, Tpx32f* pDst, int dstStep, TpxSize roiSize, Tpx32f vMin, Tpx32f vMax);
TPXCC_API TpxStatus tpxiGammaInv_32f_P3R(const Tpx32f* const pSrc[3], int srcStep, Tpx32f* const pDst[3], int dstStep, TpxSize roiSize, Tpx32f vMin, Tpx32f vMax);
TPXCC_API TpxStatus tpxiGammaInv_32f_C3IR(Tpx32f* pSrcDst, int srcDstStep, TpxSize roiSize, Tpx32f vMin, Tpx32f vMax);
TPXCC_API TpxStatus tpxiGammaInv_32f_AC4IR(Tpx32f* pSrcDst, int srcDstStep, TpxSize roiSize, Tpx32f vMin, Tpx32f vMax);
TPXCC_API TpxStatus tpxiGammaInv_32f_IP3R(Tpx32f* const pSrcDst[3], int srcDstStep, TpxSize roiSize, Tpx32f vMin, Tpx32f vMax);
/* end of colour twist and gamma correction */

/* ---- Bit-depth reduction with dithering, tone mapping --------------- */
/* Steps are signed byte counts (whole elements of them for 16-bit and float samples); sources, then
 * destinations, the ROI, then the family's own arguments. */
/* ---- bit-depth reduction with dithering ---- */
/* ditherType: 0 none, 1 Floyd-Steinberg, 2 Jarvis-Judice-Ninke, 3 Stucki, 4 ordered (a plain int).
 * pBuffer: the caller's work buffer of tpxiReduceBitsGetBufferSize bytes, taken as bytes (Tpx8u*). */
/* chanLayout: the channel-layout code (1, 3, 4 or 9); pBufferSize receives the size in bytes. */
TPXCC_API TpxStatus tpxiReduceBitsGetBufferSize(int chanLayout, int width, int noise, int ditherType, int* pBufferSize);
TPXCC_API TpxStatus tpxiReduceBits_8u_C1R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize, int noise, int ditherType, int levels, Tpx8u* pBuffer);
TPXCC_API TpxStatus tpxiReduceBits_8u_C3R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize, int noise, int ditherType, int levels, Tpx8u* pBuffer);
TPXCC_API TpxStatus tpxiReduceBits_8u_C4R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize, int noise, int ditherType, int levels, Tpx8u* pBuffer);
TPXCC_API TpxStatus tpxiReduceBits_8u_AC4R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize, int noise, int ditherType, int levels, Tpx8u* pBuffer);
TPXCC_API TpxStatus tpxiReduceBits_16u_C1R(const Tpx16u* pSrc, int srcStep, Tpx16u* pDst, int dstStep, TpxSize roiSize, int noise, int ditherType, int levels, Tpx8u* pBuffer);
TPXCC_API TpxStatus tpxiReduceBits_16u_C3R(const Tpx16u* pSrc, int srcStep, Tpx16u* pDst, int dstStep, TpxSize roiSize, int noise, int ditherType, int levels, Tpx8u* pBuffer);
TPXCC_API TpxStatus tpxiReduceBits_16u_C4R(const Tpx16u* pSrc, int srcStep, Tpx16u* pDst, int dstStep, TpxSize roiSize, int noise, int ditherType, int levels, Tpx8u* pBuffer);
TPXCC_API TpxStatus tpxiReduceBits_16u_AC4R(const Tpx16u* pSrc, int srcStep, Tpx16u* pDst, int dstStep, TpxSize roiSize, int noise, int ditherType, int levels, Tpx8u* pBuffer);
TPXCC_API TpxStatus tpxiReduceBits_16s_C1R(const Tpx16s* pSrc, int srcStep, Tpx16s* pDst, int dstStep, TpxSize roiSize, int noise, int ditherType, int levels, Tpx8u* pBuffer);
TPXCC_API TpxStatus tpxiReduceBits_16s_C3R(const Tpx16s* pSrc, int srcStep, Tpx16s* pDst, int dstStep, TpxSize roiSize, int noise, int ditherType, int levels, Tpx8u* pBuffer);
TPXCC_API TpxStatus tpxiReduceBits_16s_C4R(const Tpx16s* pSrc, int srcStep, Tpx16s* pDst, int dstStep, TpxSize roiSize, int noise, int ditherType, int levels, Tpx8u* pBuffer);
TPXCC_API TpxStatus tpxiReduceBits_16s_AC4R(const Tpx16s* pSrc, int srcStep, Tpx16s* pDst, int dstStep, TpxSize roiSize, int noise, int ditherType, int levels, Tpx8u* pBuffer);
TPXCC_API TpxStatus tpxiReduceBits_16u8u_C1R(const Tpx16u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize, int noise, int ditherType, int levels, Tpx8u* pBuffer);
TPXCC_API TpxStatus tpxiReduceBits_16u8u_C3R(const Tpx16u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize, int noise, int ditherType, int levels, Tpx8u* pBuffer);
TPXCC_API TpxStatus tpxiReduceBits_16u8u_C4R(const Tpx16u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize, int noise, int ditherType, int levels, Tpx8u* pBuffer);
TPXCC_API TpxStatus tpxiReduceBits_16u8u_AC4R(const Tpx16u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize, int noise, int ditherType, int levels, Tpx8u* pBuffer);
TPXCC_API TpxStatus tpxiReduceBits_16s8u_C1R(const Tpx16s* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize, int noise, int ditherType, int levels, Tpx8u* pBuffer);
TPXCC_API TpxStatus tpxiReduceBits_16s8u_C3R(const Tpx16s* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize, int noise, int ditherType, int levels, Tpx8u* pBuffer);
TPXCC_API TpxStatus tpxiReduceBits_16s8u_C4R(const Tpx16s* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize, int noise, int ditherType, int levels, Tpx8u* pBuffer);
TPXCC_API TpxStatus tpxiReduceBits_16s8u_AC4R(const Tpx16s* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize, int noise, int ditherType, int levels, Tpx8u* pBuffer);
TPXCC_API TpxStatus tpxiReduceBits_32f8u_C1R(const Tpx32f* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize, int noise, int ditherType, int levels, Tpx8u* pBuffer);
TPXCC_API TpxStatus tpxiReduceBits_32f8u_C3R(const Tpx32f* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize, int noise, int ditherType, int levels, Tpx8u* pBuffer);
TPXCC_API TpxStatus tpxiReduceBits_32f8u_C4R(const Tpx32f* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize, int noise, int ditherType, int levels, Tpx8u* pBuffer);
TPXCC_API TpxStatus tpxiReduceBits_32f8u_AC4R(const Tpx32f* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize, int noise, int ditherType, int levels, Tpx8u* pBuffer);
TPXCC_API TpxStatus tpxiReduceBits_32f16u_C1R(const Tpx32f* pSrc, int srcStep, Tpx16u* pDst, int dstStep, TpxSize roiSize, int noise, int ditherType, int levels, Tpx8u* pBuffer);
TPXCC_API TpxStatus tpxiReduceBits_32f16u_C3R(const Tpx32f* pSrc, int srcStep, Tpx16u* pDst, int dstStep, TpxSize roiSize, int noise, int ditherType, int levels, Tpx8u* pBuffer);
TPXCC_API TpxStatus tpxiReduceBits_32f16u_C4R(const Tpx32f* pSrc, int srcStep, Tpx16u* pDst, int dstStep, TpxSize roiSize, int noise, int ditherType, int levels, Tpx8u* pBuffer);
TPXCC_API TpxStatus tpxiReduceBits_32f16u_AC4R(const Tpx32f* pSrc, int srcStep, Tpx16u* pDst, int dstStep, TpxSize roiSize, int noise, int ditherType, int levels, Tpx8u* pBuffer);
TPXCC_API TpxStatus tpxiReduceBits_32f16s_C1R(const Tpx32f* pSrc, int srcStep, Tpx16s* pDst, int dstStep, TpxSize roiSize, int noise, int ditherType, int levels, Tpx8u* pBuffer);
TPXCC_API TpxStatus tpxiReduceBits_32f16s_C3R(const Tpx32f* pSrc, int srcStep, Tpx16s* pDst, int dstStep, TpxSize roiSize, int noise, int ditherType, int levels, Tpx8u* pBuffer);
TPXCC_API TpxStatus tpxiReduceBits_32f16s_C4R(const Tpx32f* pSrc, int srcStep, Tpx16s* pDst, int dstStep, TpxSize roiSize, int noise, int ditherType, int levels, Tpx8u* pBuffer);
TPXCC_API TpxStatus tpxiReduceBits_32f16s_AC4R(const Tpx32f* pSrc, int srcStep, Tpx16s* pDst, int dstStep, TpxSize roiSize, int noise, int ditherType, int levels, Tpx8u* pBuffer);
/* The int32 after noise (accepted, not used) is named `reserved`; the threshold is passed as Tpx8u. */
TPXCC_API TpxStatus tpxiReduceBits_8u1u_C1R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep, int dstBitOffset, TpxSize roiSize, int noise, int reserved, int ditherType, Tpx8u threshold, Tpx8u* pBuffer);

/* ---- tone mapping ---- */
TPXCC_API TpxStatus tpxiToneMapLinear_32f8u_C1R(const Tpx32f* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize);
TPXCC_API TpxStatus tpxiToneMapMean_32f8u_C1R(const Tpx32f* pSrc, int srcStep, Tpx8u* pDst, int dstStep, TpxSize roiSize);
/* end of bit-depth reduction and tone mapping */

#ifdef __cplusplus
}
#endif

#endif /* TPXCC_H */
