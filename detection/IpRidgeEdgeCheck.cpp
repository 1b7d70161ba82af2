#include "detection/IpRidgeEdgeCheck.h"

#include <cmath>

#include "image/ArrayStatic.h"
#include "operators/IpFunctorMean.h"
#include "parameters/ParameterContainer.h"
#include "processing/PixelWalk.h"

namespace LiveDetection
{

namespace
{

// The neighbourhood that an edge point must stand above: a 3 by 3 mean.
constexpr int32_t kNeighbourhood = 3;

} // namespace

ClIpRidgeEdgeCheck::ClIpRidgeEdgeCheck() : ClIpStageBase("IpRidgeEdgeCheck")
{
    DeclareInput("pInImage", pInImage, "Input image not assigned", ZRC_ERROR_BAD_POINTER);
    DeclareResult(padOutFeatures, "Feature vector not assigned", ZRC_ERROR_BAD_POINTER);
    DeclareScratch(m_GradientImage);
    DeclareScratch(m_BlurredGradient);
}

void ClIpRidgeEdgeCheck::SetDefaults()
{
    pInImage = nullptr;
    padOutFeatures = nullptr;
}

void ClIpRidgeEdgeCheck::DefineParameters(ClParameterContainer& container)
{
    ClIpStageBase::DefineParameters(container);
    // The caller's array, held as a connection like an image pointer.
    TpParameterEnumPointer<double*>* pFeatures = container.AddEnum<double*>("padOutFeatures");
    pFeatures->SetConnection(true);
    pFeatures->Bind(padOutFeatures, ClParameter::eFlagOutput);
}

ClProcessorBase* ClIpRidgeEdgeCheck::NewInstance() const
{
    return NewProcessor<ClIpRidgeEdgeCheck>();
}

int32_t ClIpRidgeEdgeCheck::Process()
{
    const ClScratchScope scratch(*this);
    const PixelWalk::TpView<const uint8_t> I(*pInImage);
    const int32_t W = I.Width(), H = I.Height();

    // 1-2. The edge strength of every inner pixel, from central differences
    // along the column and along the row with equal weight; the border keeps
    // 0.0. The mean grey counts the inner pixels below 255 only.
    m_GradientImage.Create(ClImage::eDouble64, W, H, 1);
    m_GradientImage.Fill(0.0);
    const PixelWalk::TpView<double> G(m_GradientImage);
    int64_t nGreySum = 0, nGreyCount = 0;
    for (int32_t y = 1; y < H - 1; ++y)
    {
        const uint8_t* pAbove = I.Row(y - 1);
        const uint8_t* pRow = I.Row(y);
        const uint8_t* pBelow = I.Row(y + 1);
        double* pG = G.Row(y);
        // The squares of whole numbers are exact, so the power function
        // with exponent 2.0 is the product; the root is the hardware's.
        for (int32_t x = 1; x < W - 1; ++x)
        {
            const double dDown = static_cast<double>(pAbove[x] - pBelow[x]);
            const double dAcross = static_cast<double>(pRow[x - 1] - pRow[x + 1]);
            pG[x] = std::sqrt(dDown * dDown + dAcross * dAcross);
        }
        // Whole grey values add up exactly in any order.
        for (int32_t x = 1; x < W - 1; ++x)
        {
            const bool bCounted = pRow[x] < 255;
            nGreySum += bCounted ? pRow[x] : 0;
            nGreyCount += bCounted;
        }
    }
    const double dGreySum = static_cast<double>(nGreySum);

    // 3-4.
    if (H <= 2 || nGreyCount == 0)
        STAGE_THROW("No fingerprint found", ZRC_ERROR_BITMAP_NO_FINGER);
    const double dMeanGrey = dGreySum / static_cast<double>(nGreyCount);

    // 5. The mean edge strength of the pixels darker than the mean, over the
    // whole image: the border pixels' 0.0 pulls it down, as the trained net
    // expects. No such pixel leaves a NaN, which then clears nothing below.
    double dGradientSum = 0.0;
    int64_t nGradientCount = 0;
    PixelWalk::ForEachPixel(
        [&](uint8_t i, double g)
        {
            const bool bDark = i < dMeanGrey;
            dGradientSum += g * bDark; // g or 0.0, exactly
            nGradientCount += bDark;
        },
        I, PixelWalk::TpView<const double>(m_GradientImage));
    const double dMeanGradient = dGradientSum / static_cast<double>(nGradientCount);

    // 6. Edge points on the dark side: at least the mean strength and not
    // brighter than the mean grey (both tests taken, without a branch).
    for (int32_t y = 1; y < H - 1; ++y)
    {
        const uint8_t* pRow = I.Row(y);
        double* pG = G.Row(y);
        for (int32_t x = 1; x < W - 1; ++x)
            pG[x] = ((dMeanGradient > pG[x]) | (pRow[x] > dMeanGrey)) ? 0.0 : pG[x];
    }

    // 7-8. EdgeValues: the points that stand strictly above their 3 by 3
    // mean, in raster order.
    ClIpFunctorMean mean;
    mean.EnableLog(IsLogEnabled());
    mean.Run(&m_GradientImage, &m_BlurredGradient, kNeighbourhood, eModeXY);
    const PixelWalk::TpView<const double> M(m_BlurredGradient);
    // The count runs row by row in a 64-bit counter, which vectorises.
    int64_t nAbove = 0;
    for (int32_t y = 0; y < H; ++y)
    {
        const double* pG = G.Row(y);
        const double* pM = M.Row(y);
        for (int32_t x = 0; x < W; ++x)
            nAbove += pG[x] > pM[x] ? 1 : 0;
    }
    const uint32_t n = static_cast<uint32_t>(nAbove);
    // The points in raster order, collected without a branch on the data:
    // every value is written, and the index moves on only for an edge point
    // (one slot more than n takes the last write).
    TpArrayStatic<double> edgeValues(n + 1);
    double* pEdge = edgeValues.Data();
    uint32_t k = 0;
    for (int32_t y = 0; y < H; ++y)
    {
        const double* pG = G.Row(y);
        const double* pM = M.Row(y);
        for (int32_t x = 0; x < W; ++x)
        {
            pEdge[k] = pG[x];
            k += pG[x] > pM[x] ? 1 : 0;
        }
    }

    // 9-11. Mean, mean absolute deviation over n - 1, and the counts beyond
    // half and one deviation. With d of 0.0 a quotient is NaN (counted in
    // neither) or infinite (counted in both).
    double dSum = 0.0;
    for (uint32_t i = 0; i < n; ++i)
        dSum += edgeValues[i];
    const double m = n > 0 ? dSum / n : 0.0;
    double d = 0.0;
    if (n > 1)
    {
        double dDeviations = 0.0;
        for (uint32_t i = 0; i < n; ++i)
            dDeviations += std::fabs(edgeValues[i] - m);
        d = dDeviations / (n - 1);
    }
    uint32_t c1 = 0, c2 = 0;
    for (uint32_t i = 0; i < n; ++i)
    {
        const double r = std::fabs(edgeValues[i] - m) / d;
        c1 += r > 0.5;
        c2 += r > 1.0;
    }

    // 12. With n of 0 the shares are 0 / 0: NaN, unguarded.
    padOutFeatures[0] = m;
    padOutFeatures[1] = d;
    padOutFeatures[2] = static_cast<double>(c1) / n;
    padOutFeatures[3] = static_cast<double>(c2) / n;
    return 0;
}

} // namespace LiveDetection
