#include <algorithm>
#include <cstdint>
#include <cstring>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "image/Stream.h"
#include "sdk/Exception.h"

namespace
{

// A stream over a byte vector; writes stop at an optional capacity.
class ClMemoryStream : public ClStream
{
public:
    using ClStream::SetPendingBits;

    explicit ClMemoryStream(std::vector<uint8_t> bytes = {}, size_t nCapacity = SIZE_MAX)
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

    std::vector<uint8_t> m_Bytes;
    size_t m_nPosition = 0;
    size_t m_nCapacity;
};

using Bytes = std::vector<uint8_t>;

int32_t CodeOf(const ClException& e)
{
    return e.GetCode();
}

} // namespace

TEST(Stream, TypedValuesRoundTripInHostOrder)
{
    ClMemoryStream stream;
    EXPECT_TRUE(stream.IsStrict());
    EXPECT_EQ(stream.WriteValue<uint8_t>(0xAB), 1u);
    EXPECT_EQ(stream.WriteValue<int16_t>(-2), 2u);
    EXPECT_EQ(stream.WriteValue<uint32_t>(0x01020304u), 4u);
    EXPECT_EQ(stream.WriteValue(1.5f), 4u);
    EXPECT_EQ(stream.WriteValue(-0.1), 8u);
    EXPECT_EQ(stream.m_Bytes.size(), 19u);
    // Little-endian host: the low byte first.
    EXPECT_EQ(Bytes(stream.m_Bytes.begin(), stream.m_Bytes.begin() + 7),
              (Bytes{0xAB, 0xFE, 0xFF, 0x04, 0x03, 0x02, 0x01}));

    uint8_t n8 = 0;
    int16_t n16 = 0;
    uint32_t n32 = 0;
    float f = 0;
    double d = 0;
    EXPECT_EQ(stream.ReadValue(n8), 1u);
    EXPECT_EQ(stream.ReadValue(n16), 2u);
    EXPECT_EQ(stream.ReadValue(n32), 4u);
    EXPECT_EQ(stream.ReadValue(f), 4u);
    EXPECT_EQ(stream.ReadValue(d), 8u);
    EXPECT_EQ(n8, 0xAB);
    EXPECT_EQ(n16, -2);
    EXPECT_EQ(n32, 0x01020304u);
    EXPECT_EQ(f, 1.5f);
    EXPECT_EQ(d, -0.1);
}

TEST(Stream, SwappingReversesValuesButNotTextsOrBlocks)
{
    ClMemoryStream stream;
    stream.SetSwapOnWrite(true);
    stream.WriteValue<uint16_t>(0x1234);
    stream.WriteValue<int32_t>(0x0A0B0C0D);
    stream.WriteValue<uint8_t>(7);
    stream.WriteText("ab");
    const uint8_t block[3] = {1, 2, 3};
    stream.WriteBlock(block, 3);
    EXPECT_EQ(stream.m_Bytes,
              (Bytes{0x12, 0x34, 0x0A, 0x0B, 0x0C, 0x0D, 7, 0, 0, 0, 3, 'a', 'b', 0, 1, 2, 3}));

    // Reading the same bytes back with swapping on restores the values.
    stream.SetSwapOnRead(true);
    uint16_t n16 = 0;
    int32_t n32 = 0;
    uint8_t n8 = 0;
    char* szText = nullptr;
    uint8_t readBlock[3] = {};
    stream.ReadValue(n16);
    stream.ReadValue(n32);
    stream.ReadValue(n8);
    stream.ReadText(szText);
    stream.ReadBlock(readBlock, 3);
    EXPECT_EQ(n16, 0x1234);
    EXPECT_EQ(n32, 0x0A0B0C0D);
    EXPECT_EQ(n8, 7);
    EXPECT_STREQ(szText, "ab");
    EXPECT_EQ(std::memcmp(readBlock, block, 3), 0);
    delete[] szText;

    // Without swapping on read the bytes come back reversed.
    ClMemoryStream plain(Bytes{0x12, 0x34, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0xF0, 0x3F});
    plain.ReadValue(n16);
    EXPECT_EQ(n16, 0x3412);
    plain.SetSwapOnRead(true);
    double d = 0;
    plain.m_Bytes = Bytes{0x3F, 0xF0, 0, 0, 0, 0, 0, 0};
    plain.m_nPosition = 0;
    plain.ReadValue(d);
    EXPECT_EQ(d, 1.0);
}

