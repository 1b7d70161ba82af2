#pragma once
// ClIpHistogramEqualization: maps each 8-bit sample to the share of samples
// at or below it, spread over the output's range.
#include <memory>

#include "image/Histogram.h"
#include "processing/Ip1To1Base.h"

class ClIpHistogramEqualization : public NewIpBase::ClIp1to1Base
{
public:
    ClIpHistogramEqualization();

    void DescribeInterface(ClParameterInterface& list) override;
    ClProcessorBase* NewInstance() const override;
    const char* GetName() const override { return "ClIpHistogramEqualization"; }
    // Counts the whole input, then runs the table path.
    int32_t Dispatch(const ClImage& in, ClImage& out) override;
    // (output upper − output lower) × count of samples up to s ÷ samples.
    // The output's lower bound is not added back.
    double PixelOp(const ClImage& in, const ClImage& out, double dSample) final;

private:
    // Made at the first run and kept for the next.
    std::unique_ptr<ClHistogram> m_pHistogram;
};
