#include "image/Histogram.h"

#include <cmath>
#include <cstring>
#include <type_traits>

#include "image/FpImage.h"
#include "sdk/Exception.h"

namespace
{

// Bins outside 0..255 do not exist and count nothing.
int32_t FirstBin(int32_t nFirst)
{
    return nFirst < 0 ? 0 : nFirst;
}
int32_t LastBin(int32_t nLast)
{
    return nLast > 255 ? 255 : nLast;
}

} // namespace

void ClHistogram::Create(const ClImage& image)
{
    Create(image, 0, 0, image.Width(), image.Height());
}

void ClHistogram::Create(const ClImage& image, int32_t nLeft, int32_t nTop, int32_t nRight,
                         int32_t nBottom)
{
    std::memset(m_nBins, 0, sizeof(m_nBins));
    m_nOffset = 0;

    if (image.Planes() != 1)
        SENTIVO_THROW("Color-image not supported in ClHistogram::Create.", ZRC_ERROR_INTERNAL);
    // The rectangle is judged before it is clipped.
    if (nLeft >= nRight || nTop >= nBottom)
        SENTIVO_THROW("invalid Range in ClHistogram::Create.", ZRC_ERROR_INTERNAL);

    const int32_t x0 = nLeft < 1 ? 0 : nLeft;
    const int32_t x1 = nRight >= image.Width() ? image.Width() : nRight;
    const int32_t y0 = nTop < 1 ? 0 : nTop;
    const int32_t y1 = nBottom >= image.Height() ? image.Height() : nBottom;

    // Bit 7 of the data type marks signed samples.
    m_nOffset = (image.DataType() & 0x80) != 0 ? 128 : 0;

    // Only eUInt8 and eInt8 images are given here: the sample is one byte at
    // column x, whatever the type says. A signed byte v has bin v + 128,
    // which is its bit pattern with bit 7 flipped.
    const uint8_t* pData = image.Data();
    if (pData == nullptr || x0 >= x1 || y0 >= y1)
        return;
    const int64_t nStride = image.RowStride();

    // Four counts per bin, taken in turn along the row: neighbouring equal
    // samples then do not wait on one counter. They are added up at the end.
    // The flip is a constant of each loop, so the unsigned loop has none.
    uint32_t nCounts[4][256];
    std::memset(nCounts, 0, sizeof(nCounts));
    auto count = [&](auto flip)
    {
        constexpr uint8_t nFlip = decltype(flip)::value;
        for (int32_t y = y0; y < y1; ++y)
        {
            const uint8_t* pRow = pData + y * nStride;
            int32_t x = x0;
            for (; x + 4 <= x1; x += 4)
            {
                ++nCounts[0][pRow[x] ^ nFlip];
                ++nCounts[1][pRow[x + 1] ^ nFlip];
                ++nCounts[2][pRow[x + 2] ^ nFlip];
                ++nCounts[3][pRow[x + 3] ^ nFlip];
            }
            for (; x < x1; ++x)
                ++nCounts[0][pRow[x] ^ nFlip];
        }
    };
    if (m_nOffset == 128)
        count(std::integral_constant<uint8_t, 0x80>{});
    else
        count(std::integral_constant<uint8_t, 0>{});
    for (int32_t i = 0; i < 256; ++i)
        m_nBins[i] = nCounts[0][i] + nCounts[1][i] + nCounts[2][i] + nCounts[3][i];
}

double ClHistogram::Mean(int32_t nFirst, int32_t nLast) const
{
    // Halved downward, as an integer.
    const int32_t nMiddle =
        static_cast<int32_t>(std::floor((static_cast<int64_t>(nFirst) + nLast) / 2.0));
    if (nFirst > nLast)
        return nMiddle;

    // Both sums are 32-bit, as the trained stages were computed with.
    uint32_t nCount = 0;
    uint32_t nProduct = 0;
    for (int32_t i = FirstBin(nFirst); i <= LastBin(nLast); ++i)
    {
        nCount += m_nBins[i];
        nProduct += static_cast<uint32_t>(i) * m_nBins[i];
    }
    if (nCount == 0)
        return nMiddle;
    return static_cast<double>(nProduct) / static_cast<double>(nCount) - m_nOffset;
}

double ClHistogram::StdDev(int32_t nFirst, int32_t nLast) const
{
    const double dMean = Mean(nFirst, nLast);
    double dSum = 0.0;
    for (int32_t i = FirstBin(nFirst); i <= LastBin(nLast); ++i)
    {
        const double dDiff = i - dMean;
        dSum += dDiff * dDiff * m_nBins[i];
    }
    // N is the whole histogram, not the range; the offset comes off the
    // result while the mean already carries it.
    double dAll = 0.0;
    for (uint32_t nBin : m_nBins)
        dAll += nBin;
    return std::sqrt(dSum / (dAll - 1.0)) - m_nOffset;
}

int64_t ClHistogram::SumOfLowest(int64_t n) const
{
    int64_t nCount = 0, nSum = 0;
    int32_t b = 0;
    for (;; ++b)
    {
        nCount += m_nBins[b];
        nSum += static_cast<int64_t>(b) * m_nBins[b];
        if (nCount >= n || b == 255)
            break;
    }
    return nSum - (nCount - n) * b;
}

int64_t ClHistogram::SumOfHighest(int64_t n) const
{
    int64_t nCount = 0, nSum = 0;
    int32_t b = 255;
    for (;; --b)
    {
        nCount += m_nBins[b];
        nSum += static_cast<int64_t>(b) * m_nBins[b];
        if (nCount >= n || b == 0)
            break;
    }
    return nSum - (nCount - n) * b;
}
