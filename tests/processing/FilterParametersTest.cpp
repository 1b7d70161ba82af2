// The parameters and description records of the two filter lines.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "operators/IpFilterMax.h"
#include "operators/IpFunctorMean.h"
#include "parameters/ParameterContainer.h"
#include "parameters/ParameterInterface.h"
#include "processing/IpFilterBase.h"

namespace
{

class ClPlainFilter : public ClIpFilterBase
{
public:
    ClProcessorBase* NewInstance() const override { return NewProcessor<ClPlainFilter>(); }
    const char* GetName() const override { return "ClPlainFilter"; }
};

std::string Text(ClParameterContainer& root, const char* szPath, bool bDefault = false)
{
    char szText[64];
    uint32_t nSize = sizeof(szText);
    ClParameter* p = root.Find(szPath);
    if (p == nullptr)
        return "missing";
    const bool bDone = bDefault ? p->GetDefaultText(szText, nSize) : p->GetText(szText, nSize);
    return bDone ? szText : "undelivered";
}

std::vector<std::string> Names(ClParameterContainer& root)
{
    std::vector<std::string> names;
    for (uint32_t i = 0; i < root.GetChildCount(); ++i)
        names.push_back(root.GetChild(i)->GetName());
    return names;
}

void SetImage(ClParameterContainer& root, const char* szPath, ClImage* pImage)
{
    auto* p = dynamic_cast<TpParameterEnumPointer<ClImage*>*>(root.Find(szPath));
    ASSERT_NE(nullptr, p) << szPath;
    p->StoreValue(pImage);
}

} // namespace

TEST(IpFilterBase, ParametersReachTheMembersAndDyReachesOnlyDx)
{
    ClPlainFilter filter;
    filter.m_nFilterWidth = 9;
    filter.m_nMode = eModeX;
    ClParameterContainer root;
    filter.ConnectParameters(root);
    EXPECT_EQ((std::vector<std::string>{"pInImage", "pOutImage", "nFilterWidth", "nMode",
                                        "pInDxImage", "pInDyImage"}),
              Names(root));
    EXPECT_EQ(9, filter.m_nFilterWidth);
    EXPECT_EQ("3", Text(root, "nFilterWidth", true));
    EXPECT_EQ("Mode X", Text(root, "nMode"));
    EXPECT_EQ("Mode XY", Text(root, "nMode", true));

    root.Find("nMode")->SetText("MODE_DIRECTED_ORTHO");
    EXPECT_EQ(eModeDirectedOrtho, filter.m_nMode);
    EXPECT_THROW(root.Find("nMode")->SetText("Mode Z"), ClException);
    root.Find("nFilterWidth")->SetText("15");
    EXPECT_EQ(15, filter.m_nFilterWidth);

    ClImage dx, dy, in;
    SetImage(root, "pInImage", &in);
    EXPECT_EQ(&in, filter.m_pInImage);
    SetImage(root, "pInDxImage", &dx);
    SetImage(root, "pInDyImage", &dy);
    EXPECT_EQ(&dy, filter.m_pInDxImage);
    EXPECT_EQ(nullptr, filter.m_pInDyImage);
    EXPECT_EQ(ClParameter::eFlagInput | ClParameter::eFlagOptional,
              root.Find("pInDyImage")->GetFlags());
    EXPECT_EQ(ClParameter::eFlagOutput, root.Find("pOutImage")->GetFlags());
}

TEST(IpFilterBase, DescriptionRecordsNameWidthModeAndImages)
{
    ClPlainFilter filter;
    ClParameterInterface list;
    filter.DescribeInterface(list);
    std::vector<std::string> names, texts;
    for (auto* p = list.First(); p != nullptr; p = p->GetNext())
    {
        names.push_back(p->GetName());
        texts.push_back(p->GetDescription());
    }
    EXPECT_EQ((std::vector<std::string>{"InImage", "OutImage", "nFilterWidth", "eFilterWidth",
                                        "InDxImage", "InDyImage"}),
              names);
    EXPECT_EQ("in: Filter Width", texts[2]);
    EXPECT_EQ("in: Filter Width", texts[3]);
    EXPECT_EQ("in: Dx Image", texts[4]);
    EXPECT_EQ("in: Dy Image", texts[5]);
    EXPECT_EQ(5u, list.Find("eFilterWidth")->GetEntryCount());

    ClIpFilterMax max;
    ClParameterInterface maxList;
    max.DescribeInterface(maxList);
    ASSERT_NE(nullptr, maxList.Find("FilterWidth"));
    EXPECT_EQ(3.0, maxList.Find("FilterWidth")->GetLower());
    EXPECT_EQ(127.0, maxList.Find("FilterWidth")->GetUpper());
    EXPECT_STREQ("Out: Rescaled Image", maxList.Find("OutImage")->GetDescription());
}

TEST(IpFunctorMean, ParametersOfBothBases)
{
    ClIpFunctorMean mean;
    ClParameterContainer root;
    mean.ConnectParameters(root);
    EXPECT_EQ((std::vector<std::string>{"pInImage", "pOutImage", "nRegionOfInterest", "nROILeft",
                                        "nROIRight", "nROIBottom", "nROITop", "pROIMask",
                                        "nFilterWidth", "nMode", "pDxImage", "pDyImage"}),
              Names(root));
    EXPECT_EQ("ROI_ALL", Text(root, "nRegionOfInterest"));
    root.Find("nRegionOfInterest")->SetText("ROI_MASK");
    EXPECT_EQ(ClIpFunctor1To1Base::eRoiMask, mean.m_nRegionOfInterest);
    root.Find("nROITop")->SetText("12");
    EXPECT_EQ(12, mean.m_nROITop);
    EXPECT_EQ(ClParameter::eFlagOptional, root.Find("nFilterWidth")->GetFlags());
    EXPECT_EQ("0", Text(root, "nFilterWidth", true));
    EXPECT_EQ("Mode XY", Text(root, "nMode", true));
    ClImage dy;
    SetImage(root, "pDyImage", &dy);
    EXPECT_EQ(&dy, mean.m_pDyImage);
}
