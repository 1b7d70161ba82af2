#include "detection/IpNormalizeImagesFD.h"

#include "image/ArrayStatic.h"
#include "image/Histogram.h"
#include "image/SampleTraits.h"
#include "operators/IpConvertDataType.h"
#include "operators/IpFourier2.h"
#include "processing/PixelWalk.h"
#include "sdk/Exception.h"

namespace Sentivo
{

namespace
{

// The contrast box of the histogram (right and bottom exclusive), and the
// number of darkest and brightest pixels whose means judge the contrast.
constexpr int32_t kBoxLeft = 40, kBoxTop = 40, kBoxRight = 279, kBoxBottom = 439;
constexpr int64_t kExtremePixels = 50;
constexpr int64_t kMinimumContrast = 100;
// The centre of the platen, both ends included, whose extreme sets the scale.
constexpr int32_t kCentreTop = 80, kCentreBottom = 399, kCentreLeft = 40, kCentreRight = 279;

double BandPass(int32_t x, int32_t y)
{
    const int32_t f = y <= ClIpNormalizeImagesFD::kHeight / 2 ? y : ClIpNormalizeImagesFD::kHeight - y;
    // d is a squared frequency radius; at d = 0 the high pass divides by
    // zero, its factor goes to 0 and the mean is removed.
    const double d = static_cast<double>(x * x + f * f);
    double h = 144.0 / d;
    h *= h;
    h *= h;
    double l = d / 10000.0;
    l *= l;
    l *= l;
    return (1.0 / (1.0 + h)) * (1.0 / (1.0 + l));
}

struct ClBandPassTable
{
    ClBandPassTable()
        : values(static_cast<uint32_t>(ClIpNormalizeImagesFD::kSpectrumWidth *
                                       ClIpNormalizeImagesFD::kHeight))
    {
        double* p = values.Data();
        for (int32_t y = 0; y < ClIpNormalizeImagesFD::kHeight; ++y)
            for (int32_t x = 0; x < ClIpNormalizeImagesFD::kSpectrumWidth; ++x)
                *p++ = BandPass(x, y);
    }
    TpArrayStatic<double> values;
};

} // namespace

ClIpNormalizeImagesFD::ClIpNormalizeImagesFD()
{
    AddDataType(ClImage::eUInt8);
    BandPassTable();
}

const double* ClIpNormalizeImagesFD::BandPassTable()
{
    // A function-local static: built by the first caller, thread-safely; a
    // failed allocation throws -102 and the next caller tries again.
    static const ClBandPassTable table;
    return table.values.Data();
}

ClProcessorBase* ClIpNormalizeImagesFD::NewInstance() const
{
    return NewProcessor<ClIpNormalizeImagesFD>();
}

void ClIpNormalizeImagesFD::CheckInputImages()
{
    ClIp1to1Base::CheckInputImages();
    if (m_pInImage->Width() != kWidth || m_pInImage->Height() != kHeight)
        SENTIVO_THROW("invalid image dimension", ZRC_ERROR_INVALID_PARAMETER);
}

int32_t ClIpNormalizeImagesFD::Process()
{
    if (m_pOutImage == nullptr)
        SENTIVO_THROW("m_pOutImage is not set", ZRC_ERROR_BAD_POINTER);
    ClImage& in = *m_pInImage;
    ClImage& out = *m_pOutImage;

    // 1-4. The contrast: the mean of the 50 darkest and of the 50 brightest
    // pixels of the box, each truncated. Too little of it gives flat grey.
    ClHistogram histogram;
    histogram.Create(in, kBoxLeft, kBoxTop, kBoxRight, kBoxBottom);
    const int64_t nLowerMean = histogram.SumOfLowest(kExtremePixels) / kExtremePixels;
    const int64_t nUpperMean = histogram.SumOfHighest(kExtremePixels) / kExtremePixels;
    if (nUpperMean - nLowerMean < kMinimumContrast)
    {
        out.Assign(in);
        out.Fill<uint8_t>(128);
        return 0;
    }

    // 5-6. The half spectrum of the image; its values stay as they are on
    // the way to double.
    ClImage samples, spectrum;
    ClIpConvertDataType convert;
    convert.EnableLog(IsLogEnabled());
    convert.m_bRound = false;
    convert.Run(&in, &samples, ClImage::eDouble64);
    Fourier::ClIpFourier2 fourier;
    fourier.EnableLog(IsLogEnabled());
    fourier.Run(&samples, &spectrum);

    // 7. Real and imaginary part of every element times the band pass.
    const double* pTable = BandPassTable();
    for (int32_t y = 0; y < spectrum.Height(); ++y)
    {
        double* pRow = spectrum.Row<double>(y);
        const double* pFilter = pTable + static_cast<int64_t>(y) * kSpectrumWidth;
        for (int32_t x = 0; x < kSpectrumWidth; ++x)
        {
            pRow[2 * x] *= pFilter[x];
            pRow[2 * x + 1] *= pFilter[x];
        }
    }

    // 8. Back, divided by the number of samples: F, in the samples' image,
    // whose values have served.
    ClImage& filtered = samples;
    fourier.Run(&spectrum, &filtered);
    const PixelWalk::TpView<const double> F(filtered);

    // 9-10. The largest excursion from 0 in the centre of the platen.
    double dLow = 1.7976931348623157e308, dHigh = -1.7976931348623157e308;
    for (int32_t y = kCentreTop; y <= kCentreBottom; ++y)
    {
        const double* pRow = F.Row(y);
        for (int32_t x = kCentreLeft; x <= kCentreRight; ++x)
        {
            if (pRow[x] < dLow)
                dLow = pRow[x];
            if (pRow[x] > dHigh)
                dHigh = pRow[x];
        }
    }
    const double A = dHigh > -dLow ? dHigh : -dLow;

    // 11-12. Mid grey at 128, the centre's extreme at 2 or 254, the rest
    // clipped. A of 0 makes NaN or infinity, whose truncation is negative:
    // such pixels become 0.
    out.Create(ClImage::eUInt8, kWidth, kHeight, 1, filtered.XResolution(), filtered.YResolution());
    const PixelWalk::TpView<uint8_t> O(out);
    for (int32_t y = 0; y < kHeight; ++y)
    {
        const double* pIn = F.Row(y);
        uint8_t* pOut = O.Row(y);
        for (int32_t x = 0; x < kWidth; ++x)
        {
            const int32_t g = TruncateToInt32(pIn[x] * 126.0 / A + 128.5);
            pOut[x] = static_cast<uint8_t>(g < 0 ? 0 : (g > 255 ? 255 : g));
        }
    }
    return 0;
}

} // namespace Sentivo