TEST(Stream, TextsCarryTheirLengthAndTerminator)
{
    ClMemoryStream stream;
    stream.WriteText("abc");
    stream.WriteText(nullptr);
    stream.WriteText("");
    EXPECT_EQ(stream.m_Bytes, (Bytes{4, 0, 0, 0, 'a', 'b', 'c', 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0}));

    char* szText = new char[2]{'x', 0}; // replaced, not leaked
    stream.ReadText(szText);
    EXPECT_STREQ(szText, "abc");
    stream.ReadText(szText);
    EXPECT_STREQ(szText, "");
    delete[] szText;

    // A length of 0 leaves the target null.
    ClMemoryStream zero(Bytes{0, 0, 0, 0});
    szText = new char[1]{0};
    zero.ReadText(szText);
    EXPECT_EQ(szText, nullptr);

    // A text without its terminator in the stream is still terminated.
    ClMemoryStream unterminated(Bytes{3, 0, 0, 0, 'x', 'y', 'z'});
    unterminated.ReadText(szText);
    EXPECT_STREQ(szText, "xy");
    delete[] szText;
}

TEST(Stream, StrictShortTransfersThrowAndLaxOnesReportTheCount)
{
    ClMemoryStream stream(Bytes{0x01, 0x02});
    uint32_t n32 = 0xFFFFFFFF;
    try
    {
        stream.ReadValue(n32);
        ADD_FAILURE() << "a short read in strict mode must throw";
    }
    catch (const ClExStream& e)
    {
        EXPECT_NE(dynamic_cast<const ClExStreamUnexpectedEnd*>(&e), nullptr);
        EXPECT_EQ(CodeOf(e), ZRC_ERROR_UNEXPECTED_EOF);
        EXPECT_NE(std::strstr(e.GetMessage(), "Unexpected end of stream"), nullptr);
    }

    ClMemoryStream lax(Bytes{0x01, 0x02});
    lax.SetStrict(false);
    EXPECT_EQ(lax.ReadValue(n32), 2u);
    EXPECT_EQ(n32, 0x0201u);
    uint8_t block[4] = {9, 9, 9, 9};
    EXPECT_EQ(lax.ReadBlock(block, 4), 0u);

    // A text whose bytes run short.
    ClMemoryStream shortText(Bytes{5, 0, 0, 0, 'a'});
    char* szText = nullptr;
    EXPECT_THROW(shortText.ReadText(szText), ClExStreamUnexpectedEnd);
    EXPECT_EQ(szText, nullptr);

    // Writes that do not fit.
    ClMemoryStream full(Bytes{}, 3);
    EXPECT_THROW(full.WriteValue<uint32_t>(1), ClExStreamUnexpectedEnd);
    full.SetStrict(false);
    EXPECT_EQ(full.WriteValue<uint16_t>(1), 0u);
    EXPECT_EQ(full.WriteBlock("abcd", 4), 0u);
    EXPECT_EQ(full.m_Bytes.size(), 3u);
}

TEST(Stream, PendingBitsBlockEveryTransfer)
{
    ClMemoryStream stream(Bytes{1, 2, 3, 4, 5, 6, 7, 8});
    stream.SetPendingBits(3);
    EXPECT_EQ(stream.GetPendingBits(), 3u);
    uint8_t n8 = 0;
    double d = 0;
    char* szText = nullptr;
    uint8_t block[2];
    auto expectPending = [](auto operation)
    {
        try
        {
            operation();
            ADD_FAILURE() << "pending bits must stop the transfer";
        }
        catch (const ClException& e)
        {
            EXPECT_EQ(e.GetCode(), ZRC_ERROR_CURRUPT_DATA);
            EXPECT_NE(std::strstr(e.GetMessage(), "the last bit I/O was finish with out bitflush."),
                      nullptr);
        }
    };
    expectPending([&] { stream.ReadValue(n8); });
    expectPending([&] { stream.ReadValue(d); });
    expectPending([&] { stream.ReadBlock(block, 2); });
    expectPending([&] { stream.ReadText(szText); });
    expectPending([&] { stream.WriteValue<int16_t>(1); });
    expectPending([&] { stream.WriteText("a"); });
    expectPending([&] { stream.WriteBlock(block, 2); });
    EXPECT_EQ(stream.m_nPosition, 0u);
    EXPECT_EQ(stream.m_Bytes.size(), 8u);

    stream.SetPendingBits(0);
    stream.ReadValue(n8);
    EXPECT_EQ(n8, 1);
}
