#include "sdk/SentivoSDKHandle.h"

#include <cstring>
#include <memory>

#include "image/Bitmap.h"
#include "parameters/ParameterEnumPointer.h"
#include "parameters/ParameterNumeric.h"

namespace Sentivo
{
char g_szVersion[] = SENTIVO_VERSION_TEXT;
} // namespace Sentivo

namespace
{

// The resolution of a standard image: 500 dpi (19685 pels per metre) with one
// per cent on either side; its size from 1 cm to 2.5 cm at 500 dpi.
constexpr int32_t kMinPelsPerMeter = 19488;
constexpr int32_t kMaxPelsPerMeter = 19881;
constexpr double kMinSizePixels = 196.85;
constexpr double kMaxSizePixels = 492.125;

} // namespace

ClSentivoSDKHandle::~ClSentivoSDKHandle()
{
    delete m_Detection.pInBacklightImage;
    delete m_Detection.pInDarkImage;
    delete m_Detection.pInCurrentImage;
}

ClImage*& ClSentivoSDKHandle::Slot(int32_t nImageIndex)
{
    switch (nImageIndex)
    {
    case 0:
        return m_Detection.pInCurrentImage;
    case 1:
        return m_Detection.pInBacklightImage;
    case 2:
        return m_Detection.pInDarkImage;
    default:
        SENTIVO_THROW_CODE(ZRC_ERROR_PARAM_OUT_OF_RANGE);
    }
}

void ClSentivoSDKHandle::ClearImage(int32_t nImageIndex)
{
    ClImage*& pSlot = Slot(nImageIndex);
    delete pSlot;
    pSlot = nullptr;
}

void ClSentivoSDKHandle::SetImage(int32_t nImageIndex, void* pBitmap, uint32_t nBitmapSize)
{
    if (pBitmap == nullptr)
    {
        ClearImage(nImageIndex);
        return;
    }
    ClImage*& pSlot = Slot(nImageIndex);
    CheckStandardImage(pBitmap, nBitmapSize);
    LoadImage(pSlot, pBitmap, nBitmapSize);
}

void ClSentivoSDKHandle::LoadImage(ClImage*& pSlot, void* pBitmap, uint32_t nBitmapSize)
{
    if (pBitmap == nullptr)
        SENTIVO_THROW("Bitmap invalid", ZRC_ERROR_BITMAP_PTR);
    if (nBitmapSize == 0)
        SENTIVO_THROW("Bitmap size invalid", ZRC_ERROR_BITMAP_PTR);
    ClBitmap bitmap;
    bitmap.Attach(pBitmap, nBitmapSize);
    if (pSlot == nullptr)
    {
        pSlot = new (std::nothrow) ClImage();
        if (pSlot == nullptr)
            SENTIVO_THROW_BAD_ALLOC();
    }
    // The pixels are copied: the caller's block is not needed after the call.
    pSlot->AssignBitmap(bitmap);
}

void ClSentivoSDKHandle::CheckBitmapFormat(void* pBitmap, uint32_t nBitmapSize)
{
    // Everything that can fail in LoadImage fails here first, on a
    // temporary, so that the slot is only touched by a load that succeeds.
    struct TemporarySlot
    {
        ClImage* pImage = nullptr;
        ~TemporarySlot() { delete pImage; }
    } temporary;
    LoadImage(temporary.pImage, pBitmap, nBitmapSize);

    ClBitmap bitmap;
    bitmap.Attach(pBitmap, 0);
    const SentivoBitmapInfoHeader& header = *bitmap.Header();
    if (header.biBitCount != 8)
        SENTIVO_THROW("The image must have a bitdepth of 8 bit", ZRC_ERROR_BITMAP_BITCOUNT);
    if (header.biPlanes != 1)
        SENTIVO_THROW("Only images with a single plane are supported", ZRC_ERROR_BITMAP_PLANE);
    if (header.biCompression != 0)
        SENTIVO_THROW("Images should not be compressed", ZRC_ERROR_BITMAP_COMPRESSION);
    if (ClBitmap::ColourCount(&header) != 256)
        SENTIVO_THROW("There should be palette with 256 entries", ZRC_ERROR_BITMAP_BITCOUNT);

    // The caller's palette becomes a grey ramp, in place; the fourth byte of
    // each entry stays.
    SentivoBitmapRgbQuad* pPalette = bitmap.Colours();
    for (int i = 0; i < 256; ++i)
    {
        pPalette[i].rgbBlue = static_cast<uint8_t>(i);
        pPalette[i].rgbGreen = static_cast<uint8_t>(i);
        pPalette[i].rgbRed = static_cast<uint8_t>(i);
    }
}

