#pragma once
// ClIpFilterMin: the minimum of a sliding window, along rows (Mode X), down
// columns (Mode Y) or both, one pass after the other (Mode XY). Near the
// border the window is cut off; nothing is padded.
#include "processing/IpFilterBase.h"

class ClIpFilterMin : public ClIpFilterBase
{
public:
    using ClProcessorBase::Run;
    int32_t Run(ClImage* pIn, ClImage* pOut, int32_t nWidth, int32_t nMode);

    ClProcessorBase* NewInstance() const override;
    const char* GetName() const override { return "ClIpFilterMin"; }
    void DescribeInterface(ClParameterInterface& list) override;
    // Selects the member of the exact data type, then the mode; an unknown
    // type gives -101 and the directed modes -33.
    int32_t FilterSinglePlane() override;

private:
    template <typename T> int32_t FilterType();
};
