#include "operators/IpScale.h"

#include <algorithm>
#include <cstdio>

#include "parameters/ParameterContainer.h"
#include "parameters/ParameterInterface.h"
#include "processing/Ip1To1Paths.h"
#include "processing/SelectDataTypes.h"

namespace
{

// factor × s clamped to [lower, upper], the smaller bound tested first.
inline double ScaleClamped(double dFactor, double dSample, double dLower, double dUpper)
{
    const double dValue = dFactor * dSample;
    if (dValue < dLower)
        return dLower;
    if (dValue > dUpper)
        return dUpper;
    return dValue;
}

// The per-type loop: a factor of exactly 1 copies, exactly 0 clears, any
// other (negative ones too) runs the formula over planes × width samples.
template <typename TIn, typename TOut> void Scale(const ClImage& in, ClImage& out, double dFactor)
{
    if (dFactor == 1.0)
    {
        out.Assign(in);
        return;
    }
    if (dFactor == 0.0)
    {
        out.Fill(TOut(0));
        return;
    }
    const double dLower = std::min(out.LowerBound(), out.UpperBound());
    const double dUpper = std::max(out.LowerBound(), out.UpperBound());
    Ip1To1Paths::MapSamples<TIn, TOut>(
        in, out, Ip1To1Paths::AllSamples(in, out),
        [=](TIn sample)
        { return SampleFromDouble<TOut>(ScaleClamped(dFactor, sample, dLower, dUpper)); });
}

} // namespace

ClIpScale::ClIpScale()
{
    m_bInPlace = false;
    m_bUseLookup = true;
    AddDataTypes(kAllSampleTypes, kSampleTypeCount);
    SetDefaults();
}

void ClIpScale::DescribeInterface(ClParameterInterface& list)
{
    ClIp1to1Base::DescribeInterface(list);
    list.Add(m_dScaleFactor, "ScaleFactor", "In: Grey Value Multiplier",
             ClParameterInterface::eInput, 0, 255);
}

void ClIpScale::DefineParameters(ClParameterContainer& container)
{
    ClIp1to1Base::DefineParameters(container);
    container.AddDouble("dScaleFactor")->Bind(m_dScaleFactor);
}

ClProcessorBase* ClIpScale::NewInstance() const
{
    return NewProcessor<ClIpScale>();
}

double ClIpScale::PixelOp(const ClImage&, const ClImage& out, double dSample)
{
    return ScaleClamped(m_dScaleFactor, dSample, std::min(out.LowerBound(), out.UpperBound()),
                        std::max(out.LowerBound(), out.UpperBound()));
}

int32_t ClIpScale::Dispatch(const ClImage& in, ClImage& out)
{
    return SelectDataTypes(
        in.DataType(), out.DataType(),
        [&](auto inTag, auto outTag)
        {
            using TIn = typename decltype(inTag)::Type;
            using TOut = typename decltype(outTag)::Type;
            if constexpr (std::is_same_v<TIn, uint8_t>)
                Ip1To1Paths::RunTable<TOut>(
                    in, out, [&](double dSample) { return ClIpScale::PixelOp(in, out, dSample); });
            else
                Scale<TIn, TOut>(in, out, m_dScaleFactor);
            return 0;
        });
}

void ClIpScale::GetStatusText(char* szBuffer, uint32_t nSize)
{
    const int nDecimals = (m_pInImage != nullptr && (m_pInImage->DataType() & 64) != 0) ? 4 : 0;
    char szText[400];
    std::snprintf(szText, sizeof(szText), "ScaleFactor = %.*f", nDecimals, m_dScaleFactor);
    CopyStatusText(szBuffer, nSize, szText);
}
