#include <cmath>
#include <cstring>
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "parameters/ParameterNumeric.h"
#include "ThrowsCode.h"

namespace
{

template <typename P> std::string Text(const P& parameter)
{
    char szBuffer[400];
    uint32_t nSize = sizeof(szBuffer);
    EXPECT_TRUE(parameter.GetText(szBuffer, nSize));
    EXPECT_EQ(nSize, std::strlen(szBuffer) + 1);
    return szBuffer;
}

template <typename P> std::string DefaultText(const P& parameter)
{
    char szBuffer[400];
    uint32_t nSize = sizeof(szBuffer);
    EXPECT_TRUE(parameter.GetDefaultText(szBuffer, nSize));
    return szBuffer;
}

} // namespace

TEST(ParameterNumeric, DoubleTextKeepsOneDigitBehindThePoint)
{
    double dValue = 2.0;
    TpParameterNumeric<double> parameter;
    parameter.Bind(dValue);
    EXPECT_EQ(Text(parameter), "2.0");
    // The default is printed without stripping.
    EXPECT_EQ(DefaultText(parameter), "2.000000");

    const struct
    {
        double dValue;
        const char* szText;
    } cases[] = {{0.25, "0.25"}, {100.0, "100.0"},         {1.5, "1.5"},      {-0.5, "-0.5"},
                 {0.0, "0.0"},   {10.000001, "10.000001"}, {1e6, "1000000.0"}};
    for (const auto& c : cases)
    {
        dValue = c.dValue;
        EXPECT_EQ(Text(parameter), c.szText) << c.dValue;
    }
}

TEST(ParameterNumeric, IntegerTextsKeepTheirZeros)
{
    int nValue = 100;
    long lValue = -7000000000L;
    unsigned int uValue = 4000000000u;
    TpParameterNumeric<int> intParameter;
    TpParameterNumeric<long> longParameter;
    TpParameterNumeric<unsigned int> unsignedParameter;
    intParameter.Bind(nValue);
    longParameter.Bind(lValue);
    unsignedParameter.Bind(uValue);
    EXPECT_EQ(Text(intParameter), "100");
    EXPECT_EQ(DefaultText(intParameter), "100");
    EXPECT_EQ(Text(longParameter), "-7000000000");
    EXPECT_EQ(Text(unsignedParameter), "4000000000");
}

TEST(ParameterNumeric, TypeSettingsFollowTheValueType)
{
    TpParameterNumeric<double> d;
    TpParameterNumeric<int> i;
    TpParameterNumeric<long> l;
    TpParameterNumeric<unsigned int> u;
    EXPECT_STREQ(d.GetFormat(), "%f");
    EXPECT_STREQ(i.GetFormat(), "%d");
    EXPECT_STREQ(l.GetFormat(), "%ld");
    EXPECT_STREQ(u.GetFormat(), "%u");
    EXPECT_EQ(d.GetDecimals(), 6);
    EXPECT_EQ(i.GetDecimals(), 0);
    EXPECT_TRUE(d.IsFloating());
    EXPECT_FALSE(d.IsInteger());
    EXPECT_TRUE(i.IsInteger());
    EXPECT_TRUE(d.IsSigned());
    EXPECT_TRUE(l.IsSigned());
    EXPECT_FALSE(u.IsSigned());
    EXPECT_EQ(d.GetStep(), 1.0);
    EXPECT_TRUE(d.IsNumeric());
    EXPECT_EQ(d.AsNumeric(), static_cast<ClParameterNumericInterface*>(&d));
    EXPECT_EQ(d.AsEnum(), nullptr);
    EXPECT_EQ(d.GetType(), &typeid(double));
    EXPECT_EQ(u.GetType(), &typeid(unsigned int));
    EXPECT_EQ(d.GetFlags(), ClParameter::eFlagInput | ClParameter::eFlagOutput);
}

TEST(ParameterNumeric, FormatWithStarTakesTheDecimals)
{
    double dValue = 3.14159;
    TpParameterNumeric<double> parameter;
    parameter.Bind(dValue);
    parameter.SetFormat("%.*f");
    parameter.SetDecimals(2);
    EXPECT_EQ(Text(parameter), "3.14");
    dValue = 2.0;
    parameter.SetDecimals(3);
    EXPECT_EQ(Text(parameter), "2.0");
    parameter.SetDefaultValue(2.0);
    EXPECT_EQ(DefaultText(parameter), "2.000");
}

