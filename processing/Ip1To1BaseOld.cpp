#include "processing/Ip1To1BaseOld.h"

#include "parameters/ParameterContainer.h"
#include "parameters/ParameterInterface.h"
#include "processing/OutImageTypeParameter.h"
#include "processing/SelectDataTypes.h"
#include "sdk/Exception.h"

void ClIp1to1Base::DescribeInterface(ClParameterInterface& list)
{
    list.Add(m_pInImage, "InImage", "In: Original Image", ClParameterInterface::eInput);
    list.Add(m_pOutImage, "OutImage", "Out: Output Image", ClParameterInterface::eOutput);
    DescribeOutImageType(list, m_eOutImageType);
}

void ClIp1to1Base::DefineParameters(ClParameterContainer& container)
{
    ClProcessorBase::DefineParameters(container);
    container.AddImage("pInImage")->Bind(m_pInImage, ClParameter::eFlagInput);
    container.AddImage("pOutImage")->Bind(m_pOutImage, ClParameter::eFlagOutput);
    DefineOutImageType(container, m_eOutImageType);
}

int32_t ClIp1to1Base::Process()
{
    if (m_pInImage == nullptr || m_pInImage->Data() == nullptr || m_pOutImage == nullptr)
        return ZRC_ERROR_BITMAP_PTR;
    ClImage& in = *m_pInImage;
    ClImage& out = *m_pOutImage;

    const ClImage::EDataType eType =
        m_eOutImageType < ClImage::eDefaultType ? m_eOutImageType : in.DataType();
    // An output type that is no sample format is refused before the output is
    // touched, with the code of an unknown type.
    if (!IsSampleType(eType))
        return ZRC_ERROR_INTERNAL;

    ClImage temporary;
    ClImage& target = (&out == &in) ? temporary : out;
    target.CreateAs(in, eType);
    const int32_t nResult = Dispatch(in, target);
    out.Swap(target);
    return nResult;
}

int32_t ClIp1to1Base::Dispatch(const ClImage& in, ClImage& out)
{
    return DispatchPixels(in, out, [&](double dSample) { return PixelOp(in, out, dSample); });
}

double ClIp1to1Base::PixelOp(const ClImage&, const ClImage&, double)
{
    return 0.0;
}
