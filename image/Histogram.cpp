#include "image/Histogram.h"

#include <cmath>
#include <cstring>

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
    // column x, whatever the type says.
    const uint8_t* pData = image.Data();
    if (pData == nullptr)
        return;
    const int64_t nStride = image.RowStride();
    for (int32_t y = y0; y < y1; ++y)
    {
        const uint8_t* pRow = pData + y * nStride;
        if (m_nOffset == 128)
        {
            for (int32_t x = x0; x < x1; ++x)
                ++m_nBins[static_cast<int8_t>(pRow[x]) + 128];
        }
        else
        {
            for (int32_t x = x0; x < x1; ++x)
                ++m_nBins[pRow[x]];
        }
    }
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
