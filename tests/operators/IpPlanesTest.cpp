// Operators that move samples unchanged: cut, split and join.
#include <random>

#include <gtest/gtest.h>

#include "image/ImageTestSupport.h"
#include "operators/IpCut.h"
#include "operators/IpJoinPlanes.h"
#include "operators/IpSplitPlanes.h"
#include "support/OperatorTestImages.h"

using namespace TestImages;

TEST(IpCut, RectanglesOfEveryTypeMatchAPlainCopy)
{
    std::mt19937 rng(61);
    auto uniform = [&](int32_t nTo) { return std::uniform_int_distribution<int32_t>(0, nTo)(rng); };
    for (ClImage::EDataType eType : AllTypes())
        for (uint32_t nPlanes : {1u, 3u})
            for (int round = 0; round < 5; ++round)
            {
                SCOPED_TRACE(ClImage::TypeText(eType));
                ClImage in = RandomImage(eType, 13, 9, nPlanes, 62 + round), out;
                in.SetBounds(-3.5, 77.0);
                in.SetContent(ClImage::eHSV);
                in.SetOrigin(0xBEEF);
                const int32_t x0 = uniform(12), y0 = uniform(8);
                const int32_t w = 1 + uniform(12 - x0), h = 1 + uniform(8 - y0);
                ASSERT_EQ(ClIpCut().Run(&in, x0, y0, w, h, &out), 0);
                ASSERT_TRUE(out.Width() == w && out.Height() == h && out.Planes() == nPlanes);
                EXPECT_TRUE(out.DataType() == eType && out.LowerBound() == -3.5 &&
                            out.UpperBound() == 77.0 && out.Content() == ClImage::eHSV &&
                            out.Origin() == 0xBEEFu && out.XResolution() == 500);
                const size_t nPixel = in.SampleSize() * nPlanes;
                for (int32_t y = 0; y < h; ++y)
                    ASSERT_EQ(std::memcmp(in.Row<uint8_t>(y0 + y) + x0 * nPixel,
                                          out.Row<uint8_t>(y), w * nPixel),
                              0);
            }
}

TEST(IpCut, LimitsAreCheckedWithTheirMessages)
{
    ClImage in = RandomImage(ClImage::eUInt8, 8, 6, 1, 64), out;
    ClIpCut cut;
    ExpectThrows([&] { cut.Run(&in, -1, -1, 1, 1, &out); }, ZRC_ERROR_PARAM_OUT_OF_RANGE,
                 "ClIpCut::Process. m_nX0<0");
    ExpectThrows([&] { cut.Run(&in, 3, 2, 5, 5, &out); }, ZRC_ERROR_PARAM_OUT_OF_RANGE,
                 "ClIpCut::Process. m_nY0+m_nDestHeight > m_pInImage->Height()");
    // Sums that would overflow 32 bits are still too large.
    ExpectThrows([&] { cut.Run(&in, 3, 2, std::numeric_limits<int32_t>::max(), 1, &out); },
                 ZRC_ERROR_PARAM_OUT_OF_RANGE);
    EXPECT_EQ(out.Data(), nullptr);
    EXPECT_EQ(cut.Run(&in, 3, 2, 5, 4, &out), 0); // exactly to the right and bottom edges
}

TEST(IpJoinPlanes, ContentDecidesThePlanesAndAbsentPlanesAreFilled)
{
    // RGB from planes 0 and 2; plane 1 takes its fill colour 7.
    ClImage r = RandomImage(ClImage::eUInt8, 5, 3, 1, 5),
            b = RandomImage(ClImage::eUInt8, 5, 3, 1, 6);
    ClImage out;
    ClIpJoinPlanes join;
    join.m_eOutContent = ClImage::eRGB;
    join.m_dInFillcolors[1] = 7.0;
    ASSERT_EQ(join.Run(&out, &r, nullptr, &b), 0);
    ASSERT_EQ(out.Planes(), 3u);
    for (int32_t i = 0; i < 15; ++i)
        EXPECT_TRUE(At<uint8_t>(out, i % 5, i / 5, 0) == At<uint8_t>(r, i % 5, i / 5) &&
                    At<uint8_t>(out, i % 5, i / 5, 1) == 7 &&
                    At<uint8_t>(out, i % 5, i / 5, 2) == At<uint8_t>(b, i % 5, i / 5));

    // Unknown content takes the plane count (2); CIELab, XYZ and others are refused.
    const std::pair<ClImage::EContent, int32_t> cases[] = {
        {ClImage::eHSV, 3},       {ClImage::eCIELUV, 3},          {ClImage::eRGBA, 4},
        {ClImage::eGrayscale, 1}, {ClImage::eUnknown, 2},         {ClImage::eCIELab, -1},
        {ClImage::eXYZ, -1},      {ClImage::eComplexSpectrum, -1}};
    join.m_nPlanes = 2;
    for (const auto& [eContent, nPlanes] : cases)
    {
        ClImage joined;
        join.m_eOutContent = eContent;
        ASSERT_EQ(join.Run(&joined, &r), nPlanes < 0 ? ZRC_ERROR_PARAM_OUT_OF_RANGE : 0)
            << eContent;
        EXPECT_EQ(static_cast<int32_t>(joined.Planes()), std::max(nPlanes, 0));
        EXPECT_EQ(joined.Content(), nPlanes < 0 ? ClImage::eUnknown : eContent);
    }

    // The output may be one of the planes; a later plane smaller than the
    // first would be read past its end: refused.
    join.m_eOutContent = ClImage::eUnknown;
    ClImage f = RandomImage(ClImage::eFloat32, 2, 2, 1, 7), first(f);
    ClImage second = RandomImage(ClImage::eFloat32, 2, 2, 1, 14);
    ASSERT_EQ(join.Run(&first, &first, &second), 0);
    ASSERT_EQ(first.Planes(), 2u);
    EXPECT_EQ(At<float>(first, 1, 0, 0), At<float>(f, 1, 0));
    EXPECT_EQ(At<float>(first, 1, 0, 1), At<float>(second, 1, 0));
    ClImage small = RandomImage(ClImage::eUInt8, 4, 3, 1, 9);
    EXPECT_EQ(join.Run(&out, &r, &small), ZRC_ERROR_PARAM_OUT_OF_RANGE);
}

TEST(IpSplitJoinPlanes, RoundTripOfEveryTypeAndPlaneCount)
{
    for (ClImage::EDataType eType : AllTypes())
        for (uint32_t nPlanes = 1; nPlanes <= 4; ++nPlanes)
        {
            SCOPED_TRACE(std::string(ClImage::TypeText(eType)) + " " + std::to_string(nPlanes));
            const ClImage source = RandomImage(eType, 7, 5, nPlanes, 11 + nPlanes);
            ClImage parts[4], input(source), joined;
            ClImage* p[4] = {};
            for (uint32_t i = 0; i < nPlanes; ++i)
                p[i] = &parts[i];
            ASSERT_EQ(ClIpSplitPlanes().Run(&input, p[0], p[1], p[2], p[3]), 0);
            for (uint32_t i = 0; i < nPlanes; ++i)
                ASSERT_TRUE(parts[i].Planes() == 1 && parts[i].DataType() == eType &&
                            parts[i].Width() == 7 && parts[i].Height() == 5);
            ClIpJoinPlanes join;
            join.m_nPlanes = nPlanes;
            ASSERT_EQ(join.Run(&joined, p[0], p[1], p[2], p[3]), 0);
            EXPECT_TRUE(SameSamples(joined, source) &&
                        joined.Content() == ClImage::ContentOfPlanes(nPlanes));
        }
}
