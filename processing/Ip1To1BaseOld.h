#pragma once
// ClIp1to1Base: the older one-to-one base, directly on the processor life
// cycle, with an output type chosen by the caller. It reports missing images
// by code (-10) instead of throwing.
#include "image/FpImage.h"
#include "processing/Ip1To1Paths.h"
#include "processing/ProcessorBase.h"

class ClIp1to1Base : public ClProcessorBase
{
public:
    ClIp1to1Base() = default;

    void DescribeInterface(ClParameterInterface& list) override;
    void SetDefaults() override { m_eOutImageType = ClImage::eDefaultType; }
    void DefineParameters(ClParameterContainer& container) override;
    int32_t Process() override;

    // Selects on the input type, then on the output type: the 8-bit table path
    // when the lookup flag is set, the direct path otherwise; -101 for an
    // unknown type at either level.
    virtual int32_t Dispatch(const ClImage& in, ClImage& out);
    // The function of one sample.
    virtual double PixelOp(const ClImage& in, const ClImage& out, double dSample);

    ClImage* m_pInImage = nullptr;
    ClImage* m_pOutImage = nullptr;
    // Sample type of the output; eDefaultType keeps the input's type.
    ClImage::EDataType m_eOutImageType = ClImage::eDefaultType;

protected:
    // The paths of Dispatch with op as the function of one sample, bound
    // when compiled; see NewIpBase::ClIp1to1Base::DispatchPixels.
    template <typename Op> int32_t DispatchPixels(const ClImage& in, ClImage& out, Op&& op)
    {
        return Ip1To1Paths::Dispatch(in, out, m_bUseLookup, op);
    }

    // The design's in-place flag. Its form of the run needs a data type above
    // 254, which no image has, so Process always writes into a fresh target.
    bool m_bInPlace = false;
    bool m_bUseLookup = true;
};
