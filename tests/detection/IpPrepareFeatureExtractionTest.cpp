#include "detection/IpPrepareFeatureExtraction.h"

#include <gtest/gtest.h>

#include "image/ImageTestSupport.h"
#include "support/DetectionImages.h"

namespace
{

// The fast mask of a texture of nValue in columns 0 to nColumns - 1, and
// the count of its pixels in row 30.
ClImage FastMask(int nValue, int32_t nColumns, int32_t& nInRow30)
{
    ClImage texture = TestImages::ImageOf(
                60, 60, [=](int32_t x, int32_t) { return x < nColumns ? nValue : 0; }),
            mask;
    ClIpPrepareFeatureExtraction().MakeFastMask(texture, mask);
    nInRow30 = 0;
    for (int32_t x = 0; x < 60; ++x)
        nInRow30 += mask.Row<uint8_t>(30)[x] == 255;
    return mask;
}

} // namespace

TEST(IpPrepareFeatureExtraction, TextureMustExceed32AndFillTwoThirdsOfTheCleaningWindow)
{
    // A texture of exactly 32 is background everywhere; 33 is ridge ground.
    int32_t n = -1;
    FastMask(32, 60, n);
    EXPECT_EQ(n, 0);
    FastMask(33, 60, n);
    EXPECT_EQ(n, 60);
    // Texture in columns 0-29. Away from the ends of the columns the 15 x 15
    // window of column x holds 15 pixels of each of its 37 - x texture
    // columns: 10 columns at x = 27 (150 pixels) average to exactly 170 and
    // stay; 9 at x = 28 (135 pixels, 153) go.
    const ClImage mask = FastMask(200, 30, n);
    EXPECT_EQ(mask.Row<uint8_t>(30)[27], 255);
    EXPECT_EQ(mask.Row<uint8_t>(30)[28], 0);
    EXPECT_EQ(n, 28);
}

TEST(IpPrepareFeatureExtraction, AFlatCaptureGivesAnEmptyMaskAndMissingImagesTheirTexts)
{
    ClImage capture = TestImages::Filled(320, 480, 90), prepared, mask;
    ClIpPrepareFeatureExtraction prepare;
    ExpectThrows([&] { prepare.Run(); }, -44, "invalid input image");
    prepare.pInImage = &capture;
    ExpectThrows([&] { prepare.Run(); }, -44, "invalid output image");
    prepare.pOutImage = &prepared;
    ExpectThrows([&] { prepare.Run(); }, -44, "invalid output parameter");
    prepare.pOutMask = &mask;
    ASSERT_EQ(prepare.Run(), 0);
    int32_t nMask = 0;
    for (int32_t y = 0; y < 480; ++y)
        for (int32_t x = 0; x < 320; ++x)
            nMask += mask.Row<uint8_t>(y)[x] != 0;
    EXPECT_EQ(nMask, 0);
    EXPECT_EQ(prepared.Row<uint8_t>(240)[160], 128);
}
