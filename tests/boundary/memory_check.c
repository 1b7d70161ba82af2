/* A long-lived scanner application in miniature, for valgrind's memcheck:
 * 1000 handles created and destroyed, then 50 captures judged on one
 * handle (the conformance captures given on the command line, in turn, each
 * twice as a scanner's still finger). Every allocation of the library must
 * be released and no read or write may leave its block. */
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>

#include <sentivo/sentivo.h>

#include "support/bitmap_block.h"

int main(int argc, char** argv)
{
    static const char* const aszNames[3] = {"current.bmp", "backlight.bmp", "dark.bmp"};
    if (argc < 2)
    {
        fprintf(stderr, "usage: %s CAPTURE_FOLDER...\n", argv[0]);
        return 64;
    }
    if (SentivoInitialize(NULL) != ZRC_SUCCESS)
        return 1;
    for (int i = 0; i < 1000; ++i)
    {
        SentivoHandle h = NULL;
        if (SentivoCreateHandle(&h) != ZRC_SUCCESS || SentivoDestroyHandle(&h) != ZRC_SUCCESS)
            return 1;
    }
    SentivoHandle h = NULL;
    if (SentivoCreateHandle(&h) != ZRC_SUCCESS)
        return 1;
    for (int n = 0; n < 50; ++n)
    {
        const char* szFolder = argv[1 + n % (argc - 1)];
        for (int k = 0; k < 3; ++k)
        {
            char szPath[4096];
            uint32_t nSize = 0;
            snprintf(szPath, sizeof szPath, "%s/%s", szFolder, aszNames[k]);
            uint8_t* pBlock = ReadBitmapBlock(szPath, &nSize);
            if (pBlock == NULL)
            {
                fprintf(stderr, "cannot read %s\n", szPath);
                return 1;
            }
            SentivoSetImage(h, k, pBlock, nSize);
            free(pBlock);
        }
        double dScore = 0.0;
        SentivoDetectFinger(h);
        const int32_t nCode = SentivoEvaluateLiveliness(h, &dScore);
        printf("%-60s %5d %.6f\n", szFolder, (int)nCode, dScore);
    }
    SentivoDestroyHandle(&h);
    return SentivoUninitialize() == ZRC_SUCCESS ? 0 : 1;
}
