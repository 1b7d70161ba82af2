#pragma once
// ClIpScale: multiplies every sample by a factor and clamps the product to
// the output's value range.
#include "processing/Ip1To1Base.h"

class ClIpScale : public NewIpBase::ClIp1to1Base
{
public:
    ClIpScale();

    void DescribeInterface(ClParameterInterface& list) override;
    void SetDefaults() override { m_dScaleFactor = 1.0; }
    void DefineParameters(ClParameterContainer& container) override;
    ClProcessorBase* NewInstance() const override;
    const char* GetName() const override { return "ClIpScale"; }
    void GetStatusText(char* szBuffer, uint32_t nSize) override;
    int32_t Dispatch(const ClImage& in, ClImage& out) override;
    double PixelOp(const ClImage& in, const ClImage& out, double dSample) final;

    double m_dScaleFactor;
};
