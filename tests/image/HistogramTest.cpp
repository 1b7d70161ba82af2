#include "image/Histogram.h"

#include <cmath>
#include <random>

#include "support/SampleReference.h"

using std::make_tuple;
using TestImages::OneRow;

TEST(Histogram, MeanFallsBackToTheMiddleBinAndStdDevDividesByTheWholeCount)
{
    ClHistogram h;
    h.Create(OneRow(ClImage::eUInt8, {1, 2}));
    // No counts in range, or an inverted range: the middle, rounded down.
    EXPECT_EQ(make_tuple(h.Mean(0, 255), h.Mean(10, 21), h.Mean(21, 10)),
              make_tuple(1.5, 15.0, 15.0));
    // The offset comes off the mean but not off the fallback.
    h.Create(OneRow(ClImage::eInt8, {-128}));
    EXPECT_EQ(make_tuple(h.Mean(0, 255), h.Mean(10, 21)), make_tuple(-128.0, 15.0));

    // Range 0..254 leaves bin 255 out of the sum but not out of N = 4.
    h.Create(OneRow(ClImage::eUInt8, {0, 2, 4, 255}));
    EXPECT_DOUBLE_EQ(h.StdDev(0, 254), std::sqrt(8.0 / 3.0));
    // Signed: mean -127 (with offset), deviations from the plain bin index,
    // and 128 off the root.
    h.Create(OneRow(ClImage::eInt8, {-128, -126}));
    EXPECT_DOUBLE_EQ(h.StdDev(0, 255), std::sqrt(127.0 * 127.0 + 129.0 * 129.0) - 128.0);
}

TEST(Histogram, RandomRectanglesCountAsAPlainLoopCounts)
{
    // Rows of many widths with padding bytes of 99, unsigned and signed
    // bytes, rectangles inside, across and beyond every edge (wholly outside
    // too), against one count per sample.
    std::mt19937 rng(11);
    for (ClImage::EDataType eType : {ClImage::eUInt8, ClImage::eInt8})
        for (int32_t nWidth : {1, 2, 3, 4, 5, 7, 8, 9, 16, 17, 31, 320})
        {
            const int32_t nHeight = 1 + static_cast<int32_t>(rng() % 40);
            const int nOffset = eType == ClImage::eInt8 ? 128 : 0; // signed -128 in bin 0
            ClImage image;
            image.Create(eType, nWidth, nHeight);
            std::memset(image.Data(), 99, static_cast<size_t>(image.ByteSize()));
            for (int32_t y = 0; y < nHeight; ++y)
                for (int32_t x = 0; x < nWidth; ++x) // runs of equal bytes as well
                    image.Row<uint8_t>(y)[x] = static_cast<uint8_t>(rng() % 3 ? rng() : x / 5);
            std::uniform_int_distribution<int32_t> across(-3, nWidth + 3), down(-3, nHeight + 3);
            for (int nCase = 0; nCase < 40; ++nCase)
            {
                int32_t nLeft = across(rng), nRight = across(rng);
                int32_t nTop = down(rng), nBottom = down(rng);
                if (nLeft >= nRight || nTop >= nBottom)
                    continue;
                uint32_t expected[256] = {};
                for (int32_t y = std::max(0, nTop); y < std::min(nHeight, nBottom); ++y)
                    for (int32_t x = std::max(0, nLeft); x < std::min(nWidth, nRight); ++x)
                        ++expected[static_cast<uint8_t>(image.Row<uint8_t>(y)[x] + nOffset)];
                ClHistogram h;
                h.Create(image, nLeft, nTop, nRight, nBottom);
                EXPECT_EQ(std::memcmp(expected, h.m_nBins, sizeof(expected)), 0)
                    << nWidth << "x" << nHeight << " " << nLeft << ".." << nRight << ", " << nTop
                    << ".." << nBottom;
                EXPECT_EQ(h.m_nOffset, nOffset);
            }
        }
}
