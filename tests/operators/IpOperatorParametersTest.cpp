#include <initializer_list>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "operators/IpConvertDataType.h"
#include "operators/IpCut.h"
#include "operators/IpScale.h"
#include "operators/IpSubtract.h"
#include "parameters/ParameterContainer.h"

namespace
{

// Defines the parameters of the processor in a fresh tree, sets each named
// one from its text (a null text only looks the name up) and returns the text
// of the last one set, or "no" and the first name not in the tree.
std::string SetByName(ClParameterProvider& processor,
                      std::initializer_list<std::pair<const char*, const char*>> settings)
{
    ClParameterContainer tree;
    processor.DefineParameters(tree);
    char szText[128] = "";
    for (const auto& [szName, szValue] : settings)
    {
        ClParameter* pParameter = tree.FindChild(szName);
        if (pParameter == nullptr)
            return std::string("no ") + szName;
        if (szValue != nullptr)
        {
            uint32_t nSize = sizeof(szText);
            pParameter->SetText(szValue);
            pParameter->GetText(szText, nSize);
        }
    }
    return szText;
}

} // namespace

TEST(IpOperatorParameters, NamedParametersOfTheBasesAndTheCutReachTheirMembers)
{
    // The bases' parameters, through an operator on each; the size switch is
    // written in lower case.
    ClIpScale scale;
    EXPECT_EQ(SetByName(scale, {{"pInImage", nullptr}, {"pOutImage", nullptr}}), "");
    ClIpConvertDataType convert;
    EXPECT_EQ(SetByName(convert, {{"OutImageType", "signed short"}}), "signed short");
    EXPECT_EQ(convert.m_eOutImageType, ClImage::eInt16);
    ClIpSubtract subtract;
    EXPECT_EQ(SetByName(subtract, {{"pInImage1", nullptr},
                                   {"pInImage2", nullptr},
                                   {"SizeMustBeEqual", "false"},
                                   {"OffsetY", "-3"}}),
              "-3");
    EXPECT_FALSE(subtract.m_bSizeMustBeEqual);
    EXPECT_EQ(subtract.m_nOffsetY, -3);

    // The cut's value parameters follow the pointers the cut reads.
    ClIpCut cut;
    int32_t nElsewhere = 11;
    cut.m_pnDestWidth = &nElsewhere;
    EXPECT_EQ(SetByName(cut, {{"mX0", "4"}, {"nDestWidth", "6"}}), "6");
    EXPECT_EQ(cut.m_nX0, 4);
    EXPECT_EQ(nElsewhere, 6);
    EXPECT_EQ(cut.m_nDestWidth, 0);
}
