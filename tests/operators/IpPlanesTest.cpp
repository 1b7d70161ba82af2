#include <gtest/gtest.h>

#include "operators/IpJoinPlanes.h"
#include "operators/IpSplitPlanes.h"
#include "support/OperatorTestImages.h"

using namespace TestImages;

TEST(IpJoinPlanes, ContentDecidesThePlanesAndAbsentPlanesAreFilled)
{
    // RGB from planes 0 and 2; plane 1 takes its fill colour 7.
    ClImage r = RandomImage(ClImage::eUInt8, 5, 3, 1, 5);
    ClImage b = RandomImage(ClImage::eUInt8, 5, 3, 1, 6);
    ClImage out;
    ClIpJoinPlanes join;
    join.m_eOutContent = ClImage::eRGB;
    join.m_dInFillcolors[1] = 7.0;
    ASSERT_EQ(join.Run(&out, &r, nullptr, &b), 0);
    ASSERT_EQ(out.Planes(), 3u);
    for (int32_t y = 0; y < 3; ++y)
        for (int32_t x = 0; x < 5; ++x)
            EXPECT_TRUE(At<uint8_t>(out, x, y, 0) == At<uint8_t>(r, x, y) &&
                        At<uint8_t>(out, x, y, 1) == 7 &&
                        At<uint8_t>(out, x, y, 2) == At<uint8_t>(b, x, y));

    // HSV and CIELUV are three planes, RGBA four, grey one, and unknown
    // content takes the plane count; CIELab, XYZ and others are refused.
    const std::pair<ClImage::EContent, int32_t> cases[] = {
        {ClImage::eHSV, 3},       {ClImage::eCIELUV, 3},          {ClImage::eRGBA, 4},
        {ClImage::eGrayscale, 1}, {ClImage::eUnknown, 2},         {ClImage::eCIELab, -1},
        {ClImage::eXYZ, -1},      {ClImage::eComplexSpectrum, -1}};
    join.m_nPlanes = 2;
    for (const auto& [eContent, nPlanes] : cases)
    {
        SCOPED_TRACE(eContent);
        ClImage joined;
        join.m_eOutContent = eContent;
        ASSERT_EQ(join.Run(&joined, &r), nPlanes < 0 ? ZRC_ERROR_PARAM_OUT_OF_RANGE : 0);
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
            ClImage* pParts[4] = {};
            for (uint32_t p = 0; p < nPlanes; ++p)
                pParts[p] = &parts[p];
            ASSERT_EQ(ClIpSplitPlanes().Run(&input, pParts[0], pParts[1], pParts[2], pParts[3]), 0);
            for (uint32_t p = 0; p < nPlanes; ++p)
                ASSERT_TRUE(parts[p].Planes() == 1 && parts[p].DataType() == eType &&
                            parts[p].Width() == 7 && parts[p].Height() == 5);
            ClIpJoinPlanes join;
            join.m_nPlanes = nPlanes;
            ASSERT_EQ(join.Run(&joined, pParts[0], pParts[1], pParts[2], pParts[3]), 0);
            EXPECT_TRUE(SameSamples(joined, source));
            EXPECT_EQ(joined.Content(), ClImage::ContentOfPlanes(nPlanes));
        }
}
