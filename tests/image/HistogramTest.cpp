#include "image/Histogram.h"

#include <cmath>
#include <cstring>
#include <initializer_list>
#include <numeric>
#include <tuple>

#include <gtest/gtest.h>

#include "image/FpImage.h"

using std::make_tuple;

namespace
{

// An image of the given bytes in rows of nWidth; the rows' padding is 99.
ClImage Bytes(ClImage::EDataType eType, std::initializer_list<int> values, int32_t nWidth = 0)
{
    const int32_t nCount = static_cast<int32_t>(values.size());
    ClImage image;
    image.Create(eType, nWidth ? nWidth : nCount, nWidth ? nCount / nWidth : 1);
    std::memset(image.Data(), 99, static_cast<size_t>(image.ByteSize()));
    int32_t i = 0;
    for (int v : values)
        image.Row<uint8_t>(i / image.Width())[i % image.Width()] = static_cast<uint8_t>(v), ++i;
    return image;
}

uint32_t Total(const ClHistogram& h)
{
    return std::accumulate(std::begin(h.m_nBins), std::end(h.m_nBins), 0u);
}

} // namespace

TEST(Histogram, CountsTheClippedRectangleWithTheOffsetOfSignedSamples)
{
    const ClImage image = Bytes(ClImage::eUInt8, {0, 1, 2, 10, 11, 12, 20, 21, 22}, 3);
    ClHistogram h;
    h.Create(image, 1, 1, 3, 3);
    EXPECT_EQ(make_tuple(Total(h), h.m_nBins[11], h.m_nBins[12], h.m_nBins[21], h.m_nBins[22]),
              make_tuple(4u, 1u, 1u, 1u, 1u));
    // Beyond the edges whole rows count, not the padding.
    h.Create(image, -5, 1, 100, 2);
    EXPECT_EQ(make_tuple(Total(h), h.m_nBins[10], h.m_nBins[12], h.m_nOffset),
              make_tuple(3u, 1u, 1u, 0));
    // -128 lands in bin 0; a rectangle wholly outside counts nothing.
    h.Create(Bytes(ClImage::eInt8, {-128, 5}));
    EXPECT_EQ(make_tuple(Total(h), h.m_nBins[0], h.m_nBins[133], h.m_nOffset),
              make_tuple(2u, 1u, 1u, 128));
    h.Create(Bytes(ClImage::eInt8, {5}), -9, 0, -2, 1);
    EXPECT_EQ(make_tuple(Total(h), h.m_nOffset), make_tuple(0u, 128));
}

TEST(Histogram, MeanFallsBackToTheMiddleBinAndStdDevDividesByTheWholeCount)
{
    ClHistogram h;
    h.Create(Bytes(ClImage::eUInt8, {1, 2}));
    // No counts in range, or an inverted range: the middle, rounded down.
    EXPECT_EQ(make_tuple(h.Mean(0, 255), h.Mean(10, 21), h.Mean(21, 10)),
              make_tuple(1.5, 15.0, 15.0));
    // The offset comes off the mean but not off the fallback.
    h.Create(Bytes(ClImage::eInt8, {-128}));
    EXPECT_EQ(make_tuple(h.Mean(0, 255), h.Mean(10, 21)), make_tuple(-128.0, 15.0));

    // Range 0..254 leaves bin 255 out of the sum but not out of N = 4.
    h.Create(Bytes(ClImage::eUInt8, {0, 2, 4, 255}));
    EXPECT_DOUBLE_EQ(h.StdDev(0, 254), std::sqrt(8.0 / 3.0));
    // Signed: mean -127 (with offset), deviations from the plain bin index,
    // and 128 off the root.
    h.Create(Bytes(ClImage::eInt8, {-128, -126}));
    EXPECT_DOUBLE_EQ(h.StdDev(0, 255), std::sqrt(127.0 * 127.0 + 129.0 * 129.0) - 128.0);
}
