#include <memory>

#include <gtest/gtest.h>

#include "parameters/ParameterContainer.h"
#include "ParameterTestSupport.h"

TEST(ParameterString, SetTextCopiesIntoTheBoundBuffer)
{
    char szBuffer[6] = "abc";
    char* szMember = szBuffer;
    ClParameterContainer root;
    TpParameterString<char*, ClParameter, 0>* pString = root.AddString("Version");
    pString->Bind(szMember, sizeof(szBuffer), ClParameter::eFlagOutput);
    pString->SetText("hello"); // five letters and the terminator fill the buffer
    EXPECT_STREQ(szBuffer, "hello");
    ExpectThrows([&] { pString->SetText("hello!"); }, ZRC_ERROR_TEMPLATE_SIZE,
                 "String memeory ar too small");
    ExpectThrows([&] { pString->SetText(nullptr); }, ZRC_ERROR_BAD_POINTER, "Point is Null");
    EXPECT_STREQ(szBuffer, "hello");
    szMember = nullptr; // a null member is refused rather than written through
    ExpectThrows([&] { pString->SetText("x"); }, ZRC_ERROR_BAD_POINTER, "Point is Null");

    // A capacity fixed by the type, kept by a clone.
    char szSmall[4] = "";
    char* szSmallMember = szSmall;
    TpParameterString<char*, ClParameter, 4> fixed;
    fixed.Bind(szSmallMember);
    std::unique_ptr<ClParameter> pCopy(fixed.Clone());
    ExpectThrows([&] { pCopy->SetText("abcd"); }, ZRC_ERROR_TEMPLATE_SIZE,
                 "String memeory ar too small");
    pCopy->SetText("xyz");
    EXPECT_STREQ(szSmall, "xyz");
}

TEST(ParameterString, GetTextNeedsRoomForTheTerminator)
{
    char szVersion[16] = "2.0.1012.0"; // ten characters
    char* szMember = szVersion;
    TpParameterString<char*, ClParameter, 0> parameter;
    parameter.Bind(szMember, sizeof(szVersion));
    char szOut[16] = "XXXXXXXXXXXXXXX";
    uint32_t nSize = 10;
    EXPECT_FALSE(parameter.GetText(szOut, nSize));
    EXPECT_EQ(nSize, 11u);
    EXPECT_STREQ(szOut, "XXXXXXXXXXXXXXX");
    EXPECT_EQ(Text(parameter), "2.0.1012.0");
    EXPECT_EQ(Text(parameter, true), "2.0.1012.0");

    // A null buffer that would be written to is an error for the value, while
    // too small a size only measures; the default has no null check.
    ExpectThrows([&] { parameter.GetText(nullptr, nSize); }, ZRC_ERROR_BAD_POINTER,
                 "Point is Null");
    nSize = 0;
    EXPECT_FALSE(parameter.GetText(nullptr, nSize));
    EXPECT_EQ(nSize, 11u);
    EXPECT_TRUE(parameter.GetDefaultText(nullptr, nSize));
}
