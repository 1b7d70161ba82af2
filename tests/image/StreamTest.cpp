#include "image/Stream.h"

#include "ImageTestSupport.h"
#include "MemoryStream.h"

TEST(Stream, ByteOrderAndTexts)
{
    // Host order (little-endian); a text is its length with the terminator,
    // then the text and its terminator.
    ClMemoryStream stream;
    stream.WriteValue<int16_t>(-2);
    stream.WriteText("ab");
    EXPECT_EQ(stream.m_Bytes, (Bytes{0xFE, 0xFF, 3, 0, 0, 0, 'a', 'b', 0}));
    // A length of 0 leaves the text null; a missing terminator is supplied.
    stream.m_Bytes.insert(stream.m_Bytes.end(), {0, 0, 0, 0, 3, 0, 0, 0, 'x', 'y', 'z'});
    stream.m_nPosition = 2;
    char* szTexts[3] = {};
    for (char*& szText : szTexts)
        stream.ReadText(szText);
    EXPECT_STREQ(szTexts[0], "ab");
    EXPECT_EQ(szTexts[1], nullptr);
    EXPECT_STREQ(szTexts[2], "xy");

    // Swapping reverses values, the length of a text included, but not the
    // bytes of a text or a block.
    ClMemoryStream swapped;
    swapped.SetSwapOnWrite(true);
    swapped.WriteValue<uint16_t>(0x1234);
    swapped.WriteValue(1.0);
    swapped.WriteText("ab");
    swapped.WriteBlock("xy", 2);
    EXPECT_EQ(swapped.m_Bytes,
              (Bytes{0x12, 0x34, 0x3F, 0xF0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 3, 'a', 'b', 0, 'x', 'y'}));
    uint16_t n16 = 0;
    double d = 0;
    swapped.SetSwapOnRead(true);
    swapped.ReadValue(n16);
    swapped.ReadValue(d);
    swapped.ReadText(szTexts[0]); // the old text is freed
    EXPECT_EQ(std::make_tuple(n16, d, std::string(szTexts[0])),
              std::make_tuple(uint16_t{0x1234}, 1.0, std::string("ab")));
    for (char* szText : szTexts)
        delete[] szText;
}

TEST(Stream, ShortReadsAndPendingBits)
{
    ClMemoryStream stream;
    stream.m_Bytes = {1, 2};
    uint32_t n32 = 0;
    ExpectThrows<ClExStreamUnexpectedEnd>([&] { stream.ReadValue(n32); }, ZRC_ERROR_UNEXPECTED_EOF,
                                          "Unexpected end of stream");
    stream.SetStrict(false); // lax: the count moved, zeros for the bytes not read
    stream.m_nPosition = 0;
    EXPECT_EQ(stream.ReadValue(n32), 2u);
    EXPECT_EQ(n32, 0x0201u);

    // Unflushed bits block every transfer before it moves a byte.
    stream.SetPendingBits(3);
    stream.m_nPosition = 0;
    char* szText = nullptr;
    const char* szRemark = "the last bit I/O was finish with out bitflush.";
    ExpectThrows([&] { stream.ReadValue(n32); }, ZRC_ERROR_CURRUPT_DATA, szRemark);
    ExpectThrows([&] { stream.ReadText(szText); }, ZRC_ERROR_CURRUPT_DATA, szRemark);
    ExpectThrows([&] { stream.WriteBlock("a", 1); }, ZRC_ERROR_CURRUPT_DATA, szRemark);
    EXPECT_EQ(stream.m_nPosition, 0u);
    EXPECT_EQ(stream.m_Bytes.size(), 2u);
}
