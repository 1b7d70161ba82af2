#include "processing/Ip1To1BaseFilter.h"

#include "sdk/Exception.h"

ClIp1To1BaseFilter::ClIp1To1BaseFilter()
    : m_nMode(eModeXY), m_nFilterWidth(0), m_pDxImage(nullptr), m_pDyImage(nullptr)
{
}

void ClIp1To1BaseFilter::SetDefaults()
{
    ClIpFunctor1To1Base::SetDefaults();
    m_nMode = eModeXY;
    m_nFilterWidth = 0;
    m_pDxImage = nullptr;
    m_pDyImage = nullptr;
}

void ClIp1To1BaseFilter::DefineParameters(ClParameterContainer& container)
{
    ClIpFunctor1To1Base::DefineParameters(container);
    container.AddInt("nFilterWidth")->Bind(m_nFilterWidth, ClParameter::eFlagOptional);
    AddFilterModeParameter(container, m_nMode);
    container.AddImage("pDxImage")->Bind(m_pDxImage, ClParameter::eFlagInput);
    container.AddImage("pDyImage")->Bind(m_pDyImage, ClParameter::eFlagInput);
}

void ClIp1To1BaseFilter::CheckParameters()
{
    ClIpFunctor1To1Base::CheckParameters();

    if (m_nMode == eModeDirected || m_nMode == eModeDirectedOrtho)
    {
        // A step image without samples counts as not provided.
        if (m_pDxImage == nullptr || m_pDxImage->Data() == nullptr || m_pDxImage->Planes() < 1)
            SENTIVO_THROW("InDxImage not provided", ZRC_ERROR_INVALID_PARAMETER);
        if (m_pDyImage == nullptr || m_pDyImage->Data() == nullptr || m_pDyImage->Planes() < 1)
            SENTIVO_THROW("InDyImage not provided", ZRC_ERROR_INVALID_PARAMETER);
        if (m_pDxImage->DataType() != ClImage::eInt8 || m_pDyImage->DataType() != ClImage::eInt8)
            SENTIVO_THROW("In[Dx|Dy]Iimage must be signed 8 bit", ZRC_ERROR_INVALID_PARAMETER);
        if (m_pDxImage->Width() != m_pInImage->Width() ||
            m_pDxImage->Height() != m_pInImage->Height())
            SENTIVO_THROW("InDxImage size must be equal to InImage", ZRC_ERROR_INVALID_PARAMETER);
        if (m_pDyImage->Width() != m_pInImage->Width() ||
            m_pDyImage->Height() != m_pInImage->Height())
            SENTIVO_THROW("InDyImage size must be equal to InImage", ZRC_ERROR_INVALID_PARAMETER);
    }
}