void ClSentivoSDKHandle::CheckStandardImage(void* pBitmap, uint32_t nBitmapSize)
{
    CheckBitmapFormat(pBitmap, nBitmapSize);
    ClBitmap bitmap;
    bitmap.Attach(pBitmap, nBitmapSize);
    const SentivoBitmapInfoHeader& header = *bitmap.Header();
    auto require = [](bool bHolds, const char* szText, int32_t nCode)
    {
        if (!bHolds)
            SENTIVO_THROW(szText, nCode);
    };
    require(
        header.biXPelsPerMeter >= kMinPelsPerMeter && header.biXPelsPerMeter <= kMaxPelsPerMeter,
        "Standard images must have 500 dpi or 19685 pels in x direction", ZRC_ERROR_BITMAP_PELS);
    require(
        header.biYPelsPerMeter >= kMinPelsPerMeter && header.biYPelsPerMeter <= kMaxPelsPerMeter,
        "Standard images must have 500 dpi or 19685 pels in y direction", ZRC_ERROR_BITMAP_PELS);
    require(header.biXPelsPerMeter == header.biYPelsPerMeter,
            "Standard images must have same dpi count in each direction", ZRC_ERROR_BITMAP_PELS);
    const double dWidth = header.biWidth;
    const double dHeight = header.biHeight;
    require(dWidth >= kMinSizePixels, "Standard image width must at least cover 1 cm",
            ZRC_ERROR_BITMAP_DIMENSION);
    require(dWidth <= kMaxSizePixels, "Standard image width must at most cover 2,5 cm",
            ZRC_ERROR_BITMAP_DIMENSION);
    require(dHeight >= kMinSizePixels, "Standard image height must at least cover 1 cm",
            ZRC_ERROR_BITMAP_DIMENSION);
    require(dHeight <= kMaxSizePixels, "Standard image height must at most cover 2,5 cm",
            ZRC_ERROR_BITMAP_DIMENSION);
    require(header.biWidth % 4 == 0 && header.biHeight % 4 == 0,
            "Dimensions current image must be multiples of 4", ZRC_ERROR_BITMAP_DIMENSION);
}

int32_t ClSentivoSDKHandle::RunDetection(uint8_t nMode)
{
    m_Detection.m_nMode = nMode;
    return m_Detection.Run();
}

void ClSentivoSDKHandle::DetectFinger()
{
    RunDetection(ClSentivo::eModeFinger);
}

void ClSentivoSDKHandle::DetectFake(double* pdScore)
{
    if (pdScore == nullptr)
        SENTIVO_THROW_CODE(ZRC_ERROR_INVALID_PARAMETER);
    *pdScore = 0.0;
    RunDetection(ClSentivo::eModeFake);
    *pdScore = m_Detection.dOutScore;
}

int32_t ClSentivoSDKHandle::EvaluateLiveliness(double* pdScore)
{
    if (pdScore == nullptr)
        SENTIVO_THROW_CODE(ZRC_ERROR_INVALID_PARAMETER);
    *pdScore = 0.0;
    const int32_t nResult = RunDetection(ClSentivo::eModeFinger | ClSentivo::eModeFake);
    *pdScore = m_Detection.dOutScore;
    return nResult;
}

void ClSentivoSDKHandle::Reset()
{
    for (int32_t nIndex : {0, 1, 2})
        ClearImage(nIndex);
    ClSentivoSDKHandleBase::Reset();
}

void ClSentivoSDKHandle::DefineHandleProperties(ClParameterContainer& container)
{
    const uint8_t nSetting = ClParameter::eFlagInput | ClParameter::eFlagOutput;
    container.AddDouble<ClSentivo>("dQueryScore")
        ->BindAccessors(&m_Detection, &ClSentivo::SetQueryScore, &ClSentivo::GetQueryScore,
                        nSetting);
    container.AddDouble<ClSentivo>("dQueryFAR")
        ->BindAccessors(&m_Detection, &ClSentivo::SetQueryFAR, &ClSentivo::GetQueryFAR, nSetting);
    container.AddDouble<ClSentivo>("dQueryFRR")
        ->BindAccessors(&m_Detection, &ClSentivo::SetQueryFRR, &ClSentivo::GetQueryFRR, nSetting);
    TpParameterEnumPointer<bool>* pMovement = container.AddBool("bMovementDetection");
    pMovement->Bind(m_Detection.bMovementDetection, nSetting);
    container.AddInt("nSecurityLevel")->Bind(m_Detection.nSecurityLevel, nSetting);
}
