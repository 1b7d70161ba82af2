#include "operators/IpJoinPlanes.h"

#include <cstring>
#include <limits>

#include <cstdio>

#include "image/SampleTraits.h"
#include "parameters/ParameterContainer.h"
#include "parameters/ParameterInterface.h"
#include "sdk/Exception.h"

namespace
{

// Writes the source's samples into every nPlanes-th sample of the target,
// starting at nPlane, over the target's width and height.
template <typename T> void CopyIntoPlane(const ClImage& source, ClImage& target, uint32_t nPlane)
{
    const uint32_t nPlanes = target.Planes();
    for (int32_t y = 0; y < target.Height(); ++y)
    {
        const T* pSource = source.Row<T>(y);
        T* pTarget = target.Row<T>(y) + nPlane;
        for (int32_t x = 0; x < target.Width(); ++x)
            pTarget[static_cast<int64_t>(x) * nPlanes] = pSource[x];
    }
}

template <typename T> void FillPlane(ClImage& target, uint32_t nPlane, double dColour)
{
    const T value = SampleFromDouble<T>(dColour);
    const uint32_t nPlanes = target.Planes();
    for (int32_t y = 0; y < target.Height(); ++y)
    {
        T* pTarget = target.Row<T>(y) + nPlane;
        for (int32_t x = 0; x < target.Width(); ++x)
            pTarget[static_cast<int64_t>(x) * nPlanes] = value;
    }
}

// The same copy sample by sample for a type that has no template.
void CopyIntoPlaneBytes(const ClImage& source, ClImage& target, uint32_t nPlane)
{
    const uint32_t nSize = target.SampleSize();
    const uint32_t nPlanes = target.Planes();
    for (int32_t y = 0; y < target.Height(); ++y)
    {
        const uint8_t* pSource = source.Row<uint8_t>(y);
        uint8_t* pTarget = target.Row<uint8_t>(y);
        for (int32_t x = 0; x < target.Width(); ++x)
            std::memcpy(pTarget + (static_cast<int64_t>(x) * nPlanes + nPlane) * nSize,
                        pSource + static_cast<int64_t>(x) * nSize, nSize);
    }
}

// The planes are read by the first plane's measures. A plane that cannot be
// read that way without leaving its buffer is refused rather than read.
bool ReadableAs(const ClImage& plane, const ClImage& first)
{
    return plane.Data() != nullptr && plane.SampleSize() == first.SampleSize() &&
           plane.Height() >= first.Height() &&
           static_cast<int64_t>(plane.Width()) * plane.Planes() >= first.Width();
}

} // namespace

ClIpJoinPlanes::ClIpJoinPlanes()
    : m_pInPlane{nullptr, nullptr, nullptr, nullptr}, m_pOutImage(nullptr)
{
    SetDefaults();
}

void ClIpJoinPlanes::SetDefaults()
{
    for (double& dColour : m_dInFillcolors)
        dColour = std::numeric_limits<double>::quiet_NaN();
    m_eOutContent = ClImage::eUnknown;
    m_bFillEmptyPlanes = true;
    m_nPlanes = 0;
}

void ClIpJoinPlanes::DescribeInterface(ClParameterInterface& list)
{
    list.Add(m_pOutImage, "OutImage", "Out: Joined Image", ClParameterInterface::eOutput);
}

void ClIpJoinPlanes::DefineParameters(ClParameterContainer& container)
{
    ClProcessorBase::DefineParameters(container);
    const uint8_t nOptionalInput = ClParameter::eFlagInput | ClParameter::eFlagOptional;
    for (uint32_t p = 0; p < kMaxPlanes; ++p)
    {
        char szName[32];
        std::snprintf(szName, sizeof(szName), "pInPlane[%u]", p);
        container.AddImage(szName)->Bind(m_pInPlane[p], nOptionalInput);
    }
    for (uint32_t p = 0; p < kMaxPlanes; ++p)
    {
        char szName[32];
        std::snprintf(szName, sizeof(szName), "dInFillcolors[%u]", p);
        container.AddDouble(szName)->Bind(m_dInFillcolors[p], nOptionalInput);
    }
    static const char* const kContents[] = {"eUnknown", "eGrayscale", "eRGB",    "eRGBA",
                                            "eHSV",     "eXYZ",       "eCIELab", "eCIELUV"};
    TpParameterEnumPointer<ClImage::EContent>* pContent =
        container.AddEnum<ClImage::EContent>("eOutContent");
    pContent->Bind(m_eOutContent);
    for (int32_t i = ClImage::eUnknown; i <= ClImage::eCIELUV; ++i)
        pContent->AddEntry(static_cast<ClImage::EContent>(i), kContents[i]);
    container.AddBool("bFillEmptyPlanes")->Bind(m_bFillEmptyPlanes);
    container.AddImage("pOutImage")->Bind(m_pOutImage, ClParameter::eFlagOutput);
}

