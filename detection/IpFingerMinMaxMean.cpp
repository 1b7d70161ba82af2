#include "detection/IpFingerMinMaxMean.h"

#include "image/Histogram.h"

namespace
{

// The scale of the local statistics: about two ridge periods.
constexpr int32_t kFilterWidth = 21;

} // namespace

ClIpFingerMinMaxMean::ClIpFingerMinMaxMean() : ClIpStageBase("IpFingerMinMaxMean")
{
    DeclareInput("pInImage", pInImage, "Input image not assigned", ZRC_ERROR_BAD_POINTER);
    DeclareScratch(m_Filtered);
}

void ClIpFingerMinMaxMean::SetDefaults()
{
    pInImage = nullptr;
    MinDeviation = 0.0;
    MaxDeviation = 0.0;
    MidDeviation = 0.0;
}

ClProcessorBase* ClIpFingerMinMaxMean::NewInstance() const
{
    return NewProcessor<ClIpFingerMinMaxMean>();
}

int32_t ClIpFingerMinMaxMean::Process()
{
    const ClScratchScope scratch(*this);
    // 1. Spread of the local minimum.
    MinFilter(*pInImage, m_Filtered, kFilterWidth);
    MinDeviation = Spread();

    // 2. Spread of the local maximum.
    MaxFilter(*pInImage, m_Filtered, kFilterWidth);
    MaxDeviation = Spread();

    // 3. Spread of the local mean.
    MeanFilter(*pInImage, m_Filtered, kFilterWidth);
    MidDeviation = Spread();
    return 0;
}

// Bins 0 to 254: white pixels stay out of the mean and the sum of squares
// but are still counted in the divisor. The trained net rests on that
// asymmetry, so it stays.
double ClIpFingerMinMaxMean::Spread() const
{
    ClHistogram histogram;
    histogram.Create(m_Filtered);
    return histogram.StdDev(0, 254);
}
