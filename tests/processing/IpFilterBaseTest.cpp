// The filter line's common rules: narrow widths copied, no in-place use, the
// choice of hook, XY as two passes, colour plane by plane.
#include "processing/IpFilterBase.h"

#include "support/SampleReference.h"

using namespace TestImages;

namespace
{

// Records the hooks called. On 8-bit data X adds 1 and Y doubles, so the
// order of two passes shows in the samples.
struct ClRecordingFilter : TpTestProcessor<ClIpFilterBase>
{
    int32_t FilterXUnsigned() override { return Pass("Xu", 1, 1); }
    int32_t FilterYUnsigned() override { return Pass("Yu", 2, 0); }
    int32_t FilterXSigned() override { return Pass("Xs", 1, 1); }
    int32_t FilterYSigned() override { return Pass("Ys", 2, 0); }
    int32_t FilterDirectedUnsigned(bool b) override { return Pass(b ? "DOu" : "Du", 1, 0); }
    int32_t FilterDirectedSigned(bool b) override { return Pass(b ? "DOs" : "Ds", 1, 0); }
    int32_t Run(ClImage* pIn, ClImage* pOut, int32_t nMode, int32_t nWidth = 3)
    {
        m_pInImage = pIn, m_pOutImage = pOut, m_nMode = nMode, m_nFilterWidth = nWidth;
        return ClIpFilterBase::Run();
    }
    std::string m_Calls;
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

} // namespace

TEST(IpFilterBase, CopiesNarrowWidthsRefusesInPlaceUseChoosesTheHookAndSplitsPlanes)
{
    ClRecordingFilter filter;
    ClImage in = RandomImage(ClImage::eUInt8, 9, 4, 1, 8), out, original;
    original.Assign(in);
    ASSERT_EQ(0, filter.Run(&in, &out, 99, 0)); // whatever the mode
    EXPECT_TRUE(SameSamples(in, out));
    EXPECT_NE(in.Data(), out.Data());
    EXPECT_EQ(ZRC_ERROR_BITMAP_PTR, filter.Run(&in, &in, eModeX));
    EXPECT_EQ("", filter.m_Calls);
    ExpectThrows<ClExVelmoran>([&] { filter.Run(&in, &out, 4); }, -6, "Unknown error code.");

    ASSERT_EQ(0, filter.Run(&in, &out, eModeXY)); // X, then Y on its result
    EXPECT_EQ(CountWrong(in, out, [](auto s, int32_t, int32_t, auto) { return (s + 1) * 2; }), 0);
    EXPECT_EQ(&in, filter.m_pInImage); // the input is back, untouched
    EXPECT_TRUE(SameSamples(original, in));

    // Signed and floating types take the signed hooks.
    for (auto [eType, nMode, sCalls] : {std::tuple{ClImage::eInt16, eModeY, "Ys "},
                                        {ClImage::eFloat32, eModeXY, "Xs Ys "},
                                        {ClImage::eUInt16, eModeDirected, "Du "},
                                        {ClImage::eInt8, eModeDirectedOrtho, "DOs "}})
    {
        ClRecordingFilter recording;
        ClImage typed = RandomImage(eType, 5, 3, 1, 7);
        ASSERT_EQ(0, recording.Run(&typed, &out, nMode));
        EXPECT_EQ(sCalls, recording.m_Calls) << int(eType);
    }

    // Three planes are filtered one by one, a fourth is joined as it is.
    ClImage colour = RandomImage(ClImage::eUInt8, 6, 5, 4, 9);
    filter.m_Calls.clear();
    ASSERT_EQ(0, filter.Run(&colour, &out, eModeX));
    EXPECT_EQ("Xu Xu Xu ", filter.m_Calls);
    ASSERT_EQ(4u, out.Planes());
    EXPECT_EQ(
        CountWrong(colour, out, [](auto s, int32_t i, int32_t, auto) { return s + (i % 4 < 3); }),
        0);
}
