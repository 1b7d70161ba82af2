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

namespace
{

template <typename P> std::string Parameters(P& processor)
{
    ClParameterContainer container;
    processor.DefineParameters(container);
    return ParametersOf(container);
}

template <typename P> std::string Records(P& processor)
{
    ClParameterInterface list;
    processor.DescribeInterface(list);
    return RecordsOf(list);
}

} // namespace

TEST(IpOperatorParameters, CutAndPlaneOperators)
{
    ClIpCut cut;
    ClParameterContainer container;
    cut.DefineParameters(container);
    EXPECT_EQ(ParametersOf(container),
              "nDestHeight:1 nDestWidth:1 mX0:1 mY0:1 pInImage:1 pOutImage:2");
    EXPECT_EQ(Records(cut), "DestHeight|In: Cut Height|0; DestWidth|In: Cut Width|0; "
                            "X0|In: Start X|0; Y0|In: Start Y|0; InImage|In: Original Image|0; "
                            "OutImage|Out: Clipping|1");
    // The value parameters follow the pointers the cut reads.
    container.FindChild("mX0")->SetText("4");
    EXPECT_EQ(cut.m_nX0, 4);
    int32_t nElsewhere = 11;
    cut.m_pnDestWidth = &nElsewhere;
    EXPECT_EQ(TextOf(container.FindChild("nDestWidth")), "11");
    container.FindChild("nDestWidth")->SetText("6");
    EXPECT_EQ(nElsewhere, 6);
    EXPECT_EQ(cut.m_nDestWidth, 0);

    ClIpSplitPlanes split;
    EXPECT_EQ(Parameters(split),
              "pInImage:1 pOutPlane[0]:6 pOutPlane[1]:6 pOutPlane[2]:6 pOutPlane[3]:6");
    EXPECT_EQ(Records(split), "InImage|In: Original Image|0");

    ClIpJoinPlanes join;
    join.m_eOutContent = ClImage::eRGB;
    ClParameterContainer joinContainer;
    join.ConnectParameters(joinContainer);
    EXPECT_EQ(ParametersOf(joinContainer),
              "pInPlane[0]:5 pInPlane[1]:5 pInPlane[2]:5 pInPlane[3]:5 dInFillcolors[0]:5 "
              "dInFillcolors[1]:5 dInFillcolors[2]:5 dInFillcolors[3]:5 eOutContent:3 "
              "bFillEmptyPlanes:3 pOutImage:2");
    ClParameter* pContent = joinContainer.FindChild("eOutContent");
    EXPECT_EQ(EntriesOf(pContent), "eUnknown,eGrayscale,eRGB,eRGBA,eHSV,eXYZ,eCIELab,eCIELUV");
    EXPECT_EQ(TextOf(pContent), "eRGB");
    pContent->SetText("eHSV");
    EXPECT_EQ(join.m_eOutContent, ClImage::eHSV);
    EXPECT_TRUE(std::isnan(joinContainer.FindChild("dInFillcolors[2]")->AsNumeric()->GetDefault()));
    EXPECT_EQ(Records(join), "OutImage|Out: Joined Image|1");
}

TEST(IpOperatorParameters, PointFourierAndTwoImageOperators)
{
    ClIpBinarizeGlobal binarize;
    binarize.m_dThreshold = 40.0;
    ClParameterContainer binarizeContainer;
    binarize.ConnectParameters(binarizeContainer);
    EXPECT_EQ(ParametersOf(binarizeContainer),
              "pInImage:1 pOutImage:2 Black:3 White:3 Threshold:3");
    EXPECT_EQ(binarize.m_dThreshold, 40.0);
    EXPECT_TRUE(std::isnan(binarizeContainer.FindChild("Threshold")->AsNumeric()->GetDefault()));
    EXPECT_EQ(Records(binarize),
              "InImage|In: Original Image|0; OutImage|Out: Output Image|1; "
              "Black|In: Pixelvalue of Black|0; White|In: Pixelvalue of White|0; "
              "Threshold|In: Binarization Threshold|0");

    ClIpScale scale;
    EXPECT_EQ(Parameters(scale), "pInImage:1 pOutImage:2 dScaleFactor:3");
    ClParameterInterface scaleList;
    scale.DescribeInterface(scaleList);
    EXPECT_STREQ(scaleList.Find("ScaleFactor")->GetDescription(), "In: Grey Value Multiplier");
    EXPECT_EQ(scaleList.Find("ScaleFactor")->GetUpper(), 255.0);

    ClIpHistogramEqualization equalise;
    EXPECT_EQ(Records(equalise), "InImage|In: Original Image|0; "
                                 "OutImage|Out: Output Image with euqalized histogram|1");

    Fourier::ClIpFourier2 fourier;
    fourier.m_bScaleNorm = false;
    ClParameterContainer fourierContainer;
    fourier.ConnectParameters(fourierContainer);
    EXPECT_EQ(ParametersOf(fourierContainer), "pInImage:1 pOutImage:2 bScaleNorm:1");
    ClParameter* pNorm = fourierContainer.FindChild("bScaleNorm");
    EXPECT_EQ(TextOf(pNorm), "False");
    pNorm->SetText("True");
    EXPECT_TRUE(fourier.m_bScaleNorm);

    ClIpSubtract subtract;
    ClParameterContainer subtractContainer;
    subtract.DefineParameters(subtractContainer);
    EXPECT_EQ(ParametersOf(subtractContainer),
              "pInImage1:1 pInImage2:1 pOutImage:2 OutImageType:1 SizeMustBeEqual:3 FillColor:3 "
              "OffsetX:3 OffsetY:3 LowerBound:3 UpperBound:3 Data Output Range:3");
    ClParameter* pRange = subtractContainer.FindChild("Data Output Range");
    EXPECT_EQ(EntriesOf(pRange), "DataDependent,InputDependent,UserDependent");
    pRange->SetText("UserDependent");
    EXPECT_EQ(subtract.m_eRangeType, ClIpSubtract::eUserDependent);
}
