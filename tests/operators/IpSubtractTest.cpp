#include <algorithm>
#include <tuple>

#include <gtest/gtest.h>

#include "operators/IpSubtract.h"
#include "support/SampleReference.h"

using namespace TestImages;

namespace
{
// The difference in 32 bits (here 64) for inputs of 8 and 16 bits, in the
// widest type of the three otherwise, 32-bit integers wrapping; clamped to
// [lo, hi], a negative difference going to lo on unsigned outputs.
template <typename T1, typename T2, typename TO> TO Reference(T1 a, T2 b, TO lo, TO hi)
{
    constexpr bool bNarrow =
        std::is_integral_v<T1> && std::is_integral_v<T2> && sizeof(T1) <= 2 && sizeof(T2) <= 2;
    using D = std::conditional_t<bNarrow, int64_t, std::common_type_t<T1, T2, TO>>;
    const D d = std::is_integral_v<D>
                    ? static_cast<D>(static_cast<int64_t>(a) - static_cast<int64_t>(b))
                    : static_cast<D>(static_cast<D>(a) - static_cast<D>(b));
    const long double ld = static_cast<long double>(d);
    return (std::is_unsigned_v<TO> && ld < 0) || ld < static_cast<long double>(lo) ? lo
           : ld > static_cast<long double>(hi)                                     ? hi
           : std::is_floating_point_v<D> ? SampleFromDouble<TO>(static_cast<double>(d))
                                         : static_cast<TO>(d);
}

// Samples of out unlike the reference; a one-plane second meets every plane.
int WrongDifferences(const ClImage& first, const ClImage& second, const ClImage& out, double dLo,
                     double dHi)
{
    auto count = [&](auto tag2)
    {
        using T2 = typename decltype(tag2)::Type;
        const uint32_t nStep = second.Planes() == 1 ? first.Planes() : 1;
        return CountWrong(first, out,
                          [&](auto a, int32_t i, int32_t y, auto o)
                          {
                              using TO = decltype(o);
                              return Reference(a, second.Row<T2>(y)[i / nStep],
                                               SampleFromDouble<TO>(dLo),
                                               SampleFromDouble<TO>(dHi));
                          });
    };
    return SelectDataType(second.DataType(), count);
}

int32_t Subtract(int32_t nRange, double dLo, double dHi, ClImage first, ClImage second,
                 ClImage& out, ClImage::EDataType eOut)
{
    ClIpSubtract subtract;
    subtract.m_eRangeType = static_cast<ClIpSubtract::EDataRangeType>(nRange);
    subtract.m_dLowerBound = dLo, subtract.m_dUpperBound = dHi;
    return subtract.Run(&first, &second, &out, eOut);
}

// The table: entry (a − first lower) × 256 + (b − second lower), a and b stepping
// through the inputs' bounds (at most 256 steps), is a − b clamped to the output's
// bounds, others 0; bytes, read unsigned, take entry first × 256 + second.
int WrongTableEntries(const ClImage& first, const ClImage& second, const ClImage& out)
{
    const double lo = std::min(out.LowerBound(), out.UpperBound());
    const double hi = std::max(out.LowerBound(), out.UpperBound());
    std::vector<double> table(65536, 0.0);
    for (int ia = 0; ia < 256 && first.LowerBound() + ia <= first.UpperBound(); ++ia)
        for (int ib = 0; ib < 256 && second.LowerBound() + ib <= second.UpperBound(); ++ib)
            table[ia * 256 + ib] =
                std::clamp(first.LowerBound() + ia - (second.LowerBound() + ib), lo, hi);
    return CountWrong(first, out,
                      [&](auto a, int32_t i, int32_t y, auto o) {
                          return SampleFromDouble<decltype(o)>(
                              table[uint8_t(a) * 256 + second.Row<uint8_t>(y)[i]]);
                      });
}

// One and three planes against a one-plane second; clamped to the output's
// bounds (type 0), first's range less second's (type 1), the user's (type 2,
// which a double output takes as its bounds).
void ExpectDifferences(int32_t nRange, uint32_t nPlanes1, ClImage::EDataType e1,
                       ClImage::EDataType e2, ClImage::EDataType eOut)
{
    SCOPED_TRACE(testing::Message()
                 << nRange << " " << nPlanes1 << " " << ClImage::TypeText(e1) << " "
                 << ClImage::TypeText(e2) << " " << ClImage::TypeText(eOut));
    const ClImage first = RandomImage(e1, 7, 5, nPlanes1, 101), type = OneRow(eOut, {0});
    const ClImage second = RandomImage(e2, 7, 5, 1, 102);
    ClImage out;
    ASSERT_EQ(Subtract(nRange, -90.5, 200.0, first, second, out, eOut), 0);
    ASSERT_EQ(out.Planes(), nPlanes1);
    const double a = out.LowerBound(), b = out.UpperBound();
    ASSERT_TRUE(nRange == 2 ? eOut != ClImage::eDouble64 || (a == -90.5 && b == 200.0)
                            : a == type.LowerBound() && b == type.UpperBound());
    const double lo[] = {std::min(a, b), first.LowerBound() - second.UpperBound(), -90.5};
    const double hi[] = {std::max(a, b), first.UpperBound() - second.LowerBound(), 200.0};
    EXPECT_EQ(WrongDifferences(first, second, out, lo[nRange], hi[nRange]), 0);
}

} // namespace

