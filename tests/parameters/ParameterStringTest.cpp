#include <cstring>
#include <memory>

#include <gtest/gtest.h>

#include "parameters/ParameterContainer.h"
#include "ThrowsCode.h"

TEST(ParameterString, SetTextCopiesIntoTheBoundBuffer)
{
    char szBuffer[6] = "abc";
    char* szMember = szBuffer;
    ClParameterContainer root;
    TpParameterString<char*, ClParameter, 0>* pString = root.AddString("Version");
    pString->Bind(szMember, sizeof(szBuffer), ClParameter::eFlagOutput);
    EXPECT_TRUE(pString->IsString());
    EXPECT_EQ(pString->GetCapacity(), 6u);
    EXPECT_EQ(pString->GetFlags(), ClParameter::eFlagOutput);

    pString->SetText("hello"); // five letters and the terminator fill the buffer
    EXPECT_STREQ(szBuffer, "hello");
    EXPECT_THROWS_CODE(pString->SetText("hello!"), ClException, ZRC_ERROR_TEMPLATE_SIZE,
                       "String memeory ar too small");
    EXPECT_THROWS_CODE(pString->SetText(nullptr), ClException, ZRC_ERROR_BAD_POINTER,
                       "Point is Null");
    EXPECT_STREQ(szBuffer, "hello");
    pString->SetText("");
    EXPECT_STREQ(szBuffer, "");

    // A bound pointer that is null is refused rather than written through.
    szMember = nullptr;
    EXPECT_THROWS_CODE(pString->SetText("x"), ClException, ZRC_ERROR_BAD_POINTER, "Point is Null");
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

    nSize = 11;
    EXPECT_TRUE(parameter.GetText(szOut, nSize));
    EXPECT_STREQ(szOut, "2.0.1012.0");
    EXPECT_EQ(nSize, 11u);

    // A null buffer that would be written to is an error for the value...
    nSize = 11;
    EXPECT_THROWS_CODE(parameter.GetText(nullptr, nSize), ClException, ZRC_ERROR_BAD_POINTER,
                       "Point is Null");
    // ...while too small a size only measures.
    nSize = 0;
    EXPECT_FALSE(parameter.GetText(nullptr, nSize));
    EXPECT_EQ(nSize, 11u);

    // The default has no null check: it copies whenever the size allows.
    nSize = 11;
    EXPECT_TRUE(parameter.GetDefaultText(nullptr, nSize));
    std::memset(szOut, 0, sizeof(szOut));
    nSize = 16;
    EXPECT_TRUE(parameter.GetDefaultText(szOut, nSize));
    EXPECT_STREQ(szOut, "2.0.1012.0");
    EXPECT_EQ(nSize, 11u);
}

TEST(ParameterString, CompileTimeCapacityAndClone)
{
    char szBuffer[4] = "";
    char* szMember = szBuffer;
    TpParameterString<char*, ClParameter, 4> parameter;
    EXPECT_EQ(parameter.GetCapacity(), 4u);
    parameter.Bind(szMember);
    parameter.SetText("abc");
    EXPECT_STREQ(szBuffer, "abc");

    std::unique_ptr<ClParameter> pCopy(parameter.Clone());
    EXPECT_THROWS_CODE(pCopy->SetText("abcd"), ClException, ZRC_ERROR_TEMPLATE_SIZE,
                       "String memeory ar too small");
    pCopy->SetText("xy");
    EXPECT_STREQ(szBuffer, "xy");
}
