// Feeds the whole flow: three 320 x 480 images built from the input by
// structured generators, judged by SentivoEvaluateLiveliness at both
// security levels, with movement detection on and off. Whatever the
// pixels, every call returns a code and the score stays within 0 to 100.
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "CaptureGenerators.h"
#include "FuzzInput.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize)
{
    using namespace SentivoFuzz;
    ClInput input(pData, nSize);
    const uint8_t nSettings = input.Byte();
    std::vector<uint8_t> blocks[3];
    for (std::vector<uint8_t>& block : blocks)
        block = BitmapBlock(MakeImage(input));

    const SentivoHandle hHandle = Handle();
    for (int32_t i = 0; i < 3; ++i)
        if (SentivoSetImage(hHandle, i, blocks[i].data(), static_cast<uint32_t>(blocks[i].size())) != 0)
            std::abort();
    const char* aszLevels[2] = {"1", "2"};
    const char* aszMovement[2] = {"True", "False"};
    for (int n = 0; n < 4; ++n)
    {
        // The first combination follows the input's settings byte.
        const int k = (n + nSettings) % 4;
        SentivoSetPropertyA(hHandle, "nSecurityLevel", aszLevels[k / 2]);
        SentivoSetPropertyA(hHandle, "bMovementDetection", aszMovement[k % 2]);
        double dScore = -1.0;
        const int32_t nCode = SentivoEvaluateLiveliness(hHandle, &dScore);
        if (nCode > 0 || (nCode == 0 && !(dScore >= 0.0 && dScore <= 100.00000000000002)))
            std::abort();
    }
    return 0;
}
