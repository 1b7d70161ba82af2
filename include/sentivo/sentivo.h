/*
 * libsentivo: liveness detection for optical fingerprint captures.
 *
 * Per capture the application hands over three 8-bit grey bitmaps of
 * 320 x 480 pixels at 500 dpi (in memory, without the 14-byte file header):
 * index 0 the capture, 1 the capture under backlight, 2 the capture without.
 *
 *   SentivoInitialize(NULL);
 *   SentivoHandle h; SentivoCreateHandle(&h);
 *   SentivoSetImage(h, 0, current, size0);    (and 1, 2)
 *   int32_t rc = SentivoDetectFinger(h);      0: a finger lies still and well placed
 *   double score; rc = SentivoDetectFake(h, &score);   0..100, higher = more live
 *   SentivoDestroyHandle(&h);
 *   SentivoUninitialize();
 *
 * Every function but the two description functions returns 0 (ZRC_SUCCESS)
 * or a negative ZRC_* code; SentivoGetErrorDescriptionA/W give its text.
 *
 * A threshold for a wanted error rate: set the property "dQueryFAR" (a
 * fraction, 0.01 = 1 %) and read "dQueryScore"; a capture is judged live when
 * its score is at least that threshold. Other properties: "Version" (read
 * only), "dQueryFRR", "bMovementDetection" ("True"/"False"), "nSecurityLevel"
 * (1 strict, any other value relaxed). Names ignore letter case.
 *
 * One handle may be used by one thread at a time; different handles may be
 * used at the same time from different threads.
 */
#ifndef SENTIVO_H
#define SENTIVO_H

#include <stdint.h>
#ifndef __cplusplus
#include <uchar.h>
#endif

#include "sentivo/sentivo_errors.h"

#if defined(SENTIVO_BUILDING_LIBRARY)
#define SENTIVO_API __attribute__((visibility("default")))
#else
#define SENTIVO_API
#endif

#ifdef __cplusplus
extern "C"
{
#endif

    /* Opaque handle of one detector with its own images and settings. */
    typedef void* SentivoHandle;

    /* Counted: every call must be balanced by a SentivoUninitialize. pReserved is ignored. */
    SENTIVO_API int32_t SentivoInitialize(void* pReserved);
    SENTIVO_API int32_t SentivoUninitialize(void);

    SENTIVO_API int32_t SentivoCreateHandle(SentivoHandle* pHandle);
    /* Frees the handle and writes NULL to *pHandle. */
    SENTIVO_API int32_t SentivoDestroyHandle(SentivoHandle* pHandle);
    /* Drops the three images; settings and the state of the last finger detection stay. */
    SENTIVO_API int32_t SentivoReset(SentivoHandle hHandle);

    /* Copies a bitmap (BITMAPINFOHEADER, 256-entry palette, pixels) into slot
     * nImageIndex (0 current, 1 backlight, 2 dark). A NULL pBitmap empties the
     * slot. The palette of the caller's block is rewritten to a grey ramp. */
    SENTIVO_API int32_t SentivoSetImage(SentivoHandle hHandle, int32_t nImageIndex, void* pBitmap,
                                        uint32_t nBitmapSize);

    /* Whether a finger lies on the platen, still and in a usable place. */
    SENTIVO_API int32_t SentivoDetectFinger(SentivoHandle hHandle);
    /* The liveness score from 0 to 100 (higher = more live); 0.0 exactly when the
     * strict security level's falloff check rejected the capture. */
    SENTIVO_API int32_t SentivoDetectFake(SentivoHandle hHandle, double* pdScore);
    /* Both in one pass. */
    SENTIVO_API int32_t SentivoEvaluateLiveliness(SentivoHandle hHandle, double* pdScore);

    /* Properties as text. The Get functions take the buffer size in *pnValueSize
     * (bytes, or UTF-16 code units for W, terminator included) and return the
     * needed size there; too small gives ZRC_ERROR_TEMPLATE_SIZE (-21). */
    SENTIVO_API int32_t SentivoSetPropertyA(SentivoHandle hHandle, const char* szName,
                                            const char* szValue);
    SENTIVO_API int32_t SentivoSetPropertyW(SentivoHandle hHandle, const char16_t* szName,
                                            const char16_t* szValue);
    SENTIVO_API int32_t SentivoGetPropertyA(SentivoHandle hHandle, const char* szName,
                                            char* szValue, uint32_t* pnValueSize);
    SENTIVO_API int32_t SentivoGetPropertyW(SentivoHandle hHandle, const char16_t* szName,
                                            char16_t* szValue, uint32_t* pnValueSize);

    /* Text of an error code; never NULL, needs no initialisation. */
    SENTIVO_API const char* SentivoGetErrorDescriptionA(int32_t nErrorCode);
    SENTIVO_API const char16_t* SentivoGetErrorDescriptionW(int32_t nErrorCode);

#ifdef __cplusplus
}
#endif

#endif /* SENTIVO_H */
