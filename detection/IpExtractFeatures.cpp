#include "detection/IpExtractFeatures.h"

#include <cmath>

#include "detection/IpCheckHipass.h"
#include "detection/IpFingerMinMaxMean.h"
#include "detection/IpGelatineCheck.h"
#include "detection/IpGetMoonValues.h"
#include "detection/IpGetUchidaProfileValuesFD.h"
#include "detection/IpRidgeEdgeCheck.h"
#include "detection/IpSpectrumAnalysis.h"
#include "detection/IpRidgeStatistics.h"
#include "image/ArrayDynamic.h"
#include "image/Histogram.h"
#include "processing/PixelWalk.h"

namespace
{

using PixelWalk::ForEachPixel;
using PixelWalk::View;

// The contrast stretch's envelopes and soft mask.
constexpr int32_t kEnvelopeWidth = 7;
// The erosion of the final mask: a pixel stays only if its whole width-15
// window is 255 (a single zero among 225 averages to 253).
constexpr int32_t kErosionWidth = 15;
constexpr double kErosionThreshold = 254.0;
// Holes of the mask smaller than this are filled.
constexpr uint32_t kSmallestHole = 1000;
// Grey level from which the enhanced image counts as bright.
constexpr double kBrightThreshold = 160.0;
// The fade of the masked image from the finger to mid grey.
constexpr int32_t kFadeWidth = 11;

// Pixels per label of a label image with nCount labels; label 0 (the
// non-zero pixels of the labelled mask) is not counted.
TpArrayStatic<uint32_t> CountLabels(const ClImage& labels, int32_t nCount)
{
    TpArrayStatic<uint32_t> counts(static_cast<uint32_t>(nCount) + 1);
    for (int32_t i = 0; i <= nCount; ++i)
        counts[i] = 0;
    ForEachPixel(
        [&](int32_t nLabel)
        {
            if (nLabel > 0 && nLabel <= nCount)
                ++counts[nLabel];
        },
        View<const int32_t>(labels));
    return counts;
}

} // namespace

ClIpExtractFeatures::ClIpExtractFeatures() : ClIpStageBase("IpExtractFeatures", false)
{
    DeclareInput("pInImage", pInImage, "invalid input image", ZRC_ERROR_INVALID_PARAMETER,
                 eUntyped);
    DeclareInput("pInFastMask", pInFastMask, "invalid input image", ZRC_ERROR_INVALID_PARAMETER,
                 eUntyped);
    DeclareOutput("pOutMask", pOutMask, "invalid output parameter", ZRC_ERROR_INVALID_PARAMETER);
}

void ClIpExtractFeatures::SetDefaults()
{
    pInImage = nullptr;
    pInFastMask = nullptr;
    pOutMask = nullptr;
}

ClProcessorBase* ClIpExtractFeatures::NewInstance() const
{
    return NewProcessor<ClIpExtractFeatures>();
}

int32_t ClIpExtractFeatures::Process()
{
    StretchContrast();
    MakeFinalMask();
    MakeAreasAndMaskedImage();

    // The vector grows in index order; a failure anywhere leaves m_Features
    // as it was.
    TpArrayDynamic<double, 10> features;
    AddAreaFeatures(DarkArea, features);
    AddAreaFeatures(BrightArea, features);
    // The images of the stretch and the areas have served; the stages
    // below need only the masked image and the final mask.
    for (ClImage* pImage : {&HighEnvelope, &LowEnvelope, &SoftMask, &StretchedImage, &BrightArea,
                            &DarkArea, &BlurredMask, &m_Scratch, &m_Labels})
        pImage->Clear();
    AddStageFeatures(features);
    for (int i = 0; i < 3; ++i)
        features.Add(0.0);

    m_Features.Create(features.Size());
    for (uint32_t i = 0; i < features.Size(); ++i)
        m_Features[i] = features[i];
    return 0;
}

