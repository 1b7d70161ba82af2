// The filter line's common rules: copying for narrow widths, the refusal of
// in-place use, the choice of hook, XY as two passes, and colour images
// filtered plane by plane.
#include <gtest/gtest.h>

#include <string>

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
        m_Calls += szName;
        m_Calls += ' ';
        m_pOutImage->CreateLike(*m_pInImage);
        if (m_pInImage->DataType() == ClImage::eUInt8)
            for (int32_t y = 0; y < m_pInImage->Height(); ++y)
                for (int32_t x = 0; x < m_pInImage->Width(); ++x)
                    At<uint8_t>(*m_pOutImage, x, y) =
                        static_cast<uint8_t>(At<uint8_t>(*m_pInImage, x, y) * nFactor + nAdd);
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

} // namespace

TEST(IpFilterBase, WidthOneOrLessCopiesWhateverTheMode)
{
    for (long nWidth : {1L, 0L, -3L})
    {
        ClRecordingFilter filter;
        ClImage in = Random(ClImage::eInt16, 7, 5), out;
        filter.m_pInImage = &in;
        filter.m_pOutImage = &out;
        filter.m_nFilterWidth = nWidth;
        filter.m_nMode = 99;
        ASSERT_EQ(0, filter.Run());
        EXPECT_TRUE(TestImages::SameSamples(in, out));
        EXPECT_NE(in.Data(), out.Data());
        EXPECT_EQ("", filter.m_Calls);
    }
}

TEST(IpFilterBase, RefusesInPlaceUseAndAMissingInput)
{
    ClRecordingFilter filter;
    ClImage image = Random(ClImage::eUInt8, 6, 4);
    const ClImage before = image;
    filter.m_pInImage = &image;
    filter.m_pOutImage = &image;
    EXPECT_EQ(ZRC_ERROR_BITMAP_PTR, filter.Run());
    EXPECT_EQ(before.Data(), image.Data());
    EXPECT_TRUE(TestImages::SameSamples(before, image));

    filter.m_pInImage = nullptr;
    filter.m_pOutImage = nullptr;
    EXPECT_EQ(ZRC_ERROR_BITMAP_PTR, filter.Run());
    filter.m_pOutImage = &image;
    EXPECT_EQ(ZRC_ERROR_PARAM_OUT_OF_RANGE, filter.Run());
    EXPECT_EQ("", filter.m_Calls);
}

TEST(IpFilterBase, ChoosesTheHookByModeAndSignedBit)
{
    const struct
    {
        int32_t nMode;
        const char* szUnsigned;
        const char* szSigned;
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
            filter.m_pInImage = &in;
            filter.m_pOutImage = &out;
            filter.m_nMode = c.nMode;
            ASSERT_EQ(0, filter.Run());
            // Floating types carry the signed bit, so they take the signed hooks.
            EXPECT_EQ(eType < 128 ? c.szUnsigned : c.szSigned, filter.m_Calls)
                << ClImage::TypeText(eType) << " mode " << c.nMode;
        }

    ClBareFilter bare;
    ClImage in = Random(ClImage::eUInt8, 5, 3), out;
    bare.m_pInImage = &in;
    bare.m_pOutImage = &out;
    for (int32_t nMode : {eModeX, eModeY, eModeXY, eModeDirected, eModeDirectedOrtho})
    {
        bare.m_nMode = nMode;
        EXPECT_EQ(ZRC_ERROR_FORMAT_NOTSUPPORTED, bare.Run()) << nMode;
    }

    bare.m_nMode = 4;
    try
    {
        bare.Run();
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
    filter.m_pInImage = &in;
    filter.m_pOutImage = &out;
    ASSERT_EQ(0, filter.Run());
    for (int32_t y = 0; y < in.Height(); ++y)
        for (int32_t x = 0; x < in.Width(); ++x)
            ASSERT_EQ(static_cast<uint8_t>((At<uint8_t>(in, x, y) + 1) * 2),
                      At<uint8_t>(out, x, y));
    EXPECT_EQ(&in, filter.m_pInImage);
    EXPECT_EQ(original.Data(), in.Data());
    EXPECT_TRUE(TestImages::SameSamples(original, in));
}

TEST(IpFilterBase, FiltersThreePlanesAndJoinsAFourthAsItIs)
{
    ClRecordingFilter filter;
    ClImage in = Random(ClImage::eUInt8, 6, 5, 4), out;
    in.SetOrigin(3);
    filter.m_pInImage = &in;
    filter.m_pOutImage = &out;
    filter.m_nMode = eModeX;
    ASSERT_EQ(0, filter.Run());
    EXPECT_EQ("Xu Xu Xu ", filter.m_Calls);
    EXPECT_EQ(&in, filter.m_pInImage);
    ASSERT_EQ(4u, out.Planes());
    EXPECT_EQ(3u, out.Origin());
    for (uint32_t p = 0; p < 4; ++p)
        for (int32_t y = 0; y < in.Height(); ++y)
            for (int32_t x = 0; x < in.Width(); ++x)
                ASSERT_EQ(static_cast<uint8_t>(At<uint8_t>(in, x, y, p) + (p < 3 ? 1 : 0)),
                          At<uint8_t>(out, x, y, p));

    // Several planes may be filtered in place: the planes are split first.
    ClImage copy = in;
    copy.Assign(in);
    filter.m_pInImage = filter.m_pOutImage = &copy;
    ASSERT_EQ(0, filter.Run());
    EXPECT_TRUE(TestImages::SameSamples(out, copy));

    // A plane that fails stops the run with its code.
    ClBareFilter bare;
    bare.m_pInImage = &in;
    bare.m_pOutImage = &out;
    EXPECT_EQ(ZRC_ERROR_FORMAT_NOTSUPPORTED, bare.Run());

    ClImage five = Random(ClImage::eUInt8, 3, 3, 5);
    filter.m_pInImage = &five;
    filter.m_pOutImage = &out;
    EXPECT_THROW(filter.Run(), ClException);
}

TEST(IpFilterBase, StatusTextShowsWidthModeAndSign)
{
    ClRecordingFilter filter;
    char szText[64];
    filter.GetStatusText(szText, sizeof(szText));
    EXPECT_STREQ("W[3] M[XY] S[Unknown]", szText);

    ClImage in = Random(ClImage::eFloat32, 2, 2);
    filter.m_pInImage = &in;
    filter.m_nFilterWidth = 15;
    filter.m_nMode = eModeDirectedOrtho;
    filter.GetStatusText(szText, sizeof(szText));
    EXPECT_STREQ("W[15] M[O] S[Signed]", szText);

    ClImage bytes = Random(ClImage::eUInt8, 2, 2);
    filter.m_pInImage = &bytes;
    filter.m_nMode = eModeY;
    filter.GetStatusText(szText, sizeof(szText));
    EXPECT_STREQ("W[15] M[Y] S[Unsigned]", szText);
    EXPECT_THROW(filter.GetStatusText(szText, 5), ClException);
}
