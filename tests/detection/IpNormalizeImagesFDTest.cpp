// The normalisation: the contrast limit of the band-pass filter and the
// capture size.
#include <gtest/gtest.h>

#include "detection/IpNormalizeImagesFD.h"
#include "support/DetectionImages.h"

using namespace TestImages;

TEST(IpNormalizeImagesFD, AContrastOf100IsFilteredAnd99IsFlatGreyOnlyAtTheCaptureSize)
{
    // The contrast box holds 50 pixels of 10, 50 of nHigh and their middle
    // elsewhere; the means of the 50 darkest and brightest judge it.
    Sentivo::ClIpNormalizeImagesFD normalize;
    ClImage out;
    for (int nHigh : {109, 110})
    {
        ClImage capture =
            ImageOf(320, 480,
                    [=](int32_t x, int32_t y)
                    {
                        const bool bRun = x >= 50 && x < 100;
                        return bRun && y == 100 ? 10 : bRun && y == 200 ? nHigh : (10 + nHigh) / 2;
                    });
        ASSERT_EQ(normalize.Run(&capture, &out), 0);
        EXPECT_EQ(Count(out, [](int32_t, int32_t, int v) { return v != 128; }) == 0, nHigh == 109);
    }
    ClImage small = Blank(ClImage::eUInt8, 320, 476),
            wrongType = Blank(ClImage::eDouble64, 320, 480);
    ExpectThrows([&] { normalize.Run(nullptr, &out); }, -701, "Input image not assigned");
    ExpectThrows([&] { normalize.Run(&wrongType, &out); }, -33);
    ExpectThrows([&] { normalize.Run(&small, &out); }, -44, "invalid image dimension");
}
