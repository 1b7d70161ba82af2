#include "detection/IpCheckHipass.h"

#include "processing/PixelWalk.h"

namespace
{

// The window of the local extremes and of the contrast test.
constexpr int32_t kEnvelopeWidth = 11;
// The smoothing that the detail is measured against.
constexpr int32_t kSmoothWidth = 3;
// A local range above this is high contrast; exactly 32 is not.
constexpr int32_t kContrastThreshold = 32;
// Stretched values from here up are the bright valleys, left out.
constexpr int32_t kBrightLimit = 224;

} // namespace

ClIpCheckHipass::ClIpCheckHipass() : ClIpStageBase("IpCheckHipass")
{
    DeclareInput("pInImage", pInImage, "Input image not assigned", ZRC_ERROR_BAD_POINTER);
    DeclareScratch(m_Low);
    DeclareScratch(m_High);
    DeclareScratch(m_Stretched);
    DeclareScratch(m_Contrast);
    DeclareScratch(m_Smoothed);
}

void ClIpCheckHipass::SetDefaults()
{
    pInImage = nullptr;
    HipassDeviationRatio = 0.0;
    HipassMeanRatio = 0.0;
}

ClProcessorBase* ClIpCheckHipass::NewInstance() const
{
    return NewProcessor<ClIpCheckHipass>();
}

int32_t ClIpCheckHipass::Process()
{
    const ClScratchScope scratch(*this);
    // 1. Local extremes.
    MinFilter(*pInImage, m_Low, kEnvelopeWidth);
    MaxFilter(*pInImage, m_High, kEnvelopeWidth);

    // 2-3. Stretched image and contrast marks.
    StretchAndMarkContrast();

    // 4. Only pixels whose whole window had high contrast keep 255.
    MeanFilter(m_Contrast, m_Smoothed, kEnvelopeWidth);
    m_Contrast.Swap(m_Smoothed);

    // 5. The smoothed copy of the stretched image.
    MeanFilter(m_Stretched, m_Smoothed, kSmoothWidth);

    // 6-8. The detail and its statistics.
    CollectDetail();
    return 0;
}

void ClIpCheckHipass::StretchAndMarkContrast()
{
    m_Stretched.Create(ClImage::eUInt8, pInImage->Width(), pInImage->Height());
    m_Contrast.Create(ClImage::eUInt8, pInImage->Width(), pInImage->Height());
    PixelWalk::ForEachPixel(
        [](uint8_t v, uint8_t l, uint8_t h, uint8_t& stretched, uint8_t& contrast)
        {
            const int32_t d = h - l;
            contrast = d > kContrastThreshold ? 255 : 0;
            // The window holds the pixel, so l <= v <= h and the result
            // stays within 0 to 255. The float quotient truncates to the same
            // whole number: the numerator is exact in a float, and a quotient
            // that is not whole lies at least 1 / d from the next one, more
            // than half a float step there.
            stretched = d > 0 ? static_cast<uint8_t>(static_cast<int32_t>(
                                    static_cast<float>((v - l) * 255) / static_cast<float>(d)))
                              : 0;
        },
        PixelWalk::View<const uint8_t>(*pInImage), PixelWalk::View<const uint8_t>(m_Low),
        PixelWalk::View<const uint8_t>(m_High), PixelWalk::View<uint8_t>(m_Stretched),
        PixelWalk::View<uint8_t>(m_Contrast));
}

void ClIpCheckHipass::CollectDetail()
{
    // 6. Detail e = stretched - smoothed of the darker, high-contrast pixels.
    // Sa and Sb both collect the plain stretched value: Sb is not a sum of
    // squares. The normalisation of the feature (its negative mean) rests on
    // this, so it is kept.
    int64_t N = 0, Se = 0, See = 0, Sa = 0, Sb = 0;
    PixelWalk::ForEachPixel(
        [&](uint8_t contrast, uint8_t a, uint8_t b)
        {
            // Whole-number sums: a pixel that does not take part adds 0, so
            // the loop needs no branch on the image.
            const int64_t t = contrast == 255 && a < kBrightLimit ? 1 : 0;
            const int64_t e = t * (static_cast<int64_t>(a) - b);
            N += t;
            Se += e;
            See += e * e;
            Sa += t * a;
            Sb += t * a;
        },
        PixelWalk::View<const uint8_t>(m_Contrast), PixelWalk::View<const uint8_t>(m_Stretched),
        PixelWalk::View<const uint8_t>(m_Smoothed));

    // 8. Too few pixels: one pixel gives its own detail, none gives 0.
    if (N <= 1)
    {
        HipassMeanRatio = static_cast<double>(Se);
        HipassDeviationRatio = 0.0;
        return;
    }

    // 7. The ratios. The deviation of the detail is taken around the mean
    // ratio r, not around the mean detail: that is the feature's rule.
    const double n = static_cast<double>(N);
    const double mean = static_cast<double>(Sb) / n;
    const double v = (static_cast<double>(Sa) - n * mean * mean) / (n - 1.0);
    const double r = mean != 0.0 ? (static_cast<double>(Se) / n) / mean : 0.0;
    HipassMeanRatio = r;
    HipassDeviationRatio =
        v != 0.0 ? ((static_cast<double>(See) - n * r * r) / (n - 1.0)) / v : 0.0;
}
