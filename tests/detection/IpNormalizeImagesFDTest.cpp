#include "detection/IpNormalizeImagesFD.h"

#include <cmath>

#include <gtest/gtest.h>

#include "image/ImageTestSupport.h"

namespace
{

// A capture whose contrast box (columns 40-278, rows 40-438) holds 50 pixels
// of nLow, 50 of nHigh and nMiddle elsewhere, with ridge-like stripes of
// that range outside the box.
ClImage ContrastCapture(uint8_t nLow, uint8_t nHigh)
{
    ClImage image;
    image.Create(ClImage::eUInt8, 320, 480);
    const uint8_t nMiddle = static_cast<uint8_t>((nLow + nHigh) / 2);
    for (int32_t y = 0; y < 480; ++y)
        for (int32_t x = 0; x < 320; ++x)
            image.Row<uint8_t>(y)[x] = nMiddle;
    for (int32_t i = 0; i < 50; ++i)
    {
        image.Row<uint8_t>(100)[50 + i] = nLow;
        image.Row<uint8_t>(200)[50 + i] = nHigh;
    }
    return image;
}

bool IsFlat(const ClImage& image, uint8_t v)
{
    for (int32_t y = 0; y < image.Height(); ++y)
        for (int32_t x = 0; x < image.Width(); ++x)
            if (image.Row<uint8_t>(y)[x] != v)
                return false;
    return true;
}

} // namespace

TEST(IpNormalizeImagesFD, AContrastOf100IsFilteredAnd99IsFlatGrey)
{
    Sentivo::ClIpNormalizeImagesFD normalize;
    ClImage out;
    ClImage low = ContrastCapture(10, 109);
    ASSERT_EQ(normalize.Run(&low, &out), 0);
    EXPECT_EQ(out.DataType(), ClImage::eUInt8);
    EXPECT_TRUE(IsFlat(out, 128));
    ClImage enough = ContrastCapture(10, 110);
    ASSERT_EQ(normalize.Run(&enough, &out), 0);
    EXPECT_FALSE(IsFlat(out, 128));
    // The extreme of the platen's centre maps to 2 or 254.
    uint8_t nMin = 255, nMax = 0;
    for (int32_t y = 80; y <= 399; ++y)
        for (int32_t x = 40; x <= 279; ++x)
        {
            nMin = std::min(nMin, out.Row<uint8_t>(y)[x]);
            nMax = std::max(nMax, out.Row<uint8_t>(y)[x]);
        }
    EXPECT_TRUE(nMin == 2 || nMax == 254) << int(nMin) << " " << int(nMax);
}

TEST(IpNormalizeImagesFD, TheBandPassRemovesTheMeanAndPassesTheRidgeFrequencies)
{
    const double* pTable = Sentivo::ClIpNormalizeImagesFD::BandPassTable();
    EXPECT_EQ(pTable[0], 0.0);
    // Row 0, column 12: d = 144, the high pass's cut-off: its factor is 1/2.
    const double dLow = 1.0 / (1.0 + std::pow(144.0 / 10000.0, 4));
    EXPECT_DOUBLE_EQ(pTable[12], 0.5 * dLow);
    // Row 470 stands for frequency 10, column 0: d = 100.
    EXPECT_DOUBLE_EQ(pTable[470 * 161], 1.0 / (1.0 + std::pow(1.44, 4)) /
                                            (1.0 + std::pow(0.01, 4)));
    // Radius 100 (d = 10000) is the low pass's cut-off.
    EXPECT_DOUBLE_EQ(pTable[100], 0.5 / (1.0 + std::pow(144.0 / 10000.0, 4)));
}

TEST(IpNormalizeImagesFD, OnlyTheCaptureSizeIsAccepted)
{
    Sentivo::ClIpNormalizeImagesFD normalize;
    ClImage out, small, wrongType;
    small.Create(ClImage::eUInt8, 320, 476);
    wrongType.Create(ClImage::eDouble64, 320, 480);
    ExpectThrows([&] { normalize.Run(nullptr, &out); }, -701, "Input image not assigned");
    ExpectThrows([&] { normalize.Run(&wrongType, &out); }, -33);
    ExpectThrows([&] { normalize.Run(&small, &out); }, -44, "invalid image dimension");
}
