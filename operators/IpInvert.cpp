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

namespace
{

inline double Mirrored(double s, double a, double b, double c, double d)
{
    return (b - (s - a) - a) * (d - c) / (b - a) + c;
}

} // namespace

int32_t ClIpInvert::Dispatch(const ClImage& in, ClImage& out)
{
    // The bounds are read once: working in place, input and output are one
    // image, and the samples written do not change its bounds.
    const double a = in.LowerBound(), b = in.UpperBound();
    const double c = out.LowerBound(), d = out.UpperBound();
    return DispatchPixels(in, out, [=](double dSample) { return Mirrored(dSample, a, b, c, d); });
}

double ClIpInvert::PixelOp(const ClImage& in, const ClImage& out, double dSample)
{
    return Mirrored(dSample, in.LowerBound(), in.UpperBound(), out.LowerBound(), out.UpperBound());
}
