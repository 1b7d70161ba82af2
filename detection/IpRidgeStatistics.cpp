#include "detection/IpRidgeStatistics.h"

#include "processing/PixelWalk.h"

namespace
{

// A pixel is a ridge pixel when its width-11 mean lies more than this above
// it; exactly 10 is not enough.
constexpr int32_t kRidgeDepth = 10;

// Sum and sum of squares of one image over the ridge pixels.
struct StSums
{
    int64_t nSum = 0;
    int64_t nSquares = 0;

    void Add(int64_t v)
    {
        nSum += v;
        nSquares += v * v;
    }
    // Mean and sample variance over n pixels, in double.
    double Mean(double n) const { return static_cast<double>(nSum) / n; }
    double Variance(double n) const
    {
        const double s = static_cast<double>(nSum);
        return (static_cast<double>(nSquares) - s * s / n) / (n - 1.0);
    }
};

} // namespace

ClIpRidgeStatistics::ClIpRidgeStatistics() : ClIpStageBase("IpRidgeStatistics")
{
    DeclareInput("pInImage", pInImage, "Input image not assigned", ZRC_ERROR_BAD_POINTER);
    DeclareScratch(m_Boxes[0]);
    DeclareScratch(m_Boxes[1]);
    DeclareScratch(m_Boxes[2]);
}

void ClIpRidgeStatistics::SetDefaults()
{
    pInImage = nullptr;
    for (int k = 0; k < 3; ++k)
    {
        m_adVarianceRatios[k] = 0.0;
        m_adMeanRatios[k] = 0.0;
    }
}

ClProcessorBase* ClIpRidgeStatistics::NewInstance() const
{
    return NewProcessor<ClIpRidgeStatistics>();
}

int32_t ClIpRidgeStatistics::Process()
{
    const ClScratchScope scratch(*this);
    // 1. Box means at the widths 11, 3 and 5.
    for (int k = 0; k < 3; ++k)
        MeanFilter(*pInImage, m_Boxes[k], kWidths[k]);

    // 2-3. Sums over the ridge pixels, for the image and each box mean.
    int64_t N = 0;
    StSums image, boxes[3];
    PixelWalk::ForEachPixel(
        [&](uint8_t i, uint8_t a, uint8_t b, uint8_t c)
        {
            // Whole-number sums: a pixel that is no ridge pixel adds 0, so
            // the loop needs no branch on the image.
            const int64_t r = a - i > kRidgeDepth ? 1 : 0;
            N += r;
            image.Add(r * i);
            boxes[0].Add(r * a);
            boxes[1].Add(r * b);
            boxes[2].Add(r * c);
        },
        PixelWalk::View<const uint8_t>(*pInImage), PixelWalk::View<const uint8_t>(m_Boxes[0]),
        PixelWalk::View<const uint8_t>(m_Boxes[1]), PixelWalk::View<const uint8_t>(m_Boxes[2]));

    // 4. Fewer than two ridge pixels: the results keep what they held.
    if (N <= 1)
        return 0;

    // 5. Ratios to the pixels' own mean and variance. Neither is tested for
    // 0: a flat ridge gives the hardware's infinity or NaN, which is accepted.
    const double n = static_cast<double>(N);
    const double mean = image.Mean(n);
    const double var = image.Variance(n);
    for (int k = 0; k < 3; ++k)
    {
        m_adMeanRatios[k] = boxes[k].Mean(n) / mean;
        m_adVarianceRatios[k] = boxes[k].Variance(n) / var;
    }
    return 0;
}
