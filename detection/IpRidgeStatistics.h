#pragma once
// ClIpRidgeStatistics: relates the ridge pixels, those clearly darker than
// their surroundings, to their neighbourhood means at the widths 11, 3 and 5.
// The mean ratios are three features of the fake half.
#include "processing/IpStageBase.h"

class ClIpRidgeStatistics : public NewIpBase::ClIpStageBase
{
public:
    // The box widths, in the order of the result arrays: 11 first.
    static constexpr int32_t kWidths[3] = {11, 3, 5};

    ClIpRidgeStatistics();

    void SetDefaults() override;
    ClProcessorBase* NewInstance() const override;
    const char* GetName() const override { return "ClIpRidgeStatistics"; }
    int32_t Process() override;

    ClImage* pInImage = nullptr;
    // Per width 11, 3, 5: the variance and the mean of the box means over
    // the ridge pixels, each relative to that of the pixels themselves.
    // Left as they were when fewer than two ridge pixels are found.
    double m_adVarianceRatios[3] = {};
    double m_adMeanRatios[3] = {};

private:
    // Box means at the widths 11, 3, 5: the images A, B and C.
    ClImage m_Boxes[3];
};
