#include <cstdio>
#include <cstring>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "image/FpImage.h"
#include "parameters/ParameterContainer.h"
#include "ThrowsCode.h"

namespace
{

// Stands for the range selection of a later operator.
struct ClRangeUser
{
    enum EDataRangeType
    {
        eDataDependent = 0,
        eInputDependent = 1,
        eUserDependent = 2
    };
};

template <typename P> std::string Text(const P& parameter)
{
    char szBuffer[64];
    uint32_t nSize = sizeof(szBuffer);
    EXPECT_TRUE(parameter.GetText(szBuffer, nSize));
    return szBuffer;
}

} // namespace

TEST(ParameterEnumPointer, BoolReadsAndTakesTheExactWords)
{
    bool bMember = true;
    ClParameterContainer root;
    TpParameterEnumPointer<bool>* pBool = root.AddBool("bMovementDetection");
    pBool->Bind(bMember, ClParameter::eFlagInput | ClParameter::eFlagOutput);
    EXPECT_TRUE(pBool->IsEnum());
    EXPECT_FALSE(pBool->IsConnection());
    EXPECT_EQ(pBool->GetEntryCount(), 2u);
    EXPECT_EQ(Text(*pBool), "True");

    pBool->SetText("False");
    EXPECT_FALSE(bMember);
    EXPECT_EQ(Text(*pBool), "False");
    EXPECT_EQ(Text(*pBool), "False");

    EXPECT_THROWS_CODE(pBool->SetText("true"), ClExVelmoran, ZRC_ERROR_PARAM_OUT_OF_RANGE, nullptr);
    EXPECT_THROWS_CODE(pBool->SetText("1"), ClExVelmoran, ZRC_ERROR_PARAM_OUT_OF_RANGE, nullptr);
    EXPECT_THROWS_CODE(pBool->SetText(nullptr), ClExVelmoran, ZRC_ERROR_PARAM_OUT_OF_RANGE,
                       nullptr);
    EXPECT_FALSE(bMember);

    char szDefault[8];
    uint32_t nSize = sizeof(szDefault);
    EXPECT_TRUE(pBool->GetDefaultText(szDefault, nSize));
    EXPECT_STREQ(szDefault, "True");
}

TEST(ParameterEnumPointer, TextNeedsAStrictlyLargerBuffer)
{
    bool bMember = false; // "False" needs 6 bytes
    ClParameterContainer root;
    TpParameterEnumPointer<bool>* pBool = root.AddBool("b");
    pBool->Bind(bMember);
    char szBuffer[8] = "XXXXXXX";
    uint32_t nSize = 6;
    EXPECT_FALSE(pBool->GetText(szBuffer, nSize));
    EXPECT_EQ(nSize, 6u);
    EXPECT_STREQ(szBuffer, "XXXXXXX");
    nSize = 7;
    EXPECT_TRUE(pBool->GetText(nullptr, nSize));
    EXPECT_EQ(nSize, 6u);
    nSize = 7;
    EXPECT_TRUE(pBool->GetText(szBuffer, nSize));
    EXPECT_STREQ(szBuffer, "False");
}

TEST(ParameterEnumPointer, EmptyMapPrintsTheValueItself)
{
    ClImage image;
    ClImage* pInImage = nullptr;
    ClParameterContainer root;
    TpParameterEnumPointer<ClImage*>* pImage = root.AddImage("pInImage");
    pImage->Bind(pInImage, ClParameter::eFlagInput);
    EXPECT_TRUE(pImage->IsConnection());
    EXPECT_FALSE(pImage->IsEnum());
    EXPECT_EQ(pImage->AsEnum(), nullptr);
    EXPECT_EQ(Text(*pImage), "NULL");

    pInImage = &image;
    char szExpected[32];
    std::snprintf(szExpected, sizeof(szExpected), "%p", static_cast<void*>(&image));
    EXPECT_EQ(Text(*pImage), szExpected);
    EXPECT_THROWS_CODE(pImage->SetText("NULL"), ClExVelmoran, ZRC_ERROR_PARAM_OUT_OF_RANGE,
                       nullptr);

    // Not a connection: the number.
    int nMember = -42;
    TpParameterEnumPointer<int>* pInt = root.AddEnum<int>("nMode");
    pInt->Bind(nMember);
    EXPECT_EQ(Text(*pInt), "-42");
    pInt->SetConnection(true);
    EXPECT_NE(Text(*pInt), "-42");
    nMember = 0;
    EXPECT_EQ(Text(*pInt), "NULL");
}

