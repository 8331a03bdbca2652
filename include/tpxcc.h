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
/* end of subsampled YCbCr to RGB */

/* ---- Gray conversions ---------------------------------------------------- */
/* end of gray conversions */

/* ---- Bayer demosaicing ----------------------------------------------------- */
/* end of Bayer demosaicing */

#ifdef __cplusplus
}
#endif

#endif /* TPXCC_H */
