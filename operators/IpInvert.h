#pragma once
// ClIpInvert: mirrors the input's value range and maps it onto the output's.
#include "processing/Ip1To1Base.h"

class ClIpInvert : public NewIpBase::ClIp1to1Base
{
public:
    ClIpInvert();

    ClProcessorBase* NewInstance() const override;
    const char* GetName() const override { return "ClIpInvert"; }
    // The table path for 8-bit samples, the direct path for the others, with
    // PixelOp bound when compiled.
    int32_t Dispatch(const ClImage& in, ClImage& out) override;
    // (b − (s − a) − a) × (d − c) ÷ (b − a) + c, with a, b the input's bounds
    // and c, d the output's.
    double PixelOp(const ClImage& in, const ClImage& out, double dSample) final;
};
