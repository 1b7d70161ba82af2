#pragma once
// Parameters: small named views on the members of a processor (or on a pair
// of accessors of any class). They give a value a name, a direction, a
// default, limits and a text form, and own nothing but their texts.
#include <cstdint>
#include <typeinfo>

class ClParameterContainer;
class ClParameterNumericInterface;
class ClParameterEnumInterface;

class ClParameterBase
{
public:
    ClParameterBase() = default;
    ClParameterBase(const ClParameterBase&) = delete;
    ClParameterBase& operator=(const ClParameterBase&) = delete;
    virtual ~ClParameterBase() = default;

    ClParameterContainer* GetParent() const { return m_pParent; }
    void SetParent(ClParameterContainer* pParent) { m_pParent = pParent; }

protected:
    ClParameterContainer* m_pParent = nullptr;
};

class ClParameter : public ClParameterBase
{
public:
    // Flag bits.
    enum : uint8_t
    {
        eFlagInput = 1,      // the outside may set it
        eFlagOutput = 2,     // the value is a result
        eFlagOptional = 4,   // the connection may stay empty
        eFlagContainer = 8,  // a tree node
        eFlagUnbound = 16,   // cleared by every binding; nothing sets it
        eFlagClamp = 32,     // a numeric set clamps to the limits
        eFlagRangeError = 64 // a numeric set outside the limits throws
    };

    ClParameter();
    ~ClParameter() override;

    virtual const char* GetName() const { return m_szName; }
    virtual void SetName(const char* szName);
    virtual const char* GetDescription() const { return m_szDescription; }
    virtual void SetDescription(const char* szDescription);

    // Allocates the same class and copies this parameter into it.
    virtual ClParameter* Clone() const = 0;
    // Copies type identity, flags, tag, name and description; subclasses add
    // the binding and the default.
    virtual void CopyTo(ClParameter& target) const;
    virtual void CopyDefault(const ClParameter& other) = 0;
    virtual void DefaultFromValue(const ClParameter& other) = 0;
    // Without bForce a connection is left alone, so that a copy of settings
    // does not rewire images.
    virtual void CopyValue(const ClParameter& other, bool bForce) = 0;
    virtual void ResetValue() = 0;
    virtual void ValueFromDefault(const ClParameter& other) = 0;

    virtual ClParameterContainer* AsContainer() { return nullptr; }
    virtual ClParameter* AsParameter() { return this; }
    virtual ClParameterNumericInterface* AsNumeric() { return nullptr; }
    virtual ClParameterEnumInterface* AsEnum() { return nullptr; }
    virtual bool IsParameter() const { return true; }
    virtual bool IsNumeric() const { return false; }
    virtual bool IsEnum() const { return false; }
    virtual bool IsConnection() const { return false; }
    virtual bool IsString() const { return false; }
    virtual void SwapValuesAndDefaults() {}
    virtual bool IsDefault() const = 0;
    virtual bool IsContainer() const { return false; }

    // Text forms. nSize is in-out: it receives the size needed, terminator
    // included; the result says whether the text was delivered.
    virtual void SetText(const char* szText);
    virtual bool GetText(char* szBuffer, uint32_t& nSize) const;
    virtual bool GetDefaultText(char* szBuffer, uint32_t& nSize) const;

    virtual void Hook(int32_t) {}
    virtual void* GetValuePointer() = 0;

    uint8_t GetFlags() const { return m_nFlags; }
    void SetFlags(uint8_t nFlags) { m_nFlags = nFlags; }
    const std::type_info* GetType() const { return m_pType; }

protected:
    const std::type_info* m_pType = nullptr;
    uint8_t m_nFlags = eFlagInput | eFlagOutput;
    char m_Tag[3] = {'D', 'P', 'I'};
    char* m_szName = nullptr;
    char* m_szDescription = nullptr;
};

// Copies a text into a new owned buffer (null gives null); frees the old one.
void ReplaceOwnedText(char*& szTarget, const char* szSource);
