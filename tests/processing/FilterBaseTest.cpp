// The filter line's common rules: copying for narrow widths, refusing
// in-place use, the choice of hook, XY as two passes, colour images plane by
// plane, and the Dy parameter that reaches the Dx member.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "image/ImageTestSupport.h"
#include "parameters/ParameterContainer.h"
#include "processing/IpFilterBase.h"
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
    int32_t FilterDirectedUnsigned(bool b) override { return Pass(b ? "DOu" : "Du", 1, 0); }
    int32_t FilterDirectedSigned(bool b) override { return Pass(b ? "DOs" : "Ds", 1, 0); }
    std::string m_Calls;

private:
    int32_t Pass(const char* szName, int nFactor, int nAdd)
    {
        m_Calls += std::string(szName) + " ";
        const ClImage& in = *m_pInImage;
        m_pOutImage->CreateLike(in);
        for (int32_t y = 0; in.DataType() == ClImage::eUInt8 && y < in.Height(); ++y)
            for (int64_t i = 0; i < in.Width() * int64_t(in.Planes()); ++i)
                m_pOutImage->Row<uint8_t>(y)[i] = uint8_t(in.Row<uint8_t>(y)[i] * nFactor + nAdd);
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

int32_t RunFilter(ClIpFilterBase& filter, ClImage* pIn, ClImage* pOut, int32_t nMode,
                  int32_t nWidth = 3)
{
    filter.m_pInImage = pIn, filter.m_pOutImage = pOut;
    filter.m_nMode = nMode, filter.m_nFilterWidth = nWidth;
    return filter.Run();
}

} // namespace

TEST(IpFilterBase, CopiesNarrowWidthsAndRefusesInPlaceUse)
{
    ClRecordingFilter filter;
    ClImage in = TestImages::RandomImage(ClImage::eInt16, 7, 5, 1, 1), out;
    ASSERT_EQ(0, RunFilter(filter, &in, &out, 99, 0)); // whatever the mode
    EXPECT_TRUE(TestImages::SameSamples(in, out));
    EXPECT_NE(in.Data(), out.Data());
    ClImage image = TestImages::RandomImage(ClImage::eUInt8, 6, 4, 1, 2), before;
    before.Assign(image);
    EXPECT_EQ(ZRC_ERROR_BITMAP_PTR, RunFilter(filter, &image, &image, eModeX));
    EXPECT_TRUE(TestImages::SameSamples(before, image));
    EXPECT_EQ(ZRC_ERROR_BITMAP_PTR, RunFilter(filter, nullptr, nullptr, eModeX));
    EXPECT_EQ(ZRC_ERROR_PARAM_OUT_OF_RANGE, RunFilter(filter, nullptr, &image, eModeX));
    EXPECT_EQ("", filter.m_Calls);
}

TEST(IpFilterBase, ChoosesTheHookByModeAndSignedBitAndXYIsXThenY)
{
    const std::pair<int32_t, std::string> cases[] = {{eModeX, "Xu "},
                                                     {eModeY, "Yu "},
                                                     {eModeXY, "Xu Yu "},
                                                     {eModeDirected, "Du "},
                                                     {eModeDirectedOrtho, "DOu "}};
    for (ClImage::EDataType eType : TestImages::AllTypes())
        for (auto [nMode, sCalls] : cases)
        {
            ClRecordingFilter filter;
            ClBareFilter bare;
            ClImage in = TestImages::RandomImage(eType, 5, 3, 1, 7), out;
            ASSERT_EQ(0, RunFilter(filter, &in, &out, nMode));
            // Floating types carry the signed bit, so they take the signed hooks.
            if (eType >= 128)
                std::replace(sCalls.begin(), sCalls.end(), 'u', 's');
            EXPECT_EQ(sCalls, filter.m_Calls) << int(eType);
            EXPECT_EQ(ZRC_ERROR_FORMAT_NOTSUPPORTED, RunFilter(bare, &in, &out, nMode));
        }
    ClRecordingFilter filter;
    ClImage in = TestImages::RandomImage(ClImage::eUInt8, 9, 4, 1, 8), out, original;
    original.Assign(in);
    ExpectThrows<ClExVelmoran>([&] { RunFilter(filter, &in, &out, 4); }, -6, "Unknown error code.");

    ASSERT_EQ(0, RunFilter(filter, &in, &out, eModeXY));
    for (int32_t y = 0; y < in.Height(); ++y)
        for (int32_t x = 0; x < in.Width(); ++x)
            ASSERT_EQ(uint8_t((At<uint8_t>(in, x, y) + 1) * 2), At<uint8_t>(out, x, y));
    EXPECT_EQ(&in, filter.m_pInImage); // the input is back, untouched
    EXPECT_TRUE(TestImages::SameSamples(original, in));
}

TEST(IpFilterBase, FiltersThreePlanesAndJoinsAFourthAsItIs)
{
    ClRecordingFilter filter;
    ClImage in = TestImages::RandomImage(ClImage::eUInt8, 6, 5, 4, 9), out, copy;
    in.SetOrigin(3);
    ASSERT_EQ(0, RunFilter(filter, &in, &out, eModeX));
    EXPECT_EQ("Xu Xu Xu ", filter.m_Calls);
    EXPECT_EQ(&in, filter.m_pInImage);
    ASSERT_EQ(4u, out.Planes());
    EXPECT_EQ(3u, out.Origin());
    for (uint32_t p = 0; p < 4; ++p)
        for (int32_t y = 0; y < in.Height(); ++y)
            for (int32_t x = 0; x < in.Width(); ++x)
                ASSERT_EQ(uint8_t(At<uint8_t>(in, x, y, p) + (p < 3)), At<uint8_t>(out, x, y, p));
    // The planes are split first, so several planes may be filtered in place.
    copy.Assign(in);
    ASSERT_EQ(0, RunFilter(filter, &copy, &copy, eModeX));
    EXPECT_TRUE(TestImages::SameSamples(out, copy));

    ClBareFilter bare; // a plane that fails stops the run with its code
    EXPECT_EQ(ZRC_ERROR_FORMAT_NOTSUPPORTED, RunFilter(bare, &in, &out, eModeX));
    ClImage five = TestImages::RandomImage(ClImage::eUInt8, 3, 3, 5, 10);
    EXPECT_THROW(RunFilter(filter, &five, &out, eModeX), ClException);
}

TEST(IpFilterBase, TheDyParameterIsFoundByNameAndWritesTheDxMember)
{
    ClRecordingFilter filter;
    ClParameterContainer root;
    filter.ConnectParameters(root);
    ClImage dy;
    auto* pDy = dynamic_cast<TpParameterEnumPointer<ClImage*>*>(root.Find("pInDyImage"));
    ASSERT_NE(nullptr, pDy);
    pDy->StoreValue(&dy);
    EXPECT_EQ(&dy, filter.m_pInDxImage);
    EXPECT_EQ(nullptr, filter.m_pInDyImage);
}
