#include "detection/IpNormalizeImagesFD.h"

#include <gtest/gtest.h>

#include "image/ImageTestSupport.h"
#include "support/DetectionImages.h"

TEST(IpNormalizeImagesFD, AContrastOf100IsFilteredAnd99IsFlatGrey)
{
    // The contrast box holds 50 pixels of 10, 50 of nHigh and their middle
    // elsewhere; the means of the 50 darkest and brightest judge it.
    Sentivo::ClIpNormalizeImagesFD normalize;
    for (int nHigh : {109, 110})
    {
        ClImage capture = TestImages::ImageOf(
            320, 480,
            [=](int32_t x, int32_t y)
            {
                const bool bRun = x >= 50 && x < 100;
                return bRun && y == 100 ? 10 : bRun && y == 200 ? nHigh : (10 + nHigh) / 2;
            });
        ClImage out;
        ASSERT_EQ(normalize.Run(&capture, &out), 0);
        EXPECT_EQ(out.DataType(), ClImage::eUInt8);
        const int64_t nNotGrey =
            TestImages::Count(out, [](int32_t, int32_t, int v) { return v != 128; });
        EXPECT_EQ(nNotGrey == 0, nHigh == 109) << nHigh;
    }
}

TEST(IpNormalizeImagesFD, OnlyTheCaptureSizeIsAccepted)
{
    Sentivo::ClIpNormalizeImagesFD normalize;
    ClImage out, small = TestImages::Blank(ClImage::eUInt8, 320, 476),
                 wrongType = TestImages::Blank(ClImage::eDouble64, 320, 480);
    ExpectThrows([&] { normalize.Run(nullptr, &out); }, -701, "Input image not assigned");
    ExpectThrows([&] { normalize.Run(&wrongType, &out); }, -33);
    ExpectThrows([&] { normalize.Run(&small, &out); }, -44, "invalid image dimension");
}
