// Feeds arbitrary names and values to the property functions in both widths,
// with arbitrary buffer sizes.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "FuzzInput.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize)
{
    if (nSize < 2)
        return 0;
    // Byte 0: the buffer size for the reads; then name and value, split at
    // the first NUL or in the middle.
    const uint32_t nBuffer = pData[0];
    const char* pText = reinterpret_cast<const char*>(pData + 1);
    const size_t nText = nSize - 1;
    const void* pSplit = std::memchr(pText, 0, nText);
    const size_t nName = pSplit != nullptr
                             ? static_cast<size_t>(static_cast<const char*>(pSplit) - pText)
                             : nText / 2;
    const std::string name(pText, nName);
    const std::string value(pText + nName + (pSplit != nullptr ? 1 : 0), pText + nText);
    const SentivoHandle hHandle = SentivoFuzz::Handle();

    SentivoSetPropertyA(hHandle, name.c_str(), value.c_str());
    std::vector<char> buffer(nBuffer + 1);
    uint32_t nValueSize = nBuffer;
    SentivoGetPropertyA(hHandle, name.c_str(), buffer.data(), &nValueSize);

    // The same bytes as UTF-16 code units, unpaired surrogates and all.
    auto widen = [](const char* p, size_t n)
    {
        std::u16string wide(n / 2, u'\0');
        std::memcpy(wide.data(), p, wide.size() * 2);
        for (char16_t& c : wide)
            c = c == 0 ? u'x' : c;
        return wide;
    };
    const std::u16string wideName = widen(pText, nName);
    const std::u16string wideValue = widen(pText + nName, nText - nName);
    SentivoSetPropertyW(hHandle, wideName.c_str(), wideValue.c_str());
    std::vector<char16_t> wideBuffer(nBuffer + 1);
    nValueSize = nBuffer;
    SentivoGetPropertyW(hHandle, wideName.c_str(), wideBuffer.data(), &nValueSize);

    // Back to the defaults, so that every input starts from the same state.
    SentivoSetPropertyA(hHandle, "nSecurityLevel", "1");
    SentivoSetPropertyA(hHandle, "bMovementDetection", "True");
    return 0;
}
