#include <gtest/gtest.h>

#include "operators/IpSubtract.h"
#include "processing/SelectDataTypes.h"
#include "support/OperatorTestImages.h"

using namespace TestImages;

namespace
{

// Two one-row images of the given samples.
template <typename T1, typename T2>
void MakePair(ClImage& first, ClImage& second, std::initializer_list<T1> a,
              std::initializer_list<T2> b)
{
    first.Create(SampleTraits<T1>::eType, static_cast<int32_t>(a.size()), 1);
    second.Create(SampleTraits<T2>::eType, static_cast<int32_t>(b.size()), 1);
    std::copy(a.begin(), a.end(), first.Row<T1>(0));
    std::copy(b.begin(), b.end(), second.Row<T2>(0));
}

// The difference as the operator defines it: 32-bit for inputs of 8 and 16
// bits, the widest type of the three otherwise; clamped to [lo, hi] with a
// negative difference going to lo on unsigned outputs.
template <typename T1, typename T2, typename TO> TO Reference(T1 a, T2 b, TO lo, TO hi)
{
    if constexpr (std::is_integral_v<T1> && std::is_integral_v<T2> && sizeof(T1) <= 2 &&
                  sizeof(T2) <= 2)
    {
        const int64_t d = static_cast<int64_t>(a) - b;
        if ((std::is_unsigned_v<TO> && d < 0) || d < static_cast<int64_t>(lo))
            return lo;
        return d > static_cast<int64_t>(hi) ? hi : static_cast<TO>(d);
    }
    else
    {
        using D = std::common_type_t<T1, T2, TO>;
        D d;
        if constexpr (std::is_same_v<D, int32_t>)
            d = static_cast<int32_t>(static_cast<int64_t>(a) - static_cast<int64_t>(b)); // wraps
        else
            d = static_cast<D>(static_cast<D>(a) - static_cast<D>(b));
        const long double ld = static_cast<long double>(d);
        if ((std::is_unsigned_v<TO> && ld < 0) || ld < static_cast<long double>(lo))
            return lo;
        if (ld > static_cast<long double>(hi))
            return hi;
        return std::is_floating_point_v<D> ? SampleFromDouble<TO>(static_cast<double>(d))
                                           : static_cast<TO>(d);
    }
}

template <typename T1, typename T2, typename TO>
int WrongDifferences(const ClImage& first, const ClImage& second, const ClImage& out, double dLo,
                     double dHi)
{
    const TO lo = SampleFromDouble<TO>(dLo), hi = SampleFromDouble<TO>(dHi);
    int nWrong = 0;
    for (int32_t y = 0; y < out.Height(); ++y)
        for (int32_t x = 0; x < out.Width(); ++x)
            nWrong +=
                !BitEqual(At<TO>(out, x, y),
                          Reference<T1, T2, TO>(At<T1>(first, x, y), At<T2>(second, x, y), lo, hi));
    return nWrong;
}

} // namespace

TEST(IpSubtract, RangeTypesOnBytes)
{
    ClImage first, second, out;
    MakePair<uint8_t, uint8_t>(first, second, {10, 200, 20, 255, 0}, {20, 20, 20, 0, 255});
    ClIpSubtract subtract;
    ASSERT_EQ(subtract.Run(&first, &second, &out), 0);
    EXPECT_EQ(At<uint8_t>(out, 0, 0), 0);
    EXPECT_EQ(At<uint8_t>(out, 1, 0), 180);
    EXPECT_EQ(At<uint8_t>(out, 3, 0), 255);

    // User range 5 to 100, written to the output's bounds.
    subtract.m_eRangeType = ClIpSubtract::eUserDependent;
    subtract.m_dLowerBound = 5;
    subtract.m_dUpperBound = 100;
    ASSERT_EQ(subtract.Run(&first, &second, &out), 0);
    EXPECT_EQ(At<uint8_t>(out, 0, 0), 5);
    EXPECT_EQ(At<uint8_t>(out, 1, 0), 100);
    EXPECT_EQ(out.LowerBound(), 5.0);
    EXPECT_EQ(out.UpperBound(), 100.0);

    // Input range: the floor -255 wraps to 1 as a byte, so 0 comes out as 1.
    subtract.m_eRangeType = ClIpSubtract::eInputDependent;
    ASSERT_EQ(subtract.Run(&first, &second, &out), 0);
    EXPECT_EQ(At<uint8_t>(out, 2, 0), 1);
    EXPECT_EQ(At<uint8_t>(out, 0, 0), 1);
    EXPECT_EQ(At<uint8_t>(out, 1, 0), 180);
    EXPECT_EQ(out.UpperBound(), 255.0);

    // A signed output keeps the negative difference.
    subtract.m_eRangeType = ClIpSubtract::eDataDependent;
    ASSERT_EQ(subtract.Run(&first, &second, &out, ClImage::eInt16), 0);
    EXPECT_EQ(At<int16_t>(out, 0, 0), -10);
    EXPECT_EQ(At<int16_t>(out, 4, 0), -255);

    // A range type outside the three is refused.
    subtract.m_eRangeType = static_cast<ClIpSubtract::EDataRangeType>(3);
    EXPECT_EQ(subtract.Run(&first, &second, &out), ZRC_ERROR_PARAM_OUT_OF_RANGE);
    subtract.SetDefaults();
    EXPECT_EQ(subtract.m_eRangeType, ClIpSubtract::eDataDependent);
    EXPECT_EQ(subtract.m_dUpperBound, 0.0);
}

