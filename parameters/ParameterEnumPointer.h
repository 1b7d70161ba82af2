#pragma once
// TpParameterEnumPointer<T, Owner>: a value with a map of named entries, such
// as a bool with "False" and "True". With an empty map it is the connection
// of a processor to an object, such as an input image.
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>
#include <type_traits>

#include "image/ArrayDynamic.h"
#include "parameters/ParameterInterfaces.h"
#include "parameters/ParameterText.h"
#include "parameters/TypedParameter.h"

template <typename T, typename Owner = ClParameter>
class TpParameterEnumPointer : public TpParameter<T, Owner>, public ClParameterEnumInterface
{
    using Base = TpParameter<T, Owner>;

public:
    // One entry of the map: a value and its owned text.
    class ClMapEntry
    {
    public:
        ClMapEntry() = default;
        ClMapEntry(const T& value, const char* szText) : m_Value(value)
        {
            ReplaceOwnedText(m_szText, szText);
        }
        ClMapEntry(const ClMapEntry& other) : m_Value(other.m_Value)
        {
            ReplaceOwnedText(m_szText, other.m_szText);
        }
        ClMapEntry& operator=(const ClMapEntry& other)
        {
            if (this != &other)
            {
                ReplaceOwnedText(m_szText, other.m_szText);
                m_Value = other.m_Value;
            }
            return *this;
        }
        virtual ~ClMapEntry() { delete[] m_szText; }

        const T& Value() const { return m_Value; }
        const char* Text() const { return m_szText != nullptr ? m_szText : ""; }

    private:
        T m_Value{};
        char* m_szText = nullptr;
    };

    ClParameter* Clone() const override { return CloneParameter(*this); }
    void CopyTo(ClParameter& target) const override
    {
        TpParameterEnumPointer& copy = CastParameter<TpParameterEnumPointer>(target);
        Base::CopyTo(copy);
        copy.m_bConnection = m_bConnection;
        copy.m_Map = m_Map;
    }

    ClParameterEnumInterface* AsEnum() override { return IsEnum() ? this : nullptr; }
    bool IsEnum() const override { return m_Map.Size() > 0; }
    bool IsConnection() const override { return m_bConnection; }
    void SetConnection(bool bConnection) { m_bConnection = bConnection; }

    // The first entry of exactly this text gives the value; letter case
    // counts. An unknown text is -35.
    void SetText(const char* szText) override
    {
        const ClMapEntry* pEntry = FindText(szText);
        if (pEntry == nullptr)
            SENTIVO_THROW_CODE(ZRC_ERROR_PARAM_OUT_OF_RANGE);
        this->StoreValue(pEntry->Value());
    }
    bool GetText(char* szBuffer, uint32_t& nSize) const override
    {
        return DeliverValueText(this->Value(), szBuffer, nSize);
    }
    bool GetDefaultText(char* szBuffer, uint32_t& nSize) const override
    {
        return DeliverValueText(this->m_Default, szBuffer, nSize);
    }

    // Appends an entry, even one that is there already; the same text with
    // another value is refused with -46.
    virtual void AddEntry(const T& value, const char* szText)
    {
        if (szText == nullptr)
            SENTIVO_THROW("Point is Null", ZRC_ERROR_BAD_POINTER);
        for (const ClMapEntry& entry : m_Map)
        {
            if (std::strcmp(entry.Text(), szText) == 0 && !(entry.Value() == value))
                SENTIVO_THROW_CODE(ZRC_ERROR_PARAM_VALUE_DUPLICATE);
        }
        m_Map.Add(ClMapEntry(value, szText));
    }
    // Removes every entry of this value.
    virtual void RemoveValue(const T& value)
    {
        for (uint32_t i = m_Map.Size(); i > 0; --i)
        {
            if (m_Map[i - 1].Value() == value)
                m_Map.RemoveAt(i - 1);
        }
    }
    // Removes the first entry of this text.
    virtual void RemoveText(const char* szText)
    {
        for (uint32_t i = 0; i < m_Map.Size(); ++i)
        {
            if (szText != nullptr && std::strcmp(m_Map[i].Text(), szText) == 0)
            {
                m_Map.RemoveAt(i);
                return;
            }
        }
    }

    uint32_t GetEntryCount() const override { return m_Map.Size(); }
    uint32_t GetEntryText(uint32_t nIndex, char* szBuffer, uint32_t nSize) const override
    {
        // An index beyond the map is a bad argument, not a read past the map.
        if (nIndex >= m_Map.Size())
            SENTIVO_THROW_CODE(ZRC_ERROR_PARAM_OUT_OF_RANGE);
        const char* szText = m_Map[nIndex].Text();
        const uint32_t nLength = static_cast<uint32_t>(std::strlen(szText));
        if (szBuffer == nullptr)
            return nLength;
        if (nLength >= nSize)
        {
            if (nSize > 0)
                szBuffer[0] = '\0';
        }
        else
        {
            std::memcpy(szBuffer, szText, nLength + 1);
        }
        return nLength;
    }
    const ClMapEntry& GetEntry(uint32_t nIndex) const { return m_Map[nIndex]; }

private:
    const ClMapEntry* FindText(const char* szText) const
    {
        if (szText == nullptr)
            return nullptr;
        for (const ClMapEntry& entry : m_Map)
        {
            if (std::strcmp(entry.Text(), szText) == 0)
                return &entry;
        }
        return nullptr;
    }

    // The entry's text for a listed value; -35 for a value that a non-empty
    // map does not list. An empty map prints the value itself: a connection
    // as "NULL" or "%p", anything else as "%d".
    bool DeliverValueText(const T& value, char* szBuffer, uint32_t& nSize) const
    {
        std::string text;
        if (m_Map.Size() > 0)
        {
            const ClMapEntry* pFound = nullptr;
            for (const ClMapEntry& entry : m_Map)
            {
                if (entry.Value() == value)
                {
                    pFound = &entry;
                    break;
                }
            }
            if (pFound == nullptr)
                SENTIVO_THROW_CODE(ZRC_ERROR_PARAM_OUT_OF_RANGE);
            text = pFound->Text();
        }
        else
        {
            char szNumber[64];
            if (m_bConnection)
            {
                const void* pValue = AsPointer(value);
                if (pValue == nullptr)
                    std::snprintf(szNumber, sizeof(szNumber), "NULL");
                else
                    std::snprintf(szNumber, sizeof(szNumber), "%p", pValue);
            }
            else
            {
                std::snprintf(szNumber, sizeof(szNumber), "%d", AsInt(value));
            }
            text = szNumber;
        }
        return ParameterText::DeliverText(text.c_str(), szBuffer, nSize, true);
    }

    static const void* AsPointer(const T& value)
    {
        if constexpr (std::is_pointer_v<T>)
            return value;
        else
            return reinterpret_cast<const void*>(static_cast<intptr_t>(value));
    }
    // The "%d" form takes the low 32 bits of the value.
    static int AsInt(const T& value)
    {
        if constexpr (std::is_pointer_v<T>)
            return static_cast<int>(reinterpret_cast<intptr_t>(value));
        else
            return static_cast<int>(value);
    }

    bool m_bConnection = false;
    TpArrayDynamic<ClMapEntry, 10> m_Map;
};
