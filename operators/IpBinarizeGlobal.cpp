#include "operators/IpBinarizeGlobal.h"

#include <cmath>
#include <cstdio>
#include <limits>
#include <vector>

#include "parameters/ParameterContainer.h"
#include "parameters/ParameterInterface.h"
#include "processing/Ip1To1Paths.h"
#include "processing/SelectDataTypes.h"
#include "sdk/Exception.h"

namespace
{

const double kNaN = std::numeric_limits<double>::quiet_NaN();

// A value is out of range when it is a number below both bounds or above
// both; NaN passes.
bool OutsideBoth(double dValue, double dLower, double dUpper)
{
    return (dValue < dLower && dValue < dUpper) || (dValue > dLower && dValue > dUpper);
}

// The per-type loop over planes × width samples: white when the sample
// reaches the threshold, black otherwise.
template <typename TIn, typename TOut>
void Binarize(const ClImage& in, ClImage& out, double dThreshold, double dBlack, double dWhite)
{
    const TOut black = SampleFromDouble<TOut>(dBlack), white = SampleFromDouble<TOut>(dWhite);
    const int64_t nSamples = Ip1To1Paths::AllSamples(in, out);
    if constexpr (std::is_floating_point_v<TIn>)
    {
        // Compared in the sample type; a NaN threshold makes every sample black.
        const TIn threshold = SampleFromDouble<TIn>(dThreshold);
        Ip1To1Paths::MapSamples<TIn, TOut>(
            in, out, nSamples, [=](TIn sample) { return sample >= threshold ? white : black; });
    }
    else
    {
        // The threshold rounded up, clamped to the type's range. A NaN
        // threshold lies above every sample, so that every sample is black as
        // on the 8-bit table.
        const double dMin = static_cast<double>(std::numeric_limits<TIn>::min());
        const double dMax = static_cast<double>(std::numeric_limits<TIn>::max());
        const double dCeil = std::ceil(dThreshold);
        const int64_t nThreshold = std::isnan(dCeil) ? static_cast<int64_t>(dMax) + 1
                                   : dCeil < dMin    ? static_cast<int64_t>(dMin)
                                   : dCeil > dMax    ? static_cast<int64_t>(dMax)
                                                     : static_cast<int64_t>(dCeil);
        Ip1To1Paths::MapSamples<TIn, TOut>(
            in, out, nSamples,
            [=](TIn sample) { return static_cast<int64_t>(sample) >= nThreshold ? white : black; });
    }
}

} // namespace

ClIpBinarizeGlobal::ClIpBinarizeGlobal()
    : m_dEffThreshold(kNaN), m_dEffBlack(kNaN), m_dEffWhite(kNaN)
{
    m_bInPlace = true;
    m_bUseLookup = true;
    AddDataTypes(kAllSampleTypes, kSampleTypeCount);
    SetDefaults();
}

void ClIpBinarizeGlobal::SetDefaults()
{
    m_dThreshold = kNaN;
    m_dBlack = kNaN;
    m_dWhite = kNaN;
}

void ClIpBinarizeGlobal::DescribeInterface(ClParameterInterface& list)
{
    ClIp1to1Base::DescribeInterface(list);
    list.Add(m_dBlack, "Black", "In: Pixelvalue of Black", ClParameterInterface::eInput, 0, 0);
    list.Add(m_dWhite, "White", "In: Pixelvalue of White", ClParameterInterface::eInput, 0, 0);
    list.Add(m_dThreshold, "Threshold", "In: Binarization Threshold", ClParameterInterface::eInput,
             0, 0);
}

void ClIpBinarizeGlobal::DefineParameters(ClParameterContainer& container)
{
    ClIp1to1Base::DefineParameters(container);
    const uint8_t nFlags = ClParameter::eFlagInput | ClParameter::eFlagOutput;
    container.AddDouble("Black")->Bind(m_dBlack, nFlags);
    container.AddDouble("White")->Bind(m_dWhite, nFlags);
    container.AddDouble("Threshold")->Bind(m_dThreshold, nFlags);
}

ClProcessorBase* ClIpBinarizeGlobal::NewInstance() const
{
    return NewProcessor<ClIpBinarizeGlobal>();
}

int32_t ClIpBinarizeGlobal::Run(ClImage* pIn, ClImage* pOut, double dThreshold)
{
    m_dThreshold = dThreshold;
    return Run(pIn, pOut);
}

bool ClIpBinarizeGlobal::CheckThreshold()
{
    if (m_pInImage == nullptr)
        return false;
    return !OutsideBoth(m_dThreshold, m_pInImage->LowerBound(), m_pInImage->UpperBound());
}

bool ClIpBinarizeGlobal::CheckColours()
{
    if (m_pOutImage == nullptr)
        return false;
    const double dLower = m_pOutImage->LowerBound();
    const double dUpper = m_pOutImage->UpperBound();
    return !OutsideBoth(m_dBlack, dLower, dUpper) && !OutsideBoth(m_dWhite, dLower, dUpper);
}

bool ClIpBinarizeGlobal::CheckInput()
{
    if (m_pInImage != nullptr && CheckThreshold() && CheckColours())
        return true;
    return ClIp1to1Base::CheckInput();
}

double ClIpBinarizeGlobal::PixelOp(const ClImage&, const ClImage&, double dSample)
{
    // A NaN threshold compares as above the sample: black.
    return dSample >= m_dEffThreshold ? m_dEffWhite : m_dEffBlack;
}

int32_t ClIpBinarizeGlobal::Dispatch(const ClImage& in, ClImage& out)
{
    m_dEffBlack = std::isnan(m_dBlack) ? out.LowerBound() : m_dBlack;
    m_dEffWhite = std::isnan(m_dWhite) ? out.UpperBound() : m_dWhite;
    m_dEffThreshold =
        std::isnan(m_dThreshold) ? (out.UpperBound() + out.LowerBound()) / 2 : m_dThreshold;
    if (!CheckThreshold() || !CheckColours())
        return ZRC_ERROR_PARAM_OUT_OF_RANGE;

    return SelectDataTypes(
        in.DataType(), out.DataType(),
        [&](auto inTag, auto outTag)
        {
            using TIn = typename decltype(inTag)::Type;
            using TOut = typename decltype(outTag)::Type;
            if constexpr (std::is_same_v<TIn, uint8_t>)
            {
                Ip1To1Paths::RunTable<TOut>(
                    in, out,
                    [&](double dSample) { return ClIpBinarizeGlobal::PixelOp(in, out, dSample); });
            }
            else
            {
                Binarize<TIn, TOut>(in, out, m_dEffThreshold, m_dEffBlack, m_dEffWhite);
            }
            return 0;
        });
}

void ClIpBinarizeGlobal::GetStatusText(char* szBuffer, uint32_t nSize)
{
    const int nDecimals = (m_pInImage != nullptr && (m_pInImage->DataType() & 64) != 0) ? 4 : 0;
    const char* szFormat = "Thr%.*f [%.*f;%.*f]";
    const int nLength = std::snprintf(nullptr, 0, szFormat, nDecimals, m_dEffThreshold, nDecimals,
                                      m_dEffBlack, nDecimals, m_dEffWhite);
    std::vector<char> text(static_cast<size_t>(nLength) + 1);
    std::snprintf(text.data(), text.size(), szFormat, nDecimals, m_dEffThreshold, nDecimals,
                  m_dEffBlack, nDecimals, m_dEffWhite);
    CopyStatusText(szBuffer, nSize, text.data());
}
