#include "detection/Sentivo.h"

#include <cmath>
#include <cstring>


#include "classifier/ScoreMapping.h"
#include "classifier/FeatureScaling.h"
#include "classifier/PrNeuralNet.h"
#include "detection/IpExtractFeatures.h"
#include "detection/IpFingerprintPositionCheck.h"
#include "detection/IpPrepareFeatureExtraction.h"
#include "detection/IpSimpleBacklightCheck.h"
#include "image/Histogram.h"
#include "operators/IpFilterMax.h"
#include "operators/IpFilterMin.h"
#include "operators/IpSubtract.h"
#include "parameters/ParameterContainer.h"
#include "parameters/ParameterEnumPointer.h"
#include "parameters/ParameterNumeric.h"
#include "sdk/Exception.h"

namespace
{

// Sum of squared profile changes above which the finger is moving.
constexpr double kMovementLimit = 10000.0;
// Black capture pixels in the window 20, 20 to 299, 459 (exclusive) above
// which the illumination is too high.
constexpr uint32_t kIlluminationLimit = 1000;

// The falloff check: seven bands of 32 rows from row 32, columns 10 to 309;
// bins from 9 count as lit, and a band needs more than 51 lit pixels.
constexpr int kFalloffBands = 7;
constexpr int32_t kFalloffBandHeight = 32;
constexpr int32_t kFalloffLeft = 10;
constexpr int32_t kFalloffRight = 310; // exclusive
constexpr int32_t kFalloffFirstLitBin = 9;
constexpr int64_t kFalloffMinimumLit = 51;
constexpr double kFalloffMinimumSlope = 4.0;
constexpr double kFalloffMinimumRatio = 1.3;

// Added to every computed score.
constexpr double kSmallestNormalDouble = 2.2250738585072014e-308;

} // namespace

ClSentivo::ClSentivo()
{
    AddDataType(ClImage::eUInt8);
    BuildValidAreaMask();
}

ClProcessorBase* ClSentivo::NewInstance() const
{
    return NewProcessor<ClSentivo>();
}

void ClSentivo::BuildValidAreaMask()
{
    m_ValidAreaMask.Create(ClImage::eUInt8, kImageWidth, kImageHeight);
    m_ValidAreaMask.Fill<uint8_t>(255);
    auto clear = [this](int32_t y, int32_t x0, int32_t x1)
    {
        uint8_t* pRow = m_ValidAreaMask.Row<uint8_t>(y);
        std::memset(pRow + x0, 0, static_cast<size_t>(x1 - x0));
    };
    for (int32_t y = 0; y < 11; ++y)
        clear(y, 0, kImageWidth);
    for (int32_t y = 469; y < kImageHeight; ++y)
        clear(y, 0, kImageWidth);
    for (int32_t y = 11; y < 373; ++y)
    {
        clear(y, 0, 11);
        clear(y, kImageWidth - 11, kImageWidth);
    }
    // Rows 373 to 468 lie in the half-circle around column 160, row 304.
    for (int32_t y = 373; y < 469; ++y)
    {
        const int32_t k = y - 304;
        const int32_t h = static_cast<int32_t>(std::sqrt(static_cast<double>(27225 - k * k)));
        clear(y, 0, 160 - h);
        clear(y, 160 + h, kImageWidth);
    }
}

void ClSentivo::DefineParameters(ClParameterContainer& container)
{
    container.AddImage("pInCurrentImage")->Bind(pInCurrentImage, ClParameter::eFlagInput);
    container.AddImage("pInBacklightImage")->Bind(pInBacklightImage, ClParameter::eFlagInput);
    container.AddImage("pInDarkImage")->Bind(pInDarkImage, ClParameter::eFlagInput);
    container.AddDouble("dOutScore")->Bind(dOutScore, ClParameter::eFlagOutput);
}

int32_t ClSentivo::Init()
{
    dOutScore = -1.0;
    CheckInputImages();
    return 0;
}

void ClSentivo::CheckInputImages()
{
    if (pInCurrentImage == nullptr || pInBacklightImage == nullptr || pInDarkImage == nullptr)
        SENTIVO_THROW("Input image not assigned", ZRC_ERROR_PARAM_IS_MISSING);
    CheckDataType(*pInCurrentImage);
    CheckDataType(*pInDarkImage);
    CheckDataType(*pInBacklightImage);
    // The geometry of the capture is enforced here, once, for every stage.
    for (const ClImage* pImage : {pInCurrentImage, pInBacklightImage, pInDarkImage})
    {
        if (pImage->Width() != kImageWidth)
            SENTIVO_THROW("Illegal image width", ZRC_ERROR_BITMAP_DIMENSION);
    }
    for (const ClImage* pImage : {pInCurrentImage, pInBacklightImage, pInDarkImage})
    {
        if (pImage->Height() != kImageHeight)
            SENTIVO_THROW("Illegal image height", ZRC_ERROR_BITMAP_DIMENSION);
    }
}

