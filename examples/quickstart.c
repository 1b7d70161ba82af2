/* Scores one capture: quickstart CURRENT.bmp BACKLIGHT.bmp DARK.bmp */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <sentivo/sentivo.h>

/* Reads a bitmap file whole; the library takes the block behind its
 * 14-byte file header. NULL when the file cannot be read or is no bitmap. */
static unsigned char* ReadBitmap(const char* szPath, long* pnLength)
{
    unsigned char* pData = NULL;
    char acSignature[2];
    FILE* pFile = fopen(szPath, "rb");
    *pnLength = -1;
    if (pFile == NULL)
        return NULL;
    /* The signature first: a folder opens, but reads nothing. */
    if (fread(acSignature, 1, 2, pFile) == 2 && memcmp(acSignature, "BM", 2) == 0 &&
        fseek(pFile, 0, SEEK_END) == 0)
        *pnLength = ftell(pFile);
    if (*pnLength > 14 && fseek(pFile, 0, SEEK_SET) == 0)
        pData = malloc((size_t)*pnLength);
    if (pData != NULL && fread(pData, 1, (size_t)*pnLength, pFile) != (size_t)*pnLength)
    {
        free(pData);
        pData = NULL;
    }
    fclose(pFile);
    return pData;
}

int main(int argc, char** argv)
{
    SentivoHandle hHandle = NULL;
    int32_t nCode;
    double dScore = 0.0;
    int nExit = 2; /* 0 scored, 1 judged without a score, 2 not judged, 64 usage */
    int i;

    if (argc != 4)
    {
        fprintf(stderr, "usage: %s CURRENT.bmp BACKLIGHT.bmp DARK.bmp\n", argv[0]);
        return 64;
    }
    nCode = SentivoInitialize(NULL);
    if (nCode == ZRC_SUCCESS)
        nCode = SentivoCreateHandle(&hHandle);
    /* Slot 0 the capture, 1 under backlight, 2 without. */
    for (i = 0; i < 3 && nCode == ZRC_SUCCESS; ++i)
    {
        long nLength = 0;
        unsigned char* pFile = ReadBitmap(argv[i + 1], &nLength);
        if (pFile == NULL)
        {
            fprintf(stderr, "%s: not a readable bitmap file\n", argv[i + 1]);
            nCode = ZRC_ERROR_FILE_OPEN_FAIL;
        }
        else if ((nCode = SentivoSetImage(hHandle, i, pFile + 14, (uint32_t)(nLength - 14))) != 0)
            fprintf(stderr, "%s: %s\n", argv[i + 1], SentivoGetErrorDescriptionA(nCode));
        free(pFile);
    }
    if (nCode == ZRC_SUCCESS)
    {
        /* A scanner calls SentivoDetectFinger on every frame until the finger
         * lies still; from one capture, the first call stands for the frame
         * before it, so that the evaluation sees a still finger. */
        SentivoDetectFinger(hHandle);
        nCode = SentivoEvaluateLiveliness(hHandle, &dScore);
        printf("code %d: %s\n", (int)nCode, SentivoGetErrorDescriptionA(nCode));
        if (nCode == ZRC_SUCCESS)
            printf("score %.3f (0 to 100, higher is more live)\n", dScore);
        nExit = nCode == ZRC_SUCCESS ? 0 : 1;
    }
    SentivoDestroyHandle(&hHandle);
    SentivoUninitialize();
    return nExit;
}
