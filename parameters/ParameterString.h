#pragma once
// TpParameterString: a zero-terminated text in a buffer of known capacity,
// reached through a char* member that points at the buffer.
#include <cstdint>
#include <cstring>
#include <type_traits>

#include "parameters/TypedParameter.h"

// N is a buffer capacity fixed at compile time; 0 means it is given at binding.
template <typename T, typename Owner = ClParameter, int N = 0>
class TpParameterString : public TpParameter<T, Owner>
{
    static_assert(std::is_same_v<T, char*>, "a string parameter holds a char*");
    using Base = TpParameter<T, Owner>;

public:
    TpParameterString() = default;

    ClParameter* Clone() const override { return CloneParameter(*this); }
    void CopyTo(ClParameter& target) const override
    {
        TpParameterString& copy = CastParameter<TpParameterString>(target);
        Base::CopyTo(copy);
        copy.m_nCapacity = m_nCapacity;
    }
    bool IsString() const override { return true; }

    // Binds to a char* member that points at a buffer of nCapacity bytes;
    // Bind(member) keeps the capacity of N.
    void Bind(char*& szMember) { Base::Bind(szMember); }
    void Bind(char*& szMember, uint32_t nCapacity)
    {
        Base::Bind(szMember);
        m_nCapacity = nCapacity;
    }
    void Bind(char*& szMember, uint32_t nCapacity, uint8_t nFlags)
    {
        Bind(szMember, nCapacity);
        this->m_nFlags = nFlags;
    }
    uint32_t GetCapacity() const { return m_nCapacity; }
    void SetCapacity(uint32_t nCapacity) { m_nCapacity = nCapacity; }

    // Copies the text into the bound buffer when it fits with its terminator.
    void SetText(const char* szText) override
    {
        if (szText == nullptr)
            SENTIVO_THROW("Point is Null", ZRC_ERROR_BAD_POINTER);
        const size_t nLength = std::strlen(szText);
        if (m_nCapacity < nLength + 1)
            SENTIVO_THROW("String memeory ar too small", ZRC_ERROR_TEMPLATE_SIZE);
        char* szTarget = this->Value();
        if (szTarget == nullptr)
            SENTIVO_THROW("Point is Null", ZRC_ERROR_BAD_POINTER);
        std::memcpy(szTarget, szText, nLength + 1);
    }
    // The size must exceed the length; nSize becomes length + 1 in any case.
    bool GetText(char* szBuffer, uint32_t& nSize) const override
    {
        const char* szValue = CheckedText(this->Value());
        const uint32_t nLength = static_cast<uint32_t>(std::strlen(szValue));
        const bool bFits = nSize > nLength;
        if (bFits)
        {
            if (szBuffer == nullptr)
                SENTIVO_THROW("Point is Null", ZRC_ERROR_BAD_POINTER);
            std::memcpy(szBuffer, szValue, nLength + 1);
        }
        nSize = nLength + 1;
        return bFits;
    }
    // As GetText, but a null buffer only measures.
    bool GetDefaultText(char* szBuffer, uint32_t& nSize) const override
    {
        const char* szValue = CheckedText(this->m_Default);
        const uint32_t nLength = static_cast<uint32_t>(std::strlen(szValue));
        const bool bFits = nSize > nLength;
        if (bFits && szBuffer != nullptr)
            std::memcpy(szBuffer, szValue, nLength + 1);
        nSize = nLength + 1;
        return bFits;
    }

private:
    static const char* CheckedText(const char* szText)
    {
        if (szText == nullptr)
            SENTIVO_THROW("Point is Null", ZRC_ERROR_BAD_POINTER);
        return szText;
    }

    uint32_t m_nCapacity = static_cast<uint32_t>(N);
};
