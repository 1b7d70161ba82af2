#include "detection/IpSpectrumAnalysis.h"

#include <algorithm>
#include <cmath>

#include "image/ArrayStatic.h"
#include "image/SampleTraits.h"
#include "operators/IpCut.h"
#include "operators/IpFourier2.h"
#include "processing/PixelWalk.h"

namespace
{

constexpr int32_t kSize = ClIpSpectrumAnalysis::kSize;
constexpr int32_t kHalf = ClIpSpectrumAnalysis::kHalf;
constexpr int32_t kLastRing = ClIpSpectrumAnalysis::kRings - 1;
// The entries that a run clears before it looks at the mask.
constexpr int kClearedFirst = 6;

// The ring and window of every position of the 256 by 256 window, made once
// per process: the square roots and cosines are not redone per capture.
struct ClSpectrumTables
{
    ClSpectrumTables()
        : ring(static_cast<uint32_t>(kSize * kSize)), window(static_cast<uint32_t>(kSize * kSize))
    {
        for (int32_t y = 0; y < kSize; ++y)
            for (int32_t x = 0; x < kSize; ++x)
            {
                const int32_t u = x - kHalf, v = y - kHalf;
                int32_t r = TruncateToInt32(std::sqrt(static_cast<double>(u * u + v * v)));
                if (r > kLastRing)
                    r = kLastRing; // the corners
                ring[y * kSize + x] = r;
                // 0.0078125 is 1 / 128: half a cosine period from ring 0 to 128.
                window[y * kSize + x] = (std::cos(r * 3.141592653589793 * 0.0078125) + 1.0) * 0.5;
            }
    }
    TpArrayStatic<int32_t> ring;
    TpArrayStatic<double> window;
};

const ClSpectrumTables& Tables()
{
    // A function-local static: built by the first caller, thread-safely; a
    // failed allocation throws -102 and the next caller tries again.
    static const ClSpectrumTables tables;
    return tables;
}

// The centre of the window along one axis of the given extent: raised to
// 128 first, then lowered to extent - 129, so that the 256 samples from
// c - 128 on lie inside the image; the last row and column are never
// reached. An extent of 256 leaves no room under that limit: its centre
// stays at 128 and the window is the whole image, so the cut never fails.
int32_t ClampCentre(int32_t c, int32_t nExtent)
{
    const int32_t nUpper = std::max(kHalf, nExtent - kHalf - 1);
    if (c < kHalf)
        c = kHalf;
    if (c > nUpper)
        c = nUpper;
    return c;
}

} // namespace

ClIpSpectrumAnalysis::ClIpSpectrumAnalysis() : ClIpStageBase("IpSpectrumAnalysis")
{
    DeclareInput("pInImage", pInImage, "Input image not assigned", ZRC_ERROR_BAD_POINTER);
    DeclareInput("pInMaskImage", pInMaskImage, "Mask image not assigned", ZRC_ERROR_BAD_POINTER,
                 eUntyped);
    DeclareResult(m_pdOutSpectrum, "Output vector not assigned", ZRC_ERROR_BAD_POINTER);
    Tables();
    DeclareScratch(m_CutImage);
    DeclareScratch(m_MedianImage);
    DeclareScratch(m_WindowedImage);
    DeclareScratch(m_Spectrum);
}

void ClIpSpectrumAnalysis::SetDefaults()
{
    pInImage = nullptr;
    pInMaskImage = nullptr;
    m_pdOutSpectrum = m_adSpectrum;
}

ClProcessorBase* ClIpSpectrumAnalysis::NewInstance() const
{
    return NewProcessor<ClIpSpectrumAnalysis>();
}

const int32_t* ClIpSpectrumAnalysis::RingTable()
{
    return Tables().ring.Data();
}

const double* ClIpSpectrumAnalysis::WindowTable()
{
    return Tables().window.Data();
}

void ClIpSpectrumAnalysis::CheckGeometry()
{
    const int32_t W = pInImage->Width(), H = pInImage->Height();
    if (W < kSize || H < kSize)
        STAGE_THROW("Input image dimensions are too small.", ZRC_ERROR_BITMAP_DIMENSION);
    if (pInMaskImage->Width() != W || pInMaskImage->Height() != H)
        STAGE_THROW("Image and mask dimensions do not match.", ZRC_ERROR_BITMAP_DIMENSION);
}

