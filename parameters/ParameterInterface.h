#pragma once
// ClParameterInterface: a flat list of description records of the public
// members of a processor, for tools. A processor fills it in its
// DescribeInterface with one add call per member; the list owns its records.
#include <cstdint>
#include <type_traits>

class ClImage;
class ClStream;

class ClParameterInterface
{
public:
    // What a member holds.
    enum EKind : int32_t
    {
        eKindUInt8 = 0,
        eKindInt16 = 1,
        eKindUInt16 = 2,
        eKindInt32 = 3,
        eKindDouble = 4,
        eKindFloat = 5,
        eKindConstructed = 6, // a value fixed at construction
        eKindImage = 7,
        eKindBool = 8,
        eKindEnum = 9
    };
    enum EDirection : int32_t
    {
        eInput = 0,
        eOutput = 1,
        eConstructed = 2
    };
    // Lower 1.0 with upper -1.0 asks for limits around the member's value.
    static constexpr double kAutoLower = 1.0;
    static constexpr double kAutoUpper = -1.0;

    // One described member.
    class ClParameter
    {
    public:
        ClParameter(EKind eKind, EDirection eDirection, void* pValue, const char* szName,
                    const char* szDescription, double dLower, double dUpper, double dDefault);
        ClParameter(const ClParameter&) = delete;
        ClParameter& operator=(const ClParameter&) = delete;
        virtual ~ClParameter();

        // Writes name, direction, limits, default, flags, kind and the value.
        virtual void Save(ClStream& stream) const;
        // Reads what Save wrote. A record of another name gives -33 and
        // leaves this record as it was; otherwise limits, default, flags and
        // the member's value are taken over and the result is 0.
        virtual int32_t Load(ClStream& stream);

        // The entry list of an enumeration: texts one behind the other, each
        // zero-terminated, ended by an empty text; values may be null.
        void SetEntries(const char* szTexts, const int32_t* pValues);
        uint32_t GetEntryCount() const { return m_nEntryCount; }
        const char* GetEntryTexts() const { return m_szEntryTexts; }
        const int32_t* GetEntryValues() const { return m_pEntryValues; }

        EKind GetKind() const { return m_eKind; }
        void SetKind(EKind eKind) { m_eKind = eKind; }
        EDirection GetDirection() const { return m_eDirection; }
        bool IsUnlimited() const { return m_nUnlimited != 0; }
        double GetLower() const { return m_dLower; }
        double GetUpper() const { return m_dUpper; }
        double GetDefault() const { return m_dDefault; }
        void* GetValuePointer() const { return m_pValue; }
        uint8_t GetFlag1() const { return m_nFlag1; }
        uint8_t GetFlag2() const { return m_nFlag2; }
        void SetFlags(uint8_t nFlag1, uint8_t nFlag2)
        {
            m_nFlag1 = nFlag1;
            m_nFlag2 = nFlag2;
        }
        const char* GetName() const { return m_szName; }
        const char* GetDescription() const { return m_szDescription; }
        ClParameter* GetNext() const { return m_pNext; }

    private:
        friend class ClParameterInterface;
        // Bytes of the value in the stream: by Save, and by Load, which
        // takes four for kind 1.
        uint32_t SavedValueSize() const;
        uint32_t LoadedValueSize() const;

        EKind m_eKind;
        EDirection m_eDirection;
        int32_t m_nUnlimited;
        double m_dLower;
        double m_dUpper;
        double m_dDefault;
        void* m_pValue;
        char* m_szEntryTexts = nullptr;
        int32_t* m_pEntryValues = nullptr;
        uint8_t m_nFlag1 = 0;
        uint8_t m_nFlag2 = 0;
        char* m_szName = nullptr;
        char* m_szDescription = nullptr;
        ClParameter* m_pNext = nullptr;
        uint32_t m_nEntryCount = 0;
    };

    ClParameterInterface() = default;
    ClParameterInterface(const ClParameterInterface&) = delete;
    ClParameterInterface& operator=(const ClParameterInterface&) = delete;
    ~ClParameterInterface();

    // Numbers, with their limits (kAutoLower, kAutoUpper for automatic ones).
    // Unsigned 32-bit members share the 32-bit kind; their four bytes travel
    // as they are.
    template <typename T, typename = std::enable_if_t<std::is_arithmetic_v<T> && !std::is_same_v<T, bool>>>
    ClParameter& Add(T& member, const char* szName, const char* szDescription, EDirection eDirection,
                     double dLower, double dUpper)
    {
        static_assert(KindOf<T>() != eKindConstructed, "no record kind for this number type");
        return AddNumber(KindOf<T>(), &member, static_cast<double>(member), szName, szDescription,
                         eDirection, dLower, dUpper);
    }
    // An image connection.
    ClParameter& Add(ClImage*& pMember, const char* szName, const char* szDescription,
                     EDirection eDirection);
    // A bool: the enumeration form with "False" and "True", kind 8.
    ClParameter& Add(bool& bMember, const char* szName, const char* szDescription,
                     EDirection eDirection);
    // An enumeration; szTexts as in SetEntries, pValues one per text or null.
    template <typename E>
    ClParameter& AddEnum(E& eMember, const char* szName, const char* szDescription,
                         EDirection eDirection, const char* szTexts,
                         const int32_t* pValues = nullptr)
    {
        return AddEnumRecord(&eMember, static_cast<double>(eMember), szName, szDescription,
                             eDirection, szTexts, pValues);
    }

    // Appends a record and takes it over.
    ClParameter& Append(ClParameter* pRecord);
    ClParameter* First() const { return m_pFirst; }
    uint32_t GetCount() const { return m_nCount; }
    // The first record of this exact name, or null.
    ClParameter* Find(const char* szName) const;

private:
    template <typename T> static constexpr EKind KindOf()
    {
        if constexpr (std::is_same_v<T, uint8_t>)
            return eKindUInt8;
        else if constexpr (std::is_same_v<T, int16_t>)
            return eKindInt16;
        else if constexpr (std::is_same_v<T, uint16_t>)
            return eKindUInt16;
        else if constexpr (std::is_same_v<T, int32_t> || std::is_same_v<T, uint32_t>)
            return eKindInt32;
        else if constexpr (std::is_same_v<T, double>)
            return eKindDouble;
        else if constexpr (std::is_same_v<T, float>)
            return eKindFloat;
        else
            return eKindConstructed;
    }

    ClParameter& AddNumber(EKind eKind, void* pMember, double dValue, const char* szName,
                           const char* szDescription, EDirection eDirection, double dLower,
                           double dUpper);
    ClParameter& AddEnumRecord(void* pMember, double dValue, const char* szName,
                               const char* szDescription, EDirection eDirection,
                               const char* szTexts, const int32_t* pValues);

    ClParameter* m_pFirst = nullptr;
    ClParameter* m_pLast = nullptr;
    uint32_t m_nCount = 0;
};
