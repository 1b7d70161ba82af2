/* The public header from plain C99: a caller's first steps. */
#include <stdio.h>
#include <string.h>

#include "sentivo/sentivo.h"

static int g_nFailures = 0;

#define Check(bHolds, szWhat)                                                                      \
    (void)((bHolds) || (fprintf(stderr, "failed: %s\n", szWhat), ++g_nFailures))

int main(void)
{
    SentivoHandle hHandle = NULL;
    char szVersion[32];
    uint32_t nSize = sizeof(szVersion);
    char16_t szWide[32];
    uint32_t nWideSize = 32;
    double dScore = -1.0;
    /* C99 has no u"" literals: the name in UTF-16 code units. */
    static const char16_t szVersionName[] = {'v', 'e', 'r', 's', 'i', 'o', 'n', 0};

    Check(strcmp(SentivoGetErrorDescriptionA(ZRC_SUCCESS), "No errors occurred.") == 0,
          "description of 0");
    Check(SentivoCreateHandle(&hHandle) == ZRC_ERROR_NOT_INITIALIZED,
          "handle before initialisation");
    Check(SentivoInitialize(NULL) == ZRC_SUCCESS, "initialise");
    Check(SentivoCreateHandle(&hHandle) == ZRC_SUCCESS && hHandle != NULL, "create handle");
    Check(SentivoGetPropertyA(hHandle, "Version", szVersion, &nSize) == ZRC_SUCCESS,
          "read version");
    Check(strcmp(szVersion, "2.0.1012.0") == 0 && nSize == 11, "version text");
    Check(SentivoGetPropertyW(hHandle, szVersionName, szWide, &nWideSize) == ZRC_SUCCESS,
          "read wide version");
    Check(nWideSize == 11 && szWide[0] == '2' && szWide[10] == 0, "wide version text");
    Check(SentivoEvaluateLiveliness(hHandle, &dScore) == ZRC_ERROR_PARAM_IS_MISSING, "no images");
    Check(dScore == 0.0, "score zeroed");
    Check(SentivoDestroyHandle(&hHandle) == ZRC_SUCCESS && hHandle == NULL, "destroy handle");
    Check(SentivoUninitialize() == ZRC_SUCCESS, "uninitialise");
    Check(E_INVALIDARG == (int32_t)-2147024809 && ZRC_ERROR_LD_VIDEO_FRAME_INFO_ID_INVALID == -798,
          "codes");
    if (g_nFailures == 0)
        printf("C interface: all checks passed\n");
    return g_nFailures == 0 ? 0 : 1;
}
