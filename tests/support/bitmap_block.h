/* The block of a bitmap file that SentivoSetImage takes: everything behind
 * the 14-byte file header, read whole. For the C programs of the checks and
 * benchmarks; NULL when the file cannot be read. */
#ifndef SENTIVO_TESTS_BITMAP_BLOCK_H
#define SENTIVO_TESTS_BITMAP_BLOCK_H

#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>

static uint8_t* ReadBitmapBlock(const char* szPath, uint32_t* pnSize)
{
    FILE* pFile = fopen(szPath, "rb");
    uint8_t* pBlock = NULL;
    long nSize;
    if (pFile == NULL)
        return NULL;
    if (fseek(pFile, 0, SEEK_END) == 0 && (nSize = ftell(pFile)) > 14 && nSize < (1L << 30) &&
        fseek(pFile, 14, SEEK_SET) == 0)
    {
        pBlock = malloc((size_t)(nSize - 14));
        if (pBlock != NULL && fread(pBlock, 1, (size_t)(nSize - 14), pFile) != (size_t)(nSize - 14))
        {
            free(pBlock);
            pBlock = NULL;
        }
        *pnSize = (uint32_t)(nSize - 14);
    }
    fclose(pFile);
    return pBlock;
}

#endif
