#include "operators/IpInvert.h"

#include "processing/SelectDataTypes.h"

ClIpInvert::ClIpInvert()
{
    m_bInPlace = true;
    m_bUseLookup = true;
    AddDataTypes(kAllSampleTypes, kSampleTypeCount);
}

ClProcessorBase* ClIpInvert::NewInstance() const
{
    return NewProcessor<ClIpInvert>();
}

double ClIpInvert::PixelOp(const ClImage& in, const ClImage& out, double dSample)
{
    const double a = in.LowerBound();
    const double b = in.UpperBound();
    const double c = out.LowerBound();
    const double d = out.UpperBound();
    return (b - (dSample - a) - a) * (d - c) / (b - a) + c;
}
