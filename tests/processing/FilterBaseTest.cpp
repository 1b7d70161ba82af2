// The filter line's common rules: copying for narrow widths, refusing
// in-place use, the choice of hook, XY as two passes, colour images plane by
// plane, and the parameter binding of the Dy image.
#include <gtest/gtest.h>

#include <string>

#include "parameters/ParameterContainer.h"
#include "processing/IpFilterBase.h"
#include "sdk/Exception.h"
#include "support/OperatorTestImages.h"

using TestImages::At;

namespace
{

// Records the hooks called. On 8-bit data X adds 1 and Y doubles, so the
// order of two passes shows in the samples.
class ClRecordingFilter : public ClIpFilterBase
{
public:
    ClProcessorBase* NewInstance() const override { return NewProcessor<ClRecordingFilter>(); }
    const char* GetName() const override { return "ClRecordingFilter"; }
    int32_t FilterXUnsigned() override { return Pass("Xu", 1, 1); }
    int32_t FilterYUnsigned() override { return Pass("Yu", 2, 0); }
    int32_t FilterXSigned() override { return Pass("Xs", 1, 1); }
    int32_t FilterYSigned() override { return Pass("Ys", 2, 0); }
    int32_t FilterDirectedUnsigned(bool bOrtho) override
    {
        return Pass(bOrtho ? "DOu" : "Du", 1, 0);
    }
    int32_t FilterDirectedSigned(bool bOrtho) override { return Pass(bOrtho ? "DOs" : "Ds", 1, 0); }
    std::string m_Calls;

private:
    int32_t Pass(const char* szName, int nFactor, int nAdd)
    {
        m_Calls += std::string(szName) + " ";
        m_pOutImage->CreateLike(*m_pInImage);
        if (m_pInImage->DataType() == ClImage::eUInt8)
            for (int32_t y = 0; y < m_pInImage->Height(); ++y)
                for (int64_t i = 0; i < m_pInImage->Width() * int64_t(m_pInImage->Planes()); ++i)
                    m_pOutImage->Row<uint8_t>(y)[i] =
                        static_cast<uint8_t>(m_pInImage->Row<uint8_t>(y)[i] * nFactor + nAdd);
        return 0;
    }
};

// A filter that supplies no hook at all.
class ClBareFilter : public ClIpFilterBase
{
public:
    ClProcessorBase* NewInstance() const override { return NewProcessor<ClBareFilter>(); }
    const char* GetName() const override { return "ClBareFilter"; }
};

ClImage Random(ClImage::EDataType eType, int32_t w, int32_t h, uint32_t nPlanes = 1)
{
    return TestImages::RandomImage(eType, w, h, nPlanes, 77);
}

int32_t RunFilter(ClIpFilterBase& filter, ClImage* pIn, ClImage* pOut, int32_t nMode,
                  int32_t nWidth = 3)
{
    filter.m_pInImage = pIn;
    filter.m_pOutImage = pOut;
    filter.m_nMode = nMode;
    filter.m_nFilterWidth = nWidth;
    return filter.Run();
}

} // namespace

TEST(IpFilterBase, CopiesNarrowWidthsAndRefusesInPlaceUse)
{
    for (int32_t nWidth : {1, 0, -3})
    {
        ClRecordingFilter filter;
        ClImage in = Random(ClImage::eInt16, 7, 5), out;
        ASSERT_EQ(0, RunFilter(filter, &in, &out, 99, nWidth));
        EXPECT_TRUE(TestImages::SameSamples(in, out));
        EXPECT_NE(in.Data(), out.Data());
        EXPECT_EQ("", filter.m_Calls);
    }
    ClRecordingFilter filter;
    ClImage image = Random(ClImage::eUInt8, 6, 4);
    const ClImage before = image;
    EXPECT_EQ(ZRC_ERROR_BITMAP_PTR, RunFilter(filter, &image, &image, eModeX));
    EXPECT_TRUE(TestImages::SameSamples(before, image));
    EXPECT_EQ(ZRC_ERROR_BITMAP_PTR, RunFilter(filter, nullptr, nullptr, eModeX));
    EXPECT_EQ(ZRC_ERROR_PARAM_OUT_OF_RANGE, RunFilter(filter, nullptr, &image, eModeX));
    EXPECT_EQ("", filter.m_Calls);
}

