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

    // Grey sum of the n lowest (highest) samples: bins are added from 0
    // upward (255 downward) until at least n samples are collected or the
    // last bin was added, and the samples of the last bin added that
    // overshoot n are taken off again. The stages that measure the darkest
    // or brightest part of a box share this rule.
    int64_t SumOfLowest(int64_t n) const;
    int64_t SumOfHighest(int64_t n) const;

    // Bin i counts the samples whose value is i - m_nOffset.
    uint32_t m_nBins[256] = {};
    // 0 for unsigned images, 128 for signed ones.
    int32_t m_nOffset = 0;
};
