#include <cmath>

#include <gtest/gtest.h>

#include "operators/IpBinarizeGlobal.h"
#include "operators/IpCut.h"
#include "operators/IpFourier2.h"
#include "operators/IpHistogramEqualization.h"
#include "operators/IpJoinPlanes.h"
#include "operators/IpScale.h"
#include "operators/IpSplitPlanes.h"
#include "operators/IpSubtract.h"
#include "support/ParameterTestSupport.h"

using namespace TestParameters;

TEST(IpOperatorParameters, CutParametersFollowThePointersItReads)
{
    ClIpCut cut;
    ClParameterContainer container;
    cut.DefineParameters(container);
    EXPECT_EQ(ParametersOf(container), (std::vector<Published>{{"nDestHeight", 1},
                                                               {"nDestWidth", 1},
                                                               {"mX0", 1},
                                                               {"mY0", 1},
                                                               {"pInImage", 1},
                                                               {"pOutImage", 2}}));
    container.FindChild("mX0")->SetText("4");
    EXPECT_EQ(cut.m_nX0, 4);
    int32_t nElsewhere = 11;
    cut.m_pnDestWidth = &nElsewhere;
    EXPECT_EQ(TextOf(container.FindChild("nDestWidth")), "11");
    container.FindChild("nDestWidth")->SetText("6");
    EXPECT_EQ(nElsewhere, 6);
    EXPECT_EQ(cut.m_nDestWidth, 0);

    ClParameterInterface list;
    cut.DescribeInterface(list);
    EXPECT_EQ(RecordsOf(list),
              (std::vector<std::string>{
                  "DestHeight|In: Cut Height|0", "DestWidth|In: Cut Width|0", "X0|In: Start X|0",
                  "Y0|In: Start Y|0", "InImage|In: Original Image|0", "OutImage|Out: Clipping|1"}));
}

TEST(IpOperatorParameters, PlaneOperatorsPublishTheirPlanes)
{
    ClIpSplitPlanes split;
    ClParameterContainer splitContainer;
    split.DefineParameters(splitContainer);
    EXPECT_EQ(ParametersOf(splitContainer), (std::vector<Published>{{"pInImage", 1},
                                                                    {"pOutPlane[0]", 6},
                                                                    {"pOutPlane[1]", 6},
                                                                    {"pOutPlane[2]", 6},
                                                                    {"pOutPlane[3]", 6}}));
    ClParameterInterface splitList;
    split.DescribeInterface(splitList);
    EXPECT_EQ(RecordsOf(splitList), (std::vector<std::string>{"InImage|In: Original Image|0"}));

    ClIpJoinPlanes join;
    join.m_eOutContent = ClImage::eRGB;
    ClParameterContainer joinContainer;
    join.ConnectParameters(joinContainer);
    const std::vector<Published> published = ParametersOf(joinContainer);
    ASSERT_EQ(published.size(), 11u);
    EXPECT_EQ(published[0], (Published{"pInPlane[0]", 5}));
    EXPECT_EQ(published[7], (Published{"dInFillcolors[3]", 5}));
    EXPECT_EQ(published[8].sName, "eOutContent");
    EXPECT_EQ(published[9].sName, "bFillEmptyPlanes");
    EXPECT_EQ(published[10].sName, "pOutImage");
    ClParameter* pContent = joinContainer.FindChild("eOutContent");
    EXPECT_EQ(EntriesOf(pContent),
              (std::vector<std::string>{"eUnknown", "eGrayscale", "eRGB", "eRGBA", "eHSV", "eXYZ",
                                        "eCIELab", "eCIELUV"}));
    EXPECT_EQ(TextOf(pContent), "eRGB");
    pContent->SetText("eHSV");
    EXPECT_EQ(join.m_eOutContent, ClImage::eHSV);
    EXPECT_TRUE(std::isnan(joinContainer.FindChild("dInFillcolors[2]")->AsNumeric()->GetDefault()));
    EXPECT_EQ(EntriesOf(joinContainer.FindChild("bFillEmptyPlanes")),
              (std::vector<std::string>{"False", "True"}));
    ClParameterInterface joinList;
    join.DescribeInterface(joinList);
    EXPECT_EQ(RecordsOf(joinList), (std::vector<std::string>{"OutImage|Out: Joined Image|1"}));
}

