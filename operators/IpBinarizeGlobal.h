#pragma once
// ClIpBinarizeGlobal: every sample at or above one threshold becomes white,
// every other sample black. Threshold and colours left as NaN are derived
// from the output's value range.
#include "processing/Ip1To1Base.h"

class ClIpBinarizeGlobal : public NewIpBase::ClIp1to1Base
{
public:
    ClIpBinarizeGlobal();

    void DescribeInterface(ClParameterInterface& list) override;
    void SetDefaults() override;
    void DefineParameters(ClParameterContainer& container) override;
    ClProcessorBase* NewInstance() const override;
    const char* GetName() const override { return "ClIpBinarizeGlobal"; }
    bool CheckInput() override;
    void GetStatusText(char* szBuffer, uint32_t nSize) override;
    int32_t Dispatch(const ClImage& in, ClImage& out) override;
    double PixelOp(const ClImage& in, const ClImage& out, double dSample) final;
    // False when the threshold is a number outside both of the input's bounds.
    virtual bool CheckThreshold();
    // False when black or white is a number outside both of the output's
    // bounds.
    virtual bool CheckColours();

    // Sets only the threshold; black and white stay as they are.
    int32_t Run(ClImage* pIn, ClImage* pOut, double dThreshold);
    using NewIpBase::ClIp1to1Base::Run;

    double m_dThreshold;
    double m_dBlack;
    double m_dWhite;

protected:
    // The values of the current run, NaN parameters replaced.
    double m_dEffThreshold;
    double m_dEffBlack;
    double m_dEffWhite;
};
