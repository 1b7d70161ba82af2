/* What a scanner application pays for the library: the time from loading
 * libsentivo.so (dlopen) through SentivoInitialize, a handle and the images
 * to the first judged capture, and the peak resident memory of the process
 * after 100 captures on one handle. Prints "load_first_ms=... peak_rss_kb=...".
 *
 *   sentivo_footprint LIBRARY CURRENT BACKLIGHT DARK */
#include <dlfcn.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/resource.h>
#include <time.h>

#include <sentivo/sentivo.h>

#include "support/bitmap_block.h"

static double Now(void)
{
    struct timespec t;
    clock_gettime(CLOCK_MONOTONIC, &t);
    return t.tv_sec * 1e3 + t.tv_nsec / 1e6;
}

#define ENTRY(name) name##_t name = (name##_t)dlsym(pLibrary, #name)
typedef int32_t (*SentivoInitialize_t)(void*);
typedef int32_t (*SentivoCreateHandle_t)(SentivoHandle*);
typedef int32_t (*SentivoSetImage_t)(SentivoHandle, int32_t, void*, uint32_t);
typedef int32_t (*SentivoDetectFinger_t)(SentivoHandle);
typedef int32_t (*SentivoEvaluateLiveliness_t)(SentivoHandle, double*);

int main(int argc, char** argv)
{
    if (argc != 5)
    {
        fprintf(stderr, "usage: %s LIBRARY CURRENT BACKLIGHT DARK\n", argv[0]);
        return 64;
    }
    uint8_t* apBlocks[3];
    uint32_t anSizes[3];
    for (int i = 0; i < 3; ++i)
        if ((apBlocks[i] = ReadBitmapBlock(argv[2 + i], &anSizes[i])) == NULL)
        {
            fprintf(stderr, "cannot read %s\n", argv[2 + i]);
            return 1;
        }

    const double dStart = Now();
    void* pLibrary = dlopen(argv[1], RTLD_NOW | RTLD_LOCAL);
    if (pLibrary == NULL)
    {
        fprintf(stderr, "%s\n", dlerror());
        return 1;
    }
    ENTRY(SentivoInitialize);
    ENTRY(SentivoCreateHandle);
    ENTRY(SentivoSetImage);
    ENTRY(SentivoDetectFinger);
    ENTRY(SentivoEvaluateLiveliness);
    SentivoHandle h = NULL;
    if (SentivoInitialize(NULL) != 0 || SentivoCreateHandle(&h) != 0)
        return 1;
    for (int i = 0; i < 3; ++i)
        SentivoSetImage(h, i, apBlocks[i], anSizes[i]);
    double dScore = 0.0;
    /* A scanner's first capture: the finger half, then the evaluation. */
    SentivoDetectFinger(h);
    const int32_t nCode = SentivoEvaluateLiveliness(h, &dScore);
    const double dFirst = Now() - dStart;

    for (int n = 1; n < 100; ++n)
        SentivoEvaluateLiveliness(h, &dScore);
    struct rusage usage;
    getrusage(RUSAGE_SELF, &usage);
    printf("code=%d load_first_ms=%.3f peak_rss_kb=%ld\n", (int)nCode, dFirst, usage.ru_maxrss);
    return nCode == 0 ? 0 : 1;
}
