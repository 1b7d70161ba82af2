// The prepared capture and its fast mask.
#include <gtest/gtest.h>

#include "detection/IpPrepareFeatureExtraction.h"
#include "support/DetectionImages.h"

using namespace TestImages;

TEST(IpPrepareFeatureExtraction, TextureMustExceed32AndFillTwoThirdsOfTheCleaningWindow)
{
    // The fast mask's pixels of 255 in row 30 for a texture of nValue in
    // columns 0 to nColumns - 1, or in the column nAt only.
    const auto inRow30 = [](int nValue, int32_t nColumns, int32_t nAt = -1)
    {
        ClImage mask;
        ClImage texture =
            ImageOf(60, 60, [=](int32_t x, int32_t) { return x < nColumns ? nValue : 0; });
        ClIpPrepareFeatureExtraction().MakeFastMask(texture, mask);
        return Count(mask, [=](int32_t x, int32_t y, int v)
                     { return y == 30 && v == 255 && (nAt < 0 || x == nAt); });
    };
    // A texture of exactly 32 is background everywhere; 33 is ridge ground.
    EXPECT_EQ(inRow30(32, 60), 0);
    EXPECT_EQ(inRow30(33, 60), 60);
    // Away from the ends of the columns the 15 x 15 window of column x holds
    // 15 pixels of each of its 37 - x texture columns: 10 at x = 27 (150
    // pixels) average to exactly 170 and stay; 9 at x = 28 (135, 153) go.
    EXPECT_EQ(inRow30(200, 30, 27) - inRow30(200, 30, 28), 1);
    EXPECT_EQ(inRow30(200, 30), 28);
}

TEST(IpPrepareFeatureExtraction, AFlatCaptureGivesAnEmptyMaskAndMissingImagesTheirTexts)
{
    ClImage capture = Filled(320, 480, 90), prepared, mask;
    ClIpPrepareFeatureExtraction prepare;
    ExpectThrows([&] { prepare.Run(); }, -44, "invalid input image");
    prepare.pInImage = &capture;
    ExpectThrows([&] { prepare.Run(); }, -44, "invalid output image");
    prepare.pOutImage = &prepared;
    ExpectThrows([&] { prepare.Run(); }, -44, "invalid output parameter");
    prepare.pOutMask = &mask;
    ASSERT_EQ(prepare.Run(), 0);
    EXPECT_EQ(Count(mask, [](int32_t, int32_t, int v) { return v != 0; }), 0);
}