ClProcessorBase* ClIpJoinPlanes::NewInstance() const
{
    return NewProcessor<ClIpJoinPlanes>();
}

int32_t ClIpJoinPlanes::Run(ClImage* pOut, ClImage* pPlane0, ClImage* pPlane1, ClImage* pPlane2,
                            ClImage* pPlane3)
{
    m_pOutImage = pOut;
    m_pInPlane[0] = pPlane0;
    m_pInPlane[1] = pPlane1;
    m_pInPlane[2] = pPlane2;
    m_pInPlane[3] = pPlane3;
    return Run();
}

uint32_t ClIpJoinPlanes::PlanesOfContent() const
{
    // eXYZ and eCIELab are not joined here; that is how the operator stands.
    switch (m_eOutContent)
    {
    case ClImage::eUnknown:
        return m_nPlanes;
    case ClImage::eGrayscale:
        return 1;
    case ClImage::eRGB:
    case ClImage::eHSV:
    case ClImage::eCIELUV:
        return 3;
    case ClImage::eRGBA:
        return 4;
    default:
        return 0;
    }
}

int32_t ClIpJoinPlanes::Process()
{
    const uint32_t n = PlanesOfContent();
    if (n == 0 && m_eOutContent != ClImage::eUnknown)
        return ZRC_ERROR_PARAM_OUT_OF_RANGE;
    // Only four plane images exist: a larger count cannot be joined.
    if (n > kMaxPlanes)
        return ZRC_ERROR_PARAM_OUT_OF_RANGE;

    // Header copies share the buffers, so the output may be one of the planes:
    // Create then gives it a new buffer and the copies stay readable.
    ClImage planes[kMaxPlanes];
    bool bPresent[kMaxPlanes] = {false, false, false, false};
    int32_t nFirst = -1;
    for (uint32_t i = 0; i < n; ++i)
    {
        if (m_pInPlane[i] == nullptr)
            continue;
        planes[i] = *m_pInPlane[i];
        bPresent[i] = true;
        if (nFirst < 0)
            nFirst = static_cast<int32_t>(i);
    }
    if (nFirst < 0)
        return 0;
    // Nowhere to put the joined image: the missing-image code.
    if (m_pOutImage == nullptr)
        return ZRC_ERROR_BITMAP_PTR;
    const ClImage& first = planes[nFirst];
    for (uint32_t i = 0; i < n; ++i)
    {
        if (bPresent[i] && !ReadableAs(planes[i], first))
            return ZRC_ERROR_PARAM_OUT_OF_RANGE;
    }

    ClImage& out = *m_pOutImage;
    out.Create(first.DataType(), first.Width(), first.Height(), n, first.XResolution(),
               first.YResolution());
    if (m_eOutContent != ClImage::eUnknown)
        out.SetContent(m_eOutContent);

    for (uint32_t i = 0; i < n; ++i)
    {
        if (bPresent[i])
        {
            const int32_t nResult =
                SelectDataType(out.DataType(),
                               [&](auto tag)
                               {
                                   CopyIntoPlane<typename decltype(tag)::Type>(planes[i], out, i);
                                   return 0;
                               });
            if (nResult != 0)
                CopyIntoPlaneBytes(planes[i], out, i);
        }
        else if (m_bFillEmptyPlanes)
        {
            (void)SelectDataType(out.DataType(),
                                 [&](auto tag)
                                 {
                                     FillPlane<typename decltype(tag)::Type>(out, i,
                                                                             m_dInFillcolors[i]);
                                     return 0;
                                 });
        }
    }
    return 0;
}