// Steps 1-6: the ridges stretched to their local envelopes, taking over
// gradually between soft-mask values 128 and 255.
void ClIpExtractFeatures::StretchContrast()
{
    MaxFilter(*pInImage, m_Scratch, kEnvelopeWidth);
    MeanFilter(m_Scratch, HighEnvelope, kEnvelopeWidth);
    MinFilter(*pInImage, m_Scratch, kEnvelopeWidth);
    MeanFilter(m_Scratch, LowEnvelope, kEnvelopeWidth);
    StretchedImage.Assign(*pInImage);
    MeanFilter(*pInFastMask, SoftMask, kEnvelopeWidth);

    ForEachPixel(
        [](uint8_t m, uint8_t h, uint8_t l, uint8_t& v)
        {
            // n = (v - l) * 255 / (h - l), truncated: the float quotient
            // truncates to the same whole number, since the numerator is
            // exact in a float and a quotient that is not whole lies at least
            // 1 / 255 from the next one, more than half a float step there.
            // A negative n becomes 0 either way.
            const int32_t d = h - l;
            int32_t n = static_cast<int32_t>(static_cast<float>((v - l) * 255) /
                                             static_cast<float>(d > 0 ? d : 1));
            n = n < 0 ? 0 : (n > 255 ? 255 : n);
            const int32_t nStretched = ((255 - m) * v + (m - 128) * n) / 127;
            v = m <= 128 || d <= 0 ? v : static_cast<uint8_t>(nStretched);
        },
        View<const uint8_t>(SoftMask), View<const uint8_t>(HighEnvelope),
        View<const uint8_t>(LowEnvelope), View<uint8_t>(StretchedImage));
    // The enhanced image is the stretched one.
}

// Steps 7-13: the fast mask without its frame, eroded, its small holes
// filled, and of its pieces the largest.
void ClIpExtractFeatures::MakeFinalMask()
{
    FinalMask.Assign(*pInFastMask);
    {
        const PixelWalk::TpView<uint8_t> mask = View<uint8_t>(FinalMask);
        const int32_t W = mask.Width(), H = mask.Height();
        for (int32_t x = 0; x < W; ++x)
            mask.At(x, 0) = mask.At(x, H - 1) = 0;
        for (int32_t y = 0; y < H; ++y)
            mask.At(0, y) = mask.At(W - 1, y) = 0;
    }
    MeanFilter(FinalMask, m_Scratch, kErosionWidth);
    Binarize(m_Scratch, FinalMask, kErosionThreshold);

    // The labeling numbers the zero regions: those under 1000 pixels are the
    // holes to fill.
    int32_t nCount = 0;
    Label(FinalMask, m_Labels, nCount);
    {
        const TpArrayStatic<uint32_t> counts = CountLabels(m_Labels, nCount);
        ForEachPixel(
            [&](uint8_t& m, int32_t nLabel)
            {
                if (nLabel >= 0 && nLabel <= nCount && counts[nLabel] < kSmallestHole)
                    m = 255;
            },
            View<uint8_t>(FinalMask), View<const int32_t>(m_Labels));
    }

    // Inverted, the pieces of the mask are the zero regions. The largest
    // stays, the lowest label on a tie; without any piece the mask is empty.
    Invert(FinalMask);
    Label(FinalMask, m_Labels, nCount);
    int32_t nLargest = 0;
    {
        const TpArrayStatic<uint32_t> counts = CountLabels(m_Labels, nCount);
        for (int32_t i = 1; i <= nCount; ++i)
            if (nLargest == 0 || counts[i] > counts[nLargest])
                nLargest = i;
    }
    ForEachPixel([&](uint8_t& m, int32_t nLabel)
                 { m = nLargest != 0 && nLabel == nLargest ? 255 : 0; },
                 View<uint8_t>(FinalMask), View<const int32_t>(m_Labels));
    pOutMask->Assign(FinalMask);
}

// Steps 14-17: bright and dark ridge areas under the mask, and the masked
// image: the unstretched capture on the finger, fading to 128 outside it.
void ClIpExtractFeatures::MakeAreasAndMaskedImage()
{
    Binarize(StretchedImage, m_Scratch, kBrightThreshold);
    And(m_Scratch, FinalMask, BrightArea);
    Invert(m_Scratch);
    And(m_Scratch, FinalMask, DarkArea);

    MeanFilter(FinalMask, BlurredMask, kFadeWidth);
    MaskedImage.Assign(*pInImage);
    ForEachPixel([](uint8_t& v, uint8_t g)
                 { v = static_cast<uint8_t>(((v - 128) * g + 32640) / 255); },
                 View<uint8_t>(MaskedImage), View<const uint8_t>(BlurredMask));
}

