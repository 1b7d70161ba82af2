#include <cmath>

#include <gtest/gtest.h>

#include "operators/IpJoinPlanes.h"
#include "operators/IpSplitPlanes.h"
#include "sdk/Exception.h"
#include "support/OperatorTestImages.h"

using namespace TestImages;

namespace
{

// Split then join of a random image of every type and 1 to 4 planes gives the
// image back; each plane holds every planes-th sample.
template <typename T> void CheckSplitJoinRoundTrip(ClImage::EDataType eType, uint32_t nPlanes)
{
    const ClImage source = RandomImage(eType, 7, 5, nPlanes, 11 + nPlanes);
    ClImage parts[4];
    ClImage* pParts[4] = {nullptr, nullptr, nullptr, nullptr};
    for (uint32_t p = 0; p < nPlanes; ++p)
        pParts[p] = &parts[p];

    ClImage input(source);
    ClIpSplitPlanes split;
    ASSERT_EQ(split.Run(&input, pParts[0], pParts[1], pParts[2], pParts[3]), 0);
    for (uint32_t p = 0; p < nPlanes; ++p)
    {
        ASSERT_EQ(parts[p].Planes(), 1u);
        ASSERT_EQ(parts[p].DataType(), eType);
        ASSERT_EQ(parts[p].Width(), 7);
        ASSERT_EQ(parts[p].Height(), 5);
        EXPECT_EQ(parts[p].XResolution(), 500);
        for (int32_t y = 0; y < 5; ++y)
            for (int32_t x = 0; x < 7; ++x)
                ASSERT_TRUE(BitEqual(At<T>(parts[p], x, y), At<T>(source, x, y, p)));
    }

    ClImage joined;
    ClIpJoinPlanes join;
    join.m_nPlanes = nPlanes;
    ASSERT_EQ(join.Run(&joined, pParts[0], pParts[1], pParts[2], pParts[3]), 0);
    EXPECT_TRUE(SameSamples(joined, source));
    EXPECT_EQ(joined.Content(), ClImage::ContentOfPlanes(nPlanes));
}

} // namespace

TEST(IpSplitJoinPlanes, RoundTripOfEveryTypeAndPlaneCount)
{
    for (ClImage::EDataType eType : AllTypes())
    {
        for (uint32_t nPlanes = 1; nPlanes <= 4; ++nPlanes)
        {
            SCOPED_TRACE(ClImage::TypeText(eType));
            (void)SelectDataType(eType,
                                 [&](auto tag)
                                 {
                                     CheckSplitJoinRoundTrip<typename decltype(tag)::Type>(eType,
                                                                                           nPlanes);
                                     return 0;
                                 });
        }
    }
}

TEST(IpSplitPlanes, OnePlaneIsAGrayCopyAndNullPlanesAreSkipped)
{
    ClImage grey = RandomImage(ClImage::eUInt8, 5, 3, 1, 1);
    grey.SetContent(ClImage::eUnknown);
    ClImage plane;
    ClIpSplitPlanes split;
    ASSERT_EQ(split.Run(&grey, &plane), 0);
    EXPECT_TRUE(SameSamples(plane, grey));
    EXPECT_NE(plane.Data(), grey.Data());
    EXPECT_EQ(plane.Content(), ClImage::eGrayscale);

    // Four planes, plane 1 not asked for: it stays untouched.
    const ClImage rgba = RandomImage(ClImage::eInt16, 4, 4, 4, 2);
    ClImage p0, p1, p2, p3;
    ClImage input(rgba);
    ASSERT_EQ(split.Run(&input, &p0, nullptr, &p2, &p3), 0);
    EXPECT_EQ(p1.Data(), nullptr);
    EXPECT_EQ(At<int16_t>(p3, 2, 1), At<int16_t>(rgba, 2, 1, 3));

    // Planes beyond the input's count are not written.
    ClImage extra;
    ASSERT_EQ(split.Run(&grey, &p0, &extra), 0);
    EXPECT_EQ(extra.Data(), nullptr);
}

