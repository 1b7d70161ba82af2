#include "operators/IpSplitPlanes.h"

#include <cstdio>

#include "image/SampleTraits.h"
#include "parameters/ParameterContainer.h"
#include "parameters/ParameterInterface.h"
#include "sdk/Exception.h"

namespace
{

// Copies every nPlanes-th sample of the source, starting at plane nPlane,
// into the one-plane target.
template <typename T> void CopyPlane(const ClImage& source, uint32_t nPlane, ClImage& target)
{
    const uint32_t nPlanes = source.Planes();
    const int32_t nWidth = source.Width();
    for (int32_t y = 0; y < source.Height(); ++y)
    {
        const T* pSource = source.Row<T>(y) + nPlane;
        T* pTarget = target.Row<T>(y);
        for (int32_t x = 0; x < nWidth; ++x)
            pTarget[x] = pSource[static_cast<int64_t>(x) * nPlanes];
    }
}

} // namespace

void ClIpSplitPlanes::DescribeInterface(ClParameterInterface& list)
{
    list.Add(m_pInImage, "InImage", "In: Original Image", ClParameterInterface::eInput);
}

void ClIpSplitPlanes::DefineParameters(ClParameterContainer& container)
{
    ClProcessorBase::DefineParameters(container);
    container.AddImage("pInImage")->Bind(m_pInImage, ClParameter::eFlagInput);
    for (uint32_t p = 0; p < kMaxPlanes; ++p)
    {
        char szName[32];
        std::snprintf(szName, sizeof(szName), "pOutPlane[%u]", p);
        container.AddImage(szName)->Bind(m_pOutPlane[p],
                                         ClParameter::eFlagOutput | ClParameter::eFlagOptional);
    }
}

ClProcessorBase* ClIpSplitPlanes::NewInstance() const
{
    return NewProcessor<ClIpSplitPlanes>();
}

int32_t ClIpSplitPlanes::Run(ClImage* pIn, ClImage* pPlane0, ClImage* pPlane1, ClImage* pPlane2,
                             ClImage* pPlane3)
{
    m_pInImage = pIn;
    m_pOutPlane[0] = pPlane0;
    m_pOutPlane[1] = pPlane1;
    m_pOutPlane[2] = pPlane2;
    m_pOutPlane[3] = pPlane3;
    return Run();
}

int32_t ClIpSplitPlanes::Process()
{
    // Without an input image there is nothing to read: the missing-image code.
    if (m_pInImage == nullptr || m_pInImage->Data() == nullptr)
        return ZRC_ERROR_BITMAP_PTR;
    if (m_pInImage->Planes() > kMaxPlanes)
        SENTIVO_THROW("Image has more than 4 planes.", ZRC_ERROR_PARAM_OUT_OF_RANGE);

    // A header copy shares the buffer, so a plane image that is the input
    // object itself gets a new buffer from Create while the samples stay
    // readable here.
    const ClImage source(*m_pInImage);
    for (uint32_t p = 0; p < source.Planes(); ++p)
    {
        ClImage* pTarget = m_pOutPlane[p];
        if (pTarget == nullptr)
            continue;
        // An unknown sample type is skipped without a message.
        (void)SelectDataType(source.DataType(),
                             [&](auto tag)
                             {
                                 using T = typename decltype(tag)::Type;
                                 pTarget->Create(source.DataType(), source.Width(), source.Height(),
                                                 1, source.XResolution(), source.YResolution());
                                 CopyPlane<T>(source, p, *pTarget);
                                 return 0;
                             });
    }
    return 0;
}
