#include "image/Histogram.h"

#include <cmath>
#include <initializer_list>
#include <numeric>
#include <tuple>

#include <gtest/gtest.h>

#include "ImageTestSupport.h"
#include "image/FpImage.h"

namespace
{

// An image of the given bytes in rows of nWidth; the rows' padding is set to
// 99, which no test counts.
ClImage Bytes(ClImage::EDataType eType, std::initializer_list<int> values, int32_t nWidth = 0)
{
    const int32_t nCount = static_cast<int32_t>(values.size());
    ClImage image;
    image.Create(eType, nWidth ? nWidth : nCount, nWidth ? nCount / nWidth : 1);
    std::memset(image.Data(), 99, static_cast<size_t>(image.ByteSize()));
    int32_t i = 0;
    for (int v : values)
    {
        image.Row<uint8_t>(i / image.Width())[i % image.Width()] = static_cast<uint8_t>(v);
        ++i;
    }
    return image;
}

uint32_t Total(const ClHistogram& h)
{
    return std::accumulate(std::begin(h.m_nBins), std::end(h.m_nBins), 0u);
}

} // namespace

TEST(Histogram, CountsTheClippedRectangleAndRefusesColourFirstThenEmptyRectangles)
{
    const ClImage image = Bytes(ClImage::eUInt8, {0, 1, 2, 10, 11, 12, 20, 21, 22}, 3);
    ClHistogram h;
    h.Create(image, 1, 1, 3, 3);
    EXPECT_EQ(std::make_tuple(Total(h), h.m_nBins[11], h.m_nBins[12], h.m_nBins[21], h.m_nBins[22]),
              std::make_tuple(4u, 1u, 1u, 1u, 1u));
    // Negative left and a right beyond the width count whole rows, not the
    // padding; the whole image by default.
    h.Create(image, -5, 1, 100, 2);
    EXPECT_EQ(std::make_tuple(Total(h), h.m_nBins[10], h.m_nBins[12]), std::make_tuple(3u, 1u, 1u));
    h.Create(image);
    EXPECT_EQ(std::make_tuple(Total(h), h.m_nBins[99], h.m_nOffset), std::make_tuple(9u, 0u, 0));

    // Wholly outside: valid, empty, the offset set by the type.
    ClImage signedImage = Bytes(ClImage::eInt8, {5, 6, 7});
    for (auto [l, t, r, b] :
         {std::tuple{5, 0, 9, 1}, std::tuple{-9, 0, -2, 1}, std::tuple{0, 4, 2, 6}})
    {
        h.Create(signedImage, l, t, r, b);
        EXPECT_EQ(std::make_tuple(Total(h), h.m_nOffset), std::make_tuple(0u, 128));
    }

    // A refusal leaves the histogram cleared; the planes are tested before the
    // rectangle, which is tested before clipping.
    ClImage colour;
    colour.Create(ClImage::eUInt8, 2, 2, 3);
    for (auto [pImage, l, t, r, b, szText] :
         {std::tuple{&signedImage, 1, 0, 1, 1, "invalid Range in ClHistogram::Create."},
          std::tuple{&signedImage, 0, 1, 3, 1, "invalid Range in ClHistogram::Create."},
          std::tuple{&signedImage, 2, 0, 1, 1, "invalid Range in ClHistogram::Create."},
          std::tuple{&colour, 0, 0, 2, 2, "Color-image not supported in ClHistogram::Create."},
          std::tuple{&colour, 1, 0, 1, 2, "Color-image not supported in ClHistogram::Create."}})
    {
        h.Create(signedImage);
        const ClImage& target = *pImage;
        const int32_t anRect[4] = {l, t, r, b};
        ExpectThrows([&] { h.Create(target, anRect[0], anRect[1], anRect[2], anRect[3]); }, -101,
                     szText);
        EXPECT_EQ(std::make_tuple(Total(h), h.m_nOffset), std::make_tuple(0u, 0));
    }
}

TEST(Histogram, MeanDividesInFloatingPointAndFallsBackToTheMiddleBin)
{
    ClHistogram h;
    h.Create(Bytes(ClImage::eUInt8, {1, 2}));
    // No counts in range, or an inverted range: the middle, rounded down.
    EXPECT_EQ(std::make_tuple(h.Mean(0, 255), h.Mean(2, 255), h.Mean(10, 21), h.Mean(21, 10)),
              std::make_tuple(1.5, 2.0, 15.0, 15.0));
    // Signed samples: -128 lands in bin 0 and the offset comes off the mean,
    // but not off the fallback.
    h.Create(Bytes(ClImage::eInt8, {-128}));
    EXPECT_EQ(std::make_tuple(h.m_nBins[0], h.Mean(0, 255), h.Mean(10, 21)),
              std::make_tuple(1u, -128.0, 15.0));
    // Bins outside 0..255 count nothing.
    h.Create(Bytes(ClImage::eUInt8, {3, 5}));
    EXPECT_EQ(h.Mean(-50, 300), 4.0);
    // Both sums are 32-bit: 255 x 17640000 wraps to 203232704.
    ClHistogram wide;
    wide.m_nBins[255] = 17640000;
    EXPECT_DOUBLE_EQ(wide.Mean(0, 255), 203232704.0 / 17640000.0);
}

TEST(Histogram, StdDevDividesByTheWholeHistogramAndSubtractsTheOffset)
{
    ClHistogram h;
    h.Create(Bytes(ClImage::eUInt8, {0, 2, 4, 255}));
    // Range 0..254 leaves out bin 255 from the sum but not from N = 4;
    // narrowing to one bin: mean 2, sum 0.
    EXPECT_DOUBLE_EQ(h.StdDev(0, 254), std::sqrt(8.0 / 3.0));
    EXPECT_EQ(h.StdDev(2, 2), 0.0);
    // Signed: bins 0 and 2, mean -127 (with offset), deviations from the
    // plain bin index, and 128 off the root.
    h.Create(Bytes(ClImage::eInt8, {-128, -126}));
    EXPECT_DOUBLE_EQ(h.StdDev(0, 255), std::sqrt(127.0 * 127.0 + 129.0 * 129.0) - 128.0);
    // One sample: N - 1 is 0.
    h.Create(Bytes(ClImage::eUInt8, {7}));
    EXPECT_TRUE(std::isnan(h.StdDev(0, 255)));
}
