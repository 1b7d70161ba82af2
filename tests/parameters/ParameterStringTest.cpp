// String parameters and their buffer sizes.
#include "parameters/ParameterString.h"

#include "ParameterTestSupport.h"

TEST(ParameterString, BufferSizesBothWays)
{
    char szBuffer[11] = "2.0.1012.0";
    char* szMember = szBuffer;
    TpParameterString<char*, ClParameter, 0> parameter;
    parameter.Bind(szMember, sizeof(szBuffer));
    // Reading: the size is in-out; too small reports what is needed and copies nothing.
    char szOut[16] = "XXXXXXXXXXXXXXX";
    uint32_t nSize = 10;
    EXPECT_FALSE(parameter.GetText(szOut, nSize));
    EXPECT_EQ(nSize, 11u);
    EXPECT_STREQ(szOut, "XXXXXXXXXXXXXXX");
    EXPECT_EQ(Text(parameter), "2.0.1012.0");

    // Writing: the text and its terminator must fit the bound buffer.
    parameter.SetText("1234567890");
    EXPECT_STREQ(szBuffer, "1234567890");
    ExpectThrows([&] { parameter.SetText("12345678901"); }, ZRC_ERROR_TEMPLATE_SIZE,
                 "String memeory ar too small");
    ExpectThrows([&] { parameter.SetText(nullptr); }, ZRC_ERROR_BAD_POINTER, "Point is Null");
    EXPECT_STREQ(szBuffer, "1234567890");
    szMember = nullptr; // a null member is refused rather than written through
    ExpectThrows([&] { parameter.SetText("x"); }, ZRC_ERROR_BAD_POINTER, "Point is Null");
}