TEST(ParameterEnumPointer, ListedValuesOnlyOnceTheMapHasEntries)
{
    ClRangeUser::EDataRangeType eRange = ClRangeUser::eUserDependent;
    ClParameterContainer root;
    auto* pRange = root.AddEnum<ClRangeUser::EDataRangeType>("eRangeType");
    pRange->Bind(eRange);
    pRange->AddEntry(ClRangeUser::eDataDependent, "DataDependent");
    pRange->AddEntry(ClRangeUser::eInputDependent, "InputDependent");
    EXPECT_EQ(pRange->AsEnum(), static_cast<ClParameterEnumInterface*>(pRange));

    char szBuffer[32];
    uint32_t nSize = sizeof(szBuffer);
    EXPECT_THROWS_CODE(pRange->GetText(szBuffer, nSize), ClExVelmoran, ZRC_ERROR_PARAM_OUT_OF_RANGE,
                       nullptr);
    pRange->AddEntry(ClRangeUser::eUserDependent, "UserDependent");
    EXPECT_EQ(Text(*pRange), "UserDependent");
    pRange->SetText("InputDependent");
    EXPECT_EQ(eRange, ClRangeUser::eInputDependent);

    // Content and unsigned char enumerations take entries the same way.
    ClImage::EContent eContent = ClImage::eGrayscale;
    auto* pContent = root.AddEnum<ClImage::EContent>("eContent");
    pContent->Bind(eContent);
    pContent->AddEntry(ClImage::eGrayscale, "Grayscale");
    pContent->AddEntry(ClImage::eRGB, "RGB");
    pContent->SetText("RGB");
    EXPECT_EQ(eContent, ClImage::eRGB);
    unsigned char nByte = 200;
    auto* pByte = root.AddEnum<unsigned char>("nByte");
    pByte->Bind(nByte);
    EXPECT_EQ(Text(*pByte), "200");
}

TEST(ParameterEnumPointer, EntriesAddAndRemove)
{
    long lMember = 1;
    TpParameterEnumPointer<long> parameter;
    parameter.Bind(lMember);
    parameter.AddEntry(1, "one");
    parameter.AddEntry(2, "two");
    // The same pair again is appended; the same text with another value is not.
    parameter.AddEntry(1, "one");
    EXPECT_EQ(parameter.GetEntryCount(), 3u);
    EXPECT_THROWS_CODE(parameter.AddEntry(3, "two"), ClExVelmoran, ZRC_ERROR_PARAM_VALUE_DUPLICATE,
                       nullptr);
    EXPECT_EQ(parameter.GetEntryCount(), 3u);
    parameter.AddEntry(1, "uno");
    parameter.AddEntry(2, "due");

    parameter.RemoveValue(1); // every entry of the value
    EXPECT_EQ(parameter.GetEntryCount(), 2u);
    EXPECT_STREQ(parameter.GetEntry(0).Text(), "two");
    EXPECT_STREQ(parameter.GetEntry(1).Text(), "due");

    parameter.AddEntry(2, "two");
    parameter.RemoveText("two"); // the first entry of the text only
    EXPECT_EQ(parameter.GetEntryCount(), 2u);
    EXPECT_STREQ(parameter.GetEntry(0).Text(), "due");
    EXPECT_STREQ(parameter.GetEntry(1).Text(), "two");

    // More entries than one growth step.
    for (long l = 10; l < 35; ++l)
        parameter.AddEntry(l, std::to_string(l).c_str());
    EXPECT_EQ(parameter.GetEntryCount(), 27u);
    parameter.SetText("34");
    EXPECT_EQ(lMember, 34);

    std::unique_ptr<ClParameter> pCopy(parameter.Clone());
    parameter.RemoveValue(34);
    EXPECT_EQ(pCopy->AsEnum()->GetEntryCount(), 27u);
    pCopy->SetText("12");
    EXPECT_EQ(lMember, 12);
}

TEST(ParameterEnumPointer, EntryTextMeasuresAndRefusesSmallBuffers)
{
    char* szMember = nullptr;
    static char szFirst[] = "first";
    TpParameterEnumPointer<char*> parameter;
    parameter.Bind(szMember);
    parameter.AddEntry(szFirst, "Entry");
    parameter.SetText("Entry");
    EXPECT_EQ(szMember, szFirst);

    ClParameterEnumInterface& entries = *parameter.AsEnum();
    EXPECT_EQ(entries.GetEntryText(0, nullptr, 0), 5u);
    char szBuffer[8] = "XXXXXXX";
    EXPECT_EQ(entries.GetEntryText(0, szBuffer, 5), 5u);
    EXPECT_STREQ(szBuffer, "");
    EXPECT_EQ(entries.GetEntryText(0, szBuffer, 6), 5u);
    EXPECT_STREQ(szBuffer, "Entry");
    EXPECT_THROWS_CODE(entries.GetEntryText(1, szBuffer, 6), ClExVelmoran,
                       ZRC_ERROR_PARAM_OUT_OF_RANGE, nullptr);
}
