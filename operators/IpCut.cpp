#include "operators/IpCut.h"

#include <cstring>

#include "parameters/ParameterContainer.h"
#include "parameters/ParameterInterface.h"
#include "processing/SelectDataTypes.h"
#include "sdk/Exception.h"

ClIpCut::ClIpCut()
{
    AddDataTypes(kAllSampleTypes, kSampleTypeCount);
    SetDefaults();
}

void ClIpCut::SetDefaults()
{
    m_nX0 = 0;
    m_nY0 = 0;
    m_nDestWidth = 0;
    m_nDestHeight = 0;
    m_pnX0 = &m_nX0;
    m_pnY0 = &m_nY0;
    m_pnDestWidth = &m_nDestWidth;
    m_pnDestHeight = &m_nDestHeight;
}

void ClIpCut::DescribeInterface(ClParameterInterface& list)
{
    list.Add(m_nDestHeight, "DestHeight", "In: Cut Height", ClParameterInterface::eInput, 0, 0);
    list.Add(m_nDestWidth, "DestWidth", "In: Cut Width", ClParameterInterface::eInput, 0, 0);
    list.Add(m_nX0, "X0", "In: Start X", ClParameterInterface::eInput, 0, 0);
    list.Add(m_nY0, "Y0", "In: Start Y", ClParameterInterface::eInput, 0, 0);
    list.Add(m_pInImage, "InImage", "In: Original Image", ClParameterInterface::eInput);
    list.Add(m_pOutImage, "OutImage", "Out: Clipping", ClParameterInterface::eOutput);
}

void ClIpCut::DefineParameters(ClParameterContainer& container)
{
    ClProcessorBase::DefineParameters(container);
    // Each value parameter follows the pointer that the cut reads, so that a
    // substituted value is the one it shows and sets.
    const struct
    {
        const char* szName;
        int32_t& nField;
        int32_t*& pnValue;
    } kValues[] = {{"nDestHeight", m_nDestHeight, m_pnDestHeight},
                   {"nDestWidth", m_nDestWidth, m_pnDestWidth},
                   {"mX0", m_nX0, m_pnX0},
                   {"mY0", m_nY0, m_pnY0}};
    for (const auto& value : kValues)
    {
        TpParameterNumeric<int>* pValue = container.AddInt(value.szName);
        pValue->Bind(value.nField, ClParameter::eFlagInput);
        pValue->SetValueLink(&value.pnValue);
    }
    container.AddImage("pInImage")->Bind(m_pInImage, ClParameter::eFlagInput);
    container.AddImage("pOutImage")->Bind(m_pOutImage, ClParameter::eFlagOutput);
}

ClProcessorBase* ClIpCut::NewInstance() const
{
    return NewProcessor<ClIpCut>();
}

int32_t ClIpCut::Run(ClImage* pIn, int32_t nX0, int32_t nY0, int32_t nWidth, int32_t nHeight,
                     ClImage* pOut)
{
    m_nX0 = nX0;
    m_nY0 = nY0;
    m_nDestWidth = nWidth;
    m_nDestHeight = nHeight;
    return Run(pIn, pOut);
}

int32_t ClIpCut::Dispatch(const ClImage& in, ClImage& out)
{
    const int64_t x0 = *m_pnX0;
    const int64_t y0 = *m_pnY0;
    const int64_t nWidth = *m_pnDestWidth;
    const int64_t nHeight = *m_pnDestHeight;
    if (x0 < 0)
        SENTIVO_THROW("ClIpCut::Process. m_nX0<0", ZRC_ERROR_PARAM_OUT_OF_RANGE);
    if (y0 < 0)
        SENTIVO_THROW("ClIpCut::Process. m_nY0<0", ZRC_ERROR_PARAM_OUT_OF_RANGE);
    if (x0 >= in.Width())
        SENTIVO_THROW("ClIpCut::Process. m_nX0>=m_pInImage->Width()", ZRC_ERROR_PARAM_OUT_OF_RANGE);
    if (y0 >= in.Height())
        SENTIVO_THROW("ClIpCut::Process. m_nY0>=m_pInImage->Height()",
                      ZRC_ERROR_PARAM_OUT_OF_RANGE);
    if (nWidth < 0)
        SENTIVO_THROW("ClIpCut::Process. m_nDestWidth < 0", ZRC_ERROR_PARAM_OUT_OF_RANGE);
    if (nHeight < 0)
        SENTIVO_THROW("ClIpCut::Process. m_nDestHeight < 0", ZRC_ERROR_PARAM_OUT_OF_RANGE);
    if (x0 + nWidth > in.Width())
        SENTIVO_THROW("ClIpCut::Process. m_nX0+m_nDestWidth > m_pInImage->Width()",
                      ZRC_ERROR_PARAM_OUT_OF_RANGE);
    if (y0 + nHeight > in.Height())
        SENTIVO_THROW("ClIpCut::Process. m_nY0+m_nDestHeight > m_pInImage->Height()",
                      ZRC_ERROR_PARAM_OUT_OF_RANGE);

    // A zero width or height is refused here by Create ("Image area must be
    // positive").
    out.Create(in.DataType(), static_cast<int32_t>(nWidth), static_cast<int32_t>(nHeight),
               in.Planes(), in.XResolution(), in.YResolution());
    out.SetBounds(in.LowerBound(), in.UpperBound());
    out.SetContent(in.Content());
    out.SetOrigin(in.Origin());

    // The samples are only moved, so one byte copy serves every type.
    const int64_t nPixelBytes = static_cast<int64_t>(in.Planes()) * in.SampleSize();
    const size_t nRowBytes = static_cast<size_t>(nWidth * nPixelBytes);
    for (int32_t i = 0; i < nHeight; ++i)
        std::memcpy(out.Row<uint8_t>(i),
                    in.Row<uint8_t>(static_cast<int32_t>(y0) + i) + x0 * nPixelBytes, nRowBytes);
    return 0;
}