TEST(IpSubtract, WideTypesComputeInTheirOwnArithmetic)
{
    ClImage first, second, out;
    ClIpSubtract subtract;
    // 32-bit unsigned: 10 − 20 wraps to 4294967286, inside the output range.
    MakePair<uint32_t, uint32_t>(first, second, {10}, {20});
    ASSERT_EQ(subtract.Run(&first, &second, &out), 0);
    EXPECT_EQ(At<uint32_t>(out, 0, 0), 4294967286u);
    // 32-bit signed wraps too: -2147483648 − 1 gives 2147483647.
    MakePair<int32_t, int32_t>(first, second, {std::numeric_limits<int32_t>::min()}, {1});
    ASSERT_EQ(subtract.Run(&first, &second, &out), 0);
    EXPECT_EQ(At<int32_t>(out, 0, 0), std::numeric_limits<int32_t>::max());
    // Into doubles the same pair is exact; the output's own range (-1..1)
    // would clamp it, a user range does not.
    ASSERT_EQ(subtract.Run(&first, &second, &out, ClImage::eDouble64), 0);
    EXPECT_EQ(At<double>(out, 0, 0), -1.0);
    subtract.m_eRangeType = ClIpSubtract::eUserDependent;
    subtract.m_dLowerBound = -1e10;
    subtract.m_dUpperBound = 1e10;
    ASSERT_EQ(subtract.Run(&first, &second, &out, ClImage::eDouble64), 0);
    EXPECT_EQ(At<double>(out, 0, 0), -2147483649.0);
    subtract.SetDefaults();
    // Floats subtract in float and clamp to -1..1.
    MakePair<float, float>(first, second, {0.25f, 0.5f}, {1.0f, -0.75f});
    ASSERT_EQ(subtract.Run(&first, &second, &out), 0);
    EXPECT_EQ(At<float>(out, 0, 0), -0.75f);
    EXPECT_EQ(At<float>(out, 1, 0), 1.0f);
}

TEST(IpSubtract, EveryTypeTripleAndRangeTypeMatchesTheDefinition)
{
    const int32_t kRanges[] = {ClIpSubtract::eDataDependent, ClIpSubtract::eInputDependent,
                               ClIpSubtract::eUserDependent};
    for (int32_t nRange : kRanges)
        for (ClImage::EDataType e1 : AllTypes())
            for (ClImage::EDataType e2 : AllTypes())
                for (ClImage::EDataType eOut : AllTypes())
                {
                    const ClImage first = RandomImage(e1, 7, 5, 1, 101);
                    const ClImage second = RandomImage(e2, 7, 5, 1, 102);
                    ClImage in1(first), in2(second), out;
                    ClIpSubtract subtract;
                    subtract.m_eRangeType = static_cast<ClIpSubtract::EDataRangeType>(nRange);
                    subtract.m_dLowerBound = -90.5;
                    subtract.m_dUpperBound = 200.0;
                    ASSERT_EQ(subtract.Run(&in1, &in2, &out, eOut), 0);
                    ClImage model;
                    model.Create(eOut, 1, 1);
                    double dLo = std::min(model.LowerBound(), model.UpperBound());
                    double dHi = std::max(model.LowerBound(), model.UpperBound());
                    if (nRange == ClIpSubtract::eInputDependent)
                    {
                        dLo = first.LowerBound() - second.UpperBound();
                        dHi = first.UpperBound() - second.LowerBound();
                    }
                    else if (nRange == ClIpSubtract::eUserDependent)
                    {
                        dLo = -90.5;
                        dHi = 200.0;
                    }
                    const int nWrong =
                        SelectDataTypes(e1, e2, eOut,
                                        [&](auto t1, auto t2, auto tOut)
                                        {
                                            return WrongDifferences<typename decltype(t1)::Type,
                                                                    typename decltype(t2)::Type,
                                                                    typename decltype(tOut)::Type>(
                                                first, second, out, dLo, dHi);
                                        });
                    EXPECT_EQ(nWrong, 0) << nRange << " " << ClImage::TypeText(e1) << " "
                                         << ClImage::TypeText(e2) << " " << ClImage::TypeText(eOut);
                }
}

