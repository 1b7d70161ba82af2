#pragma once
// ClIpCut: copies a rectangle out of an image, unchanged, into the output.
#include "processing/Ip1To1Base.h"

class ClIpCut : public NewIpBase::ClIp1to1Base
{
public:
    ClIpCut();

    void DescribeInterface(ClParameterInterface& list) override;
    void SetDefaults() override;
    void DefineParameters(ClParameterContainer& container) override;
    ClProcessorBase* NewInstance() const override;
    const char* GetName() const override { return "ClIpCut"; }
    // The output is made by Dispatch once the rectangle is known to fit.
    void PrepareOutput(ClImage&) override {}
    int32_t Dispatch(const ClImage& in, ClImage& out) override;

    // Stores the rectangle in the fields and runs.
    int32_t Run(ClImage* pIn, int32_t nX0, int32_t nY0, int32_t nWidth, int32_t nHeight,
                ClImage* pOut);
    using NewIpBase::ClIp1to1Base::Run;

    // The rectangle (the platform's long is 32 bits). The values read are
    // those the four pointers aim at, so that a caller can substitute a value
    // held elsewhere; by default each aims at its own field.
    int32_t m_nX0;
    int32_t m_nY0;
    int32_t m_nDestWidth;
    int32_t m_nDestHeight;
    int32_t* m_pnX0;
    int32_t* m_pnY0;
    int32_t* m_pnDestWidth;
    int32_t* m_pnDestHeight;
};
