#pragma once
// NewIpBase::ClIp1to1Base: one input image, one output image, sample by
// sample. The base checks the images, sizes the output like the input, picks
// the loop for the pixel types and keeps the caller's output object when the
// operator cannot work in place. A concrete operator supplies PixelOp, or its
// own Dispatch where speed or shape matter.
#include "image/FpImage.h"
#include "processing/Ip1To1Paths.h"
#include "processing/IpProcessorBase.h"

namespace NewIpBase
{

class ClIp1to1Base : public ClIpProcessorBase
{
public:
    ClIp1to1Base() = default;

    void DescribeInterface(ClParameterInterface& list) override;
    void DefineParameters(ClParameterContainer& container) override;
    void CheckInputImages() override;
    int32_t Process() override;

    // Runs on m_pInImage into m_pOutImage.
    int32_t Run(ClImage* pIn, ClImage* pOut);
    // Runs with one image in both roles.
    int32_t Run(ClImage* pInOut) { return Run(pInOut, pInOut); }
    using ClIpProcessorBase::Run;

    // Selects the loop on the input's data type: the 8-bit table path when the
    // lookup flag is set, the direct path otherwise; -101 for an unknown type.
    virtual int32_t Dispatch(const ClImage& in, ClImage& out);
    // Shapes the output; the base makes it like the input.
    virtual void PrepareOutput(ClImage& out) { out.CreateLike(*m_pInImage); }
    // The function of one sample.
    virtual double PixelOp(const ClImage& in, const ClImage& out, double dSample);

    ClImage* m_pInImage = nullptr;
    ClImage* m_pOutImage = nullptr;

protected:
    // The paths of Dispatch with op as the function of one sample. An
    // operator passes its own PixelOp, named with its class, so that the
    // call is bound when compiled and inlined rather than made virtually per
    // sample; the base's own Dispatch serves a class that supplies PixelOp
    // alone.
    template <typename Op> int32_t DispatchPixels(const ClImage& in, ClImage& out, Op&& op)
    {
        return Ip1To1Paths::Dispatch(in, out, m_bUseLookup, op);
    }

    // Writes straight into the output, even when it is the input.
    bool m_bInPlace = false;
    // Whether 8-bit inputs go through a 256-entry table.
    bool m_bUseLookup = true;
};

} // namespace NewIpBase
