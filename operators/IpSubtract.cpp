#include "operators/IpSubtract.h"

#include <algorithm>
#include <type_traits>

#include "parameters/ParameterContainer.h"
#include "processing/Ip2To1Paths.h"
#include "processing/SelectDataTypes.h"

namespace
{

// The type the difference is computed in: 32-bit signed when both inputs are
// integers of 8 or 16 bits, otherwise the widest type of the triple as the
// usual arithmetic conversions give it (so 32-bit unsigned differences wrap).
template <typename T1, typename T2, typename TO>
using DifferenceType = std::conditional_t<std::is_integral_v<T1> && std::is_integral_v<T2> &&
                                              sizeof(T1) <= 2 && sizeof(T2) <= 2,
                                          int32_t, std::common_type_t<T1, T2, TO>>;

template <typename D, typename T1, typename T2> inline D Difference(T1 a, T2 b)
{
    if constexpr (std::is_same_v<D, int32_t>)
    {
        // Wraps as the processor's 32-bit subtraction does, without overflow.
        return static_cast<int32_t>(static_cast<uint32_t>(static_cast<D>(a)) -
                                    static_cast<uint32_t>(static_cast<D>(b)));
    }
    else
    {
        return static_cast<D>(static_cast<D>(a) - static_cast<D>(b));
    }
}

// Comparison of the values themselves, whatever the two types.
template <typename A, typename B> inline bool Less(A a, B b)
{
    if constexpr (std::is_floating_point_v<A> || std::is_floating_point_v<B>)
        return static_cast<double>(a) < static_cast<double>(b);
    else
        return static_cast<int64_t>(a) < static_cast<int64_t>(b);
}

template <typename T1, typename T2, typename TO> struct ClampedDifference
{
    using D = DifferenceType<T1, T2, TO>;
    TO lo;
    TO hi;

    // Below the range (or below 0 for an unsigned output) gives lo, above it
    // hi, anything else the difference in the output's type. The three are
    // formed and one is selected, without a branch, so that the loop
    // vectorises and random data cost no mispredicted jumps.
    TO operator()(T1 a, T2 b) const
    {
        const D d = Difference<D>(a, b);
        const bool bLow = Less(d, lo) || (std::is_unsigned_v<TO> && Less(d, 0));
        const bool bHigh = Less(hi, d);
        TO value;
        if constexpr (std::is_floating_point_v<D>)
            value = SampleFromDouble<TO>(static_cast<double>(d));
        else
            value = static_cast<TO>(d);
        return bLow ? lo : bHigh ? hi : value;
    }
};

// Whether the table path spans the bytes 0 to 255 of an input: its lower
// bound is 0 and its upper bound at least 255.
inline bool ByteRange(const ClImage& image)
{
    return image.LowerBound() == 0.0 && image.UpperBound() >= 255.0;
}

// The table path when both inputs span the bytes 0 to 255: its entry for
// bytes a and b is op(a, b), and op takes the difference a − b first, so
// the 511 differences stand for the 65536 pairs. When the output is 8-bit
// and the differences come out as the difference floored at 0 (the
// output's own range 0..255, the flow's case), the loop is that saturating
// subtraction, which the compiler vectorises; otherwise each pair looks its
// difference up.
template <typename TO, typename Op>
void RunByteDifferences(const ClImage& first, const ClImage& second, ClImage& out,
                        const Ip2To1Paths::Overlap& g, Op&& op)
{
    TO differences[511];
    bool bSaturating = std::is_same_v<TO, uint8_t>;
    for (int32_t d = -255; d <= 255; ++d)
    {
        differences[d + 255] = SampleFromDouble<TO>(op(d > 0 ? d : 0, d < 0 ? -d : 0));
        bSaturating = bSaturating && differences[d + 255] == TO(d > 0 ? d : 0);
    }
    if (bSaturating)
        Ip2To1Paths::RunLoop<uint8_t, uint8_t, TO>(first, second, out, g,
                                                   [](uint8_t a, uint8_t b)
                                                   { return static_cast<TO>(a > b ? a - b : 0); });
    else
        Ip2To1Paths::RunLoop<uint8_t, uint8_t, TO>(first, second, out, g,
                                                   [&differences](uint8_t a, uint8_t b)
                                                   { return differences[a - b + 255]; });
}

} // namespace

void ClIpSubtract::SetDefaults()
{
    ClIp2to1Base::SetDefaults();
    m_dLowerBound = 0.0;
    m_dUpperBound = 0.0;
    m_eRangeType = eDataDependent;
}

