#include "detection/IpFingerprintPositionCheck.h"

#include "image/ArrayStatic.h"
#include "image/Histogram.h"
#include "processing/PixelWalk.h"

namespace
{

// The area limits are those of a 320 by 480 mask, not computed from the
// size: 102400 is two thirds of the image, 57600 the whole of rows 300 to
// 479 and 16000 the whole of rows 0 to 49 (the lower edge of the scanning
// area), so the last two fail only on a band without any mask pixel.
constexpr uint32_t kMinimumMaskPixels = 4000;
constexpr uint32_t kMaximumBackground = 102400;
constexpr uint32_t kUpperBandPixels = 57600;
constexpr uint32_t kLowerBandPixels = 16000;

} // namespace

ClIpFingerprintPositionCheck::ClIpFingerprintPositionCheck()
    : ClIpStageBase("IpFingerprintPositionCheck")
{
    DeclareInput("pInImage", pInImage, "Input image not assigned", ZRC_ERROR_BAD_POINTER);
}

ClProcessorBase* ClIpFingerprintPositionCheck::NewInstance() const
{
    return NewProcessor<ClIpFingerprintPositionCheck>();
}

int32_t ClIpFingerprintPositionCheck::Process()
{
    CheckArea();
    CheckSkew();
    return 0;
}

// Tests 1 to 4: enough mask, not too much background, mask in the upper band
// and in the lower band. The two "to small" texts differ in their final
// stop, and keep the misspelling.
void ClIpFingerprintPositionCheck::CheckArea() const
{
    const ClImage& mask = *pInImage;
    ClHistogram histogram;
    histogram.Create(mask);
    if (histogram.m_nBins[255] < kMinimumMaskPixels)
        STAGE_THROW("No fingerprint found in image.", ZRC_ERROR_BITMAP_NO_FINGER);
    if (histogram.m_nBins[0] > kMaximumBackground)
        STAGE_THROW("Fingerprint is to small.", ZRC_ERROR_LD_FINGERPRINT_TOO_SMALL);
    histogram.Create(mask, 0, 300, 320, 480);
    if (histogram.m_nBins[0] == kUpperBandPixels)
        STAGE_THROW("Fingerprint is to small", ZRC_ERROR_LD_FINGERPRINT_TOO_SMALL);
    histogram.Create(mask, 0, 0, 320, 50);
    if (histogram.m_nBins[0] == kLowerBandPixels)
        STAGE_THROW("The fingerprint is not placed correct at the bottom",
                    ZRC_ERROR_LD_NO_FINGERPRINT_IN_LOWER_AREA);
}

// Test 5: how far the centres of the rows stray to the sides, as a squared
// distance compared with 1.5 times the mean width, a plain distance. That
// mixture is the rule.
void ClIpFingerprintPositionCheck::CheckSkew() const
{
    const PixelWalk::TpView<const uint8_t> mask(*pInImage);
    const int32_t H = mask.Height(), W = mask.Width();
    TpArrayStatic<double> centre(static_cast<uint32_t>(H));
    for (int32_t y = 0; y < H; ++y)
        centre[y] = 0.0;

    // Per row: l the first non-zero column, r the last one that is not also
    // the first (0 for a single pixel, whose width is then 0 - l).
    int32_t N = 0, nFirstRow = 0, nLastRow = 0;
    double dCentreSum = 0.0, dWidthSum = 0.0;
    for (int32_t y = 0; y < H; ++y)
    {
        const uint8_t* pRow = mask.Row(y);
        int32_t l = -1, r = 0;
        for (int32_t x = 0; x < W; ++x)
        {
            if (pRow[x] == 0)
                continue;
            if (l < 0)
                l = x;
            else
                r = x;
        }
        if (l < 0)
            continue;
        ++N;
        centre[y] = (r + l) * 0.5;
        nLastRow = y;
        // The first row is taken only while it is still 0, so a mask with
        // pixels in row 0 takes its first row from the next such row.
        if (nFirstRow == 0)
            nFirstRow = y;
        dCentreSum += centre[y];
        dWidthSum += r - l;
    }
    const double dMeanCentre = dCentreSum / N;
    const double dMeanWidth = dWidthSum / N;

    // About a fifth of the rows at each end stay out; the divisor is the
    // count of the kept rows less one, from N and not from the terms.
    const int32_t m = N / 5;
    double Q = 0.0;
    for (int32_t y = nFirstRow + m; y <= nLastRow - m; ++y)
    {
        if (centre[y] != 0.0)
            Q += (centre[y] - dMeanCentre) * (centre[y] - dMeanCentre);
    }
    const double dSpread = Q / (N / 5.0 * 3.0 - 1.0);
    if (dSpread > 1.5 * dMeanWidth)
        STAGE_THROW("Finger is placed with too much skewness.", ZRC_ERROR_LD_FINGER_PLACED_SKEWLY);
}
