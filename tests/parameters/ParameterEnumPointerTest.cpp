#include <cstdio>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "image/FpImage.h"
#include "parameters/ParameterContainer.h"
#include "ParameterTestSupport.h"

TEST(ParameterEnumPointer, BoolTakesOnlyTheExactWords)
{
    bool bMember = true;
    ClParameterContainer root;
    TpParameterEnumPointer<bool>* pBool = root.AddBool("bMovementDetection");
    pBool->Bind(bMember, ClParameter::eFlagInput);
    EXPECT_EQ(Text(*pBool), "True");
    pBool->SetText("False");
    EXPECT_FALSE(bMember);
    EXPECT_EQ(Text(*pBool), "False");
    EXPECT_EQ(Text(*pBool, true), "True");
    const char* refused[] = {"true", "1", nullptr};
    for (const char* szText : refused)
        ExpectThrows<ClExVelmoran>([&] { pBool->SetText(szText); }, ZRC_ERROR_PARAM_OUT_OF_RANGE);
    EXPECT_FALSE(bMember);

    // The text is copied only into a buffer strictly larger than it needs.
    char szBuffer[8] = "XXXXXXX";
    uint32_t nSize = 6; // "False" and its terminator
    EXPECT_FALSE(pBool->GetText(szBuffer, nSize));
    EXPECT_EQ(nSize, 6u);
    EXPECT_STREQ(szBuffer, "XXXXXXX");
}

TEST(ParameterEnumPointer, EmptyMapPrintsTheValueItself)
{
    ClImage image;
    ClImage* pInImage = nullptr;
    ClParameterContainer root;
    TpParameterEnumPointer<ClImage*>* pImage = root.AddImage("pInImage");
    pImage->Bind(pInImage, ClParameter::eFlagInput);
    EXPECT_EQ(pImage->AsEnum(), nullptr);
    EXPECT_EQ(Text(*pImage), "NULL");
    pInImage = &image;
    char szExpected[32];
    std::snprintf(szExpected, sizeof(szExpected), "%p", static_cast<void*>(&image));
    EXPECT_EQ(Text(*pImage), szExpected);
    ExpectThrows<ClExVelmoran>([&] { pImage->SetText("NULL"); }, ZRC_ERROR_PARAM_OUT_OF_RANGE);

    // Not a connection: the number.
    int nMember = -42;
    unsigned char nByte = 200;
    TpParameterEnumPointer<int>* pInt = root.AddEnum<int>("nMode");
    pInt->Bind(nMember);
    root.AddEnum<unsigned char>("nByte")->Bind(nByte);
    EXPECT_EQ(Text(*pInt), "-42");
    EXPECT_EQ(Text(*root.Find("nByte")), "200");
    pInt->SetConnection(true);
    nMember = 0;
    EXPECT_EQ(Text(*pInt), "NULL");
}

TEST(ParameterEnumPointer, EntriesAddRemoveAndList)
{
    long lMember = 3;
    TpParameterEnumPointer<long> parameter;
    parameter.Bind(lMember);
    parameter.AddEntry(1, "one");
    parameter.AddEntry(2, "two");
    char szBuffer[8] = "XXXXXXX";
    uint32_t nSize = sizeof(szBuffer); // a value unknown to a non-empty map has no text
    ExpectThrows<ClExVelmoran>([&] { parameter.GetText(szBuffer, nSize); },
                               ZRC_ERROR_PARAM_OUT_OF_RANGE);
    // The same pair again is appended; the same text with another value is not.
    parameter.AddEntry(1, "one");
    ExpectThrows<ClExVelmoran>([&] { parameter.AddEntry(3, "two"); },
                               ZRC_ERROR_PARAM_VALUE_DUPLICATE);
    EXPECT_EQ(parameter.GetEntryCount(), 3u);
    parameter.AddEntry(1, "uno");
    parameter.AddEntry(2, "due");
    parameter.SetText("uno");
    EXPECT_EQ(lMember, 1);
    EXPECT_EQ(Text(parameter), "one"); // the first entry of the value

    parameter.RemoveValue(1); // every entry of the value
    parameter.AddEntry(2, "two");
    parameter.RemoveText("two"); // the first entry of the text only
    ASSERT_EQ(parameter.GetEntryCount(), 2u);
    EXPECT_STREQ(parameter.GetEntry(0).Text(), "due");
    EXPECT_STREQ(parameter.GetEntry(1).Text(), "two");

    // More entries than one growth step; a clone has a map of its own.
    for (long l = 10; l < 35; ++l)
        parameter.AddEntry(l, std::to_string(l).c_str());
    std::unique_ptr<ClParameter> pCopy(parameter.Clone());
    parameter.RemoveValue(34);
    pCopy->SetText("34");
    EXPECT_EQ(lMember, 34);

    // Entry texts: measured with a null buffer, empty when they do not fit.
    ClParameterEnumInterface& entries = *parameter.AsEnum();
    EXPECT_EQ(entries.GetEntryText(0, nullptr, 0), 3u);
    EXPECT_EQ(entries.GetEntryText(0, szBuffer, 3), 3u);
    EXPECT_STREQ(szBuffer, "");
    EXPECT_EQ(entries.GetEntryText(0, szBuffer, 4), 3u);
    EXPECT_STREQ(szBuffer, "due");
    ExpectThrows<ClExVelmoran>([&] { entries.GetEntryText(26, szBuffer, 4); },
                               ZRC_ERROR_PARAM_OUT_OF_RANGE);
}
