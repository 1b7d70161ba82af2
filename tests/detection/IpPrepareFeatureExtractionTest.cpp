// The prepared capture and its fast mask.

#include <gtest/gtest.h>

#include "detection/IpPrepareFeatureExtraction.h"
#include "image/ImageTestSupport.h"
#include "support/DetectionImages.h"

using namespace TestImages;

TEST(IpPrepareFeatureExtraction, TextureMustExceed32AndFillTwoThirdsOfTheCleaningWindow)
{
    // The fast mask of a texture of nValue in columns 0 to nColumns - 1.
    const auto fastMask = [](int nValue, int32_t nColumns)
    {
        ClImage mask;
        ClImage texture =
            ImageOf(60, 60, [=](int32_t x, int32_t) { return x < nColumns ? nValue : 0; });
        ClIpPrepareFeatureExtraction().MakeFastMask(texture, mask);
        return mask;
    };
    const auto inRow30 = [](int32_t, int32_t y, int v) { return y == 30 && v == 255; };
    // A texture of exactly 32 is background everywhere; 33 is ridge ground.
    EXPECT_EQ(Count(fastMask(32, 60), inRow30), 0);
    EXPECT_EQ(Count(fastMask(33, 60), inRow30), 60);
    // Texture in columns 0-29. Away from the ends of the columns the 15 x 15
    // window of column x holds 15 pixels of each of its 37 - x texture
    // columns: 10 columns at x = 27 (150 pixels) average to exactly 170 and
    // stay; 9 at x = 28 (135 pixels, 153) go.
    const ClImage mask = fastMask(200, 30);
    EXPECT_EQ(mask.Row<uint8_t>(30)[27], 255);
    EXPECT_EQ(mask.Row<uint8_t>(30)[28], 0);
    EXPECT_EQ(Count(mask, inRow30), 28);
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
    EXPECT_EQ(prepared.Row<uint8_t>(240)[160], 128);
}
