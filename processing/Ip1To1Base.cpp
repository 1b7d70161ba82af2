#include "processing/Ip1To1Base.h"

#include "parameters/ParameterContainer.h"
#include "parameters/ParameterInterface.h"
#include "sdk/Exception.h"

namespace NewIpBase
{

void ClIp1to1Base::DescribeInterface(ClParameterInterface& list)
{
    list.Add(m_pInImage, "InImage", "In: Original Image", ClParameterInterface::eInput);
    list.Add(m_pOutImage, "OutImage", "Out: Output Image", ClParameterInterface::eOutput);
}

void ClIp1to1Base::DefineParameters(ClParameterContainer& container)
{
    ClIpProcessorBase::DefineParameters(container);
    container.AddImage("pInImage")->Bind(m_pInImage, ClParameter::eFlagInput);
    container.AddImage("pOutImage")->Bind(m_pOutImage, ClParameter::eFlagOutput);
}

void ClIp1to1Base::CheckInputImages()
{
    if (m_pInImage == nullptr)
        SENTIVO_THROW("Input image not assigned", ZRC_ERROR_BAD_POINTER);
    CheckDataType(*m_pInImage);
}

int32_t ClIp1to1Base::Run(ClImage* pIn, ClImage* pOut)
{
    m_pInImage = pIn;
    m_pOutImage = pOut;
    return Run();
}

int32_t ClIp1to1Base::Process()
{
    if (m_pInImage == nullptr)
        SENTIVO_THROW("m_pInImage is not set", ZRC_ERROR_BAD_POINTER);
    if (m_pOutImage == nullptr)
        SENTIVO_THROW("m_pOutImage is not set", ZRC_ERROR_BAD_POINTER);
    if (m_pInImage->Data() == nullptr)
        SENTIVO_THROW("m_pInImage->Data() is not set", ZRC_ERROR_BAD_POINTER);

    ClImage& in = *m_pInImage;
    ClImage& out = *m_pOutImage;
    if (m_bInPlace)
    {
        if (&out != &in)
            PrepareOutput(out);
        return Dispatch(in, out);
    }

    // An operator that cannot work in place writes into a temporary when
    // input and output are one object; the swap keeps the caller's object.
    ClImage temporary;
    ClImage& target = (&out == &in) ? temporary : out;
    PrepareOutput(target);
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

} // namespace NewIpBase
