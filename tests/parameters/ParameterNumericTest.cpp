// Numeric parameters: text forms, decimal and hexadecimal input, limits and
// the default test.
#include "parameters/ParameterNumeric.h"

#include "ParameterTestSupport.h"

TEST(ParameterNumeric, TextForms)
{
    // The value text keeps one digit behind the point; the default text is "%f".
    TpBound<double> d(2.0);
    EXPECT_EQ(Text(d, true), "2.000000");
    const std::pair<double, const char*> doubles[] = {
        {2.0, "2.0"}, {0.25, "0.25"}, {100.0, "100.0"}, {-0.5, "-0.5"}, {10.000001, "10.000001"}};
    for (const auto& [dValue, szText] : doubles)
    {
        d.value = dValue;
        EXPECT_EQ(Text(d), szText);
    }
    // Integers keep their zeros.
    EXPECT_EQ(Text(TpBound<long>(-7000000000L)), "-7000000000");
    EXPECT_EQ(Text(TpBound<long>(100)), "100");
}

TEST(ParameterNumeric, SetTextReadsDecimalAndHexadecimal)
{
    TpBound<unsigned int> u;
    TpBound<int> i;
    TpBound<double> d;
    // After the later of the first "X" and the first "x" the text is
    // hexadecimal, whatever stands in front; otherwise a truncated float.
    const std::tuple<ClParameter*, const char*, double> cases[] = {
        {&u, "0x1F", 31}, {&u, "zz0X1f", 31}, {&u, "0X1x10", 16}, {&u, "1x2X3", 3},
        {&d, "0x20", 32}, {&i, "-2.9", -2},   {&i, "1e3", 1000},  {&d, "2.5", 2.5}};
    for (const auto& [pParameter, szText, dExpected] : cases)
    {
        pParameter->SetText(szText);
        EXPECT_EQ(pParameter->AsNumeric()->GetValue(), dExpected) << szText;
    }
    for (const char* szBad : {"12abc", "0x1G", "3 "})
        ExpectThrows([&] { u.SetText(szBad); }, ZRC_ERROR_INTERNAL, "Failed to set Parameter");
    EXPECT_EQ(u.value, 3u);
}

TEST(ParameterNumeric, LimitsClampOrThrowOnlyWhenAsked)
{
    TpBound<int> n(4);
    n.SetLimits(0, 10);
    // Flag 32 clamps first, so nothing is out of range; flag 64 alone throws
    // and keeps the value; without either the limits are only advice.
    const std::tuple<uint8_t, const char*, int, bool> cases[] = {
        {ClParameter::eFlagClamp | ClParameter::eFlagRangeError, "15", 10, false},
        {ClParameter::eFlagClamp, "-3", 0, false},
        {ClParameter::eFlagRangeError, "15", 4, true},
        {ClParameter::eFlagRangeError, "10", 10, false},
        {ClParameter::eFlagInput, "99", 99, false}};
    for (const auto& [nFlags, szText, nExpected, bThrows] : cases)
    {
        n.value = 4;
        n.SetFlags(nFlags);
        if (bThrows)
            ExpectThrows<ClExRange>([&] { n.SetText(szText); }, ZRC_ERROR_PARAM_OUT_OF_RANGE,
                                    "Value out of range");
        else
            n.SetText(szText);
        EXPECT_EQ(n.value, nExpected) << szText;
    }
}

TEST(ParameterNumeric, IsDefaultToleratesTheLastBitOfADouble)
{
    const double dNaN = std::numeric_limits<double>::quiet_NaN();
    const double d52 = 1.0 + std::ldexp(1.0, -52), d51 = 1.0 + std::ldexp(1.0, -51);
    for (auto [dDefault, dValue, bExpected] : {std::tuple{1.0, d52, true},
                                               {1.0, d51, false},
                                               {1.0, dNaN, false},
                                               {dNaN, 1.0, false},
                                               {dNaN, dNaN, true}})
    {
        TpBound<double> d(dDefault);
        d.value = dValue;
        EXPECT_EQ(d.IsDefault(), bExpected) << dDefault << " " << dValue;
    }
}