int32_t ClSentivo::Process()
{
    m_bStrict = nSecurityLevel == 1;
    if (m_nMode & eModeFinger)
        RunFingerHalf();
    if (m_nMode & eModeFake)
        RunFakeHalf();
    return 0;
}

// The finger half: a chain of tests that answer by failing. A run that gets
// to the end leaves the prepared image and the fast mask in the object and
// records that a finger was found, which the fake half asks for.
void ClSentivo::RunFingerHalf()
{
    m_bFingerFound = false;

    // 1-4. The working images: a white image, the capture copied, and white
    // minus (dark minus backlight), which no step reads.
    ClImage white;
    white.Create(ClImage::eUInt8, pInDarkImage->Width(), pInDarkImage->Height());
    white.Fill<uint8_t>(255);
    m_PreparedImage.Assign(*pInCurrentImage);
    {
        ClImage difference;
        ClIpSubtract subtract;
        subtract.Run(pInDarkImage, pInBacklightImage, &difference);
        subtract.Run(&white, &difference, &m_BacklightImage);
    }

    // 5. The band profile. The stage is fed the copy of the capture and the
    // white image, not the two light images: so the profile is 255 less the
    // mean of each band's 256 darkest capture pixels. That wiring is meant.
    double adProfile[kProfileBands];
    ClIpSimpleBacklightCheck profile;
    profile.pInBacklightImage = &m_PreparedImage;
    profile.pInDarkImage = &white;
    profile.m_pdOutProfile = adProfile;
    profile.Run();

    // 6-7. Movement: the squared change of the profile since the last
    // capture. The new profile is kept whatever follows, so a still finger
    // passes on the second capture.
    double s = 0.0;
    for (int i = 0; i < kProfileBands; ++i)
    {
        const double d = m_PreviousProfile[i] - adProfile[i];
        s += d * d;
        m_PreviousProfile[i] = adProfile[i];
    }
    if (m_pRecord != nullptr)
    {
        m_pRecord->bMovement = true;
        m_pRecord->dMovementSum = s;
    }
    if (bMovementDetection && s > kMovementLimit)
        SENTIVO_THROW("Finger is moving\n", ZRC_ERROR_BITMAP_NO_FINGER);

    // 8. The prepared image and the fast mask.
    ClIpPrepareFeatureExtraction prepare;
    prepare.pInImage = pInCurrentImage;
    prepare.pOutMask = &m_FastMask;
    prepare.pOutImage = &m_PreparedImage;
    prepare.Run();
    if (m_pRecord != nullptr)
        m_pRecord->bPrepared = true;

    // 9. Illumination: too many black pixels of the capture itself.
    ClHistogram histogram;
    histogram.Create(*pInCurrentImage, 20, 20, 299, 459);
    if (histogram.m_nBins[0] > kIlluminationLimit)
        SENTIVO_THROW("illumination to high\n", ZRC_ERROR_LD_ILLUMINATION_TOO_HIGH);

    // 10. Position. The error is caught and a copy of it thrown again.
    // Outside the strict level a print that misses the lower
    // edge or lies skewed is forgiven; a print too small never is.
    try
    {
        ClIpFingerprintPositionCheck position;
        position.pInImage = &m_FastMask;
        position.Run();
    }
    catch (const ClException& e)
    {
        const int32_t nCode = e.GetCode();
        if (m_bStrict || (nCode != ZRC_ERROR_LD_NO_FINGERPRINT_IN_LOWER_AREA &&
                          nCode != ZRC_ERROR_LD_FINGER_PLACED_SKEWLY))
            throw ClException(e);
    }

    // 11.
    m_bFingerFound = true;
}

