#pragma once
// ClIpFingerMinMaxMean: how much the local minimum, the local maximum and the
// local mean of the grey values vary over the finger, at a scale of 21
// pixels. Three features of the fake half: MinDeviation, MaxDeviation,
// MidDeviation.
#include "processing/IpStageBase.h"

class ClIpFingerMinMaxMean : public NewIpBase::ClIpStageBase
{
public:
    ClIpFingerMinMaxMean();

    void SetDefaults() override;
    ClProcessorBase* NewInstance() const override;
    const char* GetName() const override { return "ClIpFingerMinMaxMean"; }
    int32_t Process() override;

    ClImage* pInImage = nullptr;
    double MinDeviation = 0.0;
    double MaxDeviation = 0.0;
    double MidDeviation = 0.0;

private:
    // The spread of the filtered image, white left out of the sums.
    double Spread() const;

    // The one scratch image that all three filters write into.
    ClImage m_Filtered;
};
