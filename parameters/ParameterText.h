#pragma once
// The text forms shared by the typed parameters: reading numbers, printing
// them, and handing a text out under the in-out size rule.
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>

namespace ParameterText
{

// A numeric text, read either as a hexadecimal integer behind the later of
// the first "X" and the first "x", or as a floating-point number.
struct ParsedNumber
{
    bool bHex = false;
    uint64_t nHex = 0;
    double dValue = 0.0;
};
// Throws -101 "Failed to set Parameter" when the text does not parse to its end.
ParsedNumber ParseNumber(const char* szText);

// Strips the trailing zeros of a text that contains a ".", keeping one digit
// behind the separator ("1.500000" -> "1.5", "2.000000" -> "2.0").
void StripTrailingZeros(std::string& text);

// The in-out size rule of the text operations: nSize becomes the size needed
// (terminator included); a smaller given size writes nothing and gives false,
// a null buffer only measures. bStrict demands a size strictly larger than
// the one needed.
bool DeliverText(const char* szText, char* szBuffer, uint32_t& nSize, bool bStrict = false);

// Prints one value with a print format; a "*" in it takes nDecimals first.
template <typename V> std::string Print(const char* szFormat, int32_t nDecimals, V value)
{
    const bool bStar = std::strchr(szFormat, '*') != nullptr;
    auto print = [&](char* szBuffer, size_t nSize)
    {
        return bStar ? std::snprintf(szBuffer, nSize, szFormat, static_cast<int>(nDecimals), value)
                     : std::snprintf(szBuffer, nSize, szFormat, value);
    };
    const int nLength = print(nullptr, 0);
    if (nLength <= 0)
        return std::string();
    std::string text(static_cast<size_t>(nLength) + 1, '\0');
    print(&text[0], text.size());
    text.resize(static_cast<size_t>(nLength));
    return text;
}

} // namespace ParameterText