TEST(ParameterNumeric, StripStopsAtACommaBeforeTheZeros)
{
    std::string text = "1.5,000";
    ParameterText::StripTrailingZeros(text);
    EXPECT_EQ(text, "1.5,0");
    text = "1,500"; // no point: nothing is stripped
    ParameterText::StripTrailingZeros(text);
    EXPECT_EQ(text, "1,500");
    text = "-0.000000";
    ParameterText::StripTrailingZeros(text);
    EXPECT_EQ(text, "-0.0");
}

TEST(ParameterNumeric, SetTextReadsDecimalAndHexadecimal)
{
    unsigned int uValue = 0;
    int nValue = 0;
    double dValue = 0;
    long lValue = 0;
    TpParameterNumeric<unsigned int> u;
    TpParameterNumeric<int> i;
    TpParameterNumeric<double> d;
    TpParameterNumeric<long> l;
    u.Bind(uValue);
    i.Bind(nValue);
    d.Bind(dValue);
    l.Bind(lValue);

    u.SetText("0x10");
    EXPECT_EQ(uValue, 16u);
    u.SetText("0x1F");
    EXPECT_EQ(uValue, 31u);
    // What stands in front of the letter is ignored.
    u.SetText("zz0X1f");
    EXPECT_EQ(uValue, 31u);
    // The later of the first "X" and the first "x" counts.
    u.SetText("0X1x10");
    EXPECT_EQ(uValue, 16u);
    u.SetText("1x2X3");
    EXPECT_EQ(uValue, 3u);
    d.SetText("0x20");
    EXPECT_EQ(dValue, 32.0);

    i.SetText("2.9");
    EXPECT_EQ(nValue, 2);
    i.SetText("-2.9");
    EXPECT_EQ(nValue, -2);
    i.SetText("1e3");
    EXPECT_EQ(nValue, 1000);
    d.SetText("2.5");
    EXPECT_EQ(dValue, 2.5);
    l.SetText("-9000000000");
    EXPECT_EQ(lValue, -9000000000L);
}

TEST(ParameterNumeric, SetTextRefusesUnparsedRest)
{
    unsigned int uValue = 5;
    TpParameterNumeric<unsigned int> u;
    u.Bind(uValue);
    EXPECT_THROWS_CODE(u.SetText("12abc"), ClException, ZRC_ERROR_INTERNAL,
                       "Failed to set Parameter");
    EXPECT_THROWS_CODE(u.SetText("0x1G"), ClException, ZRC_ERROR_INTERNAL,
                       "Failed to set Parameter");
    EXPECT_THROWS_CODE(u.SetText("3 "), ClException, ZRC_ERROR_INTERNAL, "Failed to set Parameter");
    EXPECT_THROWS_CODE(u.SetText(nullptr), ClException, ZRC_ERROR_INTERNAL,
                       "Failed to set Parameter");
    EXPECT_EQ(uValue, 5u);
}

TEST(ParameterNumeric, GetTextSizeIsInOut)
{
    double dValue = 12.5; // "12.5": 5 bytes with the terminator
    TpParameterNumeric<double> parameter;
    parameter.Bind(dValue);

    char szBuffer[8] = "XXXXXXX";
    uint32_t nSize = 4;
    EXPECT_FALSE(parameter.GetText(szBuffer, nSize));
    EXPECT_EQ(nSize, 5u);
    EXPECT_STREQ(szBuffer, "XXXXXXX");

    nSize = 0;
    EXPECT_FALSE(parameter.GetText(nullptr, nSize));
    EXPECT_EQ(nSize, 5u);
    nSize = 5;
    EXPECT_TRUE(parameter.GetText(nullptr, nSize));
    EXPECT_EQ(nSize, 5u);

    nSize = 5;
    EXPECT_TRUE(parameter.GetText(szBuffer, nSize));
    EXPECT_STREQ(szBuffer, "12.5");

    // The default text is sized on its own: "12.500000" needs 10.
    nSize = 9;
    EXPECT_FALSE(parameter.GetDefaultText(szBuffer, nSize));
    EXPECT_EQ(nSize, 10u);
}

