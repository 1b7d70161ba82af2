#include <gtest/gtest.h>

#include "processing/Ip1to1Base.h"
#include "processing/Ip1to1BaseOld.h"
#include "processing/Ip2to1Base.h"
#include "support/ParameterTestSupport.h"

using namespace TestParameters;

namespace
{

template <typename Base> struct ClConcrete : Base
{
    ClProcessorBase* NewInstance() const override { return nullptr; }
    const char* GetName() const override { return "ClConcrete"; }
};

const char* const kTypeTexts = "unsigned char,signed char,unsigned short,signed short,"
                               "unsigned int,signed int,float,double,default";

} // namespace

TEST(IpBaseParameters, OneToOneBasesPublishTheirImagesAndOutputType)
{
    ClConcrete<NewIpBase::ClIp1to1Base> modern;
    ClParameterContainer container;
    modern.DefineParameters(container);
    EXPECT_EQ(ParametersOf(container), "pInImage:1 pOutImage:2");
    EXPECT_TRUE(container.FindChild("pInImage")->IsConnection());
    ClParameterInterface list;
    modern.DescribeInterface(list);
    EXPECT_EQ(RecordsOf(list), "InImage|In: Original Image|0; OutImage|Out: Output Image|1");

    ClConcrete<ClIp1to1Base> old;
    ClParameterContainer oldContainer;
    old.DefineParameters(oldContainer);
    EXPECT_EQ(ParametersOf(oldContainer), "pInImage:1 pOutImage:2 OutImageType:1");
    ClParameter* pType = oldContainer.FindChild("OutImageType");
    EXPECT_EQ(EntriesOf(pType), kTypeTexts);
    pType->SetText("signed short");
    EXPECT_EQ(old.m_eOutImageType, ClImage::eInt16);

    // The record is a byte from 0 to 255 whose values name the types.
    ClParameterInterface oldList;
    old.DescribeInterface(oldList);
    const ClParameterInterface::ClParameter* pRecord = oldList.Find("OutImageType");
    ASSERT_NE(pRecord, nullptr);
    EXPECT_STREQ(pRecord->GetDescription(), "In: OutImage Datatype");
    EXPECT_EQ(pRecord->GetUpper(), 255.0);
    EXPECT_EQ(EntriesOf(*pRecord), kTypeTexts);
    EXPECT_EQ(pRecord->GetEntryValues()[3], 130);
    EXPECT_EQ(pRecord->GetEntryValues()[8], 255);
}

TEST(IpBaseParameters, TwoToOneBasePublishesGeometryAndKeepsMembersOnConnect)
{
    ClConcrete<ClIp2to1Base> op;
    op.m_nOffsetX = 5;
    op.m_bSizeMustBeEqual = false;
    ClParameterContainer container;
    op.ConnectParameters(container);
    EXPECT_EQ(ParametersOf(container), "pInImage1:1 pInImage2:1 pOutImage:2 OutImageType:1 "
                                       "SizeMustBeEqual:3 FillColor:3 OffsetX:3 OffsetY:3");
    // The members keep their values; the defaults are those of SetDefaults.
    EXPECT_EQ(op.m_nOffsetX, 5);
    EXPECT_FALSE(op.m_bSizeMustBeEqual);
    EXPECT_EQ(container.FindChild("OffsetX")->AsNumeric()->GetDefault(), 0.0);
    EXPECT_EQ(container.FindChild("FillColor")->AsNumeric()->GetUpper(), 255.0);
    // The size switch is written in lower case.
    ClParameter* pEqual = container.FindChild("SizeMustBeEqual");
    EXPECT_EQ(EntriesOf(pEqual), "false,true");
    pEqual->SetText("true");
    EXPECT_TRUE(op.m_bSizeMustBeEqual);
    container.FindChild("OffsetY")->SetText("-3");
    EXPECT_EQ(op.m_nOffsetY, -3);

    ClParameterInterface list;
    op.DescribeInterface(list);
    EXPECT_EQ(RecordsOf(list),
              "InImage1|In1: Original Image|0; InImage2|In2: 2nd Original Image|0; "
              "OutImage|Out: Output Image|1; OutImageType|In: OutImage Datatype|0; "
              "SizeMustBeEqual|Bool: Size must be equal|0; "
              "FillColor|Double: Fillcolor for Offset-Images|0; "
              "OffsetX|Long: Offset of Image2 to Image1 in x-direction|0; "
              "OffsetY|Long: Offset of Image2 to Image1 in y-direction|0");
    EXPECT_EQ(EntriesOf(*list.Find("SizeMustBeEqual")), "false,true");
    EXPECT_TRUE(list.Find("OffsetX")->IsUnlimited());
}
