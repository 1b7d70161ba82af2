#include <gtest/gtest.h>

#include "processing/Ip1to1Base.h"
#include "processing/Ip1to1BaseOld.h"
#include "processing/Ip2to1Base.h"
#include "support/ParameterTestSupport.h"

using namespace TestParameters;

namespace
{

struct ClNew1to1 : NewIpBase::ClIp1to1Base
{
    ClProcessorBase* NewInstance() const override { return nullptr; }
    const char* GetName() const override { return "ClNew1to1"; }
};
struct ClOld1to1 : ClIp1to1Base
{
    ClProcessorBase* NewInstance() const override { return nullptr; }
    const char* GetName() const override { return "ClOld1to1"; }
};
struct ClTwoToOne : ClIp2to1Base
{
    ClProcessorBase* NewInstance() const override { return nullptr; }
    const char* GetName() const override { return "ClTwoToOne"; }
};

const std::vector<std::string> kTypeTexts = {"unsigned char", "signed char",  "unsigned short",
                                             "signed short",  "unsigned int", "signed int",
                                             "float",         "double",       "default"};

} // namespace

TEST(IpBaseParameters, OneToOneBasesPublishTheirImagesAndOutputType)
{
    ClNew1to1 modern;
    ClParameterContainer container;
    modern.DefineParameters(container);
    EXPECT_EQ(ParametersOf(container), (std::vector<Published>{{"pInImage", 1}, {"pOutImage", 2}}));
    EXPECT_TRUE(container.FindChild("pInImage")->IsConnection());
    ClParameterInterface list;
    modern.DescribeInterface(list);
    EXPECT_EQ(RecordsOf(list), (std::vector<std::string>{"InImage|In: Original Image|0",
                                                         "OutImage|Out: Output Image|1"}));

    ClOld1to1 old;
    ClParameterContainer oldContainer;
    old.DefineParameters(oldContainer);
    EXPECT_EQ(ParametersOf(oldContainer),
              (std::vector<Published>{{"pInImage", 1}, {"pOutImage", 2}, {"OutImageType", 1}}));
    ClParameter* pType = oldContainer.FindChild("OutImageType");
    EXPECT_EQ(EntriesOf(pType), kTypeTexts);
    pType->SetText("signed short");
    EXPECT_EQ(old.m_eOutImageType, ClImage::eInt16);
    old.m_eOutImageType = ClImage::eFloat32;
    EXPECT_EQ(TextOf(pType), "float");

    ClParameterInterface oldList;
    old.DescribeInterface(oldList);
    ASSERT_EQ(oldList.GetCount(), 3u);
    const ClParameterInterface::ClParameter* pRecord = oldList.Find("OutImageType");
    ASSERT_NE(pRecord, nullptr);
    EXPECT_STREQ(pRecord->GetDescription(), "In: OutImage Datatype");
    EXPECT_EQ(pRecord->GetLower(), 0.0);
    EXPECT_EQ(pRecord->GetUpper(), 255.0);
    EXPECT_EQ(RecordEntries(*pRecord), kTypeTexts);
    const int32_t kValues[] = {1, 129, 2, 130, 4, 132, 196, 200, 255};
    for (uint32_t i = 0; i < 9; ++i)
        EXPECT_EQ(pRecord->GetEntryValues()[i], kValues[i]);
}

TEST(IpBaseParameters, TwoToOneBasePublishesGeometryAndKeepsMembersOnConnect)
{
    ClTwoToOne op;
    op.m_nOffsetX = 5;
    op.m_bSizeMustBeEqual = false;
    op.m_dFillColor = 9.0;
    ClParameterContainer container;
    op.ConnectParameters(container);
    EXPECT_EQ(ParametersOf(container), (std::vector<Published>{{"pInImage1", 1},
                                                               {"pInImage2", 1},
                                                               {"pOutImage", 2},
                                                               {"OutImageType", 1},
                                                               {"SizeMustBeEqual", 3},
                                                               {"FillColor", 3},
                                                               {"OffsetX", 3},
                                                               {"OffsetY", 3}}));
    // The members keep their values; the defaults are those of SetDefaults.
    EXPECT_EQ(op.m_nOffsetX, 5);
    EXPECT_FALSE(op.m_bSizeMustBeEqual);
    EXPECT_EQ(container.FindChild("OffsetX")->AsNumeric()->GetDefault(), 0.0);
    EXPECT_EQ(container.FindChild("FillColor")->AsNumeric()->GetDefault(), 0.0);
    EXPECT_EQ(container.FindChild("FillColor")->AsNumeric()->GetUpper(), 255.0);

    // The size switch is written in lower case.
    ClParameter* pEqual = container.FindChild("SizeMustBeEqual");
    EXPECT_EQ(EntriesOf(pEqual), (std::vector<std::string>{"false", "true"}));
    pEqual->SetText("true");
    EXPECT_TRUE(op.m_bSizeMustBeEqual);
    container.FindChild("OffsetY")->SetText("-3");
    EXPECT_EQ(op.m_nOffsetY, -3);

    ClParameterInterface list;
    op.DescribeInterface(list);
    EXPECT_EQ(RecordsOf(list),
              (std::vector<std::string>{
                  "InImage1|In1: Original Image|0", "InImage2|In2: 2nd Original Image|0",
                  "OutImage|Out: Output Image|1", "OutImageType|In: OutImage Datatype|0",
                  "SizeMustBeEqual|Bool: Size must be equal|0",
                  "FillColor|Double: Fillcolor for Offset-Images|0",
                  "OffsetX|Long: Offset of Image2 to Image1 in x-direction|0",
                  "OffsetY|Long: Offset of Image2 to Image1 in y-direction|0"}));
    EXPECT_EQ(RecordEntries(*list.Find("SizeMustBeEqual")),
              (std::vector<std::string>{"false", "true"}));
    EXPECT_EQ(list.Find("FillColor")->GetUpper(), 255.0);
    EXPECT_TRUE(list.Find("OffsetX")->IsUnlimited());
}
