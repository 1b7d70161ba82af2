#include <cmath>

#include <gtest/gtest.h>

#include "image/ImageTestSupport.h"
#include "operators/IpJoinPlanes.h"
#include "operators/IpSplitPlanes.h"
#include "support/OperatorTestImages.h"

using namespace TestImages;

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
            // Each plane holds every planes-th sample, starting at its index.
            const size_t nSample = source.SampleSize();
            for (uint32_t p = 0; p < nPlanes; ++p)
            {
                ASSERT_TRUE(parts[p].Planes() == 1 && parts[p].DataType() == eType &&
                            parts[p].Width() == 7 && parts[p].Height() == 5);
                EXPECT_EQ(parts[p].XResolution(), 500);
                for (int32_t y = 0; y < 5; ++y)
                    for (int32_t x = 0; x < 7; ++x)
                        ASSERT_EQ(std::memcmp(parts[p].Row<uint8_t>(y) + x * nSample,
                                              source.Row<uint8_t>(y) + (x * nPlanes + p) * nSample,
                                              nSample),
                                  0);
            }
            ClIpJoinPlanes join;
            join.m_nPlanes = nPlanes;
            ASSERT_EQ(join.Run(&joined, pParts[0], pParts[1], pParts[2], pParts[3]), 0);
            EXPECT_TRUE(SameSamples(joined, source));
            EXPECT_EQ(joined.Content(), ClImage::ContentOfPlanes(nPlanes));
        }
}

TEST(IpSplitPlanes, GreyCopiesSkippedPlanesAndRefusals)
{
    // One plane into plane 0: a gray copy in a new buffer; planes beyond the
    // input's count are not written.
    ClImage grey = RandomImage(ClImage::eUInt8, 5, 3, 1, 1);
    grey.SetContent(ClImage::eUnknown);
    ClImage plane, extra, p0, p3;
    ClIpSplitPlanes split;
    ASSERT_EQ(split.Run(&grey, &plane, &extra), 0);
    EXPECT_TRUE(SameSamples(plane, grey));
    EXPECT_NE(plane.Data(), grey.Data());
    EXPECT_EQ(plane.Content(), ClImage::eGrayscale);
    EXPECT_EQ(extra.Data(), nullptr);

    // Four planes with planes 1 and 2 not asked for, plane 0 into the input
    // object itself.
    const ClImage rgba = RandomImage(ClImage::eInt16, 4, 4, 4, 2);
    ClImage image(rgba);
    ASSERT_EQ(split.Run(&image, &image, nullptr, nullptr, &p3), 0);
    ASSERT_EQ(image.Planes(), 1u);
    EXPECT_EQ(At<int16_t>(image, 2, 1), At<int16_t>(rgba, 2, 1, 0));
    EXPECT_EQ(At<int16_t>(p3, 2, 1), At<int16_t>(rgba, 2, 1, 3));

    ClImage five = RandomImage(ClImage::eUInt8, 3, 3, 5, 3), empty;
    ExpectThrows([&] { split.Run(&five, &p0); }, ZRC_ERROR_PARAM_OUT_OF_RANGE,
                 "Image has more than 4 planes.");
    EXPECT_EQ(p0.Data(), nullptr);
    EXPECT_EQ(split.Run(&empty, &p0), ZRC_ERROR_BITMAP_PTR);
    EXPECT_EQ(split.Run(nullptr, &p0), ZRC_ERROR_BITMAP_PTR);
}

TEST(IpJoinPlanes, ContentDecidesThePlanesAbsentPlanesAreFilledAndOthersRefused)
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
    EXPECT_EQ(out.Content(), ClImage::eRGB);
    for (int32_t y = 0; y < 3; ++y)
        for (int32_t x = 0; x < 5; ++x)
            EXPECT_TRUE(At<uint8_t>(out, x, y, 0) == At<uint8_t>(r, x, y) &&
                        At<uint8_t>(out, x, y, 1) == 7 &&
                        At<uint8_t>(out, x, y, 2) == At<uint8_t>(b, x, y));

    // HSV and CIELUV are three planes, RGBA four, grey one, and unknown
    // content takes the plane count; the content given replaces the one
    // derived from the planes. CIELab, XYZ and others are refused.
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

    // A float fill colour is kept as a value; a NaN colour gives the
    // truncation's low byte (0) on integers.
    ClImage f = RandomImage(ClImage::eFloat32, 2, 2, 1, 7);
    join.m_eOutContent = ClImage::eUnknown;
    join.m_dInFillcolors[1] = -2.5;
    ASSERT_EQ(join.Run(&out, &f), 0);
    EXPECT_EQ(At<float>(out, 1, 1, 1), -2.5f);
    join.m_dInFillcolors[1] = std::nan("");
    ASSERT_EQ(join.Run(&out, &r), 0);
    EXPECT_EQ(At<uint8_t>(out, 3, 2, 1), 0);

    // Without filling, the positions of an absent plane keep the buffer.
    join.m_bFillEmptyPlanes = false;
    out.Fill<uint8_t>(99);
    ASSERT_EQ(join.Run(&out, &r), 0);
    EXPECT_EQ(At<uint8_t>(out, 4, 2, 1), 99);
    EXPECT_EQ(At<uint8_t>(out, 4, 2, 0), At<uint8_t>(r, 4, 2));

    // The output may be one of the planes.
    ClImage first(f), second = RandomImage(ClImage::eFloat32, 2, 2, 1, 14);
    ASSERT_EQ(join.Run(&first, &first, &second), 0);
    ASSERT_EQ(first.Planes(), 2u);
    EXPECT_EQ(At<float>(first, 1, 0, 0), At<float>(f, 1, 0));
    EXPECT_EQ(At<float>(first, 1, 0, 1), At<float>(second, 1, 0));

    // More planes than plane images cannot be joined; with all planes among
    // the first n null nothing is made.
    ClImage none, small = RandomImage(ClImage::eUInt8, 4, 3, 1, 9);
    ClImage wide = RandomImage(ClImage::eUInt16, 5, 3, 1, 10);
    ClImage big = RandomImage(ClImage::eInt8, 6, 4, 1, 12);
    join.m_nPlanes = 5;
    EXPECT_EQ(join.Run(&none, &r), ZRC_ERROR_PARAM_OUT_OF_RANGE);
    join.m_nPlanes = 3;
    EXPECT_EQ(join.Run(&none, nullptr, nullptr, nullptr, &r), 0);
    EXPECT_EQ(none.Data(), nullptr);
    EXPECT_EQ(join.Run(nullptr, &r), ZRC_ERROR_BITMAP_PTR);
    // A later plane smaller than the first, or of another sample size, would
    // be read past its end: refused. A larger one of the same sample size is
    // read by the first's measures.
    EXPECT_EQ(join.Run(&out, &r, &small), ZRC_ERROR_PARAM_OUT_OF_RANGE);
    EXPECT_EQ(join.Run(&out, &r, &wide), ZRC_ERROR_PARAM_OUT_OF_RANGE);
    join.m_nPlanes = 2;
    ASSERT_EQ(join.Run(&out, &r, &big), 0);
    EXPECT_EQ(out.Width(), 5);
    EXPECT_EQ(At<uint8_t>(out, 4, 2, 1), static_cast<uint8_t>(At<int8_t>(big, 4, 2)));
}
