#include <cmath>
#include <limits>
#include <string>
#include <tuple>
#include <utility>

#include <gtest/gtest.h>

#include "ParameterTestSupport.h"

TEST(ParameterNumeric, TextForms)
{
    // The value text keeps one digit behind the point; the default text is unstripped.
    TpBound<double> d(2.0);
    EXPECT_EQ(Text(d, true), "2.000000");
    const std::pair<double, const char*> doubles[] = {
        {2.0, "2.0"},   {0.25, "0.25"}, {100.0, "100.0"},         {1.5, "1.5"},
        {-0.5, "-0.5"}, {0.0, "0.0"},   {10.000001, "10.000001"}, {1e6, "1000000.0"}};
    for (const auto& [dValue, szText] : doubles)
    {
        d.value = dValue;
        EXPECT_EQ(Text(d), szText);
    }

    // Integers print with the format of their type and keep their zeros.
    TpBound<int> i(100);
    TpBound<long> l(-7000000000L);
    TpBound<unsigned int> u(4000000000u);
    EXPECT_EQ(Text(i), "100");
    EXPECT_EQ(Text(i, true), "100");
    EXPECT_EQ(Text(l), "-7000000000");
    EXPECT_EQ(Text(u), "4000000000");

    // The size is in-out: "12.5" needs 5 bytes, its default "2.000000" 9.
    d.value = 12.5;
    char szBuffer[8] = "XXXXXXX";
    uint32_t nSize = 4;
    EXPECT_FALSE(d.GetText(szBuffer, nSize));
    EXPECT_EQ(nSize, 5u);
    EXPECT_STREQ(szBuffer, "XXXXXXX");
    EXPECT_TRUE(d.GetText(nullptr, nSize));
    EXPECT_FALSE(d.GetDefaultText(szBuffer, nSize));
    EXPECT_EQ(nSize, 9u);

    // A format with "*" takes the decimals as its width argument.
    d.SetFormat("%.*f");
    d.SetDecimals(2);
    d.value = 3.14159;
    EXPECT_EQ(Text(d), "3.14");
    EXPECT_EQ(Text(d, true), "2.00");

    // Stripping starts only on a "."; a "," right before the zeros then ends it too.
    const std::pair<std::string, std::string> strips[] = {
        {"1.5,000", "1.5,0"}, {"1,500", "1,500"}, {"-0.000000", "-0.0"}};
    for (auto [text, expected] : strips)
    {
        ParameterText::StripTrailingZeros(text);
        EXPECT_EQ(text, expected);
    }
}

TEST(ParameterNumeric, SetTextReadsDecimalAndHexadecimal)
{
    TpBound<unsigned int> u;
    TpBound<int> i;
    TpBound<double> d;
    TpBound<long> l;
    // After the later of the first "X" and the first "x" the text is
    // hexadecimal, whatever stands in front; otherwise a truncated float.
    const std::tuple<ClParameter*, const char*, double> cases[] = {
        {&u, "0x10", 16},  {&u, "0x1F", 31}, {&u, "zz0X1f", 31},       {&u, "0X1x10", 16},
        {&u, "1x2X3", 3},  {&d, "0x20", 32}, {&i, "2.9", 2},           {&i, "-2.9", -2},
        {&i, "1e3", 1000}, {&d, "2.5", 2.5}, {&l, "-9000000000", -9e9}};
    for (const auto& [pParameter, szText, dExpected] : cases)
    {
        SCOPED_TRACE(szText);
        pParameter->SetText(szText);
        EXPECT_EQ(pParameter->AsNumeric()->GetValue(), dExpected);
    }

    const char* bad[] = {"12abc", "0x1G", "3 ", nullptr};
    for (const char* szBad : bad)
    {
        SCOPED_TRACE(szBad != nullptr ? szBad : "null");
        ExpectThrows([&] { u.SetText(szBad); }, ZRC_ERROR_INTERNAL, "Failed to set Parameter");
    }
    EXPECT_EQ(u.value, 3u);
}

TEST(ParameterNumeric, LimitsClampOrThrowOnlyWhenAsked)
{
    TpBound<int> n;
    n.SetFlags(ClParameter::eFlagClamp | ClParameter::eFlagRangeError);
    ClParameterNumericInterface& numeric = *n.AsNumeric();

    // Equal limits: no limits at all, whatever the flags.
    EXPECT_FALSE(numeric.HasLimits());
    n.SetText("123456");
    EXPECT_EQ(n.value, 123456);
    EXPECT_TRUE(numeric.IsValueAllowed(-1e300));

    numeric.SetLower(0);
    numeric.SetUpper(10);
    EXPECT_TRUE(numeric.HasLimits());
    EXPECT_FALSE(numeric.IsCurrentValueAllowed());
    EXPECT_TRUE(n.IsInRange(0) && n.IsInRange(10));
    EXPECT_FALSE(n.IsInRange(11) || numeric.IsValueAllowed(-0.5));

    // Clamping comes first, so nothing is out of range afterwards.
    n.SetText("15");
    EXPECT_EQ(n.value, 10);
    numeric.SetValue(-3);
    EXPECT_EQ(n.value, 0);

    // Without the clamp, flag 64 throws and the value stays.
    n.SetFlags(ClParameter::eFlagRangeError);
    n.value = 4;
    ExpectThrows<ClExRange>([&] { n.SetText("15"); }, ZRC_ERROR_PARAM_OUT_OF_RANGE,
                            "Value out of range");
    ExpectThrows<ClExRange>([&] { numeric.SetValue(-1); }, ZRC_ERROR_PARAM_OUT_OF_RANGE,
                            "Value out of range");
    EXPECT_EQ(n.value, 4);
    numeric.SetValue(10);
    EXPECT_EQ(n.value, 10);

    // Without either flag the limits are only advice.
    n.SetFlags(ClParameter::eFlagInput);
    n.SetText("99");
    EXPECT_EQ(n.value, 99);
}

TEST(ParameterNumeric, IsDefaultToleratesTheLastBitOfADouble)
{
    const double dNaN = std::numeric_limits<double>::quiet_NaN();
    const double d52 = 1.0 + std::ldexp(1.0, -52), d51 = 1.0 + std::ldexp(1.0, -51);
    const std::tuple<double, double, bool> cases[] = {{1.0, 1.0, true},   {1.0, d52, true},
                                                      {1.0, d51, false},  {1.0, dNaN, false},
                                                      {dNaN, 1.0, false}, {dNaN, dNaN, true}};
    for (const auto& [dDefault, dValue, bExpected] : cases)
    {
        TpBound<double> d(dDefault);
        d.value = dValue;
        EXPECT_EQ(d.IsDefault(), bExpected) << dDefault << " " << dValue;
    }

    // The plain parameter and the integers compare exactly.
    double dValue = 1.0;
    TpParameter<double> plain;
    plain.Bind(dValue);
    dValue = d52;
    EXPECT_FALSE(plain.IsDefault());
    TpBound<int> n(5);
    EXPECT_TRUE(n.IsDefault());
    n.value = 6;
    EXPECT_FALSE(n.IsDefault());
}
