// Joining planes: the content decides the planes, absent planes are filled.
#include "operators/IpJoinPlanes.h"

#include <gtest/gtest.h>

#include "image/ImageTestSupport.h"
#include "support/OperatorTestImages.h"

using namespace TestImages;

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
    // Unknown content takes the plane count (2); CIELab and others are refused.
    const std::pair<ClImage::EContent, int32_t> cases[] = {
        {ClImage::eHSV, 3},     {ClImage::eRGBA, 4},    {ClImage::eGrayscale, 1},
        {ClImage::eUnknown, 2}, {ClImage::eCIELab, -1}, {ClImage::eComplexSpectrum, -1}};
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
    // The output may be a plane; a later plane smaller than the first is refused.
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
