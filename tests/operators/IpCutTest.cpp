#include <random>
#include <string>

#include <gtest/gtest.h>

#include "operators/IpCut.h"
#include "sdk/Exception.h"
#include "support/OperatorTestImages.h"

using namespace TestImages;

namespace
{

// Code and remark of what a call throws; code 0 when it throws nothing.
template <typename F> std::pair<int32_t, std::string> Thrown(F&& call)
{
    try
    {
        call();
    }
    catch (const ClException& e)
    {
        return {e.GetCode(), Remark(e.GetMessage())};
    }
    return {0, ""};
}

} // namespace

TEST(IpCut, RectanglesOfEveryTypeMatchAPlainCopy)
{
    std::mt19937 rng(61);
    for (ClImage::EDataType eType : AllTypes())
        for (uint32_t nPlanes : {1u, 3u})
            for (int round = 0; round < 5; ++round)
            {
                SCOPED_TRACE(ClImage::TypeText(eType));
                ClImage in = RandomImage(eType, 13, 9, nPlanes, 62 + round);
                in.SetBounds(-3.5, 77.0);
                in.SetContent(ClImage::eHSV);
                in.SetOrigin(0xBEEF);
                const int32_t x0 = std::uniform_int_distribution<int32_t>(0, 12)(rng);
                const int32_t y0 = std::uniform_int_distribution<int32_t>(0, 8)(rng);
                const int32_t w = std::uniform_int_distribution<int32_t>(1, 13 - x0)(rng);
                const int32_t h = std::uniform_int_distribution<int32_t>(1, 9 - y0)(rng);
                ClImage out;
                ClIpCut cut;
                ASSERT_EQ(cut.Run(&in, x0, y0, w, h, &out), 0);
                ASSERT_EQ(out.Width(), w);
                ASSERT_EQ(out.Height(), h);
                ASSERT_EQ(out.Planes(), nPlanes);
                EXPECT_EQ(out.DataType(), eType);
                EXPECT_EQ(out.LowerBound(), -3.5);
                EXPECT_EQ(out.UpperBound(), 77.0);
                EXPECT_EQ(out.Content(), ClImage::eHSV);
                EXPECT_EQ(out.Origin(), 0xBEEFu);
                EXPECT_EQ(out.XResolution(), 500);
                const size_t nSample = in.SampleSize();
                for (int32_t y = 0; y < h; ++y)
                    for (int32_t x = 0; x < w; ++x)
                        for (uint32_t p = 0; p < nPlanes; ++p)
                        {
                            const uint8_t* pIn =
                                in.Row<uint8_t>(y0 + y) + ((x0 + x) * nPlanes + p) * nSample;
                            const uint8_t* pOut = out.Row<uint8_t>(y) + (x * nPlanes + p) * nSample;
                            ASSERT_EQ(std::memcmp(pIn, pOut, nSample), 0);
                        }
            }
}

TEST(IpCut, WholeImageIsANewCopyAndOneObjectMayServeBothRoles)
{
    const ClImage source = RandomImage(ClImage::eInt16, 7, 5, 1, 63);
    ClImage in(source);
    ClImage out;
    ClIpCut cut;
    ASSERT_EQ(cut.Run(&in, 0, 0, 7, 5, &out), 0);
    EXPECT_TRUE(SameSamples(out, source));
    EXPECT_NE(out.Data(), in.Data());

    ClImage image;
    image.Assign(source);
    ASSERT_EQ(cut.Run(&image, 2, 1, 3, 4, &image), 0);
    ASSERT_EQ(image.Width(), 3);
    ASSERT_EQ(image.Height(), 4);
    EXPECT_EQ(At<int16_t>(image, 2, 3), At<int16_t>(source, 4, 4));

    // The values are read through the pointers; the fields keep their values
    // between runs.
    int32_t nOuterX = 6;
    cut.m_pnX0 = &nOuterX;
    cut.m_nDestWidth = 1;
    cut.m_nDestHeight = 1;
    ASSERT_EQ(cut.Run(&in, &out), 0);
    EXPECT_EQ(At<int16_t>(out, 0, 0), At<int16_t>(source, 6, 1)); // y0 kept from the last run
    cut.SetDefaults();
    EXPECT_EQ(cut.m_pnX0, &cut.m_nX0);
    EXPECT_EQ(cut.m_nDestWidth, 0);
}

TEST(IpCut, LimitsAreCheckedInOrderWithTheirMessages)
{
    ClImage in = RandomImage(ClImage::eUInt8, 8, 6, 1, 64);
    ClImage out;
    ClIpCut cut;
    auto cutting = [&](int32_t x0, int32_t y0, int32_t w, int32_t h)
    { return Thrown([&] { cut.Run(&in, x0, y0, w, h, &out); }); };
    const int32_t kRange = ZRC_ERROR_PARAM_OUT_OF_RANGE;
    EXPECT_EQ(cutting(-1, -1, 1, 1),
              std::make_pair(kRange, std::string("ClIpCut::Process. m_nX0<0")));
    EXPECT_EQ(cutting(0, -1, -1, 1),
              std::make_pair(kRange, std::string("ClIpCut::Process. m_nY0<0")));
    EXPECT_EQ(cutting(8, 6, 1, 1),
              std::make_pair(kRange, std::string("ClIpCut::Process. m_nX0>=m_pInImage->Width()")));
    EXPECT_EQ(cutting(7, 6, -1, 1),
              std::make_pair(kRange, std::string("ClIpCut::Process. m_nY0>=m_pInImage->Height()")));
    EXPECT_EQ(cutting(7, 5, -1, -1),
              std::make_pair(kRange, std::string("ClIpCut::Process. m_nDestWidth < 0")));
    EXPECT_EQ(cutting(7, 5, 9, -1),
              std::make_pair(kRange, std::string("ClIpCut::Process. m_nDestHeight < 0")));
    EXPECT_EQ(
        cutting(3, 5, 6, 9),
        std::make_pair(kRange,
                       std::string("ClIpCut::Process. m_nX0+m_nDestWidth > m_pInImage->Width()")));
    EXPECT_EQ(
        cutting(3, 2, 5, 5),
        std::make_pair(
            kRange, std::string("ClIpCut::Process. m_nY0+m_nDestHeight > m_pInImage->Height()")));
    // Sums that would overflow 32 bits are still seen as too large.
    EXPECT_EQ(cutting(3, 2, std::numeric_limits<int32_t>::max(), 1).first, kRange);
    EXPECT_EQ(out.Data(), nullptr);

    // Reaching exactly the right and bottom edges is accepted.
    EXPECT_EQ(cutting(3, 2, 5, 4), std::make_pair(0, std::string()));
    EXPECT_EQ(out.Width(), 5);

    // An empty rectangle is refused by the image itself.
    EXPECT_EQ(cutting(1, 1, 0, 2),
              std::make_pair(ZRC_ERROR_INTERNAL, std::string("Image area must be positive")));
    EXPECT_EQ(cutting(1, 1, 2, 0),
              std::make_pair(ZRC_ERROR_INTERNAL, std::string("Image area must be positive")));

    // A type outside the eight is not accepted.
    ClImage odd;
    odd.Create(ClImage::eDefaultType, 2, 2);
    EXPECT_EQ(Thrown([&] { cut.Run(&odd, 0, 0, 1, 1, &out); }).first,
              ZRC_ERROR_FORMAT_NOTSUPPORTED);
}