TEST(IpSplitPlanes, RefusesMoreThanFourPlanesAndMissingInput)
{
    ClImage five = RandomImage(ClImage::eUInt8, 3, 3, 5, 3);
    ClImage p0;
    ClIpSplitPlanes split;
    try
    {
        split.Run(&five, &p0);
        FAIL() << "a five-plane image was split";
    }
    catch (const ClException& e)
    {
        EXPECT_EQ(e.GetCode(), ZRC_ERROR_PARAM_OUT_OF_RANGE);
        EXPECT_EQ(Remark(e.GetMessage()), "Image has more than 4 planes.");
    }
    EXPECT_EQ(p0.Data(), nullptr);

    ClImage empty;
    EXPECT_EQ(split.Run(&empty, &p0), ZRC_ERROR_BITMAP_PTR);
    EXPECT_EQ(split.Run(nullptr, &p0), ZRC_ERROR_BITMAP_PTR);
}

TEST(IpSplitPlanes, PlaneIntoTheInputObjectItself)
{
    const ClImage source = RandomImage(ClImage::eUInt16, 6, 4, 3, 4);
    ClImage image(source);
    ClImage p2;
    ClIpSplitPlanes split;
    ASSERT_EQ(split.Run(&image, &image, nullptr, &p2), 0);
    ASSERT_EQ(image.Planes(), 1u);
    for (int32_t y = 0; y < 4; ++y)
        for (int32_t x = 0; x < 6; ++x)
        {
            EXPECT_EQ(At<uint16_t>(image, x, y), At<uint16_t>(source, x, y, 0));
            EXPECT_EQ(At<uint16_t>(p2, x, y), At<uint16_t>(source, x, y, 2));
        }
}

TEST(IpJoinPlanes, ContentDecidesThePlanesAndAbsentPlanesAreFilled)
{
    ClImage r = RandomImage(ClImage::eUInt8, 5, 3, 1, 5);
    ClImage b = RandomImage(ClImage::eUInt8, 5, 3, 1, 6);
    ClImage out;
    ClIpJoinPlanes join;
    join.m_eOutContent = ClImage::eRGB;
    join.m_dInFillcolors[1] = 7.0;
    ASSERT_EQ(join.Run(&out, &r, nullptr, &b), 0);
    ASSERT_EQ(out.Planes(), 3u);
    EXPECT_EQ(out.Content(), ClImage::eRGB);
    for (int32_t y = 0; y < 3; ++y)
        for (int32_t x = 0; x < 5; ++x)
        {
            EXPECT_EQ(At<uint8_t>(out, x, y, 0), At<uint8_t>(r, x, y));
            EXPECT_EQ(At<uint8_t>(out, x, y, 1), 7);
            EXPECT_EQ(At<uint8_t>(out, x, y, 2), At<uint8_t>(b, x, y));
        }

    // HSV and CIELUV are three planes, RGBA four, grey one; the content given
    // replaces the one derived from the planes.
    const std::pair<ClImage::EContent, uint32_t> cases[] = {
        {ClImage::eHSV, 3}, {ClImage::eCIELUV, 3}, {ClImage::eRGBA, 4}, {ClImage::eGrayscale, 1}};
    for (const auto& c : cases)
    {
        join.m_eOutContent = c.first;
        ASSERT_EQ(join.Run(&out, &r), 0);
        EXPECT_EQ(out.Planes(), c.second);
        EXPECT_EQ(out.Content(), c.first);
    }

    // A float fill colour is kept as a value, a NaN colour on integers gives
    // the low byte of the truncation's result (0).
    ClImage f = RandomImage(ClImage::eFloat32, 2, 2, 1, 7);
    join.m_eOutContent = ClImage::eUnknown;
    join.m_nPlanes = 2;
    join.m_dInFillcolors[1] = -2.5;
    ASSERT_EQ(join.Run(&out, &f), 0);
    EXPECT_EQ(out.Content(), ClImage::eUnknown);
    EXPECT_EQ(out.Planes(), 2u);
    EXPECT_EQ(At<float>(out, 1, 1, 1), -2.5f);
    join.m_dInFillcolors[1] = std::nan("");
    ASSERT_EQ(join.Run(&out, &r), 0);
    EXPECT_EQ(At<uint8_t>(out, 3, 2, 1), 0);
    ASSERT_EQ(join.Run(&out, &f), 0);
    EXPECT_TRUE(std::isnan(At<float>(out, 0, 0, 1)));

    // Without filling, the positions of an absent plane keep the buffer.
    join.m_bFillEmptyPlanes = false;
    join.m_nPlanes = 2;
    ClImage kept;
    kept.Create(ClImage::eUInt8, 5, 3, 2);
    kept.Fill<uint8_t>(99);
    ASSERT_EQ(join.Run(&kept, &r), 0);
    EXPECT_EQ(At<uint8_t>(kept, 4, 2, 1), 99);
    EXPECT_EQ(At<uint8_t>(kept, 4, 2, 0), At<uint8_t>(r, 4, 2));
}

