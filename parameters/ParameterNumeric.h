#pragma once
// TpParameterNumeric<T, Owner>: a number with optional limits, a print format
// and a text form that reads decimal and hexadecimal input.
#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <type_traits>

#include "image/SampleTraits.h"
#include "parameters/ParameterInterfaces.h"
#include "parameters/ParameterText.h"
#include "parameters/TypedParameter.h"

// The print format per numeric type. 64-bit integers use the standard
// "%lld"/"%llu" length modifier (long is 64 bits on this platform too).
template <typename T> struct NumericFormat;
#define SENTIVO_NUMERIC_FORMAT(Type, Format)                                                       \
    template <> struct NumericFormat<Type>                                                         \
    {                                                                                              \
        static constexpr const char* szFormat = Format;                                            \
    };
SENTIVO_NUMERIC_FORMAT(char, "%d")
SENTIVO_NUMERIC_FORMAT(signed char, "%d")
SENTIVO_NUMERIC_FORMAT(unsigned char, "%u")
SENTIVO_NUMERIC_FORMAT(int, "%d")
SENTIVO_NUMERIC_FORMAT(unsigned int, "%u")
SENTIVO_NUMERIC_FORMAT(short, "%hd")
SENTIVO_NUMERIC_FORMAT(unsigned short, "%hu")
SENTIVO_NUMERIC_FORMAT(long, "%ld")
SENTIVO_NUMERIC_FORMAT(unsigned long, "%lu")
SENTIVO_NUMERIC_FORMAT(long long, "%lld")
SENTIVO_NUMERIC_FORMAT(unsigned long long, "%llu")
SENTIVO_NUMERIC_FORMAT(float, "%f")
SENTIVO_NUMERIC_FORMAT(double, "%f")
#undef SENTIVO_NUMERIC_FORMAT

// A double as a value of the numeric type T: floating types take it, integer
// types truncate toward zero; NaN, infinities and values outside the range
// give the lowest value of the signed type of the same width instead of
// undefined behaviour, and unsigned types wrap through that signed form.
template <typename T> T NumericFromDouble(double dValue)
{
    if constexpr (std::is_floating_point_v<T>)
        return static_cast<T>(dValue);
    else if constexpr (sizeof(T) >= sizeof(int64_t) || std::is_same_v<T, uint32_t>)
        return static_cast<T>(TruncateToInt64(dValue));
    else
        return static_cast<T>(TruncateToInt32(dValue));
}

template <typename T, typename Owner = ClParameter>
class TpParameterNumeric : public TpParameter<T, Owner>, public ClParameterNumericInterface
{
    static_assert(std::is_arithmetic_v<T>, "a numeric parameter holds a number");
    using Base = TpParameter<T, Owner>;

public:
    TpParameterNumeric()
    {
        m_nDecimals = std::is_floating_point_v<T> ? 6 : 0;
        SetFormat(NumericFormat<T>::szFormat);
    }

    ClParameter* Clone() const override { return CloneParameter(*this); }
    void CopyTo(ClParameter& target) const override
    {
        TpParameterNumeric& copy = CastParameter<TpParameterNumeric>(target);
        Base::CopyTo(copy);
        CopyNumericSettingsTo(copy);
        copy.m_Lower = m_Lower;
        copy.m_Upper = m_Upper;
        copy.m_bFloating = m_bFloating;
        copy.m_bSigned = m_bSigned;
    }

    ClParameterNumericInterface* AsNumeric() override { return this; }
    bool IsNumeric() const override { return true; }

    // Doubles count as default within 2^-52; two NaN are equal, a NaN and a
    // number are not. Integers compare exactly.
    bool IsDefault() const override
    {
        if constexpr (std::is_floating_point_v<T>)
        {
            const double dValue = static_cast<double>(this->Value());
            const double dDefault = static_cast<double>(this->m_Default);
            if (std::isnan(dValue) || std::isnan(dDefault))
                return std::isnan(dValue) && std::isnan(dDefault);
            return std::fabs(dValue - dDefault) <= std::ldexp(1.0, -52);
        }
        else
        {
            return this->Value() == this->m_Default;
        }
    }

    void SetText(const char* szText) override
    {
        const ParameterText::ParsedNumber number = ParameterText::ParseNumber(szText);
        if (number.bHex)
            SetNumber(FromHex(number.nHex));
        else
            SetNumber(NumericFromDouble<T>(number.dValue));
    }
    bool GetText(char* szBuffer, uint32_t& nSize) const override
    {
        std::string text = ParameterText::Print(GetFormat(), m_nDecimals, this->Value());
        ParameterText::StripTrailingZeros(text);
        return ParameterText::DeliverText(text.c_str(), szBuffer, nSize);
    }
    bool GetDefaultText(char* szBuffer, uint32_t& nSize) const override
    {
        const std::string text = ParameterText::Print(GetFormat(), m_nDecimals, this->m_Default);
        return ParameterText::DeliverText(text.c_str(), szBuffer, nSize);
    }

    virtual bool IsSigned() const { return m_bSigned; }
    // True without limits, otherwise lower <= value <= upper.
    virtual bool IsInRange(T value) const
    {
        return !HasLimits() || (m_Lower <= value && value <= m_Upper);
    }

    // The numeric set: equal limits store the value as it is; flag 32
    // clamps, flag 64 throws for a value outside the limits.
    void SetNumber(T value)
    {
        if (m_Lower != m_Upper)
        {
            if (this->m_nFlags & ClParameter::eFlagClamp)
            {
                if (value < m_Lower)
                    value = m_Lower;
                else if (value > m_Upper)
                    value = m_Upper;
            }
            if ((this->m_nFlags & ClParameter::eFlagRangeError) &&
                !(m_Lower <= value && value <= m_Upper))
                throw ClExRange("Value out of range", ZRC_ERROR_PARAM_OUT_OF_RANGE, false, __FILE__,
                                __LINE__);
        }
        this->StoreValue(value);
    }
    void SetLimits(T lower, T upper)
    {
        m_Lower = lower;
        m_Upper = upper;
    }
    T Lower() const { return m_Lower; }
    T Upper() const { return m_Upper; }

    // The numeric interface: every value crosses it as double.
    double GetValue() const override { return static_cast<double>(this->Value()); }
    void SetValue(double dValue) override { SetNumber(NumericFromDouble<T>(dValue)); }
    double GetLower() const override { return static_cast<double>(m_Lower); }
    void SetLower(double dValue) override { m_Lower = NumericFromDouble<T>(dValue); }
    double GetUpper() const override { return static_cast<double>(m_Upper); }
    void SetUpper(double dValue) override { m_Upper = NumericFromDouble<T>(dValue); }
    double GetDefault() const override { return static_cast<double>(this->m_Default); }
    void SetDefault(double dValue) override { this->m_Default = NumericFromDouble<T>(dValue); }
    bool IsFloating() const override { return m_bFloating; }
    bool IsValueAllowed(double dValue) const override
    {
        return !HasLimits() || (GetLower() <= dValue && dValue <= GetUpper());
    }
    bool IsCurrentValueAllowed() const override { return IsInRange(this->Value()); }

private:
    // A hexadecimal text keeps the low bits that fit the integer type.
    static T FromHex(uint64_t nValue) { return static_cast<T>(nValue); }

    T m_Lower{};
    T m_Upper{};
    bool m_bFloating = std::is_floating_point_v<T>;
    bool m_bSigned = std::is_signed_v<T>;
};