// The fake half: the falloff check at the strict level, the features of the
// capture prepared by the last successful finger half, the net and the
// score. It works on what that finger half left in the object; only the
// falloff check looks at the images as they are now.
void ClSentivo::RunFakeHalf()
{
    // 1-3.
    if (!m_bFingerFound)
        SENTIVO_THROW("no finger in images", ZRC_ERROR_BITMAP_NO_FINGER);
    bool bLive = true;
    if (m_bStrict)
    {
        bLive = FalloffPasses();
        if (m_pRecord != nullptr)
            m_pRecord->nFalloff = bLive ? 1 : 0;
    }

    // 4. The features, also for a capture the falloff check rejected: their
    // own errors still fail the run.
    ClIpExtractFeatures features;
    features.pInImage = &m_PreparedImage;
    features.pInFastMask = &m_FastMask;
    features.pOutMask = &m_FinalMask;
    features.Run();
    if (m_pRecord != nullptr)
    {
        m_pRecord->Features = features.m_Features;
        m_pRecord->MaskedImage = features.MaskedImage;
    }

    // 5. The net on the standardised features.
    NeuralNet::ClPrNeuralNet net;
    net.m_pNetData = &m_Net;
    net.m_pInFeatures = &features.m_Features;
    net.m_pOutFeatures = &m_NetOutput;
    net.m_pdMean = NeuralNet::g_FeatureMean;
    net.m_pdScale = NeuralNet::g_FeatureScale;
    net.m_pdProjection = nullptr;
    net.m_nProjectionSize = 0;
    net.Run();
    if (m_pRecord != nullptr)
    {
        m_pRecord->bNet = true;
        m_pRecord->dNetOutput = m_NetOutput[0];
    }

    // 6-7. The smallest normalised double keeps every computed score above
    // zero, so that exactly 0.0 means one thing: the falloff check rejected
    // the capture.
    dOutScore = ScoreOfNetOutput(m_NetOutput[0]) + kSmallestNormalDouble;
    if (!bLive)
        dOutScore = 0.0;
}

// The falloff check: the light difference (dark less backlight) must fall
// from the rows near the sensor's lower edge upward. Per band of 32 rows the
// value is the mean of the brightest quarter of the lit pixels, times the
// lit share of a quarter; the course must have its maximum before the last
// band, fall steeply enough and keep band 3 well above band 6.
bool ClSentivo::FalloffPasses()
{
    // 1-2. The difference, spread by a maximum across 21 columns and down 5
    // rows, then narrowed by a minimum across 51 columns.
    ClImage difference, spread, spreadDown;
    ClIpSubtract subtract;
    subtract.Run(pInDarkImage, pInBacklightImage, &difference);
    ClIpFilterMax max;
    max.Run(&difference, &spread, 21, eModeX);
    max.Run(&spread, &spreadDown, 5, eModeY);
    ClIpFilterMin min;
    min.Run(&spreadDown, &difference, 51, eModeX);
    return FalloffOfBands(difference);
}

bool ClSentivo::FalloffOfBands(const ClImage& difference)
{
    // 3. The seven bands from row 32 to row 255.
    bool bLive = true;
    double adValue[kFalloffBands] = {};
    double m = 0.0;
    int iMax = 8;
    for (int i = 0; i < kFalloffBands; ++i)
    {
        const int32_t nTop = kFalloffBandHeight * (i + 1);
        ClHistogram histogram;
        histogram.Create(difference, kFalloffLeft, nTop, kFalloffRight, nTop + kFalloffBandHeight);
        int64_t c = 0;
        for (int32_t b = kFalloffFirstLitBin; b <= 255; ++b)
            c += histogram.m_nBins[b];
        if (c <= kFalloffMinimumLit)
        {
            bLive = false;
            continue;
        }
        const int64_t q = c / 4;
        adValue[i] = static_cast<double>(histogram.SumOfHighest(q)) * 4.0 / static_cast<double>(c);
        // Of equal values the earliest band wins.
        if (adValue[i] > m)
        {
            m = adValue[i];
            iMax = i;
        }
    }
    // 4-7.
    if (!bLive || iMax >= kFalloffBands - 1)
        return false;
    const double dSlope = (m - adValue[6]) / (7 - iMax);
    const double dRatio = adValue[3] / adValue[6];
    return !(dSlope < kFalloffMinimumSlope || dRatio < kFalloffMinimumRatio);
}

void ClSentivo::StRunRecord::Clear()
{
    bMovement = false;
    dMovementSum = 0.0;
    bPrepared = false;
    nFalloff = -1;
    Features.Create(0);
    bNet = false;
    dNetOutput = 0.0;
    MaskedImage.Clear();
}

double ClSentivo::ScoreOfNetOutput(double dNetOutput) const
{
    return NeuralNet::ScoreOfNetOutput(dNetOutput);
}

void ClSentivo::SetQueryScore(const double& dScore)
{
    NeuralNet::QueryByScore(dScore, dQueryScore, dQueryFAR, dQueryFRR);
}

void ClSentivo::SetQueryFAR(const double& dFAR)
{
    NeuralNet::QueryByFAR(dFAR, dQueryScore, dQueryFAR, dQueryFRR);
}

void ClSentivo::SetQueryFRR(const double& dFRR)
{
    NeuralNet::QueryByFRR(dFRR, dQueryScore, dQueryFAR, dQueryFRR);
}
