#pragma once
// The two side views of a typed parameter: numbers and enumerations. A caller
// that holds only a ClParameter reaches them through AsNumeric and AsEnum,
// without knowing the value type.
#include <cstdint>
#include <cstring>

#include "image/ArrayStatic.h"

// Numbers of any type, seen as double.
class ClParameterNumericInterface
{
public:
    ClParameterNumericInterface() = default;
    ClParameterNumericInterface(const ClParameterNumericInterface&) = delete;
    ClParameterNumericInterface& operator=(const ClParameterNumericInterface&) = delete;
    virtual ~ClParameterNumericInterface() = default;

    virtual double GetValue() const = 0;
    virtual void SetValue(double dValue) = 0;
    virtual double GetLower() const = 0;
    virtual void SetLower(double dValue) = 0;
    virtual double GetUpper() const = 0;
    virtual void SetUpper(double dValue) = 0;
    virtual double GetDefault() const = 0;
    virtual void SetDefault(double dValue) = 0;
    virtual int32_t GetDecimals() const { return m_nDecimals; }
    virtual void SetDecimals(int32_t nDecimals) { m_nDecimals = nDecimals; }
    virtual bool IsFloating() const = 0;
    virtual bool IsInteger() const { return !IsFloating(); }
    virtual bool IsValueAllowed(double dValue) const = 0;
    virtual bool IsCurrentValueAllowed() const = 0;
    // Equal limits mean that the parameter has none.
    virtual bool HasLimits() const { return GetLower() != GetUpper(); }

    double GetStep() const { return m_dStep; }
    void SetStep(double dStep) { m_dStep = dStep; }
    // The print format of the text form. It must take the parameter's type;
    // a "*" in it takes the decimals as its argument ("%.*f").
    const char* GetFormat() const { return m_Format.Data() != nullptr ? m_Format.Data() : ""; }
    void SetFormat(const char* szFormat)
    {
        const uint32_t nSize = static_cast<uint32_t>(std::strlen(szFormat)) + 1;
        TpArrayStatic<char> format(nSize);
        std::memcpy(format.Data(), szFormat, nSize);
        m_Format.Swap(format);
    }

protected:
    void CopyNumericSettingsTo(ClParameterNumericInterface& target) const
    {
        target.m_dStep = m_dStep;
        target.m_nDecimals = m_nDecimals;
        target.SetFormat(GetFormat());
    }

    double m_dStep = 1.0;
    int32_t m_nDecimals = 0;
    TpArrayStatic<char> m_Format;
};

// The entries of an enumeration, by index.
class ClParameterEnumInterface
{
public:
    ClParameterEnumInterface() = default;
    ClParameterEnumInterface(const ClParameterEnumInterface&) = delete;
    ClParameterEnumInterface& operator=(const ClParameterEnumInterface&) = delete;
    virtual ~ClParameterEnumInterface() = default;

    virtual uint32_t GetEntryCount() const = 0;
    // Returns the entry text's length. A null buffer only measures; when the
    // length is not below nSize an empty text is stored instead.
    virtual uint32_t GetEntryText(uint32_t nIndex, char* szBuffer, uint32_t nSize) const = 0;
};