TEST(ParameterNumeric, LimitsClampOrThrowOnlyWhenAsked)
{
    int nValue = 0;
    TpParameterNumeric<int> parameter;
    parameter.Bind(nValue, ClParameter::eFlagInput | ClParameter::eFlagClamp |
                               ClParameter::eFlagRangeError);
    ClParameterNumericInterface& numeric = *parameter.AsNumeric();

    // Equal limits: no limits at all, whatever the flags.
    EXPECT_FALSE(numeric.HasLimits());
    parameter.SetText("123456");
    EXPECT_EQ(nValue, 123456);
    EXPECT_TRUE(numeric.IsValueAllowed(-1e300));
    EXPECT_TRUE(parameter.IsInRange(-5));

    numeric.SetLower(0);
    numeric.SetUpper(10);
    EXPECT_TRUE(numeric.HasLimits());
    EXPECT_EQ(numeric.GetUpper(), 10.0);
    EXPECT_FALSE(numeric.IsCurrentValueAllowed());
    EXPECT_TRUE(parameter.IsInRange(0));
    EXPECT_TRUE(parameter.IsInRange(10));
    EXPECT_FALSE(parameter.IsInRange(11));
    EXPECT_FALSE(numeric.IsValueAllowed(10.5));

    // Clamping comes first, so nothing is out of range afterwards.
    parameter.SetText("15");
    EXPECT_EQ(nValue, 10);
    numeric.SetValue(-3);
    EXPECT_EQ(nValue, 0);

    // Without the clamp, flag 64 throws and the value stays.
    parameter.SetFlags(ClParameter::eFlagInput | ClParameter::eFlagRangeError);
    nValue = 4;
    EXPECT_THROWS_CODE(parameter.SetText("15"), ClExRange, ZRC_ERROR_PARAM_OUT_OF_RANGE,
                       "Value out of range");
    EXPECT_THROWS_CODE(numeric.SetValue(-1), ClExRange, ZRC_ERROR_PARAM_OUT_OF_RANGE,
                       "Value out of range");
    EXPECT_EQ(nValue, 4);
    numeric.SetValue(10);
    EXPECT_EQ(nValue, 10);

    // Without either flag the limits are only advice.
    parameter.SetFlags(ClParameter::eFlagInput);
    parameter.SetText("99");
    EXPECT_EQ(nValue, 99);
}

TEST(ParameterNumeric, NumericInterfaceCrossesAsDouble)
{
    int nValue = 3;
    TpParameterNumeric<int> parameter;
    parameter.Bind(nValue);
    ClParameterNumericInterface& numeric = *parameter.AsNumeric();
    EXPECT_EQ(numeric.GetValue(), 3.0);
    EXPECT_EQ(numeric.GetDefault(), 3.0);
    numeric.SetValue(7.9);
    EXPECT_EQ(nValue, 7);
    numeric.SetDefault(-2.5);
    EXPECT_EQ(parameter.DefaultValue(), -2);
    numeric.SetLower(1.9);
    EXPECT_EQ(parameter.Lower(), 1);
}

TEST(ParameterNumeric, IsDefaultToleratesTheLastBitOfADouble)
{
    double dValue = 1.0;
    TpParameterNumeric<double> numeric;
    TpParameter<double> plain;
    numeric.Bind(dValue);
    plain.Bind(dValue);
    EXPECT_TRUE(numeric.IsDefault());

    dValue = 1.0 + std::ldexp(1.0, -52);
    EXPECT_TRUE(numeric.IsDefault());
    EXPECT_FALSE(plain.IsDefault()); // the plain parameter compares exactly
    dValue = 1.0 + std::ldexp(1.0, -51);
    EXPECT_FALSE(numeric.IsDefault());

    const double dNaN = std::numeric_limits<double>::quiet_NaN();
    dValue = dNaN;
    EXPECT_FALSE(numeric.IsDefault());
    numeric.SetDefaultValue(dNaN);
    EXPECT_TRUE(numeric.IsDefault());
    dValue = 1.0;
    EXPECT_FALSE(numeric.IsDefault());

    int nValue = 5;
    TpParameterNumeric<int> integer;
    integer.Bind(nValue);
    EXPECT_TRUE(integer.IsDefault());
    nValue = 6;
    EXPECT_FALSE(integer.IsDefault());
}