TEST(IpSubtract, LargeBytePairsTakeTheTableAndAgreeWithTheLoop)
{
    // Range type 2 shows which path ran: only the loop clamps to the user
    // range and writes it to the output's bounds; the table behaves as type 0.
    for (ClImage::EDataType eOut : AllTypes())
    {
        SCOPED_TRACE(ClImage::TypeText(eOut));
        ClImage first = RandomImage(ClImage::eUInt8, 320, 480, 1, 103);
        ClImage second = RandomImage(ClImage::eUInt8, 320, 480, 1, 104);
        ClImage viaTable;
        ClIpSubtract subtract;
        subtract.m_eRangeType = ClIpSubtract::eUserDependent;
        subtract.m_dLowerBound = 5;
        subtract.m_dUpperBound = 100;
        ASSERT_EQ(subtract.Run(&first, &second, &viaTable, eOut), 0);
        ClImage model;
        model.Create(eOut, 1, 1);
        EXPECT_EQ(viaTable.LowerBound(), model.LowerBound());

        // The loop with type 0, band by band (320 × 200 samples each, below
        // the break-even), gives the very same samples.
        ClIpSubtract loop;
        for (int32_t y0 = 0; y0 < 480; y0 += 200)
        {
            const int32_t nRows = std::min(200, 480 - y0);
            ClImage band1, band2, bandOut;
            band1.Create(ClImage::eUInt8, 320, nRows);
            band2.Create(ClImage::eUInt8, 320, nRows);
            for (int32_t y = 0; y < nRows; ++y)
            {
                std::memcpy(band1.Row<uint8_t>(y), first.Row<uint8_t>(y0 + y), 320);
                std::memcpy(band2.Row<uint8_t>(y), second.Row<uint8_t>(y0 + y), 320);
            }
            ASSERT_EQ(loop.Run(&band1, &band2, &bandOut, eOut), 0);
            for (int32_t y = 0; y < nRows; ++y)
                ASSERT_EQ(std::memcmp(bandOut.Row<uint8_t>(y), viaTable.Row<uint8_t>(y0 + y),
                                      320 * bandOut.SampleSize()),
                          0)
                    << "row " << y0 + y;
        }
    }

    // 300 × 300 is exactly the break-even: still the loop, with the user range.
    ClImage first = RandomImage(ClImage::eUInt8, 300, 300, 1, 105);
    ClImage second = RandomImage(ClImage::eUInt8, 300, 300, 1, 106);
    ClImage out;
    ClIpSubtract subtract;
    subtract.m_eRangeType = ClIpSubtract::eUserDependent;
    subtract.m_dLowerBound = 5;
    subtract.m_dUpperBound = 100;
    ASSERT_EQ(subtract.Run(&first, &second, &out), 0);
    EXPECT_EQ(out.UpperBound(), 100.0);
    for (int32_t x = 0; x < 300; ++x)
        EXPECT_GE(At<uint8_t>(out, x, 299), 5);

    // One row more and the table takes over, clamping to 0..255.
    ClImage first2 = RandomImage(ClImage::eUInt8, 300, 301, 1, 105);
    ClImage second2 = RandomImage(ClImage::eUInt8, 300, 301, 1, 106);
    ASSERT_EQ(subtract.Run(&first2, &second2, &out), 0);
    EXPECT_EQ(out.UpperBound(), 255.0);
    for (int32_t x = 0; x < 300; ++x)
        EXPECT_EQ(At<uint8_t>(out, x, 7),
                  std::max(0, At<uint8_t>(first2, x, 7) - At<uint8_t>(second2, x, 7)));
}

TEST(IpSubtract, ThreePlanesAgainstOneAndOffsets)
{
    ClImage colour = RandomImage(ClImage::eUInt16, 5, 4, 3, 107);
    ClImage grey = RandomImage(ClImage::eUInt16, 5, 4, 1, 108);
    ClImage out;
    ClIpSubtract subtract;
    ASSERT_EQ(subtract.Run(&colour, &grey, &out, ClImage::eInt32), 0);
    for (int32_t y = 0; y < 4; ++y)
        for (int32_t x = 0; x < 5; ++x)
            for (uint32_t p = 0; p < 3; ++p)
                EXPECT_EQ(At<int32_t>(out, x, y, p),
                          static_cast<int32_t>(At<uint16_t>(colour, x, y, p)) -
                              At<uint16_t>(grey, x, y));

    // With an offset only the overlap is subtracted; the rest shows the inputs.
    ClImage a = RandomImage(ClImage::eUInt8, 6, 6, 1, 109);
    ClImage b = RandomImage(ClImage::eUInt8, 6, 6, 1, 110);
    subtract.m_bSizeMustBeEqual = false;
    subtract.m_nOffsetX = 2;
    ASSERT_EQ(subtract.Run(&a, &b, &out), 0);
    ASSERT_EQ(out.Width(), 8);
    EXPECT_EQ(At<uint8_t>(out, 1, 0), At<uint8_t>(a, 1, 0));
    EXPECT_EQ(At<uint8_t>(out, 7, 5), At<uint8_t>(b, 5, 5));
    EXPECT_EQ(At<uint8_t>(out, 2, 3), std::max(0, At<uint8_t>(a, 2, 3) - At<uint8_t>(b, 0, 3)));
}
