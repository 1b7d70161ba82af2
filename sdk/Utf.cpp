#include "sdk/Utf.h"

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <new>

#include "sdk/Exception.h"

namespace Sentivo
{

namespace
{

[[noreturn]] void ConversionFailed()
{
    errno = EILSEQ;
    throw ClExSystem("Conversions Error", __FILE__, __LINE__);
}

template <typename T> std::unique_ptr<T[]> Allocate(size_t nCount)
{
    T* p = new (std::nothrow) T[nCount];
    if (p == nullptr)
        SENTIVO_THROW_BAD_ALLOC();
    return std::unique_ptr<T[]>(p);
}

// Decodes one code point at s, or fails on any ill-formed sequence
// (overlong forms, surrogates, values above U+10FFFF, cut sequences).
uint32_t DecodeUtf8(const unsigned char*& s)
{
    const uint32_t c0 = *s++;
    if (c0 < 0x80)
        return c0;
    int nTrail;
    uint32_t nMin;
    uint32_t nCode;
    if ((c0 & 0xE0) == 0xC0)
    {
        nTrail = 1;
        nMin = 0x80;
        nCode = c0 & 0x1F;
    }
    else if ((c0 & 0xF0) == 0xE0)
    {
        nTrail = 2;
        nMin = 0x800;
        nCode = c0 & 0x0F;
    }
    else if ((c0 & 0xF8) == 0xF0)
    {
        nTrail = 3;
        nMin = 0x10000;
        nCode = c0 & 0x07;
    }
    else
    {
        ConversionFailed();
    }
    for (int i = 0; i < nTrail; ++i)
    {
        const uint32_t c = *s;
        if ((c & 0xC0) != 0x80) // also stops at the terminator
            ConversionFailed();
        ++s;
        nCode = (nCode << 6) | (c & 0x3F);
    }
    if (nCode < nMin || nCode > 0x10FFFF || (nCode >= 0xD800 && nCode <= 0xDFFF))
        ConversionFailed();
    return nCode;
}

// Decodes one code point of UTF-16, failing on an unpaired surrogate.
uint32_t DecodeUtf16(const char16_t*& s)
{
    const uint32_t c0 = *s++;
    if (c0 < 0xD800 || c0 > 0xDFFF)
        return c0;
    if (c0 > 0xDBFF)
        ConversionFailed();
    const uint32_t c1 = *s;
    if (c1 < 0xDC00 || c1 > 0xDFFF)
        ConversionFailed();
    ++s;
    return 0x10000 + ((c0 - 0xD800) << 10) + (c1 - 0xDC00);
}

size_t Utf8Length(uint32_t nCode)
{
    return nCode < 0x80 ? 1 : nCode < 0x800 ? 2 : nCode < 0x10000 ? 3 : 4;
}

} // namespace

size_t WideLength(const char16_t* szWide)
{
    size_t n = 0;
    while (szWide[n] != 0)
        ++n;
    return n;
}

std::unique_ptr<char[]> WideToNarrow(const char16_t* szWide)
{
    if (szWide == nullptr)
        return nullptr;
    // First the length, then the conversion, as two passes over the text.
    size_t nLength = 0;
    for (const char16_t* s = szWide; *s != 0;)
        nLength += Utf8Length(DecodeUtf16(s));
    std::unique_ptr<char[]> result = Allocate<char>(nLength + 1);
    char* d = result.get();
    for (const char16_t* s = szWide; *s != 0;)
    {
        const uint32_t c = DecodeUtf16(s);
        if (c < 0x80)
        {
            *d++ = static_cast<char>(c);
        }
        else if (c < 0x800)
        {
            *d++ = static_cast<char>(0xC0 | (c >> 6));
            *d++ = static_cast<char>(0x80 | (c & 0x3F));
        }
        else if (c < 0x10000)
        {
            *d++ = static_cast<char>(0xE0 | (c >> 12));
            *d++ = static_cast<char>(0x80 | ((c >> 6) & 0x3F));
            *d++ = static_cast<char>(0x80 | (c & 0x3F));
        }
        else
        {
            *d++ = static_cast<char>(0xF0 | (c >> 18));
            *d++ = static_cast<char>(0x80 | ((c >> 12) & 0x3F));
            *d++ = static_cast<char>(0x80 | ((c >> 6) & 0x3F));
            *d++ = static_cast<char>(0x80 | (c & 0x3F));
        }
    }
    *d = '\0';
    return result;
}

std::unique_ptr<char16_t[]> NarrowToWide(const char* szNarrow)
{
    if (szNarrow == nullptr)
        return nullptr;
    size_t nLength = 0;
    for (auto s = reinterpret_cast<const unsigned char*>(szNarrow); *s != 0;)
        nLength += DecodeUtf8(s) >= 0x10000 ? 2 : 1;
    std::unique_ptr<char16_t[]> result = Allocate<char16_t>(nLength + 1);
    char16_t* d = result.get();
    for (auto s = reinterpret_cast<const unsigned char*>(szNarrow); *s != 0;)
    {
        const uint32_t c = DecodeUtf8(s);
        if (c >= 0x10000)
        {
            *d++ = static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10));
            *d++ = static_cast<char16_t>(0xDC00 + ((c - 0x10000) & 0x3FF));
        }
        else
        {
            *d++ = static_cast<char16_t>(c);
        }
    }
    *d = 0;
    return result;
}

} // namespace Sentivo
