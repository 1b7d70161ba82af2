#pragma once
// The common body of ClIpFilterMin and ClIpFilterMax: the extreme of a
// sliding window, along rows (Mode X), down columns (Mode Y) or both, one
// pass after the other (Mode XY). Near the border the window is cut off;
// nothing is padded.
#include "image/SampleTraits.h"
#include "operators/RunningExtreme.h"
#include "parameters/ParameterInterface.h"
#include "processing/IpFilterBase.h"

template <bool bMaximum> class TpIpFilterExtreme : public ClIpFilterBase
{
public:
    using ClProcessorBase::Run;
    int32_t Run(ClImage* pIn, ClImage* pOut, int32_t nWidth, int32_t nMode)
    {
        m_pInImage = pIn;
        m_pOutImage = pOut;
        m_nFilterWidth = nWidth;
        m_nMode = nMode;
        return Run();
    }

    void DescribeInterface(ClParameterInterface& list) override
    {
        using I = ClParameterInterface;
        list.Add(m_pInImage, "InImage", "In: Original Image", I::eInput);
        list.Add(m_pOutImage, "OutImage", "Out: Rescaled Image", I::eOutput);
        list.Add(m_nFilterWidth, "FilterWidth", "In: Filter Width", I::eInput, 3.0, 127.0);
    }

    // Selects the member of the exact data type, then the mode; an unknown
    // type gives -101 and the directed modes -33.
    int32_t FilterSinglePlane() override
    {
        if (m_pInImage == nullptr)
            return ZRC_ERROR_PARAM_OUT_OF_RANGE;
        return SelectDataType(m_pInImage->DataType(),
                              [this](auto tag) { return FilterType<typename decltype(tag)::Type>(); });
    }

private:
    template <typename T> int32_t FilterType()
    {
        auto passX = [this]
        { return RunningExtreme::Pass<bMaximum, T>(m_pInImage, m_pOutImage, m_nFilterWidth, false); };
        auto passY = [this]
        { return RunningExtreme::Pass<bMaximum, T>(m_pInImage, m_pOutImage, m_nFilterWidth, true); };
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
};
