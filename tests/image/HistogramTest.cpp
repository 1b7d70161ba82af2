#include "image/Histogram.h"

#include <cmath>
#include <initializer_list>
#include <tuple>

#include <gtest/gtest.h>

#include "ImageTestSupport.h"
#include "image/FpImage.h"

namespace
{

// A one-row image of the given bytes; the row's padding is set to 99, which
// no test counts.
ClImage RowImage(ClImage::EDataType eType, std::initializer_list<int> values)
{
    ClImage image;
    image.Create(eType, static_cast<int32_t>(values.size()), 1);
    std::memset(image.Data(), 99, static_cast<size_t>(image.ByteSize()));
    uint8_t* p = image.Data();
    for (int v : values)
        *p++ = static_cast<uint8_t>(v);
    return image;
}

} // namespace

TEST(Histogram, CountsTheClippedRectangleOfRows)
{
    ClImage image;
    image.Create(ClImage::eUInt8, 3, 3); // stride 4: one padding byte per row
    std::memset(image.Data(), 99, 12);
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 3; ++x)
            image.Row<uint8_t>(y)[x] = static_cast<uint8_t>(10 * y + x);

    ClHistogram h;
    h.Create(image, 1, 1, 3, 3);
    for (int v : {11, 12, 21, 22})
        EXPECT_EQ(h.m_nBins[v], 1u) << v;
    EXPECT_EQ(h.m_nBins[10] + h.m_nBins[99] + h.m_nBins[2], 0u);

    // Negative left and a right beyond the width count whole rows; the
    // padding stays out.
    h.Create(image, -5, 1, 100, 2);
    for (int v : {10, 11, 12})
        EXPECT_EQ(h.m_nBins[v], 1u) << v;
    EXPECT_EQ(h.m_nBins[99], 0u);

    h.Create(image);
    uint32_t nAll = 0;
    for (uint32_t n : h.m_nBins)
        nAll += n;
    EXPECT_EQ(nAll, 9u);
    EXPECT_EQ(h.m_nOffset, 0);

    // Wholly outside: valid, empty, the offset set by the type.
    ClImage signedImage = RowImage(ClImage::eInt8, {1, 2});
    for (auto [l, t, r, b] :
         {std::tuple{5, 0, 9, 1}, std::tuple{-9, 0, -2, 1}, std::tuple{0, 4, 2, 6}})
    {
        h.Create(signedImage, l, t, r, b);
        for (uint32_t n : h.m_nBins)
            ASSERT_EQ(n, 0u);
        EXPECT_EQ(h.m_nOffset, 128);
    }
}

TEST(Histogram, RefusesColourImagesFirstThenEmptyRectangles)
{
    ClHistogram h;
    ClImage grey = RowImage(ClImage::eInt8, {5, 6, 7});
    h.Create(grey);
    ASSERT_EQ(h.m_nOffset, 128);

    const char* const kRange = "invalid Range in ClHistogram::Create.";
    ExpectThrows([&] { h.Create(grey, 1, 0, 1, 1); }, -101, kRange);
    // A failure leaves the histogram cleared.
    EXPECT_EQ(h.m_nBins[5 + 128], 0u);
    EXPECT_EQ(h.m_nOffset, 0);
    ExpectThrows([&] { h.Create(grey, 0, 1, 3, 1); }, -101, kRange);
    ExpectThrows([&] { h.Create(grey, 2, 0, 1, 1); }, -101, kRange);

    ClImage colour;
    colour.Create(ClImage::eUInt8, 2, 2, 3);
    const char* const kColour = "Color-image not supported in ClHistogram::Create.";
    ExpectThrows([&] { h.Create(colour, 0, 0, 2, 2); }, -101, kColour);
    ExpectThrows([&] { h.Create(colour, 1, 0, 1, 2); }, -101, kColour);
}

TEST(Histogram, MeanDividesInFloatingPointAndFallsBackToTheMiddleBin)
{
    ClHistogram h;
    h.Create(RowImage(ClImage::eUInt8, {1, 2}));
    EXPECT_EQ(h.Mean(0, 255), 1.5);
    EXPECT_EQ(h.Mean(2, 255), 2.0);
    // No counts in range, or an inverted range: the middle, rounded down.
    EXPECT_EQ(h.Mean(10, 21), 15.0);
    EXPECT_EQ(h.Mean(21, 10), 15.0);

    // Signed samples: -128 lands in bin 0 and the offset comes off the mean,
    // but not off the fallback.
    h.Create(RowImage(ClImage::eInt8, {-128}));
    EXPECT_EQ(h.m_nBins[0], 1u);
    EXPECT_EQ(h.Mean(0, 255), -128.0);
    EXPECT_EQ(h.Mean(10, 21), 15.0);

    // Both sums are 32-bit: 255 x 17640000 wraps to 203232704.
    ClHistogram wide;
    wide.m_nBins[255] = 17640000;
    EXPECT_DOUBLE_EQ(wide.Mean(0, 255), 203232704.0 / 17640000.0);

    // Bins outside 0..255 count nothing.
    h.Create(RowImage(ClImage::eUInt8, {3, 5}));
    EXPECT_EQ(h.Mean(-50, 300), 4.0);
}

TEST(Histogram, StdDevDividesByTheWholeHistogramAndSubtractsTheOffset)
{
    ClHistogram h;
    h.Create(RowImage(ClImage::eUInt8, {0, 2, 4, 255}));
    // Range 0..254 leaves out bin 255 from the sum but not from N = 4.
    EXPECT_DOUBLE_EQ(h.StdDev(0, 254), std::sqrt(8.0 / 3.0));
    // Narrowing to one bin: mean 2, sum 0.
    EXPECT_EQ(h.StdDev(2, 2), 0.0);

    // Signed: bins 0 and 2, mean -127 (with offset), deviations from the
    // plain bin index, and 128 off the root.
    h.Create(RowImage(ClImage::eInt8, {-128, -126}));
    EXPECT_DOUBLE_EQ(h.StdDev(0, 255), std::sqrt(127.0 * 127.0 + 129.0 * 129.0) - 128.0);

    // One sample: N - 1 is 0.
    h.Create(RowImage(ClImage::eUInt8, {7}));
    EXPECT_TRUE(std::isnan(h.StdDev(0, 255)));
}
