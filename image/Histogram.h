#pragma once
// ClHistogram: the 256-bin histogram of a rectangle of a one-plane 8-bit
// image, with mean and spread over a range of bins. The detection stages use
// it as a box statistic, re-creating one on the stack for each block.
#include <cstdint>

class ClImage;

class ClHistogram
{
public:
    ClHistogram() = default;
    virtual ~ClHistogram() = default;

    // Counts the samples of columns nLeft..nRight-1 and rows nTop..nBottom-1,
    // clipped to the image.
    void Create(const ClImage& image, int32_t nLeft, int32_t nTop, int32_t nRight, int32_t nBottom);
    // Counts the whole image.
    void Create(const ClImage& image);

    // Mean sample value over bins nFirst..nLast.
    double Mean(int32_t nFirst, int32_t nLast) const;
    // Spread over bins nFirst..nLast, divided by the count of the whole
    // histogram: the trained stages rest on that.
    double StdDev(int32_t nFirst, int32_t nLast) const;

    // Bin i counts the samples whose value is i - m_nOffset.
    uint32_t m_nBins[256] = {};
    // 0 for unsigned images, 128 for signed ones.
    int32_t m_nOffset = 0;
};
