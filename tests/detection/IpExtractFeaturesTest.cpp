// The feature driver: area statistics and the final mask.
#include <cmath>
#include <functional>
#include <vector>

#include <gtest/gtest.h>

#include "detection/IpExtractFeatures.h"
#include "image/Histogram.h"
#include "support/DetectionImages.h"

using namespace TestImages;

TEST(IpExtractFeatures, AreaStatisticsCountBin0OnlyInTheDivisorAndLeaveBin255OutOfTheEntropy)
{
    ClHistogram histogram;
    histogram.m_nBins[0] = 1000;
    histogram.m_nBins[100] = histogram.m_nBins[255] = 10;
    double adOut[3];
    ClIpExtractFeatures::AreaStatistics(histogram, adOut);
    EXPECT_EQ(adOut[0], 177.5);
    EXPECT_DOUBLE_EQ(adOut[1], std::sqrt(20 * 77.5 * 77.5 / 1019.0));
    // Of the 20 area pixels half are at 100; bin 255 is left out.
    EXPECT_DOUBLE_EQ(adOut[2], -0.5);
    // An empty area: the mean falls back to the middle of bins 1 to 255, the
    // deviation to 0 and the entropy to 0 (0 / 0 is never above 0).
    ClHistogram empty;
    empty.m_nBins[0] = 153600;
    ClIpExtractFeatures::AreaStatistics(empty, adOut);
    EXPECT_EQ(std::vector<double>(adOut, adOut + 3), (std::vector<double>{128.0, 0.0, 0.0}));
}

TEST(IpExtractFeatures, FinalMaskKeepsTheFirstOfEqualPiecesAndFillsHolesUnder1000Pixels)
{
    // The pixels of 255 where where(x, y) in the final mask that the driver
    // makes of a fast mask of 255 where inside, on a flat capture.
    using Where = std::function<bool(int32_t, int32_t)>;
    auto countIn = [](const Where& inside, const Where& where)
    {
        ClImage capture = Filled(320, 480, 100), mask;
        ClImage fastMask =
            ImageOf(320, 480, [&](int32_t x, int32_t y) { return inside(x, y) ? 255 : 0; });
        ClIpExtractFeatures driver;
        driver.pInImage = &capture, driver.pInFastMask = &fastMask, driver.pOutMask = &mask;
        driver.Run();
        return Count(mask, [&](int32_t x, int32_t y, int v) { return v == 255 && where(x, y); });
    };
    const Where all = [](int32_t, int32_t) { return true; };
    EXPECT_EQ(countIn([](int32_t, int32_t) { return false; }, all), 0);
    // Of two equal pieces the one whose first pixel comes first in raster
    // order (rows as stored) stays, eroded by 7 on each side.
    const Where two = [](int32_t x, int32_t y)
    {
        return (x >= 20 && x < 140 && y >= 30 && y < 200) ||
               (x >= 180 && x < 300 && y >= 40 && y < 210);
    };
    EXPECT_EQ(countIn(two, all), (120 - 14) * (170 - 14));
    EXPECT_EQ(countIn(two, [](int32_t x, int32_t) { return x < 140; }), (120 - 14) * (170 - 14));
    // The erosion widens a hole by 7 pixels on each side: 11 x 26 becomes
    // 25 x 40 = 1000 pixels and stays, 13 x 23 becomes 27 x 37 = 999 and is
    // filled.
    auto withHole = [](int32_t w, int32_t h) -> Where
    {
        return [=](int32_t x, int32_t y)
        { return x < 100 || x >= 100 + w || y < 200 || y >= 200 + h; };
    };
    const Where inHole = [](int32_t x, int32_t y)
    { return x >= 93 && x < 150 && y >= 193 && y < 250; };
    EXPECT_EQ(countIn(withHole(13, 23), inHole), 57 * 57);
    EXPECT_EQ(countIn(withHole(11, 26), inHole), 57 * 57 - 1000);
}

TEST(IpExtractFeatures, RefusesMissingImagesInOrderAndAFastMaskOfAnotherSize)
{
    ClImage image = Filled(320, 480, 0), small = Filled(32, 48, 255), mask;
    ClIpExtractFeatures driver;
    ExpectThrows([&] { driver.Run(); }, -44, "invalid input image");
    driver.pInImage = &image;
    ExpectThrows([&] { driver.Run(); }, -44, "invalid input image");
    driver.pInFastMask = &image;
    ExpectThrows([&] { driver.Run(); }, -44, "invalid output parameter");
    // Refused instead of read past its end.
    driver.pOutMask = &mask;
    driver.pInFastMask = &small;
    EXPECT_THROW(driver.Run(), ClException);
}
