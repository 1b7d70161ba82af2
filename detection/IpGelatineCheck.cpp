#include "detection/IpGelatineCheck.h"

#include "parameters/ParameterContainer.h"
#include "processing/PixelWalk.h"

namespace
{

// Marks a pixel outside the mask; a white pixel under the mask is left out
// as well.
constexpr uint8_t kUnused = 255;

} // namespace

ClIpGelatineCheck::ClIpGelatineCheck() : ClIpStageBase("IpGelatineCheck")
{
    DeclareInput("pInImage", pInImage, "Input image not assigned", ZRC_ERROR_BAD_POINTER);
    DeclareInput("pInMask", pInMask, "Mask image not assigned", ZRC_ERROR_BAD_POINTER);
    DeclareResult(m_pdOutSteps, "Output pointer not assigned", ZRC_ERROR_BAD_POINTER);
    DeclareScratch(m_Used);
}

void ClIpGelatineCheck::SetDefaults()
{
    pInImage = nullptr;
    pInMask = nullptr;
    m_pdOutSteps = nullptr;
    dOutResult = 0.0;
}

void ClIpGelatineCheck::DefineParameters(ClParameterContainer& container)
{
    ClIpStageBase::DefineParameters(container);
    container.AddDouble("dOutResult")->Bind(dOutResult, ClParameter::eFlagOutput);
}

ClProcessorBase* ClIpGelatineCheck::NewInstance() const
{
    return NewProcessor<ClIpGelatineCheck>();
}

int32_t ClIpGelatineCheck::Process()
{
    const ClScratchScope scratch(*this);
    // 1. The image where the mask is set, 255 elsewhere. A mask of another
    // size is refused by the walk (-44) instead of being read beyond.
    m_Used.Create(ClImage::eUInt8, pInImage->Width(), pInImage->Height());
    PixelWalk::ForEachPixel(
        [](uint8_t v, uint8_t m, uint8_t& used) { used = m != 0 ? v : kUnused; },
        PixelWalk::View<const uint8_t>(*pInImage), PixelWalk::View<const uint8_t>(*pInMask),
        PixelWalk::View<uint8_t>(m_Used));

    // 2-3. Squared steps from each row to the next, for every pair of used
    // pixels. A step of 0 belongs to the falling side: it adds nothing but
    // is counted. The sums are whole numbers, exact in 64 bits.
    const PixelWalk::TpView<const uint8_t> used(m_Used);
    const int32_t W = used.Width(), H = used.Height();
    int64_t nCount = 0, nFalling = 0, nRising = 0;
    for (int32_t y = 0; y + 1 < H; ++y)
    {
        const uint8_t* pUpper = used.Row(y);
        const uint8_t* pLower = used.Row(y + 1);
        // Without branches, so that the compiler can run the row in
        // vectors: an unused pair adds 0 to everything.
        for (int32_t x = 0; x < W; ++x)
        {
            const int32_t nUsed = (pUpper[x] != kUnused) & (pLower[x] != kUnused);
            const int32_t d = pUpper[x] - pLower[x];
            const int32_t nSquare = nUsed * d * d;
            nCount += nUsed;
            nFalling += d >= 0 ? nSquare : 0;
            nRising += d < 0 ? nSquare : 0;
        }
    }

    // 4-5. Means over the pairs and their ratio, unguarded: no pair gives
    // NaN, no rising step infinity.
    const double dCount = static_cast<double>(nCount);
    m_pdOutSteps[0] = static_cast<double>(nFalling) / dCount;
    m_pdOutSteps[1] = static_cast<double>(nRising) / dCount;
    dOutResult = m_pdOutSteps[0] / m_pdOutSteps[1];
    return 0;
}