TEST(IpSubtract, EveryTypeTripleRangeTypeAndPlanePairMatchesTheDefinition)
{
    for (int32_t nRange = 0; nRange < 3; ++nRange)
        for (uint32_t nPlanes1 : {1u, 3u})
            for (ClImage::EDataType e1 : AllTypes())
                for (ClImage::EDataType e2 : AllTypes())
                    for (ClImage::EDataType eOut : AllTypes())
                        ExpectDifferences(nRange, nPlanes1, e1, e2, eOut);
}

TEST(IpSubtract, AboveTheBreakEvenTheTableGivesItsEntryForEveryPair)
{
    // 301 x 300 byte pairs, just beyond the break-even, 0 and 255 frequent;
    // bounds that span the bytes and that do not; a signed first. The table
    // clamps to the output's bounds whatever the range type.
    ClImage first = RandomImage(ClImage::eUInt8, 301, 300, 1, 120);
    ClImage second = RandomImage(ClImage::eUInt8, 301, 300, 1, 121);
    for (int32_t i = 0; i < 301 * 300; i += 7)
        At<uint8_t>(first, i % 301, i / 301) = 255,
                                        At<uint8_t>(second, (i + 3) % 301, (i + 3) / 301) = 0;
    const std::tuple<ClImage::EDataType, double, double, double, double> cases[] = {
        {ClImage::eUInt8, 0, 255, 0, 255},    {ClImage::eUInt8, 0, 300, 0, 1000},
        {ClImage::eUInt8, 10, 255, 0, 255},   {ClImage::eUInt8, 0, 255, 0, 100},
        {ClImage::eUInt8, 0.5, 255, -3, 255}, {ClImage::eInt8, -128, 127, 0, 255},
        {ClImage::eInt8, 0, 255, 0, 255}};
    for (const auto& [eFirst, dLower1, dUpper1, dLower2, dUpper2] : cases)
        for (ClImage::EDataType eOut : AllTypes())
            for (int32_t nRange = 0; nRange < 3; ++nRange)
            {
                SCOPED_TRACE(testing::Message()
                             << int(eFirst) << " " << dLower1 << " " << dUpper1 << " " << dLower2
                             << " " << dUpper2 << " " << int(eOut) << " " << nRange);
                ClImage in1, in2(second), out;
                in1.Create(eFirst, 301, 300);
                std::memcpy(in1.Data(), first.Data(), static_cast<size_t>(first.ByteSize()));
                in1.SetBounds(dLower1, dUpper1);
                in2.SetBounds(dLower2, dUpper2);
                ASSERT_EQ(Subtract(nRange, 5, 100, in1, in2, out, eOut), 0);
                EXPECT_EQ(WrongTableEntries(in1, in2, out), 0);
                EXPECT_NE(out.UpperBound(), 100.0);
            }
    // At the break-even the loop runs, writing the user's range to the bounds.
    const ClImage small = RandomImage(ClImage::eUInt8, 300, 300, 1, 105);
    ClImage out;
    ASSERT_EQ(Subtract(2, 5, 100, small, small, out, ClImage::eUInt8), 0);
    EXPECT_EQ(out.UpperBound(), 100.0);
    // Own 8-bit output bounds by a direct Dispatch: clamped to them, not at 0.
    ClIpSubtract user;
    user.m_eRangeType = ClIpSubtract::eUserDependent;
    const int64_t nPitch = first.RowPitch();
    for (auto [dLower, dUpper] : {std::pair{20.0, 200.0}, {255.0, 0.0}, {-5.0, 300.0}})
    {
        out.Create(ClImage::eUInt8, 301, 300);
        out.SetBounds(dLower, dUpper);
        ASSERT_EQ(
            user.Dispatch(first, second, out, 301, 300, 1, 1, 0, nPitch, 0, nPitch, 0, nPitch), 0);
        EXPECT_EQ(WrongTableEntries(first, second, out), 0) << dLower << " " << dUpper;
    }
}
