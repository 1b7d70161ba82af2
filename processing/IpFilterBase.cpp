#include "processing/IpFilterBase.h"

#include <cstdio>

#include "operators/IpJoinPlanes.h"
#include "operators/IpSplitPlanes.h"
#include "parameters/ParameterInterface.h"
#include "sdk/Exception.h"

ClIpFilterBase::ClIpFilterBase()
    : m_pInImage(nullptr), m_pOutImage(nullptr), m_nFilterWidth(3), m_nMode(eModeXY),
      m_pInDxImage(nullptr), m_pInDyImage(nullptr)
{
}

void ClIpFilterBase::SetDefaults()
{
    m_nFilterWidth = 3;
    m_nMode = eModeXY;
}

void ClIpFilterBase::DescribeInterface(ClParameterInterface& list)
{
    using I = ClParameterInterface;
    list.Add(m_pInImage, "InImage", "In: Original Image", I::eInput);
    list.Add(m_pOutImage, "OutImage", "Out: Output Image", I::eOutput);
    list.Add(m_nFilterWidth, "nFilterWidth", "in: Filter Width", I::eInput, 0.0, 0.0);
    // The record of the mode carries the name and text of the width.
    static const int32_t kModeValues[] = {eModeX, eModeY, eModeXY, eModeDirected,
                                          eModeDirectedOrtho};
    list.AddEnum(m_nMode, "eFilterWidth", "in: Filter Width", I::eInput,
                 "Mode X\0Mode Y\0Mode XY\0MODE_DIRECTED\0MODE_DIRECTED_ORTHO\0", kModeValues);
    list.Add(m_pInDxImage, "InDxImage", "in: Dx Image", I::eInput);
    list.Add(m_pInDyImage, "InDyImage", "in: Dy Image", I::eInput);
}

void ClIpFilterBase::DefineParameters(ClParameterContainer& container)
{
    ClProcessorBase::DefineParameters(container);
    container.AddImage("pInImage")->Bind(m_pInImage, ClParameter::eFlagInput);
    container.AddImage("pOutImage")->Bind(m_pOutImage, ClParameter::eFlagOutput);
    // A 32-bit number, as the member is.
    container.AddInt("nFilterWidth")->Bind(m_nFilterWidth, ClParameter::eFlagInput);
    AddFilterModeParameter(container, m_nMode);
    const uint8_t nOptionalInput = ClParameter::eFlagInput | ClParameter::eFlagOptional;
    container.AddImage("pInDxImage")->Bind(m_pInDxImage, nOptionalInput);
    container.AddImage("pInDyImage")->Bind(m_pInDxImage, nOptionalInput);
}

void ClIpFilterBase::GetStatusText(char* szBuffer, uint32_t nSize)
{
    const char* szSign = "Unknown";
    if (m_pInImage != nullptr && m_pInImage->DataType() != ClImage::eUnknownType &&
        m_pInImage->DataType() != ClImage::eDefaultType)
        szSign = m_pInImage->DataType() < 128 ? "Unsigned" : "Signed";
    // D marks the directed mode, O its orthogonal form.
    char szText[128];
    std::snprintf(szText, sizeof(szText), "W[%ld] M[%s%s%s%s] S[%s]",
                  static_cast<long>(m_nFilterWidth), (m_nMode & eModeX) ? "X" : "",
                  (m_nMode & eModeY) ? "Y" : "", (m_nMode & eModeDirected) ? "D" : "",
                  (m_nMode & eModeDirectedOrtho) ? "O" : "", szSign);
    CopyStatusText(szBuffer, nSize, szText);
}

int32_t ClIpFilterBase::Process()
{
    // With an image missing the width test falls through to the checks below.
    if (m_nFilterWidth <= 1 && m_pInImage != nullptr && m_pOutImage != nullptr)
    {
        m_pOutImage->Assign(*m_pInImage);
        return 0;
    }
    if (m_pInImage != nullptr && m_pInImage->Planes() > 1)
        return FilterPlanes();
    if (m_pInImage == m_pOutImage)
        return ZRC_ERROR_BITMAP_PTR; // the filter line has no in-place form
    return FilterSinglePlane();
}

int32_t ClIpFilterBase::FilterSinglePlane()
{
    if (m_pInImage == nullptr)
        return ZRC_ERROR_PARAM_OUT_OF_RANGE;
    const bool bUnsigned = m_pInImage->DataType() < 128;
    switch (m_nMode)
    {
    case eModeX:
        return bUnsigned ? FilterXUnsigned() : FilterXSigned();
    case eModeY:
        return bUnsigned ? FilterYUnsigned() : FilterYSigned();
    case eModeXY:
        return bUnsigned ? FilterXYUnsigned() : FilterXYSigned();
    case eModeDirected:
        return bUnsigned ? FilterDirectedUnsigned(false) : FilterDirectedSigned(false);
    case eModeDirectedOrtho:
        return bUnsigned ? FilterDirectedUnsigned(true) : FilterDirectedSigned(true);
    default:
        SENTIVO_THROW_CODE(kErrorUnknownFilterMode);
    }
}

int32_t ClIpFilterBase::FilterXYUnsigned()
{
    return FilterXThenY([this] { return FilterXUnsigned(); }, [this] { return FilterYUnsigned(); });
}

int32_t ClIpFilterBase::FilterXYSigned()
{
    return FilterXThenY([this] { return FilterXSigned(); }, [this] { return FilterYSigned(); });
}

int32_t ClIpFilterBase::FilterPlanes()
{
    ClImage* pSource = m_pInImage;
    // A missing output is a bad parameter, as a missing input is.
    if (pSource == nullptr || m_pOutImage == nullptr)
        return ZRC_ERROR_PARAM_OUT_OF_RANGE;

    // More than four planes throw in the split.
    ClImage planes[ClIpSplitPlanes::kMaxPlanes];
    ClIpSplitPlanes split;
    split.EnableLog(IsLogEnabled());
    split.Run(pSource, &planes[0], &planes[1], &planes[2], &planes[3]);
    const uint32_t nPlanes = pSource->Planes();
    const uint32_t nOrigin = pSource->Origin();

    // Planes 0 to 2 are filtered; a fourth plane is joined as it is. A plane
    // that fails stops the run with its code, before anything is joined.
    for (uint32_t p = 0; p < nPlanes && p < 3; ++p)
    {
        m_pInImage = &planes[p];
        int32_t nResult;
        try
        {
            nResult = FilterSinglePlane();
        }
        catch (...)
        {
            m_pInImage = pSource;
            throw;
        }
        m_pInImage = pSource;
        if (nResult != 0)
            return nResult;
        planes[p].Swap(*m_pOutImage);
    }

    ClIpJoinPlanes join;
    join.EnableLog(IsLogEnabled());
    join.m_nPlanes = nPlanes;
    join.Run(m_pOutImage, &planes[0], &planes[1], nPlanes > 2 ? &planes[2] : nullptr,
             nPlanes > 3 ? &planes[3] : nullptr);
    m_pOutImage->SetOrigin(nOrigin);
    return 0;
}
