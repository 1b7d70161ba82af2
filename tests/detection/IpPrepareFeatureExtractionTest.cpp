#include "detection/IpPrepareFeatureExtraction.h"

#include <gtest/gtest.h>

#include "image/ImageTestSupport.h"

namespace
{

ClImage Texture(int32_t nWidth, int32_t nHeight, uint8_t nInside, int32_t nColumns)
{
    ClImage image;
    image.Create(ClImage::eUInt8, nWidth, nHeight);
    for (int32_t y = 0; y < nHeight; ++y)
        for (int32_t x = 0; x < nWidth; ++x)
            image.Row<uint8_t>(y)[x] = x < nColumns ? nInside : 0;
    return image;
}

int32_t CountColumnsOfRow(const ClImage& mask, int32_t y)
{
    int32_t n = 0;
    for (int32_t x = 0; x < mask.Width(); ++x)
        n += mask.Row<uint8_t>(y)[x] == 255;
    return n;
}

} // namespace

TEST(IpPrepareFeatureExtraction, TextureMustExceed32AndFillTwoThirdsOfTheCleaningWindow)
{
    ClIpPrepareFeatureExtraction prepare;
    ClImage mask;
    // A texture of exactly 32 is background everywhere; 33 is ridge ground.
    ClImage texture = Texture(60, 60, 32, 60);
    prepare.MakeFastMask(texture, mask);
    EXPECT_EQ(CountColumnsOfRow(mask, 30), 0);
    texture = Texture(60, 60, 33, 60);
    prepare.MakeFastMask(texture, mask);
    EXPECT_EQ(CountColumnsOfRow(mask, 30), 60);

    // Texture in columns 0-29. Away from the ends of the columns the 15 x 15
    // window of column x holds 15 pixels of each of its 37 - x texture
    // columns: 10 columns at x = 27 (150 pixels) average to exactly 170 and
    // stay; 9 at x = 28 (135 pixels, 153) go.
    texture = Texture(60, 60, 200, 30);
    prepare.MakeFastMask(texture, mask);
    EXPECT_EQ(mask.Row<uint8_t>(30)[27], 255);
    EXPECT_EQ(mask.Row<uint8_t>(30)[28], 0);
    EXPECT_EQ(CountColumnsOfRow(mask, 30), 28);
}

TEST(IpPrepareFeatureExtraction, AFlatCaptureGivesAnEmptyMaskAndMissingImagesTheirTexts)
{
    ClImage capture, prepared, mask;
    capture.Create(ClImage::eUInt8, 320, 480);
    capture.Fill<uint8_t>(90);
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
        nMask += CountColumnsOfRow(mask, y);
    EXPECT_EQ(nMask, 0);
    EXPECT_EQ(prepared.Row<uint8_t>(240)[160], 128);
}
