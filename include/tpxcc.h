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
/* end of RGB to subsampled YCbCr */

/* ---- Subsampled YCbCr to RGB -------------------------------------------- */
/* end of subsampled YCbCr to RGB */

/* ---- Gray conversions ---------------------------------------------------- */
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

#ifdef __cplusplus
}
#endif

#endif /* TPXCC_H */