TEST(IpFilterBase, ChoosesTheHookByModeAndSignedBit)
{
    const struct
    {
        int32_t nMode;
        const char *szUnsigned, *szSigned;
    } cases[] = {{eModeX, "Xu ", "Xs "},
                 {eModeY, "Yu ", "Ys "},
                 {eModeXY, "Xu Yu ", "Xs Ys "},
                 {eModeDirected, "Du ", "Ds "},
                 {eModeDirectedOrtho, "DOu ", "DOs "}};
    for (ClImage::EDataType eType : TestImages::AllTypes())
        for (const auto& c : cases)
        {
            ClRecordingFilter filter;
            ClImage in = Random(eType, 5, 3), out;
            ASSERT_EQ(0, RunFilter(filter, &in, &out, c.nMode));
            // Floating types carry the signed bit, so they take the signed hooks.
            EXPECT_EQ(eType < 128 ? c.szUnsigned : c.szSigned, filter.m_Calls) << int(eType);
        }

    ClBareFilter bare;
    ClImage in = Random(ClImage::eUInt8, 5, 3), out;
    for (int32_t nMode : {eModeX, eModeY, eModeXY, eModeDirected, eModeDirectedOrtho})
        EXPECT_EQ(ZRC_ERROR_FORMAT_NOTSUPPORTED, RunFilter(bare, &in, &out, nMode)) << nMode;
    try
    {
        RunFilter(bare, &in, &out, 4);
        FAIL() << "no exception";
    }
    catch (const ClExVelmoran& e)
    {
        EXPECT_EQ(-6, e.GetCode());
        EXPECT_EQ(0, std::string(e.GetMessage()).rfind("Unknown error code.\n", 0));
    }
}

TEST(IpFilterBase, XYRunsTheYPassOnTheResultOfTheXPass)
{
    ClRecordingFilter filter;
    ClImage in = Random(ClImage::eUInt8, 9, 4), out;
    const ClImage original = in;
    ASSERT_EQ(0, RunFilter(filter, &in, &out, eModeXY));
    for (int32_t y = 0; y < in.Height(); ++y)
        for (int32_t x = 0; x < in.Width(); ++x)
            ASSERT_EQ(uint8_t((At<uint8_t>(in, x, y) + 1) * 2), At<uint8_t>(out, x, y));
    EXPECT_EQ(&in, filter.m_pInImage);
    EXPECT_EQ(original.Data(), in.Data());
    EXPECT_TRUE(TestImages::SameSamples(original, in));
}

TEST(IpFilterBase, FiltersThreePlanesAndJoinsAFourthAsItIs)
{
    ClRecordingFilter filter;
    ClImage in = Random(ClImage::eUInt8, 6, 5, 4), out;
    in.SetOrigin(3);
    ASSERT_EQ(0, RunFilter(filter, &in, &out, eModeX));
    EXPECT_EQ("Xu Xu Xu ", filter.m_Calls);
    EXPECT_EQ(&in, filter.m_pInImage);
    ASSERT_EQ(4u, out.Planes());
    EXPECT_EQ(3u, out.Origin());
    for (uint32_t p = 0; p < 4; ++p)
        for (int32_t y = 0; y < in.Height(); ++y)
            for (int32_t x = 0; x < in.Width(); ++x)
                ASSERT_EQ(uint8_t(At<uint8_t>(in, x, y, p) + (p < 3 ? 1 : 0)),
                          At<uint8_t>(out, x, y, p));

    // The planes are split first, so several planes may be filtered in place.
    ClImage copy;
    copy.Assign(in);
    ASSERT_EQ(0, RunFilter(filter, &copy, &copy, eModeX));
    EXPECT_TRUE(TestImages::SameSamples(out, copy));

    ClBareFilter bare; // a plane that fails stops the run with its code
    EXPECT_EQ(ZRC_ERROR_FORMAT_NOTSUPPORTED, RunFilter(bare, &in, &out, eModeX));
    ClImage five = Random(ClImage::eUInt8, 3, 3, 5);
    EXPECT_THROW(RunFilter(filter, &five, &out, eModeX), ClException);
}

TEST(IpFilterBase, ParametersReachTheMembersAndDyReachesOnlyDx)
{
    ClRecordingFilter filter;
    filter.m_nFilterWidth = 9;
    filter.m_nMode = eModeX;
    ClParameterContainer root;
    filter.ConnectParameters(root);
    char szText[32];
    uint32_t nSize = sizeof(szText);
    ASSERT_TRUE(root.Find("nFilterWidth")->GetDefaultText(szText, nSize));
    EXPECT_STREQ("3", szText);
    EXPECT_EQ(9, filter.m_nFilterWidth);
    root.Find("nMode")->SetText("MODE_DIRECTED_ORTHO");
    EXPECT_EQ(eModeDirectedOrtho, filter.m_nMode);
    EXPECT_THROW(root.Find("nMode")->SetText("Mode Z"), ClException);

    ClImage dy;
    auto* pDy = dynamic_cast<TpParameterEnumPointer<ClImage*>*>(root.Find("pInDyImage"));
    ASSERT_NE(nullptr, pDy);
    pDy->StoreValue(&dy);
    EXPECT_EQ(&dy, filter.m_pInDxImage);
    EXPECT_EQ(nullptr, filter.m_pInDyImage);

    filter.m_pInImage = &dy;
    dy.Create(ClImage::eFloat32, 2, 2);
    filter.GetStatusText(szText, sizeof(szText));
    EXPECT_STREQ("W[9] M[O] S[Signed]", szText);
}
