#include "operators/IpFilterMid.h"

#include "image/SampleTraits.h"
#include "sdk/Exception.h"

int32_t ClIpFilterMid::Run(ClImage* pIn, ClImage* pOut, int32_t nWidth)
{
    m_pInImage = pIn;
    m_pOutImage = pOut;
    m_nFilterWidth = nWidth;
    return Run();
}

ClProcessorBase* ClIpFilterMid::NewInstance() const
{
    return NewProcessor<ClIpFilterMid>();
}

int32_t ClIpFilterMid::Init()
{
    m_nFilterWidth |= 1;
    return 0;
}

int32_t ClIpFilterMid::FilterSinglePlane()
{
    if (m_pInImage == nullptr)
        return ZRC_ERROR_PARAM_OUT_OF_RANGE;
    return SelectDataType(m_pInImage->DataType(),
                          [this](auto tag) { return FilterType<typename decltype(tag)::Type>(); });
}

template <typename T> int32_t ClIpFilterMid::FilterType()
{
    // A missing output is a bad parameter, as a missing input is.
    if (m_pOutImage == nullptr)
        return ZRC_ERROR_PARAM_OUT_OF_RANGE;
    switch (m_nMode)
    {
    case eModeX:
        return RunningMean::Pass<T>(*m_pInImage, *m_pOutImage, m_nFilterWidth, false);
    case eModeY:
        return RunningMean::Pass<T>(*m_pInImage, *m_pOutImage, m_nFilterWidth, true);
    case eModeXY:
        // The one routine serves the 3 x 3 window and m_bAlternativeXY alike:
        // the dedicated routines would give the same results.
        return RunningMean::PassXY<T>(*m_pInImage, *m_pOutImage, m_nFilterWidth);
    case eModeDirected:
    case eModeDirectedOrtho:
        return ZRC_ERROR_FORMAT_NOTSUPPORTED;
    default:
        SENTIVO_THROW_CODE(kErrorUnknownFilterMode);
    }
}