int32_t ClIpSpectrumAnalysis::Process()
{
    const ClScratchScope scratch(*this);
    double* S = m_pdOutSpectrum;
    const int32_t W = pInImage->Width(), H = pInImage->Height();

    // 1. The first six entries are cleared before the mask is looked at; an
    // empty mask leaves the rest as it was.
    for (int i = 0; i < kClearedFirst; ++i)
        S[i] = 0.0;

    // 2. The finger's pixels: only 255 counts. The mask's type is not
    // checked; its rows are read as bytes, of which any mask of this size
    // has at least W per row.
    int64_t n = 0, nSumX = 0, nSumY = 0;
    for (int32_t y = 0; y < H; ++y)
    {
        const uint8_t* pRow = pInMaskImage->Row<uint8_t>(y);
        for (int32_t x = 0; x < W; ++x)
            if (pRow[x] == 255)
            {
                ++n;
                nSumX += x;
                nSumY += y;
            }
    }
    if (n == 0)
        return ZRC_ERROR_BITMAP_NO_FINGER;

    // 3-4. The window around the finger's centre, moved inside the image.
    const int32_t cx = ClampCentre(static_cast<int32_t>(nSumX / n), W);
    const int32_t cy = ClampCentre(static_cast<int32_t>(nSumY / n), H);
    ClIpCut cut;
    cut.EnableLog(IsLogEnabled());
    cut.Run(pInImage, cx - kHalf, cy - kHalf, kSize, kSize, &m_CutImage);

    // 5-6. The grey limits, from the median so that single outliers do not
    // set them.
    MedianFilter(m_CutImage, m_MedianImage, 3, eModeXY);
    uint8_t nLow = 255, nHigh = 0;
    const PixelWalk::TpView<const uint8_t> median(m_MedianImage);
    for (int32_t y = 0; y < kSize; ++y)
    {
        const uint8_t* pRow = median.Row(y);
        for (int32_t x = 0; x < kSize; ++x)
        {
            if (pRow[x] < nLow)
                nLow = pRow[x];
            if (pRow[x] > nHigh)
                nHigh = pRow[x];
        }
    }

    // 7-8. The unfiltered window, its values kept, stretched to 0 .. 1 and
    // windowed. A flat window divides 0 by 0: the NaN passes both clamps and
    // the curve becomes NaN.
    Convert(m_CutImage, m_WindowedImage, ClImage::eDouble64, false);
    const double dLow = nLow, dRange = static_cast<double>(nHigh - nLow);
    const double* pWindow = WindowTable();
    const PixelWalk::TpView<double> windowed(m_WindowedImage);
    for (int32_t y = 0; y < kSize; ++y)
    {
        double* pRow = windowed.Row(y);
        for (int32_t x = 0; x < kSize; ++x)
        {
            double v = (pRow[x] - dLow) / dRange;
            if (v > 1.0)
                v = 1.0;
            if (v < 0.0)
                v = 0.0;
            pRow[x] = v * pWindow[y * kSize + x];
        }
    }

    // 9. The half spectrum, unscaled: 129 columns of 256 rows. The transform
    // fails only without a plan; nothing is then read from it.
    Fourier::ClIpFourier2 fourier;
    fourier.EnableLog(IsLogEnabled());
    const int32_t nTransform = fourier.Run(&m_WindowedImage, &m_Spectrum);
    if (nTransform != 0)
        return nTransform;

    // 10-11. The magnitude in the windowed image's storage, zero frequency
    // moved to (128, 128) and the left half filled by the symmetry of a real
    // image's spectrum. In column 128 the later write wins; spectrum column
    // 128 is not used and column 0 stays 0.
    m_WindowedImage.Fill(0.0);
    const PixelWalk::TpView<double> magnitude(m_WindowedImage);
    for (int32_t j = 0; j < kSize; ++j)
    {
        const double* pSpectrum = m_Spectrum.Row<double>(j);
        double* pRight = magnitude.Row((j - kHalf) & (kSize - 1));
        double* pLeft = magnitude.Row((-kHalf - j) & (kSize - 1));
        for (int32_t i = 0; i < kHalf; ++i)
        {
            const double re = pSpectrum[2 * i], im = pSpectrum[2 * i + 1];
            const double m = std::sqrt(re * re + im * im);
            pRight[kHalf + i] = m;
            pLeft[kHalf - i] = m;
        }
    }

    // 12. The magnitude summed per ring; the corners beyond ring 127 go to
    // ring 127.
    for (int i = 0; i < kRings; ++i)
        S[i] = 0.0;
    const int32_t* pRing = RingTable();
    for (int32_t y = 0; y < kSize; ++y)
    {
        const double* pRow = magnitude.Row(y);
        for (int32_t x = 0; x < kSize; ++x)
            S[pRing[y * kSize + x]] += pRow[x];
    }

    // 13-14. Sums from the outer rings inward, then the share of the whole
    // without zero frequency. Entries 0 and 1 stay unnormalised: the whole
    // with and without ring 0.
    for (int i = kRings - 2; i >= 0; --i)
        S[i] += S[i + 1];
    for (int i = 2; i < kRings; ++i)
        S[i] /= S[1];
    return 0;
}
