#include "image/Stream.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "sdk/Exception.h"

namespace
{

constexpr uint32_t kMaxValueSize = 8;

} // namespace

void ClStream::CheckNoPendingBits() const
{
    if (m_nPendingBits != 0)
        SENTIVO_THROW("the last bit I/O was finish with out bitflush.", ZRC_ERROR_CURRUPT_DATA);
}

void ClStream::CheckCount(uint32_t nMoved, uint32_t nExpected) const
{
    if (m_bStrict && nMoved != nExpected)
    {
        throw ClExStreamUnexpectedEnd("Unexpected end of stream", ZRC_ERROR_UNEXPECTED_EOF, false,
                                      __FILE__, __LINE__);
    }
}

uint32_t ClStream::WriteBytes(const void* pData, uint32_t nBytes, bool bSwap)
{
    CheckNoPendingBits();
    uint32_t nWritten = 0;
    if (bSwap && m_bSwapOnWrite && nBytes <= kMaxValueSize)
    {
        uint8_t reversed[kMaxValueSize];
        std::memcpy(reversed, pData, nBytes);
        std::reverse(reversed, reversed + nBytes);
        nWritten = Write(reversed, nBytes);
    }
    else
    {
        nWritten = Write(pData, nBytes);
    }
    CheckCount(nWritten, nBytes);
    return nWritten;
}

uint32_t ClStream::ReadBytes(void* pData, uint32_t nBytes, bool bSwap)
{
    CheckNoPendingBits();
    const uint32_t nRead = Read(pData, nBytes);
    if (bSwap && m_bSwapOnRead && nBytes <= kMaxValueSize)
    {
        uint8_t* pBytes = static_cast<uint8_t*>(pData);
        std::reverse(pBytes, pBytes + nBytes);
    }
    CheckCount(nRead, nBytes);
    return nRead;
}

void ClStream::WriteText(const char* szText)
{
    static const char kEmpty[1] = {'\0'};
    if (szText == nullptr)
        szText = kEmpty;
    const uint32_t nLength = static_cast<uint32_t>(std::strlen(szText)) + 1;
    WriteValue(nLength);
    WriteBlock(szText, nLength);
}

void ClStream::ReadText(char*& szText)
{
    delete[] szText;
    szText = nullptr;
    uint32_t nLength = 0;
    ReadValue(nLength);
    if (nLength == 0)
        return;
    char* szRead = new (std::nothrow) char[nLength]();
    if (szRead == nullptr)
        return;
    try
    {
        ReadBlock(szRead, nLength);
    }
    catch (...)
    {
        delete[] szRead;
        throw;
    }
    // The stream's bytes are not trusted to end the text.
    szRead[nLength - 1] = '\0';
    szText = szRead;
}