TEST(IpJoinPlanes, RefusedContentsCountsAndPlanes)
{
    ClImage r = RandomImage(ClImage::eUInt8, 5, 3, 1, 8);
    ClImage out;
    ClIpJoinPlanes join;
    join.m_eOutContent = ClImage::eCIELab;
    EXPECT_EQ(join.Run(&out, &r, &r, &r), ZRC_ERROR_PARAM_OUT_OF_RANGE);
    join.m_eOutContent = ClImage::eXYZ;
    EXPECT_EQ(join.Run(&out, &r, &r, &r), ZRC_ERROR_PARAM_OUT_OF_RANGE);
    join.m_eOutContent = ClImage::eComplexSpectrum;
    EXPECT_EQ(join.Run(&out, &r), ZRC_ERROR_PARAM_OUT_OF_RANGE);
    EXPECT_EQ(out.Data(), nullptr);

    // More planes than plane images cannot be joined.
    join.m_eOutContent = ClImage::eUnknown;
    join.m_nPlanes = 5;
    EXPECT_EQ(join.Run(&out, &r), ZRC_ERROR_PARAM_OUT_OF_RANGE);

    // All planes null: nothing is made.
    join.m_nPlanes = 3;
    EXPECT_EQ(join.Run(&out, nullptr, nullptr, nullptr, &r), 0);
    EXPECT_EQ(out.Data(), nullptr);

    // A later plane smaller than the first, or of another sample size, would
    // be read past its end: refused.
    ClImage small = RandomImage(ClImage::eUInt8, 4, 3, 1, 9);
    ClImage wide = RandomImage(ClImage::eUInt16, 5, 3, 1, 10);
    EXPECT_EQ(join.Run(&out, &r, &small), ZRC_ERROR_PARAM_OUT_OF_RANGE);
    EXPECT_EQ(join.Run(&out, &r, &wide), ZRC_ERROR_PARAM_OUT_OF_RANGE);
    EXPECT_EQ(join.Run(nullptr, &r), ZRC_ERROR_BITMAP_PTR);

    // A larger plane of the same sample size is read by the first's measures.
    ClImage big = RandomImage(ClImage::eInt8, 6, 4, 1, 12);
    join.m_nPlanes = 2;
    ASSERT_EQ(join.Run(&out, &r, &big), 0);
    EXPECT_EQ(out.Width(), 5);
    EXPECT_EQ(At<uint8_t>(out, 4, 2, 1), static_cast<uint8_t>(At<int8_t>(big, 4, 2)));
}

TEST(IpJoinPlanes, OutputMayBeOneOfThePlanes)
{
    const ClImage a = RandomImage(ClImage::eDouble64, 3, 3, 1, 13);
    const ClImage b = RandomImage(ClImage::eDouble64, 3, 3, 1, 14);
    ClImage first(a);
    ClImage second(b);
    ClIpJoinPlanes join;
    join.m_nPlanes = 2;
    ASSERT_EQ(join.Run(&first, &first, &second), 0);
    ASSERT_EQ(first.Planes(), 2u);
    for (int32_t y = 0; y < 3; ++y)
        for (int32_t x = 0; x < 3; ++x)
        {
            EXPECT_EQ(At<double>(first, x, y, 0), At<double>(a, x, y));
            EXPECT_EQ(At<double>(first, x, y, 1), At<double>(b, x, y));
        }
}
