#pragma once
// ClIpGelatineCheck: compares falling with rising grey steps down the image
// columns, under the finger mask. A symmetric relief gives a ratio near 1;
// the ratio is a feature of the fake half.
#include "processing/IpStageBase.h"

class ClIpGelatineCheck : public NewIpBase::ClIpStageBase
{
public:
    ClIpGelatineCheck();

    void SetDefaults() override;
    void DefineParameters(ClParameterContainer& container) override;
    ClProcessorBase* NewInstance() const override;
    const char* GetName() const override { return "ClIpGelatineCheck"; }
    int32_t Process() override;

    ClImage* pInImage = nullptr;
    ClImage* pInMask = nullptr; // non-zero on the pixels to be used
    // Two doubles of the caller: the mean squared step over the pairs whose
    // lower row is not brighter (0), and over those where it is (1).
    double* m_pdOutSteps = nullptr;
    double dOutResult = 0.0; // entry 0 over entry 1

private:
    // The image with 255 on every pixel that is not used.
    ClImage m_Used;
};
