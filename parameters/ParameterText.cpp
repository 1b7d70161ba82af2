#include "parameters/ParameterText.h"

#include <cstdlib>
#include <cstring>

#include "sdk/Exception.h"

namespace ParameterText
{

ParsedNumber ParseNumber(const char* szText)
{
    // A null text is as unreadable as a malformed one.
    if (szText == nullptr)
        SENTIVO_THROW("Failed to set Parameter", ZRC_ERROR_INTERNAL);

    ParsedNumber number;
    const char* pUpper = std::strchr(szText, 'X');
    const char* pLower = std::strchr(szText, 'x');
    const char* pMark = pUpper;
    if (pMark == nullptr || (pLower != nullptr && pLower > pMark))
        pMark = pLower;

    char* pEnd = nullptr;
    if (pMark != nullptr)
    {
        // What stands in front of the letter is ignored: "0x1F" reads 31.
        number.bHex = true;
        number.nHex = std::strtoull(pMark + 1, &pEnd, 16);
    }
    else
    {
        number.dValue = std::strtod(szText, &pEnd);
    }
    if (*pEnd != '\0')
        SENTIVO_THROW("Failed to set Parameter", ZRC_ERROR_INTERNAL);
    return number;
}

void StripTrailingZeros(std::string& text)
{
    if (text.find('.') == std::string::npos)
        return;
    size_t n = text.size();
    // One digit stays behind the separator; a "," right before the zeros
    // counts as a separator too.
    while (n >= 2 && text[n - 1] == '0' && text[n - 2] != '.' && text[n - 2] != ',')
        --n;
    text.resize(n);
}

bool DeliverText(const char* szText, char* szBuffer, uint32_t& nSize, bool bStrict)
{
    const uint32_t nNeeded = static_cast<uint32_t>(std::strlen(szText)) + 1;
    const bool bFits = bStrict ? nSize > nNeeded : nSize >= nNeeded;
    nSize = nNeeded;
    if (!bFits)
        return false;
    if (szBuffer != nullptr)
        std::memcpy(szBuffer, szText, nNeeded);
    return true;
}

} // namespace ParameterText
