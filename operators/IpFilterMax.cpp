#include "operators/IpFilterMax.h"

#include "image/SampleTraits.h"
#include "operators/RunningExtreme.h"
#include "parameters/ParameterInterface.h"

int32_t ClIpFilterMax::Run(ClImage* pIn, ClImage* pOut, int32_t nWidth, int32_t nMode)
{
    m_pInImage = pIn;
    m_pOutImage = pOut;
    m_nFilterWidth = nWidth;
    m_nMode = nMode;
    return Run();
}

ClProcessorBase* ClIpFilterMax::NewInstance() const
{
    return NewProcessor<ClIpFilterMax>();
}

void ClIpFilterMax::DescribeInterface(ClParameterInterface& list)
{
    using I = ClParameterInterface;
    list.Add(m_pInImage, "InImage", "In: Original Image", I::eInput);
    list.Add(m_pOutImage, "OutImage", "Out: Rescaled Image", I::eOutput);
    list.Add(m_nFilterWidth, "FilterWidth", "In: Filter Width", I::eInput, 3.0, 127.0);
}

int32_t ClIpFilterMax::FilterSinglePlane()
{
    if (m_pInImage == nullptr)
        return ZRC_ERROR_PARAM_OUT_OF_RANGE;
    return SelectDataType(m_pInImage->DataType(),
                          [this](auto tag) { return FilterType<typename decltype(tag)::Type>(); });
}

template <typename T> int32_t ClIpFilterMax::FilterType()
{
    auto passX = [this]
    { return RunningExtreme::Pass<true, T>(m_pInImage, m_pOutImage, m_nFilterWidth, false); };
    auto passY = [this]
    { return RunningExtreme::Pass<true, T>(m_pInImage, m_pOutImage, m_nFilterWidth, true); };
    switch (m_nMode)
    {
    case eModeX:
        return passX();
    case eModeY:
        return passY();
    case eModeXY:
        return FilterXThenY(passX, passY);
    case eModeDirected:
    case eModeDirectedOrtho:
        return ZRC_ERROR_FORMAT_NOTSUPPORTED;
    default:
        SENTIVO_THROW_CODE(kErrorUnknownFilterMode);
    }
}