// Steps 19-21: the statistics of the masked image over one area.
void ClIpExtractFeatures::AddAreaFeatures(ClImage& area, TpArrayDynamic<double, 10>& features)
{
    And(MaskedImage, area, m_Scratch);
    ClHistogram histogram;
    histogram.Create(m_Scratch);
    double adStatistics[3];
    AreaStatistics(histogram, adStatistics);
    for (double dValue : adStatistics)
        features.Add(dValue);
}

// Area pixels of value 0 fall into bin 0 and count as outside. The entropy
// leaves bin 255 out, though the mean takes it in; its sign stays, so it is
// at most 0.
void ClIpExtractFeatures::AreaStatistics(const ClHistogram& histogram, double adOut[3])
{
    adOut[0] = histogram.Mean(1, 255);
    adOut[1] = histogram.StdDev(1, 255);
    int64_t nAll = 0;
    for (uint32_t nBin : histogram.m_nBins)
        nAll += nBin;
    const double N = static_cast<double>(nAll - histogram.m_nBins[0]);
    double dEntropy = 0.0;
    for (int32_t b = 1; b <= 254; ++b)
    {
        const double p = histogram.m_nBins[b] / N;
        if (p > 0)
            dEntropy += p * std::log(p) / std::log(2.0);
    }
    adOut[2] = dEntropy;
}

// Step 22: the feature stages on the masked image, in the order of the
// vector; each appends what the vector takes from it.
void ClIpExtractFeatures::AddStageFeatures(TpArrayDynamic<double, 10>& features)
{
    ClIpFingerMinMaxMean intensity;
    intensity.pInImage = &MaskedImage;
    RunStage(intensity);
    features.Add(intensity.MinDeviation);
    features.Add(intensity.MaxDeviation);
    features.Add(intensity.MidDeviation);

    ClIpCheckHipass hipass;
    hipass.pInImage = &MaskedImage;
    RunStage(hipass);
    features.Add(hipass.HipassDeviationRatio);
    features.Add(hipass.HipassMeanRatio);

    // The mean ratios of the widths 11, 3 and 5; the variance ratios stay
    // unread.
    ClIpRidgeStatistics ridges;
    ridges.pInImage = &MaskedImage;
    RunStage(ridges);
    for (double dRatio : ridges.m_adMeanRatios)
        features.Add(dRatio);

    // The driver divides the two mean squared steps itself.
    double adSteps[2] = {};
    ClIpGelatineCheck gelatine;
    gelatine.pInImage = &MaskedImage;
    gelatine.pInMask = &FinalMask;
    gelatine.m_pdOutSteps = adSteps;
    RunStage(gelatine);
    features.Add(adSteps[0] / adSteps[1]);

    ClIpGetMoonValues moon;
    moon.pInImage = &MaskedImage;
    RunStage(moon);
    features.Add(moon.dOutDeviation);

    double adEdges[4] = {};
    LiveDetection::ClIpRidgeEdgeCheck edges;
    edges.pInImage = &MaskedImage;
    edges.padOutFeatures = adEdges;
    RunStage(edges);
    for (double dValue : adEdges)
        features.Add(dValue);

    // The block size keeps its default.
    ClIpGetUchidaProfileValuesFD profile;
    profile.pInImage = &MaskedImage;
    profile.pInMask = &FinalMask;
    RunStage(profile);
    for (double dValue : profile.m_adProfileValues)
        features.Add(dValue);

    // Six entries of the radial spectrum and two ratios of them. Without a
    // mask pixel the stage returns -15, which is not an error here: the
    // entries then hold what they held, zeros on a new stage.
    ClIpSpectrumAnalysis spectrum;
    spectrum.pInImage = &MaskedImage;
    spectrum.pInMaskImage = &FinalMask;
    RunStage(spectrum);
    const double* S = spectrum.m_adSpectrum;
    for (double dValue : {S[62] / S[19], S[31] / S[19], S[19], S[31], S[42], S[62], S[65], S[90]})
        features.Add(dValue);
}

void ClIpExtractFeatures::RunStage(ClProcessorBase& stage)
{
    stage.EnableLog(IsLogEnabled());
    stage.Run();
}
