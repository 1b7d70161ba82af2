#include "detection/Sentivo.h"

#include <cmath>
#include <cstring>

#include "classifier/ScoreMapping.h"
#include "parameters/ParameterContainer.h"
#include "parameters/ParameterEnumPointer.h"
#include "parameters/ParameterNumeric.h"
#include "sdk/Exception.h"

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

// The two halves are stages of their own that this build does not contain
// yet; a run reports that plainly instead of making up a result.
void ClSentivo::RunFingerHalf()
{
    m_bFingerFound = false;
    SENTIVO_THROW("The finger detection is not built yet", ZRC_ERROR_INTERNAL);
}

void ClSentivo::RunFakeHalf()
{
    SENTIVO_THROW("The fake detection is not built yet", ZRC_ERROR_INTERNAL);
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
