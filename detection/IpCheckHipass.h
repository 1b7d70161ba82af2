#pragma once
// ClIpCheckHipass: compares a locally stretched image with a slightly
// smoothed copy of itself where the local contrast is high, a measure of the
// finest detail of the print. Two features of the fake half.
#include "processing/IpStageBase.h"

class ClIpCheckHipass : public NewIpBase::ClIpStageBase
{
public:
    ClIpCheckHipass();

    void SetDefaults() override;
    ClProcessorBase* NewInstance() const override;
    const char* GetName() const override { return "ClIpCheckHipass"; }
    int32_t Process() override;

    ClImage* pInImage = nullptr;
    double HipassDeviationRatio = 0.0;
    double HipassMeanRatio = 0.0;

private:
    void StretchAndMarkContrast();
    void CollectDetail();

    // Scratch images of a run, kept with the object.
    ClImage m_Low;       // local minimum
    ClImage m_High;      // local maximum
    ClImage m_Stretched; // each pixel stretched between its local extremes
    ClImage m_Contrast;  // 255 where the local contrast is high
    ClImage m_Smoothed;  // box mean of the stretched image
};
