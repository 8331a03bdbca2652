/*
 * tpxcore: processor facts shared by the tpxcc libraries.
 * Valid C99 and C++.
 */
#ifndef TPXCORE_H
#define TPXCORE_H

#include <stdint.h>

#if defined(__GNUC__)
#  define TPXCORE_API __attribute__((visibility("default")))
#else
#  define TPXCORE_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* Writes the size in bytes of the largest cache of the processor into *pSize.
   Returns 0 on success; a non-zero status (and *pSize untouched) when the size
   cannot be told or pSize is null. */
TPXCORE_API int32_t tpxGetMaxCacheSizeB(int32_t* pSize);

#ifdef __cplusplus
}
#endif

#endif /* TPXCORE_H */
