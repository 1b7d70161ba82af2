#include "detection/IpPrepareFeatureExtraction.h"

#include "detection/IpNormalizeImagesFD.h"
#include "processing/PixelWalk.h"

namespace
{

// The window of the texture measure and of its smoothing.
constexpr int32_t kTextureWidth = 9;
// Texture stronger than this is ridge ground; exactly 32 is background.
constexpr uint8_t kTextureThreshold = 32;
// Isolated texture is removed: a patch must fill two thirds (170 of 255) of
// the width-15 window to stay.
constexpr int32_t kCleanWidth = 15;
constexpr double kCleanThreshold = 170.0;

} // namespace

ClIpPrepareFeatureExtraction::ClIpPrepareFeatureExtraction()
    : ClIpStageBase("IpPrepareFeatureExtraction", false)
{
    DeclareInput("pInImage", pInImage, "invalid input image", ZRC_ERROR_INVALID_PARAMETER,
                 eUntyped);
    DeclareOutput("pOutImage", pOutImage, "invalid output image", ZRC_ERROR_INVALID_PARAMETER);
    DeclareOutput("pOutMask", pOutMask, "invalid output parameter", ZRC_ERROR_INVALID_PARAMETER);
    DeclareScratch(m_Envelope);
    DeclareScratch(m_Texture);
    DeclareScratch(m_Smoothed);
}

void ClIpPrepareFeatureExtraction::SetDefaults()
{
    pInImage = nullptr;
    pOutMask = nullptr;
    pOutImage = nullptr;
}

ClProcessorBase* ClIpPrepareFeatureExtraction::NewInstance() const
{
    return NewProcessor<ClIpPrepareFeatureExtraction>();
}

int32_t ClIpPrepareFeatureExtraction::Process()
{
    const ClScratchScope scratch(*this);
    ClImage& prepared = *pOutImage;
    ClImage& mask = *pOutMask;

    // 1. The normalised capture.
    Sentivo::ClIpNormalizeImagesFD normalize;
    normalize.EnableLog(IsLogEnabled());
    normalize.Run(pInImage, &prepared);

    // 2-5. Texture: how far each pixel lies below its local maximum, spread
    // by a second maximum and smoothed by a box mean. Large on dark ridges
    // beside bright valleys, small on flat ground.
    MaxFilter(prepared, m_Envelope, kTextureWidth);
    Subtract(m_Envelope, prepared, m_Texture);
    MaxFilter(m_Texture, m_Envelope, kTextureWidth);
    MeanFilter(m_Envelope, m_Smoothed, kTextureWidth);
    MakeFastMask(m_Smoothed, mask);
    return 0;
}

void ClIpPrepareFeatureExtraction::MakeFastMask(ClImage& texture, ClImage& mask)
{
    // 6-7. 255 where the texture is above 32.
    mask.Create(ClImage::eUInt8, texture.Width(), texture.Height(), 1);
    PixelWalk::ForEachPixel([](uint8_t t, uint8_t& m) { m = t > kTextureThreshold ? 255 : 0; },
                            PixelWalk::View<const uint8_t>(texture),
                            PixelWalk::View<uint8_t>(mask));

    // 8-9. Isolated texture removed (the texture's image is free by now).
    MeanFilter(mask, texture, kCleanWidth);
    Binarize(texture, mask, kCleanThreshold);
}