void ClIpSubtract::DefineParameters(ClParameterContainer& container)
{
    ClIp2to1Base::DefineParameters(container);
    container.AddDouble("LowerBound")->Bind(m_dLowerBound);
    container.AddDouble("UpperBound")->Bind(m_dUpperBound);
    TpParameterEnumPointer<EDataRangeType>* pRange =
        container.AddEnum<EDataRangeType>("Data Output Range");
    pRange->Bind(m_eRangeType);
    pRange->AddEntry(eDataDependent, "DataDependent");
    pRange->AddEntry(eInputDependent, "InputDependent");
    pRange->AddEntry(eUserDependent, "UserDependent");
}

ClProcessorBase* ClIpSubtract::NewInstance() const
{
    return NewProcessor<ClIpSubtract>();
}

double ClIpSubtract::PixelOp(const ClImage&, const ClImage&, const ClImage& out, double dFirst,
                             double dSecond)
{
    const double dValue = dFirst - dSecond;
    const double dLower = std::min(out.LowerBound(), out.UpperBound());
    const double dUpper = std::max(out.LowerBound(), out.UpperBound());
    if (dValue < dLower)
        return dLower;
    if (dValue > dUpper)
        return dUpper;
    return dValue;
}

int32_t ClIpSubtract::Dispatch(const ClImage& first, const ClImage& second, ClImage& out,
                               int32_t nOverlapWidth, int32_t nOverlapHeight, uint32_t nFirstPlanes,
                               uint32_t nSecondPlanes, int64_t nFirstStart, int64_t nFirstPitch,
                               int64_t nSecondStart, int64_t nSecondPitch, int64_t nOutStart,
                               int64_t nOutPitch)
{
    const Ip2To1Paths::Overlap g{nOverlapWidth, nOverlapHeight, nFirstPlanes, nSecondPlanes,
                                 nFirstStart,   nFirstPitch,    nSecondStart, nSecondPitch,
                                 nOutStart,     nOutPitch};
    const bool bTable = second.DataType() == ClImage::eUInt8 && first.SampleSize() == 1 &&
                        static_cast<int64_t>(nOverlapWidth) * nOverlapHeight > kTableBreakEven;
    if (bTable && IsSampleType(first.DataType()))
    {
        auto op = [&](double a, double b)
        { return ClIpSubtract::PixelOp(first, second, out, a, b); };
        return SelectDataType(out.DataType(),
                              [&](auto tagOut)
                              {
                                  using TO = typename decltype(tagOut)::Type;
                                  if (ByteRange(first) && ByteRange(second))
                                      RunByteDifferences<TO>(first, second, out, g, op);
                                  else
                                      Ip2To1Paths::RunTable<TO>(first, second, out, g, op);
                                  return 0;
                              });
    }

    // A range type outside the three is a bad parameter.
    if (m_eRangeType != eDataDependent && m_eRangeType != eInputDependent &&
        m_eRangeType != eUserDependent)
        return ZRC_ERROR_PARAM_OUT_OF_RANGE;

    return SelectDataTypes(first.DataType(), second.DataType(), out.DataType(),
                           [&](auto tag1, auto tag2, auto tagOut)
                           {
                               using T1 = typename decltype(tag1)::Type;
                               using T2 = typename decltype(tag2)::Type;
                               using TO = typename decltype(tagOut)::Type;
                               double dHi;
                               double dLo;
                               if (m_eRangeType == eDataDependent)
                               {
                                   dHi = std::max(out.LowerBound(), out.UpperBound());
                                   dLo = std::min(out.LowerBound(), out.UpperBound());
                               }
                               else if (m_eRangeType == eInputDependent)
                               {
                                   dHi = first.UpperBound() - second.LowerBound();
                                   dLo = first.LowerBound() - second.UpperBound();
                               }
                               else
                               {
                                   dHi = m_dUpperBound;
                                   dLo = m_dLowerBound;
                               }
                               // The range in the output's type: truncated and wrapped, so that
                               // range type 1 on bytes has 1 (from -255) as its floor.
                               const ClampedDifference<T1, T2, TO> op{SampleFromDouble<TO>(dLo),
                                                                      SampleFromDouble<TO>(dHi)};
                               if (m_eRangeType == eUserDependent)
                                   out.SetBounds(static_cast<double>(op.lo),
                                                 static_cast<double>(op.hi));
                               Ip2To1Paths::RunLoop<T1, T2, TO>(first, second, out, g, op);
                               return 0;
                           });
}
