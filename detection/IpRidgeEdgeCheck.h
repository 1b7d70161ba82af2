#pragma once
// LiveDetection::ClIpRidgeEdgeCheck: how sharp the edges of the dark ridges
// are. Four features: the mean strength of the dark-side edge points that
// stand above their neighbourhood, its spread, and the shares of points
// beyond half a spread and beyond one spread.
#include "processing/IpStageBase.h"

namespace LiveDetection
{

class ClIpRidgeEdgeCheck : public NewIpBase::ClIpStageBase
{
public:
    static constexpr int kFeatures = 4;

    ClIpRidgeEdgeCheck();

    void SetDefaults() override;
    void DefineParameters(ClParameterContainer& container) override;
    ClProcessorBase* NewInstance() const override;
    const char* GetName() const override { return "ClIpRidgeEdgeCheck"; }
    int32_t Process() override;

    ClImage* pInImage = nullptr;
    // The caller's four doubles: mean, deviation, the two shares.
    double* padOutFeatures = nullptr;

private:
    // Scratch images of a run, kept with the object so that a second run
    // reuses their buffers.
    ClImage m_GradientImage;   // edge strength, then the dark-side edges
    ClImage m_BlurredGradient; // its 3 by 3 mean
};

} // namespace LiveDetection
