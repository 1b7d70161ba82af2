#include "detection/IpSimpleBacklightCheck.h"

#include "image/Histogram.h"

namespace
{

// Band i covers columns 16 to 303 and rows 16 + 16 i to 31 + 16 i: 288 by 16
// pixels, the bands together rows 16 to 463. The constants do not follow
// the image size.
constexpr int32_t kLeft = 16;
constexpr int32_t kRight = 304; // exclusive
constexpr int32_t kTop = 16;
constexpr int32_t kBandHeight = 16;
// The darkest pixels that a band's value is the mean of.
constexpr int64_t kDarkest = 256;

} // namespace

ClIpSimpleBacklightCheck::ClIpSimpleBacklightCheck() : ClIpStageBase("IpSimpleBacklightCheck")
{
    DeclareInput("pInBacklightImage", pInBacklightImage, "Input backlight image not assigned",
                 ZRC_ERROR_BAD_POINTER);
    DeclareInput("pInDarkImage", pInDarkImage, "Input dark image not assigned",
                 ZRC_ERROR_BAD_POINTER);
}

void ClIpSimpleBacklightCheck::SetDefaults()
{
    pInBacklightImage = nullptr;
    pInDarkImage = nullptr;
    m_pdOutProfile = m_adProfile;
}

ClProcessorBase* ClIpSimpleBacklightCheck::NewInstance() const
{
    return NewProcessor<ClIpSimpleBacklightCheck>();
}

int32_t ClIpSimpleBacklightCheck::Process()
{
    for (int i = 0; i < kBands; ++i)
    {
        const int32_t nTop = kTop + kBandHeight * i;
        ClHistogram backlight, dark;
        backlight.Create(*pInBacklightImage, kLeft, nTop, kRight, nTop + kBandHeight);
        dark.Create(*pInDarkImage, kLeft, nTop, kRight, nTop + kBandHeight);
        // The sums are whole numbers, exact in a double: the difference of
        // the two means of the 256 darkest pixels.
        const double dDark = static_cast<double>(dark.SumOfLowest(kDarkest));
        const double dBacklight = static_cast<double>(backlight.SumOfLowest(kDarkest));
        m_pdOutProfile[i] = (dDark - dBacklight) * 0.00390625;
    }
    return 0;
}
