// Feeds arbitrary bytes to SentivoSetImage as a bitmap block of exactly their
// size: every block gets a code, and nothing outside it is read or written.
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "FuzzInput.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize)
{
    if (nSize == 0)
        return 0;
    // The first byte picks the slot (invalid ones included); the rest is the block.
    const int32_t nIndex = static_cast<int32_t>(pData[0] % 5) - 1;
    const size_t nBlock = nSize - 1;
    uint8_t* pBlock = static_cast<uint8_t*>(std::malloc(nBlock == 0 ? 1 : nBlock));
    if (pBlock == nullptr)
        return 0;
    std::memcpy(pBlock, pData + 1, nBlock);
    const int32_t nCode =
        SentivoSetImage(SentivoFuzz::Handle(), nIndex, nBlock == 0 ? nullptr : pBlock,
                        static_cast<uint32_t>(nBlock));
    if (nCode > 0)
        std::abort();
    double dScore = 0.0;
    SentivoEvaluateLiveliness(SentivoFuzz::Handle(), &dScore);
    std::free(pBlock);
    return 0;
}
