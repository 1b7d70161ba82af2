#include "detection/IpExtractFeatures.h"

#include <cmath>
#include <functional>

#include <gtest/gtest.h>

#include "image/Histogram.h"
#include "image/ImageTestSupport.h"

namespace
{

ClImage Image(const std::function<uint8_t(int32_t, int32_t)>& value, int32_t W = 320,
              int32_t H = 480)
{
    ClImage image;
    image.Create(ClImage::eUInt8, W, H);
    for (int32_t y = 0; y < H; ++y)
        for (int32_t x = 0; x < W; ++x)
            image.Row<uint8_t>(y)[x] = value(x, y);
    return image;
}

// The final mask that the driver makes of a fast mask, on a flat capture.
ClImage FinalMaskOf(ClImage fastMask)
{
    ClImage capture = Image([](int32_t, int32_t) { return uint8_t(100); }, fastMask.Width(),
                            fastMask.Height());
    ClImage mask;
    ClIpExtractFeatures driver;
    driver.pInImage = &capture;
    driver.pInFastMask = &fastMask;
    driver.pOutMask = &mask;
    driver.Run();
    return mask;
}

int64_t Count(const ClImage& mask, const std::function<bool(int32_t, int32_t)>& where)
{
    int64_t n = 0;
    for (int32_t y = 0; y < mask.Height(); ++y)
        for (int32_t x = 0; x < mask.Width(); ++x)
            n += where(x, y) && mask.Row<uint8_t>(y)[x] == 255;
    return n;
}

} // namespace

TEST(IpExtractFeatures, AreaStatisticsCountBinZeroOnlyInTheDivisorAndLeaveBin255OutOfTheEntropy)
{
    ClHistogram histogram;
    histogram.m_nBins[0] = 1000;
    histogram.m_nBins[100] = 10;
    histogram.m_nBins[255] = 10;
    double adOut[3];
    ClIpExtractFeatures::AreaStatistics(histogram, adOut);
    EXPECT_EQ(adOut[0], 177.5);
    EXPECT_DOUBLE_EQ(adOut[1], std::sqrt(20 * 77.5 * 77.5 / 1019.0));
    // Of the 20 area pixels half are at 100; bin 255 is left out.
    EXPECT_DOUBLE_EQ(adOut[2], -0.5);

    // An empty area: the mean falls back to the middle of bins 1 to 255,
    // the deviation to 0 and the entropy to 0 (0 / 0 is never above 0).
    ClHistogram empty;
    empty.m_nBins[0] = 153600;
    ClIpExtractFeatures::AreaStatistics(empty, adOut);
    EXPECT_EQ(adOut[0], 128.0);
    EXPECT_EQ(adOut[1], 0.0);
    EXPECT_EQ(adOut[2], 0.0);
}

TEST(IpExtractFeatures, FinalMaskLosesItsFrameIsErodedAndKeepsTheLargestPiece)
{
    // A full fast mask stops 8 pixels short of each border.
    const ClImage full = FinalMaskOf(Image([](int32_t, int32_t) { return uint8_t(255); }));
    EXPECT_EQ(Count(full, [](int32_t, int32_t) { return true; }), (320 - 16) * (480 - 16));
    EXPECT_EQ(Count(full, [](int32_t x, int32_t y) { return x >= 8 && x < 312 && y >= 8 && y < 472; }),
              (320 - 16) * (480 - 16));
    // No piece at all: an empty mask.
    EXPECT_EQ(Count(FinalMaskOf(Image([](int32_t, int32_t) { return uint8_t(0); })),
                    [](int32_t, int32_t) { return true; }),
              0);
    // Two equal pieces: the one whose first pixel comes first in raster
    // order (rows as stored) stays.
    const ClImage two = FinalMaskOf(Image([](int32_t x, int32_t y)
    { return uint8_t((x >= 20 && x < 140 && y >= 30 && y < 200) || (x >= 180 && x < 300 && y >= 40 && y < 210) ? 255 : 0); }));
    EXPECT_EQ(Count(two, [](int32_t x, int32_t) { return x >= 180; }), 0);
    EXPECT_EQ(Count(two, [](int32_t x, int32_t) { return x < 140; }), (120 - 14) * (170 - 14));
}

TEST(IpExtractFeatures, HolesUnder1000PixelsAreFilled)
{
    // The erosion widens a hole of the fast mask by 7 pixels on each side:
    // 11 x 26 becomes 25 x 40 = 1000 pixels and stays, 13 x 23 becomes
    // 27 x 37 = 999 and is filled.
    auto withHole = [](int32_t w, int32_t h)
    {
        return Image([=](int32_t x, int32_t y)
                     { return uint8_t(x >= 100 && x < 100 + w && y >= 200 && y < 200 + h ? 0 : 255); });
    };
    auto inHole = [](int32_t x, int32_t y) { return x >= 93 && x < 150 && y >= 193 && y < 250; };
    EXPECT_EQ(Count(FinalMaskOf(withHole(13, 23)), inHole), 57 * 57);
    EXPECT_EQ(Count(FinalMaskOf(withHole(11, 26)), inHole), 57 * 57 - 1000);
}

TEST(IpExtractFeatures, MissingImagesAndOddContentNeverCrash)
{
    ClImage image = Image([](int32_t, int32_t) { return uint8_t(0); }), mask;
    ClIpExtractFeatures driver;
    ExpectThrows([&] { driver.Run(); }, -44, "invalid input image");
    driver.pInImage = &image;
    ExpectThrows([&] { driver.Run(); }, -44, "invalid input image");
    driver.pInFastMask = &image;
    ExpectThrows([&] { driver.Run(); }, -44, "invalid output parameter");
    // A fast mask of another size is refused instead of read past its end.
    ClImage small = Image([](int32_t, int32_t) { return uint8_t(255); }, 32, 48);
    driver.pOutMask = &mask;
    driver.pInFastMask = &small;
    EXPECT_THROW(driver.Run(), ClException);
}
