// Enumeration and pointer parameters: exact entry texts and connected
// addresses.
#include "parameters/ParameterEnumPointer.h"

#include "ParameterTestSupport.h"

TEST(ParameterEnumPointer, EntriesTakeOnlyTheirExactTextAndConnectionsPrintTheirAddress)
{
    bool bMember = true;
    ClParameterContainer root;
    TpParameterEnumPointer<bool>* pBool = root.AddBool("bMovementDetection");
    pBool->Bind(bMember, ClParameter::eFlagInput);
    EXPECT_EQ(Text(*pBool), "True");
    pBool->SetText("False");
    EXPECT_EQ(Text(*pBool), "False");
    for (const char* szText : {"true", "1"})
        ExpectThrows<ClExVelmoran>([&] { pBool->SetText(szText); }, ZRC_ERROR_PARAM_OUT_OF_RANGE);
    EXPECT_FALSE(bMember);

    // The same text with another value is a duplicate; a value without an
    // entry has no text.
    long lMember = 3;
    TpParameterEnumPointer<long> parameter;
    parameter.Bind(lMember);
    parameter.AddEntry(1, "one");
    ExpectThrows<ClExVelmoran>([&] { parameter.AddEntry(2, "one"); },
                               ZRC_ERROR_PARAM_VALUE_DUPLICATE);
    ExpectThrows<ClExVelmoran>([&] { Text(parameter); }, ZRC_ERROR_PARAM_OUT_OF_RANGE);
    parameter.SetText("one");
    EXPECT_EQ(lMember, 1);

    // A connection prints NULL or its address.
    ClImage image;
    ClImage* pInImage = nullptr;
    TpParameterEnumPointer<ClImage*>* pImage = root.AddImage("pInImage");
    pImage->Bind(pInImage, ClParameter::eFlagInput);
    EXPECT_EQ(Text(*pImage), "NULL");
    pInImage = &image;
    char szExpected[32];
    std::snprintf(szExpected, sizeof(szExpected), "%p", static_cast<void*>(&image));
    EXPECT_EQ(Text(*pImage), szExpected);
}
