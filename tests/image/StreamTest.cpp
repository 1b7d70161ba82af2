#include <cstdint>
#include <functional>
#include <string>
#include <tuple>

#include <gtest/gtest.h>

#include "ImageTestSupport.h"
#include "MemoryStream.h"

TEST(Stream, ValuesInHostOrderOrSwapped)
{
    ClMemoryStream stream;
    stream.WriteValue<uint8_t>(0xAB);
    stream.WriteValue<int16_t>(-2);
    stream.WriteValue<uint32_t>(0x01020304u);
    stream.WriteValue(1.5f);
    EXPECT_EQ(stream.WriteValue(-0.1), 8u);
    // Little-endian host: the low byte first.
    EXPECT_EQ(Bytes(stream.m_Bytes.begin(), stream.m_Bytes.begin() + 7),
              (Bytes{0xAB, 0xFE, 0xFF, 0x04, 0x03, 0x02, 0x01}));
    EXPECT_EQ(stream.m_Bytes.size(), 19u);
    uint8_t n8 = 0;
    int16_t n16 = 0;
    uint32_t n32 = 0;
    float f = 0;
    double d = 0;
    stream.ReadValue(n8);
    stream.ReadValue(n16);
    stream.ReadValue(n32);
    stream.ReadValue(f);
    EXPECT_EQ(stream.ReadValue(d), 8u);
    EXPECT_EQ(std::make_tuple(n8, n16, n32, f, d),
              std::make_tuple(uint8_t{0xAB}, int16_t{-2}, 0x01020304u, 1.5f, -0.1));

    // Swapping reverses values, the length of a text included, but not the
    // bytes of a text or a block.
    ClMemoryStream swapped;
    swapped.SetSwapOnWrite(true);
    swapped.WriteValue<uint16_t>(0x1234);
    swapped.WriteValue(1.0);
    swapped.WriteText("ab");
    swapped.WriteBlock("xyz", 3);
    EXPECT_EQ(swapped.m_Bytes, (Bytes{0x12, 0x34, 0x3F, 0xF0, 0,   0,   0, 0,   0,   0,
                                      0,    0,    0,    3,    'a', 'b', 0, 'x', 'y', 'z'}));
    uint16_t n16u = 0;
    char* szText = nullptr;
    char block[4] = "";
    swapped.SetSwapOnRead(true);
    swapped.ReadValue(n16u);
    swapped.ReadValue(d);
    swapped.ReadText(szText);
    swapped.ReadBlock(block, 3);
    EXPECT_EQ(std::make_tuple(n16u, d, std::string(szText), std::string(block)),
              std::make_tuple(uint16_t{0x1234}, 1.0, std::string("ab"), std::string("xyz")));
    delete[] szText;
    swapped.SetSwapOnRead(false);
    swapped.m_nPosition = 0;
    swapped.ReadValue(n16u);
    EXPECT_EQ(n16u, 0x3412);
}

TEST(Stream, TextsCarryTheirLengthAndTerminator)
{
    ClMemoryStream stream;
    stream.WriteText("abc");
    stream.WriteText(nullptr);
    EXPECT_EQ(stream.m_Bytes, (Bytes{4, 0, 0, 0, 'a', 'b', 'c', 0, 1, 0, 0, 0, 0}));
    char* szText = new char[2]{'x', 0}; // replaced, not leaked
    stream.ReadText(szText);
    EXPECT_STREQ(szText, "abc");
    stream.ReadText(szText);
    EXPECT_STREQ(szText, "");

    // A length of 0 leaves the target null; a text whose terminator is
    // missing in the stream is terminated all the same.
    stream.m_Bytes.insert(stream.m_Bytes.end(), {0, 0, 0, 0, 3, 0, 0, 0, 'x', 'y', 'z'});
    stream.ReadText(szText);
    EXPECT_EQ(szText, nullptr);
    stream.ReadText(szText);
    EXPECT_STREQ(szText, "xy");
    delete[] szText;
}

TEST(Stream, StrictShortTransfersThrowAndLaxOnesReportTheCount)
{
    ClMemoryStream stream(Bytes{1, 2}, 3);
    uint32_t n32 = 0xFFFFFFFF;
    ExpectThrows<ClExStreamUnexpectedEnd>([&] { stream.ReadValue(n32); }, ZRC_ERROR_UNEXPECTED_EOF,
                                          "Unexpected end of stream");
    ExpectThrows<ClExStreamUnexpectedEnd>([&] { stream.WriteValue<uint16_t>(1); },
                                          ZRC_ERROR_UNEXPECTED_EOF);
    stream.m_Bytes = {5, 0, 0, 0, 'a'};
    stream.m_nPosition = 0;
    char* szText = nullptr;
    ExpectThrows<ClExStream>([&] { stream.ReadText(szText); }, ZRC_ERROR_UNEXPECTED_EOF);
    EXPECT_EQ(szText, nullptr);

    // Lax: the count moved, and zeros for the bytes not read.
    stream.SetStrict(false);
    stream.m_Bytes = {1, 2};
    stream.m_nPosition = 0;
    EXPECT_EQ(stream.ReadValue(n32), 2u);
    EXPECT_EQ(n32, 0x0201u);
    EXPECT_EQ(stream.ReadBlock(&n32, 4), 0u);
    EXPECT_EQ(stream.WriteValue<uint16_t>(1), 1u);
    EXPECT_EQ(stream.WriteBlock("abcd", 4), 0u);
    EXPECT_EQ(stream.m_Bytes, (Bytes{1, 2, 1}));
}

TEST(Stream, PendingBitsBlockEveryTransfer)
{
    ClMemoryStream stream(Bytes{1, 2, 3, 4, 5, 6, 7, 8});
    stream.SetPendingBits(3);
    uint8_t n8 = 0;
    double d = 0;
    char* szText = nullptr;
    const std::function<void()> transfers[] = {
        [&] { stream.ReadValue(n8); },          [&] { stream.ReadValue(d); },
        [&] { stream.ReadBlock(&d, 2); },       [&] { stream.ReadText(szText); },
        [&] { stream.WriteValue<int16_t>(1); }, [&] { stream.WriteText("a"); },
        [&] { stream.WriteBlock(&d, 2); }};
    for (const auto& transfer : transfers)
        ExpectThrows(transfer, ZRC_ERROR_CURRUPT_DATA,
                     "the last bit I/O was finish with out bitflush.");
    EXPECT_EQ(stream.m_nPosition, 0u);
    EXPECT_EQ(stream.m_Bytes.size(), 8u);
    stream.SetPendingBits(0);
    stream.ReadValue(n8);
    EXPECT_EQ(n8, 1);
}
