#include "detection/IpGetMoonValues.h"

#include <cmath>

#include "operators/IpHistogramEqualization.h"
#include "operators/IpScale.h"
#include "operators/WaveletD97.h"
#include "parameters/ParameterContainer.h"
#include "processing/PixelWalk.h"

namespace
{

// The 64 grey levels 0 to 63 become 0.0 to 1.0: this factor is the double
// nearest to 1 / 63, and 63 times it is exactly 1.0.
constexpr double kLevelScale = 0.015873015873015872;
// Levels of the wavelet; the inverse runs with the negative count.
constexpr int32_t kLevels = 2;

// Step 11-12: the sample deviation of the residual over the pixels that
// equalisation left below the top level (those at 1.0 are left out).
double ResidualDeviation(const ClImage& equalised, const ClImage& residual)
{
    const PixelWalk::TpView<const double> E(equalised), R(residual);
    int64_t m = 0;
    double dSum = 0.0;
    PixelWalk::ForEachPixel(
        [&](double e, double r)
        {
            if (e < 1.0)
            {
                ++m;
                dSum += r;
            }
        },
        E, R);
    const double dMean = m > 0 ? dSum / static_cast<double>(m) : 0.0;
    double dSquares = 0.0;
    PixelWalk::ForEachPixel(
        [&](double e, double r)
        {
            if (e < 1.0)
                dSquares += (r - dMean) * (r - dMean);
        },
        E, R);
    return m > 1 ? std::sqrt(dSquares / static_cast<double>(m - 1)) : 0.0;
}

} // namespace

ClIpGetMoonValues::ClIpGetMoonValues() : ClIpStageBase("IpGetMoonValues")
{
    DeclareInput("pInImage", pInImage, "Input image not assigned", ZRC_ERROR_BAD_POINTER);
}

void ClIpGetMoonValues::SetDefaults()
{
    pInImage = nullptr;
    dOutDeviation = 0.0;
    m_pdOutDeviation = &dOutDeviation;
}

void ClIpGetMoonValues::DefineParameters(ClParameterContainer& container)
{
    ClIpStageBase::DefineParameters(container);
    TpParameterNumeric<double>* pDeviation = container.AddDouble("dOutDeviation");
    pDeviation->Bind(dOutDeviation, ClParameter::eFlagOutput);
    pDeviation->SetValueLink(&m_pdOutDeviation);
}

ClProcessorBase* ClIpGetMoonValues::NewInstance() const
{
    return NewProcessor<ClIpGetMoonValues>();
}

// Two wavelet levels need both sizes divisible by 4.
void ClIpGetMoonValues::CheckGeometry()
{
    if (pInImage->Width() % 4 != 0 || pInImage->Height() % 4 != 0)
        STAGE_THROW("Image dimensions must be multiples of 4", ZRC_ERROR_BAD_POINTER);
}

int32_t ClIpGetMoonValues::Process()
{
    const bool bLog = IsLogEnabled();

    // 1-2. Equalised, then reduced to the 64 levels 0 to 63.
    ClImage equalised;
    ClIpHistogramEqualization equalize;
    equalize.EnableLog(bLog);
    equalize.Run(pInImage, &equalised);
    PixelWalk::ForEachPixel([](uint8_t& v) { v = static_cast<uint8_t>(v >> 2); },
                            PixelWalk::View<uint8_t>(equalised));

    // 3-4. As doubles from 0.0 to 1.0; the conversion keeps the levels as
    // they are.
    Convert(equalised, equalised, ClImage::eDouble64, false);
    ClIpScale scale;
    scale.EnableLog(bLog);
    scale.m_dScaleFactor = kLevelScale;
    scale.Run(&equalised);

    // 5. Two levels of the wavelet on a copy.
    ClImage coefficients;
    coefficients.Assign(equalised);
    ClWaveletD97 wavelet;
    wavelet.Transform(coefficients, kLevels);

    // 6-8. The noise scale comes from the pixels, not from the coefficients
    // (the trained scale of the feature rests on that); the deeper level
    // gets the larger threshold.
    const double dSigma = PixelSigma(equalised);
    const double dT1 = dSigma * std::sqrt(2.0 * std::log(4.0));
    const double dT2 = dSigma * std::sqrt(2.0 * std::log(8.0));
    CutDetailBands(coefficients, dT1, dT2);

    // 9-10. Back to the image (the coefficients are not needed again, so
    // they become the denoised image in place); the residual is what the
    // cut removed.
    ClImage& denoised = coefficients;
    wavelet.Transform(denoised, -kLevels);
    ClImage residual;
    Subtract(equalised, denoised, residual);

    // 11-13.
    *m_pdOutDeviation = ResidualDeviation(equalised, residual);
    return 0;
}

double ClIpGetMoonValues::PixelSigma(const ClImage& image)
{
    const PixelWalk::TpView<const double> E(image);
    const int32_t W = E.Width(), H = E.Height();
    // The upper left quarter of the stored rows, then the whole right half,
    // each row by row: the order of the sums is part of the result.
    auto walk = [&](auto&& f)
    {
        for (int32_t y = 0; y < H / 2; ++y)
        {
            const double* pRow = E.Row(y);
            for (int32_t x = 0; x < W / 2; ++x)
                f(pRow[x]);
        }
        for (int32_t y = 0; y < H; ++y)
        {
            const double* pRow = E.Row(y);
            for (int32_t x = W / 2; x < W; ++x)
                f(pRow[x]);
        }
    };
    const double n = 0.75 * W * H;
    double dSum = 0.0;
    walk([&](double v) { dSum += v; });
    const double dMean = dSum / n;
    double dSquares = 0.0;
    walk([&](double v) { dSquares += (v - dMean) * (v - dMean); });
    return std::sqrt(dSquares / (n - 1.0));
}

void ClIpGetMoonValues::CutDetailBands(ClImage& coefficients, double dT1, double dT2)
{
    const PixelWalk::TpView<double> C(coefficients);
    const int32_t W = C.Width(), H = C.Height();
    // The bands as stored (the transform sees the image upside down, so the
    // approximation lies at the bottom left): rows [y0, y1), columns [x0, x1).
    struct StBand
    {
        int32_t y0, y1, x0, x1;
        double dThreshold;
    };
    const StBand bands[] = {
        {0, H / 2, 0, W / 2, dT1},             // level 1, the left quarter
        {0, H, W / 2, W, dT1},                 // level 1, the right half
        {H / 2, H / 2 + H / 4, 0, W / 4, dT2}, // level 2, above the approximation
        {H / 2, H, W / 4, W / 2, dT2},         // level 2, beside it
    };
    // A coefficient below its band's threshold is noise; one at or above it
    // stays unchanged.
    for (const StBand& band : bands)
    {
        for (int32_t y = band.y0; y < band.y1; ++y)
        {
            double* pRow = C.Row(y);
            for (int32_t x = band.x0; x < band.x1; ++x)
            {
                if (std::fabs(pRow[x]) < band.dThreshold)
                    pRow[x] = 0.0;
            }
        }
    }
}
