#include "processing/IpFunctor1To1Base.h"

#include "parameters/ParameterContainer.h"
#include "sdk/Exception.h"

ClIpFunctor1To1Base::ClIpFunctor1To1Base()
    : m_pInImage(nullptr), m_pOutImage(nullptr), m_nRegionOfInterest(eRoiAll), m_nROILeft(0),
      m_nROIRight(0), m_nROIBottom(0), m_nROITop(0), m_pROIMask(nullptr), m_bInPlace(false)
{
}

void ClIpFunctor1To1Base::SetDefaults()
{
    // The in-place flag is a property of the caller's set-up and stays.
    m_pInImage = nullptr;
    m_pOutImage = nullptr;
    m_nRegionOfInterest = eRoiAll;
    m_nROILeft = 0;
    m_nROIRight = 0;
    m_nROIBottom = 0;
    m_nROITop = 0;
    m_pROIMask = nullptr;
}

void ClIpFunctor1To1Base::DefineParameters(ClParameterContainer& container)
{
    ClProcessorBase::DefineParameters(container);
    container.AddImage("pInImage")->Bind(m_pInImage, ClParameter::eFlagInput);
    container.AddImage("pOutImage")->Bind(m_pOutImage, ClParameter::eFlagOutput);
    TpParameterEnumPointer<int>* pRegion = container.AddEnum<int>("nRegionOfInterest");
    pRegion->AddEntry(eRoiAll, "ROI_ALL");
    pRegion->AddEntry(eRoiBox, "ROI_BOX");
    pRegion->AddEntry(eRoiMask, "ROI_MASK");
    pRegion->Bind(m_nRegionOfInterest, ClParameter::eFlagInput);
    container.AddInt("nROILeft")->Bind(m_nROILeft, ClParameter::eFlagInput);
    container.AddInt("nROIRight")->Bind(m_nROIRight, ClParameter::eFlagInput);
    container.AddInt("nROIBottom")->Bind(m_nROIBottom, ClParameter::eFlagInput);
    container.AddInt("nROITop")->Bind(m_nROITop, ClParameter::eFlagInput);
    container.AddImage("pROIMask")->Bind(m_pROIMask, ClParameter::eFlagInput);
}

void ClIpFunctor1To1Base::PrepareOutput(ClImage& output)
{
    output.CreateLike(*m_pInImage);
}

void ClIpFunctor1To1Base::CheckParameters()
{
    if (m_pInImage == nullptr)
        SENTIVO_THROW("Input image not assigned", ZRC_ERROR_BAD_POINTER);
    if (m_pInImage->Data() == nullptr)
        SENTIVO_THROW("Input image contains no data", ZRC_ERROR_INVALID_PARAMETER);
    if (m_pOutImage == nullptr)
        SENTIVO_THROW("Output image not assigned", ZRC_ERROR_BAD_POINTER);

    if (m_nRegionOfInterest == eRoiBox)
    {
        if (!(m_nROILeft < m_nROIRight && m_nROIBottom < m_nROITop))
            SENTIVO_THROW("Illegal ROI box", ZRC_ERROR_INVALID_PARAMETER);
        if (m_nROILeft < 0 || m_nROIBottom < 0 || m_nROIRight >= m_pInImage->Width() ||
            m_nROITop >= m_pInImage->Height())
            SENTIVO_THROW("ROI box must be placed inside the image", ZRC_ERROR_INVALID_PARAMETER);
    }
    else if (m_nRegionOfInterest == eRoiMask)
    {
        if (m_pROIMask == nullptr)
            SENTIVO_THROW("No mask assigned", ZRC_ERROR_BAD_POINTER);
        if (m_pROIMask->Data() == nullptr)
            SENTIVO_THROW("Mask contains no data", ZRC_ERROR_INVALID_PARAMETER);
        // A mask of one row is what passes; that is the rule as it stands.
        if (m_pROIMask->Height() != 1 || m_pROIMask->DataType() != ClImage::eUInt8 ||
            m_pROIMask->Planes() != 1)
            SENTIVO_THROW("Mask seems not to be a mask", ZRC_ERROR_INVALID_PARAMETER);
    }
}

int32_t ClIpFunctor1To1Base::Process()
{
    CheckParameters();
    ClImage& input = *m_pInImage;
    ClImage& output = *m_pOutImage;

    if (m_bInPlace)
    {
        if (&output != &input)
            PrepareOutput(output);
        return Execute(input, output);
    }

    ClImage temporary;
    ClImage& target = (&output == &input) ? temporary : output;
    PrepareOutput(target);
    // An unknown sample type comes back from Execute as -101.
    const int32_t nResult = Execute(input, target);
    output.Swap(target);
    return nResult;
}
