#pragma once
// A stream over a byte vector, for the tests of the stream and of what is
// saved through it.
#include <algorithm>
#include <cstring>
#include <vector>

#include "image/Stream.h"

using Bytes = std::vector<uint8_t>;

struct ClMemoryStream : ClStream
{
    using ClStream::SetPendingBits;
    uint32_t Write(const void* pData, uint32_t nBytes) override
    {
        m_Bytes.insert(m_Bytes.end(), static_cast<const uint8_t*>(pData),
                       static_cast<const uint8_t*>(pData) + nBytes);
        return nBytes;
    }
    uint32_t Read(void* pData, uint32_t nBytes) override
    {
        const size_t nMoved = std::min<size_t>(nBytes, m_Bytes.size() - m_nPosition);
        std::memcpy(pData, m_Bytes.data() + m_nPosition, nMoved);
        m_nPosition += nMoved;
        return static_cast<uint32_t>(nMoved);
    }
    Bytes m_Bytes;
    size_t m_nPosition = 0;
};
