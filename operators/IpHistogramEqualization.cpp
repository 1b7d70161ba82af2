#include "operators/IpHistogramEqualization.h"

#include <new>

#include "parameters/ParameterContainer.h"
#include "parameters/ParameterInterface.h"
#include "sdk/Exception.h"

ClIpHistogramEqualization::ClIpHistogramEqualization()
{
    m_bInPlace = false;
    m_bUseLookup = true;
    AddDataType(ClImage::eUInt8);
}

void ClIpHistogramEqualization::DescribeInterface(ClParameterInterface& list)
{
    list.Add(m_pInImage, "InImage", "In: Original Image", ClParameterInterface::eInput);
    list.Add(m_pOutImage, "OutImage", "Out: Output Image with euqalized histogram",
             ClParameterInterface::eOutput);
}

ClProcessorBase* ClIpHistogramEqualization::NewInstance() const
{
    return NewProcessor<ClIpHistogramEqualization>();
}

int32_t ClIpHistogramEqualization::Dispatch(const ClImage& in, ClImage& out)
{
    if (!m_pHistogram)
    {
        m_pHistogram.reset(new (std::nothrow) ClHistogram());
        if (!m_pHistogram)
            SENTIVO_THROW_BAD_ALLOC();
    }
    m_pHistogram->Create(in);
    return DispatchPixels(in, out,
                          [&](double dSample)
                          { return ClIpHistogramEqualization::PixelOp(in, out, dSample); });
}

double ClIpHistogramEqualization::PixelOp(const ClImage& in, const ClImage& out, double dSample)
{
    // Without a counted input (Dispatch not run) there is nothing to share.
    if (!m_pHistogram)
        return 0.0;
    // The count of bins 0 up to and including s; none for a negative sample.
    uint64_t nCount = 0;
    for (int32_t i = 0; i < 256 && i <= dSample; ++i)
        nCount += m_pHistogram->m_nBins[i];
    const double dSamples = static_cast<double>(in.Width()) * in.Height();
    return (out.UpperBound() - out.LowerBound()) * static_cast<double>(nCount) / dSamples;
}
