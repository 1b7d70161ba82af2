#pragma once
// Fourier::ClIpFourier2: the two-dimensional discrete Fourier transform of a
// real image, in both directions. An image marked as a spectrum is
// transformed back; any other one-plane image forward, into the half
// spectrum that a real image needs (width w / 2 + 1, two planes: real and
// imaginary part).
#include "processing/Ip1To1Base.h"

namespace Fourier
{

class ClIpFourier2 : public NewIpBase::ClIp1to1Base
{
public:
    ClIpFourier2();
    ~ClIpFourier2() override = default;

    void SetDefaults() override { m_bScaleNorm = true; }
    void DefineParameters(ClParameterContainer& container) override;
    ClProcessorBase* NewInstance() const override;
    const char* GetName() const override { return "ClIpFourier2"; }
    // True when the input is set, the output is not, the type check passes and
    // the input is a spectrum or has one plane.
    bool CheckInput() override;
    // The output is made by the transform, once a plan exists.
    void PrepareOutput(ClImage&) override {}
    int32_t Dispatch(const ClImage& in, ClImage& out) override;

    // Whether the inverse transform divides by the number of samples, so that
    // forward and inverse give the source back. The forward transform never
    // scales.
    bool m_bScaleNorm;

private:
    int32_t Forward(const ClImage& in, ClImage& out);
    int32_t Inverse(const ClImage& in, ClImage& out);
};

} // namespace Fourier
