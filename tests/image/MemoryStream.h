#pragma once
// A stream over a byte vector, for the tests of the stream and of what is
// saved through it. Writes stop at an optional capacity.
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <utility>
#include <vector>

#include "image/Stream.h"

using Bytes = std::vector<uint8_t>;

class ClMemoryStream : public ClStream
{
public:
    using ClStream::SetPendingBits;

    explicit ClMemoryStream(Bytes bytes = {}, size_t nCapacity = SIZE_MAX)
        : m_Bytes(std::move(bytes)), m_nCapacity(nCapacity)
    {
    }
    uint32_t Write(const void* pData, uint32_t nBytes) override
    {
        const size_t nRoom = m_nCapacity > m_Bytes.size() ? m_nCapacity - m_Bytes.size() : 0;
        const uint32_t nMoved = static_cast<uint32_t>(std::min<size_t>(nBytes, nRoom));
        const uint8_t* p = static_cast<const uint8_t*>(pData);
        m_Bytes.insert(m_Bytes.end(), p, p + nMoved);
        return nMoved;
    }
    uint32_t Read(void* pData, uint32_t nBytes) override
    {
        const uint32_t nMoved =
            static_cast<uint32_t>(std::min<size_t>(nBytes, m_Bytes.size() - m_nPosition));
        std::memcpy(pData, m_Bytes.data() + m_nPosition, nMoved);
        m_nPosition += nMoved;
        return nMoved;
    }

    Bytes m_Bytes;
    size_t m_nPosition = 0;
    size_t m_nCapacity;
};