TEST(IpOperatorParameters, PointOperatorsPublishTheirSettings)
{
    ClIpBinarizeGlobal binarize;
    binarize.m_dThreshold = 40.0;
    ClParameterContainer binarizeContainer;
    binarize.ConnectParameters(binarizeContainer);
    EXPECT_EQ(
        ParametersOf(binarizeContainer),
        (std::vector<Published>{
            {"pInImage", 1}, {"pOutImage", 2}, {"Black", 3}, {"White", 3}, {"Threshold", 3}}));
    EXPECT_EQ(binarize.m_dThreshold, 40.0);
    EXPECT_TRUE(std::isnan(binarizeContainer.FindChild("Threshold")->AsNumeric()->GetDefault()));
    ClParameterInterface binarizeList;
    binarize.DescribeInterface(binarizeList);
    EXPECT_EQ(RecordsOf(binarizeList),
              (std::vector<std::string>{
                  "InImage|In: Original Image|0", "OutImage|Out: Output Image|1",
                  "Black|In: Pixelvalue of Black|0", "White|In: Pixelvalue of White|0",
                  "Threshold|In: Binarization Threshold|0"}));

    ClIpScale scale;
    ClParameterContainer scaleContainer;
    scale.DefineParameters(scaleContainer);
    ASSERT_NE(scaleContainer.FindChild("dScaleFactor"), nullptr);
    scaleContainer.FindChild("dScaleFactor")->SetText("2.5");
    EXPECT_EQ(scale.m_dScaleFactor, 2.5);
    ClParameterInterface scaleList;
    scale.DescribeInterface(scaleList);
    const ClParameterInterface::ClParameter* pFactor = scaleList.Find("ScaleFactor");
    ASSERT_NE(pFactor, nullptr);
    EXPECT_STREQ(pFactor->GetDescription(), "In: Grey Value Multiplier");
    EXPECT_EQ(pFactor->GetUpper(), 255.0);

    ClIpHistogramEqualization equalise;
    ClParameterInterface equaliseList;
    equalise.DescribeInterface(equaliseList);
    EXPECT_STREQ(equaliseList.Find("OutImage")->GetDescription(),
                 "Out: Output Image with euqalized histogram");
}

TEST(IpOperatorParameters, FourierAndSubtractAddToTheirBases)
{
    Fourier::ClIpFourier2 fourier;
    fourier.m_bScaleNorm = false;
    ClParameterContainer fourierContainer;
    fourier.ConnectParameters(fourierContainer);
    EXPECT_EQ(ParametersOf(fourierContainer),
              (std::vector<Published>{{"pInImage", 1}, {"pOutImage", 2}, {"bScaleNorm", 1}}));
    EXPECT_FALSE(fourier.m_bScaleNorm);
    ClParameter* pNorm = fourierContainer.FindChild("bScaleNorm");
    EXPECT_EQ(pNorm->AsNumeric(), nullptr);
    EXPECT_EQ(TextOf(pNorm), "False");
    pNorm->SetText("True");
    EXPECT_TRUE(fourier.m_bScaleNorm);

    ClIpSubtract subtract;
    ClParameterContainer subtractContainer;
    subtract.DefineParameters(subtractContainer);
    const std::vector<Published> published = ParametersOf(subtractContainer);
    ASSERT_EQ(published.size(), 11u);
    EXPECT_EQ(published[8].sName, "LowerBound");
    EXPECT_EQ(published[9].sName, "UpperBound");
    EXPECT_EQ(published[10].sName, "Data Output Range");
    ClParameter* pRange = subtractContainer.FindChild("Data Output Range");
    EXPECT_EQ(EntriesOf(pRange),
              (std::vector<std::string>{"DataDependent", "InputDependent", "UserDependent"}));
    pRange->SetText("UserDependent");
    EXPECT_EQ(subtract.m_eRangeType, ClIpSubtract::eUserDependent);
    subtractContainer.FindChild("UpperBound")->SetText("100");
    EXPECT_EQ(subtract.m_dUpperBound, 100.0);
}
