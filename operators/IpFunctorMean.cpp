#include "operators/IpFunctorMean.h"

int32_t ClIpFunctorMean::Run(ClImage* pIn, ClImage* pOut, int32_t nWidth, int32_t nMode)
{
    m_pInImage = pIn;
    m_pOutImage = pOut;
    m_nFilterWidth = nWidth;
    m_nMode = nMode;
    return Run();
}

int32_t ClIpFunctorMean::Run(ClImage* pIn, ClImage* pOut, int32_t nWidth, int32_t nMode,
                             ClImage* pDx, ClImage* pDy)
{
    m_pDxImage = pDx;
    m_pDyImage = pDy;
    return Run(pIn, pOut, nWidth, nMode);
}

ClProcessorBase* ClIpFunctorMean::NewInstance() const
{
    return NewProcessor<ClIpFunctorMean>();
}

int32_t ClIpFunctorMean::Execute(ClImage& input, ClImage& output)
{
    // A width below 1 runs as 3, and the width is odd; the member keeps it.
    if (m_nFilterWidth < 1)
        m_nFilterWidth = 3;
    m_nFilterWidth |= 1;

    MeanFilter::Box box{0, input.Width() - 1, 0, input.Height() - 1};
    switch (m_nRegionOfInterest)
    {
    case eRoiAll:
        break;
    case eRoiBox:
        box = MeanFilter::Box{m_nROILeft, m_nROIRight, m_nROIBottom, m_nROITop};
        break;
    case eRoiMask:
        SENTIVO_THROW("Mask region of interest not supported yet", ZRC_ERROR_INVALID_PARAMETER);
    default:
        SENTIVO_THROW("unknown region of interest", ZRC_ERROR_INVALID_PARAMETER);
    }

    const int32_t nWidth = m_nFilterWidth;
    return SelectDataType(input.DataType(),
                          [&](auto tag)
                          {
                              using T = typename decltype(tag)::Type;
                              return MeanFilter::Filter<T>(input, output, m_nMode, nWidth, box,
                                                           m_pDxImage, m_pDyImage);
                          });
}
