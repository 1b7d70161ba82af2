#pragma once
// ClStream: an abstract byte stream. A concrete stream supplies Write and
// Read; the typed operations on top handle byte order, unflushed bit-wise
// transfers and short transfers the same way for every value. The library
// itself has no concrete stream: tools and tests bring their own.
#include <cstdint>
#include <type_traits>

class ClStream
{
public:
    ClStream() = default;
    ClStream(const ClStream&) = delete;
    ClStream& operator=(const ClStream&) = delete;
    virtual ~ClStream() = default;

    // Move up to nBytes and return the count actually moved.
    virtual uint32_t Write(const void* pData, uint32_t nBytes) = 0;
    virtual uint32_t Read(void* pData, uint32_t nBytes) = 0;

    bool IsStrict() const { return m_bStrict; }
    void SetStrict(bool bStrict) { m_bStrict = bStrict; }
    bool GetSwapOnRead() const { return m_bSwapOnRead; }
    void SetSwapOnRead(bool bSwap) { m_bSwapOnRead = bSwap; }
    bool GetSwapOnWrite() const { return m_bSwapOnWrite; }
    void SetSwapOnWrite(bool bSwap) { m_bSwapOnWrite = bSwap; }
    uint32_t GetPendingBits() const { return m_nPendingBits; }

    // Typed values of 8, 16, 32 and 64 bits, integer or floating point. Each
    // refuses to run while bits are pending (-39), reverses the bytes when
    // the stream swaps, and in strict mode throws ClExStreamUnexpectedEnd
    // (-201) for a short transfer. The result is the count of bytes moved.
    template <typename T> uint32_t WriteValue(T value)
    {
        static_assert(std::is_arithmetic_v<T> &&
                          (sizeof(T) == 1 || sizeof(T) == 2 || sizeof(T) == 4 || sizeof(T) == 8),
                      "a stream value is a number of 8, 16, 32 or 64 bits");
        return WriteBytes(&value, sizeof(T), true);
    }
    template <typename T> uint32_t ReadValue(T& value)
    {
        static_assert(std::is_arithmetic_v<T> &&
                          (sizeof(T) == 1 || sizeof(T) == 2 || sizeof(T) == 4 || sizeof(T) == 8),
                      "a stream value is a number of 8, 16, 32 or 64 bits");
        // A short read in lax mode leaves zeros in the bytes not read.
        T read{};
        const uint32_t nRead = ReadBytes(&read, sizeof(T), true);
        value = read;
        return nRead;
    }

    // A text: its 32-bit length with the terminator, then the text and its
    // terminator. A null text goes out as length 1 and a single zero byte.
    void WriteText(const char* szText);
    // Frees szText (allocated with new[]) and reads a text into a new block.
    // A length of 0 or a failed allocation leaves szText null without error.
    // The block always ends with a terminator, whatever the stream held.
    void ReadText(char*& szText);

    // Raw blocks: no byte swapping.
    uint32_t WriteBlock(const void* pData, uint32_t nBytes)
    {
        return WriteBytes(pData, nBytes, false);
    }
    uint32_t ReadBlock(void* pData, uint32_t nBytes) { return ReadBytes(pData, nBytes, false); }

protected:
    // For a stream that offers a bit-wise mode: the bits not flushed yet.
    void SetPendingBits(uint32_t nBits) { m_nPendingBits = nBits; }

private:
    uint32_t WriteBytes(const void* pData, uint32_t nBytes, bool bSwap);
    uint32_t ReadBytes(void* pData, uint32_t nBytes, bool bSwap);
    void CheckNoPendingBits() const;
    void CheckCount(uint32_t nMoved, uint32_t nExpected) const;

    // A new stream is strict: a record read short is an error, not garbage.
    bool m_bStrict = true;
    uint32_t m_nPendingBits = 0;
    bool m_bSwapOnRead = false;
    bool m_bSwapOnWrite = false;
};
